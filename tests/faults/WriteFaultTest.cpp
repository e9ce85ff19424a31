// Memory that runs out while trees are written as text or bytes.

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

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::Attempt;
using TestSupport::Bytes;
using TestSupport::forEveryFault;
using TestSupport::LONG_STRING;
using TestSupport::makeVariedText;
using TestSupport::readText;
using TestSupport::writeLines;

namespace {

const std::string TEXT = makeVariedText(8);

}  // namespace

// --- Text ----------------------------------------------------------------------------------------

TEST(WriteFaultTest, TheTextOfADocument) {
  ParserFile file;
  file.getRoot().setText(TEXT, 1.1);
  const std::string expected = writeLines(file.getRoot());
  forEveryFault([&](Attempt& attempt) {
    std::string text;
    const bool isComplete = attempt.run([&] { file.getText(text); });
    EXPECT_EQ(text, isComplete ? expected : expected.substr(0, text.size()));
    EXPECT_EQ(writeLines(file.getRoot()), expected);
  });
}

TEST(WriteFaultTest, TheTextOfADeepGroup) {
  const std::unique_ptr<ParserGroup> root = readText(TestSupport::makeDeepText(TestSupport::DEEP));
  const std::string expected = TestSupport::writeOneLine(*root);
  forEveryFault([&](Attempt& attempt) {
    std::string text;
    attempt.run([&] { root->getText(text, false, false, 1); });
    EXPECT_EQ(text, expected.substr(0, text.size()));
    EXPECT_EQ(TestSupport::writeOneLine(*root), expected);
  });
}

TEST(WriteFaultTest, TheTextOfABlockIsMadeWhenItIsWritten) {
  std::string bytes(40, 'A');
  std::string expected;
  ParserValue(bytes.data(), bytes.size()).getText(expected, true, 1);
  forEveryFault([&](Attempt& attempt) {
    const ParserValue value(bytes.data(), bytes.size());
    std::string text;
    const bool isComplete = attempt.run([&] { value.getText(text, true, 1); });
    EXPECT_EQ(text, isComplete ? expected : "");
    std::string again;
    value.getText(again, true, 1);
    EXPECT_EQ(again, expected);
  });
}

TEST(WriteFaultTest, AnItemAndItsValues) {
  const std::unique_ptr<ParserGroup> root = readText(TEXT);
  const ParserItem& item = *root->getItem(0UL);
  std::string expected;
  item.getText(expected, true, 3);
  forEveryFault([&](Attempt& attempt) {
    std::string text;
    attempt.run([&] {
      item.getText(text, true, 3);
      std::string values;
      item.getValueText(values, false, 1);
      std::string word = item.getWord(4);
    });
    EXPECT_EQ(text, expected.substr(0, text.size()));
  });
}

// --- Encode --------------------------------------------------------------------------------------

TEST(EncodeFaultTest, ADocument) {
  ParserFile file;
  file.getRoot().setText(TEXT, 1.1);
  const Bytes expected = file.getBinary();
  forEveryFault([&](Attempt& attempt) {
    Bytes bytes;
    const bool isComplete = attempt.run([&] { bytes = file.getBinary(); });
    EXPECT_EQ(bytes, isComplete ? expected : Bytes());
    EXPECT_EQ(file.getBinary(), expected);
  });
}

TEST(EncodeFaultTest, ADeepGroup) {
  const std::unique_ptr<ParserGroup> root = readText(TestSupport::makeDeepText(TestSupport::DEEP));
  const Bytes expected = root->getBinary(true);
  forEveryFault([&](Attempt& attempt) {
    Bytes bytes;
    const bool isComplete = attempt.run([&] { bytes = root->getBinary(true); });
    EXPECT_EQ(bytes, isComplete ? expected : Bytes());
  });
}

TEST(EncodeFaultTest, ValuesAndItemsByThemselves) {
  const std::unique_ptr<ParserGroup> root = readText(TEXT);
  const ParserItem& item = *root->getItem(0UL);
  forEveryFault([&](Attempt& attempt) {
    Bytes buffer;
    attempt.run([&] {
      unsigned long count = 0;
      ParserValue(LONG_STRING).getBinary(buffer, count, true);
      ParserValue::groupToBin(buffer, *root);
      ParserValue::stringToBin(buffer, LONG_STRING);
      std::string block(100, 'b');
      ParserValue::binaryDataToBin(buffer, block.data(), block.size());
      item.getBinary();
    });
    EXPECT_TRUE(buffer.empty() || buffer[0] == ParserValue::TYPE_STRING);
  });
}
