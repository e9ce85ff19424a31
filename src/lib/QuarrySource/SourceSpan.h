/// @file
/// The parts into which a file is cut.
#pragma once

#include <cstdint>

namespace Quarry {

/// A stretch of a file. The spans of a file, one behind the other, are the file.
struct SourceSpan {
  /// What stands there.
  enum Kind : std::int32_t {
    SPAN_WORD,     ///< a word of the document, or the part of one that stands in this file
    SPAN_BLANK,    ///< blanks, tabs and line ends between words
    SPAN_COMMENT,  ///< from `//` to the end of the line, line feed included
    SPAN_INCLUDE,  ///< `#include "name"`
    SPAN_VERSION,  ///< a version line, line feed included
    SPAN_UNREAD    ///< what reading did not get to
  };

  Kind kind = SPAN_BLANK;    ///< what stands there
  unsigned long offset = 0;  ///< in the file's text, from 0
  unsigned long length = 0;  ///< in bytes, more than 0

  /// Tells whether kind, offset and length are the same.
  bool operator==(const SourceSpan& other) const {
    return kind == other.kind && offset == other.offset && length == other.length;
  }
};

}  // namespace Quarry
