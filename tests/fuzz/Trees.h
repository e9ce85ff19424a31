/// Reads, writes and looks through trees for the fuzz targets.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/TreeBuilder.h>
#include <Quarry/internal/TreeWalker.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "Fuzz.h"

namespace Fuzz {

/// Multi-line text of nested groups is as long as the square of their depth. Deeper trees are
/// written on one line.
constexpr unsigned long DEEPEST_MULTILINE = 200;

/// Looks up each item that has a number by its name.
inline void lookUpNames(const Quarry::ParserGroup& group) {
  for (unsigned long i = 0; i < group.getItemCount(); ++i) {
    const Quarry::ParserItem* item = group.getItem(i);
    const Quarry::ParserItem* first = group.getItem(item->getName());
    require(first != nullptr && first->getName() == item->getName());
    require(i != 0 || first == item);
  }
  if (group.getItemCount() == 0) return;
  const Quarry::ParserItem* last = group.getItem(group.getItemCount() - 1);
  require(group.getEntries(last->getName()).back() == last);
  require(group.getEntries(last->getName()).front() == group.getItem(last->getName()));
}

/// Reads each value in every way, and holds the answers against each other. Looks up the items of
/// nested groups, too.
class ValueReader {
 public:
  struct GroupMark {
    unsigned long depth = 0;
  };
  struct ItemMark {};

  unsigned long depth = 0;  ///< of the deepest group

  ItemMark beginItem(const Quarry::ParserItem& item, const GroupMark&) {
    using Quarry::ParserItem;
    require(item.isKeyWord() == (item.getType() == ParserItem::ITEM_KEYWORD));
    require(item.isArray() == (item.getArrayCount() != ParserItem::NO_ARRAY));
    require(item.isTemplate() == !item.getTemplate().empty());
    require(item.isGroup() == (item.getValueCount() == 1 && item.isValueGroup(0)));
    return {};
  }
  void value(const Quarry::ParserItem& item, unsigned long index,
             const Quarry::ParserValue& value) {
    const std::string word = item.getWord(index);
    readNumbers(item, index);
    readBytes(item, index);
    readType(item, index);
    require(item.getGroup(index) == nullptr);
    require(item.getWord(index) == word);
    std::string text;
    value.getText(text, false, 1);
    require(item.isValueString(index) || text == item.getWord(index));
  }
  GroupMark beginGroup(const Quarry::ParserItem& item, unsigned long index,
                       const Quarry::ParserGroup& group, const GroupMark& outer) {
    require(item.isValueGroup(index) && item.getGroup(index) == &group);
    lookUpNames(group);
    readNumbers(item, index);
    readBytes(item, index);
    depth = std::max(depth, outer.depth + 1);
    return {outer.depth + 1};
  }
  void endGroup(const GroupMark&) {}
  void endItem(const Quarry::ParserItem&, const ItemMark&) {}

 private:
  static void readNumbers(const Quarry::ParserItem& item, unsigned long index) {
    const double number = item.getDouble(index);
    const int integer = item.getInt(index);
    require(item.getBool(index) == (number != 0.0));
    require(item.getChar(index) == static_cast<char>(integer & 0xFF));
    require(item.isValueDouble(index) || std::abs(number) <= 128);
    const bool fits = number > -2147483649.0 && number < 2147483648.0;
    require(fits ? integer == std::trunc(number) : integer == -2147483647 - 1);
  }
  static void readBytes(const Quarry::ParserItem& item, unsigned long index) {
    require(item.isValueString(index) || item.getString(index).empty());
    const auto* bytes = static_cast<const char*>(item.getBinaryData(index));
    const unsigned long size = item.getBinaryDataSize(index);
    const bool isBlock = item.getValueType(index) == Quarry::ParserValue::TYPE_BINARYDATA;
    require(size == 0 || (isBlock && bytes != nullptr));
    static_cast<void>(std::count(bytes, bytes + size, '\0'));
  }
  static void readType(const Quarry::ParserItem& item, unsigned long index) {
    using Quarry::ParserValue;
    const ParserValue::Type type = item.getValueType(index);
    require(item.isValueBool(index) == (type == ParserValue::TYPE_BOOL));
    require(item.isValueChar(index) == (type == ParserValue::TYPE_CHAR));
    require(item.isValueInt(index) == (type == ParserValue::TYPE_INT));
    require(item.isValueString(index) == (type == ParserValue::TYPE_STRING));
    require(!item.isValueGroup(index) && type != ParserValue::TYPE_EMPTY);
  }
};

/// Returns the depth of the deepest group in `root`, 0 for none.
inline unsigned long readValues(const Quarry::ParserGroup& root) {
  ValueReader reader;
  Quarry::TreeWalker(reader).walkGroup(root, {});
  return reader.depth;
}

/// Reads a text as ParserGroup::setText() reads one with zero bytes.
inline void readCarefully(Quarry::ParserGroup& root, const std::string& text, double version) {
  constexpr bool CAREFULLY = true;
  Quarry::ParserWordStream stream(text, version);
  Quarry::TreeBuilder builder(root, CAREFULLY);
  Quarry::TextParser(stream, builder).parse();
  builder.completeItem();
}

inline std::string writeText(const Quarry::ParserGroup& root, bool multiline) {
  std::string text;
  root.getText(text, false, multiline, 1);
  return text;
}

}  // namespace Fuzz
