#include "Commands.h"
#include "Failure.h"
#include "Texts.h"

namespace Tool {

namespace {

void writeFile(Quarry::ParserFile& file, const std::string& name) {
  if (!file.write(name)) throw Failure(Texts::cannotWrite(name));
}

}  // namespace

/// Only ParserFile::write() knows how a document begins, so standard output gets what that wrote.
void rewrite(const Document& document, const std::string& target, Output& output) {
  Quarry::ParserFile file;
  document.read(file);
  if (target != "-") return writeFile(file, target);
  const MemoryFile copy;
  writeFile(file, copy.getPath());
  output.writeText(copy.read());
}

}  // namespace Tool
