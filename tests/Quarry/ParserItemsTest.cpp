// Queries: selections of a group's items, and walks through them.

#include <Plinth/Console.h>
#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItems.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Plinth::Expression;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestSupport::readText;
using TestSupport::RecordingConsole;

namespace {

using Names = std::vector<std::string>;
using Locator = Plinth::Locator<ParserItem*>;

std::unique_ptr<ParserGroup> makeGroup() { return readText("a 1 #k 2 b 3 ab 4 f(5) a 6"); }

Names walk(Locator locator) {
  Names names;
  for (; locator.isValid(); locator.progress())
    names.push_back(locator.getCurrent()->getName());
  return names;
}

Names walk(const ParserItems& items) {
  Names names;
  for (const ParserItem* item : items)
    names.push_back(item->getName());
  return names;
}

}  // namespace

// --- getItems ------------------------------------------------------------------------------------

TEST(ParserItemsTest, EmptyPatternSelectsAllButKeywordsInListOrder) {
  const auto group = makeGroup();
  EXPECT_THAT(walk(group->getItems("")), ElementsAre("a", "b", "ab", "f", "a"));
}

TEST(ParserItemsTest, KeywordIsLeftOutOfCountAndIndex) {
  const auto group = readText("a 1 #k 2 b 3");
  const ParserItems items = group->getItems("");
  EXPECT_EQ(items.getCount(), 2u);
  EXPECT_EQ(items.getAt(1), group->getItem("b"));
  EXPECT_EQ(items.getAt(2), nullptr);
}

TEST(ParserItemsTest, PatternSelectsByName) {
  EXPECT_THAT(walk(makeGroup()->getItems("^a")), ElementsAre("a", "ab", "a"));
}

TEST(ParserItemsTest, PatternIsSearchedForAnywhere) {
  EXPECT_THAT(walk(makeGroup()->getItems("b")), ElementsAre("b", "ab"));
}

TEST(ParserItemsTest, PatternNeverSelectsKeywords) {
  EXPECT_THAT(walk(makeGroup()->getItems("k")), IsEmpty());
}

TEST(ParserItemsTest, PatternThatNothingMatchesGivesAnEmptyCollection) {
  const auto group = makeGroup();
  const ParserItems none = group->getItems("^z$");
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.getFirst(), nullptr);
  EXPECT_EQ(none.getLast(), nullptr);
  EXPECT_TRUE(none.hasCount(0));
}

TEST(ParserItemsTest, PatternThatDoesNotCompileWarnsOnceAndSelectsNothing) {
  const auto group = makeGroup();
  const RecordingConsole console;
  EXPECT_TRUE(group->getItems("(").isEmpty());
  EXPECT_EQ(console.getWarnings().size(), 1u);
}

TEST(ParserItemsTest, CallsAreSelected) {
  EXPECT_THAT(walk(makeGroup()->getItems("f")), ElementsAre("f"));
}

TEST(ParserItemsTest, ItemsFromBinaryDataAreSelected) {
  ParserGroup group("g");
  unsigned long pos = 0;
  group.setBinary(readText("a 1 #k 2")->getBinary(false), pos);
  EXPECT_THAT(walk(group.getItems("")), ElementsAre("a", "#k"));
}

TEST(ParserItemsTest, DetachedItemsAreLeftOut) {
  const auto group = makeGroup();
  const std::unique_ptr<ParserItem> detached(group->getItem(1UL));
  group->detachItem(1);
  EXPECT_THAT(walk(group->getItems("")), ElementsAre("a", "ab", "f", "a"));
  EXPECT_THAT(walk(group->getItems("").getReverseLocator()), ElementsAre("a", "f", "ab", "a"));
  EXPECT_EQ(group->getItems("").getCount(), 4u);
}

// --- getMatching, getNotMatching -----------------------------------------------------------------

TEST(ParserItemsTest, MatchingNarrowsACollection) {
  EXPECT_THAT(walk(makeGroup()->getItems("a").getMatching(Expression("b"))), ElementsAre("ab"));
}

TEST(ParserItemsTest, NotMatchingIsWhatMatchingLeavesOut) {
  const auto group = makeGroup();
  const Expression expression("^a");
  EXPECT_THAT(walk(group->getItems("").getMatching(expression)), ElementsAre("a", "ab", "a"));
  EXPECT_THAT(walk(group->getItems("").getNotMatching(expression)), ElementsAre("b", "f"));
}

TEST(ParserItemsTest, NotMatchingLeavesKeywordsOut) {
  EXPECT_THAT(walk(makeGroup()->getItems("").getNotMatching(Expression("[abf]"))), IsEmpty());
}

TEST(ParserItemsTest, MatchingWithoutPatternSelectsNothing) {
  EXPECT_THAT(walk(makeGroup()->getItems("").getMatching(Expression())), IsEmpty());
}

TEST(ParserItemsTest, NotMatchingWithoutPatternSelectsAll) {
  EXPECT_EQ(makeGroup()->getItems("").getNotMatching(Expression()).getCount(), 5u);
}

TEST(ParserItemsTest, NarrowingLeavesTheFirstCollectionAsItWas) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("");
  items.getMatching(Expression("^a"));
  EXPECT_EQ(items.getCount(), 5u);
}

TEST(ParserItemsTest, ResultOutlivesTheCollectionItWasMadeOf) {
  const auto group = makeGroup();
  auto items = std::make_unique<ParserItems>(group->getItems(""));
  const ParserItems matching = items->getMatching(Expression("b"));
  items.reset();
  EXPECT_THAT(walk(matching), ElementsAre("b", "ab"));
}

// --- Live views ----------------------------------------------------------------------------------

TEST(ParserItemsTest, ItemAddedLaterIsInTheNextWalk) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("^n");
  EXPECT_TRUE(items.isEmpty());
  group->addItem("new", 0, 0);
  EXPECT_THAT(walk(items), ElementsAre("new"));
}

TEST(ParserItemsTest, ItemRemovedLaterIsNotInTheNextWalk) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("");
  group->removeItem("a");
  EXPECT_THAT(walk(items), ElementsAre("b", "ab", "f"));
}

TEST(ParserItemsTest, RenamedItemIsSelectedByItsNewName) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("^z");
  group->getItem("b")->rename("z");
  EXPECT_THAT(walk(items), ElementsAre("z"));
}

// --- Walks ---------------------------------------------------------------------------------------

TEST(ParserItemsTest, ReverseLocatorWalksFromLastToFirst) {
  EXPECT_THAT(walk(makeGroup()->getItems("").getReverseLocator()),
              ElementsAre("a", "f", "ab", "b", "a"));
}

TEST(ParserItemsTest, ReverseLocatorOfASelection) {
  EXPECT_THAT(walk(makeGroup()->getItems("b").getReverseLocator()), ElementsAre("ab", "b"));
}

TEST(ParserItemsTest, RandomLocatorVisitsEachItemOnce) {
  EXPECT_THAT(walk(makeGroup()->getItems("").getRandomLocator()),
              UnorderedElementsAre("a", "b", "ab", "f", "a"));
}

TEST(ParserItemsTest, RandomLocatorDoesNotKeepTheOrder) {
  ParserGroup group("g");
  for (int i = 0; i < 100; ++i)
    group.addItem("n" + std::to_string(i), 0, 0);
  EXPECT_NE(walk(group.getItems("").getRandomLocator()), walk(group.getItems("")));
}

TEST(ParserItemsTest, FirstAndLastFollowTheSelection) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("b");
  EXPECT_EQ(items.getFirst(), group->getItem("b"));
  EXPECT_EQ(items.getLast(), group->getItem("ab"));
}

TEST(ParserItemsTest, HasCountFollowsTheSelection) {
  const auto group = makeGroup();
  EXPECT_TRUE(group->getItems("b").hasCount(2));
  EXPECT_FALSE(group->getItems("b").hasCount(1));
  EXPECT_FALSE(group->getItems("b").hasCount(3));
  EXPECT_FALSE(group->getItems("b").hasCount(0));
}

TEST(ParserItemsTest, ClonedLocatorWalksOnByItself) {
  const auto group = makeGroup();
  Locator locator = group->getItems("").getLocator();
  locator.progress();
  const Locator clone = locator;
  EXPECT_THAT(walk(locator), ElementsAre("b", "ab", "f", "a"));
  EXPECT_THAT(walk(clone), ElementsAre("b", "ab", "f", "a"));
}

TEST(ParserItemsTest, ItemsCanBeChangedDuringAWalk) {
  const auto group = readText("a 1 b 2");
  for (ParserItem* item : group->getItems(""))
    item->setInt(7, 0);
  EXPECT_EQ(group->getItem("a")->getInt(0) + group->getItem("b")->getInt(0), 14);
}

// --- Handles -------------------------------------------------------------------------------------

TEST(ParserItemsTest, DefaultConstructedCollectionIsEmpty) {
  const ParserItems none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.getCount(), 0u);
  EXPECT_THAT(walk(none), IsEmpty());
}

TEST(ParserItemsTest, NarrowingAnEmptyCollectionIsEmpty) {
  EXPECT_TRUE(ParserItems().getMatching(Expression("a")).isEmpty());
  EXPECT_TRUE(ParserItems().getNotMatching(Expression("a")).isEmpty());
}

TEST(ParserItemsTest, CopyViewsTheSameGroup) {
  const auto group = makeGroup();
  const ParserItems items = group->getItems("^n");
  const ParserItems copy = items;
  group->addItem("new", 0, 0);
  EXPECT_THAT(walk(copy), ElementsAre("new"));
}

TEST(ParserItemsTest, AssignmentReplacesTheSelection) {
  const auto group = makeGroup();
  ParserItems items = group->getItems("^a");
  items = group->getItems("^b");
  EXPECT_THAT(walk(items), ElementsAre("b"));
}

TEST(ParserItemsTest, HasNoDataOfItsOwn) {
  static_assert(sizeof(ParserItems) == sizeof(Plinth::Collection<ParserItem*>));
  static_assert(!std::is_polymorphic_v<ParserItems>);
}

// --- Threads and the end of the process ----------------------------------------------------------

TEST(ParserItemsTest, GroupsOfSeveralThreadsCanBeQueriedAtOnce) {
  std::vector<unsigned long> counts(8, 0);
  std::vector<std::thread> threads;
  for (unsigned long& count : counts) {
    threads.emplace_back([&count] {
      const auto group = makeGroup();
      for (int i = 0; i < 100; ++i)
        count += group->getItems("^a").getCount();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(std::count(counts.begin(), counts.end(), 300u), 8);
}

namespace {

/// Queries its group when the process's statics are destroyed; a crash there fails the test run.
struct LateQuery {
  std::unique_ptr<ParserGroup> group = makeGroup();
  ~LateQuery() {
    if (group->getItems("b").getNotMatching(Expression("a")).getCount() != 1) std::abort();
  }
};

}  // namespace

TEST(ParserItemsTest, DocumentThatOutlivesMainCanBeQueried) {
  static const LateQuery query;
  EXPECT_EQ(query.group->getItems("").getCount(), 5u);
}
