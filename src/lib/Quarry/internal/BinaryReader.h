/// Reads trees of any depth from the binary form.
#pragma once

#include <cstdint>
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
  /// @param position where to begin, in bytes; the caller's, moved along with every read
  BinaryReader(const std::vector<char>& source, unsigned long& position);

  // --- Trees -------------------------------------------------------------------------------------

  /// Appends the items of a group frame, without its name, to `group`.
  /// @return false when the frame or one of its own items is broken
  bool readGroup(ParserGroup& group);

  /// Appends the values of an item frame, behind its name, to `item`.
  bool readItem(ParserItem& item);

  /// Reads a value with its tag; null where there is none.
  std::unique_ptr<ParserValue> readValue();

  // --- Numbers and bytes -------------------------------------------------------------------------

  /// Tells whether `count` bytes are left.
  bool has(unsigned long count) const;

  /// Reads a number of `count` bytes. Where fewer are left, moves to the end and returns 0.
  std::uint64_t readNumber(unsigned long count);

  /// Reads bytes up to a zero byte, and that. Without one, moves to the end, warns, and returns
  /// none. They lie in the source.
  std::string_view readString();

  /// Reads a size and as many bytes. Where fewer are left, moves to the end, warns, and returns
  /// null with size 0.
  std::unique_ptr<char[]> readBlock(unsigned long& size);

 private:
  /// A group that is being read, and its current item.
  struct Level {
    ParserGroup* group = nullptr;         ///< null when only an item is read
    unsigned long groupEnd = 0;           ///< where the group's frame ends
    ParserItem* item = nullptr;           ///< null between two items
    unsigned long itemEnd = 0;            ///< where the item's frame ends
    std::unique_ptr<ParserItem> ownItem;  ///< the item, until its group takes it
  };

  /// How a step ended for the innermost level.
  enum class Step { GOES_ON, COMPLETE, BROKEN };

  bool run();
  Step step();
  bool openGroup(ParserGroup& group);
  Step openNextItem();
  bool openItem(std::string_view name);
  unsigned long guessValues() const;
  Step readValues();
  template <class Make>
  bool readPayload(unsigned char tag, Make make);
  template <class Make, class Convert>
  bool makeNumber(unsigned long count, Make make, Convert convert);
  void closeItem();

  const std::vector<char>& data;
  unsigned long& pos;
  std::vector<Level> levels;
};

}  // namespace Quarry
