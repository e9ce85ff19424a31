// The binary form of single values, and of the numbers, strings and blocks that it consists of.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>

#include "support/Bytes.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserValue;
using TestSupport::Bytes;
using TestSupport::makeBytes;
using TestSupport::makeSize;
using TestSupport::makeString;
using TestSupport::makeText;
using TestSupport::Message;
using TestSupport::RecordingConsole;
using TestSupport::operator+;

namespace {

const char STRING_WARNING[] = "ParserValue::binTostring: Failed to parse string\n";
const char BLOCK_WARNING[] = "ParserValue::binToBinaryData: Failed to parse string\n";

Bytes encode(const ParserValue& value, bool withTag = true) {
  Bytes buffer;
  unsigned long count = 0;
  value.getBinary(buffer, count, withTag);
  EXPECT_EQ(count, buffer.size());
  return buffer;
}

Bytes encodeText(ParserValue::Type type, const std::string& text) {
  return encode(ParserValue(type, text));
}

/// A decoded value and where reading stopped.
struct Decoded {
  std::unique_ptr<ParserValue> value;
  unsigned long pos;
};

Decoded decode(const Bytes& data, unsigned long pos = 0) {
  std::unique_ptr<ParserValue> value(ParserValue::binTovalue(data, pos));
  return {std::move(value), pos};
}

std::string write(const ParserValue& value) {
  std::string text;
  value.getText(text, false, 1);
  return text;
}

}  // namespace

// --- Numbers -------------------------------------------------------------------------------------

TEST(BinaryNumberTest, TrueIsOneByteOne) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::boolToBin(buffer, true), 1u);
  EXPECT_EQ(buffer, makeBytes("01"));
}

TEST(BinaryNumberTest, FalseIsOneByteZero) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::boolToBin(buffer, false), 1u);
  EXPECT_EQ(buffer, makeBytes("00"));
}

TEST(BinaryNumberTest, AnyByteButZeroReadsAsTrue) {
  unsigned long pos = 0;
  EXPECT_TRUE(ParserValue::binToBool(makeBytes("80"), pos));
  EXPECT_EQ(pos, 1u);
}

TEST(BinaryNumberTest, ZeroReadsAsFalse) {
  unsigned long pos = 0;
  EXPECT_FALSE(ParserValue::binToBool(makeBytes("00"), pos));
}

TEST(BinaryNumberTest, CharacterIsItsByte) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::charToBin(buffer, '\xFE'), 1u);
  EXPECT_EQ(buffer, makeBytes("FE"));
}

TEST(BinaryNumberTest, CharacterReadsBack) {
  unsigned long pos = 1;
  EXPECT_EQ(ParserValue::binToChar(makeBytes("00 FE"), pos), '\xFE');
  EXPECT_EQ(pos, 2u);
}

TEST(BinaryNumberTest, IntIsFourBytesLeastSignificantFirst) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::intToBin(buffer, 0x01020304), 4u);
  EXPECT_EQ(buffer, makeBytes("04 03 02 01"));
}

TEST(BinaryNumberTest, NegativeIntIsTwosComplement) {
  Bytes buffer;
  ParserValue::intToBin(buffer, -2);
  EXPECT_EQ(buffer, makeBytes("FE FF FF FF"));
}

TEST(BinaryNumberTest, LowestIntReadsBack) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToInt(makeBytes("00 00 00 80"), pos), std::numeric_limits<int>::min());
  EXPECT_EQ(pos, 4u);
}

TEST(BinaryNumberTest, DoubleIsItsEightBytes) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::doubleToBin(buffer, 1.0), 8u);
  EXPECT_EQ(buffer, makeBytes("00 00 00 00 00 00 F0 3F"));
}

TEST(BinaryNumberTest, DoubleReadsBack) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToDouble(makeBytes("00 00 00 00 00 00 00 C0"), pos), -2.0);
  EXPECT_EQ(pos, 8u);
}

TEST(BinaryNumberTest, NanReadsBackAsNan) {
  Bytes buffer;
  ParserValue::doubleToBin(buffer, std::nan(""));
  unsigned long pos = 0;
  EXPECT_TRUE(std::isnan(ParserValue::binToDouble(buffer, pos)));
}

TEST(BinaryNumberTest, SizeIsEightBytesLeastSignificantFirst) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::sizeToBin(buffer, 0x01020304UL), 8u);
  EXPECT_EQ(buffer, makeBytes("04 03 02 01 00 00 00 00"));
}

#if ULONG_MAX > 0xFFFFFFFF
TEST(BinaryNumberTest, TheUpperBytesOfASizeComeLast) {
  Bytes buffer;
  ParserValue::sizeToBin(buffer, 0x0102030405060708UL);
  EXPECT_EQ(buffer, makeBytes("08 07 06 05 04 03 02 01"));
}
#else
TEST(BinaryNumberTest, ASizeBeyondTheLargestNumberReadsAsThat) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binTosize(makeBytes("02 00 00 00 01 00 00 00"), pos), ~0UL);
  EXPECT_EQ(pos, 8u);
}
#endif

TEST(BinaryNumberTest, LargestSizeReadsBack) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binTosize(makeSize(~0ULL), pos), ~0UL);
  EXPECT_EQ(pos, 8u);
}

TEST(BinaryNumberTest, EncodersAppend) {
  Bytes buffer = makeBytes("AA");
  ParserValue::boolToBin(buffer, true);
  EXPECT_EQ(buffer, makeBytes("AA 01"));
}

// --- Numbers that are cut short ------------------------------------------------------------------

TEST(BinaryNumberTest, BoolAtTheEndIsFalse) {
  unsigned long pos = 1;
  EXPECT_FALSE(ParserValue::binToBool(makeBytes("01"), pos));
  EXPECT_EQ(pos, 1u);
}

TEST(BinaryNumberTest, CharacterAtTheEndIsZero) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToChar(Bytes(), pos), 0);
  EXPECT_EQ(pos, 0u);
}

TEST(BinaryNumberTest, IntCutShortIsZeroAndMovesToTheEnd) {
  unsigned long pos = 1;
  EXPECT_EQ(ParserValue::binToInt(makeBytes("FF FF FF FF"), pos), 0);
  EXPECT_EQ(pos, 4u);
}

TEST(BinaryNumberTest, DoubleCutShortIsZeroAndMovesToTheEnd) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToDouble(makeBytes("00 00 00 00 00 00 F0"), pos), 0.0);
  EXPECT_EQ(pos, 7u);
}

TEST(BinaryNumberTest, SizeCutShortIsZeroAndMovesToTheEnd) {
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binTosize(makeBytes("FF FF FF FF FF FF FF"), pos), 0u);
  EXPECT_EQ(pos, 7u);
}

TEST(BinaryNumberTest, PositionBehindTheEndIsTheEnd) {
  unsigned long pos = ~0UL;
  EXPECT_EQ(ParserValue::binToInt(makeBytes("01 02 03 04"), pos), 0);
  EXPECT_EQ(pos, 4u);
}

TEST(BinaryNumberTest, NumbersCutShortAreSilent) {
  const RecordingConsole console;
  unsigned long pos = 0;
  ParserValue::binToInt(makeBytes("01"), pos);
  EXPECT_TRUE(console.isSilent());
}

// --- Strings -------------------------------------------------------------------------------------

TEST(BinaryStringTest, StringEndsWithAZeroByte) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::stringToBin(buffer, "ab"), 3u);
  EXPECT_EQ(buffer, makeBytes("61 62 00"));
}

TEST(BinaryStringTest, EmptyStringIsOneZeroByte) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::stringToBin(buffer, ""), 1u);
  EXPECT_EQ(buffer, makeBytes("00"));
}

TEST(BinaryStringTest, ReadingStopsBehindTheZeroByte) {
  unsigned long pos = 1;
  EXPECT_EQ(ParserValue::binToString(makeBytes("78 61 62 00 63"), pos), "ab");
  EXPECT_EQ(pos, 4u);
}

TEST(BinaryStringTest, StringWithAZeroByteIsCutThere) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::stringToBin(buffer, std::string("a\0b", 3)), 4u);
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToString(buffer, pos), "a");
  EXPECT_EQ(pos, 2u);
}

TEST(BinaryStringTest, StringWithoutAZeroByteWarnsAndIsEmpty) {
  const RecordingConsole console;
  unsigned long pos = 0;
  EXPECT_EQ(ParserValue::binToString(makeBytes("61 62"), pos), "");
  EXPECT_EQ(pos, 2u);
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Plinth::Console::LEVEL_WARNING, STRING_WARNING, ""}}));
}

TEST(BinaryStringTest, StringAtTheEndWarnsAndIsEmpty) {
  const RecordingConsole console;
  unsigned long pos = 2;
  EXPECT_EQ(ParserValue::binToString(makeBytes("61 00"), pos), "");
  EXPECT_EQ(pos, 2u);
  EXPECT_EQ(console.getWarnings(), std::vector<std::string>({STRING_WARNING}));
}

// --- Blocks --------------------------------------------------------------------------------------

TEST(BinaryBlockTest, BlockIsItsSizeAndItsBytes) {
  Bytes block = makeBytes("0A 0B");
  Bytes buffer;
  EXPECT_EQ(ParserValue::binaryDataToBin(buffer, block.data(), 2), 10u);
  EXPECT_EQ(buffer, makeSize(2) + block);
}

TEST(BinaryBlockTest, EmptyBlockIsASizeOfZero) {
  Bytes buffer;
  EXPECT_EQ(ParserValue::binaryDataToBin(buffer, nullptr, 0), 8u);
  EXPECT_EQ(buffer, makeSize(0));
}

TEST(BinaryBlockTest, BlockReadsBack) {
  unsigned long pos = 0;
  unsigned long size = 0;
  const std::unique_ptr<char[]> bytes(static_cast<char*>(
      ParserValue::binToBinaryData(makeSize(2) + makeBytes("0A 0B FF"), pos, size)));
  EXPECT_EQ(size, 2u);
  EXPECT_EQ(Bytes(bytes.get(), bytes.get() + size), makeBytes("0A 0B"));
  EXPECT_EQ(pos, 10u);
}

TEST(BinaryBlockTest, EmptyBlockReadsAsNull) {
  const RecordingConsole console;
  unsigned long pos = 0;
  unsigned long size = 7;
  EXPECT_EQ(ParserValue::binToBinaryData(makeSize(0) + makeBytes("FF"), pos, size), nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(pos, 8u);
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryBlockTest, BlockLongerThanTheDataWarnsAndIsNull) {
  const RecordingConsole console;
  unsigned long pos = 0;
  unsigned long size = 7;
  const Bytes data = makeSize(5) + makeBytes("01 02 03");
  EXPECT_EQ(ParserValue::binToBinaryData(data, pos, size), nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(pos, data.size());
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Plinth::Console::LEVEL_WARNING, BLOCK_WARNING, ""}}));
}

TEST(BinaryBlockTest, LargestSizeIsNotBelieved) {
  const RecordingConsole console;
  unsigned long pos = 0;
  unsigned long size = 0;
  EXPECT_EQ(ParserValue::binToBinaryData(makeSize(~0ULL) + makeBytes("01"), pos, size), nullptr);
  EXPECT_EQ(console.getWarnings(), std::vector<std::string>({BLOCK_WARNING}));
}

// --- Values, written -----------------------------------------------------------------------------

TEST(BinaryValueTest, BoolHasTagOne) { EXPECT_EQ(encode(true), makeBytes("01 01")); }

TEST(BinaryValueTest, CharacterHasTagTwo) { EXPECT_EQ(encode('A'), makeBytes("02 41")); }

TEST(BinaryValueTest, IntHasTagThree) { EXPECT_EQ(encode(1), makeBytes("03 01 00 00 00")); }

TEST(BinaryValueTest, DoubleHasTagFour) {
  EXPECT_EQ(encode(1.0), makeBytes("04 00 00 00 00 00 00 F0 3F"));
}

TEST(BinaryValueTest, StringHasTagFive) { EXPECT_EQ(encode("ab"), makeBytes("05 61 62 00")); }

TEST(BinaryValueTest, EmptyStringIsTagAndZeroByte) { EXPECT_EQ(encode(""), makeBytes("05 00")); }

TEST(BinaryValueTest, BlockHasTagSix) {
  Bytes block = makeBytes("0A 0B");
  EXPECT_EQ(encode(ParserValue(block.data(), 2)), makeBytes("06") + makeSize(2) + block);
}

TEST(BinaryValueTest, EmptyBlockIsTagAndZeroSize) {
  EXPECT_EQ(encode(ParserValue(nullptr, 0)), makeBytes("06") + makeSize(0));
}

TEST(BinaryValueTest, GroupHasTagZeroAndNoName) {
  EXPECT_EQ(encode(new ParserGroup("inner")), makeBytes("00") + makeSize(0));
}

TEST(BinaryValueTest, EmptyTagHasTagSevenAndNothingElse) {
  EXPECT_EQ(encodeText(ParserValue::TYPE_EMPTY, "<empty>"), makeBytes("07"));
}

TEST(BinaryValueTest, UnknownTypeHasItsLowByteForTag) {
  EXPECT_EQ(encodeText(static_cast<ParserValue::Type>(0x109), ""), makeBytes("09"));
}

TEST(BinaryValueTest, WithoutTagOnlyThePayloadIsWritten) {
  EXPECT_EQ(encode(1, false), makeBytes("01 00 00 00"));
}

TEST(BinaryValueTest, EmptyTagWithoutTagIsNothing) {
  EXPECT_EQ(encode(ParserValue(ParserValue::TYPE_EMPTY, "<empty>"), false), Bytes());
}

TEST(BinaryValueTest, CountIsIncreasedByTheBytesAppended) {
  Bytes buffer = makeBytes("AA");
  unsigned long count = 100;
  ParserValue(1).getBinary(buffer, count, true);
  EXPECT_EQ(count, 105u);
  EXPECT_EQ(buffer, makeBytes("AA 03 01 00 00 00"));
}

TEST(BinaryValueTest, TextIsConvertedFirst) {
  EXPECT_EQ(encodeText(ParserValue::TYPE_BOOL, "no"), makeBytes("01 00"));
  EXPECT_EQ(encodeText(ParserValue::TYPE_CHAR, "65"), makeBytes("02 41"));
  EXPECT_EQ(encodeText(ParserValue::TYPE_INT, "256"), makeBytes("03 00 01 00 00"));
  EXPECT_EQ(encodeText(ParserValue::TYPE_DOUBLE, "1.0"), makeBytes("04 00 00 00 00 00 00 F0 3F"));
  EXPECT_EQ(encodeText(ParserValue::TYPE_STRING, "ab"), makeBytes("05 61 62 00"));
}

TEST(BinaryValueTest, ClearedStringIsWrittenAsEmptyWithTheWarning) {
  ParserValue value("ab");
  value.clear();
  const RecordingConsole console;
  EXPECT_EQ(encode(value), makeBytes("05 00"));
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>(
                {"ParserValue::getAsString: type mismatch, value type is 'TYPE_STRING' \n"}));
}

TEST(BinaryValueTest, ClearedGroupIsWrittenAsEmpty) {
  ParserValue value(nullptr);
  value.clear();
  EXPECT_EQ(encode(value), makeBytes("00") + makeSize(0));
}

TEST(BinaryValueTest, GroupToBinAppendsTheFrameAndReturnsItsLength) {
  ParserGroup group("g");
  group.addItem("a", 0, 0)->addBool(true);
  Bytes buffer = makeBytes("AA");
  EXPECT_EQ(ParserValue::groupToBin(buffer, group), 21u);
  EXPECT_EQ(buffer,
            makeBytes("AA") + makeSize(13) + makeString("a") + makeSize(3) + makeBytes("00 01 01"));
}

// --- Values, read --------------------------------------------------------------------------------

TEST(BinaryValueTest, BoolReadsBack) {
  const Decoded decoded = decode(makeBytes("01 01"));
  EXPECT_EQ(decoded.value->getType(), ParserValue::TYPE_BOOL);
  EXPECT_TRUE(decoded.value->getAsBool());
  EXPECT_EQ(decoded.pos, 2u);
}

TEST(BinaryValueTest, CharacterReadsBack) {
  const Decoded decoded = decode(makeBytes("02 41"));
  EXPECT_EQ(decoded.value->getType(), ParserValue::TYPE_CHAR);
  EXPECT_EQ(decoded.value->getAsChar(), 'A');
}

TEST(BinaryValueTest, IntReadsBack) {
  const Decoded decoded = decode(makeBytes("03 FE FF FF FF"));
  EXPECT_EQ(decoded.value->getType(), ParserValue::TYPE_INT);
  EXPECT_EQ(decoded.value->getAsInt(), -2);
  EXPECT_EQ(decoded.pos, 5u);
}

TEST(BinaryValueTest, DoubleReadsBack) {
  const Decoded decoded = decode(makeBytes("04 00 00 00 00 00 00 F0 3F"));
  EXPECT_EQ(decoded.value->getType(), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(decoded.value->getAsDouble(), 1.0);
}

TEST(BinaryValueTest, StringReadsBack) {
  const Decoded decoded = decode(makeBytes("05 61 62 00 63"));
  EXPECT_EQ(decoded.value->getAsString(), "ab");
  EXPECT_EQ(decoded.pos, 4u);
}

TEST(BinaryValueTest, BlockReadsBack) {
  const Decoded decoded = decode(makeBytes("06") + makeSize(2) + makeBytes("0A 0B"));
  unsigned long size = 0;
  const auto* bytes = static_cast<const char*>(decoded.value->getAsBinaryData(size));
  EXPECT_EQ(Bytes(bytes, bytes + size), makeBytes("0A 0B"));
}

TEST(BinaryValueTest, GroupReadsBackWithoutAName) {
  const Decoded decoded = decode(encode(new ParserGroup("inner")));
  EXPECT_EQ(decoded.value->getType(), ParserValue::TYPE_GROUP);
  EXPECT_EQ(write(*decoded.value), "{ }");
  EXPECT_EQ(decoded.pos, 9u);
}

TEST(BinaryValueTest, DecodedValueHasNoTextUntilItIsWritten) {
  const Decoded decoded = decode(makeBytes("01 01"));
  EXPECT_EQ(write(*decoded.value), "yes");
}

TEST(BinaryValueTest, DecodedIntIsWrittenAsOneRawByte) {
  const Decoded decoded = decode(makeBytes("03 41 00 00 00"));
  EXPECT_EQ(write(*decoded.value), "A");
}

TEST(BinaryValueTest, EmptyTagIsNotReadBack) {
  const Decoded decoded = decode(makeBytes("07 01"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 1u);
}

TEST(BinaryValueTest, UnknownTagIsNull) {
  const Decoded decoded = decode(makeBytes("09 01"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 1u);
}

TEST(BinaryValueTest, TagIsUnsigned) {
  const Decoded decoded = decode(makeBytes("FF 01"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 1u);
}

TEST(BinaryValueTest, NothingAtTheEnd) {
  const Decoded decoded = decode(makeBytes("01 01"), 2);
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 2u);
}

TEST(BinaryValueTest, BoolWithoutItsByteIsNull) {
  const Decoded decoded = decode(makeBytes("01"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 1u);
}

TEST(BinaryValueTest, CharacterWithoutItsByteIsNull) {
  EXPECT_EQ(decode(makeBytes("02")).value, nullptr);
}

TEST(BinaryValueTest, IntCutShortIsNullAtTheEnd) {
  const Decoded decoded = decode(makeBytes("03 01 00 00"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 4u);
}

TEST(BinaryValueTest, DoubleCutShortIsNullAtTheEnd) {
  const Decoded decoded = decode(makeBytes("04 00 00 00"));
  EXPECT_EQ(decoded.value, nullptr);
  EXPECT_EQ(decoded.pos, 4u);
}

TEST(BinaryValueTest, BrokenStringIsAnEmptyStringValue) {
  const RecordingConsole console;
  const Decoded decoded = decode(makeBytes("05 61 62"));
  ASSERT_NE(decoded.value, nullptr);
  EXPECT_EQ(decoded.value->getAsString(), "");
  EXPECT_EQ(console.getWarnings(), std::vector<std::string>({STRING_WARNING}));
}

TEST(BinaryValueTest, BrokenBlockIsAnEmptyBlockValue) {
  const RecordingConsole console;
  const Decoded decoded = decode(makeBytes("06") + makeSize(5) + makeBytes("01 02"));
  ASSERT_NE(decoded.value, nullptr);
  unsigned long size = 7;
  EXPECT_EQ(decoded.value->getAsBinaryData(size), nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(console.getWarnings(), std::vector<std::string>({BLOCK_WARNING}));
}

TEST(BinaryValueTest, BrokenGroupIsAGroupAsFarAsItWasRead) {
  const RecordingConsole console;
  const Decoded decoded = decode(makeBytes("00") + makeSize(100));
  ASSERT_NE(decoded.value, nullptr);
  EXPECT_EQ(write(*decoded.value), "{ }");
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>(
                {"ParserGroup::setBinary: ParserGroup size larger than the given data\n"}));
}
