/// Memory for the parts of trees.
#pragma once

#include "SlabSource.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <new>

// The address sanitizer has to see every part of a tree on its own.
#if defined(__SANITIZE_ADDRESS__)
#define QUARRY_PLAIN_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUARRY_PLAIN_HEAP 1
#endif
#endif

namespace Quarry {

class SlabRegion;

/// Hands out memory for items, groups, values, lists and texts: many small pieces that are made
/// together and freed together, each of them by itself.
///
/// Memory is cut from slabs: blocks of 64 KiB, aligned to their size, so that a slot's address
/// tells its slab. All slots of a slab have one size, unless the slab is a SlabRegion's. Sizes are
/// rounded up to a multiple of 16 bytes; what is larger than LARGEST comes from `operator new`, but
/// from a region up to LARGEST_OF_REGION.
///
/// Each thread has, for each size, one slab from which it takes slots, and a batch of slots of one
/// other slab that it has freed: both without a lock, and so a tree is made and freed at the price
/// of a few instructions a part. Only where a slab is exhausted, or the batch's slab changes, the
/// lock of that size is taken. A slot may be freed by any thread. The last small slab of a region
/// that a thread has destroyed stays with it, too: threads that read small documents do not meet.
/// What a thread holds when it ends goes back.
///
/// A slab whose last slot is freed goes back to SlabSource at once, unless a thread takes slots
/// from it; flush() hands in the calling thread's batches, so that this holds for them too.
class SlabHeap {
 public:
  static constexpr std::size_t GRANULE = 16;
  static constexpr std::size_t LARGEST = 1024;

  /// With what stands before it. What is left of a slab in which the next piece finds no room is
  /// lost: a sixteenth of it at most.
  static constexpr std::size_t LARGEST_OF_REGION = 4096;

  /// Returns how many bytes a piece of `size` bytes really has: room to grow into.
  static constexpr std::size_t roundUp(std::size_t size) {
    return (size + GRANULE - 1) / GRANULE * GRANULE;
  }

  /// Returns memory for `size` bytes, more than 0. Throws std::bad_alloc.
  static void* allocate(std::size_t size);

  /// The same, but returns null when memory runs out, and for more than LARGEST: whoever frees
  /// what `new (std::nothrow)` has got is not told how much it was.
  static void* allocateOrNull(std::size_t size) noexcept;

  /// Makes a piece larger where it lies. This is possible for the last piece that was got of the
  /// region that the calling thread uses, as far as its slab reaches.
  /// @param size what it has, as given to allocate() or here
  /// @param wanted what it shall have, no less, up to LARGEST
  /// @return whether it has that now; if not, all is as before
  static bool extend(void* piece, std::size_t size, std::size_t wanted) noexcept;

  /// Frees memory of allocate(). Never allocates.
  /// @param memory null is ignored
  /// @param size as given to allocate(); up to LARGEST, any other size up to LARGEST will do
  static void free(void* memory, std::size_t size) noexcept;

  /// Has the processor fetch what lies `distance` bytes behind a piece, because it will be written
  /// to soon. Nothing need be there.
  static void prefetch(const void* piece, std::ptrdiff_t distance) noexcept;

  /// Hands in what this thread has freed and not yet handed in. It holds no small slab then.
  static void flush() noexcept;

 private:
  friend class SlabRegion;

  class SizeList;
  class ThreadEnd;

  static constexpr std::size_t SIZES = LARGEST / GRANULE;

  /// Takes the place of a size where the pieces of a slab have many: those of regions.
  static constexpr std::uint32_t MIXED = SIZES;

  /// A slab's slots begin here; a multiple of the cache line, so that they share few of them.
  static constexpr std::size_t SLOTS_BEGIN = 64;

  /// The distance, in bytes, at which memory comes in time.
  static constexpr std::ptrdiff_t SOON = 1024;

  /// A free slot begins with the address of the next one.
  struct Slot {
    Slot* next;
  };

  /// The beginning of a slab; its slots follow. All but `sizeIndex`, `isSmall` and `region` is
  /// guarded by the lock of that size, unless there is a region.
  struct Slab {
    std::uint32_t sizeIndex;
    std::uint32_t capacity;   ///< slots in all; no limit while a region takes them
    std::uint32_t freeCount;  ///< slots in `free` and from `fresh` on
    bool isCurrent;           ///< a thread takes slots from it
    bool isListed;            ///< it is in the list of its size
    bool isSmall;             ///< SlabSource has to know when it gets it back
    Slot* free;               ///< slots that were freed
    char* fresh;              ///< slots that were never used begin here and reach to the end
    Slab* previous;
    Slab* next;
    SlabRegion* region;  ///< null for none

    static Slab* of(void* slot);
    char* end();
    void giveBack() noexcept;
  };

  /// What a thread holds of one size.
  struct Holding {
    Slab* current = nullptr;   ///< the slab from which slots are taken
    Slot* free = nullptr;      ///< its free slots
    char* fresh = nullptr;     ///< its slots that were never used begin here
    char* freshEnd = nullptr;  ///< and end here
    Slab* batchSlab = nullptr;
    Slot* batch = nullptr;  ///< freed slots of `batchSlab`
    Slot* batchLast = nullptr;
    std::uint32_t batchCount = 0;
  };

  /// From where the pieces of the region are taken that the thread uses.
  struct Run {
    SlabRegion* region = nullptr;  ///< null for none; there is no room then
    char* next = nullptr;
    char* end = nullptr;
    std::uint32_t count = 0;  ///< of the pieces that were taken

    std::size_t getRoom() const { return static_cast<std::size_t>(end - next); }
  };

  struct Holdings {
    Holding of[SIZES + 1];
    void* smallSlab = nullptr;  ///< for the next region; null for none
  };

  /// Stands before a piece that is larger than LARGEST.
  struct alignas(GRANULE) Large {
    std::size_t size;    ///< with this; 0 for one in a region's slab, which needs none of these
    SlabRegion* region;  ///< null for none
    Large* previous;
    Large* next;
  };

  static std::size_t indexOf(std::size_t size) { return (size - 1) / GRANULE; }
  static void* take(Holding& holding, std::size_t sizeIndex);
  static void* takeNext(std::size_t size);
  static void* takeOfRegion(std::size_t size);
  static void* takeElsewhere(std::size_t size);
  static void put(Holding& holding, Slab* slab, Slot* slot) noexcept;
  static void freeSlot(void* memory) noexcept;
  static void* allocateLarge(std::size_t size);
  static void freeLarge(void* memory) noexcept;
  static void giveBack(Large& large) noexcept;
  static Slab* makeSlab(void* memory, std::size_t sizeIndex);
  static void handOver(Slab& slab, std::uint32_t pieces) noexcept;
  static void* takeSmallSlab();
  static void giveBackSmallSlab(void* slab) noexcept;
  static void* takeSlowly(std::size_t sizeIndex);
  static void putSlowly(Slab* slab, Slot* slot) noexcept;
  static void beginBatch(Holding& holding, Slab* slab, Slot* slot) noexcept;
  static void handIn(Holding& holding) noexcept;

  static SizeList sizeLists[SIZES + 1];

  /// The calling thread's; null before its first use and when the thread ends. A pointer, because a
  /// library that is loaded late finds little room for variables that are reached directly.
  static constinit thread_local Holdings* mine __attribute__((tls_model("initial-exec")));

  /// The calling thread's, which is small enough.
  static constinit thread_local Run run __attribute__((tls_model("initial-exec")));
};

inline void SlabHeap::prefetch(const void* piece, std::ptrdiff_t distance) noexcept {
  __builtin_prefetch(static_cast<const char*>(piece) + distance, 1);
}

#ifdef QUARRY_PLAIN_HEAP

inline void* SlabHeap::allocate(std::size_t size) { return ::operator new(size); }
inline bool SlabHeap::extend(void*, std::size_t, std::size_t) noexcept { return false; }
inline void SlabHeap::free(void* memory, std::size_t) noexcept { ::operator delete(memory); }
inline void SlabHeap::flush() noexcept {}

#else

inline SlabHeap::Slab* SlabHeap::Slab::of(void* slot) {
  const auto address = reinterpret_cast<std::uintptr_t>(slot);
  char* begin = static_cast<char*>(slot) - address % SlabSource::SLAB_SIZE;
  return reinterpret_cast<Slab*>(begin);
}

/// Returns a slot of what the thread holds, or null. What will be written to soon is fetched into
/// the cache meanwhile.
inline void* SlabHeap::take(Holding& holding, std::size_t sizeIndex) {
  if (Slot* slot = holding.free) {
    holding.free = slot->next;
    return slot;
  }
  if (holding.fresh == holding.freshEnd) return nullptr;
  void* slot = holding.fresh;
  holding.fresh += (sizeIndex + 1) * GRANULE;
  prefetch(holding.fresh, SOON);
  return slot;
}

/// Returns the next bytes of the region, which has room for them.
inline void* SlabHeap::takeNext(std::size_t size) {
  void* piece = run.next;
  run.next += size;
  ++run.count;
  prefetch(run.next, SOON);
  return piece;
}

inline void* SlabHeap::allocate(std::size_t size) {
  if (size > LARGEST) return allocateLarge(size);
  const std::size_t whole = roundUp(size);
  return whole <= run.getRoom() ? takeNext(whole) : takeElsewhere(size);
}

/// Where no region is used, nothing ends at the next bytes: there are none.
inline bool SlabHeap::extend(void* piece, std::size_t size, std::size_t wanted) noexcept {
  assert(size <= wanted && wanted <= LARGEST);
  if (run.next != static_cast<char*>(piece) + roundUp(size)) return false;
  const std::size_t more = roundUp(wanted) - roundUp(size);
  if (more > run.getRoom()) return false;
  run.next += more;
  prefetch(run.next, SOON);
  return true;
}

/// Most slots are of the slab that the one before was of.
inline void SlabHeap::put(Holding& holding, Slab* slab, Slot* slot) noexcept {
  if (slab == holding.batchSlab) {
    slot->next = holding.batch;
    holding.batch = slot;
    ++holding.batchCount;
  } else if (slab == holding.current) {
    slot->next = holding.free;
    holding.free = slot;
  } else {
    beginBatch(holding, slab, slot);
  }
}

inline void SlabHeap::free(void* memory, std::size_t size) noexcept {
  if (memory == nullptr) return;
  if (size > LARGEST) return freeLarge(memory);
  freeSlot(memory);
}

inline void SlabHeap::freeSlot(void* memory) noexcept {
  Slab* slab = Slab::of(memory);
  Slot* slot = static_cast<Slot*>(memory);
  if (mine != nullptr) {
    put(mine->of[slab->sizeIndex], slab, slot);
  } else {
    putSlowly(slab, slot);
  }
}

#endif

inline void* SlabHeap::allocateOrNull(std::size_t size) noexcept {
  if (size > LARGEST) return nullptr;
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// For vectors that shall have their memory from SlabHeap.
template <class T>
struct SlabAllocator {
  using value_type = T;

  T* allocate(std::size_t count) {
    if (count > static_cast<std::size_t>(-1) / SIZE) throw std::bad_alloc();
    return static_cast<T*>(SlabHeap::allocate(count * SIZE));
  }
  void deallocate(T* list, std::size_t count) noexcept { SlabHeap::free(list, count * SIZE); }

  bool operator==(const SlabAllocator&) const noexcept { return true; }

  static constexpr std::size_t SIZE = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers
};

}  // namespace Quarry
