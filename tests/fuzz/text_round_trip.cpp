// A text is read and written; what was written reads back as the same tree and is written the same.
// Known exceptions: Hazards.h.

#include "Fuzz.h"
#include "Hazards.h"
#include "RoundTrip.h"
#include "Trees.h"

using Fuzz::require;
using Quarry::ParserGroup;

namespace {

void checkText(const ParserGroup& root, bool multiline) {
  const Fuzz::Hazards hazards(root, multiline);
  require(!hazards.hasRawByte && !hazards.hasForeignName && !hazards.hasValueBehindGroup);
  if (hazards.harmText()) return;
  const ParserGroup again = Fuzz::readBackText(root, multiline);
  require(Fuzz::writeText(again, multiline) == Fuzz::writeText(root, multiline));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const unsigned choice = input.takeChoice();
  const bool isFile = choice / 2 % 2 == 1;
  Quarry::ParserFile file;
  const ParserGroup& root = file.getRoot();
  file.getRoot().setText(input.getBytes(), choice % 2 == 0 ? 1.1 : 1.0);
  if (!isFile) {
    checkText(root, false);
    checkText(root, true);
  } else if (!Fuzz::Hazards(root, true).harmFile()) {
    Fuzz::readBackFile(file);
  }
  return 0;
}
