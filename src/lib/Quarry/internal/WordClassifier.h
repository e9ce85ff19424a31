/// Tells what a word is.
#pragma once

#include <Quarry/ParserWord.h>

#include "TextWord.h"
#include "WordScan.h"

#include <cstddef>
#include <cstring>
#include <string_view>

namespace Quarry {

/// Classifies a word as the parser asks: with the type of the first of ParserWord's tests that
/// succeeds, in the order name, operator, separator, value.
///
/// Nearly every word shows by its first byte which test that is, so that the others need not be
/// asked. The word gets the type, as the test would give it.
class WordClassifier {
 public:
  /// Returns 0 for an empty word.
  static char firstByte(const ParserWord& word) { return word.length > 0 ? *word.begin() : '\0'; }
  static char firstByte(const TextWord& word) { return *word.begin(); }

  /// Returns the word's type, WORD_UNKNOWN when no test succeeds.
  static ParserWord::Type classify(const ParserWord& word) {
    if (word.type != ParserWord::WORD_UNKNOWN || word.length == 0) return byTests(word);
    if (word.length == 1 && isByteOf(*word.begin(), BYTE_DELIMITER)) {
      return word.type = ofDelimiter(*word.begin());
    }
    const ParserWord::Type found = byFirstByte(word);
    if (found == ParserWord::WORD_UNKNOWN) return byTests(word);
    word.type = found;
    return found;
  }
  static ParserWord::Type classify(const TextWord& word) { return word.getType(); }

  // What a word is that shows by its first byte what it may be; WORD_UNKNOWN where the tests have
  // to be asked. The byte behind the word is read as well: behind a text stands a zero byte.

  /// No test succeeds for a bracket.
  static ParserWord::Type ofDelimiter(char byte) {
    if (byte == '=') return ParserWord::WORD_OPERATOR;
    return byte == ',' ? ParserWord::WORD_SEPARATOR : ParserWord::WORD_UNKNOWN;
  }

  /// Of bytes of names, `yes` and `no` are bools and all others identifiers.
  static ParserWord::Type ofName(const char* begin, const char* end) {
    const std::ptrdiff_t length = end - begin;
    const bool isBool = (std::memcmp(begin, "no", 2) == 0 && length == 2) ||
                        (std::memcmp(begin, "ye", 2) == 0 && length == 3 && begin[2] == 's');
    return isBool ? ParserWord::WORD_BOOL : ParserWord::WORD_IDENTIFIER;
  }

  /// What begins with a digit is a decimal number, whatever follows, unless that is the `x` behind
  /// a zero.
  static bool isDecimal(const char* firstDigit, const char* end) {
    return (firstDigit[1] | 0x20) != 'x' || *firstDigit != '0' || firstDigit + 1 == end;
  }

  /// Integers and doubles stand side by side in many lists, so that no branch tells them apart.
  static ParserWord::Type ofDecimal(bool hasFractionMark) {
    static_assert(ParserWord::WORD_DOUBLE == ParserWord::WORD_INT + 1);
    return static_cast<ParserWord::Type>(ParserWord::WORD_INT + (hasFractionMark ? 1 : 0));
  }

 private:
  static ParserWord::Type byFirstByte(const ParserWord& word) {
    const char* begin = word.begin();
    const char first = *begin;
    if (isByteOf(first, BYTE_LETTER) || first == '_') {
      const bool isName = areNameBytes(begin, word.end(), word.textEnd);
      return isName ? ofName(begin, word.end()) : ParserWord::WORD_UNKNOWN;
    }
    const bool isNegative = first == '-' && word.length > 1;
    if (isByteOf(isNegative ? begin[1] : first, BYTE_DIGIT)) {
      const bool isNumber = isDecimal(begin + (isNegative ? 1 : 0), word.end());
      if (!isNumber) return ParserWord::WORD_UNKNOWN;
      return ofDecimal(hasFractionMark(begin, word.end(), word.textEnd));
    }
    if (first == '"') return asString(word);
    if (first == '<') return asEmptyTag(word);
    return ParserWord::WORD_UNKNOWN;
  }

  static ParserWord::Type asString(const ParserWord& word) {
    const bool isQuoted = word.length >= 2 && word.end()[-1] == '"';
    return isQuoted ? ParserWord::WORD_STRING : ParserWord::WORD_UNKNOWN;
  }

  static ParserWord::Type asEmptyTag(const ParserWord& word) {
    constexpr std::string_view TAG = "<empty>";
    const bool isTag = std::string_view(word.begin(), word.length) == TAG;
    return isTag ? ParserWord::WORD_EMPTYTAG : ParserWord::WORD_UNKNOWN;
  }

  /// Not inlined: it is for few words and would burden all.
  [[gnu::noinline]] static ParserWord::Type byTests(const ParserWord& word) {
    ParserValue::Type ignored = ParserValue::TYPE_EMPTY;
    static_cast<void>(word.isIdentifier() || word.isKeyword() || word.isOperator() ||
                      word.isSeparator() || word.isValue(ignored));
    return word.type;
  }
};

}  // namespace Quarry
