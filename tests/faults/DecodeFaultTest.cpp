// Memory that runs out while trees are read from bytes.

#include <Quarry/ParserFile.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Consistency.h"
#include "Faults.h"
#include "VariedText.h"
#include "support/Bytes.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::Attempt;
using TestSupport::Bytes;
using TestSupport::expectConsistent;
using TestSupport::forEveryFault;
using TestSupport::operator+;
using TestSupport::LONG_STRING;
using TestSupport::makeVariedText;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeLines;

namespace {

const std::string TEXT = makeVariedText(8);

/// Bytes of every kind of damage that the reader goes on behind, or gives up at.
Bytes makeDamagedBytes() {
  const Bytes good = TestSupport::makeItem("good", {ParserValue::TYPE_INT, 1, 0, 0, 0});
  const Bytes brokenGroup = {ParserValue::TYPE_GROUP, 127, 0, 0, 0, 0, 0, 0, 127};
  const Bytes unknown = {77};
  const Bytes items = good + TestSupport::makeItem("broken_group", brokenGroup) + good +
                      TestSupport::makeItem("a_broken_item_with_a_long_name", unknown);
  return TestSupport::makeText("QDBF") + TestSupport::makeGroup(items);
}

}  // namespace

TEST(DecodeFaultTest, ADocument) {
  ParserFile source;
  source.getRoot().setText(TEXT, 1.1);
  const Bytes bytes = source.getBinary();
  ParserFile decoded;
  ASSERT_TRUE(decoded.setBinary(bytes));
  const std::string expected = writeLines(decoded.getRoot());
  forEveryFault([&](Attempt& attempt) {
    ParserFile file;
    bool result = false;
    const bool isComplete = attempt.run([&] { result = file.setBinary(bytes); });
    EXPECT_EQ(result, isComplete);
    expectConsistent(file.getRoot());
    file.clear();
    EXPECT_TRUE(file.setBinary(bytes));
    EXPECT_EQ(writeLines(file.getRoot()), expected);
  });
}

TEST(DecodeFaultTest, ADeepGroup) {
  const Bytes bytes = readText(TestSupport::makeDeepText(TestSupport::DEEP))->getBinary(false);
  forEveryFault([&](Attempt& attempt) {
    ParserGroup root("root");
    unsigned long position = 0;
    attempt.run([&] { root.setBinary(bytes, position); });
    EXPECT_LE(position, bytes.size());
    expectConsistent(root);
  });
}

TEST(DecodeFaultTest, ManyItems) {
  std::string text;
  for (int i = 0; i < TestSupport::MANY; ++i)
    text += "item 1 2 3 4 \"" + LONG_STRING + "\"\n";
  const Bytes bytes = readText(text)->getBinary(false);
  forEveryFault([&](Attempt& attempt) {
    ParserGroup root("root");
    unsigned long position = 0;
    attempt.run([&] { root.setBinary(bytes, position); });
    expectConsistent(root);
  });
}

TEST(DecodeFaultTest, DamagedBytesAreWarnedOfOrMemoryRunsOut) {
  const Bytes bytes = makeDamagedBytes();
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    bool result = false;
    attempt.run([&] { result = file.setBinary(bytes); });
    EXPECT_FALSE(result);
    expectConsistent(file.getRoot());
  });
}

TEST(DecodeFaultTest, RefusedBytes) {
  forEveryFault([](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    const Bytes bytes = TestSupport::makeText("no document");
    bool result = false;
    const bool isComplete = attempt.run([&] { result = file.setBinary(bytes); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(!isComplete || console.getMessages().size() == 2);
  });
}

TEST(DecodeFaultTest, AnItemAndValuesByThemselves) {
  const std::unique_ptr<ParserGroup> root = readText(TEXT);
  const Bytes item = root->getItem(0UL)->getBinary();
  const unsigned long begin = root->getItem(0UL)->getName().size() + 1;
  Bytes value;
  ParserValue::groupToBin(value, *root);
  value.insert(value.begin(), ParserValue::TYPE_GROUP);
  forEveryFault([&](Attempt& attempt) {
    ParserItem target("a", ParserItem::ITEM_PLAIN, 0, 0);
    bool result = false;
    const bool isComplete = attempt.run([&] {
      unsigned long position = begin;
      result = target.setBinary(item, position);
      position = 0;
      delete ParserValue::binTovalue(value, position);
    });
    EXPECT_TRUE(!isComplete || result);
    std::string text;
    target.getText(text, true, 1);
    EXPECT_EQ(text.front(), 'a');
  });
}

TEST(DecodeFaultTest, StringsAndBlocksByThemselves) {
  Bytes bytes;
  ParserValue::stringToBin(bytes, LONG_STRING);
  std::string block(100, 'b');
  ParserValue::binaryDataToBin(bytes, block.data(), block.size());
  forEveryFault([&](Attempt& attempt) {
    std::string string;
    unsigned long size = 0;
    const bool isComplete = attempt.run([&] {
      unsigned long position = 0;
      string = ParserValue::binToString(bytes, position);
      delete[] static_cast<char*>(ParserValue::binToBinaryData(bytes, position, size));
    });
    EXPECT_TRUE(!isComplete || (string == LONG_STRING && size == 100)) << string << size;
  });
}
