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
template <class Visitor>
class TreeWalker {
 public:
  using GroupMark = typename Visitor::GroupMark;
  using ItemMark = typename Visitor::ItemMark;

  explicit TreeWalker(Visitor& told) : visitor(told) {}

  /// Walks the items of a group, and ends it.
  void walkGroup(const ParserGroup& group, GroupMark mark) {
    openGroup(group, mark);
    run();
  }

  /// Walks the values of an item, and ends it.
  /// @param groupMark stands for the group around the item
  void walkItem(const ParserItem& item, GroupMark groupMark, ItemMark itemMark) {
    levels.push_back({nullptr, groupMark, 0, nullptr, itemMark, 0});
    openItem(item, itemMark);
    run();
  }

  /// Tells whether an item is written between fold markers where it is a group: nobody else can.
  static bool isFolded(const ParserItem& item) { return item.folding; }

 private:
  /// A group that is being walked, and its current item.
  struct Level {
    const ParserGroup* group;  ///< null around a lone item
    GroupMark groupMark;
    unsigned long nextItem;
    const ParserItem* item;  ///< null between two items
    ItemMark itemMark;
    unsigned long nextValue;
  };

  void run() {
    while (!levels.empty()) {
      if (levels.back().item == nullptr) {
        walkNextItem();
      } else {
        walkValues();
      }
    }
  }

  void walkNextItem() {
    Level& level = levels.back();
    if (const ParserItem* item = takeItem(level)) {
      openItem(*item, visitor.beginItem(*item, level.groupMark));
      return;
    }
    const Level ended = level;
    levels.pop_back();
    if (ended.group != nullptr) visitor.endGroup(ended.groupMark);
  }

  /// Walks the values of the current item, up to a group that has to be walked first.
  void walkValues() {
    Level& level = levels.back();
    const ParserItem& item = *level.item;
    while (level.nextValue < item.count) {
      const unsigned long index = level.nextValue++;
      const ParserValue& value = item.values[index];
      if (const ParserGroup* group = value.getGroup()) {
        return openGroup(*group, visitor.beginGroup(item, index, *group, level.groupMark));
      }
      visitor.value(item, index, value);
    }
    level.item = nullptr;
    visitor.endItem(item, level.itemMark);
  }

  static const ParserItem* takeItem(Level& level) {
    if (level.group == nullptr) return nullptr;
    const detail::ItemList& items = level.group->items;
    while (level.nextItem < items.size()) {
      if (const ParserItem* item = items[level.nextItem++]) return item;
    }
    return nullptr;
  }

  void openGroup(const ParserGroup& group, GroupMark mark) {
    levels.push_back({&group, mark, 0, nullptr, ItemMark(), 0});
  }

  void openItem(const ParserItem& item, ItemMark mark) {
    Level& level = levels.back();
    level.item = &item;
    level.itemMark = mark;
    level.nextValue = 0;
  }

  Visitor& visitor;
  std::vector<Level> levels;
};

}  // namespace Quarry
