// Memory for the parts of trees: every piece is its owner's alone, and what was freed is used
// again.

#include <Quarry/internal/LargeBlocks.h>
#include <Quarry/internal/SlabHeap.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <new>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "HeapPieces.h"

using Quarry::LargeBlocks;
using Quarry::SlabHeap;
using Quarry::SlabSource;
using namespace HeapPieces;

// --- Pieces --------------------------------------------------------------------------------------

TEST(SlabHeapTest, APieceOfEverySmallSizeIsAligned) {
  for (std::size_t size = 1; size <= SlabHeap::LARGEST + 1; ++size) {
    const Piece piece(size, 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece.getBegin()) % SlabHeap::GRANULE, 0U) << size;
  }
}

TEST(SlabHeapTest, APieceOfALargeSizeIsAligned) {
  for (const std::size_t size : {std::size_t(5000), LargeBlocks::SMALLEST, std::size_t(1) << 21}) {
    const Piece piece(size, 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece.getBegin()) % SlabHeap::GRANULE, 0U) << size;
  }
}

TEST(SlabHeapTest, PiecesOfAllSizesThatLiveTogetherDoNotOverlap) {
  Pieces pieces;
  for (std::size_t size = 1; size <= SlabHeap::LARGEST + 100; ++size)
    pieces.emplace_back(size, static_cast<unsigned char>(size));
  EXPECT_TRUE(areIntact(pieces));
}

TEST(SlabHeapTest, PiecesAboutTheSizeOfALargeBlockDoNotOverlap) {
  Pieces pieces;
  for (std::size_t size = LargeBlocks::SMALLEST - 2; size <= LargeBlocks::SMALLEST + 2; ++size)
    pieces.emplace_back(size, static_cast<unsigned char>(size));
  EXPECT_TRUE(areIntact(pieces));
}

TEST(SlabHeapTest, ManyPiecesOfOneSizeDoNotOverlap) {
  Pieces pieces;
  for (int i = 0; i < 10000; ++i)
    pieces.emplace_back(48, static_cast<unsigned char>(i));
  EXPECT_TRUE(areIntact(pieces));
}

TEST(SlabHeapTest, PiecesStayIntactWhileOthersComeAndGo) {
  std::mt19937 random(1);
  Pieces pieces = makePieces(random, 2000);
  EXPECT_TRUE(exchangeAtRandom(random, pieces, 50000));
  EXPECT_TRUE(areIntact(pieces));
}

TEST(SlabHeapTest, PiecesStayIntactWhenAllAreFreedInRandomOrderAndMadeAgain) {
  std::mt19937 random(2);
  for (int round = 0; round < 10; ++round) {
    Pieces pieces = makePieces(random, 3000);
    std::shuffle(pieces.begin(), pieces.end(), random);
    EXPECT_TRUE(areIntact(pieces));
  }
}

TEST(SlabHeapTest, FreeingNullDoesNothing) {
  SlabHeap::free(nullptr, 16);
  SlabHeap::free(nullptr, SlabHeap::LARGEST);
  EXPECT_TRUE(Piece(16, 1).isIntact());
}

TEST(SlabHeapTest, RoundingUpGivesTheNextMultipleOfAGranule) {
  EXPECT_EQ(SlabHeap::roundUp(1), 16U);
  EXPECT_EQ(SlabHeap::roundUp(16), 16U);
  EXPECT_EQ(SlabHeap::roundUp(17), 32U);
}

// --- Slabs ---------------------------------------------------------------------------------------
//
// Under the address sanitizer there are none: every piece then comes from `operator new`.

#ifndef QUARRY_PLAIN_HEAP

TEST(SlabHeapTest, AFreedPieceIsTheNextOfItsSize) {
  void* freed = SlabHeap::allocate(100);
  SlabHeap::free(freed, 100);
  void* next = SlabHeap::allocate(112);
  EXPECT_EQ(next, freed);
  SlabHeap::free(next, 112);
}

TEST(SlabHeapTest, APieceMayBeFreedWithAnotherSmallSize) {
  void* freed = SlabHeap::allocate(500);
  SlabHeap::free(freed, 16);
  void* next = SlabHeap::allocate(500);
  EXPECT_EQ(next, freed);
  SlabHeap::free(next, 500);
}

TEST(SlabHeapTest, ASlabIsFilledBeforeTheNextOneIsTaken) {
  const std::vector<void*> pieces = allocateRare(10 * RARE_IN_SLAB);
  std::set<std::uintptr_t> slabs;
  for (const void* piece : pieces)
    slabs.insert(slabOf(piece));
  EXPECT_LE(slabs.size(), 12U);
  freeRare(pieces);
}

TEST(SlabHeapTest, AnEmptySlabIsGivenBackWhenItsFreedPiecesAreHandedIn) {
  SlabHeap::flush();  // what was freed before
  const std::vector<void*> pieces = allocateRare(4 * RARE_IN_SLAB);
  std::map<std::uintptr_t, std::vector<void*>> slabs;
  for (void* piece : pieces)
    slabs[slabOf(piece)].push_back(piece);
  std::vector<void*>& whole = slabs[slabOf(pieces[2 * RARE_IN_SLAB])];
  ASSERT_EQ(whole.size(), RARE_IN_SLAB);
  freeRare(std::exchange(whole, {}));
  SlabHeap::flush();
  void* slab = SlabSource::get().take();
  EXPECT_EQ(slabOf(slab), slabOf(pieces[2 * RARE_IN_SLAB]));
  SlabSource::get().giveBack(slab);
  for (const auto& [place, rest] : slabs)
    freeRare(rest);
}

TEST(SlabHeapTest, PiecesThatWereFreedInRandomOrderAreAllUsedAgainBeforeNewSlabs) {
  std::vector<void*> first = allocateRare(10 * RARE_IN_SLAB);
  std::set<std::uintptr_t> slabs;
  for (const void* piece : first)
    slabs.insert(slabOf(piece));
  std::shuffle(first.begin(), first.end(), std::mt19937(1));
  const auto half = first.begin() + 5 * static_cast<std::ptrdiff_t>(RARE_IN_SLAB);
  freeRare(std::vector<void*>(first.begin(), half));
  SlabHeap::flush();
  const std::vector<void*> second = allocateRare(5 * RARE_IN_SLAB);
  for (const void* piece : second)
    EXPECT_EQ(slabs.count(slabOf(piece)), 1U);
  freeRare(second);
  freeRare(std::vector<void*>(half, first.end()));
}

#endif
// --- Too much ------------------------------------------------------------------------------------

#ifndef QUARRY_PLAIN_HEAP

namespace {

/// Exits with 0 when the size is refused, and does not take longer than a few seconds.
void exitAfterAsking(std::size_t size) {
  ::alarm(2);
  try {
    SlabHeap::allocate(size);
  } catch (const std::bad_alloc&) {
    ::_exit(0);
  }
  ::_exit(1);
}

}  // namespace

#if SIZE_MAX > 0xFFFFFFFF  // with 32 bits a system has nearly all that can be addressed
TEST(SlabHeapDeathTest, MoreThanTheSystemHasIsRefused) {
  EXPECT_EXIT(exitAfterAsking(std::size_t(1) << 60), testing::ExitedWithCode(0), "");
}
#endif

TEST(SlabHeapDeathTest, MoreThanCanBeAddressedIsRefused) {
  EXPECT_EXIT(exitAfterAsking(static_cast<std::size_t>(-1)), testing::ExitedWithCode(0), "");
}

#endif

// --- For vectors ---------------------------------------------------------------------------------

TEST(SlabAllocatorTest, ANumberOfBytesThatDoesNotFitIsRefused) {
  constexpr std::size_t COUNT = static_cast<std::size_t>(-1) / sizeof(double) + 2;  // 8 bytes, cut
  EXPECT_THROW(Quarry::SlabAllocator<double>().allocate(COUNT), std::bad_alloc);
}

TEST(SlabAllocatorTest, AVectorHasItsMemoryFromTheHeap) {
  std::vector<double, Quarry::SlabAllocator<double>> numbers(100, 1.5);
  numbers.resize(1000, 2.5);
  EXPECT_EQ(numbers.front(), 1.5);
  EXPECT_EQ(numbers.back(), 2.5);
}
