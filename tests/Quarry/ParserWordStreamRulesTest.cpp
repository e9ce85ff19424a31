// Any text is cut as the rules say, one byte after the other: words, lines, columns, the end.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "WordCutting.h"

using WordCutting::checkText;

namespace {

std::string makeText(std::mt19937& random, const std::string& bytes, unsigned long most) {
  std::string text;
  for (unsigned long i = random() % (most + 1); i > 0; --i)
    text += bytes[random() % bytes.size()];
  return text;
}

/// Words, blanks and quotes of up to some forty bytes, so that blocks of 16 are crossed.
std::string makeLongText(std::mt19937& random) {
  const std::string bytes = "aaa \t\n\r\"\\{,/";
  std::string text;
  for (unsigned long i = random() % 8; i > 0; --i) {
    text += std::string(random() % 40, bytes[random() % bytes.size()]);
    text += bytes[random() % bytes.size()];
  }
  return text;
}

}  // namespace

TEST(ParserWordStreamRulesTest, TextsOfBytesThatMeanSomethingAreCutAsByteByByte) {
  std::mt19937 random(1);
  for (int i = 0; i < 50000 && !testing::Test::HasFailure(); ++i)
    checkText(makeText(random, " \t\r\n{}(),=\"\\ax", 40));
}

TEST(ParserWordStreamRulesTest, TextsWithManyQuotesAreCutAsByteByByte) {
  std::mt19937 random(2);
  for (int i = 0; i < 30000 && !testing::Test::HasFailure(); ++i)
    checkText(makeText(random, "\"\"\"\\a {\n", 30));
}

TEST(ParserWordStreamRulesTest, TextsOfAnyBytesAreCutAsByteByByte) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte)
    bytes += static_cast<char>(byte);
  std::mt19937 random(3);
  for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i)
    checkText(makeText(random, bytes, 80));
}

TEST(ParserWordStreamRulesTest, LongWordsAndBlanksAreCutAsByteByByte) {
  std::mt19937 random(4);
  for (int i = 0; i < 30000 && !testing::Test::HasFailure(); ++i)
    checkText(makeLongText(random));
}
