#include "SourceExcerpt.h"

#include "Utf8.h"

#include <algorithm>
#include <array>
#include <string>

namespace Tool {

namespace {

constexpr unsigned long LONGEST_LINE = 160;  ///< in bytes; of longer ones a part is shown
constexpr unsigned long LONGEST_LEAD = 60;   ///< of that part, before what is marked
constexpr std::string_view CUT = "...";

struct CodeRange {
  std::uint32_t first;
  std::uint32_t last;
};

/// Characters that stand above or below others, or are not seen.
constexpr std::array NO_COLUMN = {CodeRange{0x0300, 0x036F}, CodeRange{0x200B, 0x200D},
                                  CodeRange{0x20D0, 0x20FF}, CodeRange{0xFE00, 0xFE0F},
                                  CodeRange{0xFE20, 0xFE2F}};

/// The scripts of East Asia and pictures.
constexpr std::array TWO_COLUMNS = {
    CodeRange{0x1100, 0x115F},   CodeRange{0x2E80, 0x303E},  CodeRange{0x3041, 0xA4CF},
    CodeRange{0xAC00, 0xD7A3},   CodeRange{0xF900, 0xFAFF},  CodeRange{0xFE30, 0xFE6F},
    CodeRange{0xFF00, 0xFF60},   CodeRange{0xFFE0, 0xFFE6},  CodeRange{0x1F300, 0x1F64F},
    CodeRange{0x1F900, 0x1F9FF}, CodeRange{0x20000, 0x3FFFD}};

template <std::size_t COUNT>
bool isIn(const std::array<CodeRange, COUNT>& ranges, std::uint32_t code) {
  return std::any_of(ranges.begin(), ranges.end(), [code](const CodeRange& range) {
    return range.first <= code && code <= range.last;
  });
}

unsigned long getWidth(const Character& character) {
  if (isIn(NO_COLUMN, character.code)) return 0;
  return isIn(TWO_COLUMNS, character.code) ? 2 : 1;
}

/// Calls `take` with each character and its bytes; a byte that is no character stands alone.
template <class Take>
void forEachCharacter(std::string_view text, const Take& take) {
  while (!text.empty()) {
    const Character character = decodeUtf8(text);
    const std::size_t length = std::max<std::size_t>(character.length, 1);
    take(character, text.front());
    text.remove_prefix(length);
  }
}

/// Returns blanks that are as wide as the text.
std::string getPadding(std::string_view text) {
  std::string padding;
  forEachCharacter(text, [&padding](const Character& character, char first) {
    if (first == '\t') {
      padding += '\t';
    } else {
      padding.append(getWidth(character), ' ');
    }
  });
  return padding;
}

/// Returns `offset`, or the next one at which a character begins.
unsigned long toCharacter(std::string_view line, unsigned long offset) {
  while (offset < line.size() && isUtf8Follower(line[offset]))
    ++offset;
  return offset;
}

}  // namespace

unsigned long getDisplayWidth(std::string_view text) {
  unsigned long width = 0;
  forEachCharacter(text,
                   [&width](const Character& character, char) { width += getWidth(character); });
  return width;
}

void writeExcerpt(Output& output, const Finding& finding) {
  const std::string_view line = finding.line;
  if (line.empty()) return;
  const unsigned long mark = std::min<unsigned long>(finding.begin, line.size());
  const bool isLong = line.size() > LONGEST_LINE;
  const unsigned long begin =
      isLong && mark > LONGEST_LEAD ? toCharacter(line, mark - LONGEST_LEAD) : 0;
  const unsigned long end =
      isLong ? toCharacter(line, std::min<unsigned long>(begin + LONGEST_LINE, line.size()))
             : line.size();
  const unsigned long markEnd = std::min(mark + finding.getShownLength(), end);

  const std::string lead = (begin > 0 ? std::string(CUT) : std::string()) +
                           output.getShown(line.substr(begin, mark - begin));
  const std::string marked = output.getShown(line.substr(mark, markEnd - mark));
  output.write(lead + marked + output.getShown(line.substr(markEnd, end - markEnd)));
  output.write(end < line.size() ? std::string(CUT) + "\n" : "\n");
  const unsigned long width = std::max(getDisplayWidth(marked), 1UL);
  output.write(getPadding(lead));
  output.writeWord(Style::STRING, "^" + std::string(width - 1, '~'));
  output.write("\n");
}

}  // namespace Tool
