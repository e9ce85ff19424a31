/// The rules by which a text is cut into words, as plainly as they can be written.
#pragma once

#include <Quarry/ParserWord.h>

#include <cstring>
#include <string>

namespace TestSupport {

/// Cuts a text into words byte by byte.
class ByteByByte {
 public:
  explicit ByteByByte(const std::string& source) : text(source) {}

  unsigned long start = 0;
  unsigned long length = 0;  ///< 0 when no word was left
  unsigned long wordLine = 0;
  unsigned long wordColumn = 0;

  bool isExhausted() const { return position >= text.size(); }

  void next() {
    length = 0;
    for (unsigned long cursor = position; cursor < text.size(); ++cursor) {
      if (takeByte(cursor)) return;
    }
    position = text.size();
    if (length > 0) place(column - length);
  }

 private:
  /// Returns whether a word has ended.
  bool takeByte(unsigned long cursor) {
    const char byte = text[cursor];
    ++column;
    if (!isInQuote && isOneOf(byte, "{}(),=")) return takeDelimiter(cursor);
    const bool isBreak = isOneOf(byte, "\r\n");
    if (isBreak || (!isInQuote && isOneOf(byte, " \t"))) return takeBlank(cursor, isBreak);
    if (byte == '"' && (cursor == 0 || text[cursor - 1] != '\\')) isInQuote = !isInQuote;
    if (length == 0) start = cursor;
    ++length;
    return false;
  }

  /// A delimiter is a word, or left for the next one.
  bool takeDelimiter(unsigned long cursor) {
    if (length > 0) {
      --column;
      place(column - length);
      position = cursor;
    } else {
      start = cursor;
      length = 1;
      place(column - 1);
      position = cursor + 1;
    }
    return true;
  }

  bool takeBlank(unsigned long cursor, bool isBreak) {
    const bool hasEnded = length > 0;
    if (hasEnded) place(column - length);
    if (hasEnded) position = cursor + 1;
    if (isBreak) {
      isInQuote = false;
      ++line;
      column = 0;
    }
    return hasEnded;
  }

  void place(unsigned long newColumn) {
    wordLine = line;
    wordColumn = newColumn;
  }

  static bool isOneOf(char byte, const char* bytes) {
    return byte != 0 && std::strchr(bytes, byte) != nullptr;
  }

  const std::string& text;
  unsigned long position = 0;
  unsigned long line = 1;
  unsigned long column = 0;
  bool isInQuote = false;
};

/// Tells whether a word is the one that was cut byte by byte.
inline bool isSame(const Quarry::ParserWord* word, const ByteByByte& expected) {
  if (word == nullptr || expected.length == 0) return word == nullptr && expected.length == 0;
  return word->getStart() == expected.start && word->getLength() == expected.length &&
         word->getLine() == expected.wordLine && word->getColumn() == expected.wordColumn &&
         word->getType() == Quarry::ParserWord::WORD_UNKNOWN;
}

}  // namespace TestSupport
