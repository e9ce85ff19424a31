// Blocks of bytes as words.
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/BinaryText.h>
#include <Quarry/internal/ParserWordStream.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>

using namespace std::string_literals;

using Quarry::ParserValue;
using Quarry::ParserWord;
using Quarry::ParserWordStream;

namespace {

constexpr unsigned long UNTOUCHED = 99;

std::string write(std::string_view bytes) {
  std::string text;
  Quarry::appendBinaryText(text, bytes);
  return text;
}

/// Reads a word; the buffer is null exactly when there are no bytes.
std::string read(std::string_view word) {
  unsigned long size = UNTOUCHED;
  const std::unique_ptr<char[]> bytes = Quarry::readBinaryText(word, size);
  EXPECT_EQ(bytes == nullptr, size == 0);
  return size > 0 ? std::string(bytes.get(), size) : std::string();
}

/// Reads a word through the operation that programs use; its array is freed as they free it.
std::string decode(const ParserWord& word) {
  int other = 0;
  void* data = &other;
  unsigned long size = UNTOUCHED;
  ParserValue::wordToBinaryData(data, size, word);
  EXPECT_EQ(data == nullptr, size == 0);
  const std::unique_ptr<char[]> bytes(static_cast<char*>(data));
  return size > 0 ? std::string(bytes.get(), size) : std::string();
}

std::string decode(const std::string& text) { return decode(ParserWord(text, true, 1.1)); }

std::string printPair(int byte) {
  char pair[3];
  std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned>(byte));
  return pair;
}

}  // namespace

// --- Write ---------------------------------------------------------------------------------------

TEST(BinaryTextTest, PrefixThenBytesThenChecksum) {
  EXPECT_EQ(write("\x01\x02\xFF"), "0x0102FF02010000");
}

TEST(BinaryTextTest, NoBytesAreThePrefixAndEightZeros) { EXPECT_EQ(write(""), "0x00000000"); }

TEST(BinaryTextTest, EachByteIsTwoUpperCaseDigits) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string pair = printPair(byte);
    EXPECT_EQ(write(std::string(1, static_cast<char>(byte))), "0x" + pair + pair + "000000");
  }
}

TEST(BinaryTextTest, TheChecksumIsTheSumOfTheBytesAsUnsignedNumbers) {
  EXPECT_EQ(write("\xFF\xFF"), "0xFFFFFE010000");
}

TEST(BinaryTextTest, TheLeastSignificantByteOfTheChecksumIsFirst) {
  const std::string word = write(std::string(0x010204, '\x01'));
  EXPECT_EQ(word.substr(word.size() - 8), "04020100");
}

TEST(BinaryTextTest, TheChecksumWrapsAt32Bits) {
  constexpr unsigned long COUNT = 0xFFFFFFFFUL / 0xFF + 1;  // the fewest bytes of 255 to wrap
  const std::string word = write(std::string(COUNT, '\xFF'));
  EXPECT_EQ(word.size(), 2 + 2 * COUNT + 8);
  EXPECT_EQ(word.substr(word.size() - 8), "FE000000");
}

TEST(BinaryTextTest, TheWordIsAppended) {
  std::string text = "block ";
  Quarry::appendBinaryText(text, "\x01");
  EXPECT_EQ(text, "block 0x0101000000");
}

// --- Read ----------------------------------------------------------------------------------------

TEST(BinaryTextTest, TheBytesOfAWordAreReadBack) {
  EXPECT_EQ(decode("0x0102FF02010000"), "\x01\x02\xFF");
}

TEST(BinaryTextTest, AnEmptyBlockReadsAsNoData) { EXPECT_EQ(decode("0x00000000"), ""); }

TEST(BinaryTextTest, AWordWithoutAChecksumIsTooShort) { EXPECT_EQ(decode("0x0102FF"), ""); }

TEST(BinaryTextTest, LowerCaseDigitsReadAsZeroBytes) {
  EXPECT_EQ(decode("0xabcd00000000"), "\0\0"s);
}

TEST(BinaryTextTest, AWordOfOddLengthReadsAsNoData) {
  EXPECT_EQ(decode("0x0102FF020100000"), "");
  EXPECT_EQ(decode("0x010000000"), "");
}

TEST(BinaryTextTest, TheLengthDecidesHowManyBytesThereAre) {
  for (unsigned long length = 0; length < 40; ++length) {
    const unsigned long expected = length > 10 && length % 2 == 0 ? (length - 10) / 2 : 0;
    EXPECT_EQ(read(std::string(length, 'A')), std::string(expected, '\xAA')) << length;
  }
}

TEST(BinaryTextTest, EveryPairReadsAsItsByteOrAsZero) {
  const std::string digits = "0123456789ABCDEF";
  for (int high = 0; high < 256; ++high) {
    for (int low = 0; low < 256; ++low) {
      const std::string pair = {static_cast<char>(high), static_cast<char>(low)};
      const unsigned long first = digits.find(pair[0]);
      const unsigned long second = digits.find(pair[1]);
      const bool valid = first != std::string::npos && second != std::string::npos;
      const char expected = valid ? static_cast<char>(16 * first + second) : '\0';
      ASSERT_EQ(read("0x" + pair + "00000000"), std::string(1, expected)) << high << ' ' << low;
    }
  }
}

TEST(BinaryTextTest, OneInvalidPairLeavesItsNeighboursAlone) {
  EXPECT_EQ(decode("0x01G10200000000"), "\x01\0\x02"s);
}

TEST(BinaryTextTest, ThePrefixIsNotExamined) {
  EXPECT_EQ(decode("zz0102FF02010000"), "\x01\x02\xFF");
}

TEST(BinaryTextTest, TheChecksumIsNotVerified) {
  EXPECT_EQ(decode("0x0102FFDEADBEEF"), "\x01\x02\xFF");
  EXPECT_EQ(decode("0x0102FF!!!!!!!!"), "\x01\x02\xFF");
}

TEST(BinaryTextTest, NothingIsReadWithAMessage) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(decode("0xgarbage"), "");
  EXPECT_EQ(decode("not a block!"), "\0"s);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(BinaryTextTest, AnEmptyWordReadsAsNoData) { EXPECT_EQ(decode(ParserWord(1.1)), ""); }

TEST(BinaryTextTest, OnlyTheBytesOfTheWordAreRead) {
  const std::string text = "block 0x010100000002, 0x0303000000";
  ParserWordStream words(text, 1.1);
  words.next();
  EXPECT_EQ(decode(*words.next()), "\x01\x01");
  words.next();
  EXPECT_EQ(decode(*words.next()), "\x03");
}

TEST(BinaryTextTest, ReadingDoesNotClassifyTheWord) {
  const std::string text = "0x0101000000";
  const ParserWord word(text, true, 1.1);
  EXPECT_EQ(decode(word), "\x01");
  EXPECT_EQ(word.getType(), ParserWord::WORD_UNKNOWN);
}

TEST(BinaryTextTest, AWordIsReadWhateverItWasTakenFor) {
  const std::string text = "0x0101000000";
  const ParserWord word(text, true, 1.0);
  EXPECT_TRUE(word.isInt());
  EXPECT_EQ(decode(word), "\x01");
}

// --- There and back ------------------------------------------------------------------------------

TEST(BinaryTextTest, EveryBlockIsReadBackAsItWas) {
  std::mt19937 random(3);
  for (unsigned long size = 0; size < 500; ++size) {
    std::string bytes(size, ' ');
    for (char& byte : bytes)
      byte = static_cast<char>(random());
    ASSERT_EQ(decode(write(bytes)), bytes) << size;
  }
}
