// Memory that runs out while a tree is changed.

#include <Plinth/Exception.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::Attempt;
using TestSupport::expectConsistent;
using TestSupport::forEveryFault;
using TestSupport::readText;
using TestSupport::writeLines;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";
const std::string LONG_NAME = "a_name_that_is_longer_than_a_string_within_itself";

const std::string TEXT = "#Keyword 1 a 1 \"" + LONG_STRING + "\" 0x0102030400000000 b 2 g { x 1 }";

using Change = std::function<void(ParserGroup&)>;

/// Expects that a change of the tree of TEXT happens as a whole or not at all, and can be made when
/// there is memory again.
void checkAllOrNothing(const Change& change) {
  const std::unique_ptr<ParserGroup> changed = readText(TEXT);
  change(*changed);
  const std::string expected = writeLines(*changed);
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(TEXT);
    const std::string before = writeLines(*root);
    if (!attempt.run([&] { change(*root); })) {
      EXPECT_EQ(writeLines(*root), before);
      expectConsistent(*root);
      change(*root);
    }
    EXPECT_EQ(writeLines(*root), expected);
    expectConsistent(*root);
  });
}

/// Expects that a change of several steps leaves a tree that is one.
void checkConsistent(const Change& change) {
  const std::unique_ptr<ParserGroup> changed = readText(TEXT);
  change(*changed);
  const std::string expected = writeLines(*changed);
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(TEXT);
    if (!attempt.run([&] { change(*root); })) {
      expectConsistent(*root);
      root->clear();
      root->setText(TEXT, 1.1);
      change(*root);
    }
    EXPECT_EQ(writeLines(*root), expected);
    expectConsistent(*root);
  });
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST(EditFaultTest, AnItemIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.addItem(LONG_NAME, 0, 0); });
}

TEST(EditFaultTest, AKeywordIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.addItem('#' + LONG_NAME, 0, 0); });
}

TEST(EditFaultTest, AKeywordBehindOnlyPlainItemsIsAddedOrNot) {
  forEveryFault([](Attempt& attempt) {
    ParserGroup root("root");
    root.addItem("a", 0, 0);
    const bool isComplete = attempt.run([&] { root.addItem("#Keyword", 0, 0); });
    EXPECT_EQ(root.getKeyword("#Keyword") != nullptr, isComplete);
    root.addItem("b", 0, 0);
    EXPECT_EQ(root.getItemCount(), 2U);
    EXPECT_EQ(root.getItem(1), root.getItem("b"));
  });
}

TEST(EditFaultTest, ManyItemsAreAdded) {
  checkConsistent([](ParserGroup& root) {
    for (int i = 0; i < TestSupport::MANY; ++i)
      root.addItem("item" + std::to_string(i), 0, 0)->addInt(i);
  });
}

TEST(EditFaultTest, AnItemThatIsNotAdoptedStaysTheCallers) {
  forEveryFault([](Attempt& attempt) {
    ParserGroup root("root");
    auto item = std::make_unique<ParserItem>("#Keyword", ParserItem::ITEM_KEYWORD, 0, 0);
    item->addString(LONG_STRING);
    const bool isComplete = attempt.run([&] { root.addItem(*item); });
    EXPECT_EQ(root.getKeyword("#Keyword"), isComplete ? item.get() : nullptr);
    if (isComplete) static_cast<void>(item.release());
    expectConsistent(root);
  });
}

TEST(EditFaultTest, ANameIsRefusedOrMemoryRunsOut) {
  const std::string name = "2 " + LONG_NAME;
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(TEXT);
    const std::string before = writeLines(*root);
    std::string message(200, ' ');
    const bool isComplete = attempt.run([&] {
      try {
        root->addItem(name, 0, 0);
      } catch (const Plinth::Fatal& fatal) {
        message.assign(fatal.what());
      }
    });
    if (isComplete) {
      EXPECT_EQ(message, "ParserGroup::addItem: '" + name + "' is not a valid item name\n");
    }
    EXPECT_EQ(writeLines(*root), before);
  });
}

TEST(EditFaultTest, AnItemIsRenamedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem(0UL)->rename(LONG_NAME); });
}

TEST(EditFaultTest, ItemsAreRemovedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.removeItem("a"); });
}

TEST(EditFaultTest, AKeywordIsRemovedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.removeItem("#Keyword"); });
}

TEST(EditFaultTest, ItemsAreDetachedAndAdoptedByAnotherGroup) {
  checkConsistent([](ParserGroup& root) {
    std::unique_ptr<ParserItem> item(root.getItem(0UL));
    root.detachItem(0);
    ParserGroup& group = *root.addGroup("an_archive_with_a_long_name", false);
    group.addItem("#Keyword", 0, 0);
    group.addItem(*item);
    static_cast<void>(item.release());
  });
}

TEST(EditFaultTest, PlacesOfDetachedItemsAreClosedOrNot) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(TEXT);
    const std::unique_ptr<ParserItem> item(root->getItem(0UL));
    root->detachItem(0);
    const std::string expected = writeLines(*root);
    const bool isComplete = attempt.run([&] { root->removeItem("absent"); });
    EXPECT_EQ(root->getItemCount(), isComplete ? 2U : 3U);
    EXPECT_EQ(writeLines(*root), expected);
    expectConsistent(*root);
  });
}

// --- Groups --------------------------------------------------------------------------------------

TEST(EditFaultTest, AGroupIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.addGroup(LONG_NAME, false); });
}

TEST(EditFaultTest, AGroupOfAKeywordIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.addGroup("#Folder", false); });
}

/// The list of items has room already, so that of the item and its group only the group fails.
TEST(EditFaultTest, AnItemWhoseGroupCannotBeMadeIsTakenOutAgain) {
  for (const std::string name : {"g", "#Folder"}) {
    forEveryFault([&name](Attempt& attempt) {
      ParserGroup root("root");
      root.addItem("#Other", 0, 0);
      root.addItem("a", 0, 0);
      const bool isComplete = attempt.run([&] { root.addGroup(name, false); });
      const std::string before = "\n#Other <empty>\na <empty>";
      EXPECT_EQ(writeLines(root), isComplete ? before + "\n" + name + " {\n}" : before);
      expectConsistent(root);
    });
  }
}

TEST(EditFaultTest, AGroupThatIsNotAdoptedStaysTheCallers) {
  forEveryFault([](Attempt& attempt) {
    ParserGroup root("root");
    auto group = std::make_unique<ParserGroup>(LONG_NAME);
    group->setText(TEXT, 1.1);
    const bool isComplete = attempt.run([&] { root.addGroup(group.get(), false); });
    EXPECT_EQ(root.getGroup(LONG_NAME), isComplete ? group.get() : nullptr);
    EXPECT_EQ(root.getItemCount(), isComplete ? 1U : 0U);
    expectConsistent(*group);
    if (isComplete) static_cast<void>(group.release());
  });
}

TEST(EditFaultTest, AnItemWithoutValuesGetsAGroupOrNot) {
  forEveryFault([](Attempt& attempt) {
    const ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
    const ParserGroup* group = nullptr;
    const bool isComplete = attempt.run([&] { group = item.getGroup(0); });
    EXPECT_EQ(item.getValueCount(), isComplete ? 1U : 0U);
    EXPECT_EQ(group != nullptr, isComplete);
    EXPECT_NE(item.getGroup(0), nullptr);
  });
}

// --- Values --------------------------------------------------------------------------------------

TEST(EditFaultTest, AStringIsSetOrNot) {
  checkAllOrNothing([](ParserGroup& root) {
    root.getItem("g")->setString("another string that is longer than a value", 0);
  });
}

TEST(EditFaultTest, AStringIsReplacedByAPartOfItselfOrNot) {
  checkAllOrNothing([](ParserGroup& root) {
    ParserItem& item = *root.getItem("a");
    item.setString(item.getString(1), 1);
  });
}

TEST(EditFaultTest, ABlockIsSetOrNot) {
  checkAllOrNothing([](ParserGroup& root) {
    char bytes[] = "some bytes";
    root.getItem("a")->setBinaryData(bytes, sizeof bytes, 1);
  });
}

TEST(EditFaultTest, ABlockIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) {
    char bytes[] = "some bytes";
    root.getItem("b")->addBinaryData(bytes, sizeof bytes);
  });
}

TEST(EditFaultTest, ALongStringIsAddedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem("b")->addString(LONG_STRING); });
}

TEST(EditFaultTest, ValuesOfEveryKindAreAdded) {
  checkConsistent([](ParserGroup& root) {
    ParserItem& item = *root.getItem("b");
    for (int i = 0; i < 10; ++i) {
      item.addBool(true);
      item.addChar('a');
      item.addInt(i);
      item.addDouble(-2.2250738585072014e-308);
      item.addString(LONG_STRING);
      item.addGroup(nullptr)->addItem("inner", 0, 0);
    }
  });
}

TEST(EditFaultTest, AListGrowsIntoALargeBlock) {
  forEveryFault([](Attempt& attempt) {
    ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
    const bool isComplete = attempt.run([&] {
      for (int i = 0; i < 6000; ++i)
        item.addBool(true);
    });
    const unsigned long count = item.getValueCount();
    EXPECT_EQ(count == 6000, isComplete);
    item.addInt(7);
    EXPECT_TRUE(count == 0 || item.getBool(count - 1));
    EXPECT_EQ(item.getInt(count), 7);
  });
}

TEST(EditFaultTest, ValuesAreRemovedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem("a")->removeValue({2, 0}); });
}

TEST(EditFaultTest, OneValueIsRemovedOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem("a")->removeValue(1); });
}

TEST(EditFaultTest, AStringThatIsAskedForStaysAsItIs) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(TEXT);
    const ParserItem& item = *root->getItem("a");
    attempt.run([&] { item.getString(1); });
    EXPECT_EQ(item.getString(1), LONG_STRING);
    EXPECT_EQ(item.getWord(1), LONG_STRING);
  });
}

// --- Arrays and templates ------------------------------------------------------------------------

TEST(EditFaultTest, AnArrayIsMadeOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem("a")->setArray(true, 65); });
}

TEST(EditFaultTest, ATemplateIsMadeOrNot) {
  checkAllOrNothing([](ParserGroup& root) { root.getItem("a")->setTemplate(LONG_NAME); });
}

/// So many that their memory is not all there before.
TEST(EditFaultTest, NewThatDoesNotThrowGivesNull) {
  constexpr std::size_t PARTS = TestSupport::MANY;
  std::array<std::unique_ptr<ParserItem>, PARTS> items;
  std::array<std::unique_ptr<ParserGroup>, PARTS> groups;
  bool lacksItem = false;
  bool lacksGroup = false;
  forEveryFault([&](Attempt& attempt) {
    EXPECT_TRUE(attempt.run([&] {
      for (auto& item : items)
        item.reset(new (std::nothrow) ParserItem("a", ParserItem::ITEM_PLAIN, 0, 0));
      for (auto& group : groups)
        group.reset(new (std::nothrow) ParserGroup(""));
    }));
    for (auto& item : items)
      if (std::exchange(item, nullptr) == nullptr) lacksItem = true;
    for (auto& group : groups)
      if (std::exchange(group, nullptr) == nullptr) lacksGroup = true;
  });
  EXPECT_TRUE(lacksItem);
  EXPECT_TRUE(lacksGroup);
}
