// How a value is made, copied, set and emptied.
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using namespace std::string_literals;

using Quarry::ParserGroup;
using Quarry::ParserValue;

namespace {

constexpr auto OUTSIDE = static_cast<ParserValue::Type>(8);
constexpr auto BELOW = static_cast<ParserValue::Type>(-1);

/// Returns what the value writes, groups on one line.
std::string textOf(const ParserValue& value) {
  std::string text;
  value.getText(text, false, 1);
  return text;
}

std::string bytesOf(const ParserValue& value) {
  unsigned long size = 99;
  const void* bytes = value.getAsBinaryData(size);
  return size > 0 ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

unsigned long sizeOf(const ParserValue& value) {
  unsigned long size = 99;
  value.getAsBinaryData(size);
  return size;
}

/// A block of the bytes of `bytes`.
ParserValue makeBlock(std::string bytes) { return ParserValue(bytes.data(), bytes.size()); }

}  // namespace

// --- What programs rely on at compile time -------------------------------------------------------

TEST(ParserValueTest, TheTypesHaveTheNumbersOfBinaryDocuments) {
  static_assert(ParserValue::TYPE_GROUP == 0);
  static_assert(ParserValue::TYPE_BOOL == 1);
  static_assert(ParserValue::TYPE_CHAR == 2);
  static_assert(ParserValue::TYPE_INT == 3);
  static_assert(ParserValue::TYPE_DOUBLE == 4);
  static_assert(ParserValue::TYPE_STRING == 5);
  static_assert(ParserValue::TYPE_BINARYDATA == 6);
  static_assert(ParserValue::TYPE_EMPTY == 7);
}

TEST(ParserValueTest, ATypeHas32Bits) {
  static_assert(sizeof(std::underlying_type_t<ParserValue::Type>) == 4);
}

TEST(ParserValueTest, AValueMayBeDeletedThroughABase) {
  static_assert(std::has_virtual_destructor_v<ParserValue>);
}

TEST(ParserValueTest, ValuesCanBeCopiedButNotAssigned) {
  static_assert(std::is_copy_constructible_v<ParserValue>);
  static_assert(!std::is_copy_assignable_v<ParserValue>);
  static_assert(!std::is_move_assignable_v<ParserValue>);
}

TEST(ParserValueTest, NoPointerBecomesABool) {
  static_assert(!std::is_constructible_v<ParserValue, const void*>);
  static_assert(!std::is_constructible_v<ParserValue, void*>);
  static_assert(!std::is_constructible_v<ParserValue, int*>);
  static_assert(!std::is_constructible_v<ParserValue, Quarry::ParserItem*>);
  static_assert(!std::is_constructible_v<ParserValue, const ParserGroup*>);
}

TEST(ParserValueTest, TheTextOfAStringCannotBeChangedThroughTheValue) {
  static_assert(
      std::is_same_v<decltype(std::declval<ParserValue&>().getAsString()), const std::string&>);
}

// --- Names of types ------------------------------------------------------------------------------

TEST(ParserValueTypeNameTest, Group) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_GROUP), "TYPE_GROUP");
}

TEST(ParserValueTypeNameTest, Bool) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_BOOL), "TYPE_BOOL");
}

TEST(ParserValueTypeNameTest, Char) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_CHAR), "TYPE_CHAR");
}

TEST(ParserValueTypeNameTest, Int) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_INT), "TYPE_INT");
}

TEST(ParserValueTypeNameTest, Double) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_DOUBLE), "TYPE_DOUBLE");
}

TEST(ParserValueTypeNameTest, String) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_STRING), "TYPE_STRING");
}

TEST(ParserValueTypeNameTest, BinaryDataHasNone) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_BINARYDATA), "TYPE_UNKNOWN");
}

TEST(ParserValueTypeNameTest, TheEmptyTagHasNone) {
  EXPECT_EQ(ParserValue::getType_name(ParserValue::TYPE_EMPTY), "TYPE_UNKNOWN");
}

TEST(ParserValueTypeNameTest, NumbersOutsideTheEnumerationHaveNone) {
  EXPECT_EQ(ParserValue::getType_name(OUTSIDE), "TYPE_UNKNOWN");
  EXPECT_EQ(ParserValue::getType_name(BELOW), "TYPE_UNKNOWN");
  EXPECT_EQ(ParserValue::getType_name(static_cast<ParserValue::Type>(256)), "TYPE_UNKNOWN");
}

// --- Made of data --------------------------------------------------------------------------------

TEST(ParserValueMakeTest, OfABool) {
  const ParserValue value(true);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_BOOL);
  EXPECT_TRUE(value.getAsBool());
}

TEST(ParserValueMakeTest, OfAChar) {
  const ParserValue value('x');
  EXPECT_EQ(value.getType(), ParserValue::TYPE_CHAR);
  EXPECT_EQ(value.getAsChar(), 'x');
}

TEST(ParserValueMakeTest, OfAnInt) {
  const ParserValue value(-2147483647 - 1);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_INT);
  EXPECT_EQ(value.getAsInt(), -2147483647 - 1);
}

TEST(ParserValueMakeTest, OfTheNumberZeroWhichIsNoNullPointer) {
  EXPECT_EQ(ParserValue(0).getType(), ParserValue::TYPE_INT);
}

TEST(ParserValueMakeTest, OfADouble) {
  const ParserValue value(0.1);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(value.getAsDouble(), 0.1);
}

TEST(ParserValueMakeTest, OfAString) {
  const ParserValue value("a\0b"s);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_STRING);
  EXPECT_EQ(value.getAsString(), "a\0b"s);
}

TEST(ParserValueMakeTest, OfAStringWhichIsCopied) {
  std::string text = "before";
  const ParserValue value(text);
  text = "after";
  EXPECT_EQ(value.getAsString(), "before");
}

TEST(ParserValueMakeTest, OfALiteralWhichIsAStringAndNoBool) {
  const ParserValue value("text");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_STRING);
  EXPECT_EQ(value.getAsString(), "text");
}

TEST(ParserValueMakeTest, OfACharacterArrayWhichIsAString) {
  char array[] = "text";
  const ParserValue value(array);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_STRING);
  EXPECT_EQ(value.getAsString(), "text");
}

TEST(ParserValueMakeTest, OfACharacterPointerWhichIsAString) {
  char array[] = "text";
  char* pointer = array + 1;
  EXPECT_EQ(ParserValue(pointer).getAsString(), "ext");
}

TEST(ParserValueMakeTest, OfBytes) {
  const ParserValue value = makeBlock("\x01\x00\xFF"s);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(bytesOf(value), "\x01\x00\xFF"s);
}

TEST(ParserValueMakeTest, OfBytesWhichAreCopied) {
  char bytes[] = {1, 2};
  const ParserValue value(bytes, 2);
  bytes[0] = 9;
  EXPECT_EQ(bytesOf(value), "\x01\x02");
}

TEST(ParserValueMakeTest, OfNoBytesHasANullBuffer) {
  char byte = 1;
  const ParserValue value(&byte, 0);
  unsigned long size = 99;
  EXPECT_EQ(value.getAsBinaryData(size), nullptr);
  EXPECT_EQ(size, 0U);
}

TEST(ParserValueMakeTest, OfANullPointerToNoBytes) {
  const ParserValue value(static_cast<void*>(nullptr), 0);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(sizeOf(value), 0U);
}

TEST(ParserValueMakeTest, OfAGroupWhichIsAdopted) {
  auto* group = new ParserGroup("camera");
  const ParserValue value(group);
  group->addItem("late", 0, 0);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_GROUP);
  EXPECT_EQ(textOf(value), "camera { late <empty> }");
}

TEST(ParserValueMakeTest, OfANullPointerHoldsANewEmptyGroupWithoutAName) {
  const ParserValue value(nullptr);
  EXPECT_EQ(value.getType(), ParserValue::TYPE_GROUP);
  EXPECT_EQ(textOf(value), "{ }");
}

TEST(ParserValueMakeTest, OfANullGroupHoldsANewEmptyGroupWithoutAName) {
  const ParserValue value(static_cast<ParserGroup*>(nullptr));
  EXPECT_EQ(value.getType(), ParserValue::TYPE_GROUP);
  EXPECT_EQ(textOf(value), "{ }");
}

// --- Made of text --------------------------------------------------------------------------------

TEST(ParserValueMakeTest, OfTheTextOfAGroupWhichNamesIt) {
  EXPECT_EQ(textOf(ParserValue(ParserValue::TYPE_GROUP, "camera")), "camera { }");
}

TEST(ParserValueMakeTest, OfTheTextOfABool) {
  const ParserValue value(ParserValue::TYPE_BOOL, "yes");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_BOOL);
  EXPECT_TRUE(value.getAsBool());
}

TEST(ParserValueMakeTest, OfTheTextOfAChar) {
  const ParserValue value(ParserValue::TYPE_CHAR, "65");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_CHAR);
  EXPECT_EQ(value.getAsChar(), 'A');
}

TEST(ParserValueMakeTest, OfTheTextOfAnInt) {
  const ParserValue value(ParserValue::TYPE_INT, "-12");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_INT);
  EXPECT_EQ(value.getAsInt(), -12);
}

TEST(ParserValueMakeTest, OfTheTextOfADouble) {
  const ParserValue value(ParserValue::TYPE_DOUBLE, "1.5");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(value.getAsDouble(), 1.5);
}

TEST(ParserValueMakeTest, OfTheTextOfAStringWhichIsUnescapedAlready) {
  const ParserValue value(ParserValue::TYPE_STRING, "\"a\\nb\"");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_STRING);
  EXPECT_EQ(value.getAsString(), "\"a\\nb\"");
}

TEST(ParserValueMakeTest, OfTheTextOfABlock) {
  const ParserValue value(ParserValue::TYPE_BINARYDATA, "0x0102FF02010000");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(bytesOf(value), "\x01\x02\xFF");
}

TEST(ParserValueMakeTest, OfTheTextOfAnEmptyBlockHasANullBuffer) {
  const ParserValue value(ParserValue::TYPE_BINARYDATA, "0x00000000");
  unsigned long size = 99;
  EXPECT_EQ(value.getAsBinaryData(size), nullptr);
  EXPECT_EQ(size, 0U);
}

TEST(ParserValueMakeTest, OfTheTextOfABlockDoesNotKeepTheText) {
  const ParserValue value(ParserValue::TYPE_BINARYDATA, "0xabcd00000000");
  EXPECT_EQ(textOf(value), "0x000000000000");
}

TEST(ParserValueMakeTest, OfTheTextOfAnEmptyTag) {
  const ParserValue value(ParserValue::TYPE_EMPTY, "<empty>");
  EXPECT_EQ(value.getType(), ParserValue::TYPE_EMPTY);
  EXPECT_EQ(textOf(value), "<empty>");
}

TEST(ParserValueMakeTest, OfATypeOutsideTheEnumerationHoldsNothing) {
  for (const ParserValue::Type type : {OUTSIDE, BELOW}) {
    const ParserValue value(type, "text");
    EXPECT_EQ(value.getType(), type);
    EXPECT_EQ(textOf(value), "");
  }
}

// --- Copies --------------------------------------------------------------------------------------

TEST(ParserValueCopyTest, Bool) { EXPECT_TRUE(ParserValue(ParserValue(true)).getAsBool()); }

TEST(ParserValueCopyTest, Numbers) {
  const ParserValue character('x');
  const ParserValue integer(-12);
  const ParserValue number(0.1);
  EXPECT_EQ(ParserValue(character).getAsChar(), 'x');
  EXPECT_EQ(ParserValue(integer).getAsInt(), -12);
  EXPECT_EQ(ParserValue(number).getAsDouble(), 0.1);
}

TEST(ParserValueCopyTest, TheTextIsCopiedWithItsSpelling) {
  const ParserValue value(ParserValue::TYPE_DOUBLE, "1.50");
  EXPECT_EQ(textOf(ParserValue(value)), "1.50");
}

TEST(ParserValueCopyTest, TextAndDataAreCopiedTogether) {
  const ParserValue value(ParserValue::TYPE_DOUBLE, "1.50");
  value.makeValue();
  const ParserValue copy(value);
  EXPECT_EQ(copy.getAsDouble(), 1.5);
  EXPECT_EQ(textOf(copy), "1.50");
}

TEST(ParserValueCopyTest, AStringIsAStringOfItsOwn) {
  auto value = std::make_unique<ParserValue>("text");
  const ParserValue copy(*value);
  EXPECT_NE(&copy.getAsString(), &value->getAsString());
  value.reset();
  EXPECT_EQ(copy.getAsString(), "text");
}

TEST(ParserValueCopyTest, ABlockHasABufferOfItsOwn) {
  const ParserValue value = makeBlock("\x01\x02");
  const ParserValue copy(value);
  unsigned long size = 0;
  EXPECT_NE(copy.getAsBinaryData(size), value.getAsBinaryData(size));
  EXPECT_EQ(bytesOf(copy), "\x01\x02");
}

TEST(ParserValueCopyTest, AnEmptyBlockStaysEmpty) {
  const ParserValue value = makeBlock("");
  const ParserValue copy(value);
  EXPECT_EQ(copy.getType(), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(sizeOf(copy), 0U);
}

TEST(ParserValueCopyTest, ABlockThatWasWrittenIsCopiedAndWrittenAgain) {
  const ParserValue value = makeBlock("\x01");
  EXPECT_EQ(textOf(value), "0x0101000000");
  const ParserValue copy(value);
  EXPECT_EQ(bytesOf(copy), "\x01");
  EXPECT_EQ(textOf(copy), "0x0101000000");
}

TEST(ParserValueCopyTest, AGroupIsAGroupOfItsOwn) {
  auto* group = new ParserGroup("camera");
  auto value = std::make_unique<ParserValue>(group);
  group->addItem("fov", 0, 0)->addInt(40);
  const ParserValue copy(*value);
  group->addItem("late", 0, 0);
  value.reset();
  EXPECT_EQ(textOf(copy), "camera { fov 40 }");
}

TEST(ParserValueCopyTest, AnEmptyTagStaysOne) {
  const ParserValue value(ParserValue::TYPE_EMPTY, "<empty>");
  const ParserValue copy(value);
  EXPECT_EQ(copy.getType(), ParserValue::TYPE_EMPTY);
  EXPECT_EQ(textOf(copy), "<empty>");
}

TEST(ParserValueCopyTest, ATypeOutsideTheEnumerationStays) {
  const ParserValue value(OUTSIDE, "text");
  const ParserValue copy(value);
  EXPECT_EQ(copy.getType(), OUTSIDE);
  EXPECT_EQ(textOf(copy), "");
}

TEST(ParserValueCopyTest, ChangingTheCopyLeavesTheSourceAlone) {
  const ParserValue value("before");
  ParserValue copy(value);
  copy.setString("after");
  EXPECT_EQ(value.getAsString(), "before");
}
