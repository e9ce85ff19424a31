/// Checks that whatever was read is a whole tree.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/internal/TreeWalker.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/CountingConsole.h"
#include "support/Documents.h"

namespace TreeConsistency {

/// Looks for values whose text the format does not read back: a string that ends in a backslash
/// swallows what follows on its line, and so does a number with a quote in it.
class UnreadableValues {
 public:
  using GroupMark = bool;
  using ItemMark = bool;

  static bool areIn(const Quarry::ParserGroup& root) {
    UnreadableValues visitor;
    Quarry::TreeWalker<UnreadableValues>(visitor).walkGroup(root, true);
    return visitor.found;
  }

  ItemMark beginItem(const Quarry::ParserItem&, GroupMark) { return true; }
  void value(const Quarry::ParserItem& item, unsigned long index, const Quarry::ParserValue&) {
    const std::string text = item.getWord(index);
    const bool isString = item.isValueString(index);
    found |= isString ? !text.empty() && text.back() == '\\' : text.find('"') != std::string::npos;
  }
  GroupMark beginGroup(const Quarry::ParserItem&, unsigned long, const Quarry::ParserGroup&,
                       GroupMark) {
    return true;
  }
  void endGroup(GroupMark) {}
  void endItem(const Quarry::ParserItem&, ItemMark) {}

 private:
  bool found = false;
};

/// Expects that the tree is copied as it is, and decoded as a whole where it is encoded. A string
/// with a zero byte ends there in the binary form.
inline void checkCopies(const Quarry::ParserGroup& root) {
  const std::string lines = TestSupport::writeLines(root);
  ASSERT_EQ(TestSupport::writeLines(Quarry::ParserGroup(root)), lines);
  const std::vector<char> bytes = root.getBinary(false);
  Quarry::ParserGroup decoded("decoded");
  unsigned long pos = 0;
  const bool isDecoded = decoded.setBinary(bytes, pos);
  if (lines.find('\0') != std::string::npos) return;
  ASSERT_TRUE(isDecoded) << lines;
  ASSERT_EQ(pos, bytes.size());
  ASSERT_EQ(decoded.getBinary(false), bytes);
}

/// Expects that what is written reads back as what is written the same. The only warning that there
/// may be is the one of a call that ends in a group: the group completes the item already.
inline void checkReadsBack(const Quarry::ParserGroup& root) {
  const std::string lines = TestSupport::writeLines(root);
  const std::string line = TestSupport::writeOneLine(root);
  const TestSupport::CountingConsole console;
  ASSERT_EQ(TestSupport::writeLines(*TestSupport::readText(lines)), lines);
  ASSERT_EQ(TestSupport::writeLines(*TestSupport::readText(line)), lines);
  if (console.getCount() == 0) return;
  ASSERT_NE(lines.find("})"), std::string::npos) << lines << console.getLast();
  ASSERT_NE(console.getLast().find("Closing an argument list without item"), std::string::npos);
}

/// Expects that the tree of a text, whatever its warnings, is a whole one.
/// @return whether its values can be read back, and have been
inline bool checkTextIsRead(const std::string& text) {
  const TestSupport::CountingConsole console;
  const auto root = TestSupport::readText(text);
  checkCopies(*root);
  if (UnreadableValues::areIn(*root)) return false;
  checkReadsBack(*root);
  return true;
}

}  // namespace TreeConsistency
