// A heap for test programs in which a piece of memory lies against a page that must not be touched,
// so that a read or write one byte outside the piece ends the program. It takes the place of
// `operator new`. QUARRY_GUARD chooses the side:
//
//   QUARRY_GUARD=behind   a piece ends where the forbidden page begins (the default)
//   QUARRY_GUARD=before   a piece begins where the forbidden page ends
//
// A type's size is a multiple of its alignment, and so the pieces need no rounding: a text ends
// with its last byte. What is too large, and more pieces at once than there are places, come from
// malloc.

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string_view>

namespace {

constexpr std::size_t PAGE = 4096;

bool liesBehind() {
  static const char* const side = std::getenv("QUARRY_GUARD");
  return side == nullptr || std::string_view(side) != "before";
}

/// Places of one size, each between two forbidden pages. The one that was freed first is used
/// first: what uses it after that meets other bytes as late as possible.
template <std::size_t PAGES, std::size_t COUNT>
class Places {
 public:
  static constexpr std::size_t SIZE = PAGES * PAGE;

  constexpr Places() = default;

  /// Returns null when all places are taken.
  void* take(std::size_t size) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (base == nullptr) reserve();
    if (taken == COUNT) return nullptr;
    char* begin = beginOf(freed[next]);
    next = (next + 1) % COUNT;
    ++taken;
    return liesBehind() ? begin + SIZE - size : begin;
  }

  /// Returns false when the piece is none of these.
  bool giveBack(void* piece) {
    const std::lock_guard<std::mutex> lock(mutex);
    char* at = static_cast<char*>(piece);
    if (base == nullptr || at < base || at >= base + (COUNT + 1) * STEP) return false;
    const auto place = static_cast<std::uint32_t>((at - base - PAGE) / STEP);
    std::memset(beginOf(place), FREED, PAGE);
    if (PAGES > 1) ::madvise(beginOf(place) + PAGE, SIZE - PAGE, MADV_DONTNEED);
    freed[(next + COUNT - taken) % COUNT] = place;
    --taken;
    return true;
  }

 private:
  static constexpr std::size_t STEP = SIZE + PAGE;
  static constexpr int FREED = 0xDD;

  char* beginOf(std::uint32_t place) { return base + PAGE + place * STEP; }

  void reserve() {
    constexpr int FLAGS = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
    void* all = ::mmap(nullptr, (COUNT + 1) * STEP, PROT_NONE, FLAGS, -1, 0);
    if (all == MAP_FAILED) std::abort();
    base = static_cast<char*>(all);
    for (std::uint32_t place = 0; place < COUNT; ++place) {
      if (::mprotect(beginOf(place), SIZE, PROT_READ | PROT_WRITE) != 0) std::abort();
      freed[place] = place;
    }
  }

  std::mutex mutex;
  char* base = nullptr;
  std::uint32_t freed[COUNT] = {};  ///< a ring: the free places begin at `next`
  std::size_t next = 0;
  std::size_t taken = 0;
};

// A process may have 65530 ranges of memory with rights of their own.
constinit Places<1, 24000> small;
constinit Places<64, 4000> large;

void* allocate(std::size_t size) {
  void* piece = nullptr;
  if (size <= small.SIZE) {
    piece = small.take(std::max<std::size_t>(size, 1));
  } else if (size <= large.SIZE) {
    piece = large.take(size);
  }
  return piece != nullptr ? piece : std::malloc(size);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* piece = allocate(size)) return piece;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }

void operator delete(void* piece) noexcept {
  if (piece == nullptr || small.giveBack(piece) || large.giveBack(piece)) return;
  std::free(piece);
}

void operator delete(void* piece, std::size_t) noexcept { operator delete(piece); }
void operator delete[](void* piece) noexcept { operator delete(piece); }
void operator delete[](void* piece, std::size_t) noexcept { operator delete(piece); }
