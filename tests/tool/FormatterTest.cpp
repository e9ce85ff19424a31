#include <gtest/gtest.h>
#include <quarry/Formatter.h>
#include <quarry/SameDocument.h>

#include <map>
#include <string>

namespace ToolTest {

using Quarry::SourceDocument;
using Tool::FormatStyle;

namespace {

using Files = std::map<std::string, std::string>;

void read(SourceDocument& document, const std::string& text, const Files& included) {
  for (const auto& [name, content] : included)
    document.setText(name, content);
  ASSERT_TRUE(document.readText("top.cfg", text)) << text;
}

std::string format(const std::string& text, const FormatStyle& style = {},
                   const Files& included = {}) {
  SourceDocument document;
  read(document, text, included);
  return Tool::formatFile(document, style);
}

std::string format(const std::string& text, const Files& included) {
  return format(text, {}, included);
}

/// Expects that a text gets this layout, which is kept, and that both read the same.
void checkFormats(const std::string& text, const std::string& expected,
                  const Files& included = {}) {
  EXPECT_EQ(format(text, included), expected);
  EXPECT_EQ(format(expected, included), expected);
  SourceDocument before;
  SourceDocument after;
  read(before, text, included);
  read(after, expected, included);
  EXPECT_TRUE(Tool::areSame(before, after)) << text;
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST(FormatterTest, EachItemGetsALine) { checkFormats("a 1 b 2\tc 3\n", "a 1\nb 2\nc 3\n"); }

TEST(FormatterTest, ItemsAreIndentedByTheirDepth) {
  checkFormats("a {\nb {\nc 1\n}\n}\n", "a {\n    b {\n        c 1\n    }\n}\n");
}

TEST(FormatterTest, ABraceThatOpensAGroupStandsBehindTheName) {
  checkFormats("a\n\n{\nb 1}\n", "a {\n    b 1\n}\n");
}

TEST(FormatterTest, AnEmptyGroupTakesTwoLines) { checkFormats("a{}\n", "a {\n}\n"); }

TEST(FormatterTest, AGroupBehindAValueStaysOnItsLine) {
  checkFormats("a 1 {b 2}\n", "a 1 {\n    b 2\n}\n");
}

TEST(FormatterTest, AssignmentsStandBetweenBlanks) {
  checkFormats("a=1\nb  =2\nc=\n3\n", "a = 1\nb = 2\nc =\n    3\n");
}

TEST(FormatterTest, AnAssignmentMovesToTheName) { checkFormats("a\n= 1\n", "a = 1\n"); }

TEST(FormatterTest, CommasStandBehindValues) { checkFormats("a 1,2 ,3\n,4\n", "a 1, 2, 3, 4\n"); }

TEST(FormatterTest, CallsAreWrittenAsTheLibraryDoes) {
  checkFormats("f ( 1 ,2 )\ng( )\nh=(3)\n", "f(1, 2)\ng()\nh = (3)\n");
}

TEST(FormatterTest, EmptyTagsAreValues) { checkFormats("a   <empty> b 1\n", "a <empty>\nb 1\n"); }

TEST(FormatterTest, KeywordsAreItems) { checkFormats("#format   1 a 2\n", "#format 1\na 2\n"); }

TEST(FormatterTest, WordsAreNeverChanged) {
  checkFormats("a 1.50 1E5 +007 \"x  y\" 0x10\n", "a 1.50 1E5 +007 \"x  y\" 0x10\n");
}

TEST(FormatterTest, LineBreaksBetweenValuesStay) {
  checkFormats("g {\na 1 2\n3 4\n\"x\"\nb 5\n}\n",
               "g {\n    a 1 2\n        3 4\n        \"x\"\n    b 5\n}\n");
}

TEST(FormatterTest, LineBreaksWithinArgumentsStay) {
  checkFormats("f(\n1,\n2\n)\n", "f(\n    1,\n    2\n)\n");
}

// --- Lines ---------------------------------------------------------------------------------------

TEST(FormatterTest, OneBlankLineStaysOfSeveral) {
  checkFormats("a 1\n\n \n\nb 2\n\nc 3\n", "a 1\n\nb 2\n\nc 3\n");
}

TEST(FormatterTest, ThereIsNoBlankLineAtTheBeginningAndTheEnd) {
  checkFormats("\n\n  a 1\n\n\n", "a 1\n");
}

TEST(FormatterTest, AMissingFinalLineEndStaysMissing) { checkFormats("a 1  ", "a 1"); }

TEST(FormatterTest, BlanksBehindTheFinalLineEndGo) { checkFormats("a 1\n  ", "a 1\n"); }

TEST(FormatterTest, NothingStaysOfBlanks) { checkFormats(" \n\t\n", ""); }

TEST(FormatterTest, ReturnsBeforeLineFeedsStay) {
  checkFormats("a 1 b 2\r\n\r\n\r\n// x\r\nc 3", "a 1\r\nb 2\r\n\r\n// x\r\nc 3");
}

TEST(FormatterTest, AllLinesEndAsTheFirst) {
  checkFormats("a 1\nb 2\r\n// x\r\n", "a 1\nb 2\n// x\n");
}

TEST(FormatterTest, ALoneReturnEndsALine) { checkFormats("a 1\rb 2\r", "a 1\nb 2\n"); }

// --- Comments ------------------------------------------------------------------------------------

TEST(FormatterTest, ACommentBehindAnItemStaysThereWithTheBlanksBeforeIt) {
  checkFormats("a    1   // one\nb 2\t// two\n", "a 1   // one\nb 2\t// two\n");
}

TEST(FormatterTest, ACommentDirectlyBehindAWordGetsABlank) {
  checkFormats("a 1//c\n b 2\n", "a 1 //c\nb 2\n");
}

TEST(FormatterTest, ACommentWithinAWordStaysWithinIt) {
  checkFormats("a   1//c\n2 b 3\n", "a 1//c\n2\nb 3\n");
}

TEST(FormatterTest, CommentsOnLinesOfTheirOwnAreIndentedAsWhatFollows) {
  checkFormats(
      "// top\ng {\n// first\n    // second\na 1\n  // value\n2\n}\n",
      "// top\ng {\n    // first\n    // second\n    a 1\n        // value\n        2\n}\n");
}

TEST(FormatterTest, ACommentBeforeTheEndOfAGroupBelongsToTheGroup) {
  checkFormats("g {\na 1\n// last\n}\n", "g {\n    a 1\n    // last\n}\n");
}

TEST(FormatterTest, ACommentBehindABraceStaysThere) {
  checkFormats("g { // begin\na 1 } // end\nb 2\n", "g { // begin\n    a 1\n} // end\nb 2\n");
}

TEST(FormatterTest, ABraceBehindACommentStandsOnTheNextLine) {
  checkFormats("g // begin\n  {\na 1\n}\n", "g // begin\n{\n    a 1\n}\n");
}

TEST(FormatterTest, ACommentThatEndsTheFileNeedsNoLineEnd) {
  checkFormats("a 1\n  // end", "a 1\n// end");
}

TEST(FormatterTest, CommentMarksInStringsAreNone) {
  checkFormats("a   \"http://x\"   b 2\n", "a \"http://x\"\nb 2\n");
}

TEST(FormatterTest, AnOpeningFoldMarkerIsAComment) {
  checkFormats("g {\n//h/*{{{*/\nh 1\n}\n", "g {\n    //h/*{{{*/\n    h 1\n}\n");
}

TEST(FormatterTest, AClosingFoldMarkerStaysWhole) {
  checkFormats("a {\nb {\nc {\nd 1\n/*}}}*/\ne   2\n",
               "a {\n    b {\n        c {\n            d 1\n            /*}}}*/\ne 2\n");
}

// --- Quotes --------------------------------------------------------------------------------------

TEST(FormatterTest, AStringThatEndsInABackslashStaysTheLastOfItsLine) {
  checkFormats("#SerialVersion 1.1\ng{a   \"C:\\\\\"\n}b 1\n",
               "#SerialVersion 1.1\ng {\n    a \"C:\\\\\"\n}\nb 1\n");
}

TEST(FormatterTest, AnUnclosedQuoteKeepsItsLine) {
  checkFormats("a   1 \"b  ,2\n, 3 c 4\n", "a 1 \"b  ,2\n, 3\nc 4\n");
}

TEST(FormatterTest, CommentsBehindAnUnclosedQuoteArePartOfTheWord) {
  checkFormats("a   \"b // c\nd   1 // e\n", "a \"b // c\nd 1 // e\n");
}

TEST(FormatterTest, ACommentBehindAnEscapedBackslashStaysWithTheLineBreakBehindIt) {
  checkFormats("a   \"C:\\\\\" // c\n\nb  1\n", "a \"C:\\\\\" // c\n\nb 1\n");
}

TEST(FormatterTest, LinesOfCommentsThatAreWordsStayAsTheyAre) {
  checkFormats("a \"b\nc   1   // )  (\nd   2\n", "a \"b\nc 1   // )  (\nd 2\n");
}

TEST(FormatterTest, AQuoteThatAnIncludedFileLeavesOpenKeepsItsLine) {
  checkFormats("a   1 #include \"x\"\n{\nb 1\n}\n", "a 1 #include \"x\"\n{\n    b 1\n}\n",
               {{"x", "2 \"open"}});
}

// --- Directives ----------------------------------------------------------------------------------

TEST(FormatterTest, AVersionLineStaysWhereItIs) {
  checkFormats("// head\n#SerialVersion 1.1\na   1 #SerialVersion 1.0\nb 2\n",
               "// head\n#SerialVersion 1.1\na 1 #SerialVersion 1.0\nb 2\n");
}

TEST(FormatterTest, AByteOrderMarkStaysBeforeTheVersionLine) {
  checkFormats("\xEF\xBB\xBF#SerialVersion 1.1\n\na   1\n",
               "\xEF\xBB\xBF#SerialVersion 1.1\n\na 1\n");
}

TEST(FormatterTest, AnIncludeIsIndentedByTheDepth) {
  checkFormats("g {\n#include \"x\"\n}\n", "g {\n    #include \"x\"\n}\n", {{"x", "a 1"}});
}

TEST(FormatterTest, AnIncludeWithinALineStaysThere) {
  checkFormats("a   1   #include \"x\"   3 b 4\n", "a 1 #include \"x\" 3\nb 4\n", {{"x", "2"}});
}

TEST(FormatterTest, AnIncludedValueStandsOneLevelDeeper) {
  checkFormats("g {\na\n#include \"x\"\nb 1\n}\n",
               "g {\n    a\n        #include \"x\"\n    b 1\n}\n", {{"x", "2"}});
}

TEST(FormatterTest, AnIncludeThatMakesAWordWithWhatStandsAroundItStaysThere) {
  checkFormats("a   1#include \"x\"3   4\n", "a 1#include \"x\"3 4\n", {{"x", "2"}});
}

TEST(FormatterTest, AWordThatAnIncludedFileBeginsIsNotCut) {
  checkFormats("#include \"x\"//c\n3   b 1\n", "#include \"x\"//c\n3\nb 1\n", {{"x", "a 2"}});
}

TEST(FormatterTest, ACommentBehindAnIncludedWordGetsABlank) {
  checkFormats("a   1#include \"x\"//c\n b 1\n", "a 1#include \"x\" //c\nb 1\n", {{"x", "2"}});
}

TEST(FormatterTest, GroupsMayBeginAndEndInIncludedFiles) {
  checkFormats("#include \"begin\"\na 1\n#include \"end\"\nb 2\n",
               "#include \"begin\"\n    a 1\n    #include \"end\"\nb 2\n",
               {{"begin", "g {\n"}, {"end", "}\n"}});
}

TEST(FormatterTest, WordsThatOneBlankWouldMakeADirectiveKeepTheirBlanks) {
  checkFormats("#include   \"x\" a   1\n", "#include   \"x\"\na 1\n");
  checkFormats("#SerialVersion\t2\n", "#SerialVersion\t2\n");
  checkFormats("#SerialVersion=2\n", "#SerialVersion= 2\n");
  checkFormats("#SerialVersion//c\n {a   1}\n", "#SerialVersion//c\n{\n    a 1\n}\n");
}

// --- Faults --------------------------------------------------------------------------------------

TEST(FormatterTest, DroppedWordsStayOnTheirLines) {
  checkFormats("a   1\n, b   2\n  *  c 3\n", "a 1,\nb 2\n*\nc 3\n");
}

TEST(FormatterTest, WhatStandsBehindTheEndOfTheDocumentStaysAsItIs) {
  checkFormats("a   1 }  b   2\n\n\n", "a 1\n}  b   2\n\n\n");
}

TEST(FormatterTest, WhatStandsBehindAnIncludeThatEndsTheDocumentStaysAsItIs) {
  checkFormats("a   1\n  #include \"x\"//c\n  b   2\n", "a 1\n  #include \"x\"//c\n  b   2\n",
               {{"x", "}"}});
}

TEST(FormatterTest, ANameThatEndsTheDocumentKeepsWhatIsBehindIt) {
  checkFormats("a   1   b\n \n", "a 1\nb\n \n");
  checkFormats("g {\na   1   b\n// c\n\n\n", "g {\n    a 1\n    b\n// c\n\n\n");
}

TEST(FormatterTest, ANameThatEndsAnIncludedFileKeepsWhatIsBehindIt) {
  checkFormats("a   1\n#include \"x\" ", "a 1\n#include \"x\" ", {{"x", "b "}});
}

TEST(FormatterTest, AFragmentOfAGroupThatStaysOpenIsFormatted) {
  checkFormats("g {\na   1\n", "g {\n    a 1\n");
}

// --- Style ---------------------------------------------------------------------------------------

TEST(FormatterTest, TheStyleTellsTheIndent) {
  EXPECT_EQ(format("g{a 1}", {.indent = "\t"}), "g {\n\ta 1\n}");
}

TEST(FormatterTest, TheStyleTellsTheLineEnd) {
  EXPECT_EQ(format("a 1\n// b\n", {.lineEnd = "\r\n"}), "a 1\r\n// b\r\n");
  EXPECT_EQ(format("a 1\r\n// b\r\n", {.lineEnd = "\n"}), "a 1\n// b\n");
}

TEST(FormatterTest, TheStyleTellsWhetherTheLastLineEnds) {
  EXPECT_EQ(format("a 1", {.endsInLineEnd = true}), "a 1\n");
  EXPECT_EQ(format("// a", {.endsInLineEnd = true}), "// a\n");
  EXPECT_EQ(format("a 1\n", {.endsInLineEnd = false}), "a 1");
}

TEST(FormatterTest, AnEmptyFileStaysEmpty) { EXPECT_EQ(format("", {.endsInLineEnd = true}), ""); }

}  // namespace ToolTest
