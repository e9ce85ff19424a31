// Texts that still have their comments: they are cut as if the comments had been removed before.

#include <Quarry/internal/Comments.h>
#include <Quarry/internal/WordCutter.h>
#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

#include "support/DescribeWords.h"
#include "support/PlainPreprocessor.h"

using Quarry::Comments;
using Quarry::isFreeOfComments;
using Quarry::passComments;
using Quarry::removeComments;
using Quarry::TextWord;
using Quarry::WordCutter;
using testing::ElementsAre;
using TestSupport::describeWords;

namespace {

/// Returns what the rules of preprocessing make of a text without directives.
std::string withoutComments(const std::string& text) {
  const TestSupport::Files files = {{"file", text}};
  std::string clean;
  TestSupport::PlainPreprocessor(files).process("file", clean);
  return clean;
}

void checkWords(const std::string& text) {
  const std::string clean = withoutComments(text);
  WordCutter expected(clean, 1.1);
  std::string commented = text;
  WordCutter cutter(commented, 1.1, 0, Comments::LEFT);
  ASSERT_EQ(describeWords(cutter), describeWords(expected)) << text;
}

/// Checks a text, also where much is left behind its words, so that they are cut the quick way.
void checkText(const std::string& text) {
  checkWords(text);
  checkWords(text + "\n" + std::string(80, ' '));
  checkWords(text + "\n" + std::string(80, 'a'));
  checkWords(text + "\n//" + std::string(80, 'c'));
}

void checkGenerated(const std::vector<std::string>& pieces, unsigned seed) {
  std::mt19937 random(seed);
  for (int i = 0; i < 20000 && !testing::Test::HasFatalFailure(); ++i) {
    std::string text;
    for (auto left = random() % 16; left > 0; --left)
      text += pieces[random() % pieces.size()];
    checkText(text);
  }
}

/// Returns the words of a text that still has its comments, each with its line and column.
std::vector<std::string> cut(std::string text) {
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  std::vector<std::string> words;
  while (const TextWord* word = cutter.next()) {
    words.push_back(std::to_string(word->getLine()) + ":" + std::to_string(word->getColumn()) +
                    " " + std::string(word->begin(), word->end()));
  }
  return words;
}

/// Returns what is left of a text.
std::string uncomment(std::string text, std::size_t begin = 0) {
  const std::size_t length = text.size();
  const std::size_t left = removeComments(text, begin);
  EXPECT_EQ(text.size(), length);
  EXPECT_EQ(text.c_str()[left], '\0');
  return text.substr(0, left);
}

std::size_t findBehindComments(const std::string& text) {
  const char* begin = text.data();
  return static_cast<std::size_t>(passComments(begin, begin + text.size()) - begin);
}

}  // namespace

// --- Comments ------------------------------------------------------------------------------------

TEST(PassCommentsTest, WithoutACommentNothingIsPassed) {
  EXPECT_EQ(findBehindComments(""), 0U);
  EXPECT_EQ(findBehindComments("a//b\n"), 0U);
  EXPECT_EQ(findBehindComments("/ /b\n"), 0U);
  EXPECT_EQ(findBehindComments("/"), 0U);
}

TEST(PassCommentsTest, ACommentIsPassedWithItsLineFeed) {
  EXPECT_EQ(findBehindComments("// a\nb"), 5U);
}

TEST(PassCommentsTest, ACarriageReturnEndsNoComment) {
  EXPECT_EQ(findBehindComments("// a\rb\nc"), 7U);
}

TEST(PassCommentsTest, ACommentMayEndWithTheText) {
  EXPECT_EQ(findBehindComments("//"), 2U);
  EXPECT_EQ(findBehindComments("// a"), 4U);
}

TEST(PassCommentsTest, CommentsOneBehindAnotherArePassed) {
  EXPECT_EQ(findBehindComments("//a\n//b\n /"), 8U);
}

TEST(IsFreeOfCommentsTest, AWordWithoutSlashesAndQuotesIs) {
  EXPECT_TRUE(isFreeOfComments(""));
  EXPECT_TRUE(isFreeOfComments("name\\"));
}

TEST(IsFreeOfCommentsTest, OneSlashBeginsNoComment) {
  EXPECT_TRUE(isFreeOfComments("/"));
  EXPECT_TRUE(isFreeOfComments("a/b/"));
}

TEST(IsFreeOfCommentsTest, TwoSlashesBeginOne) {
  EXPECT_FALSE(isFreeOfComments("//"));
  EXPECT_FALSE(isFreeOfComments("a//b"));
  EXPECT_FALSE(isFreeOfComments("\"a\"//"));
}

TEST(IsFreeOfCommentsTest, TwoSlashesInAStringDoNot) {
  EXPECT_TRUE(isFreeOfComments("\"a//b\""));
  EXPECT_TRUE(isFreeOfComments("a\"//\"b"));
  EXPECT_TRUE(isFreeOfComments("\"\\\"//\""));
}

TEST(IsFreeOfCommentsTest, AnUnclosedStringMayHideTheNext) {
  EXPECT_FALSE(isFreeOfComments("\""));
  EXPECT_FALSE(isFreeOfComments("\"a\\\""));
}

TEST(IsFreeOfCommentsTest, AnEscapedBackslashDoesNotEscapeAQuote) {
  EXPECT_TRUE(isFreeOfComments("\"a\\\\\""));
  EXPECT_FALSE(isFreeOfComments("\"a\\\\\"//"));
}

TEST(IsFreeOfCommentsTest, AnEscapedQuoteOutsideAStringBeginsNone) {
  EXPECT_TRUE(isFreeOfComments("\\\""));
  EXPECT_FALSE(isFreeOfComments("\\\"//"));
}

TEST(RemoveCommentsTest, WithoutCommentsTheTextStays) {
  EXPECT_EQ(uncomment(""), "");
  EXPECT_EQ(uncomment("a / \"b//c\"\n"), "a / \"b//c\"\n");
}

TEST(RemoveCommentsTest, LinesJoin) { EXPECT_EQ(uncomment("a//b\nc // d\n e//f"), "ac  e"); }

TEST(RemoveCommentsTest, WhatIsBeforeTheBeginningStays) {
  EXPECT_EQ(uncomment("//a\n\"b//c\n\"//d\"", 5), "//a\n\"b\"//d\"");
}

TEST(RemoveCommentsTest, ANumberSignStays) { EXPECT_EQ(uncomment("#a // b\n#c"), "#a #c"); }

TEST(RemoveCommentsTest, BackslashesAroundACommentCountTogether) {
  EXPECT_EQ(uncomment("\\//a\n\\\"//b"), "\\\\\"//b");
}

// --- Words ---------------------------------------------------------------------------------------

TEST(CommentedTextTest, ACommentIsNoWord) {
  EXPECT_THAT(cut("// a\nb"), ElementsAre("1:0 b"));
  EXPECT_THAT(cut("// a"), ElementsAre());
  EXPECT_THAT(cut("a // b"), ElementsAre("1:1 a"));
}

TEST(CommentedTextTest, TheLineGoesOnBehindAComment) {
  EXPECT_THAT(cut("a // b\n  // c\nd\ne"), ElementsAre("1:1 a", "1:5 d", "2:0 e"));
}

TEST(CommentedTextTest, NothingIsMovedForACommentThatBeginsWhereAWordWould) {
  const std::string written = "a // b\n// c\n  d \"//\" // e\n" + std::string(80, ' ') + "// f";
  std::string text = written;
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  while (cutter.next() != nullptr) {
  }
  EXPECT_EQ(text, written);
}

TEST(CommentedTextTest, AWordGoesOnBehindAComment) {
  EXPECT_THAT(cut("one two//x\nthree four//y\n//z\n\n5"),
              ElementsAre("1:1 one", "1:5 twothree", "1:14 four", "2:0 5"));
}

TEST(CommentedTextTest, ANumberGoesOnBehindAComment) {
  EXPECT_THAT(cut("12//x\n34 " + std::string(80, ' ')), ElementsAre("1:1 1234"));
}

TEST(CommentedTextTest, SlashesInAStringBeginNoComment) {
  EXPECT_THAT(cut("\"a//b\" \"\\\"//\"" + std::string(80, ' ')),
              ElementsAre("1:1 \"a//b\"", "1:8 \"\\\"//\""));
}

TEST(CommentedTextTest, AStringThatALineBreakEndsHidesACommentBehindIt) {
  EXPECT_THAT(cut("\"a\n//b \" //c\nd"), ElementsAre("1:1 \"a", "2:1 //b", "2:4 \" d"));
}

// To the cutter a quote behind two backslashes belongs to the string; to a comment it ends it.
TEST(CommentedTextTest, AnEscapedBackslashBeforeAQuoteIsSeenBothWays) {
  EXPECT_THAT(cut("\"a\\\\\" //b\n\" c" + std::string(80, ' ')),
              ElementsAre("1:1 \"a\\\\\" \"", "1:9 c"));
}

TEST(CommentedTextTest, AStringWithABackslashHasEscapes) {
  std::string text = "\"a\\n//b\" //c\n \"\\\"//\"" + std::string(80, ' ');
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  EXPECT_TRUE(cutter.next()->hasEscapes());
  EXPECT_TRUE(cutter.next()->hasEscapes());
}

TEST(CommentedTextTest, ATextIsExhaustedThatGoesOnWithCommentsOnly) {
  std::string text = "a //b\n//c\n//" + std::string(80, 'd');
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  EXPECT_FALSE(cutter.isExhausted());
  cutter.next();
  EXPECT_TRUE(cutter.isExhausted());
}

TEST(CommentedTextTest, ATextOfCommentsOnlyIsExhausted) {
  std::string text = "//a\n//b\n";
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  EXPECT_TRUE(cutter.isExhausted());
}

TEST(CommentedTextTest, ATextIsNotExhaustedThatHasABlankBehindAComment) {
  std::string text = "a //b\n ";
  WordCutter cutter(text, 1.1, 0, Comments::LEFT);
  cutter.next();
  EXPECT_FALSE(cutter.isExhausted());
}

TEST(CommentedTextTest, ATextWithoutCommentsMayHaveSlashesAnywhere) {
  const std::string text = "a //b\n\"c\n//d";
  WordCutter cutter(text, 1.1);
  std::vector<std::string> words;
  while (const TextWord* word = cutter.next())
    words.emplace_back(word->begin(), word->end());
  EXPECT_THAT(words, ElementsAre("a", "//b", "\"c", "//d"));
}

TEST(CommentedTextTest, ManyCommentsTakeNoStack) {
  std::string text;
  for (int i = 0; i < 300000; ++i)
    text += "  // c\n";
  EXPECT_THAT(cut(text + "a"), ElementsAre("1:600000 a"));
}

TEST(CommentedTextTest, WordsAndCommentsInAnyOrder) {
  checkGenerated({"a", "name ", "5", "-1.5", "1/2", "/", "//", "// c\n", "//c", "\n", "\r", " ",
                  "\t", "{", "}", ",", "=", "<empty>", "#k"},
                 1);
}

TEST(CommentedTextTest, StringsAndCommentsInAnyOrder) {
  checkGenerated({"\"", "\\", "\\\"", "\\\\\"", "\"s\"", "\"a//b\"", "//", "// \"c\n", "\n", " ",
                  "a", "{", "/", "\"a b\" "},
                 2);
}
