/// Finds what the preprocessor looks for.
#pragma once

#include "ByteSearch.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Quarry {

/// Goes through a file's text from one marker to the next: a '#', with which a directive may begin,
/// or "//" outside a string, with which a comment begins. What lies between two markers that are
/// dropped is a run.
///
/// A double quote begins or ends a string, unless the byte before it is a backslash and the number
/// of backslashes passed since the last other byte is odd. What is dropped does not count as "other
/// byte".
///
/// The text must outlive the scan. Runs and lines that were returned are not looked at again: they
/// may be overwritten.
class MarkerScan {
 public:
  /// @param begin where the scan begins, in bytes from 0; outside strings
  explicit MarkerScan(const std::string& scanned, std::size_t begin = 0)
      : text(scanned), position(begin), runBegin(begin), quotesPassed(begin) {}

  /// Returns the place of the marker, or where the last line or directive ended; in bytes from 0.
  std::size_t getPosition() const { return position; }

  /// Goes to the next marker, or to the end of the text when there is none.
  /// @return whether there is one
  bool goToMarker() {
    while (goTo([](const char* b, const char* e) { return findByteOrPair<'#', '/'>(b, e); })) {
      if (text[position] == '#' || !isInString()) return true;
      skipString();
    }
    return false;
  }

  /// Tells whether the text goes on with `marker`.
  bool isAt(std::string_view marker) const {
    return std::string_view(text).substr(position).starts_with(marker);
  }

  /// Goes on behind a byte that belongs to the run.
  void skipByte() { ++position; }

  /// Goes on behind all bytes: they belong to the run.
  void goToEnd() { position = text.size(); }

  /// Returns the run up to here.
  std::string_view getRun() const {
    return std::string_view(text).substr(runBegin, position - runBegin);
  }

  /// Returns the run up to here, before which what follows is dropped: that leaves strings and
  /// backslashes as they are.
  std::string_view endRun() {
    isInString();
    backslashesBeforeRun = countBackslashes(position);
    return getRun();
  }

  /// Drops the rest of the line with its line feed.
  /// @return what is dropped
  std::string_view dropLine() {
    const std::size_t lineFeed = text.find('\n', position);
    return dropTo(lineFeed == std::string::npos ? text.size() : lineFeed + 1);
  }

  /// Drops what stands before `end`.
  /// @return what is dropped
  std::string_view dropTo(std::size_t end) {
    const std::size_t begin = position;
    position = runBegin = quotesPassed = end;
    return std::string_view(text).substr(begin, end - begin);
  }

 private:
  static constexpr std::string_view QUOTE_BEHIND_BACKSLASH = "\\\"";

  /// Tells whether the place is within a string. Only a comment asks, and most documents have none:
  /// so the quotes before it are counted when it is met, all at once; escaped ones are taken back.
  bool isInString() {
    const QuoteCount quotes = countQuotes(text.data() + quotesPassed, text.data() + position);
    bool isOdd = quotes.isOdd;
    if (quotes.hasBehindBackslash && isEscapedCountOdd()) isOdd = !isOdd;
    if (isOdd) inString = !inString;
    quotesPassed = position;
    return inString;
  }

  /// Goes on within a string up to the next quote, before which there is no comment.
  void skipString() {
    goTo([](const char* begin, const char* end) { return findAnyOf<'"', '#'>(begin, end); });
  }

  /// Goes to what `find` finds, or to the end of the text when there is nothing.
  /// @return whether there is something
  template <class Find>
  bool goTo(Find find) {
    const char* end = text.data() + text.size();
    const char* found = find(text.data() + position, end);
    position = static_cast<std::size_t>(found - text.data());
    return found != end;
  }

  /// Tells whether an odd number of the quotes not yet passed is escaped.
  bool isEscapedCountOdd() const {
    const std::string_view seen = std::string_view(text).substr(0, position);
    bool isOdd = false;
    std::size_t found = seen.find(QUOTE_BEHIND_BACKSLASH, quotesPassed);
    while (found != std::string_view::npos) {
      if (countBackslashes(found + 1) % 2 == 1) isOdd = !isOdd;
      found = seen.find(QUOTE_BEHIND_BACKSLASH, found + QUOTE_BEHIND_BACKSLASH.size());
    }
    return isOdd;
  }

  /// Returns the number of backslashes passed since the last other byte.
  std::size_t countBackslashes(std::size_t end) const {
    std::size_t begin = end;
    while (begin > runBegin && text[begin - 1] == '\\')
      --begin;
    return begin == runBegin ? backslashesBeforeRun + (end - begin) : end - begin;
  }

  const std::string& text;
  std::size_t position;
  std::size_t runBegin;                  ///< of the run that `position` is in
  std::size_t quotesPassed;              ///< the place, up to `position`, that `inString` is of
  std::size_t backslashesBeforeRun = 0;  ///< passed since the last other byte
  bool inString = false;
};

}  // namespace Quarry
