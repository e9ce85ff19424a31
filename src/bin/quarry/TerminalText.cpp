#include "TerminalText.h"

#include "Utf8.h"

#include <langinfo.h>
#include <locale.h>

#include <cstdint>

namespace Tool {

namespace {

std::uint8_t toByte(char character) { return static_cast<std::uint8_t>(character); }

bool isBetween(std::uint32_t code, std::uint32_t first, std::uint32_t last) {
  return code >= first && code <= last;
}

bool isControl(std::uint32_t code) { return code < 0x20 || isBetween(code, 0x7F, 0x9F); }

/// Line and paragraph separators, and marks that change the direction of writing: they can make a
/// text look like another one.
bool isMisleading(std::uint32_t code) {
  return code == 0x061C || isBetween(code, 0x200E, 0x200F) || isBetween(code, 0x2028, 0x202E) ||
         isBetween(code, 0x2066, 0x2069);
}

void appendEscaped(std::string& out, char byte) {
  constexpr char DIGITS[] = "0123456789ABCDEF";
  switch (byte) {
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default: break;
  }
  out += "\\x";
  out += DIGITS[toByte(byte) >> 4];
  out += DIGITS[toByte(byte) & 15];
}

bool isShown(const Character& character, Layout layout, bool utf8) {
  if (character.length == 0) return false;
  if (character.code == '\n' || character.code == '\t') return layout == Layout::KEPT;
  if (character.length > 1 && !utf8) return false;
  return !isControl(character.code) && !isMisleading(character.code);
}

}  // namespace

std::string escapeForTerminal(std::string_view bytes, Layout layout, bool utf8) {
  std::string out;
  out.reserve(bytes.size());
  while (!bytes.empty()) {
    const Character character = decodeUtf8(bytes);
    const std::size_t length = character.length == 0 ? 1 : character.length;
    if (isShown(character, layout, utf8)) {
      out += bytes.substr(0, length);
    } else {
      for (const char byte : bytes.substr(0, length))
        appendEscaped(out, byte);
    }
    bytes.remove_prefix(length);
  }
  return out;
}

/// Only what characters are follows the environment: numbers are written alike everywhere. A locale
/// made by newlocale() would do as well, but loses memory where LOCPATH is set.
bool isUtf8Environment() {
  return setlocale(LC_CTYPE, "") != nullptr && std::string_view(nl_langinfo(CODESET)) == "UTF-8";
}

}  // namespace Tool
