/// @file
/// A document as people see it: its files, and where everything in it comes from.
#pragma once

#include <Quarry/ParserLimits.h>
#include <Quarry/ParserWord.h>
#include <QuarrySource/Export.h>
#include <QuarrySource/SourceDiagnostic.h>
#include <QuarrySource/SourceFile.h>
#include <QuarrySource/SourceSpan.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Quarry {

/// A byte of an opened file.
struct SourcePosition {
  unsigned long opening = 0;  ///< an index for SourceDocument::getOpening()
  unsigned long offset = 0;   ///< in the file's text, from 0

  /// Tells whether both are the same byte of the same opening.
  bool operator==(const SourcePosition& other) const {
    return opening == other.opening && offset == other.offset;
  }
};

/// A stretch of an opened file, of which all bytes stand one behind the other.
struct SourcePiece {
  SourcePosition position;   ///< of its first byte
  unsigned long length = 0;  ///< in bytes, more than 0
};

/// A place as it is shown to people.
struct SourcePlace {
  std::string path;          ///< of the file, as it was found
  unsigned long line = 0;    ///< from 1
  unsigned long column = 0;  ///< in bytes, from 1

  /// The includes that lead to the file, the innermost one first; their own lists are empty.
  std::vector<SourcePlace> includedFrom;
};

/// Reads a document as ParserFile does, with the same preprocessor and the same parser, and keeps
/// what ParserFile drops: comments, layout, includes, and which byte came from which file.
///
/// ```cpp
/// Quarry::SourceDocument document;
/// document.read("project.cfg");
/// for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics()) {
///   const Quarry::SourcePlace place = document.getPlace(diagnostic);
///   std::cout << place.path << ":" << place.line << ":" << place.column << ": "
///             << document.describe(diagnostic) << "\n";
/// }
/// ```
///
/// Nothing is said on the console: what ParserFile would say there is in getDiagnostics().
///
/// A document, its files and its trees are used by one thread at a time, also for reading: some of
/// what they tell is found out when it is first asked for.
///
/// Every operation throws `std::bad_alloc` when memory runs out; read() then leaves an empty
/// document. References and pointers that are handed out are good until the next read().
class QUARRYSOURCE_EXPORT SourceDocument {
 public:
  /// Stands for no place, and for none of the things that are counted from 0.
  static constexpr unsigned long NOWHERE = static_cast<unsigned long>(-1);

  // --- Make ------------------------------------------------------------------------------------

  /// Makes an empty document: without search paths, limits and files.
  SourceDocument();
  SourceDocument(const SourceDocument&) = delete;
  SourceDocument& operator=(const SourceDocument&) = delete;
  ~SourceDocument();

  /// Sets where files are looked for, as ParserFile::setSearchPaths() does.
  void setSearchPaths(const std::vector<std::string>& paths);

  /// Sets limits, as ParserFile::setLimits() does.
  void setLimits(const ParserLimits& newLimits);

  /// Returns the limits within which documents are read; all are off at first.
  const ParserLimits& getLimits() const { return limits; }

  /// Lets a text stand in for a file, which need not exist: for what an editor has not saved yet.
  /// @param path the search path and the name, as the file would be found
  void setText(const std::string& path, const std::string& text);

  /// Lets a file speak for itself again.
  void dropText(const std::string& path);

  /// Returns the text that stands in for a file; null where none does. Good until it is replaced.
  const std::string* findText(const std::string& path) const;

  /// Takes over what decides what readAgain() reads: search paths, limits, texts that stand in, and
  /// the name of the top file.
  void copySettings(const SourceDocument& other);

  /// Exchanges everything with another document.
  void swap(SourceDocument& other) noexcept;

  /// Reads a document and everything that it includes.
  /// @param name of the top file
  /// @return what ParserFile::read() would: false when a file cannot be read, a limit is exceeded
  ///         or the version is not positive. getDiagnostics() tells why.
  bool read(const std::string& name);

  /// Reads a document whose top file is a text, and everything that it includes.
  /// @param path what the top file is called in places; it is not looked for. Not empty.
  /// @param topText up to its first zero byte
  /// @return as read()
  bool readText(const std::string& path, const std::string& topText);

  /// Reads once more what was read last, in the same way.
  bool readAgain();

  // --- Files -----------------------------------------------------------------------------------

  /// A file that was opened, at the top or by an include. A file that is included twice is opened
  /// twice.
  struct Opening {
    unsigned long file = 0;            ///< an index for getFile()
    unsigned long includer = NOWHERE;  ///< the opening that includes it; NOWHERE for the top file
    unsigned long includeOffset = 0;   ///< of the include, in the includer
    unsigned long includeLength = 0;   ///< of the include, in bytes
  };

  /// Returns how many files were opened; the top file is opening 0. 0 when it was not found.
  unsigned long getOpeningCount() const { return openings.size(); }

  /// Returns opening `index`, from 0, in the order of opening. The index is not checked.
  const Opening& getOpening(unsigned long index) const { return openings[index]; }

  /// Returns how many different files the document has.
  unsigned long getFileCount() const { return files.size(); }

  /// Returns file `index`, from 0. The index is not checked.
  const SourceFile& getFile(unsigned long index) const { return *files[index]; }

  /// Returns the file of an opening, by its index.
  const SourceFile& getFileOf(unsigned long opening) const;

  /// Cuts the file of an opening into spans, in the order of the file, which leave nothing out.
  /// That takes time in proportion to the file; the first call takes as much for the whole
  /// document.
  std::vector<SourceSpan> getSpans(unsigned long opening) const;

  // --- The preprocessed text ---------------------------------------------------------------------

  /// Returns the text that the parser gets: without comments and version lines, with included files
  /// in the place of includes.
  const std::string& getText() const { return text; }

  /// Returns a stretch of the text as a word, which is not classified; good as long as the text.
  ParserWord getWord(unsigned long offset, unsigned long length) const;

  /// Returns the format version, as ParserFile::getVersion() does.
  double getVersion() const { return version; }

  /// Returns where a byte of the preprocessed text comes from. The place behind its last byte comes
  /// from the end of its last piece; without any text it is the beginning of opening 0.
  /// @param offset from 0, at most the size of the text
  SourcePosition getPosition(unsigned long offset) const;

  /// Returns where bytes of the preprocessed text come from, piece by piece; no pieces for no
  /// bytes. Bytes behind the text come from nowhere.
  std::vector<SourcePiece> getPieces(unsigned long offset, unsigned long length) const;

  /// Returns where in the preprocessed text a byte of a file ended up; NOWHERE for what is dropped.
  unsigned long getTextOffset(const SourcePosition& position) const;

  // --- Places ------------------------------------------------------------------------------------

  /// Returns a position as people count; a place without a path for that of no opening.
  SourcePlace getPlace(const SourcePosition& position) const;

  /// Returns where a diagnostic points; a place without a path when it is about no file.
  SourcePlace getPlace(const SourceDiagnostic& diagnostic) const;

  // --- Diagnostics -------------------------------------------------------------------------------

  /// Returns what was found, in the order of finding: what ParserFile would warn of, in the same
  /// order, with what it passes over in silence in between.
  const std::vector<SourceDiagnostic>& getDiagnostics() const { return diagnostics; }

  /// Returns the sentence of a diagnostic, without place and line feed.
  std::string describe(const SourceDiagnostic& diagnostic) const;

  /// Returns the whole message as ParserFile gives it on the console, with the place in the
  /// preprocessed text; the same as describe() for what ParserFile does not tell.
  std::string getMessage(const SourceDiagnostic& diagnostic) const;

 private:
  friend class SourceCollector;
  friend class DiagnosticCollector;

  /// Bytes of a file that are in the text.
  struct Run {
    unsigned long textOffset;
    SourcePosition position;
    unsigned long length;
  };

  /// Bytes of a file that are dropped.
  struct Mark {
    SourceSpan::Kind kind;
    SourcePosition position;
    unsigned long length;
  };

  QUARRYSOURCE_HIDDEN void clear();
  QUARRYSOURCE_HIDDEN void preprocess();
  QUARRYSOURCE_HIDDEN bool parse();
  QUARRYSOURCE_HIDDEN void orderByFile();
  QUARRYSOURCE_HIDDEN const Run* findRun(unsigned long offset) const;
  QUARRYSOURCE_HIDDEN std::vector<unsigned long>::const_iterator findInFiles(
      const SourcePosition& position) const;
  QUARRYSOURCE_HIDDEN const std::vector<unsigned long>& getWordEnds() const;

  std::vector<std::string> searchPaths;
  ParserLimits limits;
  std::map<std::string, std::string> texts;  ///< that stand in for files, by path

  std::string topName;
  std::string topPath;  ///< of a top file that is not to be looked for; empty otherwise
  std::vector<std::unique_ptr<SourceFile>> files;
  std::vector<Opening> openings;
  std::vector<Run> runs;                        ///< in the order of the text
  std::vector<unsigned long> runsInFiles;       ///< indices of them, by opening and offset there
  mutable std::vector<unsigned long> wordEnds;  ///< of the last word that begins before each run
  std::vector<Mark> marks;                      ///< by opening and offset there
  std::string text;
  double version;
  std::vector<SourceDiagnostic> diagnostics;
  std::vector<std::string> messages;  ///< of diagnostics that are not about a word
};

}  // namespace Quarry
