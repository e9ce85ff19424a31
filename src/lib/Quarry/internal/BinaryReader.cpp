#include "BinaryReader.h"

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "BinaryNumber.h"
#include "Messages.h"
#include "TreeParts.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Quarry {

namespace {

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

}  // namespace

BinaryReader::BinaryReader(const std::vector<char>& source, unsigned long& position)
    : data(source), pos(position) {}

// --- Trees ---------------------------------------------------------------------------------------

bool BinaryReader::readGroup(ParserGroup& group) { return openGroup(group) && run(); }

bool BinaryReader::readItem(ParserItem& item) {
  levels.emplace_back();
  levels.back().item = &item;
  if (openItem(item.getName())) return run();
  levels.pop_back();
  return false;
}

std::unique_ptr<ParserValue> BinaryReader::readValue() {
  if (!has(TAG_BYTES)) return nullptr;
  const auto tag = static_cast<unsigned char>(readNumber(TAG_BYTES));
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
    if (result != Step::GOES_ON) levels.pop_back();
  }
  return result == Step::COMPLETE;
}

BinaryReader::Step BinaryReader::step() {
  return levels.back().item == nullptr ? openNextItem() : readValues();
}

/// group = size , { item } ;
bool BinaryReader::openGroup(ParserGroup& group) {
  const bool hasSize = has(SIZE_BYTES);
  const std::uint64_t size = readNumber(SIZE_BYTES);
  if (!hasSize || !has(size)) {
    warn(Messages::groupLargerThanData());
    return false;
  }
  levels.emplace_back();
  levels.back().group = &group;
  levels.back().groupEnd = pos + size;
  return true;
}

/// item = name , size , kind , { value } ;
BinaryReader::Step BinaryReader::openNextItem() {
  Level& level = levels.back();
  if (pos >= level.groupEnd) return Step::COMPLETE;
  const std::string_view name = readString();
  if (name.empty()) {
    warn(Messages::itemNameNotRead());
    return Step::BROKEN;
  }
  if (!openItem(name)) return Step::BROKEN;
  level.ownItem.reset(ParserItem::make(name, data.data() + data.size(), ParserItem::ITEM_PLAIN,
                                       {0, 0}, guessValues()));
  level.item = level.ownItem.get();
  return Step::GOES_ON;
}

/// The size is compared with all of the data, not with what is left: readers have always done so,
/// and find out about the rest value by value.
bool BinaryReader::openItem(std::string_view name) {
  const bool hasSize = has(SIZE_BYTES);
  const std::uint64_t size = readNumber(SIZE_BYTES);
  if (!hasSize) return false;
  if (size > data.size()) {
    Plinth::console.print(Messages::chunkLargerThanData(std::string(name), size, data.size()),
                          std::string());
    return false;
  }
  if (!has(KIND_BYTES)) return false;
  pos += KIND_BYTES;
  levels.back().itemEnd = pos + size - KIND_BYTES;
  return true;
}

/// Returns how many values the item's frame probably holds: values of one kind, as lists of numbers
/// are. No more than there are bytes left.
unsigned long BinaryReader::guessValues() const {
  const unsigned long end = std::min<unsigned long>(levels.back().itemEnd, data.size());
  if (pos >= end) return 0;
  switch (data[pos]) {
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
    const auto tag = static_cast<unsigned char>(data[pos++]);
    if (!readPayload(tag, append)) return Step::BROKEN;
    if (tag != ParserValue::TYPE_GROUP) continue;
    if (openGroup(*item.end()[-1].getGroup())) return Step::GOES_ON;
  }
  if (level.group == nullptr) return Step::COMPLETE;
  closeItem();
  return Step::GOES_ON;
}

/// The binary form does not tell plain items from keywords, so the item is in neither index.
void BinaryReader::closeItem() {
  Level& level = levels.back();
  level.group->items.push_back(level.item);
  static_cast<void>(level.ownItem.release());  // the group owns it now
  level.item = nullptr;
}

// --- Values --------------------------------------------------------------------------------------

/// Makes a value of a number. Where the number is cut short, moves to the end and returns false.
template <class Make, class Convert>
bool BinaryReader::makeNumber(unsigned long count, Make make, Convert convert) {
  if (!has(count)) {
    pos = data.size();
    return false;
  }
  make(convert(loadNumber(data.data() + pos, count)));
  pos += count;
  return true;
}

/// Reads what stands behind a tag and makes a value of it; false where there is none. Of a group
/// nothing is read yet: it is made empty.
template <class Make>
bool BinaryReader::readPayload(unsigned char tag, Make make) {
  switch (tag) {
    case ParserValue::TYPE_GROUP: make(nullptr); return true;
    case ParserValue::TYPE_BOOL:
      return makeNumber(BOOL_BYTES, make, [](std::uint64_t bits) { return bits != 0; });
    case ParserValue::TYPE_CHAR:
      return makeNumber(CHAR_BYTES, make,
                        [](std::uint64_t bits) { return static_cast<char>(bits); });
    case ParserValue::TYPE_INT:
      return makeNumber(INT_BYTES, make, [](std::uint64_t bits) { return static_cast<int>(bits); });
    case ParserValue::TYPE_DOUBLE: return makeNumber(DOUBLE_BYTES, make, toDouble);
    case ParserValue::TYPE_STRING: make(ParserValue::Form::DATA, readString()); return true;
    case ParserValue::TYPE_BINARYDATA: {
      unsigned long size = 0;
      std::unique_ptr<char[]> bytes = readBlock(size);
      make(ParserValue::makeBlock(std::move(bytes), size));
      return true;
    }
    default: return false;
  }
}

// --- Numbers and bytes ---------------------------------------------------------------------------

bool BinaryReader::has(unsigned long count) const {
  return pos <= data.size() && count <= data.size() - pos;
}

std::uint64_t BinaryReader::readNumber(unsigned long count) {
  if (!has(count)) {
    pos = data.size();
    return 0;
  }
  const std::uint64_t number = loadNumber(data.data() + pos, count);
  pos += count;
  return number;
}

std::string_view BinaryReader::readString() {
  const char* begin = data.data() + pos;
  const unsigned long left = has(0) ? data.size() - pos : 0;
  const void* end = left > 0 ? std::memchr(begin, 0, left) : nullptr;
  if (end == nullptr) {
    pos = data.size();
    warn(Messages::stringNotRead());
    return std::string_view();
  }
  const std::string_view text(begin,
                              static_cast<unsigned long>(static_cast<const char*>(end) - begin));
  pos += text.size() + 1;
  return text;
}

std::unique_ptr<char[]> BinaryReader::readBlock(unsigned long& size) {
  size = readNumber(SIZE_BYTES);
  if (size == 0) return nullptr;
  if (!has(size)) {
    pos = data.size();
    size = 0;
    warn(Messages::blockNotRead());
    return nullptr;
  }
  std::unique_ptr<char[]> bytes(new char[size]);
  std::memcpy(bytes.get(), data.data() + pos, size);
  pos += size;
  return bytes;
}

}  // namespace Quarry
