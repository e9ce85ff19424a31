/// @file
/// A document as a file: a root group, a file name, search paths and a format version.
#pragma once

#include <Quarry/Export.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserLimits.h>

#include <set>
#include <string>
#include <vector>

namespace Quarry {

/// Reads a document from disk with everything it includes, and writes it back.
///
/// ```cpp
/// Quarry::ParserFile file;
/// file.setSearchPaths({"/usr/share/studio", "projects"});
/// if (!file.read("harbor.cfg")) return 1;  // the console has said why
/// file.getRoot().getItem("title")->setString("Harbor, second cut", 0);
/// file.save("projects/harbor.cfg");
/// ```
///
/// How a file is read: it is looked for in each search path, in order, and last under its own name.
/// `#include "name"` is replaced by that file's text, found in the same way, wherever it stands;
/// `//` comments outside quoted strings are dropped with the line feed that ends them; a line
/// `#SerialVersion 1.1` declares the format version. A file compressed by gzip is recognised when
/// it is found under its own name.
///
/// File names are bytes and reach the file system unchanged.
///
/// Ownership: the file owns its root group, also one that it was handed. What getRoot() returns is
/// good until the file is destroyed.
///
/// Failures: messages go to Plinth::console; the results tell what they are documented to tell.
///
/// Threads: a file and its tree are used by one thread at a time; several files may be used by
/// several threads.
class QUARRY_EXPORT ParserFile {
 public:
  // --- Make ------------------------------------------------------------------------------------

  /// Makes an empty document with a root group named "root", no file name and version 1.1.
  ParserFile();

  /// Makes a document around `root`, which is adopted: it must come from `new` and is deleted with
  /// the file.
  explicit ParserFile(ParserGroup& root);

  /// Makes an empty document with a file name; nothing is read.
  explicit ParserFile(const std::string& filename);

  ParserFile(const ParserFile&) = delete;
  ParserFile& operator=(const ParserFile&) = delete;

  ~ParserFile();

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the name that the document was last read from or written to.
  const std::string& getFilename() const { return filename; }

  /// Returns the file name up to its last "/", without it; empty when there is none.
  const std::string& getDirectory() const { return directory; }

  /// Returns the root group; the file keeps ownership.
  ParserGroup& getRoot() const { return *root; }

  /// Returns the directories in which files are looked for, in that order.
  const std::vector<std::string>& getSearchPaths() const { return searchPaths; }

  /// Returns the format version: 1.1 for a new document; after read() what the document declared,
  /// 1.0 where it declared none, 0.0 when reading failed.
  const double& getVersion() const { return version; }

  /// Returns the limits within which documents are read; all are off at first.
  const ParserLimits& getLimits() const { return limits; }

  // --- Change ----------------------------------------------------------------------------------

  /// Replaces the list of search paths.
  void setSearchPaths(const std::vector<std::string>& paths);

  /// Sets the file name and, from it, the directory.
  /// @return false for an empty name, which empties both
  bool setFilename(const std::string& name);

  /// Sets the limits for what read(), preprocessFile() and setBinary() accept from now on.
  void setLimits(const ParserLimits& limits);

  /// Empties the root group; file name, search paths and version stay.
  void clear();

  // --- Text and files --------------------------------------------------------------------------

  /// Appends the text of the root's items to `text`, each on a new line; without a version line.
  void getText(std::string& text) const;

  /// Reads a document and adds its items to the root group, which is not emptied first.
  ///
  /// Warnings: "File '...' not found.\n", "Failed to open file '...'.\n", and those of the parser
  /// (see ParserGroup::setText()). With limits set, the first that is exceeded gives one of
  /// "File '...' exceeds the limit includeDepth (8).\n", and preprocessedBytes likewise,
  /// "File '...' lies outside of the search paths (includesBelowSearchPaths).\n" and
  /// "File 'a' includes itself: 'a' > 'b' > 'a'.\n". A group that is nested too deeply is left out
  /// with all that it holds, its item stays and reading goes on; the first such group gives
  /// "ParserGroup::setText: (3:7) File '...' exceeds the limit nestingDepth (200).\n" with the
  /// name of the file that was read.
  ///
  /// Only regular files are read. The one that is named here is opened to find that out, without
  /// waiting for a writer where it is a FIFO; of an include, nothing else is opened.
  ///
  /// @param name the file; empty for the stored file name
  /// @return false when the file or one that it includes cannot be read, an include has no closing
  ///         quote, a version of 0 or less is declared, or a limit is exceeded; the tree is then
  ///         unchanged, unless groups were left out. True otherwise, also for text that drew
  ///         warnings.
  /// @throws std::out_of_range ("basic_string::erase") for a compressed file with a line of less
  ///         than two bytes; an empty search path then stays at the end of the list
  bool read(const std::string& name);

  /// Writes the document, as format version 1.1, over the file.
  ///
  /// The text is the version line, an empty line, and the items; there is no line feed after the
  /// last one. A root that holds a keyword "#SerialVersion" gets no version line: the keyword's
  /// first value is set to the double 1.1 and written with the other items, as a value that was set
  /// by code (see ParserValue::getText()).
  ///
  /// Messages: "Written 123bytes in 'name'." to debug, or the error "ParserFile.write: Can't save
  /// project 'name'.\n" when not all of the text could be written; the name is the one given here.
  ///
  /// @param name the file; empty for the stored file name
  /// @return whether the file could be opened for writing; false without a message otherwise
  bool write(const std::string& name);

  /// Writes the document as write() does, and safely: the file holds the old document or the new
  /// one at every moment, also when the disk is full or the power fails, and never a part of one.
  ///
  /// The text goes to a new file in the same folder, is flushed to the disk, and takes the place of
  /// the old one. Mode, owner and group of the file stay, and a symbolic link keeps leading to it.
  /// Other hard links keep the old document; access control lists and extended attributes are lost.
  ///
  /// Refused are what is no regular file (a device, a pipe), a file that may not be written, a
  /// folder in which no file can be made or that cannot be read, and a file of another owner unless
  /// the process may give files away.
  ///
  /// Messages: "Written 123bytes in 'name'." to debug, or the error "ParserFile.save: Can't save
  /// 'name': cannot write 'name': No space left on device\n" with the step that failed and the
  /// system's reason; the name is the one that the document has.
  ///
  /// @param name the file; empty for the stored file name
  /// @return whether the new document is in place and on the disk. Otherwise the old one is there
  ///         as it was; unless the message tells that it was the folder that could not be flushed:
  ///         then the new document is there, but might not outlive a power failure.
  bool save(const std::string& name);

  /// Appends to `out` the text of a file with includes expanded, comments dropped and version lines
  /// taken out. Called by read(), which also looks for the file under its own name.
  ///
  /// Without limits, a file that includes itself, directly or through others, is expanded without
  /// end: keeping includes free of cycles is then the caller's duty.
  ///
  /// @param out receives the text behind what it holds
  /// @param file the name, as it would stand in an include
  /// @param included handed through and not used
  /// @return the version that the file declares last, 1.0 when it declares none; 0.0 when the file
  ///         or one that it includes cannot be read, an include has no closing quote, the version
  ///         declared is 0, or a limit is exceeded. What was appended before a failure stays.
  /// @throws std::out_of_range as read()
  double preprocessFile(std::string& out, const std::string& file, std::set<std::string>& included);

  // --- Binary ----------------------------------------------------------------------------------

  /// Returns the document in the binary form: the four bytes "QDBF" and the root's frame without
  /// its name. The version is not part of it.
  std::vector<char> getBinary() const;

  /// Appends the items of a binary document to the root group; see ParserGroup::setBinary().
  ///
  /// Data of less than nine bytes is printed as "ParserFile.setBinary: data too short\n", other
  /// data that does not begin with "QDBF" as "ParserFile.setBinary: Unknown data tag\n"; both are
  /// then warned of as "ParserFile.setBinary: Unknown format\n" and leave the tree as it is.
  /// Groups that are nested more deeply than the limit allows are left out, with one warning,
  /// "File '...' exceeds the limit nestingDepth (200).\n" with the stored file name.
  ///
  /// @return whether all of the document was read
  bool setBinary(const std::vector<char>& data);

 private:
  std::string filename;
  std::string directory;
  ParserGroup* root;  ///< owned, never null
  std::vector<std::string> searchPaths;
  ParserLimits limits;
  double version;
  std::set<std::string> includedFiles;
};

}  // namespace Quarry
