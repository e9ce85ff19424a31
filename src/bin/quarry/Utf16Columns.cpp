#include "Utf16Columns.h"

#include "Utf8.h"

#include <algorithm>

namespace Tool {

namespace {

constexpr unsigned long LONG_LINE = 1024;

/// A character counts where it begins, so that the sum over parts of a line is that of the line.
unsigned long countUnits(std::string_view line, unsigned long begin, unsigned long end) {
  unsigned long units = 0;
  while (begin < end) {
    const Character character = decodeUtf8(line.substr(begin));
    units += character.length == 4 ? 2 : 1;
    begin += std::max<std::size_t>(character.length, 1);
  }
  return units;
}

/// Returns `offset`, or where the character begins that has this byte within it.
unsigned long toBegin(std::string_view line, unsigned long offset) {
  if (offset >= line.size()) return line.size();
  for (unsigned long back = 1; back <= 3 && back <= offset; ++back) {
    if (!isUtf8Follower(line[offset - back + 1])) return offset;
    if (decodeUtf8(line.substr(offset - back)).length > back) return offset - back;
  }
  return offset;
}

}  // namespace

unsigned long Utf16Columns::count(std::string_view line, unsigned long offset) {
  offset = toBegin(line, offset);
  if (line.size() < LONG_LINE) return countUnits(line, 0, offset);
  Counted& last = counted[line.data()];
  if (offset >= last.offset) {
    last.units += countUnits(line, last.offset, offset);
  } else {
    last.units -= countUnits(line, offset, last.offset);
  }
  last.offset = offset;
  return last.units;
}

}  // namespace Tool
