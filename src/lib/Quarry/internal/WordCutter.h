/// Cuts a document's text into words.
#pragma once

#include "ByteClass.h"
#include "ByteSearch.h"
#include "Comments.h"
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
/// A text may still have its comments. It is cut, and lines and columns count, as if they had been
/// removed before.
///
/// The cutter points into the text, which must stay alive and unchanged. Behind the text stands a
/// zero byte, as it does in every string, so that the end need not be asked for at each byte.
class WordCutter {
 public:
  /// @param textBegin where in `source` the text begins, in bytes from 0
  WordCutter(const std::string& source, const double& version, std::size_t textBegin = 0)
      : word(source, version, textBegin), begin(source.data() + textBegin) {
    setEnd(source.data() + source.size());
  }

  /// @param comments whether the text still has its comments. Then it has no directives and no zero
  ///        bytes, and changes while it is cut.
  WordCutter(std::string& source, const double& version, std::size_t textBegin, Comments comments)
      : WordCutter(source, version, textBegin) {
    if (comments == Comments::LEFT) commentedText = &source;
  }

  /// Tells whether nothing is left to scan behind the word and the blank that ended it. A text that
  /// ends in more blanks is not exhausted before next() has found no further word.
  bool isExhausted() const {
    if (word.last < quickEnd || end - word.last > 1) {
      return word.last[1] == '/' && isExhaustedBehindComments();
    }
    return word.last == end || isExhaustedBehindOneByte();
  }

  /// Returns where the last word ends.
  const char* getPlace() const { return word.last; }

  /// Returns the number of bytes that are left to scan.
  std::size_t getRestLength() const { return static_cast<std::size_t>(end - word.last); }

  /// Returns the next word, or null when there is none. The word is the cutter's and changes with
  /// the next call.
  const TextWord* next() { return next(getPlace()); }

  /// Does the same for who has kept the place: to get it back from memory, where it has only just
  /// been put, takes up to a sixth of the time that there is for a word.
  /// @param place getPlace()
  [[gnu::always_inline]] const TextWord* next(const char* place) {
    const char* at = skipBlanks(place);
    const char first = *at;  // read once: the compiler has to think that the next line changes it
    word.first = at;
    return at < quickEnd ? cut(at, first) : cutOther(at);
  }

 private:
  /// Where so many bytes are left, the first bytes of blanks and words are looked at without asking
  /// how many there are.
  static constexpr std::ptrdiff_t QUICK_ROOM = 64;

  /// Most words stand behind one blank, and the first of a line behind many.
  [[gnu::always_inline]] const char* skipBlanks(const char* at) {
    if (*at == ' ') at = skipSpacesBehind(at);
    while (isByteOf(*at, BYTE_BLANK | BYTE_LINE_BREAK)) {
      at = isByteOf(*at, BYTE_LINE_BREAK) ? beginLine(at + 1) : skipSpacesBehind(at);
    }
    return at;
  }

  /// Skips what a line begins with.
  [[gnu::always_inline]] const char* beginLine(const char* at) {
    ++word.line;
    word.lineBegin = at;
    if (*at != ' ') return at;
    return at < quickEnd ? skipIndentation(at) : skipSpaces(at, end);
  }

  /// Skips the byte at `at` and the blanks behind it.
  [[gnu::always_inline]] const char* skipSpacesBehind(const char* at) const {
    return at[1] == ' ' ? skipSpaces(at + 1, end) : at + 1;
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

  /// Cuts the word at `at`.
  [[gnu::always_inline]] const TextWord* cut(const char* at, char first) {
    if (isByteOf(first, BYTE_LETTER)) return cutName(at);
    if (isByteOf(first, BYTE_DIGIT)) return cutNumber(at, at);
    if (isByteOf(first, BYTE_DELIMITER)) return cutDelimiter(at);
    if (first == '"') return cutString(at);
    if (first == '-' && isByteOf(at[1], BYTE_DIGIT)) return cutNumber(at, at + 1);
    if (first == '<') return cutEmptyTag(at);
    return first == '_' ? cutName(at) : cutOther(at);
  }

  [[gnu::always_inline]] const TextWord* finish(const char* stop, ParserWord::Type type) {
    word.last = stop;
    word.type = type;
    return &word;
  }

  [[gnu::always_inline]] const TextWord* cutDelimiter(const char* at) {
    return finish(at + 1, WordClassifier::ofDelimiter(*at));
  }

  [[gnu::always_inline]] const TextWord* cutName(const char* at) {
    const char* stop = at + countNameBytesQuickly(at);
    if (!isStop(stop)) [[unlikely]] {
      stop = findLongNameEnd(stop, end);
    }
    if (!isStop(stop)) return cutOther(at);
    return finish(stop, WordClassifier::ofName(at, stop));
  }

  /// What has other bytes than most numbers, as hexadecimal words do, is left to the general rules.
  /// @param digits where the number begins behind its sign
  [[gnu::always_inline]] const TextWord* cutNumber(const char* at, const char* digits) {
    NumberEnd stop = findShortNumberEnd(digits);
    if (!isStop(stop.at)) [[unlikely]] {
      stop = findLongNumberEnd(at);
    }
    if (!isStop(stop.at)) return cutOther(at);
    return finish(stop.at, WordClassifier::ofDecimal(stop.hasFractionMark));
  }

  // Not inlined: few names and numbers are so long.

  [[gnu::noinline]] static const char* findLongNameEnd(const char* at, const char* end) {
    return findNameEnd(at, end);
  }

  [[gnu::noinline]] static NumberEnd findLongNumberEnd(const char* at) { return findNumberEnd(at); }

  /// A quote behind several backslashes, which only this cutter takes for part of the string, is
  /// left to the general rules.
  [[gnu::always_inline]] const TextWord* cutString(const char* at) {
    const char* quote = findStringStop(at + 1, end);
    word.hasBackslash = *quote == '\\';
    while (*quote == '\\') {
      const bool isBeforeQuote = quote[1] == '"';
      if (isBeforeQuote && quote[-1] == '\\') return cutOther(at);
      quote = findStringStop(quote + (isBeforeQuote ? 2 : 1), end);
    }
    if (*quote != '"' || !isStop(quote + 1)) return cutOther(at);
    return finish(quote + 1, ParserWord::WORD_STRING);
  }

  [[gnu::always_inline]] const TextWord* cutEmptyTag(const char* at) {
    constexpr std::string_view TAG = "<empty>";
    const char* stop = at + TAG.size();
    if (std::memcmp(at, TAG.data(), TAG.size()) != 0 || !isStop(stop)) return cutOther(at);
    return finish(stop, ParserWord::WORD_EMPTYTAG);
  }

  static bool isStop(const char* at) {
    return isByteOf(*at, BYTE_BLANK | BYTE_LINE_BREAK | BYTE_DELIMITER);
  }

  /// Cuts any word; null at the end of the text. Not inlined: it is for few words and would burden
  /// all.
  [[gnu::noinline]] const TextWord* cutOther(const char* at) {
    word.last = end;
    if (at == end) return nullptr;
    if (isByteOf(*at, BYTE_DELIMITER)) return cutDelimiter(at);
    if (commentedText != nullptr && isComment(at, end)) return cutBehindComments(at);
    word.last = *at == '"' ? findQuotedEnd(at) : findEnd(at + 1);
    if (commentedText != nullptr && !isFreeOfComments({at, word.last})) return cutUncommented(at);
    word.hasBackslash = true;  // perhaps
    if (findAnyOf<'\0'>(at, word.last) != word.last) word.seenZeroByte = true;
    word.type = ParserWord::WORD_UNKNOWN;
    word.type = WordClassifier::classify(static_cast<const ParserWord&>(word));
    return &word;
  }

  /// Cuts the next word; at `at` is a comment. The line goes on behind it.
  const TextWord* cutBehindComments(const char* at) {
    while (isComment(at, end)) {
      const char* behind = passComments(at, end);
      word.lineBegin += behind - at;
      at = skipBlanks(behind);
    }
    word.last = at;
    return next();
  }

  /// Cuts the word at `at`, which changes with the comments of the text: it goes on behind one, or
  /// an unclosed string begins in it. So they are removed, all at once.
  const TextWord* cutUncommented(const char* at) {
    const char* text = commentedText->data();
    setEnd(text + removeComments(*commentedText, static_cast<std::size_t>(at - text)));
    commentedText = nullptr;
    word.last = at;
    return next();
  }

  void setEnd(const char* textEnd) {
    end = textEnd;
    quickEnd = end - begin > QUICK_ROOM ? end - QUICK_ROOM : begin;
  }

  /// A comment may stand where the text seems to go on.
  [[gnu::noinline]] bool isExhaustedBehindComments() const {
    if (commentedText == nullptr) return false;
    const char* at = passComments(word.last, end);
    return at == end || (passComments(at + 1, end) == end && isExhaustedBehindOneByte());
  }

  bool isExhaustedBehindOneByte() const { return word.first != nullptr && word.isEndedByBlank(); }

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
  std::string* commentedText = nullptr;  ///< not owned; null for a text without comments
  const char* begin;                     ///< of the text, not owned
  const char* end;
  const char* quickEnd;      ///< see QUICK_ROOM
  unsigned indentation = 0;  ///< of the line before, in blanks
};

}  // namespace Quarry
