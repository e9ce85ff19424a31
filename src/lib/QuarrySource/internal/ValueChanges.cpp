#include "ValueChanges.h"

#include <algorithm>
#include <string_view>

namespace Quarry {

namespace {

constexpr char BLANKS_AND_LINE_BREAKS[] = " \t\r\n";
constexpr char BETWEEN_VALUES[] = " \t\r\n,";

bool isBlank(std::string_view text) {
  return text.find_first_not_of(BLANKS_AND_LINE_BREAKS) == std::string_view::npos;
}

bool isPlainGap(std::string_view gap) {
  return gap.find_first_not_of(BETWEEN_VALUES) == std::string_view::npos;
}

}  // namespace

std::string findPieceProblem(const SourceDocument& document, const std::string& what,
                             unsigned long begin, unsigned long length) {
  constexpr std::size_t MOST_TOLD = 3;
  const std::vector<SourcePiece> pieces = document.getPieces(begin, length);
  if (pieces.size() == 1) return std::string();
  std::string problem = what + " is put together of several pieces:";
  for (std::size_t i = 0; i < std::min(pieces.size(), MOST_TOLD); ++i) {
    const SourcePlace place = document.getPlace(pieces[i].position);
    problem +=
        " " + place.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
  }
  const bool areAllTold = pieces.size() <= MOST_TOLD;
  return areAllTold ? problem : problem + ", " + std::to_string(pieces.size()) + " in all";
}

ValueChanges::ValueChanges(const SourceTree& itsTree, unsigned long index)
    : tree(itsTree), document(tree.getDocument()), item(tree.getItem(index)) {}

void ValueChanges::replace(unsigned long index, const std::string& spelling) {
  const SourceValue& value = getValue(index);
  const std::string what = "value " + std::to_string(index + 1);
  if (problem.empty()) problem = findPieceProblem(document, what, value.begin, value.length);
  const SourcePosition begin = document.getPosition(value.begin);
  changes.push_back({begin.opening, begin.offset, begin.offset + value.length, spelling});
}

// --- Remove --------------------------------------------------------------------------------------

void ValueChanges::remove(unsigned long index) {
  if (index > 0) return removeLater(index);
  return item.valueCount == 1 ? removeAll() : removeFirst();
}

void ValueChanges::removeFrom(unsigned long first) {
  if (first == 0) return removeAll();
  for (unsigned long i = first; i < item.valueCount; ++i)
    removeLater(i);
}

/// With what stands between it and the value before it, unless that is not only blanks and commas.
void ValueChanges::removeLater(unsigned long index) {
  const SourceValue& value = getValue(index);
  const unsigned long gap = isPlainGap(getGap(index)) ? getGap(index).size() : 0;
  removeText(value.begin - gap, value.begin + value.length);
}

/// With what stands between it and the next value.
void ValueChanges::removeFirst() {
  const unsigned long gap = isPlainGap(getGap(1)) ? getGap(1).size() : 0;
  removeText(getValue(0).begin, getValueEnd(0) + gap);
}

/// What is left is an empty argument list, or a group without values.
void ValueChanges::removeAll() {
  const bool isCall = item.type == ParserItem::ITEM_CALL;
  removeText(isCall ? getValue(0).begin : getHeadEnd(), getValueEnd(item.valueCount - 1));
}

/// A stretch that is in one piece goes as it is. Of others, only what is no blank goes, and before
/// the last word the blanks as well.
void ValueChanges::removeText(unsigned long begin, unsigned long end) {
  const std::vector<SourcePiece> pieces = document.getPieces(begin, end - begin);
  unsigned long textOffset = begin;
  for (const SourcePiece& piece : pieces) {
    const std::string_view bytes =
        std::string_view(document.getText()).substr(textOffset, piece.length);
    textOffset += piece.length;
    const bool isWhole = textOffset == end;
    if (isBlank(bytes)) continue;
    const std::size_t first = isWhole ? 0 : bytes.find_first_not_of(BLANKS_AND_LINE_BREAKS);
    const std::size_t last =
        isWhole ? bytes.size() : bytes.find_last_not_of(BLANKS_AND_LINE_BREAKS) + 1;
    const unsigned long at = piece.position.offset;
    changes.push_back({piece.position.opening, at + first, at + last, std::string()});
  }
}

// --- Append --------------------------------------------------------------------------------------

void ValueChanges::append(const std::vector<std::string>& spellings) {
  const bool isCall = item.type == ParserItem::ITEM_CALL;
  std::string separator = getSeparator();
  std::string text;
  for (const std::string& spelling : spellings) {
    const bool isFirst = text.empty() && item.valueCount == 0;
    text += isFirst ? (isCall ? "" : " ") : separator;
    text += spelling;
  }
  if (item.valueCount > 0) {
    insert(getValueEnd(item.valueCount - 1), text);
  } else {
    insert(isCall ? item.argumentsBegin + 1 : getHeadEnd(), text);
  }
}

/// Behind the byte of the text that ends there.
void ValueChanges::insert(unsigned long textEnd, const std::string& text) {
  const SourcePosition last = document.getPosition(textEnd - 1);
  changes.push_back({last.opening, last.offset + 1, last.offset + 1, text});
}

/// Values go on as the last two do.
std::string ValueChanges::getSeparator() const {
  const char* usual = item.type == ParserItem::ITEM_CALL ? ", " : " ";
  if (item.valueCount < 2) return usual;
  const unsigned long last = item.valueCount - 1;
  const std::string_view gap = getGap(last);
  const bool isInOnePiece =
      document.getPieces(getValueEnd(last - 1) - 1, gap.size() + 2).size() == 1;
  if (isPlainGap(gap) && isInOnePiece) return std::string(gap);
  return gap.find(',') != std::string_view::npos ? ", " : " ";
}

// --- Look ----------------------------------------------------------------------------------------

unsigned long ValueChanges::getValueEnd(unsigned long index) const {
  return getValue(index).begin + getValue(index).length;
}

/// Returns what stands before a value, from the value before it on.
std::string_view ValueChanges::getGap(unsigned long index) const {
  const unsigned long begin = getValueEnd(index - 1);
  return std::string_view(document.getText()).substr(begin, getValue(index).begin - begin);
}

/// Returns the end of the name, or of the `=` behind it.
unsigned long ValueChanges::getHeadEnd() const {
  const std::string& text = document.getText();
  const unsigned long nameEnd = item.nameBegin + item.nameLength;
  const std::size_t next = text.find_first_not_of(BLANKS_AND_LINE_BREAKS, nameEnd);
  return next != std::string::npos && text[next] == '=' ? next + 1 : nameEnd;
}

}  // namespace Quarry
