/// @file
/// Regular expressions.
#pragma once

#include <Plinth/Export.h>

#include <memory>
#include <string>

namespace re2 {
class RE2;
}

namespace Plinth {

/// A compiled regular expression over bytes, searched for anywhere in a text.
///
/// \code
///   #include <Plinth/Expression.h>
///   #include <iostream>
///
///   int main() {
///     const Plinth::Expression expression("^Layer[0-9]+$");
///     if (expression.match("Layer12")) std::cout << "a layer\n";
///   }
/// \endcode
///
/// **Syntax.** That of RE2: Perl's, without what would need backtracking (no back references, no
/// look-around). A pattern and a text are bytes, each byte a Latin-1 character, zero bytes and
/// bytes from 128 up included. `^` and `$` stand for the start and the end of the text, or of a
/// line within `(?m)`; `.` is any byte but a line feed, or any byte within `(?s)`.
///
/// **Cost.** Matching takes time linear in the text, whatever the pattern. At worst each byte of
/// the text takes all steps of the compiled pattern; as these are bounded, both may come from a
/// stranger.
///
/// **Lifetime.** An expression keeps nothing of the texts that it is given. Copies share the
/// compiled pattern, so they cost next to nothing; an expression that was moved from holds none.
///
/// **Threads.** One expression, or copies of it, may match in several threads at once.
class PLINTH_EXPORT Expression {
 public:
  /// The length, in bytes, of the longest pattern that compiles.
  static constexpr unsigned long MOST_BYTES = 16384;

  /// The number of steps of the largest compiled pattern. A byte, a class of bytes, `*`, `|` and
  /// `(` take a step or two each; a counted repetition takes those of what it repeats as often as
  /// it counts.
  static constexpr int MOST_STEPS = 2500;

  /// An expression that holds no pattern and matches nothing.
  Expression() = default;

  /// Compiles `pattern`. One that does not compile, that is longer than MOST_BYTES or takes more
  /// than MOST_STEPS gives one warning on the console, with the pattern and the reason, and an
  /// expression that holds no pattern. Throws `std::bad_alloc` when memory runs out, and what the
  /// console's handler throws.
  explicit Expression(const std::string& pattern);

  /// Returns whether there is a compiled pattern.
  bool isValid() const noexcept;

  /// Returns whether the pattern occurs in `text`; false without a compiled pattern. The empty
  /// pattern occurs in every text.
  bool match(const std::string& text) const;

 private:
  std::shared_ptr<const re2::RE2> compiled;
};

}  // namespace Plinth
