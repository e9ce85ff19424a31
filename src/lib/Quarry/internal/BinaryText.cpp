#include "BinaryText.h"

#include <array>
#include <cstdint>

namespace Quarry {

namespace {

constexpr std::string_view PREFIX = "0x";
constexpr std::size_t CHECKSUM_DIGITS = 8;
constexpr char DIGITS[] = "0123456789ABCDEF";

constexpr std::uint8_t NO_DIGIT = 0xFF;

consteval std::array<std::uint8_t, 256> makeDigitValues() {
  std::array<std::uint8_t, 256> values{};
  for (std::uint8_t& value : values)
    value = NO_DIGIT;
  for (std::uint8_t digit = 0; digit < 16; ++digit) {
    values[static_cast<unsigned char>(DIGITS[digit])] = digit;
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> DIGIT_VALUES = makeDigitValues();

void appendByte(std::string& out, unsigned byte) {
  out += DIGITS[byte >> 4 & 0xF];
  out += DIGITS[byte & 0xF];
}

char readByte(const char* pair) {
  const std::uint8_t high = DIGIT_VALUES[static_cast<unsigned char>(pair[0])];
  const std::uint8_t low = DIGIT_VALUES[static_cast<unsigned char>(pair[1])];
  if (high == NO_DIGIT || low == NO_DIGIT) return 0;
  return static_cast<char>(high << 4 | low);
}

}  // namespace

void appendBinaryText(std::string& out, std::string_view bytes) {
  out.reserve(out.size() + PREFIX.size() + 2 * bytes.size() + CHECKSUM_DIGITS);
  out += PREFIX;
  std::uint32_t sum = 0;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    sum += value;
    appendByte(out, value);
  }
  for (int shift = 0; shift < 32; shift += 8)
    appendByte(out, sum >> shift & 0xFF);
}

std::unique_ptr<char[]> readBinaryText(std::string_view word, unsigned long& size) {
  constexpr std::size_t FRAME = PREFIX.size() + CHECKSUM_DIGITS;
  size = 0;
  if (word.size() <= FRAME || word.size() % 2 != 0) return nullptr;
  const std::size_t count = (word.size() - FRAME) / 2;
  std::unique_ptr<char[]> bytes(new char[count]);
  for (std::size_t i = 0; i < count; ++i)
    bytes[i] = readByte(&word[PREFIX.size() + 2 * i]);
  size = count;
  return bytes;
}

}  // namespace Quarry
