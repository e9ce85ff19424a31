/// Reads the JSON form that keeps everything: an array of items.
#pragma once

#include <Quarry/ParserGroup.h>

#include "JsonReader.h"
#include "JsonValue.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tool {

/// Makes a tree of what it is told.
///
/// The members of an object may come in any order. So an item is made when its object ends, and
/// what is not complete waits in lists: the depth takes memory, not stack.
class JsonItems : public JsonListener {
 public:
  JsonItems(Quarry::ParserGroup& target, const JsonSettings& given)
      : root(target), settings(given) {}

  void beginObject() override;
  void member(const std::string& name) override;
  void endObject() override;
  void beginArray() override;
  void endArray() override;
  void scalar(const JsonScalar& value) override;

  JsonResult getResult() const { return result; }

 private:
  using Items = std::vector<std::unique_ptr<Quarry::ParserItem>>;

  /// Of what an array or object is.
  enum class Part { ITEMS, ITEM, VALUES, VALUE, BYTES };

  struct Level {
    Part part;
    unsigned memberIndex = 0;  ///< in the list of those that the part may have
    unsigned seenMembers = 0;  ///< a bit for each
  };

  struct OpenItem {
    std::string name;
    std::string kind;
    std::string templateName;
    unsigned long arrayCount = Quarry::ParserItem::NO_ARRAY;
    bool isFolded = false;
    std::vector<JsonValue> values;
  };

  struct OpenValue {
    JsonValue value;
    Items items;  ///< of a group
  };

  bool isAt(Part part, const char* member) const;
  bool hasSeen(const char* member) const;
  void setItemMember(const JsonScalar& value);
  void setValueMember(const JsonScalar& value);
  void setBytesMember(const JsonScalar& value);
  void finishItem();
  void appendValues(OpenItem& open, Quarry::ParserItem& item) const;
  void finishValue();
  void finishBytes();

  Quarry::ParserGroup& root;
  const JsonSettings settings;
  JsonResult result;
  std::vector<Level> levels;
  std::vector<OpenItem> openItems;
  std::vector<OpenValue> openValues;
  JsonScalar bytes;  ///< the block, or the bits, that are being read
};

}  // namespace Tool
