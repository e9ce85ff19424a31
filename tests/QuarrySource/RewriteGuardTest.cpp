#include <QuarrySource/RewriteGuard.h>

#include <Quarry/ParserFile.h>
#include <Quarry/ParserWord.h>
#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceTree.h>

#include "support/Documents.h"
#include "support/LinearTime.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <set>
#include <string>
#include <vector>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;
using Quarry::RewriteGuard;
using Quarry::RewriteHazard;

namespace {

/// "kind at path" for each hazard.
std::vector<std::string> tell(const ParserGroup& root) {
  std::vector<std::string> told;
  for (const RewriteHazard& hazard : RewriteGuard::examine(root))
    told.push_back(std::string(Quarry::getHazardName(hazard.kind)) + " at " + hazard.path);
  return told;
}

using Told = std::vector<std::string>;

/// Expects one hazard, of this path, name and reason.
void checkTells(const ParserGroup& root, const std::string& path, const std::string& name,
                const std::string& reason) {
  const std::vector<RewriteHazard> hazards = RewriteGuard::examine(root);
  ASSERT_EQ(hazards.size(), 1U);
  EXPECT_EQ(hazards.front().path, path);
  EXPECT_EQ(Quarry::getHazardName(hazards.front().kind), name);
  EXPECT_EQ(hazards.front().reason, reason);
}

void checkIsSilent(const ParserGroup& root) { EXPECT_EQ(tell(root), Told()); }

void checkIsSilent(const std::string& text) { checkIsSilent(*TestSupport::readText(text)); }

class RewriteGuardTest : public testing::Test {
 protected:
  ParserItem& add(const std::string& name) { return *root.addItem(name, 0, 0); }

  ParserItem& addUnchecked(const std::string& name, ParserItem::Type type) {
    return *root.addItem(*new ParserItem(name, type, 0, 0));
  }

  /// Adds a value as if the word had been read.
  static void addWord(ParserItem& item, const std::string& text, ParserValue::Type type) {
    item.addWord(ParserWord(text, true, 1.1), type);
  }

  ParserGroup root{"root"};
};

// --- Silence -------------------------------------------------------------------------------------

TEST_F(RewriteGuardTest, AnEmptyDocumentSurvives) { checkIsSilent(root); }

TEST_F(RewriteGuardTest, AnOrdinaryDocumentSurvives) {
  checkIsSilent(
      "#format 2\ntitle \"Harbor\"\nsize 1920 1080\nblur(4, yes)\nnote <empty>\n"
      "camera { fov 39.6 data 0x0102FF02010000 }");
}

TEST_F(RewriteGuardTest, ValuesThatCodeAddsSurvive) {
  ParserItem& item = add("all");
  item.addBool(true);
  item.addInt(-7);
  item.addDouble(0.1);
  item.addString("a \"quoted\" \\ //string\n{}");
  item.addBinaryData(nullptr, 0);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, BoolsStringsAndBlocksThatCodeSetsSurvive) {
  ParserItem& item = add("all");
  for (int i = 0; i < 3; ++i)
    item.addInt(0);
  char byte = 'x';
  item.setBool(false, 0);
  item.setString("s", 1);
  item.setBinaryData(&byte, 1, 2);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, ACallWithoutArgumentsSurvives) {
  addUnchecked("f", ParserItem::ITEM_CALL);
  add("a").addInt(1);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, AGroupAsTheLastArgumentSurvives) {
  addUnchecked("f", ParserItem::ITEM_CALL).addGroup(nullptr);
  add("a").addInt(1);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, NegativeInfinityAndNegativeNanSurvive) {
  ParserItem& item = add("a");
  item.addDouble(-std::numeric_limits<double>::infinity());
  item.addDouble(-std::numeric_limits<double>::quiet_NaN());
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, AnIntThatSaysMoreThanItsDigitsSurvives) { checkIsSilent("a 12abc 1E5"); }

TEST_F(RewriteGuardTest, TheSpellingOfANumberDoesNotCount) {
  addWord(add("a"), " 7 ", ParserValue::TYPE_INT);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, TheNameOfTheRootDoesNotCount) { checkIsSilent(ParserGroup("any name")); }

TEST_F(RewriteGuardTest, AStringThatEndsInABackslashSurvivesAsTheLastOfItsLine) {
  add("a").addString("C:\\");
  add("b").addInt(1);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, AnIncludeWithinAStringSurvivesBecauseItsQuoteIsEscaped) {
  add("a").addString("#include \"x\"");
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, AFoldedGroupSurvivesWhereNoItemFollows) {
  add("a").addInt(1);
  root.addGroup("outer", true)->addGroup("inner", true)->addItem("b", 0, 0)->addInt(1);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, APlaceOfADetachedItemDoesNotCount) {
  add("a").addInt(1);
  const std::unique_ptr<ParserItem> odd(&addUnchecked("not a name", ParserItem::ITEM_PLAIN));
  root.detachItem(1);
  checkIsSilent(root);
}

TEST_F(RewriteGuardTest, ACommentInANumberDoesNoHarmAtTheEndOfTheText) {
  addWord(add("a"), "1//x", ParserValue::TYPE_INT);
  checkIsSilent(root);
}

// --- Items ---------------------------------------------------------------------------------------

TEST_F(RewriteGuardTest, TellsOfANameThatNoTextCanHold) {
  addUnchecked("two words", ParserItem::ITEM_PLAIN).addInt(1);
  checkTells(root, "two words", "odd-name",
             "The name is neither an identifier nor a keyword, and is not read as a name.");
}

TEST_F(RewriteGuardTest, TellsOfAPlainItemNamedLikeAKeyword) {
  addUnchecked("#format", ParserItem::ITEM_PLAIN).addInt(1);
  checkTells(root, "#format", "wrong-kind",
             "A name with '#' is read as a keyword without arguments, any other as a plain item or "
             "a call; the item is of another kind.");
}

TEST_F(RewriteGuardTest, TellsOfAKeywordNamedLikeAPlainItem) {
  addUnchecked("format", ParserItem::ITEM_KEYWORD).addInt(1);
  EXPECT_EQ(tell(root), Told({"wrong-kind at format"}));
}

TEST_F(RewriteGuardTest, TellsOfACallNamedLikeAKeyword) {
  addUnchecked("#format", ParserItem::ITEM_CALL).addInt(1);
  EXPECT_EQ(tell(root), Told({"wrong-kind at #format"}));
}

TEST_F(RewriteGuardTest, TellsOfATemplate) {
  ParserItem& item = add("list");
  item.setTemplate("int");
  item.addInt(1);
  checkTells(root, "list", "template",
             "Templates are written, but not read; the name in front of it is lost as well.");
}

TEST_F(RewriteGuardTest, TellsOfAnArray) {
  ParserItem& item = add("list");
  item.setArray(true, 3);
  item.addInt(1);
  checkTells(root, "list", "array",
             "The count of an array is written in brackets, as one raw byte, which are read as a "
             "part of the name.");
}

TEST_F(RewriteGuardTest, TellsOfAnArrayWithoutACount) {
  add("list").setArray(true, 0);
  EXPECT_EQ(tell(root), Told({"array at list"}));
}

TEST_F(RewriteGuardTest, TellsOfAFoldedGroupThatAnItemFollows) {
  root.addGroup("fold", true)->addItem("a", 0, 0)->addInt(1);
  add("b").addInt(2);
  checkTells(root, "fold", "folded-group",
             "The group is folded; what closes the fold is read as three closing braces, and other "
             "items follow.");
}

TEST_F(RewriteGuardTest, TellsOfAFoldedGroupThatAnItemOfAnOuterGroupFollows) {
  root.addGroup("outer", false)->addGroup("fold", true);
  add("b").addInt(2);
  EXPECT_EQ(tell(root), Told({"folded-group at outer/fold"}));
}

TEST_F(RewriteGuardTest, TellsOfARootKeywordForTheVersion) {
  add("#SerialVersion").addDouble(1.1);
  checkTells(root, "#SerialVersion", "version-keyword",
             "The keyword is taken for the version line of the file and dropped; a value that it "
             "has is written as one raw byte, which reads as version 0.");
}

TEST_F(RewriteGuardTest, TellsOfARootKeywordForTheVersionWithoutAValue) {
  add("#SerialVersion");
  EXPECT_EQ(tell(root), Told({"version-keyword at #SerialVersion"}));
}

TEST_F(RewriteGuardTest, TellsOfANestedKeywordForTheVersion) {
  root.addGroup("g", false)->addItem("#SerialVersion", 0, 0)->addInt(1);
  EXPECT_EQ(tell(root), Told({"version-marker at g/#SerialVersion"}));
}

TEST_F(RewriteGuardTest, TellsOfAGroupWithANameOfItsOwn) {
  root.addGroup(new ParserGroup("camera"), false);
  checkTells(root, "camera#1", "group-name",
             "The group has a name besides that of its item, which is written before its brace and "
             "not read.");
}

TEST_F(RewriteGuardTest, TellsOfAValueBehindAGroup) {
  ParserItem& item = add("a");
  item.addInt(1);
  item.addGroup(nullptr);
  item.addInt(2);
  checkTells(root, "a#2", "value-behind-group",
             "The item has a value behind the group, where none is read.");
}

// --- Items and values ----------------------------------------------------------------------------

TEST_F(RewriteGuardTest, TellsOfAVersionMarkerInAString) {
  add("a").addString("see #SerialVersion 1.1");
  checkTells(root, "a#1", "version-marker",
             "'#SerialVersion ' makes the rest of its line a version line wherever it stands, also "
             "within a string.");
}

TEST_F(RewriteGuardTest, TellsOfAStringThatEndsInAnIncludeMarker) {
  add("a").addString("#include ");
  checkTells(root, "a#1", "include-marker",
             "'#include \"' is an include wherever it stands, also where the quote is the one that "
             "ends a string.");
}

TEST_F(RewriteGuardTest, TellsOfAKeywordThatMakesAnIncludeOfItsString) {
  add("#include").addString("x");
  EXPECT_EQ(tell(root), Told({"include-marker at #include"}));
}

TEST_F(RewriteGuardTest, TellsOfEveryIncludeMarkerThoughTheFirstEndsTheText) {
  add("a").addString("#include ");
  add("b").addString("#include ");
  EXPECT_EQ(tell(root), Told({"include-marker at a#1", "include-marker at b#1"}));
}

// --- Values --------------------------------------------------------------------------------------

TEST_F(RewriteGuardTest, TellsOfAStringThatEndsInABackslashBeforeAnotherWord) {
  ParserItem& item = add("a");
  item.addString("C:\\");
  item.addInt(1);
  checkTells(root, "a#1", "open-quote",
             "The string ends in a backslash, behind which the closing quote counts as escaped; "
             "other words follow on its line.");
}

TEST_F(RewriteGuardTest, TellsOfAnArgumentThatEndsInABackslash) {
  addUnchecked("f", ParserItem::ITEM_CALL).addString("\\");
  EXPECT_EQ(tell(root), Told({"open-quote at f#1"}));
}

TEST_F(RewriteGuardTest, TellsOfAZeroByteInAString) {
  add("a").addString(std::string("x\0y", 3));
  checkTells(root, "a#1", "zero-byte",
             "The value holds a zero byte, which ends the file when it is read.");
}

TEST_F(RewriteGuardTest, TellsOfAnIntThatCodeSet) {
  ParserItem& item = add("a");
  item.addInt(1);
  item.setInt(65, 0);
  checkTells(root, "a#1", "raw-byte",
             "The number was set by code and has no text; it is written as one raw byte.");
}

TEST_F(RewriteGuardTest, TellsOfAnIntThatCodeSetToTheByteOfADigit) {
  ParserItem& item = add("a");
  item.addInt(1);
  item.setInt('7', 0);
  EXPECT_EQ(tell(root), Told({"raw-byte at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfAZeroThatCodeSet) {
  ParserItem& item = add("a");
  item.addInt(1);
  item.setInt(0, 0);
  EXPECT_EQ(tell(root), Told({"raw-byte at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfARawByteAlsoWhenItWasWrittenBefore) {
  ParserItem& item = add("a");
  item.addDouble(1);
  item.setDouble(49.5, 0);
  std::string ignored;
  root.getText(ignored, false, true, 1);
  EXPECT_EQ(tell(root), Told({"raw-byte at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfNumbersFromBinaryData) {
  add("a").addInt(1);
  const std::vector<char> data = root.getBinary(false);
  ParserGroup decoded("decoded");
  unsigned long position = 0;
  decoded.setBinary(data, position);
  EXPECT_EQ(tell(decoded), Told({"raw-byte at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfACharacter) {
  add("a").addChar('x');
  checkTells(root, "a#1", "character",
             "The character is written as a number and read back as an integer.");
}

TEST_F(RewriteGuardTest, TellsOfInfinityAndNan) {
  add("a").addDouble(std::numeric_limits<double>::infinity());
  add("b").addDouble(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(tell(root), Told({"not-finite at a#1", "not-finite at b#1"}));
}

TEST_F(RewriteGuardTest, SaysWhyInfinityIsLost) {
  add("a").addDouble(std::numeric_limits<double>::infinity());
  checkTells(root, "a#1", "not-finite", "The number is not finite; its text is read as a name.");
}

TEST_F(RewriteGuardTest, TellsOfAnEmptyTagAsAValue) {
  addWord(add("a"), "<empty>", ParserValue::TYPE_EMPTY);
  checkTells(root, "a#1", "empty-tag", "The value is the empty tag, which is read as no value.");
}

TEST_F(RewriteGuardTest, TellsOfAQuoteInANumberBeforeAnotherWord) {
  ParserItem& item = add("a");
  addWord(item, "1\"", ParserValue::TYPE_INT);
  item.addInt(2);
  checkTells(root, "a#1", "number-quote",
             "The text of the value holds a double quote that is not closed; what follows is taken "
             "for a string.");
}

TEST_F(RewriteGuardTest, TellsOfAQuoteInANumberThatMakesACommentOfALaterString) {
  addWord(add("a"), "1\"", ParserValue::TYPE_INT);
  add("b").addString("http://x");
  EXPECT_EQ(tell(root), Told({"number-quote at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfACommentInANumber) {
  addWord(add("a"), "1//x", ParserValue::TYPE_INT);
  add("b").addInt(2);
  checkTells(root, "a#1", "number-comment",
             "The text of the value holds '//', which begins a comment.");
}

TEST_F(RewriteGuardTest, TellsOfATextThatIsNoValue) {
  addWord(add("a"), "true", ParserValue::TYPE_BOOL);
  checkTells(root, "a#1", "unreadable-text",
             "The text of the value is not one word that is read as the same value.");
}

TEST_F(RewriteGuardTest, TellsOfATextOfAnotherType) {
  addWord(add("a"), "1E5", ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(tell(root), Told({"unreadable-text at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfATextThatIsNotFiniteButNoName) {
  ParserItem& item = add("a");
  addWord(item, "-inf)", ParserValue::TYPE_DOUBLE);
  item.addInt(1);
  EXPECT_EQ(tell(root), Told({"unreadable-text at a#1"}));
}

TEST_F(RewriteGuardTest, TellsOfATextOfSeveralWords) {
  addWord(add("a"), "1 2", ParserValue::TYPE_INT);
  EXPECT_EQ(tell(root), Told({"unreadable-text at a#1"}));
}

// --- Paths ---------------------------------------------------------------------------------------

TEST_F(RewriteGuardTest, CountsItemsOfTheSameNameInTheirGroup) {
  root.addGroup("g", false);
  ParserGroup* second = root.addGroup("g", false);
  second->addItem("a", 0, 0)->addInt(1);
  second->addItem("a", 0, 0)->addChar('x');
  EXPECT_EQ(tell(root), Told({"character at g[2]/a[2]#1"}));
}

TEST_F(RewriteGuardTest, CountsANameThatEndsInANumberInBrackets) {
  add("a[2]").addChar('x');
  EXPECT_EQ(tell(root), Told({"character at a[2][1]#1"}));
}

TEST_F(RewriteGuardTest, NamesItemsAsTheSourceTreeDoes) {
  Quarry::SourceDocument document;
  document.setText("d",
                   "a 1\na 1\na[2] 1\na[0] 1\na[] 1\na[x] 1\na[99999999999999999999] 1\n#k 1\n");
  document.read("d");
  const Quarry::SourceTree tree(document);
  root.setText(document.getText(), 1.1);
  Told paths;
  for (unsigned long i = 0; i < tree.getItemCount(); ++i)
    paths.push_back("template at " + tree.getPath(i));
  for (unsigned long i = 0; i < root.getItemCount(); ++i)
    root.getItem(i)->setTemplate("t");
  root.getKeyword("#k")->setTemplate("t");
  EXPECT_EQ(tell(root), paths);
}

TEST_F(RewriteGuardTest, PointsToTheItemAndItsValue) {
  ParserItem& item = add("a");
  item.addInt(1);
  item.addChar('x');
  const std::vector<RewriteHazard> hazards = RewriteGuard::examine(root);
  EXPECT_EQ(hazards.at(0).item, &item);
  EXPECT_EQ(hazards.at(0).value, 1U);
}

TEST_F(RewriteGuardTest, PointsToNoValueWhereTheItemIsTheCause) {
  add("a").setTemplate("t");
  EXPECT_EQ(RewriteGuard::examine(root).at(0).value, RewriteHazard::NO_VALUE);
}

TEST_F(RewriteGuardTest, TellsInTheOrderOfTheText) {
  add("a").addChar('x');
  add("b").setTemplate("t");
  add("c").addChar('x');
  EXPECT_EQ(tell(root), Told({"character at a#1", "template at b", "character at c#1"}));
}

// --- What it leaves alone ------------------------------------------------------------------------

TEST_F(RewriteGuardTest, SaysNothingOnTheConsole) {
  const TestSupport::RecordingConsole console;
  root.addGroup(new ParserGroup("camera"), false);
  add("a").addString("#include ");
  RewriteGuard::examine(root);
  EXPECT_TRUE(console.isSilent());
}

TEST_F(RewriteGuardTest, GivesNoValueAText) {
  ParserItem& item = add("a");
  char byte = 'x';
  item.addInt(1);
  item.setInt(65, 0);
  item.addBinaryData(&byte, 1);
  RewriteGuard::examine(root);
  EXPECT_EQ(item.getWord(0) + item.getWord(1), "");
}

TEST_F(RewriteGuardTest, GivesARootKeywordForTheVersionNoValue) {
  const ParserItem& keyword = add("#SerialVersion");
  RewriteGuard::examine(root);
  EXPECT_EQ(keyword.getValueCount(), 0U);
}

/// The file holds what the include takes out of the text, so that all is read back by chance.
TEST_F(RewriteGuardTest, LooksIntoNoFileThatAStringIncludes) {
  const TestSupport::TemporaryFolder folder;
  const TestSupport::WorkingDirectory directory(folder.getPath());
  folder.write("\nb ", "#inc//\nlude \"\nb \"");
  ParserFile file;
  file.getRoot().addItem("a", 0, 0)->addString("#include ");
  file.getRoot().addItem("b", 0, 0)->addString("x");
  ASSERT_TRUE(file.write("document"));
  ParserFile again;
  ASSERT_TRUE(again.read("document"));
  EXPECT_EQ(TestSupport::describe(again.getRoot()), "a string:\"#include \"; b string:\"x\"");
  EXPECT_EQ(tell(file.getRoot()), Told({"include-marker at a#1"}));
}

TEST_F(RewriteGuardTest, ExaminesTheRootOfAFile) {
  ParserFile file;
  file.getRoot().addItem("a", 0, 0)->addChar('x');
  EXPECT_EQ(RewriteGuard::examine(file).at(0).path, "a#1");
}

// --- Large trees ---------------------------------------------------------------------------------

TEST_F(RewriteGuardTest, DepthTakesMemoryAndNotStack) {
  constexpr unsigned long DEPTH = 100000;
  root.setText(TestSupport::makeDeepText(DEPTH), 1.1);
  add("a").addChar('x');
  EXPECT_EQ(tell(root), Told({"character at a#1"}));
}

TEST_F(RewriteGuardTest, TheTimeGrowsWithTheNumberOfItems) {
  const auto make = [](unsigned long count) {
    auto made = std::make_unique<ParserGroup>("root");
    for (unsigned long i = 0; i < count; ++i)
      made->addItem("a", 0, 0)->addChar('x');
    return made;
  };
  TestSupport::checkTakesLinearTime(1000, make,
                                    [](const auto& made) { RewriteGuard::examine(*made); });
}

TEST_F(RewriteGuardTest, TheTimeGrowsWithTheDepth) {
  const auto make = [](unsigned long depth) {
    return TestSupport::readText(TestSupport::makeDeepText(depth));
  };
  TestSupport::checkTakesLinearTime(4000, make,
                                    [](const auto& made) { RewriteGuard::examine(*made); });
}

// --- Kinds ---------------------------------------------------------------------------------------

TEST(RewriteHazardTest, EveryKindHasANameOfItsOwn) {
  std::set<std::string> names;
  for (const RewriteHazard::Kind kind : Quarry::getHazardKinds())
    names.insert(Quarry::getHazardName(kind));
  EXPECT_EQ(names.size(), Quarry::getHazardKinds().size());
}

TEST(RewriteHazardTest, KindsStandInTheOrderOfTheirNumbers) {
  const std::vector<RewriteHazard::Kind>& kinds = Quarry::getHazardKinds();
  ASSERT_EQ(kinds.size(), RewriteHazard::UNEXPLAINED + 1U);
  for (unsigned long i = 0; i < kinds.size(); ++i)
    EXPECT_EQ(static_cast<unsigned long>(kinds[i]), i);
}

TEST(RewriteHazardTest, WhatNothingExplainsHasAReasonToo) {
  EXPECT_STREQ(Quarry::getHazardReason(RewriteHazard::UNEXPLAINED),
               "It is not read back as it is.");
}

}  // namespace
