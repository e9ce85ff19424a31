// Uses that the headers allow and hardly any program makes: parts of an object given to the object
// itself, trees put into themselves, numbers that are no enumerators, indices far out.

#include <Plinth/Expression.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserWord.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Bytes.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;
using Quarry::ParserValue;
using Quarry::ParserWord;
using TestSupport::describe;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeOneLine;
using TestSupport::operator+;

namespace {

constexpr unsigned long HUGE_INDEX = ~0UL;

/// A name that does not fit into a string object itself.
const std::string LONG_NAME = "a_name_that_is_longer_than_any_string_object";

}  // namespace

// --- Assignment ----------------------------------------------------------------------------------

TEST(OddUsesTest, WhatOwnsAPartOfATreeCannotBeAssigned) {
  EXPECT_FALSE(std::is_copy_assignable_v<ParserValue> || std::is_move_assignable_v<ParserValue>);
  EXPECT_FALSE(std::is_copy_assignable_v<ParserItem> || std::is_move_assignable_v<ParserItem>);
  EXPECT_FALSE(std::is_copy_assignable_v<ParserGroup> || std::is_move_assignable_v<ParserGroup>);
  EXPECT_FALSE(std::is_copy_assignable_v<ParserFile> || std::is_move_assignable_v<ParserFile>);
}

TEST(OddUsesTest, AFileCannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<ParserFile>);
  EXPECT_FALSE(std::is_move_constructible_v<ParserFile>);
}

TEST(OddUsesTest, ACollectionMayBeAssignedToItself) {
  const auto root = readText("a 1 b 2");
  ParserItems items = root->getItems("");
  const ParserItems& same = items;
  items = same;
  EXPECT_EQ(items.getCount(), 2U);
}

TEST(OddUsesTest, ACollectionMayBecomeASelectionOfItself) {
  const auto root = readText("a 1 b 2");
  ParserItems items = root->getItems("");
  items = items.getMatching(Plinth::Expression("b"));
  EXPECT_EQ(items.getFirst()->getName(), "b");
}

TEST(OddUsesTest, ACollectionThatWasMovedFromIsEmptyAndCanBeAssigned) {
  const auto root = readText("a 1 b 2");
  ParserItems items = root->getItems("");
  const ParserItems taken = std::move(items);
  EXPECT_TRUE(items.isEmpty());
  items = taken;
  EXPECT_EQ(items.getCount(), 2U);
}

// --- Trees in themselves -------------------------------------------------------------------------

TEST(OddUsesTest, ACopyOfTheRootMayStandInTheRoot) {
  const auto root = readText("a 1 g { b 2 }");
  root->addItem("copy", 0, 0)->addGroup(new ParserGroup(*root));
  EXPECT_EQ(describe(*root), "a int:1; g {b int:2}; copy {a int:1; g {b int:2}; copy}");
}

TEST(OddUsesTest, ACopyOfTheRootMayStandInAGroupBelowIt) {
  const auto root = readText("a 1 g { b 2 }");
  root->getGroup("g")->addItem("copy", 0, 0)->addGroup(new ParserGroup(*root));
  EXPECT_EQ(describe(*root), "a int:1; g {b int:2; copy {a int:1; g {b int:2; copy}}}");
}

TEST(OddUsesTest, AnItemMayBeCopiedBehindItself) {
  const auto root = readText("g { a 1 }");
  root->addItem(*new ParserItem(*root->getItem("g")));
  EXPECT_EQ(describe(*root), "g {a int:1}; g {a int:1}");
}

TEST(OddUsesTest, AnItemMayHoldACopyOfTheGroupThatItHolds) {
  const auto root = readText("g { a 1 }");
  ParserItem* item = root->getItem("g");
  item->addGroup(new ParserGroup(*item->getGroup(0)));
  EXPECT_EQ(describe(*root), "g {a int:1} {a int:1}");
}

TEST(OddUsesTest, AGroupMayTakeAnItemThatWasDetachedFromItsRoot) {
  const auto root = readText("a 1 g { b 2 }");
  ParserItem* item = root->getItem("a");
  root->detachItem(0);
  root->getGroup("g")->addItem(*item);
  EXPECT_EQ(describe(*root), "g {b int:2; a int:1}");
}

TEST(OddUsesTest, ARootMayBeReplacedByItsOwnGroupThroughItsText) {
  const auto root = readText("a 1 g { b 2 }");
  const std::string text = writeOneLine(*root->getGroup("g"));
  root->clear();
  root->setText(text, 1.1);
  EXPECT_EQ(describe(*root), "b int:2");
}

TEST(OddUsesTest, ABinaryDocumentMayBeReadIntoTheGroupThatItCameFrom) {
  const auto root = readText("a 1");
  unsigned long pos = 0;
  EXPECT_TRUE(root->setBinary(root->getBinary(false), pos));
  EXPECT_EQ(writeOneLine(*root), std::string(" a 1 a \1"));
}

// --- An object's own parts -----------------------------------------------------------------------

TEST(OddUsesTest, AGroupMayReadAStringOfItsOwnAsText) {
  const auto root = readText("a \"b 1 c { d \\\"a string that does not lie in the value\\\" }\"");
  root->setText(root->getItem("a")->getString(0), 1.1);
  EXPECT_EQ(describe(*root->getGroup("c")), "d string:\"a string that does not lie in the value\"");
}

TEST(OddUsesTest, AGroupMayReadItsNameAsText) {
  ParserGroup root("a 1 b { c 2 } d \"and so on\"");
  root.setText(root.getName(), 1.1);
  EXPECT_EQ(describe(root), "a int:1; b {c int:2}; d string:\"and so on\"");
}

TEST(OddUsesTest, AnItemMayBeNamedAfterItsTemplateAndItsTemplateAfterIt) {
  ParserItem item("short", ParserItem::ITEM_PLAIN, 0, 0);
  item.setTemplate(LONG_NAME);
  item.rename(item.getTemplate());
  EXPECT_EQ(item.getName(), LONG_NAME);
  item.setTemplate(item.getName());
  EXPECT_EQ(item.getTemplate(), LONG_NAME);
}

TEST(OddUsesTest, AnItemMayBeRenamedToAStringOfItsOwn) {
  const auto root = readText("a \"" + LONG_NAME + "\"");
  ParserItem* item = root->getItem("a");
  item->rename(item->getString(0));
  EXPECT_EQ(root->getItem(LONG_NAME), item);
}

TEST(OddUsesTest, ItemsMayBeRemovedByAStringOfAnItemThatGoes) {
  const auto root = readText("a \"a\" b \"a\" a 1");
  root->removeItem(root->getItem("a")->getString(0));
  EXPECT_EQ(describe(*root), "b string:\"a\"");
}

TEST(OddUsesTest, ItemsMayBeRemovedByTheNameOfAnItemBelowOneThatGoes) {
  const auto root = readText("a { a 1 } b 2");
  root->removeItem(root->getGroup("a")->getItem("a")->getName());
  EXPECT_EQ(describe(*root), "b int:2");
}

TEST(OddUsesTest, AnItemMayGetItsOwnStringAgainAndAgain) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addString("x");
  const std::string& first = item.getString(0);
  for (int i = 0; i < 100; ++i)
    item.addString(first);
  EXPECT_EQ(item.getString(100), "x");
}

TEST(OddUsesTest, AnItemMayGetItsOwnNameAsAString) {
  ParserItem item(LONG_NAME, ParserItem::ITEM_PLAIN, 0, 0);
  item.addString(item.getName());
  EXPECT_EQ(item.getString(0), LONG_NAME);
}

TEST(OddUsesTest, AnItemMayGetItsOwnBlockAgainAndAgain) {
  char bytes[] = {1, 2, 3};
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addBinaryData(bytes, 3);
  for (unsigned long i = 0; i < 100; ++i)
    item.addBinaryData(item.getBinaryData(i), item.getBinaryDataSize(i));
  EXPECT_EQ(static_cast<char*>(item.getBinaryData(100))[2], 3);
}

TEST(OddUsesTest, AValueMayBecomeAStringOfAGroupThatItHolds) {
  const auto root = readText("g { a \"" + LONG_NAME + "\" }");
  ParserItem* item = root->getItem("g");
  item->setString(item->getGroup(0)->getItem("a")->getString(0), 0);
  EXPECT_EQ(item->getString(0), LONG_NAME);
}

TEST(OddUsesTest, AValueMayBecomeABlockOfAGroupThatItHolds) {
  const auto root = readText("g { b 0x0102FF02010000 }");
  ParserItem* item = root->getItem("g");
  const ParserItem* block = item->getGroup(0)->getItem("b");
  item->setBinaryData(block->getBinaryData(0), block->getBinaryDataSize(0), 0);
  EXPECT_EQ(describe(*root), "g binary:\1\2\xFF");
}

TEST(OddUsesTest, AFileMayBeGivenItsOwnNameDirectoryAndSearchPaths) {
  ParserFile file("some/folder/" + LONG_NAME);
  file.setSearchPaths({"one", "two"});
  file.setSearchPaths(file.getSearchPaths());
  file.setFilename(file.getFilename());
  EXPECT_EQ(file.getDirectory(), "some/folder");
  file.setFilename(file.getDirectory());
  EXPECT_EQ(file.getFilename() + "|" + file.getDirectory(), "some/folder|some");
  EXPECT_EQ(file.getSearchPaths(), std::vector<std::string>({"one", "two"}));
}

TEST(OddUsesTest, AByteOfABufferMayBeAppendedToIt) {
  std::vector<char> buffer = {'a'};
  buffer.shrink_to_fit();
  for (int i = 0; i < 100; ++i)
    ParserValue::charToBin(buffer, buffer[0]);
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), std::string(101, 'a'));
}

TEST(OddUsesTest, TheBytesOfABufferMayBeAppendedToItAsABlock) {
  std::vector<char> buffer = {1, 2, 3};
  buffer.shrink_to_fit();
  EXPECT_EQ(ParserValue::binaryDataToBin(buffer, buffer.data(), 3), 11U);
  EXPECT_EQ(buffer, TestSupport::makeBytes("010203 0300000000000000 010203"));
}

// --- Numbers that are no enumerators -------------------------------------------------------------

class OutsideTest : public testing::TestWithParam<int> {
 protected:
  template <class Type>
  static Type get() {
    return static_cast<Type>(GetParam());
  }
};

TEST_P(OutsideTest, AnItemOfSuchATypeIsNoPlainItemAndNoKeyword) {
  ParserGroup root("root");
  const auto* item = root.addItem(*new ParserItem("a", get<ParserItem::Type>(), 0, 0));
  EXPECT_FALSE(item->isKeyWord());
  EXPECT_EQ(root.getItemCount(), 0U);
  EXPECT_EQ(root.getKeyword("a"), item);
}

TEST_P(OutsideTest, AnItemOfSuchATypeIsCopiedAndWrittenAsAPlainOne) {
  ParserItem item("a", get<ParserItem::Type>(), 0, 0);
  item.addInt(1);
  const ParserItem copy(item);
  std::string text;
  copy.getText(text, true, 1);
  EXPECT_EQ(text, "a 1");
  EXPECT_EQ(copy.getType(), get<ParserItem::Type>());
}

TEST_P(OutsideTest, AWordAddedAsSuchAValueHoldsNothing) {
  const std::string text = "12";
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addWord(ParserWord(text, true, 1.1), get<ParserValue::Type>());
  EXPECT_EQ(item.getWord(0), "");
  EXPECT_EQ(item.getValueType(0), get<ParserValue::Type>());
}

TEST_P(OutsideTest, AValueOfSuchATypeIsNothingThatIsAskedFor) {
  const RecordingConsole console;
  const ParserValue value(get<ParserValue::Type>(), "12");
  EXPECT_EQ(value.getAsInt(), 0);
  EXPECT_EQ(value.getAsString(), "");
  unsigned long size = 7;
  EXPECT_EQ(value.getAsBinaryData(size), nullptr);
  EXPECT_EQ(console.getMessages().size(), 3U);
}

TEST_P(OutsideTest, AnItemWithSuchAValueIsCopiedWrittenAndEncoded) {
  const std::string text = "12";
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addWord(ParserWord(text, true, 1.1), get<ParserValue::Type>());
  const ParserItem copy(item);
  std::string written;
  copy.getText(written, true, 1);
  EXPECT_EQ(written, "a ");
  EXPECT_EQ(copy.getBinary().back(), static_cast<char>(GetParam()));
}

TEST_P(OutsideTest, SuchAValueCanBeSet) {
  ParserValue value(get<ParserValue::Type>(), "12");
  value.setInt(12);
  EXPECT_EQ(value.getAsInt(), 12);
}

TEST_P(OutsideTest, AWordOfSuchATypeIsNoValue) {
  EXPECT_FALSE(ParserWord::isValuetype(get<ParserWord::Type>()));
}

INSTANTIATE_TEST_SUITE_P(OddUsesTest, OutsideTest,
                         testing::Values(-1, 13, 255, 256, 263, 0x7FFFFFFF,
                                         std::numeric_limits<int>::min()),
                         [](const testing::TestParamInfo<int>& number) {
                           return "Number" + std::to_string(static_cast<unsigned>(number.param));
                         });

// --- Numbers far out -----------------------------------------------------------------------------

TEST(OddUsesTest, RemovingTheValueOfAHugeIndexRemovesNothing) {
  constexpr unsigned long LOW_HALF = 0xFFFFFFFF;
  constexpr unsigned long BEYOND = HUGE_INDEX > LOW_HALF ? LOW_HALF + 1 : HUGE_INDEX / 2;
  const auto root = readText("a 1 2");
  root->getItem("a")->removeValue(HUGE_INDEX);
  root->getItem("a")->removeValue({HUGE_INDEX, HUGE_INDEX - 1, BEYOND, BEYOND + 1, 2});
  EXPECT_EQ(describe(*root), "a int:1 int:2");
}

TEST(OddUsesTest, RemovingAValueOfAnItemWithoutValuesChangesNothing) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.removeValue(0);
  EXPECT_EQ(item.getValueCount(), 0U);
}

TEST(OddUsesTest, AnItemWithoutValuesAnswersAHugeIndexWithANewGroup) {
  const ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  ParserGroup* group = item.getGroup(HUGE_INDEX);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(item.getGroup(0), group);
}

TEST(OddUsesTest, AnArrayOfTheLargestSizeIsNoArray) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.setArray(true, HUGE_INDEX);
  EXPECT_FALSE(item.isArray());
  item.setArray(true, HUGE_INDEX - 1);
  EXPECT_EQ(item.getArrayCount(), HUGE_INDEX - 1);
}

TEST(OddUsesTest, AnItemAtAHugePlaceIsAnItemLikeOthers) {
  ParserGroup root("root");
  root.addItem("a", HUGE_INDEX, HUGE_INDEX)->addInt(1);
  EXPECT_EQ(describe(ParserGroup(root)), "a int:1");
}

TEST(OddUsesTest, ACollectionHasNothingAtAHugeIndex) {
  const auto root = readText("a 1 b 2");
  EXPECT_EQ(root->getItems("").getAt(HUGE_INDEX), nullptr);
  EXPECT_EQ(root->getItems("").getAt(2), nullptr);
}

TEST(OddUsesTest, AFrameFarBehindTheDataIsRefusedAndThePositionIsItsEnd) {
  const RecordingConsole console;
  const std::vector<char> data = readText("a 1")->getBinary(false);
  unsigned long pos = HUGE_INDEX;
  ParserGroup root("root");
  EXPECT_FALSE(root.setBinary(data, pos));
  EXPECT_EQ(pos, data.size());
}

TEST(OddUsesTest, AnItemFrameFarBehindTheDataIsRefusedAndThePositionIsItsEnd) {
  const std::vector<char> data(100);
  unsigned long pos = HUGE_INDEX - 7;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  EXPECT_FALSE(item.setBinary(data, pos));
  EXPECT_EQ(pos, data.size());
}

TEST(OddUsesTest, AVersionThatIsNoNumberOrHasNoEndIsAboveOrBelow1_1) {
  const double infinite = std::numeric_limits<double>::infinity();
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(describe(*readText("a \"\\t\"", infinite)), "a string:\"\t\"");
  EXPECT_EQ(describe(*readText("a \"\\t\"", notANumber)), "a string:\"\t\"");
  EXPECT_EQ(describe(*readText("a \"\\t\"", -infinite)), "a string:\"\\t\"");
}

// --- Values that were cleared --------------------------------------------------------------------

TEST(OddUsesTest, ACopyOfAClearedValueCanBeSetAndIsIndependent) {
  ParserValue value(new ParserGroup("g"));
  value.clear();
  ParserValue copy(value);
  copy.setString("x");
  value.setInt(1);
  EXPECT_EQ(copy.getAsString(), "x");
}

TEST(OddUsesTest, AClearedGroupIsEncodedAsAnEmptyOneAndReadsBack) {
  ParserValue value(new ParserGroup("g"));
  value.clear();
  std::vector<char> bytes;
  unsigned long count = 0;
  value.getBinary(bytes, count, true);
  EXPECT_EQ(bytes, TestSupport::makeBytes("00") + TestSupport::makeSize(0));
}

// --- Derived classes -----------------------------------------------------------------------------

namespace {

template <class Base, std::size_t SIZE>
struct Derived : Base {
  template <class... Arguments>
  explicit Derived(bool fails, Arguments... arguments) : Base(arguments...) {
    if (fails) throw std::length_error("derived");
  }
  char more[SIZE] = {};
};

template <std::size_t SIZE>
using DerivedItem = Derived<ParserItem, SIZE>;
template <std::size_t SIZE>
using DerivedGroup = Derived<ParserGroup, SIZE>;

}  // namespace

TEST(OddUsesTest, ALargeDerivedClassIsMadeAndDeleted) {
  std::unique_ptr<DerivedItem<2000>> item(
      new DerivedItem<2000>(false, "a", ParserItem::ITEM_PLAIN, 0UL, 0UL));
  std::unique_ptr<DerivedGroup<2000>> group(new DerivedGroup<2000>(false, "g"));
  EXPECT_EQ(item->getName() + group->getName(), "ag");
}

TEST(OddUsesTest, WithoutThrowingALargeDerivedClassIsNull) {
  EXPECT_EQ((new (std::nothrow) DerivedItem<2000>(true, "a", ParserItem::ITEM_PLAIN, 0UL, 0UL)),
            nullptr);
  EXPECT_EQ((new (std::nothrow) DerivedGroup<2000>(true, "g")), nullptr);
}

TEST(OddUsesTest, ADerivedConstructorThatThrowsGivesItsMemoryBack) {
  EXPECT_THROW((new (std::nothrow) DerivedItem<500>(true, "a", ParserItem::ITEM_PLAIN, 0UL, 0UL)),
               std::length_error);
  EXPECT_THROW((new (std::nothrow) DerivedGroup<500>(true, "g")), std::length_error);
  EXPECT_THROW((new DerivedItem<2000>(true, "a", ParserItem::ITEM_PLAIN, 0UL, 0UL)),
               std::length_error);
  EXPECT_THROW((new DerivedGroup<2000>(true, "g")), std::length_error);
}
