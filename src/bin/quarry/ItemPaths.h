/// Walks through the items of a document.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>
#include <vector>

namespace Tool {

/// Goes from item to item in the order of the document and knows the path of each.
///
/// The groups around the current item stand in a list, and their path in one text that grows and
/// shrinks with it: the depth takes memory, not stack.
class ItemPaths {
 public:
  static constexpr unsigned long NOWHERE = Quarry::SourceTree::NOWHERE;

  /// Stands before the first item of a group.
  /// @param parent the item that holds it; NOWHERE for the root
  explicit ItemPaths(const Quarry::SourceTree& walked, unsigned long parent = NOWHERE);

  /// Goes to the next item. Returns false behind the last one.
  bool next();

  /// Lets next() pass over the group of the current item.
  void passOverGroup() { nextIndex = tree.getItem(index).next; }

  /// Returns the current item, as an index for SourceTree::getItem().
  unsigned long getIndex() const { return index; }

  /// Returns the path of the current item, as SourceTree::getPath() does.
  const std::string& getPath() const { return path; }

  /// Returns the number of groups around the current item, not counting those around the first.
  unsigned long getDepth() const { return levels.size() - 1; }

 private:
  struct Level {
    unsigned long end;       ///< behind all items of the group
    std::size_t pathLength;  ///< of the item that holds it
  };

  const Quarry::SourceTree& tree;
  std::vector<Level> levels;  ///< the groups around the next item, unless it is behind them
  std::string path;
  unsigned long index = NOWHERE;
  unsigned long nextIndex;
};

}  // namespace Tool
