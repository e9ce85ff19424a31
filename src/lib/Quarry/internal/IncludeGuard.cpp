#include "IncludeGuard.h"

#include "FileAccess.h"
#include "Messages.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace Quarry {

namespace {

/// Tells whether `path` is a file below `folder`; both are free of links.
bool isBelow(const std::string& path, std::string folder) {
  if (folder.empty()) return false;
  if (folder.back() != '/') folder += '/';
  return path.starts_with(folder);
}

/// Returns where a file lies, or would lie: a text may stand in for one that is not there.
std::string findPlace(const std::string& path) {
  std::string place = resolvePath(path);
  if (!place.empty()) return place;
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return std::filesystem::weakly_canonical(absolute, error).string();
}

}  // namespace

IncludeGuard::IncludeGuard(const ParserLimits& allLimits, const std::vector<std::string>& allPaths)
    : limits(allLimits),
      isWatching(allLimits.areSet()),
      searchPaths(allPaths),
      allowance(allLimits.preprocessedBytes) {}

std::optional<IncludeGuard::Objection> IncludeGuard::object(const std::string& name,
                                                            const std::string& path) const {
  if (!isWatching || files.empty()) return std::nullopt;
  if (paths.count(path) > 0) {
    return Objection{FileDiagnostic::INCLUDES_ITSELF, describeCycle(name, path)};
  }
  if (files.size() > limits.includeDepth) {
    return Objection{FileDiagnostic::EXCEEDS_LIMIT,
                     Messages::limitExceeded(name, "includeDepth", limits.includeDepth)};
  }
  if (limits.includesBelowSearchPaths && !liesBelowSearchPaths(name, path)) {
    return Objection{FileDiagnostic::OUTSIDE_SEARCH_PATHS, Messages::includeOutside(name)};
  }
  return std::nullopt;
}

std::string IncludeGuard::objectToSize(const std::string& name) const {
  return Messages::limitExceeded(name, "preprocessedBytes", limits.preprocessedBytes);
}

void IncludeGuard::open(const std::string& name, const std::string& path) {
  if (!isWatching) return;
  files.push_back({name, path});
  paths.insert(path);
}

void IncludeGuard::close() {
  if (!isWatching) return;
  paths.erase(files.back().path);
  files.pop_back();
}

std::string IncludeGuard::describeCycle(const std::string& name, const std::string& path) const {
  const auto hasPath = [&path](const OpenFile& file) { return file.path == path; };
  auto file = std::find_if(files.begin(), files.end(), hasPath);
  std::string chain;
  for (; file != files.end(); ++file)
    chain += "'" + file->name + "' > ";
  return Messages::includeCycle(name, chain + "'" + name + "'");
}

bool IncludeGuard::liesBelowSearchPaths(const std::string& name, const std::string& path) const {
  const std::string place = findPlace(prefersCompressed(name, path) ? name : path);
  return std::any_of(searchPaths.begin(), searchPaths.end(), [&place](const std::string& folder) {
    return !folder.empty() && isBelow(place, resolvePath(folder));
  });
}

}  // namespace Quarry
