// Any text, with zero bytes or without, gives the tree that the rules say, and shows it at each
// warning.

#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "TreeViews.h"

using Quarry::Diagnostic;
using Quarry::ParserValue;
using Quarry::ParserWord;
using Quarry::ParserWordStream;
using Quarry::TextParser;
using namespace TreeViews;

namespace {

/// Describes as describe() does what the parser recognises, without building a tree.
class Describer {
 public:
  Views views;

  void beginItem(const ParserWord& word) {
    const bool isKeyword = word.getType() == ParserWord::WORD_KEYWORD;
    item = &groups.back()->items.emplace_back();
    item->name = word.getString();
    item->isKeyword = isKeyword;
  }
  void value(const ParserWord& word, ParserValue::Type type) {
    item->values.push_back({describeWord(word, type), nullptr});
  }
  void emptyTag(const ParserWord&) {}
  void beginGroup(const ParserWord&) {
    item->values.push_back({"", std::make_shared<Group>()});
    outers.push_back(item);
    groups.push_back(item->values.back().group.get());
  }
  void beginBracedItem(const ParserWord&) {}
  void groupLeftOut(const ParserWord&) {}
  void endGroup(const ParserWord*) {
    groups.pop_back();
    item = outers.back();
    outers.pop_back();
  }
  void beginCall(const ParserWord&) { item->isCall = true; }
  void endCall(const ParserWord&) {}
  void endDocument(const ParserWord&) {}
  void warning(Diagnostic, const ParserWord&) { view(); }
  void view() { views.push_back(describeGroup(root)); }

 private:
  struct Group;
  struct Value {
    std::string text;
    std::shared_ptr<Group> group;
  };
  struct Item {
    std::string name;
    bool isKeyword = false;
    bool isCall = false;
    std::deque<Value> values;
  };
  struct Group {
    std::deque<Item> items;
  };

  static std::string describeWord(const ParserWord& word, ParserValue::Type type) {
    const std::string text = word.getString();
    switch (type) {
      case ParserValue::TYPE_BOOL: return "bool:" + text;
      case ParserValue::TYPE_INT: return "int:" + text;
      case ParserValue::TYPE_DOUBLE: return "double:" + text;
      case ParserValue::TYPE_STRING:
        return "string:\"" + (word.getLength() > 2 ? text.substr(1, text.size() - 2) : "") + "\"";
      default: return "binary:" + readBytes(word);
    }
  }
  static std::string readBytes(const ParserWord& word) {
    void* data = nullptr;
    unsigned long size = 0;
    ParserValue::wordToBinaryData(data, size, word);
    const std::unique_ptr<char[]> bytes(static_cast<char*>(data));
    return std::string(bytes.get(), size);
  }
  static std::string describeItem(const Item& item) {
    std::string text;
    for (const Value& value : item.values) {
      if (!text.empty() || !item.isCall) text += ' ';
      text += value.group == nullptr ? value.text : "{" + describeGroup(*value.group) + "}";
    }
    return item.name + (item.isCall ? "(" + text + ")" : text);
  }
  static std::string describeGroup(const Group& group) {
    std::string text;
    for (const Item& item : group.items) {
      if (item.isKeyword) continue;
      if (!text.empty()) text += "; ";
      text += describeItem(item);
    }
    return text;
  }

  Group root;
  Item* item = nullptr;
  std::vector<Group*> groups = {&root};
  std::vector<Item*> outers;
};

Views describeByRules(const std::string& text, double version) {
  ParserWordStream stream(text, version);
  Describer describer;
  TextParser(stream, describer).parse();
  describer.view();
  return describer.views;
}

/// Puts pieces together that the grammar knows, and some that it does not.
std::string makeText(std::mt19937& random, const std::vector<std::string>& pieces) {
  std::string text;
  for (unsigned long i = 1 + random() % 25; i > 0; --i)
    text += pieces[random() % pieces.size()] + (random() % 4 == 0 ? "" : " ");
  return text;
}

using std::string_literals::operator""s;

const std::vector<std::string> PIECES = {"a",    "b",      "name_of_more_than_sixteen_bytes",
                                         "#k",   "=",      ",",
                                         "{",    "}",      "a 1",
                                         "g {",  "f(",     ")",
                                         "1",    "-2.5",   "123456789012345678901234567890",
                                         "yes",  "no",     "<empty>",
                                         "\"\"", "\"x\"",  "\"a longer string than fits in\"",
                                         "\n",   "0x00",   "\"e\\n\\\"\\\\\"",
                                         "/",    "\"\\\"", "0x4142F00F00F00F00"};

std::vector<std::string> withZeroBytes() {
  std::vector<std::string> pieces = PIECES;
  for (const std::string& piece : {"\0"s, "yes\0"s, "a\0"s, "1\0"s, "\"x\0y\""s, "\"\0\""s,
                                   "0x41\0"s, "=\0"s, "<empty>\0"s, "{\0"s, "\"x\\\0y\""s})
    pieces.push_back(piece);
  return pieces;
}

}  // namespace

TEST(TreeBuilderRulesTest, BothWaysBuildWhatTheRulesSayAndShowItAtEachWarning) {
  std::mt19937 random(1);
  for (int i = 0; i < 8000 && !testing::Test::HasFailure(); ++i) {
    const std::string text = makeText(random, PIECES);
    const double version = random() % 2 == 0 ? 1.0 : 1.1;
    const Views expected = describeByRules(text, version);
    EXPECT_EQ(watch(text, CAREFUL, version), expected) << text;
    EXPECT_EQ(watch(text, QUICK, version), expected) << text;
  }
}

TEST(TreeBuilderRulesTest, TextsWithZeroBytesGiveWhatTheRulesSay) {
  const std::vector<std::string> pieces = withZeroBytes();
  std::mt19937 random(2);
  for (int i = 0; i < 8000 && !testing::Test::HasFailure(); ++i) {
    const std::string text = makeText(random, pieces);
    EXPECT_EQ(watch(text), describeByRules(text, 1.1)) << text;
    EXPECT_EQ(watch(text, CAREFUL, 1.0), describeByRules(text, 1.0)) << text;
  }
}

TEST(TreeBuilderRulesTest, AZeroByteAnywhereInATextIsReadAsTheRulesSay) {
  const std::string text = "a 1 \"x y\" yes #k 0x41 g { b 2.5 } f(3, \"\\n\") c <empty> d 4";
  for (unsigned long place = 0; place <= text.size(); ++place) {
    std::string inserted = text;
    inserted.insert(place, 1, '\0');
    EXPECT_EQ(watch(inserted), describeByRules(inserted, 1.1)) << place;
  }
}
