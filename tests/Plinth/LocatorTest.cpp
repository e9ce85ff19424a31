#include "Items.h"

#include <Plinth/RandomLocator.h>
#include <Plinth/ReverseLocator.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using namespace TestSupport;

namespace {

using ListBackwards = Plinth::ReverseLocator<Item*>::Driver;
using Shuffled = Plinth::RandomLocator<Item*>::Driver;

class Labelled : public PlainLocator {
 public:
  using PlainLocator::PlainLocator;
  std::string _getLabel() const override { return "somewhere"; }
};

}  // namespace

// --- Handle --------------------------------------------------------------------------------------

TEST(LocatorTest, AnEmptyOneIsNotValid) { EXPECT_FALSE(ItemLocator().isValid()); }

TEST(LocatorTest, AnEmptyOneHasNoCurrentElement) { EXPECT_EQ(ItemLocator().getCurrent(), nullptr); }

TEST(LocatorTest, AnEmptyOneStaysInvalidWhenItGoesOn) {
  ItemLocator empty;
  empty.progress();
  EXPECT_FALSE(empty.isValid());
}

TEST(LocatorTest, ANullDriverMakesAnEmptyOne) { EXPECT_FALSE(ItemLocator(nullptr).isValid()); }

TEST(LocatorTest, IsMadeFromADriverOnlyExplicitly) {
  EXPECT_FALSE((std::is_convertible_v<ItemLocator::Driver*, ItemLocator>));
  EXPECT_TRUE((std::is_constructible_v<ItemLocator, ItemLocator::Driver*>));
}

TEST(LocatorTest, WalksWithItsDriver) {
  const Shelf shelf("abc");
  EXPECT_EQ(walk(ItemLocator(new PlainLocator(&shelf.elements))), "abc");
}

TEST(LocatorTest, DestroysItsDriver) {
  const Shelf shelf("a");
  const Token token = makeToken();
  { const ItemLocator locator(new PlainLocator(&shelf.elements, token)); }
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(LocatorTest, ReleaseHandsTheDriverOverAndLeavesAnEmptyOne) {
  const Shelf shelf("a");
  auto* const driver = new PlainLocator(&shelf.elements);
  ItemLocator locator(driver);
  const std::unique_ptr<ItemLocator::Driver> released(locator.release());
  EXPECT_EQ(released.get(), driver);
  EXPECT_FALSE(locator.isValid());
}

TEST(LocatorTest, TheLabelIsThatOfTheDriver) {
  const Shelf shelf("a");
  EXPECT_EQ(ItemLocator(new Labelled(&shelf.elements)).getLabel(), "somewhere");
}

TEST(LocatorTest, TheLabelTellsByDefaultWhetherItIsValid) {
  const Shelf shelf("a");
  ItemLocator locator(new PlainLocator(&shelf.elements));
  EXPECT_EQ(locator.getLabel(), "Locator (valid)");
  locator.progress();
  EXPECT_EQ(locator.getLabel(), "Locator (invalid)");
}

TEST(LocatorTest, TheLabelOfAnEmptyOneIsThatOfAnInvalidOne) {
  EXPECT_EQ(ItemLocator().getLabel(), "Locator (invalid)");
}

TEST(LocatorDriverTest, TheOperationsStandInTheirSlots) {
  using Driver = ItemLocator::Driver;
  EXPECT_EQ(slotOf(&Driver::getClone), 2U);
  EXPECT_EQ(slotOf(&Driver::getCurrent), 3U);
  EXPECT_EQ(slotOf(&Driver::_getLabel), 4U);
  EXPECT_EQ(slotOf(&Driver::isValid), 5U);
  EXPECT_EQ(slotOf(&Driver::progress), 6U);
}

// --- Copies --------------------------------------------------------------------------------------

TEST(LocatorCopyTest, ClonesTheDriver) {
  const Shelf shelf("a");
  const Token token = makeToken();
  const ItemLocator locator(new PlainLocator(&shelf.elements, token));
  const ItemLocator copy(locator);
  EXPECT_EQ(countDrivers(token), 2);
}

TEST(LocatorCopyTest, StandsAtTheSameElement) {
  const Shelf shelf("abc");
  ItemLocator locator(new FirstToLast(&shelf.elements));
  locator.progress();
  EXPECT_EQ(walk(ItemLocator(locator)), "bc");
}

TEST(LocatorCopyTest, WalksOnByItself) {
  const Shelf shelf("abc");
  const ItemLocator locator(new FirstToLast(&shelf.elements));
  ItemLocator copy(locator);
  copy.progress();
  EXPECT_EQ(walk(locator), "abc");
}

TEST(LocatorCopyTest, OfAnEmptyOneIsEmpty) {
  const ItemLocator empty;
  ItemLocator copy(empty);
  EXPECT_EQ(copy.release(), nullptr);
}

TEST(LocatorCopyTest, AssigningReplacesTheDriver) {
  const Shelf shelf("a"), other("b");
  const Token token = makeToken();
  ItemLocator locator(new PlainLocator(&shelf.elements, token));
  locator = ItemLocator(new FirstToLast(&other.elements));
  EXPECT_EQ(walk(locator), "b");
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(LocatorCopyTest, AssigningACopyOfAnEmptyOneDestroysTheDriver) {
  const Shelf shelf("a");
  const Token token = makeToken();
  const ItemLocator empty;
  ItemLocator locator(new PlainLocator(&shelf.elements, token));
  locator = empty;
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(LocatorCopyTest, AssigningToItselfChangesNothing) {
  const Shelf shelf("ab");
  ItemLocator locator(new FirstToLast(&shelf.elements));
  const ItemLocator& same = locator;
  locator = same;
  EXPECT_EQ(walk(locator), "ab");
}

TEST(LocatorCopyTest, MovingMovesTheDriverItself) {
  const Shelf shelf("a");
  const Token token = makeToken();
  ItemLocator locator(new PlainLocator(&shelf.elements, token));
  const ItemLocator moved(std::move(locator));
  EXPECT_EQ(countDrivers(token), 1);
  EXPECT_FALSE(locator.isValid());
}

TEST(LocatorCopyTest, MovingNeverThrows) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<ItemLocator>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<ItemLocator>);
}

// --- ReverseLocator ------------------------------------------------------------------------------

TEST(ReverseLocatorTest, IsNotValidWithoutElements) {
  EXPECT_FALSE(ListBackwards().isValid());
  EXPECT_EQ(ListBackwards().getCurrent(), nullptr);
}

TEST(ReverseLocatorTest, NothingHappensWhenItGoesOnWithoutElements) {
  ListBackwards locator;
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(ReverseLocatorTest, VisitsWhatWasAddedLastAtFirst) {
  const Shelf shelf("abc");
  auto* const driver = new ListBackwards;
  const ItemLocator locator(driver);
  for (Item* const item : shelf.elements)
    driver->addFront(item);
  EXPECT_EQ(walk(locator), "cba");
}

TEST(ReverseLocatorTest, IsValidAtANullElement) {
  ListBackwards locator;
  locator.addFront(nullptr);
  EXPECT_TRUE(locator.isValid());
}

TEST(ReverseLocatorTest, ACloneWalksOnByItself) {
  const Shelf shelf("ab");
  ListBackwards locator;
  locator.addFront(shelf.elements[0]);
  locator.addFront(shelf.elements[1]);
  const ItemLocator clone(locator.getClone());
  locator.progress();
  EXPECT_EQ(walk(clone), "ba");
}

// --- RandomLocator -------------------------------------------------------------------------------

TEST(RandomLocatorTest, IsNotValidWithoutElements) {
  EXPECT_FALSE(Shuffled().isValid());
  EXPECT_EQ(Shuffled().getCurrent(), nullptr);
}

TEST(RandomLocatorTest, NothingHappensWhenItGoesOnWithoutElements) {
  Shuffled locator;
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(RandomLocatorTest, VisitsTheSmallestFirstNumberAtFirst) {
  const Shelf shelf("abc");
  Shuffled locator;
  locator.add(2, 1, shelf.elements[0]);
  locator.add(3, 0, shelf.elements[1]);
  locator.add(1, 2, shelf.elements[2]);
  EXPECT_EQ(walk(ItemLocator(locator.getClone())), "cab");
}

TEST(RandomLocatorTest, TheSecondNumberDecidesBetweenEqualFirstOnes) {
  const Shelf shelf("ab");
  Shuffled locator;
  locator.add(1, 2, shelf.elements[0]);
  locator.add(1, 1, shelf.elements[1]);
  EXPECT_EQ(walk(ItemLocator(locator.getClone())), "ba");
}

TEST(RandomLocatorTest, KeepsEveryElementThatDrewTheSamePair) {
  const Shelf shelf("abc");
  Shuffled locator;
  for (Item* const item : shelf.elements)
    locator.add(1, 1, item);
  EXPECT_EQ(walk(ItemLocator(locator.getClone())), "abc");
}

TEST(RandomLocatorTest, IsValidAtANullElement) {
  Shuffled locator;
  locator.add(1, 1, nullptr);
  EXPECT_TRUE(locator.isValid());
}

TEST(RandomLocatorTest, ACloneWalksOnByItselfInTheSameOrder) {
  const Shelf shelf("ab");
  Shuffled locator;
  locator.add(2, 0, shelf.elements[0]);
  locator.add(1, 0, shelf.elements[1]);
  const ItemLocator clone(locator.getClone());
  locator.progress();
  EXPECT_EQ(walk(clone), "ba");
}
