#include "SameDocument.h"

#include <Quarry/internal/ParserWordStream.h>
#include <QuarrySource/SourceTree.h>

#include "FormatTokens.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tool {

using Quarry::ParserWord;
using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourceItem;
using Quarry::SourceSpan;
using Quarry::SourceTree;
using Quarry::SourceValue;

namespace {

std::string_view getBytes(const SourceDocument& document, unsigned long begin,
                          unsigned long length) {
  return std::string_view(document.getText()).substr(begin, length);
}

std::string_view getBytes(const SourceDocument& document, const ParserWord& word) {
  return getBytes(document, word.getStart(), word.getLength());
}

bool haveSameWords(const SourceDocument& first, const SourceDocument& second) {
  const double version = first.getVersion();
  Quarry::ParserWordStream firstWords(first.getText(), version);
  Quarry::ParserWordStream secondWords(second.getText(), version);
  for (;;) {
    const ParserWord* a = firstWords.next();
    const ParserWord* b = secondWords.next();
    if (a == nullptr || b == nullptr) return a == nullptr && b == nullptr;
    if (getBytes(first, *a) != getBytes(second, *b)) return false;
  }
}

bool haveSameDiagnostics(const SourceDocument& first, const SourceDocument& second) {
  const auto areSameOnes = [&](const SourceDiagnostic& a, const SourceDiagnostic& b) {
    return a.rule == b.rule && a.isWarning == b.isWarning &&
           getBytes(first, a.wordBegin, a.wordLength) ==
               getBytes(second, b.wordBegin, b.wordLength);
  };
  return std::ranges::equal(first.getDiagnostics(), second.getDiagnostics(), areSameOnes);
}

bool haveSameValues(const SourceTree& first, const SourceItem& a, const SourceTree& second,
                    const SourceItem& b) {
  if (a.valueCount != b.valueCount) return false;
  for (unsigned long i = 0; i < a.valueCount; ++i) {
    const SourceValue& value = first.getValue(a, i);
    const SourceValue& other = second.getValue(b, i);
    if (value.type != other.type) return false;
    if (first.getSpelling(value) != second.getSpelling(other)) return false;
  }
  return true;
}

bool haveSameItems(const SourceTree& first, const SourceTree& second) {
  if (first.getItemCount() != second.getItemCount()) return false;
  for (unsigned long i = 0; i < first.getItemCount(); ++i) {
    const SourceItem& a = first.getItem(i);
    const SourceItem& b = second.getItem(i);
    const bool isSame = a.type == b.type && first.getName(a) == second.getName(b) &&
                        a.parent == b.parent && a.next == b.next && a.hasGroup() == b.hasGroup();
    if (!isSame || !haveSameValues(first, a, second, b)) return false;
  }
  return true;
}

/// Returns what of the top file is neither words nor blanks.
std::vector<std::pair<SourceSpan::Kind, std::string_view>> getMarks(
    const SourceDocument& document) {
  const std::string_view text = document.getFileOf(0).getText();
  std::vector<std::pair<SourceSpan::Kind, std::string_view>> marks;
  for (const SourceSpan& span : document.getSpans(0)) {
    if (span.kind == SourceSpan::SPAN_WORD || span.kind == SourceSpan::SPAN_BLANK) continue;
    marks.emplace_back(span.kind, withoutLineEnd(text.substr(span.offset, span.length)));
  }
  return marks;
}

}  // namespace

bool areSame(const SourceDocument& first, const SourceDocument& second) {
  if (first.getVersion() != second.getVersion()) return false;
  return haveSameWords(first, second) && haveSameDiagnostics(first, second) &&
         haveSameItems(SourceTree(first), SourceTree(second)) &&
         getMarks(first) == getMarks(second);
}

}  // namespace Tool
