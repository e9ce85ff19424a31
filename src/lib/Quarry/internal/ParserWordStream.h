/// Cuts a document's text into words.
#pragma once

#include <Quarry/ParserWord.h>

#include "ByteClass.h"

#include <cstring>
#include <string>

namespace Quarry {

/// The source of words of one parse: one word at a time, with line and column.
///
/// Outside quotes a word ends before a delimiter `{ } ( ) , =` (which is a word of its own) and at
/// a blank, a tab or a line break (which belong to no word). A double quote that no backslash
/// precedes begins and ends a stretch, anywhere in a word, in which blanks and delimiters are
/// ordinary bytes. A line break ends even a quoted word: an unclosed quote costs one line.
///
/// Lines count from 1, and CR and LF each end one. The column counts from 0 but is one higher for a
/// word that a blank or a line break ended; messages have always quoted it so.
///
/// The stream points into the text, which must stay alive and unchanged.
class ParserWordStream {
 public:
  ParserWordStream(const std::string& source, const double& version)
      : word(source, false, version), text(source.data()), size(source.size()) {}

  /// Tells whether there are zero bytes anywhere in the text. They end a word's string early.
  bool hasZeroBytes() const { return size > 0 && std::memchr(text, 0, size) != nullptr; }

  /// Tells whether nothing is left to scan. A text that ends in blanks is not exhausted before
  /// next() has found no further word.
  bool isExhausted() const { return position >= size; }

  /// Returns the next word, or null when there is none. The word is the stream's and is aimed anew
  /// by the next call.
  const ParserWord* next() {
    skipBlanks();
    if (isExhausted()) return nullptr;
    const unsigned long start = position;
    if (isByteOf(text[start], BYTE_DELIMITER)) {
      ++position;
      return aim(start, position, 0);
    }
    const unsigned long end = findEnd(start);
    const bool endedByBlank = end < size && isByteOf(text[end], BYTE_BLANK | BYTE_LINE_BREAK);
    aim(start, end, endedByBlank ? 1 : 0);
    position = end;
    if (endedByBlank) passBlank();
    return &word;
  }

 private:
  void skipBlanks() {
    while (position < size && isByteOf(text[position], BYTE_BLANK | BYTE_LINE_BREAK))
      passBlank();
  }

  void passBlank() {
    const bool breaksLine = isByteOf(text[position], BYTE_LINE_BREAK);
    ++position;
    if (breaksLine) {
      ++line;
      lineStart = position;
    }
  }

  /// Returns the offset behind the last byte of the word that begins at `start`.
  unsigned long findEnd(unsigned long start) const {
    unsigned long cursor = start;
    while (cursor < size) {
      cursor = find(cursor, BYTE_BLANK | BYTE_LINE_BREAK | BYTE_DELIMITER | BYTE_QUOTE);
      if (cursor == size || !isByteOf(text[cursor], BYTE_QUOTE)) return cursor;
      if (isQuoteAt(cursor)) {
        cursor = findClosingQuote(cursor + 1);
        if (cursor == size || !isByteOf(text[cursor], BYTE_QUOTE)) return cursor;
      }
      ++cursor;
    }
    return cursor;
  }

  /// Returns the offset of the closing quote, of the line break before it, or of the text's end.
  unsigned long findClosingQuote(unsigned long cursor) const {
    cursor = find(cursor, BYTE_QUOTE | BYTE_LINE_BREAK);
    while (cursor < size && isByteOf(text[cursor], BYTE_QUOTE) && !isQuoteAt(cursor)) {
      cursor = find(cursor + 1, BYTE_QUOTE | BYTE_LINE_BREAK);
    }
    return cursor;
  }

  unsigned long find(unsigned long cursor, int classes) const {
    while (cursor < size && !isByteOf(text[cursor], classes))
      ++cursor;
    return cursor;
  }

  /// A quote counts unless the byte before it in the text, whatever it is, is a backslash: an
  /// escaped backslash before the closing quote leaves the quote open.
  bool isQuoteAt(unsigned long cursor) const { return cursor == 0 || text[cursor - 1] != '\\'; }

  const ParserWord* aim(unsigned long start, unsigned long end, unsigned long extraColumn) {
    word.type = ParserWord::WORD_UNKNOWN;
    word.start = start;
    word.length = end - start;
    word.line = line;
    word.column = start - lineStart + extraColumn;
    return &word;
  }

  ParserWord word;
  const char* text;             ///< not owned
  unsigned long size;           ///< of the text, in bytes
  unsigned long position = 0;   ///< where the next scan begins
  unsigned long line = 1;       ///< the line of `position`
  unsigned long lineStart = 0;  ///< the offset of that line's first byte
};

}  // namespace Quarry
