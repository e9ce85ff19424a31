#include <Quarry/ParserGroup.h>
#include <Quarry/internal/ParserWordStream.h>
#include <gmock/gmock.h>

#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWordStream;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::checkReads;
using TestSupport::checkWarns;
using TestSupport::describe;
using TestSupport::readText;
using TestSupport::RecordingConsole;

namespace {

std::vector<std::string> warningsOf(const std::string& text) {
  const RecordingConsole console;
  readText(text);
  return console.getWarnings();
}

bool resultOf(const std::string& text) {
  const RecordingConsole console;
  return ParserGroup("root").setText(text, 1.1);
}

std::string treeOf(const std::string& text, double version = 1.1) {
  const RecordingConsole console;
  return describe(*readText(text, version));
}

}  // namespace

// --- The tree ------------------------------------------------------------------------------------

TEST(ParserGroupSetTextTest, EmptyTextGivesNoItem) { checkReads("", ""); }

TEST(ParserGroupSetTextTest, ValuesMayBeSeparatedByCommas) {
  checkReads("a = 1, 2, 3", "a int:1 int:2 int:3");
}

TEST(ParserGroupSetTextTest, ValuesMayBeSeparatedByBlanks) {
  checkReads("a 1 2 3", "a int:1 int:2 int:3");
}

TEST(ParserGroupSetTextTest, ValuesOfAllKindsMayBeMixed) {
  checkReads("a yes 1 2.5 \"s\" no", "a bool:yes int:1 double:2.5 string:\"s\" bool:no");
}

TEST(ParserGroupSetTextTest, ABracedGroupBecomesTheItemsValue) {
  checkReads("g { x 1 }", "g {x int:1}");
}

TEST(ParserGroupSetTextTest, AnItemWithAGroupIsAGroup) {
  EXPECT_TRUE(readText("g { x 1 }")->getItem("g")->isGroup());
}

TEST(ParserGroupSetTextTest, GroupsNest) {
  checkReads("a { b { c { d 1 } } e 2 }", "a {b {c {d int:1}}; e int:2}");
}

TEST(ParserGroupSetTextTest, ANestedGroupHasNoNameOfItsOwn) {
  EXPECT_EQ(readText("g { x 1 }")->getGroup("g")->getName(), "");
}

TEST(ParserGroupSetTextTest, AnArgumentListMakesACall) {
  EXPECT_EQ(readText("f(1, 2)")->getItem("f")->getType(), ParserItem::ITEM_CALL);
}

TEST(ParserGroupSetTextTest, ACallHoldsItsArgumentsAsValues) {
  checkReads("f(1, \"s\")", "f(int:1 string:\"s\")");
}

TEST(ParserGroupSetTextTest, ACallWithoutArgumentsHasNoValues) { checkReads("f()", "f()"); }

TEST(ParserGroupSetTextTest, AHashedNameMakesAKeyword) {
  const auto root = readText("#format 2");
  EXPECT_EQ(root->getKeyword("#format")->getInt(0), 2);
  EXPECT_EQ(root->getItemCount(), 0U);
}

TEST(ParserGroupSetTextTest, AnEmptyTagMakesAnItemWithoutValues) { checkReads("x <empty>", "x"); }

TEST(ParserGroupSetTextTest, AnEmptyTagAddsNoValueBesideOthers) {
  checkReads("x <empty> 1 <empty> 2", "x int:1 int:2");
}

TEST(ParserGroupSetTextTest, YesIsABool) { checkReads("a = yes", "a bool:yes"); }

TEST(ParserGroupSetTextTest, BracketsBelongToTheName) {
  checkReads("a[3] 1", "a[3] int:1");
  EXPECT_FALSE(readText("a[3] 1")->getItem("a[3]")->isArray());
}

TEST(ParserGroupSetTextTest, ItemsOfOneNameAreAllKept) {
  checkReads("x 1 x 2 x 3", "x int:1; x int:2; x int:3");
}

TEST(ParserGroupSetTextTest, ANumberKeepsItsSpelling) {
  checkReads("a 1.50 007 1E5 12abc", "a double:1.50 int:007 int:1E5 int:12abc");
}

TEST(ParserGroupSetTextTest, ABinaryWordBecomesItsBytes) {
  checkReads("a 0x414243C6000000", "a binary:ABC");
}

TEST(ParserGroupSetTextTest, EscapesAreResolvedFromFormat11On) {
  EXPECT_EQ(readText(R"(s "a\n\"b\"")", 1.1)->getItem("s")->getString(0), "a\n\"b\"");
}

TEST(ParserGroupSetTextTest, EscapesAreKeptInFormat10) {
  EXPECT_EQ(readText(R"(s "a\nb")", 1.0)->getItem("s")->getString(0), R"(a\nb)");
}

TEST(ParserGroupSetTextTest, TheEmptyStringIsAValue) { checkReads("s \"\"", "s string:\"\""); }

TEST(ParserGroupSetTextTest, AnItemAtTheEndOfAGroupMayLackItsValue) {
  checkReads("g { x }", "g {x}");
}

TEST(ParserGroupSetTextTest, TheTextEndsEveryOpenGroup) {
  checkReads("g { h { x 1", "g {h {x int:1}}");
}

TEST(ParserGroupSetTextTest, TextBehindAStrayClosingBraceIsIgnored) {
  checkReads("a 1 } b 2 ;;; ,", "a int:1");
}

// --- Every diagnostic, with its place ------------------------------------------------------------

TEST(ParserGroupSetTextTest, WarnsOfANameWithoutValue) {
  checkWarns("a\nb 1", "ParserGroup::setText: (2:1) item 'b' has no value.\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfANameAtTheEnd) {
  checkWarns("a 1\nlast", "ParserGroup::setText: (2:0) item 'last' has no value.\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAKeywordWithoutValue) {
  checkWarns("a 1\n  #k", "ParserGroup::setText: (2:2) item '#k' has no value.\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfACapitalisedBool) {
  checkWarns("a = Yes", "ParserGroup::setText: (1:4) item 'Yes' has no value.\n", "a");
}

TEST(ParserGroupSetTextTest, WarnsOfAMisplacedComma) {
  checkWarns("a 1\nb 2\nc 1, 2,,", "ParserGroup::setText: (3:7) item ',' wrongly placed.\n",
             "a int:1; b int:2; c int:1 int:2");
}

TEST(ParserGroupSetTextTest, WarnsOfAMisplacedEqualsSign) {
  checkWarns("a 1 =", "ParserGroup::setText: (1:4) item '=' wrongly placed.\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAValueWithoutItem) {
  checkWarns("12 a 1", "ParserGroup::setText: (1:1) Value without item: 12\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAStringWithoutItemQuotesAndAll) {
  checkWarns("\"s t\" a 1", "ParserGroup::setText: (1:1) Value without item: \"s t\"\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAGroupWithoutItem) {
  checkWarns("\n { x 1", "ParserGroup::setText: (2:1) Group without item\n", "x int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAnArgumentListWithoutItem) {
  checkWarns("( a 1", "ParserGroup::setText: (1:0) Argument list without item\n", "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAnArgumentListBehindValues) {
  checkWarns("f 1 (", "ParserGroup::setText: (1:4) Cannot mix argument list with item values\n",
             "f int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAnArgumentListInsideAnArgumentList) {
  checkWarns("f((", "ParserGroup::setText: (1:2) Argument list inside an argument list\n", "f()");
}

TEST(ParserGroupSetTextTest, WarnsOfACallOnAKeyword) {
  checkWarns("#k(", "ParserGroup::setText: (1:2) Function call on keyword\n", "");
}

TEST(ParserGroupSetTextTest, WarnsOfAClosedArgumentListWithoutItem) {
  checkWarns(")", "ParserGroup::setText: (1:0) Closing an argument list without item\n", "");
}

TEST(ParserGroupSetTextTest, WarnsOfAClosedArgumentListInAPlainItem) {
  checkWarns("a 1)",
             "ParserGroup::setText: (1:3) Closing an argument list in a non function call\n",
             "a int:1");
}

TEST(ParserGroupSetTextTest, WarnsOfAnUnknownWord) {
  checkWarns("a 1 ;", "ParserGroup::setText: (1:4) Unknown word type: ';'\n", "a int:1");
}

TEST(ParserGroupSetTextTest, AnUnknownWordIsCutAtAZeroByteInItsWarning) {
  EXPECT_THAT(warningsOf(std::string("a 1 ;\0x", 7)),
              ElementsAre("ParserGroup::setText: (1:4) Unknown word type: ';'\n"));
}

TEST(ParserGroupSetTextTest, AStringInAWarningHasItsEscapesResolved) {
  EXPECT_THAT(warningsOf(R"("a\tb")"),
              ElementsAre("ParserGroup::setText: (1:0) Value without item: \"a\tb\"\n"));
}

TEST(ParserGroupSetTextTest, AWarningHasAnEmptySecondText) {
  const RecordingConsole console;
  readText(";");
  ASSERT_EQ(console.getMessages().size(), 1U);
  EXPECT_EQ(console.getMessages()[0].second, "");
}

TEST(ParserGroupSetTextTest, CarriageReturnAndLineFeedCountAsTwoLinesInAWarning) {
  EXPECT_THAT(warningsOf("a 1\r\n;"),
              ElementsAre("ParserGroup::setText: (3:0) Unknown word type: ';'\n"));
}

// --- Going on after a warning --------------------------------------------------------------------

TEST(ParserGroupSetTextTest, ADoubledCommaCostsTheValuesUpToTheNextName) {
  EXPECT_THAT(warningsOf("a = 1,, 2 b 3"),
              ElementsAre("ParserGroup::setText: (1:6) item ',' wrongly placed.\n",
                          "ParserGroup::setText: (1:9) Value without item: 2\n"));
  EXPECT_EQ(treeOf("a = 1,, 2 b 3"), "a int:1; b int:3");
}

TEST(ParserGroupSetTextTest, ValuesBehindADroppedNameGoToTheItemBefore) {
  checkWarns("a b 1", "ParserGroup::setText: (1:3) item 'b' has no value.\n", "a int:1");
}

TEST(ParserGroupSetTextTest, ANamelessGroupEndsTheGroupAroundEarly) {
  checkWarns("g { { x 1 } y 2 } z 3", "ParserGroup::setText: (1:4) Group without item\n",
             "g {x int:1}; y int:2");
}

TEST(ParserGroupSetTextTest, ANamedCallWithinAnArgumentListBecomesTheCall) {
  EXPECT_THAT(warningsOf("f(g(1))"),
              ElementsAre("ParserGroup::setText: (1:2) item 'g' has no value.\n",
                          "ParserGroup::setText: (1:3) Argument list inside an argument list\n",
                          "ParserGroup::setText: (1:4) Value without item: 1\n",
                          "ParserGroup::setText: (1:5) Closing an argument list without item\n",
                          "ParserGroup::setText: (1:6) Closing an argument list without item\n"));
}

TEST(ParserGroupSetTextTest, ArgumentsBehindValuesAreDropped) {
  EXPECT_THAT(warningsOf("f 1 (2)"),
              ElementsAre("ParserGroup::setText: (1:4) Cannot mix argument list with item values\n",
                          "ParserGroup::setText: (1:5) Value without item: 2\n",
                          "ParserGroup::setText: (1:6) Closing an argument list without item\n"));
  EXPECT_EQ(treeOf("f 1 (2)"), "f int:1");
}

TEST(ParserGroupSetTextTest, AnUnknownWordLeavesTheItemOpenForValues) {
  checkWarns("a 1 ; 2", "ParserGroup::setText: (1:5) Unknown word type: ';'\n", "a int:1 int:2");
}

TEST(ParserGroupSetTextTest, AnUnclosedStringCostsItsLineOnly) {
  checkWarns("s 1 \"a b\nt 1", "ParserGroup::setText: (1:5) Unknown word type: '\"a b'\n",
             "s int:1; t int:1");
}

TEST(ParserGroupSetTextTest, TheClosingFoldMarkerEndsTheGroupAround) {
  EXPECT_THAT(warningsOf("g { x 1\n/*}}}*/ y 2"),
              ElementsAre("ParserGroup::setText: (2:0) Unknown word type: '/*'\n"));
  EXPECT_EQ(treeOf("g { x 1\n/*}}}*/ y 2"), "g {x int:1}");
}

// --- What the group held before ------------------------------------------------------------------

TEST(ParserGroupSetTextTest, SeveralCallsAddUp) {
  ParserGroup root("root");
  root.setText("a 1", 1.1);
  root.setText("b 2", 1.1);
  EXPECT_EQ(describe(root), "a int:1; b int:2");
}

TEST(ParserGroupSetTextTest, EachCallBeginsWithoutAnItem) {
  ParserGroup root("root");
  const RecordingConsole console;
  root.setText("a 1", 1.1);
  root.setText("2", 1.1);
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("ParserGroup::setText: (1:0) Value without item: 2\n"));
}

TEST(ParserGroupSetTextTest, EachCallHasItsOwnFormatVersion) {
  ParserGroup root("root");
  root.setText(R"(a "\t")", 1.0);
  root.setText(R"(b "\t")", 1.1);
  EXPECT_EQ(root.getItem("a")->getString(0), "\\t");
  EXPECT_EQ(root.getItem("b")->getString(0), "\t");
}

TEST(ParserGroupSetTextTest, ItemsReadAreFoundByName) {
  ParserGroup root("root");
  root.setText("a 1 #k 2 a 3", 1.1);
  EXPECT_EQ(root.getItemCount(), 2U);
  EXPECT_EQ(root.getEntries("a").size(), 2U);
  EXPECT_NE(root.getKeyword("#k"), nullptr);
}

TEST(ParserGroupSetTextTest, ACallReadIsFoundByNameAsAPlainItem) {
  ParserGroup root("root");
  root.setText("f(1)", 1.1);
  ASSERT_NE(root.getItem("f"), nullptr);
  EXPECT_EQ(root.getItem("f")->getInt(0), 1);
}

// --- The result ----------------------------------------------------------------------------------

TEST(ParserGroupSetTextTest, EmptyTextGivesFalse) { EXPECT_FALSE(resultOf("")); }

TEST(ParserGroupSetTextTest, BlankTextGivesFalse) { EXPECT_FALSE(resultOf(" \n ")); }

TEST(ParserGroupSetTextTest, TextThatEndsInAValueGivesTrue) { EXPECT_TRUE(resultOf("a 1")); }

TEST(ParserGroupSetTextTest, TextThatEndsInAWarningGivesFalse) { EXPECT_FALSE(resultOf("a 1 ;")); }

TEST(ParserGroupSetTextTest, TextThatRecoversFromAWarningGivesTrue) {
  EXPECT_TRUE(resultOf("; a 1"));
}

TEST(ParserGroupSetTextTest, TextThatEndsInANameGivesTrueWhenItMadeAnItem) {
  EXPECT_TRUE(resultOf("a\n\n"));
}

TEST(ParserGroupSetTextTest, TextThatEndsInASeparatorGivesTrue) { EXPECT_TRUE(resultOf("a 1,")); }

TEST(ParserGroupSetTextTest, AStrayClosingBraceGivesTrueWhateverWasBefore) {
  EXPECT_TRUE(resultOf("a <empty> }"));
}

TEST(ParserGroupSetTextTest, ANestedWarningLeavesTheResultToTheOuterLevel) {
  EXPECT_TRUE(resultOf("g { ;"));
}

TEST(ParserGroupSetTextTest, AWarningAfterAGroupGivesFalse) {
  EXPECT_FALSE(resultOf("g { x 1 } 2"));
}

TEST(ParserGroupSetTextTest, AnEmptyTagAtTheEndGivesFalseWithoutAWarning) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserGroup("root").setText("x <empty>", 1.1));
  EXPECT_THAT(console.getMessages(), IsEmpty());
}

TEST(ParserGroupSetTextTest, TheStreamFormReadsToTheClosingBraceAndLeavesTheRest) {
  const std::string text = "a 1 } b 2";
  ParserWordStream stream(text, 1.1);
  ParserGroup first("first");
  ParserGroup second("second");
  EXPECT_TRUE(first.setText(stream));
  EXPECT_TRUE(second.setText(stream));
  EXPECT_EQ(describe(first), "a int:1");
  EXPECT_EQ(describe(second), "b int:2");
}

// --- Size ----------------------------------------------------------------------------------------

TEST(ParserGroupSetTextTest, DepthTakesNoStack) {
  ParserGroup root("root");
  EXPECT_TRUE(root.setText(TestSupport::makeDeepText(200000), 1.1));
  EXPECT_EQ(root.getItemCount(), 1U);
}
