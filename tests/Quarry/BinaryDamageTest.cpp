// Binary documents that are cut short or changed: whatever is read, the tree is a tree that can be
// written, encoded, copied and freed, and nothing is read or allocated beyond the data.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/Bytes.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using TestSupport::Bytes;
using TestSupport::makeBytes;
using TestSupport::makeSize;
using TestSupport::makeText;
using TestSupport::RecordingConsole;
using TestSupport::writeOneLine;
using TestSupport::operator+;

namespace {

const std::string RICH_TEXT =
    "#k 1\n"
    "a yes no 12 -7 1.5 1e300 \"text\" \"\" 0x0102FF02010000\n"
    "f(1, \"x\")\n"
    "e <empty>\n"
    "g { b { c { d 1 } } d \"end\" }\n"
    "g { }\n"
    "z 1\n";

Bytes makeRichDocument() {
  ParserFile file;
  file.getRoot().setText(RICH_TEXT, 1.1);
  return file.getBinary();
}

/// Reads the data and uses what came of it; returns the result of reading.
bool readAndUse(const Bytes& data) {
  const RecordingConsole console;
  ParserFile file;
  const bool result = file.setBinary(data);
  const ParserGroup copy(file.getRoot());
  EXPECT_EQ(writeOneLine(copy), writeOneLine(file.getRoot()));
  EXPECT_EQ(copy.getBinary(false), file.getRoot().getBinary(false));
  return result;
}

}  // namespace

TEST(BinaryDamageTest, RichDocumentReadsBackByteForByte) {
  const Bytes data = makeRichDocument();
  ParserFile file;
  EXPECT_TRUE(file.setBinary(data));
  EXPECT_EQ(file.getBinary(), data);
}

TEST(BinaryDamageTest, EveryTruncationIsRefused) {
  const Bytes data = makeRichDocument();
  for (std::size_t length = 0; length < data.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_FALSE(readAndUse(Bytes(data.begin(), data.begin() + static_cast<long>(length))));
  }
}

/// The root's size is made to fit, so that the cut is found further down.
TEST(BinaryDamageTest, EveryTruncationBehindAFittingSizeIsSurvived) {
  const Bytes data = makeRichDocument();
  for (std::size_t length = 12; length < data.size(); ++length) {
    SCOPED_TRACE(length);
    const Bytes items(data.begin() + 12, data.begin() + static_cast<long>(length));
    readAndUse(makeText("QDBF") + makeSize(items.size()) + items);
  }
}

class ChangedByteTest : public testing::TestWithParam<int> {};

TEST_P(ChangedByteTest, EveryPlaceIsSurvived) {
  const Bytes data = makeRichDocument();
  for (std::size_t place = 0; place < data.size(); ++place) {
    SCOPED_TRACE(place);
    Bytes changed = data;
    changed[place] = static_cast<char>(GetParam());
    readAndUse(changed);
  }
}

INSTANTIATE_TEST_SUITE_P(BinaryDamageTest, ChangedByteTest,
                         testing::Values(0x00, 0x01, 0x7F, 0x80, 0xFF),
                         [](const testing::TestParamInfo<int>& value) {
                           return "To" + std::to_string(value.param);
                         });

/// Every byte is replaced by every other.
class ShortDocumentDamageTest : public testing::TestWithParam<const char*> {};

TEST_P(ShortDocumentDamageTest, EveryChangedByteIsSurvived) {
  ParserFile file;
  file.getRoot().setText(GetParam(), 1.1);
  const Bytes data = file.getBinary();
  for (std::size_t place = 0; place < data.size(); ++place) {
    Bytes changed = data;
    for (int step = 1; step < 256; ++step) {
      ++changed[place];
      readAndUse(changed);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(BinaryDamageTest, ShortDocumentDamageTest,
                         testing::Values("a yes 12 1.5", "s \"text\" \"\"", "b 0x0102FF02010000",
                                         "g { h { i 1 } }\nj 2", "f(1) e <empty>"));

class ChangedSizeTest : public testing::TestWithParam<unsigned long long> {};

/// Puts a size over any eight bytes: over the real sizes, and over everything else.
TEST_P(ChangedSizeTest, EveryPlaceIsSurvived) {
  const Bytes data = makeRichDocument();
  const Bytes size = makeSize(GetParam());
  for (std::size_t place = 4; place + size.size() <= data.size(); ++place) {
    SCOPED_TRACE(place);
    Bytes changed = data;
    std::copy(size.begin(), size.end(), changed.begin() + static_cast<long>(place));
    readAndUse(changed);
  }
}

INSTANTIATE_TEST_SUITE_P(BinaryDamageTest, ChangedSizeTest,
                         testing::Values(0ULL, 1ULL, 1ULL << 32, 1ULL << 63, (1ULL << 63) - 1,
                                         ~0ULL, ~0ULL - 1, ~0ULL - 7, ~0ULL - 8, ~0ULL - 16));

TEST(BinaryDamageTest, ItemOfManyEmptyGroupsIsReadInLinearTime) {
  const Bytes value = makeBytes("00") + makeSize(0);
  Bytes values;
  for (int i = 0; i < 100000; ++i)
    values.insert(values.end(), value.begin(), value.end());
  const Bytes item = TestSupport::makeItem("a", values);
  EXPECT_TRUE(readAndUse(makeText("QDBF") + makeSize(item.size()) + item));
}
