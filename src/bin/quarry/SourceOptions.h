/// Reading documents with their places.
#pragma once

#include <Quarry/ParserGroup.h>
#include <QuarrySource/SourceDocument.h>

#include "InputOptions.h"

#include <string>
#include <vector>

namespace Tool {

/// How a command reads documents into the source layer. A terminal is told when that takes long.
struct SourceOptions : InputOptions {
  std::vector<std::string> searchPaths;

  /// Adds -I and what InputOptions adds.
  void addTo(Command& command);

  /// Reads a document.
  /// @return as SourceDocument::read(); a Failure is thrown only where standard input cannot be
  /// read or unpacked
  bool read(Quarry::SourceDocument& document, const std::string& file) const;

  /// Reads a document whose bytes, compressed or not, came from standard input.
  bool readInput(Quarry::SourceDocument& document, const std::string& bytes) const;

  /// Reads a document that has to be readable: throws a Failure with the first reason otherwise.
  /// Warnings are given on Plinth::console, each with its place.
  void readWhole(Quarry::SourceDocument& document, const std::string& file) const;

  /// Does the same with a document whose bytes came from standard input.
  void readWholeInput(Quarry::SourceDocument& document, const std::string& bytes) const;

  /// Sets up a document: where it looks for files, and its limits.
  void prepare(Quarry::SourceDocument& document) const;
};

/// What every command takes that reads one document.
struct DocumentOptions : SourceOptions {
  std::string file;
  bool quiet = false;

  /// Adds FILE, -q and what SourceOptions adds.
  void addTo(Command& command);

  const std::string& getShownName() const { return InputOptions::getShownName(file); }

  /// Reads the document as SourceOptions::readWhole() does.
  void readWhole(Quarry::SourceDocument& document) const;

  /// Reads the document for its preprocessed text: what the parser finds wrong in it is not told.
  void expand(Quarry::SourceDocument& document) const;

  /// Reads the document as readWhole() does, into the library's tree.
  void readTree(Quarry::ParserGroup& root) const;
};

/// Makes the library's tree of a document that was read; it warns of nothing a second time.
void makeTree(const Quarry::SourceDocument& document, Quarry::ParserGroup& root);

/// Gives what is wrong in a document as warnings on Plinth::console, each with its place.
void warnOf(const Quarry::SourceDocument& document);

/// Returns a diagnostic as "path:line:column: text [rule]".
std::string formatDiagnostic(const Quarry::SourceDocument& document,
                             const Quarry::SourceDiagnostic& diagnostic);

}  // namespace Tool
