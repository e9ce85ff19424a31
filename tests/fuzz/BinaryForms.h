/// Reads bytes as each kind of thing that has a binary form.
#pragma once

#include <Quarry/ParserFile.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <memory>
#include <string>

#include "Fuzz.h"
#include "Trees.h"
#include "support/Bytes.h"

namespace Fuzz {

enum BinaryForm { GROUP, ITEM, VALUE, DOCUMENT };

/// A value and its copy are written the same.
inline void readValue(const TestSupport::Bytes& bytes, unsigned long& position) {
  using Quarry::ParserValue;
  const std::unique_ptr<ParserValue> value(ParserValue::binTovalue(bytes, position));
  if (value == nullptr) return;
  const ParserValue copy(*value);
  TestSupport::Bytes written;
  TestSupport::Bytes writtenCopy;
  unsigned long count = 0;
  value->getBinary(written, count, true);
  copy.getBinary(writtenCopy, count, true);
  require(written == writtenCopy && count == 2 * written.size());
  std::string text;
  value->getText(text, false, 1);
}

/// Reads a group, an item or a value. The first two come to stand in `root`. The position only
/// moves forwards.
inline void readForm(BinaryForm form, const TestSupport::Bytes& bytes, unsigned long begin,
                     Quarry::ParserGroup& root) {
  unsigned long position = begin;
  switch (form) {
    case GROUP: root.setBinary(bytes, position); break;
    case ITEM: root.addItem("item", 0, 0)->setBinary(bytes, position); break;
    default: readValue(bytes, position);
  }
  require(position >= begin && position <= bytes.size());
}

/// What a document is written as can be read.
inline void readDocument(const TestSupport::Bytes& bytes) {
  Quarry::ParserFile file;
  const bool isRead = file.setBinary(bytes);
  readValues(file.getRoot());
  Quarry::ParserFile again;
  if (isRead) require(again.setBinary(file.getBinary()));
}

}  // namespace Fuzz
