/// Characters of UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Tool {

/// A character at the beginning of a text; `length` is 0 when there is none.
struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;  ///< in bytes
};

/// Returns the character with which `bytes`, which are not empty, begin. Spellings that are longer
/// than needed, surrogates, and codes past the last one are none.
Character decodeUtf8(std::string_view bytes);

/// Tells whether a byte is one of those that follow the first one of a character.
bool isUtf8Follower(char byte);

}  // namespace Tool
