/// What two documents differ in.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>

namespace Tool {

/// An item that is not the same in two documents.
struct ItemDifference {
  static constexpr unsigned long NOWHERE = Quarry::SourceTree::NOWHERE;

  std::string path;                ///< the same in both
  unsigned long before = NOWHERE;  ///< in the first document; none for an item that was added
  unsigned long after = NOWHERE;   ///< in the second; none for one that was removed
};

/// Is told of the differences.
class DifferenceListener {
 public:
  virtual ~DifferenceListener() = default;
  virtual void add(const ItemDifference& difference) = 0;
};

/// Compares two trees.
///
/// The items of a group stand for each other when they have the same name and are the n-th of that
/// name. They differ in kind, in whether they have a group, or in values as these are read: 1.50
/// and 1.5 are the same double. What is in a group that was added or removed is not told apart. The
/// order of items with different names makes no difference.
///
/// Takes time and memory in proportion to the trees, and no stack.
/// @return whether they differ
bool compareTrees(const Quarry::SourceTree& before, const Quarry::SourceTree& after,
                  DifferenceListener& listener);

}  // namespace Tool
