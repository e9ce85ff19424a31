/// @file
/// Numbers as text, and text as numbers.
#pragma once

#include <Plinth/Export.h>

#include <string>

namespace Plinth {

/// @name Numbers as text, and text as numbers
///
/// All of it follows the rules of the "C" locale, with a point before the decimals, whatever locale
/// the process has set: a document written in one country is read in another. Every function can be
/// called from several threads at once. A label is the caller's own string; making one throws
/// `std::bad_alloc` when memory runs out.
///
/// \code
///   #include <Plinth/Label.h>
///   #include <iostream>
///
///   int main() {
///     std::cout << Plinth::getLabel(2.0) << '\n';              // 2.0
///     std::cout << Plinth::getDouble("1.1 and more") << '\n';  // 1.1
///   }
/// \endcode
/// @{

// --- Number to text ------------------------------------------------------------------------------

/// Returns `number` in decimal: "-12".
PLINTH_EXPORT std::string getLabel(const int& number);

/// Returns the code of `character` in decimal, as a signed 8-bit number whether or not the
/// compiler's plain `char` is signed: "65" for 'A', "-1" for the byte 255.
PLINTH_EXPORT std::string getLabel(const char& character);

/// Returns the shortest text that reads back as the same double, with ".0" added where it would
/// otherwise read as an integer: "1.1", "2.0", "-0.0", "1e+300". Infinities are "inf" and "-inf",
/// what is not a number is "nan" or "-nan".
PLINTH_EXPORT std::string getLabel(const double& number);

/// Returns `number` in decimal: "12".
PLINTH_EXPORT std::string getLabel(const unsigned long& number);

// --- Text to number ------------------------------------------------------------------------------

/// Returns the number at the start of `text`, exactly as `strtod` reads it in the "C" locale:
/// white space before the number and anything after it are passed over, "0x1p3", "inf" and "nan"
/// are numbers, a number too large is an infinity, and the text ends at its first zero byte.
/// Returns 0.0 when there is no number. Throws nothing and allocates nothing.
PLINTH_EXPORT double getDouble(const std::string& text) noexcept;

/// @}

}  // namespace Plinth
