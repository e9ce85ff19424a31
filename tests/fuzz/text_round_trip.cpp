// A text is read and written; what was written reads back as the same tree and is written the same.
// Known exceptions: Hazards.h.

#include <Quarry/ParserFile.h>

#include "Folder.h"
#include "Fuzz.h"
#include "Hazards.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;

namespace {

void checkText(const ParserGroup& root, bool multiline) {
  const Fuzz::Hazards hazards(root, multiline);
  require(!hazards.hasRawByte && !hazards.hasForeignName && !hazards.hasValueBehindGroup);
  if (hazards.harmText() || (multiline && hazards.depth > Fuzz::DEEPEST_MULTILINE)) return;
  const std::string text = Fuzz::writeText(root, multiline);
  ParserGroup again("root");
  again.setText(text, 1.1);
  require(Fuzz::writeText(again, multiline) == text);
  require(again.getBinary(false) == root.getBinary(false));
}

void checkFile(const std::string& source, double version) {
  static const Fuzz::Folder folder;
  Quarry::ParserFile file;
  ParserGroup& root = file.getRoot();
  root.setText(source, version);
  const Fuzz::Hazards hazards(root, true);
  if (hazards.depth > Fuzz::DEEPEST_MULTILINE) return;
  const std::string text = Fuzz::writeText(root, true);
  if (hazards.harmFile(text)) return;
  require(file.write(folder.getPath("document")));
  Quarry::ParserFile again;
  require(again.read(folder.getPath("document")));
  require(Fuzz::writeText(again.getRoot(), true) == text);
  require(again.getBinary() == file.getBinary());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const unsigned choice = input.takeChoice();
  const double version = choice % 2 == 0 ? 1.1 : 1.0;
  if (choice / 2 % 2 == 1) {
    checkFile(input.getBytes(), version);
    return 0;
  }
  ParserGroup root("root");
  root.setText(input.getBytes(), version);
  checkText(root, false);
  checkText(root, true);
  return 0;
}
