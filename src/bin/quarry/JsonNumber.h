/// How the JSON form tells numbers.
#pragma once

#include <cstdint>
#include <string>

namespace Tool {

inline constexpr char INFINITE[] = "inf";
inline constexpr char NOT_A_NUMBER[] = "nan";

/// Returns the bits of a double.
std::uint64_t toBits(double number);
double fromBits(std::uint64_t bits);

/// Returns how a double is spelled in a text where it has no other spelling: with a sign before an
/// infinity and NaN, which would otherwise be names.
std::string spellDouble(double number);

/// Appends a double: a JSON number where it is finite, "inf", "-inf", "nan" or "-nan" where it is
/// one that a text can spell, and {"bits":"7FF8000000000001"} for every other NaN.
void appendJsonDouble(std::string& out, double number);

}  // namespace Tool
