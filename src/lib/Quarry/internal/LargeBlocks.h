/// Blocks of memory for long lists and texts.
#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace Quarry {

/// Gets large blocks from the system and takes them back.
///
/// The last few that came back are kept, with their memory, for the next ones of about their size:
/// to ask the system for fresh pages costs more than to fill them.
///
/// Used by any thread at any time, also while the process ends: it is never destroyed.
class LargeBlocks {
 public:
  static constexpr std::size_t SMALLEST = std::size_t(1) << 17;
  static constexpr std::size_t LARGEST_KEPT = std::size_t(16) << 20;

  /// A list of up to half of this that grows by doubling finds all those again that it grew out of.
  static constexpr std::size_t MOST_KEPT_BYTES = std::size_t(24) << 20;

  static LargeBlocks& get();

  /// Returns a block of `size` bytes, at least SMALLEST. What it holds is anything. Throws
  /// std::bad_alloc.
  void* take(std::size_t size);

  /// Takes a block back. Never allocates.
  /// @param size as given to take()
  void giveBack(void* block, std::size_t size) noexcept;

 private:
  static constexpr std::size_t MOST_KEPT = 32;

  struct Block {
    void* begin;
    std::size_t size;  ///< a multiple of GRANULE
  };

  LargeBlocks() { kept.reserve(MOST_KEPT); }
  static std::size_t roundUp(std::size_t size);
  static void* map(std::size_t size);
  void dropOldest();

  std::mutex mutex;
  std::vector<Block> kept;  ///< the oldest first
  std::size_t keptBytes = 0;
};

}  // namespace Quarry
