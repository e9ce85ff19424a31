#include "Document.h"

#include "Failure.h"
#include "Texts.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <stdexcept>

namespace Tool {

Document::Document(const std::string& name, const std::vector<std::string>& paths, MessageLog& log)
    : shownName(name), path(name), searchPaths(paths) {
  if (name == "-") copyStandardInput(log);
}

void Document::copyStandardInput(MessageLog& log) {
  shownName = Texts::STANDARD_INPUT;
  copy = std::make_unique<MemoryFile>();
  path = copy->getPath();
  log.setAlias(path, shownName);
  if (!copy->copyFrom(STDIN_FILENO)) {
    throw Failure(Texts::cannotRead(shownName, strerror(errno)));
  }
}

/// The empty search path finds a file under its own name, as ParserFile::read() does.
ExpandedText Document::expand() const {
  Quarry::ParserFile file;
  std::vector<std::string> paths = searchPaths;
  paths.emplace_back();
  file.setSearchPaths(paths);
  ExpandedText expanded;
  std::set<std::string> included;
  try {
    expanded.version = file.preprocessFile(expanded.text, path, included);
  } catch (const std::out_of_range&) {
    throw Failure(Texts::badCompression(shownName));
  }
  if (!(expanded.version > 0.0)) throw Failure(Texts::cannotRead(shownName));
  return expanded;
}

void Document::read(Quarry::ParserFile& file) const {
  file.setSearchPaths(searchPaths);
  bool isRead = false;
  try {
    isRead = file.read(path);
  } catch (const std::out_of_range&) {
    throw Failure(Texts::badCompression(shownName));
  }
  if (!isRead) throw Failure(Texts::cannotRead(shownName));
}

}  // namespace Tool
