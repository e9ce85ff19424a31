/// What each byte means to the words of a document.
#pragma once

#include <array>
#include <cstdint>

namespace Quarry {

/// Classes of bytes, as bits; a byte may be in several.
enum ByteClass : std::uint8_t {
  BYTE_BLANK = 1,       ///< blank, tab: end a word outside quotes
  BYTE_LINE_BREAK = 2,  ///< CR, LF: end every word and a line
  BYTE_DELIMITER = 4,   ///< { } ( ) , = : a word of their own outside quotes
  BYTE_QUOTE = 8,       ///< "
  BYTE_LETTER = 16,     ///< A-Z a-z
  BYTE_DIGIT = 32,      ///< 0-9
  BYTE_NAME_MARK = 64,  ///< [ ] _ - . % : stand in names, beside letters and digits
  BYTE_SPACE = 128      ///< 9 to 13 and 32: skipped before a number
};

namespace detail {

consteval std::array<std::uint8_t, 256> makeByteClasses() {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](const char* bytes, ByteClass added) {
    for (; *bytes != 0; ++bytes) {
      std::uint8_t& entry = classes[static_cast<unsigned char>(*bytes)];
      entry = static_cast<std::uint8_t>(entry | added);
    }
  };
  add(" \t", BYTE_BLANK);
  add("\r\n", BYTE_LINE_BREAK);
  add("{}(),=", BYTE_DELIMITER);
  add("\"", BYTE_QUOTE);
  add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", BYTE_LETTER);
  add("0123456789", BYTE_DIGIT);
  add("[]_-.%:", BYTE_NAME_MARK);
  add(" \t\n\v\f\r", BYTE_SPACE);
  return classes;
}

inline constexpr std::array<std::uint8_t, 256> byteClasses = makeByteClasses();

}  // namespace detail

/// Tells whether `byte` is in any of the given classes.
constexpr bool isByteOf(char byte, int classes) {
  return (detail::byteClasses[static_cast<unsigned char>(byte)] & classes) != 0;
}

}  // namespace Quarry
