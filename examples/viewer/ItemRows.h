/// The items of a document as rows: what stands in a group, and where.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <vector>

/// Knows the items of each group by their numbers in the tree.
class ItemRows {
 public:
  using Items = std::vector<unsigned long>;

  explicit ItemRows(const Quarry::SourceTree& tree);

  /// Returns what is in the group of an item, or for NOWHERE in the root.
  const Items& getItems(unsigned long parent) const;

  /// Returns where an item stands in its group, from 0.
  int getRow(unsigned long item) const { return rows[item]; }

 private:
  std::vector<Items> children;  ///< of each item, and last of the root
  std::vector<int> rows;
};
