#include "Document.h"

#include "Failure.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <stdexcept>

namespace Tool {

using Quarry::ParserLimits;

namespace {

constexpr std::size_t BLOCK_SIZE = 1 << 16;

/// Appends a file's bytes; false with `errno` set when it cannot be read.
bool readFile(const std::string& name, std::vector<char>& bytes) {
  const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  ssize_t count = 1;
  while (count > 0) {
    const std::size_t size = bytes.size();
    bytes.resize(size + BLOCK_SIZE);
    do {
      count = ::read(file, bytes.data() + size, BLOCK_SIZE);
    } while (count < 0 && errno == EINTR);
    bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
  const int reason = errno;
  close(file);
  errno = reason;
  return count == 0;
}

}  // namespace

void DocumentOptions::addTo(Command& command) {
  addFile(command, file);
  addQuiet(command, quiet);
  addSearchPaths(command, searchPaths);
  addUnlimited(command, isUnlimited);
}

ParserLimits DocumentOptions::getLimits() const {
  return isUnlimited ? ParserLimits() : getDefaultLimits();
}

Document::Document(const DocumentOptions& options, MessageLog& log)
    : shownName(options.file),
      path(options.file),
      searchPaths(options.searchPaths),
      limits(options.getLimits()) {
  if (path == "-") copyStandardInput(log);
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
  file.setLimits(limits);
  ExpandedText expanded;
  std::set<std::string> included;
  try {
    expanded.version = file.preprocessFile(expanded.text, path, included);
  } catch (const std::out_of_range&) {
    throw Failure(Texts::badCompression(shownName));
  }
  if (!(expanded.version > 0.0)) fail();
  return expanded;
}

void Document::fail() const { throw Failure(Texts::cannotRead(shownName)); }

void Document::read(Quarry::ParserFile& file) const {
  file.setSearchPaths(searchPaths);
  file.setLimits(limits);
  bool isRead = false;
  try {
    isRead = file.read(path);
  } catch (const std::out_of_range&) {
    throw Failure(Texts::badCompression(shownName));
  }
  if (!isRead) fail();
}

std::size_t Document::readBinary(Quarry::ParserFile& file) const {
  std::vector<char> bytes;
  if (!readFile(path, bytes)) throw Failure(Texts::cannotRead(shownName, strerror(errno)));
  file.setFilename(shownName);  // for the message of a limit that is exceeded
  file.setLimits(limits);
  if (!file.setBinary(bytes)) throw Failure(Texts::noBinaryDocument(shownName));
  return bytes.size();
}

}  // namespace Tool
