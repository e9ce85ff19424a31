#include "FormatTokens.h"

#include <utility>

namespace Tool {

using Quarry::SourceDocument;
using Quarry::SourcePiece;
using Quarry::SourceSpan;

namespace {

constexpr unsigned long TOP = 0;  // the opening of the top file

/// Behind a folded group; five words to the parser, which closes three groups there.
constexpr std::string_view FOLD_END = "/*}}}*/";

/// Tells where bytes of the top file ended up; asked for in their order.
class TextOffsets {
 public:
  explicit TextOffsets(const SourceDocument& document)
      : pieces(document.getPieces(0, document.getText().size())) {}

  unsigned long find(unsigned long offset) {
    while (!holds(pieces[index], offset)) {
      textOffset += pieces[index].length;
      ++index;
    }
    return textOffset + (offset - pieces[index].position.offset);
  }

 private:
  static bool holds(const SourcePiece& piece, unsigned long offset) {
    return piece.position.opening == TOP && offset < piece.position.offset + piece.length;
  }

  std::vector<SourcePiece> pieces;
  std::size_t index = 0;
  unsigned long textOffset = 0;  ///< of the piece
};

class TokenCutter {
 public:
  explicit TokenCutter(const SourceDocument& source)
      : document(source),
        text(source.getFileOf(TOP).getText()),
        offsets(source),
        words(WordRecorder(source).record()) {}

  FormatTokens cut() {
    for (const SourceSpan& span : document.getSpans(TOP)) {
      switch (span.kind) {
        case SourceSpan::SPAN_WORD: addWord(span); break;
        case SourceSpan::SPAN_BLANK: passBlank(span); break;
        case SourceSpan::SPAN_INCLUDE: addInclude(span); break;
        case SourceSpan::SPAN_COMMENT: add(FormatToken::Kind::COMMENT, span); break;
        case SourceSpan::SPAN_VERSION: add(FormatToken::Kind::VERSION, span); break;
        case SourceSpan::SPAN_UNREAD: break;  // reading has failed then
      }
      if (!tokens.empty() && tokens.back().isWord(WordRole::DOCUMENT_END)) break;
    }
    indentComments();
    const bool endInName = !words.empty() && (words.back().role == WordRole::NAME ||
                                              words.back().role == WordRole::DROPPED);
    if (endInName) keepEnd();
    return {std::move(tokens), endInName};
  }

 private:
  FormatToken& add(FormatToken::Kind kind, const SourceSpan& span) {
    FormatToken token;
    token.kind = kind;
    token.begin = span.offset;
    token.text = text.substr(span.offset, span.length);
    token.gap = text.substr(done, span.offset - done);
    token.breaks = countLineEnds(token.gap);
    if (!tokens.empty() && tokens.back().endsLine()) ++token.breaks;
    token.isGlued = isWithinWord || span.offset < foldEnd;
    tokens.push_back(token);
    done = span.offset + span.length;
    return tokens.back();
  }

  void passBlank(const SourceSpan& span) {
    isWithinWord = false;
    textEnd = offsets.find(span.offset) + span.length;
  }

  void addWord(const SourceSpan& span) {
    const unsigned long begin = offsets.find(span.offset);
    textEnd = begin + span.length;
    goTo(begin);
    const FormatWord& word = words[current];
    FormatToken& token = add(FormatToken::Kind::WORD, span);
    token.role = word.role;
    token.level = word.level;
    token.isUnclosed = word.isUnclosed;
    keepUnreadComment(token);
    const bool isBegun = word.begin < begin && begin < word.end;
    if (isBegun && !token.isGlued) glueToInclude();
    if (begin >= word.end) keepUnread();
    isWithinWord = textEnd < word.end || token.isUnclosed;
    if (text.substr(span.offset).starts_with(FOLD_END)) foldEnd = span.offset + FOLD_END.size();
  }

  /// The document has ended in an included file: what is behind the last word stays as it is.
  void keepUnread() {
    std::size_t i = tokens.size() - 1;
    do {
      tokens[i].isGlued = true;
    } while (i-- > 0 && tokens[i].kind != FormatToken::Kind::WORD);
  }

  /// Behind a quote that does not close, comments are words, most of which are dropped. Their lines
  /// stay as people wrote them.
  void keepUnreadComment(FormatToken& token) {
    if (token.breaks > 0) isInUnreadComment = false;
    if (token.isWord(WordRole::DROPPED) && token.text.starts_with("//")) isInUnreadComment = true;
    if (isInUnreadComment && token.breaks == 0) token.isGlued = true;
  }

  /// What is behind an include is part of a word only if it goes on with one.
  void addInclude(const SourceSpan& span) {
    const bool isUnclosed = !tokens.empty() && tokens.back().isUnclosed;
    add(FormatToken::Kind::INCLUDE, span).level = getLevelBehind();
    isWithinWord = isWithinWord && isUnclosed;
  }

  /// Returns the level behind what was passed of the text. Files that were included since then are
  /// in it where there are blanks behind them.
  unsigned long getLevelBehind() {
    if (textEnd == 0 || words.empty()) return 0;
    goTo(textEnd - 1);
    return words[current].begin < textEnd ? words[current].levelBehind : 0;
  }

  /// Makes the last word that begins up to a byte of the text the current one.
  void goTo(unsigned long offset) {
    while (current + 1 < words.size() && words[current + 1].begin <= offset)
      ++current;
  }

  /// An included file began the word that the last token is a part of.
  void glueToInclude() {
    for (std::size_t i = tokens.size() - 1; i > 0 && tokens[i].kind != FormatToken::Kind::INCLUDE;
         --i)
      tokens[i].isGlued = true;
  }

  void keepEnd() {
    for (auto token = tokens.rbegin(); token != tokens.rend() && token->endsLine(); ++token)
      token->isGlued = true;
  }

  /// A comment on a line of its own belongs to what follows, and before the end of a group or of
  /// arguments to what is in there.
  void indentComments() {
    unsigned long level = words.empty() ? 0 : words.back().levelBehind;
    for (auto token = tokens.rbegin(); token != tokens.rend(); ++token) {
      if (token->endsLine()) {
        token->level = level;
        continue;
      }
      const bool isEnd =
          token->isWord(WordRole::GROUP_END) || token->isWord(WordRole::ARGUMENTS_END);
      level = token->level + (isEnd ? 1 : 0);
    }
  }

  const SourceDocument& document;
  const std::string_view text;
  TextOffsets offsets;
  std::vector<FormatWord> words;
  std::size_t current = 0;    ///< the last of the words that was come to
  unsigned long done = 0;     ///< the end of the last token, in the file
  unsigned long textEnd = 0;  ///< what of the preprocessed text was passed
  unsigned long foldEnd = 0;  ///< of the last marker, in the file
  bool isWithinWord = false;
  bool isInUnreadComment = false;
  std::vector<FormatToken> tokens;
};

}  // namespace

FormatTokens cutTokens(const SourceDocument& document) { return TokenCutter(document).cut(); }

std::string_view withoutLineEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

unsigned long countLineEnds(std::string_view text) {
  unsigned long count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isWhole = text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n';
    if ((text[i] == '\r' || text[i] == '\n') && isWhole) ++count;
  }
  return count;
}

}  // namespace Tool
