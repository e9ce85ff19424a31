// How a value is set, emptied, and given its own data.
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserValue.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/RecordingConsole.h"

using namespace std::string_literals;

using Quarry::ParserGroup;
using Quarry::ParserValue;
using TestSupport::RecordingConsole;

namespace {

constexpr auto OUTSIDE = static_cast<ParserValue::Type>(8);

std::string textOf(const ParserValue& value) {
  std::string text;
  value.getText(text, false, 1);
  return text;
}

std::string bytesOf(const ParserValue& value) {
  unsigned long size = 0;
  const void* bytes = value.getAsBinaryData(size);
  return size > 0 ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

ParserValue makeBlock(std::string bytes) { return ParserValue(bytes.data(), bytes.size()); }

/// A value of each type, with data and text where the type can have both.
std::unique_ptr<ParserValue> makeFull(ParserValue::Type type) {
  const std::string text = type == ParserValue::TYPE_BINARYDATA ? "0x0101000000" : "7";
  auto value = std::make_unique<ParserValue>(type, text);
  value->makeValue();
  textOf(*value);
  return value;
}

class ParserValueSetterTest : public testing::TestWithParam<ParserValue::Type> {
 protected:
  /// What an emptied value of the type writes.
  static std::string emptyText() { return GetParam() == ParserValue::TYPE_STRING ? "\"\"" : ""; }

  const std::unique_ptr<ParserValue> value = makeFull(GetParam());
};

std::string nameOf(const testing::TestParamInfo<ParserValue::Type>& info) {
  constexpr const char* NAMES[] = {"Group",  "Bool",   "Char",       "Int",
                                   "Double", "String", "BinaryData", "Empty"};
  return info.param == OUTSIDE ? "Outside" : NAMES[info.param];
}

}  // namespace

// --- Each setter on each type --------------------------------------------------------------------

TEST_P(ParserValueSetterTest, BecomesABool) {
  value->setBool(true);
  EXPECT_EQ(value->getType(), ParserValue::TYPE_BOOL);
  EXPECT_TRUE(value->getAsBool());
  EXPECT_EQ(textOf(*value), "yes");
}

TEST_P(ParserValueSetterTest, BecomesAChar) {
  value->setChar('x');
  EXPECT_EQ(value->getType(), ParserValue::TYPE_CHAR);
  EXPECT_EQ(value->getAsChar(), 'x');
  EXPECT_EQ(textOf(*value), "x");
}

TEST_P(ParserValueSetterTest, BecomesAnInt) {
  value->setInt(66);
  EXPECT_EQ(value->getType(), ParserValue::TYPE_INT);
  EXPECT_EQ(value->getAsInt(), 66);
  EXPECT_EQ(textOf(*value), "B");
}

TEST_P(ParserValueSetterTest, BecomesADouble) {
  value->setDouble(67.5);
  EXPECT_EQ(value->getType(), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(value->getAsDouble(), 67.5);
  EXPECT_EQ(textOf(*value), "C");
}

TEST_P(ParserValueSetterTest, BecomesAString) {
  value->setString("text");
  EXPECT_EQ(value->getType(), ParserValue::TYPE_STRING);
  EXPECT_EQ(value->getAsString(), "text");
  EXPECT_EQ(textOf(*value), "\"text\"");
}

TEST_P(ParserValueSetterTest, BecomesABlock) {
  std::string bytes = "\x01\x02";
  value->setBinaryData(bytes.data(), bytes.size());
  EXPECT_EQ(value->getType(), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(bytesOf(*value), "\x01\x02");
  EXPECT_EQ(textOf(*value), "0x010203000000");
}

TEST_P(ParserValueSetterTest, KeepsItsTypeWhenEmptied) {
  value->clear();
  EXPECT_EQ(value->getType(), GetParam());
}

TEST_P(ParserValueSetterTest, WritesAnEmptyTextWhenEmptied) {
  value->clear();
  EXPECT_EQ(textOf(*value), emptyText());
}

TEST_P(ParserValueSetterTest, IsCopiedAsAnEmptyValueWhenEmptied) {
  value->clear();
  const ParserValue copy(*value);
  EXPECT_EQ(copy.getType(), GetParam());
  EXPECT_EQ(textOf(copy), emptyText());
}

TEST_P(ParserValueSetterTest, CanBeEmptiedTwice) {
  value->clear();
  value->clear();
  EXPECT_EQ(textOf(*value), emptyText());
}

TEST_P(ParserValueSetterTest, CanBeSetAgainWhenEmptied) {
  value->clear();
  value->setString("text");
  EXPECT_EQ(value->getAsString(), "text");
}

INSTANTIATE_TEST_SUITE_P(A, ParserValueSetterTest,
                         testing::Values(ParserValue::TYPE_GROUP, ParserValue::TYPE_BOOL,
                                         ParserValue::TYPE_CHAR, ParserValue::TYPE_INT,
                                         ParserValue::TYPE_DOUBLE, ParserValue::TYPE_STRING,
                                         ParserValue::TYPE_BINARYDATA, ParserValue::TYPE_EMPTY,
                                         OUTSIDE),
                         nameOf);

// --- What the setters drop and take --------------------------------------------------------------

TEST(ParserValueSetTest, SettingAnIntDiscardsTheTextThatWasRead) {
  ParserValue value(ParserValue::TYPE_INT, "007");
  value.setInt(65);
  EXPECT_EQ(value.getAsInt(), 65);
  EXPECT_EQ(textOf(value), "A");
}

TEST(ParserValueSetTest, SettingTheSameTypeDiscardsTheWrittenText) {
  ParserValue value("before");
  EXPECT_EQ(textOf(value), "\"before\"");
  value.setString("after");
  EXPECT_EQ(textOf(value), "\"after\"");
}

TEST(ParserValueSetTest, AStringIsCopied) {
  std::string text = "before";
  ParserValue value(0);
  value.setString(text);
  text = "after";
  EXPECT_EQ(value.getAsString(), "before");
}

TEST(ParserValueSetTest, BytesAreCopied) {
  char bytes[] = {1, 2};
  ParserValue value(0);
  value.setBinaryData(bytes, 2);
  bytes[0] = 9;
  EXPECT_EQ(bytesOf(value), "\x01\x02");
}

TEST(ParserValueSetTest, NoBytesStillHaveABuffer) {
  ParserValue value(0);
  value.setBinaryData(nullptr, 0);
  unsigned long size = 99;
  EXPECT_NE(value.getAsBinaryData(size), nullptr);
  EXPECT_EQ(size, 0U);
}

TEST(ParserValueSetTest, NoBytesAreWrittenAsAnEmptyBlock) {
  ParserValue value(0);
  value.setBinaryData(nullptr, 0);
  EXPECT_EQ(textOf(value), "0x00000000");
}

TEST(ParserValueSetTest, TheBytesOfABlockCanBeChangedInPlace) {
  const ParserValue value = makeBlock("\x01\x02");
  unsigned long size = 0;
  static_cast<char*>(value.getAsBinaryData(size))[0] = 9;
  EXPECT_EQ(bytesOf(value), "\x09\x02");
}

// --- Own data ------------------------------------------------------------------------------------

TEST(ParserValueAliasTest, AStringMayBeSetToItself) {
  const std::string text(100, 'x');
  ParserValue value(text);
  value.setString(value.getAsString());
  EXPECT_EQ(value.getAsString(), text);
}

TEST(ParserValueAliasTest, AStringThatWasReadMayBeSetToItself) {
  const std::string text(100, 'x');
  ParserValue value(ParserValue::TYPE_STRING, text);
  value.setString(value.getAsString());
  EXPECT_EQ(value.getAsString(), text);
}

TEST(ParserValueAliasTest, ABlockMayBeSetToItself) {
  ParserValue value = makeBlock("\x01\x02\x03");
  unsigned long size = 0;
  void* bytes = value.getAsBinaryData(size);
  value.setBinaryData(bytes, size);
  EXPECT_EQ(bytesOf(value), "\x01\x02\x03");
}

TEST(ParserValueAliasTest, ABlockMayBeSetToAPartOfItself) {
  ParserValue value = makeBlock("\x01\x02\x03");
  unsigned long size = 0;
  char* bytes = static_cast<char*>(value.getAsBinaryData(size));
  value.setBinaryData(bytes + 1, size - 1);
  EXPECT_EQ(bytesOf(value), "\x02\x03");
}

TEST(ParserValueAliasTest, AStringMayBecomeABlockOfItsOwnBytes) {
  const std::string text(100, 'x');
  ParserValue value(text);
  const char* bytes = value.getAsString().data();
  value.setBinaryData(const_cast<char*>(bytes), text.size());
  EXPECT_EQ(bytesOf(value), text);
}

TEST(ParserValueAliasTest, AMismatchedStringMayBeSetAsWell) {
  const RecordingConsole console;
  ParserValue value(12);
  value.setString(value.getAsString());
  EXPECT_EQ(value.getAsString(), "");
  EXPECT_EQ(console.getMessages().size(), 1U);
}

// --- Emptied values ------------------------------------------------------------------------------

TEST(ParserValueClearTest, NumbersReadAsTheirDefaultsWithoutAMessage) {
  const RecordingConsole console;
  for (const ParserValue::Type type : {ParserValue::TYPE_BOOL, ParserValue::TYPE_CHAR,
                                       ParserValue::TYPE_INT, ParserValue::TYPE_DOUBLE}) {
    const std::unique_ptr<ParserValue> value = makeFull(type);
    value->clear();
    EXPECT_FALSE(value->getAsBool());
    EXPECT_EQ(value->getAsChar(), 0);
    EXPECT_EQ(value->getAsInt(), 0);
    EXPECT_EQ(value->getAsDouble(), 0.0);
  }
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserValueClearTest, AStringReadsAsAnEmptyOneWithTheWarning) {
  const RecordingConsole console;
  ParserValue value("text");
  value.clear();
  EXPECT_EQ(value.getAsString(), "");
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>(
                {"ParserValue::getAsString: type mismatch, value type is 'TYPE_STRING' \n"}));
}

TEST(ParserValueClearTest, ABlockReadsAsNullWithTheWarningAndLeavesTheSizeAlone) {
  const RecordingConsole console;
  ParserValue value = makeBlock("\x01");
  value.clear();
  unsigned long size = 99;
  EXPECT_EQ(value.getAsBinaryData(size), nullptr);
  EXPECT_EQ(size, 99U);
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>(
                {"ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_UNKNOWN' \n"}));
}

TEST(ParserValueClearTest, AGroupReadsAsTheDefaultWithTheWarning) {
  const RecordingConsole console;
  ParserValue value(new ParserGroup("camera"));
  value.clear();
  EXPECT_EQ(value.getAsInt(), 0);
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>(
                {"ParserValue::getAsInt: type mismatch, value type is 'TYPE_GROUP' \n"}));
}

TEST(ParserValueClearTest, AnEmptiedGroupWritesNoBraces) {
  ParserValue value(new ParserGroup("camera"));
  value.clear();
  std::string text = "before";
  value.getText(text, true, 3);
  EXPECT_EQ(text, "before");
}
