/// Makes an edit on a copy of a document and finds out whether it reads as asked.
#pragma once

#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceTree.h>

#include <map>
#include <string>

#include "SourceEdit.h"

namespace Quarry {

/// Tries one way after the other until one of them gives exactly what is asked.
class EditCheck {
 public:
  /// @param events those of the document as it is; all three have to outlive this
  EditCheck(const SourceDocument& itsDocument, const TreeEvents& itsEvents,
            const SourceEdit& itsEdit)
      : document(itsDocument), events(itsEvents), edit(itsEdit) {}

  /// Tells whether there is a way. getProblem() tells why not.
  bool run();

  const std::string& getProblem() const { return problem; }

  /// The document with the edit, and its changed files by path.
  SourceDocument& getCandidate() { return candidate; }
  const std::map<std::string, std::string>& getTexts() const { return texts; }

 private:
  bool tryWay(const FileChanges& changes);
  bool applyChanges(const FileChanges& changes);
  bool checkMarkers();
  bool checkFiles();
  bool checkOpenings();
  bool checkDiagnostics();
  const TreeEvent* getExpected(unsigned long index) const;
  bool checkEvents();
  bool checkValues(const SourceTree& newTree);
  bool refuse(const std::string& reason);

  const SourceDocument& document;
  const TreeEvents& events;
  const SourceEdit& edit;
  SourceDocument candidate;
  std::map<std::string, std::string> texts;
  std::string problem;
};

}  // namespace Quarry
