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

}  // namespace

SlabSource& SlabSource::get() {
  static SlabSource& source = *new SlabSource;
  return source;
}

void* SlabSource::take() {
  const std::lock_guard<std::mutex> lock(mutex);
  if (!kept.empty()) return takeLast(kept);
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
