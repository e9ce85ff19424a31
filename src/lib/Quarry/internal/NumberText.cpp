#include "NumberText.h"

#include <Plinth/Label.h>

#include "BinaryNumber.h"
#include "ByteClass.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace Quarry {

namespace {

/// Walks over the bytes of a text and knows where they end.
class Reader {
 public:
  explicit Reader(std::string_view text) : at(text.data()), end(at + text.size()) {}

  void skipSpace() {
    while (at != end && isByteOf(*at, BYTE_SPACE))
      ++at;
  }

  /// Skips one sign and tells whether it was a minus.
  bool skipSign() {
    if (at == end || (*at != '-' && *at != '+')) return false;
    return *at++ == '-';
  }

  bool atDigit() const { return at != end && isByteOf(*at, BYTE_DIGIT); }
  bool atByte(char wanted) const { return at != end && *at == wanted; }
  bool atLetter(char lower) const { return at != end && (*at | 0x20) == lower; }
  bool atHexDigit() const {
    return atDigit() || (at != end && (*at | 0x20) >= 'a' && (*at | 0x20) <= 'f');
  }

  bool skipLetter(char lower) {
    if (!atLetter(lower)) return false;
    ++at;
    return true;
  }
  bool skipLetters(std::string_view lower) {
    for (const char letter : lower) {
      if (!skipLetter(letter)) return false;
    }
    return true;
  }
  bool skipByte(char wanted) {
    if (!atByte(wanted)) return false;
    ++at;
    return true;
  }
  std::string_view getRest() const { return {at, static_cast<std::size_t>(end - at)}; }

 private:
  const char* at;
  const char* end;
};

/// `inf` is a number whatever follows, but a further `i` has to begin the rest of `infinity`.
bool beginsWithInfinity(Reader reader) {
  if (!reader.skipLetters("inf")) return false;
  return !reader.atLetter('i') || reader.skipLetters("inity");
}

/// `0x` alone is refused; a point after it is enough, without any digit.
bool beginsWithHexDouble(Reader reader) { return reader.atHexDigit() || reader.atByte('.'); }

// --- Digits --------------------------------------------------------------------------------------

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
constexpr std::size_t GROUP = 8;

constexpr std::size_t BITS = 8;  ///< of a byte

std::uint64_t loadDigits(const char* at) {
  constexpr std::uint64_t ZEROS = 0x3030'3030'3030'3030;
  return loadNumber<GROUP>(at) ^ ZEROS;
}

/// Returns a number whose lowest bit is in the first byte that is more than 9; 0 if none is.
std::uint64_t findOthers(std::uint64_t digits) {
  constexpr std::uint64_t HIGHEST = 0x8080'8080'8080'8080;
  constexpr std::uint64_t CARRY = 0x7676'7676'7676'7676;  // makes 10 the first with a highest bit
  return ((digits + CARRY) | digits) & HIGHEST;
}

/// Returns the number that the first `count` of eight digits are, more than none: makes pairs of
/// them, then fours, then all.
std::uint64_t joinDigits(std::uint64_t digits, std::size_t count) {
  digits <<= BITS * (GROUP - count);
  digits = digits * (1 + (10ULL << 8)) >> 8 & 0x00FF'00FF'00FF'00FF;
  digits = digits * (1 + (100ULL << 16)) >> 16 & 0x0000'FFFF'0000'FFFF;
  return digits * (1 + (10'000ULL << 32)) >> 32;
}

/// Appends up to eight bytes to a number, and tells whether all of them are digits. Eight are read.
bool appendDigits(std::uint64_t& number, const char* at, std::size_t count) {
  const std::uint64_t digits = loadDigits(at);
  number = number * POWERS_OF_TEN[count] + joinDigits(digits, count);
  return findOthers(digits << BITS * (GROUP - count)) == 0;
}

// --- Plain numbers -------------------------------------------------------------------------------

/// A number as it is written: its digits, and how many of them stand behind the point.
struct Decimal {
  std::uint64_t digits = 0;
  std::size_t fraction = 0;
};

/// Reads [at, end), where it consists of digits, perhaps with a point among the first of them, and
/// is short: nearly all numbers are such. Tells whether it is one.
/// @param readable bytes up to here may be read
[[gnu::always_inline]] inline bool readDecimal(const char* at, const char* end,
                                               const char* readable, Decimal& decimal) {
  constexpr std::size_t TWO_GROUPS = 2 * GROUP;
  const auto bytesFrom = [](const char* from, const char* to) {
    return static_cast<std::size_t>(to - from);
  };
  if (bytesFrom(at, readable) < TWO_GROUPS || at == end) return false;
  std::size_t rest = bytesFrom(at, end);
  const std::uint64_t first = loadDigits(at);
  const auto whole = static_cast<std::size_t>(std::countr_zero(findOthers(first))) / BITS;
  if (rest <= whole) {
    decimal.digits = joinDigits(first, rest);
    return true;
  }
  const bool hasPoint = whole >= 1 && whole < GROUP && at[whole] == '.';
  if (!hasPoint && whole < GROUP) return false;
  decimal.digits = joinDigits(first, whole);
  at += whole + (hasPoint ? 1 : 0);
  if (at == end) return false;
  rest = bytesFrom(at, end);
  if (hasPoint) decimal.fraction = rest;
  if (rest <= GROUP) return appendDigits(decimal.digits, at, rest);
  const bool isShort = rest <= TWO_GROUPS && whole + rest <= MOST_DIGITS;
  if (!isShort || bytesFrom(at, readable) < TWO_GROUPS) return false;
  const bool areFirst = appendDigits(decimal.digits, at, GROUP);
  const bool areOthers = appendDigits(decimal.digits, at + GROUP, rest - GROUP);
  return areFirst && areOthers;
}

#ifdef __SIZEOF_INT128__

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using): so that it may be

/// A power of ten, shifted so that its highest bit is set.
struct Divisor {
  std::uint64_t number;
  int shift;
};

constexpr auto DIVISORS = [] {
  std::array<Divisor, MOST_DIGITS + 1> divisors{};
  for (std::size_t i = 0; i < divisors.size(); ++i) {
    const int shift = std::countl_zero(POWERS_OF_TEN[i]);
    divisors[i] = {POWERS_OF_TEN[i] << shift, shift};
  }
  return divisors;
}();

/// Returns the nearest double of a number that has more digits than a double.
///
/// It is divided by a power of ten, both shifted so that the quotient has more bits than a double.
/// The lowest bit tells whether there was a remainder, and so the one conversion rounds right.
double divide(const Decimal& decimal) {
  constexpr int SHIFT = 62;
  constexpr int EXPONENT_BIAS = 1023;
  constexpr int MANTISSA_BITS = 52;
  const Divisor& divisor = DIVISORS[decimal.fraction];
  const int shift = std::countl_zero(decimal.digits);
  const auto dividend = static_cast<Wide>(decimal.digits << shift) << SHIFT;
  auto quotient = static_cast<std::int64_t>(dividend / divisor.number);
  if (static_cast<Wide>(quotient) * divisor.number != dividend) quotient |= 1;
  const int exponent = EXPONENT_BIAS + divisor.shift - shift - SHIFT;
  return static_cast<double>(quotient) *
         toDouble(static_cast<std::uint64_t>(exponent) << MANTISSA_BITS);
}

/// The powers of ten as doubles, which hold all of these.
constexpr auto EXACT_POWERS_OF_TEN = [] {
  std::array<double, MOST_DIGITS + 1> powers{};
  for (std::size_t i = 0; i < powers.size(); ++i)
    powers[i] = static_cast<double>(POWERS_OF_TEN[i]);
  return powers;
}();

/// Returns the nearest double. The quotient of two numbers that doubles hold is rounded right.
double toNearest(const Decimal& decimal) {
  constexpr std::uint64_t FIRST_INEXACT = 1ULL << 53;
  if (decimal.digits >= FIRST_INEXACT) return divide(decimal);
  const auto digits = static_cast<double>(static_cast<std::int64_t>(decimal.digits));
  return digits / EXACT_POWERS_OF_TEN[decimal.fraction];
}

#endif

// --- All numbers ---------------------------------------------------------------------------------

constexpr std::uint64_t GREATEST_INTEGER = std::numeric_limits<long long>::max();

/// Reads the digits that a text begins with, which may be a number that does not fit.
long long readAnyInteger(std::string_view text, bool isNegative) {
  const std::uint64_t greatest = GREATEST_INTEGER + (isNegative ? 1 : 0);
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) number = greatest;
  number = std::min(number, greatest);
  return static_cast<long long>(isNegative ? 0 - number : number);
}

/// Not inlined: it is for few numbers and would burden all.
[[gnu::noinline]] double readAnyDouble(std::string_view text) {
#ifndef __i386__  // there from_chars is not exact, see Plinth::getDouble()
  Reader reader(text);
  reader.skipByte('-');
  if (reader.atDigit()) {
    double number = 0.0;
    const char* end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    if (result.ptr == end && result.ec == std::errc()) return number;
  }
#endif
  return Plinth::getDouble(std::string(text));
}

}  // namespace

bool beginsWithInt(std::string_view text) {
  Reader reader(text);
  reader.skipSpace();
  reader.skipSign();
  return reader.atDigit();
}

bool beginsWithDouble(std::string_view text) {
  Reader reader(text);
  reader.skipSpace();
  reader.skipSign();
  if (reader.skipByte('0')) return !reader.skipLetter('x') || beginsWithHexDouble(reader);
  if (reader.atDigit()) return true;
  if (reader.skipByte('.')) return reader.atDigit();
  if (reader.atLetter('n')) return reader.skipLetters("nan");
  return beginsWithInfinity(reader);
}

long long readInteger(std::string_view text, const char* readable) {
  Reader reader(text);
  reader.skipSpace();
  const bool isNegative = reader.skipSign();
  const std::string_view rest = reader.getRest();
  Decimal decimal;
  const bool isPlain = readDecimal(rest.data(), rest.data() + rest.size(), readable, decimal);
  const bool fits = isPlain && decimal.fraction == 0 && decimal.digits <= GREATEST_INTEGER;
  if (!fits) return readAnyInteger(rest, isNegative);
  const auto magnitude = static_cast<long long>(decimal.digits);
  return isNegative ? -magnitude : magnitude;
}

double readDouble(std::string_view text, const char* readable) {
#ifdef __SIZEOF_INT128__
  Reader reader(text);
  const bool isNegative = reader.skipByte('-');
  const std::string_view rest = reader.getRest();
  Decimal decimal;
  if (readDecimal(rest.data(), rest.data() + rest.size(), readable, decimal)) {
    const double number = toNearest(decimal);
    return isNegative ? -number : number;
  }
#else
  static_cast<void>(readable);
#endif
  return readAnyDouble(text);
}

}  // namespace Quarry
