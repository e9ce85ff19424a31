/// What a group has to answer, kept as simply as can be.
#pragma once

#include <Quarry/ParserGroup.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// Lists the items of a group and answers every look-up by a walk over that list. Each item has a
/// number as its first value by which it is known, also in copies.
class GroupModel {
 public:
  enum class Lookup { NONE, AS_PLAIN, AS_KEYWORD };

  struct Entry {
    int number;
    std::string name;
    Quarry::ParserItem::Type type;
    Lookup lookup;
    bool isDetached = false;
  };

  std::vector<Entry> entries;

  // --- Change ------------------------------------------------------------------------------------

  void add(int number, const std::string& name, Quarry::ParserItem::Type type, Lookup lookup) {
    entries.push_back({number, name, type, lookup});
  }

  void detach(unsigned long index) { getPlain()[index]->isDetached = true; }

  void remove(const std::string& name) {
    std::vector<Entry> kept;
    for (const Entry& entry : entries)
      if (!entry.isDetached && entry.name != name) kept.push_back(entry);
    entries = kept;
    lookUpByType();
  }

  void copy() {
    std::vector<Entry> kept;
    for (const Entry& entry : entries)
      if (!entry.isDetached) kept.push_back(entry);
    entries = kept;
    lookUpByType();
  }

  // --- Look --------------------------------------------------------------------------------------

  /// The plain items in order, detached ones among them.
  std::vector<Entry*> getPlain() {
    std::vector<Entry*> plain;
    for (Entry& entry : entries)
      if (entry.lookup == Lookup::AS_PLAIN) plain.push_back(&entry);
    return plain;
  }

  /// The number of the first item called `name`, or NONE.
  int find(const std::string& name, Lookup lookup) const {
    for (const Entry& entry : entries)
      if (isCalled(entry, name, lookup)) return entry.number;
    return NONE;
  }

  std::vector<int> findAll(const std::string& name) const {
    std::vector<int> numbers;
    for (const Entry& entry : entries)
      if (isCalled(entry, name, Lookup::AS_PLAIN)) numbers.push_back(entry.number);
    return numbers;
  }

  /// The items that getItems("") shows.
  std::vector<int> getShown() const {
    std::vector<int> numbers;
    for (const Entry& entry : entries)
      if (!entry.isDetached && entry.type != Quarry::ParserItem::ITEM_KEYWORD)
        numbers.push_back(entry.number);
    return numbers;
  }

  // --- Compare -----------------------------------------------------------------------------------

  static constexpr int NONE = -1;

  static int numberOf(const Quarry::ParserItem* item) {
    return item != nullptr ? item->getInt(0) : NONE;
  }

  template <class Items>
  static std::vector<int> numbersOf(const Items& items) {
    std::vector<int> numbers;
    for (const Quarry::ParserItem* item : items)
      numbers.push_back(numberOf(item));
    return numbers;
  }

  /// Expects that the group answers every look-up by position as the model does.
  void checkPositions(const Quarry::ParserGroup& group) {
    const std::vector<Entry*> plain = getPlain();
    ASSERT_EQ(group.getItemCount(), plain.size());
    for (unsigned long i = 0; i < plain.size(); ++i)
      EXPECT_EQ(numberOf(group.getItem(i)), plain[i]->isDetached ? NONE : plain[i]->number);
    EXPECT_EQ(numbersOf(group.getItems("")), getShown());
  }

  /// Expects that it answers every look-up of this name as the model does.
  void checkName(const Quarry::ParserGroup& group, const std::string& name) const {
    EXPECT_EQ(numberOf(group.getItem(name)), find(name, Lookup::AS_PLAIN)) << name;
    EXPECT_EQ(numberOf(group.getKeyword(name)), find(name, Lookup::AS_KEYWORD)) << name;
    EXPECT_EQ(numbersOf(group.getEntries(name)), findAll(name)) << name;
  }

 private:
  static bool isCalled(const Entry& entry, const std::string& name, Lookup lookup) {
    return entry.lookup == lookup && !entry.isDetached && entry.name == name;
  }

  void lookUpByType() {
    for (Entry& entry : entries)
      entry.lookup =
          entry.type == Quarry::ParserItem::ITEM_PLAIN ? Lookup::AS_PLAIN : Lookup::AS_KEYWORD;
  }
};
