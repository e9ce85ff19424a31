// Large blocks of memory: they are used again, and few of them are kept.

#include <Quarry/internal/LargeBlocks.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "support/MemoryMap.h"

using Quarry::LargeBlocks;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;
using TestSupport::getMappingFlags;
using TestSupport::isMapped;

namespace {

constexpr std::size_t MEBIBYTE = std::size_t(1) << 20;

void* take(std::size_t size) { return LargeBlocks::get().take(size); }
void giveBack(void* block, std::size_t size) { LargeBlocks::get().giveBack(block, size); }

/// A block, filled from end to end with a byte of its own.
class Block {
 public:
  Block(std::size_t bytes, unsigned char pattern)
      : begin(static_cast<unsigned char*>(take(bytes))), size(bytes), fill(pattern) {
    std::memset(begin, fill, size);
  }
  Block(Block&& other) noexcept
      : begin(std::exchange(other.begin, nullptr)), size(other.size), fill(other.fill) {}
  ~Block() {
    if (begin != nullptr) giveBack(begin, size);
  }

  bool isIntact() const { return begin[0] == fill && std::memcmp(begin, begin + 1, size - 1) == 0; }
  const void* getBegin() const { return begin; }

 private:
  unsigned char* begin;
  std::size_t size;
  unsigned char fill;
};

/// Begins each test without kept blocks: those of other sizes would leave no room for its own.
class LargeBlocksTest : public testing::Test {
 protected:
  void SetUp() override {
    std::size_t step = LargeBlocks::SMALLEST / 8;
    for (std::size_t size = LargeBlocks::SMALLEST; size <= LargeBlocks::LARGEST_KEPT;) {
      for (std::size_t i = 0; i < LargeBlocks::MOST_KEPT_BYTES / LargeBlocks::SMALLEST; ++i)
        ::munmap(take(size), size);
      if (size == 16 * step) step *= 2;
      size += step;
    }
  }
};

/// Takes blocks, gives them all back and returns how many bytes of them still belong to the
/// process.
std::size_t countKeptBytes(std::size_t blockSize, std::size_t count) {
  std::vector<void*> blocks(count);
  for (void*& block : blocks)
    block = take(blockSize);
  for (void* block : blocks)
    giveBack(block, blockSize);
  std::size_t kept = 0;
  for (void* block : blocks)
    kept += isMapped(block, blockSize) ? blockSize : 0;
  return kept;
}

}  // namespace

TEST_F(LargeBlocksTest, ABlockIsAligned) {
  for (const std::size_t size : {LargeBlocks::SMALLEST, LargeBlocks::SMALLEST + 1, 3 * MEBIBYTE})
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(Block(size, 1).getBegin()) % 16, 0U);
}

TEST_F(LargeBlocksTest, BlocksThatLiveTogetherDoNotOverlap) {
  std::vector<Block> blocks;
  for (unsigned char i = 0; i < 40; ++i)
    blocks.emplace_back(LargeBlocks::SMALLEST + i * std::size_t(10007), i);
  for (const Block& block : blocks)
    EXPECT_TRUE(block.isIntact());
}

TEST_F(LargeBlocksTest, ABlockThatNoMemoryHoldsIsRefused) {
  EXPECT_THROW(take(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
}

TEST_F(LargeBlocksTest, AReturnedBlockIsTheNextOfItsSize) {
  void* block = take(MEBIBYTE);
  giveBack(block, MEBIBYTE);
  void* next = take(MEBIBYTE);
  EXPECT_EQ(next, block);
  giveBack(next, MEBIBYTE);
}

TEST_F(LargeBlocksTest, AReturnedBlockIsTheNextOfNearlyItsSize) {
  void* block = take(199000);
  giveBack(block, 199000);
  void* next = take(200000);
  EXPECT_EQ(next, block);
  giveBack(next, 200000);
}

TEST_F(LargeBlocksTest, ABlockIsNotUsedForALargerSize) {
  void* block = take(LargeBlocks::SMALLEST);
  giveBack(block, LargeBlocks::SMALLEST);
  const Block larger(2 * LargeBlocks::SMALLEST, 7);
  EXPECT_NE(larger.getBegin(), block);
  EXPECT_TRUE(larger.isIntact());
}

TEST_F(LargeBlocksTest, ABlockInUseIsNotHandedOutAgain) {
  void* returned = take(MEBIBYTE);
  giveBack(returned, MEBIBYTE);
  const Block first(MEBIBYTE, 1);
  const Block second(MEBIBYTE, 2);
  EXPECT_NE(first.getBegin(), second.getBegin());
  EXPECT_TRUE(first.isIntact() && second.isIntact());
}

TEST_F(LargeBlocksTest, SomeReturnedBlocksAreKept) { EXPECT_GT(countKeptBytes(MEBIBYTE, 4), 0U); }

TEST_F(LargeBlocksTest, NoMoreThanTheMostKeptBytesAreKept) {
  EXPECT_LE(countKeptBytes(MEBIBYTE, 64), LargeBlocks::MOST_KEPT_BYTES);
}

TEST_F(LargeBlocksTest, NoMoreThanTheMostKeptBytesAreKeptOfSmallBlocks) {
  EXPECT_LE(countKeptBytes(LargeBlocks::SMALLEST, 400), LargeBlocks::MOST_KEPT_BYTES);
}

TEST_F(LargeBlocksTest, ABlockOfTheLargestSizeIsKept) {
  EXPECT_EQ(countKeptBytes(LargeBlocks::LARGEST_KEPT, 1), LargeBlocks::LARGEST_KEPT);
}

TEST_F(LargeBlocksTest, ALargerBlockGoesBackAtOnce) {
  EXPECT_EQ(countKeptBytes(LargeBlocks::LARGEST_KEPT + 1, 1), 0U);
}

TEST_F(LargeBlocksTest, AllThatAListOfAMillionPlacesGrewOutOfIsKept) {
  constexpr std::size_t LIST_SIZE = 9 * MEBIBYTE;  // 8 MiB and what stands before it, rounded up
  std::size_t size = LIST_SIZE / 64;
  std::vector<std::pair<void*, std::size_t>> blocks = {{take(size), size}};
  for (; size < LIST_SIZE; size *= 2) {
    blocks.emplace_back(take(2 * size), 2 * size);
    giveBack(blocks.end()[-2].first, size);
  }
  giveBack(blocks.back().first, LIST_SIZE);
  for (const auto& [block, blockSize] : blocks)
    EXPECT_TRUE(isMapped(block, blockSize)) << blockSize;
}

TEST_F(LargeBlocksTest, BlocksOfEverySizeAreIntactWhileOthersComeAndGo) {
  std::mt19937 random(1);
  std::vector<Block> blocks;
  for (unsigned char round = 0; round < 200; ++round) {
    if (blocks.size() == 10) {
      const auto replaced = blocks.begin() + static_cast<std::ptrdiff_t>(random() % 10);
      EXPECT_TRUE(replaced->isIntact());
      std::vector<Block> rest;
      for (auto block = blocks.begin(); block != blocks.end(); ++block)
        if (block != replaced) rest.push_back(std::move(*block));
      blocks = std::move(rest);
    }
    blocks.emplace_back(LargeBlocks::SMALLEST + random() % MEBIBYTE, round);
  }
}

TEST_F(LargeBlocksTest, ABlockBeyondAllMemoryIsRefused) {
  EXPECT_THROW(take(SIZE_MAX / 2 + 1), std::bad_alloc);
}

TEST_F(LargeBlocksTest, BlocksOfSeveralThreadsStayIntact) {
  std::atomic<int> broken = 0;
  const auto work = [&broken](unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 100; ++round) {
      const Block first(LargeBlocks::SMALLEST + random() % 100000,
                        static_cast<unsigned char>(seed));
      const Block second(LargeBlocks::SMALLEST, static_cast<unsigned char>(seed + 100));
      if (!first.isIntact() || !second.isIntact()) ++broken;
    }
  };
  std::vector<std::thread> threads;
  for (unsigned seed = 1; seed <= 4; ++seed)
    threads.emplace_back(work, seed);
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(broken, 0);
}

TEST_F(LargeBlocksTest, BlocksThatAreTooLargeToBeKeptHaveLargePages) {
  if (!TestSupport::tellsLargePages()) GTEST_SKIP() << "the system does not tell";
  const auto hasLargePages = Optional(HasSubstr(TestSupport::WITH_LARGE_PAGES));
  const Block kept(LargeBlocks::LARGEST_KEPT, 1);
  const Block large(LargeBlocks::LARGEST_KEPT + 1, 1);
  EXPECT_THAT(getMappingFlags(kept.getBegin()), Not(hasLargePages));
  EXPECT_THAT(getMappingFlags(large.getBegin()), hasLargePages);
}
