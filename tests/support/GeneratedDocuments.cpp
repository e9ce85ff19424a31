#include "GeneratedDocuments.h"

#include <initializer_list>
#include <random>
#include <string_view>
#include <vector>

namespace TestSupport {

namespace {

using Choices = std::vector<std::string_view>;

const Choices NAMES = {"a",    "b",    "title", "layer", "size", "x.y",
                       "p[2]", "fov%", "_n",    "c:d",   "Yes",  "camera-1"};
const Choices BOOLS = {"yes", "no"};
const Choices INTS = {"0", "-7", "+5", "12", "12abc", "007", "1E5", "2147483648", "3"};
const Choices DOUBLES = {"1.50", "1e3", ".5", "-inf", "2.", "1.5x", "-0.0"};
const Choices BINARIES = {"0x0102FF02010000", "0x10", "0x00000000"};
const Choices PLAIN_STRINGS = {
    "\"\"",          "\"a b\"",      "\"a, b\"", "\"{x}\"",   "\"http://x // y\"", "\"it's\"",
    "\"h\xC3\xA4\"", "\"\xFF\x01\"", "\"a\tb\"", "\"= ( )\"", "\"#format\""};
const Choices ESCAPED_STRINGS = {R"("a\nb")", R"("say \"hi\" // so")", R"("C:\\x")", R"("\q")"};
const Choices BACKSLASHED_STRINGS = {R"("C:\x")", R"("a\nb")"};
const Choices COMMENTS = {
    "//", "// a comment", "//// more", "// with \"a quote", "// it ends so\\", "// { ( , = ) }"};
const Choices COMMENTED_DIRECTIVES = {"// #include \"nothing.cfg\"", "// #SerialVersion 0"};
const Choices STRAY_WORDS = {"7",      "=",  ",",  "(",  ")",           "{",     "<>",
                             "\"open", "x=", "\\", "*",  "a a ",        "b 1,",  ", 4",
                             "/**/",   "}",  "\"", "#1", "n ( 1 ( 2 )", "#k(1)", "v 1 (2)"};
const Choices BROKEN_DIRECTIVES = {"#include \"missing.cfg\"", "#SerialVersion 0",
                                   "#SerialVersion -1", "#include \"unclosed"};

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
const std::string FINAL_BACKSLASH = R"("C:\\")";
constexpr unsigned DEEPEST_GROUP = 4;
constexpr unsigned DEEPEST_INCLUDE = 3;

class Generator {
 public:
  Generator(unsigned seed, Faults mayHave) : random(seed), faults(mayHave) {}

  GeneratedDocument make() {
    hasEscapes = oneIn(2) || oneIn(2);
    document.name = "top.cfg";
    document.files[document.name] = makeFile(0, &Generator::addTopItems);
    return document;
  }

 private:
  /// The file that is being made.
  struct File {
    std::string text;
    std::string_view lineEnd = "\n";
    unsigned includeDepth = 0;
    unsigned groupDepth = 0;
    bool onOneLine = false;
  };

  // --- Chance ------------------------------------------------------------------------------------

  /// Returns a number below `count`. The standard's distributions differ from library to library.
  unsigned below(unsigned count) { return static_cast<unsigned>(random() % count); }
  bool oneIn(unsigned count) { return below(count) == 0; }
  std::string_view anyOf(const Choices& choices) {
    return choices[below(static_cast<unsigned>(choices.size()))];
  }

  // --- Files -------------------------------------------------------------------------------------

  using Part = void (Generator::*)();

  std::string makeFile(unsigned includeDepth, Part addContent) {
    const File includer = file;
    file = File();
    file.includeDepth = includeDepth;
    file.lineEnd = oneIn(4) ? "\r\n" : "\n";
    (this->*addContent)();
    std::string made = file.text;
    file = includer;
    return made;
  }

  void addTopItems() {
    if (faults != Faults::NONE && oneIn(6)) add(BYTE_ORDER_MARK);
    if (oneIn(3)) addComment();
    const bool versionAtEnd = oneIn(8);
    if (hasEscapes && !versionAtEnd) addLine("#SerialVersion 1.1");
    if (oneIn(2)) add(file.lineEnd);
    addItems(3 + below(9));
    if (hasEscapes && versionAtEnd) addLine("#SerialVersion 1.1");
    finishFile();
  }

  void addIncludedItems() {
    if (oneIn(4)) addLine("#SerialVersion 1.0");
    addItems(1 + below(4));
    finishFile();
  }

  void addIncludedValues() {
    add(" ");
    addValues(1 + below(3));
    if (oneIn(2)) add(" ");
  }

  void addIncludedDigits() { add(oneIn(2) ? "5" : "25 "); }

  /// A file may end in a comment, in line feeds or without one.
  void finishFile() {
    if (oneIn(5)) {
      add(" // the end");
    } else if (oneIn(5)) {
      file.text.erase(file.text.find_last_not_of("\r\n") + 1);
      if (file.text.ends_with(FINAL_BACKSLASH)) add(file.lineEnd);
    }
    const bool isTop = file.includeDepth == 0;
    if (isTop && faults != Faults::NONE && oneIn(12)) add("} rest 1");
    if (isTop && faults != Faults::NONE && oneIn(12)) add("\nopen { a 1");
  }

  /// Adds an include of a new file, or of one that is complete.
  void addInclude(std::string_view kind, Part addContent) {
    std::string name = std::string(kind) + std::to_string(below(3)) + ".cfg";
    if (oneIn(4)) name = "sub/" + name;
    if (document.files.count(name) == 0) {
      const std::string made = makeFile(file.includeDepth + 1, addContent);
      document.files.emplace(name, made);
    }
    add("#include \"" + name + "\"");
  }

  bool mayInclude() const { return file.includeDepth < DEEPEST_INCLUDE; }

  // --- Items -------------------------------------------------------------------------------------

  void addItems(unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      indent();
      addItem();
      endItem();
      if (faults != Faults::NONE && oneIn(6)) addFault();
    }
  }

  void addItem() {
    switch (below(14)) {
      case 0:
      case 1: return addGroup();
      case 2: return addCall();
      case 3: return addKeyword();
      case 4: return addEmptyItem();
      case 5:
        if (mayInclude()) return addInclude("items", &Generator::addIncludedItems);
        break;
      case 6:
        if (mayInclude()) return addItemWithIncludedValues();
        break;
      case 7:
        if (!file.onOneLine) return addItemWithFinalBackslash();
        break;
      default: break;
    }
    add(anyOf(NAMES));
    addAssignment();
    addValues(1 + (oneIn(2) ? 0 : below(4)));
  }

  void addGroup() {
    add(anyOf(NAMES));
    addAssignment();
    if (oneIn(6)) {
      add("1");
      addGap();
    }
    add("{");
    if (file.groupDepth >= DEEPEST_GROUP || oneIn(6)) {
      if (oneIn(2)) addGap();
      return add("}");
    }
    const bool wasOnOneLine = file.onOneLine;
    file.onOneLine = wasOnOneLine || oneIn(4);
    ++file.groupDepth;
    add(file.onOneLine ? (oneIn(2) ? " " : "") : file.lineEnd);
    addItems(below(4));
    --file.groupDepth;
    if (!file.onOneLine) indent();
    file.onOneLine = wasOnOneLine;
    add("}");
  }

  void addCall() {
    add(anyOf(NAMES));
    if (oneIn(5)) add(" = ");
    add(oneIn(3) ? " (" : "(");
    if (oneIn(3)) addOptionalGap();
    if (!oneIn(4)) addValues(1 + below(3));
    if (oneIn(3)) addOptionalGap();
    add(")");
  }

  void addKeyword() {
    add("#format");
    add(oneIn(2) ? " " : " = ");
    addValues(1 + below(2));
  }

  void addEmptyItem() {
    add(anyOf(NAMES));
    addAssignment();
    add("<empty>");
  }

  void addItemWithIncludedValues() {
    add(anyOf(NAMES));
    if (oneIn(3)) {
      add(" 1");
      addInclude("digits", &Generator::addIncludedDigits);
    } else {
      add(" ");
      addInclude("values", &Generator::addIncludedValues);
    }
  }

  /// The line break is what closes such a string.
  void addItemWithFinalBackslash() {
    add(anyOf(NAMES));
    add(" ");
    add(FINAL_BACKSLASH);
    add(file.lineEnd);
  }

  void addAssignment() {
    if (oneIn(3)) {
      add(oneIn(2) ? " = " : "=");
    } else {
      addGap();
    }
  }

  void addValues(unsigned count) {
    const unsigned style = below(4);
    for (unsigned i = 0; i < count; ++i) {
      if (i > 0) addBetweenValues(style);
      addValue();
    }
  }

  void addBetweenValues(unsigned style) {
    if (style == 0) return add(", ");
    if (style == 1) return add(",");
    if (style == 2) {
      addOptionalGap();
      add(",");
      return addOptionalGap();
    }
    addGap();
  }

  void addValue() {
    switch (below(7)) {
      case 0: return add(anyOf(BOOLS));
      case 1:
      case 2: return add(anyOf(INTS));
      case 3: return add(anyOf(DOUBLES));
      case 4: return add(anyOf(BINARIES));
      default: break;
    }
    if (oneIn(3)) return add(anyOf(hasEscapes ? ESCAPED_STRINGS : BACKSLASHED_STRINGS));
    add(anyOf(PLAIN_STRINGS));
  }

  void addFault() {
    if (faults == Faults::ANYWHERE && oneIn(8)) {
      addLine(anyOf(BROKEN_DIRECTIVES));
    } else {
      indent();
      add(anyOf(STRAY_WORDS));
      endItem();
    }
  }

  // --- Layout ------------------------------------------------------------------------------------

  /// What keeps two words apart.
  void addGap() {
    switch (below(file.onOneLine ? 4 : 12)) {
      case 0: return add("  ");
      case 1: return add("\t");
      case 5: return addLine("");
      case 6: add(" "); return addComment();
      case 7: addComment(); return add("  ");
      default: add(" ");
    }
  }

  void addOptionalGap() {
    if (oneIn(2)) addGap();
  }

  void indent() {
    if (!file.onOneLine && !oneIn(8)) add(std::string(2 * file.groupDepth, ' '));
  }

  void endItem() {
    if (file.onOneLine) return add(oneIn(4) ? "  " : " ");
    if (oneIn(12)) return add(" ");
    if (oneIn(4)) {
      add(oneIn(2) ? " " : "  ");
      return addComment();
    }
    if (oneIn(12)) {
      addComment();
      return add(" ");
    }
    add(file.lineEnd);
    if (oneIn(6)) add(file.lineEnd);
    if (oneIn(6)) addComment();
  }

  /// Behind a stray quote, a comment is none, and a directive in it is one.
  void addComment() {
    const bool mayDirect = faults != Faults::IN_TEXT && oneIn(4);
    add(anyOf(mayDirect ? COMMENTED_DIRECTIVES : COMMENTS));
    add(file.lineEnd);
  }

  void addLine(std::string_view line) {
    if (!line.empty() && !file.text.empty() && file.text.back() != '\n') add(file.lineEnd);
    add(line);
    add(file.lineEnd);
  }

  void add(std::string_view text) { file.text += text; }

  std::mt19937 random;
  const Faults faults;
  GeneratedDocument document;
  File file;
  bool hasEscapes = true;
};

}  // namespace

GeneratedDocument generateDocument(unsigned seed, Faults faults) {
  return Generator(seed, faults).make();
}

}  // namespace TestSupport
