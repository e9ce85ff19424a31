// Items that are handed back to the caller, and the empty places that they leave.

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
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeLines;
using TestSupport::writeOneLine;

namespace {

using Items = std::vector<ParserItem*>;

/// Detaches plain item `index` and returns it to its new owner.
std::unique_ptr<ParserItem> detach(ParserGroup& group, unsigned long index) {
  std::unique_ptr<ParserItem> item(group.getItem(index));
  group.detachItem(index);
  return item;
}

std::string textOf(const ParserItem& item) {
  std::string text;
  item.getText(text, false, 1);
  return text;
}

/// The items `a 1 b 2 c 3`, of which the first is detached.
class ParserGroupDetachTest : public testing::Test {
 protected:
  std::unique_ptr<ParserGroup> root = readText("a 1 b 2 c 3");
  std::unique_ptr<ParserItem> detached = detach(*root, 0);
};

}  // namespace

// --- The group -----------------------------------------------------------------------------------

TEST_F(ParserGroupDetachTest, TheNumberOfItemsStays) { EXPECT_EQ(root->getItemCount(), 3u); }

TEST_F(ParserGroupDetachTest, TheItemOfThatIndexIsNull) { EXPECT_EQ(root->getItem(0UL), nullptr); }

TEST_F(ParserGroupDetachTest, TheOtherItemsKeepTheirIndices) {
  EXPECT_EQ(root->getItem(1UL)->getName(), "b");
  EXPECT_EQ(root->getItem(2UL)->getName(), "c");
}

TEST_F(ParserGroupDetachTest, TheNameIsNotFoundAnyMore) { EXPECT_EQ(root->getItem("a"), nullptr); }

TEST_F(ParserGroupDetachTest, TheNamesBehindItAreFound) {
  EXPECT_EQ(root->getItem("c"), root->getItem(2UL));
}

TEST_F(ParserGroupDetachTest, GetGroupOfTheNameIsNull) { EXPECT_EQ(root->getGroup("a"), nullptr); }

TEST_F(ParserGroupDetachTest, GetGroupFindsAGroupBehindIt) {
  const ParserGroup* group = root->addGroup("g", false);
  EXPECT_EQ(root->getGroup("g"), group);
}

TEST_F(ParserGroupDetachTest, TheEntriesAreThoseThatAreLeft) {
  ParserItem* second = root->addItem("a", 0, 0);
  EXPECT_EQ(root->getEntries("a"), Items({second}));
}

TEST_F(ParserGroupDetachTest, TheNextItemOfTheSameNameIsFound) {
  ParserItem* second = root->addItem("a", 0, 0);
  EXPECT_EQ(root->getItem("a"), second);
}

TEST_F(ParserGroupDetachTest, ItIsNotWrittenOnOneLine) {
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3");
}

TEST_F(ParserGroupDetachTest, ItLeavesNoEmptyLine) { EXPECT_EQ(writeLines(*root), "\nb 2\nc 3"); }

TEST_F(ParserGroupDetachTest, ACopyHasNoPlaceForIt) {
  const ParserGroup copy(*root);
  EXPECT_EQ(copy.getItemCount(), 2u);
  EXPECT_EQ(copy.getItem(0UL)->getName(), "b");
  EXPECT_EQ(writeOneLine(copy), " b 2 c 3");
}

TEST_F(ParserGroupDetachTest, RemoveItemRemovesAnotherItem) {
  root->removeItem("b");
  EXPECT_EQ(writeOneLine(*root), " c 3");
}

TEST_F(ParserGroupDetachTest, RemoveItemOfItsNameRemovesNothing) {
  root->removeItem("a");
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3");
}

TEST_F(ParserGroupDetachTest, RemoveItemClosesItsPlace) {
  root->removeItem("nothing");
  EXPECT_EQ(root->getItemCount(), 2u);
  EXPECT_EQ(root->getItem(0UL)->getName(), "b");
}

TEST_F(ParserGroupDetachTest, ClearRemovesTheOthers) {
  root->clear();
  EXPECT_EQ(root->getItemCount(), 0u);
  EXPECT_EQ(textOf(*detached), "a 1");
}

TEST_F(ParserGroupDetachTest, ItemsAreAddedAtTheEnd) {
  root->addItem("d", 0, 0)->addInt(4);
  EXPECT_EQ(root->getItem(3UL)->getName(), "d");
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3 d 4");
}

TEST_F(ParserGroupDetachTest, ReadingAddsAtTheEnd) {
  root->setText("d 4", 1.1);
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3 d 4");
}

TEST_F(ParserGroupDetachTest, DetachingTheSameIndexAgainDoesNothing) {
  root->detachItem(0);
  EXPECT_EQ(root->getItemCount(), 3u);
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3");
}

TEST_F(ParserGroupDetachTest, DetachingGivesNoMessage) {
  const RecordingConsole console;
  const auto second = detach(*root, 1);
  EXPECT_EQ(writeOneLine(*root), " c 3");
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserGroupDetachTest, AGroupWhoseItemsAreAllDetachedIsWrittenAsEmpty) {
  const auto second = detach(*root, 1);
  const auto third = detach(*root, 2);
  std::string text;
  root->getText(text, true, true, 1);
  EXPECT_EQ(text, "root {\n}");
}

TEST(ParserGroupDetachKeywordTest, TheIndexIsTheOneAmongThePlainItems) {
  const auto root = readText("#k 1 a 2 #l 3 b 4");
  const auto detached = detach(*root, 1);
  EXPECT_EQ(detached->getName(), "b");
  EXPECT_EQ(writeOneLine(*root), " #k 1 a 2 #l 3");
}

TEST(ParserGroupDetachKeywordTest, KeywordsBehindItAreFound) {
  const auto root = readText("a 1 #k 2");
  const auto detached = detach(*root, 0);
  EXPECT_EQ(root->getKeyword("#k")->getInt(0), 2);
}

TEST(ParserGroupDetachNestedTest, AnEmptyPlaceInANestedGroupIsPassedOver) {
  const auto root = readText("g { a 1 b 2 }");
  const auto detached = detach(*root->getGroup("g"), 0);
  EXPECT_EQ(writeOneLine(*root), " g { b 2 }");
  EXPECT_EQ(writeOneLine(ParserGroup(*root)), " g { b 2 }");
}

TEST(ParserGroupDetachNestedTest, AnItemCopiedFromAGroupWithAnEmptyPlacePassesOverIt) {
  const auto root = readText("g { a 1 b 2 }");
  const auto detached = detach(*root->getGroup("g"), 0);
  EXPECT_EQ(textOf(ParserItem(*root->getItem("g"))), "g { b 2 }");
}

// --- The item ------------------------------------------------------------------------------------

TEST_F(ParserGroupDetachTest, TheItemIsAsBefore) { EXPECT_EQ(textOf(*detached), "a 1"); }

TEST_F(ParserGroupDetachTest, TheItemSurvivesTheGroup) {
  root.reset();
  EXPECT_EQ(textOf(*detached), "a 1");
}

TEST_F(ParserGroupDetachTest, TheItemMayGoToAnotherGroup) {
  ParserGroup other("other");
  other.addItem(*detached.release());
  root.reset();
  EXPECT_EQ(writeOneLine(other), " a 1");
}

TEST_F(ParserGroupDetachTest, TheItemMayComeBack) {
  root->addItem(*detached.release());
  EXPECT_EQ(root->getItemCount(), 4u);
  EXPECT_EQ(writeOneLine(*root), " b 2 c 3 a 1");
}

TEST(ParserGroupDetachNestedTest, TheItemKeepsItsGroups) {
  auto root = readText("g { a { b 1 } }");
  const auto detached = detach(*root, 0);
  root.reset();
  EXPECT_EQ(textOf(*detached), "g { a { b 1 } }");
}

TEST(ParserGroupDetachNestedTest, AnItemOfANestedGroupSurvivesTheWholeTree) {
  auto root = readText("g { a { b 1 } c 2 }");
  const auto detached = detach(*root->getGroup("g"), 0);
  root.reset();
  EXPECT_EQ(textOf(*detached), "a { b 1 }");
}

TEST(ParserGroupDetachNestedTest, TheGroupMayBeEmptiedWhileTheItemIsOut) {
  const auto root = readText("g { a 1 b 2 }");
  const auto detached = detach(*root->getGroup("g"), 1);
  root->removeItem("g");
  EXPECT_EQ(writeOneLine(*root), "");
  EXPECT_EQ(textOf(*detached), "b 2");
}
