#include "JsonObjectWriter.h"

#include <Plinth/Label.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/TreeWalker.h>

#include "ItemDisplay.h"
#include "JsonReader.h"
#include "JsonText.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <vector>

namespace Tool {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr unsigned long BLANKS_A_LEVEL = 2;
constexpr unsigned long DEEPEST_INDENTATION = 40;

const char* passDigits(const char* text) {
  while (*text >= '0' && *text <= '9')
    ++text;
  return text;
}

/// Tells whether a double is spelled as JSON spells numbers, and as one that is not whole, so that
/// it is a double again when it is read.
bool isJsonDouble(const std::string& spelling) {
  const char* text = spelling.c_str();
  if (*text == '-') ++text;
  const char* behind = passDigits(text);
  if (behind == text || (*text == '0' && behind > text + 1)) return false;
  const char* whole = behind;
  if (*behind == '.') {
    text = behind + 1;
    behind = passDigits(text);
    if (behind == text) return false;
  }
  if (*behind == 'e') {
    text = behind + 1;
    if (*text == '+' || *text == '-') ++text;
    behind = passDigits(text);
    if (behind == text) return false;
  }
  return behind > whole && behind == spelling.c_str() + spelling.size();
}

/// Told of a tree by the library's own walker.
class ObjectWriter {
 public:
  explicit ObjectWriter(std::string& text) : out(text) {}

  struct GroupMark {
    unsigned long depth = 0;
  };
  struct ItemMark {
    bool isArray = false;
  };

  /// Has to be called before the walk.
  void begin() { openGroup(); }

  ItemMark beginItem(const ParserItem& item, const GroupMark& group) {
    const bool isCall = item.getType() == ParserItem::ITEM_CALL;
    const std::string name = item.getName() + (isCall ? "()" : "");
    path.push_back(name);
    checkItem(item);
    if (!names.back().insert(name).second)
      refuse("has the name of another item of its group, which the plain form cannot tell apart");
    if (out.back() != '{') out += ',';
    startLine(group.depth + 1);
    appendJsonString(out, name);
    out += ": ";
    const bool isArray = item.getValueCount() > 1;
    if (isArray) out += '[';
    if (item.getValueCount() == 0) out += "null";
    return {isArray};
  }

  void value(const ParserItem& item, unsigned long index, const ParserValue&) {
    separate(index);
    switch (item.getValueType(index)) {
      case ParserValue::TYPE_BOOL: out += item.getBool(index) ? "true" : "false"; break;
      case ParserValue::TYPE_INT: out += Plinth::getLabel(item.getInt(index)); break;
      case ParserValue::TYPE_DOUBLE: return writeDouble(item, index);
      case ParserValue::TYPE_STRING: return writeString(item.getString(index));
      default: refuse("has a value of a type that the plain form does not have");
    }
  }

  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup&,
                       const GroupMark& outer) {
    if (index + 1 < item.getValueCount()) refuse("has a group before another value");
    if (item.getType() == ParserItem::ITEM_CALL) refuse("is a call with a group");
    separate(index);
    openGroup();
    return {outer.depth + 1};
  }

  void endGroup(const GroupMark& group) {
    if (out.back() != '{') startLine(group.depth);
    out += '}';
    names.pop_back();
  }

  void endItem(const ParserItem&, const ItemMark& mark) {
    if (mark.isArray) out += ']';
    path.pop_back();
  }

 private:
  void openGroup() {
    out += '{';
    names.emplace_back();
  }

  void checkItem(const ParserItem& item) const {
    const ParserWord word(item.getName(), true, 1.1);
    const bool isCall = item.getType() == ParserItem::ITEM_CALL;
    if (!word.isIdentifier() && (isCall || !word.isKeyword())) refuse("has no name that is one");
    if (item.isTemplate()) refuse("has a template");
    if (item.isArray()) refuse("has an array size");
    if (Quarry::TreeWalker<ObjectWriter>::isFolded(item)) refuse("is folded");
  }

  void writeDouble(const ParserItem& item, unsigned long index) {
    const double number = item.getDouble(index);
    if (!std::isfinite(number)) refuse("has a number that JSON does not have");
    const std::string spelling = item.getWord(index);
    out += isJsonDouble(spelling) ? spelling : Plinth::getLabel(number);
  }

  void writeString(const std::string& text) {
    if (!isUtf8(text)) refuse("has a string that is no UTF-8");
    appendJsonString(out, text);
  }

  [[noreturn]] void refuse(const std::string& reason) const {
    std::string whole;
    for (const std::string& step : path)
      whole += whole.empty() ? step : "/" + step;
    throw JsonFault("'" + shortenPath(whole) + "' " + reason + "; --to json keeps everything");
  }

  void separate(unsigned long index) {
    if (index > 0) out += ", ";
  }

  void startLine(unsigned long depth) {
    out += '\n';
    out.append(std::min(depth, DEEPEST_INDENTATION) * BLANKS_A_LEVEL, ' ');
  }

  std::string& out;
  std::vector<std::string> path;
  std::vector<std::unordered_set<std::string>> names;  ///< of the groups around the current item
};

}  // namespace

std::string writeJsonObject(const ParserGroup& root) {
  std::string text;
  ObjectWriter writer(text);
  writer.begin();
  Quarry::TreeWalker(writer).walkGroup(root, {});
  return text + "\n";
}

}  // namespace Tool
