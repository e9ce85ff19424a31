/// A text with values of every kind, short and long.
#pragma once

#include <string>

namespace TestSupport {

inline const std::string LONG_STRING = "a string that is longer than a value";

/// Returns a keyword, so many items with groups, and a long list.
inline std::string makeVariedText(int count) {
  std::string text = "#Keyword 1";
  for (int i = 0; i < count; ++i) {
    text += "\nan_item_with_a_long_name_" + std::to_string(i) + " yes 1 2.5 \"short\" \"" +
            LONG_STRING + "\" 0x0102030400000000 { a 1 b { c \"" + LONG_STRING + "\" } }";
  }
  return text + "\nlist" + std::string(200, ' ') + "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16";
}

}  // namespace TestSupport
