// Words, names and lists far larger than any document's: they are read as small ones are, in a time
// that grows with their size and not with its square.
//
// The ordinary tests read a million bytes or a hundred thousand words. HeavyTests, which are built
// from this file too, read a hundred times as much.

#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "support/Bytes.h"
#include "support/CountingConsole.h"
#include "support/Documents.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::Bytes;
using TestSupport::CountingConsole;
using TestSupport::makeBytes;
using TestSupport::makeSize;
using TestSupport::makeString;
using TestSupport::makeText;
using TestSupport::writeOneLine;
using TestSupport::operator+;

namespace {

#ifdef QUARRY_HEAVY_TESTS
constexpr unsigned long FACTOR = 100;
#else
constexpr unsigned long FACTOR = 1;
#endif

constexpr unsigned long WORD_BYTES = FACTOR * 1000000;
constexpr unsigned long MANY = FACTOR * 100000;

/// Far more than is needed, and far less than were needed if it took the square.
constexpr double MOST_SECONDS = 60.0;

std::string repeat(const std::string& part, unsigned long count) {
  std::string text;
  text.reserve(part.size() * count);
  for (unsigned long i = 0; i < count; ++i)
    text += part;
  return text;
}

/// Returns a warning of the parser.
std::string parserWarning(unsigned long line, unsigned long column, const std::string& rest) {
  return "ParserGroup::setText: (" + std::to_string(line) + ":" + std::to_string(column) + ") " +
         rest;
}

/// Reads texts into a group and counts the messages.
class HugeInputTest : public testing::Test {
 protected:
  void TearDown() override {
    const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    EXPECT_LT(seconds, MOST_SECONDS);
  }

  /// Expects so many warnings, of which the last one is `last`.
  void checkWarnings(unsigned long count, const std::string& last) const {
    EXPECT_EQ(console.getCount(), count);
    EXPECT_TRUE(console.getLast() == last) << console.getLast().substr(0, 200);
  }

  /// Expects that `text` is written as it was read.
  void checkReadsAndWrites(const std::string& text) {
    EXPECT_TRUE(root.setText(text, 1.1));
    EXPECT_EQ(console.getCount(), 0UL);
    EXPECT_TRUE(writeOneLine(root) == text);
  }

  CountingConsole console;
  ParserGroup root{"root"};

 private:
  std::clock_t begin = std::clock();
};

}  // namespace

// --- One word ------------------------------------------------------------------------------------

TEST_F(HugeInputTest, AName) {
  const std::string name(WORD_BYTES, 'n');
  checkReadsAndWrites(" " + name + " 1");
  EXPECT_NE(root.getItem(name), nullptr);
}

TEST_F(HugeInputTest, ANameThatIsAddedByCode) {
  root.addItem(std::string(WORD_BYTES, 'n'), 0, 0)->addInt(1);
  EXPECT_EQ(writeOneLine(root).size(), WORD_BYTES + 3);
}

TEST_F(HugeInputTest, AKeyword) {
  const std::string name = "#" + std::string(WORD_BYTES, 'k');
  checkReadsAndWrites(" " + name + " 1");
  EXPECT_NE(root.getKeyword(name), nullptr);
}

TEST_F(HugeInputTest, ANameWithoutAValue) {
  const std::string name(WORD_BYTES, 'n');
  root.setText("a " + name + " 1", 1.1);
  checkWarnings(1, parserWarning(1, 3, "item '" + name + "' has no value.\n"));
}

TEST_F(HugeInputTest, AnInteger) {
  checkReadsAndWrites(" a " + std::string(WORD_BYTES, '7'));
  EXPECT_EQ(root.getItem("a")->getInt(0), -1);
}

TEST_F(HugeInputTest, ADoubleWithManyDigitsBehindThePoint) {
  checkReadsAndWrites(" a 1." + std::string(WORD_BYTES, '0') + "1");
  EXPECT_EQ(root.getItem("a")->getDouble(0), 1.0);
}

TEST_F(HugeInputTest, ADoubleWithManyDigitsBeforeThePoint) {
  checkReadsAndWrites(" a 1" + std::string(WORD_BYTES, '0') + ".0e-" + std::to_string(WORD_BYTES));
  EXPECT_EQ(root.getItem("a")->getDouble(0), 1.0);
}

TEST_F(HugeInputTest, AString) {
  const std::string content(WORD_BYTES, 's');
  checkReadsAndWrites(" a \"" + content + "\"");
  EXPECT_TRUE(root.getItem("a")->getString(0) == content);
}

TEST_F(HugeInputTest, AStringOfEscapes) {
  checkReadsAndWrites(" a \"" + repeat("\\n", WORD_BYTES / 2) + "\"");
  EXPECT_TRUE(root.getItem("a")->getString(0) == std::string(WORD_BYTES / 2, '\n'));
}

TEST_F(HugeInputTest, AStringThatIsNotClosed) {
  const std::string word = "\"" + std::string(WORD_BYTES, ' ');
  EXPECT_FALSE(root.setText("a " + word, 1.1));
  checkWarnings(1, parserWarning(1, 2, "Unknown word type: '" + word + "'\n"));
}

TEST_F(HugeInputTest, ABlock) {
  checkReadsAndWrites(" a 0x" + std::string(WORD_BYTES, '0') + "00000000");
  EXPECT_EQ(root.getItem("a")->getBinaryDataSize(0), WORD_BYTES / 2);
}

TEST_F(HugeInputTest, AnUnknownWord) {
  const std::string word(WORD_BYTES, '/');
  EXPECT_FALSE(root.setText(word, 1.1));
  checkWarnings(1, parserWarning(1, 0, "Unknown word type: '" + word + "'\n"));
}

TEST_F(HugeInputTest, AWordOfAFile) {
  const TestSupport::TemporaryFolder folder;
  const std::string text = "\na \"" + std::string(WORD_BYTES, '/') + "\"";
  ParserFile file;
  ASSERT_TRUE(file.read(folder.write("large.cfg", text)));
  EXPECT_TRUE(TestSupport::writeLines(file.getRoot()) == text);
}

// --- One piece of the binary form ----------------------------------------------------------------

namespace {

/// Returns whether a frame of these items is read.
bool readFrame(ParserGroup& root, const Bytes& items) {
  const Bytes data = makeSize(items.size()) + items;
  unsigned long pos = 0;
  return root.setBinary(data, pos) && root.getBinary(false) == data;
}

}  // namespace

TEST_F(HugeInputTest, AnEncodedName) {
  EXPECT_TRUE(readFrame(root, TestSupport::makeItem(std::string(WORD_BYTES, 'n'), {})));
}

TEST_F(HugeInputTest, AnEncodedString) {
  const Bytes value = makeBytes("05") + makeString(std::string(WORD_BYTES, 's'));
  EXPECT_TRUE(readFrame(root, TestSupport::makeItem("a", value)));
}

TEST_F(HugeInputTest, AnEncodedBlock) {
  const Bytes value = makeBytes("06") + makeSize(WORD_BYTES) + Bytes(WORD_BYTES, '\xFF');
  EXPECT_TRUE(readFrame(root, TestSupport::makeItem("a", value)));
}

TEST_F(HugeInputTest, ManyEncodedIntegers) {
  const Bytes values = makeText(repeat(std::string("\3\1\0\0\0", 5), MANY));
  EXPECT_TRUE(readFrame(root, TestSupport::makeItem("a", values)));
}

TEST_F(HugeInputTest, AnEncodedStringWithoutAnEnd) {
  const Bytes items = makeString("a") + makeSize(WORD_BYTES) + makeBytes("00 05") +
                      makeText(std::string(WORD_BYTES, 's'));
  const Bytes data = makeSize(items.size()) + items;
  unsigned long pos = 0;
  EXPECT_TRUE(root.setBinary(data, pos));
  checkWarnings(1, "ParserValue::binTostring: Failed to parse string\n");
}

// --- Many words ----------------------------------------------------------------------------------

TEST_F(HugeInputTest, Commas) {
  root.setText("a 1" + std::string(MANY, ','), 1.1);
  checkWarnings(MANY - 1, parserWarning(1, MANY + 2, "item ',' wrongly placed.\n"));
  EXPECT_EQ(writeOneLine(root), " a 1");
}

TEST_F(HugeInputTest, EqualsSigns) {
  root.setText("a " + std::string(MANY, '='), 1.1);
  checkWarnings(MANY - 1, parserWarning(1, MANY + 1, "item '=' wrongly placed.\n"));
  EXPECT_EQ(writeOneLine(root), " a <empty>");
}

TEST_F(HugeInputTest, OpeningBracesWithoutAnItem) {
  EXPECT_FALSE(root.setText(std::string(MANY, '{'), 1.1));
  checkWarnings(MANY, parserWarning(1, MANY - 1, "Group without item\n"));
}

TEST_F(HugeInputTest, OpeningBracesOfGroups) {
  EXPECT_TRUE(root.setText(repeat("g{", MANY), 1.1));
  EXPECT_EQ(console.getCount(), 0UL);
  EXPECT_EQ(writeOneLine(root).size(), MANY * 6);
}

TEST_F(HugeInputTest, ClosingBraces) {
  EXPECT_TRUE(root.setText(std::string(MANY, '}'), 1.1));
  EXPECT_EQ(console.getCount(), 0UL);
}

TEST_F(HugeInputTest, EmptyGroups) { checkReadsAndWrites(repeat(" g { }", MANY)); }

TEST_F(HugeInputTest, OpeningParenthesesWithoutAnItem) {
  EXPECT_FALSE(root.setText(std::string(MANY, '('), 1.1));
  checkWarnings(MANY, parserWarning(1, MANY - 1, "Argument list without item\n"));
}

TEST_F(HugeInputTest, OpeningParenthesesOfACall) {
  root.setText("f" + std::string(MANY, '('), 1.1);
  checkWarnings(MANY - 1, parserWarning(1, MANY, "Argument list without item\n"));
  EXPECT_EQ(writeOneLine(root), " f()");
}

TEST_F(HugeInputTest, ClosingParentheses) {
  EXPECT_FALSE(root.setText(std::string(MANY, ')'), 1.1));
  checkWarnings(MANY, parserWarning(1, MANY - 1, "Closing an argument list without item\n"));
}

TEST_F(HugeInputTest, Calls) { checkReadsAndWrites(repeat(" f()", MANY)); }

TEST_F(HugeInputTest, QuotesThatMakeOneString) {
  EXPECT_TRUE(root.setText("a " + std::string(MANY, '"'), 1.1));
  EXPECT_TRUE(root.getItem("a")->getString(0) == std::string(MANY - 2, '"'));
  EXPECT_TRUE(writeOneLine(root) == " a \"" + repeat("\\\"", MANY - 2) + "\"");
}

TEST_F(HugeInputTest, QuotesBehindBackslashes) {
  const std::string word = repeat("\\\"", MANY);
  EXPECT_FALSE(root.setText("a " + word, 1.1));
  checkWarnings(1, parserWarning(1, 2, "Unknown word type: '" + word + "'\n"));
}

TEST_F(HugeInputTest, QuotesOnLinesOfTheirOwn) {
  EXPECT_FALSE(root.setText(repeat("\"\n", MANY), 1.1));
  checkWarnings(MANY, parserWarning(MANY, 1, "Unknown word type: '\"'\n"));
}

TEST_F(HugeInputTest, EmptyStrings) { checkReadsAndWrites(" a" + repeat(" \"\"", MANY)); }

TEST_F(HugeInputTest, NamesWithoutValues) {
  root.setText(repeat("a ", MANY), 1.1);
  checkWarnings(MANY - 1, parserWarning(1, 2 * MANY - 1, "item 'a' has no value.\n"));
  EXPECT_EQ(writeOneLine(root), " a <empty>");
}

TEST_F(HugeInputTest, ValuesWithoutAnItem) {
  EXPECT_FALSE(root.setText(repeat("1 ", MANY), 1.1));
  checkWarnings(MANY, parserWarning(1, 2 * MANY - 1, "Value without item: 1\n"));
}

TEST_F(HugeInputTest, EmptyTags) {
  EXPECT_FALSE(root.setText("a " + repeat("<empty> ", MANY), 1.1));
  EXPECT_EQ(console.getCount(), 0UL);
  EXPECT_EQ(writeOneLine(root), " a <empty>");
}

// --- Nothing between words -----------------------------------------------------------------------

TEST_F(HugeInputTest, BlanksBeforeAWord) {
  root.setText(std::string(WORD_BYTES, ' ') + ")", 1.1);
  checkWarnings(1, parserWarning(1, WORD_BYTES, "Closing an argument list without item\n"));
}

TEST_F(HugeInputTest, LineBreaksBeforeAWord) {
  root.setText(std::string(WORD_BYTES, '\n') + ")", 1.1);
  checkWarnings(1, parserWarning(WORD_BYTES + 1, 0, "Closing an argument list without item\n"));
}

TEST_F(HugeInputTest, ZeroBytes) {
  EXPECT_FALSE(root.setText(std::string(WORD_BYTES, '\0'), 1.1));
  checkWarnings(1, parserWarning(1, 0, "Unknown word type: ''\n"));
}
