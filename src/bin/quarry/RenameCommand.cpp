#include "Commands.h"
#include "EditOptions.h"

#include <memory>

namespace Tool {

using Quarry::SourceEditor;

namespace {

struct RenameOptions : EditOptions {
  std::string name;
};

ExitStatus run(const RenameOptions& options) {
  return edit(options, options.path, [&options](SourceEditor& editor) {
    return editor.renameItem(options.path, options.name);
  });
}

}  // namespace

void addRenameCommand(CommandTable& commands) {
  const auto options = std::make_shared<RenameOptions>();
  Command command =
      commands.add("rename",
                   {"Edit", "Gives an item another name and changes nothing else",
                    "  quarry rename project.cfg camera/fov angle\n"
                    "  quarry rename project.cfg 'scene/layer[2]' overlay",
                    "Exit status: 0 renamed, 1 there is no such item, 2 refused or unreadable."},
                   [options](MessageLog&) { return run(*options); });
  options->addTo(command, "The item");
  command.addArgument("NAME", options->name, "Its new name").require();
}

}  // namespace Tool
