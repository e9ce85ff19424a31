/// Writes trees in the binary form.
#pragma once

#include "BinaryNumber.h"
#include "OutputBuffer.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Writes frames one behind the other; TreeWalker leads it through the tree. Each size is left
/// open, and filled in when its frame is complete, so that nothing is copied from level to level.
///
///     group = size , { item } ;                  size: the bytes of all items
///     item  = name , size , kind , { value } ;   size: the kind byte and the bytes of all values
///     value = tag , payload ;
class BinaryWriter {
 public:
  void writeGroup(const ParserGroup& group);
  void writeItem(const ParserItem& item);
  void writeTag(const ParserValue& value);
  void writePayload(const ParserValue& value);

  /// Appends what was written to a buffer, and returns how many bytes that are.
  unsigned long appendTo(std::vector<char>& buffer) const {
    out.appendTo(buffer);
    return out.size();
  }

  // --- What the walk tells ---------------------------------------------------------------------

  /// A frame that is being written.
  struct Frame {
    char* size = nullptr;     ///< where its size has to be filled in
    unsigned long begin = 0;  ///< how many bytes were written up to behind that
  };
  using GroupMark = Frame;
  using ItemMark = Frame;

  ItemMark beginItem(const ParserItem& item, GroupMark group);
  void value(const ParserItem& item, unsigned long index, const ParserValue& value);
  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       GroupMark outer);
  void endGroup(GroupMark frame) { closeFrame(frame); }
  void endItem(const ParserItem&, ItemMark frame) { closeFrame(frame); }

 private:
  template <unsigned long COUNT>
  void writeNumber(std::uint64_t number) {
    storeNumber<COUNT>(out.claim(COUNT), number);
  }
  Frame openFrame();
  void closeFrame(const Frame& frame);
  void writeString(std::string_view text);
  void writeBlock(const ParserValue& value);
  void writeGroupValue(const ParserValue& value);

  OutputBuffer out;
};

}  // namespace Quarry
