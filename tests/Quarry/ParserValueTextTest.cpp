// What a value writes.
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/RecordingConsole.h"

using namespace std::string_literals;

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;
using TestSupport::RecordingConsole;

namespace {

constexpr bool ONE_LINE = false;
constexpr bool MULTILINE = true;

std::string textOf(const ParserValue& value, bool multiline = ONE_LINE, unsigned long indent = 1) {
  std::string text;
  value.getText(text, multiline, indent);
  return text;
}

std::string quote(const std::string& text) { return textOf(ParserValue(text)); }

/// A group called `camera` with one item and, in a further group, another one.
ParserValue makeCamera() {
  auto* camera = new ParserGroup("camera");
  camera->addItem("fov", 0, 0)->addInt(40);
  camera->addGroup("film", false)->addItem("width", 0, 0)->addInt(36);
  return ParserValue(camera);
}

}  // namespace

// --- Bools ---------------------------------------------------------------------------------------

TEST(ParserValueTextTest, TrueIsWrittenYes) { EXPECT_EQ(textOf(ParserValue(true)), "yes"); }

TEST(ParserValueTextTest, FalseIsWrittenNo) { EXPECT_EQ(textOf(ParserValue(false)), "no"); }

TEST(ParserValueTextTest, ABoolThatWasReadKeepsItsSpelling) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_BOOL, "maybe")), "maybe");
}

// --- Numbers: one raw byte -----------------------------------------------------------------------

TEST(ParserValueTextTest, ACharIsWrittenAsItself) {
  EXPECT_EQ(textOf(ParserValue('x')), "x");
  EXPECT_EQ(textOf(ParserValue('\0')), "\0"s);
  EXPECT_EQ(textOf(ParserValue('\xFF')), "\xFF");
}

TEST(ParserValueTextTest, ASpecialCharIsNotEscaped) {
  EXPECT_EQ(textOf(ParserValue('"')), "\"");
  EXPECT_EQ(textOf(ParserValue('\n')), "\n");
}

TEST(ParserValueTextTest, AnIntOfCodeIsWrittenAsTheCharacterOfThatCode) {
  EXPECT_EQ(textOf(ParserValue(65)), "A");
}

TEST(ParserValueTextTest, AnIntOfCodeIsWrittenAsItsLowByte) {
  EXPECT_EQ(textOf(ParserValue(300)), ",");
  EXPECT_EQ(textOf(ParserValue(-1)), "\xFF");
  EXPECT_EQ(textOf(ParserValue(0)), "\0"s);
}

TEST(ParserValueTextTest, ADoubleOfCodeIsWrittenAsTheCharacterOfItsWholePart) {
  EXPECT_EQ(textOf(ParserValue(65.9)), "A");
}

TEST(ParserValueTextTest, ADoubleOfCodeIsCutTowardsZero) {
  EXPECT_EQ(textOf(ParserValue(-1.9)), "\xFF");
}

TEST(ParserValueTextTest, ADoubleThatIsNoIntIsWrittenAsAZeroByte) {
  EXPECT_EQ(textOf(ParserValue(1e10)), "\0"s);
  EXPECT_EQ(textOf(ParserValue(std::numeric_limits<double>::quiet_NaN())), "\0"s);
}

// --- Numbers that were read ----------------------------------------------------------------------

TEST(ParserValueTextTest, AnIntThatWasReadKeepsItsSpelling) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_INT, "+007abc")), "+007abc");
}

TEST(ParserValueTextTest, ADoubleThatWasReadKeepsItsSpelling) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_DOUBLE, "1.50")), "1.50");
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_DOUBLE, "1e3")), "1e3");
}

TEST(ParserValueTextTest, ACharOfTextIsWrittenAsItsDigits) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_CHAR, "65")), "65");
}

TEST(ParserValueTextTest, TheSpellingOutlivesAConversion) {
  const ParserValue value(ParserValue::TYPE_DOUBLE, "1.50");
  EXPECT_EQ(value.getAsDouble(), 1.5);
  EXPECT_EQ(textOf(value), "1.50");
}

// --- Empty tags and unknown types ----------------------------------------------------------------

TEST(ParserValueTextTest, AnEmptyTagIsWrittenAsItsWord) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_EMPTY, "<empty>")), "<empty>");
}

TEST(ParserValueTextTest, ATypeOutsideTheEnumerationWritesNothing) {
  EXPECT_EQ(textOf(ParserValue(static_cast<ParserValue::Type>(8), "text")), "");
}

// --- Strings -------------------------------------------------------------------------------------

TEST(ParserValueStringTextTest, AStringIsQuoted) { EXPECT_EQ(quote("text"), "\"text\""); }

TEST(ParserValueStringTextTest, AnEmptyStringIsTwoQuotes) { EXPECT_EQ(quote(""), "\"\""); }

TEST(ParserValueStringTextTest, ACarriageReturnIsEscaped) {
  EXPECT_EQ(quote("a\x0D"
                  "b"),
            R"("a\rb")");
}

TEST(ParserValueStringTextTest, ATabIsEscaped) {
  EXPECT_EQ(quote("a\x09"
                  "b"),
            R"("a\tb")");
}

TEST(ParserValueStringTextTest, ALineFeedIsEscaped) {
  EXPECT_EQ(quote("a\x0A"
                  "b"),
            R"("a\nb")");
}

TEST(ParserValueStringTextTest, ASingleQuoteIsEscaped) { EXPECT_EQ(quote("a'b"), R"("a\'b")"); }

TEST(ParserValueStringTextTest, ABackslashIsEscaped) { EXPECT_EQ(quote(R"(a\b)"), R"("a\\b")"); }

TEST(ParserValueStringTextTest, ADoubleQuoteIsEscaped) { EXPECT_EQ(quote("a\"b"), R"("a\"b")"); }

TEST(ParserValueStringTextTest, EveryOtherByteStandsAsItIs) {
  const std::string escaped = "\r\t\n'\\\"";
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    if (escaped.find(byte) != std::string::npos) continue;
    EXPECT_EQ(quote("a"s + byte + "b"), "\"a"s + byte + "b\"") << "byte " << code;
  }
}

TEST(ParserValueStringTextTest, SeveralEscapesInARowAreAllWritten) {
  EXPECT_EQ(quote("\\\"'\n\n"), R"("\\\"\'\n\n")");
}

TEST(ParserValueStringTextTest, AStringThatWasReadIsEscapedToo) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_STRING, "a\nb")), R"("a\nb")");
}

TEST(ParserValueStringTextTest, AStringIsWrittenTheSameWayTwice) {
  const ParserValue value("a\nb");
  EXPECT_EQ(textOf(value), R"("a\nb")");
  EXPECT_EQ(textOf(value), R"("a\nb")");
}

TEST(ParserValueStringTextTest, EveryStringIsReadBackAsItWas) {
  std::string text;
  for (int first = 0; first < 256; ++first) {
    for (const char second : {'n', 'r', 't', '\\', '"', '\'', '\0', 'x'}) {
      text += static_cast<char>(first);
      text += second;
    }
  }
  const std::string quoted = textOf(ParserValue(text));
  EXPECT_EQ(ParserWord(quoted, true, 1.1).getString(), "\"" + text + "\"");
}

// --- Blocks of bytes -----------------------------------------------------------------------------

TEST(ParserValueBlockTextTest, ABlockIsWrittenInHexadecimalDigits) {
  std::string bytes = "\x01\x02\xFF";
  EXPECT_EQ(textOf(ParserValue(bytes.data(), bytes.size())), "0x0102FF02010000");
}

TEST(ParserValueBlockTextTest, AnEmptyBlockIsItsChecksum) {
  EXPECT_EQ(textOf(ParserValue(static_cast<void*>(nullptr), 0)), "0x00000000");
}

TEST(ParserValueBlockTextTest, ABlockThatWasReadGetsTheRightChecksum) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_BINARYDATA, "0x0102FFDEADBEEF")),
            "0x0102FF02010000");
}

TEST(ParserValueBlockTextTest, ABlockIsReadBackFromItsText) {
  std::string bytes = "\x00\x7F\x80\xFF"s;
  const ParserValue block(ParserValue::TYPE_BINARYDATA,
                          textOf(ParserValue(bytes.data(), bytes.size())));
  unsigned long size = 0;
  const void* read = block.getAsBinaryData(size);
  EXPECT_EQ(std::string(static_cast<const char*>(read), size), bytes);
}

// --- Groups --------------------------------------------------------------------------------------

TEST(ParserValueGroupTextTest, AGroupOnOneLine) {
  EXPECT_EQ(textOf(makeCamera()), "camera { fov 40 film { width 36 } }");
}

TEST(ParserValueGroupTextTest, AGroupWithOneItemALine) {
  EXPECT_EQ(textOf(makeCamera(), MULTILINE, 1),
            "camera {\n"
            "    fov 40\n"
            "    film {\n"
            "        width 36\n"
            "    }\n"
            "}");
}

TEST(ParserValueGroupTextTest, AGroupAtDepthThree) {
  EXPECT_EQ(textOf(makeCamera(), MULTILINE, 3),
            "camera {\n"
            "            fov 40\n"
            "            film {\n"
            "                width 36\n"
            "            }\n"
            "        }");
}

TEST(ParserValueGroupTextTest, DepthZeroIsTakenAsDepthOne) {
  EXPECT_EQ(textOf(makeCamera(), MULTILINE, 0), textOf(makeCamera(), MULTILINE, 1));
}

TEST(ParserValueGroupTextTest, TheDepthDoesNotMatterOnOneLine) {
  EXPECT_EQ(textOf(makeCamera(), ONE_LINE, 3), textOf(makeCamera(), ONE_LINE, 1));
  EXPECT_EQ(textOf(makeCamera(), ONE_LINE, 0), textOf(makeCamera(), ONE_LINE, 1));
}

TEST(ParserValueGroupTextTest, AnEmptyGroupWithoutAName) {
  EXPECT_EQ(textOf(ParserValue(nullptr), ONE_LINE), "{ }");
  EXPECT_EQ(textOf(ParserValue(nullptr), MULTILINE), "{\n}");
}

TEST(ParserValueGroupTextTest, AGroupIsWrittenAsItIsNow) {
  auto* group = new ParserGroup("g");
  const ParserValue value(group);
  EXPECT_EQ(textOf(value), "g { }");
  group->addItem("a", 0, 0);
  EXPECT_EQ(textOf(value), "g { a <empty> }");
}

// --- Appending and remembering -------------------------------------------------------------------

TEST(ParserValueTextTest, TheTextIsAppended) {
  std::string text = "a ";
  ParserValue(true).getText(text, ONE_LINE, 1);
  EXPECT_EQ(text, "a yes");
}

TEST(ParserValueTextTest, LinesAndDepthMatterToGroupsOnly) {
  EXPECT_EQ(textOf(ParserValue("a\nb"), MULTILINE, 3), R"("a\nb")");
  EXPECT_EQ(textOf(ParserValue(true), MULTILINE, 0), "yes");
}

TEST(ParserValueTextTest, WritingGivesNoMessage) {
  const RecordingConsole console;
  EXPECT_EQ(textOf(ParserValue(static_cast<ParserValue::Type>(8), "text")), "");
  EXPECT_EQ(textOf(ParserValue(1e10)), "\0"s);
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserValueTextTest, WritingKeepsTheData) {
  const ParserValue value(1.5);
  EXPECT_EQ(textOf(value), "\x01");
  EXPECT_EQ(value.getAsDouble(), 1.5);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_DOUBLE);
}

namespace {

/// An item with one int that was set as data.
ParserItem makeItem(int number) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  item.addInt(0);
  item.setInt(number, 0);
  return item;
}

std::string write(const ParserItem& item) {
  std::string text;
  item.getText(text, ONE_LINE, 1);
  return text;
}

}  // namespace

TEST(ParserValueTextTest, AValueOfCodeHasNoTextBeforeItIsWritten) {
  EXPECT_EQ(makeItem(65).getWord(0), "");
}

TEST(ParserValueTextTest, TheWrittenTextIsKept) {
  const ParserItem item = makeItem(65);
  EXPECT_EQ(write(item), "item A");
  EXPECT_EQ(item.getWord(0), "A");
}

TEST(ParserValueTextTest, ASetterDropsTheWrittenText) {
  ParserItem item = makeItem(65);
  EXPECT_EQ(write(item), "item A");
  item.setInt(66, 0);
  EXPECT_EQ(item.getWord(0), "");
  EXPECT_EQ(write(item), "item B");
}

TEST(ParserValueTextTest, TheKeptTextOfAStringIsUnescaped) {
  ParserItem item = makeItem(0);
  item.setString("a\nb", 0);
  EXPECT_EQ(write(item), R"(item "a\nb")");
  EXPECT_EQ(item.getWord(0), "a\nb");
}

TEST(ParserValueTextTest, ACopyTakesTheWrittenTextAlong) {
  const ParserItem item = makeItem(65);
  EXPECT_EQ(write(item), "item A");
  EXPECT_EQ(ParserItem(item).getWord(0), "A");
}

TEST(ParserValueTextTest, TheCopyOfABlockLeavesTheWrittenTextBehind) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  char byte = 1;
  item.addBinaryData(&byte, 1);
  EXPECT_EQ(write(item), "item 0x0101000000");
  EXPECT_EQ(item.getWord(0), "0x0101000000");
  EXPECT_EQ(ParserItem(item).getWord(0), "");
}
