/// The document that a command works on.
#pragma once

#include <Quarry/ParserFile.h>

#include "Command.h"
#include "MemoryFile.h"
#include "MessageLog.h"

#include <memory>
#include <string>
#include <vector>

namespace Tool {

/// The text that preprocessing makes of a document, and the format version that it declares.
struct ExpandedText {
  std::string text;
  double version;
};

/// What every command that reads one document with ParserFile takes.
struct DocumentOptions {
  std::string file;
  std::vector<std::string> searchPaths;
  bool isUnlimited = false;
  bool quiet = false;

  /// Adds FILE, -q, -I and --no-limits.
  void addTo(Command& command);

  Quarry::ParserLimits getLimits() const;
};

/// Opens a document by the name given on the command line; `-` is standard input, which is copied
/// to a file in memory, because the library reads files.
///
/// Every operation throws a Failure when the document cannot be read.
class Document {
 public:
  Document(const DocumentOptions& options, MessageLog& log);

  /// Returns the text with includes expanded and comments dropped.
  ExpandedText expand() const;

  /// Returns the limits within which the document is read.
  const Quarry::ParserLimits& getLimits() const { return limits; }

  /// Throws the Failure to read the document.
  [[noreturn]] void fail() const;

  /// Reads the document into `file`.
  void read(Quarry::ParserFile& file) const;

  /// Reads the document, in the binary form, into `file`.
  /// @return the number of bytes that the document has
  std::size_t readBinary(Quarry::ParserFile& file) const;

 private:
  void copyStandardInput(MessageLog& log);

  std::string shownName;
  std::string path;
  std::vector<std::string> searchPaths;
  Quarry::ParserLimits limits;
  std::unique_ptr<MemoryFile> copy;  ///< of standard input
};

}  // namespace Tool
