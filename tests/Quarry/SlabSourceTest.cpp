// The blocks that slabs are made of.

#include <Quarry/internal/SlabSource.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <set>
#include <vector>

#include "support/MemoryMap.h"

using Quarry::SlabSource;
using testing::HasSubstr;
using testing::Optional;
using TestSupport::getMappingFlags;
using TestSupport::isMapped;

namespace {

/// Whole slabs or small ones.
struct Kind {
  const char* name;
  std::size_t size;
  std::size_t kept;
  void* (SlabSource::*take)();
  void (SlabSource::*giveBack)(void*) noexcept;
};

constexpr Kind WHOLE = {"Whole", SlabSource::SLAB_SIZE, SlabSource::KEPT, &SlabSource::take,
                        &SlabSource::giveBack};
constexpr Kind SMALL = {"Small", SlabSource::SMALL_SIZE, SlabSource::KEPT_SMALL,
                        &SlabSource::takeSmall, &SlabSource::giveBackSmall};

std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }

std::vector<void*> takeSlabs(std::size_t count, const Kind& kind = WHOLE) {
  std::vector<void*> slabs(count);
  for (void*& slab : slabs)
    slab = (SlabSource::get().*kind.take)();
  return slabs;
}

void giveBack(const std::vector<void*>& slabs, const Kind& kind = WHOLE) {
  for (void* slab : slabs)
    (SlabSource::get().*kind.giveBack)(slab);
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

namespace {

class SlabKindTest : public testing::TestWithParam<Kind> {};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Slabs, SlabKindTest, testing::Values(WHOLE, SMALL),
                         testing::PrintToStringParamName());

TEST_P(SlabKindTest, SlabsAreAlignedToTheSizeOfWholeOnes) {
  const std::vector<void*> slabs = takeSlabs(100, GetParam());
  for (const void* slab : slabs)
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slab) % SlabSource::SLAB_SIZE, 0U);
  giveBack(slabs, GetParam());
}

TEST_P(SlabKindTest, NoSlabIsHandedOutTwice) {
  const std::vector<void*> slabs = takeSlabs(400, GetParam());
  EXPECT_EQ(std::set<void*>(slabs.begin(), slabs.end()).size(), 400U);
  giveBack(slabs, GetParam());
}

TEST_P(SlabKindTest, ASlabCanBeUsedFromItsFirstByteToItsLast) {
  const std::vector<void*> slabs = takeSlabs(40, GetParam());
  for (std::size_t i = 0; i < slabs.size(); ++i)
    std::memset(slabs[i], static_cast<int>(i + 1), GetParam().size);
  for (std::size_t i = 0; i < slabs.size(); ++i) {
    const char* bytes = static_cast<const char*>(slabs[i]);
    EXPECT_EQ(bytes[0], static_cast<char>(i + 1));
    EXPECT_EQ(bytes[GetParam().size - 1], static_cast<char>(i + 1));
  }
  giveBack(slabs, GetParam());
}

TEST_P(SlabKindTest, TheSlabThatCameBackLastIsHandedOutFirst) {
  const std::vector<void*> slab = takeSlabs(1, GetParam());
  giveBack(slab, GetParam());
  EXPECT_EQ(takeSlabs(1, GetParam()), slab);
  giveBack(slab, GetParam());
}

TEST_P(SlabKindTest, SlabsThatComeBackAreHandedOutBeforeNewOnes) {
  const std::size_t many = GetParam().kept + 100;
  const std::vector<void*> first = takeSlabs(many, GetParam());
  giveBack(first, GetParam());
  const std::vector<void*> second = takeSlabs(many, GetParam());
  EXPECT_EQ(std::set<void*>(second.begin(), second.end()),
            std::set<void*>(first.begin(), first.end()));
  giveBack(second, GetParam());
}

TEST_P(SlabKindTest, BeyondTheKeptSlabsTheMemoryGoesBackToTheSystem) {
  constexpr std::size_t MORE = 100;
  const std::vector<void*> slabs = takeSlabs(GetParam().kept + MORE, GetParam());
  for (void* slab : slabs)
    std::memset(slab, 1, GetParam().size);
  giveBack(slabs, GetParam());
  std::size_t zeroed = 0;
  const std::vector<void*> again = takeSlabs(GetParam().kept + MORE, GetParam());
  for (const void* slab : again)
    zeroed += isZero(slab) ? 1 : 0;
  EXPECT_EQ(zeroed, MORE);
  giveBack(again, GetParam());
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
