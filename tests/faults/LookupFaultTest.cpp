// Memory that runs out while items are looked up: an item that is there is never said to be absent.

#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserItems.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Plinth::Expression;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::readText;

namespace {

constexpr int LARGE = 100;

std::string nameOf(int index) { return "lamp" + std::to_string(index); }

/// A group that is large enough for an index of its names.
std::unique_ptr<ParserGroup> makeLargeGroup() {
  auto group = std::make_unique<ParserGroup>("root");
  for (int i = 0; i < LARGE; ++i)
    group->addItem(nameOf(i), 0, 0);
  group->addItem("#Keyword", 0, 0);
  group->addItem("door", 0, 0);
  return group;
}

/// Looks for the last lamp so often that an index of the names is made on the way.
/// @return how often it was found
int lookUpOften(const ParserGroup& group) {
  const std::string name = nameOf(LARGE - 1);
  int found = 0;
  for (int i = 0; i < 10; ++i)
    found += group.getItem(name) != nullptr ? 1 : 0;
  return found;
}

}  // namespace

// --- Names ---------------------------------------------------------------------------------------

TEST(LookupFaultTest, AnItemIsFoundThoughNoIndexCanBeMade) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> group = makeLargeGroup();
    int found = 0;
    const bool isComplete = attempt.run([&] { found = lookUpOften(*group); });
    EXPECT_TRUE(isComplete);
    EXPECT_EQ(found, 10);
    EXPECT_EQ(lookUpOften(*group), 10);
  });
}

TEST(LookupFaultTest, AnItemThatWasAddedLaterIsFoundThoughNoNewIndexCanBeMade) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> group = makeLargeGroup();
    lookUpOften(*group);
    for (int i = 0; i < 5 * LARGE; ++i)
      group->addItem("later" + std::to_string(i), 0, 0);
    int found = 0;
    attempt.run([&] {
      for (int i = 0; i < 50; ++i)
        found += group->getItem("later499") != nullptr ? 1 : 0;
    });
    EXPECT_EQ(found, 50);
  });
}

TEST(LookupFaultTest, ItemsThatSwapTheirNamesAreFoundUnderTheNamesThatTheyHave) {
  const std::string longName = "a_name_that_is_longer_than_a_string_within_itself";
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> group = makeLargeGroup();
    ParserItem* first = group->getItem(nameOf(0));
    ParserItem* last = group->getItem(nameOf(LARGE - 1));
    first->rename(longName);
    lookUpOften(*group);
    const bool isComplete = attempt.run([&] {
      const std::string name = first->getName();
      first->rename(last->getName());
      last->rename(name);
    });
    lookUpOften(*group);
    EXPECT_EQ(last->getName(), isComplete ? longName : nameOf(LARGE - 1));
    EXPECT_EQ(group->getItem(first->getName()), first);
    EXPECT_EQ(group->getItem(longName), isComplete                     ? last
                                        : first->getName() == longName ? first
                                                                       : nullptr);
  });
}

TEST(LookupFaultTest, EntriesOfOneName) {
  const std::unique_ptr<ParserGroup> group = readText("a 1 b 2 a 3 c 4 a 5 a 6 a 7 a 8");
  forEveryFault([&](Attempt& attempt) {
    std::vector<ParserItem*> entries;
    const bool isComplete = attempt.run([&] { entries = group->getEntries("a"); });
    EXPECT_EQ(entries.size(), isComplete ? 6U : 0U);
    EXPECT_EQ(group->getEntries("a").size(), 6U);
  });
}

TEST(LookupFaultTest, AGroupThatIsMadeWhenItIsLookedUp) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText("a <empty> b 1");
    ParserGroup* group = nullptr;
    const bool isComplete = attempt.run([&] { group = root->getGroup("a"); });
    EXPECT_EQ(group != nullptr, isComplete);
    EXPECT_EQ(TestSupport::writeLines(*root), isComplete ? "\na {\n}\nb 1" : "\na <empty>\nb 1");
  });
}

// --- Collections ---------------------------------------------------------------------------------

TEST(LookupFaultTest, AllItems) {
  const std::unique_ptr<ParserGroup> group = makeLargeGroup();
  forEveryFault([&](Attempt& attempt) {
    unsigned long count = 0;
    const bool isComplete = attempt.run([&] { count = group->getItems("").getCount(); });
    EXPECT_EQ(count, isComplete ? 101U : 0U);
  });
}

TEST(LookupFaultTest, ItemsThatMatchAnExpressionAndNotAnother) {
  const std::unique_ptr<ParserGroup> group = makeLargeGroup();
  const Expression lamps("^lamp");
  const Expression ones("1$");
  ASSERT_EQ(group->getItems("").getMatching(lamps).getCount(), 100U);
  ASSERT_EQ(group->getItems("").getNotMatching(ones).getCount(), 91U);
  forEveryFault([&](Attempt& attempt) {
    unsigned long count = 0;
    const bool isComplete = attempt.run([&] {
      const ParserItems chosen = group->getItems("").getMatching(lamps).getNotMatching(ones);
      const ParserItems copy(chosen);
      count = copy.getCount();
    });
    EXPECT_EQ(count, isComplete ? 90U : 0U);
  });
}

TEST(LookupFaultTest, ACollectionThatIsAssignedOrNot) {
  const std::unique_ptr<ParserGroup> group = makeLargeGroup();
  forEveryFault([&](Attempt& attempt) {
    ParserItems chosen = group->getItems("").getMatching(Expression("door"));
    const ParserItems all = group->getItems("");
    const bool isComplete = attempt.run([&] { chosen = all; });
    EXPECT_EQ(chosen.getCount(), isComplete ? 101U : 1U);
  });
}

TEST(LookupFaultTest, WalksInEveryDirection) {
  const std::unique_ptr<ParserGroup> group = makeLargeGroup();
  const ParserItems items = group->getItems("").getMatching(Expression("lamp.$"));
  forEveryFault([&](Attempt& attempt) {
    unsigned long steps = 0;
    const auto walk = [&steps](Plinth::Locator<ParserItem*> locator) {
      for (; locator.isValid(); locator.progress())
        ++steps;
    };
    const bool isComplete = attempt.run([&] {
      walk(items.getLocator());
      walk(items.getReverseLocator());
      walk(Plinth::Locator<ParserItem*>(items.getRandomLocator()));
      for (const ParserItem* item : items)
        steps += item != nullptr ? 1 : 0;
    });
    EXPECT_TRUE(!isComplete || steps == 40U) << steps;
    EXPECT_EQ(items.getCount(), 10U);
  });
}

TEST(LookupFaultTest, FirstLastAndCountedItems) {
  const std::unique_ptr<ParserGroup> group = makeLargeGroup();
  forEveryFault([&](Attempt& attempt) {
    const ParserItems items = group->getItems("");
    std::string names;
    names.reserve(100);
    const bool isComplete = attempt.run([&] {
      names += items.getFirst()->getName() + ' ' + items.getLast()->getName() + ' ';
      names += items.getAt(7)->getName() + ' ' + items.getLabel();
      names += items.hasCount(101) && !items.isEmpty() ? " yes" : " no";
    });
    EXPECT_TRUE(!isComplete || names == "lamp0 door lamp7 Collection (101) yes") << names;
  });
}
