/// Describes the words of a text for tests.
#pragma once

#include <Quarry/internal/WordCutter.h>

#include <string>

namespace TestSupport {

/// Returns all words that are left, each with its line, column and type and whether the text was
/// exhausted before it.
inline std::string describeWords(Quarry::WordCutter& cutter) {
  std::string words;
  for (;;) {
    if (cutter.isExhausted()) words += "exhausted\n";
    const Quarry::TextWord* word = cutter.next();
    if (word == nullptr) return words;
    words += std::to_string(word->getLine()) + ":" + std::to_string(word->getColumn()) + " " +
             std::to_string(word->getType()) + " " + std::string(word->begin(), word->end()) + "\n";
  }
}

}  // namespace TestSupport
