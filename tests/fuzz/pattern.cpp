// Any pattern is compiled or refused, and any text matched with it. The pattern is the first line
// of the input, the text what follows.

#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>

#include "Fuzz.h"

using Fuzz::require;
using Plinth::Expression;

namespace {

constexpr std::size_t LONGEST = 1000;  ///< name, or pattern that stands for its own bytes

/// Each item is either matched or not, and as its name alone is.
void checkItems(const Expression& expression, const std::string& name) {
  Quarry::ParserGroup group("root");
  for (const std::string& itemName : {std::string("a"), name, std::string("#a")})
    group.addItem(*new Quarry::ParserItem(itemName, Quarry::ParserItem::ITEM_PLAIN, 0, 0));
  const Quarry::ParserItems items = group.getItems("");
  const unsigned long matching = items.getMatching(expression).getCount();
  require(matching + items.getNotMatching(expression).getCount() == 3);
  require(group.getItem(1UL)->isMatching(expression) == expression.match(name));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::string pattern = input.takePart('\n');
  const std::string& text = input.getBytes();
  const Expression expression(pattern);
  const bool isMatch = expression.match(text);
  require(expression.isValid() || !isMatch);
  checkItems(expression, text.substr(0, LONGEST));
  const std::string literal = pattern.substr(0, pattern.find("\\E")).substr(0, LONGEST);
  require(Expression("\\Q" + literal).match(text) == (text.find(literal) != std::string::npos));
  return 0;
}
