// Items of every kind in every order: what a group finds of them, and where.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "GroupModel.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

enum Kind { PLAIN, KEYWORD, CALL, ADOPTED_CALL, DECODED, KINDS };

using Kinds = std::vector<Kind>;

const std::vector<std::string> NAMES = {"x", "y", "#x", "#y", "absent"};

void decode(ParserGroup& group, const std::string& name, int number) {
  ParserGroup encoded("encoded");
  encoded.addItem(name, 0, 0)->addInt(number);
  unsigned long pos = 0;
  group.setBinary(encoded.getBinary(false), pos);
}

void adoptCall(ParserGroup& group, const std::string& name, int number) {
  auto* item = new ParserItem(name, ParserItem::ITEM_CALL, 0, 0);
  item->addInt(number);
  group.addItem(*item);
}

/// A group and what it should answer.
struct Pair {
  std::unique_ptr<ParserGroup> group = std::make_unique<ParserGroup>("root");
  GroupModel model;

  void check() {
    model.checkPositions(*group);
    for (const std::string& name : NAMES)
      model.checkName(*group, name);
  }

  void add(Kind kind, const std::string& name, int number) {
    using Lookup = GroupModel::Lookup;
    switch (kind) {
      case PLAIN:
        group->addItem(name, 0, 0)->addInt(number);
        return model.add(number, name, ParserItem::ITEM_PLAIN, Lookup::AS_PLAIN);
      case KEYWORD:
        group->addItem("#" + name, 0, 0)->addInt(number);
        return model.add(number, "#" + name, ParserItem::ITEM_KEYWORD, Lookup::AS_KEYWORD);
      case CALL:
        group->setText(name + "(" + std::to_string(number) + ")", 1.1);
        return model.add(number, name, ParserItem::ITEM_CALL, Lookup::AS_PLAIN);
      case ADOPTED_CALL:
        adoptCall(*group, name, number);
        return model.add(number, name, ParserItem::ITEM_CALL, Lookup::AS_KEYWORD);
      default:
        decode(*group, name, number);
        return model.add(number, name, ParserItem::ITEM_PLAIN, Lookup::NONE);
    }
  }
};

/// Makes a group of items of these kinds, called x and y in turn and numbered from 0.
Pair make(const Kinds& kinds) {
  Pair pair;
  for (int i = 0; i < static_cast<int>(kinds.size()); ++i)
    pair.add(kinds[static_cast<unsigned long>(i)], i % 2 == 0 ? "x" : "y", i);
  return pair;
}

std::string describe(const Kinds& kinds) {
  std::string text;
  for (const Kind kind : kinds)
    text += "PKCAD"[kind];
  return text;
}

/// Calls `check` with every order of up to `most` kinds.
template <class Check>
void forEveryOrder(unsigned long most, Check check, Kinds kinds = {}) {
  SCOPED_TRACE(describe(kinds));
  check(kinds);
  if (kinds.size() == most || testing::Test::HasFailure()) return;
  for (int kind = PLAIN; kind < KINDS; ++kind) {
    kinds.push_back(static_cast<Kind>(kind));
    forEveryOrder(most, check, kinds);
    kinds.pop_back();
  }
}

}  // namespace

TEST(ParserGroupPositionsTest, ItemsOfEveryKindInEveryOrderAreFoundAsTheirKindIs) {
  forEveryOrder(5, [](const Kinds& kinds) { make(kinds).check(); });
}

TEST(ParserGroupPositionsTest, AfterRemoveItemTheRestIsFoundByItsType) {
  forEveryOrder(4, [](const Kinds& kinds) {
    for (const std::string& name : NAMES) {
      Pair pair = make(kinds);
      pair.group->removeItem(name);
      pair.model.remove(name);
      pair.check();
    }
  });
}

TEST(ParserGroupPositionsTest, AfterRemoveItemFurtherItemsAreFound) {
  forEveryOrder(3, [](const Kinds& kinds) {
    for (int added = PLAIN; added < KINDS; ++added) {
      Pair pair = make(kinds);
      pair.group->removeItem("x");
      pair.model.remove("x");
      pair.add(static_cast<Kind>(added), "x", 10);
      pair.add(PLAIN, "y", 11);
      pair.check();
    }
  });
}

TEST(ParserGroupPositionsTest, AfterDetachItemOnlyThatItemIsMissing) {
  forEveryOrder(4, [](const Kinds& kinds) {
    for (unsigned long i = 0; i < make(kinds).group->getItemCount(); ++i) {
      Pair pair = make(kinds);
      const std::unique_ptr<ParserItem> detached(pair.group->getItem(i));
      pair.group->detachItem(i);
      pair.model.detach(i);
      pair.add(PLAIN, "x", 10);
      pair.check();
    }
  });
}

TEST(ParserGroupPositionsTest, AfterDetachItemRemoveItemClosesTheGap) {
  forEveryOrder(4, [](const Kinds& kinds) {
    for (unsigned long i = 0; i < make(kinds).group->getItemCount(); ++i) {
      Pair pair = make(kinds);
      const std::unique_ptr<ParserItem> detached(pair.group->getItem(i));
      pair.group->detachItem(i);
      pair.model.detach(i);
      pair.group->removeItem("y");
      pair.model.remove("y");
      pair.check();
    }
  });
}

TEST(ParserGroupPositionsTest, InACopyEveryItemIsFoundByItsType) {
  forEveryOrder(4, [](const Kinds& kinds) {
    Pair pair = make(kinds);
    pair.group = std::make_unique<ParserGroup>(*pair.group);
    pair.model.copy();
    pair.check();
    pair.add(PLAIN, "x", 10);
    pair.check();
  });
}

TEST(ParserGroupPositionsTest, ACopyHasNoGapsWhereItemsWereDetached) {
  forEveryOrder(3, [](const Kinds& kinds) {
    for (unsigned long i = 0; i < make(kinds).group->getItemCount(); ++i) {
      Pair pair = make(kinds);
      const std::unique_ptr<ParserItem> detached(pair.group->getItem(i));
      pair.group->detachItem(i);
      pair.model.detach(i);
      pair.group = std::make_unique<ParserGroup>(*pair.group);
      pair.model.copy();
      pair.check();
    }
  });
}

TEST(ParserGroupPositionsTest, AClearedGroupFindsNothingAndIsFilledAnew) {
  forEveryOrder(4, [](const Kinds& kinds) {
    Pair pair = make(kinds);
    pair.group->clear();
    pair.model.entries.clear();
    pair.check();
    pair.add(PLAIN, "x", 10);
    pair.add(KEYWORD, "x", 11);
    pair.add(PLAIN, "y", 12);
    pair.check();
  });
}

TEST(ParserGroupPositionsTest, ItemsOfEveryKindAreWrittenInTheOrderOfAddition) {
  forEveryOrder(4, [](const Kinds& kinds) {
    std::string expected;
    for (unsigned long i = 0; i < kinds.size(); ++i) {
      const std::string name = i % 2 == 0 ? "x" : "y";
      const std::string number = std::to_string(i);
      const bool isCall = kinds[i] == CALL || kinds[i] == ADOPTED_CALL;
      if (isCall) expected += " " + name + "(" + number + ")";
      if (kinds[i] == KEYWORD) expected += " #" + name + " " + number;
      // a decoded number has no text: it is written as one raw byte
      if (kinds[i] == DECODED) expected += " " + name + " " + static_cast<char>(i);
      if (kinds[i] == PLAIN) expected += " " + name + " " + number;
    }
    std::string text;
    make(kinds).group->getText(text, false, false, 1);
    EXPECT_EQ(text, expected);
  });
}
