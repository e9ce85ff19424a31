/// Writes trees of any depth in the binary form.
#pragma once

#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Appends frames to one buffer: each size is left open, and filled in when its frame is complete.
/// Nested groups take memory, not stack.
///
///     group = size , { item } ;           size: the bytes of all items
///     item  = name , size , kind , { value } ;   size: the kind byte and the bytes of all values
///     value = tag , payload ;
class BinaryWriter {
 public:
  explicit BinaryWriter(std::vector<char>& buffer) : out(buffer) {}

  void writeGroup(const ParserGroup& group);
  void writeItem(const ParserItem& item);

 private:
  /// A group that is being written, and its current item.
  struct Level {
    const ParserGroup* group;  ///< null when only an item is written
    unsigned long groupBegin;  ///< the offset behind the group's size
    unsigned long nextItem;    ///< of the group
    const ParserItem* item;    ///< null between two items
    unsigned long itemBegin;   ///< the offset behind the item's size
    unsigned long nextValue;   ///< of the item
  };

  void run();
  void step();
  bool openNextItem();
  const ParserGroup* writeValuesUpToGroup();

  void openGroup(const ParserGroup& group);
  void closeGroup();
  void openItem(const ParserItem& item);
  void closeItem();
  unsigned long openSize();
  void closeSize(unsigned long begin);

  std::vector<char>& out;
  std::vector<Level> levels;
};

}  // namespace Quarry
