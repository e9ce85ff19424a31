#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "ItemDisplay.h"
#include "ItemJson.h"
#include "JsonText.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"
#include "TreeDifference.h"

#include <memory>

namespace Tool {

using Quarry::SourceDocument;
using Quarry::SourceTree;

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

/// Writes a line for what was, and one for what is.
class DifferenceLines : public DifferenceListener {
 public:
  DifferenceLines(const SourceTree& first, const SourceTree& second, Output& target)
      : before(first), after(second), output(target), line(target) {}

  void add(const ItemDifference& difference) override {
    if (difference.before != NOWHERE)
      addLine(Style::REMOVED, "- ", difference.path, before, difference.before);
    if (difference.after != NOWHERE)
      addLine(Style::ADDED, "+ ", difference.path, after, difference.after);
  }

 private:
  void addLine(Style style, const char* sign, const std::string& path, const SourceTree& tree,
               unsigned long item) {
    output.writeWord(style, sign);
    writeItem(line, style, path, tree, item);
  }

  const SourceTree& before;
  const SourceTree& after;
  Output& output;
  ItemLine line;
};

class DifferenceJson : public DifferenceListener {
 public:
  DifferenceJson(const SourceTree& first, const SourceTree& second, Output& target)
      : before(first), after(second), output(target) {}

  void add(const ItemDifference& difference) override {
    std::string text = isEmpty ? "[\n  {\"path\":" : ",\n  {\"path\":";
    appendJsonBytes(text, difference.path);
    text += ",\"change\":\"";
    text += difference.before == NOWHERE  ? "added"
            : difference.after == NOWHERE ? "removed"
                                          : "changed";
    text += '"';
    addSide(text, "before", before, difference.before);
    addSide(text, "after", after, difference.after);
    output.writeText(text + "}");
    isEmpty = false;
  }

  /// Has to be called behind the last difference.
  void finish() { output.write(isEmpty ? "[]\n" : "\n]\n"); }

 private:
  static void addSide(std::string& text, const std::string& name, const SourceTree& tree,
                      unsigned long item) {
    if (item == NOWHERE) return;
    text += ",\"" + name + "\":{";
    appendItemJson(text, tree, item);
    text += '}';
  }

  const SourceTree& before;
  const SourceTree& after;
  Output& output;
  bool isEmpty = true;
};

struct DiffOptions : SourceOptions {
  std::string before;
  std::string after;
  bool isJson = false;
  ColorChoice color = ColorChoice::AUTO;
  bool quiet = false;
};

bool compare(const SourceTree& before, const SourceTree& after, bool isJson, Output& output) {
  if (!isJson) {
    DifferenceLines lines(before, after, output);
    return compareTrees(before, after, lines);
  }
  DifferenceJson json(before, after, output);
  const bool isDifferent = compareTrees(before, after, json);
  json.finish();
  return isDifferent;
}

ExitStatus run(const DiffOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  if (options.before == "-" && options.after == "-") throw Failure(Texts::standardInputTwice());
  Output output(options.color);
  SourceDocument before;
  SourceDocument after;
  options.readWhole(before, options.before);
  options.readWhole(after, options.after);
  const bool isDifferent = compare(SourceTree(before), SourceTree(after), options.isJson, output);
  output.flush();
  return isDifferent ? ExitStatus::FINDINGS : ExitStatus::FINE;
}

}  // namespace

void addDiffCommand(CommandTable& commands) {
  const auto options = std::make_shared<DiffOptions>();
  Command command = commands.add(
      "diff",
      {"Look", "Shows the items in which two documents differ",
       "  quarry diff old.cfg new.cfg\n"
       "  git show HEAD:project.cfg | quarry diff - project.cfg\n"
       "  quarry diff --json old.cfg new.cfg | jq -r '.[].path'\n"
       "  quarry diff -q old.cfg new.cfg >/dev/null && echo same",
       "'-' and '+' stand before an item of the first and of the second document; one path with\n"
       "both has changed. A group that was added or removed is one line.\n"
       "\n"
       "Trees are compared, not texts: layout, comments, includes and how a number is spelled "
       "make\n"
       "no difference, and neither does the order of items with different names. Items stand for\n"
       "each other that have the same name and are the n-th of that name in their group.\n"
       "\n"
       "Exit status: 0 the documents are the same, 1 they differ, 2 one cannot be read."},
      [options](MessageLog& log) { return run(*options, log); });
  command.addArgument("A", options->before, "The first document; - for standard input").require();
  command.addArgument("B", options->after, "The second document; - for standard input").require();
  command.addFlag("--json", options->isJson, "Show an array of paths, changes and values");
  addQuiet(command, options->quiet);
  options->addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
