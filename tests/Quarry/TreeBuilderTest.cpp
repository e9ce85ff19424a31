// The tree while it is being read: whoever looks at it, at a warning or after an exception, finds
// all that stands before.

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/TreeBuilder.h>
#include <Quarry/internal/WordEditor.h>
#include <gmock/gmock.h>

#include <deque>
#include <memory>
#include <stdexcept>
#include <string>

#include "TreeViews.h"
#include "support/Documents.h"

using Plinth::Console;
using Quarry::ParserGroup;
using Quarry::ParserWord;
using Quarry::TextParser;
using Quarry::TreeBuilder;
using Quarry::WordEditor;
using testing::ElementsAre;
using TestSupport::describe;
using namespace TreeViews;

// --- Places for values ---------------------------------------------------------------------------

namespace {

/// Returns what stands behind an item's name: so many values, as text or as a description.
std::string makeValues(int count, const std::string& before) {
  std::string values;
  for (int i = 0; i < count; ++i)
    values += before + std::to_string(i);
  return values;
}

}  // namespace

TEST(TreeBuilderTest, ItemsHaveTheirValuesWhateverTheOneBeforeHad) {
  constexpr int MANY = 20;
  for (int first = 1; first < MANY; ++first) {
    for (int second = 1; second < MANY; ++second) {
      const std::string text =
          "a" + makeValues(first, " ") + "\nb" + makeValues(second, " ") + "\n";
      const std::string tree =
          "a" + makeValues(first, " int:") + "; b" + makeValues(second, " int:");
      EXPECT_THAT(watch(text), ElementsAre(tree));
    }
  }
}

TEST(TreeBuilderTest, AGroupFollowsValuesWhateverTheItemBeforeHad) {
  for (int first = 1; first < 20; ++first) {
    EXPECT_THAT(watch("a" + makeValues(first, " ") + "\nb 1 2 { c 3 }"),
                ElementsAre("a" + makeValues(first, " int:") + "; b int:1 int:2 {c int:3}"));
  }
}

TEST(TreeBuilderTest, EscapedStringsAndBlocksStandInOrderAmongValuesThatFindNoPlace) {
  EXPECT_THAT(
      watch("a 1 2 \"\\n\" 3 4 \"x\" \"\\t\" 5"),
      ElementsAre("a int:1 int:2 string:\"\n\" int:3 int:4 string:\"x\" string:\"\t\" int:5"));
}

// --- At a warning --------------------------------------------------------------------------------

TEST(TreeBuilderTest, AtAWarningTheItemAndItsValuesAreThere) {
  EXPECT_THAT(watch("a 1 2 / b 3"), ElementsAre("a int:1 int:2", "a int:1 int:2; b int:3"));
}

TEST(TreeBuilderTest, ValuesAfterAWarningFollowThoseBeforeIt) {
  EXPECT_THAT(watch("a 1 \"x\" / 2 \"y\""),
              ElementsAre("a int:1 string:\"x\"", "a int:1 string:\"x\" int:2 string:\"y\""));
}

TEST(TreeBuilderTest, AtAWarningAnItemWithoutValuesIsThere) {
  EXPECT_THAT(watch("a b 1"), ElementsAre("a", "a int:1"));
}

TEST(TreeBuilderTest, AtAWarningTheGroupsAroundAreThere) {
  EXPECT_THAT(
      watch("a 0 { b 1 { c 2 / 3 } } d 4"),
      ElementsAre("a int:0 {b int:1 {c int:2}}", "a int:0 {b int:1 {c int:2 int:3}}; d int:4"));
}

TEST(TreeBuilderTest, AtAWarningInAnArgumentListTheCallIsThere) {
  EXPECT_THAT(watch("f(1 / 2) g 3"), ElementsAre("f(int:1)", "f(int:1 int:2); g int:3"));
}

TEST(TreeBuilderTest, AWarningBeforeAnArgumentListLeavesTheItemACall) {
  EXPECT_THAT(watch("f / (1)"), ElementsAre("f", "f(int:1)"));
}

TEST(TreeBuilderTest, AWarningBeforeAGroupLeavesTheGroupToTheItem) {
  EXPECT_THAT(watch("a 1 / { b 2 }"), ElementsAre("a int:1", "a int:1 {b int:2}"));
}

TEST(TreeBuilderTest, AtEachOfSeveralWarningsTheTreeIsComplete) {
  EXPECT_THAT(watch("a 1 / 2 / 3"), ElementsAre("a int:1", "a int:1 int:2", "a int:1 int:2 int:3"));
}

TEST(TreeBuilderTest, AtAWarningALongListIsThere) {
  std::string text = "a";
  std::string tree = "a";
  for (int i = 0; i < 3000; ++i) {
    text += " 7";
    tree += " int:7";
  }
  EXPECT_THAT(watch(text + " / 8"), ElementsAre(tree, tree + " int:8"));
}

TEST(TreeBuilderTest, AtAWarningAKeywordIsFound) {
  ParserGroup root("root");
  int found = 0;
  const ConsoleHandler handler([&](Console::Level, const std::string&, const std::string&) {
    found = root.getKeyword("#format")->getInt(0);
  });
  root.setText("a 1 #format 3 / b 2", 1.1);
  EXPECT_EQ(found, 3);
}

// --- After an exception --------------------------------------------------------------------------

namespace {

/// Reads a text with a console that throws, into a group that may hold items already.
void readUntilWarning(ParserGroup& root, const std::string& text) {
  const ConsoleHandler handler([](Console::Level, const std::string& message, const std::string&) {
    throw std::runtime_error(message);
  });
  EXPECT_THROW(root.setText(text, 1.1), std::runtime_error);
}

}  // namespace

TEST(TreeBuilderTest, AfterAnExceptionAllThatStandsBeforeIsThere) {
  ParserGroup root("root");
  readUntilWarning(root, "a 1 b 2 \"x\" / 3 c 4");
  EXPECT_EQ(describe(root), "a int:1; b int:2 string:\"x\"");
}

TEST(TreeBuilderTest, AfterAnExceptionTheGroupsAroundAreThere) {
  ParserGroup root("root");
  readUntilWarning(root, "a 1 { b 2 { c 3 d 0x00 / } }");
  EXPECT_EQ(describe(root), "a int:1 {b int:2 {c int:3; d binary:}}");
}

TEST(TreeBuilderTest, AfterAnExceptionTheGroupReadsOn) {
  ParserGroup root("root");
  readUntilWarning(root, "a 1 /");
  root.setText("b 2", 1.1);
  EXPECT_EQ(describe(root), "a int:1; b int:2");
}

TEST(TreeBuilderTest, AfterAnExceptionItemsAreFoundByName) {
  ParserGroup root("root");
  readUntilWarning(root, "a 1 #k 2 f(3 /");
  EXPECT_EQ(root.getItem("f")->getInt(0), 3);
  EXPECT_EQ(root.getKeyword("#k")->getInt(0), 2);
}

// --- Words that no text gives --------------------------------------------------------------------

namespace {

/// A source of words with templates, array sizes and braces.
class WordList {
 public:
  WordList& add(const std::string& text) {
    texts.push_back(text);
    words.emplace_back(texts.back(), true, 1.1);
    return *this;
  }
  WordList& addTemplate(const std::string& text, const std::string& name) {
    texts.push_back(name);
    const ParserWord templateWord(texts.back(), true, 1.1);
    WordEditor(add(text).words.back()).setTemplateWord(templateWord);
    return *this;
  }
  WordList& addArray(const std::string& text, unsigned long size) {
    WordEditor(add(text).words.back()).setArraySize(size);
    return *this;
  }
  WordList& addBrace(const std::string& text) {
    WordEditor(add(text).words.back()).setType(ParserWord::WORD_BRACE);
    return *this;
  }

  bool isExhausted() const { return position == words.size(); }
  const ParserWord* next() { return isExhausted() ? nullptr : &words[position++]; }

  std::unique_ptr<ParserGroup> build(bool way) {
    auto root = std::make_unique<ParserGroup>("root");
    TreeBuilder builder(*root, way);
    TextParser(*this, builder).parse();
    builder.completeItem();
    return root;
  }

 private:
  std::deque<std::string> texts;
  std::deque<ParserWord> words;
  std::size_t position = 0;
};

/// Builds the words both ways and expects one tree, which is returned.
std::unique_ptr<ParserGroup> build(const WordList& words, const std::string& expected) {
  std::unique_ptr<ParserGroup> careful = WordList(words).build(CAREFUL);
  EXPECT_EQ(describe(*careful), expected);
  std::unique_ptr<ParserGroup> quick = WordList(words).build(QUICK);
  EXPECT_EQ(describe(*quick), expected);
  return quick;
}

}  // namespace

TEST(TreeBuilderTest, AnItemWithATemplateHasItAndItsValues) {
  WordList words;
  words.add("z").add("0").addTemplate("a", "curve").add("1").add("\"x\"").add("b").add("2");
  const auto root = build(words, "z int:0; a int:1 string:\"x\"; b int:2");
  EXPECT_EQ(root->getItem("a")->getTemplate(), "curve");
  EXPECT_FALSE(root->getItem("z")->isTemplate());
  EXPECT_FALSE(root->getItem("b")->isTemplate());
}

TEST(TreeBuilderTest, AnItemWithAnArraySizeHasItAndItsValues) {
  WordList words;
  words.addArray("a", 2).add("1").add("2").add("b").add("3");
  const auto root = build(words, "a int:1 int:2; b int:3");
  EXPECT_EQ(root->getItem("a")->getArrayCount(), 2U);
  EXPECT_FALSE(root->getItem("b")->isArray());
}

TEST(TreeBuilderTest, ACallWithATemplateHasBoth) {
  WordList words;
  words.addTemplate("f", "curve").add("(").add("1").add(")").add("b").add("2");
  const auto root = build(words, "f(int:1); b int:2");
  EXPECT_EQ(root->getItem("f")->getTemplate(), "curve");
}

TEST(TreeBuilderTest, AGroupWithAnArraySizeHasBoth) {
  WordList words;
  words.addArray("g", 0).add("{").add("x").add("1").add("}").add("b").add("2");
  const auto root = build(words, "g {x int:1}; b int:2");
  EXPECT_EQ(root->getItem("g")->getArrayCount(), 0U);
}

TEST(TreeBuilderTest, ValuesAfterABracedItemFollowThoseOfTheItemBeforeIt) {
  WordList words;
  words.add("a").add("1").addBrace("g").add("x").add("2").add("\"y\"").add("}").add("3");
  words.add("\"z\"").add("b").add("4");
  build(words, "a int:1 int:3 string:\"z\"; g {x int:2 string:\"y\"}; b int:4");
}

TEST(TreeBuilderTest, ABracedItemWithinAnotherLeavesEachItemItsValues) {
  WordList words;
  words.add("a").add("1").addBrace("g").add("x").add("2").addBrace("h").add("y").add("3");
  words.add("}").add("4").add("}").add("5");
  build(words, "a int:1 int:5; g {x int:2 int:4; h {y int:3}}");
}

TEST(TreeBuilderTest, AGroupWithinABracedItemLeavesTheItemBeforeThatItsValues) {
  WordList words;
  words.add("a").add("1").addBrace("g").add("h").add("{").add("x").add("2").add("}");
  words.add("y").add("3").add("}").add("4");
  build(words, "a int:1 int:4; g {h {x int:2}; y int:3}");
}

TEST(TreeBuilderTest, ABracedItemBehindANameLeavesTheNameItsValues) {
  WordList words;
  words.add("a").addBrace("g").add("}").add("1");
  build(words, "a int:1; g {}");
}

TEST(TreeBuilderTest, ABracedItemBehindANameLeavesTheItemItsArgumentList) {
  WordList words;
  words.add("f").addBrace("g").add("}").add("(").add("1").add(")");
  build(words, "f(int:1); g {}");
}
