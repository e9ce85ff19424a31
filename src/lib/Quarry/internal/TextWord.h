/// One word of a text, as it is cut.
#pragma once

#include <Quarry/ParserWord.h>

#include "ByteClass.h"

#include <cstddef>
#include <string>

namespace Quarry {

/// The word that a WordCutter stands at. It is classified already, and what is rarely asked for is
/// found out when it is asked for; reading a text is much faster with it than with ParserWord, of
/// which it has the operations that the parser needs.
class TextWord {
 public:
  const char* begin() const { return first; }
  const char* end() const { return last; }
  unsigned long getLength() const { return static_cast<unsigned long>(last - first); }

  /// Returns what ParserWord's tests would make of the word, in the parser's order.
  ParserWord::Type getType() const { return type; }

  /// Returns the line, from 1.
  unsigned long getLine() const { return line; }

  /// Returns the column as ParserWord::getColumn() has it.
  unsigned long getColumn() const {
    return static_cast<unsigned long>(first - lineBegin) + (isEndedByBlank() ? 1 : 0);
  }

  /// No text names a template or an array.
  const ParserWord* getTemplateWord() const { return nullptr; }
  unsigned long getArraySize() const { return ParserWord::NO_ARRAY; }

  /// Tells whether the string has to be unescaped.
  bool hasEscapes() const { return hasBackslash && face.resolvesEscapes; }

  /// Tells whether there was a zero byte in this word or in one before it. It ends a word's string
  /// early, so that words have to be read with more care.
  bool hasSeenZeroByte() const { return seenZeroByte; }

  /// The word as messages and rare values need it; good until the next word is cut.
  operator const ParserWord&() const {  // NOLINT(google-explicit-constructor): it is that word
    face.type = type;
    face.start = static_cast<unsigned long>(first - textBegin);
    face.length = getLength();
    face.line = getLine();
    face.column = getColumn();
    return face;
  }

  const char* const textEnd;  ///< bytes up to here may be read

 private:
  friend class WordCutter;

  TextWord(const std::string& text, const double& version, std::size_t begin)
      : textEnd(text.data() + text.size()),
        textBegin(text.data()),
        last(text.data() + begin),
        lineBegin(last),
        face(text, false, version) {}

  /// A delimiter ends of itself. Most words are names, for which that is not asked. At the end of
  /// the text stands a zero byte.
  bool isEndedByBlank() const {
    const bool isDelimiter =
        type != ParserWord::WORD_IDENTIFIER && isByteOf(*first, BYTE_DELIMITER);
    return !isDelimiter && isByteOf(*last, BYTE_BLANK | BYTE_LINE_BREAK);
  }

  // The ends of the word do not lie side by side: the compiler would read both at once, soon after
  // each was written, and the processor would wait for them.

  const char* const textBegin;
  const char* first = nullptr;  ///< null before the first word
  ParserWord::Type type = ParserWord::WORD_UNKNOWN;
  bool hasBackslash = false;
  bool seenZeroByte = false;
  const char* last;
  unsigned long line = 1;
  const char* lineBegin;
  mutable ParserWord face;
};

}  // namespace Quarry
