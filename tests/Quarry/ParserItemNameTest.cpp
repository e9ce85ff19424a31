// The name of an item: short and long ones, the string that is made of it, and look-ups.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

constexpr unsigned long LONGEST = 70;

std::string makeName(unsigned long length) {
  std::string name;
  while (name.size() < length)
    name += static_cast<char>('a' + name.size() % 26);
  return name;
}

ParserItem makeItem(const std::string& name) { return {name, ParserItem::ITEM_PLAIN, 0, 0}; }

std::string writtenOf(const ParserItem& item) {
  std::string text;
  item.getText(text, true, 1);
  return text;
}

}  // namespace

TEST(ParserItemNameTest, NamesOfEveryLengthAreKept) {
  for (unsigned long length = 0; length < LONGEST; ++length) {
    EXPECT_EQ(makeItem(makeName(length)).getName(), makeName(length));
  }
}

TEST(ParserItemNameTest, NamesOfEveryLengthAreWrittenBeforeAndAfterTheyAreAskedFor) {
  for (unsigned long length = 1; length < LONGEST; ++length) {
    const ParserItem item = makeItem(makeName(length));
    const std::string written = writtenOf(item);
    EXPECT_EQ(written.substr(0, length), makeName(length));
    EXPECT_EQ(item.getName().size(), length);
    EXPECT_EQ(writtenOf(item), written);
  }
}

TEST(ParserItemNameTest, NamesOfEveryLengthAreCopiedBeforeAndAfterTheyAreAskedFor) {
  for (unsigned long length = 0; length < LONGEST; ++length) {
    const ParserItem item = makeItem(makeName(length));
    EXPECT_EQ(ParserItem(item).getName(), makeName(length));
    EXPECT_EQ(item.getName().size(), length);
    EXPECT_EQ(ParserItem(item).getName(), makeName(length));
  }
}

TEST(ParserItemNameTest, ZeroBytesBelongToANameThatCodeGives) {
  const std::string name("a\0b", 3);
  EXPECT_EQ(makeItem(name).getName(), name);
}

TEST(ParserItemNameTest, TheStringIsAlwaysTheSameObject) {
  const ParserItem item = makeItem("a");
  EXPECT_EQ(&item.getName(), &item.getName());
}

TEST(ParserItemNameTest, AStringThatWasAskedForFollowsTheName) {
  for (unsigned long length = 0; length < LONGEST; ++length) {
    ParserItem item = makeItem("before");
    const std::string& name = item.getName();
    item.rename(makeName(length));
    EXPECT_EQ(name, makeName(length));
    EXPECT_EQ(&item.getName(), &name);
    item.copyFrom(makeItem("a_name_of_more_than_sixteen_bytes"));
    EXPECT_EQ(name, "a_name_of_more_than_sixteen_bytes");
    EXPECT_EQ(&item.getName(), &name);
  }
}

TEST(ParserItemNameTest, AnItemIsRenamedFromAndToEveryLength) {
  for (const unsigned long before : {0UL, 1UL, 15UL, 16UL, 40UL}) {
    for (unsigned long length = 0; length < LONGEST; ++length) {
      ParserItem item = makeItem(makeName(before));
      item.rename(makeName(length));
      EXPECT_EQ(item.getName(), makeName(length));
    }
  }
}

TEST(ParserItemNameTest, AnItemIsRenamedByItsOwnName) {
  for (const unsigned long length : {1UL, 15UL, 16UL, 40UL}) {
    ParserItem item = makeItem(makeName(length));
    item.rename(item.getName());
    EXPECT_EQ(item.getName(), makeName(length));
  }
}

// --- Look-ups ------------------------------------------------------------------------------------

TEST(ParserItemNameTest, NamesThatDifferInOneByteAreToldApart) {
  for (unsigned long length = 1; length < LONGEST; ++length) {
    for (unsigned long place = 0; place < length; ++place) {
      std::string other = makeName(length);
      other[place] = 'Z';
      ParserGroup group("");
      group.addItem(other, 0, 0);
      const ParserItem* item = group.addItem(makeName(length), 0, 0);
      EXPECT_EQ(group.getItem(makeName(length)), item) << length << " " << place;
    }
  }
}

TEST(ParserItemNameTest, NamesThatDifferInTheirLengthAreToldApart) {
  ParserGroup group("");
  for (unsigned long length = LONGEST; length > 0; --length)
    group.addItem(makeName(length), 0, 0);
  for (unsigned long length = 1; length <= LONGEST; ++length) {
    EXPECT_EQ(group.getItem(makeName(length))->getName(), makeName(length));
  }
}

TEST(ParserItemNameTest, NamesThatWereAskedForAreFoundAmongOthers) {
  ParserGroup group("");
  std::vector<ParserItem*> items;
  for (unsigned long length = 1; length < LONGEST; ++length) {
    items.push_back(group.addItem(makeName(length), 0, 0));
    const bool isAskedFor = length % 2 == 0;
    EXPECT_EQ(isAskedFor ? items.back()->getName().size() : length, length);
  }
  for (unsigned long length = 1; length < LONGEST; ++length) {
    EXPECT_EQ(group.getItem(makeName(length)), items[length - 1]);
  }
}

TEST(ParserItemNameTest, ANameThatReplacedOneThatWasAskedForIsFoundAndTheOtherIsNot) {
  for (const unsigned long before : {1UL, 15UL, 16UL, 40UL}) {
    for (unsigned long length = 1; length < LONGEST; ++length) {
      if (length == before) continue;
      ParserGroup group("");
      ParserItem* renamed = group.addItem(makeName(before), 0, 0);
      EXPECT_EQ(renamed->getName().size(), before);
      renamed->rename(makeName(length));
      EXPECT_EQ(group.getItem(makeName(length)), renamed) << before << " " << length;
      EXPECT_EQ(group.getItem(makeName(before)), nullptr) << before << " " << length;
    }
  }
}

TEST(ParserItemNameTest, TheNameOfACopiedItemIsFoundWhereAnotherWasAskedFor) {
  for (const unsigned long before : {1UL, 15UL, 16UL, 40UL}) {
    for (unsigned long length = 1; length < LONGEST; ++length) {
      ParserGroup group("");
      ParserItem* item = group.addItem(makeName(before), 0, 0);
      EXPECT_EQ(item->getName().size(), before);
      item->copyFrom(makeItem(makeName(length)));
      EXPECT_EQ(group.getItem(makeName(length)), item) << before << " " << length;
    }
  }
}

TEST(ParserItemNameTest, NamesThatWereReadAreFound) {
  std::string text;
  for (unsigned long length = 1; length < LONGEST; ++length)
    text += makeName(length) + " " + std::to_string(length) + "\n";
  ParserGroup group("");
  group.setText(text, 1.1);
  for (unsigned long length = 1; length < LONGEST; ++length) {
    EXPECT_EQ(group.getItem(makeName(length))->getInt(0), static_cast<int>(length));
  }
}

TEST(ParserItemNameTest, PatternsAreMatchedBeforeAndAfterTheNameIsAskedFor) {
  ParserGroup group("");
  ParserItem* item = group.addItem("a_name_of_more_than_sixteen_bytes", 0, 0);
  EXPECT_EQ(group.getItems("^a_name.*bytes$").getCount(), 1UL);
  EXPECT_EQ(item->getName().size(), 33UL);
  EXPECT_EQ(group.getItems("^a_name.*bytes$").getCount(), 1UL);
}
