/// A line of a document with a mark below it.
#pragma once

#include "Finding.h"
#include "Output.h"

namespace Tool {

/// Writes the line of a finding, and below it `^~~~` where the finding is. A long line is cut on
/// both sides of that. Nothing is written for an empty line.
void writeExcerpt(Output& output, const Finding& finding);

/// Returns how many columns a text takes on a screen; tabs count as one.
unsigned long getDisplayWidth(std::string_view text);

}  // namespace Tool
