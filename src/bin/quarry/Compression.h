/// The gzip format, in memory.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Returns bytes in the gzip format. The same bytes give the same result: it tells neither time nor
/// name.
std::string compress(std::string_view bytes);

/// How unpacking ended.
enum class UnpackResult { UNPACKED, DAMAGED, TOO_LARGE };

/// Appends what gzip packed, all members of it.
/// @param most how many bytes may be appended
UnpackResult decompress(std::string_view packed, unsigned long most, std::string& bytes);

}  // namespace Tool
