// The names that a group gives to new items, and the kind of item that each makes.

#include <Plinth/Exception.h>
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
using TestSupport::writeOneLine;

namespace {

using Items = std::vector<ParserItem*>;

/// Returns what adding an item of this name throws; fails when nothing is thrown.
Plinth::Fatal refusalOf(const std::string& name) {
  ParserGroup group("root");
  try {
    group.addItem(name, 0, 0);
  } catch (const Plinth::Fatal& fatal) {
    return fatal;
  }
  ADD_FAILURE() << "'" << name << "' was accepted";
  return Plinth::Fatal("nothing was thrown");
}

void expectRefused(const std::string& name) {
  EXPECT_EQ(refusalOf(name).getMessage(),
            "ParserGroup::addItem: '" + name + "' is not a valid item name\n");
}

void expectType(const std::string& name, ParserItem::Type type) {
  ParserGroup group("root");
  EXPECT_EQ(group.addItem(name, 0, 0)->getType(), type) << name;
}

}  // namespace

// --- Names ---------------------------------------------------------------------------------------

TEST(ParserGroupNameTest, AnIdentifierMakesAPlainItem) {
  expectType("x", ParserItem::ITEM_PLAIN);
  expectType("_", ParserItem::ITEM_PLAIN);
  expectType("a.b-c[2]:x%", ParserItem::ITEM_PLAIN);
}

TEST(ParserGroupNameTest, AKeywordMakesAKeyword) {
  expectType("#SerialVersion", ParserItem::ITEM_KEYWORD);
  expectType("#:", ParserItem::ITEM_KEYWORD);
  expectType("#a1", ParserItem::ITEM_KEYWORD);
}

TEST(ParserGroupNameTest, BoolWordsInOtherSpellingsAreNames) {
  expectType("Yes", ParserItem::ITEM_PLAIN);
  expectType("no_", ParserItem::ITEM_PLAIN);
}

TEST(ParserGroupNameTest, TheEmptyNameIsRefused) { expectRefused(""); }

TEST(ParserGroupNameTest, ANameThatBeginsWithADigitIsRefused) { expectRefused("2a"); }

TEST(ParserGroupNameTest, YesIsRefused) { expectRefused("yes"); }

TEST(ParserGroupNameTest, NoIsRefused) { expectRefused("no"); }

TEST(ParserGroupNameTest, AKeywordSignAloneIsRefused) { expectRefused("#"); }

TEST(ParserGroupNameTest, AKeywordThatBeginsWithADigitIsRefused) { expectRefused("#1"); }

TEST(ParserGroupNameTest, ANameWithABlankIsRefused) { expectRefused("a b"); }

TEST(ParserGroupNameTest, ANameThatBeginsWithADashIsRefused) { expectRefused("-a"); }

TEST(ParserGroupNameTest, ANameWithABraceIsRefused) { expectRefused("a{"); }

TEST(ParserGroupNameTest, AQuotedNameIsRefused) { expectRefused("\"a\\nb\""); }

TEST(ParserGroupNameTest, ANameWithAByteFrom128UpIsRefused) {
  expectRefused(
      "gr\xC3\xB6\xC3\x9F"
      "e");
}

TEST(ParserGroupNameTest, ANameWithAZeroByteIsRefused) { expectRefused(std::string("a\0b", 3)); }

TEST(ParserGroupNameTest, TheRefusalNamesItsPlace) {
  const Plinth::Fatal fatal = refusalOf("2a");
  EXPECT_EQ(fatal.getFile(), "src/lib/Quarry/ParserGroup");
  EXPECT_EQ(fatal.getFunction(), "addItem");
  EXPECT_EQ(fatal.getLine(), 237u);
}

TEST(ParserGroupNameTest, TheRefusalGivesNoMessageOnTheConsole) {
  const RecordingConsole console;
  expectRefused("2a");
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserGroupNameTest, AfterARefusalTheGroupIsAsBefore) {
  const auto root = readText("#k 1 a 2");
  EXPECT_THROW(root->addItem("2a", 0, 0), Plinth::Fatal);
  EXPECT_THROW(root->addItem("", 0, 0), Plinth::Fatal);
  EXPECT_EQ(writeOneLine(*root), " #k 1 a 2");
  EXPECT_EQ(root->getItemCount(), 1u);
}

TEST(ParserGroupNameTest, AddGroupRefusesTheSameNames) {
  ParserGroup group("root");
  EXPECT_THROW(group.addGroup("2a", true), Plinth::Fatal);
  EXPECT_EQ(group.getItemCount(), 0u);
}

TEST(ParserGroupNameTest, AGroupThatIsRefusedForItsNameStaysTheCallers) {
  ParserGroup outer("outer");
  const auto inner = std::make_unique<ParserGroup>("2a");
  EXPECT_THROW(outer.addGroup(inner.get(), false), Plinth::Fatal);
  EXPECT_EQ(outer.getItemCount(), 0u);
  EXPECT_EQ(inner->getName(), "2a");
}

// --- Keywords ------------------------------------------------------------------------------------

TEST(ParserGroupKeywordTest, AKeywordIsFoundByGetKeyword) {
  ParserGroup group("root");
  ParserItem* item = group.addItem("#SerialVersion", 0, 0);
  EXPECT_TRUE(item->isKeyWord());
  EXPECT_EQ(group.getKeyword("#SerialVersion"), item);
}

TEST(ParserGroupKeywordTest, AKeywordIsNotFoundByGetItem) {
  ParserGroup group("root");
  group.addItem("#SerialVersion", 0, 0);
  EXPECT_EQ(group.getItem("#SerialVersion"), nullptr);
}

TEST(ParserGroupKeywordTest, AKeywordIsNotCounted) {
  ParserGroup group("root");
  group.addItem("#SerialVersion", 0, 0);
  EXPECT_EQ(group.getItemCount(), 0u);
}

TEST(ParserGroupKeywordTest, AKeywordIsNotAmongTheEntries) {
  ParserGroup group("root");
  group.addItem("#SerialVersion", 0, 0);
  EXPECT_EQ(group.getEntries("#SerialVersion"), Items());
}

TEST(ParserGroupKeywordTest, AKeywordThatHoldsAGroupIsNotFoundByGetGroup) {
  ParserGroup group("root");
  group.addGroup("#k", false);
  EXPECT_EQ(group.getGroup("#k"), nullptr);
}

TEST(ParserGroupKeywordTest, APlainItemIsNotFoundByGetKeyword) {
  EXPECT_EQ(readText("a 1")->getKeyword("a"), nullptr);
}

TEST(ParserGroupKeywordTest, OfTwoKeywordsOfOneNameTheFirstIsFound) {
  ParserGroup group("root");
  ParserItem* first = group.addItem("#k", 0, 0);
  group.addItem("#k", 0, 0);
  EXPECT_EQ(group.getKeyword("#k"), first);
}

TEST(ParserGroupKeywordTest, IndicesPassOverKeywords) {
  const auto root = readText("#k 1 a 2 #l 3 b 4");
  EXPECT_EQ(root->getItemCount(), 2u);
  EXPECT_EQ(root->getItem(0UL)->getName(), "a");
  EXPECT_EQ(root->getItem(1UL)->getName(), "b");
}
