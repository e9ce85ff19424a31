// Memory for the parts of trees, used by several threads, by threads that end, and to the very end
// of the process.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/SlabHeap.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "HeapPieces.h"

using Quarry::SlabHeap;
using namespace HeapPieces;

namespace {

/// So many slabs there may be where each round would use others if they were not used again: those
/// of a round, and a few in which other tests have left room.
[[maybe_unused]] constexpr std::size_t FEW = 20;

template <class Work>
void runInThread(Work work) {
  std::thread(work).join();
}

}  // namespace

// --- Threads -------------------------------------------------------------------------------------

TEST(SlabHeapThreadsTest, PiecesThatOneThreadMadeAreIntactForAnotherThatFreesThem) {
  std::mt19937 random(3);
  for (int round = 0; round < 20; ++round) {
    Pieces pieces;
    runInThread([&] { pieces = makePieces(random, 500); });
    EXPECT_TRUE(areIntact(pieces));
    runInThread([&] { pieces.clear(); });
  }
}

TEST(SlabHeapThreadsTest, PiecesStayIntactWhenTheThreadThatMadeThemHasEnded) {
  std::mt19937 random(4);
  Pieces kept;
  for (int round = 0; round < 20; ++round) {
    runInThread([&] {
      for (Piece& piece : makePieces(random, 200))
        kept.push_back(std::move(piece));
    });
    runInThread([&] { exchangeAtRandom(random, kept, 300); });
  }
  EXPECT_TRUE(areIntact(kept));
}

TEST(SlabHeapThreadsTest, ThreadsThatPassPiecesOnToOneAnotherFindThemIntact) {
  std::mutex mutex;
  Pieces shared;
  std::atomic<int> broken = 0;
  const auto work = [&](unsigned seed) {
    std::mt19937 random(seed);
    Pieces own = makePieces(random, 100);
    for (int round = 0; round < 300; ++round) {
      if (!exchangeAtRandom(random, own, 30)) ++broken;
      const std::lock_guard<std::mutex> lock(mutex);
      for (int i = 0; i < 10; ++i) {
        if (shared.size() < 100) shared.emplace_back(chooseSize(random), chooseFill(random));
        std::swap(own[random() % own.size()], shared[random() % shared.size()]);
      }
    }
    if (!areIntact(own)) ++broken;
  };
  std::vector<std::thread> threads;
  for (unsigned seed = 1; seed <= 6; ++seed)
    threads.emplace_back(work, seed);
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(broken, 0);
  EXPECT_TRUE(areIntact(shared));
}

#ifndef QUARRY_PLAIN_HEAP

TEST(SlabHeapThreadsTest, AThreadThatEndsGivesItsSlabBack) {
  std::set<std::uintptr_t> slabs;
  for (int round = 0; round < 100; ++round) {
    runInThread([&] {
      const std::vector<void*> pieces = allocateRare(1);
      slabs.insert(slabOf(pieces[0]));
      freeRare(pieces);
    });
  }
  EXPECT_LE(slabs.size(), FEW);
}

TEST(SlabHeapThreadsTest, AThreadThatEndsLeavesTheRestOfItsSlabToOthers) {
  std::vector<void*> pieces;
  std::set<std::uintptr_t> slabs;
  for (std::size_t round = 0; round < RARE_IN_SLAB; ++round) {
    runInThread([&] { pieces.push_back(allocateRare(1)[0]); });
    slabs.insert(slabOf(pieces.back()));
  }
  EXPECT_LE(slabs.size(), FEW);
  freeRare(pieces);
}

TEST(SlabHeapThreadsTest, SlabsOfEndedThreadsAreUsedAgainWhenAnotherThreadHasFreedTheirPieces) {
  std::set<std::uintptr_t> slabs;
  for (int round = 0; round < 50; ++round) {
    std::vector<void*> pieces;
    runInThread([&] { pieces = allocateRare(3 * RARE_IN_SLAB); });
    for (const void* piece : pieces)
      slabs.insert(slabOf(piece));
    freeRare(pieces);
    SlabHeap::flush();
  }
  EXPECT_LE(slabs.size(), FEW);
}

TEST(SlabHeapThreadsTest, SlabsThatAThreadStillHoldsAreUsedAgainWhenOthersHaveFreedTheirPieces) {
  std::set<std::uintptr_t> slabs;
  for (int round = 0; round < 50; ++round) {
    const std::vector<void*> pieces = allocateRare(3 * RARE_IN_SLAB);
    for (const void* piece : pieces)
      slabs.insert(slabOf(piece));
    runInThread([&] { freeRare(pieces); });
  }
  EXPECT_LE(slabs.size(), FEW);
}

#endif

// --- The end of a thread -------------------------------------------------------------------------

namespace {

/// Outlives what a thread holds of the heap when it is made before the thread's first piece.
struct UsedToTheEnd {
  Pieces early;
  Pieces* late = nullptr;
  bool* wereIntact = nullptr;

  ~UsedToTheEnd() {
    if (late == nullptr) return;
    std::mt19937 random(5);
    *wereIntact = areIntact(early) && exchangeAtRandom(random, early, 1000);
    early.clear();
    *late = makePieces(random, 500);
  }
};

thread_local UsedToTheEnd usedToTheEnd;

/// Returns what a thread made at its very end.
Pieces makeAtTheEndOfAThread(bool& wereIntact) {
  Pieces late;
  runInThread([&] {
    usedToTheEnd.late = &late;
    usedToTheEnd.wereIntact = &wereIntact;
    std::mt19937 random(6);
    usedToTheEnd.early = makePieces(random, 500);
  });
  return late;
}

}  // namespace

TEST(SlabHeapThreadsTest, AnEndingThreadStillGetsAndFreesPieces) {
  bool wereIntact = false;
  makeAtTheEndOfAThread(wereIntact);
  EXPECT_TRUE(wereIntact);
}

TEST(SlabHeapThreadsTest, PiecesThatEndingThreadsMadeStayIntact) {
  std::mt19937 random(7);
  bool wereIntact = false;
  const Pieces first = makeAtTheEndOfAThread(wereIntact);
  const Pieces second = makeAtTheEndOfAThread(wereIntact);
  Pieces others = makePieces(random, 500);
  exchangeAtRandom(random, others, 1000);
  EXPECT_EQ(first.size() + second.size(), 1000U);
  EXPECT_TRUE(areIntact(first) && areIntact(second) && areIntact(others));
}

TEST(SlabHeapThreadsTest, ThreadsThatEndAtTheSameTimeStillGetAndFreePieces) {
  std::vector<std::thread> threads;
  bool wereIntact[8] = {};
  for (bool& result : wereIntact)
    threads.emplace_back([&result] { makeAtTheEndOfAThread(result); });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_TRUE(std::all_of(std::begin(wereIntact), std::end(wereIntact), [](bool b) { return b; }));
}

#ifndef QUARRY_PLAIN_HEAP

namespace {

/// Gets and frees a piece when what its thread holds of the heap has been given back.
struct UsedAtTheEnd {
  std::set<std::uintptr_t>* slabs = nullptr;

  ~UsedAtTheEnd() {
    if (slabs == nullptr) return;
    const std::vector<void*> pieces = allocateRare(1);
    slabs->insert(slabOf(pieces[0]));
    freeRare(pieces);
  }
};

thread_local UsedAtTheEnd usedAtTheEnd;

}  // namespace

TEST(SlabHeapThreadsTest, ThreadsThatUseThePiecesOfASlabAtTheirVeryEndKeepNoSlab) {
  std::set<std::uintptr_t> slabs;
  for (int round = 0; round < 100; ++round) {
    runInThread([&] {
      usedAtTheEnd.slabs = &slabs;
      freeRare(allocateRare(1));
    });
  }
  EXPECT_GT(slabs.size(), 0U);
  EXPECT_LE(slabs.size(), FEW);
}

#endif

// --- The end of the process ----------------------------------------------------------------------

namespace {

/// A document that is used once more when the process's statics are destroyed.
struct StaticDocument {
  Quarry::ParserGroup root{"root"};

  ~StaticDocument() {
    root.removeItem("early");
    for (int i = 0; i < 5000; ++i)
      root.addItem("late", 0, 0)->addInt(i);
    std::fprintf(stderr, "%lu items\n", root.getItemCount());
    root.clear();
    std::fprintf(stderr, "destroyed\n");
  }
};

void exitWithStaticDocument() {
  static StaticDocument document;
  for (int i = 0; i < 5000; ++i)
    document.root.addItem("early", 0, 0)->addGroup(nullptr)->addItem("inner", 0, 0)->addInt(i);
  std::exit(0);
}

}  // namespace

TEST(SlabHeapThreadsDeathTest, AStaticDocumentIsUsedAndDestroyedAtTheEndOfTheProcess) {
  EXPECT_EXIT(exitWithStaticDocument(), testing::ExitedWithCode(0), "5000 items\ndestroyed\n");
}
