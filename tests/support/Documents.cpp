#include "Documents.h"

#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include "RecordingConsole.h"

namespace TestSupport {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

namespace {

std::string describeValue(const ParserItem& item, unsigned long index) {
  const std::string word = item.getWord(index);
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_GROUP: return "{" + describe(*item.getGroup(index)) + "}";
    case ParserValue::TYPE_STRING: return "string:\"" + item.getString(index) + "\"";
    case ParserValue::TYPE_BOOL: return "bool:" + (word.empty() ? "*" : word);
    case ParserValue::TYPE_CHAR: return "char:" + (word.empty() ? "*" : word);
    case ParserValue::TYPE_INT: return "int:" + (word.empty() ? "*" : word);
    case ParserValue::TYPE_DOUBLE: return "double:" + (word.empty() ? "*" : word);
    case ParserValue::TYPE_BINARYDATA: {
      const auto* bytes = static_cast<const char*>(item.getBinaryData(index));
      return "binary:" + std::string(bytes, item.getBinaryDataSize(index));
    }
    default: return "unknown";
  }
}

std::string describeItem(const ParserItem& item) {
  const bool call = item.getType() == ParserItem::ITEM_CALL;
  std::string values;
  for (unsigned long i = 0; i < item.getValueCount(); ++i) {
    if (i > 0 || !call) values += ' ';
    values += describeValue(item, i);
  }
  return item.getName() + (call ? "(" + values + ")" : values);
}

}  // namespace

std::unique_ptr<ParserGroup> readText(const std::string& text, double version) {
  auto root = std::make_unique<ParserGroup>("root");
  root->setText(text, version);
  return root;
}

std::string writeLines(const ParserGroup& root) {
  std::string text;
  root.getText(text, false, true, 1);
  return text;
}

std::string writeOneLine(const ParserGroup& root) {
  std::string text;
  root.getText(text, false, false, 1);
  return text;
}

std::string describe(const ParserGroup& group) {
  std::string description;
  for (unsigned long i = 0; i < group.getItemCount(); ++i) {
    const ParserItem* item = group.getItem(i);
    if (item == nullptr) continue;
    if (!description.empty()) description += "; ";
    description += describeItem(*item);
  }
  return description;
}

void checkReads(const std::string& text, const std::string& expected, double version) {
  SCOPED_TRACE(text);
  const RecordingConsole console;
  EXPECT_EQ(describe(*readText(text, version)), expected);
  EXPECT_EQ(console.getMessages(), std::vector<Message>());
}

void checkWarns(const std::string& text, const std::string& warning, const std::string& expected,
                double version) {
  SCOPED_TRACE(text);
  const RecordingConsole console;
  EXPECT_EQ(describe(*readText(text, version)), expected);
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Plinth::Console::LEVEL_WARNING, warning, ""}}));
}

void checkWrites(const ParserGroup& root, const std::string& expected) {
  EXPECT_EQ(writeLines(root), expected);
}

void checkRoundTrip(const std::string& text) {
  SCOPED_TRACE(text);
  const RecordingConsole console;
  EXPECT_EQ(writeLines(*readText(text)), text);
  EXPECT_EQ(console.getMessages(), std::vector<Message>());
}

std::string makeDeepText(unsigned long depth) {
  std::string text;
  for (unsigned long i = 0; i < depth; ++i)
    text += "g { ";
  for (unsigned long i = 0; i < depth; ++i)
    text += "} ";
  return text;
}

}  // namespace TestSupport
