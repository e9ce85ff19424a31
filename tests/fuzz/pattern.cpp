// Any pattern is compiled or refused, and any text matched with it. The pattern is the first line
// of the input, the text what follows.

#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>

#include "Fuzz.h"

using Fuzz::require;
using Plinth::Expression;

namespace {

constexpr std::size_t LONGEST_LITERAL = 1000;
constexpr std::size_t LONGEST_NAME = 1000;

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

void checkLiteral(const std::string& bytes, const std::string& text) {
  require(Expression(quote(bytes)).match(text) == (text.find(bytes) != std::string::npos));
}

/// Each item is either matched or not, and as its name alone is.
void checkItems(const Expression& expression, const std::string& name) {
  Quarry::ParserGroup group("root");
  for (const std::string& itemName : {std::string("a"), name, std::string("#a")})
    group.addItem(*new Quarry::ParserItem(itemName, Quarry::ParserItem::ITEM_PLAIN, 0, 0));
  const unsigned long matching = group.getItems("").getMatching(expression).getCount();
  require(matching + group.getItems("").getNotMatching(expression).getCount() == 3);
  const bool isMatch = expression.match(name);
  require(group.getItem(1UL)->isMatching(expression) == isMatch);
  require(matching >= (isMatch ? 1U : 0U));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::string pattern = input.takePart('\n');
  const std::string& text = input.getBytes();
  const Expression expression(pattern);
  const bool isMatch = expression.match(text);
  require(expression.isValid() || !isMatch);
  checkItems(expression, text.substr(0, LONGEST_NAME));
  checkLiteral(pattern.substr(0, LONGEST_LITERAL), text);
  return 0;
}
