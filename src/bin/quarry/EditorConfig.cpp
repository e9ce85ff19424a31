#include "EditorConfig.h"

#include "GlobPattern.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <vector>

namespace Tool {

namespace {

constexpr char BLANKS[] = " \t\r\f\v";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::size_t LONGEST_PATTERN = 4096;

std::string_view trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(BLANKS);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

std::string toLower(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

/// A line that says something.
struct Line {
  std::string_view section;  ///< the pattern, where a section begins
  std::string key;           ///< otherwise, in lower case
  std::string value;         ///< in lower case
};

std::optional<Line> parseLine(std::string_view text) {
  text = trim(text);
  if (text.empty() || text.front() == '#' || text.front() == ';') return std::nullopt;
  if (text.front() == '[' && text.back() == ']') {
    return Line{text.substr(1, text.size() - 2), "", ""};
  }
  const std::size_t mark = text.find('=');
  if (mark == std::string_view::npos) return std::nullopt;
  const std::string key = toLower(trim(text.substr(0, mark)));
  if (key.empty()) return std::nullopt;
  return Line{{}, key, toLower(trim(text.substr(mark + 1)))};
}

std::vector<Line> parseLines(std::string_view text) {
  if (text.starts_with(BYTE_ORDER_MARK)) text.remove_prefix(BYTE_ORDER_MARK.size());
  std::vector<Line> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (auto line = parseLine(text.substr(0, end))) lines.push_back(*line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// A pattern without a slash is about names in any folder, others are about paths from here on.
bool isAbout(std::string_view pattern, const std::string& path) {
  if (pattern.size() > LONGEST_PATTERN) return false;
  const std::size_t slash = pattern.find('/');
  if (slash == 0) pattern.remove_prefix(1);
  const bool isName = slash == std::string_view::npos;
  return GlobPattern(pattern).matches(isName ? path.substr(path.rfind('/') + 1) : path);
}

std::optional<std::string> readIfThere(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string getProperty(const EditorProperties& properties, const std::string& name) {
  const auto found = properties.find(name);
  return found == properties.end() || found->second == "unset" ? std::string() : found->second;
}

std::optional<unsigned long> getSize(const EditorProperties& properties, const std::string& name) {
  constexpr unsigned long MOST = 64;
  const std::string value = getProperty(properties, name);
  unsigned long size = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, size);
  const bool isSize = result.ec == std::errc() && result.ptr == end && size <= MOST;
  return isSize ? std::optional(size) : std::nullopt;
}

}  // namespace

void applyEditorConfig(std::string_view text, const std::string& path,
                       EditorProperties& properties) {
  bool applies = false;
  for (const Line& line : parseLines(text)) {
    if (line.key.empty()) {
      applies = isAbout(line.section, path);
    } else if (applies) {
      properties[line.key] = line.value;
    }
  }
}

bool isRootEditorConfig(std::string_view text) {
  bool isRoot = false;
  for (const Line& line : parseLines(text)) {
    if (line.key.empty()) break;
    if (line.key == "root") isRoot = line.value == "true";
  }
  return isRoot;
}

EditorProperties readEditorProperties(const std::string& path) {
  std::error_code ignored;
  const std::filesystem::path whole = std::filesystem::absolute(path, ignored).lexically_normal();
  std::vector<std::pair<std::filesystem::path, std::string>> texts;  // the innermost first
  std::filesystem::path folder = whole.parent_path();
  for (bool isLast = whole.empty(); !isLast; folder = folder.parent_path()) {
    isLast = folder == folder.parent_path();
    auto text = readIfThere(folder / ".editorconfig");
    if (!text) continue;
    isLast = isLast || isRootEditorConfig(*text);
    texts.emplace_back(folder, std::move(*text));
  }
  EditorProperties properties;
  for (auto outer = texts.rbegin(); outer != texts.rend(); ++outer)
    applyEditorConfig(outer->second, whole.lexically_relative(outer->first).string(), properties);
  return properties;
}

/// A size of indentation that is not given is the tab's.
FormatStyle makeFormatStyle(const EditorProperties& properties) {
  FormatStyle style;
  const auto tabWidth = getSize(properties, "tab_width");
  const auto size = getSize(properties, "indent_size");
  if (const auto width = size ? size : tabWidth) style.indent = std::string(*width, ' ');
  if (getProperty(properties, "indent_style") == "tab") style.indent = "\t";
  const std::string lineEnd = getProperty(properties, "end_of_line");
  if (lineEnd == "lf") style.lineEnd = "\n";
  if (lineEnd == "crlf") style.lineEnd = "\r\n";
  const std::string finalLineEnd = getProperty(properties, "insert_final_newline");
  if (finalLineEnd == "true") style.endsInLineEnd = true;
  if (finalLineEnd == "false") style.endsInLineEnd = false;
  return style;
}

}  // namespace Tool
