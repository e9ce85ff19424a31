#include "ItemRows.h"

using Quarry::SourceTree;

ItemRows::ItemRows(const SourceTree& tree) : children(tree.getItemCount() + 1) {
  for (unsigned long item = 0; item < tree.getItemCount(); ++item) {
    const unsigned long group = tree.getItem(item).parent;
    Items& siblings = group == tree.NOWHERE ? children.back() : children[group];
    rows.push_back(static_cast<int>(siblings.size()));
    siblings.push_back(item);
  }
}

const ItemRows::Items& ItemRows::getItems(unsigned long parent) const {
  return parent == SourceTree::NOWHERE ? children.back() : children[parent];
}
