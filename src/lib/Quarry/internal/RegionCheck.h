/// Checks of debug builds.
#pragma once

#ifndef NDEBUG

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "SlabRegion.h"
#include "TreeWalker.h"

#include <cstddef>
#include <new>
#include <unordered_set>
#include <vector>

namespace Quarry {

/// Checks that a tree may be freed at once: that all of it lies in its region, and that the region
/// was told of every part that has more.
class RegionCheck {
 public:
  /// @param region of `root`; one that was broken up holds anyhow
  static bool holds(const ParserGroup& root, const SlabRegion& region) {
    if (!region.isWhole()) return true;
    try {
      RegionCheck check(region);
      TreeWalker(check).walkGroup(root, {});
      return check.isGood;
    } catch (const std::bad_alloc&) {
      return true;
    }
  }

  // --- What the walk tells ---------------------------------------------------------------------

  struct GroupMark {};
  struct ItemMark {};

  ItemMark beginItem(const ParserItem& item, GroupMark) {
    expect(item.isPart && region.has(&item, sizeof(ParserItem)));
    if (item.hasList) expect(region.has(item.list, item.capacity * sizeof(ParserValue)));
    const ParserItem::Name& name = item.name;
    if (name.isString() || item.details != nullptr) {
      expectKnown(&item);
    } else if (name.ownsMemory()) {
      expect(region.has(name.place.block.bytes, name.place.block.length));
    }
    return {};
  }

  void value(const ParserItem& item, unsigned long, const ParserValue& value) {
    if (!value.ownsMemory) return;
    if (value.type != ParserValue::TYPE_BINARYDATA && value.textLength == ParserValue::LONG_TEXT) {
      const auto& text = value.content.slot.longText;
      expect(region.has(text.bytes, text.length));
    } else {
      expectKnown(&item);
    }
  }

  GroupMark beginGroup(const ParserItem&, unsigned long, const ParserGroup& group, GroupMark) {
    expect(group.isPart && region.has(&group, sizeof(ParserGroup)));
    if (group.details != nullptr) expectKnown(&group);
    const std::size_t listSize = group.items.getListSize();
    if (listSize > 0) expect(region.has(group.items.begin(), listSize));
    return {};
  }

  void endGroup(GroupMark) {}
  void endItem(const ParserItem&, ItemMark) {}

 private:
  explicit RegionCheck(const SlabRegion& checked) : region(checked) {
    for (const SlabRegion::Holder& holder : region.getHolders())
      holders.insert(holder.part);
  }

  void expect(bool isSo) { isGood = isGood && isSo; }
  void expectKnown(const void* part) { expect(holders.count(part) > 0); }

  const SlabRegion& region;
  std::unordered_set<const void*> holders;
  bool isGood = true;
};

}  // namespace Quarry

#endif
