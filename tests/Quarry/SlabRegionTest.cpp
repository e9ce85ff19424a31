// Memory that is given back at once: every piece is its owner's alone, and nothing stays behind.

#include <Quarry/internal/LargeBlocks.h>
#include <Quarry/internal/SlabHeap.h>
#include <Quarry/internal/SlabRegion.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "HeapPieces.h"
#include "support/MemoryMap.h"

using Quarry::LargeBlocks;
using Quarry::SlabHeap;
using Quarry::SlabRegion;
using Quarry::SlabSource;
using namespace HeapPieces;

// Under the address sanitizer there are no regions.

#ifndef QUARRY_PLAIN_HEAP

namespace {

/// Lies in a slab only where a region is used.
constexpr std::size_t MIDDLE = SlabHeap::LARGEST + 1;

/// Lies in no slab.
constexpr std::size_t LARGE = SlabHeap::LARGEST_OF_REGION;

/// What stands before a piece of middle size and before a large one.
constexpr std::size_t BEFORE_LARGE = 4 * sizeof(void*);

/// Fills more than one slab.
constexpr std::size_t MANY = 3000;

std::vector<void*> allocate(std::size_t count, std::size_t size) {
  std::vector<void*> pieces(count);
  for (void*& piece : pieces)
    piece = SlabHeap::allocate(size);
  return pieces;
}

void free(const std::vector<void*>& pieces, std::size_t size) {
  for (void* piece : pieces)
    SlabHeap::free(piece, size);
}

std::set<std::uintptr_t> slabsOf(const std::vector<void*>& pieces) {
  std::set<std::uintptr_t> slabs;
  for (const void* piece : pieces)
    slabs.insert(slabOf(piece));
  return slabs;
}

/// Returns the slabs that the next `count` ones of a region are: a small one is the first.
std::set<std::uintptr_t> takeNextSlabs(std::size_t count) {
  std::vector<void*> slabs(count);
  void* const small = SlabSource::get().takeSmall();
  slabs[0] = small;
  for (std::size_t i = 1; i < count; ++i)
    slabs[i] = SlabSource::get().take();
  for (std::size_t i = 1; i < count; ++i)
    SlabSource::get().giveBack(slabs[i]);
  SlabSource::get().giveBackSmall(small);
  return slabsOf(slabs);
}

/// Expects that slabs of a region were given back last, and each of them once.
void expectGivenBack(const std::set<std::uintptr_t>& slabs) {
  SlabHeap::flush();  // the small one
  EXPECT_EQ(takeNextSlabs(slabs.size()), slabs);
}

/// Pieces of RARE_SIZE that the first slab of a region has room for.
constexpr std::size_t RARE_IN_SMALL = (SlabSource::SMALL_SIZE - 64) / RARE_SIZE;

/// Pieces of RARE_SIZE beyond these do not lie in slabs that are kept.
constexpr std::size_t KEPT_PIECES = RARE_IN_SMALL + (SlabSource::KEPT - 1) * RARE_IN_SLAB;

/// Uses one extent up, and another in part.
constexpr std::size_t EXTENT_SLABS = SlabSource::EXTENT_SIZE / SlabSource::SLAB_SIZE;
constexpr std::size_t EXTENT_PIECES = (EXTENT_SLABS + 2) * RARE_IN_SLAB;

/// A region of so many pieces that the last ones lie in extents.
struct LargeRegion {
  LargeRegion() {
    const SlabRegion::Use use(region.get());
    allocateRare(KEPT_PIECES);
    pieces = allocateRare(EXTENT_PIECES);
  }

  std::unique_ptr<SlabRegion> region = SlabRegion::make();
  std::vector<void*> pieces;  ///< those in extents
};

/// Returns where the extent of a piece begins.
void* extentOf(const void* piece) {
  const std::uintptr_t number = slabOf(piece) / EXTENT_SLABS;
  return reinterpret_cast<void*>(number * SlabSource::EXTENT_SIZE);
}

/// Returns so many extents, taken anew.
std::vector<void*> takeExtents(std::size_t count) {
  std::vector<void*> extents(count);
  for (void*& extent : extents)
    extent = SlabSource::get().takeExtent();
  return extents;
}

void giveBackExtents(const std::vector<void*>& extents) {
  for (void* extent : extents)
    SlabSource::get().giveBackExtent(extent);
}

/// Has the next extents be some that were used before, with the byte 1 all over.
void keepUsedExtents() {
  for (int i = 0; i < 2; ++i) {
    const std::vector<void*> extents = takeExtents(10);
    for (void* extent : extents)
      std::memset(extent, 1, SlabSource::EXTENT_SIZE);
    giveBackExtents(extents);
  }
}

/// Expects that extents went back to the system, or are handed out again.
void expectExtentsGivenBack(const std::set<void*>& extents) {
  const std::vector<void*> next = takeExtents(SlabSource::MOST_KEPT_EXTENTS + extents.size());
  const std::set<void*> taken(next.begin(), next.end());
  EXPECT_EQ(taken.size(), next.size());
  for (void* extent : extents)
    EXPECT_TRUE(taken.contains(extent) || !TestSupport::isMapped(extent, SlabSource::EXTENT_SIZE));
  giveBackExtents(next);
}

/// Expects that slabs were given back, each once: they are among the next ones, as many as are kept
/// and as were given back without their memory.
void expectHandedOutAgain(const std::set<std::uintptr_t>& slabs) {
  const std::set<std::uintptr_t> next = takeNextSlabs(2 * SlabSource::KEPT + slabs.size());
  EXPECT_EQ(next.size(), 2 * SlabSource::KEPT + slabs.size());
  EXPECT_TRUE(std::includes(next.begin(), next.end(), slabs.begin(), slabs.end()));
}

/// Returns a piece of a region.
void* allocateOf(SlabRegion& region) {
  const SlabRegion::Use use(&region);
  return SlabHeap::allocate(64);
}

/// Returns where a piece lay of a region that is no more.
void* destroyRegion() {
  const auto region = SlabRegion::make();
  return allocateOf(*region);
}

/// Adds to the number that a holder is.
void count(void* number) { ++*static_cast<int*>(number); }

/// Begins each test without pieces that were freed before: slabs that they leave go back then.
class SlabRegionTest : public testing::Test {
 protected:
  void SetUp() override { SlabHeap::flush(); }
};

}  // namespace

// --- Pieces --------------------------------------------------------------------------------------

TEST_F(SlabRegionTest, PiecesOfAllSizesDoNotOverlap) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  Pieces pieces;
  for (std::size_t size = 1; size <= SlabHeap::LARGEST_OF_REGION + 100; ++size)
    pieces.emplace_back(size, static_cast<unsigned char>(size));
  EXPECT_TRUE(areIntact(pieces));
}

TEST_F(SlabRegionTest, APieceOfEverySizeIsAligned) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  for (std::size_t size = 1; size <= SlabHeap::LARGEST_OF_REGION + 1; ++size) {
    const Piece piece(size, 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece.getBegin()) % SlabHeap::GRANULE, 0U) << size;
  }
}

TEST_F(SlabRegionTest, APieceLiesBehindTheOneBeforeWhateverTheirSizes) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* first = static_cast<char*>(SlabHeap::allocate(30));
  auto* second = static_cast<char*>(SlabHeap::allocate(100));
  auto* third = static_cast<char*>(SlabHeap::allocate(16));
  EXPECT_EQ(second, first + 32);
  EXPECT_EQ(third, second + 112);
}

TEST_F(SlabRegionTest, ASlabHoldsPiecesOfOneRegionOnly) {
  const auto region = SlabRegion::make();
  const auto other = SlabRegion::make();
  void* before = SlabHeap::allocate(64);
  std::set<std::uintptr_t> slabs{slabOf(before)};
  {
    const SlabRegion::Use use(region.get());
    slabs.insert(slabOf(SlabHeap::allocate(64)));
  }
  {
    const SlabRegion::Use use(other.get());
    slabs.insert(slabOf(SlabHeap::allocate(64)));
  }
  EXPECT_EQ(slabs.size(), 3U);
  SlabHeap::free(before, 64);
}

TEST_F(SlabRegionTest, TheFirstSlabIsASmallOneAndFurtherOnesAreNot) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  EXPECT_EQ(slabsOf(allocateRare(RARE_IN_SMALL)).size(), 1U);
  EXPECT_EQ(slabsOf(allocateRare(RARE_IN_SLAB)).size(), 1U);
  EXPECT_EQ(slabsOf(allocateRare(RARE_IN_SLAB)).size(), 1U);
}

TEST_F(SlabRegionTest, APieceTellsItsRegion) {
  void* before = SlabHeap::allocate(64);
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  EXPECT_EQ(SlabRegion::of(SlabHeap::allocate(64)), region.get());
  EXPECT_EQ(SlabRegion::of(before), nullptr);
  SlabHeap::free(before, 64);
}

TEST_F(SlabRegionTest, PiecesOfAllSizesLieInTheRegionThatIsUsed) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  for (const std::size_t size :
       {std::size_t(1), SlabHeap::LARGEST, MIDDLE, LARGE, LargeBlocks::SMALLEST}) {
    EXPECT_TRUE(region->has(SlabHeap::allocate(size), size)) << size;
  }
}

TEST_F(SlabRegionTest, PiecesOfMiddleSizeLieBesideTheOthers) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* first = static_cast<char*>(SlabHeap::allocate(16));
  auto* middle = static_cast<char*>(SlabHeap::allocate(MIDDLE));
  auto* largest = static_cast<char*>(SlabHeap::allocate(LARGE - BEFORE_LARGE));
  auto* last = static_cast<char*>(SlabHeap::allocate(16));
  EXPECT_EQ(middle, first + 16 + BEFORE_LARGE);
  EXPECT_EQ(largest, middle + SlabHeap::roundUp(MIDDLE) + BEFORE_LARGE);
  EXPECT_EQ(last, largest + LARGE - BEFORE_LARGE);
}

TEST_F(SlabRegionTest, LargePiecesLieElsewhere) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* first = static_cast<char*>(SlabHeap::allocate(16));
  SlabHeap::allocate(LARGE - BEFORE_LARGE + 1);
  EXPECT_EQ(SlabHeap::allocate(16), first + 16);
}

// --- Pieces that are made larger -----------------------------------------------------------------

TEST_F(SlabRegionTest, TheLastPieceIsMadeLargerWhereItLies) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* piece = static_cast<char*>(SlabHeap::allocate(30));
  EXPECT_TRUE(SlabHeap::extend(piece, 30, 100));
  EXPECT_EQ(SlabHeap::allocate(16), piece + 112);
}

TEST_F(SlabRegionTest, APieceIsMadeLargerAgainAndAgain) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* piece = static_cast<char*>(SlabHeap::allocate(1));
  for (std::size_t size = 1; size < SlabHeap::LARGEST; ++size)
    ASSERT_TRUE(SlabHeap::extend(piece, size, size + 1)) << size;
  EXPECT_EQ(SlabHeap::allocate(16), piece + SlabHeap::LARGEST);
}

TEST_F(SlabRegionTest, APieceBeforeAnotherIsNotMadeLarger) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  void* first = SlabHeap::allocate(32);
  auto* second = static_cast<char*>(SlabHeap::allocate(32));
  EXPECT_FALSE(SlabHeap::extend(first, 32, 48));
  EXPECT_EQ(SlabHeap::allocate(16), second + 32);
}

TEST_F(SlabRegionTest, APieceIsMadeLargerUpToTheEndOfItsSlab) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  allocateRare(RARE_IN_SMALL + RARE_IN_SLAB);
  void* last = SlabHeap::allocate(64);
  const std::uintptr_t end = (slabOf(last) + 1) * SlabSource::SLAB_SIZE;
  const std::size_t room = end - reinterpret_cast<std::uintptr_t>(last);
  ASSERT_LT(room, SlabHeap::LARGEST);
  EXPECT_FALSE(SlabHeap::extend(last, 64, room + 1));
  EXPECT_TRUE(SlabHeap::extend(last, 64, room));
}

TEST_F(SlabRegionTest, APieceIsMadeLargerUpToTheEndOfASmallSlab) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  allocateRare(RARE_IN_SMALL);
  void* last = SlabHeap::allocate(64);
  const std::uintptr_t end = slabOf(last) * SlabSource::SLAB_SIZE + SlabSource::SMALL_SIZE;
  const std::size_t room = end - reinterpret_cast<std::uintptr_t>(last);
  ASSERT_LT(room, SlabHeap::LARGEST);
  EXPECT_FALSE(SlabHeap::extend(last, 64, room + 1));
  EXPECT_TRUE(SlabHeap::extend(last, 64, room));
}

TEST_F(SlabRegionTest, NoPieceIsMadeLargerWhereNoRegionIsUsed) {
  void* ordinary = SlabHeap::allocate(32);
  EXPECT_FALSE(SlabHeap::extend(ordinary, 32, 48));
  SlabHeap::free(ordinary, 32);
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  void* piece = SlabHeap::allocate(32);
  const SlabRegion::Use none(nullptr);
  EXPECT_FALSE(SlabHeap::extend(piece, 32, 48));
}

TEST_F(SlabRegionTest, APieceThatWasMadeLargerOutlivesARegionThatWasBrokenUp) {
  auto region = SlabRegion::make();
  char* piece = nullptr;
  {
    const SlabRegion::Use use(region.get());
    piece = static_cast<char*>(SlabHeap::allocate(32));
    ASSERT_TRUE(SlabHeap::extend(piece, 32, 200));
  }
  const std::set<std::uintptr_t> slab = slabsOf({piece});
  std::memset(piece, 1, 200);
  region->breakUp();
  region.reset();
  EXPECT_EQ(piece[199], 1);
  SlabHeap::free(piece, 200);
  SlabHeap::flush();
  expectGivenBack(slab);
}

// --- Using ---------------------------------------------------------------------------------------

TEST_F(SlabRegionTest, PiecesAreOrdinaryBeforeAndBehindTheUse) {
  const auto region = SlabRegion::make();
  const Piece before(64, 1);
  { const SlabRegion::Use use(region.get()); }
  const Piece behind(64, 1);
  EXPECT_EQ(SlabRegion::of(before.getBegin()), nullptr);
  EXPECT_EQ(SlabRegion::of(behind.getBegin()), nullptr);
}

TEST_F(SlabRegionTest, PiecesAreOrdinaryWhileNoRegionIsUsedWithinTheUse) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  const SlabRegion::Use none(nullptr);
  const Piece small(64, 1);
  const Piece middle(MIDDLE, 1);
  const Piece large(LARGE, 1);
  EXPECT_EQ(SlabRegion::of(small.getBegin()), nullptr);
  EXPECT_FALSE(region->has(middle.getBegin(), MIDDLE));
  EXPECT_FALSE(region->has(large.getBegin(), LARGE));
}

TEST_F(SlabRegionTest, TheUseWithinAnotherCounts) {
  const auto outer = SlabRegion::make();
  const auto inner = SlabRegion::make();
  const SlabRegion::Use use(outer.get());
  {
    const SlabRegion::Use within(inner.get());
    EXPECT_EQ(SlabRegion::of(SlabHeap::allocate(64)), inner.get());
    EXPECT_EQ(SlabRegion::getUsed(), inner.get());
  }
  EXPECT_EQ(SlabRegion::of(SlabHeap::allocate(64)), outer.get());
  EXPECT_EQ(SlabRegion::getUsed(), outer.get());
}

TEST_F(SlabRegionTest, TheSlabGoesOnBehindAUseWithinTheUse) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* first = static_cast<char*>(SlabHeap::allocate(16));
  { const SlabRegion::Use none(nullptr); }
  EXPECT_EQ(SlabHeap::allocate(16), first + 16);
}

TEST_F(SlabRegionTest, OtherThreadsDoNotUseTheRegion) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  std::thread([] {
    const Piece piece(64, 1);
    EXPECT_EQ(SlabRegion::of(piece.getBegin()), nullptr);
  }).join();
}

TEST_F(SlabRegionTest, AnExceptionThatEndsTheUseBreaksTheRegionUp) {
  const auto region = SlabRegion::make();
  try {
    const SlabRegion::Use use(region.get());
    throw std::runtime_error("thrown");
  } catch (const std::runtime_error&) {
    EXPECT_FALSE(region->isWhole());
  }
}

TEST_F(SlabRegionTest, AUseThatEndsWhileAnExceptionIsOnItsWayLeavesTheRegionWhole) {
  struct User {
    ~User() { const SlabRegion::Use use(&region); }
    SlabRegion& region;
  };
  const auto region = SlabRegion::make();
  try {
    const User user{*region};
    throw std::runtime_error("thrown");
  } catch (const std::runtime_error&) {
    EXPECT_TRUE(region->isWhole());
  }
}

TEST_F(SlabRegionTest, ARegionTellsWhetherItIsUsed) {
  const auto region = SlabRegion::make();
  EXPECT_FALSE(region->isUsed());
  {
    const SlabRegion::Use use(region.get());
    const SlabRegion::Use none(nullptr);
    EXPECT_TRUE(region->isUsed());
  }
  EXPECT_FALSE(region->isUsed());
}

// --- Freed at once -------------------------------------------------------------------------------

TEST_F(SlabRegionTest, ADestroyedRegionGivesItsSlabsBack) {
  auto region = SlabRegion::make();
  std::set<std::uintptr_t> slabs;
  {
    const SlabRegion::Use use(region.get());
    slabs = slabsOf(allocate(MANY, 100));
  }
  ASSERT_GT(slabs.size(), 3U);
  region.reset();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, TheNextRegionOfTheThreadBeginsWithTheSmallSlabOfTheLastOne) {
  void* slab = destroyRegion();
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  EXPECT_EQ(slabOf(SlabHeap::allocate(64)), slabOf(slab));
}

TEST_F(SlabRegionTest, AThreadHoldsOneSmallSlabAndNoMore) {
  auto first = SlabRegion::make();
  auto second = SlabRegion::make();
  const std::uintptr_t firstSlab = slabOf(allocateOf(*first));
  const std::uintptr_t secondSlab = slabOf(allocateOf(*second));
  first.reset();
  second.reset();
  EXPECT_EQ(takeNextSlabs(1), std::set<std::uintptr_t>{secondSlab});
  SlabHeap::flush();
  EXPECT_EQ(takeNextSlabs(1), std::set<std::uintptr_t>{firstSlab});
}

TEST_F(SlabRegionTest, AThreadThatEndsGivesItsSmallSlabBack) {
  void* slab = nullptr;
  std::thread([&slab] { slab = destroyRegion(); }).join();
  EXPECT_EQ(takeNextSlabs(1), std::set<std::uintptr_t>{slabOf(slab)});
}

TEST_F(SlabRegionTest, ARegionWithoutPiecesIsDestroyed) {
  auto region = SlabRegion::make();
  { const SlabRegion::Use use(region.get()); }
  region.reset();
  EXPECT_TRUE(Piece(64, 1).isIntact());
}

TEST_F(SlabRegionTest, ADestroyedRegionGivesItsLargeBlocksBack) {
  constexpr std::size_t SIZE = LargeBlocks::SMALLEST * 3;
  auto region = SlabRegion::make();
  std::vector<void*> blocks;
  {
    const SlabRegion::Use use(region.get());
    blocks = allocate(3, SIZE);
  }
  region.reset();
  std::vector<void*> next = allocate(3, SIZE);
  EXPECT_EQ(std::set<void*>(next.begin(), next.end()),
            std::set<void*>(blocks.begin(), blocks.end()));
  free(next, SIZE);
}

TEST_F(SlabRegionTest, PiecesThatWereFreedByThemselvesAreNotUsedAgain) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  void* freed = SlabHeap::allocate(64);
  SlabHeap::free(freed, 64);
  EXPECT_NE(SlabHeap::allocate(64), freed);
  const SlabRegion::Use none(nullptr);
  const Piece ordinary(64, 1);
  EXPECT_NE(ordinary.getBegin(), freed);
}

TEST_F(SlabRegionTest, ASlabWhosePiecesWereAllFreedIsGivenBackOnce) {
  auto region = SlabRegion::make();
  std::set<std::uintptr_t> slabs;
  {
    const SlabRegion::Use use(region.get());
    const std::vector<void*> pieces = allocate(MANY, 100);
    slabs = slabsOf(pieces);
    free(pieces, 100);
  }
  SlabHeap::flush();
  region.reset();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, LargePiecesThatWereFreedByThemselvesAreNotFreedAgain) {
  constexpr std::size_t SIZE = LargeBlocks::SMALLEST * 3;
  for (std::size_t freed = 0; freed < 3; ++freed) {  // the first, one in the middle, the last
    auto region = SlabRegion::make();
    std::vector<void*> blocks;
    {
      const SlabRegion::Use use(region.get());
      blocks = allocate(3, SIZE);
    }
    SlabHeap::free(blocks[freed], SIZE);
    region.reset();
    const std::vector<void*> next = allocate(4, SIZE);
    EXPECT_EQ(std::set<void*>(next.begin(), next.end()).size(), 4U) << freed;
    free(next, SIZE);
  }
}

// --- Parts that have more ------------------------------------------------------------------------

TEST_F(SlabRegionTest, HoldersAreCalledBeforeTheRegionIsFreed) {
  auto region = SlabRegion::make();
  int first = 0;
  int second = 0;
  region->holdsMore(&first, count);
  region->holdsMore(&second, count);
  region->holdsMore(&second, count);
  EXPECT_EQ(first, 0);
  region.reset();
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST_F(SlabRegionTest, HoldersMayFreePiecesOfTheRegion) {
  auto region = SlabRegion::make();
  std::set<std::uintptr_t> slabs;
  {
    const SlabRegion::Use use(region.get());
    void* small = SlabHeap::allocate(64);
    slabs.insert(slabOf(small));
    region->holdsMore(small, [](void* piece) { SlabHeap::free(piece, 64); });
    region->holdsMore(SlabHeap::allocate(MIDDLE),
                      [](void* piece) { SlabHeap::free(piece, MIDDLE); });
    region->holdsMore(SlabHeap::allocate(LARGE), [](void* piece) { SlabHeap::free(piece, LARGE); });
  }
  region.reset();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, HoldersOfARegionThatWasBrokenUpAreNotCalled) {
  auto region = SlabRegion::make();
  int called = 0;
  region->holdsMore(&called, count);
  region->breakUp();
  region.reset();
  EXPECT_EQ(called, 0);
}

// --- Broken up -----------------------------------------------------------------------------------

TEST_F(SlabRegionTest, ARegionIsWholeUntilItIsBrokenUp) {
  const auto region = SlabRegion::make();
  EXPECT_TRUE(region->isWhole());
  region->breakUp();
  EXPECT_FALSE(region->isWhole());
}

TEST_F(SlabRegionTest, PiecesOfARegionThatWasBrokenUpTellNone) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  void* middle = nullptr;
  void* large = nullptr;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(MANY, 100);
    middle = SlabHeap::allocate(MIDDLE);
    large = SlabHeap::allocate(LARGE);
  }
  region->breakUp();
  EXPECT_EQ(SlabRegion::of(pieces.front()), nullptr);
  EXPECT_EQ(SlabRegion::of(pieces.back()), nullptr);
  EXPECT_FALSE(region->has(middle, MIDDLE));
  EXPECT_FALSE(region->has(large, LARGE));
  free(pieces, 100);
  SlabHeap::free(middle, MIDDLE);
  SlabHeap::free(large, LARGE);
}

TEST_F(SlabRegionTest, PiecesOfARegionThatWasBrokenUpOutliveIt) {
  auto region = SlabRegion::make();
  Pieces pieces;
  {
    const SlabRegion::Use use(region.get());
    std::mt19937 random(3);
    pieces = makePieces(random, 2000);
  }
  region->breakUp();
  region.reset();
  std::mt19937 random(4);
  const Pieces others = makePieces(random, 2000);
  EXPECT_TRUE(areIntact(pieces));
}

TEST_F(SlabRegionTest, ASlabThatWasBrokenUpGoesBackWithItsLastPiece) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(100, 64);
  }
  region->breakUp();
  const std::set<std::uintptr_t> slabs = slabsOf(pieces);
  ASSERT_EQ(slabs.size(), 1U);
  void* last = pieces.back();
  pieces.pop_back();
  free(pieces, 64);
  SlabHeap::flush();
  EXPECT_NE(takeNextSlabs(1), slabs);
  SlabHeap::free(last, 64);
  SlabHeap::flush();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, ASlabThatWasBrokenUpGoesBackWithItsLastPieceOfMiddleSize) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(10, MIDDLE);
  }
  const std::set<std::uintptr_t> slabs = slabsOf(pieces);
  ASSERT_EQ(slabs.size(), 1U);
  SlabHeap::free(pieces.front(), MIDDLE);
  region->breakUp();
  void* last = pieces.back();
  free({pieces.begin() + 1, pieces.end() - 1}, MIDDLE);
  SlabHeap::flush();
  EXPECT_NE(takeNextSlabs(1), slabs);
  SlabHeap::free(last, MIDDLE);
  SlabHeap::flush();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, PiecesThatWereFreedBeforeItIsBrokenUpCount) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(100, 64);
  }
  const std::set<std::uintptr_t> slabs = slabsOf(pieces);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i == pieces.size() / 2) region->breakUp();
    SlabHeap::free(pieces[i], 64);
  }
  SlabHeap::flush();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, ASlabThatIsEmptyWhenItIsBrokenUpGoesBackAtOnce) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(100, 64);
  }
  free(pieces, 64);
  region->breakUp();
  expectGivenBack(slabsOf(pieces));
}

TEST_F(SlabRegionTest, PlacesInSlabsThatWereBrokenUpAreNotUsedAgain) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(100, 64);
  }
  region->breakUp();
  SlabHeap::free(pieces.back(), 64);
  pieces.pop_back();
  SlabHeap::flush();
  const std::vector<void*> others = allocate(MANY, 64);
  EXPECT_EQ(slabsOf(others).count(slabOf(pieces.front())), 0U);
  free(others, 64);
  free(pieces, 64);
}

TEST_F(SlabRegionTest, PiecesOfARegionThatWasBrokenUpMayBeFreedByAnyThread) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(250, 60);  // one slab
  }
  region->breakUp();
  const std::set<std::uintptr_t> slabs = slabsOf(pieces);
  ASSERT_EQ(slabs.size(), 1U);
  std::vector<std::thread> threads;
  for (std::size_t begin : {0, 1, 2, 3}) {
    threads.emplace_back([&pieces, begin] {
      for (std::size_t i = begin; i < pieces.size(); i += 4)
        SlabHeap::free(pieces[i], 60);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, ARegionThatIsBrokenUpWhileItIsUsedStillGivesPieces) {
  auto region = SlabRegion::make();
  Pieces pieces;
  {
    const SlabRegion::Use use(region.get());
    std::mt19937 random(5);
    pieces = makePieces(random, 1000);
    region->breakUp();
    for (Piece& more : makePieces(random, 1000))
      pieces.push_back(std::move(more));
  }
  region.reset();
  EXPECT_TRUE(areIntact(pieces));
}

TEST_F(SlabRegionTest, SlabsOfARegionThatWasBrokenUpWhileItWasUsedGoBack) {
  const auto region = SlabRegion::make();
  std::vector<void*> pieces;
  {
    const SlabRegion::Use use(region.get());
    pieces = allocate(MANY, 100);
    region->breakUp();
    for (void* piece : allocate(MANY, 100))
      pieces.push_back(piece);
  }
  const std::set<std::uintptr_t> slabs = slabsOf(pieces);
  free(pieces, 100);
  SlabHeap::flush();
  expectGivenBack(slabs);
}

TEST_F(SlabRegionTest, TheSlabInUseStaysWhenItsPiecesAreFreedAfterBreakingUp) {
  const auto region = SlabRegion::make();
  const SlabRegion::Use use(region.get());
  auto* first = static_cast<char*>(SlabHeap::allocate(64));
  region->breakUp();
  SlabHeap::free(first, 64);
  SlabHeap::flush();
  void* second = SlabHeap::allocate(64);
  EXPECT_EQ(second, first + 64);
  SlabHeap::free(second, 64);
}

// --- Extents -------------------------------------------------------------------------------------

TEST_F(SlabRegionTest, BeyondTheKeptSlabsThoseOfAnExtentLieSideBySide) {
  const LargeRegion large;
  const std::vector<void*> inFirst(large.pieces.begin(),
                                   large.pieces.begin() + EXTENT_SLABS * RARE_IN_SLAB);
  const std::set<std::uintptr_t> slabs = slabsOf(inFirst);
  EXPECT_EQ(slabs.size(), EXTENT_SLABS);
  EXPECT_EQ(*slabs.begin() % EXTENT_SLABS, 0U);
  EXPECT_EQ(*slabs.rbegin(), *slabs.begin() + EXTENT_SLABS - 1);
}

TEST_F(SlabRegionTest, PiecesInExtentsTellTheirRegion) {
  const LargeRegion large;
  for (void* piece : large.pieces)
    EXPECT_EQ(SlabRegion::of(piece), large.region.get());
}

TEST_F(SlabRegionTest, ADestroyedRegionGivesItsExtentsBack) {
  LargeRegion large;
  const std::set<void*> extents{extentOf(large.pieces.front()), extentOf(large.pieces.back())};
  ASSERT_EQ(extents.size(), 2U);
  large.region.reset();
  expectExtentsGivenBack(extents);
}

TEST_F(SlabRegionTest, PiecesInExtentsThatWereBrokenUpOutliveTheRegion) {
  LargeRegion large;
  for (void* piece : large.pieces)
    std::memset(piece, 7, RARE_SIZE);
  large.region->breakUp();
  EXPECT_EQ(SlabRegion::of(large.pieces.front()), nullptr);
  EXPECT_EQ(SlabRegion::of(large.pieces.back()), nullptr);
  large.region.reset();
  for (void* piece : large.pieces)
    EXPECT_EQ(static_cast<char*>(piece)[RARE_SIZE - 1], 7);
  freeRare(large.pieces);
}

TEST_F(SlabRegionTest, SlabsOfExtentsThatWereBrokenUpGoBackWithTheirLastPieces) {
  LargeRegion large;
  large.region->breakUp();
  large.region.reset();
  const std::set<std::uintptr_t> slabs = slabsOf(large.pieces);
  freeRare(large.pieces);
  SlabHeap::flush();
  expectHandedOutAgain(slabs);
}

TEST_F(SlabRegionTest, ExtentsThatWereBrokenUpAreNoLargePages) {
  if (!TestSupport::tellsLargePages()) GTEST_SKIP() << "the system does not tell";
  LargeRegion large;
  large.region->breakUp();
  for (const void* piece : {large.pieces.front(), large.pieces.back()}) {
    EXPECT_THAT(TestSupport::getMappingFlags(piece),
                testing::Optional(testing::HasSubstr(TestSupport::WITHOUT_LARGE_PAGES)));
  }
  freeRare(large.pieces);
}

TEST_F(SlabRegionTest, SlabsOfAnExtentThatWereNotUsedGoBackWhenItIsBrokenUp) {
  keepUsedExtents();
  LargeRegion large;
  const std::uintptr_t last = slabOf(large.pieces.back());
  std::set<std::uintptr_t> unused;
  for (std::uintptr_t slab = last + 1; slab % EXTENT_SLABS != 0; ++slab)
    unused.insert(slab);
  ASSERT_GT(unused.size(), 10U);
  const void* firstUnused = reinterpret_cast<void*>(*unused.begin() * SlabSource::SLAB_SIZE);
  ASSERT_EQ(*static_cast<const char*>(firstUnused), 1);
  large.region->breakUp();
  expectHandedOutAgain(unused);
  freeRare(large.pieces);
}

TEST_F(SlabRegionTest, ARegionThatIsBrokenUpWhileItUsesExtentsStillGivesPieces) {
  const auto region = SlabRegion::make();
  Pieces pieces;
  {
    const SlabRegion::Use use(region.get());
    allocateRare(KEPT_PIECES);
    pieces.emplace_back(RARE_SIZE, static_cast<unsigned char>(1));
    region->breakUp();
    for (std::size_t i = 0; i < EXTENT_PIECES; ++i)
      pieces.emplace_back(RARE_SIZE, static_cast<unsigned char>(i));
  }
  EXPECT_TRUE(areIntact(pieces));
}

// --- Threads that are ending ---------------------------------------------------------------------

TEST_F(SlabRegionTest, AThreadThatIsEndingUsesRegionsToo) {
  struct AtTheEnd {
    ~AtTheEnd() {
      const SlabRegion::Use use(&region);
      const Piece piece(64, 1);
      EXPECT_EQ(SlabRegion::of(piece.getBegin()), &region);
      EXPECT_TRUE(piece.isIntact());
      EXPECT_TRUE(region.isWhole());
    }
    SlabRegion& region;
  };
  const auto region = SlabRegion::make();
  std::thread([&region] {
    thread_local const AtTheEnd end{*region};  // made before what the heap holds for the thread
    const Piece piece(64, 1);
    EXPECT_EQ(&end.region, region.get());
  }).join();
}

#else

TEST(SlabRegionTest, ThereAreNoneWhereEveryPieceStandsAlone) {
  EXPECT_EQ(SlabRegion::make(), nullptr);
}

TEST(SlabRegionTest, NoPieceIsMadeLargerWhereEveryPieceStandsAlone) {
  void* piece = SlabHeap::allocate(32);
  EXPECT_FALSE(SlabHeap::extend(piece, 32, 48));
  SlabHeap::free(piece, 32);
}

#endif
