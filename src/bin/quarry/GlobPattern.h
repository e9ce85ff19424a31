/// Patterns of file names, as the sections of an .editorconfig have them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// Matches whole paths:
///
///     *          any bytes but "/"
///     **         any bytes
///     ?          any character but "/"
///     [abc a-z]  one of these; [!...] any other but "/"
///     {a,b}      either pattern; they may hold others
///     {1..3}     a whole number from 1 to 3
///     \          takes the next character as it is
///
/// Brackets and braces that do not close, and braces without a comma, stand for themselves. The
/// work grows with the product of the lengths of pattern and path, and never faster.
class GlobPattern {
 public:
  explicit GlobPattern(std::string_view pattern);

  bool matches(std::string_view path) const;

 private:
  /// What the path has to have, in this order but for forks.
  struct Step {
    enum Kind { BYTE, ANY_BYTES, ANY_BYTES_BUT_SLASH, CHARACTER, CLASS, NUMBER, FORK };

    Kind kind = BYTE;
    std::string bytes = {};  ///< the byte; all bytes of a class
    bool isNegated = false;  ///< a class
    long least = 0;          ///< a number
    long most = 0;
    std::vector<std::size_t> next = {};  ///< of a fork: which steps may come next
  };
  class Compiler;
  class Matcher;

  std::vector<Step> steps;
};

}  // namespace Tool
