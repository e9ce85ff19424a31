// Where items, groups and lists of them get their memory, and who frees it when making one fails.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/TreeParts.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::detail::ItemList;

namespace {

struct Failure {};

/// An item whose making fails when all of the library's part is done.
struct FailingItem : ParserItem {
  FailingItem() : ParserItem("a name of more than fifteen bytes", ITEM_PLAIN, 0, 0) {
    throw Failure();
  }
};

struct FailingGroup : ParserGroup {
  FailingGroup() : ParserGroup("a name of more than fifteen bytes") { throw Failure(); }
};

}  // namespace

// --- Making that fails ---------------------------------------------------------------------------

TEST(ItemMemoryTest, TheMemoryOfAnItemOfNewIsFreedWhenMakingItFails) {
  EXPECT_THROW(delete new FailingItem, Failure);
}

TEST(ItemMemoryTest, TheMemoryOfAnItemOfNothrowNewIsFreedWhenMakingItFails) {
  EXPECT_THROW(delete new (std::nothrow) FailingItem, Failure);
}

TEST(ItemMemoryTest, ThePlaceOfAnItemStaysTheCallersWhenMakingItFails) {
  alignas(FailingItem) unsigned char place[sizeof(FailingItem)];
  EXPECT_THROW(new (place) FailingItem, Failure);
}

TEST(ItemMemoryTest, TheMemoryOfAGroupOfNewIsFreedWhenMakingItFails) {
  EXPECT_THROW(delete new FailingGroup, Failure);
}

TEST(ItemMemoryTest, TheMemoryOfAGroupOfNothrowNewIsFreedWhenMakingItFails) {
  EXPECT_THROW(delete new (std::nothrow) FailingGroup, Failure);
}

TEST(ItemMemoryTest, ThePlaceOfAGroupStaysTheCallersWhenMakingItFails) {
  alignas(FailingGroup) unsigned char place[sizeof(FailingGroup)];
  EXPECT_THROW(new (place) FailingGroup, Failure);
}

// --- Lists ---------------------------------------------------------------------------------------

TEST(ItemMemoryTest, AListLongerThanAllMemoryIsRefused) {
  constexpr std::uint64_t LONGEST = std::numeric_limits<std::uint32_t>::max();
  constexpr std::uint64_t MOST = std::numeric_limits<std::size_t>::max();
  EXPECT_THROW(ItemList().reserve(std::min(LONGEST + 1, MOST)), std::bad_alloc);
}
