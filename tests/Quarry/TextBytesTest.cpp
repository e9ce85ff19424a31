// Every byte and pair of bytes, where a name, a value or anything else stands: what is read is a
// whole tree, and what is written of it reads back.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "TreeConsistency.h"

using TreeConsistency::checkTextIsRead;

namespace {

/// Reads every pair of bytes between two texts; returns how many of the trees read back.
int readPairs(const std::string& before, const std::string& behind) {
  int readBack = 0;
  for (int pair = 0; pair < 256 * 256 && !testing::Test::HasFatalFailure(); ++pair) {
    const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
    if (checkTextIsRead(before + std::string(bytes, 2) + behind)) ++readBack;
  }
  return readBack;
}

}  // namespace

TEST(TextBytesTest, EveryPairMakesAWholeTree) { EXPECT_GT(readPairs("", ""), 60000); }

TEST(TextBytesTest, EveryPairWithinANameMakesAWholeTree) {
  EXPECT_GT(readPairs("a", "b 1\nc 2"), 60000);
}

TEST(TextBytesTest, EveryPairBesideAValueMakesAWholeTree) {
  EXPECT_GT(readPairs("a 1", " 2 { b 3 }"), 60000);
}

TEST(TextBytesTest, EveryPairWithinAStringMakesAWholeTree) {
  EXPECT_GT(readPairs("a \"x", "y\" 1\nb 2"), 60000);
}

TEST(TextBytesTest, RandomTextsMakeWholeTrees) {
  const std::string bytes = " \n\"{}()=,#/\\<>1.-xa";
  std::mt19937 random(1);
  int readBack = 0;
  for (int i = 0; i < 20000 && !HasFatalFailure(); ++i) {
    std::string text = "a ";
    for (unsigned long left = random() % 40; left > 0; --left)
      text += bytes[random() % bytes.size()];
    if (checkTextIsRead(text)) ++readBack;
  }
  EXPECT_GT(readBack, 10000);
}
