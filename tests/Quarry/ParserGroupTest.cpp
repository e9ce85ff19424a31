// The operations of a group on its items.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::checkWrites;
using TestSupport::describe;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeOneLine;

namespace {

using Items = std::vector<ParserItem*>;

/// Makes an item to be handed to a group.
ParserItem* makeItem(const std::string& name, ParserItem::Type type = ParserItem::ITEM_PLAIN) {
  return new ParserItem(name, type, 0, 0);
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

TEST(ParserGroupTest, ANewGroupHasTheNameItWasMadeWith) {
  EXPECT_EQ(ParserGroup("inner").getName(), "inner");
}

TEST(ParserGroupTest, TheNameOfAGroupIsNotChecked) {
  EXPECT_EQ(ParserGroup("2 { yes").getName(), "2 { yes");
}

TEST(ParserGroupTest, ANewGroupIsEmpty) {
  const ParserGroup group("root");
  EXPECT_EQ(group.getItemCount(), 0u);
  EXPECT_EQ(writeOneLine(group), "");
}

// --- Add items -----------------------------------------------------------------------------------

TEST(ParserGroupTest, AddItemReturnsANewItemWithoutValues) {
  ParserGroup group("root");
  const ParserItem* item = group.addItem("x", 0, 0);
  EXPECT_EQ(item->getName(), "x");
  EXPECT_EQ(item->getValueCount(), 0u);
}

TEST(ParserGroupTest, ItemsStandInTheOrderOfAddition) {
  ParserGroup group("root");
  ParserItem* first = group.addItem("b", 0, 0);
  ParserItem* second = group.addItem("a", 0, 0);
  EXPECT_EQ(group.getItemCount(), 2u);
  EXPECT_EQ(group.getItem(0UL), first);
  EXPECT_EQ(group.getItem(1UL), second);
}

TEST(ParserGroupTest, AddItemTakesANameFromTheGroupItself) {
  ParserGroup group("root");
  const ParserItem* first = group.addItem("a_name_of_more_than_fifteen_bytes", 0, 0);
  EXPECT_EQ(group.addItem(first->getName(), 0, 0)->getName(), "a_name_of_more_than_fifteen_bytes");
}

TEST(ParserGroupTest, AddItemAdoptsTheVeryObject) {
  ParserGroup group("root");
  ParserItem* item = makeItem("x");
  EXPECT_EQ(group.addItem(*item), item);
  EXPECT_EQ(group.getItem("x"), item);
}

TEST(ParserGroupTest, AnAdoptedItemIsNotCheckedForItsName) {
  ParserGroup group("root");
  group.addItem(*makeItem("2 { yes"));
  EXPECT_NE(group.getItem("2 { yes"), nullptr);
}

TEST(ParserGroupTest, AnAdoptedItemIsNotCheckedForDuplicates) {
  ParserGroup group("root");
  group.addItem(*makeItem("x"));
  group.addItem(*makeItem("x"));
  EXPECT_EQ(group.getEntries("x").size(), 2u);
}

TEST(ParserGroupTest, AnAdoptedItemIsSortedByItsTypeAndNotByItsName) {
  ParserGroup group("root");
  ParserItem* keyword = makeItem("x", ParserItem::ITEM_KEYWORD);
  ParserItem* plain = makeItem("#x", ParserItem::ITEM_PLAIN);
  group.addItem(*keyword);
  group.addItem(*plain);
  EXPECT_EQ(group.getKeyword("x"), keyword);
  EXPECT_EQ(group.getItem("#x"), plain);
}

TEST(ParserGroupTest, AnAdoptedCallIsFoundAmongTheKeywords) {
  ParserGroup group("root");
  ParserItem* call = makeItem("f", ParserItem::ITEM_CALL);
  group.addItem(*call);
  EXPECT_EQ(group.getKeyword("f"), call);
  EXPECT_EQ(group.getItem("f"), nullptr);
  EXPECT_EQ(group.getItemCount(), 0u);
}

TEST(ParserGroupTest, ACallThatWasReadIsFoundAmongThePlainItems) {
  const auto root = readText("f(1)");
  EXPECT_NE(root->getItem("f"), nullptr);
  EXPECT_EQ(root->getKeyword("f"), nullptr);
}

// --- Look up -------------------------------------------------------------------------------------

TEST(ParserGroupTest, GetItemFindsAnItemByItsName) {
  const auto root = readText("a 1 b 2");
  EXPECT_EQ(root->getItem("b"), root->getItem(1UL));
}

TEST(ParserGroupTest, GetItemOfAnUnknownNameIsNull) {
  EXPECT_EQ(readText("a 1")->getItem("b"), nullptr);
}

TEST(ParserGroupTest, NamesAreComparedWholeAndByteForByte) {
  const auto root = readText("name 1");
  EXPECT_EQ(root->getItem("nam"), nullptr);
  EXPECT_EQ(root->getItem("names"), nullptr);
  EXPECT_EQ(root->getItem("Name"), nullptr);
}

TEST(ParserGroupTest, NamesAreComparedPastAZeroByte) {
  ParserGroup group("root");
  group.addItem(*makeItem(std::string("a\0b", 3)));
  EXPECT_EQ(group.getItem(std::string("a\0c", 3)), nullptr);
  EXPECT_NE(group.getItem(std::string("a\0b", 3)), nullptr);
}

TEST(ParserGroupTest, ADottedNameIsNoPath) {
  EXPECT_EQ(readText("a { b 1 }")->getItem("a.b"), nullptr);
}

TEST(ParserGroupTest, LookupsDoNotSearchNestedGroups) {
  const auto root = readText("a { b 1 #k 2 }");
  EXPECT_EQ(root->getItem("b"), nullptr);
  EXPECT_EQ(root->getKeyword("#k"), nullptr);
}

TEST(ParserGroupTest, GetItemFindsAnItemUnderItsNewName) {
  const auto root = readText("a 1");
  root->getItem("a")->rename("b");
  EXPECT_EQ(root->getItem("b"), root->getItem(0UL));
  EXPECT_EQ(root->getItem("a"), nullptr);
}

TEST(ParserGroupTest, OfTwoItemsOfOneNameGetItemReturnsTheFirst) {
  ParserGroup group("root");
  ParserItem* first = group.addItem("x", 0, 0);
  group.addItem("x", 0, 0);
  EXPECT_EQ(group.getItem("x"), first);
  EXPECT_EQ(group.getItemCount(), 2u);
}

TEST(ParserGroupTest, GetEntriesReturnsAllItemsOfOneNameInOrder) {
  ParserGroup group("root");
  ParserItem* first = group.addItem("x", 0, 0);
  group.addItem("y", 0, 0);
  ParserItem* second = group.addItem("x", 0, 0);
  EXPECT_EQ(group.getEntries("x"), Items({first, second}));
}

TEST(ParserGroupTest, GetEntriesOfAnUnknownNameIsEmpty) {
  EXPECT_EQ(readText("a 1")->getEntries("b"), Items());
}

TEST(ParserGroupTest, GetGroupReturnsTheGroupThatTheItemHolds) {
  const auto root = readText("sub { a 1 }");
  EXPECT_EQ(root->getGroup("sub"), root->getItem("sub")->getGroup(0));
  EXPECT_EQ(describe(*root->getGroup("sub")), "a int:1");
}

TEST(ParserGroupTest, GetGroupOfAnUnknownNameIsNull) {
  EXPECT_EQ(readText("a 1")->getGroup("b"), nullptr);
}

TEST(ParserGroupTest, GetGroupOfAnItemWithAnotherFirstValueIsNull) {
  EXPECT_EQ(readText("a 1 { b 2 }")->getGroup("a"), nullptr);
}

TEST(ParserGroupTest, GetGroupReturnsTheFirstOfSeveralGroups) {
  const auto root = readText("a { b 1 }");
  root->getItem("a")->addGroup(nullptr);
  EXPECT_EQ(describe(*root->getGroup("a")), "b int:1");
}

TEST(ParserGroupTest, GetGroupOfAnItemWithoutValuesGivesItAnEmptyGroup) {
  ParserGroup group("root");
  group.addItem("a", 0, 0);
  const ParserGroup* added = group.getGroup("a");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(group.getItem("a")->getGroup(0), added);
}

TEST(ParserGroupTest, GetGroupLooksAtTheFirstItemOfThatNameOnly) {
  EXPECT_EQ(readText("a 1 a { b 2 }")->getGroup("a"), nullptr);
}

// --- Add groups ----------------------------------------------------------------------------------

TEST(ParserGroupTest, AddGroupReturnsANewEmptyGroupWithoutANameOfItsOwn) {
  ParserGroup group("root");
  const ParserGroup* sub = group.addGroup("sub", true);
  EXPECT_EQ(sub->getName(), "");
  EXPECT_EQ(sub->getItemCount(), 0u);
}

TEST(ParserGroupTest, AddGroupReturnsTheGroupThatIsFoundUnderItsName) {
  ParserGroup group("root");
  const ParserGroup* sub = group.addGroup("sub", true);
  EXPECT_EQ(group.getGroup("sub"), sub);
  EXPECT_TRUE(group.getItem("sub")->isGroup());
}

TEST(ParserGroupTest, AddGroupSetsTheFolding) {
  ParserGroup group("root");
  group.addGroup("sub", true);
  EXPECT_EQ(writeOneLine(group), " //sub/*{{{*/\nsub { }\n/*}}}*/");
}

TEST(ParserGroupTest, AddGroupWithoutFoldingSetsNone) {
  ParserGroup group("root");
  group.addGroup("sub", false);
  EXPECT_EQ(writeOneLine(group), " sub { }");
}

TEST(ParserGroupTest, AddGroupTakesAKeywordName) {
  ParserGroup group("root");
  const ParserGroup* sub = group.addGroup("#sub", false);
  EXPECT_EQ(group.getKeyword("#sub")->getGroup(0), sub);
}

TEST(ParserGroupTest, AddGroupAdoptsTheVeryGroupInAnItemOfItsName) {
  ParserGroup outer("outer");
  auto* inner = new ParserGroup("inner");
  EXPECT_EQ(outer.addGroup(inner, false), inner);
  EXPECT_EQ(outer.getItem("inner")->getGroup(0), inner);
  EXPECT_EQ(outer.getItem("inner")->getValueCount(), 1u);
}

TEST(ParserGroupTest, AnAdoptedGroupIsWrittenWithItsNameTwice) {
  ParserGroup outer("outer");
  outer.addGroup(new ParserGroup("inner"), false);
  EXPECT_EQ(writeOneLine(outer), " inner inner { }");
}

TEST(ParserGroupTest, AddGroupSetsTheFoldingOfAnAdoptedGroup) {
  ParserGroup outer("outer");
  outer.addGroup(new ParserGroup("inner"), true);
  EXPECT_EQ(writeOneLine(outer), " //inner/*{{{*/\ninner inner { }\n/*}}}*/");
}

// --- Remove --------------------------------------------------------------------------------------

TEST(ParserGroupTest, RemoveItemRemovesEveryItemOfThatName) {
  const auto root = readText("x 1 y 2 x 3");
  root->removeItem("x");
  EXPECT_EQ(describe(*root), "y int:2");
  EXPECT_EQ(root->getItem("x"), nullptr);
}

TEST(ParserGroupTest, RemoveItemRemovesKeywords) {
  const auto root = readText("#k 1 a 2 #l 3");
  root->removeItem("#k");
  EXPECT_EQ(root->getKeyword("#k"), nullptr);
  EXPECT_EQ(writeOneLine(*root), " a 2 #l 3");
}

TEST(ParserGroupTest, RemoveItemRemovesPlainItemsAndKeywordsOfOneName) {
  ParserGroup group("root");
  group.addItem(*makeItem("x", ParserItem::ITEM_PLAIN));
  group.addItem(*makeItem("x", ParserItem::ITEM_KEYWORD));
  group.removeItem("x");
  EXPECT_EQ(writeOneLine(group), "");
}

TEST(ParserGroupTest, RemoveItemKeepsTheOtherItemsThemselves) {
  const auto root = readText("a 1 b 2 #k 3");
  ParserItem* kept = root->getItem("b");
  ParserItem* keyword = root->getKeyword("#k");
  root->removeItem("a");
  EXPECT_EQ(root->getItem(0UL), kept);
  EXPECT_EQ(root->getKeyword("#k"), keyword);
}

TEST(ParserGroupTest, RemoveItemOfAnUnknownNameRemovesNothingAndGivesNoMessage) {
  const RecordingConsole console;
  const auto root = readText("a 1 #k 2");
  root->removeItem("b");
  EXPECT_EQ(writeOneLine(*root), " a 1 #k 2");
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserGroupTest, RemoveItemLeavesNestedGroupsAlone) {
  const auto root = readText("a { x 1 } x 2");
  root->removeItem("x");
  EXPECT_EQ(describe(*root), "a {x int:1}");
}

TEST(ParserGroupTest, RemoveItemTakesTheNameOfTheVeryItem) {
  const auto root = readText("a_name_of_more_than_fifteen_bytes 1 b 2");
  root->removeItem(root->getItem(0UL)->getName());
  EXPECT_EQ(describe(*root), "b int:2");
}

TEST(ParserGroupTest, AfterRemoveItemACallThatWasReadIsFoundAmongTheKeywords) {
  const auto root = readText("f(1) a 2");
  root->removeItem("a");
  EXPECT_EQ(root->getItem("f"), nullptr);
  ASSERT_NE(root->getKeyword("f"), nullptr);
  EXPECT_EQ(root->getKeyword("f")->getInt(0), 1);
}

TEST(ParserGroupTest, ItemsCanBeAddedAfterRemoveItem) {
  const auto root = readText("a 1 #k 2");
  root->removeItem("a");
  ParserItem* added = root->addItem("b", 0, 0);
  EXPECT_EQ(root->getItem(0UL), added);
  EXPECT_EQ(writeOneLine(*root), " #k 2 b <empty>");
}

TEST(ParserGroupTest, ClearRemovesAllItemsAndKeepsTheName) {
  ParserGroup group("kept");
  group.setText("a { b 1 } #k 2", 1.1);
  group.clear();
  EXPECT_EQ(group.getName(), "kept");
  EXPECT_EQ(group.getItemCount(), 0u);
  EXPECT_EQ(writeOneLine(group), "");
}

TEST(ParserGroupTest, AfterClearNothingIsFound) {
  const auto root = readText("a 1 #k 2");
  root->clear();
  EXPECT_EQ(root->getItem("a"), nullptr);
  EXPECT_EQ(root->getKeyword("#k"), nullptr);
}

TEST(ParserGroupTest, ItemsCanBeAddedAfterClear) {
  const auto root = readText("a 1");
  root->clear();
  root->addItem("b", 0, 0)->addInt(2);
  checkWrites(*root, "\nb 2");
}
