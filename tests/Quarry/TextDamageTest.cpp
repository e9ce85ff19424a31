// Text documents that are cut short or changed by a byte: whatever is read, the tree is a whole
// one, and what is written of it reads back.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "TreeConsistency.h"

using TreeConsistency::checkTextIsRead;

namespace {

/// Calls `use` with every beginning of the text.
template <class Use>
void forEachTruncation(const std::string& text, Use use) {
  for (unsigned long length = 0; length < text.size(); ++length)
    use(text.substr(0, length));
}

/// Calls `use` with every text that has one of `bytes` in another's place.
template <class Use>
void forEachChange(const std::string& text, const std::string& bytes, Use use) {
  for (unsigned long place = 0; place < text.size(); ++place) {
    std::string changed = text;
    for (const char byte : bytes) {
      changed[place] = byte;
      if (byte != text[place]) use(changed);
    }
  }
}

/// Calls `use` with every text that lacks one byte or has one twice.
template <class Use>
void forEachSlip(const std::string& text, Use use) {
  for (unsigned long place = 0; place < text.size(); ++place) {
    use(std::string(text).erase(place, 1));
    use(std::string(text).insert(place, 1, text[place]));
  }
}

std::string makeAllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte)
    bytes += static_cast<char>(byte);
  return bytes;
}

const std::string ALL_BYTES = makeAllBytes();

/// A dozen that mean something to some rule or nothing to any; in HeavyTests, which are built from
/// this file too, all of them.
#ifdef QUARRY_HEAVY_TESTS
const std::string FEW_BYTES = ALL_BYTES;
#else
const std::string FEW_BYTES = std::string(" \n\"\\{(,=#a") + '\0' + '\xFF';
#endif

/// Reads what is made of a text by `forEach`; returns how many of the trees read back.
template <class ForEach>
int read(ForEach forEach) {
  int readBack = 0;
  forEach([&readBack](const std::string& text) {
    if (testing::Test::HasFatalFailure()) return;
    SCOPED_TRACE(text);
    if (checkTextIsRead(text)) ++readBack;
  });
  return readBack;
}

struct Sample {
  const char* name;
  std::string text;
};

std::string readFile(const std::string& name) {
  std::ifstream file(TEST_DATA_DIR "/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class TextDamageTest : public testing::TestWithParam<Sample> {};

/// Short texts, in which every byte is replaced by every other.
class ShortTextDamageTest : public testing::TestWithParam<Sample> {};

std::string nameOf(const testing::TestParamInfo<Sample>& sample) { return sample.param.name; }

}  // namespace

TEST_P(TextDamageTest, EveryTruncationIsSurvived) {
  EXPECT_GT(read([](auto use) { forEachTruncation(GetParam().text, use); }), 0);
}

TEST_P(TextDamageTest, EveryMissingOrDoubledByteIsSurvived) {
  EXPECT_GT(read([](auto use) { forEachSlip(GetParam().text, use); }), 0);
}

TEST_P(TextDamageTest, EveryByteChangedToOneThatMeansSomethingIsSurvived) {
  EXPECT_GT(read([](auto use) { forEachChange(GetParam().text, FEW_BYTES, use); }), 0);
}

TEST_P(ShortTextDamageTest, EveryByteChangedToEveryOtherIsSurvived) {
  EXPECT_GT(read([](auto use) { forEachChange(GetParam().text, ALL_BYTES, use); }), 0);
}

INSTANTIATE_TEST_SUITE_P(All, TextDamageTest,
                         testing::Values(Sample{"Values", readFile("golden/values.cfg")},
                                         Sample{"Groups", readFile("golden/groups.cfg")},
                                         Sample{"Calls", readFile("golden/calls.cfg")}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(All, ShortTextDamageTest,
                         testing::Values(Sample{"Values", "a yes 12 -1.5 \"t\\n\""},
                                         Sample{"Blocks", "b 0x01FF00010000 0x"},
                                         Sample{"Groups", "g { b { c 1 } }\nd { } e 2"},
                                         Sample{"Calls", "f(1, \"x\") g() h = (2)\ni 1"},
                                         Sample{"Keywords", "#k 1\nk = 1, 2"},
                                         Sample{"EmptyItems", "e <empty>\nf { g <empty> }"},
                                         Sample{"Faults", "a b 1,, ( ) { } x \"o\nlast"}),
                         nameOf);
