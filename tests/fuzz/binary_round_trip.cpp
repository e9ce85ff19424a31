// A tree from binary data or from a text is written as binary data, which reads back as the same
// tree and is written the same; and so is its text. Known exceptions: Hazards.h.

#include <vector>

#include "Fuzz.h"
#include "Hazards.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;

namespace {

void checkBinary(const ParserGroup& root) {
  const std::vector<char> bytes = root.getBinary(false);
  ParserGroup again("root");
  unsigned long position = 0;
  require(again.setBinary(bytes, position));
  require(position == bytes.size());
  require(again.getBinary(false) == bytes);
}

void checkText(const ParserGroup& root, bool multiline, const Fuzz::Hazards& hazards) {
  if (hazards.harmText() || (multiline && hazards.depth > Fuzz::DEEPEST_MULTILINE)) return;
  ParserGroup again("root");
  again.setText(Fuzz::writeText(root, multiline), 1.1);
  require(again.getBinary(false) == root.getBinary(false));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const bool isText = input.takeChoice() % 2 == 1;
  const std::string& source = input.getBytes();
  ParserGroup root("root");
  unsigned long position = 0;
  if (isText) {
    root.setText(source, 1.1);
  } else {
    root.setBinary(std::vector<char>(source.begin(), source.end()), position);
  }
  const Fuzz::Hazards onOneLine(root, false);
  const Fuzz::Hazards itemALine(root, true);
  if (!onOneLine.hasZeroByte) checkBinary(root);
  checkText(root, false, onOneLine);
  checkText(root, true, itemALine);
  return 0;
}
