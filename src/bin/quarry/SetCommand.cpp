#include "Commands.h"
#include "EditOptions.h"
#include "Failure.h"
#include "Texts.h"

#include <memory>

namespace Tool {

using Quarry::SourceEditor;

namespace {

struct SetOptions : EditOptions {
  EditValues values;
};

/// A path that ends in the number of a value takes one value; all values of an item are set
/// otherwise.
ExitStatus run(const SetOptions& options) {
  const auto set = [&options](SourceEditor& editor) {
    const bool isValue = editor.getTree().find(options.path).value != Quarry::SourceTree::NOWHERE;
    const std::vector<Quarry::SourceLiteral> literals = options.values.getLiterals();
    const bool isOne = isValue && literals.size() == 1;
    if (isOne) return editor.setValue(options.path, literals.front());
    if (isValue) throw Failure(Texts::oneValueIsNeeded());
    return editor.setValues(options.path, literals);
  };
  return edit(options, options.path, set);
}

}  // namespace

void addSetCommand(CommandTable& commands) {
  const auto options = std::make_shared<SetOptions>();
  Command command = commands.add(
      "set",
      {"Edit", "Sets the values of an item and changes nothing else",
       "  quarry set project.cfg title 'Harbor, second cut'\n"
       "  quarry set project.cfg size 1280 720\n"
       "  quarry set project.cfg 'scene/layer[2]/position#1' -3.5\n"
       "  quarry set --string project.cfg version 12\n"
       "  quarry set - title Harbor <project.cfg >project-new.cfg",
       "Comments, layout, includes and the spelling of everything else stay, in whichever file "
       "the\n"
       "item stands. Without a VALUE the item becomes <empty>. What would not read back as asked\n"
       "is refused.\n"
       "\n"
       "Exit status: 0 set, 1 there is no such item, 2 refused or unreadable."},
      [options](MessageLog&) { return run(*options); });
  options->addTo(command, "The item, or one of its values: scene/layer[2]/position#1");
  options->values.addTo(command);
}

}  // namespace Tool
