#include "NumberText.h"

#include <Plinth/Label.h>

#include "ByteClass.h"

#include <charconv>
#include <limits>
#include <string>

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
  int takeDigit() { return *at++ - '0'; }

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
  using Limits = std::numeric_limits<long long>;
  Reader reader(text);
  reader.skipSpace();
  const bool negative = reader.skipSign();
  long long result = 0;  // counted below zero, where there is one number more
  while (reader.atDigit()) {
    const int digit = reader.takeDigit();
    if (result < (Limits::min() + digit) / 10) return negative ? Limits::min() : Limits::max();
    result = result * 10 - digit;
  }
  if (negative) return result;
  return result == Limits::min() ? Limits::max() : -result;
}

/// Plain decimal numbers, which nearly all are, are read where they lie.
double readDouble(std::string_view text) {
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

}  // namespace Quarry
