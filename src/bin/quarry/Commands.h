/// The commands, one source file each. What they write is buffered: main() flushes it.
#pragma once

#include "Document.h"
#include "Output.h"

#include <string>

namespace Tool {

/// Shows the items as a tree, one a line; no deeper than `depthLimit` groups.
void showTree(const Document& document, unsigned long depthLimit, Output& output);

/// Shows the words into which the text is cut, one a line.
void showWords(const Document& document, Output& output);

/// Writes the text with includes expanded and comments dropped.
void writeExpanded(const Document& document, Output& output);

/// Reads the document and writes it as the library does, to the file `target` or, for `-`, to
/// `output`.
void rewrite(const Document& document, const std::string& target, Output& output);

}  // namespace Tool
