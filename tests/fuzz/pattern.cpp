// Any pattern is compiled or refused, and any text matched with it. The pattern is the first line
// of the input, the text what follows.

#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>

#include "Fuzz.h"

using Fuzz::require;
using Plinth::Expression;

namespace {

/// Matching takes, at worst, a step for each part of the compiled pattern at each byte of the text:
/// how much of both there is, is the caller's matter. A counted repetition has up to 1000 parts.
std::string cutText(const std::string& text, const std::string& pattern) {
  constexpr std::size_t MOST_STEPS = 1 << 21;
  constexpr std::size_t MOST_PARTS_PER_BYTE = 200;
  const bool isCounted = pattern.find('{') != std::string::npos;
  const std::size_t parts = (pattern.size() + 1) * (isCounted ? MOST_PARTS_PER_BYTE : 1);
  return text.substr(0, MOST_STEPS / parts);
}

/// To compile a class such as `\pL` takes some 50 microseconds each time it occurs: 64 KiB of
/// nothing else take more than a second, which only the caller can prevent.
constexpr std::size_t LONGEST_PATTERN = 1 << 15;
constexpr std::size_t LONGEST_LITERAL = 1000;

/// Returns a pattern that stands for exactly these bytes.
std::string quote(const std::string& bytes) {
  constexpr char DIGITS[] = "0123456789ABCDEF";
  std::string pattern;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    pattern += {'\\', 'x', DIGITS[code / 16], DIGITS[code % 16]};
  }
  return pattern;
}

/// Each item is either matched or not, and as its name alone is.
void checkItems(const Expression& expression, const std::string& name, bool isMatch) {
  Quarry::ParserGroup group("root");
  for (const std::string& itemName : {std::string("a"), name, std::string("#a")})
    group.addItem(*new Quarry::ParserItem(itemName, Quarry::ParserItem::ITEM_PLAIN, 0, 0));
  const unsigned long matching = group.getItems("").getMatching(expression).getCount();
  require(matching + group.getItems("").getNotMatching(expression).getCount() == 3);
  require(group.getItem(1UL)->isMatching(expression) == isMatch);
  require(matching >= (isMatch ? 1U : 0U));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::string pattern = input.takePart('\n').substr(0, LONGEST_PATTERN);
  const std::string text = cutText(input.getBytes(), pattern);
  const Expression expression(pattern);
  const bool isMatch = expression.match(text);
  require(expression.isValid() || !isMatch);
  require(Expression(expression).match(text) == isMatch);
  checkItems(expression, text, isMatch);
  const std::string bytes = pattern.substr(0, LONGEST_LITERAL);
  const Expression literal(quote(bytes));
  require(literal.match(text) == (text.find(bytes) != std::string::npos));
  return 0;
}
