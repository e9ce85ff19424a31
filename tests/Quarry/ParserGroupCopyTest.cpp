// Copies of groups.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::describe;
using TestSupport::readText;
using TestSupport::writeOneLine;

TEST(ParserGroupCopyTest, ACopyHasTheNameAndEqualItems) {
  ParserGroup group("name");
  group.setText("#k 1 a 2 sub { b \"x\" { c <empty> } }", 1.1);
  const ParserGroup copy(group);
  EXPECT_EQ(copy.getName(), "name");
  EXPECT_EQ(writeOneLine(copy), writeOneLine(group));
}

TEST(ParserGroupCopyTest, ACopyHasItsOwnItems) {
  const auto root = readText("a 1 #k 2 sub { b 3 }");
  const ParserGroup copy(*root);
  EXPECT_NE(copy.getItem("a"), root->getItem("a"));
  EXPECT_NE(copy.getKeyword("#k"), root->getKeyword("#k"));
  EXPECT_NE(copy.getGroup("sub"), root->getGroup("sub"));
}

TEST(ParserGroupCopyTest, ChangingACopyLeavesTheOriginalAlone) {
  const auto root = readText("a 1 sub { b 2 }");
  ParserGroup copy(*root);
  copy.getGroup("sub")->clear();
  copy.removeItem("a");
  EXPECT_EQ(describe(*root), "a int:1; sub {b int:2}");
}

TEST(ParserGroupCopyTest, ACopySurvivesTheOriginal) {
  auto root = readText("a \"a text of more than fifteen bytes\"");
  const ParserGroup copy(*root);
  root.reset();
  EXPECT_EQ(describe(copy), "a string:\"a text of more than fifteen bytes\"");
}

TEST(ParserGroupCopyTest, ValuesBehindAGroupAreCopiedToTheSameItem) {
  const auto root = readText("a 1 b 2 c 3");
  ParserItem* item = root->getItem("b");
  item->addGroup(nullptr)->setText("d 4 e { f 5 } g 6", 1.1);
  item->addInt(7);
  item->addGroup(nullptr);
  item->addInt(8);
  const ParserGroup copy(*root);
  EXPECT_EQ(copy.getItem("b")->getValueCount(), 5u);
  EXPECT_EQ(copy.getItem("b")->getInt(2), 7);
  EXPECT_EQ(copy.getItem("b")->getInt(4), 8);
  EXPECT_EQ(describe(copy), describe(*root));
}

TEST(ParserGroupCopyTest, NumbersThatWereAskedForAreCopiedWithTheirSpelling) {
  const auto root = readText("a 1.50 007 3.14159265358979323846");
  const ParserItem& item = *root->getItem("a");
  for (unsigned long i = 0; i < item.getValueCount(); ++i)
    EXPECT_GT(item.getDouble(i), 1.0);
  const ParserGroup copy(*root);
  EXPECT_EQ(writeOneLine(copy), writeOneLine(*root));
  EXPECT_EQ(copy.getItem("a")->getDouble(0), 1.5);
  EXPECT_EQ(copy.getItem("a")->getInt(1), 7);
}

TEST(ParserGroupCopyTest, ACopyFindsKeywordsAndPlainItemsApart) {
  const auto root = readText("#k 1 a 2");
  const ParserGroup copy(*root);
  EXPECT_EQ(copy.getItemCount(), 1u);
  EXPECT_EQ(copy.getItem(0UL)->getName(), "a");
  EXPECT_EQ(copy.getKeyword("#k")->getInt(0), 1);
}

TEST(ParserGroupCopyTest, ACopyFindsACallThatWasReadAmongTheKeywords) {
  const auto root = readText("f(1)");
  const ParserGroup copy(*root);
  EXPECT_EQ(copy.getItem("f"), nullptr);
  EXPECT_NE(copy.getKeyword("f"), nullptr);
  EXPECT_EQ(writeOneLine(copy), " f(1)");
}

TEST(ParserGroupCopyTest, ACopyKeepsNamesOfNestedGroupsArraysAndTemplates) {
  ParserGroup group("root");
  group.addGroup(new ParserGroup("inner"), false)->addItem("a", 0, 0)->setArray(true, 65);
  group.getItem("inner")->setTemplate("t");
  EXPECT_EQ(writeOneLine(ParserGroup(group)), " inner<t> inner { a[A] <empty> }");
}

TEST(ParserGroupCopyTest, ACopyHasNoFoldedItemsAtAnyDepth) {
  ParserGroup group("root");
  group.addGroup("outer", true)->addGroup("inner", true);
  EXPECT_EQ(writeOneLine(ParserGroup(group)), " outer { inner { } }");
}
