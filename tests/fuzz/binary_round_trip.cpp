// A tree from binary data or from a text is written as binary data, which reads back as the same
// tree and is written the same; and so is its text. Known exceptions: Hazards.h.

#include "Fuzz.h"
#include "Hazards.h"
#include "RoundTrip.h"
#include "support/Bytes.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const bool isText = input.takeChoice() % 2 == 1;
  Quarry::ParserGroup root("root");
  unsigned long position = 0;
  if (isText) {
    root.setText(input.getBytes(), 1.1);
  } else {
    root.setBinary(TestSupport::makeText(input.getBytes()), position);
  }
  const Fuzz::Hazards onOneLine(root, false);
  const Fuzz::Hazards itemALine(root, true);
  if (!onOneLine.hasZeroByte) Fuzz::readBackBinary(root);
  if (!onOneLine.harmText()) Fuzz::readBackText(root, false);
  if (!itemALine.harmText()) Fuzz::readBackText(root, true);
  return 0;
}
