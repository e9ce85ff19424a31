#include "Commands.h"
#include "EditOptions.h"

#include <memory>

namespace Tool {

using Quarry::SourceEditor;

namespace {

ExitStatus run(const EditOptions& options) {
  const auto remove = [&options](SourceEditor& editor) {
    const bool isValue = editor.getTree().find(options.path).value != Quarry::SourceTree::NOWHERE;
    return isValue ? editor.removeValue(options.path) : editor.removeItem(options.path);
  };
  return edit(options, options.path, remove);
}

}  // namespace

void addRemoveCommand(CommandTable& commands) {
  const auto options = std::make_shared<EditOptions>();
  Command command =
      commands.add("remove",
                   {"Edit", "Removes an item or a value and changes nothing else",
                    "  quarry remove project.cfg camera/fov\n"
                    "  quarry remove project.cfg 'scene/layer[2]'\n"
                    "  quarry remove project.cfg size#2",
                    "An item goes with all that is in it, and with its lines where nothing else "
                    "stands on them.\n"
                    "Comments beside it stay.\n"
                    "\n"
                    "Exit status: 0 removed, 1 there is no such item, 2 refused or unreadable."},
                   [options](MessageLog&) { return run(*options); });
  options->addTo(command, "The item, or one of its values: size#2");
}

}  // namespace Tool
