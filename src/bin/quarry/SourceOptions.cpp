#include "SourceOptions.h"

#include <Plinth/Console.h>

#include "Failure.h"
#include "SharedOptions.h"
#include "Texts.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace Tool {

using Quarry::ParserLimits;
using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourcePlace;

ParserLimits getDefaultLimits() {
  ParserLimits limits;
  limits.includeDepth = 64;
  limits.preprocessedBytes = 1UL << 30;
  limits.nestingDepth = 10000;
  return limits;
}

void SourceOptions::addTo(Command& command) {
  addSearchPaths(command, searchPaths);
  command.addOption("--stdin-filename", "NAME", standInName,
                    "What standard input is called in messages, and where it lies");
  addUnlimited(command, isUnlimited);
}

bool SourceOptions::read(SourceDocument& document, const std::string& file) const {
  if (file == "-") return readInput(document, readStandardInput());
  prepare(document);
  return document.read(file);
}

bool SourceOptions::readInput(SourceDocument& document, const std::string& bytes) const {
  prepare(document);
  return document.readText(standInName, bytes);
}

void SourceOptions::readWhole(SourceDocument& document, const std::string& file) const {
  const bool isRead = read(document, file);
  report(document, isRead, file == "-" ? standInName : file);
}

void SourceOptions::readWholeInput(SourceDocument& document, const std::string& bytes) const {
  report(document, readInput(document, bytes), standInName);
}

void SourceOptions::prepare(SourceDocument& document) const {
  document.setSearchPaths(searchPaths);
  if (!isUnlimited) document.setLimits(getDefaultLimits());
}

/// Gives the warnings of a document, and throws where it was not read.
void SourceOptions::report(const SourceDocument& document, bool isRead, const std::string& name) {
  for (const SourceDiagnostic& diagnostic : document.getDiagnostics())
    Plinth::console.warning(formatDiagnostic(document, diagnostic), std::string());
  if (!isRead) throw Failure(Texts::cannotRead(name));
}

std::string readStandardInput() {
  std::string bytes;
  std::array<char, 1 << 16> block;
  for (;;) {
    const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
    if (count == 0) return bytes;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(Texts::cannotRead(Texts::STANDARD_INPUT, strerror(errno)));
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

std::string formatDiagnostic(const SourceDocument& document, const SourceDiagnostic& diagnostic) {
  const SourcePlace place = document.getPlace(diagnostic);
  std::string text;
  if (!place.path.empty()) {
    text =
        place.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": ";
  }
  return text + document.describe(diagnostic) + " [" + Quarry::getRuleName(diagnostic.rule) + "]";
}

}  // namespace Tool
