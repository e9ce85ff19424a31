/// Keeps what the preprocessor tells of a document's files.
#pragma once

#include <Quarry/internal/Diagnostic.h>
#include <Quarry/internal/Messages.h>
#include <QuarrySource/SourceDocument.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quarry {

/// The preprocessor's sink: fills the files, openings, runs and marks of a document.
///
/// The text of a file is the preprocessor's until the file ends; when reading fails, the files that
/// are still open never end, and their texts are copied.
class SourceCollector {
 public:
  explicit SourceCollector(SourceDocument& filled) : document(filled) {}

  void beginFile(const std::string&, const std::string& path, std::string& text) {
    if (open.empty()) document.text.reserve(text.size());
    SourceDocument::Opening opening = nextOpening;
    opening.file = findFile(path, text);
    if (!open.empty()) opening.includer = open.back().opening;
    open.push_back({document.openings.size(), SourceDocument::NOWHERE, 0, &text});
    document.openings.push_back(opening);
  }

  void run(unsigned long offset, std::string_view bytes) {
    const unsigned long textOffset = document.text.size();
    document.text += bytes;
    document.runs.push_back({textOffset, at(offset), bytes.size()});
  }

  void comment(unsigned long offset, std::string_view bytes) {
    document.marks.push_back({SourceSpan::SPAN_COMMENT, at(offset), bytes.size()});
  }

  void versionLine(unsigned long offset, std::string_view bytes) {
    document.marks.push_back({SourceSpan::SPAN_VERSION, at(offset), bytes.size()});
    open.back().versionOffset = offset;
    open.back().versionLength = bytes.size();
  }

  void include(unsigned long offset, std::string_view bytes, const std::string&) {
    document.marks.push_back({SourceSpan::SPAN_INCLUDE, at(offset), bytes.size()});
    nextOpening.includeOffset = offset;
    nextOpening.includeLength = bytes.size();
  }

  void unclosedInclude(unsigned long offset) {
    add(SourceRule::UNCLOSED_INCLUDE, "An include has no closing quote.", offset,
        open.back().text->size() - offset);
    hasUnclosedInclude = true;
  }

  void endFile(double version) {
    const OpenFile& file = open.back();
    const bool isTop = open.size() == 1;
    const bool isUsable = isTop ? version > 0.0 : version != 0.0;
    if (!isUsable && !hasUnclosedInclude) addUnusableVersion(file);
    if (!isUsable) keepOpenFiles();
    SourceFile& kept = *document.files[document.openings[file.opening].file];
    if (kept.getText().empty()) kept = SourceFile(kept.getPath(), std::move(*file.text));
    open.pop_back();
  }

  /// About the top file, which cannot be opened, or about the file that was just included.
  void warning(FileDiagnostic diagnostic, const std::string& message) {
    static_assert(static_cast<int>(SourceRule::INCLUDE_CYCLE) ==
                  static_cast<int>(FileDiagnostic::INCLUDES_ITSELF));
    const auto rule = static_cast<SourceRule>(diagnostic);
    add(rule, message, nextOpening.includeOffset, nextOpening.includeLength);
    document.diagnostics.back().isWarning = true;
    keepOpenFiles();
  }

  /// The library throws there.
  void badCompressedLine() {
    add(SourceRule::BAD_COMPRESSED_LINE, "A line of a compressed file has less than two bytes.",
        nextOpening.includeOffset, nextOpening.includeLength);
    keepOpenFiles();
  }

 private:
  struct OpenFile {
    unsigned long opening;
    unsigned long versionOffset;  ///< of the last version line
    unsigned long versionLength;
    std::string* text;
  };

  SourcePosition at(unsigned long offset) const { return {open.back().opening, offset}; }

  /// Returns the file of that path and text, a new one if there is none: a file may change between
  /// two includes.
  unsigned long findFile(const std::string& path, const std::string& text) {
    const auto [first, last] = filesByPath.equal_range(path);
    for (auto known = first; known != last; ++known) {
      if (document.files[known->second]->getText() == text) return known->second;
    }
    const unsigned long index = document.files.size();
    document.files.push_back(std::make_unique<SourceFile>(path, std::string()));
    filesByPath.emplace(path, index);
    return index;
  }

  void keepOpenFiles() {
    for (const OpenFile& file : open) {
      SourceFile& kept = *document.files[document.openings[file.opening].file];
      if (kept.getText().empty()) kept = SourceFile(kept.getPath(), *file.text);
    }
  }

  void addUnusableVersion(const OpenFile& file) {
    const bool hasLine = file.versionOffset != SourceDocument::NOWHERE;
    add(SourceRule::UNUSABLE_VERSION, "The version that the file declares is not positive.",
        hasLine ? file.versionOffset : 0, hasLine ? file.versionLength : 0);
  }

  void add(SourceRule rule, const std::string& message, unsigned long offset,
           unsigned long length) {
    SourceDiagnostic diagnostic;
    diagnostic.rule = rule;
    diagnostic.isWarning = false;
    diagnostic.opening = open.empty() ? SourceDiagnostic::NO_OPENING : open.back().opening;
    diagnostic.offset = offset;
    diagnostic.length = length;
    diagnostic.message = document.messages.size();
    document.messages.push_back(message);
    document.diagnostics.push_back(diagnostic);
  }

  SourceDocument& document;
  std::vector<OpenFile> open;           ///< the top file first
  SourceDocument::Opening nextOpening;  ///< what the last include said
  std::multimap<std::string, unsigned long> filesByPath;
  bool hasUnclosedInclude = false;
};

}  // namespace Quarry
