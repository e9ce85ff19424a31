/// Reads trees of any depth from the binary form.
#pragma once

#include <Quarry/ParserLimits.h>

#include "BinaryNumber.h"
#include "SlabHeap.h"
#include "WordScan.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// The one door through which bytes of the binary form come in. Every read checks what is left, and
/// no length is believed before it is compared with that.
///
/// Where a frame is broken, reading goes on behind it as far as the format allows: a failure within
/// a nested group ends that group, and the item that holds it goes on with its next value.
///
/// Nested groups take memory, not stack. The time is linear in the data: the position never goes
/// back.
class BinaryReader {
 public:
  /// @param source must outlive the reader
  /// @param position where to begin, in bytes; the caller's, set when the reader is destroyed
  /// @param nestingDepth how many groups may stand one within another; deeper ones are passed over
  ///        and leave no value
  BinaryReader(const std::vector<char>& source, unsigned long& position,
               unsigned long nestingDepth = ParserLimits::UNLIMITED);
  BinaryReader(const BinaryReader&) = delete;
  BinaryReader& operator=(const BinaryReader&) = delete;
  ~BinaryReader() { callersPosition = pos; }

  // --- Trees -----------------------------------------------------------------------------------

  /// Appends the items of a group frame, without its name, to `group`.
  /// @return false when the frame or one of its own items is broken
  bool readGroup(ParserGroup& group);

  /// Appends the values of an item frame, behind its name, to `item`.
  bool readItem(ParserItem& item);

  /// Tells whether a group was passed over because of its depth.
  bool leavesOut() const { return hasLeftOut; }

  /// Reads a value with its tag; null where there is none.
  std::unique_ptr<ParserValue> readValue();

  // --- Numbers and bytes -----------------------------------------------------------------------

  /// Reads a number of COUNT bytes. Where fewer are left, moves to the end and returns 0.
  template <unsigned long COUNT>
  std::uint64_t readNumber() {
    if (!has(COUNT)) {
      pos = size;
      return 0;
    }
    pos += COUNT;
    return loadNumber<COUNT>(bytes + pos - COUNT);
  }

  /// Reads a size as readNumber() does. One that is beyond all memory becomes the largest number.
  unsigned long readSize() {
    constexpr std::uint64_t LARGEST = std::numeric_limits<unsigned long>::max();
    return static_cast<unsigned long>(std::min(readNumber<SIZE_BYTES>(), LARGEST));
  }

  /// Reads bytes up to a zero byte, and that. Without one, moves to the end, warns, and returns
  /// none. They lie in the source.
  std::string_view readString() {
    if (!has(LONGEST_BEFORE_ZERO + 1)) return readLongString();
    const unsigned length = countBeforeZero(bytes + pos);
    if (length > LONGEST_BEFORE_ZERO) return readLongString();
    pos += length + 1;
    return {bytes + pos - length - 1, length};
  }

  /// Reads a size and as many bytes. Where fewer are left, moves to the end, warns, and returns
  /// null with size 0.
  std::unique_ptr<char[]> readBlock(unsigned long& count);

 private:
  /// A group that is being read, and its current item, which it holds already.
  struct Level {
    ParserGroup* group = nullptr;  ///< null when only an item is read
    unsigned long groupEnd = 0;    ///< where the group's frame ends
    ParserItem* item = nullptr;    ///< null between two items
    unsigned long itemEnd = 0;     ///< where the item's frame ends
  };

  /// Why reading in the innermost level stopped.
  enum class Stop { AT_GROUP, AT_END, BROKEN };

  bool run();
  void open(const Level& inner);
  bool openGroup(ParserGroup& group);
  bool readGroupSize(unsigned long& length);
  void leaveOutGroup();
  std::string_view readLongString();
  Stop readLevel();
  bool openNextItem();
  bool openFrame(std::string_view name, unsigned long& frameEnd);
  unsigned long guessValues(unsigned long frameEnd) const;
  Stop readValues();
  bool readPayload(unsigned char tag, void* place);
  void makeBlock(void* place);
  template <unsigned long COUNT>
  bool readWhole(std::uint64_t& number);
  void dropItem();

  /// Tells whether `count` bytes are left.
  bool has(unsigned long count) const { return count <= size - pos; }

  const char* const bytes;
  const unsigned long size;
  unsigned long pos;  ///< at most `size`
  unsigned long& callersPosition;
  const unsigned long deepest;
  bool hasLeftOut = false;
  Level level;  ///< the innermost one
  std::vector<Level, SlabAllocator<Level>> outerLevels;
};

}  // namespace Quarry
