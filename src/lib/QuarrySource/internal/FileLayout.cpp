#include "FileLayout.h"

#include <Quarry/internal/Comments.h>

#include <algorithm>

namespace Quarry {

namespace {

constexpr char BLANKS[] = " \t";
constexpr char LINE_BREAKS[] = "\r\n";

}  // namespace

std::string_view FileLayout::getLineEnd() const {
  const std::size_t lineFeed = text.find('\n');
  if (lineFeed == std::string::npos) {
    const bool hasReturns = text.find('\r') != std::string::npos;
    return hasReturns && text.find(COMMENT_MARKER) == std::string::npos ? "\r" : "\n";
  }
  return lineFeed > 0 && text[lineFeed - 1] == '\r' ? "\r\n" : "\n";
}

unsigned long FileLayout::getLineBegin(unsigned long offset) const {
  if (offset == 0) return 0;
  const std::size_t found = text.find_last_of(LINE_BREAKS, offset - 1);
  return found == std::string::npos ? 0 : found + 1;
}

bool FileLayout::isFirstOnLine(unsigned long offset) const {
  const unsigned long behind = skipBlanksBack(offset);
  return behind == 0 || text[behind - 1] == '\n' || text[behind - 1] == '\r';
}

std::string_view FileLayout::getIndentation(unsigned long offset) const {
  const unsigned long begin = getLineBegin(offset);
  const unsigned long end = std::min(text.find_first_not_of(BLANKS, begin), text.size());
  return std::string_view(text).substr(begin, end - begin);
}

bool FileLayout::areOnOneLine(unsigned long begin, unsigned long end) const {
  return text.find_first_of(LINE_BREAKS, begin) >= end;
}

LineRest FileLayout::getRest(unsigned long offset) const {
  LineRest rest;
  rest.begin = std::min(text.find_first_not_of(BLANKS, offset), text.size());
  rest.end = rest.begin;
  const std::string_view behind = std::string_view(text).substr(rest.begin);
  const bool isComment = behind.starts_with(COMMENT_MARKER);
  const bool isWord = !isComment && !behind.empty() && behind[0] != '\r' && behind[0] != '\n';
  rest.kind = isComment ? LineRest::COMMENT : isWord ? LineRest::WORD : LineRest::NOTHING;
  if (isWord) return rest;
  // A comment goes up to a line feed, past carriage returns.
  const std::size_t lineEnd = isComment ? behind.find('\n') : behind.find_first_of(LINE_BREAKS);
  rest.hasLineEnd = lineEnd != std::string_view::npos;
  if (!rest.hasLineEnd) {
    rest.end = text.size();
  } else {
    rest.end += lineEnd + (behind.substr(lineEnd).starts_with("\r\n") ? 2 : 1);
  }
  return rest;
}

unsigned long FileLayout::skipBlanksBack(unsigned long offset) const {
  while (offset > 0 && (text[offset - 1] == ' ' || text[offset - 1] == '\t'))
    --offset;
  return offset;
}

unsigned long FileLayout::skipLineEndBack(unsigned long lineBegin) const {
  if (lineBegin == 0) return 0;
  const unsigned long lineBreak = lineBegin - 1;
  const bool isPair = text[lineBreak] == '\n' && lineBreak > 0 && text[lineBreak - 1] == '\r';
  return isPair ? lineBreak - 1 : lineBreak;
}

}  // namespace Quarry
