/// Walks trees of any depth.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <vector>

namespace Quarry {

/// Walks a tree in the order of its text and tells a visitor what it meets. Nested groups take
/// memory, not stack. Places of detached items are passed over.
///
/// `Visitor` names two types, `GroupMark` and `ItemMark`: what it wants to remember of a group or
/// an item until that ends. It is told:
///
///     ItemMark beginItem(item, groupMark)                     an item of the group begins
///     void value(item, index, value)                          a value that is no group
///     GroupMark beginGroup(item, index, group, outerMark)     a value that is a group begins
///     void endGroup(groupMark)
///     void endItem(item, itemMark)
///
/// Strings are asked of the item, not of the value: an item has to know that one of its values owns
/// memory.
template <class Visitor>
class TreeWalker {
 public:
  using GroupMark = typename Visitor::GroupMark;
  using ItemMark = typename Visitor::ItemMark;

  explicit TreeWalker(Visitor& told) : visitor(told) {}

  /// Walks the items of a group, and ends it.
  void walkGroup(const ParserGroup& group, GroupMark mark) {
    level = {&group, mark, 0, nullptr, ItemMark(), 0};
    walkItems();
  }

  /// Walks the values of an item, and ends it.
  /// @param groupMark stands for the group around the item
  void walkItem(const ParserItem& item, GroupMark groupMark, ItemMark itemMark) {
    level = {nullptr, groupMark, 0, &item, itemMark, 0};
    walkValues();
    walkItems();
  }

  /// Tells whether an item is written between fold markers where it is a group: nobody else can.
  static bool isFolded(const ParserItem& item) { return item.folding; }

 private:
  /// A group that is being walked, and its current item.
  struct Level {
    const ParserGroup* group;  ///< null around a lone item
    GroupMark groupMark;
    unsigned long nextItem;
    const ParserItem* item;
    ItemMark itemMark;
    unsigned long nextValue;
  };

  /// Walks the items that are left of the innermost group and those around it.
  void walkItems() {
    do {
      while (const ParserItem* item = takeItem()) {
        level.itemMark = visitor.beginItem(*item, level.groupMark);
        level.item = item;
        level.nextValue = 0;
        walkValues();
      }
      if (level.group != nullptr) visitor.endGroup(level.groupMark);
    } while (leaveGroup());
  }

  /// Walks the values that are left of the current item, and ends it. Where one of them is a group,
  /// that is the innermost one now and has to be walked first.
  void walkValues() {
    const ParserItem& item = *level.item;
    while (level.nextValue < item.count) {
      const unsigned long index = level.nextValue++;
      const ParserValue& value = item.valueAt(index);
      if (const ParserGroup* group = value.getGroup()) return enterGroup(*group, index);
      visitor.value(item, index, value);
    }
    visitor.endItem(item, level.itemMark);
  }

  /// Returns the next item of the innermost group, or null.
  const ParserItem* takeItem() {
    if (level.group == nullptr) return nullptr;
    const detail::ItemList& items = level.group->items;
    while (level.nextItem < items.size()) {
      if (const ParserItem* item = items[level.nextItem++]) return item;
    }
    return nullptr;
  }

  /// @param index of the value of the current item that holds the group
  void enterGroup(const ParserGroup& group, unsigned long index) {
    const GroupMark mark = visitor.beginGroup(*level.item, index, group, level.groupMark);
    outer.push_back(level);
    level = {&group, mark, 0, nullptr, ItemMark(), 0};
  }

  /// Goes on with the item around the group that has ended. Returns false where none is.
  bool leaveGroup() {
    if (outer.empty()) return false;
    level = outer.back();
    outer.pop_back();
    walkValues();
    return true;
  }

  Visitor& visitor;
  Level level = {};
  std::vector<Level> outer;
};

}  // namespace Quarry
