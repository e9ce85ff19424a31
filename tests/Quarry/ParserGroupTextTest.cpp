// How a group is written around its items.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

using Quarry::ParserGroup;
using TestSupport::checkRoundTrip;
using TestSupport::readText;

namespace {

constexpr bool BARE = false;
constexpr bool BRACES = true;
constexpr bool ONE_LINE = false;
constexpr bool LINES = true;

std::string textOf(const ParserGroup& group, bool braces, bool multiline, unsigned long depth = 1) {
  std::string text;
  group.getText(text, braces, multiline, depth);
  return text;
}

ParserGroup makeGroup(const std::string& name) {
  ParserGroup group(name);
  group.addItem("a", 0, 0)->addInt(1);
  group.addItem("b", 0, 0)->addInt(2);
  return group;
}

}  // namespace

// --- The root: no braces -------------------------------------------------------------------------

TEST(ParserGroupTextTest, TheRootHasALineFeedBeforeEachItemAndNoneAtTheEnd) {
  EXPECT_EQ(textOf(makeGroup("root"), BARE, LINES), "\na 1\nb 2");
}

TEST(ParserGroupTextTest, TheRootOnOneLineHasABlankBeforeEachItemAndNothingAtTheEnd) {
  EXPECT_EQ(textOf(makeGroup("root"), BARE, ONE_LINE), " a 1 b 2");
}

TEST(ParserGroupTextTest, AnEmptyRootIsWrittenAsNothing) {
  EXPECT_EQ(textOf(ParserGroup("root"), BARE, LINES), "");
  EXPECT_EQ(textOf(ParserGroup("root"), BARE, ONE_LINE), "");
}

TEST(ParserGroupTextTest, TheRootAtDepth3IsIndentedByTwoLevels) {
  EXPECT_EQ(textOf(makeGroup("root"), BARE, LINES, 3), "\n        a 1\n        b 2");
}

TEST(ParserGroupTextTest, TheRootAtDepth0IsTakenAsDepth1) {
  EXPECT_EQ(textOf(makeGroup("root"), BARE, LINES, 0), "\na 1\nb 2");
}

TEST(ParserGroupTextTest, NestedGroupsOfARootAtDepth0AreIndentedAsAtDepth1) {
  EXPECT_EQ(textOf(*readText("g { a 1 }"), BARE, LINES, 0), "\ng {\n    a 1\n}");
}

TEST(ParserGroupTextTest, OnOneLineTheDepthOfTheRootDoesNotMatter) {
  EXPECT_EQ(textOf(makeGroup("root"), BARE, ONE_LINE, 7), " a 1 b 2");
}

TEST(ParserGroupTextTest, TheTextIsAppended) {
  std::string text = "before";
  makeGroup("root").getText(text, BARE, LINES, 1);
  EXPECT_EQ(text, "before\na 1\nb 2");
}

// --- In braces -----------------------------------------------------------------------------------

TEST(ParserGroupTextTest, AnEmptyNamedGroupClosesOnTheNextLine) {
  EXPECT_EQ(textOf(ParserGroup("name"), BRACES, LINES), "name {\n}");
}

TEST(ParserGroupTextTest, AnEmptyNamedGroupOnOneLineHasABlankInItsBraces) {
  EXPECT_EQ(textOf(ParserGroup("name"), BRACES, ONE_LINE), "name { }");
}

TEST(ParserGroupTextTest, AnEmptyGroupWithoutANameOpensWithItsBrace) {
  EXPECT_EQ(textOf(ParserGroup(""), BRACES, LINES), "{\n}");
  EXPECT_EQ(textOf(ParserGroup(""), BRACES, ONE_LINE), "{ }");
}

TEST(ParserGroupTextTest, AGroupWithoutANameOnOneLineOpensWithItsBrace) {
  EXPECT_EQ(textOf(makeGroup(""), BRACES, ONE_LINE), "{ a 1 b 2 }");
}

TEST(ParserGroupTextTest, ANamedGroupOnOneLineHasItsNameBeforeTheBrace) {
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, ONE_LINE), "name { a 1 b 2 }");
}

TEST(ParserGroupTextTest, ItemsInBracesAreIndentedByOneLevel) {
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, LINES), "name {\n    a 1\n    b 2\n}");
}

TEST(ParserGroupTextTest, AtDepth3ItemsHaveTwelveBlanksAndTheClosingBraceEight) {
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, LINES, 3),
            "name {\n            a 1\n            b 2\n        }");
}

TEST(ParserGroupTextTest, BracesAtDepth0AreTakenAsAtDepth1) {
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, LINES, 0), "name {\n    a 1\n    b 2\n}");
}

TEST(ParserGroupTextTest, OnOneLineTheDepthOfTheBracesDoesNotMatter) {
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, ONE_LINE, 0), "name { a 1 b 2 }");
  EXPECT_EQ(textOf(makeGroup("name"), BRACES, ONE_LINE, 3), "name { a 1 b 2 }");
}

TEST(ParserGroupTextTest, TheTextInBracesIsAppended) {
  std::string text = "before ";
  ParserGroup("name").getText(text, BRACES, ONE_LINE, 1);
  EXPECT_EQ(text, "before name { }");
}

// --- Nested groups -------------------------------------------------------------------------------

TEST(ParserGroupTextTest, ANestedGroupOpensOnTheLineOfItsItemAndClosesBelowIt) {
  EXPECT_EQ(textOf(*readText("a 1 sub { b 2 }"), BARE, LINES), "\na 1\nsub {\n    b 2\n}");
}

TEST(ParserGroupTextTest, ANestedGroupOnOneLineStandsInBraces) {
  EXPECT_EQ(textOf(*readText("a 1 sub { b 2 } c 3"), BARE, ONE_LINE), " a 1 sub { b 2 } c 3");
}

TEST(ParserGroupTextTest, EachLevelIsIndentedByFourBlanks) {
  EXPECT_EQ(textOf(*readText("a { b { c { d 1 } } }"), BARE, LINES),
            "\na {\n    b {\n        c {\n            d 1\n        }\n    }\n}");
}

TEST(ParserGroupTextTest, ItemsAfterANestedGroupAreIndentedAsThoseBefore) {
  EXPECT_EQ(textOf(*readText("a { b 1 c { d 2 } e 3 } f 4"), BARE, LINES),
            "\na {\n    b 1\n    c {\n        d 2\n    }\n    e 3\n}\nf 4");
}

TEST(ParserGroupTextTest, ANestedGroupInBracesAtDepth2GoesOnFromThere) {
  EXPECT_EQ(textOf(*readText("a { b 1 }"), BRACES, LINES, 2),
            "root {\n        a {\n            b 1\n        }\n    }");
}

TEST(ParserGroupTextTest, AnEmptyNestedGroupClosesOnItsOwnLine) {
  EXPECT_EQ(textOf(*readText("a { b { } }"), BARE, LINES), "\na {\n    b {\n    }\n}");
}

TEST(ParserGroupTextTest, ANestedGroupWithANameIsWrittenWithIt) {
  ParserGroup root("root");
  root.addGroup(new ParserGroup("inner"), false);
  EXPECT_EQ(textOf(root, BARE, LINES), "\ninner inner {\n}");
}

TEST(ParserGroupTextTest, TwoGroupsOfOneItemStandAtTheSameDepth) {
  const auto root = readText("a { b 1 }");
  root->getItem("a")->addGroup(nullptr)->addItem("c", 0, 0)->addInt(2);
  EXPECT_EQ(textOf(*root, BARE, LINES), "\na {\n    b 1\n} {\n    c 2\n}");
}

TEST(ParserGroupTextTest, AFoldedNestedGroupMovesToTheLineAfterItsMarker) {
  ParserGroup root("root");
  root.addGroup("a", false)->addGroup("b", true)->addItem("c", 0, 0)->addInt(1);
  EXPECT_EQ(textOf(root, BARE, LINES),
            "\na {\n    //b/*{{{*/\n    b {\n        c 1\n    }\n/*}}}*/\n}");
}

TEST(ParserGroupTextTest, AFoldedGroupOnOneLineIsIndentedByItsDepthAllTheSame) {
  ParserGroup root("root");
  root.addGroup("a", false)->addGroup("b", true);
  EXPECT_EQ(textOf(root, BARE, ONE_LINE), " a { //b/*{{{*/\n    b { }\n/*}}}*/ }");
}

// --- Keywords and other items --------------------------------------------------------------------

TEST(ParserGroupTextTest, KeywordsAreWrittenInTheirPlace) {
  checkRoundTrip("\n#SerialVersion 1.1\na 1\n#k 2\nb 3");
}

TEST(ParserGroupTextTest, KeywordsInNestedGroupsAreWrittenInTheirPlace) {
  checkRoundTrip("\na {\n    b 1\n    #k 2\n    c 3\n}");
}

TEST(ParserGroupTextTest, ItemsOfOneNameAreAllWritten) { checkRoundTrip("\nx 1\nx 2\nx 1"); }

TEST(ParserGroupTextTest, AnItemWithoutValuesIsWrittenWithTheEmptyTag) {
  ParserGroup root("root");
  root.addItem("a", 0, 0);
  root.addItem("b", 0, 0);
  EXPECT_EQ(textOf(root, BARE, LINES), "\na <empty>\nb <empty>");
}

TEST(ParserGroupTextTest, LineFeedsInStringsDoNotBreakTheLine) {
  checkRoundTrip("\na {\n    b \"x\\ny\"\n}");
}

TEST(ParserGroupTextTest, WhatIsWrittenOnOneLineReadsBackAsTheSameTree) {
  const auto root = readText("#k 1 a { b yes, \"x\" c { } } f(1, 2)");
  const std::string text = textOf(*root, BARE, ONE_LINE);
  EXPECT_EQ(textOf(*readText(text), BARE, ONE_LINE), text);
}

TEST(ParserGroupTextTest, AFoldedGroupDoesNotReadBackAsTheSameTree) {
  ParserGroup root("root");
  root.addGroup("a", true)->addItem("b", 0, 0)->addInt(1);
  root.addItem("c", 0, 0)->addInt(2);
  const std::string text = textOf(root, BARE, LINES);
  const std::string marker = "\n//a/*{{{*/";
  ASSERT_EQ(text, marker + "\na {\n    b 1\n}\n/*}}}*/\nc 2");
  const auto withoutComment = text.substr(marker.size());
  TestSupport::checkWarns(withoutComment, "ParserGroup::setText: (5:0) Unknown word type: '/*'\n",
                          "a {b int:1}");
}
