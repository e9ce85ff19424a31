/// Files of which some have a text in memory.
#pragma once

#include <Quarry/internal/FileAccess.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Quarry {

/// Finds and loads files for the preprocessor, as StoredFiles does, but takes the text of those
/// that have one in memory from there.
class StandInFiles {
 public:
  /// @param standIns the texts by path; they must outlive the preprocessor
  /// @param top the path of the first file, where that is not to be looked for; empty otherwise
  StandInFiles(const std::map<std::string, std::string>& standIns, std::string top)
      : texts(&standIns), topPath(std::move(top)) {}

  std::string locate(const std::vector<std::string>& searchPaths, const std::string& name) {
    if (!topPath.empty()) return std::exchange(topPath, std::string());
    for (const std::string& searchPath : searchPaths) {
      std::string path = searchPath;
      if (!path.empty() && path.back() != '/') path += '/';
      path += name;
      if (texts->count(path) > 0) return path;
      if (!locateFile({searchPath}, name).empty()) return path;
    }
    return std::string();
  }

  LoadResult load(const std::string& name, const std::string& path, std::string& text,
                  unsigned long& allowance) const {
    const auto found = texts->find(path);
    if (found == texts->end()) return loadFile(name, path, text, allowance);
    text.assign(found->second, 0, found->second.find('\0'));
    if (text.size() > allowance) return LoadResult::TOO_LARGE;
    if (allowance != ParserLimits::UNLIMITED) allowance -= text.size();
    return LoadResult::LOADED;
  }

 private:
  const std::map<std::string, std::string>* texts;
  std::string topPath;  ///< until it was located
};

}  // namespace Quarry
