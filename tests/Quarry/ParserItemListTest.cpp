// Items with few and many values, however they came into the list and leave it.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::readText;

namespace {

using Numbers = std::vector<int>;

Numbers makeNumbers(unsigned long count) {
  Numbers numbers(count);
  std::iota(numbers.begin(), numbers.end(), 1000);
  return numbers;
}

Numbers readNumbers(const ParserItem& item) {
  Numbers numbers;
  for (unsigned long i = 0; i < item.getValueCount(); ++i)
    numbers.push_back(item.getInt(i));
  return numbers;
}

std::string makeText(const std::string& name, const Numbers& numbers) {
  std::string text = name;
  for (const int number : numbers)
    text += " " + std::to_string(number);
  return numbers.empty() ? text + " <empty>" : text;
}

void addNumbers(ParserItem& item, const Numbers& numbers) {
  for (const int number : numbers)
    item.addInt(number);
}

std::unique_ptr<ParserItem> makeItem(const std::string& name = "a") {
  return std::make_unique<ParserItem>(name, ParserItem::ITEM_PLAIN, 0UL, 0UL);
}

/// A number of values, which an item gets by the parser, by code, or by decoding.
class ParserItemListTest : public testing::TestWithParam<unsigned long> {
 protected:
  Numbers numbers = makeNumbers(GetParam());

  /// Groups in which the item `a` has the numbers.
  std::vector<std::unique_ptr<ParserGroup>> makeGroups() const {
    std::vector<std::unique_ptr<ParserGroup>> groups;
    groups.push_back(readText(makeText("a", numbers) + " b 1"));
    groups.push_back(readText("z \"" + std::string(1, '\0') + "\" " + makeText("a", numbers)));
    groups.push_back(std::make_unique<ParserGroup>("code"));
    addNumbers(*groups.back()->addItem("a", 0, 0), numbers);
    const std::vector<char> bytes = groups.back()->getBinary(false);
    groups.push_back(std::make_unique<ParserGroup>("decoded"));
    unsigned long pos = 0;
    EXPECT_TRUE(groups.back()->setBinary(bytes, pos));
    groups.back()->removeItem("absent");  // decoded items are looked up from then on
    return groups;
  }

  /// Calls `check` with the item `a` of each group.
  template <class Check>
  void forEachItem(Check check) const {
    for (const std::unique_ptr<ParserGroup>& group : makeGroups()) {
      SCOPED_TRACE(group->getName());
      ASSERT_NE(group->getItem("a"), nullptr);
      check(*group->getItem("a"));
    }
  }
};

/// Returns the numbers whose indices are not in the list.
Numbers without(const Numbers& numbers, const std::vector<unsigned long>& indices) {
  std::vector<bool> doomed(numbers.size(), false);
  for (const unsigned long index : indices)
    if (index < numbers.size()) doomed[index] = true;
  Numbers kept;
  for (unsigned long i = 0; i < numbers.size(); ++i)
    if (!doomed[i]) kept.push_back(numbers[i]);
  return kept;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Of, ParserItemListTest,
                         testing::Values(0, 1, 2, 4, 5, 22, 23, 24, 25, 100, 1000, 5000),
                         testing::PrintToStringParamName());

TEST_P(ParserItemListTest, ValuesAreHeldInOrder) {
  forEachItem([this](ParserItem& item) { EXPECT_EQ(readNumbers(item), numbers); });
}

TEST_P(ParserItemListTest, ACopyOfTheItemHasTheValues) {
  forEachItem([this](ParserItem& item) {
    ParserItem copy(item);
    item.reset();
    EXPECT_EQ(readNumbers(copy), numbers);
    copy.addInt(7);
    EXPECT_EQ(copy.getInt(numbers.size()), 7);
  });
}

TEST_P(ParserItemListTest, ACopyOfTheGroupHasTheValues) {
  for (std::unique_ptr<ParserGroup>& group : makeGroups()) {
    const ParserGroup copy(*group);
    group.reset();
    EXPECT_EQ(readNumbers(*copy.getItem("a")), numbers);
  }
}

TEST_P(ParserItemListTest, AnItemWithOtherValuesBecomesACopy) {
  forEachItem([this](ParserItem& item) {
    for (const unsigned long count : {0UL, 1UL, 2UL, 24UL}) {
      const std::unique_ptr<ParserItem> target = makeItem("b");
      addNumbers(*target, makeNumbers(count));
      target->copyFrom(item);
      EXPECT_EQ(readNumbers(*target), numbers);
      EXPECT_EQ(target->getName(), "a");
    }
  });
}

TEST_P(ParserItemListTest, AnItemBecomesACopyOfItself) {
  forEachItem([this](ParserItem& item) {
    item.copyFrom(item);
    EXPECT_EQ(readNumbers(item), numbers);
    EXPECT_EQ(item.getName(), "a");
  });
}

TEST_P(ParserItemListTest, FurtherValuesFollow) {
  forEachItem([this](ParserItem& item) {
    Numbers expected = numbers;
    for (int i = 0; i < 60; ++i) {
      item.addInt(i);
      expected.push_back(i);
    }
    EXPECT_EQ(readNumbers(item), expected);
  });
}

TEST_P(ParserItemListTest, AfterAResetTheListIsFilledAnew) {
  forEachItem([this](ParserItem& item) {
    item.reset();
    EXPECT_EQ(item.getValueCount(), 0U);
    addNumbers(item, numbers);
    EXPECT_EQ(readNumbers(item), numbers);
  });
}

TEST_P(ParserItemListTest, EverySecondValueIsRemoved) {
  std::vector<unsigned long> indices;
  for (unsigned long i = 0; i < numbers.size(); i += 2)
    indices.push_back(i);
  forEachItem([&](ParserItem& item) {
    item.removeValue(indices);
    EXPECT_EQ(readNumbers(item), without(numbers, indices));
  });
}

TEST_P(ParserItemListTest, ValuesAreRemovedAtRandomAndOthersAdded) {
  std::mt19937 random(1);
  forEachItem([&](ParserItem& item) {
    Numbers expected = numbers;
    for (int round = 0; round < 8; ++round) {
      std::vector<unsigned long> indices;
      for (unsigned long i = 0; i < expected.size() / 2; ++i)
        indices.push_back(random() % (expected.size() + 5));
      item.removeValue(indices);
      expected = without(expected, indices);
      for (int i = 0; i < 10; ++i) {
        item.addInt(i);
        expected.push_back(i);
      }
      EXPECT_EQ(readNumbers(item), expected);
    }
  });
}

TEST_P(ParserItemListTest, TheFirstIsRemovedAgainAndAgain) {
  const unsigned long removed = std::min<unsigned long>(numbers.size(), 100);
  forEachItem([&](ParserItem& item) {
    for (unsigned long i = 0; i < removed; ++i) {
      EXPECT_EQ(item.getInt(0), numbers[i]);
      item.removeValue(0UL);
    }
    const Numbers rest(numbers.begin() + static_cast<std::ptrdiff_t>(removed), numbers.end());
    EXPECT_EQ(readNumbers(item), rest);
  });
}

TEST_P(ParserItemListTest, GroupsAmongTheValuesStayWhereTheyAre) {
  forEachItem([this](ParserItem& item) {
    ParserGroup* group = item.addGroup(nullptr);
    group->addItem("x", 0, 0)->addInt(1);
    addNumbers(item, makeNumbers(3000));
    EXPECT_EQ(item.getGroup(numbers.size()), group);
    EXPECT_EQ(TestSupport::describe(*group), "x int:1");
  });
}

// --- Several items -------------------------------------------------------------------------------

TEST(ParserItemListsTest, ItemsWithFewAndManyValuesThatFollowOneAnotherHaveTheirOwn) {
  const std::vector<unsigned long> counts = {5000, 3, 1000, 23,   24, 2000,
                                             1,    0, 1001, 1001, 2,  4000};
  std::string text;
  for (unsigned long i = 0; i < counts.size(); ++i)
    text += makeText("n" + std::to_string(i), makeNumbers(counts[i])) + "\n";
  const std::unique_ptr<ParserGroup> group = readText(text);
  for (unsigned long i = 0; i < counts.size(); ++i)
    EXPECT_EQ(readNumbers(*group->getItem(i)), makeNumbers(counts[i])) << counts[i];
}

TEST(ParserItemListsTest, AListThatIsInterruptedByGroupsHasAllOfItsValues) {
  std::string text = "a";
  for (int i = 0; i < 30; ++i)
    text += " " + std::to_string(i);
  text += " { b 1 2 3 } c 4";
  const std::unique_ptr<ParserGroup> group = readText(text);
  EXPECT_EQ(group->getItem("a")->getValueCount(), 31U);
  EXPECT_EQ(group->getItem("a")->getInt(29), 29);
  EXPECT_EQ(readNumbers(*group->getItem("a")->getGroup(30)->getItem("b")), Numbers({1, 2, 3}));
  EXPECT_EQ(group->getItem("c")->getInt(0), 4);
}

// --- Every pattern of removal --------------------------------------------------------------------

namespace {

/// An item with seven values that all own something else.
std::unique_ptr<ParserItem> makeMixedItem() {
  std::unique_ptr<ParserItem> item = makeItem();
  char bytes[] = {1, 2, 3};
  item->addInt(1);
  item->addString(std::string(100, 's'));
  item->addGroup(nullptr)->addItem("x", 0, 0)->addInt(2);
  item->addBinaryData(bytes, 3);
  item->addString("short");
  item->getString(4);  // from now on a string of the standard library
  item->addDouble(0.12345678901234567);
  item->addGroup(nullptr);
  return item;
}

std::vector<std::string> writeEach(const ParserItem& item) {
  std::vector<std::string> texts;
  for (unsigned long i = 0; i < item.getValueCount(); ++i) {
    ParserItem copy(item);
    std::vector<unsigned long> others(item.getValueCount());
    std::iota(others.begin(), others.end(), 0UL);
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
    copy.removeValue(others);
    std::string text;
    copy.getValueText(text, false, 1);
    texts.push_back(text);
  }
  return texts;
}

}  // namespace

TEST(ParserItemListsTest, EveryPatternOfValuesCanBeRemoved) {
  const std::vector<std::string> all = writeEach(*makeMixedItem());
  ASSERT_EQ(all.size(), 7U);
  for (unsigned pattern = 0; pattern < 128; ++pattern) {
    const std::unique_ptr<ParserItem> item = makeMixedItem();
    std::vector<unsigned long> indices;
    std::vector<std::string> kept;
    for (unsigned long i = 0; i < 7; ++i) {
      if ((pattern >> i & 1) != 0) {
        indices.push_back(i);
      } else {
        kept.push_back(all[i]);
      }
    }
    item->removeValue(indices);
    EXPECT_EQ(writeEach(*item), kept) << pattern;
  }
}

// --- Groups of items without values --------------------------------------------------------------

TEST(ParserItemListsTest, AnItemWithoutValuesGetsOneGroupAndKeepsIt) {
  const std::unique_ptr<ParserItem> item = makeItem();
  ParserGroup* group = item->getGroup(7);
  EXPECT_EQ(item->getGroup(0), group);
  addNumbers(*item, makeNumbers(100));
  EXPECT_EQ(item->getGroup(0), group);
  EXPECT_EQ(item->getValueCount(), 101U);
}

TEST(ParserItemListsTest, AnItemWithTheEmptyTagGetsOneGroup) {
  const std::unique_ptr<ParserGroup> root = readText("a <empty> b 1");
  ParserGroup* group = root->getGroup("a");
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(root->getGroup("a"), group);
  EXPECT_EQ(root->getItem("b")->getInt(0), 1);
}

TEST(ParserItemListsTest, AnItemThatLostItsValuesGetsANewGroup) {
  const std::unique_ptr<ParserItem> item = makeItem();
  addNumbers(*item, makeNumbers(30));
  item->reset();
  EXPECT_EQ(item->getGroup(0)->getItemCount(), 0U);
  EXPECT_TRUE(item->isGroup());
}

// --- Copies of parts -----------------------------------------------------------------------------

TEST(ParserItemListsTest, AnItemBecomesACopyOfAnItemBelowIt) {
  const std::unique_ptr<ParserGroup> root = readText("a 1 { b 2 { c 3 4 } }");
  ParserItem* item = root->getItem("a");
  const ParserItem* below = item->getGroup(1)->getItem("b")->getGroup(1)->getItem("c");
  item->copyFrom(*below);
  EXPECT_EQ(TestSupport::describe(*root), "c int:3 int:4");
}

TEST(ParserItemListsTest, AnItemBecomesACopyOfTheItemAboveIt) {
  const std::unique_ptr<ParserGroup> root = readText("a 1 { b 2 }");
  ParserItem* item = root->getItem("a");
  item->getGroup(1)->getItem("b")->copyFrom(*item);
  EXPECT_EQ(TestSupport::describe(*root), "a int:1 {a int:1 {b int:2}}");
}

// --- Memory of items and groups ------------------------------------------------------------------

TEST(ParserItemListsTest, AnItemOfNothrowNewIsUsedAndDeleted) {
  const std::unique_ptr<ParserItem> item(new (std::nothrow)
                                             ParserItem("a", ParserItem::ITEM_PLAIN, 0, 0));
  ASSERT_NE(item, nullptr);
  addNumbers(*item, makeNumbers(30));
  EXPECT_EQ(readNumbers(*item), makeNumbers(30));
}

TEST(ParserItemListsTest, AnItemIsMadeInAPlaceOfTheCallersOwn) {
  alignas(ParserItem) unsigned char place[sizeof(ParserItem)];
  auto* item = new (place) ParserItem("a", ParserItem::ITEM_PLAIN, 0, 0);
  EXPECT_EQ(static_cast<void*>(item), static_cast<void*>(place));
  addNumbers(*item, makeNumbers(30));
  EXPECT_EQ(readNumbers(*item), makeNumbers(30));
  item->~ParserItem();
}

TEST(ParserItemListsTest, AnItemOnTheStackHoldsAnyNumberOfValues) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  for (const unsigned long count : {1UL, 5000UL}) {
    item.reset();
    addNumbers(item, makeNumbers(count));
    EXPECT_EQ(readNumbers(item), makeNumbers(count));
  }
}

TEST(ParserItemListsTest, AGroupOfNothrowNewIsUsedAndDeleted) {
  const std::unique_ptr<ParserGroup> group(new (std::nothrow) ParserGroup("g"));
  ASSERT_NE(group, nullptr);
  group->setText("a 1", 1.1);
  EXPECT_EQ(TestSupport::describe(*group), "a int:1");
}

TEST(ParserItemListsTest, AGroupIsMadeInAPlaceOfTheCallersOwn) {
  alignas(ParserGroup) unsigned char place[sizeof(ParserGroup)];
  auto* group = new (place) ParserGroup("g");
  group->setText("a 1", 1.1);
  EXPECT_EQ(TestSupport::describe(*group), "a int:1");
  group->~ParserGroup();
}

TEST(ParserItemListsTest, AnItemOfNewIsAdoptedDetachedAndDeleted) {
  ParserGroup group("g");
  auto* item = new ParserItem("a", ParserItem::ITEM_PLAIN, 0, 0);
  addNumbers(*item, makeNumbers(30));
  EXPECT_EQ(group.addItem(*item), item);
  group.detachItem(0);
  EXPECT_EQ(readNumbers(*item), makeNumbers(30));
  delete item;
  EXPECT_EQ(group.getItem(0UL), nullptr);
}

TEST(ParserItemListsTest, ItemsThatWereReadOutliveTheirGroupWhenDetached) {
  std::vector<std::unique_ptr<ParserItem>> items;
  {
    ParserGroup group("g");
    for (const unsigned long count : {0UL, 1UL, 23UL, 24UL, 2000UL})
      group.setText(makeText("a", makeNumbers(count)) + " z 1", 1.1);
    for (unsigned long i = 0; i < group.getItemCount(); i += 2) {
      items.emplace_back(group.getItem(i));
      group.detachItem(i);
    }
  }
  ASSERT_EQ(items.size(), 5U);
  EXPECT_EQ(items[0]->getValueCount(), 0U);
  EXPECT_EQ(readNumbers(*items[2]), makeNumbers(23));
  EXPECT_EQ(readNumbers(*items[4]), makeNumbers(2000));
}

TEST(ParserItemListsTest, AnItemThatWasReadIsAdoptedByAnotherGroup) {
  const std::unique_ptr<ParserGroup> first = readText(makeText("a", makeNumbers(23)));
  ParserItem* item = first->getItem("a");
  first->detachItem(0);
  ParserGroup second("second");
  second.addItem(*item);
  EXPECT_EQ(readNumbers(*second.getItem("a")), makeNumbers(23));
}
