/// Numbers that a person gives to a test.
#pragma once

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace TestSupport {

/// Returns the number, of `least` or more, that a variable of the environment has, and `otherwise`
/// where there is none. Any other text ends the program: a test of no documents would pass.
inline unsigned long getCount(const char* variable, unsigned long otherwise,
                              unsigned long least = 1) {
  const char* const value = std::getenv(variable);
  if (value == nullptr) return otherwise;
  const std::string_view text = value;
  unsigned long count = 0;
  const std::from_chars_result result =
      std::from_chars(text.data(), text.data() + text.size(), count);
  if (result.ec == std::errc() && result.ptr == text.data() + text.size() && count >= least)
    return count;
  std::fprintf(stderr, "%s is no number of %lu or more: '%s'\n", variable, least, value);
  std::exit(2);
}

}  // namespace TestSupport
