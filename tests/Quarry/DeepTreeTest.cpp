// Trees of a million levels and groups of a million items. Depth takes memory and not stack: every
// test on deep trees runs in a thread whose stack would not hold a call for each level. Nothing is
// quadratic either: if it were, these tests would not end in time.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Bytes.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/Sanitized.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::readText;
using TestSupport::writeOneLine;

namespace {

/// The sanitizers take much longer; their stack is no larger.
#ifdef QUARRY_TEST_SANITIZED
constexpr unsigned long MANY = 100000;
#else
constexpr unsigned long MANY = 1000000;
#endif

/// Less than three bytes a level, and no call takes as little.
constexpr size_t SMALL_STACK = 256 * 1024;

void* runTask(void* task) {
  (*static_cast<const std::function<void()>*>(task))();
  return nullptr;
}

/// Runs `task` to its end in a thread with a small stack.
void runOnSmallStack(const std::function<void()>& task) {
  pthread_attr_t attributes;
  pthread_t thread;
  pthread_attr_init(&attributes);
  const bool small = pthread_attr_setstacksize(&attributes, SMALL_STACK) == 0;
  void* argument = const_cast<std::function<void()>*>(&task);
  const bool started = small && pthread_create(&thread, &attributes, runTask, argument) == 0;
  pthread_attr_destroy(&attributes);
  if (!started) throw std::runtime_error("no thread with a small stack");
  pthread_join(thread, nullptr);
}

/// Adds `depth` groups called "g" to a root, each in the other, and returns the innermost.
ParserGroup* addLevels(ParserGroup& root, unsigned long depth) {
  ParserGroup* innermost = &root;
  for (unsigned long i = 0; i < depth; ++i)
    innermost = innermost->addGroup("g", false);
  return innermost;
}

std::unique_ptr<ParserGroup> makeDeepTree() {
  auto root = std::make_unique<ParserGroup>("root");
  addLevels(*root, MANY);
  return root;
}

/// Makes an item that holds a deep tree.
std::unique_ptr<ParserItem> makeDeepItem() {
  auto item = std::make_unique<ParserItem>("g", ParserItem::ITEM_PLAIN, 0, 0);
  addLevels(*item->addGroup(nullptr), MANY - 1);
  return item;
}

unsigned long depthOf(const ParserGroup& root) {
  unsigned long depth = 0;
  for (const ParserGroup* group = root.getGroup("g"); group != nullptr; ++depth) {
    group = group->getGroup("g");
  }
  return depth;
}

/// Returns the text of a deep tree on one line.
std::string deepText() {
  std::string text;
  for (unsigned long i = 0; i < MANY; ++i)
    text += " g {";
  for (unsigned long i = 0; i < MANY; ++i)
    text += " }";
  return text;
}

std::string textOf(const ParserItem& item) {
  std::string text;
  item.getText(text, false, 1);
  return text;
}

std::string nameOf(unsigned long number) { return "item" + std::to_string(number); }

/// Makes a group of items with names of their own and their numbers as values.
std::unique_ptr<ParserGroup> makeWideTree() {
  auto root = std::make_unique<ParserGroup>("root");
  for (unsigned long i = 0; i < MANY; ++i) {
    root->addItem(nameOf(i), 0, 0)->addInt(static_cast<int>(i));
  }
  return root;
}

/// Makes a group in which every second item is called "odd".
std::unique_ptr<ParserGroup> makeAlternatingTree() {
  auto root = std::make_unique<ParserGroup>("root");
  for (unsigned long i = 0; i < MANY; ++i)
    root->addItem(i % 2 == 0 ? "even" : "odd", 0, 0);
  return root;
}

std::string wideText() {
  std::string text;
  for (unsigned long i = 0; i < MANY; ++i)
    text += " " + nameOf(i) + " " + std::to_string(i);
  return text;
}

ParserItem makeManyValues() {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  for (unsigned long i = 0; i < MANY; ++i)
    item.addInt(static_cast<int>(i));
  return item;
}

}  // namespace

// --- Deep: built and destroyed -------------------------------------------------------------------

TEST(DeepTreeTest, IsBuiltByCodeAndDestroyed) {
  runOnSmallStack([] { EXPECT_EQ(depthOf(*makeDeepTree()), MANY); });
}

TEST(DeepTreeTest, IsBuiltByReadingAndDestroyed) {
  runOnSmallStack([] { EXPECT_EQ(depthOf(*readText(TestSupport::makeDeepText(MANY))), MANY); });
}

TEST(DeepTreeTest, IsReadThoughItsBracesAreNotClosed) {
  runOnSmallStack([] {
    const std::string text = TestSupport::makeDeepText(MANY);
    EXPECT_EQ(depthOf(*readText(text.substr(0, text.find('}')))), MANY);
  });
}

TEST(DeepTreeTest, IsBuiltFromTheInnermostGroupOutwards) {
  runOnSmallStack([] {
    auto* group = new ParserGroup("g");
    for (unsigned long i = 0; i < MANY; ++i) {
      auto* outer = new ParserGroup("g");
      outer->addGroup(group, false);
      group = outer;
    }
    EXPECT_EQ(depthOf(*std::unique_ptr<ParserGroup>(group)), MANY);
  });
}

TEST(DeepTreeTest, IsClearedByItsRoot) {
  runOnSmallStack([] {
    const auto root = makeDeepTree();
    root->clear();
    EXPECT_EQ(root->getItemCount(), 0u);
  });
}

TEST(DeepTreeTest, IsRemovedByItsName) {
  runOnSmallStack([] {
    const auto root = makeDeepTree();
    root->removeItem("g");
    EXPECT_EQ(root->getItemCount(), 0u);
  });
}

TEST(DeepTreeTest, IsDestroyedWithADetachedItem) {
  runOnSmallStack([] {
    auto root = makeDeepTree();
    const std::unique_ptr<ParserItem> item(root->getItem(0UL));
    root->detachItem(0);
    root.reset();
    EXPECT_EQ(depthOf(*item->getGroup(0)), MANY - 1);
  });
}

TEST(DeepTreeTest, IsDestroyedWithOneOfSeveralGroupsOnEachLevel) {
  runOnSmallStack([] {
    ParserGroup root("root");
    ParserGroup* group = &root;
    for (unsigned long i = 0; i < MANY / 4; ++i) {
      group->addGroup("before", false)->addItem("leaf", 0, 0);
      ParserGroup* next = group->addGroup("g", false);
      group->getItem("g")->addGroup(nullptr)->addItem("leaf", 0, 0);
      group = next;
    }
    EXPECT_EQ(depthOf(root), MANY / 4);
  });
}

// --- Deep: copied --------------------------------------------------------------------------------

TEST(DeepTreeTest, IsCopied) {
  runOnSmallStack([] {
    auto root = makeDeepTree();
    const ParserGroup copy(*root);
    root.reset();
    EXPECT_EQ(depthOf(copy), MANY);
  });
}

TEST(DeepTreeTest, IsCopiedWithItsItem) {
  runOnSmallStack([] {
    auto item = makeDeepItem();
    const ParserItem copy(*item);
    item.reset();
    EXPECT_EQ(depthOf(*copy.getGroup(0)), MANY - 1);
  });
}

TEST(DeepTreeTest, IsCopiedIntoAnItemThatHeldAnother) {
  runOnSmallStack([] {
    const auto source = makeDeepItem();
    const auto target = makeDeepItem();
    target->copyFrom(*source);
    EXPECT_EQ(depthOf(*target->getGroup(0)), MANY - 1);
  });
}

TEST(DeepTreeTest, GivesWayToItsInnermostItem) {
  runOnSmallStack([] {
    const auto item = makeDeepItem();
    ParserGroup* innermost = item->getGroup(0);
    while (ParserGroup* next = innermost->getGroup("g"))
      innermost = next;
    item->copyFrom(*innermost->addItem("inner", 0, 0));
    EXPECT_EQ(textOf(*item), "inner <empty>");
  });
}

TEST(DeepTreeTest, IsCopiedWithSeveralGroupsOnEachLevelInOrder) {
  runOnSmallStack([] {
    std::string text;
    for (unsigned long i = 0; i < MANY / 10; ++i)
      text += " a { x 1 } b {";
    for (unsigned long i = 0; i < MANY / 10; ++i)
      text += " } c 2";
    EXPECT_EQ(writeOneLine(ParserGroup(*readText(text))), text);
  });
}

// --- Deep: written -------------------------------------------------------------------------------

TEST(DeepTreeTest, IsWrittenOnOneLine) {
  runOnSmallStack([] { EXPECT_TRUE(writeOneLine(*makeDeepTree()) == deepText()); });
}

TEST(DeepTreeTest, IsWrittenByItsItem) {
  runOnSmallStack([] { EXPECT_TRUE(textOf(*makeDeepItem()) == deepText().substr(1)); });
}

TEST(DeepTreeTest, IsWrittenAsTheValueOfItsItem) {
  runOnSmallStack([] {
    std::string text;
    makeDeepItem()->getValueText(text, false, 1);
    EXPECT_TRUE(text == deepText().substr(2));
  });
}

TEST(DeepTreeTest, ReadsBackWhatWasWritten) {
  runOnSmallStack([] { EXPECT_EQ(depthOf(*readText(writeOneLine(*makeDeepTree()))), MANY); });
}

TEST(DeepTreeTest, IsWrittenOnManyLinesWithTheBlanksOfEachLevel) {
  constexpr unsigned long DEPTH = 2000;
  ParserGroup root("root");
  addLevels(root, DEPTH);
  std::string expected;
  for (unsigned long i = 0; i < DEPTH; ++i)
    expected += "\n" + std::string(4 * i, ' ') + "g {";
  for (unsigned long i = DEPTH; i > 0; --i)
    expected += "\n" + std::string(4 * (i - 1), ' ') + "}";
  runOnSmallStack([&] { EXPECT_TRUE(TestSupport::writeLines(root) == expected); });
}

// --- Deep: values that hold one ------------------------------------------------------------------

TEST(DeepTreeTest, IsEncodedAndDecoded) {
  runOnSmallStack([] {
    const std::vector<char> data = makeDeepTree()->getBinary(false);
    ParserGroup decoded("root");
    unsigned long position = 0;
    EXPECT_TRUE(decoded.setBinary(data, position));
    EXPECT_TRUE(writeOneLine(decoded) == deepText());
    EXPECT_TRUE(decoded.getBinary(false) == data);
  });
}

TEST(DeepTreeTest, IsDecodedAsTheValueOfItsItem) {
  runOnSmallStack([] {
    const std::vector<char> data = makeDeepItem()->getBinary();
    ParserItem decoded("g", ParserItem::ITEM_PLAIN, 0, 0);
    unsigned long position = std::string("g").size() + 1;
    EXPECT_TRUE(decoded.setBinary(data, position));
    EXPECT_TRUE(decoded.getBinary() == data);
  });
}

TEST(DeepTreeTest, IsRefusedAtItsFirstItemWhenItIsCutShort) {
  runOnSmallStack([] {
    std::vector<char> data = makeDeepTree()->getBinary(false);
    data.resize(data.size() / 2);
    const std::vector<char> size = TestSupport::makeSize(data.size() - 8);
    std::copy(size.begin(), size.end(), data.begin());  // only the size of the root is made to fit
    const TestSupport::RecordingConsole console;
    ParserGroup decoded("root");
    unsigned long position = 0;
    EXPECT_FALSE(decoded.setBinary(data, position));
    EXPECT_EQ(position, 8UL + 2 + 8);
  });
}

TEST(DeepTreeTest, IsFreedByResettingItsItem) {
  runOnSmallStack([] {
    const auto item = makeDeepItem();
    item->reset();
    EXPECT_EQ(item->getValueCount(), 0u);
  });
}

TEST(DeepTreeTest, IsFreedByRemovingItsValue) {
  runOnSmallStack([] {
    const auto item = makeDeepItem();
    item->removeValue(0UL);
    EXPECT_EQ(item->getValueCount(), 0u);
  });
}

TEST(DeepTreeTest, IsFreedBySettingAnIntInItsPlace) {
  runOnSmallStack([] {
    const auto item = makeDeepItem();
    item->setInt(7, 0);
    EXPECT_EQ(item->getInt(0), 7);
  });
}

// --- Wide ----------------------------------------------------------------------------------------

TEST(WideTreeTest, IsBuiltAndDestroyed) { EXPECT_EQ(makeWideTree()->getItemCount(), MANY); }

TEST(WideTreeTest, IsCleared) {
  const auto root = makeWideTree();
  root->clear();
  EXPECT_EQ(root->getItemCount(), 0u);
}

TEST(WideTreeTest, IsCopied) {
  auto root = makeWideTree();
  const ParserGroup copy(*root);
  root.reset();
  EXPECT_EQ(copy.getItemCount(), MANY);
  EXPECT_EQ(copy.getItem(MANY - 1)->getInt(0), static_cast<int>(MANY - 1));
}

TEST(WideTreeTest, IsWritten) { EXPECT_TRUE(writeOneLine(*makeWideTree()) == wideText()); }

TEST(WideTreeTest, IsRead) {
  const auto root = readText(wideText());
  EXPECT_EQ(root->getItemCount(), MANY);
  EXPECT_EQ(root->getItem(MANY / 2)->getInt(0), static_cast<int>(MANY / 2));
}

TEST(WideTreeTest, IsEncodedAndDecoded) {
  const std::vector<char> data = makeWideTree()->getBinary(false);
  ParserGroup decoded("root");
  unsigned long position = 0;
  EXPECT_TRUE(decoded.setBinary(data, position));
  EXPECT_TRUE(decoded.getBinary(false) == data);
}

TEST(WideTreeTest, SelectsItemsByTheirNames) {
  EXPECT_EQ(makeAlternatingTree()->getItems("^odd$").getCount(), MANY / 2);
}

TEST(WideTreeTest, FindsEveryItemByItsIndex) {
  const auto root = makeWideTree();
  unsigned long found = 0;
  for (unsigned long i = 0; i < MANY; ++i) {
    if (root->getItem(i)->getInt(0) == static_cast<int>(i)) ++found;
  }
  EXPECT_EQ(found, MANY);
}

TEST(WideTreeTest, FindsTheLastItemByItsName) {
  const auto root = makeWideTree();
  EXPECT_EQ(root->getItem(nameOf(MANY - 1)), root->getItem(MANY - 1));
}

TEST(WideTreeTest, DoesNotFindAnUnknownName) {
  EXPECT_EQ(makeWideTree()->getItem(nameOf(MANY)), nullptr);
}

TEST(WideTreeTest, FindsAKeywordBehindAllItems) {
  const auto root = makeWideTree();
  ParserItem* keyword = root->addItem("#k", 0, 0);
  EXPECT_EQ(root->getKeyword("#k"), keyword);
}

TEST(WideTreeTest, FindsAllItemsOfOneName) {
  EXPECT_EQ(makeAlternatingTree()->getEntries("odd").size(), MANY / 2);
}

TEST(WideTreeTest, LosesOneItemByItsName) {
  const auto root = makeWideTree();
  root->removeItem(nameOf(0));
  EXPECT_EQ(root->getItemCount(), MANY - 1);
  EXPECT_EQ(root->getItem(0UL)->getName(), nameOf(1));
}

TEST(WideTreeTest, LosesHalfOfItsItemsByTheirName) {
  const auto root = makeAlternatingTree();
  root->removeItem("odd");
  EXPECT_EQ(root->getItemCount(), MANY / 2);
  EXPECT_EQ(root->getEntries("even").size(), MANY / 2);
}

TEST(WideTreeTest, LosesAllItemsByDetaching) {
  const auto root = makeWideTree();
  for (unsigned long i = 0; i < MANY; ++i) {
    const std::unique_ptr<ParserItem> item(root->getItem(i));
    root->detachItem(i);
  }
  EXPECT_EQ(writeOneLine(*root), "");
}

// --- Many values ---------------------------------------------------------------------------------

TEST(ManyValuesTest, LoseThoseOfManyIndices) {
  ParserItem item = makeManyValues();
  std::vector<unsigned long> indices;
  for (unsigned long i = MANY; i > 0; i -= 2)
    indices.push_back(i - 1);
  item.removeValue(indices);
  ASSERT_EQ(item.getValueCount(), MANY / 2);
  EXPECT_EQ(item.getInt(0), 0);
  EXPECT_EQ(item.getInt(MANY / 2 - 1), static_cast<int>(MANY - 2));
}

TEST(ManyValuesTest, LoseOneOfManyRepeatedIndices) {
  ParserItem item = makeManyValues();
  item.removeValue(std::vector<unsigned long>(MANY, MANY - 1));
  EXPECT_EQ(item.getValueCount(), MANY - 1);
}

TEST(ManyValuesTest, AreCopied) {
  const ParserItem item = makeManyValues();
  const ParserItem copy(item);
  EXPECT_EQ(copy.getValueCount(), MANY);
  EXPECT_EQ(copy.getInt(MANY - 1), static_cast<int>(MANY - 1));
}

TEST(ManyValuesTest, AreWritten) {
  std::string expected = "item";
  for (unsigned long i = 0; i < MANY; ++i)
    expected += " " + std::to_string(i);
  EXPECT_TRUE(textOf(makeManyValues()) == expected);
}

TEST(ManyValuesTest, MayAllBeGroups) {
  ParserItem item("item", ParserItem::ITEM_PLAIN, 0, 0);
  for (unsigned long i = 0; i < MANY; ++i)
    item.addGroup(nullptr)->addItem("leaf", 0, 0);
  const ParserItem copy(item);
  item.reset();
  EXPECT_EQ(copy.getGroup(MANY - 1)->getItem(0UL)->getName(), "leaf");
}
