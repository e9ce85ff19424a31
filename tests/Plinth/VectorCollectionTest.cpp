#include "Items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

using namespace TestSupport;

namespace {

Items viewAll(const Shelf& shelf) { return Items(new AllItems(&shelf.elements)); }

/// Walks at random and returns the names in the order of the alphabet.
std::string visitAtRandom(const Items& items) {
  std::string names = walk(items.getRandomLocator());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

// --- Look ----------------------------------------------------------------------------------------

TEST(VectorCollectionTest, GetCountIsTheSizeOfTheVector) {
  const Shelf shelf("abc"), bare("");
  EXPECT_EQ(viewAll(shelf).getCount(), 3U);
  EXPECT_EQ(viewAll(bare).getCount(), 0U);
}

TEST(VectorCollectionTest, GetFirstIsTheFirstElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewAll(shelf).getFirst(), shelf.elements[0]);
}

TEST(VectorCollectionTest, GetLastIsTheLastElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewAll(shelf).getLast(), shelf.elements[2]);
}

TEST(VectorCollectionTest, GetAtIsTheElementOfThatIndex) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewAll(shelf).getAt(0), shelf.elements[0]);
  EXPECT_EQ(viewAll(shelf).getAt(2), shelf.elements[2]);
}

TEST(VectorCollectionTest, GetAtIsNullBeyondTheLastElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewAll(shelf).getAt(3), nullptr);
}

TEST(VectorCollectionTest, AnswersNullForEveryElementOfAnEmptyVector) {
  const Shelf bare("");
  EXPECT_EQ(viewAll(bare).getFirst(), nullptr);
  EXPECT_EQ(viewAll(bare).getLast(), nullptr);
  EXPECT_EQ(viewAll(bare).getAt(0), nullptr);
}

TEST(VectorCollectionTest, IsEmptyOnlyWithoutElements) {
  const Shelf shelf("a"), bare("");
  EXPECT_FALSE(viewAll(shelf).isEmpty());
  EXPECT_TRUE(viewAll(bare).isEmpty());
}

TEST(VectorCollectionTest, HasCountIsTrueForTheSizeOnly) {
  const Shelf shelf("abc");
  EXPECT_FALSE(viewAll(shelf).hasCount(0));
  EXPECT_FALSE(viewAll(shelf).hasCount(2));
  EXPECT_TRUE(viewAll(shelf).hasCount(3));
  EXPECT_FALSE(viewAll(shelf).hasCount(4));
}

TEST(VectorCollectionTest, HasCountZeroOverAnEmptyVector) {
  const Shelf bare("");
  EXPECT_TRUE(viewAll(bare).hasCount(0));
}

TEST(VectorCollectionTest, TheLabelCountsTheElements) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewAll(shelf).getLabel(), "Collection (3)");
}

// --- Walk ----------------------------------------------------------------------------------------

TEST(VectorCollectionTest, TheLocatorWalksFromFirstToLast) {
  const Shelf shelf("abc");
  EXPECT_EQ(walk(viewAll(shelf).getLocator()), "abc");
}

TEST(VectorCollectionTest, TheReverseLocatorWalksFromLastToFirst) {
  const Shelf shelf("abc");
  EXPECT_EQ(walk(viewAll(shelf).getReverseLocator()), "cba");
}

TEST(VectorCollectionTest, TheRandomLocatorVisitsEachElementOnce) {
  const Shelf shelf("abcdefghij");
  EXPECT_EQ(visitAtRandom(viewAll(shelf)), "abcdefghij");
}

TEST(VectorCollectionTest, NoWalkOverAnEmptyVectorIsValid) {
  const Shelf bare("");
  EXPECT_FALSE(viewAll(bare).getLocator().isValid());
  EXPECT_FALSE(viewAll(bare).getReverseLocator().isValid());
  EXPECT_FALSE(viewAll(bare).getRandomLocator().isValid());
}

// --- Null elements -------------------------------------------------------------------------------

TEST(VectorCollectionNullTest, ANullElementIsCounted) {
  const Shelf shelf("-a-");
  EXPECT_EQ(viewAll(shelf).getCount(), 3U);
  EXPECT_TRUE(viewAll(shelf).hasCount(3));
}

TEST(VectorCollectionNullTest, ANullElementHasItsIndex) {
  const Shelf shelf("-a-");
  EXPECT_EQ(viewAll(shelf).getAt(0), nullptr);
  EXPECT_EQ(viewAll(shelf).getAt(1), shelf.elements[1]);
}

TEST(VectorCollectionNullTest, ANullElementCanBeTheFirstAndTheLast) {
  const Shelf shelf("-a-");
  EXPECT_EQ(viewAll(shelf).getFirst(), nullptr);
  EXPECT_EQ(viewAll(shelf).getLast(), nullptr);
}

TEST(VectorCollectionNullTest, AVectorOfNullElementsIsNotEmpty) {
  const Shelf shelf("--");
  EXPECT_FALSE(viewAll(shelf).isEmpty());
}

TEST(VectorCollectionNullTest, EveryWalkStopsAtEachNullElement) {
  const Shelf shelf("-a-b");
  EXPECT_EQ(walk(viewAll(shelf).getLocator()), "-a-b");
  EXPECT_EQ(walk(viewAll(shelf).getReverseLocator()), "b-a-");
  EXPECT_EQ(visitAtRandom(viewAll(shelf)), "--ab");
}

// --- View ----------------------------------------------------------------------------------------

TEST(VectorCollectionViewTest, AnElementAddedLaterAppears) {
  Shelf shelf("ab");
  const Items items = viewAll(shelf);
  shelf.add('c');
  EXPECT_EQ(items.getCount(), 3U);
  EXPECT_EQ(walk(items.getLocator()), "abc");
  EXPECT_EQ(walk(items.getReverseLocator()), "cba");
}

TEST(VectorCollectionViewTest, AnElementRemovedIsGone) {
  Shelf shelf("abc");
  const Items items = viewAll(shelf);
  shelf.elements.erase(shelf.elements.begin());
  EXPECT_EQ(walk(items.getLocator()), "bc");
}

TEST(VectorCollectionViewTest, AnElementEmptiedIsNull) {
  Shelf shelf("abc");
  const Items items = viewAll(shelf);
  shelf.elements[1] = nullptr;
  EXPECT_EQ(items.getAt(1), nullptr);
}

TEST(VectorCollectionViewTest, ACloneViewsTheSameVector) {
  Shelf shelf("ab");
  const AllItems driver(&shelf.elements);
  const Items clone(driver.getClone());
  shelf.add('c');
  EXPECT_EQ(walk(clone.getLocator()), "abc");
}

TEST(VectorCollectionViewTest, ACloneOutlivesTheOriginal) {
  const Shelf shelf("ab");
  auto original = std::make_unique<AllItems>(&shelf.elements);
  const Items clone(original->getClone());
  original.reset();
  EXPECT_EQ(walk(clone.getLocator()), "ab");
}

TEST(VectorCollectionViewTest, ALocatorOutlivesTheCollection) {
  const Shelf shelf("ab");
  auto items = std::make_unique<Items>(viewAll(shelf));
  const ItemLocator locator = items->getLocator();
  items.reset();
  EXPECT_EQ(walk(locator), "ab");
}
