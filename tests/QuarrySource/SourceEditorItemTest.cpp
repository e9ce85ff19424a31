#include <gtest/gtest.h>

#include "EditedDocument.h"

using Quarry::SourceLiteral;
using Quarry::SourcePlacement;
using TestSupport::addCall;
using TestSupport::addGroup;
using TestSupport::addItem;
using TestSupport::checkEdit;
using TestSupport::checkEditOfFiles;
using TestSupport::checkRefused;
using TestSupport::checkRefusedInFiles;
using TestSupport::EditedDocument;
using TestSupport::number;
using TestSupport::removeItem;
using TestSupport::renameItem;
using TestSupport::string;

// --- Add at the end of the root ------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemOfTheRootGoesToTheEndOfTheFile) {
  checkEdit("a 1\n// the end\n", addItem("", "b", {number(2), string("x")}),
            "a 1\n// the end\nb 2 \"x\"\n");
}

TEST(SourceEditorItemTest, AFileWithoutAFinalLineFeedGetsNone) {
  checkEdit("a 1", addItem("", "b", {number(2)}), "a 1\nb 2");
}

TEST(SourceEditorItemTest, AFinalCommentWithoutALineFeedStaysOne) {
  checkEdit("a 1 // the end", addItem("", "b", {number(2)}), "a 1 // the end\nb 2");
}

TEST(SourceEditorItemTest, BehindACommentThatTouchesAWordABlankKeepsThemApart) {
  checkEdit("a 1// the end\n", addItem("", "b", {number(2)}), "a 1// the end\n b 2\n");
  checkEdit("a 1// the end", addItem("", "b", {number(2)}), "a 1// the end\n b 2");
}

TEST(SourceEditorItemTest, AnEmptyFileGetsALine) {
  checkEditOfFiles({{"a.cfg", ""}}, addItem("", "a", {number(1)}), {{"a.cfg", "a 1\n"}});
}

TEST(SourceEditorItemTest, AFileThatIsOnlyAVersionLineGetsALineBehindIt) {
  checkEditOfFiles({{"a.cfg", "#SerialVersion 1.1"}}, addItem("", "a", {number(1)}),
                   {{"a.cfg", "#SerialVersion 1.1\na 1"}});
}

TEST(SourceEditorItemTest, LinesEndAsTheyDoInTheFile) {
  checkEdit("a 1\n", addItem("", "b", {number(2)}), "a 1\nb 2\n");
  checkEditOfFiles({{"a.cfg", "a 1\r\n"}}, addItem("", "b", {number(2)}),
                   {{"a.cfg", "a 1\r\nb 2\r\n"}});
}

TEST(SourceEditorItemTest, LinesEndInCarriageReturnsWhereAllDo) {
  checkEditOfFiles({{"a.cfg", "a 1\rg {\r}\r"}}, addItem("", "b", {number(2)}),
                   {{"a.cfg", "a 1\rg {\r}\rb 2\r"}});
  checkEditOfFiles({{"a.cfg", "a 1\rg {\r}\r"}}, addItem("g", "b", {number(2)}),
                   {{"a.cfg", "a 1\rg {\r    b 2\r}\r"}});
}

TEST(SourceEditorItemTest, BehindACommentThatACarriageReturnDoesNotEndGoesALineFeed) {
  checkEditOfFiles({{"a.cfg", "a 1\r// the end\r"}}, addItem("", "b", {number(2)}),
                   {{"a.cfg", "a 1\r// the end\r\nb 2"}});
}

TEST(SourceEditorItemTest, TheRootsItemsAreIndentedAlike) {
  checkEdit("  a 1\n", addItem("", "b", {number(2)}), "  a 1\n  b 2\n");
}

TEST(SourceEditorItemTest, BehindABraceThatEndsTheDocumentTheItemStandsBeforeIt) {
  checkEdit("a 1\n}\nrest 1\n", addItem("", "b", {number(2)}), "a 1\nb 2\n}\nrest 1\n");
}

// --- Add at the end of a group -------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemGoesBehindTheLastOneOfItsGroup) {
  checkEdit("g {\n  a 1\n}\n", addItem("g", "b", {number(2)}), "g {\n  a 1\n  b 2\n}\n");
}

TEST(SourceEditorItemTest, ACommentBehindTheLastItemStaysOnItsLine) {
  checkEdit("g {\n\ta 1 // one\n}\n", addItem("g", "b", {number(2)}),
            "g {\n\ta 1 // one\n\tb 2\n}\n");
}

TEST(SourceEditorItemTest, AGroupOnOneLineStaysOnIt) {
  checkEdit("g { a 1 }\n", addItem("g", "b", {number(2)}), "g { a 1 b 2 }\n");
  checkEdit("g {a 1}\n", addItem("g", "b", {number(2)}), "g {a 1 b 2}\n");
}

TEST(SourceEditorItemTest, ABraceBehindTheLastItemStaysBehindTheNewOne) {
  checkEdit("g {\n  a 1 }\n", addItem("g", "b", {number(2)}), "g {\n  a 1\n  b 2 }\n");
}

TEST(SourceEditorItemTest, AnEmptyGroupOnOneLineIsFilledThere) {
  checkEdit("g {}\n", addItem("g", "a", {number(1)}), "g { a 1 }\n");
  checkEdit("g { }\n", addItem("g", "a", {number(1)}), "g { a 1 }\n");
}

TEST(SourceEditorItemTest, AnEmptyGroupOnTwoLinesGetsALineOfFourBlanksMore) {
  checkEdit("g {\n}\n", addItem("g", "a", {number(1)}), "g {\n    a 1\n}\n");
}

TEST(SourceEditorItemTest, AnEmptyGroupIsIndentedAsTheDocumentIs) {
  checkEdit("f {\n  x 1\n  g {\n  }\n}\n", addItem("f/g", "a", {number(1)}),
            "f {\n  x 1\n  g {\n    a 1\n  }\n}\n");
}

TEST(SourceEditorItemTest, AnItemGoesBehindTheCommentsOfAnEmptyGroup) {
  checkEdit("g { // open\n    // nothing yet\n}\n", addItem("g", "a", {number(1)}),
            "g { // open\n    // nothing yet\n    a 1\n}\n");
}

TEST(SourceEditorItemTest, BehindAGroupOnManyLinesGoesALine) {
  checkEdit("g {\n  f {\n    x 1\n  }\n}\n", addItem("g", "b", {number(2)}),
            "g {\n  f {\n    x 1\n  }\n  b 2\n}\n");
}

TEST(SourceEditorItemTest, AGroupThatIsNotClosedGetsItsItemAtTheEnd) {
  checkEdit("g {\n  a 1\n", addItem("g", "b", {number(2)}), "g {\n  a 1\n  b 2\n");
  checkEdit("g {\n", addItem("g", "b", {number(2)}), "g {\n    b 2\n");
}

TEST(SourceEditorItemTest, ALastItemWithAFinalCommaKeepsIt) {
  checkEdit("g {\n  a 1,\n}\n", addItem("g", "b", {number(2)}), "g {\n  a 1,\n  b 2\n}\n");
}

// --- Add beside a sibling ------------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemGoesOnTheLineBeforeASibling) {
  checkEdit("g {\n  a 1\n  b 2\n}\n",
            addItem("g", "x", {number(3)}, SourcePlacement::before("g/b")),
            "g {\n  a 1\n  x 3\n  b 2\n}\n");
}

TEST(SourceEditorItemTest, AnItemGoesOnTheLineBehindASibling) {
  checkEdit("  a 1 // one\nb 2\n", addItem("", "x", {number(3)}, SourcePlacement::behind("a")),
            "  a 1 // one\n  x 3\nb 2\n");
}

TEST(SourceEditorItemTest, BesideASiblingOnTheSameLineItStandsThere) {
  checkEdit("a 1 b 2\n", addItem("", "x", {number(3)}, SourcePlacement::behind("a")),
            "a 1 x 3 b 2\n");
  checkEdit("a 1 b 2\n", addItem("", "x", {number(3)}, SourcePlacement::before("b")),
            "a 1 x 3 b 2\n");
}

TEST(SourceEditorItemTest, TheCommentBeforeASiblingStaysBeforeTheNewItem) {
  checkEdit("// about a\na 1\n", addItem("", "x", {number(3)}, SourcePlacement::before("a")),
            "// about a\nx 3\na 1\n");
}

TEST(SourceEditorItemTest, ASiblingInAnotherGroupIsRefused) {
  checkRefused("g { a 1 }\n", addItem("", "x", {}, SourcePlacement::before("g/a")),
               "'g/a' is in another group");
}

TEST(SourceEditorItemTest, ASiblingThatIsNotThereIsRefused) {
  checkRefused("a 1\n", addItem("", "x", {}, SourcePlacement::behind("b")), "there is no 'b'");
}

// --- Kinds of item -------------------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemWithoutValuesIsEmpty) {
  checkEdit("a 1\n", addItem("", "b", {}), "a 1\nb <empty>\n");
}

TEST(SourceEditorItemTest, AKeywordIsAddedByItsName) {
  checkEdit("a 1\n", addItem("", "#format", {number(2)}), "a 1\n#format 2\n");
}

TEST(SourceEditorItemTest, ACallIsAddedWithItsArguments) {
  checkEdit("a 1\n", addCall("", "blur", {number(4), SourceLiteral::makeBool(true)}),
            "a 1\nblur(4, yes)\n");
}

TEST(SourceEditorItemTest, ACallIsAddedWithoutArguments) {
  checkEdit("a 1\n", addCall("", "clear", {}), "a 1\nclear()\n");
}

TEST(SourceEditorItemTest, AGroupIsAddedOnTwoLines) {
  checkEdit("g {\r\n  a 1\r\n}\r\n", addGroup("g", "h"), "g {\r\n  a 1\r\n  h {\n  }\n}\r\n");
}

TEST(SourceEditorItemTest, AGroupWithinAGroupOnOneLineStandsThere) {
  checkEdit("g { a 1 }\n", addGroup("g", "h"), "g { a 1 h {} }\n");
}

TEST(SourceEditorItemTest, AGroupThatWasAddedIsFilled) {
  EditedDocument edited("a.cfg", {{"a.cfg", "a {\n\tb 1\n}\n"}});
  EXPECT_TRUE(edited.edit().addGroup("a", "c"));
  EXPECT_TRUE(edited.edit().addItem("a/c", "d", {number(2)}));
  EXPECT_TRUE(edited.edit().addItem("a/c", "e", {number(3)}));
  EXPECT_EQ(edited.getTexts().at("a.cfg"), "a {\n\tb 1\n\tc {\n\t\td 2\n\t\te 3\n\t}\n}\n");
}

// --- What cannot be added ------------------------------------------------------------------------

TEST(SourceEditorItemTest, ANameThatIsNoneIsRefused) {
  checkRefused("a 1\n", addItem("", "a b", {}),
               "'a b' is no name: that is a letter, '_' or '#', and then letters, digits and "
               "[ ] _ - . % :");
}

TEST(SourceEditorItemTest, AnEmptyNameIsRefused) {
  checkRefused("a 1\n", addItem("", "", {}), "a name cannot be empty");
}

TEST(SourceEditorItemTest, ABoolIsNoName) {
  checkRefused("a 1\n", addItem("", "yes", {}), "'yes' is a value and no name");
}

TEST(SourceEditorItemTest, AKeywordIsNoCall) {
  checkRefused("a 1\n", addCall("", "#f", {}), "a keyword takes no arguments");
}

TEST(SourceEditorItemTest, AKeywordThatWouldBeAVersionLineIsRefused) {
  checkRefused("a 1\n", addItem("", "#SerialVersion", {SourceLiteral::makeDouble(1.0)}),
               "'#SerialVersion ' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorItemTest, AKeywordThatWouldBeAnIncludeIsRefused) {
  checkRefused("a 1\n", addItem("", "#include", {string("b.cfg")}),
               "'#include \"' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorItemTest, AnItemInWhatIsNoGroupIsRefused) {
  checkRefused("a 1\n", addItem("a", "b", {}), "'a' has no group");
}

TEST(SourceEditorItemTest, AnItemInAGroupThatIsNotThereIsRefused) {
  checkRefused("a 1\n", addItem("g", "b", {}), "there is no 'g'");
}

TEST(SourceEditorItemTest, ARootThatEndsWithinAGroupTakesNoItem) {
  checkRefused("g {\n  a 1\n", addItem("", "b", {number(2)}),
               "it would be read with the item 'b' in place of the end of a group");
}

TEST(SourceEditorItemTest, BehindANameWithoutAValueNothingIsAdded) {
  checkRefused("g { a }\n", addItem("g", "b", {number(2)}),
               "it would draw the message: item 'b' has no value.");
}

TEST(SourceEditorItemTest, InFormat10AStringIsAddedWithoutEscapes) {
  checkEditOfFiles({{"a.cfg", "a 1\n"}}, addItem("", "b", {string("C:\\x")}),
                   {{"a.cfg", "a 1\nb \"C:\\x\"\n"}});
  checkRefusedInFiles({{"a.cfg", "a 1\n"}}, addItem("", "b", {string("x\n")}),
                      "a string cannot hold a line break in format 1.0");
}

// --- Remove --------------------------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemThatHasItsLineToItselfGoesWithIt) {
  checkEdit("a 1\n  b 2  \nc 3\n", removeItem("b"), "a 1\nc 3\n");
}

TEST(SourceEditorItemTest, AGroupGoesWithItsLines) {
  checkEdit("a 1\n// about g\ng\n{\n  x 1 // one\n}\nc 3\n", removeItem("g"),
            "a 1\n// about g\nc 3\n");
}

TEST(SourceEditorItemTest, ACommentBehindAnItemStays) {
  checkEdit("a 1\n  b 2 // two\nc 3\n", removeItem("b"), "a 1\n  // two\nc 3\n");
}

TEST(SourceEditorItemTest, AnItemBetweenOthersGoesWithTheBlanksBeforeIt) {
  checkEdit("a 1  b 2 c 3\n", removeItem("b"), "a 1 c 3\n");
}

TEST(SourceEditorItemTest, TheFirstItemOfALineGoesWithTheBlanksBehindIt) {
  checkEdit("  a 1  b 2\n", removeItem("a"), "  b 2\n");
}

TEST(SourceEditorItemTest, AnItemGoesFromAGroupOnOneLine) {
  checkEdit("g { a 1 b 2 }\n", removeItem("g/b"), "g { a 1 }\n");
  checkEdit("g { a 1 b 2 }\n", removeItem("g/a"), "g { b 2 }\n");
}

TEST(SourceEditorItemTest, AGroupOnOneLineBecomesEmpty) {
  checkEdit("g {a 1}\n", removeItem("g/a"), "g {}\n");
}

TEST(SourceEditorItemTest, ABraceBehindARemovedItemGoesUpALine) {
  checkEdit("g {\n  a 1\n  b 2 }\n", removeItem("g/b"), "g {\n  a 1 }\n");
}

TEST(SourceEditorItemTest, ABraceDoesNotGoUpIntoAComment) {
  checkEdit("g {\n  a 1 // one\n  b 2 }\n", removeItem("g/b"), "g {\n  a 1 // one\n   }\n");
}

TEST(SourceEditorItemTest, NeighboursDoNotGrowTogetherOverAComment) {
  checkEdit("a 1// one\n b 2\nc 3\n", removeItem("b"), "a 1// one\n \nc 3\n");
}

TEST(SourceEditorItemTest, NeighboursDoNotGrowTogetherOnALine) {
  checkEdit("a 1 f()c 3\n", removeItem("f"), "a 1 c 3\n");
}

TEST(SourceEditorItemTest, TheLastLineOfAFileGoesWithTheLineEndBeforeIt) {
  checkEdit("a 1\r\nb 2", removeItem("b"), "a 1");
}

TEST(SourceEditorItemTest, AFinalCommaGoesWithItsItem) {
  checkEdit("a 1, b 2\n", removeItem("a"), "b 2\n");
}

TEST(SourceEditorItemTest, TheOnlyItemLeavesNothing) { checkEdit("a 1\n", removeItem("a"), ""); }

TEST(SourceEditorItemTest, CallsAndKeywordsAreRemoved) {
  checkEdit("#f 1\nblur(\n  1\n)\na 1\n", removeItem("blur"), "#f 1\na 1\n");
  checkEdit("#f 1\na 1\n", removeItem("#f"), "a 1\n");
}

TEST(SourceEditorItemTest, OneOfSeveralNamesakesIsRemoved) {
  checkEdit("a 1\na 2\na 3\n", removeItem("a[2]"), "a 1\na 3\n");
}

TEST(SourceEditorItemTest, ARemovedItemTakesWhatWasWrongInItAlong) {
  checkEdit("a 1\nb <> 2\nc 3\n", removeItem("b"), "a 1\nc 3\n");
}

TEST(SourceEditorItemTest, AnItemBehindWhichDroppedWordsWouldFitAnotherIsNotRemoved) {
  checkRefused("a <empty>\n#k(1)\n", removeItem("#k"),
               "it would be read with the call 'a' in place of the item 'a'");
}

TEST(SourceEditorItemTest, TheRootIsNotRemoved) {
  checkRefused("a 1\n", removeItem(""), "the path leads to no item");
}

TEST(SourceEditorItemTest, AValueIsNoItemToRemove) {
  checkRefused("a 1\n", removeItem("a#1"), "'a#1' is a value and no item");
}

// --- Rename --------------------------------------------------------------------------------------

TEST(SourceEditorItemTest, AnItemIsRenamed) {
  checkEdit("g { a = 1 }\n", renameItem("g/a", "b.c"), "g { b.c = 1 }\n");
}

TEST(SourceEditorItemTest, AGroupIsRenamed) {
  checkEdit("g{ a 1 }\n", renameItem("g", "h"), "h{ a 1 }\n");
}

TEST(SourceEditorItemTest, ACallIsRenamed) { checkEdit("f(1)\n", renameItem("f", "g"), "g(1)\n"); }

TEST(SourceEditorItemTest, APlainItemBecomesAKeyword) {
  checkEdit("a 1\n", renameItem("a", "#a"), "#a 1\n");
}

TEST(SourceEditorItemTest, TheOwnNameIsNoChange) {
  checkEdit("a 1\n", renameItem("a", "a"), "a 1\n");
}

TEST(SourceEditorItemTest, ACallIsNoKeyword) {
  checkRefused("f(1)\n", renameItem("f", "#f"), "a keyword takes no arguments");
}

TEST(SourceEditorItemTest, AnItemIsNotRenamedToWhatIsNoName) {
  checkRefused("a 1\n", renameItem("a", "1a"),
               "'1a' is no name: that is a letter, '_' or '#', and then letters, digits and "
               "[ ] _ - . % :");
}

TEST(SourceEditorItemTest, AnItemIsNotRenamedToADirective) {
  checkRefused("a 1\n", renameItem("a", "#SerialVersion"),
               "'#SerialVersion ' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorItemTest, OfANameInManyPiecesThreeAreTold) {
  checkRefused("t//\ni//\nt//\nl//\ne 1\n", renameItem("title", "a"),
               "the name is put together of several pieces: a.cfg:2:1 a.cfg:3:1 a.cfg:4:1, 5 in "
               "all");
}

TEST(SourceEditorItemTest, ANameInPiecesIsNotRenamed) {
  checkRefused("ti// one\ntle 1\n", renameItem("title", "a"),
               "the name is put together of several pieces: a.cfg:2:1 a.cfg:3:1");
}
