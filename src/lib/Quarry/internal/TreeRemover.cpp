#include "TreeRemover.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeParts.h"

namespace Quarry {

void TreeRemover::removeItems(detail::ItemList& items) {
  constexpr unsigned long MANY = 1000;
  TreeRemover remover;
  for (ParserItem* item : items) {
    remover.removeItem(item);
    if (remover.waiting != nullptr) remover.removeGroups();
  }
  remover.removed += items.size();
  items.clear();
  if (remover.removed >= MANY) SlabHeap::flush();
}

void TreeRemover::removeGroups() {
  while (waiting != nullptr)
    removeGroup(*waiting);
}

/// Removes items in the order of the document, which is the one in which they lie in memory: the
/// group waits while one in it is removed. Inlined, because most groups are small.
[[gnu::always_inline]] inline void TreeRemover::removeGroup(ParserGroup& group) {
  const detail::ItemList::const_iterator items = group.items.begin();
  const auto count = static_cast<std::uint32_t>(group.items.size());
  for (std::uint32_t i = group.removedItems; i < count; ++i) {
    removeItem(items[i]);
    if (waiting == &group) continue;
    group.removedItems = i + 1;
    return;
  }
  waiting = group.nextToRemove;
  removed += count;
  group.items.clear();
  ParserGroup::destroy(&group);
}

/// Inlined, because there is hardly more to do for most items than what a call takes. To look at
/// few values takes no longer than to ask whether one of them owns something; many of them lie in
/// memory that would have to come into the cache for that. Items lie in the order in which they are
/// removed, nearly always, so that those to come can be fetched.
[[gnu::always_inline]] inline void TreeRemover::removeItem(ParserItem* item) {
  constexpr std::uint32_t FEW = 8;
  constexpr std::ptrdiff_t SOON = 1536;
  if (item == nullptr) return;
  SlabHeap::prefetch(item, SOON);
  if (item->count <= FEW || item->valuesOwnMemory) releaseValues(*item);
  ParserItem::destroy(item);
}

[[gnu::always_inline]] inline void TreeRemover::releaseValues(ParserItem& item) {
  for (ParserValue& value : item) {
    if (value.ownsMemory) release(value);
  }
  item.valuesOwnMemory = false;
}

/// Frees what the value owns. Groups without items are freed at once: that goes no deeper.
void TreeRemover::release(ParserValue& value) {
  ParserGroup* group = value.getGroup();
  if (group != nullptr) group->freeRegion();
  if (group == nullptr || group->items.empty()) return value.release();
  group->nextToRemove = waiting;
  group->removedItems = 0;
  waiting = group;
}

}  // namespace Quarry
