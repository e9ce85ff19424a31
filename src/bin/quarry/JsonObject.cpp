#include "JsonObject.h"

#include <Quarry/ParserWord.h>

#include <cctype>
#include <cmath>
#include <limits>
#include <memory>

namespace Tool {

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr std::string_view CALL_MARK = "()";

[[noreturn]] void refuse(const std::string& reason) { throw JsonFault(reason); }

bool isCall(const std::string& name) { return name.ends_with(CALL_MARK); }

/// Whole numbers beyond 32 bits become doubles, as long as those are exact.
void appendWhole(ParserItem& item, const JsonScalar& value) {
  constexpr std::int64_t EXACT = 1LL << 53;
  const bool fits = value.integer >= std::numeric_limits<int>::min() &&
                    value.integer <= std::numeric_limits<int>::max();
  if (fits) {
    item.addInt(static_cast<int>(value.integer));
  } else if (value.integer >= -EXACT && value.integer <= EXACT) {
    item.addDouble(value.number);
  } else {
    refuse("the number " + value.text + " is kept exactly by no type; write it as a string");
  }
}

/// The spelling stays, except that only the lower-case letter makes an exponent.
void appendDouble(ParserItem& item, const JsonScalar& value) {
  std::string text = value.text;
  for (char& character : text)
    character = character == 'E' ? 'e' : character;
  if (text.find_first_of(".e") == std::string::npos)
    refuse("the number " + text + " is kept exactly by no type; write it as a string");
  item.addWord(ParserWord(text, true, 1.1), ParserValue::TYPE_DOUBLE);
}

void append(ParserItem& item, const JsonScalar& value) {
  switch (value.kind) {
    case JsonScalar::BOOL: return item.addBool(value.boolean);
    case JsonScalar::INTEGER: return appendWhole(item, value);
    case JsonScalar::NUMBER: return appendDouble(item, value);
    default: item.addString(value.text);
  }
}

}  // namespace

// --- Objects -------------------------------------------------------------------------------------

void JsonObject::beginObject() {
  if (levels.empty()) {
    levels.push_back({Part::GROUP, &root, {}});
    return;
  }
  Level& level = levels.back();
  switch (level.part) {
    case Part::VALUES: level.part = Part::VALUES_OF_GROUP; return openGroup(*level.item);
    case Part::VALUES_OF_GROUP: refuse("a group has to be the last value");
    case Part::GROUP: return openGroup(*makeItem(level));
    default:
      if (level.isInner) refuse("an array within an array begins with a value that is no object");
      level.part = Part::ITEMS;
      openGroup(*makeItem(level));
  }
}

void JsonObject::member(const std::string& name) {
  const std::string plain = isCall(name) ? name.substr(0, name.size() - CALL_MARK.size()) : name;
  const bool isName = ParserWord(plain, true, 1.1).isIdentifier() ||
                      (!isCall(name) && ParserWord(plain, true, 1.1).isKeyword());
  if (!isName)
    refuse("'" + name + "' is no name: a letter or _, then letters, digits and any of []_-.%:");
  levels.back().name = name;
}

void JsonObject::endObject() {
  levels.pop_back();
  if (!levels.empty()) --depth;
}

// --- Arrays --------------------------------------------------------------------------------------

void JsonObject::beginArray() {
  Level& level = levels.back();
  Level array = {Part::ARRAY, level.group, level.name};
  if (level.part != Part::GROUP) {
    if (level.isInner) refuse("arrays are nested too deeply");
    if (level.part != Part::ARRAY && level.part != Part::ITEMS)
      refuse("an array stands among values");
    level.part = Part::ITEMS;
    array.isInner = true;
  }
  levels.push_back(array);
}

void JsonObject::endArray() {
  if (levels.back().part == Part::ARRAY) makeItem(levels.back());
  levels.pop_back();
}

void JsonObject::scalar(const JsonScalar& value) {
  Level& level = levels.back();
  const bool isNull = value.kind == JsonScalar::NOTHING;
  if (level.part == Part::VALUES_OF_GROUP) refuse("a group has to be the last value");
  if (level.part == Part::GROUP) {
    level.item = makeItem(level);
  } else if (isNull) {
    if (level.isInner || level.part == Part::VALUES) refuse("null stands among values");
    level.part = Part::ITEMS;
    makeItem(level);
  } else {
    if (level.part == Part::ITEMS) refuse("a value stands among items");
    if (level.part == Part::ARRAY) level.item = makeItem(level);
    level.part = Part::VALUES;
  }
  if (!isNull) append(*level.item, value);
}

// --- Items ---------------------------------------------------------------------------------------

ParserItem* JsonObject::makeItem(const Level& level) {
  if (settings.use == TreeUse::TEXT && level.name == VERSION_KEYWORD) {
    result.hasVersions = true;
    return leftOut.addItem(level.name, 0, 0);
  }
  if (!isCall(level.name)) return level.group->addItem(level.name, 0, 0);
  const std::string name = level.name.substr(0, level.name.size() - CALL_MARK.size());
  auto item = std::make_unique<ParserItem>(name, ParserItem::ITEM_CALL, 0UL, 0UL);
  level.group->addItem(*item);
  return item.release();
}

void JsonObject::openGroup(ParserItem& item) {
  if (item.getType() == ParserItem::ITEM_CALL) refuse("a call takes no group");
  if (depth >= settings.deepest) refuse("groups are nested too deeply");
  ++depth;
  levels.push_back({Part::GROUP, item.addGroup(nullptr), {}});
}

}  // namespace Tool
