#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

#include <algorithm>

namespace ToolTest {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

Result check(const std::string& text) { return runTool({"check", "-"}, text); }

/// A document whose only finding is below `line`, with the mark `mark`.
void checkExcerpt(const std::string& line, const std::string& shown, const std::string& mark) {
  EXPECT_THAT(check(line).output, EndsWith("]\n" + shown + "\n" + mark + "\n"));
}

std::string repeat(const std::string& text, unsigned long count) {
  std::string all;
  for (; count > 0; --count)
    all += text;
  return all;
}

unsigned long countLines(const std::string& text) {
  return static_cast<unsigned long>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

// --- Findings ------------------------------------------------------------------------------------

TEST(CheckCommandTest, ACleanDocumentGivesNoOutput) {
  EXPECT_EQ(check("#SerialVersion 1.1\na 1 // fine\n"), (Result{0, "", ""}));
}

TEST(CheckCommandTest, AWarningHasItsPlaceAndRuleAndAMarkBelowItsLine) {
  EXPECT_EQ(check("a 1\nb other 2\n"),
            (Result{1,
                    "standard input:2:3: warning: item 'other' has no value. [has-no-value]\n"
                    "b other 2\n"
                    "  ^~~~~\n",
                    "1 warning in 1 file\n"}));
}

TEST(CheckCommandTest, AGroupThatIsNotClosedIsAFinding) {
  EXPECT_EQ(check("g { x 1\n").output,
            "standard input:1:3: warning: The group is not closed. [group-not-closed]\n"
            "g { x 1\n"
            "  ^\n");
}

TEST(CheckCommandTest, ABraceThatClosesNoGroupIsAFinding) {
  EXPECT_EQ(check("a 1 }\nb ,\n").output,
            "standard input:1:5: warning: '}' closes no group; the rest of the document is not "
            "read. [closes-no-group]\n"
            "a 1 }\n"
            "    ^\n");
}

TEST(CheckCommandTest, CommentsDoNotMovePlaces) {
  EXPECT_THAT(check("// one\n// two\n,\n").output, HasSubstr("standard input:3:1: warning:"));
}

TEST(CheckCommandTest, CarriageReturnsAreNotShown) {
  EXPECT_EQ(check("a 1\r\nb ,\r\nc 1\r\n").output,
            "standard input:2:3: warning: item ',' wrongly placed. [wrongly-placed]\n"
            "b ,\n"
            "  ^\n");
}

TEST(CheckCommandTest, AByteOrderMarkHasNoColumn) {
  EXPECT_THAT(check("\xEF\xBB\xBF a 1\n").output,
              HasSubstr("standard input:1:1: warning: Unknown word type: '\xEF\xBB\xBF'"));
}

TEST(CheckCommandTest, AByteOrderMarkIsAFindingOfItsOwn) {
  EXPECT_THAT(check("\xEF\xBB\xBF// one\na 1\n").output,
              StartsWith("standard input:1:1: warning: The file begins with a byte order mark "
                         "(EF BB BF), which is taken for part of a word. [byte-order-mark]\n"));
}

TEST(CheckCommandTest, AByteOrderMarkOfAFileThatIsIncludedTwiceIsNotedOnce) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("b.cfg", "\xEF\xBB\xBF b 1\n");
  folder.write("a.cfg", "#include \"b.cfg\"\n#include \"b.cfg\"\n");
  EXPECT_EQ(runTool({"check", "a.cfg"}).messages, "3 warnings in 1 file\n");
}

TEST(CheckCommandTest, StandardInputCanHaveAName) {
  EXPECT_THAT(runTool({"check", "--stdin-filename", "a.cfg", "-"}, ",").output,
              HasSubstr("a.cfg:1:1: warning:"));
}

TEST(CheckCommandTest, SeveralFilesAreCheckedInTurn) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", ",");
  folder.write("b.cfg", "b 1");
  folder.write("c.cfg", "c }");
  EXPECT_EQ(runTool({"check", "a.cfg", "b.cfg", "c.cfg"}),
            (Result{1,
                    "a.cfg:1:1: warning: item ',' wrongly placed. [wrongly-placed]\n"
                    ",\n"
                    "^\n"
                    "c.cfg:1:3: warning: '}' closes no group; the rest of the document is not "
                    "read. [closes-no-group]\n"
                    "c }\n"
                    "  ^\n",
                    "2 warnings in 3 files\n"}));
}

TEST(CheckCommandTest, IncludesThreeDeepAreNoted) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "a 1\n  #include \"b.cfg\"\n");
  folder.write("b.cfg", "#include \"c.cfg\"\n");
  folder.write("c.cfg", "\n\n#include \"d.cfg\"\n");
  folder.write("d.cfg", "d = = 1\n");
  EXPECT_EQ(runTool({"check", "a.cfg"}).output,
            "d.cfg:1:5: warning: item '=' wrongly placed. [wrongly-placed]\n"
            "d = = 1\n"
            "    ^\n"
            "c.cfg:3:1: note: included from here\n"
            "b.cfg:1:1: note: included from here\n"
            "a.cfg:2:3: note: included from here\n"
            "d.cfg:1:7: warning: Value without item: 1 [value-without-item]\n"
            "d = = 1\n"
            "      ^\n"
            "c.cfg:3:1: note: included from here\n"
            "b.cfg:1:1: note: included from here\n"
            "a.cfg:2:3: note: included from here\n");
}

// --- What cannot be read -------------------------------------------------------------------------

TEST(CheckCommandTest, AMissingFileIsAnError) {
  EXPECT_EQ(runTool({"check", "nowhere.cfg"}),
            (Result{2, "nowhere.cfg: error: File 'nowhere.cfg' not found. [file-not-found]\n",
                    "1 error in 1 file\n"}));
}

TEST(CheckCommandTest, AnUnreadableDocumentDoesNotKeepOthersFromBeingChecked) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", ",");
  const Result result = runTool({"check", "nowhere.cfg", "a.cfg"});
  EXPECT_THAT(result.output, HasSubstr("a.cfg:1:1: warning:"));
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.messages, "1 error and 1 warning in 2 files\n");
}

TEST(CheckCommandTest, AMissingIncludeIsAnErrorAtTheInclude) {
  EXPECT_EQ(check("a 1\nb 2 #include \"no.cfg\" c 3\n"),
            (Result{2,
                    "standard input:2:5: error: File 'no.cfg' not found. [file-not-found]\n"
                    "b 2 #include \"no.cfg\" c 3\n"
                    "    ^~~~~~~~~~~~~~~~~\n",
                    "1 error in 1 file\n"}));
}

TEST(CheckCommandTest, AnUnclosedIncludeIsMarkedToTheEndOfItsLine) {
  EXPECT_EQ(check("#include \"a\nb 1\n").output,
            "standard input:1:1: error: An include has no closing quote. [unclosed-include]\n"
            "#include \"a\n"
            "^~~~~~~~~~~\n");
}

TEST(CheckCommandTest, AVersionOfZeroIsAnError) {
  EXPECT_EQ(check("#SerialVersion 0\na 1\n"),
            (Result{2,
                    "standard input:1:1: error: The version that the file declares is not "
                    "positive. [unusable-version]\n"
                    "#SerialVersion 0\n"
                    "^~~~~~~~~~~~~~~~\n",
                    "1 error in 1 file\n"}));
}

TEST(CheckCommandTest, AnIncludeCycleIsAnError) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "#include \"a.cfg\"\n");
  EXPECT_EQ(runTool({"check", "a.cfg"}),
            (Result{2,
                    "a.cfg:1:1: error: File 'a.cfg' includes itself: 'a.cfg' > 'a.cfg'. "
                    "[include-cycle]\n"
                    "#include \"a.cfg\"\n"
                    "^~~~~~~~~~~~~~~~\n",
                    "1 error in 1 file\n"}));
}

TEST(CheckCommandTest, GroupsMayNestTenThousandDeep) {
  EXPECT_EQ(check(repeat("g { ", 10000) + repeat("} ", 10000)).status, 0);
}

TEST(CheckCommandTest, ADeeperGroupIsAnError) {
  const Result result = check(repeat("g {\n", 10001) + repeat("}\n", 10001));
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.output,
              HasSubstr("standard input:10001:3: error: File 'standard input' exceeds the limit "
                        "nestingDepth (10000). [limit-exceeded]\n"));
}

TEST(CheckCommandTest, LimitsCanBeLifted) {
  const std::string text = repeat("g {\n", 10001) + repeat("}\n", 10001);
  EXPECT_EQ(runTool({"check", "--no-limits", "-"}, text), (Result{0, "", ""}));
}

TEST(CheckCommandTest, WarningsOfADocumentThatExceedsALimitAreWarnings) {
  const Result result = check(",\n" + repeat("g {\n", 10001) + repeat("}\n", 10001));
  EXPECT_EQ(result.messages, "1 error and 1 warning in 1 file\n");
}

// --- The line and its mark -----------------------------------------------------------------------

TEST(CheckExcerptTest, TabsBeforeTheMarkStay) { checkExcerpt("\ta\t,\n", "\ta\t,", "\t \t^"); }

TEST(CheckExcerptTest, ALetterOfSeveralBytesTakesOneColumn) {
  checkExcerpt("a \"\xC3\xBC\" = 1 b 2\n", "a \"\xC3\xBC\" = 1 b 2", "        ^");
}

TEST(CheckExcerptTest, EastAsianLettersTakeTwoColumns) {
  checkExcerpt("a \"\xE6\x97\xA5\" ,,\n", "a \"\xE6\x97\xA5\" ,,", "        ^");
}

TEST(CheckExcerptTest, CombiningMarksTakeNoColumn) {
  checkExcerpt("a \"u\xCC\x88\" ,,\n", "a \"u\xCC\x88\" ,,", "       ^");
}

TEST(CheckExcerptTest, TheMarkIsAsWideAsTheWord) {
  checkExcerpt("a 1 \xE6\x97\xA5\xE6\x97\xA5\n", "a 1 \xE6\x97\xA5\xE6\x97\xA5", "    ^~~~");
}

TEST(CheckExcerptTest, ALineOf160BytesIsShownWhole) {
  const std::string line = ", s \"" + std::string(154, 'x') + "\"";
  checkExcerpt(line + "\n", line, "^");
}

TEST(CheckExcerptTest, ALongerLineIsCutBehindThePlace) {
  const std::string line = ", s \"" + std::string(155, 'x') + "\"";
  checkExcerpt(line + "\n", line.substr(0, 160) + "...", "^");
}

TEST(CheckExcerptTest, ALongLineIsCutBeforeThePlaceToo) {
  const std::string line = "s \"" + std::string(500, 'x') + "\" ,, t \"" + std::string(500, 'y');
  checkExcerpt(line + "\"\n",
               "..." + std::string(57, 'x') + "\" ,, t \"" + std::string(95, 'y') + "...",
               std::string(63, ' ') + "^");
}

TEST(CheckExcerptTest, ALineIsNotCutWithinALetter) {
  const std::string line = "s \"" + repeat("\xC3\xBC", 300) + "\" ,,";
  checkExcerpt(line + "\n", "..." + repeat("\xC3\xBC", 28) + "\" ,,", std::string(34, ' ') + "^");
}

TEST(CheckExcerptTest, AnOverlongWordIsMarkedAsFarAsItIsShown) {
  const std::string word = "!" + std::string(999, 'x');
  checkExcerpt(word + "\n", word.substr(0, 160) + "...", "^" + std::string(159, '~'));
}

// --- Options -------------------------------------------------------------------------------------

TEST(CheckOptionsTest, AsManyWarningsAsAreAllowedAreFine) {
  EXPECT_EQ(runTool({"check", "--max-warnings", "2", "-"}, ", ,").status, 0);
}

TEST(CheckOptionsTest, OneWarningMoreThanAllowedIsAFinding) {
  EXPECT_EQ(runTool({"check", "--max-warnings", "2", "-"}, ", , ,").status, 1);
}

TEST(CheckOptionsTest, ErrorsAreNeverAllowed) {
  EXPECT_EQ(runTool({"check", "--max-warnings", "2", "nowhere.cfg"}).status, 2);
}

TEST(CheckOptionsTest, TheNumberOfWarningsIsANumber) {
  EXPECT_EQ(runTool({"check", "--max-warnings", "-1", "-"}),
            (Result{2, "",
                    "quarry: error: --max-warnings: '-1' is no whole number; quarry --help tells "
                    "more.\n"}));
}

TEST(CheckOptionsTest, AFileIsNeeded) {
  EXPECT_EQ(runTool({"check"}),
            (Result{2, "", "quarry: error: FILE is required; quarry --help tells more.\n"}));
}

TEST(CheckOptionsTest, FindingsBeyondTheLimitAreOnlyCounted) {
  const Result result = runTool({"check", "--limit", "2", "-"}, ",\n,\n,\n");
  EXPECT_EQ(countLines(result.output), 2 * 3);
  EXPECT_EQ(result.messages, "3 warnings in 1 file\n");
}

TEST(CheckOptionsTest, QuietLeavesTheExitStatus) {
  EXPECT_EQ(runTool({"check", "-q", "-"}, ","), (Result{1, "", ""}));
}

TEST(CheckOptionsTest, SearchPathsAreLookedIn) {
  const TemporaryFolder folder;
  folder.write("parts/b.cfg", ",");
  const Result result =
      runTool({"check", "-I", folder.getPath("parts"), "-"}, "#include \"b.cfg\"");
  EXPECT_THAT(result.output, HasSubstr(folder.getPath("parts/b.cfg") + ":1:1: warning:"));
}

TEST(CheckOptionsTest, TenThousandWarningsAreAllShown) {
  const Result result = check(repeat(",\n", 10000));
  EXPECT_EQ(countLines(result.output), 10000 * 3);
  EXPECT_EQ(result.messages, "10000 warnings in 1 file\n");
}

TEST(CheckOptionsTest, ABrokenPipeEndsTheCheckWithoutAMessage) {
  EXPECT_EQ(runIntoBrokenPipe({"check", "-"}, ","), (Result{2, "", ""}));
}

// --- Rewriting -----------------------------------------------------------------------------------

TEST(CheckRewriteTest, AHazardIsAFindingAtItsValue) {
  EXPECT_EQ(
      runTool({"check", "--rewrite", "-"}, "g { a <empty> 1 \"C:\\\"\n2 }\n").output,
      "standard input:1:17: warning: A rewrite changes 'g/a#2'. The string ends in a "
      "backslash, behind which the closing quote counts as escaped; other words follow on its "
      "line. [open-quote]\n"
      "g { a <empty> 1 \"C:\\\"\n"
      "                ^~~~~\n");
}

TEST(CheckRewriteTest, HazardsAreOnlyFoundWhereThatIsAskedFor) {
  EXPECT_EQ(check("a \"C:\\\"\n2\n"), (Result{0, "", ""}));
}

TEST(CheckRewriteTest, HazardsStandBehindTheOtherFindingsWhichAreToldOnce) {
  EXPECT_EQ(runTool({"check", "--rewrite", "-"}, "a \"C:\\\"\n2 !\n").messages,
            "2 warnings in 1 file\n");
}

TEST(CheckRewriteTest, EachOfManyHazardsHasItsPlace) {
  const std::string output =
      runTool({"check", "--rewrite", "-"}, repeat("a \"C:\\\"\n2\n", 1000) + "g { b \"\\\"\n3 }")
          .output;
  for (int i = 0; i < 1000; ++i)
    EXPECT_THAT(output, HasSubstr("standard input:" + std::to_string(2 * i + 1) + ":3: warning:"));
  EXPECT_THAT(output, HasSubstr("standard input:2001:7: warning: A rewrite changes 'g/b#1'."));
}

TEST(CheckRewriteTest, ADocumentThatSurvivesIsFine) {
  EXPECT_EQ(runTool({"check", "--rewrite", "-"}, "a \"C:\\\"\nb { c(1, yes) }\n"),
            (Result{0, "", ""}));
}

TEST(CheckRewriteTest, AnUnreadableDocumentHasNoHazards) {
  EXPECT_EQ(runTool({"check", "--rewrite", "-"}, "a \"C:\\\"\n2\n#include \"x").messages,
            "1 error in 1 file\n");
}

TEST(CheckRewriteTest, AHazardInAnIncludedFileIsNotedWithItsInclude) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "b 1\n#include \"b.cfg\"\n");
  folder.write("b.cfg", "b \"C:\\\"\n2\n");
  const std::string output = runTool({"check", "--rewrite", "a.cfg"}).output;
  EXPECT_THAT(output, StartsWith("b.cfg:1:3: warning: A rewrite changes 'b[2]#1'. "));
  EXPECT_THAT(output, EndsWith("a.cfg:2:1: note: included from here\n"));
}

// --- Terminals -----------------------------------------------------------------------------------

TEST(CheckTerminalTest, ATerminalGetsColors) {
  EXPECT_EQ(runOnTerminal({"check", "-"}, "a ,").output,
            "\033[1mstandard input:1:3:\033[0m \033[1;35mwarning:\033[0m item ',' wrongly placed. "
            "\033[2m[wrongly-placed]\033[0m\n"
            "a ,\n"
            "  \033[32m^\033[0m\n");
}

TEST(CheckTerminalTest, BytesOfTheDocumentAreEscapedAndTheMarkStandsBelowThem) {
  EXPECT_EQ(runOnTerminal({"check", "--color=never", "-"}, "a \"\033\" \x01\n").output,
            "standard input:1:7: warning: Unknown word type: '\\x01' [unknown-word]\n"
            "a \"\\x1B\" \\x01\n"
            "         ^~~~\n");
}

TEST(CheckTerminalTest, ALineEndInANameDoesNotEndTheLineOfAFinding) {
  EXPECT_THAT(check("#include \"a\nb.cfg:1:1: error: no\"").output,
              HasSubstr("error: File 'a\\nb.cfg:1:1: error: no' not found. [file-not-found]\n"));
}

TEST(CheckTerminalTest, LongWorkShowsALineThatIsErasedInTheEnd) {
  const Result result = runWithSlowInput({"check", "-"}, "a 1", 1300);
  EXPECT_THAT(result.messages, HasSubstr("\r\033[KChecking 1 of 1: standard input (1 s)"));
  EXPECT_THAT(result.messages, EndsWith(" s)\r\033[K"));
}

TEST(CheckTerminalTest, ShortWorkShowsNoLine) {
  EXPECT_EQ(runWithMessagesOnTerminal({"check", "-"}, "a 1"), (Result{0, "", ""}));
}

// --- Compressed files ----------------------------------------------------------------------------

TEST(CheckCompressedTest, AFileWithMarkersIsFine) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("a.cfg", "a 1$\nb 2$\n");
  EXPECT_EQ(runTool({"check", path}), (Result{0, "", ""}));
}

TEST(CheckCompressedTest, AFileWithoutMarkersIsAFindingAtTheFirstByteThatIsLost) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("a.cfg", "a 12\nb 22\n");
  EXPECT_EQ(runTool({"check", "a.cfg"}),
            (Result{1,
                    "a.cfg:1:4: warning: The compressed file lacks a marker ('$') before its line "
                    "feeds; reading takes the last two bytes of each line. "
                    "[compressed-without-markers]\n"
                    "a 12\n"
                    "   ^\n",
                    "1 warning in 1 file\n"}));
}

TEST(CheckCompressedTest, StandardInputWithoutMarkersIsAFindingToo) {
  const TemporaryFolder folder;
  folder.writeCompressed("a.cfg", "a 12\nb 22\n");
  EXPECT_THAT(runTool({"check", "--stdin-filename", "a.cfg", "-"}, folder.read("a.cfg")).output,
              StartsWith("a.cfg:1:4: warning: The compressed file lacks a marker ('$')"));
}

TEST(CheckCompressedTest, DamagedStandardInputCannotBeRead) {
  const TemporaryFolder folder;
  folder.writeCompressed("a.cfg", "a 12$\nb 22$\n");
  const std::string packed = folder.read("a.cfg");
  const Result result = runTool({"check", "-"}, packed.substr(0, packed.size() - 9));
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.messages, HasSubstr("standard input"));
}

TEST(CheckCompressedTest, OtherMarkersJoinLinesWhereTheFileHasOnesThatKeepThem) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("a.cfg", "a 1 -\n2$\n");
  EXPECT_EQ(runTool({"check", path}), (Result{0, "", ""}));
}

TEST(CheckCompressedTest, BackslashesJoinLinesInAnyFile) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("a.cfg", "a 1\\\n2\\\n");
  EXPECT_EQ(runTool({"check", path}), (Result{0, "", ""}));
}

TEST(CheckCompressedTest, ALineWithoutAMarkerAmongJoinedOnesIsAFinding) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("a.cfg", "a 1\\\n2 \nb 22\\\n");
  EXPECT_THAT(runTool({"check", "a.cfg"}).output, StartsWith("a.cfg:2:2: warning:"));
}

TEST(CheckCompressedTest, ALastLineWithoutALineFeedLosesTwoBytes) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("a.cfg", "a 1$\nb 234");
  EXPECT_THAT(runTool({"check", "a.cfg"}).output, StartsWith("a.cfg:2:4: warning:"));
}

TEST(CheckCompressedTest, AnOverlongLineLosesBytesWithinIt) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("a.cfg", "a 1$\nb \"" + std::string(9000, 'x') + "\"$\n");
  EXPECT_THAT(runTool({"check", "a.cfg"}).output, StartsWith("a.cfg:2:8189: warning:"));
}

TEST(CheckCompressedTest, AFileThatCannotBeReadForItIsAFindingToo) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("a.cfg", "a 1\n\nb 2\n");
  const Result result = runTool({"check", "a.cfg"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.output, HasSubstr("a.cfg:1:3: warning: The compressed file lacks"));
  EXPECT_THAT(result.output,
              HasSubstr("a.cfg: error: A line of a compressed file has less than two bytes."));
}

TEST(CheckCompressedTest, AnIncludedFileIsNotedOnceWithItsInclude) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.writeCompressed("b.cfg", "b 22 \n");
  folder.write("a.cfg", "#include \"b.cfg\"\n#include \"b.cfg\"\n");
  EXPECT_EQ(runTool({"check", "a.cfg"}).output,
            "b.cfg:1:5: warning: The compressed file lacks a marker ('$') before its line feeds; "
            "reading takes the last two bytes of each line. [compressed-without-markers]\n"
            "b 22 \n"
            "    ^\n"
            "a.cfg:1:1: note: included from here\n");
}

TEST(CheckCompressedTest, ACompressedFileThatOnlyASearchPathFindsIsReadAsItIs) {
  const TemporaryFolder folder;
  folder.writeCompressed("parts/b.cfg", "b 22\n");
  EXPECT_THAT(runTool({"check", "-I", folder.getPath("parts"), "-"}, "#include \"b.cfg\"").output,
              Not(HasSubstr("compressed-without-markers")));
}

}  // namespace ToolTest
