#include "LineMarkers.h"

#include <algorithm>
#include <stdexcept>

namespace Tool {

namespace {

constexpr std::size_t LONGEST_PIECE = 8190;
constexpr std::size_t MARKER_SIZE = 2;  ///< with its line feed
constexpr char BREAK = '$';
constexpr char JOIN = '\\';

/// Appends the bytes of a line in pieces that are short enough, each with a marker; the last one
/// keeps the line break where the line has one.
void appendMarked(std::string& marked, std::string_view line, bool hasBreak) {
  constexpr std::size_t LONGEST = LONGEST_PIECE - MARKER_SIZE;
  while (line.size() > LONGEST) {
    marked += line.substr(0, LONGEST);
    marked += JOIN;
    marked += '\n';
    line.remove_prefix(LONGEST);
  }
  marked += line;
  marked += hasBreak ? BREAK : JOIN;
  marked += '\n';
}

}  // namespace

std::string addLineMarkers(std::string_view text) {
  std::string marked;
  marked.reserve(text.size() + text.size() / 16);
  while (!text.empty()) {
    const std::size_t lineFeed = text.find('\n');
    const bool hasBreak = lineFeed != std::string_view::npos;
    appendMarked(marked, text.substr(0, lineFeed), hasBreak);
    text.remove_prefix(hasBreak ? lineFeed + 1 : text.size());
  }
  return marked;
}

std::string takeLineMarkers(std::string_view marked) {
  std::string text;
  text.reserve(marked.size());
  while (!marked.empty()) {
    const std::string_view piece = takePiece(marked);
    if (piece.size() < MARKER_SIZE) throw std::out_of_range("a line has less than two bytes");
    text += piece.substr(0, piece.size() - MARKER_SIZE);
    if (piece[piece.size() - MARKER_SIZE] == BREAK) text += '\n';
  }
  return text;
}

std::string_view takePiece(std::string_view& rest) {
  const std::size_t lineFeed = rest.substr(0, LONGEST_PIECE).find('\n');
  const std::size_t length =
      lineFeed == std::string_view::npos ? std::min(rest.size(), LONGEST_PIECE) : lineFeed + 1;
  const std::string_view piece = rest.substr(0, length);
  rest.remove_prefix(length);
  return piece;
}

bool hasLineMarkers(std::string_view text) {
  bool isJoined = text.empty() || text.ends_with('\n');
  for (std::size_t i = text.find('\n'); i != std::string_view::npos; i = text.find('\n', i + 1)) {
    const char before = i > 0 ? text[i - 1] : '\n';
    if (before == BREAK) return true;
    isJoined = isJoined && before == JOIN;
  }
  return isJoined;
}

}  // namespace Tool
