#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/Sanitized.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using testing::HasSubstr;
using TestSupport::TemporaryFolder;

namespace {

void checkRefused(const Arguments& arguments, const std::string& message) {
  EXPECT_EQ(runTool(arguments), (Result{2, "", "quarry: error: " + message + "\n"}));
}

void checkHelp(const Arguments& arguments, const std::string& example) {
  const Result result = runTool(arguments);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "");
  EXPECT_THAT(result.output, HasSubstr(example));
}

}  // namespace

TEST(CommandLineTest, TheVersionIsTold) {
  EXPECT_EQ(runTool({"--version"}), (Result{0, "quarry 1.0.0\n", ""}));
}

TEST(CommandLineTest, HelpTellsTheExitStatuses) { checkHelp({"--help"}, "Exit status: 0 fine"); }

TEST(CommandLineTest, HelpOfTreeHasAnExample) {
  checkHelp({"tree", "--help"}, "quarry tree --color=always project.cfg | less -R");
}

TEST(CommandLineTest, HelpOfWordsHasAnExample) {
  checkHelp({"words", "--help"}, "echo 'size 1920 1080' | quarry words -");
}

TEST(CommandLineTest, HelpOfExpandHasAnExample) {
  checkHelp({"expand", "--help"}, "quarry expand -I shared -I /usr/share/studio project.cfg");
}

TEST(CommandLineTest, HelpOfRewriteHasAnExample) {
  checkHelp({"rewrite", "--help"}, "quarry rewrite project.cfg | diff -u project.cfg -");
}

TEST(CommandLineTest, HelpOfEncodeHasAnExample) {
  checkHelp({"encode", "--help"}, "quarry encode project.cfg -o project.qdb");
}

TEST(CommandLineTest, HelpOfDecodeTellsHowNumbersAreWritten) {
  checkHelp({"decode", "--help"}, "Numbers are written in digits");
}

TEST(CommandLineTest, HelpOfFindTellsItsExitStatuses) {
  checkHelp({"find", "--help"}, "Exit status: 0 found, 1 nothing found");
}

TEST(CommandLineTest, HelpOfCheckHasAnExample) {
  checkHelp({"check", "--help"}, "quarry check --format=sarif project.cfg >project.sarif");
}

TEST(CommandLineTest, HelpOfExplainHasAnExample) {
  checkHelp({"explain", "--help"}, "quarry explain layers.cfg:3:1 project.cfg");
}

TEST(CommandLineTest, HelpOfFormatHasAnExample) {
  checkHelp({"format", "--help"}, "quarry format --check *.cfg || echo some are not formatted");
}

TEST(CommandLineTest, HelpOfSetHasAnExample) {
  checkHelp({"set", "--help"}, "quarry set project.cfg 'scene/layer[2]/position#1' -3.5");
}

TEST(CommandLineTest, HelpOfAddHasAnExample) {
  checkHelp({"add", "--help"}, "quarry add --call project.cfg scene/blur 4 yes");
}

TEST(CommandLineTest, HelpOfRemoveTellsItsExitStatuses) {
  checkHelp({"remove", "--help"}, "Exit status: 0 removed, 1 there is no such item");
}

TEST(CommandLineTest, HelpOfRenameHasAnExample) {
  checkHelp({"rename", "--help"}, "quarry rename project.cfg camera/fov angle");
}

TEST(CommandLineTest, HelpListsTheCommandsThatEditTogether) {
  checkHelp({"--help"}, "\nEdit:\n  set ");
}

TEST(CommandLineTest, HelpOfListHasAnExample) {
  checkHelp({"list", "--help"}, "quarry list --null project.cfg | xargs -0 -n 1");
}

TEST(CommandLineTest, HelpOfGetTellsItsExitStatuses) {
  checkHelp({"get", "--help"}, "Exit status: 0 found, or a default was given");
}

TEST(CommandLineTest, HelpOfDiffHasAnExample) {
  checkHelp({"diff", "--help"}, "git show HEAD:project.cfg | quarry diff - project.cfg");
}

TEST(CommandLineTest, HelpOfConvertHasAnExample) {
  checkHelp({"convert", "--help"}, "quarry convert --to object project.cfg | jq .title");
}

TEST(CommandLineTest, HelpOfPackHasAnExample) {
  checkHelp({"pack", "--help"}, "quarry pack project.cfg -o project.cfg.gz");
}

TEST(CommandLineTest, HelpOfUnpackHasAnExample) {
  checkHelp({"unpack", "--help"}, "quarry unpack project.cfg.gz | less");
}

TEST(CommandLineTest, ACommandIsNeeded) {
  checkRefused({}, "A command is missing; quarry --help tells more.");
}

TEST(CommandLineTest, AnUnknownCommandIsNamed) {
  checkRefused({"burn"},
               "The following argument was not expected: burn; quarry --help tells more.");
}

TEST(CommandLineTest, AFileIsNeeded) {
  checkRefused({"tree"}, "FILE is required; quarry --help tells more.");
}

TEST(CommandLineTest, AnUnknownChoiceOfColorsIsRefused) {
  checkRefused({"tree", "--color=pink", "-"},
               "--color: pink not in {auto,always,never}; quarry --help tells more.");
}

TEST(CommandLineTest, ANegativeDepthIsRefused) {
  checkRefused({"tree", "--depth=-1", "-"},
               "--depth: '-1' is no whole number; quarry --help tells more.");
}

TEST(CommandLineTest, AMissingFileCannotBeRead) {
  checkRefused({"tree", "-q", "/nowhere.cfg"}, "Cannot read '/nowhere.cfg'.");
}

TEST(CommandLineTest, AFolderIsNoDocument) {
  const TemporaryFolder folder;
  checkRefused({"tree", "-q", folder.getPath()}, "Cannot read '" + folder.getPath() + "'.");
}

TEST(CommandLineTest, AVersionOfZeroCannotBeRead) {
  EXPECT_EQ(runTool({"rewrite", "-"}, "#SerialVersion 0\na 1"),
            (Result{2, "",
                    "quarry: warning: standard input:1:1: The version that the file declares is "
                    "not positive. [unusable-version]\n"
                    "quarry: error: Cannot read 'standard input'.\n"}));
}

TEST(CommandLineTest, QuietKeepsTheExitStatus) {
  EXPECT_EQ(runTool({"tree", "--quiet", "-"}, ", a 1,"), (Result{1, "a: int 1\n", ""}));
}

TEST(CommandLineTest, ClosedStandardInputCannotBeRead) {
  EXPECT_EQ(runWithoutInput({"tree", "-"}),
            (Result{2, "", "quarry: error: Cannot read 'standard input': Bad file descriptor.\n"}));
}

#ifndef QUARRY_TEST_SANITIZED  // the sanitizers check addresses by means of pipes

TEST(CommandLineTest, ReadingStandardInputNeedsNoFileBesideIt) {
  EXPECT_EQ(runWithOneFile({"tree", "-"}, "a 1"), (Result{0, "a: int 1\n", ""}));
}

#endif

TEST(CommandLineTest, AFullDiskUnderStandardOutputIsNoticed) {
  EXPECT_EQ(runIntoFullDevice({"expand", "-"}, "a 1"),
            (Result{2, "",
                    "quarry: error: Cannot write to standard output: No space left on device.\n"}));
}

TEST(CommandLineTest, AFullDiskUnderHelpIsNoticed) {
  EXPECT_EQ(runIntoFullDevice({"--help"}, "").status, 2);
}

TEST(CommandLineTest, ABrokenPipeEndsTheToolWithoutAMessage) {
  EXPECT_EQ(runIntoBrokenPipe({"words", "-"}, "a 1"), (Result{2, "", ""}));
}

TEST(CommandLineTest, WarningsBeforeABrokenPipeAreShown) {
  EXPECT_EQ(runIntoBrokenPipe({"tree", "-"}, ", a 1"),
            (Result{2, "",
                    "quarry: warning: standard input:1:1: item ',' wrongly placed. "
                    "[wrongly-placed]\n"}));
}

TEST(CommandLineTest, ABrokenPipeUnderHelpGivesNoMessage) {
  EXPECT_EQ(runIntoBrokenPipe({"--help"}, ""), (Result{2, "", ""}));
}

TEST(CommandLineTest, ClosedStandardOutputIsNoticed) {
  EXPECT_EQ(
      runIntoClosedOutput({"rewrite", "-"}, "a 1"),
      (Result{2, "", "quarry: error: Cannot write to standard output: Bad file descriptor.\n"}));
}

}  // namespace ToolTest
