// How an item is written.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

constexpr bool ONE_LINE = false;
constexpr bool LINES = true;

ParserItem makePlain() { return ParserItem("item", ParserItem::ITEM_PLAIN, 0, 0); }
ParserItem makeCall() { return ParserItem("f", ParserItem::ITEM_CALL, 0, 0); }

void addThreeValues(ParserItem& item) {
  item.addInt(1);
  item.addDouble(2.5);
  item.addString("a b");
}

/// Makes a group item that holds `inner 1`.
ParserItem makeGroupItem(bool folded = false) {
  ParserItem item("group", ParserItem::ITEM_PLAIN, 0, 0);
  item.addGroup(nullptr)->addItem("inner", 0, 0)->addInt(1);
  item.setFolding(folded);
  return item;
}

std::string textOf(const ParserItem& item, bool multiline = LINES, unsigned long indent = 1) {
  std::string text;
  item.getText(text, multiline, indent);
  return text;
}

std::string valueTextOf(const ParserItem& item, bool multiline = LINES, unsigned long indent = 1) {
  std::string text;
  item.getValueText(text, multiline, indent);
  return text;
}

}  // namespace

// --- Values --------------------------------------------------------------------------------------

TEST(ParserItemTextTest, APlainItemIsItsNameAndItsValuesEachAfterABlank) {
  ParserItem item = makePlain();
  addThreeValues(item);
  EXPECT_EQ(textOf(item), "item 1 2.5 \"a b\"");
}

TEST(ParserItemTextTest, AnItemWithoutValuesIsItsNameAndTheEmptyTag) {
  EXPECT_EQ(textOf(makePlain()), "item <empty>");
}

TEST(ParserItemTextTest, AKeywordIsWrittenLikeAPlainItem) {
  ParserItem item("#format", ParserItem::ITEM_KEYWORD, 0, 0);
  item.addInt(2);
  EXPECT_EQ(textOf(item), "#format 2");
}

TEST(ParserItemTextTest, AKeywordWithoutValuesHasTheEmptyTag) {
  EXPECT_EQ(textOf(ParserItem("#format", ParserItem::ITEM_KEYWORD, 0, 0)), "#format <empty>");
}

TEST(ParserItemTextTest, TheTextIsAppended) {
  std::string text = "before ";
  makePlain().getText(text, LINES, 1);
  EXPECT_EQ(text, "before item <empty>");
}

TEST(ParserItemTextTest, NeitherLeadingBlanksNorAFinalLineFeedAreWritten) {
  ParserItem item = makePlain();
  item.addInt(1);
  EXPECT_EQ(textOf(item, LINES, 5), "item 1");
}

TEST(ParserItemTextTest, AnEmptyNameIsWrittenAsNothing) {
  ParserItem item("", ParserItem::ITEM_PLAIN, 0, 0);
  item.addInt(1);
  EXPECT_EQ(textOf(item), " 1");
}

TEST(ParserItemTextTest, WritingTwiceGivesTheSameText) {
  ParserItem item = makePlain();
  addThreeValues(item);
  item.setInt(66, 0);
  const std::string first = textOf(item);
  EXPECT_EQ(first, "item B 2.5 \"a b\"");
  EXPECT_EQ(textOf(item), first);
}

// --- The values alone ----------------------------------------------------------------------------

TEST(ParserItemTextTest, TheValuesAloneBeginWithABlank) {
  ParserItem item = makePlain();
  addThreeValues(item);
  EXPECT_EQ(valueTextOf(item), " 1 2.5 \"a b\"");
}

TEST(ParserItemTextTest, NoValuesAloneAreABlankAndTheEmptyTag) {
  EXPECT_EQ(valueTextOf(makePlain()), " <empty>");
}

TEST(ParserItemTextTest, TheArgumentsAloneBeginWithTheParenthesis) {
  ParserItem item = makeCall();
  addThreeValues(item);
  EXPECT_EQ(valueTextOf(item), "(1, 2.5, \"a b\")");
}

TEST(ParserItemTextTest, NoArgumentsAloneAreTheParentheses) {
  EXPECT_EQ(valueTextOf(makeCall()), "()");
}

TEST(ParserItemTextTest, TheValuesAloneHaveNoFoldMarkersTemplateOrArraySize) {
  ParserItem item = makeGroupItem(true);
  item.setTemplate("vector");
  item.setArray(true, 65);
  EXPECT_EQ(valueTextOf(item, ONE_LINE), " { inner 1 }");
}

TEST(ParserItemTextTest, TheValuesAloneAreIndentedByTheirDepth) {
  EXPECT_EQ(valueTextOf(makeGroupItem(), LINES, 2), " {\n        inner 1\n    }");
}

TEST(ParserItemTextTest, TheValuesAloneTakeDepth0AsDepth1) {
  EXPECT_EQ(valueTextOf(makeGroupItem(), LINES, 0), " {\n    inner 1\n}");
}

TEST(ParserItemTextTest, TheValuesAloneAreAppended) {
  std::string text = "before";
  makePlain().getValueText(text, LINES, 1);
  EXPECT_EQ(text, "before <empty>");
}

// --- Calls ---------------------------------------------------------------------------------------

TEST(ParserItemTextTest, ACallHasItsValuesInParenthesesSeparatedByCommas) {
  ParserItem item = makeCall();
  addThreeValues(item);
  EXPECT_EQ(textOf(item), "f(1, 2.5, \"a b\")");
}

TEST(ParserItemTextTest, ACallWithOneValueHasNoSeparator) {
  ParserItem item = makeCall();
  item.addInt(1);
  EXPECT_EQ(textOf(item), "f(1)");
}

TEST(ParserItemTextTest, ACallWithoutValuesHasEmptyParentheses) {
  EXPECT_EQ(textOf(makeCall()), "f()");
}

TEST(ParserItemTextTest, ACallWithGroupsHasThemInItsArguments) {
  ParserItem item = makeCall();
  item.addGroup(nullptr);
  item.addInt(1);
  item.addGroup(new ParserGroup("g"));
  EXPECT_EQ(textOf(item, ONE_LINE), "f({ }, 1, g { })");
}

TEST(ParserItemTextTest, ACallThatWasReadIsWrittenAsItStood) {
  TestSupport::checkRoundTrip("\nf(1, yes, \"x\")");
}

// --- Template and array --------------------------------------------------------------------------

TEST(ParserItemTextTest, ATemplateStandsInAngleBracketsAfterTheName) {
  ParserItem item = makePlain();
  item.setTemplate("vector");
  item.addInt(1);
  EXPECT_EQ(textOf(item), "item<vector> 1");
}

TEST(ParserItemTextTest, AnArrayOfUnspecifiedSizeHasEmptyBrackets) {
  ParserItem item = makePlain();
  item.setArray(true, 0);
  item.addInt(1);
  EXPECT_EQ(textOf(item), "item[] 1");
}

TEST(ParserItemTextTest, TheArraySizeIsWrittenAsOneRawByte) {
  ParserItem item = makePlain();
  item.setArray(true, 65);
  item.addInt(1);
  EXPECT_EQ(textOf(item), "item[A] 1");
}

TEST(ParserItemTextTest, OfALargeArraySizeTheLowestByteIsWritten) {
  ParserItem item = makePlain();
  item.setArray(true, 0x1242);
  EXPECT_EQ(textOf(item), "item[B] <empty>");
}

TEST(ParserItemTextTest, AnArraySizeOf256IsWrittenAsAZeroByte) {
  ParserItem item = makePlain();
  item.setArray(true, 256);
  EXPECT_EQ(textOf(item), std::string("item[\0] <empty>", 15));
}

TEST(ParserItemTextTest, AnArraySizeOf255IsWrittenAsTheByte255) {
  ParserItem item = makePlain();
  item.setArray(true, 255);
  EXPECT_EQ(textOf(item), "item[\xFF] <empty>");
}

TEST(ParserItemTextTest, TheTemplateStandsBeforeTheArraySize) {
  ParserItem item = makePlain();
  item.setTemplate("vector");
  item.setArray(true, 0);
  EXPECT_EQ(textOf(item), "item<vector>[] <empty>");
}

TEST(ParserItemTextTest, TemplateAndArraySizeStandBeforeTheArguments) {
  ParserItem item = makeCall();
  item.setTemplate("vector");
  item.setArray(true, 65);
  EXPECT_EQ(textOf(item), "f<vector>[A]()");
}

// --- Groups --------------------------------------------------------------------------------------

TEST(ParserItemTextTest, AGroupIsWrittenAfterABlank) {
  EXPECT_EQ(textOf(makeGroupItem()), "group {\n    inner 1\n}");
}

TEST(ParserItemTextTest, AGroupIsWrittenOnOneLine) {
  EXPECT_EQ(textOf(makeGroupItem(), ONE_LINE), "group { inner 1 }");
}

TEST(ParserItemTextTest, AGroupIsIndentedByTheDepthOfItsItem) {
  EXPECT_EQ(textOf(makeGroupItem(), LINES, 3), "group {\n            inner 1\n        }");
}

TEST(ParserItemTextTest, Depth0IsTakenAsDepth1) {
  EXPECT_EQ(textOf(makeGroupItem(), LINES, 0), "group {\n    inner 1\n}");
}

TEST(ParserItemTextTest, OnOneLineTheDepthDoesNotMatter) {
  EXPECT_EQ(textOf(makeGroupItem(), ONE_LINE, 0), "group { inner 1 }");
  EXPECT_EQ(textOf(makeGroupItem(), ONE_LINE, 9), "group { inner 1 }");
}

TEST(ParserItemTextTest, ANamedGroupIsWrittenWithItsNameAfterTheItems) {
  ParserItem item = makePlain();
  item.addGroup(new ParserGroup("inner"));
  EXPECT_EQ(textOf(item, ONE_LINE), "item inner { }");
}

TEST(ParserItemTextTest, ValuesAndGroupsAreWrittenInTheirOrder) {
  ParserItem item = makePlain();
  item.addInt(1);
  item.addGroup(nullptr)->addItem("a", 0, 0)->addInt(2);
  item.addInt(3);
  item.addGroup(nullptr);
  EXPECT_EQ(textOf(item, LINES), "item 1 {\n    a 2\n} 3 {\n}");
}

// --- Folding -------------------------------------------------------------------------------------

TEST(ParserItemTextTest, AFoldedGroupStandsBetweenFoldMarkers) {
  EXPECT_EQ(textOf(makeGroupItem(true)), "//group/*{{{*/\ngroup {\n    inner 1\n}\n/*}}}*/");
}

TEST(ParserItemTextTest, AFoldedGroupAtDepth3StandsAfterEightBlanksOnItsLine) {
  EXPECT_EQ(textOf(makeGroupItem(true), LINES, 3),
            "//group/*{{{*/\n        group {\n            inner 1\n        }\n/*}}}*/");
}

TEST(ParserItemTextTest, AFoldedGroupAtDepth0IsTakenAsDepth1) {
  EXPECT_EQ(textOf(makeGroupItem(true), LINES, 0),
            "//group/*{{{*/\ngroup {\n    inner 1\n}\n/*}}}*/");
}

TEST(ParserItemTextTest, TheFoldMarkersHaveLinesOfTheirOwnAlsoOnOneLine) {
  EXPECT_EQ(textOf(makeGroupItem(true), ONE_LINE, 2),
            "//group/*{{{*/\n    group { inner 1 }\n/*}}}*/");
}

TEST(ParserItemTextTest, TheFoldMarkerHasTheNameWithoutTemplateAndArraySize) {
  ParserItem item = makeGroupItem(true);
  item.setTemplate("vector");
  item.setArray(true, 65);
  EXPECT_EQ(textOf(item, ONE_LINE), "//group/*{{{*/\ngroup<vector>[A] { inner 1 }\n/*}}}*/");
}

TEST(ParserItemTextTest, AFoldedCallWithOneGroupStandsBetweenFoldMarkers) {
  ParserItem item = makeCall();
  item.addGroup(nullptr);
  item.setFolding(true);
  EXPECT_EQ(textOf(item, ONE_LINE), "//f/*{{{*/\nf({ })\n/*}}}*/");
}

TEST(ParserItemTextTest, AFoldedItemWithTwoGroupsHasNoFoldMarkers) {
  ParserItem item = makeGroupItem(true);
  item.addGroup(nullptr);
  EXPECT_EQ(textOf(item, ONE_LINE), "group { inner 1 } { }");
}

TEST(ParserItemTextTest, AFoldedItemWithAnotherValueHasNoFoldMarkers) {
  ParserItem item = makePlain();
  item.addInt(1);
  item.setFolding(true);
  EXPECT_EQ(textOf(item), "item 1");
}

TEST(ParserItemTextTest, AFoldedItemWithoutValuesHasNoFoldMarkers) {
  ParserItem item = makePlain();
  item.setFolding(true);
  EXPECT_EQ(textOf(item), "item <empty>");
}

TEST(ParserItemTextTest, FoldedGroupsAreWrittenInsideFoldedGroups) {
  ParserItem item("outer", ParserItem::ITEM_PLAIN, 0, 0);
  item.addGroup(nullptr)->addGroup("inner", true);
  item.setFolding(true);
  EXPECT_EQ(textOf(item),
            "//outer/*{{{*/\nouter {\n    //inner/*{{{*/\n    inner {\n    }\n/*}}}*/\n}\n/*}}}*/");
}
