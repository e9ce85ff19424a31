/// Puts byte sequences together for tests of the binary form.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

namespace TestSupport {

using Bytes = std::vector<char>;

/// Returns the bytes with these values.
inline Bytes makeBytes(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values)
    bytes.push_back(static_cast<char>(value));
  return bytes;
}

/// Returns the bytes that hexadecimal digits stand for; blanks are passed over.
inline Bytes makeBytes(const std::string& digits) {
  std::string compact;
  for (const char digit : digits) {
    if (digit != ' ') compact += digit;
  }
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < compact.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(compact.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

/// Returns `number` as the eight bytes of a size.
inline Bytes makeSize(unsigned long long number) {
  Bytes bytes;
  for (int shift = 0; shift < 64; shift += 8) {
    bytes.push_back(static_cast<char>(number >> shift & 0xFF));
  }
  return bytes;
}

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// Returns the characters of `text`, without a zero byte behind them.
inline Bytes makeText(const std::string& text) { return {text.begin(), text.end()}; }

/// Returns a name or string as it is encoded: with a zero byte behind it.
inline Bytes makeString(const std::string& text) { return makeText(text) + Bytes(1, 0); }

/// Returns an item frame with these value bytes.
inline Bytes makeItem(const std::string& name, const Bytes& values) {
  return makeString(name) + makeSize(values.size() + 1) + Bytes(1, 0) + values;
}

/// Returns a group frame with these item frames.
inline Bytes makeGroup(const Bytes& items) { return makeSize(items.size()) + items; }

}  // namespace TestSupport
