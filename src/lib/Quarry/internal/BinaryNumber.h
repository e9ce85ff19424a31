/// Numbers as little-endian bytes, on any machine.
#pragma once

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

/// Writes the low `count` bytes of `number` to `bytes`, the least significant first.
inline void storeNumber(char* bytes, std::uint64_t number, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i)
    bytes[i] = static_cast<char>(number >> (8 * i) & 0xFF);
}

/// Reads `count` bytes, the least significant first.
inline std::uint64_t loadNumber(const char* bytes, unsigned long count) {
  std::uint64_t number = 0;
  for (unsigned long i = 0; i < count; ++i) {
    number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return number;
}

/// Appends the low `count` bytes, at most 8, of `number` and returns `count`.
inline unsigned long appendNumber(std::vector<char>& buffer, std::uint64_t number,
                                  unsigned long count) {
  char bytes[sizeof number];
  storeNumber(bytes, number, count);
  buffer.insert(buffer.end(), bytes, bytes + count);
  return count;
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
