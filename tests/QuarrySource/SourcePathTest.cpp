// Paths lead to items and values, and items have paths.

#include <QuarrySource/SourceTree.h>
#include <gtest/gtest.h>

#include "ShownDocument.h"

using Quarry::SourceDocument;
using Quarry::SourceTarget;
using Quarry::SourceTree;
using TestSupport::readDocument;

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

class SourcePathTest : public testing::Test {
 protected:
  static constexpr char TEXT[] =
      "scene { name 0 }"
      " scene { layer { name 1 } layer { name 2 3 name <empty> 4 } layer[1] 5 }"
      " single[7] 6 #key { #inner 7 } call (8, 9) ";

  SourceTarget find(const std::string& path) const { return tree.find(path); }

  /// Returns the text of the item that a path leads to, from its name to its end.
  std::string show(const std::string& path) const {
    const SourceTarget target = tree.find(path);
    if (!target.isFound()) return target.problem;
    if (target.item == NOWHERE) return "the root";
    const Quarry::SourceItem& item = tree.getItem(target.item);
    if (target.value != NOWHERE)
      return std::string(tree.getSpelling(tree.getValue(item, target.value)));
    return document->getText().substr(item.nameBegin, item.end - item.nameBegin);
  }

  const std::unique_ptr<SourceDocument> document = readDocument(TEXT);
  const SourceTree tree{*document};
};

std::string pathOf(const std::string& text, unsigned long item) {
  const auto document = readDocument(text);
  return SourceTree(*document).getPath(item);
}

std::string spellingAt(const std::string& text, const std::string& path) {
  const auto document = readDocument(text);
  const SourceTree tree(*document);
  const SourceTarget target = tree.find(path);
  return target.isFound()
             ? std::string(tree.getSpelling(tree.getValue(tree.getItem(target.item), 0)))
             : target.problem;
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST_F(SourcePathTest, TheEmptyPathIsTheRoot) {
  EXPECT_EQ(show(""), "the root");
  EXPECT_EQ(find("").value, NOWHERE);
}

TEST_F(SourcePathTest, ANameIsTheFirstItemThatIsCalledSo) {
  EXPECT_EQ(show("scene"), "scene { name 0 }");
}

TEST_F(SourcePathTest, NamesStandBetweenSlashes) { EXPECT_EQ(show("scene/name"), "name 0"); }

TEST_F(SourcePathTest, ANumberInBracketsCountsNamesakes) {
  EXPECT_EQ(show("scene[2]/layer[2]/name"), "name 2 3");
  EXPECT_EQ(show("scene[2]/layer[2]/name[2]"), "name <empty> 4");
}

TEST_F(SourcePathTest, TheFirstNamesakeMayBeNumbered) {
  EXPECT_EQ(show("scene[1]/name[1]"), "name 0");
}

TEST_F(SourcePathTest, EachGroupCountsItsOwnItems) {
  EXPECT_EQ(show("scene[2]/layer/name"), "name 1");
  EXPECT_EQ(show("scene/name[2]"), "there is no 'name[2]' in 'scene'");
}

TEST_F(SourcePathTest, KeywordsAreCalledByTheirSign) { EXPECT_EQ(show("#key/#inner"), "#inner 7"); }

TEST_F(SourcePathTest, CallsAreCalledByTheirNames) { EXPECT_EQ(show("call"), "call (8, 9)"); }

TEST_F(SourcePathTest, ASlashAtTheEndIsPassedOver) { EXPECT_EQ(show("scene/name/"), "name 0"); }

// --- Names that end in brackets ------------------------------------------------------------------

TEST_F(SourcePathTest, ANameInBracketsIsFoundAsItStands) {
  EXPECT_EQ(show("single[7]"), "single[7] 6");
}

TEST_F(SourcePathTest, TheNumberGoesBeforeTheName) {
  EXPECT_EQ(show("scene[2]/layer[1]"), "layer { name 1 }");
}

TEST_F(SourcePathTest, ANameInBracketsIsAlwaysFoundByItsNumber) {
  EXPECT_EQ(show("scene[2]/layer[1][1]"), "layer[1] 5");
  EXPECT_EQ(show("single[7][1]"), "single[7] 6");
}

TEST_F(SourcePathTest, AZeroInBracketsIsPartOfAName) {
  EXPECT_EQ(show("scene[0]"), "there is no 'scene[0]'");
  EXPECT_EQ(spellingAt("a[0] 1 ", "a[0]"), "1");
}

TEST_F(SourcePathTest, BracketsWithoutANumberArePartOfAName) {
  EXPECT_EQ(spellingAt("a[] 1 a[b] 2 a[1 3 a1] 4 ", "a[]"), "1");
  EXPECT_EQ(spellingAt("a[] 1 a[b] 2 a[1 3 a1] 4 ", "a[b]"), "2");
  EXPECT_EQ(spellingAt("a[] 1 a[b] 2 a[1 3 a1] 4 ", "a[1"), "3");
  EXPECT_EQ(spellingAt("a[] 1 a[b] 2 a[1 3 a1] 4 ", "a1]"), "4");
}

TEST_F(SourcePathTest, ANumberWithASignIsPartOfAName) {
  EXPECT_EQ(spellingAt("a 1 a[-1] 2 ", "a[-1]"), "2");
}

TEST_F(SourcePathTest, ANumberThatIsTooLargeIsPartOfAName) {
  EXPECT_EQ(spellingAt("a 1 a[99999999999999999999] 2 ", "a[99999999999999999999]"), "2");
}

TEST_F(SourcePathTest, AKeywordOfABracketedNumberIsFound) {
  EXPECT_EQ(spellingAt("#[2] 1 ", "#[2]"), "1");
}

// --- Values --------------------------------------------------------------------------------------

TEST_F(SourcePathTest, ANumberBehindASignCountsValues) {
  EXPECT_EQ(show("scene[2]/layer[2]/name#1"), "2");
  EXPECT_EQ(show("scene[2]/layer[2]/name#2"), "3");
  EXPECT_EQ(find("scene[2]/layer[2]/name#2").value, 1U);
}

TEST_F(SourcePathTest, AnEmptyTagCounts) {
  EXPECT_EQ(show("scene[2]/layer[2]/name[2]#1"), "<empty>");
  EXPECT_EQ(show("scene[2]/layer[2]/name[2]#2"), "4");
}

TEST_F(SourcePathTest, ArgumentsAreValues) { EXPECT_EQ(show("call#2"), "9"); }

TEST_F(SourcePathTest, KeywordsHaveValues) { EXPECT_EQ(show("#key/#inner#1"), "7"); }

TEST_F(SourcePathTest, AnItemWithoutAValueNumberIsAllOfIt) {
  EXPECT_EQ(find("call").value, NOWHERE);
}

// --- Paths that lead nowhere ---------------------------------------------------------------------

TEST_F(SourcePathTest, AMissingItemOfTheRootIsNamed) {
  EXPECT_EQ(find("missing").problem, "there is no 'missing'");
  EXPECT_FALSE(find("missing").isFound());
}

TEST_F(SourcePathTest, AMissingItemOfAGroupIsNamedWithItsGroup) {
  EXPECT_EQ(find("scene[2]/layer/missing/name").problem,
            "there is no 'missing' in 'scene[2]/layer'");
}

TEST_F(SourcePathTest, AnItemWithoutAGroupHasNoItems) {
  EXPECT_EQ(find("scene/name/x").problem, "there is no 'x' in 'scene/name'");
}

TEST_F(SourcePathTest, AValueThatThereIsNotIsNamed) {
  EXPECT_EQ(find("call#3").problem, "'call' has no value 3");
  EXPECT_EQ(find("scene#1").problem, "'scene' has no value 1");
}

TEST_F(SourcePathTest, ValuesCountFrom1) {
  EXPECT_EQ(find("call#0").problem, "there is no 'call#0'");
}

TEST_F(SourcePathTest, AValueHasNoItems) {
  EXPECT_EQ(find("scene#1/name").problem, "there is no 'scene#1'");
}

TEST_F(SourcePathTest, TheRootHasNoValues) { EXPECT_EQ(find("#1").problem, "there is no '#1'"); }

TEST_F(SourcePathTest, ASlashAtTheBeginningLeadsNowhere) {
  EXPECT_EQ(find("/scene").problem, "there is no ''");
}

TEST_F(SourcePathTest, TwoSlashesLeadNowhere) {
  EXPECT_EQ(find("scene//name").problem, "there is no '' in 'scene'");
}

// --- The path of an item -------------------------------------------------------------------------

TEST_F(SourcePathTest, EveryItemIsFoundByItsPath) {
  for (unsigned long i = 0; i < tree.getItemCount(); ++i)
    EXPECT_EQ(find(tree.getPath(i)).item, i) << tree.getPath(i);
}

TEST_F(SourcePathTest, ThePathOfNoItemIsTheRoots) { EXPECT_EQ(tree.getPath(NOWHERE), ""); }

TEST_F(SourcePathTest, OnlyLaterNamesakesAreNumbered) {
  EXPECT_EQ(pathOf("a { b 1 } a { b 2 b 3 }", 1), "a/b");
  EXPECT_EQ(pathOf("a { b 1 } a { b 2 b 3 }", 3), "a[2]/b");
  EXPECT_EQ(pathOf("a { b 1 } a { b 2 b 3 }", 4), "a[2]/b[2]");
}

TEST_F(SourcePathTest, ANameInBracketsIsAlwaysNumbered) {
  EXPECT_EQ(pathOf("a[2] 1 a 2 a 3", 0), "a[2][1]");
  EXPECT_EQ(pathOf("a[2] 1 a[2] 2", 1), "a[2][2]");
}

TEST_F(SourcePathTest, ANameInOtherBracketsIsNot) { EXPECT_EQ(pathOf("a[b] 1", 0), "a[b]"); }

TEST_F(SourcePathTest, CountingGoesOnBehindAGroup) {
  EXPECT_EQ(pathOf("a 1 b { a 2 c { a 3 } a 4 } a 5", 5), "b/a[2]");
  EXPECT_EQ(pathOf("a 1 b { a 2 c { a 3 } a 4 } a 5", 6), "a[2]");
}
