/// Editing documents where they stand.
#pragma once

#include <QuarrySource/SourceEditor.h>
#include <QuarrySource/SourceLiteral.h>

#include "CommandTable.h"
#include "SourceOptions.h"

#include <functional>
#include <string>
#include <vector>

namespace Tool {

/// What every command that edits takes.
struct EditOptions : SourceOptions {
  std::string file;
  std::string path;
  std::string target;  ///< where the top file's new text goes; empty for its own place

  /// Adds FILE, PATH, --output and what SourceOptions adds.
  void addTo(Command& command, const std::string& pathDescription);
};

/// Values as they are given on the command line.
struct EditValues {
  std::vector<std::string> words;
  bool areStrings = false;

  /// Adds VALUE... and --string.
  void addTo(Command& command);

  /// A word that is spelled as a value is that value; any other is the content of a string.
  std::vector<Quarry::SourceLiteral> getLiterals() const;
};

/// Reads the document, edits it and writes what has changed.
/// @param existing the path of what has to be there; nothing is edited where it is not
/// @param change makes the edit and returns whether it was made
/// @return FINDINGS where `existing` is not there. A Failure is thrown where the edit is refused.
ExitStatus edit(const EditOptions& options, const std::string& existing,
                const std::function<bool(Quarry::SourceEditor&)>& change);

}  // namespace Tool
