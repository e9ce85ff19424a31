#include <gtest/gtest.h>

#include "ToolProcess.h"

namespace ToolTest {

namespace {

void checkTree(const std::string& text, const std::string& expected) {
  EXPECT_EQ(runTool({"tree", "-"}, text), (Result{0, expected, ""}));
}

std::string makeNestedText(unsigned long depth) {
  std::string text;
  for (unsigned long i = 0; i < depth; ++i)
    text += "g {\n";
  text += "x 1\n";
  for (unsigned long i = 0; i < depth; ++i)
    text += "}\n";
  return text;
}

std::string getLastLine(const std::string& text) {
  const std::size_t end = text.size() - 1;
  return text.substr(text.rfind('\n', end - 1) + 1);
}

}  // namespace

TEST(TreeCommandTest, AnItemIsALineWithTheTypeOfItsValues) {
  checkTree("size 1920 1080\n", "size: int 1920 1080\n");
}

TEST(TreeCommandTest, EveryChangeOfTypeIsNamed) {
  checkTree("a 1 2.5 yes \"text\" 0x00 7\n",
            "a: int 1, double 2.5, bool yes, string \"text\", binary 0x00, int 7\n");
}

TEST(TreeCommandTest, ValuesStandAsTheyAreSpelled) {
  checkTree("a 1.50 1e3 \"x\\ty\"\n", "a: double 1.50 1e3, string \"x\\ty\"\n");
}

TEST(TreeCommandTest, TheItemsOfAGroupAreIndented) {
  checkTree("g { x 1 h { y 2 } }\nz 3\n",
            "g: group\n    x: int 1\n    h: group\n        y: int 2\nz: int 3\n");
}

TEST(TreeCommandTest, AGroupMayFollowValues) {
  checkTree("a 1 { x 2 }\n", "a: int 1, group\n    x: int 2\n");
}

TEST(TreeCommandTest, ACallIsMarked) {
  checkTree("blur(4, yes)\n", "blur (call): int 4, bool yes\n");
}

TEST(TreeCommandTest, AnEmptyCallIsMarkedAndEmpty) { checkTree("f()\n", "f (call): empty\n"); }

TEST(TreeCommandTest, KeywordsStandWhereTheyAreInTheDocument) {
  checkTree("a 1\n#k 2\nb 3\n", "a: int 1\n#k (keyword): int 2\nb: int 3\n");
}

TEST(TreeCommandTest, AnItemWithoutValuesIsEmpty) { checkTree("a <empty>\n", "a: empty\n"); }

TEST(TreeCommandTest, AnEmptyDocumentShowsNothing) { checkTree("", ""); }

TEST(TreeCommandTest, DepthLimitsTheLevelsShown) {
  EXPECT_EQ(runTool({"tree", "--depth=1", "-"}, "g { x 1 h { y(2) } }\nz 3\n"),
            (Result{0, "g: group\n    x: int 1\n    h: group\nz: int 3\n", ""}));
}

TEST(TreeCommandTest, TheIndentationGrowsUpToDepth39) {
  EXPECT_EQ(getLastLine(runTool({"tree", "-"}, makeNestedText(39)).output),
            std::string(39 * 4, ' ') + "x: int 1\n");
}

TEST(TreeCommandTest, FromDepth40OnTheDepthIsANumber) {
  EXPECT_EQ(getLastLine(runTool({"tree", "-"}, makeNestedText(40)).output), "[40] x: int 1\n");
}

TEST(TreeCommandTest, GroupsMayNestAsDeepAsMemoryLasts) {
  EXPECT_EQ(getLastLine(runTool({"tree", "--no-limits", "-"}, makeNestedText(200000)).output),
            "[200000] x: int 1\n");
}

TEST(TreeCommandTest, GroupsOf10000LevelsAreShown) {
  EXPECT_EQ(getLastLine(runTool({"tree", "-"}, makeNestedText(10000)).output),
            "[10000] x: int 1\n");
}

TEST(TreeCommandTest, GroupsOfMoreThan10000LevelsAreLeftOut) {
  Result result = runTool({"tree", "-"}, makeNestedText(10001) + "y 2");
  result.output = getLastLine(result.output);
  EXPECT_EQ(result, (Result{2, "y: int 2\n",
                            "quarry: warning: standard input:10001:3: File 'standard input' "
                            "exceeds the limit nestingDepth (10000). [limit-exceeded]\n"
                            "quarry: error: Cannot read 'standard input'.\n"}));
}

TEST(TreeCommandTest, WarningsOfTheParserAreFindings) {
  EXPECT_EQ(
      runTool({"tree", "-"}, "a = 1,\n, b 2\n"),
      (Result{1, "a: int 1\nb: int 2\n",
              "quarry: warning: standard input:2:1: item ',' wrongly placed. [wrongly-placed]\n"}));
}

TEST(TreeCommandTest, ABraceThatEndsTheDocumentEarlyIsAFinding) {
  EXPECT_EQ(runTool({"tree", "-"}, "a 1\n }\nb 2\n"),
            (Result{1, "a: int 1\n",
                    "quarry: warning: standard input:2:2: '}' closes no group; the rest of the "
                    "document is not read. [closes-no-group]\n"}));
}

TEST(TreeCommandTest, AGroupThatIsNotClosedIsAFinding) {
  EXPECT_EQ(runTool({"tree", "-"}, "g { x 1\n"),
            (Result{1, "g: group\n    x: int 1\n",
                    "quarry: warning: standard input:1:3: The group is not closed. "
                    "[group-not-closed]\n"}));
}

TEST(TreeCommandTest, EachGroupThatIsNotClosedIsAFinding) {
  EXPECT_EQ(runTool({"tree", "-"}, "g { h { x 1\n").messages,
            "quarry: warning: standard input:1:7: The group is not closed. [group-not-closed]\n"
            "quarry: warning: standard input:1:3: The group is not closed. [group-not-closed]\n");
}

TEST(TreeCommandTest, ColorsCanBeAskedForInAPipe) {
  EXPECT_EQ(runTool({"tree", "--color=always", "-"}, "a 1\n"),
            (Result{0, "\033[1ma\033[0m: \033[2mint\033[0m \033[36m1\033[0m\n", ""}));
}

TEST(TreeCommandTest, ColoredOutputIsEscapedInAPipeToo) {
  const std::string output = runTool({"tree", "--color=always", "-"}, "a \"\033[2J\"\n").output;
  EXPECT_EQ(output, "\033[1ma\033[0m: \033[2mstring\033[0m \033[32m\"\\x1B[2J\"\033[0m\n");
}

TEST(TreeCommandTest, BytesPassUnchangedWithoutATerminal) {
  checkTree("a \"\033[2J\x80\"\n", "a: string \"\033[2J\x80\"\n");
}

}  // namespace ToolTest
