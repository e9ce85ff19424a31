#include <gtest/gtest.h>
#include <quarry/GlobPattern.h>

#include <string>

namespace ToolTest {

namespace {

bool matches(std::string_view pattern, std::string_view path) {
  return Tool::GlobPattern(pattern).matches(path);
}

}  // namespace

TEST(GlobPatternTest, BytesMatchThemselvesAndTheWholePath) {
  EXPECT_TRUE(matches("a.cfg", "a.cfg"));
  EXPECT_FALSE(matches("a.cfg", "a.cfgs"));
  EXPECT_FALSE(matches("a.cfg", "axcfg"));
}

TEST(GlobPatternTest, AStarMatchesAnythingWithinAFolder) {
  EXPECT_TRUE(matches("*.cfg", "a.cfg"));
  EXPECT_TRUE(matches("a*", "a"));
  EXPECT_FALSE(matches("*.cfg", "b/a.cfg"));
}

TEST(GlobPatternTest, TwoStarsMatchFoldersToo) {
  EXPECT_TRUE(matches("**.cfg", "b/c/a.cfg"));
  EXPECT_TRUE(matches("b/**/a.cfg", "b/c/d/a.cfg"));
}

TEST(GlobPatternTest, TwoStarsBetweenSlashesMatchNoFolder) {
  EXPECT_TRUE(matches("b/**/a.cfg", "b/a.cfg"));
  EXPECT_FALSE(matches("b/**/a.cfg", "ba.cfg"));
}

TEST(GlobPatternTest, AQuestionMarkMatchesOneCharacter) {
  EXPECT_TRUE(matches("a?c", "abc"));
  EXPECT_TRUE(matches("a?c",
                      "a\xC3\xA4"
                      "c"));
  EXPECT_FALSE(matches("a?c", "ac"));
  EXPECT_FALSE(matches("a?c", "a/c"));
}

TEST(GlobPatternTest, BracketsMatchOneOfTheirBytes) {
  EXPECT_TRUE(matches("[abx-z]", "b"));
  EXPECT_TRUE(matches("[abx-z]", "y"));
  EXPECT_FALSE(matches("[abx-z]", "c"));
  EXPECT_TRUE(matches("[a-]", "-"));
}

TEST(GlobPatternTest, NegatedBracketsMatchAllOthersButSlashes) {
  EXPECT_TRUE(matches("[!ab]", "c"));
  EXPECT_FALSE(matches("[!ab]", "a"));
  EXPECT_FALSE(matches("[!ab]", "/"));
}

TEST(GlobPatternTest, BracketsThatDoNotCloseStandForThemselves) {
  EXPECT_TRUE(matches("a[b", "a[b"));
  EXPECT_TRUE(matches("a[b/c]", "a[b/c]"));
}

TEST(GlobPatternTest, BracesMatchEitherPattern) {
  EXPECT_TRUE(matches("*.{cfg,conf}", "a.cfg"));
  EXPECT_TRUE(matches("*.{cfg,conf}", "a.conf"));
  EXPECT_FALSE(matches("*.{cfg,conf}", "a.con"));
  EXPECT_TRUE(matches("a{,b}", "a"));
}

TEST(GlobPatternTest, BracesMayHoldBraces) {
  EXPECT_TRUE(matches("{a,b{c,d*}}", "bdx"));
  EXPECT_FALSE(matches("{a,b{c,d*}}", "b"));
}

TEST(GlobPatternTest, BracesWithoutACommaStandForThemselves) {
  EXPECT_TRUE(matches("{a}", "{a}"));
  EXPECT_TRUE(matches("{x,{a}}", "{a}"));
  EXPECT_TRUE(matches("{a", "{a"));
  EXPECT_TRUE(matches("a}", "a}"));
}

TEST(GlobPatternTest, RangesMatchWholeNumbers) {
  EXPECT_TRUE(matches("a{-2..12}", "a-1"));
  EXPECT_TRUE(matches("a{-2..12}", "a12"));
  EXPECT_TRUE(matches("a{12..-2}", "a0"));
  EXPECT_FALSE(matches("a{1..12}", "a13"));
  EXPECT_FALSE(matches("a{1..12}", "a05"));
  EXPECT_FALSE(matches("a{1..12}", "a"));
}

TEST(GlobPatternTest, RangesWithoutNumbersStandForThemselves) {
  EXPECT_TRUE(matches("{a..c}", "{a..c}"));
}

TEST(GlobPatternTest, ABackslashTakesTheNextByteAsItIs) {
  EXPECT_TRUE(matches("\\*", "*"));
  EXPECT_FALSE(matches("\\*", "a"));
  EXPECT_TRUE(matches("{a\\,b,c}", "a,b"));
  EXPECT_TRUE(matches("a\\", "a\\"));
}

TEST(GlobPatternTest, ManyStarsTakeNoLonger) {
  std::string pattern;
  for (int i = 0; i < 200; ++i)
    pattern += "{*a,**a}";
  EXPECT_FALSE(matches(pattern, std::string(300, 'a') + "b"));
}

}  // namespace ToolTest
