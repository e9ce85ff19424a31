#include "SlabSource.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace Quarry {

namespace {

void* takeLast(std::vector<void*>& slabs) {
  void* slab = slabs.back();
  slabs.pop_back();
  return slab;
}

/// Lets the system get all pages of a slab at once, which takes less time than one by one, when
/// they are used first. Where it cannot, that is how they come.
void getPages(void* slab) {
#ifdef MADV_POPULATE_WRITE
  ::madvise(slab, SlabSource::SLAB_SIZE, MADV_POPULATE_WRITE);
#else
  static_cast<void>(slab);
#endif
}

}  // namespace

SlabSource& SlabSource::get() {
  static SlabSource& source = *new SlabSource;
  return source;
}

void* SlabSource::take() {
  bool needsPages = false;
  void* slab = takeAny(needsPages);
  if (needsPages) getPages(slab);
  return slab;
}

/// Sets `needsPages` for a slab without memory that will probably be filled.
void* SlabSource::takeAny(bool& needsPages) {
  const std::lock_guard<std::mutex> lock(mutex);
  if (!kept.empty()) return takeLast(kept);
  needsPages = slabs >= MANY;
  if (!returned.empty()) return takeLast(returned);
  if (unused == unusedEnd) mapRegion();
  void* slab = unused;
  unused += SLAB_SIZE;
  return slab;
}

void SlabSource::giveBack(void* slab) noexcept {
  const std::lock_guard<std::mutex> lock(mutex);
  if (kept.size() < KEPT) {
    kept.push_back(slab);
  } else {
    ::madvise(slab, SLAB_SIZE, MADV_DONTNEED);
    returned.push_back(slab);
  }
}

/// Asks for one slab more than is used, so that they can be aligned. The lists get room for every
/// slab there is: giving back must not fail.
void SlabSource::mapRegion() {
  constexpr std::size_t SIZE = REGION_SLABS * SLAB_SIZE;
  kept.reserve(KEPT);
  returned.reserve(slabs + REGION_SLABS);
  void* region =
      ::mmap(nullptr, SIZE + SLAB_SIZE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (region == MAP_FAILED) throw std::bad_alloc();
  const auto address = reinterpret_cast<std::uintptr_t>(region);
  unused = static_cast<char*>(region) + (SLAB_SIZE - address % SLAB_SIZE) % SLAB_SIZE;
  unusedEnd = unused + SIZE;
  slabs += REGION_SLABS;
}

}  // namespace Quarry
