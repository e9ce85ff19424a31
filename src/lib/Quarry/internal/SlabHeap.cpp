#include "SlabHeap.h"

#ifndef QUARRY_PLAIN_HEAP

#include "LargeBlocks.h"
#include "SlabRegion.h"

#include <mutex>
#include <utility>

namespace Quarry {

// --- Slabs of one size ---------------------------------------------------------------------------

/// The slabs of one size that have free slots and from which no thread takes any.
class SlabHeap::SizeList {
 public:
  /// Gives a thread, which has used up what it held, a slab with free slots.
  void refill(Holding& holding, std::size_t sizeIndex) {
    const std::lock_guard<std::mutex> lock(mutex);
    Slab* slab = holding.current;
    if (slab == nullptr || slab->free == nullptr) {
      if (first == nullptr) add(*SlabHeap::makeSlab(SlabSource::get().take(), sizeIndex));
      if (slab != nullptr) slab->isCurrent = false;
      slab = first;
      remove(*slab);
      slab->isCurrent = true;
      holding.current = slab;
    }
    holding.free = slab->free;
    holding.fresh = slab->fresh;
    holding.freshEnd = slab->end();
    slab->free = nullptr;
    slab->fresh = slab->end();
    slab->freeCount = 0;
  }

  /// Takes over a batch of freed slots.
  void handIn(Holding& holding) noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    Slab& slab = *holding.batchSlab;
    holding.batchLast->next = slab.free;
    slab.free = holding.batch;
    slab.freeCount += holding.batchCount;
    if (!slab.isCurrent) settle(slab);
    holding.batchSlab = nullptr;
    holding.batch = nullptr;
    holding.batchCount = 0;
  }

  /// Takes over a slab that was a region's.
  void takeOver(Slab& slab, std::uint32_t pieces) noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    slab.region = nullptr;
    slab.capacity = pieces;
    settle(slab);
  }

  /// Takes over the slab from which a thread has taken slots.
  void leave(Holding& holding) noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    Slab& slab = *holding.current;
    while (Slot* slot = holding.free) {
      holding.free = slot->next;
      slot->next = slab.free;
      slab.free = slot;
      ++slab.freeCount;
    }
    slab.fresh = holding.fresh;
    slab.freeCount += freshCount(slab);
    slab.isCurrent = false;
    holding.current = nullptr;
    if (slab.freeCount > 0) settle(slab);
  }

 private:
  static std::uint32_t freshCount(Slab& slab) {
    const std::size_t slotSize = (slab.sizeIndex + 1) * GRANULE;
    return static_cast<std::uint32_t>(static_cast<std::size_t>(slab.end() - slab.fresh) / slotSize);
  }

  /// Finds the place of a slab, from which no thread takes slots and which has free ones. What was
  /// freed between pieces of other sizes stays unused.
  void settle(Slab& slab) noexcept {
    const bool isEmpty = slab.freeCount == slab.capacity;
    if (isEmpty && slab.isListed) remove(slab);
    if (isEmpty) {
      slab.giveBack();
    } else if (!slab.isListed && slab.sizeIndex != MIXED) {
      add(slab);
    }
  }

  void add(Slab& slab) noexcept {
    slab.isListed = true;
    slab.previous = nullptr;
    slab.next = first;
    if (first != nullptr) first->previous = &slab;
    first = &slab;
  }

  void remove(Slab& slab) noexcept {
    slab.isListed = false;
    if (slab.previous != nullptr) slab.previous->next = slab.next;
    if (slab.next != nullptr) slab.next->previous = slab.previous;
    if (first == &slab) first = slab.next;
  }

  std::mutex mutex;
  Slab* first = nullptr;
};

constinit SlabHeap::SizeList SlabHeap::sizeLists[SIZES + 1];

SlabHeap::Slab* SlabHeap::makeSlab(void* memory, std::size_t sizeIndex) {
  const std::size_t slotSize = (sizeIndex + 1) * GRANULE;
  const std::size_t capacity = (SlabSource::SLAB_SIZE - SLOTS_BEGIN) / slotSize;
  Slab* slab = ::new (memory) Slab();
  slab->sizeIndex = static_cast<std::uint32_t>(sizeIndex);
  slab->capacity = static_cast<std::uint32_t>(capacity);
  slab->freeCount = slab->capacity;
  slab->fresh = static_cast<char*>(memory) + SLOTS_BEGIN;
  return slab;
}

void SlabHeap::handOver(Slab& slab, std::uint32_t pieces) noexcept {
  sizeLists[MIXED].takeOver(slab, pieces);
}

/// The bytes behind the last slot are less than a slot.
char* SlabHeap::Slab::end() {
  const std::size_t slotSize = (sizeIndex + 1) * GRANULE;
  return reinterpret_cast<char*>(this) + SLOTS_BEGIN + capacity * slotSize;
}

void SlabHeap::Slab::giveBack() noexcept {
  return isSmall ? giveBackSmallSlab(this) : SlabSource::get().giveBack(this);
}

// --- Threads -------------------------------------------------------------------------------------

constinit thread_local SlabHeap::Holdings* SlabHeap::mine = nullptr;
constinit thread_local SlabHeap::Run SlabHeap::run;

/// What threads hold: made at its first use, given back when the thread ends.
class SlabHeap::ThreadEnd {
 public:
  /// Calls `use` with what the calling thread holds. Threads that hold nothing of their own any
  /// more, because they are ending, share one Holdings: trees may be made and destroyed to the very
  /// end.
  template <class Use>
  static auto withHoldings(Use use) {
    if (Holdings* holdings = begin()) return use(*holdings);
    const std::lock_guard<std::mutex> lock(lateMutex);
    return use(late);
  }

  /// Returns what the calling thread holds; null when it is ending or memory has run out.
  static Holdings* begin() noexcept {
    if (mine != nullptr || hasEnded) return mine;
    mine = new (std::nothrow) Holdings;
    thread_local ThreadEnd end;
    return mine;
  }

  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;

 private:
  ThreadEnd() = default;
  ~ThreadEnd() {
    Holdings* holdings = mine;
    mine = nullptr;
    hasEnded = true;
    if (holdings == nullptr) return;
    for (Holding& holding : holdings->of)
      giveBack(holding);
    if (holdings->smallSlab != nullptr) SlabSource::get().giveBackSmall(holdings->smallSlab);
    delete holdings;
  }

  static void giveBack(Holding& holding) noexcept {
    SlabHeap::handIn(holding);
    if (holding.current != nullptr) sizeLists[holding.current->sizeIndex].leave(holding);
  }

  static constinit thread_local bool hasEnded;
  static std::mutex lateMutex;
  static Holdings late;
};

constinit std::mutex SlabHeap::ThreadEnd::lateMutex;
constinit SlabHeap::Holdings SlabHeap::ThreadEnd::late;

constinit thread_local bool SlabHeap::ThreadEnd::hasEnded = false;

// --- Slow ways -----------------------------------------------------------------------------------

// Those that are seldom gone are not inlined: they would burden takeElsewhere().

/// Returns the next bytes of the region, as there is one.
[[gnu::noinline]] void* SlabHeap::takeOfRegion(std::size_t size) {
  if (size > run.getRoom()) run.region->openSlab();
  return takeNext(size);
}

/// Returns memory where what is left of the region's slab, if any, is too little.
void* SlabHeap::takeElsewhere(std::size_t size) {
  if (run.region != nullptr) return takeOfRegion(roundUp(size));
  const std::size_t sizeIndex = indexOf(size);
  void* slot = mine != nullptr ? take(mine->of[sizeIndex], sizeIndex) : nullptr;
  return slot != nullptr ? slot : takeSlowly(sizeIndex);
}

void* SlabHeap::allocateLarge(std::size_t size) {
  const std::size_t whole = size + sizeof(Large);
  if (whole < size) throw std::bad_alloc();
  SlabRegion* region = run.region;
  if (region != nullptr && whole <= LARGEST_OF_REGION) {
    return ::new (takeOfRegion(roundUp(whole))) Large{} + 1;
  }
  void* memory =
      whole >= LargeBlocks::SMALLEST ? LargeBlocks::get().take(whole) : ::operator new(whole);
  auto* large = ::new (memory) Large{whole, nullptr, nullptr, nullptr};
  if (region != nullptr) region->add(*large);
  return large + 1;
}

void SlabHeap::freeLarge(void* memory) noexcept {
  Large& large = static_cast<Large*>(memory)[-1];
  if (large.size == 0) return freeSlot(&large);
  if (large.region != nullptr) large.region->remove(large);
  giveBack(large);
}

void SlabHeap::giveBack(Large& large) noexcept {
  if (large.size >= LargeBlocks::SMALLEST) return LargeBlocks::get().giveBack(&large, large.size);
  ::operator delete(&large);
}

[[gnu::noinline]] void* SlabHeap::takeSlowly(std::size_t sizeIndex) {
  return ThreadEnd::withHoldings([sizeIndex](Holdings& holdings) {
    Holding& holding = holdings.of[sizeIndex];
    void* slot = take(holding, sizeIndex);
    if (slot != nullptr) return slot;
    handIn(holding);
    sizeLists[sizeIndex].refill(holding, sizeIndex);
    return take(holding, sizeIndex);
  });
}

void SlabHeap::putSlowly(Slab* slab, Slot* slot) noexcept {
  ThreadEnd::withHoldings(
      [=](Holdings& holdings) { put(holdings.of[slab->sizeIndex], slab, slot); });
}

/// The slab of a region is not given back as long as that is whole, so that only the number counts.
void SlabHeap::beginBatch(Holding& holding, Slab* slab, Slot* slot) noexcept {
  if (slab->region != nullptr) {
    ++slab->freeCount;
    return;
  }
  handIn(holding);
  slot->next = nullptr;
  holding.batchSlab = slab;
  holding.batch = slot;
  holding.batchLast = slot;
  holding.batchCount = 1;
}

void SlabHeap::handIn(Holding& holding) noexcept {
  if (holding.batchSlab != nullptr) sizeLists[holding.batchSlab->sizeIndex].handIn(holding);
}

void SlabHeap::flush() noexcept {
  if (mine == nullptr) return;
  for (Holding& holding : mine->of)
    handIn(holding);
  if (void* slab = std::exchange(mine->smallSlab, nullptr)) SlabSource::get().giveBackSmall(slab);
}

// --- Small slabs ---------------------------------------------------------------------------------

void* SlabHeap::takeSmallSlab() {
  void* slab = mine != nullptr ? std::exchange(mine->smallSlab, nullptr) : nullptr;
  return slab != nullptr ? slab : SlabSource::get().takeSmall();
}

void SlabHeap::giveBackSmallSlab(void* slab) noexcept {
  Holdings* holdings = ThreadEnd::begin();
  if (holdings != nullptr && holdings->smallSlab == nullptr) {
    holdings->smallSlab = slab;
  } else {
    SlabSource::get().giveBackSmall(slab);
  }
}

}  // namespace Quarry

#endif
