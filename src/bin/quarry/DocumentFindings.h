/// Everything that a check finds in a document.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include "Finding.h"

#include <functional>
#include <string>
#include <vector>

namespace Tool {

/// Takes a finding; what it refers to is good until it returns.
using FindingTaker = std::function<void(const Finding&)>;

/// Returns the rules of what follows: those of the source layer and the tool's own.
std::vector<Rule> getFindingRules();

/// A document that was read, or could not be.
struct CheckedDocument {
  const Quarry::SourceDocument& source;
  std::string name;     ///< of the top file, as it was asked for; empty for standard input
  std::string input;    ///< what standard input had; empty for a file
  std::string path;     ///< what the top file is called in findings about no place
  bool isRead = false;  ///< what reading returned
};

/// Finds what the library warns of and what it passes over in silence.
void findDiagnostics(const CheckedDocument& document, const FindingTaker& take);

/// Finds files that begin with a byte order mark, which the library takes for part of a word.
void findByteOrderMarks(const CheckedDocument& document, const FindingTaker& take);

/// Finds compressed files that lack the markers before their line feeds.
void findUnmarkedFiles(const CheckedDocument& document, const FindingTaker& take);

}  // namespace Tool
