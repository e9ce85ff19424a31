#include "Commands.h"
#include "EditOptions.h"
#include "Failure.h"
#include "Texts.h"

#include <memory>

namespace Tool {

using Quarry::SourceEditor;
using Quarry::SourcePlacement;

namespace {

struct AddOptions : EditOptions {
  EditValues values;
  bool isGroup = false;
  bool isCall = false;
  std::string before;
  std::string behind;

  /// Splits the path of the new item into its group's, which is empty for the root, and its name.
  std::string getParent() const {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
  }
  std::string getName() const { return path.substr(path.rfind('/') + 1); }

  SourcePlacement getPlacement() const {
    if (!before.empty()) return SourcePlacement::before(before);
    return behind.empty() ? SourcePlacement::atEnd() : SourcePlacement::behind(behind);
  }
};

ExitStatus run(const AddOptions& options) {
  const auto add = [&options](SourceEditor& editor) {
    const std::string parent = options.getParent();
    const std::string name = options.getName();
    const SourcePlacement placement = options.getPlacement();
    const std::vector<Quarry::SourceLiteral> literals = options.values.getLiterals();
    if (options.isGroup && !literals.empty()) throw Failure(Texts::groupTakesNoValue());
    if (options.isGroup) return editor.addGroup(parent, name, placement);
    if (options.isCall) return editor.addCall(parent, name, literals, placement);
    return editor.addItem(parent, name, literals, placement);
  };
  return edit(options, options.getParent(), add);
}

}  // namespace

void addAddCommand(CommandTable& commands) {
  const auto options = std::make_shared<AddOptions>();
  Command command = commands.add(
      "add",
      {"Edit", "Adds an item and changes nothing else",
       "  quarry add project.cfg camera/fov 39.6\n"
       "  quarry add --call project.cfg scene/blur 4 yes\n"
       "  quarry add --group project.cfg scene/layer\n"
       "  quarry add --before title project.cfg '#revision' 7",
       "The item goes behind the last one of its group, on a line of its own where the group has\n"
       "lines. Without a VALUE it is <empty>. An item of that name may be there already.\n"
       "\n"
       "Exit status: 0 added, 1 there is no such group, 2 refused or unreadable."},
      [options](MessageLog&) { return run(*options); });
  options->addTo(command, "The path of the new item: its group's and its name");
  options->values.addTo(command);
  const CommandOption group = command.addFlag("--group", options->isGroup, "Add an empty group");
  command.addFlag("--call", options->isCall, "Add a call; the values are its arguments")
      .exclude(group);
  const CommandOption before =
      command.addOption("--before", "SIBLING", options->before, "Add it before an item");
  command.addOption("--after", "SIBLING", options->behind, "Add it behind an item").exclude(before);
}

}  // namespace Tool
