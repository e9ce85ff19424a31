/// How an item of a document is shown.
#pragma once

#include <QuarrySource/SourceTree.h>

#include "ItemLine.h"
#include "Output.h"

#include <memory>
#include <string>

namespace Tool {

/// Returns a copy of an item, with its values and without its group.
std::unique_ptr<Quarry::ParserItem> copyValues(const Quarry::SourceTree& tree, unsigned long index);

/// Returns a value as it is spelled in a document of the latest format version.
std::string getSpelling(const Quarry::ParserItem& item, unsigned long index);

/// Returns what stands for a path on a line: all of it up to 1000 bytes, else "..." and its end,
/// of whole names, and the item's own name in any case.
std::string shortenPath(const std::string& path);

/// Writes the line `scene/blur (call): int 4, bool no`.
/// @param style of the path
void writeItem(ItemLine& line, Style style, const std::string& path, const Quarry::SourceTree& tree,
               unsigned long index);

}  // namespace Tool
