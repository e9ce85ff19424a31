/// Shows what a new layout changes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// A line of a unified diff: "---", "+++", "@@", or " ", "-", "+" and "\" with what follows.
struct DiffLine {
  enum Kind { FILE, PLACE, COMMON, REMOVED, ADDED, NOTE };

  Kind kind;
  std::string text;  ///< without its line feed
};

/// Returns the unified diff, with three lines of context, of two texts that differ in blanks and
/// line ends only: which bytes stand on a line tells which lines belong together, in linear time.
/// Empty for equal texts.
std::vector<DiffLine> diffLayouts(const std::string& name, std::string_view before,
                                  std::string_view after);

}  // namespace Tool
