// A text that still has its comments is cut into the words of the text without them. Texts with
// directives are passed over.

#include <Quarry/internal/WordCutter.h>

#include "Fuzz.h"
#include "support/DescribeWords.h"
#include "support/PlainPreprocessor.h"

using Quarry::WordCutter;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const double version = input.takeChoice() % 2 == 0 ? 1.1 : 1.0;
  std::string text = input.takePart('\0');  // a file ends at its first zero byte
  for (const char* directive : {"#include \"", "#SerialVersion "}) {
    if (text.find(directive) != std::string::npos) return 0;
  }
  const TestSupport::Files files = {{"file", text}};
  std::string clean;
  TestSupport::PlainPreprocessor(files).process("file", clean);
  WordCutter expected(clean, version);
  WordCutter cutter(text, version, 0, Quarry::Comments::LEFT);
  Fuzz::require(TestSupport::describeWords(cutter) == TestSupport::describeWords(expected));
  return 0;
}
