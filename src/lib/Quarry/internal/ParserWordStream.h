/// Cuts a document's text into words.
#pragma once

#include <Quarry/ParserWord.h>

#include "ByteClass.h"
#include "ByteSearch.h"
#include "WordScan.h"

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
      : word(source, false, version),
        begin(source.data()),
        end(begin + source.size()),
        position(begin),
        lineBegin(begin) {}

  /// Tells whether there are zero bytes anywhere in the text. They end a word's string early.
  bool hasZeroBytes() const { return findAnyOf<'\0'>(begin, end) != end; }

  /// Tells whether nothing is left to scan. A text that ends in blanks is not exhausted before
  /// next() has found no further word.
  bool isExhausted() const { return position == end; }

  /// Returns the next word, or null when there is none. The word is the stream's and is aimed anew
  /// by the next call.
  const ParserWord* next() {
    skipBlanks();
    if (isExhausted()) return nullptr;
    const char* start = position;
    if (isByteOf(*start, BYTE_DELIMITER)) {
      position = start + 1;
      return aim(start, position, 0);
    }
    position = *start == '"' ? findQuotedEnd(start) : findEnd(start + 1);
    const bool endedByBlank = position != end && isByteOf(*position, BYTE_BLANK | BYTE_LINE_BREAK);
    aim(start, position, endedByBlank ? 1 : 0);
    if (endedByBlank) passBlank();
    return &word;
  }

 private:
  /// Most words stand behind one blank, and the first of a line behind many.
  void skipBlanks() {
    while (position != end && isByteOf(*position, BYTE_BLANK | BYTE_LINE_BREAK)) {
      passBlank();
      position = skipSpaces(position, end);
    }
  }

  void passBlank() {
    const char blank = *position++;
    if (blank == ' ' || blank == '\t') return;
    ++line;
    lineBegin = position;
  }

  /// Returns where the word ends of which nothing up to `at` is a stop.
  const char* findEnd(const char* at) const {
    at = findWordStop(at, end);
    return at == end || *at != '"' ? at : findQuotedEnd(at);
  }

  /// Returns where the word ends that has a double quote at `at`.
  const char* findQuotedEnd(const char* at) const {
    while (at != end && *at == '"') {
      if (isQuoteAt(at)) {
        at = findClosingQuote(at + 1);
        if (at == end || *at != '"') return at;
      }
      at = findWordStop(at + 1, end);
    }
    return at;
  }

  /// Returns the closing quote, the line break before it, or the text's end.
  const char* findClosingQuote(const char* at) const {
    at = findAnyOf<'"', '\n', '\r'>(at, end);
    while (at != end && *at == '"' && !isQuoteAt(at))
      at = findAnyOf<'"', '\n', '\r'>(at + 1, end);
    return at;
  }

  /// A quote counts unless the byte before it in the text, whatever it is, is a backslash: an
  /// escaped backslash before the closing quote leaves the quote open.
  bool isQuoteAt(const char* at) const { return at == begin || at[-1] != '\\'; }

  const ParserWord* aim(const char* wordBegin, const char* wordEnd, unsigned long extraColumn) {
    word.type = ParserWord::WORD_UNKNOWN;
    word.start = static_cast<unsigned long>(wordBegin - begin);
    word.length = static_cast<unsigned long>(wordEnd - wordBegin);
    word.line = line;
    word.column = static_cast<unsigned long>(wordBegin - lineBegin) + extraColumn;
    return &word;
  }

  ParserWord word;
  const char* begin;  ///< of the text, not owned
  const char* end;
  const char* position;    ///< where the next scan begins
  const char* lineBegin;   ///< the first byte of the line of `position`
  unsigned long line = 1;  ///< the line of `position`
};

}  // namespace Quarry
