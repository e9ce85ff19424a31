/// Items of a document as JSON, for scripts.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>

namespace Tool {

/// Appends "kind":"plain","values":[...] with the values that the JSON form gives them. A group
/// stands without its items.
void appendItemJson(std::string& out, const Quarry::SourceTree& tree, unsigned long index);

}  // namespace Tool
