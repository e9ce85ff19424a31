// Memory that runs out while something is copied: the original stays as it is, and so does what
// the copy should have replaced.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/WordEditor.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::readText;
using TestSupport::writeLines;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";
const std::string LONG_NAME = "a_name_that_is_longer_than_a_string_within_itself";

const std::string TEXT = "#Keyword 1 f(1, \"" + LONG_STRING + "\") " + LONG_NAME +
                         " 0x0102030400000000 g { a 1 2 3 4 5 h { b \"" + LONG_STRING + "\" } }";

std::string textOf(const ParserItem& item) {
  std::string text;
  item.getText(text, true, 1);
  return text;
}

std::string textOf(const ParserValue& value) {
  std::string text;
  value.getText(text, true, 1);
  return text;
}

/// Expects that `source` can be copied, or not, and stays as it is.
template <class Copied>
void checkCopying(Attempt& attempt, const Copied& source, const std::string& expected) {
  std::unique_ptr<Copied> copy;
  if (attempt.run([&] { copy = std::make_unique<Copied>(source); })) {
    EXPECT_EQ(textOf(*copy), expected);
  }
  EXPECT_EQ(textOf(Copied(source)), expected);
  EXPECT_EQ(textOf(source), expected);
}

/// An item with something of everything that an item can have.
std::unique_ptr<ParserItem> makeItem() {
  auto item = std::make_unique<ParserItem>(LONG_NAME, ParserItem::ITEM_PLAIN, 1, 2);
  item->setArray(true, 65);
  item->setTemplate("a_template_with_a_long_name");
  item->addString(LONG_STRING);
  item->addGroup(nullptr)->setText(TEXT, 1.1);
  item->addInt(1);
  return item;
}

}  // namespace

// --- Groups --------------------------------------------------------------------------------------

TEST(CopyFaultTest, AGroup) {
  const std::string expected = writeLines(*readText(TEXT));
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> source = readText(TEXT);
    std::unique_ptr<ParserGroup> copy;
    if (attempt.run([&] { copy = std::make_unique<ParserGroup>(*source); })) {
      EXPECT_EQ(writeLines(*copy), expected);
    }
    EXPECT_EQ(writeLines(ParserGroup(*source)), expected);
    TestSupport::expectConsistent(*source);
  });
}

TEST(CopyFaultTest, ADeepGroup) {
  const std::string text = TestSupport::makeDeepText(TestSupport::DEEP);
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> source = readText(text);
    const std::string expected = writeLines(*source);
    attempt.run([&] { ParserGroup copy(*source); });
    EXPECT_EQ(writeLines(ParserGroup(*source)), expected);
  });
}

TEST(CopyFaultTest, AGroupOfManyItems) {
  std::string text;
  for (int i = 0; i < TestSupport::MANY; ++i)
    text += "a " + std::to_string(i) + " \"" + LONG_STRING + "\" g { }\n";
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> source = readText(text);
    const std::string expected = writeLines(*source);
    attempt.run([&] { ParserGroup copy(*source); });
    EXPECT_EQ(writeLines(ParserGroup(*source)), expected);
  });
}

TEST(CopyFaultTest, AGroupThatCameFromBinaryData) {
  const std::vector<char> bytes = readText(TEXT)->getBinary(false);
  forEveryFault([&](Attempt& attempt) {
    ParserGroup source("source");
    unsigned long position = 0;
    ASSERT_TRUE(source.setBinary(bytes, position));
    const std::string expected = writeLines(source);
    attempt.run([&] { ParserGroup copy(source); });
    EXPECT_EQ(source.getItemCount(), 0U);
    EXPECT_EQ(writeLines(ParserGroup(source)), expected);
  });
}

// --- Items ---------------------------------------------------------------------------------------

TEST(CopyFaultTest, AnItem) {
  const std::string expected = textOf(*makeItem());
  forEveryFault([&](Attempt& attempt) { checkCopying(attempt, *makeItem(), expected); });
}

TEST(CopyFaultTest, AnItemThatCannotTakeOnAnotherStaysAsItWas) {
  const std::string expected = textOf(*makeItem());
  forEveryFault([&](Attempt& attempt) {
    const std::unique_ptr<ParserItem> source = makeItem();
    ParserItem target("target", ParserItem::ITEM_CALL, 3, 4);
    target.addString(LONG_STRING);
    const std::string before = textOf(target);
    const bool isComplete = attempt.run([&] { target.copyFrom(*source); });
    EXPECT_EQ(textOf(target), isComplete ? expected : before);
    target.copyFrom(*source);
    EXPECT_EQ(textOf(target), expected);
  });
}

TEST(CopyFaultTest, AnItemThatCannotTakeOnOneOfASingleValueStaysAsItWas) {
  forEveryFault([](Attempt& attempt) {
    ParserItem source(LONG_NAME, ParserItem::ITEM_PLAIN, 1, 2);
    source.addInt(1);
    ParserItem target("target", ParserItem::ITEM_CALL, 3, 4);
    const bool isComplete = attempt.run([&] { target.copyFrom(source); });
    EXPECT_EQ(textOf(target), isComplete ? LONG_NAME + " 1" : "target()");
  });
}

TEST(CopyFaultTest, AnItemThatCannotTakeOnOneBelowItStaysAsItWas) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserGroup> root = readText("a { b 1 \"" + LONG_STRING + "\" { c 2 } }");
    ParserItem& target = *root->getItem("a");
    const ParserItem& inner = *target.getGroup(0)->getItem("b");
    const std::string before = textOf(target);
    const std::string expected = textOf(inner);
    const bool isComplete = attempt.run([&] { target.copyFrom(inner); });
    EXPECT_EQ(textOf(target), isComplete ? expected : before);
  });
}

TEST(CopyFaultTest, AnItemThatTakesOnItself) {
  forEveryFault([](Attempt& attempt) {
    const std::unique_ptr<ParserItem> item = makeItem();
    const std::string expected = textOf(*item);
    attempt.run([&] { item->copyFrom(*item); });
    EXPECT_EQ(textOf(*item), expected);
  });
}

// --- Values --------------------------------------------------------------------------------------

TEST(CopyFaultTest, AValueThatIsALongString) {
  forEveryFault([](Attempt& attempt) {
    checkCopying(attempt, ParserValue(LONG_STRING), '"' + LONG_STRING + '"');
  });
}

TEST(CopyFaultTest, AValueThatIsALongNumber) {
  const std::string digits(50, '7');
  forEveryFault([&](Attempt& attempt) {
    const ParserValue value(ParserValue::TYPE_DOUBLE, digits);
    value.getAsDouble();
    checkCopying(attempt, value, digits);
  });
}

TEST(CopyFaultTest, AValueThatIsABlock) {
  forEveryFault([](Attempt& attempt) {
    std::string bytes(40, 'A');
    const ParserValue value(bytes.data(), bytes.size());
    checkCopying(attempt, value, textOf(value));
  });
}

TEST(CopyFaultTest, AValueThatIsAGroup) {
  const std::string expected = textOf(ParserValue(new ParserGroup(*readText(TEXT))));
  forEveryFault([&](Attempt& attempt) {
    checkCopying(attempt, ParserValue(readText(TEXT).release()), expected);
  });
}

// --- Words ---------------------------------------------------------------------------------------

TEST(CopyFaultTest, AWordThatCannotTakeOnAnotherStaysAsItWas) {
  const std::string text = "name";
  const std::string templates = "template other";
  forEveryFault([&](Attempt& attempt) {
    ParserWord inner(templates, true, 1.1);
    Quarry::WordEditor(inner).setTemplateWord(ParserWord(templates, true, 1.0));
    ParserWord source(text, true, 1.1);
    Quarry::WordEditor(source).setTemplateWord(inner);
    ParserWord target(templates, true, 1.0);
    Quarry::WordEditor(target).setTemplateWord(ParserWord(text, true, 1.0));
    const bool isComplete = attempt.run([&] {
      const ParserWord copy(source);
      target = copy;
    });
    EXPECT_EQ(target.getString(), isComplete ? "name" : "template other");
    EXPECT_EQ(target.getTemplateWord()->getString(), isComplete ? "template other" : "name");
  });
}
