#include <Plinth/Console.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "ItemDisplay.h"
#include "ItemJson.h"
#include "ItemPaths.h"
#include "JsonText.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <limits>
#include <memory>

namespace Tool {

using Quarry::ParserItem;
using Quarry::SourceDocument;
using Quarry::SourceTarget;
using Quarry::SourceTree;

namespace {

enum class Layout { LINES, PATHS, JSON };

struct ListOptions : SourceOptions {
  std::string file;
  std::string path;
  bool isNull = false;
  bool isJson = false;
  unsigned long depthLimit = std::numeric_limits<unsigned long>::max();
  ColorChoice color = ColorChoice::AUTO;
  bool quiet = false;

  Layout getLayout() const {
    if (isJson) return Layout::JSON;
    return isNull ? Layout::PATHS : Layout::LINES;
  }
};

/// Writes items one behind the other, in the way that was asked for.
class Listing {
 public:
  Listing(const SourceTree& shown, Layout chosen, Output& target)
      : tree(shown), layout(chosen), output(target), line(target) {}

  void add(unsigned long index, const std::string& path) {
    switch (layout) {
      case Layout::LINES: addLine(index, path); break;
      case Layout::PATHS: output.write(path + '\0'); break;
      case Layout::JSON: addJson(index, path); break;
    }
    isEmpty = false;
  }

  /// Has to be called behind the last item.
  void finish() {
    if (layout == Layout::JSON) output.write(isEmpty ? "[]\n" : "\n]\n");
  }

 private:
  void addLine(unsigned long index, const std::string& path) {
    const bool isKeyword = tree.getItem(index).type == ParserItem::ITEM_KEYWORD;
    writeItem(line, isKeyword ? Style::KEYWORD : Style::NAME, path, tree, index);
  }

  void addJson(unsigned long index, const std::string& path) {
    std::string text = isEmpty ? "[\n  {\"path\":" : ",\n  {\"path\":";
    appendJsonBytes(text, path);
    text += ',';
    appendItemJson(text, tree, index);
    text += '}';
    output.writeText(text);
  }

  const SourceTree& tree;
  const Layout layout;
  Output& output;
  ItemLine line;
  bool isEmpty = true;
};

void list(const SourceTree& tree, unsigned long parent, unsigned long depthLimit,
          Listing& listing) {
  ItemPaths paths(tree, parent);
  while (paths.next()) {
    listing.add(paths.getIndex(), paths.getPath());
    if (paths.getDepth() >= depthLimit) paths.passOverGroup();
  }
}

/// As `ls` does with folders and files: the items of a group, or the item that has none.
bool list(const SourceTree& tree, const ListOptions& options, Output& output) {
  const SourceTarget target = tree.find(options.path);
  if (!target.isFound()) {
    Plinth::console.warning(Texts::noSuchItem(target.problem), std::string());
    return false;
  }
  if (target.value != SourceTree::NOWHERE) throw Failure(Texts::isValue(options.path));
  Listing listing(tree, options.getLayout(), output);
  const bool isGroup = target.item == SourceTree::NOWHERE || tree.getItem(target.item).hasGroup();
  if (isGroup) {
    list(tree, target.item, options.depthLimit, listing);
  } else {
    listing.add(target.item, tree.getPath(target.item));
  }
  listing.finish();
  return true;
}

ExitStatus run(const ListOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(options.color);
  SourceDocument document;
  options.readWhole(document, options.file);
  const bool isFound = list(SourceTree(document), options, output);
  output.flush();
  return isFound ? statusOf(log) : ExitStatus::FINDINGS;
}

}  // namespace

void addListCommand(CommandTable& commands) {
  const auto options = std::make_shared<ListOptions>();
  Command command = commands.add(
      "list",
      {"Look", "Shows the items with their paths, one a line",
       "  quarry list project.cfg\n"
       "  quarry list --depth 0 project.cfg scene/layer[2]\n"
       "  quarry list --null project.cfg | xargs -0 -n 1 quarry get project.cfg\n"
       "  quarry list --json project.cfg | jq -r '.[] | select(.kind == \"call\") | .path'",
       "PATH is the group whose items are shown, scene/layer[2] for the second layer of the first\n"
       "scene; without it, those of the document are. An item without a group is shown itself.\n"
       "Paths of more than 1000 bytes begin with '...', unless --null or --json is given.\n"
       "\n"
       "Exit status: 0 fine, 1 there is no such item or the document drew warnings, 2 the "
       "document\n"
       "cannot be read."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  command.addArgument("PATH", options->path, "The group whose items are shown");
  const CommandOption null = command.addFlag("-0,--null", options->isNull,
                                             "Show paths only, each with a zero byte behind it");
  command.addFlag("--json", options->isJson, "Show an array of paths, kinds and values")
      .exclude(null);
  addDepth(command, "Look into no more than N levels of nested groups", options->depthLimit);
  addQuiet(command, options->quiet);
  options->addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
