/// Texts of values, of every length at which values keep them in another way.
#pragma once

#include <Quarry/ParserValue.h>

#include <string>
#include <vector>

namespace ValueTexts {

inline const std::vector<unsigned long> LENGTHS = {0,  1,  2,  11, 12, 15, 16,  17,   19,
                                                   20, 27, 28, 30, 31, 32, 100, 1025, 200000};

/// Returns the text of a value, without the quotes and escapes of a string.
inline std::string write(const Quarry::ParserValue& value) {
  std::string text;
  value.getText(text, true, 1);
  return text;
}

inline std::vector<char> encode(const Quarry::ParserValue& value) {
  std::vector<char> bytes;
  unsigned long count = 0;
  value.getBinary(bytes, count, true);
  return bytes;
}

/// Returns `count` letters that are not all the same.
inline std::string makeLetters(unsigned long count) {
  std::string letters;
  for (unsigned long i = 0; i < count; ++i)
    letters += static_cast<char>('a' + i % 26);
  return letters;
}

/// Returns `ending` with as many zeros before it as make it so long, or its last bytes.
inline std::string makeDigits(const std::string& ending, unsigned long length) {
  if (length <= ending.size()) return ending.substr(ending.size() - length);
  return std::string(length - ending.size(), '0') + ending;
}

}  // namespace ValueTexts
