/// Frees trees of any depth.
#pragma once

#include <Quarry/ParserItems.h>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Deletes items with everything below them, without recursion and without allocating: freeing a
/// document works on a small stack and when memory is exhausted.
///
/// Groups are taken out of their items before these are deleted, and wait in a list that runs
/// through the groups themselves (ParserGroup::nextToRemove).
class TreeRemover {
 public:
  /// Deletes the items and empties the list; null entries are passed over.
  static void removeItems(detail::ItemList& items);

 private:
  void removeGroups();
  void removeGroup(ParserGroup& group);
  void removeItem(ParserItem* item);
  void releaseValues(ParserItem& item);
  void release(ParserValue& value);

  ParserGroup* waiting = nullptr;  ///< the innermost first
  unsigned long removed = 0;       ///< items
};

}  // namespace Quarry
