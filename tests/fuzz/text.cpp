// Any text is read into a tree of which every value can be read, and whose items are found by their
// names. The quick way of reading gives the same tree as the careful one, and so does a copy.

#include "Fuzz.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const double version = input.takeChoice() % 2 == 0 ? 1.1 : 1.0;
  ParserGroup root("root");
  root.setText(input.getBytes(), version);
  const std::string text = Fuzz::writeText(root, false);
  const unsigned long depth = Fuzz::readValues(root);
  Fuzz::lookUpNames(root);
  ParserGroup careful("root");
  Fuzz::readCarefully(careful, input.getBytes(), version);
  require(Fuzz::writeText(careful, false) == text);
  require(careful.getBinary(false) == root.getBinary(false));
  const ParserGroup copy(root);
  const bool multiline = depth <= Fuzz::DEEPEST_MULTILINE;
  require(Fuzz::writeText(copy, multiline) == Fuzz::writeText(root, multiline));
  require(Fuzz::writeText(copy, false) == text);
  return 0;
}
