#include "JsonText.h"

#include "Utf8.h"

#include <cstdint>

namespace Tool {

namespace {

constexpr std::string_view BASE64_DIGITS =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char PADDING = '=';

void appendEscaped(std::string& out, char character) {
  constexpr std::string_view HEX = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(character);
  switch (character) {
    case '"': out += "\\\""; break;
    case '\\': out += "\\\\"; break;
    case '\n': out += "\\n"; break;
    case '\r': out += "\\r"; break;
    case '\t': out += "\\t"; break;
    default:
      out += "\\u00";
      out += HEX[byte >> 4];
      out += HEX[byte & 15];
  }
}

bool needsEscape(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F || character == '"' || character == '\\';
}

/// Returns the value of a digit of base64; -1 for another byte.
int getDigit(char digit) {
  const std::size_t found = BASE64_DIGITS.find(digit);
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t size = decodeUtf8(bytes).length;
    if (size == 0) return false;
    bytes.remove_prefix(size);
  }
  return true;
}

void appendJsonString(std::string& out, std::string_view text) {
  out += '"';
  for (const char character : text) {
    if (needsEscape(character)) {
      appendEscaped(out, character);
    } else {
      out += character;
    }
  }
  out += '"';
}

void appendJsonBytes(std::string& out, std::string_view bytes) {
  if (isUtf8(bytes)) {
    appendJsonString(out, bytes);
  } else {
    appendJsonBlock(out, bytes);
  }
}

void appendJsonBlock(std::string& out, std::string_view bytes) {
  out += "{\"base64\":\"";
  out += encodeBase64(bytes);
  out += "\"}";
}

std::string encodeBase64(std::string_view bytes) {
  std::string digits;
  digits.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view three = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t k = 0; k < 3; ++k)
      bits = bits << 8 | (k < three.size() ? static_cast<unsigned char>(three[k]) : 0U);
    for (std::size_t k = 0; k < 4; ++k)
      digits += k <= three.size() ? BASE64_DIGITS[bits >> (18 - 6 * k) & 63] : PADDING;
  }
  return digits;
}

bool decodeBase64(std::string_view digits, std::string& bytes) {
  const std::string_view all = digits;
  const std::size_t begin = bytes.size();
  while (!digits.empty() && digits.size() + 2 > all.size() && digits.back() == PADDING)
    digits.remove_suffix(1);
  std::uint32_t bits = 0;
  int count = 0;
  for (const char character : digits) {
    const int digit = getDigit(character);
    if (digit < 0) return false;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count >= 8) bytes += static_cast<char>(bits >> (count -= 8) & 0xFF);
  }
  return encodeBase64(std::string_view(bytes).substr(begin)) == all;
}

}  // namespace Tool
