// Whatever files include each other, reading them within limits ends, and what was read keeps
// within them. The input is cut into eight files, "0" to "7"; "0" is read. Its last three bytes
// choose the limits.

#include <Quarry/ParserFile.h>

#include "Folder.h"
#include "Fuzz.h"
#include "IncludingFiles.h"
#include "Preprocessing.h"
#include "Trees.h"

using Fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  Quarry::ParserLimits limits;
  limits.includesBelowSearchPaths = true;  // inputs must not depend on the machine
  limits.includeDepth = input.takeChoice();
  limits.preprocessedBytes = input.takeChoice() * 256UL;
  limits.nestingDepth = input.takeChoice();
  TestSupport::Files files = Fuzz::takeFiles(input);
  for (const std::string& name : Fuzz::FILE_NAMES)
    folder.write(name, files[name]);
  Quarry::ParserFile file;
  file.setSearchPaths({folder.getPath(), ""});  // read() finds a file under its own name as well
  file.setLimits(limits);
  const Fuzz::Preprocessed result = Fuzz::preprocess(file, "0");
  require(result.text.size() <= limits.preprocessedBytes);
  require(!file.read("0") || result.version > 0.0);
  require(Fuzz::readValues(file.getRoot()) <= limits.nestingDepth);
  return 0;
}
