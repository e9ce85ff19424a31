/// Cuts files into spans.
#pragma once

#include <Quarry/internal/ParserWordStream.h>
#include <QuarrySource/SourceSpan.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Quarry {

/// Walks through the words of the preprocessed text and the runs of it that came from one file,
/// side by side. The runs have to be given in the order of the text.
class SpanCutter {
 public:
  SpanCutter(const std::string& text, double version) : words(text, version), word(words.next()) {}

  /// Passes over a run that came from another file.
  void passRun(unsigned long textOffset, unsigned long length) {
    while (word != nullptr && getWordEnd() <= textOffset + length)
      word = words.next();
  }

  /// Cuts a run, which may begin and end within words.
  /// @param offset of the run in the file
  void cutRun(unsigned long textOffset, unsigned long length, unsigned long offset) {
    const unsigned long end = textOffset + length;
    unsigned long done = textOffset;
    const auto add = [&](SourceSpan::Kind kind, unsigned long spanEnd) {
      if (spanEnd > done) spans.push_back({kind, offset + (done - textOffset), spanEnd - done});
      done = std::max(done, spanEnd);
    };
    while (word != nullptr && word->getStart() < end) {
      add(SourceSpan::SPAN_BLANK, word->getStart());
      add(SourceSpan::SPAN_WORD, std::min(getWordEnd(), end));
      if (getWordEnd() > end) return;
      word = words.next();
    }
    add(SourceSpan::SPAN_BLANK, end);
  }

  /// Adds what is no part of the text.
  void addMark(SourceSpan::Kind kind, unsigned long offset, unsigned long length) {
    spans.push_back({kind, offset, length});
  }

  /// Returns the spans in the order of the file.
  /// @param size of the file, in bytes
  std::vector<SourceSpan> finish(unsigned long size) {
    std::sort(spans.begin(), spans.end(),
              [](const SourceSpan& a, const SourceSpan& b) { return a.offset < b.offset; });
    std::vector<SourceSpan> all;
    unsigned long done = 0;
    for (const SourceSpan& span : spans) {
      if (span.offset > done) {
        all.push_back({SourceSpan::SPAN_UNREAD, done, span.offset - done});
      }
      all.push_back(span);
      done = span.offset + span.length;
    }
    if (done < size) all.push_back({SourceSpan::SPAN_UNREAD, done, size - done});
    return all;
  }

 private:
  unsigned long getWordEnd() const { return word->getStart() + word->getLength(); }

  ParserWordStream words;
  const ParserWord* word;  ///< the first one that does not end before what was cut
  std::vector<SourceSpan> spans;
};

}  // namespace Quarry
