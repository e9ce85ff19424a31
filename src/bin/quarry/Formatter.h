/// Lays out a file of a document anew.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include "FormatStyle.h"

#include <string>

namespace Tool {

/// Returns the top file of a document in the tool's layout:
///
/// - one item a line, indented by its depth; a brace that closes a group stands on its own line;
/// - `name value value`, `name = value, value`, `name(value, value)`, `name {`;
/// - values stay on the lines on which people put them, indented by one level more;
/// - comments, includes and version lines stay behind what they follow, or on lines of their own;
/// - one blank line at most, and none at the beginning and the end.
///
/// Words and comments are never changed, and what is behind a brace that ends the document is left
/// as it is. The document must have been read without failure.
std::string formatFile(const Quarry::SourceDocument& document, const FormatStyle& style);

}  // namespace Tool
