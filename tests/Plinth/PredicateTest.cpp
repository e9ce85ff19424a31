#include "Items.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using Plinth::Expression;
using namespace TestSupport;

namespace {

using Watched = FunctionPredicate<bool>;

class Labelled : public Watched {
 public:
  Labelled() : Watched(acceptAll) {}
  std::string _getLabel() const override { return "anything"; }
};

}  // namespace

// --- Handle --------------------------------------------------------------------------------------

TEST(PredicateTest, AnEmptyOneAcceptsNothing) {
  Item item;
  EXPECT_FALSE(ItemPredicate().accept(&item));
}

TEST(PredicateTest, ANullDriverMakesAnEmptyOne) {
  Item item;
  EXPECT_FALSE(ItemPredicate(nullptr).accept(&item));
}

TEST(PredicateTest, IsMadeFromADriverOnlyExplicitly) {
  EXPECT_FALSE((std::is_convertible_v<ItemPredicate::Driver*, ItemPredicate>));
  EXPECT_TRUE((std::is_constructible_v<ItemPredicate, ItemPredicate::Driver*>));
}

TEST(PredicateTest, AnswersAsItsDriver) {
  Item item;
  EXPECT_TRUE(ItemPredicate(new Watched(acceptAll)).accept(&item));
  EXPECT_FALSE(ItemPredicate(new Watched(acceptNone)).accept(&item));
}

TEST(PredicateTest, NeverAcceptsNull) {
  EXPECT_FALSE(ItemPredicate(new Watched(acceptAll)).accept(nullptr));
}

TEST(PredicateTest, DoesNotAskItsDriverAboutNull) {
  const Token token = makeToken();
  ItemPredicate(new Watched(acceptAll, token)).accept(nullptr);
  EXPECT_EQ(*token, 0);
}

TEST(PredicateTest, DestroysItsDriver) {
  const Token token = makeToken();
  { const ItemPredicate predicate(new Watched(acceptAll, token)); }
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(PredicateTest, ReleaseHandsTheDriverOverAndLeavesAnEmptyOne) {
  auto* const driver = new Watched(acceptAll);
  ItemPredicate predicate(driver);
  const std::unique_ptr<ItemPredicate::Driver> released(predicate.release());
  EXPECT_EQ(released.get(), driver);
  EXPECT_EQ(predicate.release(), nullptr);
}

TEST(PredicateTest, TheLabelIsThatOfTheDriver) {
  EXPECT_EQ(ItemPredicate(new Labelled).getLabel(), "anything");
}

TEST(PredicateTest, TheLabelOfADriverIsPredicateByDefault) {
  EXPECT_EQ(ItemPredicate(new Watched(acceptAll)).getLabel(), "Predicate");
}

TEST(PredicateTest, TheLabelOfAnEmptyOneSaysSo) {
  EXPECT_EQ(ItemPredicate().getLabel(), "Predicate (empty)");
}

// --- Copies --------------------------------------------------------------------------------------

TEST(PredicateCopyTest, ClonesTheDriver) {
  const Token token = makeToken();
  const ItemPredicate predicate(new Watched(acceptAll, token));
  const ItemPredicate copy(predicate);
  EXPECT_EQ(countDrivers(token), 2);
}

TEST(PredicateCopyTest, OutlivesTheOriginal) {
  Item item;
  auto original = std::make_unique<ItemPredicate>(new Watched(acceptAll));
  const ItemPredicate copy(*original);
  original.reset();
  EXPECT_TRUE(copy.accept(&item));
}

TEST(PredicateCopyTest, OfAnEmptyOneIsEmpty) {
  const ItemPredicate empty;
  ItemPredicate copy(empty);
  EXPECT_EQ(copy.release(), nullptr);
}

TEST(PredicateCopyTest, AssigningReplacesTheDriver) {
  Item item;
  const Token token = makeToken();
  ItemPredicate predicate(new Watched(acceptNone, token));
  predicate = ItemPredicate(new Watched(acceptAll));
  EXPECT_TRUE(predicate.accept(&item));
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(PredicateCopyTest, AssigningACopyOfAnEmptyOneDestroysTheDriver) {
  const Token token = makeToken();
  const ItemPredicate empty;
  ItemPredicate predicate(new Watched(acceptAll, token));
  predicate = empty;
  EXPECT_EQ(countDrivers(token), 0);
}

TEST(PredicateCopyTest, AssigningToItselfChangesNothing) {
  Item item;
  ItemPredicate predicate(new Watched(acceptAll));
  const ItemPredicate& same = predicate;
  predicate = same;
  EXPECT_TRUE(predicate.accept(&item));
}

TEST(PredicateCopyTest, MovingMovesTheDriverItself) {
  const Token token = makeToken();
  ItemPredicate predicate(new Watched(acceptAll, token));
  const ItemPredicate moved(std::move(predicate));
  EXPECT_EQ(countDrivers(token), 1);
  EXPECT_EQ(predicate.release(), nullptr);
}

TEST(PredicateCopyTest, MovingNeverThrows) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<ItemPredicate>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<ItemPredicate>);
}

// --- Driver --------------------------------------------------------------------------------------

TEST(PredicateDriverTest, TheOperationsStandInTheirSlots) {
  using Driver = ItemPattern::Driver;
  using Clone = Driver* (Driver::*)() const;
  using Bind = Driver* (Driver::*)(const Expression&) const;
  EXPECT_EQ(slotOf(static_cast<Clone>(&Driver::getClone)), 2U);
  EXPECT_EQ(slotOf(static_cast<Bind>(&Driver::getClone)), 3U);
  EXPECT_EQ(slotOf(&Driver::_getLabel), 4U);
  EXPECT_EQ(slotOf(&Driver::accept), 5U);
}

TEST(PredicateDriverTest, CloningWithADatumIgnoresItByDefault) {
  Item item;
  const Token token = makeToken();
  const FunctionPredicate<Expression> driver(acceptAll, token);
  const ItemPattern clone(driver.getClone(Expression("^b$")));
  EXPECT_EQ(countDrivers(token), 2);
  EXPECT_TRUE(clone.accept(&item));
}

TEST(PredicateDriverTest, CannotBeAssigned) {
  EXPECT_FALSE(std::is_copy_assignable_v<ItemPredicate::Driver>);
  EXPECT_FALSE(std::is_copy_assignable_v<IsMarked>);
}

// --- MemberPredicate -----------------------------------------------------------------------------

TEST(MemberPredicateTest, AnswersWhatTheMemberFunctionAnswers) {
  const ItemPredicate isMarked(new IsMarked(&Item::isMarked));
  Item plain{"a", false};
  Item marked{"b", true};
  EXPECT_FALSE(isMarked.accept(&plain));
  EXPECT_TRUE(isMarked.accept(&marked));
}

TEST(MemberPredicateTest, AsksEachTimeAnew) {
  const ItemPredicate isMarked(new IsMarked(&Item::isMarked));
  Item item;
  EXPECT_FALSE(isMarked.accept(&item));
  item.marked = true;
  EXPECT_TRUE(isMarked.accept(&item));
}

TEST(MemberPredicateTest, ACloneAsksTheSameMemberFunction) {
  const IsMarked driver(&Item::isMarked);
  const ItemPredicate clone(driver.getClone());
  Item marked{"a", true};
  EXPECT_TRUE(clone.accept(&marked));
}

TEST(MemberPredicateTest, ACloneWithADatumIsAPlainClone) {
  const IsMarked driver(&Item::isMarked);
  const ItemPredicate clone(driver.getClone(false));
  Item marked{"a", true};
  EXPECT_TRUE(clone.accept(&marked));
}

TEST(MemberPredicateTest, AcceptsPointersToConstantElements) {
  using Constant = Plinth::MemberPredicate<const Item*, bool>::Driver<bool (Item::*)() const>;
  const Plinth::Predicate<const Item*, bool> isMarked(new Constant(&Item::isMarked));
  const Item marked{"a", true};
  EXPECT_TRUE(isMarked.accept(&marked));
}

// --- MemberDatumPredicate ------------------------------------------------------------------------

TEST(MemberDatumPredicateTest, HandsTheDatumToTheMemberFunction) {
  const ItemPattern isMatching(new IsMatching(&Item::isMatching, Expression("^a")));
  Item a{"a"};
  Item b{"b"};
  EXPECT_TRUE(isMatching.accept(&a));
  EXPECT_FALSE(isMatching.accept(&b));
}

TEST(MemberDatumPredicateTest, HasItsOwnCopyOfTheDatum) {
  Expression pattern("^a");
  const ItemPattern isMatching(new IsMatching(&Item::isMatching, pattern));
  pattern = Expression("^b");
  Item a{"a"};
  EXPECT_TRUE(isMatching.accept(&a));
}

TEST(MemberDatumPredicateTest, ADefaultExpressionMatchesNothing) {
  const ItemPattern isMatching(new IsMatching(&Item::isMatching, Expression()));
  Item a{"a"};
  EXPECT_FALSE(isMatching.accept(&a));
}

TEST(MemberDatumPredicateTest, ACloneHasTheSameDatum) {
  const IsMatching driver(&Item::isMatching, Expression("^a"));
  const ItemPattern clone(driver.getClone());
  Item a{"a"};
  Item b{"b"};
  EXPECT_TRUE(clone.accept(&a));
  EXPECT_FALSE(clone.accept(&b));
}

TEST(MemberDatumPredicateTest, ACloneWithADatumIsBoundToThat) {
  const IsMatching driver(&Item::isMatching, Expression("^a"));
  const ItemPattern clone(driver.getClone(Expression("^b")));
  Item a{"a"};
  Item b{"b"};
  EXPECT_FALSE(clone.accept(&a));
  EXPECT_TRUE(clone.accept(&b));
}

TEST(MemberDatumPredicateTest, CloningWithADatumLeavesTheOriginalAsItIs) {
  const IsMatching driver(&Item::isMatching, Expression("^a"));
  const ItemPattern clone(driver.getClone(Expression("^b")));
  Item a{"a"};
  EXPECT_TRUE(driver.accept(&a));
}

TEST(MemberDatumPredicateTest, IsClonedWithADatumThroughItsBase) {
  const std::unique_ptr<ItemPattern::Driver> base(new IsMatching(&Item::isMatching, Expression()));
  const ItemPattern clone(base->getClone(Expression("^a")));
  Item a{"a"};
  EXPECT_TRUE(clone.accept(&a));
}

// --- NotPredicate --------------------------------------------------------------------------------

TEST(NotPredicateTest, AcceptsWhatTheInnerOneDoesNot) {
  const ItemPredicate isPlain(new Not<bool>(new IsMarked(&Item::isMarked)));
  Item plain{"a", false};
  Item marked{"b", true};
  EXPECT_TRUE(isPlain.accept(&plain));
  EXPECT_FALSE(isPlain.accept(&marked));
}

TEST(NotPredicateTest, AcceptsEveryElementWithoutAnInnerOne) {
  Item item;
  EXPECT_TRUE(ItemPredicate(new Not<bool>(nullptr)).accept(&item));
  EXPECT_TRUE(ItemPredicate(new Not<Expression>(nullptr)).accept(&item));
}

TEST(NotPredicateTest, HidesTheDatumOfTheInnerOne) {
  auto* const isMatching = new IsMatching(&Item::isMatching, Expression("^a"));
  const ItemPredicate isOther(new Not<Expression>(isMatching));
  Item a{"a"};
  Item b{"b"};
  EXPECT_FALSE(isOther.accept(&a));
  EXPECT_TRUE(isOther.accept(&b));
}

TEST(NotPredicateTest, TwiceIsTheInnerOneAgain) {
  const ItemPredicate twice(new Not<bool>(new Not<bool>(new IsMarked(&Item::isMarked))));
  Item plain{"a", false};
  Item marked{"b", true};
  EXPECT_FALSE(twice.accept(&plain));
  EXPECT_TRUE(twice.accept(&marked));
}

TEST(NotPredicateTest, DoesNotAcceptNull) {
  EXPECT_FALSE(ItemPredicate(new Not<bool>(new IsMarked(&Item::isMarked))).accept(nullptr));
}

TEST(NotPredicateTest, DoesNotAskTheInnerOneAboutNull) {
  const Token token = makeToken();
  Not<bool>(new Watched(acceptAll, token)).accept(nullptr);
  EXPECT_EQ(*token, 0);
}

TEST(NotPredicateTest, ACloneClonesTheInnerOne) {
  const Token token = makeToken();
  const Not<bool> driver(new Watched(acceptAll, token));
  const ItemPredicate clone(driver.getClone());
  EXPECT_EQ(countDrivers(token), 2);
}

TEST(NotPredicateTest, ACloneAnswersAlike) {
  const Not<bool> driver(new IsMarked(&Item::isMarked));
  const ItemPredicate clone(driver.getClone());
  Item plain{"a", false};
  Item marked{"b", true};
  EXPECT_TRUE(clone.accept(&plain));
  EXPECT_FALSE(clone.accept(&marked));
}

TEST(NotPredicateTest, ACloneWithADatumIsAPlainClone) {
  const Not<bool> driver(nullptr);
  const ItemPredicate clone(driver.getClone(false));
  Item item;
  EXPECT_TRUE(clone.accept(&item));
}

TEST(NotPredicateTest, DestroysTheInnerOne) {
  const Token token = makeToken();
  { const ItemPredicate predicate(new Not<bool>(new Watched(acceptAll, token))); }
  EXPECT_EQ(countDrivers(token), 0);
}
