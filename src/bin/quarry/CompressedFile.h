/// Compressed files that were made without the markers before their line feeds.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tool {

/// Where a compressed file loses bytes when it is read.
struct LostBytes {
  unsigned long line = 1;    ///< of the unpacked file, from 1
  unsigned long column = 1;  ///< of the first byte that is lost, from 1
  std::string text;          ///< of the line, without its line feed; a part of a long line
  unsigned long begin = 0;   ///< of what is lost, in the text
  unsigned long length = 0;  ///< of what is lost, without the line feed
};

/// Looks for the first line from which the library takes bytes that were no marker. It takes the
/// last two of each line, the line feed included, and those of each part of an overlong one.
///
/// A marker that is not '$' joins a line with the next. Whether the byte before a line feed is one
/// cannot be told from a single line: a backslash is taken for one, and any byte in a file that has
/// a '$' elsewhere.
///
/// @param packed as gzip made it; what is behind a damage is not looked at
/// @param most how many bytes are unpacked at most
/// @return nothing where nothing is lost
std::optional<LostBytes> findLostBytes(std::string_view packed, unsigned long most);

/// Does the same with a file.
/// @param name as documents are found by
/// @return nothing, too, for a file that is not compressed or cannot be read
std::optional<LostBytes> findLostBytesOfFile(const std::string& name, unsigned long most);

}  // namespace Tool
