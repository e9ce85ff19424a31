/// @file
/// A selection of a group's items.
#pragma once

#include <Plinth/Collection.h>
#include <Quarry/Export.h>

#include <cstddef>
#include <vector>

namespace Plinth {
class Expression;
}

namespace Quarry {

class ParserGroup;
class ParserItem;

namespace detail {

/// Gets the memory of a list where items have theirs. For the library's own use.
template <class T>
struct ListAllocator {
  using value_type = T;

  ListAllocator() = default;
  template <class Other>
  ListAllocator(const ListAllocator<Other>&) noexcept {}

  T* allocate(std::size_t count);
  void deallocate(T* list, std::size_t count) noexcept;

  template <class Other>
  bool operator==(const ListAllocator<Other>&) const noexcept {
    return true;
  }
  template <class Other>
  bool operator!=(const ListAllocator<Other>&) const noexcept {
    return false;
  }
};

/// The items of a group.
using ItemList = std::vector<ParserItem*, ListAllocator<ParserItem*>>;

}  // namespace detail

/// Items selected by what they are and by their names, walked without copying anything.
///
/// ```cpp
/// for (Quarry::ParserItem* lamp : group.getItems("^lamp")) lamp->setBool(true, 0);
///
/// const Plinth::Expression old("_old$");
/// unsigned long current = group.getItems("^lamp").getNotMatching(old).getCount();
/// ```
///
/// A collection is a live view of the group's list: every walk looks at the items that the group
/// holds then. It must not outlive the group, and the group must not gain or lose items while a
/// locator or a range-based `for` walks it forwards. Counting and indexing are walks.
///
/// A default-constructed collection is empty. Copies view the same group.
///
/// Threads: as the group.
class QUARRY_EXPORT ParserItems : public Plinth::Collection<ParserItem*> {
 public:
  using Plinth::Collection<ParserItem*>::Collection;

  /// Returns the items of this collection whose name matches; none when `expression` holds no
  /// pattern.
  ParserItems getMatching(const Plinth::Expression& expression) const;

  /// Returns the others, in the same order; all when `expression` holds no pattern.
  ParserItems getNotMatching(const Plinth::Expression& expression) const;

 private:
  friend class ParserGroup;

  /// Returns the items of a group's list that are no keywords.
  QUARRY_HIDDEN static ParserItems select(const detail::ItemList& items);
};

}  // namespace Quarry
