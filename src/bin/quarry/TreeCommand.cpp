#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "ItemLine.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <limits>
#include <memory>
#include <string_view>

namespace Tool {

using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr unsigned long BLANKS_A_LEVEL = 4;
constexpr unsigned long FIRST_NUMBERED_DEPTH = 40;  ///< a deeper line would begin off the screen

/// The text parser's sink: prints each item while it is read, so that nothing is kept.
///
/// It listens to the very parser that builds the library's trees, and so shows plain items, calls
/// and keywords in the order of the document, which a walk through the lookups of ParserGroup, with
/// keywords apart, could not. Arrays and templates are only made by code: no document has any.
class TreePrinter {
 public:
  TreePrinter(const std::string& documentText, unsigned long limit, Output& target)
      : text(documentText), depthLimit(limit), output(target), line(target) {}

  void beginItem(const ParserWord& word) {
    line.end();
    if (!isShown()) return;
    indent();
    const bool keyword = word.getType() == ParserWord::WORD_KEYWORD;
    line.begin(keyword ? Style::KEYWORD : Style::NAME, getText(word));
    if (keyword) line.mark(Style::KEYWORD, " (keyword)");
  }

  void beginCall(const ParserWord&) {
    if (isShown()) line.mark(Style::CALL, " (call)");
  }

  void value(const ParserWord& word, ParserValue::Type type) {
    if (isShown()) line.addValue(type, getText(word));
  }

  void emptyTag(const ParserWord&) {}  // an item without values shows it

  void beginGroup(const ParserWord&) {
    if (isShown()) line.addGroup();
    line.end();
    ++depth;
  }

  void beginBracedItem(const ParserWord& word) {
    beginItem(word);
    beginGroup(word);
  }

  void groupLeftOut(const ParserWord&) {}

  void endGroup(const ParserWord*) {
    line.end();
    --depth;
  }

  void endCall(const ParserWord&) {}

  void endDocument(const ParserWord&) { line.end(); }

  /// The source layer has told of it, with its place.
  void warning(Quarry::Diagnostic, const ParserWord&) {}

  /// Has to be called when everything is read.
  void finish() { line.end(); }

 private:
  bool isShown() const { return depth <= depthLimit; }

  std::string_view getText(const ParserWord& word) const {
    return text.substr(word.getStart(), word.getLength());
  }

  void indent() {
    if (depth < FIRST_NUMBERED_DEPTH) {
      output.write(std::string(depth * BLANKS_A_LEVEL, ' '));
    } else {
      output.writeWord(Style::MARK, "[" + std::to_string(depth) + "] ");
    }
  }

  const std::string_view text;
  const unsigned long depthLimit;
  Output& output;
  ItemLine line;
  unsigned long depth = 0;
};

void showTree(const Quarry::SourceDocument& document, unsigned long depthLimit, Output& output) {
  Quarry::ParserWordStream words(document.getText(), document.getVersion());
  TreePrinter printer(document.getText(), depthLimit, output);
  Quarry::TextParser(words, printer, document.getLimits().nestingDepth).parse();
  printer.finish();
}

struct TreeOptions : DocumentOptions {
  ColorChoice color = ColorChoice::AUTO;
  unsigned long depthLimit = std::numeric_limits<unsigned long>::max();
};

/// Groups that are nested too deeply are left out of what is shown.
ExitStatus run(const TreeOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(options.color);
  Quarry::SourceDocument document;
  const bool isRead = options.read(document, options.file);
  warnOf(document);
  if (document.getVersion() > 0.0) showTree(document, options.depthLimit, output);
  output.flush();
  if (!isRead) throw Failure(Texts::cannotRead(options.getShownName()));
  return statusOf(log);
}

}  // namespace

void addTreeCommand(CommandTable& commands) {
  const auto options = std::make_shared<TreeOptions>();
  Command command = commands.add("tree",
                                 {"Look", "Shows the items as a tree, one a line",
                                  "  quarry tree project.cfg\n"
                                  "  quarry tree --depth 0 project.cfg\n"
                                  "  quarry tree --color=always project.cfg | less -R"},
                                 [options](MessageLog& log) { return run(*options, log); });
  options->addTo(command);
  addColor(command, options->color);
  addDepth(command, "Show no more than N levels of nested groups", options->depthLimit);
}

}  // namespace Tool
