// Which words are values: numbers, strings, blocks of bytes, and the order in which they are tried.
#include <Quarry/ParserWord.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace std::string_literals;

using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

/// A word that is a whole text, and the text.
class TextWord {
 public:
  explicit TextWord(std::string source, double version = 1.1)
      : text(std::move(source)), word(text, true, version) {}
  TextWord(const TextWord&) = delete;
  TextWord& operator=(const TextWord&) = delete;

  const ParserWord* operator->() const { return &word; }

 private:
  std::string text;
  ParserWord word;
};

constexpr auto UNTOUCHED = static_cast<ParserValue::Type>(99);

/// Returns the type that isValue() gives, or UNTOUCHED.
ParserValue::Type valueTypeOf(const ParserWord* word) {
  ParserValue::Type type = UNTOUCHED;
  const bool isValue = word->isValue(type);
  EXPECT_EQ(isValue, type != UNTOUCHED);
  return type;
}

ParserValue::Type valueTypeOf(const std::string& text, double version = 1.1) {
  return valueTypeOf(TextWord(text, version).operator->());
}

}  // namespace

// --- Binary data ---------------------------------------------------------------------------------

TEST(ParserWordBinaryDataTest, ThePrefixAloneIsNotEnough) {
  EXPECT_FALSE(TextWord("0x")->isBinaryData());
}

TEST(ParserWordBinaryDataTest, OneByteBehindThePrefixIsEnough) {
  EXPECT_TRUE(TextWord("0x1")->isBinaryData());
}

TEST(ParserWordBinaryDataTest, WhatFollowsThePrefixIsNotExamined) {
  EXPECT_TRUE(TextWord("0xZZ")->isBinaryData());
  EXPECT_TRUE(TextWord("0x\0"s)->isBinaryData());
}

TEST(ParserWordBinaryDataTest, ThePrefixIsAZeroAndALowerCaseX) {
  EXPECT_FALSE(TextWord("0X10")->isBinaryData());
  EXPECT_FALSE(TextWord("1x10")->isBinaryData());
  EXPECT_FALSE(TextWord("-0x10")->isBinaryData());
}

// --- Integers ------------------------------------------------------------------------------------

TEST(ParserWordIntTest, DigitsAreAnInt) { EXPECT_TRUE(TextWord("12")->isInt()); }

TEST(ParserWordIntTest, ASignMayStandBeforeTheDigits) {
  EXPECT_TRUE(TextWord("-12")->isInt());
  EXPECT_TRUE(TextWord("+12")->isInt());
}

TEST(ParserWordIntTest, ASignAloneIsNoInt) {
  EXPECT_FALSE(TextWord("-")->isInt());
  EXPECT_FALSE(TextWord("+")->isInt());
}

TEST(ParserWordIntTest, TwoSignsAreNoInt) { EXPECT_FALSE(TextWord("+-1")->isInt()); }

TEST(ParserWordIntTest, WhiteSpaceMayStandBeforeTheNumber) {
  EXPECT_TRUE(TextWord(" \t\n\v\f\r7")->isInt());
}

TEST(ParserWordIntTest, BytesBehindTheNumberAreIgnored) { EXPECT_TRUE(TextWord("12abc")->isInt()); }

TEST(ParserWordIntTest, AnUpperCaseExponentIsIgnored) { EXPECT_TRUE(TextWord("1E5")->isInt()); }

TEST(ParserWordIntTest, ALowerCaseEAnywhereRefusesTheInt) {
  EXPECT_FALSE(TextWord("1e5")->isInt());
  EXPECT_FALSE(TextWord("12abce")->isInt());
}

TEST(ParserWordIntTest, APointAnywhereRefusesTheInt) {
  EXPECT_FALSE(TextWord("1.5")->isInt());
  EXPECT_FALSE(TextWord("12abc.")->isInt());
}

TEST(ParserWordIntTest, AnEBehindAZeroByteRefusesTheInt) {
  EXPECT_FALSE(TextWord("1\0e"s)->isInt());
}

TEST(ParserWordIntTest, AZeroByteEndsTheNumber) {
  EXPECT_TRUE(TextWord("1\0a"s)->isInt());
  EXPECT_FALSE(TextWord("-\0001"s)->isInt());
}

TEST(ParserWordIntTest, ANumberThatIsTooLargeIsStillAnInt) {
  EXPECT_TRUE(TextWord(std::string(400, '9'))->isInt());
}

TEST(ParserWordIntTest, LettersAreNoInt) { EXPECT_FALSE(TextWord("abc")->isInt()); }

TEST(ParserWordIntTest, ThePrefixOfBinaryDataReadsAsAnInt) {
  EXPECT_TRUE(TextWord("0x10")->isInt());
}

// --- Doubles -------------------------------------------------------------------------------------

TEST(ParserWordDoubleTest, DigitsWithAPointAreADouble) {
  EXPECT_TRUE(TextWord("1.5")->isDouble());
  EXPECT_TRUE(TextWord(".5")->isDouble());
  EXPECT_TRUE(TextWord("5.")->isDouble());
}

TEST(ParserWordDoubleTest, DigitsWithAnExponentAreADouble) {
  EXPECT_TRUE(TextWord("1e3")->isDouble());
  EXPECT_TRUE(TextWord("1E-3")->isDouble());
}

TEST(ParserWordDoubleTest, DigitsAloneAreADouble) { EXPECT_TRUE(TextWord("12")->isDouble()); }

TEST(ParserWordDoubleTest, ASignMayStandBeforeTheNumber) {
  EXPECT_TRUE(TextWord("-.5")->isDouble());
  EXPECT_TRUE(TextWord("+1.5")->isDouble());
}

TEST(ParserWordDoubleTest, WhiteSpaceMayStandBeforeTheNumber) {
  EXPECT_TRUE(TextWord(" \t\n\v\f\r1.5")->isDouble());
}

TEST(ParserWordDoubleTest, BytesBehindTheNumberAreIgnored) {
  EXPECT_TRUE(TextWord("1.5mm")->isDouble());
  EXPECT_TRUE(TextWord("1,5")->isDouble());
}

TEST(ParserWordDoubleTest, APointWithoutDigitsIsNoDouble) {
  EXPECT_FALSE(TextWord(".")->isDouble());
  EXPECT_FALSE(TextWord("-.e5")->isDouble());
}

TEST(ParserWordDoubleTest, AnExponentAloneIsNoDouble) { EXPECT_FALSE(TextWord("e5")->isDouble()); }

TEST(ParserWordDoubleTest, ASignAloneIsNoDouble) { EXPECT_FALSE(TextWord("-")->isDouble()); }

TEST(ParserWordDoubleTest, InfinityIsADouble) {
  EXPECT_TRUE(TextWord("inf")->isDouble());
  EXPECT_TRUE(TextWord("-Infinity")->isDouble());
}

TEST(ParserWordDoubleTest, NotANumberIsADouble) { EXPECT_TRUE(TextWord("nan")->isDouble()); }

TEST(ParserWordDoubleTest, HexadecimalNumbersAreDoubles) {
  EXPECT_TRUE(TextWord("0x1p3")->isDouble());
  EXPECT_TRUE(TextWord("0X10")->isDouble());
}

TEST(ParserWordDoubleTest, WordsAreNoDoubles) { EXPECT_FALSE(TextWord("camera")->isDouble()); }

// --- Strings -------------------------------------------------------------------------------------

TEST(ParserWordIsStringTest, AQuotedWordIsAString) { EXPECT_TRUE(TextWord("\"a b\"")->isString()); }

TEST(ParserWordIsStringTest, TwoQuotesAreAString) { EXPECT_TRUE(TextWord("\"\"")->isString()); }

TEST(ParserWordIsStringTest, OneQuoteIsNoString) { EXPECT_FALSE(TextWord("\"")->isString()); }

TEST(ParserWordIsStringTest, AnUnclosedQuoteIsNoString) {
  EXPECT_FALSE(TextWord("\"a")->isString());
}

TEST(ParserWordIsStringTest, AQuoteAtTheEndOnlyIsNoString) {
  EXPECT_FALSE(TextWord("a\"")->isString());
}

TEST(ParserWordIsStringTest, OnlyTheFirstAndTheLastByteAreExamined) {
  EXPECT_TRUE(TextWord("\"a\"b\\\"")->isString());
}

TEST(ParserWordIsStringTest, SingleQuotesAreNoString) { EXPECT_FALSE(TextWord("'a'")->isString()); }

// --- Values --------------------------------------------------------------------------------------

TEST(ParserWordIsValueTest, TheEmptyTagIsFirst) {
  EXPECT_EQ(valueTypeOf("<empty>"), ParserValue::TYPE_EMPTY);
}

TEST(ParserWordIsValueTest, ABlockIsBinaryDataThoughItReadsAsANumber) {
  EXPECT_EQ(valueTypeOf("0x10"), ParserValue::TYPE_BINARYDATA);
}

TEST(ParserWordIsValueTest, YesAndNoAreBools) {
  EXPECT_EQ(valueTypeOf("yes"), ParserValue::TYPE_BOOL);
  EXPECT_EQ(valueTypeOf("no"), ParserValue::TYPE_BOOL);
}

TEST(ParserWordIsValueTest, DigitsAreAnIntThoughTheyReadAsADouble) {
  EXPECT_EQ(valueTypeOf("12"), ParserValue::TYPE_INT);
}

TEST(ParserWordIsValueTest, APointMakesADouble) {
  EXPECT_EQ(valueTypeOf("1.5"), ParserValue::TYPE_DOUBLE);
}

TEST(ParserWordIsValueTest, ALowerCaseExponentMakesADouble) {
  EXPECT_EQ(valueTypeOf("1e3"), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(valueTypeOf("1e5"), ParserValue::TYPE_DOUBLE);
}

TEST(ParserWordIsValueTest, AnUpperCaseExponentMakesAnInt) {
  EXPECT_EQ(valueTypeOf("1E5"), ParserValue::TYPE_INT);
}

TEST(ParserWordIsValueTest, AQuotedWordIsAString) {
  EXPECT_EQ(valueTypeOf("\"0x10\""), ParserValue::TYPE_STRING);
  EXPECT_EQ(valueTypeOf("\"<empty>\""), ParserValue::TYPE_STRING);
}

TEST(ParserWordIsValueTest, TheFormatVersionDoesNotMatter) {
  EXPECT_EQ(valueTypeOf("<empty>", 1.0), ParserValue::TYPE_EMPTY);
  EXPECT_EQ(valueTypeOf("0x10", 1.0), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(valueTypeOf("yes", 1.0), ParserValue::TYPE_BOOL);
  EXPECT_EQ(valueTypeOf("12", 1.0), ParserValue::TYPE_INT);
  EXPECT_EQ(valueTypeOf("1.5", 1.0), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(valueTypeOf("\"a\"", 1.0), ParserValue::TYPE_STRING);
}

TEST(ParserWordIsValueTest, ThePrefixOfABlockAloneIsAnInt) {
  EXPECT_EQ(valueTypeOf("0x"), ParserValue::TYPE_INT);
}

TEST(ParserWordIsValueTest, AnUpperCasePrefixMakesAnInt) {
  EXPECT_EQ(valueTypeOf("0X10"), ParserValue::TYPE_INT);
}

TEST(ParserWordIsValueTest, NotANumberIsADouble) {
  EXPECT_EQ(valueTypeOf("nan"), ParserValue::TYPE_DOUBLE);
}

TEST(ParserWordIsValueTest, AnIdentifierIsNoValueAndLeavesTheTypeUntouched) {
  EXPECT_EQ(valueTypeOf("camera"), UNTOUCHED);
}

TEST(ParserWordIsValueTest, OperatorsAndBracesAreNoValues) {
  for (const char* text : {"=", ",", "{", "}", "(", ")", "#if", "\"", "?"}) {
    EXPECT_EQ(valueTypeOf(text), UNTOUCHED) << text;
  }
}

TEST(ParserWordIsValueTest, AnEmptyWordIsNoValue) {
  const ParserWord word(1.1);
  EXPECT_EQ(valueTypeOf(&word), UNTOUCHED);
}

TEST(ParserWordIsValueTest, AWordTakenForAnIdentifierIsNoValueAnyMore) {
  const TextWord word("inf");
  EXPECT_TRUE(word->isIdentifier());
  EXPECT_EQ(valueTypeOf(word.operator->()), UNTOUCHED);
}

TEST(ParserWordIsValueTest, AWordTakenForADoubleIsADoubleValue) {
  const TextWord word("12");
  EXPECT_TRUE(word->isDouble());
  EXPECT_EQ(valueTypeOf(word.operator->()), ParserValue::TYPE_DOUBLE);
}

// --- The types of values -------------------------------------------------------------------------

TEST(ParserWordIsValuetypeTest, IdentifiersAreNoValues) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_IDENTIFIER));
}

TEST(ParserWordIsValuetypeTest, OperatorsAreNoValues) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_OPERATOR));
}

TEST(ParserWordIsValuetypeTest, SeparatorsAreNoValues) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_SEPARATOR));
}

TEST(ParserWordIsValuetypeTest, KeywordsAreNoValues) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_KEYWORD));
}

TEST(ParserWordIsValuetypeTest, BoolsAreValues) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_BOOL));
}

TEST(ParserWordIsValuetypeTest, BinaryDataIsAValue) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_BINARYDATA));
}

TEST(ParserWordIsValuetypeTest, BracesAreNoValues) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_BRACE));
}

TEST(ParserWordIsValuetypeTest, IntsAreValues) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_INT));
}

TEST(ParserWordIsValuetypeTest, DoublesAreValues) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_DOUBLE));
}

TEST(ParserWordIsValuetypeTest, StringsAreValues) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_STRING));
}

TEST(ParserWordIsValuetypeTest, EmptyTagsAreValues) {
  EXPECT_TRUE(ParserWord::isValuetype(ParserWord::WORD_EMPTYTAG));
}

TEST(ParserWordIsValuetypeTest, NoWordIsNoValue) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_NONE));
}

TEST(ParserWordIsValuetypeTest, AnUnclassifiedWordIsNoValue) {
  EXPECT_FALSE(ParserWord::isValuetype(ParserWord::WORD_UNKNOWN));
}
