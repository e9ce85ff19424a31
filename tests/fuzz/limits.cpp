// Whatever files include each other, reading them within limits ends, and what was read keeps
// within them. The input is cut into up to eight files, "0" to "7", by bytes 1E; "0" is read. Its
// last three bytes choose the limits.

#include <Quarry/ParserFile.h>

#include <set>
#include <string>

#include "Folder.h"
#include "Fuzz.h"
#include "Trees.h"

using Fuzz::require;

namespace {

constexpr char FILE_SEPARATOR = 0x1E;
constexpr unsigned MOST_FILES = 8;

/// Includes never lead out of the folder: inputs must not depend on the machine.
Quarry::ParserLimits takeLimits(Fuzz::Input& input) {
  constexpr unsigned long BYTES_STEP = 256;
  Quarry::ParserLimits limits;
  limits.includesBelowSearchPaths = true;
  limits.includeDepth = input.takeChoice();
  limits.preprocessedBytes = input.takeChoice() * BYTES_STEP;
  limits.nestingDepth = input.takeChoice();
  return limits;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  const Quarry::ParserLimits limits = takeLimits(input);
  for (unsigned number = 0; number < MOST_FILES; ++number)
    folder.write(std::to_string(number), input.takePart(FILE_SEPARATOR));

  Quarry::ParserFile file;
  file.setSearchPaths({folder.getPath(), ""});  // read() finds a file under its own name as well
  file.setLimits(limits);
  std::string text;
  std::set<std::string> included;
  const double version = file.preprocessFile(text, "0", included);
  require(text.size() <= limits.preprocessedBytes);
  const bool isRead = file.read("0");
  require(version > 0.0 || !isRead);
  require(Fuzz::readValues(file.getRoot()) <= limits.nestingDepth);
  return 0;
}
