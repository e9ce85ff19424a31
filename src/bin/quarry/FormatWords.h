/// What each word of a document is to the parser.
#pragma once

#include <Quarry/internal/Diagnostic.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>
#include <QuarrySource/SourceDocument.h>

#include <string>
#include <utility>
#include <vector>

namespace Tool {

enum class WordRole {
  NAME,
  VALUE,
  OPERATOR,
  SEPARATOR,
  GROUP_BEGIN,
  GROUP_END,
  ARGUMENTS_BEGIN,
  ARGUMENTS_END,
  DROPPED,      ///< with a warning
  DOCUMENT_END  ///< a brace that closes no group: what is behind it is not read
};

struct FormatWord {
  unsigned long begin;  ///< in the preprocessed text
  unsigned long end;
  bool isUnclosed;  ///< a quote in it is not closed: it ends with its line
  WordRole role;
  unsigned long level;        ///< of indentation, where it begins a line
  unsigned long levelBehind;  ///< of what begins a line behind it
};

/// Stands between the word stream and the parser, as the one's reader and the other's sink. What a
/// word is told of follows it at once.
class WordRecorder {
 public:
  explicit WordRecorder(const Quarry::SourceDocument& source)
      : document(source), version(source.getVersion()), stream(source.getText(), version) {}

  /// Returns the words up to the one that ends the document.
  std::vector<FormatWord> record() {
    Quarry::TextParser(*this, *this, document.getLimits().nestingDepth).parse();
    return std::move(words);
  }

  // --- For the parser ----------------------------------------------------------------------------

  bool isExhausted() const { return stream.isExhausted(); }

  /// A word of which nothing is told is an accepted "=" or ",".
  const Quarry::ParserWord* next() {
    const Quarry::ParserWord* word = stream.next();
    if (word == nullptr) return nullptr;
    const unsigned long begin = word->getStart();
    const unsigned long end = begin + word->getLength();
    const bool isOperator = document.getText()[begin] == '=';
    words.push_back({begin, end, isUnclosed(begin, end),
                     isOperator ? WordRole::OPERATOR : WordRole::SEPARATOR, depth + 1, depth + 1});
    return word;
  }

  // --- What the parser tells ---------------------------------------------------------------------

  void beginItem(const Quarry::ParserWord&) {
    isInCall = false;
    take(WordRole::NAME, depth, depth + 1);
  }
  void value(const Quarry::ParserWord&, Quarry::ParserValue::Type) {
    take(WordRole::VALUE, depth + 1, isInCall ? depth + 1 : depth);
  }
  void emptyTag(const Quarry::ParserWord& word) { value(word, Quarry::ParserValue::TYPE_EMPTY); }
  void beginCall(const Quarry::ParserWord&) {
    isInCall = true;
    take(WordRole::ARGUMENTS_BEGIN, depth, depth + 1);
  }
  void endCall(const Quarry::ParserWord&) {
    isInCall = false;
    take(WordRole::ARGUMENTS_END, depth, depth);
  }
  void beginGroup(const Quarry::ParserWord&) {
    isInCall = false;
    take(WordRole::GROUP_BEGIN, depth, depth + 1);
    ++depth;
  }
  void beginBracedItem(const Quarry::ParserWord& word) { beginGroup(word); }
  void endGroup(const Quarry::ParserWord* word) {
    if (word == nullptr) return;  // the text ends first
    --depth;
    take(WordRole::GROUP_END, depth, depth);
  }
  void endDocument(const Quarry::ParserWord&) { take(WordRole::DOCUMENT_END, 0, 0); }
  void groupLeftOut(const Quarry::ParserWord&) {}  // reading has failed then
  void warning(Quarry::Diagnostic, const Quarry::ParserWord&) {
    take(WordRole::DROPPED, depth, depth);
  }

 private:
  void take(WordRole role, unsigned long level, unsigned long levelBehind) {
    words.back().role = role;
    words.back().level = level;
    words.back().levelBehind = levelBehind;
  }

  /// A quote behind a backslash is none.
  bool isUnclosed(unsigned long begin, unsigned long end) const {
    const std::string& text = document.getText();
    bool isOpen = false;
    for (unsigned long i = begin; i < end; ++i) {
      if (text[i] == '"' && (i == begin || text[i - 1] != '\\')) isOpen = !isOpen;
    }
    return isOpen;
  }

  const Quarry::SourceDocument& document;
  const double version;
  Quarry::ParserWordStream stream;
  std::vector<FormatWord> words;
  unsigned long depth = 0;
  bool isInCall = false;
};

}  // namespace Tool
