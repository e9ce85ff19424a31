#include "LargeBlocks.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace Quarry {

LargeBlocks& LargeBlocks::get() {
  static LargeBlocks& blocks = *new LargeBlocks;
  return blocks;
}

/// Sizes are rounded up in steps of an eighth at most, so that blocks of nearly one size can take
/// one another's place.
std::size_t LargeBlocks::roundUp(std::size_t size) {
  constexpr std::size_t MOST = static_cast<std::size_t>(-1) / 4;
  if (size > MOST) throw std::bad_alloc();
  std::size_t step = SMALLEST / 8;
  while (size > 16 * step)
    step *= 2;
  return (size + step - 1) / step * step;
}

void* LargeBlocks::take(std::size_t size) {
  const std::size_t wanted = roundUp(size);
  {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto fits = [wanted](const Block& block) { return block.size == wanted; };
    const auto found = std::find_if(kept.rbegin(), kept.rend(), fits);
    if (found != kept.rend()) {
      void* begin = found->begin;
      kept.erase(std::prev(found.base()));
      keptBytes -= wanted;
      return begin;
    }
  }
  return map(wanted);
}

/// Memory that is never kept is fresh each time: large pages are far quicker to get than small
/// ones.
void* LargeBlocks::map(std::size_t size) {
  void* block = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) throw std::bad_alloc();
  if (size > LARGEST_KEPT) ::madvise(block, size, MADV_HUGEPAGE);
  return block;
}

void LargeBlocks::giveBack(void* block, std::size_t size) noexcept {
  const std::size_t whole = roundUp(size);
  if (whole > LARGEST_KEPT) {
    ::munmap(block, whole);
    return;
  }
  const std::lock_guard<std::mutex> lock(mutex);
  while (kept.size() == MOST_KEPT || keptBytes + whole > MOST_KEPT_BYTES)
    dropOldest();
  kept.push_back({block, whole});
  keptBytes += whole;
}

void LargeBlocks::dropOldest() {
  const Block oldest = kept.front();
  kept.erase(kept.begin());
  keptBytes -= oldest.size;
  ::munmap(oldest.begin, oldest.size);
}

}  // namespace Quarry
