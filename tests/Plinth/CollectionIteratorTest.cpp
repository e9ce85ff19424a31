#include "Items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <string>
#include <vector>

using namespace TestSupport;

namespace {

/// A collection that leaves everything it may to the defaults.
Items viewPlainly(const Shelf& shelf) { return Items(new PlainCollection(&shelf.elements)); }

/// Walks with a range-based `for` and returns the names on the way.
std::string iterate(const Items& items) {
  std::string names;
  for (const Item* item : items)
    names += nameOf(item);
  return names;
}

}  // namespace

TEST(CollectionIteratorTest, ARangeBasedForWalksForwards) {
  const Shelf shelf("abc");
  EXPECT_EQ(iterate(viewPlainly(shelf)), "abc");
}

TEST(CollectionIteratorTest, ARangeBasedForWalksATemporary) {
  const Shelf shelf("abc");
  std::string names;
  for (const Item* item : viewPlainly(shelf))
    names += item->name;
  EXPECT_EQ(names, "abc");
}

TEST(CollectionIteratorTest, DoesNotEndAtANullElement) {
  const Shelf shelf("a-b");
  EXPECT_EQ(iterate(viewPlainly(shelf)), "a-b");
}

TEST(CollectionIteratorTest, OutlivesTheCollection) {
  const Shelf shelf("ab");
  Items::Iterator iterator = viewPlainly(shelf).begin();
  ++iterator;
  EXPECT_EQ(*iterator, shelf.elements[1]);
}

TEST(CollectionIteratorTest, IsNullAtTheEnd) { EXPECT_EQ(*Items().end(), nullptr); }

TEST(CollectionIteratorTest, MeetsTheEndBehindTheLastElement) {
  const Shelf shelf("a");
  const Items items = viewPlainly(shelf);
  Items::Iterator iterator = items.begin();
  EXPECT_TRUE(iterator != items.end());
  ++iterator;
  EXPECT_TRUE(iterator == items.end());
}

TEST(CollectionIteratorTest, EqualsAnotherAtTheSameElementOnly) {
  const Shelf shelf("ab");
  const Items items = viewPlainly(shelf);
  Items::Iterator iterator = items.begin();
  EXPECT_TRUE(iterator == items.begin());
  ++iterator;
  EXPECT_TRUE(iterator != items.begin());
}

TEST(CollectionIteratorTest, AnIncrementBehindReturnsTheElementBefore) {
  const Shelf shelf("ab");
  Items::Iterator iterator = viewPlainly(shelf).begin();
  EXPECT_EQ(*iterator++, shelf.elements[0]);
  EXPECT_EQ(*iterator, shelf.elements[1]);
}

TEST(CollectionIteratorTest, ACopyWalksOnByItself) {
  const Shelf shelf("ab");
  const Items::Iterator iterator = viewPlainly(shelf).begin();
  Items::Iterator copy(iterator);
  ++copy;
  EXPECT_EQ(*iterator, shelf.elements[0]);
}

TEST(CollectionIteratorTest, WalksOnFromALocator) {
  const Shelf shelf("abc");
  std::string names;
  for (Items::Iterator i(viewPlainly(shelf).getReverseLocator()); i != Items::Iterator(); ++i)
    names += nameOf(*i);
  EXPECT_EQ(names, "cba");
}

TEST(CollectionIteratorTest, FillsAVector) {
  const Shelf shelf("abc");
  const Items items = viewPlainly(shelf);
  EXPECT_EQ(std::vector<Item*>(items.begin(), items.end()), shelf.elements);
}

TEST(CollectionIteratorTest, ServesTheAlgorithms) {
  const Shelf shelf("aBcD");
  const Items items = viewPlainly(shelf);
  const auto isMarked = [](const Item* item) { return item->marked; };
  EXPECT_EQ(std::count_if(items.begin(), items.end(), isMarked), 2);
  EXPECT_EQ(nameOf(*std::find_if(items.begin(), items.end(), isMarked)), "B");
}

TEST(CollectionIteratorTest, MakesTheCollectionAnInputRange) {
  EXPECT_TRUE(std::input_iterator<Items::Iterator>);
  EXPECT_TRUE((std::ranges::input_range<Items> && std::ranges::common_range<Items>));
}
