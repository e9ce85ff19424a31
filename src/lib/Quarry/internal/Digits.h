/// Digits of texts, up to eight at once.
#pragma once

#include "BinaryNumber.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Quarry {

constexpr std::size_t MOST_DIGITS = 19;  ///< that fit into 64 bits, whatever they are

constexpr auto POWERS_OF_TEN = [] {
  std::array<std::uint64_t, MOST_DIGITS + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i)
    powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// Up to eight digits are looked at as the bytes of a number, each less its '0', the first one
/// lowest: most numbers have fewer, and a loop over them costs more in its last, wrongly foreseen
/// step than all of this.
constexpr std::size_t DIGIT_GROUP = 8;

constexpr std::size_t BITS_OF_BYTE = 8;

inline std::uint64_t loadDigits(const char* at) {
  constexpr std::uint64_t ZEROS = 0x3030'3030'3030'3030;
  return loadNumber<DIGIT_GROUP>(at) ^ ZEROS;
}

/// Returns a number whose lowest bit is the highest of the first byte that is more than 9; 0 if
/// none is. A byte behind that one may be taken for more than 9 though it is not.
inline std::uint64_t findOthers(std::uint64_t bytes) {
  constexpr std::uint64_t HIGHEST = 0x8080'8080'8080'8080;
  constexpr std::uint64_t CARRY = 0x7676'7676'7676'7676;  // makes 10 the first with a highest bit
  return ((bytes + CARRY) | bytes) & HIGHEST;
}

/// Makes all but the first `count` of eight bytes zeros, which are taken for digits.
inline std::uint64_t keepFirst(std::uint64_t bytes, std::size_t count) {
  const std::size_t others = BITS_OF_BYTE * (DIGIT_GROUP - count);
  return bytes << others >> others;
}

/// Returns the number that the first `count` of eight digits are, more than none: makes pairs of
/// them, then fours, then all.
inline std::uint64_t joinDigits(std::uint64_t bytes, std::size_t count) {
  bytes <<= BITS_OF_BYTE * (DIGIT_GROUP - count);
  bytes = bytes * (1 + (10ULL << 8)) >> 8 & 0x00FF'00FF'00FF'00FF;
  bytes = bytes * (1 + (100ULL << 16)) >> 16 & 0x0000'FFFF'0000'FFFF;
  return bytes * (1 + (10'000ULL << 32)) >> 32;
}

/// Tells whether the first `count` of eight bytes are digits, more than none.
inline bool areDigits(std::uint64_t bytes, std::size_t count) {
  return findOthers(bytes << BITS_OF_BYTE * (DIGIT_GROUP - count)) == 0;
}

/// Appends the `count` bytes before `end` to a number, up to eight, and tells whether all of them
/// are digits. Eight are read.
inline bool appendDigits(std::uint64_t& number, const char* end, std::size_t count) {
  const std::uint64_t digits =
      loadDigits(end - DIGIT_GROUP) >> BITS_OF_BYTE * (DIGIT_GROUP - count);
  number = number * POWERS_OF_TEN[count] + joinDigits(digits, count);
  return areDigits(digits, count);
}

/// Reads [at, end), where it consists of up to 16 digits, and tells whether it does.
/// Eight bytes are read at least.
inline bool readDigits(const char* at, const char* end, std::uint64_t& number) {
  constexpr std::size_t MOST = 2 * DIGIT_GROUP;
  const auto count = static_cast<std::size_t>(end - at);
  if (count - 1 >= MOST) return false;
  const std::uint64_t first = loadDigits(at);
  if (count <= DIGIT_GROUP) {
    number = joinDigits(first, count);
    return areDigits(first, count);
  }
  number = joinDigits(first, DIGIT_GROUP);
  return appendDigits(number, end, count - DIGIT_GROUP) && findOthers(first) == 0;
}

}  // namespace Quarry
