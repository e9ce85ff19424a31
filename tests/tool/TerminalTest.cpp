#include <gtest/gtest.h>

#include "ToolProcess.h"

namespace ToolTest {

namespace {

/// What `expand` shows of `bytes` on a terminal.
std::string show(const std::string& bytes, const Environment& environment = {}) {
  return runOnTerminal({"expand", "-"}, bytes, environment).output;
}

const Arguments TREE = {"tree", "-"};
constexpr char PLAIN_TREE[] = "a: int 1\n";
constexpr char COLORED_TREE[] = "\033[1ma\033[0m: \033[2mint\033[0m \033[36m1\033[0m\n";

}  // namespace

TEST(TerminalTest, ATerminalGetsColors) {
  EXPECT_EQ(runOnTerminal(TREE, "a 1"), (Result{0, COLORED_TREE, ""}));
}

TEST(TerminalTest, NoColorTurnsColorsOff) {
  EXPECT_EQ(runOnTerminal(TREE, "a 1", {{"NO_COLOR", "1"}}).output, PLAIN_TREE);
}

TEST(TerminalTest, AnEmptyNoColorCountsAsUnset) {
  EXPECT_EQ(runOnTerminal(TREE, "a 1", {{"NO_COLOR", ""}}).output, COLORED_TREE);
}

TEST(TerminalTest, ADumbTerminalGetsNoColors) {
  EXPECT_EQ(runOnTerminal(TREE, "a 1", {{"TERM", "dumb"}}).output, PLAIN_TREE);
}

TEST(TerminalTest, TheOptionWinsOverNoColor) {
  const Arguments arguments = {"tree", "--color=always", "-"};
  EXPECT_EQ(runOnTerminal(arguments, "a 1", {{"NO_COLOR", "1"}}).output, COLORED_TREE);
}

TEST(TerminalTest, ColorsCanBeRefused) {
  EXPECT_EQ(runOnTerminal({"tree", "--color=never", "-"}, "a 1").output, PLAIN_TREE);
}

TEST(TerminalTest, WithoutColorsADocumentIsEscapedAllTheSame) {
  EXPECT_EQ(runOnTerminal({"tree", "--color=never", "-"}, "a \"\033[2J\"").output,
            "a: string \"\\x1B[2J\"\n");
}

TEST(TerminalTest, ControlBytesAreEscaped) {
  EXPECT_EQ(show("a\x01\x07\b\r\x7F"), "a\\x01\\x07\\x08\\r\\x7F");
}

TEST(TerminalTest, LinesAndTabsOfATextStay) { EXPECT_EQ(show("a\t1\nb\n"), "a\t1\nb\n"); }

TEST(TerminalTest, ATabWithinAWordIsEscaped) {
  EXPECT_EQ(runOnTerminal({"tree", "--color=never", "-"}, "a \"x\ty\"").output,
            "a: string \"x\\ty\"\n");
}

TEST(TerminalTest, LettersOfUtf8Stay) {
  EXPECT_EQ(show("\xC3\xBC \xE6\x97\xA5 \xF0\x9F\x98\x80"),
            "\xC3\xBC \xE6\x97\xA5 \xF0\x9F\x98\x80");
}

TEST(TerminalTest, WithoutUtf8EveryHighByteIsEscaped) {
  EXPECT_EQ(show("\xC3\xBC", {{"LC_ALL", "C"}}), "\\xC3\\xBC");
}

TEST(TerminalTest, BytesThatAreNoUtf8AreEscaped) {
  EXPECT_EQ(show("\x9B[2J \xC3( \xE6\x97"), "\\x9B[2J \\xC3( \\xE6\\x97");
}

TEST(TerminalTest, OverlongSpellingsAreEscaped) {
  EXPECT_EQ(show("\xC0\x9B \xE0\x80\x9B \xF0\x80\x80\x9B"),
            "\\xC0\\x9B \\xE0\\x80\\x9B \\xF0\\x80\\x80\\x9B");
}

TEST(TerminalTest, SurrogatesAndCodesPastTheLastAreEscaped) {
  EXPECT_EQ(show("\xED\xA0\x80 \xF4\x90\x80\x80"), "\\xED\\xA0\\x80 \\xF4\\x90\\x80\\x80");
}

TEST(TerminalTest, C1ControlsInUtf8AreEscaped) { EXPECT_EQ(show("\xC2\x9B[2J"), "\\xC2\\x9B[2J"); }

TEST(TerminalTest, MarksThatTurnTheDirectionOfWritingAreEscaped) {
  EXPECT_EQ(show("\xE2\x80\xAE \xE2\x81\xA6"), "\\xE2\\x80\\xAE \\xE2\\x81\\xA6");
}

TEST(TerminalTest, ARewrittenDocumentIsEscaped) {
  EXPECT_EQ(runOnTerminal({"rewrite", "-"}, "a \"\033\"").output,
            "#SerialVersion 1.1\n\na \"\\x1B\"");
}

TEST(TerminalTest, MessagesAreEscaped) {
  EXPECT_EQ(runWithMessagesOnTerminal({"tree", "-"}, "a 1 \033]0;x\a"),
            (Result{1, "a: int 1\n",
                    "quarry: warning: standard input:1:5: Unknown word type: "
                    "'\\x1B]0;x\\x07' [unknown-word]\n"}));
}

TEST(TerminalTest, AMessageIsOneLine) {
  EXPECT_EQ(runWithMessagesOnTerminal({"expand", "a\nb"}, "").messages,
            "quarry: warning: File 'a\\nb' not found. [file-not-found]\nquarry: error: Cannot read "
            "'a\\nb'.\n");
}

}  // namespace ToolTest
