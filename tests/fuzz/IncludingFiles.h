/// Files that an input is cut into, and that may include each other.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

#include "Folder.h"
#include "Fuzz.h"
#include "support/PlainPreprocessor.h"

namespace Fuzz {

inline const std::string FILE_NAMES[] = {"0", "1", "2", "3", "4", "5", "6", "7"};

/// Cuts an input into files by bytes 1E. There is always a file "0"; the last ones may be missing.
inline TestSupport::Files takeFiles(Input& input) {
  constexpr char SEPARATOR = 0x1E;
  TestSupport::Files files;
  for (const std::string& name : FILE_NAMES) {
    if (!files.empty() && input.getBytes().empty()) break;
    files[name] = input.takePart(SEPARATOR);
  }
  return files;
}

/// Those that are missing are removed from the folder.
inline void writeFiles(const Folder& folder, const TestSupport::Files& files) {
  for (const std::string& name : FILE_NAMES) {
    const auto found = files.find(name);
    if (found != files.end()) {
      folder.write(name, found->second);
    } else {
      std::filesystem::remove(folder.getPath(name));
    }
  }
}

/// Tells whether the rules of preprocessing, which have no limits, can be followed for files: each
/// includes only later ones, none elsewhere, and does not become too long.
class IncludeCheck {
 public:
  static bool arePlain(const TestSupport::Files& files) {
    IncludeCheck check(files);
    for (auto file = files.rbegin(); file != files.rend(); ++file)
      if (!check.isPlain(file->first, file->second)) return false;
    return true;
  }

 private:
  explicit IncludeCheck(const TestSupport::Files& allFiles) : files(allFiles) {}

  /// The later files were checked before.
  bool isPlain(const std::string& name, const std::string& text) {
    constexpr std::size_t LONGEST = 1 << 20;
    const std::string marker = "#include \"";
    std::size_t length = text.size();
    for (auto at = text.find(marker); at != std::string::npos; at = text.find(marker, at + 1)) {
      const std::size_t begin = at + marker.size();
      const std::string included = text.substr(begin, text.find('"', begin) - begin);
      const bool isLater = lengths.contains(included);
      if (included.find('/') != std::string::npos) return false;
      if (files.contains(included) && !isLater) return false;
      if (isLater) length += lengths[included];
    }
    lengths[name] = length;
    return length <= LONGEST;
  }

  const TestSupport::Files& files;
  std::map<std::string, std::size_t> lengths;  ///< at least, with all that is included
};

}  // namespace Fuzz
