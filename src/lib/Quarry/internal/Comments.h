/// Comments that are still in a text.
///
/// Reading does not wait until the comments of a text without directives are removed. Most begin
/// where a word would, and are passed over there like a blank; for the others, the rest of the text
/// is put together when the first of them is met.
#pragma once

#include "ByteSearch.h"
#include "MarkerScan.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace Quarry {

inline constexpr std::string_view COMMENT_MARKER = "//";

/// What a text that is to be read has of them.
enum class Comments { REMOVED, LEFT };

/// Tells whether a comment begins at `at`, which is outside of strings.
inline bool isComment(const char* at, const char* end) {
  return end - at > 1 && at[0] == '/' && at[1] == '/';
}

/// Returns the first place from `at` on, which is outside of strings, at which no comment begins.
inline const char* passComments(const char* at, const char* end) {
  while (isComment(at, end)) {
    const void* lineFeed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    at = lineFeed != nullptr ? static_cast<const char*>(lineFeed) + 1 : end;
  }
  return at;
}

/// Tells whether the byte at `at` stands behind an odd number of backslashes.
/// @param begin no backslash before it counts
inline bool isEscaped(const char* begin, const char* at) {
  bool isOdd = false;
  for (; at != begin && at[-1] == '\\'; --at)
    isOdd = !isOdd;
  return isOdd;
}

/// Tells whether a word stays as it is when comments are removed, and what is behind it is outside
/// of strings, as what is before it.
inline bool isFreeOfComments(std::string_view word) {
  const char* begin = word.data();
  const char* end = begin + word.size();
  bool inString = false;
  const char* at = findAnyOf<'"', '/'>(begin, end);
  for (; at != end; at = findAnyOf<'"', '/'>(at + 1, end)) {
    if (*at == '/') {
      if (!inString && isComment(at, end)) return false;
    } else if (!isEscaped(begin, at)) {
      inString = !inString;
    }
  }
  return !inString;
}

/// Removes the comments behind the first `begin` bytes of a text without directives. That place is
/// outside of strings and not behind a backslash. The string keeps its length.
/// @return how many bytes the text has left; a zero byte stands behind them
inline std::size_t removeComments(std::string& text, std::size_t begin) {
  std::size_t size = begin;
  const auto keep = [&text, &size](std::string_view run) {
    std::memmove(text.data() + size, run.data(), run.size());
    size += run.size();
  };
  MarkerScan scan(text, begin);
  while (scan.goToMarker()) {
    if (scan.isAt(COMMENT_MARKER)) {
      keep(scan.endRun());
      scan.dropLine();
    } else {
      scan.skipByte();
    }
  }
  keep(scan.getRun());
  if (size < text.size()) text[size] = '\0';
  return size;
}

}  // namespace Quarry
