/// A file without a place on disk.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Stands in where the library wants the name of a file and there is none: for standard input and
/// output. It vanishes with the process, whatever ends that.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();

  /// Returns the name under which this process can open the file.
  const std::string& getPath() const { return path; }

  /// Returns everything that was written to the file.
  std::string read() const;

 private:
  int descriptor;
  std::string path;
};

}  // namespace Tool
