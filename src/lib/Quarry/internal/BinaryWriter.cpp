#include "BinaryWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeWalker.h"

namespace Quarry {

namespace {

/// Always this when written; readers ignore it.
constexpr unsigned ITEM_KIND = 0;

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void BinaryWriter::writeGroup(const ParserGroup& group) {
  TreeWalker(*this).walkGroup(group, openSize());
}

void BinaryWriter::writeItem(const ParserItem& item) {
  TreeWalker(*this).walkItem(item, GroupMark(), beginItem(item, GroupMark()));
}

void BinaryWriter::writeTag(const ParserValue& value) {
  out.appendNumber<TAG_BYTES>(static_cast<std::uint64_t>(value.type));
}

/// Numbers are converted from their text where there is only that.
void BinaryWriter::writePayload(const ParserValue& value) {
  switch (value.type) {
    case ParserValue::TYPE_GROUP: return writeGroupValue(value);
    case ParserValue::TYPE_BOOL: return out.appendNumber<BOOL_BYTES>(value.getAsBool() ? 1 : 0);
    case ParserValue::TYPE_CHAR:
      return out.appendNumber<CHAR_BYTES>(static_cast<unsigned char>(value.getAsChar()));
    case ParserValue::TYPE_INT:
      return out.appendNumber<INT_BYTES>(static_cast<unsigned>(value.getAsInt()));
    case ParserValue::TYPE_DOUBLE:
      return out.appendNumber<DOUBLE_BYTES>(toBits(value.getAsDouble()));
    case ParserValue::TYPE_STRING: return writeString(value.getAsBytes());
    case ParserValue::TYPE_BINARYDATA: return writeBlock(value);
    case ParserValue::TYPE_EMPTY: return;
  }
}

// --- What the walk tells -------------------------------------------------------------------------

BinaryWriter::ItemMark BinaryWriter::beginItem(const ParserItem& item, GroupMark) {
  writeString(item.name.get());
  const ItemMark begin = openSize();
  out.appendNumber<KIND_BYTES>(ITEM_KIND);
  return begin;
}

void BinaryWriter::value(const ParserItem&, unsigned long, const ParserValue& value) {
  writeTag(value);
  writePayload(value);
}

BinaryWriter::GroupMark BinaryWriter::beginGroup(const ParserItem&, unsigned long,
                                                 const ParserGroup&, GroupMark) {
  out.appendNumber<TAG_BYTES>(ParserValue::TYPE_GROUP);
  return openSize();
}

void BinaryWriter::endItem(const ParserItem&, ItemMark begin) { closeSize(begin); }

// --- Pieces --------------------------------------------------------------------------------------

/// Leaves room for a size and returns the offset behind it.
unsigned long BinaryWriter::openSize() {
  out.appendNumber<SIZE_BYTES>(0);
  return out.getSize();
}

/// Fills in the size of what was written since `begin`.
void BinaryWriter::closeSize(unsigned long begin) {
  out.setSize(begin - SIZE_BYTES, out.getSize() - begin);
}

void BinaryWriter::writeString(std::string_view text) {
  out.append(text);
  out.appendNumber<1>(0);
}

void BinaryWriter::writeBlock(const ParserValue& value) {
  unsigned long size = 0;
  const char* bytes = static_cast<const char*>(value.getAsBinaryData(size));
  out.appendNumber<SIZE_BYTES>(size);
  out.append({bytes, size});
}

/// A group that was cleared is written as one without items.
void BinaryWriter::writeGroupValue(const ParserValue& value) {
  if (const ParserGroup* group = value.getGroup()) {
    writeGroup(*group);
  } else {
    out.appendNumber<SIZE_BYTES>(0);
  }
}

}  // namespace Quarry
