// Taking things out of large groups and items takes a time that grows with their number, whatever
// is taken out and wherever it stands.
//
// The ordinary tests take things out of up to a hundred thousand. HeavyTests, which are built from
// this file too, take them out of a million.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "support/LinearTime.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::checkTakesLinearTime;

namespace {

/// The smaller of the two numbers that are compared; the other one is sixteen times as large.
#ifdef QUARRY_HEAVY_TESTS
constexpr unsigned long ITEMS = 62500;
constexpr unsigned long VALUES = 62500;
#else
constexpr unsigned long ITEMS = 2500;
constexpr unsigned long VALUES = 6250;
#endif

/// How many names are taken out of a group of many: each takes a walk over the group.
constexpr unsigned long FEW = 20;

std::string nameOf(unsigned long number) { return "item" + std::to_string(number); }

/// Returns a group of items with names of their own, or of turns of so many names.
std::unique_ptr<ParserGroup> makeGroup(unsigned long size, unsigned long names) {
  auto root = std::make_unique<ParserGroup>("root");
  for (unsigned long i = 0; i < size; ++i)
    root->addItem(nameOf(i % names), 0, 0)->addInt(1);
  return root;
}

/// Takes `FEW` of the items out one by one, from the end where `isBackward`.
void removeFew(ParserGroup& root, unsigned long size, bool isBackward) {
  for (unsigned long i = 0; i < FEW; ++i)
    root.removeItem(nameOf(isBackward ? size - 1 - i : i));
  EXPECT_EQ(root.getItemCount(), size - FEW);
}

/// Checks the time of removing from groups whose items have names of their own.
void checkRemoval(const std::function<void(ParserGroup&)>& remove) {
  checkTakesLinearTime(
      ITEMS, [](unsigned long size) { return makeGroup(size, size); },
      [&remove](const std::unique_ptr<ParserGroup>& root) { remove(*root); });
}

/// An item with many values, and the indices of those that go.
struct Removal {
  std::unique_ptr<ParserItem> item;
  std::vector<unsigned long> indices;
};

Removal makeRemoval(unsigned long size) {
  Removal removal{std::make_unique<ParserItem>("item", ParserItem::ITEM_PLAIN, 0, 0), {}};
  for (unsigned long i = 0; i < size; ++i)
    removal.item->addInt(static_cast<int>(i));
  removal.indices.resize(size / 2);
  std::iota(removal.indices.begin(), removal.indices.end(), size / 4);
  return removal;
}

/// Checks the time of removing the middle half of an item's values, named in some order.
void checkValueRemoval(const std::function<void(std::vector<unsigned long>&)>& order) {
  const auto make = [&order](unsigned long size) {
    Removal removal = makeRemoval(size);
    order(removal.indices);
    return removal;
  };
  checkTakesLinearTime(VALUES, make, [](Removal& removal) {
    removal.item->removeValue(removal.indices);
    EXPECT_EQ(removal.item->getValueCount(), removal.indices.size());
  });
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST(RemovalTimeTest, OfAllItemsWithOneName) {
  checkTakesLinearTime(
      ITEMS, [](unsigned long size) { return makeGroup(size, 1); },
      [](const std::unique_ptr<ParserGroup>& root) {
        root->removeItem(nameOf(0));
        EXPECT_EQ(root->getItemCount(), 0U);
      });
}

TEST(RemovalTimeTest, OfEveryOtherItem) {
  checkTakesLinearTime(
      ITEMS, [](unsigned long size) { return makeGroup(size, 2); },
      [](const std::unique_ptr<ParserGroup>& root) {
        root->removeItem(nameOf(1));
        EXPECT_EQ(root->getEntries(nameOf(0)).size(), root->getItemCount());
      });
}

TEST(RemovalTimeTest, OfTheFirstItemsOneByOne) {
  checkRemoval([](ParserGroup& root) { removeFew(root, root.getItemCount(), false); });
}

TEST(RemovalTimeTest, OfTheLastItemsOneByOne) {
  checkRemoval([](ParserGroup& root) { removeFew(root, root.getItemCount(), true); });
}

TEST(RemovalTimeTest, OfItemsAnywhereOneByOne) {
  checkRemoval([](ParserGroup& root) {
    std::mt19937 random(1);
    const unsigned long size = root.getItemCount();
    for (unsigned long i = 0; i < FEW; ++i)
      root.removeItem(nameOf(random() % size));
    EXPECT_LT(root.getItemCount(), size);
  });
}

TEST(RemovalTimeTest, OfItemsThatAreNotThere) {
  checkRemoval([](ParserGroup& root) {
    const unsigned long size = root.getItemCount();
    for (unsigned long i = 0; i < FEW; ++i)
      root.removeItem("other");
    EXPECT_EQ(root.getItemCount(), size);
  });
}

TEST(RemovalTimeTest, OfAllItemsByDetaching) {
  checkRemoval([](ParserGroup& root) {
    for (unsigned long i = root.getItemCount(); i > 0; --i) {
      const std::unique_ptr<ParserItem> item(root.getItem(i - 1));
      root.detachItem(i - 1);
    }
    root.removeItem("");
    EXPECT_EQ(root.getItemCount(), 0U);
  });
}

// --- Values --------------------------------------------------------------------------------------

TEST(RemovalTimeTest, OfValuesInOrder) {
  checkValueRemoval([](std::vector<unsigned long>&) {});
}

TEST(RemovalTimeTest, OfValuesFromTheLastToTheFirst) {
  checkValueRemoval([](auto& indices) { std::reverse(indices.begin(), indices.end()); });
}

TEST(RemovalTimeTest, OfValuesInAnyOrder) {
  checkValueRemoval(
      [](auto& indices) { std::shuffle(indices.begin(), indices.end(), std::mt19937(1)); });
}
