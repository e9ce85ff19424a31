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
/// Used by any thread at any time, also while the process ends: it is never destroyed.
class SlabSource {
 public:
  static constexpr std::size_t SLAB_SIZE = std::size_t(1) << 16;
  static constexpr std::size_t KEPT = 256;  ///< 16 MiB

  static SlabSource& get();

  /// Returns SLAB_SIZE bytes, aligned to their size. What they hold is anything. Throws
  /// std::bad_alloc.
  void* take();

  /// Takes a slab back. Never allocates.
  void giveBack(void* slab) noexcept;

 private:
  /// So many slabs are asked of the system at once.
  static constexpr std::size_t REGION_SLABS = 32;

  void mapRegion();

  std::mutex mutex;
  std::vector<void*> kept;      ///< with their memory
  std::vector<void*> returned;  ///< without
  char* unused = nullptr;       ///< slabs of the newest region that were never handed out
  char* unusedEnd = nullptr;
  std::size_t slabs = 0;  ///< in all regions
};

}  // namespace Quarry
