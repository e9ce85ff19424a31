// Words as they are cut for the tree: the kinds that show by their first byte and those that turn
// out otherwise, long ones, deep indentations, and texts that begin within a string.

#include <Quarry/internal/WordCutter.h>
#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

#include "WordCutting.h"

using Quarry::ParserWord;
using Quarry::TextWord;
using Quarry::WordCutter;
using testing::ElementsAre;
using WordCutting::checkText;

namespace {

/// So many bytes behind a word that it is cut the quick way.
std::string behind() { return "\n" + std::string(80, ' '); }

/// Returns what the only word of a text is.
ParserWord::Type typeOf(const std::string& word) {
  const std::string text = word + behind();
  WordCutter cutter(text, 1.1);
  return cutter.next()->getType();
}

std::vector<std::string> cut(const std::string& text, std::size_t begin = 0) {
  WordCutter cutter(text, 1.1, begin);
  std::vector<std::string> words;
  while (const TextWord* word = cutter.next())
    words.emplace_back(word->begin(), word->end());
  return words;
}

std::string makeText(std::mt19937& random, unsigned long parts) {
  const std::vector<std::string> kinds = {"a",
                                          "yes",
                                          "no",
                                          "yesno",
                                          "x_1-2.3:4%[5]",
                                          "a/b",
                                          "a\xC3\xA9",
                                          "#k",
                                          "#1",
                                          "0",
                                          "-12",
                                          "3.25",
                                          "1e5",
                                          "0x0A",
                                          "0X1",
                                          "00",
                                          "-",
                                          "-x",
                                          "1/2",
                                          "12345678901234567890.5",
                                          "\"s\"",
                                          "\"a b{c}\"",
                                          "\"\\\"\"",
                                          "\"\\\\\"",
                                          "\"open",
                                          "\"",
                                          "<empty>",
                                          "<empt>",
                                          "inf",
                                          ".5",
                                          "+1",
                                          "a_name_of_more_than_sixteen_bytes",
                                          "\"a string of more than sixteen bytes\"",
                                          "n",
                                          "ye"};
  const std::vector<std::string> betweens = {" ",  "\n", "\n    ", "\n        ", "  ",
                                             "\t", "{",  "}",      "(",          ")",
                                             ",",  "=",  "",       "\r\n",       "\n\n"};
  std::string text;
  for (unsigned long i = 0; i < parts; ++i)
    text += kinds[random() % kinds.size()] + betweens[random() % betweens.size()];
  return text;
}

}  // namespace

// --- All texts -----------------------------------------------------------------------------------

TEST(WordCutterTest, RandomTextsAreCutAndClassifiedAsByteByByte) {
  std::mt19937 random(1);
  for (int i = 0; i < 3000; ++i) {
    checkText(makeText(random, 1 + random() % 40));
    if (HasFatalFailure()) return;
  }
}

TEST(WordCutterTest, EveryByteAtEveryPlaceOfAWordIsCutAndClassifiedAsByteByByte) {
  for (const char* const word :
       {"name", "-12.5e3", "\"text\"", "a_name_of_17_byte", "yes", "0x0A", "<empty>"}) {
    for (unsigned long place = 0; place <= std::string(word).size(); ++place) {
      for (int byte = 0; byte < 256; ++byte) {
        checkText(std::string(word).insert(place, 1, static_cast<char>(byte)) + " 1\n");
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(WordCutterTest, LinesOfEveryIndentationBehindOneOfAnyOther) {
  for (unsigned long first = 0; first < 70; ++first) {
    for (unsigned long second = 0; second < 70; ++second) {
      checkText("\n" + std::string(first, ' ') + "a 1\n" + std::string(second, ' ') + "b 2\n");
      if (HasFatalFailure()) return;
    }
  }
}

TEST(WordCutterTest, WordsOfEveryLength) {
  for (unsigned long length = 1; length < 70; ++length) {
    checkText(std::string(length, 'n') + " 1");
    checkText(std::string(length, '7') + " 1");
    checkText("-" + std::string(length, '7') + ".5 1");
    checkText("\"" + std::string(length, ' ') + "\" 1");
    if (HasFatalFailure()) return;
  }
}

// --- What a word is ------------------------------------------------------------------------------

TEST(WordCutterTest, ANumberIsADoubleByItsFractionMarkWhereverThatStands) {
  for (unsigned long digits = 1; digits < 50; ++digits) {
    const std::string number(digits, '7');
    EXPECT_EQ(typeOf(number), ParserWord::WORD_INT) << digits;
    EXPECT_EQ(typeOf(number + "."), ParserWord::WORD_DOUBLE) << digits;
    EXPECT_EQ(typeOf("7e" + number), ParserWord::WORD_DOUBLE) << digits;
  }
}

TEST(WordCutterTest, AMarkBehindANumberDoesNotMakeItADouble) {
  EXPECT_EQ(typeOf("7 .5"), ParserWord::WORD_INT);
  EXPECT_EQ(typeOf("7777777777777777 e"), ParserWord::WORD_INT);
}

TEST(WordCutterTest, OnlyTheWholeWordsAreBools) {
  EXPECT_EQ(typeOf("yes"), ParserWord::WORD_BOOL);
  EXPECT_EQ(typeOf("no"), ParserWord::WORD_BOOL);
  for (const char* const name : {"y", "ye", "yesy", "yer", "n", "non", "nO", "Yes"}) {
    EXPECT_EQ(typeOf(name), ParserWord::WORD_IDENTIFIER) << name;
  }
}

TEST(WordCutterTest, OnlyStringsWithBackslashesHaveEscapes) {
  const std::string text = "\"a\" \"b\\n\" \"c\"" + behind();
  WordCutter cutter(text, 1.1);
  EXPECT_FALSE(cutter.next()->hasEscapes());
  EXPECT_TRUE(cutter.next()->hasEscapes());
  EXPECT_FALSE(cutter.next()->hasEscapes());
}

TEST(WordCutterTest, NoStringOfTheFirstVersionHasEscapes) {
  const std::string text = "\"b\\n\"" + behind();
  WordCutter cutter(text, 1.0);
  EXPECT_FALSE(cutter.next()->hasEscapes());
}

TEST(WordCutterTest, AZeroByteIsNoticedInEveryKindOfWordAndFromThenOn) {
  for (const std::string word : {"name", "12.5", "-7", "\"string\"", "\"\\\"\"", "#key", "0x0A",
                                 "/", "1234567890123456789012345678901234567890"}) {
    for (unsigned long place = 0; place <= word.size(); ++place) {
      const std::string text = "a " + std::string(word).insert(place, 1, '\0') + "\nb" + behind();
      WordCutter cutter(text, 1.1);
      EXPECT_FALSE(cutter.next()->hasSeenZeroByte()) << word;
      EXPECT_TRUE(cutter.next()->hasSeenZeroByte()) << word << " " << place;
      EXPECT_TRUE(cutter.next()->hasSeenZeroByte()) << word;
    }
  }
}

TEST(WordCutterTest, NoZeroByteIsSeenAtTheEndOfAText) {
  const std::string text = "a \"b";
  WordCutter cutter(text, 1.1);
  EXPECT_FALSE(cutter.next()->hasSeenZeroByte());
  EXPECT_FALSE(cutter.next()->hasSeenZeroByte());
}

TEST(WordCutterTest, AWordIsAParserWordToWhomWantsOne) {
  const std::string text = "a\n  12 " + behind();
  WordCutter cutter(text, 1.1);
  cutter.next();
  const ParserWord& word = *cutter.next();
  EXPECT_EQ(word.getString(), "12");
  EXPECT_EQ(word.getStart(), 4UL);
  EXPECT_EQ(word.getLine(), 2UL);
  EXPECT_EQ(word.getColumn(), 3UL);
  EXPECT_EQ(word.getType(), ParserWord::WORD_INT);
}

// --- Texts that begin behind something -----------------------------------------------------------

TEST(WordCutterTest, ATextMayBeginWithinAString) {
  EXPECT_THAT(cut("#v 1\na 1", 5), ElementsAre("a", "1"));
  EXPECT_THAT(cut("#v 1\na 1", 8), ElementsAre());
}

TEST(WordCutterTest, LinesAndColumnsCountFromWhereTheTextBegins) {
  const std::string text = "#v 1\na 1";
  WordCutter cutter(text, 1.1, 5);
  const TextWord* word = cutter.next();
  EXPECT_EQ(word->getLine(), 1UL);
  EXPECT_EQ(word->getColumn(), 1UL);
}

TEST(WordCutterTest, ABackslashBeforeTheTextDoesNotEscapeItsFirstQuote) {
  EXPECT_THAT(cut("\\\"a b\"", 1), ElementsAre("\"a b\""));
}
