/// Documents without any sense, for tests that need very many.
#pragma once

#include <Quarry/ParserLimits.h>

#include <iterator>
#include <map>
#include <random>
#include <string>

namespace TestSupport {

/// Puts documents together from pieces of words, signs, comments, directives and stray bytes. The
/// files are called "0" to "5"; "0" is the top file. The same seed gives the same document.
class RandomDocument {
 public:
  static constexpr unsigned long MOST_FILES = 6;

  explicit RandomDocument(unsigned long seed) : random(seed) {
    if (isOneIn(3)) setLimits();
    fileCount = 1 + pick(MOST_FILES);
    for (unsigned long number = 0; number < fileCount; ++number)
      texts[std::to_string(number)] = makeText(number);
  }

  const std::map<std::string, std::string>& getTexts() const { return texts; }
  const Quarry::ParserLimits& getLimits() const { return limits; }

  /// Tells whether a file is to be compressed.
  bool isCompressed() { return isOneIn(40); }

 private:
  unsigned long pick(unsigned long count) { return static_cast<unsigned long>(random() % count); }
  bool isOneIn(unsigned long count) { return pick(count) == 0; }

  template <std::size_t COUNT>
  std::string pickFrom(const char* const (&pieces)[COUNT]) {
    return pieces[pick(COUNT)];
  }

  void setLimits() {
    if (isOneIn(2)) limits.includeDepth = pick(4);
    if (isOneIn(3)) limits.nestingDepth = pick(4);
    if (isOneIn(6)) limits.preprocessedBytes = pick(600);
    if (!limits.areSet()) limits.includeDepth = 9;
  }

  std::string makeText(unsigned long number) {
    std::string text;
    if (isOneIn(12)) text += "\xEF\xBB\xBF";
    const unsigned long pieces = pick(50);
    for (unsigned long i = 0; i < pieces; ++i)
      text += makePiece(number);
    return text;
  }

  std::string makePiece(unsigned long number) {
    static constexpr const char* STATEMENTS[] = {"title \"Harbor\"",
                                                 "size = 1920, 1080",
                                                 "fov 39.6",
                                                 "#key yes",
                                                 "call (1, \"b\")",
                                                 "g {",
                                                 "}",
                                                 "layer { x 1 }",
                                                 "block 0x3:\"abc\"",
                                                 "none <empty>",
                                                 "a[2] 1",
                                                 "a[1] 2",
                                                 "list 1 2 3"};
    static constexpr const char* WORDS[] = {
        "a",  "b",    "#k",       "#",        "yes",      "no", "1", "-2.5",
        "1e", "0x41", "\"s\"",    "\"x y\"",  "<empty>",  "?!", "<", "\"open",
        "\\", "\\\"", "\"\\\\\"", "\"a//b\"", "\"n\\n\"", "'"};
    switch (pick(16)) {
      case 0:
      case 1:
      case 2: return pickFrom(STATEMENTS) + pickFrom(BLANKS);
      case 3:
      case 4:
      case 5: return pickFrom(WORDS) + pickFrom(BLANKS);
      case 6: return pickFrom(WORDS);
      case 7:
      case 8: return std::string(1, "{}(),="[pick(6)]);
      case 9:
      case 10: return pickFrom(BLANKS);
      case 11: return makeComment();
      case 12: return isOneIn(5) ? makeVersionLine() : pickFrom(BLANKS);
      case 13: return makeInclude(number);
      case 14: return std::string(1, "\"\\/#\n\r \t"[pick(8)]);
      default: return isOneIn(6) ? std::string(1, static_cast<char>(pick(256))) : "\n";
    }
  }

  std::string makeComment() {
    static constexpr const char* COMMENTS[] = {"//", "// note \"", "// #include \"9\"", "/// }",
                                               "//\\"};
    static constexpr const char* ENDS[] = {"\n", "\n", "\r\n", "\r", ""};
    return pickFrom(COMMENTS) + pickFrom(ENDS);
  }

  std::string makeVersionLine() {
    static constexpr const char* VERSIONS[] = {"1.1", "1.0", "2",   " 1.5 x", "0",     "-1",
                                               "nan", "inf", "one", "",       "1e999", "1.1\r"};
    return "#SerialVersion " + pickFrom(VERSIONS) + (isOneIn(9) ? "" : "\n");
  }

  /// Without limits a file must not include itself, so each includes only later ones.
  std::string makeInclude(unsigned long number) {
    if (isOneIn(40)) return "#include \"missing\"";
    if (isOneIn(60)) return "#include \"9";
    const unsigned long first = limits.areSet() ? 0 : number + 1;
    if (first >= fileCount || includeCount == MOST_INCLUDES) return "#include ";
    ++includeCount;
    const std::string included = std::to_string(first + pick(fileCount - first));
    return "#include \"" + std::string(isOneIn(8) ? "./" : "") + included + "\"" + pickFrom(BLANKS);
  }

  static constexpr const char* BLANKS[] = {" ", "\n", "  ", "\t", "\r\n", "", "\n\n", "\r"};

  static constexpr unsigned long MOST_INCLUDES = 8;  ///< so that files do not double too often

  std::mt19937_64 random;
  Quarry::ParserLimits limits;
  unsigned long fileCount = 0;
  unsigned long includeCount = 0;
  std::map<std::string, std::string> texts;
};

}  // namespace TestSupport
