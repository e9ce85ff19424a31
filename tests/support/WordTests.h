/// The tests of a word, as the parser asks them.
#pragma once

#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

namespace TestSupport {

/// Asks one test after the other until one succeeds, and returns whether one does. The word then
/// has the type that the test stands for.
inline bool passesTest(const Quarry::ParserWord& word) {
  Quarry::ParserValue::Type ignored = Quarry::ParserValue::TYPE_EMPTY;
  return word.isIdentifier() || word.isKeyword() || word.isOperator() || word.isSeparator() ||
         word.isValue(ignored);
}

}  // namespace TestSupport
