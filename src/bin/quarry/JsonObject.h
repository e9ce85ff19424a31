/// Reads plain JSON: an object whose members become items.
#pragma once

#include <Quarry/ParserGroup.h>

#include "JsonReader.h"

#include <string>
#include <vector>

namespace Tool {

/// Makes a tree of what it is told. What is not complete waits in a list: the depth takes memory,
/// not stack.
class JsonObject : public JsonListener {
 public:
  JsonObject(Quarry::ParserGroup& target, const JsonSettings& given)
      : root(target), settings(given), leftOut(std::string()) {}

  void beginObject() override;
  void member(const std::string& name) override;
  void endObject() override;
  void beginArray() override;
  void endArray() override;
  void scalar(const JsonScalar& value) override;

  JsonResult getResult() const { return result; }

 private:
  /// What an array turned out to be.
  enum class Part {
    GROUP,            ///< no array: an object
    ARRAY,            ///< still empty
    VALUES,           ///< of one item
    VALUES_OF_GROUP,  ///< of one item, its group behind them
    ITEMS             ///< of one name
  };

  struct Level {
    Part part;
    Quarry::ParserGroup* group;          ///< in which items are made
    std::string name;                    ///< of the current member, or of the items of an array
    Quarry::ParserItem* item = nullptr;  ///< the one whose values are read
    bool isInner = false;                ///< an array within an array
  };

  Quarry::ParserItem* makeItem(const Level& level);
  void openGroup(Quarry::ParserItem& item);

  Quarry::ParserGroup& root;
  const JsonSettings settings;
  JsonResult result;
  Quarry::ParserGroup leftOut;
  std::vector<Level> levels;
  unsigned long depth = 0;  ///< of the groups that are open, the root not counted
};

}  // namespace Tool
