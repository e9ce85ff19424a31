/// Finds items of large groups by their names.
#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Quarry {

class ParserItem;

/// A hash table over a list of items: for each name, the first item that is called so.
///
/// An index knows the list as it was when the index was made. It holds until an item of the list is
/// taken out or renamed; items that were added behind need a look of their own. Items do not know
/// their group, so a new name makes every index there is stale: that is counted here, and happens
/// only for items that an index knows.
class NameIndex {
 public:
  /// Makes an index over a list, in which null entries are passed over.
  explicit NameIndex(const std::vector<ParserItem*>& list);

  /// Makes every index stale.
  static void forgetAll() { newNames.fetch_add(1, std::memory_order_relaxed); }

  bool isStale() const { return madeAt != newNames.load(std::memory_order_relaxed); }

  /// Returns the number of entries of the list that the index knows.
  unsigned long getCount() const { return count; }

  /// Returns the first item called `name`, or null.
  ParserItem* find(std::string_view name) const;

 private:
  struct Entry {
    ParserItem* item = nullptr;  ///< null for none
    std::uint32_t hash = 0;
  };

  static std::uint32_t hashOf(std::string_view name);
  unsigned long findEntry(std::string_view name, std::uint32_t hash) const;

  static inline std::atomic<std::uint64_t> newNames = 0;

  std::uint64_t madeAt;
  unsigned long count;
  std::vector<Entry> entries;  ///< a power of two, at least half of them empty
};

}  // namespace Quarry
