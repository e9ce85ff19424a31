#include "PathStep.h"

#include <charconv>
#include <cstddef>
#include <system_error>

namespace Quarry {

namespace {

/// Splits `text` at a number between `before` and `after`, which end the text.
NumberedText splitNumber(std::string_view text, char before, std::string_view after) {
  if (!text.ends_with(after)) return {text};
  const std::string_view shorter = text.substr(0, text.size() - after.size());
  const std::size_t mark = shorter.rfind(before);
  if (mark == std::string_view::npos || mark == 0) return {text};
  const char* begin = shorter.data() + mark + 1;
  const char* end = shorter.data() + shorter.size();
  unsigned long number = 0;
  const std::from_chars_result result = std::from_chars(begin, end, number);
  const bool isNumber = result.ec == std::errc() && result.ptr == end;
  return isNumber && number > 0 ? NumberedText{text.substr(0, mark), number} : NumberedText{text};
}

}  // namespace

NumberedText splitOrdinal(std::string_view step) { return splitNumber(step, '[', "]"); }

NumberedText splitValueNumber(std::string_view step) { return splitNumber(step, '#', ""); }

/// A name that itself ends in a number in brackets would be taken for one that is counted.
std::string makeStep(std::string_view name, unsigned long ordinal) {
  std::string step(name);
  if (ordinal > 1 || splitOrdinal(name).number > 0) step += "[" + std::to_string(ordinal) + "]";
  return step;
}

}  // namespace Quarry
