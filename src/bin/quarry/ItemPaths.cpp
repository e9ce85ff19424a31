#include "ItemPaths.h"

namespace Tool {

ItemPaths::ItemPaths(const Quarry::SourceTree& walked, unsigned long parent)
    : tree(walked), nextIndex(parent == NOWHERE ? 0 : parent + 1) {
  const bool isRoot = parent == NOWHERE;
  if (!isRoot) path = tree.getPath(parent);
  levels.push_back({isRoot ? tree.getItemCount() : tree.getItem(parent).next, path.size()});
}

bool ItemPaths::next() {
  if (index != NOWHERE) levels.push_back({tree.getItem(index).next, path.size()});
  index = nextIndex;
  while (levels.size() > 1 && levels.back().end <= index)
    levels.pop_back();
  if (index >= levels.back().end) return false;
  path.resize(levels.back().pathLength);
  if (!path.empty()) path += '/';
  path += tree.getStep(index);
  nextIndex = index + 1;
  return true;
}

}  // namespace Tool
