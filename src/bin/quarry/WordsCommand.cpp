#include <Quarry/internal/ParserWordStream.h>

#include "CommandTable.h"
#include "Commands.h"
#include "SharedOptions.h"
#include "SourceOptions.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace Tool {

using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr std::size_t PLACE_WIDTH = 10;
constexpr std::size_t KIND_WIDTH = 12;

struct Kind {
  const char* name;
  Style style;
};

Kind getValueKind(ParserValue::Type type) {
  switch (type) {
    case ParserValue::TYPE_BOOL: return {"bool", Style::BOOL};
    case ParserValue::TYPE_INT: return {"int", Style::NUMBER};
    case ParserValue::TYPE_DOUBLE: return {"double", Style::NUMBER};
    case ParserValue::TYPE_STRING: return {"string", Style::STRING};
    case ParserValue::TYPE_BINARYDATA: return {"binary data", Style::BINARY};
    default: return {"empty tag", Style::MARK};
  }
}

/// Asks in the order of the text parser: each test fixes the word's kind.
Kind classify(const ParserWord& word) {
  ParserValue::Type type = ParserValue::TYPE_EMPTY;
  if (word.isIdentifier()) return {"identifier", Style::NAME};
  if (word.isKeyword()) return {"keyword", Style::KEYWORD};
  if (word.isOperator()) return {"operator", Style::MARK};
  if (word.isSeparator()) return {"separator", Style::MARK};
  if (word.isValue(type)) return getValueKind(type);
  if (word == "{" || word == "}") return {"brace", Style::MARK};
  if (word == "(" || word == ")") return {"parenthesis", Style::MARK};
  return {"unknown", Style::ODD};
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size() + 1, width), ' ');
  return text;
}

void showWords(const Quarry::SourceDocument& document, Output& output) {
  const std::string_view text = document.getText();
  Quarry::ParserWordStream words(document.getText(), document.getVersion());
  while (const ParserWord* word = words.next()) {
    const Kind kind = classify(*word);
    const std::string place =
        std::to_string(word->getLine()) + ":" + std::to_string(word->getColumn());
    output.write(padded(place, PLACE_WIDTH));
    output.writeWord(Style::TYPE, padded(kind.name, KIND_WIDTH));
    output.writeWord(kind.style, text.substr(word->getStart(), word->getLength()));
    output.write("\n");
  }
}

struct WordsOptions : DocumentOptions {
  ColorChoice color = ColorChoice::AUTO;
};

ExitStatus run(const WordsOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(options.color);
  Quarry::SourceDocument document;
  options.expand(document);
  showWords(document, output);
  output.flush();
  return statusOf(log);
}

}  // namespace

void addWordsCommand(CommandTable& commands) {
  const auto options = std::make_shared<WordsOptions>();
  Command command =
      commands.add("words",
                   {"Look", "Shows the words of the text: line:column, kind and spelling",
                    "  quarry words project.cfg\n"
                    "  echo 'size 1920 1080' | quarry words -"},
                   [options](MessageLog& log) { return run(*options, log); });
  options->addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
