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
/// A small slab is the beginning of a slab. Nobody touches the rest, which therefore has no memory:
/// small documents take no more than they need, and many of them can be kept.
///
/// Who needs more slabs than are kept, and gives them back together, gets them by extents. Each is
/// a large page where the system has such: that is far quicker to get and to give back than the
/// small pages of as much memory. Extents go back to the system at once, unless the process comes
/// back for them: then half of those that it uses at a time are kept, of those beyond MANY_EXTENTS
/// a quarter, up to MOST_KEPT_EXTENTS. Less and less, so that no document takes much more time for
/// each byte than one of half its size.
///
/// Used by any thread at any time, also while the process ends: it is never destroyed.
class SlabSource {
 public:
  static constexpr std::size_t SLAB_SIZE = std::size_t(1) << 16;
  static constexpr std::size_t KEPT = 256;  ///< 16 MiB
  static constexpr std::size_t SMALL_SIZE = std::size_t(1) << 14;
  static constexpr std::size_t KEPT_SMALL = 1024;  ///< 16 MiB
  static constexpr std::size_t EXTENT_SIZE = std::size_t(1) << 21;
  static constexpr std::size_t MANY_EXTENTS = 28;
  static constexpr std::size_t MOST_KEPT_EXTENTS = 24;  ///< 48 MiB

  static SlabSource& get();

  /// Returns SLAB_SIZE bytes, aligned to their size. What they hold is anything. Throws
  /// std::bad_alloc.
  void* take();

  /// Takes a slab back. Never allocates.
  void giveBack(void* slab) noexcept;

  /// Returns a small slab: SMALL_SIZE bytes at an address like that of a slab. What they hold is
  /// anything. Throws std::bad_alloc.
  void* takeSmall();

  /// Takes a small slab back. Never allocates.
  void giveBackSmall(void* slab) noexcept;

  /// Returns EXTENT_SIZE bytes, aligned to their size: slabs that lie side by side. What they hold
  /// is anything. Throws std::bad_alloc.
  void* takeExtent();

  /// Takes an extent back. Never allocates.
  void giveBackExtent(void* extent) noexcept;

  /// Makes the slabs of an extent slabs like any others, which are given back one by one.
  void breakUpExtent(void* extent) noexcept;

 private:
  /// So many slabs are asked of the system at once.
  static constexpr std::size_t REGION_SLABS = 32;
  static constexpr std::size_t EXTENT_SLABS = EXTENT_SIZE / SLAB_SIZE;

  /// Blocks that keep their memory and are linked through it. The last one is taken first.
  class KeptBlocks {
   public:
    std::size_t size() const { return count; }
    void add(void* block) noexcept;
    void* take() noexcept;

   private:
    struct Link {
      Link* next;
    };
    Link* last = nullptr;
    std::size_t count = 0;
  };

  void* takeFresh();
  void keep(void* slab, std::size_t size, KeptBlocks& list, std::size_t most) noexcept;
  void mapRegion();
  void reserve(std::size_t more);
  void* mapExtent();
  static std::size_t chooseKept(std::size_t used);
  bool keepExtent(void* extent) noexcept;

  std::mutex mutex;
  KeptBlocks kept;
  KeptBlocks keptSmall;
  std::vector<void*> returned;  ///< slabs without memory
  char* unused = nullptr;       ///< slabs of the newest region that were never handed out
  char* unusedEnd = nullptr;
  std::size_t slabs = 0;  ///< in all regions and extents

  KeptBlocks keptExtents;
  std::size_t usedExtents = 0;
  std::size_t extentsToKeep = 0;
  bool hasUnmapped = false;  ///< an extent went back to the system
};

}  // namespace Quarry
