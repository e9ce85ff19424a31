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

/// Writes the document in the binary form, to the file `target` or, for `-`, to `output`.
void encode(const Document& document, const std::string& target, Output& output);

/// Writes the text of a document in the binary form, to the file `target` or, for `-`, to `output`.
void decode(const Document& document, const std::string& target, Output& output);

/// What `find` looks for.
struct Search {
  std::string pattern;
  bool inverted;             ///< items whose name does not match
  unsigned long depthLimit;  ///< the number of groups around an item, at most
};

/// Shows the items that are looked for, with their paths, one a line.
/// @return whether there is one
bool find(const Document& document, const Search& search, Output& output);

}  // namespace Tool
