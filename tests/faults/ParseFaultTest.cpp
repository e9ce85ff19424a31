// Memory that runs out while a text is parsed.

#include <Quarry/ParserGroup.h>
#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/TreeBuilder.h>
#include <Quarry/internal/WordEditor.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using Quarry::ParserWord;
using TestSupport::Attempt;
using TestSupport::expectConsistent;
using TestSupport::forEveryFault;
using TestSupport::MANY;
using TestSupport::RecordingConsole;
using TestSupport::writeLines;

namespace {

std::string readAndWrite(const std::string& text) {
  const RecordingConsole console;
  return writeLines(*TestSupport::readText(text));
}

/// Expects that reading fails cleanly wherever memory runs out, leaves a tree that is one, and
/// works on the same group when there is memory again.
void checkReading(const std::string& text) {
  const std::string expected = readAndWrite(text);
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserGroup root("root");
    const bool isComplete = attempt.run([&] { root.setText(text, 1.1); });
    if (isComplete) {
      EXPECT_EQ(writeLines(root), expected);
    }
    expectConsistent(root);
    root.clear();
    root.setText(text, 1.1);
    EXPECT_EQ(writeLines(root), expected);
  });
}

std::string repeat(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result += text;
  return result;
}

std::string makeItems(const std::string& name, const std::string& values, int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += name + std::to_string(i) + ' ' + values + '\n';
  return text;
}

}  // namespace

// --- Values --------------------------------------------------------------------------------------

TEST(ParseFaultTest, ShortValuesOfEveryKind) {
  checkReading("a yes\nb 1 -2 3.5\nc \"short\" \"\"\nd <empty>\ne 0x0102");
}

TEST(ParseFaultTest, StringsThatAreLongerThanAValue) {
  checkReading(makeItems("a", '"' + std::string(40, 's') + '"', 10));
}

TEST(ParseFaultTest, StringsThatAreLongerThanASlot) {
  checkReading(makeItems("a", '"' + std::string(3000, 's') + '"', 4));
}

TEST(ParseFaultTest, AStringThatTakesALargeBlock) {
  checkReading("a \"" + std::string(200000, 's') + "\" b 1");
}

TEST(ParseFaultTest, StringsWithEscapes) {
  checkReading(makeItems("a", '"' + repeat("an \\\"escaped\\\" word ", 5) + '"', 5));
}

TEST(ParseFaultTest, BlocksOfBinaryData) {
  checkReading(makeItems("a", "0x" + std::string(200, 'A') + "00000000", 5));
}

TEST(ParseFaultTest, AListOfManyValues) { checkReading("a" + repeat(" 1.5", 300) + " b 1"); }

TEST(ParseFaultTest, AListOfValuesThatTakesALargeBlock) {
  checkReading("a" + repeat(" 1", 6000) + " b 1");
}

TEST(ParseFaultTest, AListOfLongStrings) {
  checkReading("a" + repeat(" \"a string that is longer than a value\"", 30));
}

TEST(ParseFaultTest, WordsWithZeroBytes) {
  const std::string text =
      "a_name_that_is_long 1 \"a string that is longer than a value\" b 0x01 c 2";
  checkReading(text + '\0' + " d 3");
}

// --- Names and items -----------------------------------------------------------------------------

TEST(ParseFaultTest, LongNames) {
  checkReading(makeItems("a_name_that_is_longer_than_a_string_within_itself_", "1", 20));
}

TEST(ParseFaultTest, ManyNames) { checkReading(makeItems("name", "1 \"two\"", MANY)); }

TEST(ParseFaultTest, KeywordsBetweenItems) {
  checkReading(repeat("#Keyword 1\nitem 2\n#A_keyword_with_a_long_name 3\n", 10));
}

TEST(ParseFaultTest, Calls) {
  checkReading("f()\n" + makeItems("f", "(1, 2.5, \"a string that is longer than a value\")", 10));
}

// --- Groups --------------------------------------------------------------------------------------

TEST(ParseFaultTest, NestedGroups) {
  checkReading(makeItems("g", "{ a 1 2 h { b \"two\" } i { } c 3 }", 8));
}

TEST(ParseFaultTest, SeveralGroupsOfOneItem) {
  checkReading("g { a 1 } g 1 { b 2 } \"x\" h { c 3 }");
}

TEST(ParseFaultTest, ADeepText) { checkReading(TestSupport::makeDeepText(TestSupport::DEEP)); }

TEST(ParseFaultTest, ManyGroups) { checkReading(makeItems("g", "{ a 1 b { c 2 } }", MANY / 4)); }

// --- Malformed texts -----------------------------------------------------------------------------

TEST(ParseFaultTest, WarningsThatAConsoleKeeps) {
  checkReading("a = 1,, 2\n1 b } { x y ( ) \"open\n z 1 f 1 (2) #k (3) g(1 (2)) ? end");
}

TEST(ParseFaultTest, WarningsArriveInOrderUpToTheFault) {
  const std::string text = repeat("a ,\n", 6);
  const auto read = [&text] { ParserGroup("root").setText(text, 1.1); };
  std::vector<std::string> expected;
  {
    const RecordingConsole console;
    read();
    expected = console.getWarnings();
  }
  ASSERT_GE(expected.size(), 6U);
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    attempt.run(read);
    const std::vector<std::string> warnings = console.getWarnings();
    ASSERT_LE(warnings.size(), expected.size());
    for (std::size_t i = 0; i < warnings.size(); ++i)
      EXPECT_EQ(warnings[i], expected[i]);
  });
}

// --- Slabs ---------------------------------------------------------------------------------------

TEST(ParseFaultTest, TheSourceOfSlabsHasToMapMore) {
  const std::string text = makeItems("name", "1 \"a string that is longer than a value\"", 10);
  const std::string expected = readAndWrite(text);
  forEveryFault([&](Attempt& attempt) {
    const TestSupport::EmptySlabSource empty;
    ParserGroup root("root");
    if (attempt.run([&] { root.setText(text, 1.1); })) {
      EXPECT_EQ(writeLines(root), expected);
    }
    expectConsistent(root);
  });
}

// --- What no text produces -----------------------------------------------------------------------

namespace {

/// Words that know templates, array sizes and braces.
class Words {
 public:
  ParserWord& add(const std::string& text) {
    texts.push_back(text);
    words.emplace_back(texts.back(), true, 1.1);
    return words.back();
  }
  void addTemplate(const std::string& text, const std::string& templateName) {
    texts.push_back(templateName);
    const ParserWord name(texts.back(), true, 1.1);
    Quarry::WordEditor(add(text)).setTemplateWord(name);
  }
  void addArray(const std::string& text, unsigned long size) {
    Quarry::WordEditor(add(text)).setArraySize(size);
  }
  void addBrace(const std::string& text) {
    Quarry::WordEditor(add(text)).setType(ParserWord::WORD_BRACE);
  }

  bool isExhausted() const { return taken == words.size(); }
  const ParserWord* next() { return isExhausted() ? nullptr : &words[taken++]; }

 private:
  std::deque<std::string> texts;
  std::deque<ParserWord> words;
  std::size_t taken = 0;
};

Words makeSpecialWords() {
  Words words;
  words.addTemplate("a", "a_template_with_a_long_name");
  words.add("1");
  words.addArray("b", 65);
  words.add("2");
  words.addBrace("an_item_with_a_long_name");
  words.addTemplate("c", "short");
  words.add("3");
  words.add("}");
  return words;
}

void parse(Words words, ParserGroup& root) {
  Quarry::TreeBuilder builder(root, false);
  Quarry::TextParser(words, builder).parse();
  builder.completeItem();
}

}  // namespace

TEST(ParseFaultTest, TemplatesArraysAndBracedItems) {
  forEveryFault([](Attempt& attempt) {
    ParserGroup root("root");
    const bool isComplete = attempt.run([&] { parse(makeSpecialWords(), root); });
    expectConsistent(root);
    if (!isComplete) {
      root.clear();
      parse(makeSpecialWords(), root);
    }
    EXPECT_EQ(writeLines(root),
              "\na<a_template_with_a_long_name> 1\nb[A] 2\nan_item_with_a_long_name {\n    "
              "c<short> 3\n}");
  });
}
