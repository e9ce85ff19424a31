#include "StringText.h"

#include "ByteSearch.h"
#include "OutputBuffer.h"

namespace Quarry {

namespace {

constexpr char ESCAPE = '\\';

/// The byte that stands behind the backslash for a byte that has to be escaped.
char escapeOf(char byte) {
  switch (byte) {
    case '\r': return 'r';
    case '\t': return 't';
    case '\n': return 'n';
    default: return byte;
  }
}

char resolve(char escaped) {
  switch (escaped) {
    case 'r': return '\r';
    case 't': return '\t';
    case 'n': return '\n';
    default: return escaped;
  }
}

}  // namespace

void appendQuoted(OutputBuffer& out, std::string_view text) {
  out.push_back('"');
  const char* runBegin = text.data();
  const char* end = runBegin + text.size();
  for (;;) {
    const char* found = findAnyOf<'\r', '\t', '\n', '\'', '"', ESCAPE>(runBegin, end);
    out.append({runBegin, found});
    if (found == end) break;
    out.push_back(ESCAPE);
    out.push_back(escapeOf(*found));
    runBegin = found + 1;
  }
  out.push_back('"');
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
