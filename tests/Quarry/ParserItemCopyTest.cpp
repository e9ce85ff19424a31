// Copies of items, and items that become copies.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <string>

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

namespace {

std::string textOf(const ParserItem& item) {
  std::string text;
  item.getText(text, false, 1);
  return text;
}

/// Makes a call with an array size, a template and a value of each kind of storage.
ParserItem makeSource() {
  ParserItem item("source", ParserItem::ITEM_CALL, 3, 7);
  std::string bytes("\x01");
  item.setArray(true, 65);
  item.setTemplate("vector");
  item.addInt(12);
  item.addString("text");
  item.addBinaryData(bytes.data(), bytes.size());
  item.addGroup(nullptr)->addItem("below", 0, 0)->addInt(3);
  return item;
}

const std::string sourceText = "source<vector>[A](12, \"text\", 0x0101000000, { below 3 })";

ParserItem makeTarget() {
  ParserItem item("target", ParserItem::ITEM_PLAIN, 1, 2);
  item.addGroup(nullptr)->addItem("old", 0, 0);
  return item;
}

ParserItem makeFoldedGroup() {
  ParserItem item("folded", ParserItem::ITEM_PLAIN, 0, 0);
  item.addGroup(nullptr);
  item.setFolding(true);
  return item;
}

}  // namespace

// --- Copy constructor ----------------------------------------------------------------------------

TEST(ParserItemCopyTest, ACopyIsWrittenAsTheOriginal) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_EQ(textOf(copy), sourceText);
  EXPECT_EQ(textOf(source), sourceText);
}

TEST(ParserItemCopyTest, ACopyHasTheNameAndTheType) {
  const ParserItem copy(makeSource());
  EXPECT_EQ(copy.getName(), "source");
  EXPECT_EQ(copy.getType(), ParserItem::ITEM_CALL);
}

TEST(ParserItemCopyTest, ACopyHasTheArrayCountAndTheTemplate) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_EQ(copy.getArrayCount(), 65u);
  EXPECT_EQ(copy.getTemplate(), "vector");
}

TEST(ParserItemCopyTest, ACopyOfNoArrayIsNoArray) {
  const ParserItem source = makeTarget();
  const ParserItem copy(source);
  EXPECT_FALSE(copy.isArray());
  EXPECT_FALSE(copy.isTemplate());
}

TEST(ParserItemCopyTest, ACopyHasItsOwnGroups) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_NE(copy.getGroup(3), source.getGroup(3));
  EXPECT_NE(copy.getGroup(3)->getItem("below"), source.getGroup(3)->getItem("below"));
}

TEST(ParserItemCopyTest, ACopyHasItsOwnBytes) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_NE(copy.getBinaryData(2), source.getBinaryData(2));
}

TEST(ParserItemCopyTest, ACopyHasItsOwnStrings) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_NE(&copy.getString(1), &source.getString(1));
}

TEST(ParserItemCopyTest, ChangingACopyLeavesTheOriginalAlone) {
  const ParserItem source = makeSource();
  ParserItem copy(source);
  copy.getGroup(3)->getItem("below")->addInt(4);
  copy.setString("changed", 1);
  copy.removeValue(0UL);
  EXPECT_EQ(textOf(source), sourceText);
}

TEST(ParserItemCopyTest, ACopyKeepsTheWordsOfTheValues) {
  const ParserItem source = makeSource();
  const ParserItem copy(source);
  EXPECT_EQ(copy.getWord(0), "12");
  EXPECT_EQ(copy.getWord(1), "text");
}

TEST(ParserItemCopyTest, ACopyKeepsTheNameOfAGroup) {
  ParserItem source("source", ParserItem::ITEM_PLAIN, 0, 0);
  source.addGroup(new ParserGroup("inner"));
  const ParserItem copy(source);
  EXPECT_EQ(copy.getGroup(0)->getName(), "inner");
}

TEST(ParserItemCopyTest, ACopyOfAFoldedItemIsNotFolded) {
  const ParserItem source = makeFoldedGroup();
  EXPECT_EQ(textOf(ParserItem(source)), "folded { }");
}

// --- copyFrom ------------------------------------------------------------------------------------

TEST(ParserItemCopyTest, CopyFromReplacesEverything) {
  ParserItem target = makeTarget();
  target.copyFrom(makeSource());
  EXPECT_EQ(textOf(target), sourceText);
}

TEST(ParserItemCopyTest, CopyFromTakesOverThatThereIsNoArrayAndNoTemplate) {
  ParserItem target = makeSource();
  target.copyFrom(makeTarget());
  EXPECT_EQ(textOf(target), "target { old <empty> }");
  EXPECT_FALSE(target.isArray());
}

TEST(ParserItemCopyTest, CopyFromAnItemWithoutValuesLeavesNone) {
  ParserItem target = makeSource();
  target.copyFrom(ParserItem("empty", ParserItem::ITEM_PLAIN, 0, 0));
  EXPECT_EQ(target.getValueCount(), 0u);
}

TEST(ParserItemCopyTest, CopyFromCopiesDeeply) {
  const ParserItem source = makeSource();
  ParserItem target = makeTarget();
  target.copyFrom(source);
  target.getGroup(3)->clear();
  EXPECT_EQ(textOf(source), sourceText);
}

TEST(ParserItemCopyTest, CopyFromAFoldedItemDoesNotFoldTheTarget) {
  ParserItem target = makeTarget();
  target.copyFrom(makeFoldedGroup());
  EXPECT_EQ(textOf(target), "folded { }");
}

TEST(ParserItemCopyTest, CopyFromAnUnfoldedItemLeavesTheTargetFolded) {
  ParserItem target = makeFoldedGroup();
  target.copyFrom(makeTarget());
  EXPECT_EQ(textOf(target), "//target/*{{{*/\ntarget { old <empty> }\n/*}}}*/");
}

TEST(ParserItemCopyTest, CopyFromItselfChangesNothing) {
  ParserItem item = makeSource();
  item.copyFrom(item);
  EXPECT_EQ(textOf(item), sourceText);
}

TEST(ParserItemCopyTest, CopyFromAnItemBelowItselfTakesItsPlace) {
  ParserItem outer("outer", ParserItem::ITEM_PLAIN, 0, 0);
  ParserItem* inner = outer.addGroup(nullptr)->addItem("inner", 0, 0);
  inner->setTemplate("a template of more than fifteen bytes");
  inner->addString("text");
  outer.copyFrom(*inner);
  EXPECT_EQ(textOf(outer), "inner<a template of more than fifteen bytes> \"text\"");
}

TEST(ParserItemCopyTest, CopyFromTheItemAboveHoldsItAsItWas) {
  ParserItem outer("outer", ParserItem::ITEM_PLAIN, 0, 0);
  ParserItem* inner = outer.addGroup(nullptr)->addItem("inner", 0, 0);
  inner->addInt(1);
  inner->copyFrom(outer);
  EXPECT_EQ(textOf(outer), "outer { outer { inner 1 } }");
}
