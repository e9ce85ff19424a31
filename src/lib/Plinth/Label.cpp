#include <Plinth/Label.h>

#include <array>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace Plinth {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Returns whether the label of a double says by itself that it is no integer: it has a point, an
/// exponent, or the letter 'n' of "inf" and "nan".
bool readsAsDouble(std::string_view label) {
  return label.find_first_of(".en") != std::string_view::npos;
}

/// from_chars multiplies two doubles where it can, and expects the product to be rounded once. The
/// registers of the x87 have more bits than a double, and so it is rounded twice.
#ifdef __i386__
constexpr bool FROM_CHARS_ROUNDS_ONCE = false;
#else
constexpr bool FROM_CHARS_ROUNDS_ONCE = true;
#endif

/// Returns whether `text` starts as a decimal number does that strtod and from_chars read alike:
/// white space and a plus sign are for strtod alone, as is what a NaN says in parentheses.
bool isReadAlike(const std::string& text) {
  if constexpr (!FROM_CHARS_ROUNDS_ONCE) return false;
  const char* first = text.c_str();
  if (*first == '-') ++first;
  return isDigit(*first);
}

/// strtod in the "C" locale, which glibc has ready: to ask for it cannot fail and allocates
/// nothing.
double readInClassicLocale(const char* text) noexcept {
  static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text, nullptr, classic);
}

}  // namespace

// --- Number to text ------------------------------------------------------------------------------

std::string getLabel(const int& number) { return std::to_string(number); }

std::string getLabel(const char& character) {
  return std::to_string(static_cast<signed char>(character));
}

std::string getLabel(const double& number) {
  std::array<char, 32> buffer{};  // the longest, "-2.2250738585072014e-308", takes 24
  char* const first = buffer.data();
  const std::to_chars_result result = std::to_chars(first, first + buffer.size(), number);
  std::string label(first, result.ptr);
  if (!readsAsDouble(label)) label += ".0";
  return label;
}

std::string getLabel(const unsigned long& number) { return std::to_string(number); }

// --- Text to number ------------------------------------------------------------------------------

// Ordinary numbers take from_chars, which is faster. Where the two differ, strtod decides: a
// hexadecimal number, of which from_chars reads the "0", and one out of range.
double getDouble(const std::string& text) noexcept {
  if (!isReadAlike(text)) return readInClassicLocale(text.c_str());
  const char* const end = text.data() + text.size();
  double number = 0.0;
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  const bool isHexadecimal = result.ptr != end && (*result.ptr == 'x' || *result.ptr == 'X');
  if (result.ec != std::errc() || isHexadecimal) return readInClassicLocale(text.c_str());
  return number;
}

}  // namespace Plinth
