#include <gtest/gtest.h>
#include <quarry/LayoutDiff.h>

namespace ToolTest {

namespace {

std::string diff(const std::string& before, const std::string& after) {
  std::string text;
  for (const Tool::DiffLine& line : Tool::diffLayouts("x", before, after))
    text += line.text + "\n";
  return text;
}

}  // namespace

TEST(LayoutDiffTest, EqualTextsHaveNoDifferences) { EXPECT_EQ(diff("a 1\n", "a 1\n"), ""); }

TEST(LayoutDiffTest, AChangedLineStandsBetweenItsNeighbours) {
  EXPECT_EQ(diff("a\nb\n  c\nd\ne\n", "a\nb\nc\nd\ne\n"),
            "--- x\n+++ x\n@@ -1,5 +1,5 @@\n a\n b\n-  c\n+c\n d\n e\n");
}

TEST(LayoutDiffTest, ThreeLinesAroundAChangeAreShown) {
  EXPECT_EQ(diff("1\n2\n3\n4\n 5\n6\n7\n8\n9\n", "1\n2\n3\n4\n5\n6\n7\n8\n9\n"),
            "--- x\n+++ x\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n- 5\n+5\n 6\n 7\n 8\n");
}

TEST(LayoutDiffTest, ChangesFarApartAreShownApart) {
  EXPECT_EQ(diff(" 1\n2\n3\n4\n5\n6\n7\n8\n9\n 0\n", "1\n2\n3\n4\n5\n6\n7\n8\n9\n0\n"),
            "--- x\n+++ x\n@@ -1,4 +1,4 @@\n- 1\n+1\n 2\n 3\n 4\n"
            "@@ -7,4 +7,4 @@\n 7\n 8\n 9\n- 0\n+0\n");
}

TEST(LayoutDiffTest, ChangesNearEachOtherAreShownTogether) {
  EXPECT_EQ(diff(" 1\n2\n3\n4\n5\n6\n7\n 8\n", "1\n2\n3\n4\n5\n6\n7\n8\n"),
            "--- x\n+++ x\n@@ -1,8 +1,8 @@\n- 1\n+1\n 2\n 3\n 4\n 5\n 6\n 7\n- 8\n+8\n");
}

TEST(LayoutDiffTest, ALineThatIsCutIsReplacedByItsParts) {
  EXPECT_EQ(diff("a 1 b 2\nc 3\n", "a 1\nb 2\nc 3\n"),
            "--- x\n+++ x\n@@ -1,2 +1,3 @@\n-a 1 b 2\n+a 1\n+b 2\n c 3\n");
}

TEST(LayoutDiffTest, BlankLinesThatGoAreShown) {
  EXPECT_EQ(diff("a\n\n\n\nb\n", "a\n\nb\n"), "--- x\n+++ x\n@@ -1,5 +1,3 @@\n a\n \n-\n-\n b\n");
}

TEST(LayoutDiffTest, ARangeWithoutLinesIsNamedByTheLineBeforeIt) {
  EXPECT_EQ(diff("\n", ""), "--- x\n+++ x\n@@ -1 +0,0 @@\n-\n");
}

TEST(LayoutDiffTest, AMissingFinalLineEndIsNoted) {
  EXPECT_EQ(diff("a", "a\n"), "--- x\n+++ x\n@@ -1 +1 @@\n-a\n\\ No newline at end of file\n+a\n");
}

}  // namespace ToolTest
