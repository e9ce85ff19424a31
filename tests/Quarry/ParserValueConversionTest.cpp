// What a value reads as: each type as each other, and the texts of documents.
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/RecordingConsole.h"

using namespace std::string_literals;

using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::RecordingConsole;

namespace {

constexpr int LOWEST_INT = std::numeric_limits<int>::min();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

bool readBool(const std::string& text) {
  return ParserValue(ParserValue::TYPE_BOOL, text).getAsBool();
}

int readChar(const std::string& text) {
  return ParserValue(ParserValue::TYPE_CHAR, text).getAsChar();
}

int readInt(const std::string& text) { return ParserValue(ParserValue::TYPE_INT, text).getAsInt(); }

double readDouble(const std::string& text) {
  return ParserValue(ParserValue::TYPE_DOUBLE, text).getAsDouble();
}

}  // namespace

// --- As bool -------------------------------------------------------------------------------------

TEST(ParserValueAsBoolTest, ABoolIsItself) {
  EXPECT_TRUE(ParserValue(true).getAsBool());
  EXPECT_FALSE(ParserValue(false).getAsBool());
}

TEST(ParserValueAsBoolTest, ACharIsTrueUnlessItIsZero) {
  EXPECT_TRUE(ParserValue('0').getAsBool());
  EXPECT_TRUE(ParserValue('\xFF').getAsBool());
  EXPECT_FALSE(ParserValue('\0').getAsBool());
}

TEST(ParserValueAsBoolTest, AnIntIsTrueUnlessItIsZero) {
  EXPECT_TRUE(ParserValue(-1).getAsBool());
  EXPECT_TRUE(ParserValue(256).getAsBool());
  EXPECT_FALSE(ParserValue(0).getAsBool());
}

TEST(ParserValueAsBoolTest, ADoubleIsTrueUnlessItIsZero) {
  EXPECT_TRUE(ParserValue(0.1).getAsBool());
  EXPECT_TRUE(ParserValue(std::numeric_limits<double>::denorm_min()).getAsBool());
  EXPECT_FALSE(ParserValue(0.0).getAsBool());
}

TEST(ParserValueAsBoolTest, NotANumberIsTrue) {
  EXPECT_TRUE(ParserValue(NOT_A_NUMBER).getAsBool());
}

TEST(ParserValueAsBoolTest, NegativeZeroIsFalse) { EXPECT_FALSE(ParserValue(-0.0).getAsBool()); }

// --- As char -------------------------------------------------------------------------------------

TEST(ParserValueAsCharTest, ABoolIsZeroOrOne) {
  EXPECT_EQ(ParserValue(true).getAsChar(), 1);
  EXPECT_EQ(ParserValue(false).getAsChar(), 0);
}

TEST(ParserValueAsCharTest, ACharIsItself) {
  EXPECT_EQ(ParserValue('x').getAsChar(), 'x');
  EXPECT_EQ(ParserValue('\x80').getAsChar(), '\x80');
}

TEST(ParserValueAsCharTest, AnIntIsItsLowByte) {
  EXPECT_EQ(ParserValue(300).getAsChar(), 44);
  EXPECT_EQ(ParserValue(-1).getAsChar(), '\xFF');
  EXPECT_EQ(ParserValue(LOWEST_INT).getAsChar(), 0);
}

TEST(ParserValueAsCharTest, ADoubleIsCutTowardsZero) {
  EXPECT_EQ(ParserValue(-1.9).getAsChar(), '\xFF');
  EXPECT_EQ(ParserValue(65.9).getAsChar(), 'A');
}

TEST(ParserValueAsCharTest, ADoubleIsTheLowByteOfItsInt) {
  EXPECT_EQ(ParserValue(300.5).getAsChar(), 44);
  EXPECT_EQ(ParserValue(2147483647.5).getAsChar(), '\xFF');
}

TEST(ParserValueAsCharTest, ADoubleThatDoesNotFitIsZero) {
  EXPECT_EQ(ParserValue(1e10).getAsChar(), 0);
  EXPECT_EQ(ParserValue(NOT_A_NUMBER).getAsChar(), 0);
}

// --- As int --------------------------------------------------------------------------------------

TEST(ParserValueAsIntTest, ABoolIsZeroOrOne) {
  EXPECT_EQ(ParserValue(true).getAsInt(), 1);
  EXPECT_EQ(ParserValue(false).getAsInt(), 0);
}

TEST(ParserValueAsIntTest, ACharKeepsItsSign) {
  EXPECT_EQ(ParserValue('A').getAsInt(), 65);
  EXPECT_EQ(ParserValue('\xFF').getAsInt(), -1);
  EXPECT_EQ(ParserValue('\x80').getAsInt(), -128);
}

TEST(ParserValueAsIntTest, AnIntIsItself) {
  EXPECT_EQ(ParserValue(2147483647).getAsInt(), 2147483647);
  EXPECT_EQ(ParserValue(LOWEST_INT).getAsInt(), LOWEST_INT);
}

TEST(ParserValueAsIntTest, ADoubleIsCutTowardsZero) {
  EXPECT_EQ(ParserValue(2.9).getAsInt(), 2);
  EXPECT_EQ(ParserValue(-2.9).getAsInt(), -2);
}

TEST(ParserValueAsIntTest, ADoubleFitsWhenItsWholePartFits) {
  EXPECT_EQ(ParserValue(2147483647.9).getAsInt(), 2147483647);
  EXPECT_EQ(ParserValue(-2147483648.9).getAsInt(), LOWEST_INT);
}

TEST(ParserValueAsIntTest, ADoubleThatDoesNotFitIsTheLowestInt) {
  EXPECT_EQ(ParserValue(2147483648.0).getAsInt(), LOWEST_INT);
  EXPECT_EQ(ParserValue(-2147483649.0).getAsInt(), LOWEST_INT);
  EXPECT_EQ(ParserValue(INFINITE).getAsInt(), LOWEST_INT);
  EXPECT_EQ(ParserValue(-INFINITE).getAsInt(), LOWEST_INT);
}

TEST(ParserValueAsIntTest, NotANumberIsTheLowestInt) {
  EXPECT_EQ(ParserValue(NOT_A_NUMBER).getAsInt(), LOWEST_INT);
}

// --- As double -----------------------------------------------------------------------------------

TEST(ParserValueAsDoubleTest, ABoolIsZeroOrOne) {
  EXPECT_EQ(ParserValue(true).getAsDouble(), 1.0);
  EXPECT_EQ(ParserValue(false).getAsDouble(), 0.0);
}

TEST(ParserValueAsDoubleTest, ACharKeepsItsSign) {
  EXPECT_EQ(ParserValue('A').getAsDouble(), 65.0);
  EXPECT_EQ(ParserValue('\xFF').getAsDouble(), -1.0);
}

TEST(ParserValueAsDoubleTest, AnIntIsExact) {
  EXPECT_EQ(ParserValue(2147483647).getAsDouble(), 2147483647.0);
  EXPECT_EQ(ParserValue(LOWEST_INT).getAsDouble(), -2147483648.0);
}

TEST(ParserValueAsDoubleTest, ADoubleIsItself) {
  EXPECT_EQ(ParserValue(0.1).getAsDouble(), 0.1);
  EXPECT_TRUE(std::isnan(ParserValue(NOT_A_NUMBER).getAsDouble()));
  EXPECT_TRUE(std::signbit(ParserValue(-0.0).getAsDouble()));
}

TEST(ParserValueConversionTest, ConversionsGiveNoMessage) {
  const RecordingConsole console;
  EXPECT_TRUE(ParserValue(12).getAsBool());
  EXPECT_EQ(ParserValue(1e10).getAsInt(), LOWEST_INT);
  EXPECT_EQ(ParserValue("text").getAsString(), "text");
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserValueConversionTest, ConversionsLeaveTheTypeAlone) {
  const ParserValue value(1.5);
  EXPECT_EQ(value.getAsInt(), 1);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(value.getAsDouble(), 1.5);
}

TEST(ParserValueConversionTest, TextsConvertIntoOtherTypesToo) {
  EXPECT_EQ(ParserValue(ParserValue::TYPE_BOOL, "yes").getAsDouble(), 1.0);
  EXPECT_EQ(ParserValue(ParserValue::TYPE_CHAR, "200").getAsInt(), -56);
  EXPECT_EQ(ParserValue(ParserValue::TYPE_INT, "300").getAsChar(), 44);
  EXPECT_EQ(ParserValue(ParserValue::TYPE_DOUBLE, "-2.9").getAsInt(), -2);
}

// --- The text of a bool --------------------------------------------------------------------------

TEST(ParserValueBoolTextTest, YesIsTrue) { EXPECT_TRUE(readBool("yes")); }

TEST(ParserValueBoolTextTest, NoIsFalse) { EXPECT_FALSE(readBool("no")); }

TEST(ParserValueBoolTextTest, CapitalYesIsFalse) { EXPECT_FALSE(readBool("YES")); }

TEST(ParserValueBoolTextTest, TrueIsFalse) { EXPECT_FALSE(readBool("true")); }

TEST(ParserValueBoolTextTest, EveryOtherTextIsFalse) {
  for (const std::string& text : {""s, "1"s, "y"s, "yes "s, " yes"s, "yess"s, "yes\0"s}) {
    EXPECT_FALSE(readBool(text)) << testing::PrintToString(text);
  }
}

// --- The text of an integer ----------------------------------------------------------------------

TEST(ParserValueIntTextTest, ReadingStopsAtTheFirstOtherByte) {
  EXPECT_EQ(readInt("12abc"), 12);
  EXPECT_EQ(readInt("1.9"), 1);
  EXPECT_EQ(readInt("12 34"), 12);
}

TEST(ParserValueIntTextTest, LeadingWhiteSpaceIsPassedOver) {
  EXPECT_EQ(readInt(" 7"), 7);
  EXPECT_EQ(readInt("\t\n\v\f\r 7"), 7);
}

TEST(ParserValueIntTextTest, ATextWithoutDigitsIsZero) {
  for (const char* text : {"x", "", " ", "-", "+", "--1", "- 7", ".5"}) {
    EXPECT_EQ(readInt(text), 0) << text;
  }
}

TEST(ParserValueIntTextTest, ASignIsAccepted) {
  EXPECT_EQ(readInt("-12"), -12);
  EXPECT_EQ(readInt("+12"), 12);
}

TEST(ParserValueIntTextTest, TheBaseIsAlwaysTen) {
  EXPECT_EQ(readInt("010"), 10);
  EXPECT_EQ(readInt("0x10"), 0);
}

TEST(ParserValueIntTextTest, AnExponentIsNotRead) { EXPECT_EQ(readInt("1E5"), 1); }

TEST(ParserValueIntTextTest, OnlyTheLow32BitsCount) {
  EXPECT_EQ(readInt("2147483648"), LOWEST_INT);
  EXPECT_EQ(readInt("4294967295"), -1);
  EXPECT_EQ(readInt("4294967297"), 1);
  EXPECT_EQ(readInt("-2147483649"), 2147483647);
}

TEST(ParserValueIntTextTest, BeyondTheLargest64BitNumberItIsMinusOne) {
  EXPECT_EQ(readInt("9223372036854775807"), -1);
  EXPECT_EQ(readInt("9223372036854775808"), -1);
  EXPECT_EQ(readInt("99999999999999999999"), -1);
}

TEST(ParserValueIntTextTest, BeyondTheLowest64BitNumberItIsZero) {
  EXPECT_EQ(readInt("-9223372036854775808"), 0);
  EXPECT_EQ(readInt("-9223372036854775809"), 0);
  EXPECT_EQ(readInt("-99999999999999999999"), 0);
}

TEST(ParserValueIntTextTest, AZeroByteEndsTheNumber) {
  EXPECT_EQ(readInt("1\0"
                    "2"s),
            1);
}

// --- The text of a character ---------------------------------------------------------------------

TEST(ParserValueCharTextTest, TheTextIsTheCode) { EXPECT_EQ(readChar("65"), 'A'); }

TEST(ParserValueCharTextTest, TheTextIsNotTheCharacter) { EXPECT_EQ(readChar("A"), 0); }

TEST(ParserValueCharTextTest, OnlyTheLow8BitsCount) {
  EXPECT_EQ(readChar("300"), 44);
  EXPECT_EQ(readChar("255"), static_cast<char>(-1));
  EXPECT_EQ(readChar("-129"), 127);
}

TEST(ParserValueCharTextTest, TheTextIsReadLikeAnInteger) {
  EXPECT_EQ(readChar(" -1x"), static_cast<char>(-1));
  EXPECT_EQ(readChar("99999999999999999999"), static_cast<char>(-1));
}

// --- The text of a double ------------------------------------------------------------------------

TEST(ParserValueDoubleTextTest, DigitsWithAPointAndAnExponentAreRead) {
  EXPECT_EQ(readDouble("1.50"), 1.5);
  EXPECT_EQ(readDouble("-1e3"), -1000.0);
  EXPECT_EQ(readDouble("0.1"), 0.1);
}

TEST(ParserValueDoubleTextTest, ADoubleIsRoundedOnce) {
  EXPECT_EQ(readDouble("4.602463500300253e+25"), 0x1.3090c3b407bd5p+85);
}

TEST(ParserValueDoubleTextTest, ReadingStopsAtTheFirstOtherByte) {
  EXPECT_EQ(readDouble("1.5mm"), 1.5);
  EXPECT_EQ(readDouble("1e"), 1.0);
}

TEST(ParserValueDoubleTextTest, ACommaIsNoDecimalPointInAnyLocale) {
  EXPECT_EQ(readDouble("1,5"), 1.0);
}

TEST(ParserValueDoubleTextTest, LeadingWhiteSpaceIsPassedOver) {
  EXPECT_EQ(readDouble("\t\n\v\f\r 2.5"), 2.5);
}

TEST(ParserValueDoubleTextTest, ATextWithoutANumberIsZero) {
  for (const char* text : {"abc", "", ".", "-", "e5"})
    EXPECT_EQ(readDouble(text), 0.0) << text;
}

TEST(ParserValueDoubleTextTest, HexadecimalNumbersAreRead) {
  EXPECT_EQ(readDouble("0x10"), 16.0);
  EXPECT_EQ(readDouble("0x1.8p1"), 3.0);
}

TEST(ParserValueDoubleTextTest, InfinityAndNotANumberAreRead) {
  EXPECT_EQ(readDouble("-inf"), -INFINITE);
  EXPECT_EQ(readDouble("Infinity"), INFINITE);
  EXPECT_TRUE(std::isnan(readDouble("nan")));
}

TEST(ParserValueDoubleTextTest, ANumberThatDoesNotFitIsInfinite) {
  EXPECT_EQ(readDouble("1e400"), INFINITE);
}

// --- Conversion on first access ------------------------------------------------------------------

TEST(ParserValueMakeValueTest, TextsThatDoNotParseGiveNoMessage) {
  const RecordingConsole console;
  EXPECT_FALSE(readBool("maybe"));
  EXPECT_EQ(readChar("x"), 0);
  EXPECT_EQ(readInt("x"), 0);
  EXPECT_EQ(readDouble("x"), 0.0);
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserValueMakeValueTest, TheTextStays) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  item.addDouble(1.5);
  EXPECT_EQ(item.getDouble(0), 1.5);
  EXPECT_EQ(item.getWord(0), "1.5");
}

TEST(ParserValueMakeValueTest, AStringIsConvertedOnce) {
  const ParserValue value(ParserValue::TYPE_STRING, "text");
  value.makeValue();
  const std::string* string = &value.getAsString();
  value.makeValue();
  EXPECT_EQ(&value.getAsString(), string);
  EXPECT_EQ(*string, "text");
}

TEST(ParserValueMakeValueTest, NothingHappensWithoutAConversion) {
  const RecordingConsole console;
  ParserValue(ParserValue::TYPE_GROUP, "g").makeValue();
  ParserValue(ParserValue::TYPE_EMPTY, "<empty>").makeValue();
  ParserValue(static_cast<ParserValue::Type>(8), "text").makeValue();
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserValueMakeValueTest, DataThatWasSetIsNotConvertedAgain) {
  ParserValue value(ParserValue::TYPE_INT, "12");
  value.makeValue();
  value.setInt(13);
  value.makeValue();
  EXPECT_EQ(value.getAsInt(), 13);
}

TEST(ParserValueMakeValueTest, TheWrittenTextIsNotReadBack) {
  const ParserValue value(65);
  std::string text;
  value.getText(text, false, 1);
  value.makeValue();
  EXPECT_EQ(text, "A");
  EXPECT_EQ(value.getAsInt(), 65);
}
