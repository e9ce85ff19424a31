#include <Plinth/Label.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/WordClassifier.h>
#include <QuarrySource/SourceLiteral.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

namespace Quarry {

namespace {

constexpr double NEWEST_VERSION = 1.1;
constexpr double FIRST_VERSION_WITH_ESCAPES = 1.1;

std::string spell(const ParserValue& value) {
  std::string text;
  value.getText(text, false, 0);
  return text;
}

/// The bits tell zeros apart, but not what is not a number.
bool isSameDouble(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Returns why a text is no value; empty where it is one.
std::string findProblem(const std::string& text, ParserValue::Type& type) {
  if (text.find('\0') != std::string::npos) return "a zero byte is no part of a value";
  ParserWordStream words(text, NEWEST_VERSION);
  const ParserWord* word = words.next();
  if (word == nullptr) return "an empty text is no value; an empty string is \"\"";
  if (word->getLength() != text.size()) {
    return "'" + text + "' is more than one word; a text stands in double quotes";
  }
  const ParserWord::Type kind = WordClassifier::classify(*word);
  const bool isName = kind == ParserWord::WORD_IDENTIFIER || kind == ParserWord::WORD_KEYWORD;
  if (isName) return "'" + text + "' is a name and no value; a text stands in double quotes";
  if (!word->isValue(type)) return "'" + text + "' is no value";
  return std::string();
}

}  // namespace

SourceLiteral::SourceLiteral(ParserValue::Type itsType, std::string itsSpelling)
    : type(itsType), spelling(std::move(itsSpelling)) {}

SourceLiteral SourceLiteral::makeBool(bool value) {
  SourceLiteral literal(ParserValue::TYPE_BOOL, value ? "yes" : "no");
  literal.number = value ? 1.0 : 0.0;
  return literal;
}

SourceLiteral SourceLiteral::makeInt(int value) {
  SourceLiteral literal(ParserValue::TYPE_INT, Plinth::getLabel(value));
  literal.number = value;
  return literal;
}

SourceLiteral SourceLiteral::makeDouble(double value) {
  const std::string label = Plinth::getLabel(value);
  const bool needsSign = !std::isfinite(value) && label.front() != '-';
  SourceLiteral literal(ParserValue::TYPE_DOUBLE, (needsSign ? "+" : "") + label);
  literal.number = value;
  return literal;
}

SourceLiteral SourceLiteral::makeString(const std::string& value) {
  SourceLiteral literal(ParserValue::TYPE_STRING, std::string());
  literal.bytes = value;
  return literal;
}

SourceLiteral SourceLiteral::makeBinary(const std::string& bytes) {
  std::string copy = bytes;
  SourceLiteral literal(ParserValue::TYPE_BINARYDATA, spell(ParserValue(copy.data(), copy.size())));
  literal.bytes = std::move(copy);
  return literal;
}

SourceLiteral SourceLiteral::makeEmpty() {
  return SourceLiteral(ParserValue::TYPE_EMPTY, "<empty>");
}

SourceLiteral SourceLiteral::parse(const std::string& word) {
  SourceLiteral literal(ParserValue::TYPE_EMPTY, word);
  literal.typed = true;
  literal.problem = findProblem(word, literal.type);
  return literal;
}

std::string SourceLiteral::getSpelling(double version) const {
  if (typed || type != ParserValue::TYPE_STRING) return spelling;
  if (version < FIRST_VERSION_WITH_ESCAPES) return '"' + bytes + '"';
  return spell(ParserValue(bytes));
}

bool SourceLiteral::isFirstValueOf(const ParserItem& item) const {
  if (type == ParserValue::TYPE_EMPTY) return item.getValueCount() == 0;
  if (item.getValueCount() == 0 || item.getValueType(0) != type) return false;
  if (typed) return true;
  switch (type) {
    case ParserValue::TYPE_BOOL: return item.getBool(0) == (number != 0.0);
    case ParserValue::TYPE_INT: return item.getInt(0) == static_cast<int>(number);
    case ParserValue::TYPE_DOUBLE: return isSameDouble(item.getDouble(0), number);
    case ParserValue::TYPE_STRING: return item.getString(0) == bytes;
    default: break;
  }
  const auto* data = static_cast<const char*>(item.getBinaryData(0));
  return std::string_view(data, item.getBinaryDataSize(0)) == bytes;
}

}  // namespace Quarry
