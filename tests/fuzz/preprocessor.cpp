// Files that include each other become the text that the rules say. The input is cut into up to
// eight files, "0" to "7"; "0" is read. Inputs with a cycle, or that would become too long, and
// those that name files elsewhere are passed over.

#include <Quarry/ParserFile.h>

#include <algorithm>

#include "Folder.h"
#include "Fuzz.h"
#include "IncludingFiles.h"
#include "Preprocessing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  TestSupport::Files files = Fuzz::takeFiles(input);
  for (auto& [name, text] : files)
    text.resize(std::min(text.find('\0'), text.size()));  // a file ends at its first zero byte
  if (!Fuzz::IncludeCheck::arePlain(files)) return 0;
  Fuzz::writeFiles(folder, files);
  Quarry::ParserFile file;
  file.setSearchPaths({folder.getPath()});
  const Fuzz::Preprocessed result = Fuzz::preprocess(file, "0");
  Fuzz::require(result == Fuzz::preprocessByRules(files, "0"));
  return 0;
}
