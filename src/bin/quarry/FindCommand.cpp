#include <Plinth/Expression.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "ItemLine.h"
#include "Texts.h"

#include <limits>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tool {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;
using Quarry::ParserValue;

namespace {

/// What is looked for.
struct Search {
  std::string pattern;
  bool inverted = false;  ///< items whose name does not match
  unsigned long depthLimit = std::numeric_limits<unsigned long>::max();  ///< groups around an item
};

constexpr std::size_t LONGEST_PATH = 1000;  ///< longer ones are shown by their end

/// Returns the value as it is spelled in a document.
std::string getSpelling(const ParserItem& item, unsigned long index) {
  std::string text;
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_STRING:
      ParserValue(item.getString(index)).getText(text, false, 1);
      return text;
    case ParserValue::TYPE_BINARYDATA:
      ParserValue(item.getBinaryData(index), item.getBinaryDataSize(index)).getText(text, false, 1);
      return text;
    default: return item.getWord(index);
  }
}

/// Walks through a tree in the order of the document.
///
/// The groups around the current item stand in a list, and their path in one text that grows and
/// shrinks with it: the depth takes memory, not stack, and only what is found has its path copied.
class Finder {
 public:
  Finder(const Plinth::Expression& wanted, const Search& what, Output& target)
      : pattern(wanted), search(what), line(target) {}

  /// Returns whether something was found.
  bool find(const ParserGroup& root) {
    openGroup(root, 0);
    while (!levels.empty())
      step();
    return found;
  }

 private:
  /// A group that is walked through.
  struct Level {
    Plinth::Locator<ParserItem*> items;
    Plinth::Locator<ParserItem*> hits;  ///< those of the items that are looked for
    std::unordered_map<std::string_view, unsigned long> counts;  ///< of the names passed so far
    std::size_t pathLength;                                      ///< of the group's own path
    unsigned long depth;                                         ///< of the items
  };

  void openGroup(const ParserGroup& group, unsigned long depth) {
    const ParserItems all = group.getItems(std::string());
    const ParserItems hits =
        search.inverted ? all.getNotMatching(pattern) : all.getMatching(pattern);
    levels.push_back({all.getLocator(), hits.getLocator(), {}, path.size(), depth});
  }

  void step() {
    Level& level = levels.back();
    if (!level.items.isValid()) return levels.pop_back();
    const ParserItem& item = *level.items.getCurrent();
    level.items.progress();
    enter(level, item);
    if (level.hits.getCurrent() == &item) {
      level.hits.progress();
      show(item);
    }
    if (level.depth < search.depthLimit) openGroups(item, level.depth + 1);
  }

  /// Makes `path` the item's. No name has a '/' or '#' in it.
  void enter(Level& level, const ParserItem& item) {
    const unsigned long number = ++level.counts[item.getName()];
    path.resize(level.pathLength);
    path += item.getName();
    if (number > 1) path += "#" + std::to_string(number);
  }

  /// The last group is opened first, so that the first one is walked through first.
  void openGroups(const ParserItem& item, unsigned long depth) {
    path += '/';
    for (unsigned long i = item.getValueCount(); i > 0; --i) {
      if (item.isValueGroup(i - 1)) openGroup(*item.getGroup(i - 1), depth);
    }
  }

  void show(const ParserItem& item) {
    found = true;
    line.begin(Style::NAME, getShownPath());
    if (item.getType() == ParserItem::ITEM_CALL) line.mark(Style::CALL, " (call)");
    for (unsigned long i = 0; i < item.getValueCount(); ++i) {
      if (item.isValueGroup(i)) {
        line.addGroup();
      } else {
        line.addValue(item.getValueType(i), getSpelling(item, i));
      }
    }
    line.end();
  }

  /// Whole names, and the item's own name in any case.
  std::string getShownPath() const {
    if (path.size() <= LONGEST_PATH) return path;
    std::size_t cut = path.find('/', path.size() - LONGEST_PATH);
    if (cut == std::string::npos) cut = path.rfind('/');
    return cut == std::string::npos ? path : "..." + path.substr(cut);
  }

  const Plinth::Expression& pattern;
  const Search& search;
  ItemLine line;
  std::vector<Level> levels;
  std::string path;
  bool found = false;
};

/// Returns whether something was found.
bool find(const Document& document, const Search& search, Output& output) {
  const Plinth::Expression pattern(search.pattern);
  if (!pattern.isValid()) throw Failure(Texts::badPattern(search.pattern));
  Quarry::ParserFile file;
  document.read(file);
  return Finder(pattern, search, output).find(file.getRoot());
}

struct FindOptions : DocumentOptions {
  Search search;
  ColorChoice color = ColorChoice::AUTO;
};

ExitStatus run(const FindOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(options.color);
  const Document document(options, log);
  const bool isFound = find(document, options.search, output);
  output.flush();
  return isFound ? statusOf(log) : ExitStatus::FINDINGS;
}

}  // namespace

void addFindCommand(CommandTable& commands) {
  const auto options = std::make_shared<FindOptions>();
  CLI::App* command = commands.add(
      "find",
      {"Look", "Shows the items whose name matches, at any depth",
       "  quarry find project.cfg '^fov$'\n"
       "  quarry find --depth 0 project.cfg ''\n"
       "  quarry find -q project.cfg camera >/dev/null && echo found",
       "The names of the groups around an item stand before its own: scene/layer#2/name is in\n"
       "the second layer of the first scene. Paths of more than 1000 bytes begin with '...'.\n"
       "Keywords are passed over.\n"
       "\n"
       "Exit status: 0 found, 1 nothing found or the document drew warnings, 2 the document\n"
       "cannot be read or PATTERN is no regular expression."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  command
      ->add_option("PATTERN", options->search.pattern,
                   "A regular expression, found anywhere in a name")
      ->required()
      ->option_text(" ");
  command->add_flag("--not", options->search.inverted, "Show the items whose name does not match");
  addQuiet(command, options->quiet);
  addSearchPaths(command, options->searchPaths);
  addUnlimited(command, options->isUnlimited);
  addColor(command, options->color);
  addDepth(command, "Look into no more than N levels of nested groups", options->search.depthLimit);
}

}  // namespace Tool
