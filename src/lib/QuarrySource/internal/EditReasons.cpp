#include "EditReasons.h"

#include <Quarry/internal/FileAccess.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string_view>

namespace Quarry {

namespace {

constexpr double FIRST_VERSION_WITH_ESCAPES = 1.1;
constexpr const char* MARKERS[] = {"#include \"", "#SerialVersion "};
constexpr std::string_view COMPRESSED = "\x1F\x8B";
constexpr char FINAL_BACKSLASH[] =
    "a string that ends in a backslash has to stand at the end of its line";
constexpr std::string_view QUOTE_BEHIND_BACKSLASH = "\\\"";

unsigned long count(std::string_view text, std::string_view wanted) {
  unsigned long found = 0;
  for (std::size_t at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at))
    ++found, at += wanted.size();
  return found;
}

std::string readBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Returns the path by which a file is told from all others, also one that is not there.
std::string getTruePath(const std::string& path) {
  const std::string resolved = resolvePath(path);
  return resolved.empty() ? std::filesystem::path(path).lexically_normal().string() : resolved;
}

std::string tellSameFile(const std::string& first, const std::string& second) {
  return "'" + first + "' and '" + second + "' are the same file";
}

}  // namespace

std::string EditReasons::explain(const FileChanges& changes) const {
  for (const SourceEdit::NewValue& value : edit.newValues) {
    std::string reason = explainLiteral(value.literal);
    if (!reason.empty()) return reason;
  }
  std::map<std::string_view, unsigned long> openingCounts;
  for (unsigned long i = 0; i < document.getOpeningCount(); ++i)
    ++openingCounts[document.getFileOf(i).getPath()];
  for (const FileChange& change : changes) {
    const SourceFile& file = document.getFileOf(change.opening);
    const unsigned long count = openingCounts[file.getPath()];
    if (count > 1) {
      return "'" + file.getPath() + "' is included " + std::to_string(count) +
             " times, and the edit would change all of them";
    }
    const std::string_view before = std::string_view(file.getText()).substr(0, change.begin);
    if (before.ends_with(QUOTE_BEHIND_BACKSLASH)) return FINAL_BACKSLASH;
  }
  return std::string();
}

std::string EditReasons::explainLiteral(const SourceLiteral& literal) const {
  const std::string word = literal.getSpelling(document.getVersion());
  const bool hasEscapes = !(document.getVersion() < FIRST_VERSION_WITH_ESCAPES);
  if (word.find('\0') != std::string::npos) return "a document cannot hold a zero byte";
  if (literal.getType() != ParserValue::TYPE_STRING) return std::string();
  if (word.find_first_of("\r\n") != std::string::npos) {
    return "a string cannot hold a line break in format 1.0";
  }
  const bool hasQuote = word.find('"', 1) < word.size() - 1;
  if (hasQuote && !hasEscapes) return "a string cannot hold a double quote in format 1.0";
  return word.ends_with(QUOTE_BEHIND_BACKSLASH) ? FINAL_BACKSLASH : std::string();
}

std::string findSharedFile(const SourceDocument& document, const ChangesByPath& changes) {
  std::map<std::string, std::string> pathsOfFiles;
  for (unsigned long i = 0; i < document.getFileCount(); ++i) {
    const std::string& path = document.getFile(i).getPath();
    const std::string& known = pathsOfFiles.emplace(getTruePath(path), path).first->second;
    if (known == path) continue;
    const bool isKnownChanged = changes.count(known) > 0;
    if (!isKnownChanged && changes.count(path) == 0) continue;
    return isKnownChanged ? tellSameFile(known, path) : tellSameFile(path, known);
  }
  return std::string();
}

std::string findStorageProblem(const SourceDocument& document, const SourceFile& file) {
  const std::string& path = file.getPath();
  const std::string* standIn = document.findText(path);
  const std::string bytes = standIn != nullptr ? *standIn : readBytes(path);
  if (bytes == file.getText()) return std::string();
  if (bytes.find('\0') == file.getText().size() && bytes.starts_with(file.getText())) {
    return "'" + path + "' holds a zero byte; what is behind it is not read";
  }
  if (standIn == nullptr && bytes.starts_with(COMPRESSED)) return "'" + path + "' is compressed";
  return "'" + path + "' has changed since it was read";
}

bool holdsBytes(const std::string& path, const std::string& bytes) {
  return readBytes(path) == bytes;
}

std::string findNewMarker(const std::string& before, const std::string& after) {
  for (const char* marker : MARKERS) {
    if (count(after, marker) > count(before, marker)) return marker;
  }
  return std::string();
}

}  // namespace Quarry
