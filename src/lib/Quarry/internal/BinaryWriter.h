/// Writes trees in the binary form.
#pragma once

#include "BinaryBuffer.h"

#include <string_view>
#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Appends frames to one buffer; TreeWalker leads it through the tree. Each size is left open, and
/// filled in when its frame is complete, so that nothing is copied from level to level.
///
///     group = size , { item } ;                  size: the bytes of all items
///     item  = name , size , kind , { value } ;   size: the kind byte and the bytes of all values
///     value = tag , payload ;
class BinaryWriter {
 public:
  explicit BinaryWriter(std::vector<char>& buffer) : out(buffer) {}

  void writeGroup(const ParserGroup& group);
  void writeItem(const ParserItem& item);
  void writeTag(const ParserValue& value);
  void writePayload(const ParserValue& value);

  /// Completes the buffer; has to be called in the end.
  void finish() { out.flush(); }

  // --- What the walk tells ---------------------------------------------------------------------

  /// The offset behind a frame's size.
  using GroupMark = unsigned long;
  using ItemMark = unsigned long;

  ItemMark beginItem(const ParserItem& item, GroupMark group);
  void value(const ParserItem& item, unsigned long index, const ParserValue& value);
  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       GroupMark outer);
  void endGroup(GroupMark begin) { closeSize(begin); }
  void endItem(const ParserItem& item, ItemMark begin);

 private:
  unsigned long openSize();
  void closeSize(unsigned long begin);
  void writeString(std::string_view text);
  void writeBlock(const ParserValue& value);
  void writeGroupValue(const ParserValue& value);

  BinaryBuffer out;
};

}  // namespace Quarry
