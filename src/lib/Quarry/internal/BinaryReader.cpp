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

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

}  // namespace

BinaryReader::BinaryReader(const std::vector<char>& source, unsigned long& position,
                           unsigned long nestingDepth)
    : bytes(source.data()),
      size(source.size()),
      pos(std::min<unsigned long>(position, source.size())),
      callersPosition(position),
      deepest(nestingDepth) {}

// --- Trees ---------------------------------------------------------------------------------------

bool BinaryReader::readGroup(ParserGroup& group) { return openGroup(group) && run(); }

bool BinaryReader::readItem(ParserItem& item) {
  Level level;
  level.item = &item;
  if (!openFrame(item.name.get(), level.itemEnd)) return false;
  levels.push_back(level);
  return run();
}

std::unique_ptr<ParserValue> BinaryReader::readValue() {
  if (!has(TAG_BYTES)) return nullptr;
  const auto tag = static_cast<unsigned char>(bytes[pos++]);
  std::unique_ptr<ParserValue> value;
  readPayload(tag, [&value](auto&&... content) {
    value.reset(new ParserValue(std::forward<decltype(content)>(content)...));
  });
  if (value != nullptr && value->isGroup()) readGroup(*value->getGroup());
  return value;
}

/// A failure ends one level. Only the outermost one decides the result.
bool BinaryReader::run() {
  Step result = Step::GOES_ON;
  while (!levels.empty()) {
    result = step();
    if (result == Step::BROKEN) dropItem();
    if (result != Step::GOES_ON) levels.pop_back();
  }
  return result == Step::COMPLETE;
}

BinaryReader::Step BinaryReader::step() {
  return levels.back().item == nullptr ? openNextItem() : readValues();
}

/// group = size , { item } ;
bool BinaryReader::openGroup(ParserGroup& group) {
  unsigned long length = 0;
  if (!readGroupSize(length)) return false;
  levels.push_back({&group, pos + length, nullptr, 0});
  return true;
}

bool BinaryReader::readGroupSize(unsigned long& length) {
  const bool hasSize = has(SIZE_BYTES);
  length = readSize();
  if (hasSize && has(length)) return true;
  warn(Messages::groupLargerThanData());
  return false;
}

void BinaryReader::leaveOutGroup() {
  hasLeftOut = true;
  unsigned long length = 0;
  if (readGroupSize(length)) pos += length;
}

/// item = name , size , kind , { value } ;
///
/// The binary form does not tell plain items from keywords, so the item is in neither index.
BinaryReader::Step BinaryReader::openNextItem() {
  Level& level = levels.back();
  if (pos >= level.groupEnd) return Step::COMPLETE;
  const std::string_view name = readString();
  if (name.empty()) {
    warn(Messages::itemNameNotRead());
    return Step::BROKEN;
  }
  if (!openFrame(name, level.itemEnd)) return Step::BROKEN;
  std::unique_ptr<ParserItem> item(ParserItem::make(name, bytes + size, ParserItem::ITEM_PLAIN,
                                                    {0, 0}, guessValues(level.itemEnd)));
  level.group->items.push_back(item.get());
  level.item = item.release();
  return Step::GOES_ON;
}

/// The size is compared with all of the data, not with what is left: readers have always done so,
/// and find out about the rest value by value.
bool BinaryReader::openFrame(std::string_view name, unsigned long& frameEnd) {
  const bool hasSize = has(SIZE_BYTES);
  const std::uint64_t length = readNumber<SIZE_BYTES>();
  if (!hasSize) return false;
  if (length > size) {
    Plinth::console.print(Messages::chunkLargerThanData(std::string(name), length, size),
                          std::string());
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

/// Reads the values of the current item, up to a group that has to be read first.
BinaryReader::Step BinaryReader::readValues() {
  Level& level = levels.back();
  ParserItem& item = *level.item;
  const auto append = [&item](auto&&... content) {
    ::new (item.nextPlace()) ParserValue(std::forward<decltype(content)>(content)...);
    ++item.count;
  };
  while (pos < level.itemEnd) {
    if (!has(TAG_BYTES)) return Step::BROKEN;
    const auto tag = static_cast<unsigned char>(bytes[pos++]);
    if (tag == ParserValue::TYPE_GROUP && levels.size() > deepest) {
      leaveOutGroup();
      continue;
    }
    if (!readPayload(tag, append)) return Step::BROKEN;
    if (tag != ParserValue::TYPE_GROUP) continue;
    if (openGroup(*item.end()[-1].getGroup())) return Step::GOES_ON;
  }
  level.item = nullptr;
  return level.group == nullptr ? Step::COMPLETE : Step::GOES_ON;
}

/// Takes the item that is broken out of its group; the caller's own item stays as it is.
void BinaryReader::dropItem() {
  const Level& level = levels.back();
  if (level.group == nullptr || level.item == nullptr) return;
  level.group->items.pop_back();
  delete level.item;
}

// --- Values --------------------------------------------------------------------------------------

/// Makes a value of a number. Where the number is cut short, moves to the end and returns false.
template <unsigned long COUNT, class Make, class Convert>
bool BinaryReader::makeNumber(Make make, Convert convert) {
  const bool isWhole = has(COUNT);
  const std::uint64_t bits = readNumber<COUNT>();
  if (isWhole) make(convert(bits));
  return isWhole;
}

/// Makes a value of a block.
template <class Make>
void BinaryReader::makeBlock(Make make) {
  unsigned long count = 0;
  std::unique_ptr<char[]> block = readBlock(count);
  make(ParserValue::makeBlock(std::move(block), count));
}

/// Reads what stands behind a tag and makes a value of it; false where there is none. Of a group
/// nothing is read yet: it is made empty.
template <class Make>
bool BinaryReader::readPayload(unsigned char tag, Make make) {
  switch (tag) {
    case ParserValue::TYPE_GROUP: make(nullptr); return true;
    case ParserValue::TYPE_BOOL:
      return makeNumber<BOOL_BYTES>(make, [](std::uint64_t bits) { return bits != 0; });
    case ParserValue::TYPE_CHAR:
      return makeNumber<CHAR_BYTES>(make,
                                    [](std::uint64_t bits) { return static_cast<char>(bits); });
    case ParserValue::TYPE_INT:
      return makeNumber<INT_BYTES>(make, [](std::uint64_t bits) { return static_cast<int>(bits); });
    case ParserValue::TYPE_DOUBLE: return makeNumber<DOUBLE_BYTES>(make, toDouble);
    case ParserValue::TYPE_STRING:
      make(ParserValue::Form::DATA, ParserValue::TYPE_STRING, readString(), bytes + size);
      return true;
    case ParserValue::TYPE_BINARYDATA: makeBlock(make); return true;
    default: return false;
  }
}

// --- Numbers and bytes ---------------------------------------------------------------------------

std::string_view BinaryReader::readString() {
  const char* begin = bytes + pos;
  const char* end = findAnyOf<'\0'>(begin, bytes + size);
  if (end == bytes + size) {
    pos = size;
    warn(Messages::stringNotRead());
    return {end, static_cast<unsigned long>(bytes + size - end)};
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
    warn(Messages::blockNotRead());
    return nullptr;
  }
  std::unique_ptr<char[]> block(new char[count]);
  std::memcpy(block.get(), bytes + pos, count);
  pos += count;
  return block;
}

}  // namespace Quarry
