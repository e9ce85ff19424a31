// Finding items of large groups by name: the answer is always that of a walk over the items.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/NameIndex.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "GroupModel.h"

using Quarry::NameIndex;
using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

/// Items with these names; an empty name stands for a place without an item.
class ItemList {
 public:
  explicit ItemList(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      owned.push_back(name.empty()
                          ? nullptr
                          : std::make_unique<ParserItem>(name, ParserItem::ITEM_PLAIN, 0UL, 0UL));
      items.push_back(owned.back().get());
    }
  }

  ParserItem* operator[](unsigned long index) const { return items[index]; }
  NameIndex makeIndex() const { return NameIndex(items); }

 private:
  std::vector<std::unique_ptr<ParserItem>> owned;
  std::vector<ParserItem*> items;
};

std::vector<std::string> makeNames(const std::string& prefix, int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i)
    names.push_back(prefix + std::to_string(i));
  return names;
}

/// Returns two names whose hashes agree in the 32 bits that an index keeps.
std::pair<std::string, std::string> findNamesOfOneHash() {
  std::unordered_map<std::uint32_t, std::string> names;
  for (unsigned long i = 0;; ++i) {
    const std::string name = "item" + std::to_string(i);
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    const auto [known, isNew] = names.emplace(hash, name);
    if (!isNew) return {known->second, name};
  }
}

/// Fills a group with items of these names and looks for an absent one until an index is made.
std::unique_ptr<ParserGroup> makeIndexedGroup(const std::vector<std::string>& names) {
  auto group = std::make_unique<ParserGroup>("root");
  for (const std::string& name : names)
    group->addItem(name, 0, 0);
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(group->getItem("absent"), nullptr);
  return group;
}

}  // namespace

// --- The index -----------------------------------------------------------------------------------

TEST(NameIndexTest, EveryItemIsFoundUnderItsName) {
  const std::vector<std::string> names = makeNames("item", 2000);
  const ItemList items(names);
  const NameIndex index = items.makeIndex();
  for (unsigned long i = 0; i < names.size(); ++i)
    EXPECT_EQ(index.find(names[i]), items[i]);
}

TEST(NameIndexTest, NamesThatNoItemHasAreNotFound) {
  const NameIndex index = ItemList(makeNames("item", 2000)).makeIndex();
  for (const std::string& name : makeNames("other", 2000))
    EXPECT_EQ(index.find(name), nullptr);
}

TEST(NameIndexTest, BeginningsOfNamesAreNotFound) {
  const ItemList items({"camera", "camera.lens"});
  const NameIndex index = items.makeIndex();
  EXPECT_EQ(index.find("camera.len"), nullptr);
  EXPECT_EQ(index.find("cam"), nullptr);
  EXPECT_EQ(index.find(""), nullptr);
}

TEST(NameIndexTest, NamesOfOneHashAreToldApart) {
  const auto [name, other] = findNamesOfOneHash();
  const ItemList items({name, other});
  const NameIndex index = items.makeIndex();
  EXPECT_EQ(index.find(name), items[0]);
  EXPECT_EQ(index.find(other), items[1]);
}

TEST(NameIndexTest, ANameThatOnlySharesItsHashIsNotFound) {
  const auto [name, other] = findNamesOfOneHash();
  const ItemList items({name});
  const NameIndex index = items.makeIndex();
  EXPECT_EQ(index.find(other), nullptr);
}

TEST(NameIndexTest, OfItemsWithOneNameTheFirstIsFound) {
  const ItemList items({"a", "b", "a", "b", "a"});
  const NameIndex index = items.makeIndex();
  EXPECT_EQ(index.find("a"), items[0]);
  EXPECT_EQ(index.find("b"), items[1]);
}

TEST(NameIndexTest, PlacesWithoutItemsArePassedOverAndCounted) {
  const ItemList items({"", "a", "", "b", ""});
  const NameIndex index = items.makeIndex();
  EXPECT_EQ(index.find("a"), items[1]);
  EXPECT_EQ(index.find("b"), items[3]);
  EXPECT_EQ(index.getCount(), 5U);
}

TEST(NameIndexTest, AnEmptyListHasNoNames) {
  const NameIndex index = ItemList({}).makeIndex();
  EXPECT_EQ(index.find("a"), nullptr);
  EXPECT_EQ(index.getCount(), 0U);
}

TEST(NameIndexTest, ANewIndexIsNotStale) { EXPECT_FALSE(ItemList({"a"}).makeIndex().isStale()); }

TEST(NameIndexTest, RenamingAnItemThatItKnowsMakesAnIndexStale) {
  const ItemList items({"a", "b"});
  const NameIndex index = items.makeIndex();
  items[1]->rename("c");
  EXPECT_TRUE(index.isStale());
}

TEST(NameIndexTest, CopyingIntoAnItemThatItKnowsMakesAnIndexStale) {
  const ItemList items({"a", "b"});
  const NameIndex index = items.makeIndex();
  items[1]->copyFrom(ParserItem("c", ParserItem::ITEM_PLAIN, 0, 0));
  EXPECT_TRUE(index.isStale());
}

TEST(NameIndexTest, RenamingAnItemThatNoIndexKnowsMakesNoIndexStale) {
  const NameIndex index = ItemList({"a"}).makeIndex();
  ParserItem item("b", ParserItem::ITEM_PLAIN, 0, 0);
  item.rename("c");
  EXPECT_FALSE(index.isStale());
}

TEST(NameIndexTest, RenamingTheCopyOfAnItemMakesNoIndexStale) {
  const ItemList items({"a"});
  const NameIndex index = items.makeIndex();
  ParserItem copy(*items[0]);
  copy.rename("c");
  EXPECT_FALSE(index.isStale());
}

TEST(NameIndexTest, AnIndexMadeAfterARenameIsNotStaleAndFindsTheNewName) {
  const ItemList items({"a", "b"});
  items.makeIndex();
  items[0]->rename("c");
  const NameIndex index = items.makeIndex();
  EXPECT_FALSE(index.isStale());
  EXPECT_EQ(index.find("c"), items[0]);
  EXPECT_EQ(index.find("a"), nullptr);
}

// --- Groups with an index ------------------------------------------------------------------------

TEST(NameIndexTest, AGroupFindsAnItemUnderItsNewNameOnly) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* renamed = group->getItem("item50");
  renamed->rename("fresh");
  EXPECT_EQ(group->getItem("item50"), nullptr);
  EXPECT_EQ(group->getItem("fresh"), renamed);
}

TEST(NameIndexTest, AGroupFindsTheEarlierItemThatTookAnotherOnesName) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* renamed = group->getItem("item10");
  renamed->rename("item50");
  EXPECT_EQ(group->getItem("item50"), renamed);
}

TEST(NameIndexTest, AGroupFindsAnItemUnderTheNameThatCopyFromGaveIt) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* changed = group->getItem("item10");
  changed->copyFrom(*group->getItem("item50"));
  EXPECT_EQ(group->getItem("item10"), nullptr);
  EXPECT_EQ(group->getItem("item50"), changed);
}

TEST(NameIndexTest, AGroupFindsWhatWasAddedBehindTheIndex) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* added = group->addItem("added", 0, 0);
  EXPECT_EQ(group->getItem("added"), added);
  EXPECT_EQ(group->getItem("item99"), group->getItem(99UL));
}

TEST(NameIndexTest, AGroupFindsAnItemThatIsRenamedBehindTheIndex) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* added = group->addItem("added", 0, 0);
  EXPECT_EQ(group->getItem("added"), added);
  added->rename("item100");
  EXPECT_EQ(group->getItem("added"), nullptr);
  EXPECT_EQ(group->getItem("item100"), added);
}

TEST(NameIndexTest, AGroupDoesNotFindAnItemThatWasDetached) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  const std::unique_ptr<ParserItem> detached(group->getItem("item50"));
  group->detachItem(50);
  EXPECT_EQ(group->getItem("item50"), nullptr);
}

TEST(NameIndexTest, AGroupFindsTheNextItemOfTheNameWhenTheFirstIsDetached) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  ParserItem* second = group->addItem("item50", 0, 0);
  const std::unique_ptr<ParserItem> detached(group->getItem("item50"));
  group->detachItem(50);
  EXPECT_EQ(group->getItem("item50"), second);
}

TEST(NameIndexTest, AGroupDoesNotFindAnItemThatWasRemoved) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  group->removeItem("item50");
  EXPECT_EQ(group->getItem("item50"), nullptr);
  EXPECT_EQ(group->getItem("item51"), group->getItem(50UL));
}

TEST(NameIndexTest, AGroupThatWasClearedFindsNothing) {
  const auto group = makeIndexedGroup(makeNames("item", 100));
  group->clear();
  EXPECT_EQ(group->getItem("item50"), nullptr);
}

TEST(NameIndexTest, RenamingInOneGroupKeepsOtherGroupsRight) {
  const auto first = makeIndexedGroup(makeNames("item", 100));
  const auto second = makeIndexedGroup(makeNames("item", 100));
  first->getItem("item50")->rename("fresh");
  EXPECT_EQ(second->getItem("item50"), second->getItem(50UL));
  EXPECT_EQ(second->getItem("fresh"), nullptr);
}

TEST(NameIndexTest, AnItemThatMovedToAnotherGroupIsFoundThereUnderItsNewName) {
  const auto first = makeIndexedGroup(makeNames("item", 100));
  ParserItem* moved = first->getItem("item50");
  first->detachItem(50);
  const auto second = makeIndexedGroup(makeNames("other", 100));
  second->addItem(*moved);
  moved->rename("fresh");
  EXPECT_EQ(second->getItem("fresh"), moved);
  EXPECT_EQ(first->getItem("fresh"), nullptr);
}

// --- Random changes ------------------------------------------------------------------------------

namespace {

/// Changes a group and its model in the same way, at random, and compares what they find.
class RandomGroup {
 public:
  RandomGroup(unsigned seed, int size) : random(seed), most(size) {
    for (int i = 0; i < size; ++i)
      addPlain();
  }

  void run(int steps) {
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
      change();
      for (int i = 0; i < 20; ++i)
        checkFind(chooseName());
      model.checkName(*group, chooseName());
    }
    checkAll();
  }

 private:
  using Lookup = GroupModel::Lookup;

  int choose(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
  std::string chooseName() { return "n" + std::to_string(choose(most)); }

  void change() {
    switch (choose(24)) {
      case 0: return removeName();
      case 1: return detach();
      case 2: return choose(20) == 0 ? copyGroup() : addPlain();
      case 3: return choose(60) == 0 ? clear() : addPlain();
      case 4: return addKeyword();
      case 5: return readBinary();
      case 6:
      case 7:
      case 8: return readText();
      case 9:
      case 10: return rename();
      case 11: return copyItem();
      case 12:
      case 13:
      case 14: return addPlain();
      default: return;  // look-ups only
    }
  }

  void addPlain() {
    const std::string name = chooseName();
    group->addItem(name, 0, 0)->addInt(next);
    model.add(next++, name, ParserItem::ITEM_PLAIN, Lookup::AS_PLAIN);
  }

  void addKeyword() {
    const std::string name = "#" + chooseName();
    group->addItem(name, 0, 0)->addInt(next);
    model.add(next++, name, ParserItem::ITEM_KEYWORD, Lookup::AS_KEYWORD);
  }

  void readText() {
    const std::string plain = chooseName();
    const std::string call = chooseName();
    group->setText(
        plain + " " + std::to_string(next) + " " + call + "(" + std::to_string(next + 1) + ")",
        1.1);
    model.add(next++, plain, ParserItem::ITEM_PLAIN, Lookup::AS_PLAIN);
    model.add(next++, call, ParserItem::ITEM_CALL, Lookup::AS_PLAIN);
  }

  void readBinary() {
    const std::string name = chooseName();
    ParserGroup encoded("encoded");
    encoded.addItem(name, 0, 0)->addInt(next);
    unsigned long pos = 0;
    group->setBinary(encoded.getBinary(false), pos);
    model.add(next++, name, ParserItem::ITEM_PLAIN, Lookup::NONE);
  }

  /// Chooses a plain item that is there; null when there is none at the chosen place.
  ParserItem* chooseItem(unsigned long& index, GroupModel::Entry*& entry) {
    const std::vector<GroupModel::Entry*> plain = model.getPlain();
    if (plain.empty()) return nullptr;
    index = random() % plain.size();
    entry = plain[index];
    return group->getItem(index);
  }

  void rename() {
    unsigned long index = 0;
    GroupModel::Entry* entry = nullptr;
    ParserItem* item = chooseItem(index, entry);
    if (item == nullptr) return;
    entry->name = chooseName();
    item->rename(entry->name);
  }

  /// The item keeps its number.
  void copyItem() {
    unsigned long index = 0;
    GroupModel::Entry* from = nullptr;
    const ParserItem* source = chooseItem(index, from);
    GroupModel::Entry* to = nullptr;
    ParserItem* target = chooseItem(index, to);
    if (source == nullptr || target == nullptr) return;
    target->copyFrom(*source);
    target->reset();
    target->addInt(to->number);
    to->name = from->name;
    to->type = from->type;
  }

  void detach() {
    unsigned long index = 0;
    GroupModel::Entry* entry = nullptr;
    const std::unique_ptr<ParserItem> detached(chooseItem(index, entry));
    if (detached == nullptr) return;
    group->detachItem(index);
    entry->isDetached = true;
  }

  void removeName() {
    const std::string name = chooseName();
    group->removeItem(name);
    model.remove(name);
  }

  void copyGroup() {
    group = std::make_unique<ParserGroup>(*group);
    model.copy();
  }

  void clear() {
    group->clear();
    model.entries.clear();
    for (int i = 0; i < most; ++i)
      addPlain();
  }

  void checkFind(const std::string& name) {
    EXPECT_EQ(GroupModel::numberOf(group->getItem(name)), model.find(name, Lookup::AS_PLAIN));
  }

  void checkAll() {
    model.checkPositions(*group);
    for (int i = 0; i < most; ++i)
      model.checkName(*group, "n" + std::to_string(i));
  }

  std::mt19937 random;
  int most;  ///< names that items may have, and items to begin with
  int next = 0;
  std::unique_ptr<ParserGroup> group = std::make_unique<ParserGroup>("root");
  GroupModel model;
};

}  // namespace

TEST(NameIndexTest, ASmallGroupFindsWhatAWalkFindsWhateverHappensToIt) {
  for (unsigned seed = 0; seed < 20; ++seed)
    RandomGroup(seed, 10).run(200);
}

TEST(NameIndexTest, AGroupAboutTheSizeOfTheFirstIndexFindsWhatAWalkFinds) {
  for (unsigned seed = 100; seed < 120; ++seed)
    RandomGroup(seed, 32).run(200);
}

TEST(NameIndexTest, AGroupOfSomeHundredItemsFindsWhatAWalkFinds) {
  for (unsigned seed = 200; seed < 205; ++seed)
    RandomGroup(seed, 300).run(300);
}

TEST(NameIndexTest, AGroupOfTwoThousandItemsFindsWhatAWalkFinds) {
  RandomGroup(300, 2000).run(400);
}
