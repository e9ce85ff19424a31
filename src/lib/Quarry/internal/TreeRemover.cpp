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
    remover.removeWaiting();
  }
  items.clear();
  if (remover.removed >= MANY) SlabHeap::flush();
}

/// Removes items in the order of the document, which is the one in which they lie in memory: a
/// group waits while the ones in it are removed.
void TreeRemover::removeWaiting() {
  while (waiting != nullptr) {
    ParserGroup& group = *waiting;
    while (waiting == &group && group.removedItems < group.items.size())
      removeItem(group.items[group.removedItems++]);
    if (waiting != &group) continue;
    waiting = group.nextToRemove;
    group.items.clear();
    delete &group;
  }
}

void TreeRemover::removeItem(ParserItem* item) {
  if (item == nullptr) return;
  for (ParserValue& value : *item) {
    if (value.ownsMemory) release(value);
  }
  item->count = 0;
  ParserItem::destroy(item);
  ++removed;
}

/// Frees what the value owns. Groups without items are freed at once: that goes no deeper.
void TreeRemover::release(ParserValue& value) {
  ParserGroup* group = value.getGroup();
  if (group == nullptr || group->items.empty()) return value.release();
  group->nextToRemove = waiting;
  group->removedItems = 0;
  waiting = group;
}

}  // namespace Quarry
