// Every byte, every pair of bytes, and every triple of those that mean something: words lie within
// the text, nothing but blanks and line breaks is left out, lines and columns are those that are
// counted.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "WordCutting.h"

using Quarry::ParserWord;
using Quarry::ParserWordStream;
using WordCutting::checkText;

namespace {

bool isLineBreak(char byte) { return byte == '\r' || byte == '\n'; }
bool isBlank(char byte) { return byte == ' ' || byte == '\t' || isLineBreak(byte); }

bool isDelimiter(const std::string& word) {
  return word.size() == 1 && word[0] != '\0' && std::strchr("{}(),=", word[0]) != nullptr;
}

/// Expects that all bytes of [begin, end) are blanks or line breaks.
void checkSkipped(const std::string& text, unsigned long begin, unsigned long end) {
  ASSERT_LE(begin, end);
  ASSERT_LE(end, text.size());
  for (unsigned long i = begin; i < end; ++i)
    ASSERT_TRUE(isBlank(text[i])) << text;
}

/// Expects the line and column that are found by looking back from the word.
void checkPlace(const std::string& text, const ParserWord& word) {
  const unsigned long end = word.getStart() + word.getLength();
  unsigned long line = 1;
  unsigned long lineBegin = 0;
  for (unsigned long i = 0; i < word.getStart(); ++i) {
    if (!isLineBreak(text[i])) continue;
    ++line;
    lineBegin = i + 1;
  }
  const bool isDelimited = isDelimiter(text.substr(word.getStart(), word.getLength()));
  const bool isBeforeBlank = !isDelimited && end < text.size() && isBlank(text[end]);
  ASSERT_EQ(word.getLine(), line) << text;
  ASSERT_EQ(word.getColumn(), word.getStart() - lineBegin + (isBeforeBlank ? 1 : 0)) << text;
}

/// Expects that the words and what lies between them make up the text.
void checkSpans(const std::string& text) {
  ParserWordStream stream(text, 1.1);
  unsigned long taken = 0;
  while (const ParserWord* word = stream.next()) {
    ASSERT_GT(word->getLength(), 0UL);
    checkSkipped(text, taken, word->getStart());
    taken = word->getStart() + word->getLength();
    ASSERT_LE(taken, text.size());
    checkPlace(text, *word);
  }
  checkSkipped(text, taken, text.size());
  ASSERT_TRUE(stream.isExhausted());
}

void check(const std::string& text) {
  checkText(text);
  checkSpans(text);
}

/// Calls `use` with every pair of bytes.
template <class Use>
void forEachPair(Use use) {
  for (int pair = 0; pair < 256 * 256 && !testing::Test::HasFatalFailure(); ++pair)
    use({static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)});
}

/// Calls `use` with every sequence of so many of the bytes that mean something to some rule.
template <class Use>
void forEachSequence(unsigned long length, Use use) {
  const std::string bytes = std::string(" \t\r\n\"'{}09ae#/*\\,()=-+.<", 24) + '\0' + "\x80\xFF";
  std::string text(length, bytes[0]);
  unsigned long count = 1;
  for (unsigned long i = 0; i < length; ++i)
    count *= bytes.size();
  for (unsigned long i = 0; i < count && !testing::Test::HasFatalFailure(); ++i) {
    unsigned long rest = i;
    for (char& byte : text) {
      byte = bytes[rest % bytes.size()];
      rest /= bytes.size();
    }
    use(text);
  }
}

}  // namespace

TEST(ParserWordStreamBytesTest, EveryByteAlone) {
  for (int byte = 0; byte < 256; ++byte)
    check(std::string(1, static_cast<char>(byte)));
}

TEST(ParserWordStreamBytesTest, EveryByteSixteenTimesAndMore) {
  for (int byte = 0; byte < 256; ++byte) {
    for (unsigned long count = 15; count <= 34; ++count)
      check(std::string(count, static_cast<char>(byte)));
  }
}

TEST(ParserWordStreamBytesTest, EveryPair) {
  forEachPair([](const std::string& pair) { check(pair); });
}

TEST(ParserWordStreamBytesTest, EveryPairWithinAWord) {
  forEachPair([](const std::string& pair) { check("a" + pair + "b"); });
}

TEST(ParserWordStreamBytesTest, EveryPairWithinAQuotedWord) {
  forEachPair([](const std::string& pair) { check("\"a" + pair + "b\" c"); });
}

TEST(ParserWordStreamBytesTest, EveryPairAcrossTheSixteenthByte) {
  forEachPair(
      [](const std::string& pair) { check("abcdefghijklmno" + pair + "0123456789abcdef"); });
}

TEST(ParserWordStreamBytesTest, EveryTripleOfBytesThatMeanSomething) { forEachSequence(3, check); }

TEST(ParserWordStreamBytesTest, EveryTripleOfBytesThatMeanSomethingWithinAWord) {
  forEachSequence(3, [](const std::string& triple) { check("a" + triple + "b"); });
}
