#include "TreeCopier.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeParts.h"

#include <memory>
#include <string>

namespace Quarry {

void TreeCopier::copyItems(const ParserGroup& source, ParserGroup& target) {
  TreeCopier copier;
  copier.waiting.push_back({&source, &target});
  while (!copier.waiting.empty()) {
    const Pair pair = copier.waiting.back();
    copier.waiting.pop_back();
    copier.copyLevel(*pair.source, *pair.target);
  }
}

void TreeCopier::copyLevel(const ParserGroup& source, ParserGroup& target) {
  target.items.reserve(source.items.size());
  for (const ParserItem* item : source.items) {
    if (item == nullptr) continue;
    std::unique_ptr<ParserItem> copy(ParserItem::make(item->name.get(), item->name.readable(),
                                                      item->type, {item->line, item->column},
                                                      item->count));
    copy->copyDetails(*item);
    copyValues(*item, *target.append(std::move(copy)));
  }
}

void TreeCopier::copyValues(const ParserItem& source, ParserItem& target) {
  target.reserve(source.count);
  for (const ParserValue& value : source) {
    if (const ParserGroup* group = value.getGroup()) {
      waiting.push_back({group, nullptr});
      waiting.back().target = target.addGroup(new ParserGroup(group->getName()));
    } else {
      ::new (target.nextPlace()) ParserValue(value);
      target.addMade();
    }
  }
}

}  // namespace Quarry
