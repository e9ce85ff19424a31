#include "JsonWriter.h"

#include <Plinth/Label.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/TreeWalker.h>

#include "JsonNumber.h"
#include "JsonText.h"
#include "TypeName.h"

#include <algorithm>

namespace Tool {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr unsigned long BLANKS_A_LEVEL = 2;
constexpr unsigned long DEEPEST_INDENTATION = 40;  ///< the blanks would be most of a deeper tree

bool hasNumber(ParserValue::Type type) {
  return type >= ParserValue::TYPE_BOOL && type <= ParserValue::TYPE_DOUBLE;
}

/// Returns how a value is spelled where nothing else is said.
std::string getStandardText(const ParserItem& item, unsigned long index) {
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_BOOL: return item.getBool(index) ? "yes" : "no";
    case ParserValue::TYPE_CHAR: return Plinth::getLabel(item.getChar(index));
    case ParserValue::TYPE_INT: return Plinth::getLabel(item.getInt(index));
    case ParserValue::TYPE_DOUBLE: return spellDouble(item.getDouble(index));
    default: return std::string();
  }
}

/// Appends type and value, without what closes them.
void openValue(std::string& out, const ParserItem& item, unsigned long index) {
  const ParserValue::Type type = item.getValueType(index);
  out += "{\"type\":\"";
  out += getTypeName(type);
  out += '"';
  if (type == ParserValue::TYPE_GROUP || type == ParserValue::TYPE_EMPTY) return;
  out += ",\"value\":";
  appendJsonContent(out, item, index);
}

/// Appends the spelling of a value that has one of its own.
void appendText(std::string& out, const ParserItem& item, unsigned long index) {
  if (item.getValueType(index) == ParserValue::TYPE_STRING ||
      item.getValueType(index) == ParserValue::TYPE_BINARYDATA) {
    return;
  }
  const std::string text = item.getWord(index);
  if (text.empty() || text == getStandardText(item, index)) return;
  out += ",\"text\":";
  appendJsonBytes(out, text);
}

/// Told of a tree by the library's own walker.
class JsonWriter {
 public:
  JsonWriter(std::string& text, TreeOrigin treeOrigin) : out(text), origin(treeOrigin) {}

  struct GroupMark {
    unsigned long depth = 0;
    bool isRoot = true;
  };
  struct ItemMark {};

  ItemMark beginItem(const ParserItem& item, const GroupMark& group) {
    if (out.back() != '[') out += ',';
    startLine(group.depth + 1);
    out += "{\"name\":";
    appendJsonBytes(out, item.getName());
    out += ",\"kind\":\"";
    out += getKindName(getKind(item));
    out += '"';
    appendDetails(item);
    out += ",\"values\":[";
    return {};
  }

  void value(const ParserItem& item, unsigned long index, const ParserValue& value) {
    separate(index);
    openValue(out, item, index);
    appendText(out, item, index);
    if (hasNumber(value.getType()) && item.getWord(index).empty()) appendLackOfText(value);
    out += '}';
  }

  GroupMark beginGroup(const ParserItem&, unsigned long index, const ParserGroup& group,
                       const GroupMark& outer) {
    separate(index);
    out += "{\"type\":\"group\"";
    if (!group.getName().empty()) {
      out += ",\"name\":";
      appendJsonBytes(out, group.getName());
    }
    out += ",\"items\":[";
    return {outer.depth + 1, false};
  }

  void endGroup(const GroupMark& group) {
    if (out.back() != '[') startLine(group.depth);
    out += group.isRoot ? "]\n" : "]}";
  }

  void endItem(const ParserItem&, const ItemMark&) { out += "]}"; }

 private:
  ParserItem::Type getKind(const ParserItem& item) const {
    const bool isUnknown = origin == TreeOrigin::BINARY;
    const bool isKeyword = isUnknown && ParserWord(item.getName(), true, 1.1).isKeyword();
    return isKeyword ? ParserItem::ITEM_KEYWORD : item.getType();
  }

  void appendDetails(const ParserItem& item) {
    if (item.isTemplate()) {
      out += ",\"template\":";
      appendJsonBytes(out, item.getTemplate());
    }
    if (item.isArray()) out += ",\"array\":" + std::to_string(item.getArrayCount());
    if (Quarry::TreeWalker<JsonWriter>::isFolded(item)) out += ",\"folded\":true";
  }

  /// A number without a text is not one with an empty text, which is written as nothing. A bool
  /// without one is written as any other.
  void appendLackOfText(const ParserValue& value) {
    // Asking makes a text, which the value itself shall not get.
    const ParserValue copy(value);  // NOLINT(performance-unnecessary-copy-initialization)
    std::string text;
    copy.getText(text, false, 1);
    if (text.empty()) {
      out += ",\"text\":\"\"";
    } else if (origin == TreeOrigin::TEXT && value.getType() != ParserValue::TYPE_BOOL) {
      out += ",\"text\":null";
    }
  }

  void separate(unsigned long index) {
    if (index > 0) out += ',';
  }

  void startLine(unsigned long depth) {
    out += '\n';
    out.append(std::min(depth, DEEPEST_INDENTATION) * BLANKS_A_LEVEL, ' ');
  }

  std::string& out;
  const TreeOrigin origin;
};

}  // namespace

std::string writeJson(const ParserGroup& root, TreeOrigin origin) {
  std::string text = "[";
  JsonWriter writer(text, origin);
  Quarry::TreeWalker(writer).walkGroup(root, {});
  return text;
}

void appendJsonContent(std::string& out, const ParserItem& item, unsigned long index) {
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_BOOL: out += item.getBool(index) ? "true" : "false"; break;
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT: out += getStandardText(item, index); break;
    case ParserValue::TYPE_DOUBLE: appendJsonDouble(out, item.getDouble(index)); break;
    case ParserValue::TYPE_STRING: appendJsonBytes(out, item.getString(index)); break;
    default:
      appendJsonBlock(out, {static_cast<const char*>(item.getBinaryData(index)),
                            item.getBinaryDataSize(index)});
  }
}

void appendJsonValue(std::string& out, const ParserItem& item, unsigned long index) {
  openValue(out, item, index);
  appendText(out, item, index);
  out += '}';
}

const char* getKindName(ParserItem::Type type) {
  switch (type) {
    case ParserItem::ITEM_KEYWORD: return "keyword";
    case ParserItem::ITEM_CALL: return "call";
    default: return "plain";
  }
}

}  // namespace Tool
