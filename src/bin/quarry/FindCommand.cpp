#include <Plinth/Expression.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "ItemDisplay.h"
#include "ItemPaths.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <limits>
#include <memory>

namespace Tool {

using Plinth::Expression;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceDocument;
using Quarry::SourceTree;

namespace {

/// What is looked for.
struct Search {
  std::string name;
  std::string value;
  bool hasValue = false;
  bool inverted = false;  ///< items whose name does not match
  unsigned long depthLimit = std::numeric_limits<unsigned long>::max();  ///< groups around an item
};

Expression compile(const std::string& pattern) {
  Expression expression(pattern);
  if (!expression.isValid()) throw Failure(Texts::badPattern(pattern));
  return expression;
}

/// Decides which items are found.
class Filter {
 public:
  explicit Filter(const Search& wanted)
      : search(wanted),
        name(compile(search.name)),
        value(search.hasValue ? compile(search.value) : Expression()) {}

  bool accepts(const SourceTree& tree, unsigned long index) const {
    const std::string itemName(tree.getName(tree.getItem(index)));
    const bool isNamed = name.match(itemName) != search.inverted;
    return isNamed && (!search.hasValue || hasValue(*copyValues(tree, index)));
  }

 private:
  bool hasValue(const ParserItem& item) const {
    for (unsigned long i = 0; i < item.getValueCount(); ++i) {
      const bool isString = item.getValueType(i) == ParserValue::TYPE_STRING;
      if (value.match(isString ? item.getString(i) : getSpelling(item, i))) return true;
    }
    return false;
  }

  const Search& search;
  const Expression name;
  const Expression value;
};

/// Returns whether something was found.
bool find(const SourceTree& tree, const Search& search, const Filter& filter, Output& output) {
  bool isFound = false;
  ItemLine line(output);
  ItemPaths paths(tree);
  while (paths.next()) {
    const bool isKeyword = tree.getItem(paths.getIndex()).type == ParserItem::ITEM_KEYWORD;
    if (isKeyword || paths.getDepth() >= search.depthLimit) paths.passOverGroup();
    if (isKeyword || !filter.accepts(tree, paths.getIndex())) continue;
    writeItem(line, Style::NAME, paths.getPath(), tree, paths.getIndex());
    isFound = true;
  }
  return isFound;
}

struct FindOptions : SourceOptions {
  std::string file;
  Search search;
  ColorChoice color = ColorChoice::AUTO;
  bool quiet = false;
};

ExitStatus run(const FindOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  const Filter filter(options.search);
  Output output(options.color);
  SourceDocument document;
  options.readWhole(document, options.file);
  const bool isFound = find(SourceTree(document), options.search, filter, output);
  output.flush();
  return isFound ? statusOf(log) : ExitStatus::FINDINGS;
}

}  // namespace

void addFindCommand(CommandTable& commands) {
  const auto options = std::make_shared<FindOptions>();
  Command command = commands.add(
      "find",
      {"Look", "Shows the items whose name matches, at any depth",
       "  quarry find project.cfg '^fov$'\n"
       "  quarry find --depth 0 project.cfg ''\n"
       "  quarry find project.cfg '' --value '\\.png$'\n"
       "  quarry find -q project.cfg camera >/dev/null && echo found",
       "The names of the groups around an item stand before its own: scene/layer[2]/name is in\n"
       "the second layer of the first scene. Paths of more than 1000 bytes begin with '...'.\n"
       "Keywords are passed over.\n"
       "\n"
       "A string is searched for --value without its quotes and escapes, every other value as it\n"
       "is spelled.\n"
       "\n"
       "Exit status: 0 found, 1 nothing found or the document drew warnings, 2 the document\n"
       "cannot be read or PATTERN is no regular expression."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  command
      .addArgument("PATTERN", options->search.name,
                   "A regular expression, found anywhere in a name")
      .require();
  const auto takeValue = [options](const std::string& pattern) {
    options->search.value = pattern;
    options->search.hasValue = true;
  };
  command.addOption("--value", "PATTERN", takeValue,
                    "Show only items with a value in which PATTERN is found");
  command.addFlag("--not", options->search.inverted, "Show the items whose name does not match");
  addQuiet(command, options->quiet);
  options->addTo(command);
  addColor(command, options->color);
  addDepth(command, "Look into no more than N levels of nested groups", options->search.depthLimit);
}

}  // namespace Tool
