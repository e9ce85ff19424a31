/// Numbers as little-endian bytes, on any machine.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace Quarry {

constexpr unsigned long TAG_BYTES = 1;
constexpr unsigned long KIND_BYTES = 1;
constexpr unsigned long BOOL_BYTES = 1;
constexpr unsigned long CHAR_BYTES = 1;
constexpr unsigned long INT_BYTES = 4;
constexpr unsigned long DOUBLE_BYTES = 8;
constexpr unsigned long SIZE_BYTES = 8;

/// Writes the low COUNT bytes of `number` to `bytes`, the least significant first.
template <unsigned long COUNT>
void storeNumber(char* bytes, std::uint64_t number) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(bytes, &number, COUNT);
  } else {
    for (unsigned long i = 0; i < COUNT; ++i)
      bytes[i] = static_cast<char>(number >> (8 * i) & 0xFF);
  }
}

/// Reads COUNT bytes, the least significant first.
template <unsigned long COUNT>
std::uint64_t loadNumber(const char* bytes) {
  std::uint64_t number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, bytes, COUNT);
  } else {
    for (unsigned long i = 0; i < COUNT; ++i) {
      number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
  }
  return number;
}

/// Appends the low COUNT bytes of `number` and returns COUNT.
template <unsigned long COUNT>
unsigned long appendNumber(std::vector<char>& buffer, std::uint64_t number) {
  char bytes[COUNT];
  storeNumber<COUNT>(bytes, number);
  buffer.insert(buffer.end(), bytes, bytes + COUNT);
  return COUNT;
}

/// Appends the bytes and a zero byte, and returns the length of both.
inline unsigned long appendString(std::vector<char>& buffer, std::string_view bytes) {
  buffer.insert(buffer.end(), bytes.begin(), bytes.end());
  buffer.push_back(0);
  return bytes.size() + 1;
}

/// A double and its IEEE 754 bits.
inline std::uint64_t toBits(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

inline double toDouble(std::uint64_t bits) {
  double number = 0.0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

}  // namespace Quarry
