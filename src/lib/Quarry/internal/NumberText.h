/// How the text form tells and reads numbers.
///
/// The format was defined by the C library's `scanf` and `strtol` in the "C" locale; these
/// functions give the same answers without a locale, without a copy and within the given bytes.
#pragma once

#include <string_view>

namespace Quarry {

/// Tells whether `scanf("%d")` converts a number at the beginning of `text`.
bool beginsWithInt(std::string_view text);

/// Tells whether `scanf("%lf")` converts a number at the beginning of `text`.
bool beginsWithDouble(std::string_view text);

/// Reads a decimal integer as `strtol` does: leading white space and a sign are accepted, reading
/// stops at the first other byte, no digits give 0, and what does not fit gives the nearest 64-bit
/// number.
long long readInteger(std::string_view text);

/// Reads a number as `strtod` does in the "C" locale; 0.0 where none begins.
/// @param readable bytes up to here may be read, though not used: more than the text's make it
///        faster
double readDouble(std::string_view text, const char* readable);

}  // namespace Quarry
