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
    clearItem(*item);
    delete item;
  }
  removed += items.size();
  items.clear();
}

/// Frees what the values own. Groups without items are freed at once: that goes no deeper.
void TreeRemover::clearItem(ParserItem& item) {
  for (ParserValue& value : item) {
    if (!value.ownsMemory) continue;
    ParserGroup* group = value.getGroup();
    if (group == nullptr || group->items.empty()) {
      value.release();
      continue;
    }
    group->nextToRemove = waiting;
    waiting = group;
  }
  item.count = 0;
}

}  // namespace Quarry
