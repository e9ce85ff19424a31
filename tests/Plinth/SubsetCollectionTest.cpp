#include "Items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

using Plinth::Expression;
using namespace TestSupport;

namespace {

using Watched = FunctionPredicate<bool>;

Items::Driver* viewAll(const Shelf& shelf) { return new AllItems(&shelf.elements); }

Items selectMarked(const Shelf& shelf) {
  return Items(new SomeItems(viewAll(shelf), new IsMarked(&Item::isMarked)));
}

Items selectPlain(const Shelf& shelf) {
  return Items(new SomeItems(viewAll(shelf), new Not<bool>(new IsMarked(&Item::isMarked))));
}

Items selectMatching(Items items, const std::string& pattern) {
  auto* const isMatching = new IsMatching(&Item::isMatching, Expression(pattern));
  return Items(new MatchingItems(items.release(), isMatching));
}

Items selectNotMatching(Items items, const std::string& pattern) {
  auto* const isMatching = new IsMatching(&Item::isMatching, Expression(pattern));
  return Items(new SomeItems(items.release(), new Not<Expression>(isMatching)));
}

std::string walkForwards(const Items& items) { return walk(items.getLocator()); }

/// Walks at random and returns the names in the order of the alphabet.
std::string visitAtRandom(const Items& items) {
  std::string names = walk(items.getRandomLocator());
  std::sort(names.begin(), names.end());
  return names;
}

/// Walks forwards where it should walk backwards.
class OneWay : public PlainCollection {
 public:
  using PlainCollection::PlainCollection;
  ItemLocator::Driver* getReverseLocator() const override { return getLocator(); }
};

}  // namespace

// --- Look ----------------------------------------------------------------------------------------

TEST(SubsetCollectionTest, GetCountCountsTheAcceptedElements) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getCount(), 2U);
}

TEST(SubsetCollectionTest, GetFirstIsTheFirstAcceptedElement) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getFirst(), shelf.elements[1]);
}

TEST(SubsetCollectionTest, GetLastIsTheLastAcceptedElement) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getLast(), shelf.elements[3]);
}

TEST(SubsetCollectionTest, GetAtCountsAcceptedElementsOnly) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getAt(0), shelf.elements[1]);
  EXPECT_EQ(selectMarked(shelf).getAt(1), shelf.elements[3]);
}

TEST(SubsetCollectionTest, GetAtIsNullBeyondTheLastAcceptedElement) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getAt(2), nullptr);
}

TEST(SubsetCollectionTest, HasCountIsTrueForTheAcceptedElementsOnly) {
  const Shelf shelf("aBcDe");
  EXPECT_FALSE(selectMarked(shelf).hasCount(1));
  EXPECT_TRUE(selectMarked(shelf).hasCount(2));
  EXPECT_FALSE(selectMarked(shelf).hasCount(3));
}

TEST(SubsetCollectionTest, IsEmptyWhenNothingIsAccepted) {
  const Shelf shelf("abc");
  EXPECT_TRUE(selectMarked(shelf).isEmpty());
  EXPECT_EQ(selectMarked(shelf).getCount(), 0U);
  EXPECT_TRUE(selectMarked(shelf).hasCount(0));
}

TEST(SubsetCollectionTest, AnswersNullForEveryElementWhenNothingIsAccepted) {
  const Shelf shelf("abc");
  EXPECT_EQ(selectMarked(shelf).getFirst(), nullptr);
  EXPECT_EQ(selectMarked(shelf).getLast(), nullptr);
  EXPECT_EQ(selectMarked(shelf).getAt(0), nullptr);
}

TEST(SubsetCollectionTest, IsNotEmptyWhenOnlyTheLastElementIsAccepted) {
  const Shelf shelf("abC");
  EXPECT_FALSE(selectMarked(shelf).isEmpty());
}

TEST(SubsetCollectionTest, TheLabelCountsTheAcceptedElements) {
  const Shelf shelf("aBcDe");
  EXPECT_EQ(selectMarked(shelf).getLabel(), "Collection (2)");
}

// --- Walk ----------------------------------------------------------------------------------------

TEST(SubsetCollectionTest, TheLocatorVisitsTheAcceptedElementsInOrder) {
  const Shelf shelf("aBcDeF");
  EXPECT_EQ(walk(selectMarked(shelf).getLocator()), "BDF");
}

TEST(SubsetCollectionTest, TheReverseLocatorVisitsThemFromLastToFirst) {
  const Shelf shelf("aBcDeF");
  EXPECT_EQ(walk(selectMarked(shelf).getReverseLocator()), "FDB");
}

TEST(SubsetCollectionTest, TheRandomLocatorVisitsEachOfThemOnce) {
  const Shelf shelf("aBCdEFgH");
  EXPECT_EQ(visitAtRandom(selectMarked(shelf)), "BCEFH");
}

TEST(SubsetCollectionTest, ARangeBasedForVisitsThem) {
  const Shelf shelf("aBcD");
  std::string names;
  for (const Item* item : selectMarked(shelf))
    names += item->name;
  EXPECT_EQ(names, "BD");
}

TEST(SubsetCollectionTest, WalksBackwardsAsTheInnerCollectionDoes) {
  const Shelf shelf("ABc");
  const Items items(new SomeItems(new OneWay(&shelf.elements), new IsMarked(&Item::isMarked)));
  EXPECT_EQ(walk(items.getReverseLocator()), "AB");
}

// --- Null elements -------------------------------------------------------------------------------

TEST(SubsetCollectionNullTest, EveryWalkPassesOverNullElements) {
  const Shelf shelf("-A-b-C-");
  EXPECT_EQ(walk(selectMarked(shelf).getLocator()), "AC");
  EXPECT_EQ(walk(selectMarked(shelf).getReverseLocator()), "CA");
  EXPECT_EQ(visitAtRandom(selectMarked(shelf)), "AC");
}

TEST(SubsetCollectionNullTest, EveryWalkOfANegationPassesOverNullElements) {
  const Shelf shelf("-a-B-c-");
  EXPECT_EQ(walk(selectPlain(shelf).getLocator()), "ac");
  EXPECT_EQ(walk(selectPlain(shelf).getReverseLocator()), "ca");
  EXPECT_EQ(visitAtRandom(selectPlain(shelf)), "ac");
}

TEST(SubsetCollectionNullTest, NullElementsAreNeitherCountedNorIndexed) {
  const Shelf shelf("-a-b-");
  EXPECT_EQ(selectPlain(shelf).getCount(), 2U);
  EXPECT_EQ(selectPlain(shelf).getAt(1), shelf.elements[3]);
  EXPECT_TRUE(selectPlain(shelf).hasCount(2));
}

TEST(SubsetCollectionNullTest, TheFirstAndTheLastAreNotNullElements) {
  const Shelf shelf("-a-b-");
  EXPECT_EQ(selectPlain(shelf).getFirst(), shelf.elements[1]);
  EXPECT_EQ(selectPlain(shelf).getLast(), shelf.elements[3]);
}

TEST(SubsetCollectionNullTest, ASubsetOfNullElementsIsEmpty) {
  const Shelf shelf("--");
  EXPECT_TRUE(Items(new SomeItems(viewAll(shelf), new Not<bool>(nullptr))).isEmpty());
}

TEST(SubsetCollectionNullTest, AnElementThatIsEmptiedLaterIsPassedOver) {
  Shelf shelf("abc");
  const Items items = selectPlain(shelf);
  shelf.elements[1] = nullptr;
  EXPECT_EQ(walkForwards(items), "ac");
}

TEST(SubsetCollectionNullTest, ElementsMayBeEmptiedByTheLoopThatWalksThem) {
  Shelf shelf("abc");
  std::string names;
  for (const Item* item : selectPlain(shelf)) {
    names += item->name;
    std::replace(shelf.elements.begin(), shelf.elements.end(), const_cast<Item*>(item),
                 static_cast<Item*>(nullptr));
  }
  EXPECT_EQ(names, "abc");
}

// --- View ----------------------------------------------------------------------------------------

TEST(SubsetCollectionViewTest, AnElementAddedLaterAppearsInTheNextWalk) {
  Shelf shelf("aB");
  const Items items = selectMarked(shelf);
  shelf.add('C');
  shelf.add('d');
  EXPECT_EQ(walkForwards(items), "BC");
}

TEST(SubsetCollectionViewTest, TheElementsAreTestedAnewByEachWalk) {
  Shelf shelf("aB");
  const Items items = selectMarked(shelf);
  shelf.elements[0]->marked = true;
  shelf.elements[1]->marked = false;
  EXPECT_EQ(walkForwards(items), "a");
}

TEST(SubsetCollectionViewTest, ALocatorOutlivesTheCollection) {
  const Shelf shelf("aBcD");
  auto items = std::make_unique<Items>(selectMarked(shelf));
  const ItemLocator locator = items->getLocator();
  items.reset();
  EXPECT_EQ(walk(locator), "BD");
}

TEST(SubsetCollectionViewTest, ACopyViewsTheSameVector) {
  Shelf shelf("aB");
  const Items items = selectMarked(shelf);
  const Items copy(items);
  shelf.add('C');
  EXPECT_EQ(walkForwards(copy), "BC");
}

// --- Missing parts -------------------------------------------------------------------------------

TEST(SubsetCollectionMissingTest, AcceptsNothingWithoutAPredicate) {
  const Shelf shelf("aBc");
  const Items items(new SomeItems(viewAll(shelf), nullptr));
  EXPECT_TRUE(items.isEmpty());
  EXPECT_EQ(items.getCount(), 0U);
}

TEST(SubsetCollectionMissingTest, NoWalkIsValidWithoutAPredicate) {
  const Shelf shelf("aBc");
  const Items items(new SomeItems(viewAll(shelf), nullptr));
  EXPECT_FALSE(items.getLocator().isValid());
  EXPECT_FALSE(items.getReverseLocator().isValid());
  EXPECT_FALSE(items.getRandomLocator().isValid());
}

TEST(SubsetCollectionMissingTest, IsEmptyWithoutACollection) {
  const Items items(new SomeItems(nullptr, new Watched(acceptAll)));
  EXPECT_TRUE(items.isEmpty());
  EXPECT_EQ(items.getLast(), nullptr);
}

TEST(SubsetCollectionMissingTest, IsEmptyWhereTheInnerCollectionMakesNoLocator) {
  const Items items(new SomeItems(new PlainCollection(nullptr), new Watched(acceptAll)));
  EXPECT_TRUE(items.isEmpty());
}

TEST(SubsetCollectionMissingTest, ACopyWithoutPartsIsEmptyToo) {
  const Items items(new SomeItems(nullptr, nullptr));
  const Items copy(items);
  EXPECT_TRUE(copy.isEmpty());
}

// --- Ownership -----------------------------------------------------------------------------------

TEST(SubsetCollectionOwnerTest, DestroysTheCollectionAndThePredicate) {
  const Token inner = makeToken(), predicate = makeToken();
  {
    const Items items(
        new SomeItems(new PlainCollection(nullptr, inner), new Watched(acceptAll, predicate)));
  }
  EXPECT_EQ(countDrivers(inner), 0);
  EXPECT_EQ(countDrivers(predicate), 0);
}

TEST(SubsetCollectionOwnerTest, ACopyClonesTheCollectionAndThePredicate) {
  const Token inner = makeToken(), predicate = makeToken();
  const Items items(
      new SomeItems(new PlainCollection(nullptr, inner), new Watched(acceptAll, predicate)));
  const Items copy(items);
  EXPECT_EQ(countDrivers(inner), 2);
  EXPECT_EQ(countDrivers(predicate), 2);
}

TEST(SubsetCollectionOwnerTest, ALocatorHasAPredicateOfItsOwnWhileItLives) {
  const Shelf shelf("a");
  const Token predicate = makeToken();
  const Items items(new SomeItems(viewAll(shelf), new Watched(acceptAll, predicate)));
  {
    const ItemLocator locator = items.getLocator();
    EXPECT_EQ(countDrivers(predicate), 2);
  }
  EXPECT_EQ(countDrivers(predicate), 1);
}

// --- Subsets of subsets --------------------------------------------------------------------------

TEST(SubsetCollectionNestedTest, AcceptsWhatEveryPredicateAccepts) {
  const Shelf shelf("aBcDBd");
  EXPECT_EQ(walkForwards(selectMatching(selectMarked(shelf), "[BbD]")), "BDB");
}

TEST(SubsetCollectionNestedTest, WalksBackwardsAndAtRandom) {
  const Shelf shelf("-aB-cDB-");
  const Items items = selectMatching(selectMarked(shelf), "[BbD]");
  EXPECT_EQ(walk(items.getReverseLocator()), "BDB");
  EXPECT_EQ(visitAtRandom(items), "BBD");
}

TEST(SubsetCollectionNestedTest, ThePatternAndItsNegationDivideTheElementsInOrder) {
  const Shelf shelf("acKbdca");
  EXPECT_EQ(walkForwards(selectMatching(selectPlain(shelf), "[ab]")), "aba");
  EXPECT_EQ(walkForwards(selectNotMatching(selectPlain(shelf), "[ab]")), "cdc");
}

TEST(SubsetCollectionNestedTest, APatternThatNothingMatchesLeavesNothing) {
  const Shelf shelf("abc");
  const Items items = selectMatching(selectPlain(shelf), "^x$");
  EXPECT_TRUE(items.isEmpty());
  EXPECT_EQ(items.getFirst(), nullptr);
  EXPECT_TRUE(items.hasCount(0));
}

TEST(SubsetCollectionNestedTest, AnElementAddedLaterAppearsInTheNextWalk) {
  Shelf shelf("aB");
  const Items items = selectNotMatching(selectPlain(shelf), "[x-z]");
  shelf.add('y');
  shelf.add('c');
  EXPECT_EQ(walkForwards(items), "ac");
}

TEST(SubsetCollectionNestedTest, ACopyClonesTheWholeChain) {
  const Token inner = makeToken();
  Items items(new PlainCollection(nullptr, inner));
  for (int depth = 0; depth < 3; ++depth)
    items = selectMatching(std::move(items), "a");
  const Items copy(items);
  EXPECT_EQ(countDrivers(inner), 2);
}

TEST(SubsetCollectionNestedTest, AChainOfAThousandSubsetsWalksAsOne) {
  const Shelf shelf("-aB-c");
  Items items = selectPlain(shelf);
  for (int depth = 0; depth < 1000; ++depth)
    items = selectMatching(std::move(items), "[ac]");
  EXPECT_EQ(walkForwards(items), "ac");
  EXPECT_EQ(items.getCount(), 2U);
}
