// Values made from the words of a text.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

/// The format without and the one with escapes in strings.
constexpr double PLAIN = 1.0;
constexpr double ESCAPED = 1.1;

/// Makes an item of the value that the whole of `text` stands for.
ParserItem makeItem(const std::string& text, ParserValue::Type type, double version = ESCAPED) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  item.addWord(ParserWord(text, true, version), type);
  return item;
}

std::string readString(const std::string& text, double version) {
  return makeItem(text, ParserValue::TYPE_STRING, version).getString(0);
}

std::string writeValue(const std::string& text, ParserValue::Type type, double version = ESCAPED) {
  std::string written;
  makeItem(text, type, version).getValueText(written, true, 1);
  return written;
}

std::string bytesOf(const ParserItem& item) {
  return {static_cast<const char*>(item.getBinaryData(0)), item.getBinaryDataSize(0)};
}

}  // namespace

// --- Words that keep their spelling --------------------------------------------------------------

TEST(ParserItemWordTest, ABoolKeepsItsTextAndIsTrueForYes) {
  const ParserItem item = makeItem("yes", ParserValue::TYPE_BOOL);
  EXPECT_EQ(item.getValueType(0), ParserValue::TYPE_BOOL);
  EXPECT_EQ(item.getWord(0), "yes");
  EXPECT_TRUE(item.getBool(0));
}

TEST(ParserItemWordTest, ABoolIsFalseForNo) {
  EXPECT_FALSE(makeItem("no", ParserValue::TYPE_BOOL).getBool(0));
}

TEST(ParserItemWordTest, AnIntKeepsItsSpelling) {
  const ParserItem item = makeItem("+007", ParserValue::TYPE_INT);
  EXPECT_EQ(item.getWord(0), "+007");
  EXPECT_EQ(item.getInt(0), 7);
}

TEST(ParserItemWordTest, ADoubleKeepsItsSpelling) {
  const ParserItem item = makeItem("1.50", ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(item.getWord(0), "1.50");
  EXPECT_EQ(item.getDouble(0), 1.5);
}

TEST(ParserItemWordTest, ACharKeepsItsSpelling) {
  const ParserItem item = makeItem("065", ParserValue::TYPE_CHAR);
  EXPECT_EQ(item.getWord(0), "065");
  EXPECT_EQ(item.getChar(0), 'A');
}

TEST(ParserItemWordTest, AnEmptyTagBecomesAValueOfItsOwnType) {
  const ParserItem item = makeItem("<empty>", ParserValue::TYPE_EMPTY);
  EXPECT_EQ(item.getValueType(0), ParserValue::TYPE_EMPTY);
  EXPECT_EQ(item.getWord(0), "<empty>");
}

TEST(ParserItemWordTest, AnEmptyTagIsWrittenAsItStood) {
  EXPECT_EQ(writeValue("<empty>", ParserValue::TYPE_EMPTY), " <empty>");
}

TEST(ParserItemWordTest, NumbersAreWrittenAsTheyStood) {
  EXPECT_EQ(writeValue("+007", ParserValue::TYPE_INT), " +007");
  EXPECT_EQ(writeValue("1e3", ParserValue::TYPE_DOUBLE), " 1e3");
}

TEST(ParserItemWordTest, TheOldFormatKeepsTheSpellingToo) {
  EXPECT_EQ(makeItem("yes", ParserValue::TYPE_BOOL, PLAIN).getWord(0), "yes");
  EXPECT_EQ(makeItem("+007", ParserValue::TYPE_INT, PLAIN).getWord(0), "+007");
  EXPECT_EQ(makeItem("1.50", ParserValue::TYPE_DOUBLE, PLAIN).getWord(0), "1.50");
  EXPECT_EQ(makeItem("<empty>", ParserValue::TYPE_EMPTY, PLAIN).getWord(0), "<empty>");
}

TEST(ParserItemWordTest, OtherTypesKeepTheQuotesOfAQuotedWordAndResolveItsEscapes) {
  EXPECT_EQ(makeItem("\"a\\tb\"", ParserValue::TYPE_INT).getWord(0), "\"a\tb\"");
}

TEST(ParserItemWordTest, AnEmptyWordHasAnEmptyText) {
  EXPECT_EQ(makeItem("", ParserValue::TYPE_INT).getWord(0), "");
}

TEST(ParserItemWordTest, AGroupWordMakesAnEmptyGroupOfThatName) {
  const ParserItem item = makeItem("inner", ParserValue::TYPE_GROUP);
  ASSERT_TRUE(item.isGroup());
  EXPECT_EQ(item.getGroup(0)->getName(), "inner");
  EXPECT_EQ(item.getGroup(0)->getItemCount(), 0u);
}

TEST(ParserItemWordTest, AWordOfATypeOutsideTheEnumerationKeepsTheTypeOnly) {
  const ParserItem item = makeItem("word", static_cast<ParserValue::Type>(42));
  EXPECT_EQ(item.getValueType(0), 42);
  EXPECT_EQ(item.getWord(0), "");
}

TEST(ParserItemWordTest, EveryWordAppendsOneValue) {
  ParserItem item = makeItem("1", ParserValue::TYPE_INT);
  const std::string text = "\"two\"";
  item.addWord(ParserWord(text, true, ESCAPED), ParserValue::TYPE_STRING);
  ASSERT_EQ(item.getValueCount(), 2u);
  EXPECT_EQ(item.getInt(0), 1);
  EXPECT_EQ(item.getString(1), "two");
}

// --- Binary data ---------------------------------------------------------------------------------

TEST(ParserItemWordTest, ABinaryWordIsDecoded) {
  const ParserItem item = makeItem("0x0102FF02010000", ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(item.getValueType(0), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(bytesOf(item), "\x01\x02\xFF");
}

TEST(ParserItemWordTest, ABinaryWordIsDecodedInTheOldFormatToo) {
  EXPECT_EQ(bytesOf(makeItem("0x414283000000", ParserValue::TYPE_BINARYDATA, PLAIN)), "AB");
}

TEST(ParserItemWordTest, ABinaryWordKeepsNoText) {
  EXPECT_EQ(makeItem("0x414283000000", ParserValue::TYPE_BINARYDATA).getWord(0), "");
}

TEST(ParserItemWordTest, ABinaryWordIsWrittenWithAFreshChecksum) {
  EXPECT_EQ(writeValue("0x414212345678", ParserValue::TYPE_BINARYDATA), " 0x414283000000");
}

TEST(ParserItemWordTest, LowerCaseDigitsAreReadAsZeroBytes) {
  EXPECT_EQ(writeValue("0xff4140010000", ParserValue::TYPE_BINARYDATA), " 0x004141000000");
}

TEST(ParserItemWordTest, ABinaryWordOfOddLengthIsAnEmptyBlock) {
  const ParserItem item = makeItem("0x4142830000001", ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(item.getBinaryDataSize(0), 0u);
}

TEST(ParserItemWordTest, ABinaryWordWithoutAChecksumIsWrittenAsAnEmptyBlock) {
  EXPECT_EQ(writeValue("0x10", ParserValue::TYPE_BINARYDATA), " 0x00000000");
}

// --- Strings -------------------------------------------------------------------------------------

TEST(ParserItemWordTest, AStringLosesItsQuotes) {
  const ParserItem item = makeItem("\"a b\"", ParserValue::TYPE_STRING);
  EXPECT_EQ(item.getValueType(0), ParserValue::TYPE_STRING);
  EXPECT_EQ(item.getWord(0), "a b");
  EXPECT_EQ(item.getString(0), "a b");
}

TEST(ParserItemWordTest, AStringLosesItsQuotesInTheOldFormatToo) {
  EXPECT_EQ(readString("\"a b\"", PLAIN), "a b");
}

TEST(ParserItemWordTest, AnEscapedQuoteIsResolved) {
  EXPECT_EQ(readString("\"a\\\"b\"", ESCAPED), "a\"b");
}

TEST(ParserItemWordTest, AnEscapedQuoteIsWrittenWithItsEscapeAgain) {
  EXPECT_EQ(writeValue("\"a\\\"b\"", ParserValue::TYPE_STRING), " \"a\\\"b\"");
}

TEST(ParserItemWordTest, EscapesOfControlCharactersAreResolved) {
  EXPECT_EQ(readString("\"\\n\\r\\t\"", ESCAPED), "\n\r\t");
}

TEST(ParserItemWordTest, EscapedBackslashesAndSingleQuotesAreResolved) {
  EXPECT_EQ(readString("\"\\\\\\'\"", ESCAPED), "\\'");
}

TEST(ParserItemWordTest, TheBackslashBeforeAnyOtherByteIsDropped) {
  EXPECT_EQ(readString("\"\\q\\0\"", ESCAPED), "q0");
}

TEST(ParserItemWordTest, TheOldFormatKeepsBackslashes) {
  EXPECT_EQ(readString("\"a\\nb\"", PLAIN), "a\\nb");
}

TEST(ParserItemWordTest, ABackslashOfTheOldFormatIsWrittenAsAnEscape) {
  EXPECT_EQ(writeValue("\"a\\nb\"", ParserValue::TYPE_STRING, PLAIN), " \"a\\\\nb\"");
}

TEST(ParserItemWordTest, TwoQuotesAreTheEmptyString) {
  EXPECT_EQ(readString("\"\"", ESCAPED), "");
  EXPECT_EQ(readString("\"\"", PLAIN), "");
}

TEST(ParserItemWordTest, AStringWordOfTwoOtherBytesIsTheEmptyString) {
  EXPECT_EQ(readString("ab", ESCAPED), "");
  EXPECT_EQ(readString("ab", PLAIN), "");
}

TEST(ParserItemWordTest, AStringWordOfTwoBytesIsNeverOutOfRange) {
  EXPECT_EQ(readString(std::string("\0a", 2), ESCAPED), "");
  EXPECT_EQ(readString(std::string("\0a", 2), PLAIN), "");
}

TEST(ParserItemWordTest, AStringWordOfOneByteIsTheEmptyString) {
  EXPECT_EQ(readString("\"", ESCAPED), "");
  EXPECT_EQ(readString("\"", PLAIN), "");
}

TEST(ParserItemWordTest, AStringWordWithoutBytesIsTheEmptyString) {
  EXPECT_EQ(readString("", ESCAPED), "");
  EXPECT_EQ(readString("", PLAIN), "");
}

TEST(ParserItemWordTest, AStringOfOneByteIsRead) { EXPECT_EQ(readString("\"x\"", ESCAPED), "x"); }

TEST(ParserItemWordTest, TheClosingQuoteIsDroppedAlsoWhenItIsEscaped) {
  EXPECT_EQ(readString("\"ab\\\"", ESCAPED), "ab");
}

TEST(ParserItemWordTest, AnEscapedClosingQuoteAloneLeavesTheEmptyString) {
  EXPECT_EQ(readString("\"\\\"", ESCAPED), "");
}

TEST(ParserItemWordTest, BeforeTheClosingQuoteTheOldFormatKeepsABackslash) {
  EXPECT_EQ(readString("\"ab\\\"", PLAIN), "ab\\");
}

TEST(ParserItemWordTest, AStringWordWithoutQuotesLosesItsFirstAndLastByte) {
  EXPECT_EQ(readString("abcd", ESCAPED), "bc");
  EXPECT_EQ(readString("abcd", PLAIN), "bc");
}

TEST(ParserItemWordTest, AStringWithEscapesKeepsZeroBytes) {
  EXPECT_EQ(readString(std::string("\"a\0b\"", 5), ESCAPED), std::string("a\0b", 3));
}

TEST(ParserItemWordTest, AStringOfTheOldFormatEndsBeforeTheLastByteAheadOfAZeroByte) {
  EXPECT_EQ(readString(std::string("\"ab\0c\"", 6), PLAIN), "a");
}

TEST(ParserItemWordTest, AStringWordThatYieldsOneByteIsTheEmptyString) {
  EXPECT_EQ(readString(std::string("\"\0ab\"", 5), PLAIN), "");
}

TEST(ParserItemWordTest, AVersionBelowTheFirstWithEscapesHasNone) {
  EXPECT_EQ(readString("\"\\n\"", 1.0999), "\\n");
}

TEST(ParserItemWordTest, ALaterVersionHasEscapes) { EXPECT_EQ(readString("\"\\n\"", 2.0), "\n"); }

// --- The out-of-range error ----------------------------------------------------------------------

TEST(ParserItemWordTest, AStringWordThatYieldsNothingIsOutOfRangeInTheOldFormat) {
  EXPECT_THROW(readString(std::string("\0ab", 3), PLAIN), std::out_of_range);
}

TEST(ParserItemWordTest, AStringWordThatYieldsNothingIsOutOfRangeInTheNewFormat) {
  EXPECT_THROW(readString(std::string("\0ab", 3), ESCAPED), std::out_of_range);
}

TEST(ParserItemWordTest, TheOutOfRangeErrorIsTheOneOfSubstr) {
  try {
    readString(std::string("\0ab", 3), ESCAPED);
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 20), "basic_string::substr");
  }
}

TEST(ParserItemWordTest, AfterTheOutOfRangeErrorTheItemIsAsBefore) {
  ParserItem item = makeItem("1", ParserValue::TYPE_INT);
  const std::string text("\0ab", 3);
  const ParserWord word(text, true, ESCAPED);
  EXPECT_THROW(item.addWord(word, ParserValue::TYPE_STRING), std::out_of_range);
  EXPECT_EQ(item.getValueCount(), 1u);
}
