/// What of a document would not survive being rewritten.
#pragma once

#include "DocumentFindings.h"

#include <vector>

namespace Tool {

/// Returns the rules of what a rewrite would change.
std::vector<Rule> getRewriteRules();

/// Finds the items and values that writing the document and reading it back would change. Nothing
/// is found in a document that cannot be read. The library's warnings come once more, on
/// Plinth::console.
void findRewriteHazards(const CheckedDocument& document, const FindingTaker& take);

}  // namespace Tool
