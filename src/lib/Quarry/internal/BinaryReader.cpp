#include "BinaryReader.h"

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "BinaryNumber.h"
#include "Messages.h"

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
  if (openItem(item)) return run();
  levels.pop_back();
  return false;
}

std::unique_ptr<ParserValue> BinaryReader::readValue() {
  if (!has(TAG_BYTES)) return nullptr;
  const auto tag = static_cast<unsigned char>(readNumber(TAG_BYTES));
  std::unique_ptr<ParserValue> value = readPayload(tag);
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
  const std::string name = readString();
  if (name.empty()) {
    warn(Messages::itemNameNotRead());
    return Step::BROKEN;
  }
  level.ownItem = std::make_unique<ParserItem>(name, ParserItem::ITEM_PLAIN, 0, 0);
  return openItem(*level.ownItem) ? Step::GOES_ON : Step::BROKEN;
}

/// The size is compared with all of the data, not with what is left: readers have always done so,
/// and find out about the rest value by value.
bool BinaryReader::openItem(ParserItem& item) {
  const bool hasSize = has(SIZE_BYTES);
  const std::uint64_t size = readNumber(SIZE_BYTES);
  if (!hasSize) return false;
  if (size > data.size()) {
    Plinth::console.print(Messages::chunkLargerThanData(item.getName(), size, data.size()),
                          std::string());
    return false;
  }
  if (!has(KIND_BYTES)) return false;
  pos += KIND_BYTES;
  levels.back().item = &item;
  levels.back().itemEnd = pos + size - KIND_BYTES;
  return true;
}

/// Reads the values of the current item, up to a group that has to be read first.
BinaryReader::Step BinaryReader::readValues() {
  Level& level = levels.back();
  while (pos < level.itemEnd) {
    if (!has(TAG_BYTES)) return Step::BROKEN;
    const auto tag = static_cast<unsigned char>(readNumber(TAG_BYTES));
    std::unique_ptr<ParserValue> value = readPayload(tag);
    if (value == nullptr) return Step::BROKEN;
    ParserGroup* group = level.item->append(std::move(value))->getGroup();
    if (group != nullptr && openGroup(*group)) return Step::GOES_ON;
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

/// Makes a value of a number; null, at the end of the data, when the number is cut short.
template <class Number, class Convert>
std::unique_ptr<ParserValue> BinaryReader::makeNumber(unsigned long count, Convert convert) {
  if (!has(count)) {
    pos = data.size();
    return nullptr;
  }
  const Number number = convert(readNumber(count));
  return std::make_unique<ParserValue>(number);
}

/// Reads what stands behind a tag. Of a group nothing is read yet: it comes back empty.
std::unique_ptr<ParserValue> BinaryReader::readPayload(unsigned char tag) {
  switch (tag) {
    case ParserValue::TYPE_GROUP:
      return std::make_unique<ParserValue>(ParserValue::TYPE_GROUP, std::string());
    case ParserValue::TYPE_BOOL:
      return makeNumber<bool>(BOOL_BYTES, [](std::uint64_t bits) { return bits != 0; });
    case ParserValue::TYPE_CHAR:
      return makeNumber<char>(CHAR_BYTES,
                              [](std::uint64_t bits) { return static_cast<char>(bits); });
    case ParserValue::TYPE_INT:
      return makeNumber<int>(INT_BYTES, [](std::uint64_t bits) { return static_cast<int>(bits); });
    case ParserValue::TYPE_DOUBLE: return makeNumber<double>(DOUBLE_BYTES, toDouble);
    case ParserValue::TYPE_STRING: return std::make_unique<ParserValue>(readString());
    case ParserValue::TYPE_BINARYDATA: {
      unsigned long size = 0;
      std::unique_ptr<char[]> bytes = readBlock(size);
      return std::unique_ptr<ParserValue>(
          new ParserValue(ParserValue::makeBlock(std::move(bytes), size)));
    }
    default: return nullptr;
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

std::string BinaryReader::readString() {
  const char* begin = data.data() + pos;
  const unsigned long left = has(0) ? data.size() - pos : 0;
  const void* end = left > 0 ? std::memchr(begin, 0, left) : nullptr;
  if (end == nullptr) {
    pos = data.size();
    warn(Messages::stringNotRead());
    return std::string();
  }
  std::string text(begin, static_cast<const char*>(end));
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
