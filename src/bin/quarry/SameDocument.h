/// Tells whether a new layout left a document as it was.
#pragma once

#include <QuarrySource/SourceDocument.h>

namespace Tool {

/// Tells whether two documents mean the same and have lost nothing: they have the same version,
/// words, items, values and diagnostics, and their top files the same comments, includes and
/// version lines, all in the same order. Layout is free, and so is how a comment's line ends.
bool areSame(const Quarry::SourceDocument& first, const Quarry::SourceDocument& second);

}  // namespace Tool
