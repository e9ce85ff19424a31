#include "BinaryWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "BinaryNumber.h"
#include "TreeWalker.h"

namespace Quarry {

namespace {

/// Always this when written; readers ignore it.
constexpr char ITEM_KIND = 0;

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void BinaryWriter::writeGroup(const ParserGroup& group) {
  TreeWalker(*this).walkGroup(group, openSize());
}

void BinaryWriter::writeItem(const ParserItem& item) {
  TreeWalker(*this).walkItem(item, GroupMark(), beginItem(item, GroupMark()));
}

// --- What the walk tells -------------------------------------------------------------------------

BinaryWriter::ItemMark BinaryWriter::beginItem(const ParserItem& item, GroupMark) {
  ParserValue::stringToBin(out, item.getName());
  const ItemMark begin = openSize();
  out.push_back(ITEM_KIND);
  return begin;
}

void BinaryWriter::value(const ParserItem&, unsigned long, const ParserValue& value) {
  value.appendTag(out);
  value.appendPayload(out);
}

BinaryWriter::GroupMark BinaryWriter::beginGroup(const ParserItem&, unsigned long,
                                                 const ParserGroup&, GroupMark) {
  ParserValue::charToBin(out, ParserValue::TYPE_GROUP);
  return openSize();
}

void BinaryWriter::endItem(const ParserItem&, ItemMark begin) { closeSize(begin); }

// --- Sizes ---------------------------------------------------------------------------------------

/// Leaves room for a size and returns the offset behind it.
unsigned long BinaryWriter::openSize() {
  ParserValue::sizeToBin(out, 0);
  return out.size();
}

/// Fills in the size of what was written since `begin`.
void BinaryWriter::closeSize(unsigned long begin) {
  storeNumber(&out[begin - SIZE_BYTES], out.size() - begin, SIZE_BYTES);
}

}  // namespace Quarry
