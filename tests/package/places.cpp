// Finds the places of a mistake and of an item in a document of two files.

#include <QuarrySource/SourceTree.h>

#include <fstream>
#include <iostream>
#include <string>

namespace {

int fail(const std::string& reason) {
  std::cerr << "places: " << reason << '\n';
  return 1;
}

}  // namespace

int main() {
  std::ofstream("places.cfg") << "// Harbor\n#include \"camera.cfg\"\n";
  std::ofstream("camera.cfg") << "camera {\n  fov 39.6 ?!\n}\n";

  Quarry::SourceDocument document;
  if (!document.read("places.cfg")) return fail("the document cannot be read");
  if (document.getDiagnostics().size() != 1) return fail("wrong number of diagnostics");
  const Quarry::SourceDiagnostic& diagnostic = document.getDiagnostics().front();
  const Quarry::SourcePlace place = document.getPlace(diagnostic);
  if (place.path != "camera.cfg" || place.line != 2 || place.column != 12) {
    return fail("wrong place");
  }
  if (place.includedFrom.size() != 1 || place.includedFrom[0].line != 2) {
    return fail("wrong include");
  }
  if (document.describe(diagnostic) != "Unknown word type: '?!'") return fail("wrong sentence");
  if (std::string(Quarry::getRuleName(diagnostic.rule)) != "unknown-word") {
    return fail("wrong rule");
  }

  const Quarry::SourceTree tree(document);
  const Quarry::SourceTarget target = tree.find("camera/fov#1");
  if (!target.isFound()) return fail(target.problem);
  const Quarry::SourceValue& value = tree.getValue(tree.getItem(target.item), target.value);
  if (tree.getSpelling(value) != "39.6") return fail("wrong value");
  return 0;
}
