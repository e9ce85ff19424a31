#include "StringText.h"

#include <array>

namespace Quarry {

namespace {

constexpr char ESCAPE = '\\';

/// The byte that stands behind the backslash for a byte that has to be escaped; 0 for the others.
constexpr std::array<char, 256> makeEscapes() {
  std::array<char, 256> escapes{};
  escapes['\r'] = 'r';
  escapes['\t'] = 't';
  escapes['\n'] = 'n';
  escapes['\''] = '\'';
  escapes['"'] = '"';
  escapes[ESCAPE] = ESCAPE;
  return escapes;
}

constexpr std::array<char, 256> ESCAPES = makeEscapes();

char escapeOf(char byte) { return ESCAPES[static_cast<unsigned char>(byte)]; }

char resolve(char escaped) {
  switch (escaped) {
    case 'r': return '\r';
    case 't': return '\t';
    case 'n': return '\n';
    default: return escaped;
  }
}

}  // namespace

void appendQuoted(std::string& out, std::string_view text) {
  out += '"';
  std::size_t runBegin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char escape = escapeOf(text[i]);
    if (escape == 0) continue;
    out.append(text, runBegin, i - runBegin);
    out += ESCAPE;
    out += escape;
    runBegin = i + 1;
  }
  out.append(text, runBegin);
  out += '"';
}

void appendUnescaped(std::string& out, std::string_view text) {
  std::size_t runBegin = 0;
  for (;;) {
    const std::size_t escape = text.find(ESCAPE, runBegin);
    if (escape == std::string_view::npos) break;
    out.append(text, runBegin, escape - runBegin);
    if (escape + 1 == text.size()) return;
    out += resolve(text[escape + 1]);
    runBegin = escape + 2;
  }
  out.append(text, runBegin);
}

}  // namespace Quarry
