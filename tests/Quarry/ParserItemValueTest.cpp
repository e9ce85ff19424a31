// The values of an item: reading, testing, setting and appending them.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::RecordingConsole;

namespace {

using Texts = std::vector<std::string>;

ParserItem makeItem() { return ParserItem("item", ParserItem::ITEM_PLAIN, 0, 0); }

/// The place of the value of each type in the item that makeAllTypes() returns.
enum Place : unsigned long { BOOL, CHAR, INT, DOUBLE, STRING, BINARY, GROUP };

ParserItem makeAllTypes() {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  std::string bytes("\x01\0\xFF", 3);
  item.addBool(true);
  item.addChar('A');
  item.addInt(300);
  item.addDouble(2.5);
  item.addString("text");
  item.addBinaryData(bytes.data(), bytes.size());
  item.addGroup(nullptr);
  return item;
}

std::string bytesOf(const ParserItem& item, unsigned long index) {
  return {static_cast<const char*>(item.getBinaryData(index)), item.getBinaryDataSize(index)};
}

std::string valueTextOf(const ParserItem& item) {
  std::string text;
  item.getValueText(text, true, 1);
  return text;
}

/// Returns in which of the values of makeAllTypes() `test` holds, a letter for each, in order.
template <typename Test>
std::string typesFor(Test test) {
  const ParserItem item = makeAllTypes();
  std::string types;
  for (unsigned long i = BOOL; i <= GROUP; ++i)
    types += (item.*test)(i) ? "BCIDSXG"[i] : '.';
  return types;
}

}  // namespace

// --- Append --------------------------------------------------------------------------------------

TEST(ParserItemValueTest, AddedValuesStandInTheOrderOfAddition) {
  const ParserItem item = makeAllTypes();
  ASSERT_EQ(item.getValueCount(), 7u);
  EXPECT_EQ(item.getValueType(BOOL), ParserValue::TYPE_BOOL);
  EXPECT_EQ(item.getValueType(CHAR), ParserValue::TYPE_CHAR);
  EXPECT_EQ(item.getValueType(INT), ParserValue::TYPE_INT);
  EXPECT_EQ(item.getValueType(DOUBLE), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(item.getValueType(STRING), ParserValue::TYPE_STRING);
  EXPECT_EQ(item.getValueType(BINARY), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(item.getValueType(GROUP), ParserValue::TYPE_GROUP);
}

TEST(ParserItemValueTest, AddBoolTrueHasTheWordYes) {
  ParserItem item = makeItem();
  item.addBool(true);
  EXPECT_EQ(item.getWord(0), "yes");
}

TEST(ParserItemValueTest, AddBoolFalseHasTheWordNo) {
  ParserItem item = makeItem();
  item.addBool(false);
  EXPECT_EQ(item.getWord(0), "no");
}

TEST(ParserItemValueTest, AddCharHasItsCodeAsTheWord) {
  ParserItem item = makeItem();
  item.addChar('A');
  EXPECT_EQ(item.getWord(0), "65");
}

TEST(ParserItemValueTest, AddCharOfAHighByteHasANegativeCode) {
  ParserItem item = makeItem();
  item.addChar('\xFF');
  EXPECT_EQ(item.getWord(0), "-1");
  EXPECT_EQ(item.getChar(0), '\xFF');
}

TEST(ParserItemValueTest, AddIntHasItsDecimalDigitsAsTheWord) {
  ParserItem item = makeItem();
  item.addInt(-2147483647 - 1);
  EXPECT_EQ(item.getWord(0), "-2147483648");
  EXPECT_EQ(item.getInt(0), -2147483647 - 1);
}

TEST(ParserItemValueTest, AddDoubleHasItsShortestSpellingAsTheWord) {
  ParserItem item = makeItem();
  item.addDouble(0.1);
  EXPECT_EQ(item.getWord(0), "0.1");
}

TEST(ParserItemValueTest, AddDoubleOfAWholeNumberHasAWordThatIsNoInteger) {
  ParserItem item = makeItem();
  item.addDouble(2.0);
  EXPECT_EQ(item.getWord(0), "2.0");
}

TEST(ParserItemValueTest, AddDoubleReadsBackAsTheSameDouble) {
  ParserItem item = makeItem();
  item.addDouble(1.0 / 3.0);
  EXPECT_EQ(item.getDouble(0), 1.0 / 3.0);
}

TEST(ParserItemValueTest, AddStringKeepsTheStringUnescaped) {
  ParserItem item = makeItem();
  item.addString("a\n\"b\"\\");
  EXPECT_EQ(item.getWord(0), "a\n\"b\"\\");
  EXPECT_EQ(item.getString(0), "a\n\"b\"\\");
}

TEST(ParserItemValueTest, AddStringKeepsZeroBytes) {
  ParserItem item = makeItem();
  item.addString(std::string("a\0b", 3));
  EXPECT_EQ(item.getString(0), std::string("a\0b", 3));
}

TEST(ParserItemValueTest, AddBinaryDataCopiesTheBytes) {
  ParserItem item = makeItem();
  std::string bytes("a\0b", 3);
  item.addBinaryData(bytes.data(), bytes.size());
  bytes.assign(3, 'x');
  EXPECT_EQ(bytesOf(item, 0), std::string("a\0b", 3));
}

TEST(ParserItemValueTest, AddBinaryDataHasNoWord) { EXPECT_EQ(makeAllTypes().getWord(BINARY), ""); }

TEST(ParserItemValueTest, AddBinaryDataOfSize0HasNoBytes) {
  ParserItem item = makeItem();
  item.addBinaryData(nullptr, 0);
  EXPECT_EQ(item.getBinaryData(0), nullptr);
  EXPECT_EQ(item.getBinaryDataSize(0), 0u);
}

TEST(ParserItemValueTest, AddGroupAdoptsTheGroupAndReturnsIt) {
  ParserItem item = makeItem();
  auto* group = new ParserGroup("inner");
  EXPECT_EQ(item.addGroup(group), group);
  EXPECT_EQ(item.getGroup(0), group);
}

TEST(ParserItemValueTest, AddGroupOfNullMakesAnEmptyGroupWithoutAName) {
  ParserItem item = makeItem();
  const ParserGroup* group = item.addGroup(nullptr);
  EXPECT_EQ(group->getName(), "");
  EXPECT_EQ(group->getItemCount(), 0u);
  EXPECT_EQ(item.getGroup(0), group);
}

TEST(ParserItemValueTest, AddedValuesAreWrittenAsTheirWords) {
  ParserItem item = makeItem();
  item.addBool(false);
  item.addChar('A');
  item.addInt(12);
  item.addDouble(2.5);
  item.addString("x");
  EXPECT_EQ(valueTextOf(item), " no 65 12 2.5 \"x\"");
}

// --- Read ----------------------------------------------------------------------------------------

TEST(ParserItemValueTest, GetBoolConverts) {
  EXPECT_TRUE(makeAllTypes().getBool(BOOL));
  EXPECT_TRUE(makeAllTypes().getBool(DOUBLE));
}

TEST(ParserItemValueTest, GetCharConverts) {
  EXPECT_EQ(makeAllTypes().getChar(CHAR), 'A');
  EXPECT_EQ(makeAllTypes().getChar(INT), 44);
}

TEST(ParserItemValueTest, GetIntConverts) {
  EXPECT_EQ(makeAllTypes().getInt(INT), 300);
  EXPECT_EQ(makeAllTypes().getInt(DOUBLE), 2);
}

TEST(ParserItemValueTest, GetDoubleConverts) {
  EXPECT_EQ(makeAllTypes().getDouble(DOUBLE), 2.5);
  EXPECT_EQ(makeAllTypes().getDouble(INT), 300.0);
}

TEST(ParserItemValueTest, GetStringReadsAString) {
  EXPECT_EQ(makeAllTypes().getString(STRING), "text");
}

TEST(ParserItemValueTest, GetBinaryDataReadsABlock) {
  EXPECT_EQ(bytesOf(makeAllTypes(), BINARY), std::string("\x01\0\xFF", 3));
}

TEST(ParserItemValueTest, GetBinaryDataReturnsTheSameBytesEachTime) {
  const ParserItem item = makeAllTypes();
  EXPECT_EQ(item.getBinaryData(BINARY), item.getBinaryData(BINARY));
}

TEST(ParserItemValueTest, ReadingWhatConvertsGivesNoMessage) {
  const RecordingConsole console;
  const ParserItem item = makeAllTypes();
  EXPECT_EQ(item.getInt(BOOL), 1);
  EXPECT_EQ(item.getDouble(CHAR), 65.0);
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserItemValueTest, GetBoolOfAStringWarnsAndGivesFalse) {
  const RecordingConsole console;
  EXPECT_FALSE(makeAllTypes().getBool(STRING));
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsBool: type mismatch, value type is 'TYPE_STRING' \n"}));
}

TEST(ParserItemValueTest, GetCharOfAGroupWarnsAndGives0) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getChar(GROUP), 0);
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsChar: type mismatch, value type is 'TYPE_GROUP' \n"}));
}

TEST(ParserItemValueTest, GetIntOfAStringWarnsAndGives0) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getInt(STRING), 0);
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsInt: type mismatch, value type is 'TYPE_STRING' \n"}));
}

TEST(ParserItemValueTest, GetDoubleOfABlockWarnsAndGives0) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getDouble(BINARY), 0.0);
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsDouble: type mismatch, value type is 'TYPE_UNKNOWN' \n"}));
}

TEST(ParserItemValueTest, GetStringOfABoolWarnsAndGivesNoText) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getString(BOOL), "");
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsString: type mismatch, value type is 'TYPE_BOOL' \n"}));
}

TEST(ParserItemValueTest, GetBinaryDataOfAnIntWarnsAndGivesNull) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getBinaryData(INT), nullptr);
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_INT' \n"}));
}

TEST(ParserItemValueTest, GetBinaryDataSizeOfACharWarnsAndGives0) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getBinaryDataSize(CHAR), 0u);
  EXPECT_EQ(console.getWarnings(),
            Texts({"ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_CHAR' \n"}));
}

TEST(ParserItemValueTest, GetWordOfAGroupIsEmpty) { EXPECT_EQ(makeAllTypes().getWord(GROUP), ""); }

TEST(ParserItemValueTest, GetWordIsStillThereAfterAConversion) {
  const ParserItem item = makeAllTypes();
  EXPECT_EQ(item.getInt(INT), 300);
  EXPECT_EQ(item.getWord(INT), "300");
}

// --- Groups --------------------------------------------------------------------------------------

TEST(ParserItemValueTest, GetGroupOfAnItemWithoutValuesAddsAnEmptyGroupWhateverTheIndex) {
  const ParserItem item = makeItem();
  const ParserGroup* group = item.getGroup(7);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->getName(), "");
  EXPECT_EQ(group->getItemCount(), 0u);
  EXPECT_EQ(item.getValueCount(), 1u);
}

TEST(ParserItemValueTest, GetGroupReturnsTheGroupThatItAdded) {
  const ParserItem item = makeItem();
  const ParserGroup* group = item.getGroup(7);
  EXPECT_EQ(item.getGroup(0), group);
  EXPECT_TRUE(item.isGroup());
}

TEST(ParserItemValueTest, GetGroupOfAnIntIsNull) {
  ParserItem item = makeItem();
  item.addInt(1);
  EXPECT_EQ(item.getGroup(0), nullptr);
  EXPECT_EQ(item.getValueCount(), 1u);
}

TEST(ParserItemValueTest, GetGroupGivesNoMessage) {
  const RecordingConsole console;
  EXPECT_EQ(makeAllTypes().getGroup(STRING), nullptr);
  EXPECT_TRUE(console.isSilent());
}

TEST(ParserItemValueTest, GetGroupFindsEachOfSeveralGroups) {
  ParserItem item = makeItem();
  const ParserGroup* first = item.addGroup(nullptr);
  const ParserGroup* second = item.addGroup(nullptr);
  EXPECT_EQ(item.getGroup(0), first);
  EXPECT_EQ(item.getGroup(1), second);
}

// --- Test ----------------------------------------------------------------------------------------

TEST(ParserItemValueTest, IsValueBoolOnlyForABool) {
  EXPECT_EQ(typesFor(&ParserItem::isValueBool), "B......");
}

TEST(ParserItemValueTest, IsValueCharOnlyForAChar) {
  EXPECT_EQ(typesFor(&ParserItem::isValueChar), ".C.....");
}

TEST(ParserItemValueTest, IsValueIntOnlyForAnInt) {
  EXPECT_EQ(typesFor(&ParserItem::isValueInt), "..I....");
}

TEST(ParserItemValueTest, IsValueDoubleForADoubleAndAnInt) {
  EXPECT_EQ(typesFor(&ParserItem::isValueDouble), "..ID...");
}

TEST(ParserItemValueTest, IsValueStringOnlyForAString) {
  EXPECT_EQ(typesFor(&ParserItem::isValueString), "....S..");
}

TEST(ParserItemValueTest, IsValueGroupOnlyForAGroup) {
  EXPECT_EQ(typesFor(&ParserItem::isValueGroup), "......G");
}

// --- Set -----------------------------------------------------------------------------------------

TEST(ParserItemValueTest, SetBoolMakesABool) {
  ParserItem item = makeAllTypes();
  item.setBool(true, STRING);
  EXPECT_TRUE(item.isValueBool(STRING));
  EXPECT_TRUE(item.getBool(STRING));
}

TEST(ParserItemValueTest, SetIntMakesAnInt) {
  ParserItem item = makeAllTypes();
  item.setInt(-7, BOOL);
  EXPECT_TRUE(item.isValueInt(BOOL));
  EXPECT_EQ(item.getInt(BOOL), -7);
}

TEST(ParserItemValueTest, SetDoubleMakesADouble) {
  ParserItem item = makeAllTypes();
  item.setDouble(0.25, INT);
  EXPECT_EQ(item.getValueType(INT), ParserValue::TYPE_DOUBLE);
  EXPECT_EQ(item.getDouble(INT), 0.25);
}

TEST(ParserItemValueTest, SetStringMakesAString) {
  ParserItem item = makeAllTypes();
  item.setString("other", BINARY);
  EXPECT_TRUE(item.isValueString(BINARY));
  EXPECT_EQ(item.getString(BINARY), "other");
}

TEST(ParserItemValueTest, SetBinaryDataMakesABlock) {
  ParserItem item = makeAllTypes();
  std::string bytes("xyz");
  item.setBinaryData(bytes.data(), bytes.size(), GROUP);
  EXPECT_EQ(item.getValueType(GROUP), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(bytesOf(item, GROUP), "xyz");
}

TEST(ParserItemValueTest, SetBinaryDataOfSize0MakesAnEmptyBlock) {
  ParserItem item = makeAllTypes();
  item.setBinaryData(nullptr, 0, INT);
  EXPECT_EQ(item.getValueType(INT), ParserValue::TYPE_BINARYDATA);
  EXPECT_EQ(item.getBinaryDataSize(INT), 0u);
}

TEST(ParserItemValueTest, ASetterLeavesTheOtherValuesAlone) {
  ParserItem item = makeAllTypes();
  item.setInt(1, DOUBLE);
  EXPECT_EQ(item.getValueCount(), 7u);
  EXPECT_EQ(item.getInt(INT), 300);
  EXPECT_EQ(item.getString(STRING), "text");
}

TEST(ParserItemValueTest, ASetterTakesTheWordAway) {
  ParserItem item = makeAllTypes();
  item.setInt(12, INT);
  item.setString("new", STRING);
  EXPECT_EQ(item.getWord(INT), "");
  EXPECT_EQ(item.getWord(STRING), "");
}

TEST(ParserItemValueTest, AnIntThatWasSetIsWrittenAsOneRawByte) {
  ParserItem item = makeItem();
  item.addInt(12);
  item.setInt(65, 0);
  EXPECT_EQ(valueTextOf(item), " A");
}

TEST(ParserItemValueTest, WritingMakesTheWordOfAValueThatWasSet) {
  ParserItem item = makeItem();
  item.addInt(0);
  item.setBool(true, 0);
  EXPECT_EQ(valueTextOf(item), " yes");
  EXPECT_EQ(item.getWord(0), "yes");
}

TEST(ParserItemValueTest, ASetterOnAGroupFreesTheGroup) {
  ParserItem item = makeItem();
  item.addGroup(nullptr)->addItem("below", 0, 0);
  item.setInt(1, 0);
  EXPECT_FALSE(item.isGroup());
  EXPECT_EQ(item.getGroup(0), nullptr);
}

// --- Own data ------------------------------------------------------------------------------------

TEST(ParserItemValueTest, SetStringTakesTheStringOfTheSameValue) {
  ParserItem item = makeAllTypes();
  item.setString(item.getString(STRING), STRING);
  EXPECT_EQ(item.getString(STRING), "text");
}

TEST(ParserItemValueTest, SetBinaryDataTakesAPartOfTheSameBlock) {
  ParserItem item = makeAllTypes();
  item.setBinaryData(static_cast<char*>(item.getBinaryData(BINARY)) + 1, 2, BINARY);
  EXPECT_EQ(bytesOf(item, BINARY), std::string("\0\xFF", 2));
}

TEST(ParserItemValueTest, SetStringOnAGroupTakesANameFromThatGroup) {
  ParserItem item = makeItem();
  const ParserGroup* group = item.addGroup(new ParserGroup("a name of more than fifteen bytes"));
  item.setString(group->getName(), 0);
  EXPECT_EQ(item.getString(0), "a name of more than fifteen bytes");
}

TEST(ParserItemValueTest, AddStringTakesAStringOfTheSameItem) {
  ParserItem item = makeAllTypes();
  item.addString(item.getString(STRING));
  EXPECT_EQ(item.getString(GROUP + 1), "text");
}

TEST(ParserItemValueTest, AddBinaryDataTakesABlockOfTheSameItem) {
  ParserItem item = makeAllTypes();
  item.addBinaryData(item.getBinaryData(BINARY), item.getBinaryDataSize(BINARY));
  EXPECT_EQ(bytesOf(item, GROUP + 1), std::string("\x01\0\xFF", 3));
}
