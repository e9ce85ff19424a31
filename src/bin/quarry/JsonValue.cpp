#include "JsonValue.h"

#include <Plinth/Label.h>
#include <Quarry/ParserWord.h>

#include "JsonNumber.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace Tool {

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

[[noreturn]] void refuse(const std::string& reason) { throw JsonFault(reason); }

/// A bool or number, with what it is where nothing but its data counts.
struct Number {
  ParserValue::Type type;
  double value;  ///< every bool, character and integer is a double without loss
  std::string standardText;
};

/// A whole number may stand as 12.0 too: many programs do not tell it from 12.
int getWhole(const JsonScalar& content, int lowest, int highest) {
  const bool isNumber = content.kind == JsonScalar::INTEGER || content.kind == JsonScalar::NUMBER;
  const bool isWhole = isNumber && std::trunc(content.number) == content.number;
  if (!isWhole || content.number < lowest || content.number > highest) {
    refuse("the value is no whole number from " + std::to_string(lowest) + " to " +
           std::to_string(highest));
  }
  return static_cast<int>(content.number);
}

double getDouble(const JsonScalar& content) {
  const std::string& text = content.text;
  switch (content.kind) {
    case JsonScalar::INTEGER:
    case JsonScalar::NUMBER: return content.number;
    case JsonScalar::BITS: return fromBits(content.bits);
    case JsonScalar::STRING:
      if (text == "inf" || text == "-inf" || text == "nan" || text == "-nan") {
        return Plinth::getDouble(text);
      }
      break;
    default: break;
  }
  refuse(
      "the value is no number; beside numbers there are \"inf\", \"-inf\", \"nan\", \"-nan\" "
      "and {\"bits\":\"...\"}");
}

Number makeBool(const JsonScalar& content) {
  if (content.kind != JsonScalar::BOOL) refuse("the value is neither true nor false");
  return {ParserValue::TYPE_BOOL, content.boolean ? 1.0 : 0.0, content.boolean ? "yes" : "no"};
}

Number makeChar(const JsonScalar& content) {
  const int number = getWhole(content, -128, 127);
  return {ParserValue::TYPE_CHAR, static_cast<double>(number), Plinth::getLabel(number)};
}

Number makeInt(const JsonScalar& content) {
  const int number =
      getWhole(content, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  return {ParserValue::TYPE_INT, static_cast<double>(number), Plinth::getLabel(number)};
}

Number makeDouble(const JsonScalar& content) {
  const double number = getDouble(content);
  return {ParserValue::TYPE_DOUBLE, number, spellDouble(number)};
}

/// Appends a value as it would be read from a text, where no backslash is an escape.
void appendText(ParserItem& item, ParserValue::Type type, const std::string& text) {
  item.addWord(ParserWord(text, true, 1.0), type);
}

bool readsAs(const Number& number, const std::string& text) {
  ParserItem read(std::string(), ParserItem::ITEM_PLAIN, 0, 0);
  appendText(read, number.type, text);
  return toBits(read.getDouble(0)) == toBits(number.value);
}

/// Only the binary form makes a number without a text of every type.
void appendData(ParserItem& item, const Number& number) {
  std::vector<char> payload = {0, static_cast<char>(number.type)};  // the item's kind comes first
  switch (number.type) {
    case ParserValue::TYPE_BOOL: ParserValue::boolToBin(payload, number.value != 0.0); break;
    case ParserValue::TYPE_CHAR:
      ParserValue::charToBin(payload, static_cast<char>(number.value));
      break;
    case ParserValue::TYPE_INT:
      ParserValue::intToBin(payload, static_cast<int>(number.value));
      break;
    default: ParserValue::doubleToBin(payload, number.value);
  }
  std::vector<char> frame;
  ParserValue::sizeToBin(frame, payload.size());
  frame.insert(frame.end(), payload.begin(), payload.end());
  unsigned long position = 0;
  item.setBinary(frame, position);
}

/// The value counts: a text that another program forgot to change with it is dropped.
void appendNumber(ParserItem& item, const Number& number, const JsonValue& given, TreeUse use) {
  const bool isGiven = given.spelling == JsonValue::Spelling::GIVEN;
  const bool isData = given.spelling == JsonValue::Spelling::NONE;
  if (isGiven && readsAs(number, given.text)) {
    appendText(item, number.type, given.text);
  } else if (use == TreeUse::TEXT || (!isData && readsAs(number, number.standardText))) {
    appendText(item, number.type, number.standardText);
  } else {
    appendData(item, number);
  }
}

void appendNumber(ParserItem& item, Number (*make)(const JsonScalar&), ParserValue::Type type,
                  const JsonValue& given, TreeUse use) {
  if (given.content.has_value()) {
    appendNumber(item, make(*given.content), given, use);
  } else if (given.spelling == JsonValue::Spelling::GIVEN) {
    appendText(item, type, given.text);
  } else {
    refuse("there is no value");
  }
}

const std::string& getBytes(const JsonValue& given) {
  if (given.spelling != JsonValue::Spelling::STANDARD) refuse("a " + given.type + " has no text");
  if (!given.content.has_value()) refuse("there is no value");
  const JsonScalar::Kind kind = given.content->kind;
  if (kind != JsonScalar::STRING && kind != JsonScalar::BLOCK)
    refuse("the value is neither a string nor {\"base64\":\"...\"}");
  return given.content->text;
}

void appendBlock(ParserItem& item, std::string bytes) {
  item.addBinaryData(bytes.data(), bytes.size());
}

}  // namespace

void JsonValue::appendTo(ParserItem& item, TreeUse use) {
  if (type.empty()) refuse("there is no type");
  const bool isGroup = type == "group";
  if (!isGroup && (group != nullptr || !groupName.empty()))
    refuse("only a group has items and a name");
  if ((isGroup || type == "empty") && content.has_value()) refuse("a " + type + " has no value");
  if (type == "bool") {
    appendNumber(item, makeBool, ParserValue::TYPE_BOOL, *this, use);
  } else if (type == "char") {
    appendNumber(item, makeChar, ParserValue::TYPE_CHAR, *this, use);
  } else if (type == "int") {
    appendNumber(item, makeInt, ParserValue::TYPE_INT, *this, use);
  } else if (type == "double") {
    appendNumber(item, makeDouble, ParserValue::TYPE_DOUBLE, *this, use);
  } else if (type == "string") {
    item.addString(getBytes(*this));
  } else if (type == "binary") {
    appendBlock(item, getBytes(*this));
  } else if (type == "empty") {
    appendText(item, ParserValue::TYPE_EMPTY, text);
  } else if (isGroup) {
    item.addGroup(group.release());
  } else {
    refuse("there is no type '" + type + "'");
  }
}

}  // namespace Tool
