#include "SlabSource.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace Quarry {

namespace {

char* map(std::size_t size) {
  void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  return static_cast<char*>(memory);
}

void unmap(char* begin, char* end) {
  if (begin != end) ::munmap(begin, static_cast<std::size_t>(end - begin));
}

char* alignUp(char* place, std::size_t size) {
  const auto address = reinterpret_cast<std::uintptr_t>(place);
  return place + (size - address % size) % size;
}

}  // namespace

SlabSource& SlabSource::get() {
  static SlabSource& source = *new SlabSource;
  return source;
}

void SlabSource::KeptBlocks::add(void* block) noexcept {
  last = ::new (block) Link{last};
  ++count;
}

void* SlabSource::KeptBlocks::take() noexcept {
  --count;
  return std::exchange(last, last->next);
}

void* SlabSource::take() {
  const std::lock_guard<std::mutex> lock(mutex);
  return kept.size() == 0 ? takeFresh() : kept.take();
}

void* SlabSource::takeSmall() {
  const std::lock_guard<std::mutex> lock(mutex);
  return keptSmall.size() == 0 ? takeFresh() : keptSmall.take();
}

/// Returns a slab without memory.
void* SlabSource::takeFresh() {
  if (!returned.empty()) {
    void* slab = returned.back();
    returned.pop_back();
    return slab;
  }
  if (unused == unusedEnd) mapRegion();
  return std::exchange(unused, unused + SLAB_SIZE);
}

void SlabSource::giveBack(void* slab) noexcept { keep(slab, SLAB_SIZE, kept, KEPT); }

void SlabSource::giveBackSmall(void* slab) noexcept {
  keep(slab, SMALL_SIZE, keptSmall, KEPT_SMALL);
}

void SlabSource::keep(void* slab, std::size_t size, KeptBlocks& list, std::size_t most) noexcept {
  const std::lock_guard<std::mutex> lock(mutex);
  if (list.size() < most) {
    list.add(slab);
  } else {
    ::madvise(slab, size, MADV_DONTNEED);
    returned.push_back(slab);
  }
}

/// Asks for one slab more than is used, so that they can be aligned.
void SlabSource::mapRegion() {
  constexpr std::size_t SIZE = REGION_SLABS * SLAB_SIZE;
  reserve(REGION_SLABS);
  unused = alignUp(map(SIZE + SLAB_SIZE), SLAB_SIZE);
  unusedEnd = unused + SIZE;
  slabs += REGION_SLABS;
}

/// The list gets room for every slab there is, and so many more: giving back must not fail.
void SlabSource::reserve(std::size_t more) { returned.reserve(slabs + more); }

void* SlabSource::takeExtent() {
  const std::lock_guard<std::mutex> lock(mutex);
  void* extent = keptExtents.size() == 0 ? mapExtent() : keptExtents.take();
  ++usedExtents;
  if (hasUnmapped) extentsToKeep = std::max(extentsToKeep, chooseKept(usedExtents));
  return extent;
}

std::size_t SlabSource::chooseKept(std::size_t used) {
  const std::size_t few = std::min(used, MANY_EXTENTS);
  return std::min(few / 2 + (used - few) / 4, MOST_KEPT_EXTENTS);
}

/// Asks for twice as much as is used, so that it can be aligned. The upper of two places is taken:
/// the system looks for the next one below, and so they lie side by side.
void* SlabSource::mapExtent() {
  reserve(EXTENT_SLABS);
  char* begin = map(2 * EXTENT_SIZE);
  char* extent = alignUp(begin + 1, EXTENT_SIZE);
  unmap(begin, extent);
  unmap(extent + EXTENT_SIZE, begin + 2 * EXTENT_SIZE);
  ::madvise(extent, EXTENT_SIZE, MADV_HUGEPAGE);
  slabs += EXTENT_SLABS;
  return extent;
}

void SlabSource::giveBackExtent(void* extent) noexcept {
  if (!keepExtent(extent)) ::munmap(extent, EXTENT_SIZE);
}

bool SlabSource::keepExtent(void* extent) noexcept {
  const std::lock_guard<std::mutex> lock(mutex);
  --usedExtents;
  if (keptExtents.size() < extentsToKeep) {
    keptExtents.add(extent);
    return true;
  }
  slabs -= EXTENT_SLABS;
  hasUnmapped = true;
  return false;
}

/// Large pages of which only some slabs are used would keep the memory of all.
void SlabSource::breakUpExtent(void* extent) noexcept {
  ::madvise(extent, EXTENT_SIZE, MADV_NOHUGEPAGE);
  const std::lock_guard<std::mutex> lock(mutex);
  --usedExtents;
}

}  // namespace Quarry
