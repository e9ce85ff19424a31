/// How a block of bytes is written and read as one word.
///
/// The word is "0x", two upper-case hexadecimal digits for each byte, and eight digits of checksum:
/// the sum of all bytes, modulo 2^32, least significant byte first. 01 02 FF is
/// `0x0102FF02010000`.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace Quarry {

/// Appends the word for `bytes`.
void appendBinaryText(std::string& out, std::string_view bytes);

/// Reads a word back. The prefix and the checksum are skipped unexamined; a pair that is not two
/// upper-case digits counts as byte 0.
/// @param size receives the number of bytes
/// @return the bytes; null when the word is too short to hold one or has an odd length
std::unique_ptr<char[]> readBinaryText(std::string_view word, unsigned long& size);

}  // namespace Quarry
