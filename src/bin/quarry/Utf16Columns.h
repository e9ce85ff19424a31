/// Columns as those count whose texts are of UTF-16.
#pragma once

#include <string_view>
#include <unordered_map>

namespace Tool {

/// Counts code units of UTF-16 in lines of UTF-8. A byte that is no character counts as one.
///
/// Remembers where it was in long lines, so that all places of a line cost no more than the line.
/// The lines have to stay where they are until clear().
class Utf16Columns {
 public:
  /// Returns the number of code units before a byte of the line.
  unsigned long count(std::string_view line, unsigned long offset);

  void clear() { counted.clear(); }

 private:
  struct Counted {
    unsigned long offset = 0;
    unsigned long units = 0;
  };

  std::unordered_map<const char*, Counted> counted;
};

}  // namespace Tool
