/// Reading documents with their places.
#pragma once

#include <Quarry/ParserLimits.h>
#include <QuarrySource/SourceDocument.h>

#include "Command.h"

#include <string>
#include <vector>

namespace Tool {

/// Returns the limits within which the tool reads, unless it is told not to: wide enough for every
/// document that people have, and narrow enough to end on all others.
Quarry::ParserLimits getDefaultLimits();

/// How a command reads documents into the source layer.
struct SourceOptions {
  std::vector<std::string> searchPaths;
  std::string standInName = "standard input";  ///< what standard input is called in messages
  bool isUnlimited = false;

  /// Adds -I, --stdin-filename and --no-limits.
  void addTo(Command& command);

  /// Reads a document.
  /// @param file its name; `-` for standard input
  /// @return as SourceDocument::read(); a Failure is thrown only where standard input cannot be
  /// read
  bool read(Quarry::SourceDocument& document, const std::string& file) const;

  /// Reads a document whose bytes came from standard input.
  bool readInput(Quarry::SourceDocument& document, const std::string& bytes) const;

  /// Reads a document that has to be readable: throws a Failure with the first reason otherwise.
  /// Warnings are given on Plinth::console, each with its place.
  void readWhole(Quarry::SourceDocument& document, const std::string& file) const;

  /// Does the same with a document whose bytes came from standard input.
  void readWholeInput(Quarry::SourceDocument& document, const std::string& bytes) const;

 private:
  void prepare(Quarry::SourceDocument& document) const;
  static void report(const Quarry::SourceDocument& document, bool isRead, const std::string& name);
};

/// Returns everything that is on standard input. Throws a Failure when it cannot be read.
std::string readStandardInput();

/// Returns a diagnostic as "path:line:column: text [rule]".
std::string formatDiagnostic(const Quarry::SourceDocument& document,
                             const Quarry::SourceDiagnostic& diagnostic);

}  // namespace Tool
