// The attributes of an item, and which of its values are kept.

#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using Plinth::Expression;
using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

ParserItem makeItem(ParserItem::Type type = ParserItem::ITEM_PLAIN) {
  return ParserItem("item", type, 0, 0);
}

/// Makes an item with the integers from 0 to `count` - 1.
ParserItem makeNumbers(int count) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  for (int i = 0; i < count; ++i)
    item.addInt(i);
  return item;
}

std::vector<int> numbersOf(const ParserItem& item) {
  std::vector<int> numbers;
  for (unsigned long i = 0; i < item.getValueCount(); ++i)
    numbers.push_back(item.getInt(i));
  return numbers;
}

std::string textOf(const ParserItem& item) {
  std::string text;
  item.getText(text, true, 1);
  return text;
}

using Numbers = std::vector<int>;
using Indices = std::vector<unsigned long>;

}  // namespace

// --- Kinds ---------------------------------------------------------------------------------------

TEST(ParserItemTypeTest, IsStoredIn32Bits) { EXPECT_EQ(sizeof(ParserItem::Type), 4u); }

TEST(ParserItemTypeTest, PlainIs0) { EXPECT_EQ(int(ParserItem::ITEM_PLAIN), 0); }

TEST(ParserItemTypeTest, KeywordIs1) { EXPECT_EQ(int(ParserItem::ITEM_KEYWORD), 1); }

TEST(ParserItemTypeTest, CallIs2) { EXPECT_EQ(int(ParserItem::ITEM_CALL), 2); }

// --- A new item ----------------------------------------------------------------------------------

TEST(ParserItemTest, ANewItemHasTheNameItWasMadeWith) {
  EXPECT_EQ(ParserItem("fov", ParserItem::ITEM_PLAIN, 0, 0).getName(), "fov");
}

TEST(ParserItemTest, ANewItemHasTheTypeItWasMadeWith) {
  EXPECT_EQ(makeItem(ParserItem::ITEM_PLAIN).getType(), ParserItem::ITEM_PLAIN);
  EXPECT_EQ(makeItem(ParserItem::ITEM_KEYWORD).getType(), ParserItem::ITEM_KEYWORD);
  EXPECT_EQ(makeItem(ParserItem::ITEM_CALL).getType(), ParserItem::ITEM_CALL);
}

TEST(ParserItemTest, ANewItemMayHaveANameThatNoDocumentCouldHold) {
  EXPECT_EQ(ParserItem("2 { yes", ParserItem::ITEM_PLAIN, 0, 0).getName(), "2 { yes");
}

TEST(ParserItemTest, ANewItemHasNoValues) { EXPECT_EQ(makeItem().getValueCount(), 0u); }

TEST(ParserItemTest, ANewItemIsNoArray) { EXPECT_FALSE(makeItem().isArray()); }

TEST(ParserItemTest, ANewItemHasAnArrayCountOfAllOnes) {
  EXPECT_EQ(makeItem().getArrayCount(), ~0UL);
}

TEST(ParserItemTest, ANewItemIsNoTemplate) {
  EXPECT_FALSE(makeItem().isTemplate());
  EXPECT_EQ(makeItem().getTemplate(), "");
}

TEST(ParserItemTest, ANewPlainItemIsNoKeyword) { EXPECT_FALSE(makeItem().isKeyWord()); }

TEST(ParserItemTest, ANewItemIsNoGroup) { EXPECT_FALSE(makeItem().isGroup()); }

TEST(ParserItemTest, ANewItemIsNotFolded) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  EXPECT_EQ(textOf(item), "item {\n}");
}

// --- Attributes ----------------------------------------------------------------------------------

TEST(ParserItemTest, AnItemOfTheKeywordTypeIsAKeywordWhateverItsName) {
  EXPECT_TRUE(makeItem(ParserItem::ITEM_KEYWORD).isKeyWord());
}

TEST(ParserItemTest, APlainItemIsNoKeywordWhateverItsName) {
  EXPECT_FALSE(ParserItem("#name", ParserItem::ITEM_PLAIN, 0, 0).isKeyWord());
}

TEST(ParserItemTest, ACallIsNoKeyword) {
  EXPECT_FALSE(makeItem(ParserItem::ITEM_CALL).isKeyWord());
}

TEST(ParserItemTest, SetArrayMakesAnArrayOfThatManyElements) {
  ParserItem item = makeItem();
  item.setArray(true, 12);
  EXPECT_TRUE(item.isArray());
  EXPECT_EQ(item.getArrayCount(), 12u);
}

TEST(ParserItemTest, SetArrayWithCount0MakesAnArrayOfUnspecifiedSize) {
  ParserItem item = makeItem();
  item.setArray(true, 0);
  EXPECT_TRUE(item.isArray());
  EXPECT_EQ(item.getArrayCount(), 0u);
}

TEST(ParserItemTest, SetArrayFalseEndsTheArrayAndIgnoresTheCount) {
  ParserItem item = makeItem();
  item.setArray(true, 12);
  item.setArray(false, 5);
  EXPECT_FALSE(item.isArray());
  EXPECT_EQ(item.getArrayCount(), ~0UL);
}

TEST(ParserItemTest, AnArrayOfAllOnesElementsIsNoArray) {
  ParserItem item = makeItem();
  item.setArray(true, ~0UL);
  EXPECT_FALSE(item.isArray());
}

TEST(ParserItemTest, TheArrayCountIsIndependentOfTheValues) {
  ParserItem item = makeNumbers(3);
  item.setArray(true, 2);
  EXPECT_EQ(item.getValueCount(), 3u);
  EXPECT_EQ(item.getArrayCount(), 2u);
}

TEST(ParserItemTest, SetTemplateMakesATemplateInstance) {
  ParserItem item = makeItem();
  item.setTemplate("vector");
  EXPECT_TRUE(item.isTemplate());
  EXPECT_EQ(item.getTemplate(), "vector");
}

TEST(ParserItemTest, AnEmptyTemplateNameEndsTheTemplate) {
  ParserItem item = makeItem();
  item.setTemplate("vector");
  item.setTemplate("");
  EXPECT_FALSE(item.isTemplate());
}

TEST(ParserItemTest, AnEmptyTemplateNameMakesNoTemplateInstance) {
  ParserItem item = makeItem();
  item.setTemplate("");
  EXPECT_FALSE(item.isTemplate());
  EXPECT_EQ(item.getTemplate(), "");
}

TEST(ParserItemTest, SetFoldingWritesAGroupBetweenFoldMarkers) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  item.setFolding(true);
  EXPECT_EQ(textOf(item), "//item/*{{{*/\nitem {\n}\n/*}}}*/");
}

TEST(ParserItemTest, SetFoldingFalseWritesNoFoldMarkers) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  item.setFolding(true);
  item.setFolding(false);
  EXPECT_EQ(textOf(item), "item {\n}");
}

TEST(ParserItemTest, RenameSetsTheName) {
  ParserItem item = makeItem();
  item.rename("other");
  EXPECT_EQ(item.getName(), "other");
}

TEST(ParserItemTest, RenameChecksNothingAndKeepsTheType) {
  ParserItem item = makeItem();
  item.rename("#2 yes");
  EXPECT_EQ(item.getName(), "#2 yes");
  EXPECT_EQ(item.getType(), ParserItem::ITEM_PLAIN);
}

TEST(ParserItemTest, NameAndTemplateMayBeTakenFromTheItemItself) {
  ParserItem item = makeItem();
  item.setTemplate(item.getName());
  item.rename(item.getName());
  item.setTemplate(item.getTemplate());
  EXPECT_EQ(item.getName(), "item");
  EXPECT_EQ(item.getTemplate(), "item");
}

// --- Groups --------------------------------------------------------------------------------------

TEST(ParserItemTest, AnItemWithOneGroupValueIsAGroup) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  EXPECT_TRUE(item.isGroup());
}

TEST(ParserItemTest, AnItemWithTwoGroupValuesIsNoGroup) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  item.addGroup(nullptr);
  EXPECT_FALSE(item.isGroup());
}

TEST(ParserItemTest, AnItemWithOneOtherValueIsNoGroup) { EXPECT_FALSE(makeNumbers(1).isGroup()); }

TEST(ParserItemTest, AnItemWithAGroupAndAnotherValueIsNoGroup) {
  ParserItem item = makeItem();
  item.addGroup(nullptr);
  item.addInt(1);
  EXPECT_FALSE(item.isGroup());
}

// --- Patterns ------------------------------------------------------------------------------------

TEST(ParserItemTest, MatchesAPatternThatItsNameContains) {
  EXPECT_TRUE(makeItem().isMatching(Expression("te")));
}

TEST(ParserItemTest, DoesNotMatchAPatternThatItsNameDoesNotContain) {
  EXPECT_FALSE(makeItem().isMatching(Expression("^tem$")));
}

TEST(ParserItemTest, MatchesTheEmptyPattern) { EXPECT_TRUE(makeItem().isMatching(Expression(""))); }

TEST(ParserItemTest, DoesNotMatchAnExpressionWithoutAPattern) {
  EXPECT_FALSE(makeItem().isMatching(Expression()));
}

// --- Remove values -------------------------------------------------------------------------------

TEST(ParserItemTest, RemoveValueIgnoresRepeatedIndicesAndThosePastTheEnd) {
  ParserItem item = makeNumbers(4);
  item.removeValue(Indices{0, 2, 2, 9});
  EXPECT_EQ(numbersOf(item), Numbers({1, 3}));
}

TEST(ParserItemTest, RemoveValueTakesIndicesInAnyOrder) {
  ParserItem item = makeNumbers(5);
  item.removeValue(Indices{4, 0, 3});
  EXPECT_EQ(numbersOf(item), Numbers({1, 2}));
}

TEST(ParserItemTest, RemoveValueWithoutIndicesRemovesNothing) {
  ParserItem item = makeNumbers(2);
  item.removeValue(Indices());
  EXPECT_EQ(numbersOf(item), Numbers({0, 1}));
}

TEST(ParserItemTest, RemoveValueIgnoresTheLargestIndex) {
  ParserItem item = makeNumbers(2);
  item.removeValue(Indices{~0UL, 2});
  EXPECT_EQ(numbersOf(item), Numbers({0, 1}));
}

TEST(ParserItemTest, RemoveValueMayRemoveAllValues) {
  ParserItem item = makeNumbers(3);
  item.removeValue(Indices{0, 1, 2});
  EXPECT_EQ(item.getValueCount(), 0u);
}

TEST(ParserItemTest, RemoveValueOfAnItemWithoutValuesDoesNothing) {
  ParserItem item = makeItem();
  item.removeValue(Indices{0});
  EXPECT_EQ(item.getValueCount(), 0u);
}

TEST(ParserItemTest, RemoveValueWithOneIndexRemovesThatValue) {
  ParserItem item = makeNumbers(3);
  item.removeValue(1UL);
  EXPECT_EQ(numbersOf(item), Numbers({0, 2}));
}

TEST(ParserItemTest, RemoveValueWithOneIndexPastTheEndRemovesNothing) {
  ParserItem item = makeNumbers(3);
  item.removeValue(3UL);
  EXPECT_EQ(numbersOf(item), Numbers({0, 1, 2}));
}

TEST(ParserItemTest, RemoveValueKeepsTheOtherValuesThemselves) {
  ParserItem item = makeNumbers(1);
  const ParserGroup* group = item.addGroup(nullptr);
  item.removeValue(0UL);
  EXPECT_EQ(item.getGroup(0), group);
}

TEST(ParserItemTest, RemoveValueMayMakeTheItemAGroup) {
  ParserItem item = makeNumbers(1);
  item.addGroup(nullptr);
  item.removeValue(0UL);
  EXPECT_TRUE(item.isGroup());
}

TEST(ParserItemTest, ResetRemovesAllValues) {
  ParserItem item = makeNumbers(3);
  item.addGroup(nullptr)->addItem("below", 0, 0);
  item.reset();
  EXPECT_EQ(item.getValueCount(), 0u);
}

TEST(ParserItemTest, ResetKeepsNameTypeArrayAndTemplate) {
  ParserItem item = makeItem(ParserItem::ITEM_CALL);
  item.setArray(true, 65);
  item.setTemplate("vector");
  item.addInt(1);
  item.reset();
  EXPECT_EQ(textOf(item), "item<vector>[A]()");
}

TEST(ParserItemTest, ResetKeepsTheFolding) {
  ParserItem item = makeNumbers(1);
  item.setFolding(true);
  item.reset();
  item.addGroup(nullptr);
  EXPECT_EQ(textOf(item), "//item/*{{{*/\nitem {\n}\n/*}}}*/");
}

TEST(ParserItemTest, TakesValuesAgainAfterReset) {
  ParserItem item = makeNumbers(3);
  item.reset();
  item.addInt(7);
  EXPECT_EQ(numbersOf(item), Numbers({7}));
}
