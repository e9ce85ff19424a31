/// Replaces a file as a whole.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace Quarry {

/// Puts a new text into the place of a file so that whoever looks, also after a crash or a power
/// failure, finds the old text or the new one, and never a part of it.
///
/// The text goes to a new file in the same folder, is flushed to the disk, and the new file takes
/// the place of the old one. A symbolic link stays and the file that it leads to is replaced, also
/// where that is not there yet. Mode, owner and group stay; other hard links to the file keep the
/// old text, and access control lists and extended attributes are lost. What is no regular file is
/// refused, and so is a file that may not be written.
///
/// Qt's QSaveFile does the like, but takes a QString for a name, which not every file name can
/// become, gives the file to whoever saves it, and does not tell that the disk refused the flush.
class FileReplacement {
 public:
  /// @param path the file; bytes, handed to the system as they are
  explicit FileReplacement(const std::string& path) : target(path) {}
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// Takes away the new file where it has not replaced the old one.
  ~FileReplacement();

  /// Does it, once.
  /// @return whether all went well. Otherwise the old file is there as it was, unless it was only
  ///         the folder that could not be flushed: then the new one is, but might not outlive a
  ///         power failure.
  bool write(std::string_view text);

  /// Returns what went wrong, as "cannot write '...': No space left on device"; empty for nothing.
  const std::string& getProblem() const { return problem; }

 private:
  bool followLinks();
  bool openFolder();
  bool examineTarget();
  bool createFile();
  bool keepOwner();
  bool keepMode();
  bool writeText(std::string_view text);
  bool flush(int descriptor, const char* action);
  bool closeFile();
  bool replaceTarget();

  /// Notes what went wrong, with the system's reason, unless nothing did. Returns `succeeded`.
  bool check(bool succeeded, const char* action);

  /// Notes what went wrong. Returns false.
  bool fail(const std::string& action, int error);

  std::string target;      ///< the file's path; then its name in the folder
  std::string folderPath;  ///< where the file is, or will be
  std::string newName;     ///< of the new file, in the folder; empty where there is none
  int folder = -1;
  int file = -1;  ///< the new one
  bool exists = false;
  struct stat status = {};  ///< of the old file, where it exists
  std::string problem;
};

}  // namespace Quarry
