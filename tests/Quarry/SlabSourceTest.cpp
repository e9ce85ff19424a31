// The blocks that slabs are made of.

#include <Quarry/internal/SlabSource.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

#include "support/MemoryMap.h"

using Quarry::SlabSource;
using testing::HasSubstr;
using testing::Optional;
using TestSupport::getMappingFlags;
using TestSupport::isMapped;

namespace {

std::vector<void*> takeSlabs(std::size_t count) {
  std::vector<void*> slabs(count);
  for (void*& slab : slabs)
    slab = SlabSource::get().take();
  return slabs;
}

void giveBack(const std::vector<void*>& slabs) {
  for (void* slab : slabs)
    SlabSource::get().giveBack(slab);
}

std::vector<void*> takeSmallSlabs(std::size_t count) {
  std::vector<void*> slabs(count);
  for (void*& slab : slabs)
    slab = SlabSource::get().takeSmall();
  return slabs;
}

void giveBackSmall(const std::vector<void*>& slabs) {
  for (void* slab : slabs)
    SlabSource::get().giveBackSmall(slab);
}

bool isZero(const void* slab) {
  const char* bytes = static_cast<const char*>(slab);
  return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, SlabSource::SLAB_SIZE - 1) == 0;
}

std::vector<void*> slabsOf(void* extent) {
  std::vector<void*> slabs;
  for (std::size_t i = 0; i < SlabSource::EXTENT_SIZE; i += SlabSource::SLAB_SIZE)
    slabs.push_back(static_cast<char*>(extent) + i);
  return slabs;
}

}  // namespace

// --- Slabs ---------------------------------------------------------------------------------------

TEST(SlabSourceTest, SlabsAreAlignedToTheirSize) {
  const std::vector<void*> slabs = takeSlabs(100);
  for (const void* slab : slabs)
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slab) % SlabSource::SLAB_SIZE, 0U);
  giveBack(slabs);
}

TEST(SlabSourceTest, NoSlabIsHandedOutTwice) {
  const std::vector<void*> slabs = takeSlabs(400);
  EXPECT_EQ(std::set<void*>(slabs.begin(), slabs.end()).size(), 400U);
  giveBack(slabs);
}

TEST(SlabSourceTest, ASlabCanBeUsedFromItsFirstByteToItsLast) {
  const std::vector<void*> slabs = takeSlabs(40);
  for (std::size_t i = 0; i < slabs.size(); ++i)
    std::memset(slabs[i], static_cast<int>(i + 1), SlabSource::SLAB_SIZE);
  for (std::size_t i = 0; i < slabs.size(); ++i) {
    const char* bytes = static_cast<const char*>(slabs[i]);
    EXPECT_EQ(bytes[0], static_cast<char>(i + 1));
    EXPECT_EQ(bytes[SlabSource::SLAB_SIZE - 1], static_cast<char>(i + 1));
  }
  giveBack(slabs);
}

TEST(SlabSourceTest, TheSlabThatCameBackLastIsHandedOutFirst) {
  void* slab = SlabSource::get().take();
  SlabSource::get().giveBack(slab);
  EXPECT_EQ(SlabSource::get().take(), slab);
  SlabSource::get().giveBack(slab);
}

TEST(SlabSourceTest, SlabsThatComeBackAreHandedOutBeforeNewOnes) {
  constexpr std::size_t MANY = SlabSource::KEPT + 100;
  const std::vector<void*> first = takeSlabs(MANY);
  giveBack(first);
  const std::vector<void*> second = takeSlabs(MANY);
  EXPECT_EQ(std::set<void*>(second.begin(), second.end()),
            std::set<void*>(first.begin(), first.end()));
  giveBack(second);
}

TEST(SlabSourceTest, BeyondTheKeptSlabsTheMemoryGoesBackToTheSystem) {
  constexpr std::size_t MORE = 100;
  const std::vector<void*> slabs = takeSlabs(SlabSource::KEPT + MORE);
  for (void* slab : slabs)
    std::memset(slab, 1, SlabSource::SLAB_SIZE);
  giveBack(slabs);
  std::size_t zeroed = 0;
  const std::vector<void*> again = takeSlabs(SlabSource::KEPT + MORE);
  for (const void* slab : again)
    zeroed += isZero(slab) ? 1 : 0;
  EXPECT_EQ(zeroed, MORE);
  giveBack(again);
}

// --- Small slabs ---------------------------------------------------------------------------------

TEST(SlabSourceTest, SmallSlabsAreAlignedLikeOthers) {
  const std::vector<void*> slabs = takeSmallSlabs(100);
  for (const void* slab : slabs)
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slab) % SlabSource::SLAB_SIZE, 0U);
  EXPECT_EQ(std::set<void*>(slabs.begin(), slabs.end()).size(), slabs.size());
  giveBackSmall(slabs);
}

TEST(SlabSourceTest, TheSmallSlabThatCameBackLastIsHandedOutFirst) {
  void* slab = SlabSource::get().takeSmall();
  SlabSource::get().giveBackSmall(slab);
  EXPECT_EQ(SlabSource::get().takeSmall(), slab);
  SlabSource::get().giveBackSmall(slab);
}

/// It would have memory then that nobody counts.
TEST(SlabSourceTest, ASmallSlabThatCameBackIsNotHandedOutAsAWholeOne) {
  SlabSource source;
  void* small = source.takeSmall();
  source.giveBackSmall(small);
  EXPECT_NE(source.take(), small);
}

TEST(SlabSourceTest, ASlabThatCameBackIsNotHandedOutAsASmallOne) {
  SlabSource source;
  void* slab = source.take();
  source.giveBack(slab);
  EXPECT_NE(source.takeSmall(), slab);
}

TEST(SlabSourceTest, BeyondTheKeptSmallSlabsTheMemoryGoesBackToTheSystem) {
  constexpr std::size_t MORE = 100;
  const std::vector<void*> slabs = takeSmallSlabs(SlabSource::KEPT_SMALL + MORE);
  for (void* slab : slabs)
    std::memset(slab, 1, SlabSource::SMALL_SIZE);
  giveBackSmall(slabs);
  std::size_t zeroed = 0;
  const std::vector<void*> again = takeSmallSlabs(SlabSource::KEPT_SMALL + MORE);
  for (const void* slab : again)
    zeroed += isZero(slab) ? 1 : 0;
  EXPECT_EQ(zeroed, MORE);
  giveBackSmall(again);
}

// --- Extents -------------------------------------------------------------------------------------

TEST(SlabSourceTest, ExtentsAreAlignedToTheirSize) {
  std::vector<void*> extents(20);
  for (void*& extent : extents) {
    extent = SlabSource::get().takeExtent();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(extent) % SlabSource::EXTENT_SIZE, 0U);
  }
  EXPECT_EQ(std::set<void*>(extents.begin(), extents.end()).size(), extents.size());
  for (void* extent : extents)
    SlabSource::get().giveBackExtent(extent);
}

TEST(SlabSourceTest, ExtentsTakeNoMoreAddressesThanTheirOwn) {
  SlabSource source;  // that has none yet
  const std::size_t before = TestSupport::getMappedBytes();
  std::vector<void*> extents(20);
  for (void*& extent : extents)
    extent = source.takeExtent();
  const std::size_t taken = TestSupport::getMappedBytes() - before;
  EXPECT_GE(taken, extents.size() * SlabSource::EXTENT_SIZE);
  EXPECT_LT(taken, (extents.size() + 1) * SlabSource::EXTENT_SIZE);
  for (void* extent : extents)
    source.giveBackExtent(extent);
}

TEST(SlabSourceTest, AnExtentCanBeUsedFromItsFirstByteToItsLast) {
  auto* extent = static_cast<char*>(SlabSource::get().takeExtent());
  std::memset(extent, 1, SlabSource::EXTENT_SIZE);
  EXPECT_EQ(extent[0], 1);
  EXPECT_EQ(extent[SlabSource::EXTENT_SIZE - 1], 1);
  SlabSource::get().giveBackExtent(extent);
}

TEST(SlabSourceTest, SlabsOfAnExtentThatWasBrokenUpAreHandedOutAgain) {
  const std::vector<void*> others = takeSlabs(SlabSource::KEPT + 1);
  void* extent = SlabSource::get().takeExtent();
  SlabSource::get().breakUpExtent(extent);
  const std::vector<void*> slabs = slabsOf(extent);
  giveBack(slabs);
  const std::vector<void*> next = takeSlabs(slabs.size());
  EXPECT_EQ(std::set<void*>(next.begin(), next.end()), std::set<void*>(slabs.begin(), slabs.end()));
  giveBack(next);
  giveBack(others);
}

TEST(SlabSourceTest, AnExtentIsOneLargePageUntilItIsBrokenUp) {
  if (!TestSupport::tellsLargePages()) GTEST_SKIP() << "the system does not tell";
  void* extent = SlabSource::get().takeExtent();
  EXPECT_THAT(getMappingFlags(extent), Optional(HasSubstr(TestSupport::WITH_LARGE_PAGES)));
  SlabSource::get().breakUpExtent(extent);
  EXPECT_THAT(getMappingFlags(extent), Optional(HasSubstr(TestSupport::WITHOUT_LARGE_PAGES)));
  giveBack(slabsOf(extent));
}

// --- Extents that are kept -----------------------------------------------------------------------

namespace {

/// A source of its own: what is kept depends on all that was taken before.
class KeptExtentsTest : public testing::Test {
 protected:
  std::vector<void*> take(std::size_t count) {
    std::vector<void*> extents(count);
    for (void*& extent : extents)
      extent = source.takeExtent();
    return extents;
  }

  void giveBack(const std::vector<void*>& extents) {
    for (void* extent : extents)
      source.giveBackExtent(extent);
  }

  void takeAndGiveBack(std::size_t count) { giveBack(take(count)); }

  SlabSource source;
};

std::size_t countMapped(const std::vector<void*>& extents) {
  return static_cast<std::size_t>(std::count_if(extents.begin(), extents.end(), [](void* extent) {
    return isMapped(extent, SlabSource::EXTENT_SIZE);
  }));
}

}  // namespace

TEST_F(KeptExtentsTest, NoneAtFirst) {
  const std::vector<void*> extents = take(10);
  EXPECT_EQ(countMapped(extents), 10U);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), 0U);
}

TEST_F(KeptExtentsTest, HalfOfThemWhenTheProcessCameBack) {
  takeAndGiveBack(10);
  const std::vector<void*> extents = take(10);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), 5U);
}

TEST_F(KeptExtentsTest, NoMoreThanHalfHoweverOftenTheProcessComesBack) {
  for (int i = 0; i < 20; ++i)
    takeAndGiveBack(10);
  const std::vector<void*> extents = take(10);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), 5U);
}

TEST_F(KeptExtentsTest, AQuarterOfThoseThatAreMany) {
  constexpr std::size_t USED = SlabSource::MANY_EXTENTS + 20;
  takeAndGiveBack(USED);
  const std::vector<void*> extents = take(USED);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), SlabSource::MANY_EXTENTS / 2 + 5);
}

TEST_F(KeptExtentsTest, AsManyAsBeforeWhenFewerAreUsed) {
  takeAndGiveBack(10);
  const std::vector<void*> extents = take(10);
  giveBack(extents);
  takeAndGiveBack(2);
  EXPECT_EQ(countMapped(extents), 5U);
}

TEST_F(KeptExtentsTest, NoMoreThanTheMost) {
  constexpr std::size_t MANY = 4 * SlabSource::MOST_KEPT_EXTENTS + 20;
  takeAndGiveBack(MANY);
  const std::vector<void*> extents = take(MANY);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), SlabSource::MOST_KEPT_EXTENTS);
}

TEST_F(KeptExtentsTest, HaveTheMemoryThatTheyHad) {
  takeAndGiveBack(2);
  const std::vector<void*> extents = take(2);
  std::memset(extents.front(), 1, SlabSource::EXTENT_SIZE);
  giveBack(extents);
  EXPECT_EQ(source.takeExtent(), extents.front());
  EXPECT_EQ(static_cast<char*>(extents.front())[SlabSource::EXTENT_SIZE - 1], 1);
  source.giveBackExtent(extents.front());
}

TEST_F(KeptExtentsTest, WereUsedNoMoreWhenTheyHadBeenBrokenUp) {
  for (void* extent : take(10))
    source.breakUpExtent(extent);
  takeAndGiveBack(2);
  const std::vector<void*> extents = take(2);
  giveBack(extents);
  EXPECT_EQ(countMapped(extents), 1U);
}
