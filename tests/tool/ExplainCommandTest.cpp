#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using testing::EndsWith;
using testing::HasSubstr;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

/// What is told of a place of `text`, whose file is called a.cfg.
void checkExplains(const std::string& text, const std::string& place, const std::string& expected) {
  EXPECT_EQ(runTool({"explain", "--stdin-filename", "a.cfg", "-:" + place},
                    "#SerialVersion 1.1\n" + text),
            (Result{0, expected, ""}));
}

void checkRefused(const Arguments& arguments, const std::string& message) {
  EXPECT_EQ(runTool(arguments, "a 1\n"), (Result{2, "", "quarry: error: " + message + "\n"}));
}

}  // namespace

// --- Values --------------------------------------------------------------------------------------

TEST(ExplainCommandTest, AValueHasItsPathTypeSpellingAndPlace) {
  checkExplains("g { size 1920 1.50e2 }\n", "2:16",
                "path:     g/size#2\n"
                "what:     value 2 of 2, of a plain item\n"
                "type:     double\n"
                "value:    150\n"
                "spelled:  1.50e2\n"
                "place:    a.cfg:2:15\n");
}

TEST(ExplainCommandTest, AStringIsToldAsItIsRead) {
  checkExplains("s \"a\\\"b\"\n", "2:3",
                "path:     s#1\n"
                "what:     value 1 of 1, of a plain item\n"
                "type:     string\n"
                "value:    a\"b\n"
                "spelled:  \"a\\\"b\"\n"
                "place:    a.cfg:2:3\n");
}

TEST(ExplainCommandTest, AnIntIsToldAsItIsRead) {
  checkExplains("i 1E5\n", "2:4",
                "path:     i#1\n"
                "what:     value 1 of 1, of a plain item\n"
                "type:     int\n"
                "value:    1\n"
                "spelled:  1E5\n"
                "place:    a.cfg:2:3\n");
}

TEST(ExplainCommandTest, AnArgumentIsAValueOfACall) {
  checkExplains("blur(4, yes)\n", "2:9",
                "path:     blur#2\n"
                "what:     value 2 of 2, of a call\n"
                "type:     bool\n"
                "value:    yes\n"
                "spelled:  yes\n"
                "place:    a.cfg:2:9\n");
}

TEST(ExplainCommandTest, BinaryDataIsToldByteByByte) {
  checkExplains("d 0x01FF00000000\n", "2:3",
                "path:     d#1\n"
                "what:     value 1 of 1, of a plain item\n"
                "type:     binary\n"
                "value:    2 bytes: 01 ff\n"
                "spelled:  0x01FF00000000\n"
                "place:    a.cfg:2:3\n");
}

TEST(ExplainCommandTest, AnEmptyTagIsNoValue) {
  checkExplains("#k <empty>\n", "2:4",
                "path:     #k#1\n"
                "what:     value 1 of 1, of a keyword\n"
                "type:     empty\n"
                "value:    no value\n"
                "spelled:  <empty>\n"
                "place:    a.cfg:2:4\n");
}

// --- Other words ---------------------------------------------------------------------------------

TEST(ExplainCommandTest, ANameTellsWhatTheItemHolds) {
  checkExplains("a 1 2\na 3 { x 1 }\n", "3:1",
                "path:     a[2]\n"
                "what:     name of a plain item with 1 value and a group\n"
                "place:    a.cfg:3:1\n");
}

TEST(ExplainCommandTest, ABraceOpensAGroup) {
  checkExplains("g { x 1 }\n", "2:3",
                "path:     g\nwhat:     opens the group of a plain item\nplace:    a.cfg:2:3\n");
}

TEST(ExplainCommandTest, ABraceClosesAGroup) {
  checkExplains("g { x 1 }\n", "2:9",
                "path:     g\nwhat:     closes the group of a plain item\nplace:    a.cfg:2:9\n");
}

TEST(ExplainCommandTest, AParenthesisOpensTheArguments) {
  checkExplains("f(1)\n", "2:2",
                "path:     f\nwhat:     opens the arguments of a call\nplace:    a.cfg:2:2\n");
}

TEST(ExplainCommandTest, AParenthesisClosesTheArguments) {
  checkExplains("f(1)\n", "2:4",
                "path:     f\nwhat:     closes the arguments of a call\nplace:    a.cfg:2:4\n");
}

TEST(ExplainCommandTest, ACommaStandsWithinItsItem) {
  checkExplains("g { a 1, 2 }\n", "2:8",
                "what:     comma between values\nwithin:   g/a\nplace:    a.cfg:2:8\n");
}

TEST(ExplainCommandTest, AnEqualsSignStandsWithinItsItem) {
  checkExplains("a = 1\n", "2:3",
                "what:     equals sign behind a name\nwithin:   a\nplace:    a.cfg:2:3\n");
}

TEST(ExplainCommandTest, ADroppedWordComesWithItsWarning) {
  checkExplains("g { a 1 ! b 2 }\n", "2:9",
                "what:     dropped word\n"
                "within:   g\n"
                "place:    a.cfg:2:9\n"
                "warning:  a.cfg:2:9: Unknown word type: '!' [unknown-word]\n");
}

TEST(ExplainCommandTest, AWordBehindTheEndOfTheDocumentTellsWhatEndedIt) {
  checkExplains("a 1 }\nb 2\n", "3:1",
                "what:     dropped word\n"
                "within:   no item\n"
                "place:    a.cfg:3:1\n"
                "warning:  a.cfg:2:5: '}' closes no group; the rest of the document is not read. "
                "[closes-no-group]\n");
}

// --- Between words -------------------------------------------------------------------------------

TEST(ExplainCommandTest, ACommentStandsWithinTheGroupAroundIt) {
  checkExplains("g { x 1 // why\n y 2 }\n", "2:12",
                "what:     comment\nwithin:   g\nplace:    a.cfg:2:9\n");
}

TEST(ExplainCommandTest, ACommentBetweenValuesStandsWithinTheItem) {
  checkExplains("x 1 // why\n 2\n", "2:6", "what:     comment\nwithin:   x\nplace:    a.cfg:2:5\n");
}

TEST(ExplainCommandTest, ABlankIsWhereItWasAskedFor) {
  checkExplains("g {   x 1 }\n", "2:5", "what:     blank\nwithin:   g\nplace:    a.cfg:2:5\n");
}

TEST(ExplainCommandTest, ALineEndIsABlank) {
  checkExplains("a 1\r\n", "2:4", "what:     blank\nwithin:   no item\nplace:    a.cfg:2:4\n");
}

TEST(ExplainCommandTest, AVersionLineIsTold) {
  checkExplains("", "1:5", "what:     version line\nwithin:   no item\nplace:    a.cfg:1:1\n");
}

TEST(ExplainCommandTest, TheEndOfTheFileIsWithinAGroupThatIsNotClosed) {
  checkExplains("g { x 1\n", "3:1",
                "what:     end of the file\nwithin:   g\nplace:    a.cfg:3:1\n");
}

// --- Includes ------------------------------------------------------------------------------------

TEST(ExplainIncludeTest, TheIncludesOfAFileAreTold) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "g {\n #include \"b.cfg\"\n}\n");
  folder.write("b.cfg", "#include \"c.cfg\"\n");
  folder.write("c.cfg", "\nc 7\n");
  EXPECT_EQ(runTool({"explain", "c.cfg:2:3", "a.cfg"}).output,
            "path:     g/c#1\n"
            "what:     value 1 of 1, of a plain item\n"
            "type:     int\n"
            "value:    7\n"
            "spelled:  7\n"
            "place:    c.cfg:2:3\n"
            "          included from b.cfg:1:1\n"
            "          included from a.cfg:2:2\n");
}

TEST(ExplainIncludeTest, AFileThatIsIncludedTwiceIsExplainedTwice) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "#include \"b.cfg\"\n#include \"b.cfg\"\n");
  folder.write("b.cfg", "b 7\n");
  EXPECT_EQ(runTool({"explain", "b.cfg:1:1", "a.cfg"}).output,
            "path:     b\n"
            "what:     name of a plain item with 1 value\n"
            "place:    b.cfg:1:1\n"
            "          included from a.cfg:1:1\n"
            "\n"
            "path:     b[2]\n"
            "what:     name of a plain item with 1 value\n"
            "place:    b.cfg:1:1\n"
            "          included from a.cfg:2:1\n");
}

TEST(ExplainIncludeTest, OfMoreThanTenIncludesTheOthersAreCounted) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  std::string text;
  for (int i = 0; i < 12; ++i)
    text += "#include \"b.cfg\"\n";
  folder.write("a.cfg", text);
  folder.write("b.cfg", "b 7\n");
  EXPECT_THAT(runTool({"explain", "b.cfg:1:1", "a.cfg"}).output,
              EndsWith("path:     b[10]\n"
                       "what:     name of a plain item with 1 value\n"
                       "place:    b.cfg:1:1\n"
                       "          included from a.cfg:10:1\n"
                       "\n"
                       "The file is included 2 more times.\n"));
}

TEST(ExplainIncludeTest, AnIncludeStandsWhereItsFileIsRead) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "g { #include \"b.cfg\" }\n");
  folder.write("b.cfg", "b 7\n");
  EXPECT_EQ(runTool({"explain", "a.cfg:1:15"}).output,
            "what:     include\nwithin:   g\nplace:    a.cfg:1:5\n");
}

TEST(ExplainIncludeTest, ACommentOfAFileWithoutWordsIsWithinTheIncludersItem) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "g { x 1 #include \"b.cfg\" } h 2\n");
  folder.write("b.cfg", "// nothing\n");
  EXPECT_EQ(runTool({"explain", "b.cfg:1:4", "a.cfg"}).output,
            "what:     comment\nwithin:   g\nplace:    b.cfg:1:1\n"
            "          included from a.cfg:1:9\n");
}

TEST(ExplainIncludeTest, AWordInTwoFilesHasTwoPlaces) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "a 1#include \"b.cfg\"\n");
  folder.write("b.cfg", "23 \n");
  EXPECT_THAT(runTool({"explain", "b.cfg:1:2", "a.cfg"}).output,
              EndsWith("value:    123\n"
                       "spelled:  123\n"
                       "place:    a.cfg:1:3\n"
                       "place:    b.cfg:1:1\n"
                       "          included from a.cfg:1:4\n"));
}

TEST(ExplainIncludeTest, AFileIsKnownByAnyPathThatLeadsToIt) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "#include \"b.cfg\"\n");
  folder.write("b.cfg", "b 7\n");
  EXPECT_THAT(runTool({"explain", folder.getPath("b.cfg") + ":1:1", "a.cfg"}).output,
              HasSubstr("path:     b\n"));
}

TEST(ExplainIncludeTest, ANameMayHoldColons) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a:1:b.cfg", "b 7\n");
  EXPECT_THAT(runTool({"explain", "a:1:b.cfg:1:1"}).output, HasSubstr("path:     b\n"));
}

// --- What is refused -----------------------------------------------------------------------------

TEST(ExplainRefusalTest, APlaceIsNeeded) {
  checkRefused({"explain"}, "A place is missing; quarry --help tells more.");
}

TEST(ExplainRefusalTest, APlaceNeedsALineAndAColumn) {
  checkRefused({"explain", "a.cfg:1"},
               "'a.cfg:1' is no place; write FILE:LINE:COLUMN, counted from 1.");
}

TEST(ExplainRefusalTest, LinesCountFromOne) {
  checkRefused({"explain", "a.cfg:0:1"},
               "'a.cfg:0:1' is no place; write FILE:LINE:COLUMN, counted from 1.");
}

TEST(ExplainRefusalTest, ANumberIsWrittenInDigits) {
  checkRefused({"explain", "a.cfg:+1:1"},
               "'a.cfg:+1:1' is no place; write FILE:LINE:COLUMN, counted from 1.");
}

TEST(ExplainRefusalTest, ALineBehindTheLastIsNoPlace) {
  checkRefused({"explain", "-:3:1"}, "'standard input' has no such line; it has 2 lines.");
}

TEST(ExplainRefusalTest, AColumnBehindTheLineEndIsNoPlace) {
  checkRefused({"explain", "-:1:5"}, "Line 1 has no such column; it has 3 columns.");
}

TEST(ExplainRefusalTest, AFileHasToBePartOfTheDocument) {
  checkRefused({"explain", "b.cfg:1:1", "-"}, "'b.cfg' is no file of '-'.");
}

TEST(ExplainRefusalTest, ADocumentThatCannotBeReadIsNotExplained) {
  EXPECT_EQ(runTool({"explain", "-:1:1"}, "#include \"nowhere.cfg\"\n"),
            (Result{2, "",
                    "quarry: warning: standard input:1:1: File 'nowhere.cfg' not found. "
                    "[file-not-found]\n"
                    "quarry: error: Cannot read 'standard input'.\n"}));
}

TEST(ExplainCommandTest, BytesAreEscapedOnATerminal) {
  EXPECT_THAT(runOnTerminal({"explain", "--color=never", "-:1:3"}, "a \"\033\"\n").output,
              HasSubstr("value:    \\x1B\n"));
}

}  // namespace ToolTest
