/// @file
/// A selection of a group's items.
#pragma once

#include <Plinth/Collection.h>
#include <Quarry/Export.h>

#include <cstddef>
#include <cstdint>

namespace Plinth {
class Expression;
}

namespace Quarry {

class ParserGroup;
class ParserItem;

namespace detail {

/// The items of a group, or null where an item was detached: a vector of pointers that lies where
/// items do. A single one lies in the list itself, and the next few find places that are got at
/// once, because most groups are small and there are many. The list does not own the items. For the
/// library's own use.
class ItemList {
 public:
  using const_iterator = ParserItem* const*;

  ItemList() noexcept : places(&ownPlace) {}
  ItemList(const ItemList&) = delete;
  ItemList& operator=(const ItemList&) = delete;
  ~ItemList() { freePlaces(); }

  const_iterator begin() const { return places; }
  const_iterator end() const { return places + count; }
  std::size_t size() const { return count; }
  bool empty() const { return count == 0; }
  bool isFull() const { return count == capacity; }
  /// Returns the memory that the list has beside itself, in bytes.
  std::size_t getListSize() const { return isApart() ? capacity * PLACE_SIZE : 0; }

  ParserItem*& operator[](std::size_t index) { return places[index]; }
  ParserItem* operator[](std::size_t index) const { return places[index]; }
  ParserItem* front() const { return places[0]; }
  ParserItem* back() const { return places[count - 1]; }

  /// Adds an item, for which there is a place.
  void add(ParserItem* item) { places[count++] = item; }

  void push_back(ParserItem* item) {
    if (isFull()) grow();
    add(item);
  }
  void pop_back() { --count; }
  void clear() { count = 0; }

  /// Empties the list and frees its memory.
  QUARRY_HIDDEN void forget() noexcept;

  /// Makes room for so many items in all. Throws `std::bad_alloc`.
  QUARRY_HIDDEN void reserve(std::size_t wanted);
  /// Makes room for further items, so that adding one takes the same time on average. Throws
  /// `std::bad_alloc`.
  QUARRY_HIDDEN void grow();
  QUARRY_HIDDEN void swap(ItemList& other) noexcept;

 private:
  static constexpr std::size_t PLACE_SIZE = sizeof(void*);

  bool isApart() const { return places != &ownPlace; }
  QUARRY_HIDDEN void freePlaces() noexcept;

  ParserItem** places;   ///< `ownPlace` or memory of their own
  ParserItem* ownPlace;  ///< for a single item
  std::uint32_t count = 0;
  std::uint32_t capacity = 1;
};

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
