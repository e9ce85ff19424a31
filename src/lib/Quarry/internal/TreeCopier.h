/// Copies trees of any depth.
#pragma once

#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;

/// Copies everything below a group, without recursion: groups that are still empty wait in a list.
/// What is unfinished when memory runs out belongs to the copy and is freed with it.
class TreeCopier {
 public:
  /// Appends copies of all items of `source` to `target`.
  static void copyItems(const ParserGroup& source, ParserGroup& target);

 private:
  struct Pair {
    const ParserGroup* source;
    ParserGroup* target;
  };

  void copyLevel(const ParserGroup& source, ParserGroup& target);
  void copyValues(const ParserItem& source, ParserItem& target);

  std::vector<Pair> waiting;
};

}  // namespace Quarry
