/// Writes trees in the JSON form that keeps everything.
#pragma once

#include <Quarry/ParserGroup.h>

#include <string>

namespace Tool {

/// Where a tree comes from.
enum class TreeOrigin {
  /// Its numbers are spelled, or hold data on purpose, and its items know what they are.
  TEXT,
  /// Its numbers hold data because the binary form has nothing else, and its keywords are plain
  /// items.
  BINARY
};

/// Returns the items of a root group as an array of objects, one a line. A tree of any depth takes
/// memory, not stack.
std::string writeJson(const Quarry::ParserGroup& root, TreeOrigin origin);

/// Appends a value that is no group, without its type: 1, true, "text", {"base64":"..."}.
void appendJsonContent(std::string& out, const Quarry::ParserItem& item, unsigned long index);

/// Appends a value of an item: {"type":"int","value":1}. A group is {"type":"group"}.
void appendJsonValue(std::string& out, const Quarry::ParserItem& item, unsigned long index);

/// Returns the kind of an item: "plain", "keyword" or "call".
const char* getKindName(Quarry::ParserItem::Type type);

}  // namespace Tool
