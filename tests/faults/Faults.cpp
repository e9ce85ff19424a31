#include "Faults.h"

#include <Quarry/internal/LargeBlocks.h>
#include <Quarry/internal/SlabSource.h>

#include <dlfcn.h>
#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Sanitized.h"

using Quarry::LargeBlocks;
using Quarry::SlabSource;
using TestSupport::Attempt;

namespace {

using Whose = Attempt::Whose;

/// What the running operation belongs to; null outside of operations.
constinit thread_local Attempt* current = nullptr;

// What the process holds.
constinit std::atomic<long> liveAllocations = 0;
constinit std::atomic<long> liveSlabs = 0;
constinit std::atomic<long> liveLargeBlocks = 0;

constinit std::atomic<long> mappings = 0;

}  // namespace

// --- The C library's allocations -----------------------------------------------------------------

#ifdef QUARRY_TEST_SANITIZED

namespace {

void* allocateUnseen(std::size_t size) { return std::malloc(size); }

}  // namespace

#else

extern "C" void* __libc_malloc(std::size_t size);

namespace {

void* allocateUnseen(std::size_t size) { return __libc_malloc(size); }

}  // namespace

/// Stands before the C library's own, in this program and in the libraries that it uses.
extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) {
  if (!Attempt::takesAllocation(Whose::OWN_AND_C_LIBRARYS)) return allocateUnseen(size);
  errno = ENOMEM;
  return nullptr;
}

#endif

// --- operator new and delete ---------------------------------------------------------------------

namespace {

void* countBlock(void* block) noexcept {
  if (block != nullptr) ++liveAllocations;
  return block;
}

void* allocateOrNull(std::size_t size) noexcept {
  if (Attempt::takesAllocation(Whose::OWN)) return nullptr;
  return countBlock(allocateUnseen(size > 0 ? size : 1));
}

void* allocateOrNull(std::size_t size, std::align_val_t alignment) noexcept {
  if (Attempt::takesAllocation(Whose::OWN)) return nullptr;
  const auto step = static_cast<std::size_t>(alignment);
  return countBlock(std::aligned_alloc(step, (size + step - 1) / step * step));
}

void* throwForNull(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void release(void* block) noexcept {
  if (block != nullptr) --liveAllocations;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return throwForNull(allocateOrNull(size)); }
void* operator new[](std::size_t size) { return throwForNull(allocateOrNull(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return throwForNull(allocateOrNull(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return throwForNull(allocateOrNull(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocateOrNull(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocateOrNull(size, alignment);
}

void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  release(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  release(block);
}

// --- What the library takes by other ways --------------------------------------------------------

/// How the names of functions that take a size tell its type.
#if SIZE_MAX == UINT64_MAX
#define SIZE_LETTER "m"
#else
#define SIZE_LETTER "j"
#endif

// The linker leads the library's calls to these, and these to the functions themselves.
void* realMmap(void* place, std::size_t size, int protection, int flags, int file,
               off_t offset) asm("__real_mmap");
void* takeRealSlab(SlabSource* source) asm("__real__ZN6Quarry10SlabSource4takeEv");
void giveBackRealSlab(SlabSource* source,
                      void* slab) asm("__real__ZN6Quarry10SlabSource8giveBackEPv");
void* takeRealSmallSlab(SlabSource* source) asm("__real__ZN6Quarry10SlabSource9takeSmallEv");
void giveBackRealSmallSlab(SlabSource* source,
                           void* slab) asm("__real__ZN6Quarry10SlabSource13giveBackSmallEPv");
void* takeRealExtent(SlabSource* source) asm("__real__ZN6Quarry10SlabSource10takeExtentEv");
void giveBackRealExtent(SlabSource* source,
                        void* extent) asm("__real__ZN6Quarry10SlabSource14giveBackExtentEPv");
void* takeRealBlock(LargeBlocks* blocks,
                    std::size_t size) asm("__real__ZN6Quarry11LargeBlocks4takeE" SIZE_LETTER);
void giveBackRealBlock(LargeBlocks* blocks, void* block, std::size_t size) asm(
    "__real__ZN6Quarry11LargeBlocks8giveBackEPv" SIZE_LETTER);

void* mmapOrFail(void* place, std::size_t size, int protection, int flags, int file,
                 off_t offset) asm("__wrap_mmap");
void* takeSlab(SlabSource* source) asm("__wrap__ZN6Quarry10SlabSource4takeEv");
void giveBackSlab(SlabSource* source, void* slab) asm("__wrap__ZN6Quarry10SlabSource8giveBackEPv");
void* takeSmallSlab(SlabSource* source) asm("__wrap__ZN6Quarry10SlabSource9takeSmallEv");
void giveBackSmallSlab(SlabSource* source,
                       void* slab) asm("__wrap__ZN6Quarry10SlabSource13giveBackSmallEPv");
void* takeExtent(SlabSource* source) asm("__wrap__ZN6Quarry10SlabSource10takeExtentEv");
void giveBackExtent(SlabSource* source,
                    void* extent) asm("__wrap__ZN6Quarry10SlabSource14giveBackExtentEPv");
void* takeBlock(LargeBlocks* blocks,
                std::size_t size) asm("__wrap__ZN6Quarry11LargeBlocks4takeE" SIZE_LETTER);
void giveBackBlock(LargeBlocks* blocks, void* block,
                   std::size_t size) asm("__wrap__ZN6Quarry11LargeBlocks8giveBackEPv" SIZE_LETTER);

void* mmapOrFail(void* place, std::size_t size, int protection, int flags, int file, off_t offset) {
  if (Attempt::takesAllocation(Whose::OWN)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  ++mappings;
  return realMmap(place, size, protection, flags, file, offset);
}

void* takeSlab(SlabSource* source) {
  if (Attempt::takesAllocation(Whose::OWN)) throw std::bad_alloc();
  void* slab = takeRealSlab(source);
  ++liveSlabs;
  return slab;
}

void giveBackSlab(SlabSource* source, void* slab) {
  --liveSlabs;
  giveBackRealSlab(source, slab);
}

void* takeSmallSlab(SlabSource* source) {
  if (Attempt::takesAllocation(Whose::OWN)) throw std::bad_alloc();
  void* slab = takeRealSmallSlab(source);
  ++liveSlabs;
  return slab;
}

void giveBackSmallSlab(SlabSource* source, void* slab) {
  --liveSlabs;
  giveBackRealSmallSlab(source, slab);
}

/// How many slabs an extent counts for: they may be given back one by one.
constexpr long SLABS_OF_EXTENT = static_cast<long>(SlabSource::EXTENT_SIZE / SlabSource::SLAB_SIZE);

void* takeExtent(SlabSource* source) {
  void* extent = takeRealExtent(source);
  liveSlabs += SLABS_OF_EXTENT;
  return extent;
}

void giveBackExtent(SlabSource* source, void* extent) {
  liveSlabs -= SLABS_OF_EXTENT;
  giveBackRealExtent(source, extent);
}

void* takeBlock(LargeBlocks* blocks, std::size_t size) {
  if (Attempt::takesAllocation(Whose::OWN)) throw std::bad_alloc();
  void* block = takeRealBlock(blocks, size);
  ++liveLargeBlocks;
  return block;
}

void giveBackBlock(LargeBlocks* blocks, void* block, std::size_t size) {
  --liveLargeBlocks;
  giveBackRealBlock(blocks, block, size);
}

// --- RE2 -----------------------------------------------------------------------------------------

// What it has so far, RE2 does not free when it runs out of memory itself: so it never does here.

using CompileExpression = void(void* expression, const void* pattern, const void* options);

__attribute__((visibility("default")))
CompileExpression compileExpression asm("_ZN3re23RE2C1ERKNS_11StringPieceERKNS0_7OptionsE");

void compileExpression(void* expression, const void* pattern, const void* options) {
  static const auto compile = reinterpret_cast<CompileExpression*>(
      dlsym(RTLD_NEXT, "_ZN3re23RE2C1ERKNS_11StringPieceERKNS0_7OptionsE"));
  Attempt* const paused = std::exchange(current, nullptr);
  compile(expression, pattern, options);
  current = paused;
}

namespace TestSupport {

// --- Attempts ------------------------------------------------------------------------------------

Attempt::Attempt(unsigned long allocation, Loss extent, Whose counted)
    : left(allocation), loss(extent), accounted(counted) {}

bool Attempt::run(const std::function<void()>& operation) {
  bool isComplete = false;
  std::string otherException;
  std::thread([&] {
    current = this;
    try {
      operation();
      current = nullptr;
      isComplete = true;
    } catch (const std::bad_alloc&) {
      current = nullptr;
    } catch (const std::exception& error) {
      current = nullptr;
      otherException = error.what();
    }
  }).join();
  EXPECT_EQ(otherException, "");
  return isComplete;
}

bool Attempt::takesAllocation(Whose whose) noexcept {
  Attempt* attempt = current;
  if (attempt == nullptr) return false;
  if (whose == Whose::OWN_AND_C_LIBRARYS && attempt->accounted == Whose::OWN) return false;
  if (attempt->isLost) return attempt->loss == Loss::ALL_FROM_THERE_ON;
  attempt->isLost = --attempt->left == 0;
  return attempt->isLost;
}

bool reachesCLibrary() {
#ifdef QUARRY_TEST_SANITIZED
  return false;
#else
  return true;
#endif
}

namespace {

using Scenario = std::function<void(Attempt&)>;

/// What the process holds, in numbers.
struct Held {
  long allocations = liveAllocations;
  long slabs = liveSlabs;
  long largeBlocks = liveLargeBlocks;

  bool operator==(const Held&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Held& held) {
  return stream << held.allocations << " allocations, " << held.slabs << " slabs, "
                << held.largeBlocks << " large blocks";
}

/// Tells what an attempt is about, in the messages of its thread.
struct Setting {
  unsigned long allocation;
  Attempt::Loss loss;
  Attempt::Whose counted;

  std::string describe() const {
    const bool isOne = loss == Attempt::Loss::ONE_ALLOCATION;
    return "allocation " + std::to_string(allocation) +
           (isOne ? " failed" : " and all later failed");
  }
};

/// Runs the scenario once, in a thread of its own.
/// @return whether an allocation failed
bool runOnce(const Scenario& scenario, const Setting& setting) {
  bool hasFault = false;
  std::thread([&] {
    const testing::ScopedTrace trace(__FILE__, __LINE__, setting.describe());
    Attempt attempt(setting.allocation, setting.loss, setting.counted);
    try {
      scenario(attempt);
    } catch (const std::exception& error) {
      ADD_FAILURE() << "the scenario itself threw: " << error.what();
    }
    hasFault = attempt.hasFault();
  }).join();
  return hasFault;
}

/// What is made once for the whole process is not made again, though another allocation may then be
/// the one that fails: only a leak repeats itself.
bool runWithoutLeak(const Scenario& scenario, const Setting& setting) {
  constexpr int TRIES = 4;
  bool hasFault = false;
  for (int i = 0; i < TRIES; ++i) {
    const Held before;
    const bool hadFault = runOnce(scenario, setting);
    hasFault = hasFault || hadFault;
    if (testing::Test::HasFailure() || Held() == before) return hasFault;
  }
  ADD_FAILURE() << "a leak: " << setting.describe() << "; left are " << Held();
  return hasFault;
}

/// @return the number of faults
unsigned long runUntilUntouched(const Scenario& scenario, Attempt::Loss loss,
                                Attempt::Whose counted) {
  unsigned long faults = 0;
  while (runWithoutLeak(scenario, {faults + 1, loss, counted})) {
    ++faults;
    if (testing::Test::HasFailure()) break;
  }
  return faults;
}

/// Says in the end how many faults there were in all.
class Summary : public testing::Environment {
 public:
  void add(unsigned long count) {
    ++scenarios;
    faults += count;
  }
  void TearDown() override { std::printf("%lu faults in %lu scenarios\n", faults, scenarios); }

 private:
  unsigned long scenarios = 0;
  unsigned long faults = 0;
};

Summary& summary() {
  static Summary& added = *new Summary;
  return added;
}

[[maybe_unused]] const auto* const registered = testing::AddGlobalTestEnvironment(&summary());

}  // namespace

void forEveryFault(const Scenario& scenario, Attempt::Whose counted) {
  const unsigned long faults =
      runUntilUntouched(scenario, Attempt::Loss::ONE_ALLOCATION, counted) +
      runUntilUntouched(scenario, Attempt::Loss::ALL_FROM_THERE_ON, counted);
  recordFaults(faults);
}

void recordFaults(unsigned long count) {
  EXPECT_GT(count, 0U);
  testing::Test::RecordProperty("faults", std::to_string(count));
  summary().add(count);
}

// --- Slabs ---------------------------------------------------------------------------------------

struct EmptySlabSource::Hoard {
  std::vector<void*> slabs;
};

/// Takes slabs until some are mapped, and then those as well.
EmptySlabSource::EmptySlabSource() : hoard(new Hoard) {
  constexpr int MAPPED_AT_ONCE = 32;
  const long before = mappings;
  while (mappings == before)
    hoard->slabs.push_back(takeRealSlab(&SlabSource::get()));
  for (int i = 1; i < MAPPED_AT_ONCE; ++i)
    hoard->slabs.push_back(takeRealSlab(&SlabSource::get()));
}

EmptySlabSource::~EmptySlabSource() {
  for (void* slab : hoard->slabs)
    giveBackRealSlab(&SlabSource::get(), slab);
  delete hoard;
}

}  // namespace TestSupport
