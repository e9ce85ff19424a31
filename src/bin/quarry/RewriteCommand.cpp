#include "Commands.h"
#include "Failure.h"
#include "Texts.h"

#include <filesystem>
#include <system_error>

namespace Tool {

namespace {

/// A file is replaced as a whole; a device or a pipe takes the text as it comes.
void writeFile(Quarry::ParserFile& file, const std::string& name) {
  std::error_code ignored;
  const std::filesystem::file_type type = std::filesystem::status(name, ignored).type();
  const bool isFile =
      type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
  if (isFile) {
    file.save(name);  // its error tells why not, and makes the tool fail
  } else if (!file.write(name)) {
    throw Failure(Texts::cannotWrite(name));
  }
}

}  // namespace

/// Only ParserFile::write() knows how a document begins, so standard output gets what that wrote.
void rewrite(const Document& document, const std::string& target, Output& output) {
  Quarry::ParserFile file;
  document.read(file);
  if (target != "-") return writeFile(file, target);
  const MemoryFile copy;
  if (!file.write(copy.getPath())) throw Failure(Texts::cannotWrite(target));
  output.writeText(copy.read());
}

}  // namespace Tool
