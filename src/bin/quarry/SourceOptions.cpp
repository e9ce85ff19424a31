#include "SourceOptions.h"

#include <Plinth/Console.h>

#include "Failure.h"
#include "FileBytes.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "SilentConsole.h"
#include "Texts.h"

namespace Tool {

using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourcePlace;
using Quarry::SourceRule;

// --- SourceOptions -------------------------------------------------------------------------------

void SourceOptions::addTo(Command& command) {
  addSearchPaths(command, searchPaths);
  InputOptions::addTo(command);
}

bool SourceOptions::read(SourceDocument& document, const std::string& file) const {
  if (file == "-") {
    const Progress progress(Texts::reading(standInName));
    return readInput(document, readBytes(file));
  }
  const Progress progress(Texts::reading(file));
  prepare(document);
  return document.read(file);
}

bool SourceOptions::readInput(SourceDocument& document, const std::string& bytes) const {
  const Progress progress(Texts::reading(standInName));
  prepare(document);
  if (!isCompressed(bytes)) return document.readText(standInName, bytes);
  return document.readText(standInName, takeMarkers(unpackBytes(bytes, "-"), "-"));
}

void SourceOptions::readWhole(SourceDocument& document, const std::string& file) const {
  const bool isRead = read(document, file);
  warnOf(document);
  if (!isRead) throw Failure(Texts::cannotRead(getShownName(file)));
}

void SourceOptions::readWholeInput(SourceDocument& document, const std::string& bytes) const {
  const bool isRead = readInput(document, bytes);
  warnOf(document);
  if (!isRead) throw Failure(Texts::cannotRead(standInName));
}

void SourceOptions::prepare(SourceDocument& document) const {
  document.setSearchPaths(searchPaths);
  document.setLimits(getLimits());
}

// --- DocumentOptions -----------------------------------------------------------------------------

void DocumentOptions::addTo(Command& command) {
  addFile(command, file);
  addQuiet(command, quiet);
  SourceOptions::addTo(command);
}

void DocumentOptions::readWhole(SourceDocument& document) const {
  SourceOptions::readWhole(document, file);
}

/// Whatever the preprocessor warns of keeps it from making the text.
void DocumentOptions::expand(SourceDocument& document) const {
  read(document, file);
  if (document.getVersion() > 0.0) return;
  warnOf(document);
  throw Failure(Texts::cannotRead(getShownName()));
}

void DocumentOptions::readTree(Quarry::ParserGroup& root) const {
  SourceDocument document;
  readWhole(document);
  makeTree(document, root);
}

// --- Documents that were read --------------------------------------------------------------------

void makeTree(const SourceDocument& document, Quarry::ParserGroup& root) {
  const SilentConsole silence;
  root.setText(document.getText(), document.getVersion());
}

void warnOf(const SourceDocument& document) {
  for (const SourceDiagnostic& diagnostic : document.getDiagnostics())
    Plinth::console.warning(formatDiagnostic(document, diagnostic), std::string());
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
