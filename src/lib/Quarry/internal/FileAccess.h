/// Finds, loads and saves whole files.
///
/// File names are bytes and are handed to the system as they are: names need not be UTF-8.
#pragma once

#include "InputFile.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quarry {

/// How loading a file ended.
enum class LoadResult {
  LOADED,
  NOT_OPENED,             ///< a plain file could not be opened or read
  COMPRESSED_NOT_OPENED,  ///< a compressed file could not be opened
  TOO_LARGE               ///< the file has more bytes than were allowed
};

/// Returns the first regular file among `searchPaths`, each followed by `name`, or an empty string
/// when there is none. An empty search path stands for the bare name. Nothing is opened.
std::string locateFile(const std::vector<std::string>& searchPaths, const std::string& name);

/// Does the same, and opens the file. That is quicker, but other files of that name, such as
/// devices, are opened as well.
/// @param file where it goes; not open when there is none, or when it may not be read
std::string openFile(const std::vector<std::string>& searchPaths, const std::string& name,
                     InputFile& file);

/// Tells whether loadFile() loads a compressed file that is called `name` instead of another one at
/// `path`.
///
/// Whether the file is compressed is looked up under `name`, not under `path`, and so is the
/// compressed file: one that only a search path finds is read as it is. Documents are kept so.
bool prefersCompressed(const std::string& name, const std::string& path);

/// Returns a path without links and "..", or an empty string when nothing is there.
std::string resolvePath(const std::string& path);

/// Loads a file into `text`.
///
/// A plain file is read up to its first zero byte. A compressed one (gzip) carries a marker before
/// every line feed: "$" keeps the line break there, any other byte is dropped with it.
///
/// @param name the file's name as it was asked for
/// @param path where locateFile() found it
/// @param allowance how many bytes the file may have, unpacked; lowered by what it has. Not much
///        more is read.
/// @param file the same, when it is open already
/// @throws std::out_of_range ("basic_string::erase") for a compressed line of less than two bytes
LoadResult loadFile(const std::string& name, const std::string& path, std::string& text,
                    unsigned long& allowance, InputFile file = InputFile());

/// Finds and loads the files of a document where the system keeps them. Each is loaded before the
/// next is looked for.
///
/// The first is named by the program, and opened at once. The others are named by the document,
/// which may come from anyone: what is no regular file is not opened for it.
class StoredFiles {
 public:
  std::string locate(const std::vector<std::string>& searchPaths, const std::string& name) {
    const bool isFirst = !std::exchange(hasFirst, true);
    return isFirst ? openFile(searchPaths, name, file) : locateFile(searchPaths, name);
  }
  LoadResult load(const std::string& name, const std::string& path, std::string& text,
                  unsigned long& allowance) {
    return loadFile(name, path, text, allowance, std::move(file));
  }

 private:
  bool hasFirst = false;
  InputFile file;
};

/// A file that is written as a whole: made, or emptied, when it is opened.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  bool isOpen() const { return descriptor >= 0; }

  /// Tells whether all of the text was written.
  bool write(std::string_view text);

 private:
  int descriptor;
};

/// Writes a text to a file descriptor.
/// @return whether all of it was written; `errno` tells why not
bool writeAll(int descriptor, std::string_view text);

}  // namespace Quarry
