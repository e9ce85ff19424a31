/// What is written, before it is known how long it will be.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

namespace Quarry {

/// Collects the bytes of a document and appends them to a string or a vector when they are
/// complete: that then grows once, and to ask the system for fresh pages costs more than to fill
/// them, so that even copying everything once more is quicker than growing step by step.
///
/// The bytes lie in blocks, which never move. The first is the buffer's own, all further ones are
/// slabs, whose memory has mostly been used before.
class OutputBuffer {
 public:
  /// So many bytes can always be claimed.
  static constexpr std::size_t MOST_CLAIMED = 64;

  OutputBuffer() noexcept { beginBlock(::new (firstPlace) Block, FIRST_SIZE); }
  ~OutputBuffer();
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  /// Returns the number of bytes that were appended.
  std::size_t size() const { return earlier + used(); }

  // Appending throws std::bad_alloc, and then has done nothing or a part. The names are those of a
  // string, which can take a buffer's place.

  void push_back(char byte) { *claim(1) = byte; }

  void append(std::string_view piece) {
    if (room() < piece.size()) return appendInParts(piece);
    if (!piece.empty()) std::memcpy(at, piece.data(), piece.size());
    at += piece.size();
  }

  void append(std::size_t count, char byte) {
    if (count > MOST_CLAIMED) return appendMany(count, byte);
    std::memset(claim(MOST_CLAIMED), byte, MOST_CLAIMED);
    at -= MOST_CLAIMED - count;
  }

  /// Appends the first `length` of MOST bytes: that takes no call and no branch.
  template <std::size_t MOST>
  void appendShort(const char* bytes, std::size_t length) {
    static_assert(MOST <= MOST_CLAIMED);
    std::memcpy(claim(MOST), bytes, MOST);
    at -= MOST - length;
  }

  /// Appends bytes, MOST_CLAIMED at most, that the caller has to write. They lie side by side and
  /// stay where they are.
  char* claim(std::size_t count) {
    if (room() < count) extend();
    char* place = at;
    at += count;
    return place;
  }

  /// Appends everything to a string or a vector. When memory runs out, that is as before.
  template <class Target>
  void appendTo(Target& target) const {
    const std::size_t wanted = target.size() + size();
    const std::size_t twice = 2 * target.size();
    if (wanted > target.capacity()) target.reserve(wanted > twice ? wanted : twice);
    for (const Block* block = first(); block != nullptr; block = block->next) {
      const std::size_t count = block == last ? used() : block->used;
      target.insert(target.end(), block->bytes(), block->bytes() + count);
    }
  }

 private:
  static constexpr std::size_t FIRST_SIZE = 4096;

  /// The beginning of a block; its bytes follow.
  struct Block {
    Block* next = nullptr;
    std::size_t used = 0;  ///< bytes, once another block has followed

    char* bytes() { return reinterpret_cast<char*>(this + 1); }
    const char* bytes() const { return reinterpret_cast<const char*>(this + 1); }
  };

  std::size_t room() const { return static_cast<std::size_t>(end - at); }
  std::size_t used() const { return static_cast<std::size_t>(at - last->bytes()); }
  const Block* first() const { return reinterpret_cast<const Block*>(firstPlace); }

  void beginBlock(Block* block, std::size_t size) noexcept {
    last = block;
    at = block->bytes();
    end = reinterpret_cast<char*>(block) + size;
  }

  void extend();
  void appendInParts(std::string_view piece);
  void appendMany(std::size_t count, char byte);

  char* at;                 ///< where the next byte goes
  char* end;                ///< of the last block
  Block* last;              ///< the block that is being filled
  std::size_t earlier = 0;  ///< bytes in the blocks before
  alignas(Block) char firstPlace[FIRST_SIZE];
};

}  // namespace Quarry
