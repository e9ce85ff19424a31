/// A value in the JSON form that keeps everything.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>

#include "JsonReader.h"

#include <memory>
#include <optional>
#include <string>

namespace Tool {

/// The members of {"type":"int","value":1,"text":"+1"}, as they are read.
struct JsonValue {
  enum class Spelling {
    STANDARD,  ///< none was given
    GIVEN,
    NONE  ///< null: the value holds data and no text
  };

  std::string type;
  std::optional<JsonScalar> content;
  Spelling spelling = Spelling::STANDARD;
  std::string text;       ///< where it is given
  std::string groupName;  ///< of a group
  std::unique_ptr<Quarry::ParserGroup> group;

  /// Appends the value to an item. Throws a JsonFault for members that do not fit.
  void appendTo(Quarry::ParserItem& item, TreeUse use);
};

}  // namespace Tool
