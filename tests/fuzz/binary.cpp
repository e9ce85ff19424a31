// Any bytes are read as binary data, as far as they go: a group, an item, a value, a document. Of
// what comes out every value can be read.

#include <Quarry/ParserFile.h>

#include <memory>
#include <vector>

#include "Fuzz.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

namespace {

using Bytes = std::vector<char>;

void readValue(const Bytes& bytes, unsigned long& position) {
  const std::unique_ptr<ParserValue> value(ParserValue::binTovalue(bytes, position));
  if (value == nullptr) return;
  const ParserValue copy(*value);
  Bytes written;
  Bytes writtenCopy;
  unsigned long count = 0;
  value->getBinary(written, count, true);
  copy.getBinary(writtenCopy, count, true);
  require(written == writtenCopy && count == 2 * written.size());
  std::string text;
  value->getText(text, false, 1);
}

/// What is read comes to stand in the group. The position only moves forwards.
void read(ParserGroup& root, unsigned kind, const Bytes& bytes, unsigned long begin) {
  unsigned long position = begin;
  switch (kind) {
    case 0: root.setBinary(bytes, position); break;
    case 1: root.addItem("item", 0, 0)->setBinary(bytes, position); break;
    default: readValue(bytes, position);
  }
  require(position >= begin && position <= bytes.size());
}

void readDocument(const Bytes& bytes) {
  Quarry::ParserFile file;
  const bool isRead = file.setBinary(bytes);
  Fuzz::readValues(file.getRoot());
  Quarry::ParserFile again;
  if (isRead) require(again.setBinary(file.getBinary()));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const unsigned choice = input.takeChoice();
  const unsigned long begin = choice / 4 % 16;
  const Bytes bytes(input.getBytes().begin(), input.getBytes().end());
  if (choice % 4 == 3) {
    readDocument(bytes);
    return 0;
  }
  if (begin > bytes.size()) return 0;
  ParserGroup root("root");
  read(root, choice % 4, bytes, begin);
  const unsigned long depth = Fuzz::readValues(root);
  Fuzz::writeText(root, depth <= Fuzz::DEEPEST_MULTILINE);
  ParserGroup copy(root);
  require(copy.getBinary(false) == root.getBinary(false));
  root.removeItem("");  // enters what came from binary data
  require(copy.getItemCount() == root.getItemCount());
  Fuzz::lookUpNames(root);
  return 0;
}
