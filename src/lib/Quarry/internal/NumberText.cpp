#include "NumberText.h"

#include <Plinth/Label.h>

#include "BinaryNumber.h"
#include "ByteClass.h"
#include "Digits.h"

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
  constexpr std::size_t MOST_READ = 2 * DIGIT_GROUP;
  if (readable - at < static_cast<std::ptrdiff_t>(MOST_READ) || at == end) return false;
  auto count = static_cast<std::size_t>(end - at);
  std::uint64_t first = loadDigits(at);
  if (count < DIGIT_GROUP) first = keepFirst(first, count);
  const auto whole = static_cast<std::size_t>(std::countr_zero(findOthers(first))) / BITS_OF_BYTE;
  if (count <= whole) {
    decimal.digits = joinDigits(first, count);
    return true;
  }
  if (whole < DIGIT_GROUP) {
    if (whole == 0 || at[whole] != '.' || count == whole + 1) return false;
    const std::uint64_t beforePoint = (std::uint64_t{1} << BITS_OF_BYTE * whole) - 1;
    first = (first & beforePoint) | (loadDigits(at + 1) & ~beforePoint);
    --count;
    decimal.fraction = count - whole;
  }
  if (count <= DIGIT_GROUP) {
    decimal.digits = joinDigits(first, count);
    return areDigits(first, count);
  }
  if (count > MOST_DIGITS) return false;
  decimal.digits = joinDigits(first, DIGIT_GROUP);
  bool isNumber = areDigits(first, DIGIT_GROUP);
  std::size_t rest = count - DIGIT_GROUP;
  if (rest > DIGIT_GROUP) {
    rest -= DIGIT_GROUP;
    isNumber = appendDigits(decimal.digits, end - rest, DIGIT_GROUP) && isNumber;
  }
  return appendDigits(decimal.digits, end, rest) && isNumber;
}

#ifdef __SIZEOF_INT128__

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using): so that it may be

/// A power of ten, shifted so that its highest bit is set, and what to multiply with instead of
/// dividing by it: 2^127 - 1 divided by it, rounded down.
struct Divisor {
  std::uint64_t number;
  std::uint64_t inverse;
  int shift;
};

constexpr auto DIVISORS = [] {
  constexpr int INVERSE_SHIFT = 127;
  std::array<Divisor, MOST_DIGITS + 1> divisors{};
  for (std::size_t i = 0; i < divisors.size(); ++i) {
    const int shift = std::countl_zero(POWERS_OF_TEN[i]);
    const std::uint64_t number = POWERS_OF_TEN[i] << shift;
    const Wide inverse = ((static_cast<Wide>(1) << INVERSE_SHIFT) - 1) / number;
    divisors[i] = {number, static_cast<std::uint64_t>(inverse), shift};
  }
  return divisors;
}();

/// Returns dividend * 2^62 / divisor, rounded down but for the lowest bit: that tells whether there
/// was a remainder.
std::int64_t divideExactly(std::uint64_t dividend, const Divisor& divisor) {
  constexpr int SHIFT = 62;
  const Wide shifted = static_cast<Wide>(dividend) << SHIFT;
  const auto quotient = static_cast<std::uint64_t>(shifted / divisor.number);
  const bool hasRemainder = static_cast<Wide>(quotient) * divisor.number != shifted;
  return static_cast<std::int64_t>(quotient | (hasRemainder ? 1 : 0));
}

/// The same, with any lowest bits that do not change what it is rounded to.
///
/// The product with the inverse is less than the quotient, by less than 2. A double takes all but
/// the lowest 9 or 10 bits of it, so that it is certain which way it is rounded unless the lowest 8
/// are all 1.
std::int64_t divideQuickly(std::uint64_t dividend, const Divisor& divisor) {
  constexpr int SHIFT = 65;
  constexpr std::uint64_t LOWEST = 0xFF;
  const auto product = static_cast<Wide>(dividend) * divisor.inverse;
  const auto quotient = static_cast<std::uint64_t>(product >> SHIFT);
  if ((~quotient & LOWEST) == 0) return divideExactly(dividend, divisor);
  return static_cast<std::int64_t>(quotient | 1);
}

/// Returns the nearest double of a number that has more digits than a double.
///
/// It is divided by a power of ten, both shifted so that the quotient has more bits than a double,
/// and so the one conversion rounds right.
double divide(const Decimal& decimal) {
  constexpr int SHIFT = 62;
  constexpr int EXPONENT_BIAS = 1023;
  constexpr int MANTISSA_BITS = 52;
  const Divisor& divisor = DIVISORS[decimal.fraction];
  const int shift = std::countl_zero(decimal.digits);
  const std::int64_t quotient = divideQuickly(decimal.digits << shift, divisor);
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

long long readInteger(std::string_view text) {
  Reader reader(text);
  reader.skipSpace();
  const bool isNegative = reader.skipSign();
  const std::string_view digits = reader.getRest();
  constexpr std::uint64_t GREATEST = std::numeric_limits<long long>::max();
  const std::uint64_t greatest = GREATEST + (isNegative ? 1 : 0);
  std::uint64_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec == std::errc::result_out_of_range) number = greatest;
  number = std::min(number, greatest);
  return static_cast<long long>(isNegative ? 0 - number : number);
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
