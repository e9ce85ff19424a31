// The warnings for conversions that a type does not allow, and what is returned with them.
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserValue.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/RecordingConsole.h"

using Plinth::Console;
using Quarry::ParserGroup;
using Quarry::ParserValue;
using TestSupport::Message;
using TestSupport::RecordingConsole;

namespace {

constexpr auto OUTSIDE = static_cast<ParserValue::Type>(8);

/// A value of each type, as a document or code makes it.
std::unique_ptr<ParserValue> makeValue(ParserValue::Type type) {
  switch (type) {
    case ParserValue::TYPE_GROUP: return std::make_unique<ParserValue>(new ParserGroup("g"));
    case ParserValue::TYPE_BOOL: return std::make_unique<ParserValue>(true);
    case ParserValue::TYPE_CHAR: return std::make_unique<ParserValue>('x');
    case ParserValue::TYPE_INT: return std::make_unique<ParserValue>(12);
    case ParserValue::TYPE_DOUBLE: return std::make_unique<ParserValue>(1.5);
    case ParserValue::TYPE_STRING: return std::make_unique<ParserValue>("yes");
    case ParserValue::TYPE_BINARYDATA: return std::make_unique<ParserValue>(type, "0x0101000000");
    default: return std::make_unique<ParserValue>(type, "<empty>");
  }
}

/// Each makes one conversion and tells whether it gave its default.
bool getAsBool(const ParserValue& value) { return !value.getAsBool(); }
bool getAsChar(const ParserValue& value) { return value.getAsChar() == 0; }
bool getAsInt(const ParserValue& value) { return value.getAsInt() == 0; }
bool getAsDouble(const ParserValue& value) { return value.getAsDouble() == 0.0; }
bool getAsString(const ParserValue& value) { return value.getAsString().empty(); }
bool getAsBinaryData(const ParserValue& value) {
  unsigned long size = 99;
  return value.getAsBinaryData(size) == nullptr && size == 99;
}

struct Mismatch {
  const char* name;
  bool (*convert)(const ParserValue&);
  ParserValue::Type type;
  const char* warning;
};

constexpr Mismatch MISMATCHES[] = {
    {"AGroupAsBool", getAsBool, ParserValue::TYPE_GROUP,
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"AStringAsBool", getAsBool, ParserValue::TYPE_STRING,
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_STRING' \n"},
    {"ABlockAsBool", getAsBool, ParserValue::TYPE_BINARYDATA,
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnEmptyTagAsBool", getAsBool, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsBool", getAsBool, OUTSIDE,
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_UNKNOWN' \n"},

    {"AGroupAsChar", getAsChar, ParserValue::TYPE_GROUP,
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"AStringAsChar", getAsChar, ParserValue::TYPE_STRING,
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_STRING' \n"},
    {"ABlockAsChar", getAsChar, ParserValue::TYPE_BINARYDATA,
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnEmptyTagAsChar", getAsChar, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsChar", getAsChar, OUTSIDE,
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_UNKNOWN' \n"},

    {"AGroupAsInt", getAsInt, ParserValue::TYPE_GROUP,
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"AStringAsInt", getAsInt, ParserValue::TYPE_STRING,
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_STRING' \n"},
    {"ABlockAsInt", getAsInt, ParserValue::TYPE_BINARYDATA,
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnEmptyTagAsInt", getAsInt, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsInt", getAsInt, OUTSIDE,
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_UNKNOWN' \n"},

    {"AGroupAsDouble", getAsDouble, ParserValue::TYPE_GROUP,
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"AStringAsDouble", getAsDouble, ParserValue::TYPE_STRING,
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_STRING' \n"},
    {"ABlockAsDouble", getAsDouble, ParserValue::TYPE_BINARYDATA,
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnEmptyTagAsDouble", getAsDouble, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsDouble", getAsDouble, OUTSIDE,
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_UNKNOWN' \n"},

    {"AGroupAsString", getAsString, ParserValue::TYPE_GROUP,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"ABoolAsString", getAsString, ParserValue::TYPE_BOOL,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_BOOL' \n"},
    {"ACharAsString", getAsString, ParserValue::TYPE_CHAR,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_CHAR' \n"},
    {"AnIntAsString", getAsString, ParserValue::TYPE_INT,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_INT' \n"},
    {"ADoubleAsString", getAsString, ParserValue::TYPE_DOUBLE,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_DOUBLE' \n"},
    {"ABlockAsString", getAsString, ParserValue::TYPE_BINARYDATA,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnEmptyTagAsString", getAsString, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsString", getAsString, OUTSIDE,
     "ParserValue::getAsString: type mismatch, value type is 'TYPE_UNKNOWN' \n"},

    {"AGroupAsBinaryData", getAsBinaryData, ParserValue::TYPE_GROUP,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_GROUP' \n"},
    {"ABoolAsBinaryData", getAsBinaryData, ParserValue::TYPE_BOOL,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_BOOL' \n"},
    {"ACharAsBinaryData", getAsBinaryData, ParserValue::TYPE_CHAR,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_CHAR' \n"},
    {"AnIntAsBinaryData", getAsBinaryData, ParserValue::TYPE_INT,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_INT' \n"},
    {"ADoubleAsBinaryData", getAsBinaryData, ParserValue::TYPE_DOUBLE,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_DOUBLE' \n"},
    {"AStringAsBinaryData", getAsBinaryData, ParserValue::TYPE_STRING,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_STRING' \n"},
    {"AnEmptyTagAsBinaryData", getAsBinaryData, ParserValue::TYPE_EMPTY,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
    {"AnUnknownTypeAsBinaryData", getAsBinaryData, OUTSIDE,
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_UNKNOWN' \n"},
};

class ParserValueMismatchTest : public testing::TestWithParam<Mismatch> {};

std::string nameOf(const testing::TestParamInfo<Mismatch>& info) { return info.param.name; }

}  // namespace

TEST_P(ParserValueMismatchTest, WarnsOnceAndGivesTheDefault) {
  const std::unique_ptr<ParserValue> value = makeValue(GetParam().type);
  const RecordingConsole console;
  EXPECT_TRUE(GetParam().convert(*value));
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Console::LEVEL_WARNING, GetParam().warning, ""}}));
}

INSTANTIATE_TEST_SUITE_P(Reading, ParserValueMismatchTest, testing::ValuesIn(MISMATCHES), nameOf);

TEST(ParserValueMismatch, EveryConversionWarnsAnew) {
  const RecordingConsole console;
  const ParserValue value("text");
  EXPECT_EQ(value.getAsInt(), 0);
  EXPECT_EQ(value.getAsInt(), 0);
  EXPECT_EQ(console.getWarnings().size(), 2U);
}

TEST(ParserValueMismatch, TheValueStaysAsItWas) {
  const RecordingConsole console;
  const ParserValue value("text");
  EXPECT_EQ(value.getAsInt(), 0);
  EXPECT_EQ(value.getAsString(), "text");
}

TEST(ParserValueMismatch, OneEmptyStringIsSharedByAll) {
  const RecordingConsole console;
  EXPECT_EQ(&ParserValue(12).getAsString(), &ParserValue(nullptr).getAsString());
}

TEST(ParserValueMismatch, TheStringYesIsNoBool) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserValue(ParserValue::TYPE_STRING, "yes").getAsBool());
  EXPECT_EQ(console.getWarnings().size(), 1U);
}
