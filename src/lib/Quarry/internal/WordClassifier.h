/// Tells what a word is.
#pragma once

#include <Quarry/ParserWord.h>

#include "WordScan.h"

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

  /// Returns the word's type, WORD_UNKNOWN when no test succeeds.
  static ParserWord::Type classify(const ParserWord& word) {
    if (word.type != ParserWord::WORD_UNKNOWN || word.length == 0) return byTests(word);
    if (word.length == 1 && isByteOf(*word.begin(), BYTE_DELIMITER)) return asDelimiter(word);
    const ParserWord::Type found = byFirstByte(word);
    if (found == ParserWord::WORD_UNKNOWN) return byTests(word);
    word.type = found;
    return found;
  }

 private:
  /// No test succeeds for a bracket.
  static ParserWord::Type asDelimiter(const ParserWord& word) {
    if (*word.begin() == '=') return word.type = ParserWord::WORD_OPERATOR;
    if (*word.begin() == ',') return word.type = ParserWord::WORD_SEPARATOR;
    return ParserWord::WORD_UNKNOWN;
  }

  /// Returns WORD_UNKNOWN where the first byte does not decide.
  static ParserWord::Type byFirstByte(const ParserWord& word) {
    const char* begin = word.begin();
    const char first = *begin;
    if (isByteOf(first, BYTE_LETTER) || first == '_') return asName(word);
    if (isByteOf(first, BYTE_DIGIT)) return asNumber(word, begin);
    if (first == '-' && word.length > 1 && isByteOf(begin[1], BYTE_DIGIT)) {
      return asNumber(word, begin + 1);
    }
    if (first == '"') return asString(word);
    if (first == '<') return asEmptyTag(word);
    return ParserWord::WORD_UNKNOWN;
  }

  /// Without a byte that is none of a name, `yes` and `no` are bools and all others identifiers.
  static ParserWord::Type asName(const ParserWord& word) {
    const char* begin = word.begin();
    if (!areNameBytes(begin, word.end(), word.textEnd)) return ParserWord::WORD_UNKNOWN;
    const bool isBool = (word.length == 2 && std::memcmp(begin, "no", 2) == 0) ||
                        (word.length == 3 && std::memcmp(begin, "yes", 3) == 0);
    return isBool ? ParserWord::WORD_BOOL : ParserWord::WORD_IDENTIFIER;
  }

  /// Whatever follows the first digit, unless that is the `x` behind a zero.
  static ParserWord::Type asNumber(const ParserWord& word, const char* firstDigit) {
    const bool isHexadecimal =
        *firstDigit == '0' && firstDigit + 1 != word.end() && (firstDigit[1] | 0x20) == 'x';
    if (isHexadecimal) return ParserWord::WORD_UNKNOWN;
    return hasFractionMark(word.begin(), word.end(), word.textEnd) ? ParserWord::WORD_DOUBLE
                                                                   : ParserWord::WORD_INT;
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
