/// Keeps what the parser finds wrong in a document.
#pragma once

#include <Quarry/internal/Diagnostic.h>
#include <QuarrySource/SourceDocument.h>

#include <vector>

#include "ParserRules.h"

namespace Quarry {

/// The parser's sink: fills the diagnostics of a document, and takes note of what the parser passes
/// over in silence.
class DiagnosticCollector {
 public:
  explicit DiagnosticCollector(SourceDocument& filled) : document(filled) {}

  void beginItem(const ParserWord&) {}
  void value(const ParserWord&, ParserValue::Type) {}
  void emptyTag(const ParserWord&) {}
  void beginCall(const ParserWord&) {}
  void endCall(const ParserWord&) {}
  void beginBracedItem(const ParserWord& word) { beginGroup(word); }
  void beginGroup(const ParserWord& word) { openGroups.push_back(word.getStart()); }

  void endGroup(const ParserWord* word) {
    if (word == nullptr) {
      add(SourceRule::GROUP_NOT_CLOSED, openGroups.back(), 1).isWarning = false;
    }
    openGroups.pop_back();
  }

  void endDocument(const ParserWord& word) {
    add(SourceRule::CLOSES_NO_GROUP, word.getStart(), 1).isWarning = false;
  }

  void groupLeftOut(const ParserWord& word) {
    if (leftOut.wordLength > 0) return;
    leftOut = make(SourceRule::LIMIT_EXCEEDED, word.getStart(), word.getLength());
    leftOut.line = word.getLine();
    leftOut.column = word.getColumn();
  }

  void warning(Diagnostic diagnostic, const ParserWord& word) {
    SourceDiagnostic& added =
        add(ParserRules::toRule(diagnostic), word.getStart(), word.getLength());
    added.line = word.getLine();
    added.column = word.getColumn();
  }

  /// Tells whether a group was left out, and has the document say so, once.
  /// @param message as the library ends its warning
  bool reportLeftOut(const std::string& message) {
    if (leftOut.wordLength == 0) return false;
    leftOut.message = document.messages.size();
    document.messages.push_back(message);
    document.diagnostics.push_back(leftOut);
    return true;
  }

 private:
  SourceDiagnostic make(SourceRule rule, unsigned long begin, unsigned long length) const {
    const SourcePiece piece = document.getPieces(begin, length).front();
    SourceDiagnostic diagnostic;
    diagnostic.rule = rule;
    diagnostic.opening = piece.position.opening;
    diagnostic.offset = piece.position.offset;
    diagnostic.length = piece.length;
    diagnostic.wordBegin = begin;
    diagnostic.wordLength = length;
    return diagnostic;
  }

  SourceDiagnostic& add(SourceRule rule, unsigned long begin, unsigned long length) {
    document.diagnostics.push_back(make(rule, begin, length));
    return document.diagnostics.back();
  }

  SourceDocument& document;
  std::vector<unsigned long> openGroups;  ///< where their braces are, in the text
  SourceDiagnostic leftOut;               ///< the first group that was left out
};

}  // namespace Quarry
