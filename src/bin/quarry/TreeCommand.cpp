#include <Plinth/Console.h>
#include <Quarry/internal/Messages.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>

#include "Commands.h"
#include "Texts.h"

#include <string_view>

namespace Tool {

using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr unsigned long BLANKS_A_LEVEL = 4;
constexpr unsigned long FIRST_NUMBERED_DEPTH = 40;  ///< a deeper line would begin off the screen

const char* getTypeName(ParserValue::Type type) {
  switch (type) {
    case ParserValue::TYPE_BOOL: return "bool";
    case ParserValue::TYPE_INT: return "int";
    case ParserValue::TYPE_DOUBLE: return "double";
    case ParserValue::TYPE_STRING: return "string";
    case ParserValue::TYPE_BINARYDATA: return "binary";
    default: return "group";
  }
}

Style getStyle(ParserValue::Type type) {
  switch (type) {
    case ParserValue::TYPE_BOOL: return Style::BOOL;
    case ParserValue::TYPE_STRING: return Style::STRING;
    case ParserValue::TYPE_BINARYDATA: return Style::BINARY;
    default: return Style::NUMBER;
  }
}

/// The text parser's sink: prints each item while it is read, so that nothing is kept.
///
/// It listens to the very parser that builds the library's trees, and so shows plain items, calls
/// and keywords in the order of the document, which a walk through the lookups of ParserGroup, with
/// keywords apart, could not. Arrays and templates are only made by code: no document has any.
class TreePrinter {
 public:
  TreePrinter(const std::string& documentText, unsigned long limit, Output& target)
      : text(documentText), depthLimit(limit), output(target) {}

  void beginItem(const ParserWord& word) {
    endLine();
    if (!isShown()) return;
    lineIsOpen = true;
    valueType = ParserValue::TYPE_EMPTY;
    indent();
    const bool keyword = word.getType() == ParserWord::WORD_KEYWORD;
    output.writeWord(keyword ? Style::KEYWORD : Style::NAME, getText(word));
    if (keyword) output.writeWord(Style::KEYWORD, " (keyword)");
  }

  void beginCall(const ParserWord&) {
    if (isShown()) output.writeWord(Style::CALL, " (call)");
  }

  /// Values that follow one another with the same type share its name.
  void value(const ParserWord& word, ParserValue::Type type) {
    if (!isShown()) return;
    if (type != valueType) writeType(type);
    output.write(" ");
    output.writeWord(getStyle(type), getText(word));
  }

  void emptyTag(const ParserWord&) {}  // an item without values shows it

  void beginGroup(const ParserWord&) {
    if (isShown()) writeType(ParserValue::TYPE_GROUP);
    endLine();
    ++depth;
  }

  void beginBracedItem(const ParserWord& word) {
    beginItem(word);
    beginGroup(word);
  }

  void endGroup(const ParserWord* word) {
    endLine();
    --depth;
    if (word == nullptr) ++unclosedGroups;
  }

  void endCall(const ParserWord&) {}

  void endDocument(const ParserWord& word) {
    endLine();
    warn(Texts::closesNoGroup(word.getLine(), word.getColumn()));
  }

  void warning(Quarry::Diagnostic diagnostic, const ParserWord& word) {
    warn(Quarry::Messages::parserWarning(diagnostic, word));
  }

  /// Has to be called when everything is read.
  void finish() {
    endLine();
    if (unclosedGroups > 0) warn(Texts::groupsNotClosed(unclosedGroups));
  }

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

  void writeType(ParserValue::Type type) {
    output.write(valueType == ParserValue::TYPE_EMPTY ? ": " : ", ");
    output.writeWord(Style::TYPE, getTypeName(type));
    valueType = type;
  }

  void endLine() {
    if (!lineIsOpen) return;
    if (valueType == ParserValue::TYPE_EMPTY) {
      output.write(": ");
      output.writeWord(Style::TYPE, "empty");
    }
    output.write("\n");
    lineIsOpen = false;
  }

  static void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

  const std::string_view text;
  const unsigned long depthLimit;
  Output& output;
  unsigned long depth = 0;
  unsigned long unclosedGroups = 0;
  bool lineIsOpen = false;
  ParserValue::Type valueType = ParserValue::TYPE_EMPTY;  ///< of the last value; empty for none
};

}  // namespace

void showTree(const Document& document, unsigned long depthLimit, Output& output) {
  const ExpandedText expanded = document.expand();
  Quarry::ParserWordStream words(expanded.text, expanded.version);
  TreePrinter printer(expanded.text, depthLimit, output);
  Quarry::TextParser parser(words, printer);
  parser.parse();
  printer.finish();
}

}  // namespace Tool
