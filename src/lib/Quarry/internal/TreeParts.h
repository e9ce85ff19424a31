/// How the parts of trees are made: what the public headers declare and the library has to inline.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "NameIndex.h"
#include "OutputBuffer.h"
#include "SlabHeap.h"
#include "SlabRegion.h"
#include "StringText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace Quarry {

// --- Lists ---------------------------------------------------------------------------------------

inline void detail::ItemList::freePlaces() noexcept {
  if (isApart()) SlabHeap::free(places, capacity * PLACE_SIZE);
}

inline void detail::ItemList::forget() noexcept {
  freePlaces();
  places = &ownPlace;
  count = 0;
  capacity = 1;
}

/// Few groups have more than FIRST items, and for all others this is all there is to do.
inline void detail::ItemList::grow() {
  constexpr std::uint32_t FIRST = 4;
  if (isApart()) return reserve(2 * size());
  auto** list = static_cast<ParserItem**>(SlabHeap::allocate(FIRST * PLACE_SIZE));
  *list = ownPlace;
  places = list;
  capacity = FIRST;
}

// --- Values --------------------------------------------------------------------------------------

inline ParserValue::ParserValue(Form form, Type valueType, unsigned long length)
    : type(valueType),
      textLength(length & STRING_TEXT),
      dataValid(form == Form::DATA),
      textValid(form == Form::TEXT),
      ownsMemory(false) {}

inline ParserValue::ParserValue(Form form, ParserGroup* group) noexcept
    : ParserValue(form, TYPE_GROUP) {
  content.slot.group = group;
  ownsMemory = true;
}

/// Where enough may be read, a text is copied by the room that there is and not by its length: that
/// takes no call and no branch.
inline ParserValue::ParserValue(Form form, Type valueType, std::string_view text,
                                const char* readable)
    : ParserValue(form, valueType, text.size()) {
  const auto left = static_cast<unsigned long>(readable - text.data());
  if (text.size() <= CONTENT_TEXT && left >= CONTENT_TEXT) [[likely]] {
    std::memcpy(inlineText(), text.data(), CONTENT_TEXT);
  } else {
    storeText(text, CONTENT_TEXT);
  }
}

/// Moves a value to another place, so that nothing is left to destroy; of one that owns no memory
/// it makes a copy. Nothing points into a value, so that its bytes are all there is to it.
inline void ParserValue::relocate(const ParserValue& from, void* to) noexcept {
  std::memcpy(to, static_cast<const void*>(&from), sizeof(ParserValue));
}

// --- Items ---------------------------------------------------------------------------------------

/// Where enough may be read, a short name is copied by the room that there is, and cut with a mask.
inline ParserItem::Name::Name(std::string_view text, const char* readable) {
  static constexpr auto KEPT = [] {
    std::array<unsigned char, 2 * SIZE> bytes{};
    for (std::size_t i = 0; i < SIZE; ++i)
      bytes[i] = 0xFF;
    return bytes;
  }();
  if (text.size() > LONGEST_SHORT) {
    hold(text);
    return;
  }
  if (static_cast<std::size_t>(readable - text.data()) >= SIZE) {
    const unsigned char* mask = KEPT.data() + SIZE - text.size();
    copyHalf(text.data(), mask, place.bytes);
    copyHalf(text.data() + HALF, mask + HALF, place.bytes + HALF);
  } else {
    std::memset(place.bytes, 0, SIZE);
    text.copy(place.bytes, LONGEST_SHORT);
  }
  setForm(text.size());
}

/// Nearly all other names are told apart by the second half, whether they are strings or not.
inline bool ParserItem::Name::is(std::string_view text, const Name& key) const {
  constexpr std::uint8_t ALL = 0xFF;
  constexpr std::uint8_t NO_STRING = ALL ^ STRING;
  static constexpr auto COMPARED = std::bit_cast<std::uint64_t>(
      std::array<std::uint8_t, HALF>{ALL, ALL, ALL, ALL, ALL, ALL, ALL, NO_STRING});
  std::uint64_t mine = 0;
  std::uint64_t wanted = 0;
  std::memcpy(&mine, place.bytes + HALF, HALF);
  std::memcpy(&wanted, key.place.bytes + HALF, HALF);
  if (((mine ^ wanted) & COMPARED) != 0) return false;
  if (ownsMemory()) return get() == text;
  return std::memcmp(place.bytes, key.place.bytes, HALF) == 0;
}

/// A short name is copied with the whole of its place.
inline void ParserItem::Name::appendTo(OutputBuffer& out) const {
  const std::string_view text = get();
  if (ownsMemory()) return out.append(text);
  out.appendShort<SIZE>(text.data(), text.size());
}

/// Copies the bytes of half a name where the mask has bits.
inline void ParserItem::Name::copyHalf(const char* from, const unsigned char* mask, char* to) {
  std::uint64_t bytes = 0;
  std::uint64_t kept = 0;
  static_assert(sizeof(bytes) == HALF);
  std::memcpy(&bytes, from, HALF);
  std::memcpy(&kept, mask, HALF);
  bytes &= kept;
  std::memcpy(to, &bytes, HALF);
}

inline ParserItem::ParserItem(std::string_view itemName, const char* readable, Type itemType,
                              const Place& place)
    : name(itemName, readable),
      count(0),
      capacity(1),
      line(static_cast<std::uint32_t>(std::min<unsigned long>(place.line, UINT32_MAX))),
      column(static_cast<std::uint32_t>(std::min<unsigned long>(place.column, UINT32_MAX))),
      type(itemType),
      folding(false),
      isIndexed(false),
      isPart(false) {}

inline void* ParserItem::operator new(std::size_t size, ValueCount places) {
  return SlabHeap::allocate(size + (places.count - 1) * sizeof(ParserValue));
}

inline void ParserItem::operator delete(void* memory, ValueCount) noexcept {
  SlabHeap::free(memory, sizeof(ParserItem));
}

/// Makes an item with room for `wanted` values, where they shall not have to be moved from.
/// @param readable bytes up to here may be read, though not used
inline ParserItem* ParserItem::make(std::string_view itemName, const char* readable, Type itemType,
                                    const Place& place, unsigned long wanted) {
  constexpr unsigned long MOST = (SlabHeap::LARGEST - sizeof(ParserItem)) / sizeof(ParserValue) + 1;
  const ValueCount places{wanted <= MOST ? std::max(wanted, 1UL) : 1};
  auto* item = new (places) ParserItem(itemName, readable, itemType, place);
  item->capacity = static_cast<std::uint32_t>(places.count);
  item->isPart = true;
  return item;
}

/// As `delete`, within the library.
inline void ParserItem::destroy(ParserItem* item) noexcept {
  item->~ParserItem();
  SlabHeap::free(item, sizeof(ParserItem));
}

/// Makes a place for one more value where the others need not be moved for it.
/// @return whether there is one; if not, there will be none before they are moved
inline bool ParserItem::makePlace() const { return count < capacity || extend(); }

/// Makes the item larger by one place, if it has few and nothing was made since.
inline bool ParserItem::extend() const {
  constexpr std::uint32_t MOST = 8;
  constexpr std::size_t PLACE = sizeof(ParserValue);
  if (capacity >= MOST || hasList) return false;
  const std::size_t size = sizeof(ParserItem) + (capacity - 1) * PLACE;
  if (!SlabHeap::extend(const_cast<ParserItem*>(this), size, size + PLACE)) return false;
  ++capacity;
  return true;
}

/// Returns where the next value is to be made; addMade() takes it in when it has been.
inline void* ParserItem::nextPlace() const {
  if (!makePlace()) reserve(std::max(2UL * capacity, 4UL));
  return end();
}

inline void ParserItem::addMade() const {
  if (end()->ownsMemory) valuesOwnMemory = true;
  ++count;
}

/// Adds a value that stays text, where there is a place for it.
/// @param readable bytes up to here may be read, though not used
inline void ParserItem::addText(ParserValue::Type valueType, std::string_view text,
                                const char* readable) const {
  if (text.size() > ParserValue::CONTENT_TEXT) valuesOwnMemory = true;
  ::new (end()) ParserValue(ParserValue::Form::TEXT, valueType, text, readable);
  ++count;
}

/// Makes room for so many values.
inline void ParserItem::reserve(unsigned long places) const {
  if (places > capacity) grow(places);
}

inline void ParserItem::moveValuesTo(ParserValue* places) const noexcept {
  for (ParserValue& value : *this)
    ParserValue::relocate(value, places++);
}

/// Appends a group without a name.
inline ParserGroup* ParserItem::appendNewGroup() const {
  void* place = nextPlace();
  ParserGroup* group = ParserGroup::makeNested();
  ::new (place) ParserValue(ParserValue::Form::TEXT, group);
  addMade();
  return group;
}

// --- Groups --------------------------------------------------------------------------------------

inline ParserGroup::ParserGroup() noexcept : plainCount(0), comparisons(0) {}

/// Makes a group without a name.
inline ParserGroup* ParserGroup::makeNested() {
  auto* group = ::new (SlabHeap::allocate(sizeof(ParserGroup))) ParserGroup();
  group->isPart = true;
  return group;
}

/// As `delete`, within the library.
inline void ParserGroup::destroy(ParserGroup* group) noexcept {
  std::destroy_at(group);
  SlabHeap::free(group, sizeof(ParserGroup));
}

/// Appends an item of make(), for which there is a place. It is freed when memory runs out.
inline void ParserGroup::adopt(ParserItem* item) {
  try {
    appendToPlace(item);
  } catch (...) {
    ParserItem::destroy(item);
    throw;
  }
}

/// Makes place for one more item.
inline void ParserGroup::makePlace() {
  if (items.isFull()) items.grow();
}

/// When memory runs out the group is as before and the item is still the caller's.
inline void ParserGroup::append(ParserItem* item) {
  makePlace();
  appendToPlace(item);
}

/// The same where there is a place.
inline void ParserGroup::appendToPlace(ParserItem* item) {
  const std::size_t position = items.size();
  const bool isNextPlain =
      item->type == ParserItem::ITEM_PLAIN && position == plainCount && getPositions() == nullptr;
  if (isNextPlain) [[likely]] {
    ++plainCount;
  } else {
    enter(*item, position);
  }
  items.add(item);
}

}  // namespace Quarry
