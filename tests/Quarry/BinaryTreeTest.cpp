// The binary form of items, groups and documents.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <memory>

#include "support/Bytes.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::Bytes;
using TestSupport::makeBytes;
using TestSupport::makeGroup;
using TestSupport::makeItem;
using TestSupport::makeSize;
using TestSupport::makeString;
using TestSupport::makeText;
using TestSupport::Message;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeOneLine;
using TestSupport::operator+;

namespace {

const char GROUP_TOO_LARGE[] =
    "ParserGroup::setBinary: ParserGroup size larger than the given data\n";
const char NO_ITEM_NAME[] = "ParserGroup::setBinary: Failed to read item name\n";
const char NO_STRING[] = "ParserValue::binTostring: Failed to parse string\n";
const char TOO_SHORT[] = "ParserFile.setBinary: data too short\n";
const char UNKNOWN_TAG[] = "ParserFile.setBinary: Unknown data tag\n";
const char UNKNOWN_FORMAT[] = "ParserFile.setBinary: Unknown format\n";

const Bytes YES = makeBytes("01 01");

Bytes encode(const std::string& text) { return readText(text)->getBinary(false); }

/// What reading a group frame gave.
struct Outcome {
  bool result;
  unsigned long pos;
  std::unique_ptr<ParserGroup> group;
};

Outcome decode(const Bytes& data, unsigned long pos = 0) {
  auto group = std::make_unique<ParserGroup>("read");
  const bool result = group->setBinary(data, pos);
  return {result, pos, std::move(group)};
}

std::string writeDecoded(const Bytes& data) { return writeOneLine(*decode(data).group); }

std::vector<Message> warnings(const std::vector<std::string>& texts) {
  std::vector<Message> messages;
  for (const std::string& text : texts)
    messages.push_back({Plinth::Console::LEVEL_WARNING, text, ""});
  return messages;
}

}  // namespace

// --- Items, written ------------------------------------------------------------------------------

TEST(BinaryItemTest, ItemWithoutValuesIsNameSizeOneAndKind) {
  const ParserItem item("ab", ParserItem::ITEM_PLAIN, 0, 0);
  EXPECT_EQ(item.getBinary(), makeString("ab") + makeSize(1) + makeBytes("00"));
}

TEST(BinaryItemTest, SizeCountsKindAndValues) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addBool(true);
  item.addInt(2);
  EXPECT_EQ(item.getBinary(), makeString("a") + makeSize(8) + makeBytes("00 01 01 03 02 00 00 00"));
}

TEST(BinaryItemTest, KindIsZeroForKeywordsAndCalls) {
  const ParserItem keyword("#k", ParserItem::ITEM_KEYWORD, 0, 0);
  const ParserItem call("f", ParserItem::ITEM_CALL, 0, 0);
  EXPECT_EQ(keyword.getBinary(), makeItem("#k", Bytes()));
  EXPECT_EQ(call.getBinary(), makeItem("f", Bytes()));
}

TEST(BinaryItemTest, GroupValueIsItsFrameWithoutName) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addGroup(new ParserGroup("inner"))->addItem("b", 0, 0)->addBool(true);
  EXPECT_EQ(item.getBinary(), makeItem("a", makeBytes("00") + makeGroup(makeItem("b", YES))));
}

TEST(BinaryItemTest, ValuesBehindAGroupFollowItsFrame) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addGroup(nullptr);
  item.addBool(true);
  EXPECT_EQ(item.getBinary(), makeItem("a", makeBytes("00") + makeSize(0) + YES));
}

// --- Items, read ---------------------------------------------------------------------------------

TEST(BinaryItemTest, ItemReadsItsValuesBehindTheName) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 2;
  EXPECT_TRUE(item.setBinary(makeItem("a", YES + makeBytes("03 02 00 00 00")), pos));
  EXPECT_EQ(item.getValueCount(), 2u);
  EXPECT_EQ(item.getInt(1), 2);
  EXPECT_EQ(pos, 18u);
}

TEST(BinaryItemTest, ValuesAreAppended) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addInt(7);
  unsigned long pos = 2;
  item.setBinary(makeItem("a", YES), pos);
  EXPECT_EQ(item.getInt(0), 7);
  EXPECT_TRUE(item.getBool(1));
}

TEST(BinaryItemTest, KindIsIgnored) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_TRUE(item.setBinary(makeSize(3) + makeBytes("02 01 01"), pos));
  EXPECT_EQ(item.getType(), ParserItem::ITEM_PLAIN);
}

TEST(BinaryItemTest, SizeOfZeroStillHasItsKind) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_TRUE(item.setBinary(makeSize(0) + makeBytes("00 01 01"), pos));
  EXPECT_EQ(item.getValueCount(), 0u);
  EXPECT_EQ(pos, 9u);
}

TEST(BinaryItemTest, SizeLargerThanTheDataIsPrinted) {
  const RecordingConsole console;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_FALSE(item.setBinary(makeSize(12) + YES, pos));
  EXPECT_EQ(pos, 8u);
  EXPECT_EQ(item.getValueCount(), 0u);
  EXPECT_EQ(
      console.getMessages(),
      std::vector<Message>(
          {{Plinth::Console::LEVEL_PRINT,
            "ParserItem::setBinary:  'a', chunk size (12) is larger than the given buffer (10)",
            ""}}));
}

TEST(BinaryItemTest, LargestSizeIsPrintedInDecimal) {
  const RecordingConsole console;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_FALSE(item.setBinary(makeSize(~0ULL), pos));
  EXPECT_EQ(
      console.getTexts(Plinth::Console::LEVEL_PRINT),
      std::vector<std::string>({"ParserItem::setBinary:  'a', chunk size "
                                "(18446744073709551615) is larger than the given buffer (8)"}));
}

TEST(BinaryItemTest, SizeThatFitsAllOfTheDataIsNotRefused) {
  const RecordingConsole console;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_FALSE(item.setBinary(makeSize(11) + makeBytes("00") + YES, pos));
  EXPECT_EQ(item.getValueCount(), 1u);
  EXPECT_EQ(pos, 11u);
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryItemTest, SizeCutShortIsFalseAndSilent) {
  const RecordingConsole console;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_FALSE(item.setBinary(makeBytes("01 00 00"), pos));
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryItemTest, MissingKindIsFalseAndSilent) {
  const RecordingConsole console;
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_FALSE(item.setBinary(makeSize(1), pos));
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryItemTest, ValueThatCannotBeReadEndsTheItem) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 2;
  EXPECT_FALSE(item.setBinary(makeItem("a", YES + makeBytes("09") + YES), pos));
  EXPECT_EQ(item.getValueCount(), 1u);
}

TEST(BinaryItemTest, ValueMayRunPastTheEndOfItsItem) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  unsigned long pos = 0;
  EXPECT_TRUE(item.setBinary(makeSize(2) + makeBytes("00 03 02 00 00 00"), pos));
  EXPECT_EQ(item.getInt(0), 2);
  EXPECT_EQ(pos, 14u);
}

// --- Groups, written -----------------------------------------------------------------------------

TEST(BinaryGroupTest, EmptyGroupIsASizeOfZero) {
  EXPECT_EQ(ParserGroup("g").getBinary(false), makeSize(0));
}

TEST(BinaryGroupTest, NameStandsBeforeTheSize) {
  EXPECT_EQ(ParserGroup("g").getBinary(true), makeString("g") + makeSize(0));
}

TEST(BinaryGroupTest, SizeCountsTheItemsOnly) {
  EXPECT_EQ(encode("a yes"), makeSize(13) + makeItem("a", YES));
}

TEST(BinaryGroupTest, ItemsFollowInOrderKeywordsAmongThem) {
  EXPECT_EQ(encode("a yes #k yes b yes"),
            makeGroup(makeItem("a", YES) + makeItem("#k", YES) + makeItem("b", YES)));
}

TEST(BinaryGroupTest, DetachedItemsAreLeftOut) {
  const std::unique_ptr<ParserGroup> group = readText("a yes b yes");
  const std::unique_ptr<ParserItem> detached(group->getItem(0UL));
  group->detachItem(0);
  EXPECT_EQ(group->getBinary(false), makeGroup(makeItem("b", YES)));
}

// --- Groups, read --------------------------------------------------------------------------------

TEST(BinaryGroupTest, EmptyGroupReadsAsTrue) {
  const Outcome outcome = decode(makeSize(0));
  EXPECT_TRUE(outcome.result);
  EXPECT_EQ(outcome.pos, 8u);
  EXPECT_EQ(writeOneLine(*outcome.group), "");
}

TEST(BinaryGroupTest, ReadingBeginsAtThePosition) {
  const Outcome outcome = decode(makeText("QDBF") + encode("a yes") + makeText("rest"), 4);
  EXPECT_TRUE(outcome.result);
  EXPECT_EQ(outcome.pos, 25u);
}

TEST(BinaryGroupTest, NamedFrameIsReadBehindItsName) {
  const Bytes data = readText("a yes")->getBinary(true);
  EXPECT_EQ(writeOneLine(*decode(data, makeString("root").size()).group), " a yes");
}

TEST(BinaryGroupTest, ItemsAreFoundByNoLookup) {
  const Outcome outcome = decode(encode("#SerialVersion yes a yes"));
  EXPECT_EQ(outcome.group->getItemCount(), 0u);
  EXPECT_EQ(outcome.group->getItem("a"), nullptr);
  EXPECT_EQ(outcome.group->getKeyword("#SerialVersion"), nullptr);
  EXPECT_TRUE(outcome.group->getEntries("a").empty());
}

TEST(BinaryGroupTest, ItemsAreWrittenInOrder) {
  EXPECT_EQ(writeDecoded(encode("#SerialVersion yes a yes")), " #SerialVersion yes a yes");
}

TEST(BinaryGroupTest, CopyFindsAllItemsAsPlainOnes) {
  const Outcome outcome = decode(encode("#k yes a yes"));
  const ParserGroup copy(*outcome.group);
  EXPECT_EQ(copy.getItemCount(), 2u);
  EXPECT_NE(copy.getItem("#k"), nullptr);
  EXPECT_EQ(copy.getKeyword("#k"), nullptr);
}

TEST(BinaryGroupTest, RemovingAnItemMakesTheOthersFound) {
  const Outcome outcome = decode(encode("a yes b yes"));
  outcome.group->removeItem("b");
  EXPECT_EQ(outcome.group->getItemCount(), 1u);
  EXPECT_NE(outcome.group->getItem("a"), nullptr);
}

TEST(BinaryGroupTest, ItemsAreAppended) {
  const std::unique_ptr<ParserGroup> group = readText("a yes");
  unsigned long pos = 0;
  group->setBinary(encode("b yes"), pos);
  EXPECT_EQ(writeOneLine(*group), " a yes b yes");
}

TEST(BinaryGroupTest, ItemTypeTemplateAndArrayAreLost) {
  const std::unique_ptr<ParserGroup> group = readText("f(yes)");
  group->getItem("f")->setTemplate("t");
  group->getItem("f")->setArray(true, 0);
  EXPECT_EQ(writeDecoded(group->getBinary(false)), " f yes");
}

TEST(BinaryGroupTest, FoldingIsLost) {
  ParserGroup group("g");
  group.addGroup("sub", true);
  EXPECT_EQ(writeDecoded(group.getBinary(false)), " sub { }");
}

TEST(BinaryGroupTest, NestedGroupLosesItsName) {
  ParserGroup group("g");
  group.addGroup(new ParserGroup("inner"), false);
  EXPECT_EQ(writeOneLine(group), " inner inner { }");
  EXPECT_EQ(writeDecoded(group.getBinary(false)), " inner { }");
}

TEST(BinaryGroupTest, ItemWithoutValuesReadsBack) {
  EXPECT_EQ(writeDecoded(encode("a <empty> b yes")), " a <empty> b yes");
}

TEST(BinaryGroupTest, NestedGroupsReadBack) {
  EXPECT_EQ(writeDecoded(encode("a { b { c yes } d yes } f yes")),
            " a { b { c yes } d yes } f yes");
}

TEST(BinaryGroupTest, ItemWithSeveralGroupsReadsBack) {
  ParserGroup group("g");
  ParserItem* item = group.addItem("a", 0, 0);
  item->addGroup(nullptr)->addItem("b", 0, 0)->addBool(true);
  item->addBool(false);
  item->addGroup(nullptr)->addItem("c", 0, 0)->addBool(true);
  EXPECT_EQ(writeDecoded(group.getBinary(false)), " a { b yes } no { c yes }");
}

// --- Groups, broken ------------------------------------------------------------------------------

TEST(BinaryGroupTest, SizeLargerThanTheDataIsRefused) {
  const RecordingConsole console;
  const Outcome outcome = decode(makeSize(14) + makeItem("a", YES));
  EXPECT_FALSE(outcome.result);
  EXPECT_EQ(outcome.pos, 8u);
  EXPECT_EQ(writeOneLine(*outcome.group), "");
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

TEST(BinaryGroupTest, LargestSizeIsRefused) {
  const RecordingConsole console;
  EXPECT_FALSE(decode(makeSize(~0ULL) + makeItem("a", YES)).result);
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

TEST(BinaryGroupTest, SizeThatWouldWrapRoundIsRefused) {
  const RecordingConsole console;
  EXPECT_FALSE(decode(makeSize(~0ULL - 7) + makeItem("a", YES)).result);
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

TEST(BinaryGroupTest, SizeCutShortIsRefusedInTheSameWay) {
  const RecordingConsole console;
  EXPECT_FALSE(decode(makeBytes("00 00 00")).result);
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

TEST(BinaryGroupTest, EmptyItemNameEndsTheGroup) {
  const RecordingConsole console;
  const Outcome outcome =
      decode(makeGroup(makeItem("a", YES) + makeItem("", YES) + makeItem("b", YES)));
  EXPECT_FALSE(outcome.result);
  EXPECT_EQ(writeOneLine(*outcome.group), " a yes");
  EXPECT_EQ(console.getMessages(), warnings({NO_ITEM_NAME}));
}

TEST(BinaryGroupTest, ItemNameWithoutEndGivesBothWarnings) {
  const RecordingConsole console;
  EXPECT_FALSE(decode(makeGroup(makeText("abc"))).result);
  EXPECT_EQ(console.getMessages(), warnings({NO_STRING, NO_ITEM_NAME}));
}

TEST(BinaryGroupTest, BrokenItemIsDroppedAndEndsTheGroup) {
  const RecordingConsole console;
  const Outcome outcome =
      decode(makeGroup(makeItem("a", YES) + makeItem("b", makeBytes("09")) + makeItem("c", YES)));
  EXPECT_FALSE(outcome.result);
  EXPECT_EQ(writeOneLine(*outcome.group), " a yes");
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryGroupTest, ItemWithAnEmptyTagIsBroken) {
  EXPECT_FALSE(decode(makeGroup(makeItem("a", makeBytes("07")))).result);
}

TEST(BinaryGroupTest, ItemThatRunsPastTheEndIsNotReported) {
  const RecordingConsole console;
  const Bytes items = makeItem("a", YES);
  const Outcome outcome = decode(makeSize(items.size() - 1) + items);
  EXPECT_TRUE(outcome.result);
  EXPECT_EQ(writeOneLine(*outcome.group), " a yes");
  EXPECT_TRUE(console.isSilent());
}

TEST(BinaryGroupTest, ReadingGoesOnWhereANestedGroupEnded) {
  const RecordingConsole console;
  const Bytes broken = makeBytes("00") + makeSize(1) + makeBytes("00");
  const Outcome outcome = decode(makeGroup(makeItem("a", broken + YES) + makeItem("b", YES)));
  EXPECT_TRUE(outcome.result);
  EXPECT_EQ(writeOneLine(*outcome.group), " a { } yes b yes");
  EXPECT_EQ(console.getMessages(), warnings({NO_ITEM_NAME}));
}

TEST(BinaryGroupTest, NestedSizeLargerThanTheDataEndsOnlyThatGroup) {
  const RecordingConsole console;
  const Outcome outcome = decode(makeGroup(makeItem("a", makeBytes("00") + makeSize(999) + YES)));
  EXPECT_TRUE(outcome.result);
  EXPECT_EQ(writeOneLine(*outcome.group), " a { } yes");
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

// --- Documents -----------------------------------------------------------------------------------

TEST(BinaryDocumentTest, EmptyDocumentIsTagAndSize) {
  EXPECT_EQ(ParserFile().getBinary(), makeText("QDBF") + makeSize(0));
}

TEST(BinaryDocumentTest, DocumentIsTagAndRoot) {
  ParserFile file;
  file.getRoot().setText("a yes", 1.1);
  EXPECT_EQ(file.getBinary(), makeText("QDBF") + encode("a yes"));
}

TEST(BinaryDocumentTest, DocumentReadsBack) {
  ParserFile file;
  file.getRoot().setText("a yes b { c no }", 1.1);
  ParserFile copy;
  EXPECT_TRUE(copy.setBinary(file.getBinary()));
  EXPECT_EQ(writeOneLine(copy.getRoot()), " a yes b { c no }");
}

TEST(BinaryDocumentTest, RootIsNotEmptiedFirst) {
  ParserFile file;
  file.getRoot().setText("a yes", 1.1);
  EXPECT_TRUE(file.setBinary(makeText("QDBF") + encode("b yes")));
  EXPECT_EQ(writeOneLine(file.getRoot()), " a yes b yes");
}

TEST(BinaryDocumentTest, VersionNameAndSearchPathsStay) {
  ParserFile file("doc.cfg");
  file.setSearchPaths({"a"});
  file.setBinary(makeText("QDBF") + encode("b yes"));
  EXPECT_EQ(file.getVersion(), 1.1);
  EXPECT_EQ(file.getFilename(), "doc.cfg");
  EXPECT_EQ(file.getSearchPaths(), std::vector<std::string>({"a"}));
}

TEST(BinaryDocumentTest, EmptyDataIsTooShort) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserFile().setBinary(Bytes()));
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Plinth::Console::LEVEL_PRINT, TOO_SHORT, ""},
                                  {Plinth::Console::LEVEL_WARNING, UNKNOWN_FORMAT, ""}}));
}

TEST(BinaryDocumentTest, EightBytesAreTooShort) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserFile().setBinary(makeText("QDBF1234")));
  EXPECT_EQ(console.getTexts(Plinth::Console::LEVEL_PRINT), std::vector<std::string>({TOO_SHORT}));
}

TEST(BinaryDocumentTest, NineBytesWithAnotherTagAreUnknown) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserFile().setBinary(makeText("QDBG56789")));
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Plinth::Console::LEVEL_PRINT, UNKNOWN_TAG, ""},
                                  {Plinth::Console::LEVEL_WARNING, UNKNOWN_FORMAT, ""}}));
}

TEST(BinaryDocumentTest, NineBytesWithTheTagAreLeftToTheRoot) {
  const RecordingConsole console;
  EXPECT_FALSE(ParserFile().setBinary(makeText("QDBF56789")));
  EXPECT_EQ(console.getMessages(), warnings({GROUP_TOO_LARGE}));
}

TEST(BinaryDocumentTest, RefusedDataLeavesTheRootAlone) {
  const RecordingConsole console;
  ParserFile file;
  file.getRoot().setText("a yes", 1.1);
  file.setBinary(makeText("nothing of ours"));
  EXPECT_EQ(writeOneLine(file.getRoot()), " a yes");
}
