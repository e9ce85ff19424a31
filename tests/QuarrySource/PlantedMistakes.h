/// Documents with mistakes that are put at known places.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

namespace TestSupport {

/// Counts lines and columns while a file is written: LF, CR LF and a lone CR each end a line, and a
/// byte order mark has no column.
class PlantedFile {
 public:
  /// Something in a file that a reader comes across: an include, or a mistake.
  struct Event {
    std::string rule;      ///< empty for an include
    std::string included;  ///< the name of the included file
    unsigned long line = 1;
    unsigned long column = 1;
    unsigned long length = 0;
    bool isFatal = false;  ///< whether nothing else of the document is reported
  };

  void write(const std::string& bytes) {
    for (const char byte : bytes) {
      const bool isSecondHalf = byte == '\n' && !text.empty() && text.back() == '\r';
      text += byte;
      if (isSecondHalf) {
        column = 1;
      } else if (byte == '\n' || byte == '\r') {
        ++line;
        column = 1;
      } else {
        ++column;
      }
    }
  }

  void writeMark() { text += "\xEF\xBB\xBF"; }

  /// Takes note that what is written next is a mistake.
  /// @param length of what is reported
  void plant(const std::string& rule, unsigned long length, bool isFatal = false) {
    events.push_back({rule, "", line, column, length, isFatal});
  }

  void writeMistake(const std::string& rule, const std::string& word) {
    plant(rule, word.size());
    write(word);
  }

  void writeInclude(const std::string& name) {
    const std::string directive = "#include \"" + name + "\"";
    events.push_back({"", name, line, column, directive.size(), false});
    write(directive);
  }

  const std::string& getText() const { return text; }
  const std::vector<Event>& getEvents() const { return events; }

  /// A file that declares an unusable version fails when it ends.
  void plantAtEnd(const Event& event) { last.push_back(event); }
  const std::vector<Event>& getLastEvents() const { return last; }

 private:
  std::string text;
  std::vector<Event> events;
  std::vector<Event> last;
  unsigned long line = 1;
  unsigned long column = 1;
};

/// The files of a document, and what has to be reported of it.
class PlantedDocument {
 public:
  PlantedFile& operator[](const std::string& name) { return files[name]; }
  const std::map<std::string, PlantedFile>& getFiles() const { return files; }

  /// Returns the mistakes in the order of reading, such as "unknown-word b:1:2+3 < a:4:5".
  std::vector<std::string> getExpected(const std::string& top) const {
    std::vector<std::string> expected;
    follow(top, "", expected);
    return expected;
  }

 private:
  /// @param chain the includes that lead to the file, as they are shown
  /// @return whether reading goes on
  bool follow(const std::string& name, const std::string& chain,
              std::vector<std::string>& expected) const {
    const PlantedFile& file = files.at(name);
    for (const PlantedFile::Event& event : file.getEvents()) {
      const std::string place =
          name + ":" + std::to_string(event.line) + ":" + std::to_string(event.column);
      if (!event.rule.empty()) {
        if (!report(event, place, chain, expected)) return false;
      } else if (!follow(event.included, " < " + place + chain, expected)) {
        return false;
      }
    }
    for (const PlantedFile::Event& event : file.getLastEvents()) {
      const std::string place =
          name + ":" + std::to_string(event.line) + ":" + std::to_string(event.column);
      if (!report(event, place, chain, expected)) return false;
    }
    return true;
  }

  static bool report(const PlantedFile::Event& event, const std::string& place,
                     const std::string& chain, std::vector<std::string>& expected) {
    if (event.isFatal) expected.clear();
    expected.push_back(event.rule + " " + place + "+" + std::to_string(event.length) + chain);
    return !event.isFatal;
  }

  std::map<std::string, PlantedFile> files;
};

/// Writes documents of statements that are right or have one mistake each, with comments and blanks
/// of every kind between their words, and with includes up to three deep.
class MistakePlanter {
 public:
  explicit MistakePlanter(unsigned long seed) : random(seed) {}

  /// Writes the file "top" and everything that it includes.
  PlantedDocument makeDocument() {
    writeFile("top", 0);
    writeEnd(document["top"]);
    return document;
  }

 private:
  unsigned long pick(unsigned long count) { return static_cast<unsigned long>(random() % count); }
  bool isOneIn(unsigned long count) { return pick(count) == 0; }

  template <std::size_t COUNT>
  std::string pickFrom(const char* const (&texts)[COUNT]) {
    return texts[pick(COUNT)];
  }

  void writeFile(const std::string& name, unsigned long depth) {
    static constexpr const char* LINE_ENDS[] = {"\n", "\n", "\r\n", "\r\n", "\r"};
    const std::string outer = lineEnd;
    lineEnd = pickFrom(LINE_ENDS);
    PlantedFile& file = document[name];
    if (isOneIn(6)) writeByteOrderMark(file);
    const unsigned long statements = 2 + pick(8);
    for (unsigned long i = 0; i < statements; ++i)
      writeStatement(file, depth);
    if (depth > 0 && isOneIn(5)) writeOpenString(file);
    lineEnd = outer;
  }

  /// The parser takes the mark for a word.
  void writeByteOrderMark(PlantedFile& file) {
    constexpr unsigned long MARK_LENGTH = 3;
    file.plant("unknown-word", MARK_LENGTH);
    file.writeMark();
    writeGap(file);
  }

  // --- What stands between words
  // -------------------------------------------------------------------

  /// Comments end with a line feed and join the lines, so a blank stands before them.
  void writeGap(PlantedFile& file) {
    static constexpr const char* BLANKS[] = {" ", "  ", "\t"};
    static constexpr const char* COMMENTS[] = {"//", "// it's \"one", "/// } { ?!",
                                               "// #include \"none\"", "// #SerialVersion 0"};
    file.write(pickFrom(BLANKS));
    const unsigned long pieces = pick(3);
    for (unsigned long i = 0; i < pieces; ++i) {
      switch (pick(4)) {
        case 0: file.write(lineEnd); break;
        case 1: file.write(pickFrom(BLANKS)); break;
        case 2: file.write(pickFrom(COMMENTS) + (lineEnd == "\r" ? "\n" : lineEnd)); break;
        default: file.write(isOneIn(4) ? "#SerialVersion 1.1\n" : lineEnd);
      }
    }
  }

  /// Two slashes within quotes are no comment.
  bool isToBeCut(const std::string& word) {
    return word.size() > 2 && word.find('"') == std::string::npos && isOneIn(9);
  }

  void writeWord(PlantedFile& file, const std::string& word) {
    if (isToBeCut(word)) {
      file.write(word.substr(0, 1) + "// cut\n" + word.substr(1));
    } else {
      file.write(word);
    }
    writeGap(file);
  }

  void writeWords(PlantedFile& file, const std::vector<std::string>& words) {
    for (const std::string& word : words)
      writeWord(file, word);
  }

  /// A word that a comment cuts is reported with its first part.
  void writeMistake(PlantedFile& file, const std::string& rule, const std::string& word) {
    if (isToBeCut(word)) {
      file.writeMistake(rule, word.substr(0, 2));
      file.write("// cut\n" + word.substr(2));
    } else {
      file.writeMistake(rule, word);
    }
    writeGap(file);
  }

  // --- Statements
  // ----------------------------------------------------------------------------------

  std::string pickName() {
    static constexpr const char* NAMES[] = {"title", "x", "layer_2", "size[3]", "_a.b"};
    return pickFrom(NAMES);
  }

  std::string pickValue() {
    static constexpr const char* VALUES[] = {"1",          "-2.5",   "yes", "\"one // two\"",
                                             "0x2:\"ab\"", "<empty>"};
    return pickFrom(VALUES);
  }

  void writeStatement(PlantedFile& file, unsigned long depth) {
    switch (pick(8)) {
      case 0: return writeWords(file, {pickName(), "=", pickValue(), ",", "2"});
      case 1: return writeWords(file, {pickName(), "(", "1", ",", pickValue(), ")"});
      case 2: return writeWords(file, {"#key", pickValue()});
      case 3:
        writeWords(file, {pickName(), "{", "x", "1"});
        writeStatement(file, depth);
        return writeWord(file, "}");
      case 4: return writeInclude(file, depth);
      default: writeMistakenStatement(file);
    }
  }

  void writeInclude(PlantedFile& file, unsigned long depth) {
    constexpr unsigned long DEEPEST = 3;
    constexpr unsigned long MOST_FILES = 8;
    if (depth == DEEPEST || nextFile == MOST_FILES) return;
    const std::string name = "part" + std::to_string(nextFile++);
    writeFile(name, depth + 1);
    const unsigned long times = isOneIn(3) ? 2 : 1;
    for (unsigned long i = 0; i < times; ++i) {
      file.writeInclude(name);
      writeGap(file);
    }
  }

  /// Behind each the next statement can begin.
  void writeMistakenStatement(PlantedFile& file) {
    static constexpr const char* ODD[] = {"?!", "<tag>", "'a'", "#1", "\xC3\xA4", "a\"b\"", "-"};
    static constexpr const char* VALUES[] = {"1", "-2.5", "yes", "\"one two\"", "0x41", "<empty>"};
    const std::string name = pickName();
    switch (pick(11)) {
      case 0:
        writeWords(file, {name, "1"});
        return writeMistake(file, "unknown-word", pickFrom(ODD));
      case 1:
        writeWord(file, name);
        writeMistake(file, "has-no-value", pickName());
        return writeWord(file, "1");
      case 2: writeWords(file, {name, "1"}); return writeMistake(file, "wrongly-placed", "=");
      case 3: writeWord(file, name); return writeMistake(file, "wrongly-placed", ",");
      case 4: return writeFirstInGroup(file, "value-without-item", pickFrom(VALUES));
      case 5: return writeFirstInGroup(file, "group-without-item", "{");
      case 6: return writeFirstInGroup(file, "arguments-without-item", "(");
      case 7: return writeFirstInGroup(file, "arguments-closed-without-item", ")");
      case 8:
        writeWords(file, {name, "1"});
        return isOneIn(2) ? writeMistake(file, "arguments-mixed-with-values", "(")
                          : writeMistake(file, "arguments-closed-without-call", ")");
      case 9:
        writeWords(file, {name, "("});
        return writeMistake(file, "arguments-inside-arguments", "(");
      default: writeWord(file, "#key"); return writeMistake(file, "arguments-on-keyword", "(");
    }
  }

  void writeFirstInGroup(PlantedFile& file, const std::string& rule, const std::string& word) {
    writeWords(file, {pickName(), "{"});
    writeMistake(file, rule, word);
    writeWords(file, {"x", "1", "}"});
  }

  /// Comments behind it in the same file would not be comments.
  void writeOpenString(PlantedFile& file) {
    writeWords(file, {"x", "1"});
    file.writeMistake("unknown-word", "\"one two");
    file.write(lineEnd);
  }

  // --- How a document ends
  // -------------------------------------------------------------------------

  void writeEnd(PlantedFile& file) {
    lineEnd = "\n";
    switch (pick(9)) {
      case 0: return writeMistake(file, "closes-no-group", "}");
      case 1: return file.writeMistake("has-no-value", "end");
      case 2: return writeUnclosedGroups(file);
      case 3: return writeFatal(file, "file-not-found", "#include \"none\"", " ?!");
      case 4: return writeFatal(file, "unclosed-include", "#include \"none", "");
      case 5: return writeFatal(file, "unusable-version", "#SerialVersion 0\n", "");
      case 6: return writeFatalPart(file);
      default: return;
    }
  }

  /// The innermost one is reported first.
  void writeUnclosedGroups(PlantedFile& file) {
    file.write("one ");
    PlantedFile outer = file;
    outer.plant("group-not-closed", 1);
    file.write("{ two ");
    file.plant("group-not-closed", 1);
    file.plantAtEnd(outer.getEvents().back());
    file.write("{ x 1");
  }

  static void writeFatal(PlantedFile& file, const std::string& rule, const std::string& bytes,
                         const std::string& rest) {
    file.plant(rule, bytes.size(), true);
    file.write(bytes + rest);
  }

  void writeFatalPart(PlantedFile& file) {
    PlantedFile& part = document["fatal"];
    part.write("// fatal\r\n  x 1 ?! ");
    writeFatal(part, "unusable-version", "#SerialVersion none\n", "y 2");
    file.writeInclude("fatal");
    file.write(" ?!");
  }

  std::mt19937_64 random;
  PlantedDocument document;
  std::string lineEnd = "\n";
  unsigned long nextFile = 1;
};

}  // namespace TestSupport
