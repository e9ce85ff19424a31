/// Copies trees.
#pragma once

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Copies the items of one group into another, with everything below them; TreeWalker leads it
/// through the tree. So a copy lies in memory in the order of its text, as a tree does that was
/// read. Places of detached items are not copied. What is unfinished when memory runs out belongs
/// to the copy and is freed with it.
class TreeCopier {
 public:
  /// Appends copies of all items of `source` to `target`.
  static void copyItems(const ParserGroup& source, ParserGroup& target);

  // --- What the walk tells ---------------------------------------------------------------------

  /// A group that is being filled, and the item that holds it.
  struct GroupMark {
    ParserGroup* group;
    ParserItem* holder;
  };
  struct ItemMark {};

  ItemMark beginItem(const ParserItem& item, const GroupMark& target);
  void value(const ParserItem& item, unsigned long index, const ParserValue& value);
  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       const GroupMark& outer);
  void endGroup(const GroupMark& target) { copy = target.holder; }
  void endItem(const ParserItem&, ItemMark) {}

 private:
  ParserItem* copy = nullptr;  ///< of the item that is walked
};

}  // namespace Quarry
