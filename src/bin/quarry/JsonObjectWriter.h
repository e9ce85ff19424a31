/// Writes trees as plain JSON.
#pragma once

#include <Quarry/ParserGroup.h>

#include <string>

namespace Tool {

/// Returns a tree as an object with a member for each item. Throws a JsonFault, with the path of
/// the item, where that would lose something that the plain form has no room for.
std::string writeJsonObject(const Quarry::ParserGroup& root);

}  // namespace Tool
