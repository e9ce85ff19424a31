/// The bytes of the binary form while they are written.
#pragma once

#include "BinaryNumber.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace Quarry {

/// Collects the pieces of the binary form and appends them to a buffer of the caller's, many at a
/// time: a vector asks for room at every byte.
class BinaryBuffer {
 public:
  explicit BinaryBuffer(std::vector<char>& buffer) : bytes(buffer) {}
  BinaryBuffer(const BinaryBuffer&) = delete;
  BinaryBuffer& operator=(const BinaryBuffer&) = delete;

  /// Returns the number of bytes in the buffer and collected, those of the caller included.
  unsigned long getSize() const { return bytes.size() + used; }

  /// Appends the low COUNT bytes of `number`.
  template <unsigned long COUNT>
  void appendNumber(std::uint64_t number) {
    if (ROOM - used < COUNT) flush();
    storeNumber<COUNT>(collected + used, number);
    used += COUNT;
  }

  void append(std::string_view piece) {
    if (ROOM - used < piece.size()) {
      flush();
      if (piece.size() > ROOM) {
        bytes.insert(bytes.end(), piece.begin(), piece.end());
        return;
      }
    }
    if (!piece.empty()) std::memcpy(collected + used, piece.data(), piece.size());
    used += piece.size();
  }

  /// Writes a size over the bytes from `position` on, which were appended as one number.
  void setSize(unsigned long position, std::uint64_t size) {
    const bool isFlushed = position < bytes.size();
    char* begin = isFlushed ? bytes.data() + position : collected + (position - bytes.size());
    storeNumber<SIZE_BYTES>(begin, size);
  }

  /// Appends what is collected. Has to be called in the end.
  void flush() {
    bytes.insert(bytes.end(), collected, collected + used);
    used = 0;
  }

 private:
  static constexpr unsigned long ROOM = 4096;

  std::vector<char>& bytes;
  unsigned long used = 0;
  char collected[ROOM];
};

}  // namespace Quarry
