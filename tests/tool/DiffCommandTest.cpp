#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

Result runDiff(const std::string& before, const std::string& after, Arguments options = {}) {
  const TemporaryFolder folder;
  options.insert(options.begin(), "diff");
  options.push_back("-");
  options.push_back(folder.write("after.cfg", after));
  return runTool(options, before);
}

void checkDiffers(const std::string& before, const std::string& after,
                  const std::string& expected) {
  EXPECT_EQ(runDiff(before, after), (Result{1, expected, ""}));
}

void checkSame(const std::string& before, const std::string& after) {
  EXPECT_EQ(runDiff(before, after), (Result{0, "", ""}));
}

std::string makeWideText(int count, int last) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "n" + std::to_string(i) + " 1 same " + std::to_string(i) + "\n";
  return text + "last " + std::to_string(last);
}

}  // namespace

TEST(DiffCommandTest, AChangedValueIsShownBeforeAndAfter) {
  checkDiffers("a 1 size 1 2", "a 1 size 1 3", "- size: int 1 2\n+ size: int 1 3\n");
}

TEST(DiffCommandTest, AnAddedItemHasAPlus) { checkDiffers("a 1", "a 1 b 2", "+ b: int 2\n"); }

TEST(DiffCommandTest, ARemovedItemHasAMinus) { checkDiffers("a 1 b 2", "a 1", "- b: int 2\n"); }

TEST(DiffCommandTest, ItemsOfGroupsHaveTheirPaths) {
  checkDiffers("g { h { a 1 } }", "g { h { a 2 } }", "- g/h/a: int 1\n+ g/h/a: int 2\n");
}

TEST(DiffCommandTest, AddedItemsStandBehindTheOthersOfTheirGroup) {
  checkDiffers("g { a 1 } z 1", "g { b 1 a 2 } z 2",
               "- g/a: int 1\n+ g/a: int 2\n+ g/b: int 1\n- z: int 1\n+ z: int 2\n");
}

TEST(DiffCommandTest, RepeatedItemsAreMatchedByTheirNumber) {
  checkDiffers("a 1 a 2 a 3", "a 1 a 3", "- a[2]: int 2\n+ a[2]: int 3\n- a[3]: int 3\n");
}

TEST(DiffCommandTest, AGroupThatWasAddedIsOneLine) {
  checkDiffers("", "g { a 1 b { c 2 } }", "+ g: group\n");
}

TEST(DiffCommandTest, AChangedKindIsADifference) {
  checkDiffers("f 1", "f(1)", "- f: int 1\n+ f (call): int 1\n");
}

TEST(DiffCommandTest, AChangedTypeIsADifference) {
  checkDiffers("a 1", "a 1.0", "- a: int 1\n+ a: double 1.0\n");
}

TEST(DiffCommandTest, AGroupInsteadOfAValueIsADifference) {
  checkDiffers("a 1", "a { b 1 }", "- a: int 1\n+ a: group\n");
}

TEST(DiffCommandTest, ValuesBeforeAGroupAreCompared) {
  checkDiffers("a \"x\" { b 1 }", "a \"y\" { b 2 }",
               "- a: string \"x\", group\n+ a: string \"y\", group\n- a/b: int 1\n+ a/b: int 2\n");
}

TEST(DiffCommandTest, AnEmptyItemIsNoGroup) {
  checkDiffers("a <empty>", "a {\n}", "- a: empty\n+ a: group\n");
}

TEST(DiffCommandTest, KeywordsAreCompared) {
  checkDiffers("#k 1", "#k 2", "- #k: int 1\n+ #k: int 2\n");
}

TEST(DiffCommandTest, LayoutAndCommentsMakeNoDifference) {
  checkSame("a = 1, 2 // note\ng {\n  b 1\n}\n", "a 1 2\ng { b 1 }\n");
}

TEST(DiffCommandTest, TheSpellingOfNumbersMakesNoDifference) { checkSame("a 1.50 +7", "a 1.5 7"); }

TEST(DiffCommandTest, TheOrderOfDifferentNamesMakesNoDifference) {
  checkSame("a 1 b 2 a 3", "b 2 a 1 a 3");
}

TEST(DiffCommandTest, EscapesOfTheFirstVersionAreUnderstood) {
  checkSame("a \"C:\\new\"", "#SerialVersion 1.1\na \"C:\\\\new\"");
}

TEST(DiffCommandTest, JsonTellsWhatWasAndWhatIs) {
  EXPECT_EQ(
      runDiff("a 1 b 1", "a 2 c { d 1 }", {"--json"}),
      (Result{1,
              "[\n"
              "  {\"path\":\"a\",\"change\":\"changed\","
              "\"before\":{\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":1}]},"
              "\"after\":{\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":2}]}},\n"
              "  {\"path\":\"b\",\"change\":\"removed\","
              "\"before\":{\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":1}]}},\n"
              "  {\"path\":\"c\",\"change\":\"added\","
              "\"after\":{\"kind\":\"plain\",\"values\":[{\"type\":\"group\"}]}}\n"
              "]\n",
              ""}));
}

TEST(DiffCommandTest, JsonOfNoDifferenceIsAnEmptyArray) {
  EXPECT_EQ(runDiff("a 1", "a 1", {"--json"}), (Result{0, "[]\n", ""}));
}

TEST(DiffCommandTest, ColorsCanBeAskedFor) {
  EXPECT_EQ(runDiff("a 1", "b 1", {"--color=always"}).output,
            "\033[31m- \033[0m\033[31ma\033[0m: \033[2mint\033[0m \033[36m1\033[0m\n"
            "\033[32m+ \033[0m\033[32mb\033[0m: \033[2mint\033[0m \033[36m1\033[0m\n");
}

TEST(DiffCommandTest, WarningsAreNoDifference) {
  EXPECT_EQ(runDiff(", a 1", "a 1"),
            (Result{0, "",
                    "quarry: warning: standard input:1:1: item ',' wrongly placed. "
                    "[wrongly-placed]\n"}));
}

TEST(DiffCommandTest, OnlyOneDocumentCanBeStandardInput) {
  EXPECT_EQ(runTool({"diff", "-", "-"}, "a 1"),
            (Result{2, "", "quarry: error: Only one document can be standard input.\n"}));
}

TEST(DiffCommandTest, AMissingDocumentCannotBeRead) {
  EXPECT_EQ(runTool({"diff", "-q", "-", "/nowhere.cfg"}, "a 1"),
            (Result{2, "", "quarry: error: Cannot read '/nowhere.cfg'.\n"}));
}

TEST(DiffCommandTest, GroupsMayNestAsDeepAsMemoryLasts) {
  std::string text;
  for (int i = 0; i < 100000; ++i)
    text += "g {\n";
  const std::string ends(100000, '}');
  EXPECT_EQ(runDiff(text + "a 1\n" + ends, text + "a 1\n" + ends, {"--no-limits"}),
            (Result{0, "", ""}));
}

TEST(DiffCommandTest, ManyItemsAreMatchedByTheirNames) {
  EXPECT_EQ(runDiff(makeWideText(50000, 1), makeWideText(50000, 2)),
            (Result{1, "- last: int 1\n+ last: int 2\n", ""}));
}

}  // namespace ToolTest
