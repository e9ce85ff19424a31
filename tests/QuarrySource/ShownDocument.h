/// Reads documents whose files stand in memory, and shows what is known of them on one line.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

/// Names and texts; the first one is the top file.
using MemoryFiles = std::vector<std::pair<std::string, std::string>>;

/// Reads a document of these files, which need not exist.
inline std::unique_ptr<Quarry::SourceDocument> readDocument(
    const MemoryFiles& files, const Quarry::ParserLimits& limits = Quarry::ParserLimits()) {
  auto document = std::make_unique<Quarry::SourceDocument>();
  for (const auto& [name, text] : files)
    document->setText(name, text);
  document->setLimits(limits);
  document->read(files.front().first);
  return document;
}

/// Reads a document of one file, "a.cfg".
inline std::unique_ptr<Quarry::SourceDocument> readDocument(const std::string& text) {
  return readDocument(MemoryFiles{{"a.cfg", text}});
}

inline std::string withVisibleBreaks(const std::string& text) {
  std::string visible;
  for (const char byte : text) {
    if (byte == '\n') {
      visible += "\\n";
    } else if (byte == '\r') {
      visible += "\\r";
    } else {
      visible += byte;
    }
  }
  return visible;
}

/// Shows the spans of an opening, such as "word[a] blank[ ] comment[// b\n]".
inline std::string showSpans(const Quarry::SourceDocument& document, unsigned long opening = 0) {
  constexpr const char* KINDS[] = {"word", "blank", "comment", "include", "version", "unread"};
  const std::string& text = document.getFileOf(opening).getText();
  std::string shown;
  for (const Quarry::SourceSpan& span : document.getSpans(opening)) {
    if (!shown.empty()) shown += ' ';
    shown += KINDS[span.kind];
    shown += "[" + withVisibleBreaks(text.substr(span.offset, span.length)) + "]";
  }
  return shown;
}

/// Shows a place with its includes, such as "b.cfg:1:2 < a.cfg:3:4"; "nowhere" without a file.
inline std::string showPlace(const Quarry::SourcePlace& place) {
  if (place.path.empty()) return "nowhere";
  std::string shown =
      place.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
  for (const Quarry::SourcePlace& include : place.includedFrom)
    shown += " < " + showPlace(include);
  return shown;
}

/// Shows where a byte of the preprocessed text comes from.
inline std::string showOrigin(const Quarry::SourceDocument& document, unsigned long offset) {
  return showPlace(document.getPlace(document.getPosition(offset)));
}

/// Shows a diagnostic, such as "has-no-value a.cfg:1:2+5": its rule, place and length.
inline std::string showDiagnostic(const Quarry::SourceDocument& document,
                                  const Quarry::SourceDiagnostic& diagnostic) {
  Quarry::SourcePlace place = document.getPlace(diagnostic);
  const std::vector<Quarry::SourcePlace> includes = std::move(place.includedFrom);
  place.includedFrom.clear();
  std::string shown = std::string(Quarry::getRuleName(diagnostic.rule)) + " " + showPlace(place) +
                      "+" + std::to_string(diagnostic.length);
  for (const Quarry::SourcePlace& include : includes)
    shown += " < " + showPlace(include);
  return shown;
}

/// Shows all diagnostics, one a string.
inline std::vector<std::string> showDiagnostics(const Quarry::SourceDocument& document) {
  std::vector<std::string> shown;
  for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics())
    shown.push_back(showDiagnostic(document, diagnostic));
  return shown;
}

/// Returns all whole messages.
inline std::vector<std::string> getMessages(const Quarry::SourceDocument& document) {
  std::vector<std::string> messages;
  for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics())
    messages.push_back(document.getMessage(diagnostic));
  return messages;
}

}  // namespace TestSupport
