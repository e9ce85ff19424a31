/// A folder for the files of a fuzz target.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "Fuzz.h"

namespace Fuzz {

/// Made in the folder for temporary files, and removed with everything in it.
class Folder {
 public:
  Folder() : path((std::filesystem::temp_directory_path() / "quarry-fuzz-XXXXXX").string()) {
    require(mkdtemp(path.data()) != nullptr);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::string getPath(const std::string& name = std::string()) const { return path + '/' + name; }

  /// Writes a file, over the one that is there, and returns its path.
  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream file(getPath(name), std::ios::binary);
    file << bytes;
    file.close();
    require(static_cast<bool>(file));
    return getPath(name);
  }

 private:
  std::string path;
};

}  // namespace Fuzz
