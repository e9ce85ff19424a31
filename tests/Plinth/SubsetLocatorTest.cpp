#include "Items.h"

#include <Plinth/SubsetLocator.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

using Plinth::Expression;
using namespace TestSupport;

namespace {

using Subset = Plinth::SubsetLocator<Item*, bool>::Driver;
using Watched = FunctionPredicate<bool>;

/// Walks the marked items of the shelf.
ItemLocator walkMarked(const Shelf& shelf) {
  return ItemLocator(new Subset(new FirstToLast(&shelf.elements), new IsMarked(&Item::isMarked)));
}

/// Returns the name of the current element after as many steps.
std::string nameAfter(int steps, ItemLocator locator) {
  for (int step = 0; step < steps; ++step)
    locator.progress();
  return nameOf(locator.getCurrent());
}

}  // namespace

// --- SubsetLocator -------------------------------------------------------------------------------

TEST(SubsetLocatorTest, StandsAtTheFirstAcceptedElementAtFirst) {
  const Shelf shelf("abCdE");
  EXPECT_EQ(nameOf(walkMarked(shelf).getCurrent()), "C");
}

TEST(SubsetLocatorTest, StartsWhereTheInnerLocatorStands) {
  const Shelf shelf("AbCdE");
  auto inner = std::make_unique<FirstToLast>(&shelf.elements);
  inner->progress();
  const ItemLocator locator(new Subset(inner.release(), new IsMarked(&Item::isMarked)));
  EXPECT_EQ(walk(locator), "CE");
}

TEST(SubsetLocatorTest, LeavesAnAcceptedElementWhenItGoesOn) {
  const Shelf shelf("AB");
  EXPECT_EQ(nameAfter(1, walkMarked(shelf)), "B");
}

TEST(SubsetLocatorTest, GoesOnToTheNextAcceptedElement) {
  const Shelf shelf("AbcD");
  EXPECT_EQ(nameAfter(1, walkMarked(shelf)), "D");
}

TEST(SubsetLocatorTest, EndsBehindTheLastAcceptedElement) {
  const Shelf shelf("Abc");
  ItemLocator locator = walkMarked(shelf);
  locator.progress();
  EXPECT_FALSE(locator.isValid());
  EXPECT_EQ(locator.getCurrent(), nullptr);
}

TEST(SubsetLocatorTest, StaysAtTheEnd) {
  const Shelf shelf("A");
  ItemLocator locator = walkMarked(shelf);
  locator.progress();
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(SubsetLocatorTest, IsNotValidWhenNothingIsAccepted) {
  const Shelf shelf("abc");
  EXPECT_FALSE(walkMarked(shelf).isValid());
}

TEST(SubsetLocatorTest, IsNotValidWithoutALocator) {
  Subset locator(nullptr, new Watched(acceptAll));
  EXPECT_FALSE(locator.isValid());
  EXPECT_EQ(locator.getCurrent(), nullptr);
}

TEST(SubsetLocatorTest, NothingHappensWhenItGoesOnWithoutALocator) {
  Subset locator(nullptr, new Watched(acceptAll));
  locator.progress();
  EXPECT_FALSE(locator.isValid());
}

TEST(SubsetLocatorTest, RunsToTheEndWithoutAPredicate) {
  const Shelf shelf("abc");
  const Token steps = makeToken();
  const Subset locator(new PlainLocator(&shelf.elements, steps), nullptr);
  EXPECT_FALSE(locator.isValid());
  EXPECT_EQ(*steps, 3);
}

TEST(SubsetLocatorTest, AsksThePredicateOncePerElement) {
  const Shelf shelf("aBcDe");
  const Token asked = makeToken();
  const auto isMarked = [](const Item* item) { return item->marked; };
  ItemLocator locator(new Subset(new FirstToLast(&shelf.elements), new Watched(isMarked, asked)));
  EXPECT_EQ(walk(std::move(locator)), "BD");
  EXPECT_EQ(*asked, 5);
}

TEST(SubsetLocatorTest, PassesOverNullElements) {
  const Shelf shelf("-A--b-C-");
  EXPECT_EQ(walk(walkMarked(shelf)), "AC");
}

TEST(SubsetLocatorTest, PassesOverNullElementsWhereThePredicateIsANegation) {
  const Shelf shelf("-A--b-c-");
  auto* const isPlain = new Not<bool>(new IsMarked(&Item::isMarked));
  EXPECT_EQ(walk(ItemLocator(new Subset(new FirstToLast(&shelf.elements), isPlain))), "bc");
}

TEST(SubsetLocatorTest, DoesNotAskThePredicateAboutNullElements) {
  const Shelf shelf("-a-");
  const Token asked = makeToken();
  EXPECT_EQ(walk(ItemLocator(
                new Subset(new FirstToLast(&shelf.elements), new Watched(acceptAll, asked)))),
            "a");
  EXPECT_EQ(*asked, 1);
}

TEST(SubsetLocatorTest, PassesOverAnElementThatIsEmptiedBeforeTheWalkComesToIt) {
  Shelf shelf("ABC");
  const ItemLocator locator = walkMarked(shelf);
  shelf.elements[1] = nullptr;
  EXPECT_EQ(walk(locator), "AC");
}

TEST(SubsetLocatorTest, StaysAtAnElementThatIsNoLongerAccepted) {
  Shelf shelf("AB");
  const ItemLocator locator = walkMarked(shelf);
  shelf.elements[0]->marked = false;
  EXPECT_EQ(nameOf(locator.getCurrent()), "A");
}

TEST(SubsetLocatorTest, ACloneStaysThereToo) {
  Shelf shelf("AB");
  const ItemLocator locator = walkMarked(shelf);
  shelf.elements[0]->marked = false;
  EXPECT_EQ(walk(locator), "AB");
}

TEST(SubsetLocatorTest, ACloneWalksOnByItself) {
  const Shelf shelf("AbCdE");
  const ItemLocator locator = walkMarked(shelf);
  ItemLocator clone(locator);
  clone.progress();
  EXPECT_EQ(walk(clone), "CE");
  EXPECT_EQ(walk(locator), "ACE");
}

TEST(SubsetLocatorTest, ClonesAndDestroysTheLocatorAndThePredicate) {
  const Shelf shelf("a");
  const Token inner = makeToken(), predicate = makeToken();
  {
    const ItemLocator locator(
        new Subset(new PlainLocator(&shelf.elements, inner), new Watched(acceptAll, predicate)));
    const ItemLocator clone(locator);
    EXPECT_EQ(countDrivers(inner), 2);
    EXPECT_EQ(countDrivers(predicate), 2);
  }
  EXPECT_EQ(countDrivers(inner), 0);
  EXPECT_EQ(countDrivers(predicate), 0);
}

TEST(SubsetLocatorTest, DestroysTheLocatorAndThePredicateWhenThatThrows) {
  const Shelf shelf("a");
  const Token inner = makeToken(), predicate = makeToken();
  const auto fail = [](const Item*) -> bool { throw std::runtime_error("no answer"); };
  EXPECT_THROW(Subset(new PlainLocator(&shelf.elements, inner), new Watched(fail, predicate)),
               std::runtime_error);
  EXPECT_EQ(countDrivers(inner), 0);
  EXPECT_EQ(countDrivers(predicate), 0);
}

TEST(SubsetLocatorTest, TakesAPredicateWithADatum) {
  using Matching = Plinth::SubsetLocator<Item*, Expression>::Driver;
  const Shelf shelf("abcab");
  auto* const isMatching = new IsMatching(&Item::isMatching, Expression("[bc]"));
  EXPECT_EQ(walk(ItemLocator(new Matching(new FirstToLast(&shelf.elements), isMatching))), "bcb");
}
