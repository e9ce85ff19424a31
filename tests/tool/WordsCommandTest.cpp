#include <gtest/gtest.h>

#include "ToolProcess.h"

namespace ToolTest {

namespace {

void checkWords(const std::string& text, const std::string& expected) {
  EXPECT_EQ(runTool({"words", "-"}, text), (Result{0, expected, ""}));
}

}  // namespace

TEST(WordsCommandTest, AWordIsALineWithPlaceKindAndSpelling) {
  checkWords("size=1920\n",
             "1:0       identifier  size\n"
             "1:4       operator    =\n"
             "1:6       int         1920\n");
}

TEST(WordsCommandTest, EveryKindOfValueIsNamed) {
  checkWords("yes,1,2.5,\"x y\",0x00,<empty>,",
             "1:0       bool        yes\n"
             "1:3       separator   ,\n"
             "1:4       int         1\n"
             "1:5       separator   ,\n"
             "1:6       double      2.5\n"
             "1:9       separator   ,\n"
             "1:10      string      \"x y\"\n"
             "1:15      separator   ,\n"
             "1:16      binary data 0x00\n"
             "1:20      separator   ,\n"
             "1:21      empty tag   <empty>\n"
             "1:28      separator   ,\n");
}

TEST(WordsCommandTest, BracesAndParenthesesAreNamed) {
  checkWords("{}()",
             "1:0       brace       {\n"
             "1:1       brace       }\n"
             "1:2       parenthesis (\n"
             "1:3       parenthesis )\n");
}

TEST(WordsCommandTest, AKeywordIsNamed) { checkWords("#k", "1:0       keyword     #k\n"); }

TEST(WordsCommandTest, WhatNobodyKnowsIsNoFinding) {
  checkWords("?,", "1:0       unknown     ?\n1:1       separator   ,\n");
}

TEST(WordsCommandTest, PlacesCountInThePreprocessedText) {
  checkWords("a // one\nb\n\nc,",
             "1:1       identifier  a\n"
             "1:3       identifier  b\n"
             "3:0       identifier  c\n"
             "3:1       separator   ,\n");
}

TEST(WordsCommandTest, ColorsCanBeAskedFor) {
  EXPECT_EQ(runTool({"words", "--color=always", "-"}, "yes,").output,
            "1:0       \033[2mbool        \033[0m\033[33myes\033[0m\n"
            "1:3       \033[2mseparator   \033[0m\033[2m,\033[0m\n");
}

}  // namespace ToolTest
