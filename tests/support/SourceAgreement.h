/// Holds what the source layer says of a document against what the library makes of it.
#pragma once

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <QuarrySource/SourceTree.h>

#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ByteByByte.h"

namespace TestSupport {

/// A document that is read twice: by ParserFile, and with its places.
class SourceAgreement {
 public:
  /// @param paths where both look for the files, an empty path for their own names included
  SourceAgreement(const std::vector<std::string>& paths, const Quarry::ParserLimits& limits,
                  const std::string& name) {
    readByLibrary(paths, limits, name);
    document.setSearchPaths(paths);
    document.setLimits(limits);
    isRead = document.read(name);
    numberWords();
  }

  /// Returns the first thing that the two disagree about, or that cannot be; empty for none.
  std::string findProblem() {
    checkText();
    checkMessages();
    checkMap();
    for (unsigned long opening = 0; opening < document.getOpeningCount(); ++opening)
      checkSpans(opening);
    for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics())
      checkDiagnostic(diagnostic);
    const Quarry::SourceTree tree(document);
    checkTree(tree);
    const unsigned long items = tree.getItemCount();
    for (unsigned long item = 0; item < items; ++item)
      checkItem(tree, item);
    for (unsigned long item = 0; item < items; item += stepFor(items))
      expect(tree.find(tree.getPath(item)).item == item, "the item at its path");
    return problem;
  }

  const Quarry::SourceDocument& getDocument() const { return document; }

 private:
  static constexpr unsigned long NOWHERE = Quarry::SourceDocument::NOWHERE;
  static constexpr unsigned long NO_WORD = NOWHERE;

  /// A word of the preprocessed text.
  struct Word {
    unsigned long start;
    unsigned long length;
    unsigned long line;
    unsigned long column;
  };

  /// What takes the longer the more there are is done for some of them only.
  static unsigned long stepFor(unsigned long count) {
    constexpr unsigned long MOST = 100;
    return count / MOST + 1;
  }

  void expect(bool holds, const char* what) {
    if (!holds && problem.empty()) problem = what;
  }

  // --- What the library makes of it
  // ----------------------------------------------------------------

  void readByLibrary(const std::vector<std::string>& paths, const Quarry::ParserLimits& limits,
                     const std::string& name) {
    Quarry::ParserFile preprocessing;
    preprocessing.setSearchPaths(paths);
    preprocessing.setLimits(limits);
    file.setSearchPaths(paths);
    file.setLimits(limits);
    const Plinth::Console::Handler previous = Plinth::console.setHandler(
        [this](Plinth::Console::Level level, const std::string& message, const std::string&) {
          if (level == Plinth::Console::LEVEL_WARNING) warnings.push_back(message);
        });
    try {
      std::set<std::string> included;
      libraryVersion = preprocessing.preprocessFile(libraryText, name, included);
      warnings.clear();
      isReadByLibrary = file.read(name);
    } catch (const std::out_of_range&) {
      hasBadLine = true;
    }
    Plinth::console.setHandler(previous);
  }

  void numberWords() {
    const std::string& text = document.getText();
    wordAt.assign(text.size(), NO_WORD);
    ByteByByte cutter(text);
    while (!cutter.isExhausted()) {
      cutter.next();
      if (cutter.length == 0) continue;
      for (unsigned long i = 0; i < cutter.length; ++i)
        wordAt[cutter.start + i] = words.size();
      words.push_back({cutter.start, cutter.length, cutter.wordLine, cutter.wordColumn});
    }
  }

  // --- Text and messages
  // ---------------------------------------------------------------------------

  void checkText() {
    const double version = document.getVersion();
    expect(isRead == isReadByLibrary, "the outcome of reading");
    expect(document.getText() == libraryText, "the preprocessed text");
    expect(hasBadLine
               ? version == 0.0
               : version == libraryVersion || (std::isnan(version) && std::isnan(libraryVersion)),
           "the version");
  }

  /// The library throws at a bad line of a compressed file, and warns of nothing before.
  void checkMessages() {
    std::vector<std::string> messages;
    bool tellsBadLine = false;
    for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics()) {
      const std::string message = document.getMessage(diagnostic);
      if (diagnostic.isWarning) messages.push_back(message);
      if (diagnostic.rule == Quarry::SourceRule::BAD_COMPRESSED_LINE) tellsBadLine = true;
      expect(!document.describe(diagnostic).empty(), "a diagnostic without a sentence");
    }
    expect(tellsBadLine == hasBadLine, "whether a compressed line is bad");
    expect(messages == warnings, "the warnings");
    const bool tellsWhy = isRead || !document.getDiagnostics().empty();
    expect(tellsWhy, "a document cannot be read, and no diagnostic tells why");
  }

  // --- Places
  // --------------------------------------------------------------------------------------

  void checkMap() {
    const std::string& text = document.getText();
    for (unsigned long offset = 0; offset < text.size(); ++offset) {
      const Quarry::SourcePosition position = document.getPosition(offset);
      const std::string& source = document.getFileOf(position.opening).getText();
      expect(source[position.offset] == text[offset], "a byte of a file and of the text");
      expect(document.getTextOffset(position) == offset, "the way to a file and back");
    }
    unsigned long length = 0;
    for (const Quarry::SourcePiece& piece : document.getPieces(0, text.size())) {
      expect(document.getTextOffset(piece.position) == length, "where a piece is");
      length += piece.length;
    }
    expect(length == text.size(), "the pieces of the whole text");
  }

  /// Every span has what its kind says, and together they are the file.
  void checkSpans(unsigned long opening) {
    const std::string_view text = document.getFileOf(opening).getText();
    unsigned long done = 0;
    unsigned long lastWord = NO_WORD;
    for (const Quarry::SourceSpan& span : document.getSpans(opening)) {
      expect(span.offset == done && span.length > 0, "spans one behind the other");
      done = span.offset + span.length;
      const bool isInText =
          span.kind == Quarry::SourceSpan::SPAN_WORD || span.kind == Quarry::SourceSpan::SPAN_BLANK;
      const unsigned long word = findWord(opening, span);
      expect((word != NO_WORD) == (span.kind == Quarry::SourceSpan::SPAN_WORD), "a span's word");
      expect(word == NO_WORD || word != lastWord, "a word that is cut without a reason");
      if (!isInText) checkDropped(span.kind, text.substr(span.offset, span.length));
      lastWord = word;
    }
    expect(done == text.size(), "spans that are the file");
  }

  /// Returns the word of which all bytes of a span are.
  unsigned long findWord(unsigned long opening, const Quarry::SourceSpan& span) {
    const bool isInText =
        span.kind == Quarry::SourceSpan::SPAN_WORD || span.kind == Quarry::SourceSpan::SPAN_BLANK;
    unsigned long word = NO_WORD;
    for (unsigned long i = 0; i < span.length; ++i) {
      const unsigned long offset = document.getTextOffset({opening, span.offset + i});
      expect((offset != NOWHERE) == isInText, "what of a file is in the text");
      if (offset == NOWHERE) return NO_WORD;
      expect(i == 0 || wordAt[offset] == word, "a span with parts of two words");
      word = wordAt[offset];
    }
    return word;
  }

  void checkDropped(Quarry::SourceSpan::Kind kind, std::string_view bytes) {
    switch (kind) {
      case Quarry::SourceSpan::SPAN_COMMENT:
        expect(bytes.starts_with("//") && bytes.find('\n') >= bytes.size() - 1, "a comment");
        break;
      case Quarry::SourceSpan::SPAN_INCLUDE:
        expect(bytes.starts_with("#include \"") && bytes.find('"', 10) == bytes.size() - 1,
               "an include");
        break;
      case Quarry::SourceSpan::SPAN_VERSION:
        expect(bytes.starts_with("#SerialVersion ") && bytes.find('\n') >= bytes.size() - 1,
               "a version line");
        break;
      default: expect(document.getVersion() == 0.0, "a part of a file that was not read");
    }
  }

  void checkDiagnostic(const Quarry::SourceDiagnostic& diagnostic) {
    if (diagnostic.opening == Quarry::SourceDiagnostic::NO_OPENING) {
      return expect(document.getPlace(diagnostic).path.empty(), "a place without a file");
    }
    const Quarry::SourceFile& source = document.getFileOf(diagnostic.opening);
    const Quarry::SourcePlace place = document.getPlace(diagnostic);
    const std::string_view line = source.getLine(place.line);
    expect(place.path == source.getPath(), "the file of a diagnostic");
    expect(diagnostic.offset + diagnostic.length <= source.getText().size(), "its end");
    expect(place.column >= 1 && place.column <= line.size() + 1, "its column");
    if (diagnostic.wordLength == 0) return;
    const auto at = source.getText().substr(diagnostic.offset, diagnostic.length);
    const auto spelled = document.getText().substr(diagnostic.wordBegin, diagnostic.wordLength);
    expect(diagnostic.length > 0 && spelled.starts_with(at), "the word of a diagnostic");
    const Word& word = words[wordAt[diagnostic.wordBegin]];
    expect(word.start == diagnostic.wordBegin && word.length == diagnostic.wordLength,
           "its extent");
    const bool hasPlace = word.line == diagnostic.line && word.column == diagnostic.column;
    expect(hasPlace == diagnostic.isWarning, "its place in the text");
  }

  // --- Items
  // ---------------------------------------------------------------------------------------

  /// Builds the tree once more from what is known of its items.
  void checkTree(const Quarry::SourceTree& tree) {
    if (!(document.getVersion() > 0.0)) return;
    Quarry::ParserGroup root("root");
    std::map<unsigned long, Quarry::ParserGroup*> groups = {{NOWHERE, &root}};
    for (unsigned long i = 0; i < tree.getItemCount(); ++i) {
      const Quarry::SourceItem& item = tree.getItem(i);
      auto made = std::make_unique<Quarry::ParserItem>(std::string(tree.getName(item)), item.type,
                                                       0UL, 0UL);
      for (unsigned long value = 0; value < item.valueCount; ++value)
        tree.appendTo(*made, tree.getValue(item, value));
      if (item.hasGroup()) groups[i] = made->addGroup(nullptr);
      groups[item.parent]->addItem(*made.release());
    }
    expect(root.getBinary(false) == file.getRoot().getBinary(false), "the tree's binary form");
    std::string text;
    std::string expected;
    root.getText(text, false, false, 1);
    file.getRoot().getText(expected, false, false, 1);
    expect(text == expected, "the tree's text");
  }

  void checkItem(const Quarry::SourceTree& tree, unsigned long index) {
    const Quarry::SourceItem& item = tree.getItem(index);
    expect(item.nameBegin + item.nameLength <= item.end, "an item's end");
    expect(item.end <= document.getText().size(), "an item's end in the text");
    expect(tree.getItemAt(item.nameBegin) == index, "the item at its name");
    const unsigned long next = tree.getNext(index);
    expect(next == NOWHERE || tree.getItem(next).parent == item.parent, "an item's sibling");
    expect(next == NOWHERE || tree.getItem(next).nameBegin >= item.end, "where its sibling is");
    const unsigned long first = tree.getFirst(index);
    expect(first == NOWHERE || (item.hasGroup() && tree.getItem(first).parent == index),
           "its group");
    if (item.parent != NOWHERE) {
      expect(item.end <= tree.getItem(item.parent).end, "an item's end in its group");
    }
    for (unsigned long value = 0; value < item.valueCount; ++value) {
      const Quarry::SourceValue& found = tree.getValue(item, value);
      expect(words[wordAt[found.begin]].start == found.begin, "a value is a word");
      expect(words[wordAt[found.begin]].length == found.length, "a value is a whole word");
      expect(tree.getItemAt(found.begin) == index, "the item at its value");
    }
    for (unsigned long i = 0; i < item.valueCount; i += stepFor(item.valueCount)) {
      const unsigned long begin = tree.getValue(item, i).begin;
      expect(tree.getValueAt(index, begin) == i, "the value at its place");
    }
  }

  Quarry::ParserFile file;
  std::string libraryText;
  double libraryVersion = 0.0;
  bool isReadByLibrary = false;
  bool hasBadLine = false;
  std::vector<std::string> warnings;

  Quarry::SourceDocument document;
  bool isRead = false;
  std::vector<Word> words;
  std::vector<unsigned long> wordAt;  ///< the number of the word that each byte of the text is in
  std::string problem;
};

}  // namespace TestSupport
