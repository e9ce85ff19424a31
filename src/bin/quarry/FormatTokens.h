/// A file as the formatter sees it: what stands in it, apart from blanks.
#pragma once

#include <QuarrySource/SourceDocument.h>

#include "FormatWords.h"

#include <string_view>
#include <vector>

namespace Tool {

struct FormatToken {
  enum class Kind { WORD, COMMENT, VERSION, INCLUDE };

  Kind kind;
  WordRole role = WordRole::DROPPED;  ///< of a word
  unsigned long begin = 0;            ///< in the file
  std::string_view text;              ///< a comment or a version line has its line end
  std::string_view gap;               ///< the blanks before it
  unsigned long breaks = 0;           ///< line ends before it, that of a comment included
  unsigned long level = 0;            ///< of indentation, where it begins a line

  /// What is between it and the token before it stays as it is. Mostly that is nothing: they are
  /// parts of one word, or what stands within one, as the comment in `1//2`, line feed, `3`: that
  /// is the word `13`.
  bool isGlued = false;

  /// A word whose quotes are not closed: it ends with its line.
  bool isUnclosed = false;

  bool isWord(WordRole wanted) const { return kind == Kind::WORD && role == wanted; }
  bool endsLine() const { return kind == Kind::COMMENT || kind == Kind::VERSION; }
};

/// The tokens of a file. The last one is where the document ends, if a brace ends it.
struct FormatTokens {
  std::vector<FormatToken> all;

  /// The document's last word may be a name. Such a one makes an item only with two blanks behind
  /// it, so that everything there stays as it is.
  bool endInName = false;
};

/// Cuts the top file of a document, which has to outlive the tokens.
FormatTokens cutTokens(const Quarry::SourceDocument& document);

/// Returns a token's text without what ends its line.
std::string_view withoutLineEnd(std::string_view text);

/// Returns how many lines end in a text; CR LF ends one.
unsigned long countLineEnds(std::string_view text);

}  // namespace Tool
