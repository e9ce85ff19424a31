// Trees that are freed at once: which ones are, what they may hold beside their region, and that
// everything that leaves such a tree, comes into it or changes in it is looked after as before.
//
// Builds with assertions check each tree that is freed at once.

#include <Plinth/Console.h>
#include <Plinth/Expression.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/SlabRegion.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserWord;
using Quarry::SlabRegion;
using TestSupport::describe;
using TestSupport::readText;
using TestSupport::writeLines;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";
const std::string LONG_NAME = "a_name_that_is_longer_than_an_item_has_room_for";

/// Something of everything. Items of `g` are changed by the tests.
const std::string TEXT =
    "a 1\n"
    "g { b yes c 1.5 2.5 3.5 s \"short\" l \"" +
    LONG_STRING + "\" " + LONG_NAME +
    " 7\n"
    "  block 0x0102030400000000 call(1, \"x\") empty <empty>\n"
    "  #keyword 1 h { d 1 2 3 4 5 6 7 8 9 10 11 12 } two 1 }\n"
    "e { }\n"
    "#format 2\n";

/// More text than what small documents have.
std::string makeFiller() {
  std::string text;
  while (text.size() < 20000)
    text += "filler { x 1 y 2.5 z \"text\" w { v \"" + LONG_STRING + "\" } }\n";
  return text;
}

std::string makeLargeText() { return TEXT + makeFiller(); }

std::unique_ptr<ParserGroup> readLarge() {
  static const std::string text = makeLargeText();
  return readText(text);
}

/// Tells whether a part of a tree, made by reading, is freed with the others.
bool isFreedAtOnce(const ParserItem* item) { return SlabRegion::of(item) != nullptr; }
bool isFreedAtOnce(const ParserGroup& root) { return isFreedAtOnce(root.getItem(0)); }

/// Expects what is so but with the address sanitizer, which has to see each part.
#ifdef QUARRY_PLAIN_HEAP
#define EXPECT_REGION(condition) EXPECT_FALSE(condition)
#else
#define EXPECT_REGION(condition) EXPECT_TRUE(condition)
#endif

/// Returns how much memory the C library has given away, in bytes.
std::size_t getUsedMemory() { return mallinfo2().uordblks; }

/// Expects that something that is done again and again takes no memory that it does not give back.
/// The C library rounds, and not every time alike.
void expectNothingLost(const std::function<void()>& once) {
  constexpr std::size_t TIMES = 100;
  constexpr std::size_t SMALLEST_PIECE = 16;
  once();
  once();
  const std::size_t before = getUsedMemory();
  for (std::size_t i = 0; i < TIMES; ++i)
    once();
  EXPECT_LT(getUsedMemory(), before + TIMES * SMALLEST_PIECE);
}

/// Something that is done with a tree, and its name.
struct Operation {
  const char* name;
  void (*run)(ParserGroup& root);
};

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.name;
}

/// Tells whether the values lie in the item and behind it, and not in a list.
bool holdsValues(const ParserItem& item) {
  const auto* begin = reinterpret_cast<const char*>(&item);
  const auto* first = reinterpret_cast<const char*>(&item.getValueType(0));
  return first > begin && first < begin + sizeof(ParserItem);
}

ParserGroup& groupOf(ParserGroup& root) { return *root.getGroup("g"); }
ParserItem& itemOf(ParserGroup& root, const char* name) { return *groupOf(root).getItem(name); }

std::string nameOf(const testing::TestParamInfo<Operation>& info) { return info.param.name; }

}  // namespace

// --- Where values lie ----------------------------------------------------------------------------

/// An item at the end of a slab has no room.
TEST(TreeRegionTest, AnItemHoldsFewValuesWhateverIsBeforeIt) {
  std::string text;
  while (text.size() < 50000)
    text += "g { a 1 b 1 2 3 4 5 6 7 8 c yes d 1.5 2.5 e \"x\" \"y\" \"z\" f 1 g 1 2 3 }\n";
  const auto root = readText(text);
  unsigned long items = 0;
  unsigned long others = 0;
  for (unsigned long i = 0; i < root->getItemCount(); ++i) {
    const ParserGroup& group = *root->getItem(i)->getGroup(0);
    for (unsigned long k = 0; k < group.getItemCount(); ++k, ++items)
      others += holdsValues(*group.getItem(k)) ? 0 : 1;
  }
  EXPECT_REGION(others < items / 500);
}

TEST(TreeRegionTest, ManyValuesAreInAList) {
  const auto root = readText("a 1 2 3 4 5 6 7 8 9\n" + makeFiller());
  EXPECT_FALSE(holdsValues(*root->getItem("a")));
}

TEST(TreeRegionTest, ValuesAmongLongOnesAreInTheirOrder) {
  const std::string longOne = "\"" + LONG_STRING + "\"";
  const std::string text = "a 1 2 " + longOne + " 4 5 " + longOne + " 7 8 9 10 11\n" +  //
                           "b 1 \"x\\n\" \"y\\n\" 4 0x0102030400000000 6 7 8 9\n";
  const std::string small = describe(*readText(text));
  EXPECT_EQ(describe(*readText(text + makeFiller())).substr(0, small.size()), small);
}

// --- Which trees are freed at once ---------------------------------------------------------------

TEST(TreeRegionTest, ALargeTextIs) { EXPECT_REGION(isFreedAtOnce(*readLarge())); }

TEST(TreeRegionTest, AllItemsOfALargeTextAre) {
  const auto root = readLarge();
  EXPECT_REGION(isFreedAtOnce(root->getItem(root->getItemCount() - 1)));
  EXPECT_REGION(isFreedAtOnce(root->getGroup("g")->getGroup("h")->getItem("d")));
}

TEST(TreeRegionTest, ASmallTextIsNot) { EXPECT_FALSE(isFreedAtOnce(*readText(TEXT))); }

TEST(TreeRegionTest, ATextOfAKilobyteIs) {
  EXPECT_REGION(isFreedAtOnce(*readText("a 1 " + std::string(1020, ' '))));
}

TEST(TreeRegionTest, ATextOfAByteLessIsNot) {
  EXPECT_FALSE(isFreedAtOnce(*readText("a 1 " + std::string(1019, ' '))));
}

TEST(TreeRegionTest, LargeBinaryDataIs) {
  const std::vector<char> bytes = readLarge()->getBinary(false);
  ParserGroup root("root");
  unsigned long position = 0;
  ASSERT_TRUE(root.setBinary(bytes, position));
  for (const ParserItem* item : root.getItems("^a$"))
    EXPECT_REGION(isFreedAtOnce(item));
  EXPECT_EQ(root.getItems("^a$").getCount(), 1u);
}

TEST(TreeRegionTest, ASmallGroupInLargeBinaryDataIsNot) {
  std::vector<char> bytes = readText(TEXT)->getBinary(false);
  bytes.resize(100000);
  ParserGroup root("root");
  unsigned long position = 0;
  ASSERT_TRUE(root.setBinary(bytes, position));
  for (const ParserItem* item : root.getItems("^a$"))
    EXPECT_FALSE(isFreedAtOnce(item));
  EXPECT_EQ(root.getItems("^a$").getCount(), 1u);
}

TEST(TreeRegionTest, ALargeFileIs) {
  const TestSupport::TemporaryFolder folder;
  const std::string path = folder.write("large.cfg", makeLargeText());
  Quarry::ParserFile file;
  ASSERT_TRUE(file.read(path));
  EXPECT_REGION(isFreedAtOnce(file.getRoot()));
}

TEST(TreeRegionTest, ACopyOfALargeTextIs) {
  const auto root = readLarge();
  const ParserGroup copy(*root);
  EXPECT_REGION(isFreedAtOnce(copy));
}

TEST(TreeRegionTest, ACopyOfATreeThatWasChangedIs) {
  const auto root = readLarge();
  root->removeItem("a");
  const ParserGroup copy(*root);
  EXPECT_REGION(isFreedAtOnce(copy));
}

TEST(TreeRegionTest, ATextThatIsAddedToOtherItemsIsNot) {
  const auto root = readText("first 1");
  root->setText(makeLargeText(), 1.1);
  EXPECT_FALSE(isFreedAtOnce(root->getItem(1)));
}

TEST(TreeRegionTest, ATextIsNoLongerWhenAnotherIsAdded) {
  const auto root = readLarge();
  root->setText("last 1", 1.1);
  EXPECT_FALSE(isFreedAtOnce(*root));
}

TEST(TreeRegionTest, ATextThatIsReadInPlaceOfAnotherIs) {
  const auto root = readLarge();
  root->clear();
  root->setText(makeLargeText(), 1.1);
  EXPECT_REGION(isFreedAtOnce(*root));
  EXPECT_EQ(root->getItem("a")->getInt(0), 1);
}

TEST(TreeRegionTest, ATextThatIsReadInPlaceOfOneThatWasChangedIs) {
  const auto root = readLarge();
  root->removeItem("a");
  root->clear();
  root->setText(makeLargeText(), 1.1);
  EXPECT_REGION(isFreedAtOnce(*root));
}

TEST(TreeRegionTest, ATextInANestedGroupIs) {
  const auto root = readText("inner { }");
  root->getGroup("inner")->setText(makeLargeText(), 1.1);
  EXPECT_REGION(isFreedAtOnce(*root->getGroup("inner")));
  EXPECT_FALSE(isFreedAtOnce(*root));
}

TEST(TreeRegionTest, ATextInANestedGroupOfALargeTextIsButTheOuterOneIsNoLonger) {
  const auto root = readLarge();
  root->getGroup("e")->setText(makeLargeText(), 1.1);
  EXPECT_REGION(isFreedAtOnce(*root->getGroup("e")));
  EXPECT_FALSE(isFreedAtOnce(*root));
}

// --- What leaves them freed at once --------------------------------------------------------------

class TreeRegionLookTest : public testing::TestWithParam<Operation> {};

TEST_P(TreeRegionLookTest, LeavesTheTreeFreedAtOnceAndLosesNoMemory) {
  expectNothingLost([] {
    const auto root = readLarge();
    GetParam().run(*root);
    EXPECT_REGION(isFreedAtOnce(*root));
  });
}

TEST_P(TreeRegionLookTest, LosesNoMemoryWhenTheTreeIsChangedAfterIt) {
  expectNothingLost([] {
    const auto root = readLarge();
    GetParam().run(*root);
    groupOf(*root).addItem("new", 0, 0);
  });
}

INSTANTIATE_TEST_SUITE_P(
    All, TreeRegionLookTest,
    testing::Values(
        Operation{"Nothing", [](ParserGroup&) {}},
        Operation{"ShortName",
                  [](ParserGroup& root) { EXPECT_EQ(itemOf(root, "b").getName(), "b"); }},
        Operation{"LongName",
                  [](ParserGroup& root) {
                    EXPECT_EQ(itemOf(root, LONG_NAME.c_str()).getName(), LONG_NAME);
                  }},
        Operation{"NameTwice",
                  [](ParserGroup& root) {
                    const std::string& name = itemOf(root, "b").getName();
                    EXPECT_EQ(&itemOf(root, "b").getName(), &name);
                  }},
        Operation{"ShortString",
                  [](ParserGroup& root) { EXPECT_EQ(itemOf(root, "s").getString(0), "short"); }},
        Operation{
            "LongString",
            [](ParserGroup& root) { EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING); }},
        Operation{"StringOfEveryItem",
                  [](ParserGroup& root) {
                    for (ParserItem* item : root.getItems("filler"))
                      EXPECT_EQ(item->getGroup(0)->getItem("z")->getString(0), "text");
                  }},
        Operation{"StringOfANumber",
                  [](ParserGroup& root) {
                    const TestSupport::RecordingConsole console;
                    EXPECT_EQ(itemOf(root, "b").getString(0), "");
                  }},
        Operation{"Numbers",
                  [](ParserGroup& root) { EXPECT_EQ(itemOf(root, "c").getDouble(2), 3.5); }},
        Operation{
            "Block",
            [](ParserGroup& root) { EXPECT_EQ(itemOf(root, "block").getBinaryDataSize(0), 4u); }},
        Operation{"SettingArrayAndTemplate",
                  [](ParserGroup& root) {
                    itemOf(root, "b").setArray(true, 4);
                    itemOf(root, "s").setTemplate(LONG_STRING);
                  }},
        Operation{"Folding", [](ParserGroup& root) { root.getItem("g")->setFolding(true); }},
        Operation{"Keyword",
                  [](ParserGroup& root) {
                    EXPECT_EQ(groupOf(root).getKeyword("#keyword")->getInt(0), 1);
                    EXPECT_EQ(root.getKeyword("#format")->getInt(0), 2);
                  }},
        Operation{"ManyNamesOfTheRoot",
                  [](ParserGroup& root) {
                    for (int i = 0; i < 100; ++i)
                      EXPECT_EQ(root.getItem("missing"), nullptr);
                  }},
        Operation{
            "Patterns",
            [](ParserGroup& root) { EXPECT_EQ(groupOf(root).getItems("^l").getCount(), 1u); }},
        Operation{"Text", [](ParserGroup& root) { EXPECT_GT(writeLines(root).size(), 20000u); }},
        Operation{"Binary",
                  [](ParserGroup& root) { EXPECT_GT(root.getBinary(true).size(), 20000u); }},
        Operation{"Copy",
                  [](ParserGroup& root) {
                    const ParserGroup copy(root);
                    EXPECT_EQ(writeLines(copy), writeLines(root));
                  }},
        Operation{"CopyOfWhatWasLookedAt",
                  [](ParserGroup& root) {
                    EXPECT_EQ(itemOf(root, LONG_NAME.c_str()).getName(), LONG_NAME);
                    EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING);
                    const ParserGroup copy(root);
                    EXPECT_EQ(writeLines(copy), writeLines(root));
                  }},
        Operation{"CopyOfAnArrayAndATemplate",
                  [](ParserGroup& root) {
                    itemOf(root, "b").setArray(true, 4);
                    itemOf(root, "s").setTemplate(LONG_STRING);
                    ParserGroup copy(root);
                    EXPECT_EQ(itemOf(copy, "b").getArrayCount(), 4u);
                    EXPECT_EQ(itemOf(copy, "s").getTemplate(), LONG_STRING);
                  }},
        Operation{"CopyOfAnItem",
                  [](ParserGroup& root) {
                    const ParserItem copy(*root.getItem("g"));
                    EXPECT_EQ(writeLines(*copy.getGroup(0)), writeLines(groupOf(root)));
                  }}),
    nameOf);

/// In a nested group, too, an index of names is made.
TEST(TreeRegionTest, ManyNamesOfANestedGroupLeaveTheTreeFreedAtOnceAndLoseNoMemory) {
  const std::string text = "g { " + makeFiller() + " }";
  expectNothingLost([&text] {
    const auto root = readText(text);
    for (int i = 0; i < 100; ++i)
      EXPECT_EQ(root->getGroup("g")->getItem("missing"), nullptr);
    EXPECT_REGION(isFreedAtOnce(*root));
  });
}

// --- What does not -------------------------------------------------------------------------------

class TreeRegionChangeTest : public testing::TestWithParam<Operation> {};

TEST_P(TreeRegionChangeTest, HasTheTreeFreedPartByPartAndLosesNoMemory) {
  expectNothingLost([] {
    const auto root = readLarge();
    const ParserItem* last = root->getItem(root->getItemCount() - 1);
    GetParam().run(*root);
    EXPECT_FALSE(isFreedAtOnce(last));
  });
}

/// What the tree got before the change is not forgotten.
TEST_P(TreeRegionChangeTest, LosesNoMemoryAfterALook) {
  expectNothingLost([] {
    const auto root = readLarge();
    for (const char* name : {"b", "c", "s", "l"})
      EXPECT_EQ(itemOf(*root, name).getName(), name);
    EXPECT_EQ(itemOf(*root, "s").getString(0), "short");
    EXPECT_EQ(itemOf(*root, "l").getString(0), LONG_STRING);
    GetParam().run(*root);
  });
}

INSTANTIATE_TEST_SUITE_P(
    Groups, TreeRegionChangeTest,
    testing::Values(
        Operation{"AddItem",
                  [](ParserGroup& root) {
                    groupOf(root).addItem(*new ParserItem(LONG_NAME, ParserItem::ITEM_PLAIN, 0, 0));
                  }},
        Operation{"AddItemByName", [](ParserGroup& root) { groupOf(root).addItem("new", 0, 0); }},
        Operation{"AddItemToTheRoot", [](ParserGroup& root) { root.addItem("new", 0, 0); }},
        Operation{"AddGroupByName", [](ParserGroup& root) { groupOf(root).addGroup("new", true); }},
        Operation{"AddGroup",
                  [](ParserGroup& root) { groupOf(root).addGroup(new ParserGroup("new"), false); }},
        Operation{"DetachItem",
                  [](ParserGroup& root) {
                    const std::unique_ptr<ParserItem> item(groupOf(root).getItem(2));
                    groupOf(root).detachItem(2);
                  }},
        Operation{"DetachItemFromTheRoot",
                  [](ParserGroup& root) {
                    const std::unique_ptr<ParserItem> item(root.getItem(1));
                    root.detachItem(1);
                  }},
        Operation{"RemoveItem", [](ParserGroup& root) { groupOf(root).removeItem("l"); }},
        Operation{"RemoveItemFromTheRoot", [](ParserGroup& root) { root.removeItem("g"); }},
        Operation{"Clear", [](ParserGroup& root) { groupOf(root).clear(); }},
        Operation{"SetText", [](ParserGroup& root) { groupOf(root).setText("new \"text\"", 1.1); }},
        Operation{"SetTextOfTheRoot", [](ParserGroup& root) { root.setText("new \"text\"", 1.1); }},
        Operation{"SetBinary",
                  [](ParserGroup& root) {
                    const std::vector<char> bytes = readText(TEXT)->getBinary(false);
                    unsigned long position = 0;
                    EXPECT_TRUE(groupOf(root).setBinary(bytes, position));
                  }}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Items, TreeRegionChangeTest,
    testing::Values(
        Operation{"CopyFrom",
                  [](ParserGroup& root) { itemOf(root, "b").copyFrom(itemOf(root, "h")); }},
        Operation{"CopyFromOverAGroup",
                  [](ParserGroup& root) { itemOf(root, "h").copyFrom(itemOf(root, "l")); }},
        Operation{"Rename", [](ParserGroup& root) { itemOf(root, "b").rename(LONG_NAME); }},
        Operation{"SetBool", [](ParserGroup& root) { itemOf(root, "h").setBool(true, 0); }},
        Operation{"SetInt", [](ParserGroup& root) { itemOf(root, "l").setInt(1, 0); }},
        Operation{"SetDouble", [](ParserGroup& root) { itemOf(root, "s").setDouble(1.5, 0); }},
        Operation{"SetString",
                  [](ParserGroup& root) { itemOf(root, "b").setString(LONG_STRING, 0); }},
        Operation{"SetBinaryData",
                  [](ParserGroup& root) {
                    std::string bytes = LONG_STRING;
                    itemOf(root, "block").setBinaryData(bytes.data(), bytes.size(), 0);
                  }},
        Operation{"AddBool", [](ParserGroup& root) { itemOf(root, "b").addBool(true); }},
        Operation{"AddChar", [](ParserGroup& root) { itemOf(root, "b").addChar('c'); }},
        Operation{"AddInt", [](ParserGroup& root) { itemOf(root, "b").addInt(1); }},
        Operation{"AddDouble", [](ParserGroup& root) { itemOf(root, "b").addDouble(1.5); }},
        Operation{"AddString", [](ParserGroup& root) { itemOf(root, "b").addString(LONG_STRING); }},
        Operation{"AddBinaryData",
                  [](ParserGroup& root) {
                    std::string bytes = LONG_STRING;
                    itemOf(root, "b").addBinaryData(bytes.data(), bytes.size());
                  }},
        Operation{
            "AddNewGroup",
            [](ParserGroup& root) { itemOf(root, "b").addGroup(nullptr)->addItem("new", 0, 0); }},
        Operation{"AddGroup",
                  [](ParserGroup& root) { itemOf(root, "b").addGroup(new ParserGroup("")); }},
        Operation{"AddWord",
                  [](ParserGroup& root) {
                    const std::string text = "\"" + LONG_STRING + "\"";
                    const ParserWord word(text, true, 1.1);
                    itemOf(root, "b").addWord(word, Quarry::ParserValue::TYPE_STRING);
                  }},
        Operation{"RemoveValue", [](ParserGroup& root) { itemOf(root, "h").removeValue(0); }},
        Operation{"Reset", [](ParserGroup& root) { itemOf(root, "h").reset(); }},
        Operation{"SetBinary",
                  [](ParserGroup& root) {
                    const std::vector<char> bytes = itemOf(root, "l").getBinary();
                    unsigned long position = sizeof("l");
                    EXPECT_TRUE(itemOf(root, "b").setBinary(bytes, position));
                  }},
        Operation{
            "GroupOfAnEmptyItem",
            [](ParserGroup& root) { EXPECT_NE(itemOf(root, "empty").getGroup(0), nullptr); }}),
    nameOf);

TEST(TreeRegionTest, ADetachedItemOutlivesItsTree) {
  auto root = readLarge();
  const std::unique_ptr<ParserItem> item(root->getItem(1));
  const std::string text = describe(*item->getGroup(0));
  root->detachItem(1);
  root.reset();
  const auto other = readLarge();
  EXPECT_EQ(describe(*item->getGroup(0)), text);
}

TEST(TreeRegionTest, ADetachedItemMayBeFreedByAnotherThreadWhileTheTreeIs) {
  auto root = readLarge();
  std::unique_ptr<ParserItem> item(root->getItem(1));
  root->detachItem(1);
  std::thread thread([&item] { item.reset(); });
  root.reset();
  thread.join();
  EXPECT_EQ(readLarge()->getItem("a")->getInt(0), 1);
}

TEST(TreeRegionTest, ATreeMayBeFreedByAnotherThreadThanTheOneThatReadIt) {
  std::unique_ptr<ParserGroup> root;
  std::thread([&root] { root = readLarge(); }).join();
  EXPECT_REGION(isFreedAtOnce(*root));
  const std::string text = writeLines(*root);
  std::thread([&root] { root.reset(); }).join();
  EXPECT_EQ(writeLines(*readLarge()), text);
}

namespace {

/// Has a group adopt one that was read, and looked at.
ParserGroup& adoptLarge(ParserGroup& outer) {
  auto* inner = new ParserGroup("inner");
  inner->setText(makeLargeText(), 1.1);
  EXPECT_EQ(itemOf(*inner, "l").getString(0), LONG_STRING);
  return *outer.addGroup(inner, false);
}

}  // namespace

TEST(TreeRegionTest, AGroupThatIsFreedAtOnceIsFreedWithTheTreeThatAdoptedIt) {
  expectNothingLost([] {
    ParserGroup outer("outer");
    EXPECT_REGION(isFreedAtOnce(adoptLarge(outer)));
  });
}

TEST(TreeRegionTest, AGroupThatWasToBeFreedAtOnceIsFreedWithTheTreeThatAdoptedIt) {
  expectNothingLost([] {
    ParserGroup outer("outer");
    itemOf(adoptLarge(outer), "b").addString(LONG_STRING);
  });
}

// --- While they are read -------------------------------------------------------------------------

namespace {

/// Has something done at each message while it lives.
class BusyConsole {
 public:
  explicit BusyConsole(const std::function<void()>& done)
      : previous(Plinth::console.setHandler(
            [done](Plinth::Console::Level, const std::string&, const std::string&) { done(); })) {}
  BusyConsole(const BusyConsole&) = delete;
  BusyConsole& operator=(const BusyConsole&) = delete;
  ~BusyConsole() { Plinth::console.setHandler(previous); }

 private:
  Plinth::Console::Handler previous;
};

/// A text that is warned of once, when much of it is read.
std::string makeFaultyText() { return makeLargeText() + " , " + makeFiller(); }

/// A document that is warned of: the last item of a nested group has no name.
std::vector<char> makeFaultyBytes() {
  std::vector<char> bytes = readText(makeLargeText() + " last { m 1 n 2 }")->getBinary(false);
  const std::string name = {'\1', 'n', '\0'};  // the end of the item before, and the name
  const auto at = std::find_end(bytes.begin(), bytes.end(), name.begin() + 1, name.end());
  EXPECT_NE(at, bytes.end());
  *at = '\0';
  return bytes;
}

}  // namespace

TEST(TreeRegionTest, ATreeThatIsMadeWhenAMessageIsToldOutlivesTheOneThatIsRead) {
  std::unique_ptr<ParserGroup> other;
  std::unique_ptr<ParserItem> item;
  ParserGroup root("root");
  {
    const BusyConsole console([&other, &item] {
      other = readText(TEXT);
      item = std::make_unique<ParserItem>(LONG_NAME, ParserItem::ITEM_PLAIN, 0, 0);
      item->addString(LONG_STRING);
    });
    root.setText(makeFaultyText(), 1.1);
  }
  ASSERT_NE(other, nullptr);
  EXPECT_REGION(isFreedAtOnce(root));
  EXPECT_FALSE(isFreedAtOnce(*other));
  root.clear();
  const auto next = readLarge();
  EXPECT_EQ(describe(*other), describe(*readText(TEXT)));
  EXPECT_EQ(item->getName(), LONG_NAME);
  EXPECT_EQ(item->getString(0), LONG_STRING);
}

TEST(TreeRegionTest, ATreeThatIsMadeWhenBinaryDataIsWarnedOfOutlivesTheOneThatIsRead) {
  const std::vector<char> bytes = makeFaultyBytes();
  std::unique_ptr<ParserGroup> other;
  ParserGroup root("root");
  {
    const BusyConsole console([&other] { other = readText(TEXT); });
    unsigned long position = 0;
    root.setBinary(bytes, position);
  }
  ASSERT_NE(other, nullptr);
  EXPECT_FALSE(isFreedAtOnce(*other));
  root.clear();
  const auto next = readLarge();
  EXPECT_EQ(describe(*other), describe(*readText(TEXT)));
}

TEST(TreeRegionTest, ALargeTreeThatIsMadeWhenAMessageIsToldIsFreedAtOnceToo) {
  std::unique_ptr<ParserGroup> other;
  ParserGroup root("root");
  {
    const BusyConsole console([&other] { other = readLarge(); });
    root.setText(makeFaultyText(), 1.1);
  }
  EXPECT_REGION(isFreedAtOnce(root));
  EXPECT_REGION(isFreedAtOnce(*other));
  root.clear();
  EXPECT_EQ(describe(*other), describe(*readLarge()));
}

TEST(TreeRegionTest, ALookAtTheTreeWhenAMessageIsToldLosesNoMemory) {
  expectNothingLost([] {
    ParserGroup root("root");
    const BusyConsole console([&root] {
      EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING);
      EXPECT_EQ(itemOf(root, LONG_NAME.c_str()).getName(), LONG_NAME);
    });
    root.setText(makeFaultyText(), 1.1);
    EXPECT_REGION(isFreedAtOnce(root));
  });
}

TEST(TreeRegionTest, AChangeOfTheTreeWhenAMessageIsToldLosesNothing) {
  expectNothingLost([] {
    auto root = std::make_unique<ParserGroup>("root");
    std::unique_ptr<ParserItem> item;
    {
      const BusyConsole console([&root, &item] {
        item.reset(groupOf(*root).getItem(2));
        groupOf(*root).detachItem(2);
        itemOf(*root, "b").addString(LONG_STRING);
      });
      root->setText(makeFaultyText(), 1.1);
    }
    EXPECT_FALSE(isFreedAtOnce(*root));
    EXPECT_EQ(root->getItem(root->getItemCount() - 1)->getGroup(0)->getItem("x")->getInt(0), 1);
    root.reset();
    EXPECT_EQ(item->getString(0), "short");
  });
}

TEST(TreeRegionTest, ATreeThatIsEmptiedWhenAMessageIsToldBeforeItsFirstItemLosesNothing) {
  expectNothingLost([] {
    ParserGroup root("root");
    const BusyConsole console([&root] { root.clear(); });
    root.setText(", " + makeLargeText(), 1.1);
    EXPECT_EQ(root.getItem(0)->getInt(0), 1);
    EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING);
  });
}

TEST(TreeRegionTest, ATextThatIsAddedWhenAMessageIsToldBeforeTheFirstItemLosesNothing) {
  expectNothingLost([] {
    ParserGroup root("root");
    const BusyConsole console([&root] { root.setText("first 0 " + makeLargeText(), 1.1); });
    root.setText(", last 2 " + makeLargeText(), 1.1);
    EXPECT_EQ(root.getItem(0)->getName(), "first");
    EXPECT_EQ(root.getItem("last")->getInt(0), 2);
    EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING);
    EXPECT_FALSE(isFreedAtOnce(root.getItem("last")));
  });
}

TEST(TreeRegionTest, AnExceptionThatAMessageEndsInLosesNothing) {
  expectNothingLost([] {
    ParserGroup root("root");
    const BusyConsole console([] { throw std::runtime_error("told"); });
    EXPECT_THROW(root.setText(makeFaultyText(), 1.1), std::runtime_error);
    EXPECT_EQ(itemOf(root, "l").getString(0), LONG_STRING);
    EXPECT_FALSE(isFreedAtOnce(root));
  });
}

TEST(TreeRegionTest, AnItemThatIsBrokenInBinaryDataLosesNoMemory) {
  std::vector<char> bytes =
      readText(makeLargeText() + " last 0x0102030400000000 1")->getBinary(false);
  bytes.resize(bytes.size() - 1);  // the number is cut short, the item is dropped
  const BusyConsole console([] {});
  expectNothingLost([&bytes] {
    ParserGroup root("root");
    unsigned long position = 0;
    EXPECT_FALSE(root.setBinary(bytes, position));
  });
}
