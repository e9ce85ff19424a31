#include "BinaryReader.h"

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "ByteSearch.h"
#include "Messages.h"
#include "TreeParts.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Quarry {

namespace {

constexpr std::size_t USUAL_DEPTH = 16;

// What is told of broken data, kept out of the functions that read it: it is for little data and
// would burden all. Whoever is told may make trees of its own, which are no part of this one.

[[gnu::noinline]] void warn(std::string (*message)()) {
  const SlabRegion::Use none(nullptr);
  Plinth::console.warning(message(), std::string());
}

[[gnu::noinline]] void tellOfChunk(std::string_view name, std::uint64_t length,
                                   unsigned long size) {
  const SlabRegion::Use none(nullptr);
  Plinth::console.print(Messages::chunkLargerThanData(std::string(name), length, size),
                        std::string());
}

}  // namespace

BinaryReader::BinaryReader(const std::vector<char>& source, unsigned long& position,
                           unsigned long nestingDepth)
    : bytes(source.data()),
      size(source.size()),
      pos(std::min<unsigned long>(position, source.size())),
      callersPosition(position),
      deepest(nestingDepth) {}

// --- Trees ---------------------------------------------------------------------------------------

bool BinaryReader::readGroup(ParserGroup& group) {
  outerLevels.reserve(USUAL_DEPTH);
  if (!openGroup(group)) return false;
  const SlabRegion::Use use(group.makeRegionFor(level.groupEnd - pos));
  return run();
}

bool BinaryReader::readItem(ParserItem& item) {
  Level inner;
  if (!openFrame(item.name.get(), inner.itemEnd)) return false;
  inner.item = &item;
  open(inner);
  return run();
}

std::unique_ptr<ParserValue> BinaryReader::readValue() {
  if (!has(TAG_BYTES)) return nullptr;
  const auto tag = static_cast<unsigned char>(bytes[pos++]);
  const auto free = [](void* memory) { ::operator delete(memory); };
  std::unique_ptr<void, decltype(free)> place(::operator new(sizeof(ParserValue)), free);
  if (!readPayload(tag, place.get())) return nullptr;
  std::unique_ptr<ParserValue> value(static_cast<ParserValue*>(place.release()));
  if (value->isGroup()) readGroup(*value->getGroup());
  return value;
}

/// A failure ends one level. Only the outermost one decides the result.
bool BinaryReader::run() {
  Stop stop = Stop::AT_GROUP;
  while (!outerLevels.empty()) {
    stop = readLevel();
    if (stop == Stop::AT_GROUP) continue;
    if (stop == Stop::BROKEN) dropItem();
    level = outerLevels.back();
    outerLevels.pop_back();
  }
  return stop == Stop::AT_END;
}

void BinaryReader::open(const Level& inner) {
  outerLevels.push_back(level);
  level = inner;
}

/// group = size , { item } ;
bool BinaryReader::openGroup(ParserGroup& group) {
  unsigned long length = 0;
  if (!readGroupSize(length)) return false;
  open({&group, pos + length, nullptr, 0});
  return true;
}

bool BinaryReader::readGroupSize(unsigned long& length) {
  const bool hasSize = has(SIZE_BYTES);
  length = readSize();
  if (hasSize && has(length)) return true;
  warn(Messages::groupLargerThanData);
  return false;
}

void BinaryReader::leaveOutGroup() {
  hasLeftOut = true;
  unsigned long length = 0;
  if (readGroupSize(length)) pos += length;
}

// What is read for each item is inlined in one loop.

/// Reads on in the innermost level, up to its end or to a group in it, which is then the innermost.
BinaryReader::Stop BinaryReader::readLevel() {
  while (true) {
    if (level.item == nullptr) {
      if (pos >= level.groupEnd) return Stop::AT_END;
      if (!openNextItem()) return Stop::BROKEN;
    }
    const Stop stop = readValues();
    if (stop != Stop::AT_END) return stop;
    level.item = nullptr;
    if (level.group == nullptr) return Stop::AT_END;
  }
}

/// item = name , size , kind , { value } ;
///
/// The binary form does not tell plain items from keywords, so the item is in neither index.
[[gnu::always_inline]] inline bool BinaryReader::openNextItem() {
  const std::string_view name = readString();
  if (name.empty()) {
    warn(Messages::itemNameNotRead);
    return false;
  }
  if (!openFrame(name, level.itemEnd)) return false;
  detail::ItemList& items = level.group->items;
  if (items.isFull()) items.grow();
  level.item = ParserItem::make(name, bytes + size, ParserItem::ITEM_PLAIN, {0, 0},
                                guessValues(level.itemEnd));
  items.add(level.item);
  return true;
}

/// The size is compared with all of the data, not with what is left: readers have always done so,
/// and find out about the rest value by value.
bool BinaryReader::openFrame(std::string_view name, unsigned long& frameEnd) {
  const bool hasSize = has(SIZE_BYTES);
  const std::uint64_t length = readNumber<SIZE_BYTES>();
  if (!hasSize) return false;
  if (length > size) {
    tellOfChunk(name, length, size);
    return false;
  }
  if (!has(KIND_BYTES)) return false;
  pos += KIND_BYTES;
  frameEnd = pos + static_cast<unsigned long>(length) - KIND_BYTES;
  return true;
}

/// Returns how many values a frame probably holds: values of one kind, as lists of numbers are. No
/// more than there are bytes left.
unsigned long BinaryReader::guessValues(unsigned long frameEnd) const {
  const unsigned long end = std::min(frameEnd, size);
  if (pos >= end) return 0;
  switch (bytes[pos]) {
    case ParserValue::TYPE_BOOL: return (end - pos) / (TAG_BYTES + BOOL_BYTES);
    case ParserValue::TYPE_CHAR: return (end - pos) / (TAG_BYTES + CHAR_BYTES);
    case ParserValue::TYPE_INT: return (end - pos) / (TAG_BYTES + INT_BYTES);
    case ParserValue::TYPE_DOUBLE: return (end - pos) / (TAG_BYTES + DOUBLE_BYTES);
    default: return 1;
  }
}

/// Reads the values of the current item, up to its end or to a group.
[[gnu::always_inline]] inline BinaryReader::Stop BinaryReader::readValues() {
  ParserItem& item = *level.item;
  while (pos < level.itemEnd) {
    if (!has(TAG_BYTES)) return Stop::BROKEN;
    const auto tag = static_cast<unsigned char>(bytes[pos++]);
    if (tag == ParserValue::TYPE_GROUP && outerLevels.size() > deepest) {
      leaveOutGroup();
      continue;
    }
    if (tag == ParserValue::TYPE_BINARYDATA) item.noteHolding();
    if (!readPayload(tag, item.nextPlace())) return Stop::BROKEN;
    item.addMade();
    if (tag != ParserValue::TYPE_GROUP) continue;
    if (openGroup(*item.end()[-1].getGroup())) return Stop::AT_GROUP;
  }
  return Stop::AT_END;
}

/// Takes the item that is broken out of its group; the caller's own item stays as it is.
void BinaryReader::dropItem() {
  if (level.group == nullptr || level.item == nullptr) return;
  level.group->items.pop_back();
  level.item->noteChange();
  delete level.item;
}

// --- Values --------------------------------------------------------------------------------------

/// Reads a number as readNumber() does, and tells whether it was there.
template <unsigned long COUNT>
bool BinaryReader::readWhole(std::uint64_t& number) {
  const bool isWhole = has(COUNT);
  number = readNumber<COUNT>();
  return isWhole;
}

/// Reads what stands behind a tag and makes a value of it at `place`; false where there is none, or
/// a number is cut short. Of a group nothing is read yet: it is made empty.
[[gnu::always_inline]] inline bool BinaryReader::readPayload(unsigned char tag, void* place) {
  const auto makeData = [place](ParserValue::Type type) -> ParserValue::Data& {
    return (::new (place) ParserValue(ParserValue::Form::DATA, type))->content.data;
  };
  std::uint64_t number = 0;
  switch (tag) {
    case ParserValue::TYPE_GROUP:
      ::new (place) ParserValue(ParserValue::Form::TEXT, ParserGroup::makeNested());
      return true;
    case ParserValue::TYPE_BOOL:
      if (!readWhole<BOOL_BYTES>(number)) return false;
      makeData(ParserValue::TYPE_BOOL).boolean = number != 0;
      return true;
    case ParserValue::TYPE_CHAR:
      if (!readWhole<CHAR_BYTES>(number)) return false;
      makeData(ParserValue::TYPE_CHAR).character = static_cast<char>(number);
      return true;
    case ParserValue::TYPE_INT:
      if (!readWhole<INT_BYTES>(number)) return false;
      makeData(ParserValue::TYPE_INT).integer = static_cast<int>(number);
      return true;
    case ParserValue::TYPE_DOUBLE:
      if (!readWhole<DOUBLE_BYTES>(number)) return false;
      makeData(ParserValue::TYPE_DOUBLE).number = toDouble(number);
      return true;
    case ParserValue::TYPE_STRING:
      ::new (place) ParserValue(ParserValue::Form::DATA, ParserValue::TYPE_STRING, readString(),
                                bytes + size);
      return true;
    case ParserValue::TYPE_BINARYDATA: makeBlock(place); return true;
    default: return false;
  }
}

void BinaryReader::makeBlock(void* place) {
  unsigned long count = 0;
  std::unique_ptr<char[]> block = readBlock(count);
  ::new (place) ParserValue(ParserValue::makeBlock(std::move(block), count));
}

// --- Numbers and bytes ---------------------------------------------------------------------------

std::string_view BinaryReader::readLongString() {
  const char* begin = bytes + pos;
  const char* end = findAnyOf<'\0'>(begin, bytes + size);
  if (end == bytes + size) {
    pos = size;
    warn(Messages::stringNotRead);
    return {bytes + pos, size - pos};  // none, at the end
  }
  const auto length = static_cast<unsigned long>(end - begin);
  pos += length + 1;
  return {begin, length};
}

std::unique_ptr<char[]> BinaryReader::readBlock(unsigned long& count) {
  count = readSize();
  if (count == 0) return nullptr;
  if (!has(count)) {
    pos = size;
    count = 0;
    warn(Messages::blockNotRead);
    return nullptr;
  }
  std::unique_ptr<char[]> block(new char[count]);
  std::memcpy(block.get(), bytes + pos, count);
  pos += count;
  return block;
}

}  // namespace Quarry
