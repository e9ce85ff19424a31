/// What a document's tree holds, in numbers.
#pragma once

#include <Quarry/ParserGroup.h>

#include <map>
#include <string>

namespace DocumentCheck {

/// The counts of one document by their names:
///
/// - "items": plain items and calls; keywords are not counted
/// - "calls", "empty": the items that are calls, that have no values
/// - "values": of all kinds; of them "groups", "ints", "doubles", "bools", "strings", "blocks"
/// - "string_bytes": of all strings, unescaped
/// - "depth": of the deepest group, the root being 1
/// - "number_sum", "number_magnitude": of all ints and doubles, of their absolute values
using Counts = std::map<std::string, double>;

/// Counts everything below `root`. Every number and string is converted for that.
Counts count(const Quarry::ParserGroup& root);

}  // namespace DocumentCheck
