// Every byte and pair of bytes, where a name, a value or anything else stands: what is read is a
// whole tree, and what is written of it reads back.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "TreeConsistency.h"

using TreeConsistency::checkTextIsRead;

namespace {

/// HeavyTests, which are built from this file too, read all pairs everywhere.
#ifdef QUARRY_HEAVY_TESTS
constexpr bool IS_HEAVY = true;
#else
constexpr bool IS_HEAVY = false;
#endif

/// Tells whether a byte means something to some rule.
bool hasMeaning(char byte) {
  static const std::string BYTES = std::string(" \t\r\n\"'{}09ae#/*\\,()=-+.<") + '\0';
  return BYTES.find(byte) != std::string::npos;
}

/// Reads the text of every pair of bytes for which `isWanted`; fails where few trees read back.
template <class IsWanted>
void checkPairs(const std::string& before, const std::string& behind, IsWanted isWanted) {
  int read = 0;
  int readBack = 0;
  for (int pair = 0; pair < 256 * 256 && !testing::Test::HasFatalFailure(); ++pair) {
    const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
    if (!isWanted(bytes[0], bytes[1])) continue;
    ++read;
    if (checkTextIsRead(before + std::string(bytes, 2) + behind)) ++readBack;
  }
  EXPECT_GT(readBack, read / 2);
}

void checkAllPairs(const std::string& before, const std::string& behind) {
  checkPairs(before, behind, [](char, char) { return true; });
}

void checkPairsWithMeaning(const std::string& before, const std::string& behind) {
  checkPairs(before, behind,
             [](char a, char b) { return IS_HEAVY || hasMeaning(a) || hasMeaning(b); });
}

}  // namespace

TEST(TextBytesTest, EveryPairMakesAWholeTree) { checkAllPairs("", ""); }

TEST(TextBytesTest, PairsWithinANameMakeAWholeTree) { checkPairsWithMeaning("a", "b 1\nc 2"); }

TEST(TextBytesTest, PairsBesideAValueMakeAWholeTree) { checkPairsWithMeaning("a 1", " 2 { b 3 }"); }

TEST(TextBytesTest, PairsWithinAStringMakeAWholeTree) {
  checkPairsWithMeaning("a \"x", "y\" 1\nb 2");
}

TEST(TextBytesTest, RandomTextsMakeWholeTrees) {
  constexpr int TEXTS = IS_HEAVY ? 1000000 : 8000;
  const std::string bytes = " \n\"{}()=,#/\\<>1.-xa";
  std::mt19937 random(1);
  int readBack = 0;
  for (int i = 0; i < TEXTS && !HasFatalFailure(); ++i) {
    std::string text = "a ";
    for (unsigned long left = random() % 40; left > 0; --left)
      text += bytes[random() % bytes.size()];
    if (checkTextIsRead(text)) ++readBack;
  }
  EXPECT_GT(readBack, TEXTS / 2);
}
