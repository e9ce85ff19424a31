/// The blocks of memory that slabs are made of.
#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace Quarry {

/// Gets memory from the system, cuts it into slabs, and takes them back.
///
/// Slabs that come back are handed out again first. Up to KEPT of them keep their memory, so that
/// reading one document after the other does not ask the system for fresh pages each time: that
/// would cost more than the reading. The memory of all others goes back to the system at once; only
/// their addresses are kept.
///
/// Who needs more slabs than are kept, and gives them back together, gets them by extents. Each is
/// a large page where the system has such: that is far quicker to get and to give back than the
/// small pages of as much memory.
///
/// Used by any thread at any time, also while the process ends: it is never destroyed.
class SlabSource {
 public:
  static constexpr std::size_t SLAB_SIZE = std::size_t(1) << 16;
  static constexpr std::size_t KEPT = 256;  ///< 16 MiB
  static constexpr std::size_t EXTENT_SIZE = std::size_t(1) << 21;

  static SlabSource& get();

  /// Returns SLAB_SIZE bytes, aligned to their size. What they hold is anything. Throws
  /// std::bad_alloc.
  void* take();

  /// Takes a slab back. Never allocates.
  void giveBack(void* slab) noexcept;

  /// Returns EXTENT_SIZE bytes, all zero and aligned to their size: slabs that lie side by side.
  /// Throws std::bad_alloc.
  void* takeExtent();

  /// Takes an extent back. Its memory goes back to the system at once.
  void giveBackExtent(void* extent) noexcept;

  /// Makes the slabs of an extent slabs like any others, which are given back one by one.
  void breakUpExtent(void* extent) noexcept;

 private:
  /// So many slabs are asked of the system at once.
  static constexpr std::size_t REGION_SLABS = 32;
  static constexpr std::size_t EXTENT_SLABS = EXTENT_SIZE / SLAB_SIZE;

  void mapRegion();
  void reserve(std::size_t more);

  std::mutex mutex;
  std::vector<void*> kept;      ///< with their memory
  std::vector<void*> returned;  ///< without
  char* unused = nullptr;       ///< slabs of the newest region that were never handed out
  char* unusedEnd = nullptr;
  std::size_t slabs = 0;  ///< in all regions and extents
};

}  // namespace Quarry
