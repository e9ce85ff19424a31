/// Numbers of few bytes, which nearly all numbers are, read without a call.
///
/// What is not recognised here is left to readInteger() and readDouble(), which know all numbers.
/// Where something is, the result is theirs. A text has one byte at least.
#pragma once

#include "BinaryNumber.h"
#include "Digits.h"

#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>

namespace Quarry {

/// So many bytes are read of every text. Those behind its end may be anything, but have to be
/// there.
constexpr std::size_t SHORT_NUMBER_ROOM = 1 + DIGIT_GROUP;

/// Reads a text of up to 16 digits, perhaps behind a minus, and tells whether it is one. Of a
/// number that does not fit, the lower bits are taken.
inline bool readShortInteger(const char* text, std::size_t size, int& integer) {
  const int digit = *text - '0';
  if (size == 1 && 0 <= digit && digit <= 9) {
    integer = digit;
    return true;
  }
  const bool isNegative = *text == '-';
  std::uint64_t magnitude = 0;
  if (!readDigits(text + (isNegative ? 1 : 0), text + size, magnitude)) return false;
  integer = static_cast<int>(isNegative ? 0 - magnitude : magnitude);
  return true;
}

constexpr double SHORT_POWERS_OF_TEN[] = {1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

/// Reads a text of up to seven digits and a point before one of them, perhaps behind a minus, and
/// tells whether it is one.
///
/// The bytes are moved up to where the last one is the highest: what is behind the text is gone
/// then, and before it there are zeros.
inline bool readShortDouble(const char* text, std::size_t size, double& number) {
  constexpr std::uint64_t POINT = '.' ^ '0';
  constexpr int SIGN_BIT = 63;
  if constexpr (FLT_EVAL_METHOD != 0) return false;  // the quotient would be rounded twice
  const bool isNegative = *text == '-';
  const std::size_t count = size - (isNegative ? 1 : 0);
  if (count - 1 >= DIGIT_GROUP) return false;
  const std::uint64_t bytes = loadDigits(text + (isNegative ? 1 : 0))
                              << BITS_OF_BYTE * (DIGIT_GROUP - count);
  const std::uint64_t other = findOthers(bytes);
  const std::size_t fraction = static_cast<std::size_t>(std::countl_zero(other)) / BITS_OF_BYTE;
  if (fraction - 1 >= DIGIT_GROUP - 1) return false;
  const std::uint64_t place = other >> (BITS_OF_BYTE - 1);
  const std::uint64_t before = bytes & (place - 1);
  const std::uint64_t behind = bytes & (0 - (other << 1));
  if ((bytes ^ before ^ behind) != place * POINT) return false;  // also for more than one other
  const std::uint64_t digits = joinDigits(before << BITS_OF_BYTE | behind, DIGIT_GROUP);
  const double magnitude =
      static_cast<double>(static_cast<std::int64_t>(digits)) / SHORT_POWERS_OF_TEN[fraction];
  number = toDouble(toBits(magnitude) | std::uint64_t{isNegative} << SIGN_BIT);
  return true;
}

}  // namespace Quarry
