#include "SourceLocation.h"

#include "Failure.h"
#include "Texts.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Tool {

using Quarry::LineColumn;
using Quarry::SourceDocument;
using Quarry::SourceFile;
using Quarry::SourceItem;
using Quarry::SourcePosition;
using Quarry::SourceTree;

namespace {

/// Takes a number from 1 on, with the colon before it, off the end of a text.
/// @return 0 where there is none
unsigned long takeNumber(std::string_view& text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return 0;
  const char* const end = text.data() + text.size();
  unsigned long number = 0;
  const std::from_chars_result result = std::from_chars(text.data() + colon + 1, end, number);
  if (result.ec != std::errc() || result.ptr != end) return 0;
  text = text.substr(0, colon);
  return number;
}

bool isSameFile(const std::string& path, const std::string& other) {
  std::error_code error;
  return path == other || std::filesystem::equivalent(path, other, error);
}

/// Returns the includes that lead to a byte, the outermost one first, and the byte.
std::vector<SourcePosition> getWay(const SourceDocument& document, SourcePosition position) {
  std::vector<SourcePosition> way = {position};
  for (;;) {
    const SourceDocument::Opening& opening = document.getOpening(way.back().opening);
    if (opening.includer == SourceDocument::NOWHERE) break;
    way.push_back({opening.includer, opening.includeOffset});
  }
  std::reverse(way.begin(), way.end());
  return way;
}

/// Tells whether a byte is read before another one.
bool isBefore(const SourceDocument& document, const SourcePosition& position,
              const SourcePosition& other) {
  const std::vector<SourcePosition> way = getWay(document, position);
  const std::vector<SourcePosition> otherWay = getWay(document, other);
  return std::lexicographical_compare(
      way.begin(), way.end(), otherWay.begin(), otherWay.end(),
      [](const SourcePosition& a, const SourcePosition& b) { return a.offset < b.offset; });
}

}  // namespace

SourceLocation parseLocation(const std::string& text) {
  std::string_view rest = text;
  LineColumn place;
  place.column = takeNumber(rest);
  place.line = place.column > 0 ? takeNumber(rest) : 0;
  if (place.line == 0 || rest.empty()) throw Failure(Texts::badLocation(text));
  return {std::string(rest), place};
}

std::vector<unsigned long> findOpenings(const SourceDocument& document, const std::string& path) {
  std::vector<bool> isWanted;
  for (unsigned long i = 0; i < document.getFileCount(); ++i)
    isWanted.push_back(isSameFile(document.getFile(i).getPath(), path));
  std::vector<unsigned long> openings;
  for (unsigned long i = 0; i < document.getOpeningCount(); ++i) {
    if (isWanted[document.getOpening(i).file]) openings.push_back(i);
  }
  return openings;
}

/// The end of a line counts as a column: that is where its line end stands.
unsigned long findOffset(const SourceFile& file, const LineColumn& place) {
  if (place.line > file.getLineCount()) {
    throw Failure(Texts::tooFewLines(file.getPath(), file.getLineCount()));
  }
  const unsigned long size = file.getLine(place.line).size();
  if (place.column > size + 1) throw Failure(Texts::tooFewColumns(place.line, size));
  return file.getOffset(place);
}

/// The bytes of the text are in the order in which they were read.
unsigned long findTextOffset(const SourceDocument& document, const SourcePosition& position) {
  unsigned long begin = 0;
  unsigned long end = document.getText().size();
  while (begin < end) {
    const unsigned long middle = begin + (end - begin) / 2;
    if (isBefore(document, document.getPosition(middle), position)) {
      begin = middle + 1;
    } else {
      end = middle;
    }
  }
  return begin;
}

/// A group that is not closed goes on to the end of the text.
unsigned long findItemAround(const SourceTree& tree, unsigned long textOffset) {
  unsigned long begin = 0;
  unsigned long end = tree.getItemCount();
  while (begin < end) {
    const unsigned long middle = begin + (end - begin) / 2;
    if (tree.getItem(middle).nameBegin < textOffset) {
      begin = middle + 1;
    } else {
      end = middle;
    }
  }
  unsigned long index = begin == 0 ? SourceTree::NOWHERE : begin - 1;
  while (index != SourceTree::NOWHERE) {
    const SourceItem& item = tree.getItem(index);
    const bool isOpen = item.hasGroup() && item.groupEnd == SourceItem::NOWHERE;
    if (isOpen || textOffset < item.end) break;
    index = item.parent;
  }
  return index;
}

}  // namespace Tool
