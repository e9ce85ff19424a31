#include "Items.h"

#include <Plinth/VectorReverseLocator.h>

#include <gtest/gtest.h>

using namespace TestSupport;

namespace {

using LastToFirst = Plinth::VectorReverseLocator<Item*>::Driver;

}  // namespace

// --- VectorLocator -------------------------------------------------------------------------------

TEST(VectorLocatorTest, StandsAtTheFirstElementAtFirst) {
  const Shelf shelf("abc");
  EXPECT_EQ(FirstToLast(&shelf.elements).getCurrent(), shelf.elements[0]);
}

TEST(VectorLocatorTest, GoesOnByOneElement) {
  const Shelf shelf("abc");
  FirstToLast locator(&shelf.elements);
  locator.progress();
  EXPECT_EQ(locator.getCurrent(), shelf.elements[1]);
}

TEST(VectorLocatorTest, IsValidUntilItIsBehindTheLastElement) {
  const Shelf shelf("a");
  FirstToLast locator(&shelf.elements);
  EXPECT_TRUE(locator.isValid());
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(VectorLocatorTest, HasNoCurrentElementAtTheEnd) {
  const Shelf shelf("a");
  FirstToLast locator(&shelf.elements);
  locator.progress();
  EXPECT_EQ(locator.getCurrent(), nullptr);
}

TEST(VectorLocatorTest, StaysAtTheEnd) {
  const Shelf shelf("a");
  FirstToLast locator(&shelf.elements);
  locator.progress();
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(VectorLocatorTest, IsNotValidOverAnEmptyVector) {
  const Shelf shelf("");
  EXPECT_FALSE(FirstToLast(&shelf.elements).isValid());
  EXPECT_EQ(FirstToLast(&shelf.elements).getCurrent(), nullptr);
}

TEST(VectorLocatorTest, StopsAtNullElements) {
  const Shelf shelf("-a-");
  EXPECT_EQ(walk(ItemLocator(new FirstToLast(&shelf.elements))), "-a-");
}

TEST(VectorLocatorTest, SeesAnElementThatWasEmptiedMeanwhile) {
  Shelf shelf("ab");
  const FirstToLast locator(&shelf.elements);
  shelf.elements[0] = nullptr;
  EXPECT_TRUE(locator.isValid());
  EXPECT_EQ(locator.getCurrent(), nullptr);
}

TEST(VectorLocatorTest, ACloneStandsAtTheSameElementAndWalksOnByItself) {
  const Shelf shelf("abc");
  FirstToLast locator(&shelf.elements);
  locator.progress();
  const ItemLocator clone(locator.getClone());
  locator.progress();
  EXPECT_EQ(walk(clone), "bc");
}

// --- VectorReverseLocator ------------------------------------------------------------------------

TEST(VectorReverseLocatorTest, StandsAtTheLastElementAtFirst) {
  const Shelf shelf("abc");
  EXPECT_EQ(LastToFirst(&shelf.elements).getCurrent(), shelf.elements[2]);
}

TEST(VectorReverseLocatorTest, GoesBackByOneElement) {
  const Shelf shelf("abc");
  LastToFirst locator(&shelf.elements);
  locator.progress();
  EXPECT_EQ(locator.getCurrent(), shelf.elements[1]);
}

TEST(VectorReverseLocatorTest, VisitsEveryElementFromLastToFirst) {
  const Shelf shelf("abc");
  EXPECT_EQ(walk(ItemLocator(new LastToFirst(&shelf.elements))), "cba");
}

TEST(VectorReverseLocatorTest, HasNoCurrentElementAtTheBeginning) {
  const Shelf shelf("a");
  LastToFirst locator(&shelf.elements);
  locator.progress();
  EXPECT_FALSE(locator.isValid());
  EXPECT_EQ(locator.getCurrent(), nullptr);
}

TEST(VectorReverseLocatorTest, StaysAtTheBeginning) {
  const Shelf shelf("a");
  LastToFirst locator(&shelf.elements);
  locator.progress();
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(VectorReverseLocatorTest, IsNotValidOverAnEmptyVector) {
  const Shelf shelf("");
  EXPECT_FALSE(LastToFirst(&shelf.elements).isValid());
  EXPECT_EQ(LastToFirst(&shelf.elements).getCurrent(), nullptr);
}

TEST(VectorReverseLocatorTest, StopsAtNullElements) {
  const Shelf shelf("-ab-");
  EXPECT_EQ(walk(ItemLocator(new LastToFirst(&shelf.elements))), "-ba-");
}

TEST(VectorReverseLocatorTest, ACloneStandsAtTheSameElementAndWalksOnByItself) {
  const Shelf shelf("abc");
  LastToFirst locator(&shelf.elements);
  locator.progress();
  const ItemLocator clone(locator.getClone());
  locator.progress();
  EXPECT_EQ(walk(clone), "ba");
}
