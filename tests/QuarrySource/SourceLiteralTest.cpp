#include <QuarrySource/SourceLiteral.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceLiteral;

namespace {

void checkSpelling(const SourceLiteral& literal, ParserValue::Type type,
                   const std::string& spelling) {
  EXPECT_TRUE(literal.isValid());
  EXPECT_EQ(literal.getType(), type);
  EXPECT_EQ(literal.getSpelling(1.1), spelling);
}

void checkTyped(const std::string& word, ParserValue::Type type) {
  const SourceLiteral literal = SourceLiteral::parse(word);
  EXPECT_EQ(literal.getProblem(), "");
  EXPECT_EQ(literal.getType(), type);
  EXPECT_EQ(literal.getSpelling(1.0), word);
  EXPECT_EQ(literal.getSpelling(1.1), word);
}

void checkInvalid(const std::string& word, const std::string& problem) {
  const SourceLiteral literal = SourceLiteral::parse(word);
  EXPECT_FALSE(literal.isValid());
  EXPECT_EQ(literal.getProblem(), problem);
}

}  // namespace

// --- Made by code --------------------------------------------------------------------------------

TEST(SourceLiteralTest, ABoolIsYesOrNo) {
  checkSpelling(SourceLiteral::makeBool(true), ParserValue::TYPE_BOOL, "yes");
  checkSpelling(SourceLiteral::makeBool(false), ParserValue::TYPE_BOOL, "no");
}

TEST(SourceLiteralTest, AnIntIsWrittenInDigits) {
  checkSpelling(SourceLiteral::makeInt(-12), ParserValue::TYPE_INT, "-12");
}

TEST(SourceLiteralTest, ADoubleHasItsShortestSpelling) {
  checkSpelling(SourceLiteral::makeDouble(0.1), ParserValue::TYPE_DOUBLE, "0.1");
}

TEST(SourceLiteralTest, AWholeDoubleIsNoInt) {
  checkSpelling(SourceLiteral::makeDouble(2.0), ParserValue::TYPE_DOUBLE, "2.0");
}

TEST(SourceLiteralTest, AnInfinityHasASignWithoutWhichItWereAName) {
  constexpr double INFINITE = std::numeric_limits<double>::infinity();
  checkSpelling(SourceLiteral::makeDouble(INFINITE), ParserValue::TYPE_DOUBLE, "+inf");
  checkSpelling(SourceLiteral::makeDouble(-INFINITE), ParserValue::TYPE_DOUBLE, "-inf");
}

TEST(SourceLiteralTest, NotANumberHasASignWithoutWhichItWereAName) {
  checkSpelling(SourceLiteral::makeDouble(std::nan("")), ParserValue::TYPE_DOUBLE, "+nan");
}

TEST(SourceLiteralTest, AStringIsEscapedInFormat11) {
  checkSpelling(SourceLiteral::makeString("a\n\"b\""), ParserValue::TYPE_STRING, R"("a\n\"b\"")");
}

TEST(SourceLiteralTest, AStringStandsAsItIsInFormat10) {
  EXPECT_EQ(SourceLiteral::makeString("C:\\new").getSpelling(1.0), "\"C:\\new\"");
}

TEST(SourceLiteralTest, ABlockIsWrittenWithItsChecksum) {
  checkSpelling(SourceLiteral::makeBinary("\x01\x02\xFF"), ParserValue::TYPE_BINARYDATA,
                "0x0102FF02010000");
}

TEST(SourceLiteralTest, AnEmptyBlockIsItsChecksum) {
  checkSpelling(SourceLiteral::makeBinary(""), ParserValue::TYPE_BINARYDATA, "0x00000000");
}

TEST(SourceLiteralTest, TheEmptyTagIsAWord) {
  checkSpelling(SourceLiteral::makeEmpty(), ParserValue::TYPE_EMPTY, "<empty>");
}

// --- Typed by people -----------------------------------------------------------------------------

TEST(SourceLiteralTest, ATypedBoolIsABool) { checkTyped("yes", ParserValue::TYPE_BOOL); }
TEST(SourceLiteralTest, ATypedIntKeepsItsSpelling) { checkTyped("007", ParserValue::TYPE_INT); }
TEST(SourceLiteralTest, ATypedDoubleKeepsItsSpelling) {
  checkTyped("1.50", ParserValue::TYPE_DOUBLE);
}
TEST(SourceLiteralTest, ATypedStringKeepsItsQuotesAndEscapes) {
  checkTyped(R"("a \"b\" {c}")", ParserValue::TYPE_STRING);
}
TEST(SourceLiteralTest, ATypedBlockIsBinaryData) {
  checkTyped("0x0102FF02010000", ParserValue::TYPE_BINARYDATA);
}
TEST(SourceLiteralTest, ATypedEmptyTagIsOne) { checkTyped("<empty>", ParserValue::TYPE_EMPTY); }

TEST(SourceLiteralTest, ATypedNameIsNoValue) {
  checkInvalid("fast", "'fast' is a name and no value; a text stands in double quotes");
}

TEST(SourceLiteralTest, ATypedKeywordIsNoValue) {
  checkInvalid("#fast", "'#fast' is a name and no value; a text stands in double quotes");
}

TEST(SourceLiteralTest, TwoWordsAreNoLiteral) {
  checkInvalid("1 2", "'1 2' is more than one word; a text stands in double quotes");
}

TEST(SourceLiteralTest, ABlankBesideAWordIsNoPartOfIt) {
  checkInvalid(" 1", "' 1' is more than one word; a text stands in double quotes");
  checkInvalid("1 ", "'1 ' is more than one word; a text stands in double quotes");
}

TEST(SourceLiteralTest, AStringOfTwoLinesIsNoWord) {
  checkInvalid("\"a\nb\"", "'\"a\nb\"' is more than one word; a text stands in double quotes");
}

TEST(SourceLiteralTest, AnUnclosedStringIsNoValue) { checkInvalid("\"a", "'\"a' is no value"); }

TEST(SourceLiteralTest, ABraceIsNoValue) { checkInvalid("{", "'{' is no value"); }

TEST(SourceLiteralTest, AnEmptyTextIsNoValue) {
  checkInvalid("", "an empty text is no value; an empty string is \"\"");
}

TEST(SourceLiteralTest, AZeroByteIsNoPartOfAValue) {
  checkInvalid(std::string("1\0", 2), "a zero byte is no part of a value");
}

// --- Compared ------------------------------------------------------------------------------------

TEST(SourceLiteralTest, AValueOfTheSameDataIsTheLiterals) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addString("x");
  EXPECT_TRUE(SourceLiteral::makeString("x").isFirstValueOf(item));
  EXPECT_FALSE(SourceLiteral::makeString("y").isFirstValueOf(item));
}

TEST(SourceLiteralTest, AValueOfAnotherTypeIsNotTheLiterals) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addInt(1);
  EXPECT_FALSE(SourceLiteral::makeDouble(1.0).isFirstValueOf(item));
  EXPECT_FALSE(SourceLiteral::makeBool(true).isFirstValueOf(item));
}

TEST(SourceLiteralTest, TheTwoZerosAreTwoDoubles) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addDouble(0.0);
  EXPECT_TRUE(SourceLiteral::makeDouble(0.0).isFirstValueOf(item));
  EXPECT_FALSE(SourceLiteral::makeDouble(-0.0).isFirstValueOf(item));
}

TEST(SourceLiteralTest, NotANumberIsNotANumber) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addDouble(std::nan(""));
  EXPECT_TRUE(SourceLiteral::makeDouble(std::nan("")).isFirstValueOf(item));
}

TEST(SourceLiteralTest, TheEmptyTagIsThatOfAnItemWithoutValues) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  EXPECT_TRUE(SourceLiteral::makeEmpty().isFirstValueOf(item));
  EXPECT_FALSE(SourceLiteral::makeInt(1).isFirstValueOf(item));
}
