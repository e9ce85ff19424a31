// Of any document, the source layer tells what the library makes of it: text, warnings, words and
// items; its spans are the files, and its places lead back. The input is cut into eight files, "0"
// to "7"; "0" is read. Its last three bytes choose the limits.

#include <cstdio>

#include "Folder.h"
#include "Fuzz.h"
#include "IncludingFiles.h"
#include "support/SourceAgreement.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  Quarry::ParserLimits limits;
  limits.includesBelowSearchPaths = true;  // inputs must not depend on the machine
  limits.includeDepth = input.takeChoice();
  limits.preprocessedBytes = input.takeChoice() * 1024UL;
  limits.nestingDepth = input.takeChoice() * 256UL;
  TestSupport::Files files = Fuzz::takeFiles(input);
  for (const std::string& name : Fuzz::FILE_NAMES)
    folder.write(name, files[name]);
  TestSupport::SourceAgreement agreement({folder.getPath(), ""}, limits, "0");
  const std::string problem = agreement.findProblem();
  if (!problem.empty()) std::fprintf(stderr, "they disagree about: %s\n", problem.c_str());
  Fuzz::require(problem.empty());
  return 0;
}
