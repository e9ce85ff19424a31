// Memory that runs out while a large tree, which is freed at once, is read, copied and looked at:
// the tree stays as it is, and what it has got is freed with it.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/SlabRegion.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::SlabHeap;
using Quarry::SlabRegion;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::MANY;
using TestSupport::readText;
using TestSupport::writeLines;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";

/// Enough for memory of its own, and much that has more than that: keywords in nested groups, and
/// blocks.
std::string makeText() {
  std::string text;
  for (int i = 0; i < 20; ++i)
    text += "g { a \"" + LONG_STRING + "\" #k 1 b 0x0102030400000000 }\n";
  for (int i = 0; i < MANY / 5; ++i)
    text += "filler { x 1 y 2.5 z \"text\" }\n";
  return text;
}

/// Asks for all that is made when it is asked for.
void look(const ParserGroup& root) {
  for (ParserItem* item : root.getItems("^g$")) {
    EXPECT_EQ(item->getName(), "g");
    EXPECT_EQ(item->getGroup(0)->getItem("a")->getString(0), LONG_STRING);
  }
}

}  // namespace

TEST(RegionFaultTest, AText) {
  const std::string text = makeText();
  const std::string expected = writeLines(*readText(text));
  forEveryFault([&](Attempt& attempt) {
    ParserGroup root("root");
    if (attempt.run([&] { root.setText(text, 1.1); })) {
      EXPECT_EQ(writeLines(root), expected);
    }
    TestSupport::expectConsistent(root);
  });
}

TEST(RegionFaultTest, BinaryData) {
  const std::vector<char> bytes = readText(makeText())->getBinary(false);
  forEveryFault([&](Attempt& attempt) {
    ParserGroup root("root");
    unsigned long position = 0;
    if (attempt.run([&] { root.setBinary(bytes, position); })) {
      EXPECT_EQ(root.getBinary(false), bytes);
    }
    root.clear();
    position = 0;
    EXPECT_TRUE(root.setBinary(bytes, position));
    EXPECT_EQ(root.getBinary(false), bytes);
  });
}

TEST(RegionFaultTest, ACopy) {
  const std::unique_ptr<ParserGroup> source = readText(makeText());
  const std::string expected = writeLines(*source);
  forEveryFault([&](Attempt& attempt) {
    attempt.run([&] { EXPECT_EQ(writeLines(ParserGroup(*source)), expected); });
    EXPECT_EQ(writeLines(ParserGroup(*source)), expected);
  });
}

TEST(RegionFaultTest, NamesAndStrings) {
  const std::string text = makeText();
  const std::string expected = writeLines(*readText(text));
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(text);
    attempt.run([&] { look(*root); });
    EXPECT_EQ(writeLines(*root), expected);
    look(*root);
  });
}

TEST(RegionFaultTest, AChangeBehindALook) {
  const std::string text = makeText();
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText(text);
    attempt.run([&] {
      look(*root);
      root->getItem("g")->addString(LONG_STRING);
      root->getGroup("g")->removeItem("a");
    });
    TestSupport::expectConsistent(*root);
  });
}

#ifndef QUARRY_PLAIN_HEAP

TEST(RegionFaultTest, PiecesBeyondTheSlabsThatAreKept) {
  constexpr std::size_t SIZE = 1008;
  constexpr std::size_t PIECES = 20000;  // of more than 16 MiB
  forEveryFault([](Attempt& attempt) {
    const auto region = SlabRegion::make();
    std::vector<void*> pieces(PIECES);
    attempt.run([&] {
      const SlabRegion::Use use(region.get());
      for (void*& piece : pieces)
        piece = SlabHeap::allocate(SIZE);
    });
    if (region->isWhole()) return;
    for (void* piece : pieces)
      SlabHeap::free(piece, SIZE);
    SlabHeap::flush();
  });
}

#endif
