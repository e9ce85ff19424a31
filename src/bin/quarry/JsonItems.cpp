#include "JsonItems.h"

#include <Quarry/ParserWord.h>

#include "JsonText.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace Tool {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserWord;

namespace {

using Members = std::vector<std::string>;

const Members ITEM_MEMBERS = {"name", "kind", "template", "array", "folded", "values"};
const Members VALUE_MEMBERS = {"type", "value", "text", "name", "items"};
const Members BYTES_MEMBERS = {"base64", "bits"};

[[noreturn]] void refuse(const std::string& reason) { throw JsonFault(reason); }

const std::string& getText(const JsonScalar& value) {
  if (value.kind != JsonScalar::STRING) refuse("it is no string");
  return value.text;
}

const std::string& getBytes(const JsonScalar& value) {
  if (value.kind == JsonScalar::BLOCK) return value.text;
  if (value.kind != JsonScalar::STRING) refuse("it is neither a string nor {\"base64\":\"...\"}");
  return value.text;
}

unsigned long getCount(const JsonScalar& value) {
  unsigned long count = 0;
  const char* end = value.text.data() + value.text.size();
  const auto [parsedEnd, error] = std::from_chars(value.text.data(), end, count);
  const bool isNumber = value.kind == JsonScalar::INTEGER || value.kind == JsonScalar::NUMBER;
  if (!isNumber || parsedEnd != end || error != std::errc() || count == ParserItem::NO_ARRAY)
    refuse("it is no count of elements");
  return count;
}

bool getBool(const JsonScalar& value) {
  if (value.kind != JsonScalar::BOOL) refuse("it is neither true nor false");
  return value.boolean;
}

void adopt(ParserGroup& group, std::unique_ptr<ParserItem>& item) {
  group.addItem(*item);
  item.release();
}

/// Without a kind, the name tells.
ParserItem::Type getKind(const std::string& kind, const std::string& name) {
  if (kind == "plain") return ParserItem::ITEM_PLAIN;
  if (kind == "keyword") return ParserItem::ITEM_KEYWORD;
  if (kind == "call") return ParserItem::ITEM_CALL;
  if (!kind.empty()) refuse("there is no kind '" + kind + "'");
  const bool isKeyword = ParserWord(name, true, 1.1).isKeyword();
  return isKeyword ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN;
}

std::uint64_t readBits(const std::string& digits) {
  constexpr std::size_t DIGITS = 16;
  std::uint64_t bits = 0;
  const char* end = digits.data() + digits.size();
  const auto [parsedEnd, error] = std::from_chars(digits.data(), end, bits, 16);
  if (digits.size() != DIGITS || parsedEnd != end || error != std::errc())
    refuse("these are not 16 hexadecimal digits");
  return bits;
}

}  // namespace

// --- What is told --------------------------------------------------------------------------------

void JsonItems::beginObject() {
  if (levels.back().part == Part::ITEMS) {
    levels.push_back({Part::ITEM});
    openItems.emplace_back();
  } else if (levels.back().part == Part::VALUES) {
    levels.push_back({Part::VALUE});
    openValues.emplace_back();
  } else if (isAt(Part::ITEM, "name") || isAt(Part::ITEM, "template") ||
             isAt(Part::VALUE, "value") || isAt(Part::VALUE, "text") || isAt(Part::VALUE, "name")) {
    levels.push_back({Part::BYTES});
    bytes = JsonScalar();
  } else {
    refuse("no object may stand here");
  }
}

void JsonItems::beginArray() {
  if (levels.empty()) {
    levels.push_back({Part::ITEMS});
  } else if (isAt(Part::ITEM, "values")) {
    levels.push_back({Part::VALUES});
  } else if (isAt(Part::VALUE, "items")) {
    if (openItems.size() > settings.deepest) refuse("groups are nested too deeply");
    levels.push_back({Part::ITEMS});
  } else {
    refuse("no array may stand here");
  }
}

void JsonItems::member(const std::string& name) {
  Level& level = levels.back();
  const Members& members = level.part == Part::ITEM    ? ITEM_MEMBERS
                           : level.part == Part::VALUE ? VALUE_MEMBERS
                                                       : BYTES_MEMBERS;
  const auto found = std::find(members.begin(), members.end(), name);
  if (found == members.end()) refuse("the form has no member of this name");
  level.memberIndex = static_cast<unsigned>(std::distance(members.begin(), found));
  const unsigned bit = 1U << level.memberIndex;
  if ((level.seenMembers & bit) != 0) refuse("there are two members of this name");
  level.seenMembers |= bit;
}

void JsonItems::scalar(const JsonScalar& value) {
  switch (levels.back().part) {
    case Part::ITEM: return setItemMember(value);
    case Part::VALUE: return setValueMember(value);
    case Part::BYTES: return setBytesMember(value);
    default: refuse("it is no object");
  }
}

void JsonItems::endObject() {
  switch (levels.back().part) {
    case Part::ITEM: return finishItem();
    case Part::VALUE: return finishValue();
    default: return finishBytes();
  }
}

void JsonItems::endArray() { levels.pop_back(); }

// --- Members -------------------------------------------------------------------------------------

bool JsonItems::isAt(Part part, const char* member) const {
  const Level& level = levels.back();
  if (level.part != part) return false;
  const Members& members = part == Part::ITEM ? ITEM_MEMBERS : VALUE_MEMBERS;
  return members[level.memberIndex] == member;
}

bool JsonItems::hasSeen(const char* member) const {
  const Level& level = levels.back();
  const Members& members = level.part == Part::ITEM ? ITEM_MEMBERS : VALUE_MEMBERS;
  const auto found = std::find(members.begin(), members.end(), member);
  return (level.seenMembers >> std::distance(members.begin(), found) & 1U) != 0;
}

void JsonItems::setItemMember(const JsonScalar& value) {
  OpenItem& item = openItems.back();
  if (isAt(Part::ITEM, "name")) {
    item.name = getBytes(value);
  } else if (isAt(Part::ITEM, "kind")) {
    item.kind = getText(value);
  } else if (isAt(Part::ITEM, "template")) {
    item.templateName = getBytes(value);
  } else if (isAt(Part::ITEM, "array")) {
    item.arrayCount = getCount(value);
  } else if (isAt(Part::ITEM, "folded")) {
    item.isFolded = getBool(value);
  } else {
    refuse("it is no array");
  }
}

void JsonItems::setValueMember(const JsonScalar& value) {
  JsonValue& open = openValues.back().value;
  if (isAt(Part::VALUE, "type")) {
    open.type = getText(value);
  } else if (isAt(Part::VALUE, "value")) {
    open.content = value;
  } else if (isAt(Part::VALUE, "name")) {
    open.groupName = getBytes(value);
  } else if (isAt(Part::VALUE, "items")) {
    refuse("it is no array");
  } else if (value.kind == JsonScalar::NOTHING) {
    open.spelling = JsonValue::Spelling::NONE;
  } else {
    open.text = getBytes(value);
    open.spelling = JsonValue::Spelling::GIVEN;
  }
}

void JsonItems::setBytesMember(const JsonScalar& value) {
  const std::string& digits = getText(value);
  if (levels.back().memberIndex == 0) {
    bytes.kind = JsonScalar::BLOCK;
    if (!decodeBase64(digits, bytes.text)) refuse("this is no base64");
  } else {
    bytes.kind = JsonScalar::BITS;
    bytes.bits = readBits(digits);
  }
}

// --- What is complete ----------------------------------------------------------------------------

void JsonItems::finishItem() {
  if (!hasSeen("name")) refuse("an item has no name");
  OpenItem open = std::move(openItems.back());
  openItems.pop_back();
  levels.pop_back();
  auto item = std::make_unique<ParserItem>(open.name, getKind(open.kind, open.name), 0UL, 0UL);
  item->setArray(open.arrayCount != ParserItem::NO_ARRAY, open.arrayCount);
  item->setTemplate(open.templateName);
  item->setFolding(open.isFolded);
  appendValues(open, *item);
  if (settings.use == TreeUse::TEXT && open.name == VERSION_KEYWORD) {
    result.hasVersions = true;
  } else if (openValues.empty()) {
    adopt(root, item);
  } else {
    openValues.back().items.push_back(std::move(item));
  }
}

void JsonItems::appendValues(OpenItem& open, ParserItem& item) const {
  for (std::size_t i = 0; i < open.values.size(); ++i) {
    try {
      open.values[i].appendTo(item, settings.use);
    } catch (const JsonFault& fault) {
      refuse("value " + std::to_string(i + 1) + ": " + fault.what());
    }
  }
}

void JsonItems::finishValue() {
  OpenValue open = std::move(openValues.back());
  openValues.pop_back();
  const bool isGroup = hasSeen("items") || open.value.type == "group";
  levels.pop_back();
  if (isGroup) {
    open.value.group = std::make_unique<ParserGroup>(open.value.groupName);
    for (std::unique_ptr<ParserItem>& item : open.items)
      adopt(*open.value.group, item);
  }
  openItems.back().values.push_back(std::move(open.value));
}

/// Bytes stand for a value of the object around theirs.
void JsonItems::finishBytes() {
  const unsigned seen = levels.back().seenMembers;
  if (seen != 1 && seen != 2) refuse("one of base64 and bits has to be given");
  levels.pop_back();
  const JsonScalar value = std::move(bytes);
  scalar(value);
}

}  // namespace Tool
