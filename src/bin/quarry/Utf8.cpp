#include "Utf8.h"

namespace Tool {

namespace {

constexpr Character NO_CHARACTER = {};

std::uint8_t toByte(char character) { return static_cast<std::uint8_t>(character); }

/// Returns the number of bytes of the character that begins with `lead`, 0 for no lead byte.
std::size_t lengthFromLead(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

bool isProper(const Character& character) {
  if (character.length == 3 && character.code < 0x800) return false;
  if (character.length == 4 && character.code < 0x10000) return false;
  if (character.code >= 0xD800 && character.code <= 0xDFFF) return false;
  return character.code <= 0x10FFFF;
}

}  // namespace

Character decodeUtf8(std::string_view bytes) {
  const std::uint8_t lead = toByte(bytes.front());
  const std::size_t length = lengthFromLead(lead);
  if (length == 0 || length > bytes.size()) return NO_CHARACTER;
  if (length == 1) return {lead, 1};
  std::uint32_t code = lead & (0x7FU >> length);
  for (const char follower : bytes.substr(1, length - 1)) {
    if (!isUtf8Follower(follower)) return NO_CHARACTER;
    code = (code << 6) | (toByte(follower) & 0x3FU);
  }
  const Character character = {code, length};
  return isProper(character) ? character : NO_CHARACTER;
}

bool isUtf8Follower(char byte) { return (toByte(byte) & 0xC0) == 0x80; }

}  // namespace Tool
