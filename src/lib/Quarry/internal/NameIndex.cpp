#include "NameIndex.h"

#include <Quarry/ParserItem.h>

#include <bit>
#include <functional>
#include <string_view>

namespace Quarry {

NameIndex::NameIndex(const std::vector<ParserItem*>& list)
    : madeAt(newNames.load(std::memory_order_relaxed)),
      count(list.size()),
      entries(std::bit_ceil(2 * list.size() + 1)) {
  for (ParserItem* item : list) {
    if (item == nullptr) continue;
    const std::uint32_t hash = hashOf(item->name.get());
    Entry& entry = entries[findEntry(item->name.get(), hash)];
    if (entry.item == nullptr) entry = {item, hash};
    item->isIndexed = true;
  }
}

ParserItem* NameIndex::find(std::string_view name) const {
  return entries[findEntry(name, hashOf(name))].item;
}

std::uint32_t NameIndex::hashOf(std::string_view name) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
}

/// Returns the place of the entry for `name`: an empty one where there is none yet.
unsigned long NameIndex::findEntry(std::string_view name, std::uint32_t hash) const {
  const unsigned long mask = entries.size() - 1;
  unsigned long place = hash & mask;
  while (entries[place].item != nullptr &&
         (entries[place].hash != hash || entries[place].item->name.get() != name)) {
    place = (place + 1) & mask;
  }
  return place;
}

}  // namespace Quarry
