#include "TreeCopier.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <memory>

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
  for (const ParserItem* item : source.items) {
    if (item == nullptr) continue;
    ParserItem* copy = target.append(
        std::make_unique<ParserItem>(item->name, item->type, item->line, item->column));
    copy->copyAttributes(*item);
    copyValues(*item, *copy);
  }
}

void TreeCopier::copyValues(const ParserItem& source, ParserItem& target) {
  target.values.reserve(source.values.size());
  for (const ParserValue* value : source.values) {
    const ParserGroup* group = value->getGroup();
    if (group == nullptr) {
      target.append(std::make_unique<ParserValue>(*value));
      continue;
    }
    auto copy = std::make_unique<ParserGroup>(group->getName());
    waiting.push_back({group, copy.get()});
    target.addGroup(copy.get());
    copy.release();
  }
}

}  // namespace Quarry
