/// Cuts a document's text into words.
#pragma once

#include <Quarry/ParserWord.h>

#include "WordCutter.h"

#include <cstddef>
#include <string>

namespace Quarry {

/// The source of words of one parse: one word at a time, with line and column.
///
/// The words are WordCutter's. Here they come as who has to keep or to test them wants them, not
/// classified yet.
///
/// The stream points into the text, which must stay alive and unchanged.
class ParserWordStream {
 public:
  /// @param textBegin where in `source` the text begins, in bytes from 0
  ParserWordStream(const std::string& source, const double& version, std::size_t textBegin = 0)
      : cutter(source, version, textBegin) {}

  /// @param comments as for WordCutter
  ParserWordStream(std::string& source, const double& version, std::size_t textBegin,
                   Comments comments)
      : cutter(source, version, textBegin, comments) {}

  /// Tells whether nothing is left to scan. A text that ends in blanks is not exhausted before
  /// next() has found no further word.
  bool isExhausted() const { return cutter.isExhausted(); }

  /// Returns the next word, or null when there is none. The word is the stream's and is aimed anew
  /// by the next call.
  const ParserWord* next() {
    const TextWord* cut = cutter.next();
    if (cut == nullptr) return nullptr;
    const ParserWord& word = *cut;
    word.type = ParserWord::WORD_UNKNOWN;
    return &word;
  }

  /// The same words, for who reads the rest of the text.
  WordCutter& getCutter() { return cutter; }

 private:
  WordCutter cutter;
};

}  // namespace Quarry
