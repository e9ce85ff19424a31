#include "BinaryWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "BinaryNumber.h"

namespace Quarry {

namespace {

/// Always this when written; readers ignore it.
constexpr char ITEM_KIND = 0;

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void BinaryWriter::writeGroup(const ParserGroup& group) {
  openGroup(group);
  run();
}

void BinaryWriter::writeItem(const ParserItem& item) {
  levels.push_back({nullptr, 0, 0, nullptr, 0, 0});
  openItem(item);
  run();
}

// --- The walk ------------------------------------------------------------------------------------

void BinaryWriter::run() {
  while (!levels.empty())
    step();
}

/// Goes on with the innermost group: with the values of its current item, else with its next item.
void BinaryWriter::step() {
  if (levels.back().item == nullptr) {
    if (!openNextItem()) closeGroup();
  } else if (const ParserGroup* nested = writeValuesUpToGroup()) {
    openGroup(*nested);
  } else {
    closeItem();
  }
}

/// Begins the group's next item; false when there is none.
bool BinaryWriter::openNextItem() {
  Level& level = levels.back();
  if (level.group == nullptr) return false;
  const std::vector<ParserItem*>& items = level.group->items;
  while (level.nextItem < items.size()) {
    const ParserItem* item = items[level.nextItem++];
    if (item == nullptr) continue;
    openItem(*item);
    return true;
  }
  return false;
}

/// Writes values of the current item. Of the first that is a group only the tag is written, and the
/// group is returned; null when all values are written.
const ParserGroup* BinaryWriter::writeValuesUpToGroup() {
  Level& level = levels.back();
  const std::vector<ParserValue*>& values = level.item->values;
  while (level.nextValue < values.size()) {
    const ParserValue& value = *values[level.nextValue++];
    value.appendTag(out);
    if (const ParserGroup* group = value.getGroup()) return group;
    value.appendPayload(out);
  }
  return nullptr;
}

// --- Frames --------------------------------------------------------------------------------------

void BinaryWriter::openGroup(const ParserGroup& group) {
  levels.push_back({&group, openSize(), 0, nullptr, 0, 0});
}

void BinaryWriter::closeGroup() {
  const Level level = levels.back();
  levels.pop_back();
  if (level.group != nullptr) closeSize(level.groupBegin);
}

void BinaryWriter::openItem(const ParserItem& item) {
  ParserValue::stringToBin(out, item.name);
  Level& level = levels.back();
  level.item = &item;
  level.itemBegin = openSize();
  level.nextValue = 0;
  out.push_back(ITEM_KIND);
}

void BinaryWriter::closeItem() {
  Level& level = levels.back();
  closeSize(level.itemBegin);
  level.item = nullptr;
}

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
