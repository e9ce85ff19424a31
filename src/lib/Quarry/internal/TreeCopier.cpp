#include "TreeCopier.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeParts.h"
#include "TreeWalker.h"

#include <memory>
#include <string>

namespace Quarry {

void TreeCopier::copyItems(const ParserGroup& source, ParserGroup& target) {
  const SlabRegion::Use use(target.makeRegionFor(source));
  target.items.reserve(source.items.size());
  TreeCopier copier;
  TreeWalker(copier).walkGroup(source, {&target, nullptr});
}

TreeCopier::ItemMark TreeCopier::beginItem(const ParserItem& item, const GroupMark& target) {
  std::unique_ptr<ParserItem> made(ParserItem::make(
      item.name.get(), item.name.readable(), item.type, {item.line, item.column}, item.count));
  made->copyDetails(item);
  made->reserve(item.count);
  copy = target.group->append(std::move(made));
  return {};
}

/// A value that owns nothing is its bytes.
void TreeCopier::value(const ParserItem&, unsigned long, const ParserValue& value) {
  if (value.type == ParserValue::TYPE_BINARYDATA) copy->noteHolding();
  if (value.ownsMemory) {
    ::new (copy->nextPlace()) ParserValue(value);
  } else {
    ParserValue::relocate(value, copy->nextPlace());
  }
  copy->addMade();
}

TreeCopier::GroupMark TreeCopier::beginGroup(const ParserItem&, unsigned long,
                                             const ParserGroup& group, const GroupMark&) {
  ParserItem* holder = copy;
  ParserGroup* made = holder->appendNewGroup();
  if (group.hasName()) made->makeDetails().name = group.getName();
  made->items.reserve(group.items.size());
  return {made, holder};
}

}  // namespace Quarry
