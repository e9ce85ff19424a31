#include "Formatter.h"

#include "FormatTokens.h"

#include <string_view>

namespace Tool {

using Quarry::SourceDocument;

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

/// Before these, some blanks would make a directive of the words, and none a word of the byte order
/// mark and the comment behind it.
bool keepsGapBehind(const FormatToken& token) {
  return token.text.ends_with("#include") || token.text.ends_with("#SerialVersion") ||
         token.text == BYTE_ORDER_MARK;
}

/// Tells whether a token begins a line. A line break behind an include may close a quote that the
/// included file left open.
bool beginsLine(const FormatToken& previous, const FormatToken& token) {
  if (previous.endsLine() || previous.isUnclosed) return true;
  if (token.endsLine() || keepsGapBehind(previous)) return token.breaks > 0;
  if (previous.isWord(WordRole::GROUP_BEGIN)) return true;
  if (token.kind == FormatToken::Kind::INCLUDE) {
    return token.breaks > 0 || previous.isWord(WordRole::GROUP_END);
  }
  switch (token.role) {
    case WordRole::NAME:
    case WordRole::GROUP_END:
    case WordRole::DOCUMENT_END: return true;
    case WordRole::OPERATOR:
    case WordRole::SEPARATOR:
    case WordRole::GROUP_BEGIN:
    case WordRole::ARGUMENTS_BEGIN:
      return token.breaks > 0 && previous.kind == FormatToken::Kind::INCLUDE;
    case WordRole::VALUE:
    case WordRole::ARGUMENTS_END:
    case WordRole::DROPPED: break;
  }
  return token.breaks > 0;
}

/// Returns what stands between two tokens of a line.
std::string_view getGap(const FormatToken& previous, const FormatToken& token) {
  constexpr std::string_view BLANK = " ";
  if (keepsGapBehind(previous)) return token.gap;
  if (token.endsLine()) return token.gap.empty() ? BLANK : token.gap;
  const bool isName = previous.isWord(WordRole::NAME);
  const bool isJoined = previous.isWord(WordRole::ARGUMENTS_BEGIN) ||
                        token.isWord(WordRole::ARGUMENTS_END) || token.text == "," ||
                        (isName && token.isWord(WordRole::ARGUMENTS_BEGIN));
  return isJoined ? std::string_view() : BLANK;
}

class Formatter {
 public:
  Formatter(const SourceDocument& document, const FormatStyle& chosen)
      : text(document.getFileOf(0).getText()), source(cutTokens(document)), style(chosen) {
    const std::size_t lineFeed = text.find('\n');
    const bool hasReturn =
        lineFeed != std::string_view::npos && lineFeed > 0 && text[lineFeed - 1] == '\r';
    lineEnd = style.lineEnd.value_or(hasReturn ? "\r\n" : "\n");
  }

  std::string format() {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      const FormatToken& token = tokens[i];
      separate(i);
      if (token.isWord(WordRole::DOCUMENT_END)) return out.append(text.substr(token.begin));
      const bool isGluedTo = i + 1 < tokens.size() && tokens[i + 1].isGlued;
      out += isGluedTo ? token.text : withoutLineEnd(token.text);
    }
    if (!tokens.empty()) finish();
    return std::move(out);
  }

 private:
  void separate(std::size_t index) {
    const FormatToken& token = tokens[index];
    if (token.isGlued) {
      out += token.gap;
      return;
    }
    if (index == 0) return indent(token);
    if (!beginsLine(tokens[index - 1], token)) {
      out += getGap(tokens[index - 1], token);
      return;
    }
    out += lineEnd;
    if (token.breaks > 1) out += lineEnd;
    indent(token);
  }

  void finish() {
    const FormatToken& last = tokens.back();
    const std::string_view rest = text.substr(last.begin + withoutLineEnd(last.text).size());
    if (source.endInName) {
      out += rest;
    } else if (style.endsInLineEnd.value_or(countLineEnds(rest) > 0)) {
      out += lineEnd;
    }
  }

  void indent(const FormatToken& token) {
    for (unsigned long i = 0; i < token.level; ++i)
      out += style.indent;
  }

  const std::string_view text;
  const FormatTokens source;
  const std::vector<FormatToken>& tokens = source.all;
  const FormatStyle& style;
  std::string lineEnd;
  std::string out;
};

}  // namespace

std::string formatFile(const SourceDocument& document, const FormatStyle& style) {
  return Formatter(document, style).format();
}

}  // namespace Tool
