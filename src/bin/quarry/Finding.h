/// What a check finds, whatever it is written as.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace Tool {

/// Something that is wrong at a place.
struct Finding {
  bool isError = false;  ///< the document cannot be read because of it
  std::string_view rule;
  std::string text;           ///< a sentence about it
  Quarry::SourcePlace place;  ///< of line 0 where it is about a file as a whole

  /// The line of the file, without its end. Where that has no end in sight, a part of it.
  std::string_view line;
  unsigned long begin = 0;   ///< of what it is about, in `line`
  unsigned long length = 0;  ///< of what it is about, in bytes; it may go on behind the line

  /// Returns how much of what it is about is on the line.
  unsigned long getShownLength() const {
    return begin < line.size() ? std::min<unsigned long>(length, line.size() - begin) : 0;
  }
};

/// How much was found.
struct FindingCounts {
  unsigned long errors = 0;
  unsigned long warnings = 0;
  unsigned long files = 0;  ///< that were checked

  unsigned long getAll() const { return errors + warnings; }
};

/// What a rule finds.
struct Rule {
  const char* name;
  const char* description;
};

}  // namespace Tool
