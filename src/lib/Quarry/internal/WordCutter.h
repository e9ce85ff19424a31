/// Cuts a document's text into words.
#pragma once

#include "ByteClass.h"
#include "ByteSearch.h"
#include "TextWord.h"
#include "WordClassifier.h"
#include "WordScan.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace Quarry {

/// Cuts words off a text, one at a time, and classifies them.
///
/// Outside quotes a word ends before a delimiter `{ } ( ) , =` (which is a word of its own) and at
/// a blank, a tab or a line break (which belong to no word). A double quote that no backslash
/// precedes begins and ends a stretch, anywhere in a word, in which blanks and delimiters are
/// ordinary bytes. A line break ends even a quoted word: an unclosed quote costs one line.
///
/// Lines count from 1, and CR and LF each end one. The column counts from 0 but is one higher for a
/// word that a blank or a line break ended; messages have always quoted it so.
///
/// Nearly every word shows by its first byte what it will be, and is looked at once: for its end
/// and for what it is. One that turns out otherwise is cut and classified by the general rules.
///
/// The cutter points into the text, which must stay alive and unchanged. Behind the text stands a
/// zero byte, as it does in every string, so that the end need not be asked for at each byte.
class WordCutter {
 public:
  /// @param textBegin where in `source` the text begins, in bytes from 0
  WordCutter(const std::string& source, const double& version, std::size_t textBegin = 0)
      : word(source, version, textBegin),
        begin(source.data() + textBegin),
        end(source.data() + source.size()),
        quickEnd(end - begin > QUICK_ROOM ? end - QUICK_ROOM : begin) {}

  /// Tells whether nothing is left to scan behind the word and the blank that ended it. A text that
  /// ends in more blanks is not exhausted before next() has found no further word.
  bool isExhausted() const {
    if (word.last < quickEnd || end - word.last > 1) return false;
    return word.last == end || (word.first != nullptr && word.isEndedByBlank());
  }

  /// Returns the number of bytes that are left to scan.
  std::size_t getRestLength() const { return static_cast<std::size_t>(end - word.last); }

  /// Returns the next word, or null when there is none. The word is the cutter's and changes with
  /// the next call.
  [[gnu::always_inline]] const TextWord* next() {
    const char* at = skipBlanks(word.last);
    const char first = *at;  // read once: the compiler has to think that the next line changes it
    word.first = at;
    if (at >= quickEnd) return nextOther(at);
    word.last = cut(at, first);
    return &word;
  }

 private:
  /// Where so many bytes are left, the first bytes of blanks and words are looked at without asking
  /// how many there are.
  static constexpr std::ptrdiff_t QUICK_ROOM = 64;

  /// Most words stand behind one blank, and the first of a line behind many.
  [[gnu::always_inline]] const char* skipBlanks(const char* at) {
    while (isByteOf(*at, BYTE_BLANK | BYTE_LINE_BREAK)) {
      const bool isLineBreak = isByteOf(*at++, BYTE_LINE_BREAK);
      if (isLineBreak) {
        ++word.line;
        word.lineBegin = at;
      }
      if (*at != ' ') continue;
      at = isLineBreak && at < quickEnd ? skipIndentation(at) : skipSpaces(at, end);
    }
    return at;
  }

  /// Most lines are indented as the one before. Where that turns out to be so, the processor has
  /// gone on already, without waiting for the number of blanks.
  [[gnu::always_inline]] const char* skipIndentation(const char* at) {
    const char* guess = at + indentation;
    __asm__("" : "+r"(guess));  // the compiler shall not compute it from `spaces` after all
    const unsigned spaces = countSpacesQuickly(at);
    if (spaces == indentation) return guess;
    if (spaces == MOST_SPACES) return skipSpaces(at + spaces, end);
    indentation = spaces;
    return at + spaces;
  }

  /// Sets what the word at `at` is, and returns where it ends.
  [[gnu::always_inline]] const char* cut(const char* at, char first) {
    if (isByteOf(first, BYTE_LETTER)) return cutName(at);
    if (isByteOf(first, BYTE_DIGIT)) return cutNumber(at);
    if (isByteOf(first, BYTE_DELIMITER)) return cutDelimiter(at);
    if (first == '"') return cutString(at);
    if (first == '-' && isByteOf(at[1], BYTE_DIGIT)) return cutNumber(at);
    if (first == '<') return cutEmptyTag(at);
    return first == '_' ? cutName(at) : cutOther(at);
  }

  [[gnu::always_inline]] const char* cutDelimiter(const char* at) {
    word.type = WordClassifier::ofDelimiter(*at);
    return at + 1;
  }

  [[gnu::always_inline]] const char* cutName(const char* at) {
    const char* stop = findNameEndQuickly(at, end);
    if (!isStop(stop)) return cutOther(at);
    word.type = WordClassifier::ofName(at, stop);
    return stop;
  }

  /// What has other bytes than most numbers, as hexadecimal words do, is left to the general rules.
  [[gnu::always_inline]] const char* cutNumber(const char* at) {
    const NumberEnd stop = findNumberEnd(at);
    if (!isStop(stop.at)) return cutOther(at);
    word.type = WordClassifier::ofDecimal(stop.hasFractionMark);
    return stop.at;
  }

  [[gnu::always_inline]] const char* cutString(const char* at) {
    const char* quote = findStringStop(at + 1, end);
    word.hasBackslash = *quote == '\\';
    while (*quote == '\\') {
      quote += quote[1] == '"' ? 2 : 1;
      quote = findStringStop(quote, end);
    }
    if (*quote != '"' || !isStop(quote + 1)) return cutOther(at);
    word.type = ParserWord::WORD_STRING;
    return quote + 1;
  }

  [[gnu::always_inline]] const char* cutEmptyTag(const char* at) {
    constexpr std::string_view TAG = "<empty>";
    const char* stop = at + TAG.size();
    if (std::memcmp(at, TAG.data(), TAG.size()) != 0 || !isStop(stop)) return cutOther(at);
    word.type = ParserWord::WORD_EMPTYTAG;
    return stop;
  }

  static bool isStop(const char* at) {
    return isByteOf(*at, BYTE_BLANK | BYTE_LINE_BREAK | BYTE_DELIMITER);
  }

  /// The next word, which begins at `at`, if there is one. Not inlined: it is for few words and
  /// would burden all.
  [[gnu::noinline]] const TextWord* nextOther(const char* at) {
    word.last = cutOther(at);
    return at != end ? &word : nullptr;
  }

  /// Cuts any word, and none at the end of the text.
  [[gnu::noinline]] const char* cutOther(const char* at) {
    if (at == end) return end;
    if (isByteOf(*at, BYTE_DELIMITER)) return cutDelimiter(at);
    word.hasBackslash = true;  // perhaps
    word.last = *at == '"' ? findQuotedEnd(at) : findEnd(at + 1);
    if (findAnyOf<'\0'>(at, word.last) != word.last) word.seenZeroByte = true;
    word.type = ParserWord::WORD_UNKNOWN;
    word.type = WordClassifier::classify(static_cast<const ParserWord&>(word));
    return word.last;
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

  TextWord word;
  const char* begin;  ///< of the text, not owned
  const char* end;
  const char* quickEnd;      ///< see QUICK_ROOM
  unsigned indentation = 0;  ///< of the line before, in blanks
};

}  // namespace Quarry
