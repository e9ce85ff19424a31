// What the grammar does with words that no text gives: with templates, array sizes and braces.

#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/TreeBuilder.h>
#include <Quarry/internal/WordEditor.h>
#include <gmock/gmock.h>

#include <deque>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserWord;
using Quarry::TextParser;
using Quarry::TreeBuilder;
using Quarry::WordEditor;
using testing::ElementsAre;
using TestSupport::describe;
using TestSupport::RecordingConsole;

namespace {

/// A source of words that no text can give.
class WordList {
 public:
  ParserWord& add(const std::string& text) {
    texts.push_back(text);
    words.emplace_back(texts.back(), true, 1.1);
    return words.back();
  }

  void addTemplate(const std::string& text, const ParserWord& templateWord) {
    WordEditor(add(text)).setTemplateWord(templateWord);
  }

  void addArray(const std::string& text, unsigned long size) {
    WordEditor(add(text)).setArraySize(size);
  }

  void addBrace(const std::string& text) { WordEditor(add(text)).setType(ParserWord::WORD_BRACE); }

  void addAll(const std::vector<std::string>& several) {
    for (const std::string& text : several)
      add(text);
  }

  ParserWord& getLast() { return words.back(); }

  bool isExhausted() const { return position == words.size(); }
  const ParserWord* next() { return isExhausted() ? nullptr : &words[position++]; }

 private:
  std::deque<std::string> texts;
  std::deque<ParserWord> words;
  std::size_t position = 0;
};

void build(WordList& words, ParserGroup& root) {
  TreeBuilder builder(root);
  TextParser(words, builder).parse();
}

}  // namespace

TEST(TextParserWordTest, AWordWithATemplateNamesTheItemsTemplate) {
  WordList words;
  const std::string name = "curve";
  words.addTemplate("a", ParserWord(name, true, 1.1));
  words.add("1");
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(root.getItem("a")->getTemplate(), "curve");
}

TEST(TextParserWordTest, AWordWithoutATemplateMakesNoTemplateInstance) {
  WordList words;
  words.addAll({"a", "1"});
  ParserGroup root("root");
  build(words, root);
  EXPECT_FALSE(root.getItem("a")->isTemplate());
}

TEST(TextParserWordTest, ATemplateInsideATemplateIsDroppedAndTheItemStays) {
  WordList words;
  const std::string inner = "inner";
  const std::string outer = "outer";
  ParserWord templateWord(outer, true, 1.1);
  WordEditor(templateWord).setTemplateWord(ParserWord(inner, true, 1.1));
  words.add("a");
  words.addTemplate("b", templateWord);
  words.add("1");
  const RecordingConsole console;
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(describe(root), "a int:1");
}

TEST(TextParserWordTest, ATemplateInsideATemplateGivesItsWarning) {
  WordList words;
  const std::string name = "t";
  ParserWord templateWord(name, true, 1.1);
  WordEditor(templateWord).setTemplateWord(ParserWord(name, true, 1.1));
  words.addTemplate("b", templateWord);
  const RecordingConsole console;
  ParserGroup root("root");
  build(words, root);
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("ParserGroup::setText: (0:0) item 'b' has template inside template "
                          "declaration.\n"));
}

TEST(TextParserWordTest, AWordWithAnArraySizeMakesTheItemAnArray) {
  WordList words;
  words.addArray("a", 3);
  words.add("1");
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(root.getItem("a")->getArrayCount(), 3U);
}

TEST(TextParserWordTest, AWordWithArraySizeZeroMakesAnArrayOfUnspecifiedSize) {
  WordList words;
  words.addArray("a", 0);
  words.add("1");
  ParserGroup root("root");
  build(words, root);
  EXPECT_TRUE(root.getItem("a")->isArray());
  EXPECT_EQ(root.getItem("a")->getArrayCount(), 0U);
}

TEST(TextParserWordTest, AWordWithoutAnArraySizeMakesNoArray) {
  WordList words;
  words.addAll({"a", "1"});
  ParserGroup root("root");
  build(words, root);
  EXPECT_FALSE(root.getItem("a")->isArray());
}

TEST(TextParserWordTest, ABracedItemHoldsItsGroup) {
  WordList words;
  words.addBrace("g");
  words.addAll({"x", "1", "}", "y", "2"});
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(describe(root), "g {x int:1}; y int:2");
}

TEST(TextParserWordTest, ABracedItemLeavesTheCurrentItemCurrent) {
  WordList words;
  words.addAll({"a", "1"});
  words.addBrace("g");
  words.addAll({"x", "2", "}", "3"});
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(describe(root), "a int:1 int:3; g {x int:2}");
}

TEST(TextParserWordTest, ABracedItemLeavesThePreviousWordInForce) {
  WordList words;
  words.addAll({"a", "1"});
  words.addBrace("g");
  words.addAll({"}", ",", "2"});
  const RecordingConsole console;
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(describe(root), "a int:1 int:2; g {}");
  EXPECT_TRUE(console.isSilent());
}

TEST(TextParserWordTest, ABracedItemBehindANameLeavesTheNameWithoutAValue) {
  WordList words;
  words.add("a");
  words.addBrace("g");
  words.addAll({"}", "b", "1"});
  const RecordingConsole console;
  ParserGroup root("root");
  build(words, root);
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("ParserGroup::setText: (0:0) item 'b' has no value.\n"));
}

TEST(TextParserWordTest, ABracedItemBehindAValueLeavesTheItemWithoutArguments) {
  WordList words;
  words.addAll({"a", "1"});
  words.addBrace("g");
  words.addAll({"}", "(", "b", "2"});
  const RecordingConsole console;
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(describe(root), "a int:1; g {}; b int:2");
  EXPECT_EQ(console.getWarnings().size(), 1U);
}

TEST(TextParserWordTest, ABracedItemTakesItsArraySize) {
  WordList words;
  words.addArray("g", 7);
  WordEditor(words.getLast()).setType(ParserWord::WORD_BRACE);
  words.add("}");
  ParserGroup root("root");
  build(words, root);
  EXPECT_EQ(root.getItem("g")->getArrayCount(), 7U);
}
