#include "BinaryWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeParts.h"
#include "TreeWalker.h"

namespace Quarry {

namespace {

/// Always this when written; readers ignore it.
constexpr unsigned ITEM_KIND = 0;

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void BinaryWriter::writeGroup(const ParserGroup& group) {
  TreeWalker(*this).walkGroup(group, openFrame());
}

void BinaryWriter::writeItem(const ParserItem& item) {
  TreeWalker(*this).walkItem(item, GroupMark(), beginItem(item, GroupMark()));
}

void BinaryWriter::writeTag(const ParserValue& value) {
  writeNumber<TAG_BYTES>(static_cast<std::uint64_t>(value.type));
}

/// Numbers are converted from their text where there is only that.
void BinaryWriter::writePayload(const ParserValue& value) {
  switch (value.type) {
    case ParserValue::TYPE_GROUP: return writeGroupValue(value);
    case ParserValue::TYPE_BOOL: return writeNumber<BOOL_BYTES>(value.getAsBool() ? 1 : 0);
    case ParserValue::TYPE_CHAR:
      return writeNumber<CHAR_BYTES>(static_cast<unsigned char>(value.getAsChar()));
    case ParserValue::TYPE_INT:
      return writeNumber<INT_BYTES>(static_cast<unsigned>(value.getAsInt()));
    case ParserValue::TYPE_DOUBLE: return writeNumber<DOUBLE_BYTES>(toBits(value.getAsDouble()));
    case ParserValue::TYPE_STRING: return writeString(value.getAsBytes());
    case ParserValue::TYPE_BINARYDATA: return writeBlock(value);
    case ParserValue::TYPE_EMPTY: return;
  }
}

// --- What the walk tells -------------------------------------------------------------------------

BinaryWriter::ItemMark BinaryWriter::beginItem(const ParserItem& item, GroupMark) {
  item.name.appendTo(out);
  out.push_back('\0');
  const Frame frame = openFrame();
  writeNumber<KIND_BYTES>(ITEM_KIND);
  return frame;
}

void BinaryWriter::value(const ParserItem&, unsigned long, const ParserValue& value) {
  writeTag(value);
  writePayload(value);
}

BinaryWriter::GroupMark BinaryWriter::beginGroup(const ParserItem&, unsigned long,
                                                 const ParserGroup&, GroupMark) {
  writeNumber<TAG_BYTES>(ParserValue::TYPE_GROUP);
  return openFrame();
}

// --- Pieces --------------------------------------------------------------------------------------

/// Leaves room for a size.
BinaryWriter::Frame BinaryWriter::openFrame() {
  char* size = out.claim(SIZE_BYTES);
  return {size, out.size()};
}

/// Fills in the size of what was written since.
void BinaryWriter::closeFrame(const Frame& frame) {
  storeNumber<SIZE_BYTES>(frame.size, out.size() - frame.begin);
}

void BinaryWriter::writeString(std::string_view text) {
  out.append(text);
  out.push_back('\0');
}

void BinaryWriter::writeBlock(const ParserValue& value) {
  unsigned long size = 0;
  const char* bytes = static_cast<const char*>(value.getAsBinaryData(size));
  writeNumber<SIZE_BYTES>(size);
  out.append({bytes, size});
}

/// A group that was cleared is written as one without items.
void BinaryWriter::writeGroupValue(const ParserValue& value) {
  if (const ParserGroup* group = value.getGroup()) {
    writeGroup(*group);
  } else {
    writeNumber<SIZE_BYTES>(0);
  }
}

}  // namespace Quarry
