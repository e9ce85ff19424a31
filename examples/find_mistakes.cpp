// Shows what is wrong in a document, and exactly where.
#include <QuarrySource/SourceDiagnostic.h>
#include <QuarrySource/SourceDocument.h>

#include <iostream>
#include <string>

using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourcePlace;

namespace {

/// "file:line:column", as editors understand it.
std::string getLabel(const SourcePlace& place) {
  return place.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

void show(const SourceDocument& document, const SourceDiagnostic& diagnostic) {
  const SourcePlace place = document.getPlace(diagnostic);
  std::cout << getLabel(place) << ": " << document.describe(diagnostic) << " ["
            << getRuleName(diagnostic.rule) << "]\n";
  for (const SourcePlace& include : place.includedFrom)
    std::cout << "    included from " << getLabel(include) << "\n";
}

}  // namespace

int main() {
  SourceDocument document;

  // Texts may stand in for files: for what is open in an editor and not saved yet.
  document.setText("lamps.cfg",
                   "lamp {\n"
                   "    channel 1,,  // one comma too many\n"
                   "    name front\n"
                   "}\n");
  document.setText("show.cfg",
                   "title \"Midsummer\"\n"
                   "#include \"lamps.cfg\"\n"
                   "#include \"cues.cfg\"\n"
                   "stage {\n");

  const bool isRead = document.read("show.cfg");
  std::cout << (isRead ? "read\n" : "not read\n");
  for (const SourceDiagnostic& diagnostic : document.getDiagnostics())
    show(document, diagnostic);

  // With the missing file, the rest can be looked at as well.
  document.setText("cues.cfg", "cue {}\n");
  std::cout << (document.readAgain() ? "read\n" : "not read\n");
  for (const SourceDiagnostic& diagnostic : document.getDiagnostics())
    show(document, diagnostic);
}
