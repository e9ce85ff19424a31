#include "TreeRemover.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

namespace Quarry {

void TreeRemover::removeItems(std::vector<ParserItem*>& items) {
  TreeRemover remover;
  remover.removeFrom(items);
  while (remover.waiting != nullptr) {
    ParserValue* value = remover.waiting;
    remover.waiting = value->data.next;
    remover.removeFrom(value->getGroup()->items);
    delete value;
  }
}

void TreeRemover::removeFrom(std::vector<ParserItem*>& items) {
  for (ParserItem* item : items) {
    if (item == nullptr) continue;
    takeGroups(*item);
    delete item;
  }
  items.clear();
}

/// Groups without items are left to their item: deleting them goes no deeper.
void TreeRemover::takeGroups(ParserItem& item) {
  for (ParserValue*& value : item.values) {
    const ParserGroup* group = value->getGroup();
    if (group == nullptr || group->items.empty()) continue;
    value->data.next = waiting;
    waiting = value;
    value = nullptr;
  }
}

}  // namespace Quarry
