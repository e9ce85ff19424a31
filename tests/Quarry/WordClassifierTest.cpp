// The quick way to classify a word: always the type that the word's own tests give it.

#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/WordClassifier.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/WordTests.h"

using Quarry::ParserWord;
using Quarry::ParserWordStream;
using Quarry::WordClassifier;

namespace {

constexpr double PLAIN = 1.0;
constexpr double ESCAPED = 1.1;

using std::string_literals::operator""s;

/// Bytes that mean something to a word, none of which ends one.
const std::string ALPHABET = "abenosxyzEXAZ0159-+.#\"\\<>[]_%:'/;*@`\t\v\f\0\x7F\x80\xFF"s;

/// Pieces of the words that the tests know.
const std::vector<std::string> PIECES = {
    "yes", "no",  "<empty>", "0x", "0X", "e", "E", ".",  "-",  "+",    "#",     "\"",       "\\",
    "0",   "1",   "42",      "_",  "a",  "Z", "[", "]",  ":",  "%",    "inf",   "infinity", "nan",
    "\0"s, "\t"s, "\x80",    "/",  "'",  "x", "<", "<e", ">",  "name", "1.5",   "-7",       "no\0"s,
    "abc", "F00", "camera",  "A9", "=",  ",", "{", "}",  "()", " ",    "yes\0"s};

/// Asks the word's tests in the order in which the parser does.
ParserWord::Type classifyByTests(const ParserWord& word) {
  static_cast<void>(TestSupport::passesTest(word));
  return word.getType();
}

/// Tells whether both ways agree about a fresh word, and leave their answer in it.
bool agree(const ParserWord& fresh) {
  const ParserWord tested(fresh);
  const ParserWord classified(fresh);
  const ParserWord::Type type = classifyByTests(tested);
  return WordClassifier::classify(classified) == type && classified.getType() == type;
}

std::string show(const std::string& bytes) {
  std::string shown;
  for (const char byte : bytes)
    shown += std::to_string(static_cast<unsigned char>(byte)) + " ";
  return "'" + bytes + "' = " + shown;
}

/// Checks a word that is all of its text.
void checkAlone(const std::string& bytes) {
  EXPECT_TRUE(agree(ParserWord(bytes, true, PLAIN))) << show(bytes);
  EXPECT_TRUE(agree(ParserWord(bytes, true, ESCAPED))) << show(bytes);
}

/// Checks the first word of a text that goes on behind it for `more` bytes.
void checkInText(const std::string& bytes, unsigned long more) {
  const std::string text = bytes + "\n" + std::string(more, 'e');
  for (const double version : {PLAIN, ESCAPED}) {
    ParserWordStream stream(text, version);
    const ParserWord* word = stream.next();
    if (word != nullptr) {
      EXPECT_TRUE(agree(*word)) << show(bytes) << " before " << more;
    }
  }
}

/// Calls `check` with every word of 1 to `most` bytes of the alphabet.
template <class Check>
void forEveryWord(unsigned long most, const std::string& begun, Check check) {
  for (const char byte : ALPHABET) {
    check(begun + byte);
    if (most > 1) forEveryWord(most - 1, begun + byte, check);
  }
}

std::string makeWord(std::mt19937& random) {
  std::string word;
  const unsigned long length = 1 + random() % 40;
  while (word.size() < length) {
    switch (random() % 4) {
      case 0: word += PIECES[random() % PIECES.size()]; break;
      case 1: word += std::string(1 + random() % 20, ALPHABET[random() % 13]); break;
      case 2: word += std::to_string(random() % 100000); break;
      default: word += ALPHABET[random() % ALPHABET.size()];
    }
  }
  return word.substr(0, 40);
}

/// A word of name bytes or digits in which one byte is another one.
std::string makeWordWithOddByte(std::mt19937& random) {
  const std::string fill = random() % 2 == 0 ? "a" : "7";
  std::string word;
  for (unsigned long i = random() % 40 + 1; i > 0; --i)
    word += fill;
  word[random() % word.size()] = static_cast<char>(random());
  return word;
}

/// Classifies a word that is all of its text, and one with much text behind it.
ParserWord::Type classify(const std::string& bytes, double version = ESCAPED) {
  const ParserWord alone(bytes, true, version);
  const std::string text = bytes + "\n" + std::string(40, 'e');
  ParserWordStream stream(text, version);
  const ParserWord::Type type = WordClassifier::classify(alone);
  EXPECT_EQ(WordClassifier::classify(*stream.next()), type);
  return type;
}

}  // namespace

// --- Both ways agree -----------------------------------------------------------------------------

TEST(WordClassifierTest, EveryWordOfUpToThreeBytesHasTheTypeThatItsTestsGive) {
  forEveryWord(3, "", [](const std::string& bytes) { checkAlone(bytes); });
}

TEST(WordClassifierTest, EveryShortWordWithTextBehindItHasTheTypeThatItsTestsGive) {
  forEveryWord(2, "", [](const std::string& bytes) { checkInText(bytes, 40); });
}

TEST(WordClassifierTest, EverySingleByteHasTheTypeThatItsTestsGive) {
  for (int byte = 0; byte < 256; ++byte)
    checkAlone(std::string(1, static_cast<char>(byte)));
}

TEST(WordClassifierTest, RandomWordsHaveTheTypeThatTheirTestsGive) {
  std::mt19937 random(1);
  for (int i = 0; i < 100000; ++i)
    checkAlone(makeWord(random));
}

TEST(WordClassifierTest, RandomWordsAtAnyDistanceFromTheEndHaveTheTypeThatTheirTestsGive) {
  std::mt19937 random(2);
  for (int i = 0; i < 100000; ++i)
    checkInText(makeWord(random), random() % 40);
}

TEST(WordClassifierTest, AnyOneByteAmongNameBytesOrDigitsIsSeen) {
  std::mt19937 random(3);
  for (int i = 0; i < 50000; ++i) {
    checkAlone(makeWordWithOddByte(random));
    checkInText(makeWordWithOddByte(random), random() % 40);
  }
}

TEST(WordClassifierTest, AWordThatHasATypeKeepsIt) {
  const std::string text = "name";
  const ParserWord word(text, true, ESCAPED);
  const std::string number = "12";
  const ParserWord asDouble(number, true, ESCAPED);
  EXPECT_TRUE(asDouble.isDouble());
  EXPECT_EQ(WordClassifier::classify(asDouble), ParserWord::WORD_DOUBLE);
  EXPECT_TRUE(word.isIdentifier());
  EXPECT_EQ(WordClassifier::classify(word), ParserWord::WORD_IDENTIFIER);
}

TEST(WordClassifierTest, AnEmptyWordHasNoType) {
  EXPECT_EQ(WordClassifier::classify(ParserWord(ESCAPED)), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(WordClassifier::firstByte(ParserWord(ESCAPED)), 0);
}

// --- Names ---------------------------------------------------------------------------------------

TEST(WordClassifierTest, AName) { EXPECT_EQ(classify("camera"), ParserWord::WORD_IDENTIFIER); }

TEST(WordClassifierTest, ANameOfSixteenBytes) {
  EXPECT_EQ(classify("camera_of_nine_1"), ParserWord::WORD_IDENTIFIER);
}

TEST(WordClassifierTest, ANameOfSeventeenBytes) {
  EXPECT_EQ(classify("camera_of_nine_12"), ParserWord::WORD_IDENTIFIER);
}

TEST(WordClassifierTest, ANameWithEveryMark) {
  EXPECT_EQ(classify("a.b-c[2]:x%_"), ParserWord::WORD_IDENTIFIER);
}

TEST(WordClassifierTest, ANameMayBeginWithAnUnderscoreOnly) {
  EXPECT_EQ(classify("_a"), ParserWord::WORD_IDENTIFIER);
  EXPECT_EQ(classify(".a"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("%a"), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, ANameWithAForeignByteIsUnknown) {
  EXPECT_EQ(classify("cam/era"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("camera;"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("camer\xC3\xA4"), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, ANameWithAForeignByteInPlaceSixteenIsUnknown) {
  EXPECT_EQ(classify("camera_of_nine_/"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("camera_of_nine_1/"), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, ANameWithAZeroByteIsUnknown) {
  EXPECT_EQ(classify("cam\0era"s), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, AKeyword) { EXPECT_EQ(classify("#if"), ParserWord::WORD_KEYWORD); }

TEST(WordClassifierTest, ANumberSignWithoutANameIsUnknown) {
  EXPECT_EQ(classify("#"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("#1"), ParserWord::WORD_UNKNOWN);
}

// --- Bools ---------------------------------------------------------------------------------------

TEST(WordClassifierTest, YesAndNoAreBools) {
  EXPECT_EQ(classify("yes"), ParserWord::WORD_BOOL);
  EXPECT_EQ(classify("no"), ParserWord::WORD_BOOL);
}

TEST(WordClassifierTest, YesAndNoBeforeAZeroByteAreBools) {
  EXPECT_EQ(classify("yes\0more"s), ParserWord::WORD_BOOL);
  EXPECT_EQ(classify("no\0"s), ParserWord::WORD_BOOL);
}

TEST(WordClassifierTest, WordsLikeYesAndNoAreNames) {
  for (const char* word : {"Yes", "NO", "ye", "yesx", "n", "not", "noo", "yes."})
    EXPECT_EQ(classify(word), ParserWord::WORD_IDENTIFIER) << word;
}

// --- Numbers -------------------------------------------------------------------------------------

TEST(WordClassifierTest, Ints) {
  for (const char* word : {"0", "7", "-7", "+7", "12abc", "1E5", "-0", "5\"x\""})
    EXPECT_EQ(classify(word), ParserWord::WORD_INT) << word;
}

TEST(WordClassifierTest, AnIntOfMoreThanSixteenDigits) {
  EXPECT_EQ(classify("12345678901234567890"), ParserWord::WORD_INT);
}

TEST(WordClassifierTest, Doubles) {
  for (const char* word : {"1.5", "-1.5", "+1.5", "1e5", "0.", ".5", "-.5", "12abcde", "1.x"})
    EXPECT_EQ(classify(word), ParserWord::WORD_DOUBLE) << word;
}

TEST(WordClassifierTest, APointInPlaceSixteenOrSeventeenMakesADouble) {
  EXPECT_EQ(classify("123456789012345."), ParserWord::WORD_DOUBLE);
  EXPECT_EQ(classify("1234567890123456.5"), ParserWord::WORD_DOUBLE);
}

TEST(WordClassifierTest, AnExponentThatStandsInTheNextWordIsNotThisOnes) {
  const std::string text = "12 e." + std::string(40, ' ');
  ParserWordStream stream(text, ESCAPED);
  EXPECT_EQ(WordClassifier::classify(*stream.next()), ParserWord::WORD_INT);
}

TEST(WordClassifierTest, ASignWithoutADigitIsUnknown) {
  EXPECT_EQ(classify("-"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("+x"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("--1"), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, NegativeInfinityAndNanAreDoubles) {
  EXPECT_EQ(classify("-inf"), ParserWord::WORD_DOUBLE);
  EXPECT_EQ(classify("+nan"), ParserWord::WORD_DOUBLE);
}

TEST(WordClassifierTest, InfinityAndNanWithoutASignAreNames) {
  EXPECT_EQ(classify("inf"), ParserWord::WORD_IDENTIFIER);
  EXPECT_EQ(classify("nan"), ParserWord::WORD_IDENTIFIER);
}

TEST(WordClassifierTest, ZeroAndXWithoutMoreIsAnInt) {
  EXPECT_EQ(classify("0x"), ParserWord::WORD_INT);
  EXPECT_EQ(classify("0X10"), ParserWord::WORD_INT);
  EXPECT_EQ(classify("-0x10"), ParserWord::WORD_INT);
}

TEST(WordClassifierTest, BinaryData) {
  EXPECT_EQ(classify("0x00"), ParserWord::WORD_BINARYDATA);
  EXPECT_EQ(classify("0xe."), ParserWord::WORD_BINARYDATA);
  EXPECT_EQ(classify("0xZZ"), ParserWord::WORD_BINARYDATA);
}

TEST(WordClassifierTest, AHexadecimalWordWithAFractionMarkIsADoubleOnlyWhereANumberBegins) {
  EXPECT_EQ(classify("0Xe"), ParserWord::WORD_DOUBLE);
  EXPECT_EQ(classify("0X.e"), ParserWord::WORD_DOUBLE);
  EXPECT_EQ(classify("0Xxe"), ParserWord::WORD_UNKNOWN);
}

// --- Strings, tags, signs ------------------------------------------------------------------------

TEST(WordClassifierTest, AString) {
  EXPECT_EQ(classify("\"a\""), ParserWord::WORD_STRING);
  EXPECT_EQ(classify("\"\""), ParserWord::WORD_STRING);
  EXPECT_EQ(classify("\"a\"b\""), ParserWord::WORD_STRING);
}

TEST(WordClassifierTest, AStringHasTwoQuotes) {
  EXPECT_EQ(classify("\""), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("\"a"), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(classify("\"a\"b"), ParserWord::WORD_UNKNOWN);
}

TEST(WordClassifierTest, TheEmptyTag) {
  EXPECT_EQ(classify("<empty>"), ParserWord::WORD_EMPTYTAG);
  EXPECT_EQ(classify("<empty>\0x"s), ParserWord::WORD_EMPTYTAG);
}

TEST(WordClassifierTest, WordsLikeTheEmptyTagAreUnknown) {
  for (const char* word : {"<", "<empty", "<empty>>", "<Empty>", "<full>"})
    EXPECT_EQ(classify(word), ParserWord::WORD_UNKNOWN) << word;
}

TEST(WordClassifierTest, TheOperatorAndTheSeparator) {
  EXPECT_EQ(classify("="), ParserWord::WORD_OPERATOR);
  EXPECT_EQ(classify(","), ParserWord::WORD_SEPARATOR);
}

TEST(WordClassifierTest, BracketsHaveNoType) {
  for (const char* word : {"{", "}", "(", ")"})
    EXPECT_EQ(classify(word), ParserWord::WORD_UNKNOWN) << word;
}
