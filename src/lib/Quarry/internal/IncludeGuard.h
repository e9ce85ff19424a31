/// Keeps the files of a document within the limits that a program has set.
#pragma once

#include <Quarry/ParserLimits.h>

#include "Diagnostic.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Quarry {

/// Knows which files are open, each included by the one before it, and how much they hold. Without
/// limits it keeps no books and objects to nothing.
class IncludeGuard {
 public:
  /// Why a file may not be opened.
  struct Objection {
    FileDiagnostic diagnostic;
    std::string message;
  };

  /// @param limits of the document
  /// @param paths the search paths; they must outlive the guard
  IncludeGuard(const ParserLimits& limits, const std::vector<std::string>& paths);

  /// Looks at a file that is to be opened.
  /// @param name the file's name as it was asked for
  /// @param path where it was found
  /// @return why it may not be; nothing when it may
  std::optional<Objection> object(const std::string& name, const std::string& path) const;

  /// Returns how many bytes further files may have; loading them lowers it.
  unsigned long& getAllowance() { return allowance; }

  /// Returns the warning about a file that has more.
  std::string objectToSize(const std::string& name) const;

  /// Takes note that a file was opened, and that the innermost one ended.
  void open(const std::string& name, const std::string& path);
  void close();

 private:
  struct OpenFile {
    std::string name;
    std::string path;
  };

  std::string describeCycle(const std::string& name, const std::string& path) const;
  bool liesBelowSearchPaths(const std::string& name, const std::string& path) const;

  const ParserLimits limits;
  const bool isWatching;
  const std::vector<std::string>& searchPaths;
  unsigned long allowance;
  std::vector<OpenFile> files;  ///< the top file first
  std::set<std::string> paths;  ///< of `files`
};

}  // namespace Quarry
