#include "RewriteRules.h"

#include <Quarry/ParserWord.h>
#include <Quarry/internal/BinaryNumber.h>
#include <Quarry/internal/Comments.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/WordClassifier.h>

#include "RewrittenText.h"

#include <cmath>

namespace Quarry {

namespace {

constexpr double WRITTEN_VERSION = 1.1;
constexpr std::string_view INCLUDE_MARKER = "#include \"";
constexpr std::string_view VERSION_MARKER = "#SerialVersion ";

bool holds(std::string_view text, std::string_view wanted) {
  return text.find(wanted) != std::string_view::npos;
}

bool holdsZeroByte(std::string_view text) { return text.find('\0') != std::string_view::npos; }

/// Returns the number of a value of which nothing is to change.
double getNumber(const ParserValue& value) { return ParserValue(value).getAsDouble(); }

bool isNumeric(ParserValue::Type type) {
  return type >= ParserValue::TYPE_BOOL && type <= ParserValue::TYPE_DOUBLE;
}

/// Tells whether a number is written as one raw byte: its text then says another number. Only 0
/// does not show so, whose byte is no digit either.
bool isRawByte(const ParserValue& value, const std::string& spelling) {
  if (spelling.size() != 1 || value.getType() == ParserValue::TYPE_BOOL) return false;
  const double spelled = ParserValue(value.getType(), spelling).getAsDouble();
  return spelling.front() == '\0' || toBits(spelled) != toBits(getNumber(value));
}

/// Tells whether the text of a number is a name: `inf`, `nan` and their like are.
bool isNamedNumber(const ParserValue& value, const std::string& spelling) {
  return value.getType() == ParserValue::TYPE_DOUBLE && !std::isfinite(getNumber(value)) &&
         ParserWord(spelling, true, WRITTEN_VERSION).isIdentifier();
}

/// Tells whether the text, as a number in a file, has something behind it that is a comment.
bool holdsComment(const std::string& spelling) {
  return holds(spelling, COMMENT_MARKER) && RewrittenText(spelling).getText() != spelling;
}

/// Tells whether the preprocessor is within a string behind the text.
bool leavesStringOpen(const std::string& spelling) {
  if (!holds(spelling, "\"")) return false;
  const std::string followed = spelling + " //";
  return RewrittenText(followed).getText() == followed;
}

}  // namespace

RewriteRules::RewriteRules(const RewriteText& writtenTree, const ParserItem* keyword)
    : written(writtenTree),
      parts(writtenTree.getParts()),
      versionKeyword(keyword),
      markers{{RewriteHazard::VERSION_MARKER, VERSION_MARKER},
              {RewriteHazard::INCLUDE_MARKER, INCLUDE_MARKER}},
      lastSlashes(written.getText().rfind(COMMENT_MARKER)) {
  constexpr std::size_t WITHIN_VERSION_LINE = 1;
  for (Marker& marker : markers)
    marker.next = written.getText().find(marker.bytes, WITHIN_VERSION_LINE);
  for (const RewritePart& part : parts) {
    if (part.isItem()) lastItemBegin = part.begin;
  }
}

RewriteRules::Kinds RewriteRules::lookAt(unsigned long index) {
  const RewritePart& part = parts[index];
  Kinds found;
  if (part.isItem()) {
    lookAtItem(part, found);
  } else if (part.group != nullptr) {
    lookAtGroup(part, found);
  } else {
    lookAtValue(part, found);
  }
  lookForMarkers(index, found);
  return found;
}

// --- Items ---------------------------------------------------------------------------------------

void RewriteRules::lookAtItem(const RewritePart& part, Kinds& found) const {
  const ParserItem& item = *part.item;
  const ParserWord name(item.getName(), true, WRITTEN_VERSION);
  const bool isPlainOrCall =
      item.getType() == ParserItem::ITEM_PLAIN || item.getType() == ParserItem::ITEM_CALL;
  if (name.isKeyword()) {
    if (!item.isKeyWord()) found.push_back(RewriteHazard::WRONG_KIND);
  } else if (!name.isIdentifier()) {
    found.push_back(RewriteHazard::ODD_NAME);
  } else if (!isPlainOrCall) {
    found.push_back(RewriteHazard::WRONG_KIND);
  }
  if (item.isTemplate()) found.push_back(RewriteHazard::TEMPLATE);
  if (item.isArray()) found.push_back(RewriteHazard::ARRAY);
  // Too many braces are passed over in silence where the text ends with them.
  if (part.isFolded && lastItemBegin >= part.end) found.push_back(RewriteHazard::FOLDED_GROUP);
  if (&item == versionKeyword) found.push_back(RewriteHazard::VERSION_KEYWORD);
}

void RewriteRules::lookAtGroup(const RewritePart& part, Kinds& found) const {
  if (!part.group->getName().empty()) found.push_back(RewriteHazard::GROUP_NAME);
  if (part.index + 1 < part.item->getValueCount()) {
    found.push_back(RewriteHazard::VALUE_BEHIND_GROUP);
  }
}

// --- Values --------------------------------------------------------------------------------------

void RewriteRules::lookAtValue(const RewritePart& part, Kinds& found) const {
  switch (part.value->getType()) {
    case ParserValue::TYPE_STRING: return lookAtString(part, found);
    case ParserValue::TYPE_BINARYDATA: return;
    case ParserValue::TYPE_EMPTY: return found.push_back(RewriteHazard::EMPTY_TAG);
    default: return lookAtNumber(part, found);
  }
}

/// What is escaped ends in a backslash where the string itself does.
void RewriteRules::lookAtString(const RewritePart& part, Kinds& found) const {
  const std::string_view spelling = written.getSpelling(part);
  if (spelling.ends_with("\\\"") && !written.endsLine(part)) {
    found.push_back(RewriteHazard::OPEN_QUOTE);
  }
  if (holdsZeroByte(spelling)) found.push_back(RewriteHazard::ZERO_BYTE);
}

/// One reason is enough for a number.
void RewriteRules::lookAtNumber(const RewritePart& part, Kinds& found) const {
  const ParserValue& value = *part.value;
  const std::string spelling(written.getSpelling(part));
  if (isNumeric(value.getType()) && isRawByte(value, spelling)) {
    found.push_back(RewriteHazard::RAW_BYTE);
  } else if (value.getType() == ParserValue::TYPE_CHAR) {
    found.push_back(RewriteHazard::CHARACTER);
  } else if (!isOneWord(part)) {
    found.push_back(isNamedNumber(value, spelling) ? RewriteHazard::NOT_FINITE
                                                   : RewriteHazard::UNREADABLE_TEXT);
  } else if (holdsComment(spelling)) {
    found.push_back(RewriteHazard::NUMBER_COMMENT);
  } else if (isQuoteLeftOpen(part)) {
    found.push_back(RewriteHazard::NUMBER_QUOTE);
  }
}

/// Tells whether the text of a value is, by itself, one word that reads as the value.
bool RewriteRules::isOneWord(const RewritePart& part) const {
  const std::string spelling(written.getSpelling(part));
  ParserWordStream words(spelling, WRITTEN_VERSION);
  const ParserWord* word = words.next();
  if (word == nullptr) return false;
  WordClassifier::classify(*word);
  ParserValue::Type type = ParserValue::TYPE_EMPTY;
  if (word->isIdentifier() || !word->isValue(type) || type != part.value->getType()) return false;
  const double number = ParserValue(type, word->getString()).getAsDouble();
  return toBits(number) == toBits(getNumber(*part.value)) && words.next() == nullptr;
}

/// The word stream closes a quote at the end of the line, the preprocessor does not: to it, what
/// stands in strings further on is outside of them.
bool RewriteRules::isQuoteLeftOpen(const RewritePart& part) const {
  const std::string spelling(written.getSpelling(part));
  if (!holds(spelling, "\"")) return false;
  const std::string followed = spelling + " 0";
  ParserWordStream words(followed, WRITTEN_VERSION);
  const ParserWord* word = words.next();
  const bool takesMore = word->getStart() + word->getLength() > spelling.size();
  if (takesMore && !written.endsLine(part)) return true;
  const bool isCommentBehind = lastSlashes != std::string::npos && lastSlashes >= part.end;
  return isCommentBehind && leavesStringOpen(spelling);
}

// --- Items and values ----------------------------------------------------------------------------

/// Tells of directives that begin in the part. They may go on in the next one, as that of a keyword
/// `#include` does in its first string.
void RewriteRules::lookForMarkers(unsigned long index, Kinds& found) {
  const std::string& text = written.getText();
  const bool isLast = index + 1 == parts.size();
  const std::size_t end = isLast ? text.size() : parts[index + 1].begin;
  for (Marker& marker : markers) {
    if (marker.next >= end) continue;
    const bool isTold = parts[index].item == versionKeyword && parts[index].isItem() &&
                        marker.kind == RewriteHazard::VERSION_MARKER;
    if (!isTold) found.push_back(marker.kind);
    marker.next = text.find(marker.bytes, end);
  }
}

}  // namespace Quarry
