/// Why edits are refused.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include <map>
#include <string>
#include <vector>

#include "SourceEdit.h"

namespace Quarry {

/// Looks for what is known to go wrong in an edit that did not read as asked.
class EditReasons {
 public:
  /// @param itsDocument as it is; both have to outlive this
  EditReasons(const SourceDocument& itsDocument, const SourceEdit& itsEdit)
      : document(itsDocument), edit(itsEdit) {}

  /// Returns the reason; empty where it is none of the known ones.
  std::string explain(const FileChanges& changes) const;

 private:
  std::string explainLiteral(const SourceLiteral& literal) const;

  const SourceDocument& document;
  const SourceEdit& edit;
};

/// Changes by the paths of their files.
using ChangesByPath = std::map<std::string, std::vector<const FileChange*>>;

/// Tells of a changed file that the document has under another path as well; empty for none.
std::string findSharedFile(const SourceDocument& document, const ChangesByPath& changes);

/// Returns why the text of a file cannot be stored in its place; empty where it can.
std::string findStorageProblem(const SourceDocument& document, const SourceFile& file);

/// Tells whether a file on the disk holds exactly these bytes.
bool holdsBytes(const std::string& path, const std::string& bytes);

/// Returns a directive of which there are more than before; empty where there is none.
std::string findNewMarker(const std::string& before, const std::string& after);

}  // namespace Quarry
