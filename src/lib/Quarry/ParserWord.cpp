#include <Quarry/ParserWord.h>

#include "internal/ByteClass.h"
#include "internal/NumberText.h"
#include "internal/StringText.h"
#include "internal/WordScan.h"

#include <algorithm>
#include <cstring>

namespace Quarry {

namespace {

constexpr double FIRST_VERSION_WITH_ESCAPES = 1.1;

bool areAllOf(const char* begin, const char* end, int classes) {
  return std::all_of(begin, end, [classes](char byte) { return isByteOf(byte, classes); });
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserWord::ParserWord(const double& version)
    : type(WORD_UNKNOWN),
      text(nullptr),
      textEnd(nullptr),
      start(0),
      length(0),
      line(0),
      column(0),
      arraySize(NO_ARRAY),
      templateWord(nullptr),
      resolvesEscapes(!(version < FIRST_VERSION_WITH_ESCAPES)) {}

ParserWord::ParserWord(const std::string& source, const bool& whole, const double& version)
    : ParserWord(version) {
  text = source.data();
  textEnd = text + source.size();
  length = whole ? source.size() : 0;
}

ParserWord::ParserWord(const ParserWord& other)
    : type(other.type),
      text(other.text),
      textEnd(other.textEnd),
      start(other.start),
      length(other.length),
      line(other.line),
      column(other.column),
      arraySize(other.arraySize),
      templateWord(other.templateWord != nullptr ? new ParserWord(*other.templateWord) : nullptr),
      resolvesEscapes(other.resolvesEscapes) {}

/// The template word is copied first: nothing is lost when that fails or a word is assigned to
/// itself.
ParserWord& ParserWord::operator=(const ParserWord& other) {
  ParserWord* copy = other.templateWord != nullptr ? new ParserWord(*other.templateWord) : nullptr;
  type = other.type;
  text = other.text;
  textEnd = other.textEnd;
  start = other.start;
  length = other.length;
  line = other.line;
  column = other.column;
  arraySize = other.arraySize;
  resolvesEscapes = other.resolvesEscapes;
  delete templateWord;
  templateWord = copy;
  return *this;
}

ParserWord::~ParserWord() { delete templateWord; }

// --- Look ----------------------------------------------------------------------------------------

/// The zero byte behind the text ends the comparison at the latest.
bool ParserWord::operator==(const char* prefix) const {
  if (length == 0) return *prefix == 0;
  const char* byte = begin();
  while (*prefix != 0 && *prefix == *byte) {
    ++prefix;
    ++byte;
  }
  return *prefix == 0;
}

// --- Classify ------------------------------------------------------------------------------------
//
// A test whose rule holds fixes the type. A word that has a type already is not examined again.

bool ParserWord::classify(Type wanted, bool holds) const {
  if (holds) type = wanted;
  return holds;
}

/// Tells whether the word, as a string, is `literal`. Making a string in format 1.1 finds out first
/// whether the word is quoted, so this does too.
template <unsigned long SIZE>
bool ParserWord::spells(const char (&literal)[SIZE]) const {
  constexpr unsigned long LENGTH = SIZE - 1;
  if (resolvesEscapes && isString()) return false;
  if (length < LENGTH || std::memcmp(begin(), literal, LENGTH) != 0) return false;
  return length == LENGTH || begin()[LENGTH] == 0;  // a zero byte ends a string
}

bool ParserWord::isIdentifier() const {
  if (type != WORD_UNKNOWN) return type == WORD_IDENTIFIER;
  if (length == 0 || isBool()) return false;
  const bool holds = (isByteOf(*begin(), BYTE_LETTER) || *begin() == '_') &&
                     areAllOf(begin() + 1, end(), NAME_BYTES);
  return classify(WORD_IDENTIFIER, holds);
}

bool ParserWord::isOperator() const {
  if (type != WORD_UNKNOWN) return type == WORD_OPERATOR;
  return classify(WORD_OPERATOR, spells("="));
}

bool ParserWord::isSeparator() const {
  if (type != WORD_UNKNOWN) return type == WORD_SEPARATOR;
  return classify(WORD_SEPARATOR, spells(","));
}

bool ParserWord::isKeyword() const {
  if (type != WORD_UNKNOWN) return type == WORD_KEYWORD;
  if (length < 2 || isBool()) return false;
  const bool holds = *begin() == '#' && isByteOf(begin()[1], BYTE_LETTER | BYTE_NAME_MARK) &&
                     areAllOf(begin() + 2, end(), NAME_BYTES);
  return classify(WORD_KEYWORD, holds);
}

bool ParserWord::isBool() const {
  if (type != WORD_UNKNOWN) return type == WORD_BOOL;
  return classify(WORD_BOOL, spells("yes") || spells("no"));
}

bool ParserWord::isBinaryData() const {
  if (type != WORD_UNKNOWN) return type == WORD_BINARYDATA;
  return classify(WORD_BINARYDATA, length >= 3 && begin()[0] == '0' && begin()[1] == 'x');
}

/// An `e` or a point anywhere makes a word a double; an `E` does not.
bool ParserWord::isInt() const {
  if (type != WORD_UNKNOWN) return type == WORD_INT;
  const bool holds =
      length > 0 && beginsWithInt({begin(), length}) &&
      std::none_of(begin(), end(), [](char byte) { return byte == 'e' || byte == '.'; });
  return classify(WORD_INT, holds);
}

bool ParserWord::isDouble() const {
  if (type != WORD_UNKNOWN) return type == WORD_DOUBLE;
  return classify(WORD_DOUBLE, length > 0 && beginsWithDouble({begin(), length}));
}

bool ParserWord::isString() const {
  if (type != WORD_UNKNOWN) return type == WORD_STRING;
  return classify(WORD_STRING, length >= 2 && *begin() == '"' && end()[-1] == '"');
}

bool ParserWord::isEmptyTag() const {
  if (type != WORD_UNKNOWN) return type == WORD_EMPTYTAG;
  return classify(WORD_EMPTYTAG, spells("<empty>"));
}

bool ParserWord::isValue(ParserValue::Type& valueType) const {
  if (isEmptyTag()) {
    valueType = ParserValue::TYPE_EMPTY;
  } else if (isBinaryData()) {
    valueType = ParserValue::TYPE_BINARYDATA;
  } else if (isBool()) {
    valueType = ParserValue::TYPE_BOOL;
  } else if (isInt()) {
    valueType = ParserValue::TYPE_INT;
  } else if (isDouble()) {
    valueType = ParserValue::TYPE_DOUBLE;
  } else if (isString()) {
    valueType = ParserValue::TYPE_STRING;
  } else {
    return false;
  }
  return true;
}

bool ParserWord::isValuetype(const Type& t) {
  return t == WORD_BOOL || t == WORD_BINARYDATA || (t >= WORD_INT && t <= WORD_EMPTYTAG);
}

// --- Text ----------------------------------------------------------------------------------------

std::string ParserWord::getString() const {
  std::string string;
  if (resolvesEscapes) {
    getString_0110(string);
  } else {
    getString_0100(string);
  }
  return string;
}

void ParserWord::getString_0100(std::string& out) const {
  out.clear();
  if (length > 0) out.assign(begin(), strnlen(begin(), length));
}

void ParserWord::getString_0110(std::string& out) const {
  if (isString()) {
    appendUnescaped(out, {begin(), length});
  } else {
    getString_0100(out);
  }
}

}  // namespace Quarry
