#include <QuarrySource/SourceFile.h>

#include <algorithm>
#include <utility>

namespace Quarry {

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool isLineEnd(char byte) { return byte == '\n' || byte == '\r'; }

}  // namespace

SourceFile::SourceFile(std::string filePath, std::string fileText)
    : path(std::move(filePath)), text(std::move(fileText)) {}

LineColumn SourceFile::getLineColumn(unsigned long offset) const {
  const std::vector<unsigned long>& begins = getLineBegins();
  const auto next = std::upper_bound(begins.begin(), begins.end(), offset);
  const auto line = static_cast<unsigned long>(next - begins.begin());
  const unsigned long begin = getTextBegin(line);
  return {line, offset < begin ? 1 : offset - begin + 1};
}

unsigned long SourceFile::getOffset(const LineColumn& place) const {
  if (place.line == 0) return 0;
  if (place.line > getLineCount()) return text.size();
  const unsigned long begin = getTextBegin(place.line);
  const unsigned long length = getTextEnd(place.line) - begin;
  return begin + std::min(place.column - (place.column > 0 ? 1 : 0), length);
}

std::string_view SourceFile::getLine(unsigned long line) const {
  if (line == 0 || line > getLineCount()) return {};
  const unsigned long begin = getTextBegin(line);
  return std::string_view(text).substr(begin, getTextEnd(line) - begin);
}

unsigned long SourceFile::getLineCount() const { return getLineBegins().size(); }

const std::vector<unsigned long>& SourceFile::getLineBegins() const {
  if (!lineBegins.empty()) return lineBegins;
  std::vector<unsigned long> begins = {0};
  for (unsigned long i = 0; i < text.size(); ++i) {
    if (!isLineEnd(text[i])) continue;
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    begins.push_back(i + 1);
  }
  lineBegins = std::move(begins);
  return lineBegins;
}

/// Editors show no byte order mark.
unsigned long SourceFile::getTextBegin(unsigned long line) const {
  const bool hasMark = line == 1 && text.starts_with(BYTE_ORDER_MARK);
  return hasMark ? BYTE_ORDER_MARK.size() : getLineBegins()[line - 1];
}

unsigned long SourceFile::getTextEnd(unsigned long line) const {
  const std::vector<unsigned long>& begins = getLineBegins();
  unsigned long end = line < begins.size() ? begins[line] : text.size();
  if (line == begins.size()) return end;
  while (end > begins[line - 1] && isLineEnd(text[end - 1]))
    --end;
  return end;
}

}  // namespace Quarry
