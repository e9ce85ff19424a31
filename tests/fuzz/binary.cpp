// Any bytes are read as binary data, as far as they go: a group, an item, a value, a document. Of
// what comes out every value can be read.

#include "BinaryForms.h"
#include "Fuzz.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;

namespace {

void checkTree(ParserGroup& root) {
  const unsigned long depth = Fuzz::readValues(root);
  Fuzz::writeText(root, depth <= Fuzz::DEEPEST_MULTILINE);
  const ParserGroup copy(root);
  require(copy.getBinary(false) == root.getBinary(false));
  root.removeItem("");  // enters what came from binary data
  require(copy.getItemCount() == root.getItemCount());
  Fuzz::lookUpNames(root);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const unsigned choice = input.takeChoice();
  const auto form = static_cast<Fuzz::BinaryForm>(choice % 4);
  const unsigned long begin = choice / 4 % 16;
  const TestSupport::Bytes bytes = TestSupport::makeText(input.getBytes());
  ParserGroup root("root");
  if (form == Fuzz::DOCUMENT) {
    Fuzz::readDocument(bytes);
  } else if (begin <= bytes.size()) {
    Fuzz::readForm(form, bytes, begin, root);
    checkTree(root);
  }
  return 0;
}
