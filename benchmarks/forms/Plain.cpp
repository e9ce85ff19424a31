#include "Plain.h"

#include <Quarry/ParserGroup.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <unordered_map>

namespace QuarryBenchmarks {

namespace {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

// --- Numbers -------------------------------------------------------------------------------------

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// Takes digits off the front of a text, and tells whether there were any.
bool takeDigits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count > 0;
}

bool takeByte(std::string_view& text, std::string_view choices) {
  const bool found = !text.empty() && choices.find(text.front()) != std::string_view::npos;
  if (found) text.remove_prefix(1);
  return found;
}

/// number = [ "-" ] , ( "0" | digits ) , [ "." , digits ] , [ "e" , [ sign ] , digits ]
bool isJsonNumber(std::string_view text) {
  takeByte(text, "-");
  if (!takeByte(text, "0") && !takeDigits(text)) return false;
  if (takeByte(text, ".") && !takeDigits(text)) return false;
  if (takeByte(text, "eE")) {
    takeByte(text, "+-");
    if (!takeDigits(text)) return false;
  }
  return text.empty();
}

/// Keeps the spelling where every format understands it.
Plain makeNumber(const ParserItem& item, unsigned long index) {
  const std::string word = item.getWord(index);
  if (isJsonNumber(word)) return {Plain::NUMBER, word};
  const double number = item.getDouble(index);
  if (!std::isfinite(number)) return {};
  char buffer[32];
  const std::to_chars_result end = std::to_chars(std::begin(buffer), std::end(buffer), number);
  return {Plain::NUMBER, std::string(buffer, end.ptr)};
}

// --- Blocks --------------------------------------------------------------------------------------

Plain makeBlock(const ParserItem& item, unsigned long index) {
  const auto* bytes = static_cast<const char*>(item.getBinaryData(index));
  return {Plain::BLOCK, std::string(bytes, item.getBinaryDataSize(index))};
}

// --- Trees ---------------------------------------------------------------------------------------

Plain makeObject(const ParserGroup& group);

Plain makeValue(const ParserItem& item, unsigned long index) {
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_GROUP: return makeObject(*item.getGroup(index));
    case ParserValue::TYPE_BOOL: return {Plain::BOOL, item.getBool(index) ? "true" : "false"};
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE: return makeNumber(item, index);
    case ParserValue::TYPE_STRING: return {Plain::STRING, item.getString(index)};
    case ParserValue::TYPE_BINARYDATA: return makeBlock(item, index);
    case ParserValue::TYPE_EMPTY: break;
  }
  return {};
}

bool isCall(const ParserItem& item) { return item.getType() == ParserItem::ITEM_CALL; }

Plain makeMember(const ParserItem& item) {
  const unsigned long count = item.getValueCount();
  if (!isCall(item) && count == 0) return {};
  if (!isCall(item) && count == 1) return makeValue(item, 0);
  Plain array = {Plain::ARRAY};
  for (unsigned long i = 0; i < count; ++i)
    array.children.push_back(makeValue(item, i));
  return array;
}

/// Turns a member into an array of one, unless it is such an array already.
Plain& makeRepeated(Plain& member, bool& isRepeated) {
  if (!isRepeated) {
    Plain first = std::move(member);
    member = {Plain::ARRAY};
    member.children.push_back(std::move(first));
    isRepeated = true;
  }
  return member;
}

Plain makeObject(const ParserGroup& group) {
  Plain object = {Plain::OBJECT};
  std::unordered_map<std::string, std::size_t> places;
  std::vector<char> isRepeated;
  for (unsigned long i = 0; i < group.getItemCount(); ++i) {
    const ParserItem& item = *group.getItem(i);
    const std::string name = item.getName() + (isCall(item) ? "()" : "");
    const auto [place, isNew] = places.try_emplace(name, object.names.size());
    if (isNew) {
      object.names.push_back(name);
      object.children.push_back(makeMember(item));
      isRepeated.push_back(0);
      continue;
    }
    bool repeated = isRepeated[place->second] != 0;
    makeRepeated(object.children[place->second], repeated).children.push_back(makeMember(item));
    isRepeated[place->second] = 1;
  }
  return object;
}

}  // namespace

Plain makePlain(const Workload& workload) {
  ParserGroup root("root");
  root.setText(workload.text, workload.version);
  return makeObject(root);
}

std::string makeBlockText(const Plain& block) {
  constexpr std::string_view DIGITS =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::string& bytes = block.text;
  std::string text = "b64:";
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    unsigned long bits = 0;
    for (std::size_t k = 0; k < 3; ++k)
      bits = bits << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0UL);
    for (std::size_t k = 0; k < 4; ++k)
      text += k <= count ? DIGITS[bits >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

bool holdsObject(const Plain& value) {
  return value.kind == Plain::OBJECT ||
         std::any_of(value.children.begin(), value.children.end(), holdsObject);
}

}  // namespace QuarryBenchmarks
