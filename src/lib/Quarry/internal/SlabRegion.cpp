#include "SlabRegion.h"

#include <cstdint>
#include <exception>
#include <new>
#include <utility>

namespace Quarry {

// --- Parts that have more ------------------------------------------------------------------------

void SlabRegion::holdsMore(void* part, void (*release)(void*)) {
  holders.push_back({part, release});
}

#ifdef QUARRY_PLAIN_HEAP

// --- Without slabs -------------------------------------------------------------------------------

SlabRegion::Use::Use(SlabRegion* usedRegion) noexcept : region(usedRegion), exceptions(0) {}
SlabRegion::Use::~Use() = default;
std::unique_ptr<SlabRegion> SlabRegion::make() noexcept { return nullptr; }
SlabRegion::~SlabRegion() = default;
SlabRegion* SlabRegion::getUsed() { return nullptr; }
SlabRegion* SlabRegion::of(const void*) { return nullptr; }
void SlabRegion::breakUp() noexcept {}
bool SlabRegion::has(const void*, std::size_t) const { return false; }

#else

// --- Making and freeing --------------------------------------------------------------------------

std::unique_ptr<SlabRegion> SlabRegion::make() noexcept {
  return std::unique_ptr<SlabRegion>(new (std::nothrow) SlabRegion);
}

/// What the holders free may lie here, so that the slabs go last.
SlabRegion::~SlabRegion() {
  for (const Holder& holder : holders)
    holder.release(holder.part);
  while (SlabHeap::Large* large = larges) {
    larges = large->next;
    SlabHeap::giveBack(*large);
  }
  while (SlabHeap::Slab* slab = newest) {
    newest = slab->next;
    slab->giveBack();
  }
  for (char* extent : extents)
    SlabSource::get().giveBackExtent(extent);
}

void SlabRegion::breakUp() noexcept {
  isBroken = true;
  holders.clear();
  for (SlabHeap::Large* large = std::exchange(larges, nullptr); large != nullptr;
       large = large->next) {
    large->region = nullptr;
  }
  while (SlabHeap::Slab* slab = newest) {
    newest = slab->next;
    SlabHeap::handOver(*slab, slab->capacity);
  }
  breakUpExtents();
}

void SlabRegion::breakUpExtents() noexcept {
  for (char* extent : extents)
    breakUpExtent(extent);
  extents.clear();
}

/// The last slabs of the last extent may not have been used.
void SlabRegion::breakUpExtent(char* extent) noexcept {
  char* const end = extent + SlabSource::EXTENT_SIZE;
  char* const usedEnd = extent == extents.back() ? spare : end;
  SlabSource::get().breakUpExtent(extent);
  for (char* place = extent; place != usedEnd; place += SlabSource::SLAB_SIZE) {
    auto* slab = reinterpret_cast<SlabHeap::Slab*>(place);
    SlabHeap::handOver(*slab, slab->capacity);
  }
  for (char* place = usedEnd; place != end; place += SlabSource::SLAB_SIZE)
    SlabSource::get().giveBack(place);
}

SlabRegion* SlabRegion::getUsed() { return SlabHeap::run.region; }

SlabRegion* SlabRegion::of(const void* piece) {
  return SlabHeap::Slab::of(const_cast<void*>(piece))->region;
}

bool SlabRegion::has(const void* piece, std::size_t size) const {
  if (size <= SlabHeap::LARGEST) return of(piece) == this;
  const SlabHeap::Large& large = static_cast<const SlabHeap::Large*>(piece)[-1];
  return (large.size == 0 ? of(&large) : large.region) == this;
}

// --- Getting pieces ------------------------------------------------------------------------------

SlabRegion::Use::Use(SlabRegion* usedRegion) noexcept
    : region(usedRegion),
      exceptions(std::uncaught_exceptions()),
      outer(std::exchange(SlabHeap::run, {region, nullptr, nullptr, 0})) {
  if (region != nullptr) region->used = true;
}

SlabRegion::Use::~Use() {
  if (region != nullptr) {
    region->used = false;
    if (std::uncaught_exceptions() > exceptions) region->breakUp();
    region->closeSlab();
  }
  SlabHeap::run = outer;
}

/// What a tree needs beyond as many slabs as are kept would be fresh pages.
void* SlabRegion::takeSlab(bool isSmall) {
  if (!isBroken && slabs == SlabSource::KEPT) return takeOfExtent();
  void* slab = isSmall ? SlabHeap::takeSmallSlab() : SlabSource::get().take();
  ++slabs;
  return slab;
}

void* SlabRegion::takeOfExtent() {
  if (extents.empty() || spare == extents.back() + SlabSource::EXTENT_SIZE) {
    extents.reserve(extents.size() + 1);
    spare = static_cast<char*>(SlabSource::get().takeExtent());
    extents.push_back(spare);
  }
  return std::exchange(spare, spare + SlabSource::SLAB_SIZE);
}

/// The first slab is a small one: more is not needed for most documents.
void SlabRegion::openSlab() {
  closeSlab();
  SlabHeap::Run& run = SlabHeap::run;
  run = {this, nullptr, nullptr, 0};
  const bool isSmall = !isBroken && slabs == 0;
  open = SlabHeap::makeSlab(takeSlab(isSmall), SlabHeap::MIXED);
  open->isSmall = isSmall;
  open->capacity = UINT32_MAX;
  open->freeCount = 0;
  run.next = open->fresh;
  run.end =
      reinterpret_cast<char*>(open) + (isSmall ? SlabSource::SMALL_SIZE : SlabSource::SLAB_SIZE);
  if (isBroken) return;
  open->region = this;
  if (extents.empty()) open->next = std::exchange(newest, open);
}

/// Now that no piece is added any more, the slab can become empty.
void SlabRegion::closeSlab() noexcept {
  SlabHeap::Slab* slab = std::exchange(open, nullptr);
  if (slab == nullptr) return;
  if (isBroken) {
    SlabHeap::handOver(*slab, SlabHeap::run.count);
  } else {
    slab->capacity = SlabHeap::run.count;
  }
}

void SlabRegion::add(SlabHeap::Large& large) {
  if (isBroken) return;
  large.region = this;
  large.next = std::exchange(larges, &large);
  if (large.next != nullptr) large.next->previous = &large;
}

void SlabRegion::remove(SlabHeap::Large& large) noexcept {
  if (large.previous != nullptr) large.previous->next = large.next;
  if (large.next != nullptr) large.next->previous = large.previous;
  if (larges == &large) larges = large.next;
}

#endif

}  // namespace Quarry
