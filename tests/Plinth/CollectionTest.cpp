#include "Items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using namespace TestSupport;

namespace {

/// A collection that leaves everything it may to the defaults.
Items viewPlainly(const Shelf& shelf) { return Items(new PlainCollection(&shelf.elements)); }

/// A collection whose driver makes no locator.
Items viewNothing() { return Items(new PlainCollection(nullptr)); }

/// Walks with a range-based `for` and returns the names on the way.
std::string iterate(const Items& items) {
  std::string names;
  for (const Item* item : items)
    names += nameOf(item);
  return names;
}

std::string sorted(std::string names) {
  std::sort(names.begin(), names.end());
  return names;
}

class Labelled : public PlainCollection {
 public:
  using PlainCollection::PlainCollection;
  std::string _getLabel() const override { return "a shelf"; }
};

class SaysEmpty : public PlainCollection {
 public:
  using PlainCollection::PlainCollection;
  bool isEmpty() const override { return true; }
};

class CountsSeven : public PlainCollection {
 public:
  using PlainCollection::PlainCollection;
  unsigned long getCount() const override { return 7; }
};

/// Walks forwards where it should walk backwards.
class OneWay : public PlainCollection {
 public:
  using PlainCollection::PlainCollection;
  ItemLocator::Driver* getReverseLocator() const override { return getLocator(); }
};

/// Answers every question with a sign of its own.
class Overridden : public PlainCollection {
 public:
  explicit Overridden(Item* sign) : PlainCollection(nullptr), item(sign) {}
  unsigned long getCount() const override { return 7; }
  Item* getFirst() const override { return item; }
  Item* getLast() const override { return item; }
  Item* getAt(unsigned long index) const override { return index == 9 ? item : nullptr; }
  bool isEmpty() const override { return true; }
  bool hasCount(unsigned long count) const override { return count == 8; }

 private:
  Item* item;
};

}  // namespace

// --- Empty handle --------------------------------------------------------------------------------

TEST(CollectionEmptyTest, HasNoElements) {
  EXPECT_EQ(Items().getCount(), 0U);
  EXPECT_TRUE(Items().isEmpty());
}

TEST(CollectionEmptyTest, AnswersNullForEveryElement) {
  EXPECT_EQ(Items().getFirst(), nullptr);
  EXPECT_EQ(Items().getLast(), nullptr);
  EXPECT_EQ(Items().getAt(0), nullptr);
}

TEST(CollectionEmptyTest, HasTheCountZeroAndNoOther) {
  EXPECT_TRUE(Items().hasCount(0));
  EXPECT_FALSE(Items().hasCount(1));
}

TEST(CollectionEmptyTest, ItsLocatorsAreNotValid) {
  EXPECT_FALSE(Items().getLocator().isValid());
  EXPECT_FALSE(Items().getReverseLocator().isValid());
  EXPECT_FALSE(Items().getRandomLocator().isValid());
}

TEST(CollectionEmptyTest, ItsWalkEndsAtOnce) { EXPECT_TRUE(Items().begin() == Items().end()); }

TEST(CollectionEmptyTest, ItsLabelCountsNoElements) {
  EXPECT_EQ(Items().getLabel(), "Collection (0)");
}

TEST(CollectionEmptyTest, IsMadeFromANullDriver) { EXPECT_TRUE(Items(nullptr).isEmpty()); }

// --- Handle --------------------------------------------------------------------------------------

TEST(CollectionTest, IsMadeFromADriverOnlyExplicitly) {
  EXPECT_FALSE((std::is_convertible_v<Items::Driver*, Items>));
  EXPECT_TRUE((std::is_constructible_v<Items, Items::Driver*>));
}

TEST(CollectionTest, DestroysItsDriver) {
  const Token token = makeToken();
  { const Items items(new PlainCollection(nullptr, token)); }
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(CollectionTest, ReleaseHandsTheDriverOverAndLeavesAnEmptyOne) {
  const Shelf shelf("a");
  auto* const driver = new PlainCollection(&shelf.elements);
  Items items(driver);
  const std::unique_ptr<Items::Driver> released(items.release());
  EXPECT_EQ(released.get(), driver);
  EXPECT_TRUE(items.isEmpty());
}

TEST(CollectionTest, TheQuestionsAreAnsweredByTheDriver) {
  Item sign;
  const Items items(new Overridden(&sign));
  EXPECT_EQ(items.getCount(), 7U);
  EXPECT_EQ(items.getFirst(), &sign);
  EXPECT_EQ(items.getLast(), &sign);
  EXPECT_EQ(items.getAt(9), &sign);
  EXPECT_TRUE(items.isEmpty());
  EXPECT_TRUE(items.hasCount(8));
}

TEST(CollectionTest, TheLabelIsThatOfTheDriver) {
  EXPECT_EQ(Items(new Labelled(nullptr)).getLabel(), "a shelf");
}

TEST(CollectionTest, TheLabelCountsTheElementsByDefault) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getLabel(), "Collection (3)");
}

TEST(CollectionTest, TheDefaultLabelHasTheCountOfTheDriver) {
  EXPECT_EQ(Items(new CountsSeven(nullptr)).getLabel(), "Collection (7)");
}

TEST(CollectionDriverTest, TheOperationsStandInTheirSlots) {
  using Driver = Items::Driver;
  EXPECT_EQ(slotOf(&Driver::getClone), 2U);
  EXPECT_EQ(slotOf(&Driver::getLocator), 3U);
  EXPECT_EQ(slotOf(&Driver::getReverseLocator), 4U);
  EXPECT_EQ(slotOf(&Driver::getRandomLocator), 5U);
  EXPECT_EQ(slotOf(&Driver::getCount), 6U);
  EXPECT_EQ(slotOf(&Driver::getFirst), 7U);
  EXPECT_EQ(slotOf(&Driver::getLast), 8U);
  EXPECT_EQ(slotOf(&Driver::getAt), 9U);
  EXPECT_EQ(slotOf(&Driver::_getLabel), 10U);
  EXPECT_EQ(slotOf(&Driver::isEmpty), 11U);
  EXPECT_EQ(slotOf(&Driver::hasCount), 12U);
}

// --- Copies --------------------------------------------------------------------------------------

TEST(CollectionCopyTest, ClonesTheDriver) {
  const Token token = makeToken();
  const Items items(new PlainCollection(nullptr, token));
  const Items copy(items);
  EXPECT_EQ(countDrivers(token), 2);
}

TEST(CollectionCopyTest, OutlivesTheOriginal) {
  const Shelf shelf("ab");
  auto original = std::make_unique<Items>(viewPlainly(shelf));
  const Items copy(*original);
  original.reset();
  EXPECT_EQ(iterate(copy), "ab");
}

TEST(CollectionCopyTest, OfAnEmptyOneIsEmpty) {
  const Items empty;
  Items copy(empty);
  EXPECT_EQ(copy.release(), nullptr);
}

TEST(CollectionCopyTest, AssigningReplacesTheDriver) {
  const Shelf shelf("ab");
  const Token token = makeToken();
  Items items(new PlainCollection(nullptr, token));
  items = viewPlainly(shelf);
  EXPECT_EQ(iterate(items), "ab");
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(CollectionCopyTest, AssigningLeavesTheSourceAsItIs) {
  const Shelf shelf("ab");
  const Items source = viewPlainly(shelf);
  Items items;
  items = source;
  EXPECT_EQ(iterate(source), "ab");
}

TEST(CollectionCopyTest, AssigningAnEmptyOneDestroysTheDriver) {
  const Token token = makeToken();
  Items items(new PlainCollection(nullptr, token));
  items = Items();
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(CollectionCopyTest, AssigningACopyOfAnEmptyOneDestroysTheDriver) {
  const Token token = makeToken();
  const Items empty;
  Items items(new PlainCollection(nullptr, token));
  items = empty;
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(CollectionCopyTest, AssigningToItselfChangesNothing) {
  const Shelf shelf("ab");
  Items items = viewPlainly(shelf);
  const Items& same = items;
  items = same;
  EXPECT_EQ(iterate(items), "ab");
}

TEST(CollectionCopyTest, MovingMovesTheDriverItself) {
  const Token token = makeToken();
  Items items(new PlainCollection(nullptr, token));
  const Items moved(std::move(items));
  EXPECT_EQ(countDrivers(token), 1);
  EXPECT_EQ(items.release(), nullptr);
}

TEST(CollectionCopyTest, MovingToItselfChangesNothing) {
  const Shelf shelf("ab");
  Items items = viewPlainly(shelf);
  Items& same = items;
  items = std::move(same);
  EXPECT_EQ(iterate(items), "ab");
}

TEST(CollectionCopyTest, MovingNeverThrows) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<Items>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<Items>);
}

// --- Default operations --------------------------------------------------------------------------

TEST(CollectionDefaultTest, GetCountCountsTheElementsOfAWalk) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getCount(), 3U);
}

TEST(CollectionDefaultTest, GetFirstIsTheFirstElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getFirst(), shelf.elements[0]);
}

TEST(CollectionDefaultTest, GetLastIsTheLastElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getLast(), shelf.elements[2]);
}

TEST(CollectionDefaultTest, GetLastIsWhereTheReverseLocatorStands) {
  const Shelf shelf("abc");
  EXPECT_EQ(Items(new OneWay(&shelf.elements)).getLast(), shelf.elements[0]);
}

TEST(CollectionDefaultTest, GetAtCountsFromZero) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getAt(0), shelf.elements[0]);
  EXPECT_EQ(viewPlainly(shelf).getAt(2), shelf.elements[2]);
}

TEST(CollectionDefaultTest, GetAtIsNullBeyondTheLastElement) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getAt(3), nullptr);
}

TEST(CollectionDefaultTest, GetAtGoesNoFurtherThanTheWalk) {
  const Shelf shelf("abc");
  EXPECT_EQ(viewPlainly(shelf).getAt(std::numeric_limits<unsigned long>::max()), nullptr);
}

TEST(CollectionDefaultTest, IsEmptyOnlyWithoutElements) {
  const Shelf shelf("a"), bare("");
  EXPECT_FALSE(viewPlainly(shelf).isEmpty());
  EXPECT_TRUE(viewPlainly(bare).isEmpty());
}

TEST(CollectionDefaultTest, HasCountIsTrueForTheNumberOfElementsOnly) {
  const Shelf shelf("abc");
  const Items items = viewPlainly(shelf);
  EXPECT_FALSE(items.hasCount(2));
  EXPECT_TRUE(items.hasCount(3));
  EXPECT_FALSE(items.hasCount(4));
}

TEST(CollectionDefaultTest, HasCountZeroOnlyWithoutElements) {
  const Shelf shelf("a"), bare("");
  EXPECT_FALSE(viewPlainly(shelf).hasCount(0));
  EXPECT_TRUE(viewPlainly(bare).hasCount(0));
}

TEST(CollectionDefaultTest, HasCountZeroAsksIsEmpty) {
  const Shelf shelf("a");
  EXPECT_TRUE(Items(new SaysEmpty(&shelf.elements)).hasCount(0));
}

TEST(CollectionDefaultTest, EachQuestionIsOneWalk) {
  const Shelf shelf("abc");
  const Token walks = makeToken();
  const Items items(new PlainCollection(&shelf.elements, walks));
  EXPECT_EQ(items.getCount(), 3U);
  EXPECT_EQ(*walks, 1);
  EXPECT_EQ(items.getAt(2), shelf.elements[2]);
  EXPECT_EQ(*walks, 2);
}

TEST(CollectionDefaultTest, AnswersWithoutALocatorAsWithoutElements) {
  EXPECT_EQ(viewNothing().getCount(), 0U);
  EXPECT_EQ(viewNothing().getFirst(), nullptr);
  EXPECT_EQ(viewNothing().getLast(), nullptr);
  EXPECT_EQ(viewNothing().getAt(0), nullptr);
}

TEST(CollectionDefaultTest, IsEmptyWithoutALocator) {
  EXPECT_TRUE(viewNothing().isEmpty());
  EXPECT_TRUE(viewNothing().hasCount(0));
  EXPECT_FALSE(viewNothing().hasCount(1));
}

TEST(CollectionDefaultTest, WalksNowhereWithoutALocator) {
  EXPECT_FALSE(viewNothing().getLocator().isValid());
  EXPECT_FALSE(viewNothing().getReverseLocator().isValid());
  EXPECT_FALSE(viewNothing().getRandomLocator().isValid());
}

// --- Default walks -------------------------------------------------------------------------------

TEST(CollectionDefaultTest, TheReverseLocatorWalksFromLastToFirst) {
  const Shelf shelf("abc");
  EXPECT_EQ(walk(viewPlainly(shelf).getReverseLocator()), "cba");
}

TEST(CollectionDefaultTest, TheReverseLocatorVisitsNullElements) {
  const Shelf shelf("a-b-");
  EXPECT_EQ(walk(viewPlainly(shelf).getReverseLocator()), "-b-a");
}

TEST(CollectionDefaultTest, TheReverseLocatorKeepsTheElementsThatThereWere) {
  Shelf shelf("ab");
  const ItemLocator locator = viewPlainly(shelf).getReverseLocator();
  shelf.add('c');
  EXPECT_EQ(walk(locator), "ba");
}

TEST(CollectionDefaultTest, TheRandomLocatorVisitsEachElementOnce) {
  const Shelf shelf("abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(sorted(walk(viewPlainly(shelf).getRandomLocator())), "abcdefghijklmnopqrstuvwxyz");
}

TEST(CollectionDefaultTest, TheRandomLocatorVisitsEachNullElement) {
  const Shelf shelf("a--b-");
  EXPECT_EQ(sorted(walk(viewPlainly(shelf).getRandomLocator())), "---ab");
}

// Two walks over 26 elements take the same order less often than a machine breaks down.
TEST(CollectionDefaultTest, EachRandomLocatorTakesAnOrderOfItsOwn) {
  const Shelf shelf("abcdefghijklmnopqrstuvwxyz");
  const Items items = viewPlainly(shelf);
  EXPECT_NE(walk(items.getRandomLocator()), walk(items.getRandomLocator()));
}

TEST(CollectionDefaultTest, EveryOrderOfARandomWalkComesUp) {
  const Shelf shelf("ab");
  const Items items = viewPlainly(shelf);
  int forwards = 0;
  for (int i = 0; i < 1000; ++i)
    forwards += walk(items.getRandomLocator()) == "ab" ? 1 : 0;
  EXPECT_NEAR(forwards, 500, 160);  // ten standard deviations
}
