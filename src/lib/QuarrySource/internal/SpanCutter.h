/// Cuts files into spans.
#pragma once

#include <Quarry/internal/ParserWordStream.h>
#include <QuarrySource/SourceSpan.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace Quarry {

/// Puts the spans of one file together. What is added has to come in the order of the file: runs
/// among themselves, and marks among themselves.
class SpanCutter {
 public:
  /// @param itsText the preprocessed one; both have to outlive this
  SpanCutter(const std::string& itsText, const double& itsVersion)
      : text(itsText), version(itsVersion) {}

  /// Cuts a run of the preprocessed text, which may begin and end within words.
  /// @param wordEnd where the word ends that began before the run; at most `textBegin` for none
  /// @param offset of the run in the file
  void cutRun(unsigned long textBegin, unsigned long length, unsigned long wordEnd,
              unsigned long offset) {
    const unsigned long textEnd = textBegin + length;
    const unsigned long begin = std::clamp(wordEnd, textBegin, textEnd);
    done = offset;
    add(SourceSpan::SPAN_WORD, offset + (begin - textBegin));
    const std::string rest(text, begin, textEnd - begin);
    const unsigned long restOffset = offset + (begin - textBegin);
    ParserWordStream words(rest, version);
    while (const ParserWord* word = words.next()) {
      add(SourceSpan::SPAN_BLANK, restOffset + word->getStart());
      add(SourceSpan::SPAN_WORD, restOffset + word->getStart() + word->getLength());
    }
    add(SourceSpan::SPAN_BLANK, offset + length);
  }

  /// Adds what is no part of the text.
  void addMark(SourceSpan::Kind kind, unsigned long offset, unsigned long length) {
    marks.push_back({kind, offset, length});
  }

  /// Returns the spans in the order of the file.
  /// @param size of the file, in bytes
  std::vector<SourceSpan> finish(unsigned long size) {
    std::vector<SourceSpan> read;
    read.reserve(spans.size() + marks.size());
    std::merge(spans.begin(), spans.end(), marks.begin(), marks.end(), std::back_inserter(read),
               [](const SourceSpan& a, const SourceSpan& b) { return a.offset < b.offset; });
    spans.clear();
    done = 0;
    for (const SourceSpan& span : read) {
      add(SourceSpan::SPAN_UNREAD, span.offset);
      add(span.kind, span.offset + span.length);
    }
    add(SourceSpan::SPAN_UNREAD, size);
    return std::move(spans);
  }

 private:
  /// Adds what reaches from the span before it to `end`, unless that is nothing.
  void add(SourceSpan::Kind kind, unsigned long end) {
    if (end > done) spans.push_back({kind, done, end - done});
    done = end;
  }

  const std::string& text;
  const double& version;
  unsigned long done = 0;  ///< where the next span begins
  std::vector<SourceSpan> spans;
  std::vector<SourceSpan> marks;
};

}  // namespace Quarry
