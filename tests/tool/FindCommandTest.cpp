#include <gtest/gtest.h>

#include <algorithm>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

constexpr char SCENE[] =
    "title \"Harbor\"\n"
    "scene {\n"
    "    name \"opening\"\n"
    "    layer { name \"water\" blur(4, no) }\n"
    "    layer { name \"sky\" }\n"
    "}\n";

/// Expects that items of `text` are found, and shown as `expected`.
void checkFinds(const std::string& pattern, const std::string& text, const std::string& expected) {
  EXPECT_EQ(runTool({"find", "-", pattern}, text), (Result{0, expected, ""}));
}

std::string makeNestedText(unsigned long depth, const std::string& name) {
  std::string text;
  for (unsigned long i = 0; i < depth; ++i)
    text += name + " {\n";
  return text + "x 1\n" + std::string(depth, '}');
}

}  // namespace

// --- What is shown -------------------------------------------------------------------------------

TEST(FindCommandTest, AnItemIsALineWithPathAndValues) {
  checkFinds("^blur$", SCENE, "scene/layer/blur (call): int 4, bool no\n");
}

TEST(FindCommandTest, ItemsAreFoundAtAnyDepthInTheOrderOfTheDocument) {
  checkFinds("name", SCENE,
             "scene/name: string \"opening\"\n"
             "scene/layer/name: string \"water\"\n"
             "scene/layer[2]/name: string \"sky\"\n");
}

TEST(FindCommandTest, AGroupStandsBeforeItsItems) {
  checkFinds("a", "a { b { a 1 } }\na 2", "a: group\na/b/a: int 1\na[2]: int 2\n");
}

TEST(FindCommandTest, RepeatedNamesAreCountedWithinTheirGroup) {
  checkFinds("^x$", "x 1 g { x 2 x 3 } g { x 4 } x 5",
             "x: int 1\ng/x: int 2\ng/x[2]: int 3\ng[2]/x: int 4\nx[2]: int 5\n");
}

TEST(FindCommandTest, ItemsThatAreNotFoundCountToo) {
  EXPECT_EQ(runTool({"find", "--not", "-", "^g$"}, "g { x 1 } h { y 2 } g { z 3 }").output,
            "g/x: int 1\nh: group\nh/y: int 2\ng[2]/z: int 3\n");
}

TEST(FindCommandTest, NumbersStandAsTheyAreSpelled) {
  checkFinds("a", "a 1.50 1e3 +7 12px", "a: double 1.50 1e3, int +7 12px\n");
}

TEST(FindCommandTest, EveryTypeIsNamed) {
  checkFinds("a", "#SerialVersion 1.1\na 1 2.5 yes \"t\\\"\\n\" 0x0102FF02010000 {\n}",
             "a: int 1, double 2.5, bool yes, string \"t\\\"\\n\", binary 0x0102FF02010000, "
             "group\n");
}

TEST(FindCommandTest, StringsOfTheFirstVersionAreShownWithEscapes) {
  checkFinds("a", "a \"C:\\new\"", "a: string \"C:\\\\new\"\n");
}

TEST(FindCommandTest, AnItemWithoutValuesIsEmpty) { checkFinds("a", "a <empty>", "a: empty\n"); }

TEST(FindCommandTest, KeywordsArePassedOver) { checkFinds("k", "#k 1 k 2", "k: int 2\n"); }

TEST(FindCommandTest, ItemsOfAKeywordsGroupArePassedOver) {
  checkFinds("x", "#k { x 1 } x 2", "x: int 2\n");
}

TEST(FindCommandTest, AVeryLongPathIsShownByItsEnd) {
  std::string expected = "...";
  for (int i = 0; i < 499; ++i)
    expected += "/g";
  checkFinds("^x$", makeNestedText(600, "g"), expected + "/x: int 1\n");
}

TEST(FindCommandTest, APathOf1000BytesIsShownWhole) {
  std::string expected;
  for (int i = 0; i < 333; ++i)
    expected += "gg/";
  checkFinds("^x$", makeNestedText(333, "gg"), expected + "x: int 1\n");
}

TEST(FindCommandTest, AnItemsOwnNameIsShownWhole) {
  const std::string name(2000, 'n');
  checkFinds("n", "g { " + name + " 1 }", ".../" + name + ": int 1\n");
}

TEST(FindCommandTest, AnOutermostItemsNameIsShownWhole) {
  const std::string name(2000, 'n');
  checkFinds("n", name + " 1", name + ": int 1\n");
}

TEST(FindCommandTest, GroupsMayNestAsDeepAsMemoryLasts) {
  const std::string output =
      runTool({"find", "--no-limits", "-", "."}, makeNestedText(200000, "g")).output;
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 200001);
}

TEST(FindCommandTest, ColorsCanBeAskedFor) {
  EXPECT_EQ(runTool({"find", "--color=always", "-", "x"}, "a { x 1 }").output,
            "\033[1ma/x\033[0m: \033[2mint\033[0m \033[36m1\033[0m\n");
}

// --- What is looked for --------------------------------------------------------------------------

TEST(FindCommandTest, ThePatternIsSearchedAnywhereInTheName) {
  checkFinds("rb", "harbor 1 har 2", "harbor: int 1\n");
}

TEST(FindCommandTest, ThePatternDoesNotLookAtPathsAndValues) {
  EXPECT_EQ(runTool({"find", "-", "/|water"}, SCENE), (Result{1, "", ""}));
}

TEST(FindCommandTest, TheEmptyPatternFindsEveryItem) {
  checkFinds("", "a { b 1 } c 2", "a: group\na/b: int 1\nc: int 2\n");
}

TEST(FindCommandTest, NotFindsTheOthers) {
  EXPECT_EQ(runTool({"find", "-", "name|layer", "--not"}, SCENE),
            (Result{0,
                    "title: string \"Harbor\"\nscene: group\n"
                    "scene/layer/blur (call): int 4, bool no\n",
                    ""}));
}

TEST(FindCommandTest, DepthZeroFindsOutermostItemsOnly) {
  EXPECT_EQ(runTool({"find", "--depth", "0", "-", "e"}, SCENE),
            (Result{0, "title: string \"Harbor\"\nscene: group\n", ""}));
}

TEST(FindCommandTest, DepthLimitsTheGroupsAroundAnItem) {
  EXPECT_EQ(runTool({"find", "--depth=1", "-", "name"}, SCENE),
            (Result{0, "scene/name: string \"opening\"\n", ""}));
}

TEST(FindCommandTest, SearchPathsHoldForIncludes) {
  const TemporaryFolder folder;
  folder.write("part.cfg", "x 1");
  EXPECT_EQ(runTool({"find", "-I", folder.getPath(), "-", "x"}, "g {\n#include \"part.cfg\"\n}"),
            (Result{0, "g/x: int 1\n", ""}));
}

TEST(FindCommandTest, AValueIsSearchedAnywhereInItsText) {
  EXPECT_EQ(runTool({"find", "-", "", "--value", "ate"}, SCENE).output,
            "scene/layer/name: string \"water\"\n");
}

TEST(FindCommandTest, AStringIsSearchedWithoutQuotesAndEscapes) {
  EXPECT_EQ(
      runTool({"find", "-", "", "--value", "^a\"b$"}, "#SerialVersion 1.1\nx \"a\\\"b\" y \"a b\"")
          .output,
      "x: string \"a\\\"b\"\n");
}

TEST(FindCommandTest, ANumberIsSearchedAsItIsSpelled) {
  EXPECT_EQ(runTool({"find", "-", "", "--value", "\\.50$"}, "a 1.50 b 1.5").output,
            "a: double 1.50\n");
}

TEST(FindCommandTest, EachValueOfAnItemIsSearched) {
  EXPECT_EQ(runTool({"find", "-", "", "--value", "^no$"}, SCENE).output,
            "scene/layer/blur (call): int 4, bool no\n");
}

TEST(FindCommandTest, NameAndValueHaveToMatchBoth) {
  EXPECT_EQ(runTool({"find", "-", "^b", "--value", "1"}, "a 1 b 1 b 2").output, "b: int 1\n");
}

TEST(FindCommandTest, APathIsFoundAsItIsShown) {
  checkFinds("x", "x[2] 1 x 2 x 3", "x[2][1]: int 1\nx: int 2\nx[2]: int 3\n");
}

// --- The exit status -----------------------------------------------------------------------------

TEST(FindCommandTest, NothingFoundIsAFindingWithoutAMessage) {
  EXPECT_EQ(runTool({"find", "-", "zoom"}, SCENE), (Result{1, "", ""}));
}

TEST(FindCommandTest, NothingWithinTheDepthIsAFinding) {
  EXPECT_EQ(runTool({"find", "--depth=0", "-", "name"}, SCENE), (Result{1, "", ""}));
}

TEST(FindCommandTest, WarningsOfTheParserAreFindings) {
  EXPECT_EQ(runTool({"find", "-", "a"}, ", a 1"),
            (Result{1, "a: int 1\n",
                    "quarry: warning: standard input:1:1: item ',' wrongly placed. "
                    "[wrongly-placed]\n"}));
}

TEST(FindCommandTest, ABadPatternIsRefusedWithTheReason) {
  EXPECT_EQ(runTool({"find", "-", "("}, "a 1"),
            (Result{2, "",
                    "quarry: warning: Expression::Expression: invalid pattern '(': missing ): (\n"
                    "quarry: error: '(' is no regular expression.\n"}));
}

TEST(FindCommandTest, AMissingFileCannotBeRead) {
  EXPECT_EQ(runTool({"find", "-q", "/nowhere.cfg", "a"}),
            (Result{2, "", "quarry: error: Cannot read '/nowhere.cfg'.\n"}));
}

TEST(FindCommandTest, APatternIsNeeded) {
  EXPECT_EQ(runTool({"find", "-"}, "a 1"),
            (Result{2, "", "quarry: error: PATTERN is required; quarry --help tells more.\n"}));
}

}  // namespace ToolTest
