// The items of a document, and where they stand.

#include <QuarrySource/SourceTree.h>
#include <gmock/gmock.h>

#include "ShownDocument.h"
#include "support/Documents.h"
#include "support/LinearTime.h"

using Quarry::ParserItem;
using Quarry::ParserLimits;
using Quarry::ParserValue;
using Quarry::SourceDocument;
using Quarry::SourceItem;
using Quarry::SourceTree;
using Quarry::SourceValue;
using testing::ElementsAre;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

/// A document of one text, and its tree.
struct Tree {
  explicit Tree(const std::string& text, const ParserLimits& limits = ParserLimits())
      : document(readDocument({{"a.cfg", text}}, limits)), items(*document) {}

  const SourceItem& operator[](unsigned long index) const { return items.getItem(index); }

  /// Returns the part of the text from an item's name to its end.
  std::string cutOut(unsigned long index) const {
    const SourceItem& item = items.getItem(index);
    return document->getText().substr(item.nameBegin, item.end - item.nameBegin);
  }

  std::unique_ptr<SourceDocument> document;
  SourceTree items;
};

std::vector<std::string> cutOutAll(const std::string& text) {
  const Tree tree(text);
  std::vector<std::string> parts;
  for (unsigned long i = 0; i < tree.items.getItemCount(); ++i)
    parts.push_back(tree.cutOut(i));
  return parts;
}

std::vector<std::string> spellValues(const std::string& text) {
  const Tree tree(text);
  std::vector<std::string> spellings;
  for (unsigned long i = 0; i < tree[0].valueCount; ++i)
    spellings.emplace_back(tree.items.getSpelling(tree.items.getValue(tree[0], i)));
  return spellings;
}

ParserValue::Type typeOf(const std::string& value) {
  const Tree tree("a " + value + " ");
  return tree.items.getValue(tree[0], 0).type;
}

/// Appends the first value of the first item to an item, and returns it as a document writes it.
std::string append(const std::string& text) {
  const Tree tree(text);
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  tree.items.appendTo(item, tree.items.getValue(tree[0], 0));
  std::string values;
  item.getValueText(values, false, 1);
  return std::to_string(item.getValueCount()) + ":" + values;
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST(SourceTreeTest, AnEmptyDocumentHasNone) {
  const Tree tree("");
  EXPECT_EQ(tree.items.getItemCount(), 0U);
  EXPECT_EQ(tree.items.getFirst(NOWHERE), NOWHERE);
  EXPECT_EQ(tree.items.getItemAt(0), NOWHERE);
}

TEST(SourceTreeTest, ATreeKnowsItsDocument) {
  const Tree tree("a 1");
  EXPECT_EQ(&tree.items.getDocument(), tree.document.get());
}

TEST(SourceTreeTest, AnItemHasANameAndAnEnd) {
  const Tree tree(" title = 1, 2 , b 3");
  EXPECT_EQ(tree.items.getName(tree[0]), "title");
  EXPECT_EQ(tree[0].nameBegin, 1U);
  EXPECT_EQ(tree[0].nameLength, 5U);
  EXPECT_EQ(tree.cutOut(0), "title = 1, 2");
}

TEST(SourceTreeTest, AnItemIsPlain) {
  const Tree tree("a 1");
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_PLAIN);
  EXPECT_FALSE(tree[0].hasGroup());
  EXPECT_EQ(tree[0].groupBegin, NOWHERE);
  EXPECT_EQ(tree[0].groupEnd, NOWHERE);
  EXPECT_EQ(tree[0].argumentsBegin, NOWHERE);
  EXPECT_EQ(tree[0].argumentsEnd, NOWHERE);
  EXPECT_EQ(tree[0].parent, NOWHERE);
}

TEST(SourceTreeTest, AKeywordHasItsSign) {
  const Tree tree("#a 1");
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_KEYWORD);
  EXPECT_EQ(tree.items.getName(tree[0]), "#a");
}

TEST(SourceTreeTest, ACallKnowsItsParentheses) {
  const Tree tree("a ( 1, 2 ) b 3");
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_CALL);
  EXPECT_EQ(tree[0].argumentsBegin, 2U);
  EXPECT_EQ(tree[0].argumentsEnd, 9U);
  EXPECT_EQ(tree[0].valueCount, 2U);
  EXPECT_EQ(tree.cutOut(0), "a ( 1, 2 )");
}

TEST(SourceTreeTest, AnUnclosedCallHasNoClosingParenthesis) {
  const Tree tree("a ( 1 b 2");
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_CALL);
  EXPECT_EQ(tree[0].argumentsEnd, NOWHERE);
  EXPECT_EQ(tree.cutOut(0), "a ( 1");
}

TEST(SourceTreeTest, AGroupKnowsItsBraces) {
  const Tree tree("a { b 1 }");
  EXPECT_TRUE(tree[0].hasGroup());
  EXPECT_EQ(tree[0].groupBegin, 2U);
  EXPECT_EQ(tree[0].groupEnd, 8U);
  EXPECT_EQ(tree[0].end, 9U);
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_PLAIN);
  EXPECT_EQ(tree[1].parent, 0U);
}

TEST(SourceTreeTest, AnEmptyGroupIsOne) {
  const Tree tree("a {} b 1");
  EXPECT_TRUE(tree[0].hasGroup());
  EXPECT_EQ(tree.cutOut(0), "a {}");
  EXPECT_EQ(tree.items.getFirst(0), NOWHERE);
  EXPECT_EQ(tree.items.getNext(0), 1U);
}

TEST(SourceTreeTest, AnItemMayHaveValuesAndAGroup) {
  const Tree tree("a 1 2 { b 3 }");
  EXPECT_EQ(tree[0].valueCount, 2U);
  EXPECT_TRUE(tree[0].hasGroup());
  EXPECT_EQ(tree.items.getItemCount(), 2U);
}

TEST(SourceTreeTest, AKeywordMayHaveAGroup) {
  const Tree tree("#a { b 1 }");
  EXPECT_EQ(tree[0].type, ParserItem::ITEM_KEYWORD);
  EXPECT_TRUE(tree[0].hasGroup());
}

TEST(SourceTreeTest, ItemsOfAnIncludedFileAreItems) {
  const auto document = readDocument(MemoryFiles{{"0", "a { #include \"1\" } c 3"}, {"1", "b 2"}});
  const SourceTree tree(*document);
  ASSERT_EQ(tree.getItemCount(), 3U);
  EXPECT_EQ(tree.getPath(1), "a/b");
  EXPECT_EQ(TestSupport::showOrigin(*document, tree.getItem(1).nameBegin), "1:1:1 < 0:1:5");
}

TEST(SourceTreeTest, ANameThatACommentCutsIsWhole) {
  const Tree tree("ti//\ntle 1");
  EXPECT_EQ(tree.items.getName(tree[0]), "title");
}

TEST(SourceTreeTest, WhatIsBehindTheEndOfTheDocumentIsNone) {
  EXPECT_THAT(cutOutAll("a 1 } b 2"), ElementsAre("a 1"));
}

// --- Faults --------------------------------------------------------------------------------------

TEST(SourceTreeTest, AnUnclosedGroupEndsWithItsLastItem) {
  const Tree tree("a { b 1 ");
  EXPECT_TRUE(tree[0].hasGroup());
  EXPECT_EQ(tree[0].groupEnd, NOWHERE);
  EXPECT_EQ(tree.cutOut(0), "a { b 1");
}

TEST(SourceTreeTest, AnUnclosedEmptyGroupEndsWithItsBrace) {
  EXPECT_THAT(cutOutAll("a { b 1 } c { "), ElementsAre("a { b 1 }", "b 1", "c {"));
}

TEST(SourceTreeTest, AnUnclosedGroupEndsWithTheBraceOfItsLastItem) {
  EXPECT_THAT(cutOutAll("a { b { c 1 } "), ElementsAre("a { b { c 1 }", "b { c 1 }", "c 1"));
}

TEST(SourceTreeTest, AnUnclosedGroupWithinAnUnclosedOneEndsThemBoth) {
  EXPECT_THAT(cutOutAll("a { b { c () "), ElementsAre("a { b { c ()", "b { c ()", "c ()"));
}

TEST(SourceTreeTest, AnUnclosedGroupWithAClosedEmptyOneEndsWithItsBrace) {
  EXPECT_THAT(cutOutAll("a { b { } "), ElementsAre("a { b { }", "b { }"));
}

TEST(SourceTreeTest, ANameWithoutAValueIsNoItem) {
  EXPECT_THAT(cutOutAll("a b 1"), ElementsAre("a b 1"));
  EXPECT_THAT(spellValues("a b 1"), ElementsAre("1"));
}

TEST(SourceTreeTest, AnItemWithoutAValueIsOne) {
  const Tree tree("a } ");
  EXPECT_EQ(tree.items.getItemCount(), 1U);
  EXPECT_EQ(tree[0].valueCount, 0U);
  EXPECT_EQ(tree.cutOut(0), "a");
}

TEST(SourceTreeTest, AMisplacedSignEndsTheItem) {
  EXPECT_THAT(cutOutAll("a 1 = 2 b 3"), ElementsAre("a 1", "b 3"));
}

TEST(SourceTreeTest, AGroupThatIsTooDeepIsLeftOut) {
  ParserLimits limits;
  limits.nestingDepth = 1;
  const Tree tree("a { b { c { } d 1 } e 2 }", limits);
  ASSERT_EQ(tree.items.getItemCount(), 3U);
  EXPECT_EQ(tree.items.getPath(1), "a/b");
  EXPECT_FALSE(tree[1].hasGroup());
  EXPECT_EQ(tree.items.getPath(2), "a/e");
}

TEST(SourceTreeTest, AnItemBehindAGroupThatIsTooDeepIsItsNextSibling) {
  ParserLimits limits;
  limits.nestingDepth = 0;
  const Tree tree("a { b 1 } c 2", limits);
  EXPECT_EQ(tree.items.getNext(0), 1U);
  EXPECT_EQ(tree.items.getFirst(0), NOWHERE);
}

// --- Values --------------------------------------------------------------------------------------

TEST(SourceTreeTest, ValuesAreSpelledAsTheyStand) {
  EXPECT_THAT(spellValues("a yes, 1.50 \"b c\" 0x2:\"x y\", -3 "),
              ElementsAre("yes", "1.50", "\"b c\"", "0x2:\"x y\"", "-3"));
}

TEST(SourceTreeTest, AnEmptyTagIsAValue) {
  const Tree tree("a <empty> 1 <empty>");
  EXPECT_EQ(tree[0].valueCount, 3U);
  EXPECT_EQ(tree.items.getValue(tree[0], 2).type, ParserValue::TYPE_EMPTY);
  EXPECT_EQ(tree.cutOut(0), "a <empty> 1 <empty>");
}

TEST(SourceTreeTest, ABoolIsOne) { EXPECT_EQ(typeOf("no"), ParserValue::TYPE_BOOL); }

TEST(SourceTreeTest, AnIntIsOne) { EXPECT_EQ(typeOf("12"), ParserValue::TYPE_INT); }

TEST(SourceTreeTest, ADoubleIsOne) { EXPECT_EQ(typeOf("1.5"), ParserValue::TYPE_DOUBLE); }

TEST(SourceTreeTest, AStringIsOne) { EXPECT_EQ(typeOf("\"b\""), ParserValue::TYPE_STRING); }

TEST(SourceTreeTest, ABlockIsOne) { EXPECT_EQ(typeOf("0x41"), ParserValue::TYPE_BINARYDATA); }

TEST(SourceTreeTest, ValuesOfTwoItemsStandApart) {
  const Tree tree("a 1 2 b { c 3 } d 4");
  const SourceValue& value = tree.items.getValue(tree[3], 0);
  EXPECT_EQ(tree.items.getSpelling(value), "4");
  EXPECT_EQ(value.begin, 18U);
  EXPECT_EQ(value.length, 1U);
}

TEST(SourceTreeTest, AValueThatACommentCutsIsWhole) {
  EXPECT_THAT(spellValues("a 12//\n34"), ElementsAre("1234"));
}

TEST(SourceTreeTest, AnAppendedValueKeepsItsSpelling) { EXPECT_EQ(append("a 1.50 "), "1: 1.50"); }

TEST(SourceTreeTest, AnAppendedStringHasItsEscapesResolved) {
  EXPECT_EQ(append("#SerialVersion 1.1\na \"b\\tc\\\"d\" "), "1: \"b\\tc\\\"d\"");
}

TEST(SourceTreeTest, AnAppendedStringOfAnOldDocumentKeepsItsBackslashes) {
  EXPECT_EQ(append("#SerialVersion 1.0\na \"b\\tc\" "), "1: \"b\\\\tc\"");
}

TEST(SourceTreeTest, AnEmptyTagAppendsNothing) { EXPECT_EQ(append("a <empty> "), "0: <empty>"); }

// --- Siblings and children -----------------------------------------------------------------------

TEST(SourceTreeTest, ItemsComeInTheOrderOfTheText) {
  EXPECT_THAT(cutOutAll("a { b { c 1 } d 2 } e 3"),
              ElementsAre("a { b { c 1 } d 2 }", "b { c 1 }", "c 1", "d 2", "e 3"));
}

TEST(SourceTreeTest, TheFirstOfTheRootIsTheFirstItem) {
  EXPECT_EQ(Tree("a 1 b 2").items.getFirst(NOWHERE), 0U);
}

TEST(SourceTreeTest, TheFirstOfAGroupIsBehindItsItem) {
  const Tree tree("a 1 b { c 2 }");
  EXPECT_EQ(tree.items.getFirst(1), 2U);
  EXPECT_EQ(tree.items.getFirst(0), NOWHERE);
}

TEST(SourceTreeTest, TheNextItemIsBehindTheGroup) {
  const Tree tree("a { b { c 1 } d 2 } e 3");
  EXPECT_EQ(tree.items.getNext(0), 4U);
  EXPECT_EQ(tree.items.getNext(1), 3U);
  EXPECT_EQ(tree.items.getNext(2), NOWHERE);
  EXPECT_EQ(tree.items.getNext(3), NOWHERE);
  EXPECT_EQ(tree.items.getNext(4), NOWHERE);
}

TEST(SourceTreeTest, TheNextOfALastItemIsNoneWhereItsGroupIsUnclosed) {
  const Tree tree("a { b 1");
  EXPECT_EQ(tree.items.getNext(1), NOWHERE);
  EXPECT_EQ(tree.items.getNext(0), NOWHERE);
}

// --- What stands at a place ----------------------------------------------------------------------

TEST(SourceTreeTest, AnItemHasItsBytesUpToItsEnd) {
  const Tree tree(" a = 1 b 2");
  EXPECT_EQ(tree.items.getItemAt(0), NOWHERE);
  EXPECT_EQ(tree.items.getItemAt(1), 0U);
  EXPECT_EQ(tree.items.getItemAt(3), 0U);
  EXPECT_EQ(tree.items.getItemAt(5), 0U);
  EXPECT_EQ(tree.items.getItemAt(6), NOWHERE);
  EXPECT_EQ(tree.items.getItemAt(7), 1U);
}

TEST(SourceTreeTest, BetweenTheItemsOfAGroupIsTheGroupsItem) {
  const Tree tree("a { b { c 1 } }");
  EXPECT_EQ(tree.items.getItemAt(2), 0U);
  EXPECT_EQ(tree.items.getItemAt(3), 0U);
  EXPECT_EQ(tree.items.getItemAt(8), 2U);
  EXPECT_EQ(tree.items.getItemAt(11), 1U);
  EXPECT_EQ(tree.items.getItemAt(13), 0U);
  EXPECT_EQ(tree.items.getItemAt(14), 0U);
}

TEST(SourceTreeTest, BehindTheTextIsNoItem) {
  EXPECT_EQ(Tree("a 1").items.getItemAt(3), NOWHERE);
  EXPECT_EQ(Tree("a 1").items.getItemAt(1000), NOWHERE);
}

TEST(SourceTreeTest, AValueHasItsBytes) {
  const Tree tree("a 10, <empty> \"b c\"");
  EXPECT_EQ(tree.items.getValueAt(0, 2), 0U);
  EXPECT_EQ(tree.items.getValueAt(0, 3), 0U);
  EXPECT_EQ(tree.items.getValueAt(0, 6), 1U);
  EXPECT_EQ(tree.items.getValueAt(0, 16), 2U);
}

TEST(SourceTreeTest, NamesSignsAndBlanksAreNoValue) {
  const Tree tree("a = 1 , 2");
  for (const unsigned long offset : {0UL, 1UL, 2UL, 5UL, 6UL, 9UL})
    EXPECT_EQ(tree.items.getValueAt(0, offset), NOWHERE);
}

// --- Large documents -----------------------------------------------------------------------------

TEST(SourceTreeTest, LookingUpTheValuesOfALongListTakesLinearTime) {
  const auto make = [](unsigned long count) {
    std::string text = "a ";
    for (unsigned long i = 0; i < count; ++i)
      text += "1 ";
    return readDocument(text);
  };
  TestSupport::checkTakesLinearTime(1000, make, [](const std::unique_ptr<SourceDocument>& read) {
    const SourceTree tree(*read);
    for (unsigned long i = 0; i < tree.getItem(0).valueCount; ++i)
      EXPECT_EQ(tree.getValueAt(0, tree.getValue(tree.getItem(0), i).begin), i);
  });
}

TEST(SourceTreeTest, AHundredThousandGroupsMayBeNested) {
  constexpr unsigned long DEPTH = 100000;
  const Tree tree(TestSupport::makeDeepText(DEPTH));
  ASSERT_EQ(tree.items.getItemCount(), DEPTH);
  EXPECT_EQ(tree[DEPTH - 1].parent, DEPTH - 2);
  EXPECT_EQ(tree.items.getPath(DEPTH - 1).size(), 2 * DEPTH - 1);
  EXPECT_EQ(tree.items.getItemAt(tree[DEPTH - 1].nameBegin), DEPTH - 1);
  EXPECT_EQ(tree.items.getNext(0), NOWHERE);
}

TEST(SourceTreeTest, AHundredThousandGroupsMayBeUnclosed) {
  constexpr unsigned long DEPTH = 100000;
  std::string text;
  for (unsigned long i = 0; i < DEPTH; ++i)
    text += "g{";
  const Tree tree(text);
  ASSERT_EQ(tree.items.getItemCount(), DEPTH);
  EXPECT_EQ(tree[0].end, text.size());
}

TEST(SourceTreeTest, ALastNamesakeOfAHundredThousandIsFound) {
  constexpr unsigned long COUNT = 100000;
  std::string text;
  for (unsigned long i = 0; i < COUNT; ++i)
    text += "a 1 ";
  const Tree tree(text);
  EXPECT_EQ(tree.items.getPath(COUNT - 1), "a[100000]");
  EXPECT_EQ(tree.items.find("a[100000]").item, COUNT - 1);
}
