#include "TreeRemover.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeParts.h"

namespace Quarry {

void TreeRemover::removeItems(detail::ItemList& items) {
  constexpr unsigned long MANY = 1000;
  TreeRemover remover;
  remover.removeFrom(items);
  while (remover.waiting != nullptr) {
    ParserGroup* group = remover.waiting;
    remover.waiting = group->nextToRemove;
    remover.removeFrom(group->items);
    delete group;
  }
  if (remover.removed >= MANY) SlabHeap::flush();
}

void TreeRemover::removeFrom(detail::ItemList& items) {
  for (ParserItem* item : items) {
    if (item == nullptr) continue;
    takeGroups(*item);
    delete item;
  }
  removed += items.size();
  items.clear();
}

/// Groups without items are left to their item: deleting them goes no deeper.
void TreeRemover::takeGroups(ParserItem& item) {
  for (ParserValue& value : item) {
    ParserGroup* group = value.getGroup();
    if (group == nullptr || group->items.empty()) continue;
    value.ownsMemory = false;
    group->nextToRemove = waiting;
    waiting = group;
  }
}

}  // namespace Quarry
