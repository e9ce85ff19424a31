#include "TreeModel.h"

#include <Quarry/ParserWord.h>
#include <Quarry/internal/TreeWalker.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace TestSupport {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

/// Calls functions for what a walk meets.
struct Visitor {
  struct GroupMark {};
  struct ItemMark {};

  std::function<void(const ParserItem&)> onItem = [](const ParserItem&) {};
  std::function<void(const ParserItem&, unsigned long)> onValue = [](const ParserItem&,
                                                                     unsigned long) {};
  std::function<void(const ParserGroup&)> onGroup = [](const ParserGroup&) {};
  std::function<void()> onEnd = [] {};

  ItemMark beginItem(const ParserItem& item, GroupMark) {
    onItem(item);
    return {};
  }
  void value(const ParserItem& item, unsigned long index, const ParserValue&) {
    onValue(item, index);
  }
  GroupMark beginGroup(const ParserItem&, unsigned long, const ParserGroup& group, GroupMark) {
    onGroup(group);
    return {};
  }
  void endGroup(GroupMark) { onEnd(); }
  void endItem(const ParserItem&, ItemMark) { onEnd(); }
};

void walk(const ParserGroup& root, Visitor& visitor) {
  Quarry::TreeWalker(visitor).walkGroup(root, {});
}

void append(std::string& out, const std::string& text) {
  out += std::to_string(text.size()) + ":" + text + " ";
}

void appendValue(std::string& out, const ParserItem& item, unsigned long index) {
  const ParserValue::Type type = item.getValueType(index);
  out += "value " + std::to_string(type) + " ";
  if (type >= ParserValue::TYPE_BOOL && type <= ParserValue::TYPE_DOUBLE) {
    out += std::to_string(std::bit_cast<std::uint64_t>(item.getDouble(index))) + " ";
  } else if (type == ParserValue::TYPE_STRING) {
    append(out, item.getString(index));
  } else if (type == ParserValue::TYPE_BINARYDATA) {
    const auto* bytes = static_cast<const char*>(item.getBinaryData(index));
    append(out, std::string(bytes, bytes + item.getBinaryDataSize(index)));
  }
}

void askNumbers(const ParserItem& item) {
  for (unsigned long i = 0; i < item.getValueCount(); ++i) {
    if (item.isValueDouble(i) || item.isValueBool(i)) static_cast<void>(item.getDouble(i));
  }
}

}  // namespace

TreeMaker::TreeMaker(std::set<unsigned long> doomedNumbers) : doomed(std::move(doomedNumbers)) {}

void TreeMaker::addItems(ParserGroup& group, const std::vector<ItemModel>& models) {
  for (const ItemModel& model : models) {
    if (doomed.count(model.number) == 0) addItem(group, model);
  }
}

void TreeMaker::addItem(ParserGroup& group, const ItemModel& model) {
  if (model.form == ItemModel::BUILT) {
    build(group, model);
  } else if (model.form == ItemModel::READ) {
    group.setText(model.text, model.version);
    noteNewItems(group, model.number);
  } else {
    ParserGroup encoded("encoded");
    TreeMaker(doomed).addItems(encoded, model.values.front().items);
    unsigned long position = 0;
    group.setBinary(encoded.getBinary(false), position);
    noteNewItems(group, model.number);
  }
}

void TreeMaker::build(ParserGroup& group, const ItemModel& model) {
  auto* item = new ParserItem(model.name, model.type, 0, 0);
  numbers[item] = model.number;
  item->setTemplate(model.templateName);
  item->setArray(model.isArray, model.arrayCount);
  item->setFolding(model.isFolded);
  for (const ValueModel& value : model.values)
    addValue(*item, value);
  std::string ignored;
  if (model.wasWritten) item->getText(ignored, true, 1);
  if (model.wasAsked) askNumbers(*item);
  group.addItem(*item);
  if (model.isDetached && model.type == ParserItem::ITEM_PLAIN) {
    group.detachItem(group.getItemCount() - 1);
    detached.emplace_back(item);
  }
}

void TreeMaker::addValue(ParserItem& item, const ValueModel& model) {
  const unsigned long index = item.getValueCount();
  std::string bytes = model.text;
  if (model.form >= ValueModel::SET_BOOL && model.form <= ValueModel::SET_BLOCK) item.addInt(0);
  switch (model.form) {
    case ValueModel::ADD_BOOL: return item.addBool(model.integer != 0);
    case ValueModel::ADD_CHAR: return item.addChar(static_cast<char>(model.integer));
    case ValueModel::ADD_INT: return item.addInt(model.integer);
    case ValueModel::ADD_DOUBLE: return item.addDouble(model.number);
    case ValueModel::ADD_STRING: return item.addString(model.text);
    case ValueModel::ADD_BLOCK: return item.addBinaryData(bytes.data(), bytes.size());
    case ValueModel::SET_BOOL: return item.setBool(model.integer != 0, index);
    case ValueModel::SET_INT: return item.setInt(model.integer, index);
    case ValueModel::SET_DOUBLE: return item.setDouble(model.number, index);
    case ValueModel::SET_STRING: return item.setString(model.text, index);
    case ValueModel::SET_BLOCK: return item.setBinaryData(bytes.data(), bytes.size(), index);
    case ValueModel::WORD:
      return item.addWord(ParserWord(model.text, true, model.version), model.type);
    case ValueModel::GROUP: break;
  }
  addItems(*item.addGroup(new ParserGroup(model.text)), model.items);
}

/// Items that are not known yet are of the model that was added last.
void TreeMaker::noteNewItems(const ParserGroup& group, unsigned long number) {
  Visitor visitor;
  visitor.onItem = [&](const ParserItem& item) { numbers.emplace(&item, number); };
  walk(group, visitor);
}

std::string describeAll(const ParserGroup& root) {
  std::string out;
  Visitor visitor;
  visitor.onItem = [&](const ParserItem& item) {
    out += "\nitem ";
    append(out, item.getName());
    out += std::to_string(item.getType()) + " ";
    if (item.isTemplate()) append(out, item.getTemplate());
    if (item.isArray()) out += "array " + std::to_string(item.getArrayCount()) + " ";
  };
  visitor.onValue = [&](const ParserItem& item, unsigned long index) {
    appendValue(out, item, index);
  };
  visitor.onGroup = [&](const ParserGroup& group) {
    out += "group ";
    append(out, group.getName());
  };
  visitor.onEnd = [&] { out += "end "; };
  walk(root, visitor);
  return out;
}

std::vector<std::string> collectWords(const ParserGroup& root) {
  std::vector<std::string> words;
  Visitor visitor;
  visitor.onValue = [&](const ParserItem& item, unsigned long index) {
    words.push_back(item.getWord(index));
  };
  walk(root, visitor);
  return words;
}

}  // namespace TestSupport
