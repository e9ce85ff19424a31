/// Builds the tree of a document from what the text parser recognises.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "ByteSearch.h"
#include "Diagnostic.h"
#include "TextWord.h"
#include "TreeParts.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quarry {

/// The text parser's sink: adds what it is told to a group and gives warnings on the console.
///
/// An item is made when all its values are there, so that it gets one piece of memory of the right
/// size; until then it is noted here where they stand in the text. Whoever could look at the tree,
/// such as a console that is told a warning, finds it complete.
class TreeBuilder {
 public:
  /// @param hasZeroBytes whether there are any in the text; words are then read with more care
  explicit TreeBuilder(ParserGroup& target, bool hasZeroBytes = true)
      : group(&target), isPlainText(!hasZeroBytes) {}

  /// The parser has classified the name, so that it need not be checked again.
  template <class Word>
  void beginItem(const Word& word) {
    completeItem();
    isNoted = true;
    takesNotes = isPlainText;
    type = word.getType() == ParserWord::WORD_KEYWORD ? ParserItem::ITEM_KEYWORD
                                                      : ParserItem::ITEM_PLAIN;
    name = {word.begin(), word.getLength()};
    readable = word.textEnd;
    place = {word.getLine(), word.getColumn()};
    if (hasDetails(word)) completeItemWithDetails(word);
  }

  template <class Word>
  void value(const Word& word, ParserValue::Type valueType) {
    if (takesNotes) {
      if (noted == notes.data() + notes.size()) makeRoom();
      *noted++ = {word.begin(), word.getLength(), valueType, needsReading(word, valueType)};
    } else {
      addWord(word, valueType);
    }
  }

  template <class Word>
  void emptyTag(const Word&) {}  // an item without values is an empty one

  template <class Word>
  void beginGroup(const Word&) {
    completeItem(1);
    ParserGroup* inner = item->appendGroup(nullptr);
    outers.push_back({group, item});
    group = inner;
    item = nullptr;
  }

  void beginBracedItem(const ParserWord& word);

  template <class Word>
  void endGroup(const Word*) {
    completeItem();
    group = outers.back().group;
    item = outers.back().item;
    outers.pop_back();
  }

  template <class Word>
  void groupLeftOut(const Word& word) {
    completeItem();
    if (leftOut.line == 0) leftOut = {word.getLine(), word.getColumn()};
  }

  template <class Word>
  void beginCall(const Word&) {
    if (isNoted) {
      isCall = true;
    } else {
      item->type = ParserItem::ITEM_CALL;
    }
  }

  template <class Word>
  void endCall(const Word&) {}
  template <class Word>
  void endDocument(const Word&) {}
  void warning(Diagnostic diagnostic, const ParserWord& word);

  /// Makes the item that is noted. A call is looked up as the plain item that it is when its name
  /// is read.
  /// @param further how many values will be added at once
  void completeItem(unsigned long further = 0) {
    if (isNoted) makeItem(further);
  }

  /// Tells whether a group was left out, and where the first such group begins.
  bool leavesOut() const { return leftOut.line != 0; }
  const ParserItem::Place& getLeftOut() const { return leftOut; }

 private:
  static constexpr std::size_t FEW_NOTES = 16;

  /// A value of the item that is noted, as it stands in the text.
  struct Note {
    const char* begin;
    unsigned long length;
    ParserValue::Type type;
    bool needsReading;  ///< its text is not simply kept
  };

  /// A group that waits for a nested one to end, and its current item.
  struct Outer {
    ParserGroup* group;
    ParserItem* item;
  };

  template <class Word>
  static bool hasDetails(const Word& word) {
    return word.getArraySize() != ParserWord::NO_ARRAY || word.getTemplateWord() != nullptr;
  }

  /// A block of bytes is decoded, and a string unescaped where it has escapes.
  template <class Word>
  static bool needsReading(const Word& word, ParserValue::Type valueType) {
    if (valueType == ParserValue::TYPE_STRING) return hasEscapes(word);
    return valueType == ParserValue::TYPE_BINARYDATA;
  }
  static bool hasEscapes(const TextWord& word) { return word.hasEscapes(); }
  static bool hasEscapes(const ParserWord& word) {
    return word.resolvesEscapes && findAnyOf<'\\'>(word.begin(), word.end()) != word.end();
  }

  void makeRoom() {
    const std::size_t count = notes.size();
    notes.resize(2 * count);
    noted = notes.data() + count;
  }

  void makeItem(unsigned long further) {
    isNoted = false;
    takesNotes = false;
    const Note* end = std::exchange(noted, notes.data());
    const unsigned long count = static_cast<unsigned long>(end - noted);
    ParserItem* made = ParserItem::make(name, readable, type, place, count + further);
    try {
      made->reserve(count + further);
      for (const Note* note = noted; note != end; ++note)
        addNoted(*made, *note);
      group->append(made);
    } catch (...) {
      delete made;
      throw;
    }
    item = made;
    if (isCall) item->type = ParserItem::ITEM_CALL;
    isCall = false;
  }

  void addNoted(ParserItem& made, const Note& note) {
    if (note.needsReading) return readNoted(made, note);
    const bool isQuoted = note.type == ParserValue::TYPE_STRING;
    const std::string_view text =
        isQuoted ? unquote(note) : std::string_view(note.begin, note.length);
    ::new (made.values + made.count)
        ParserValue(ParserValue::Form::TEXT, note.type, text, readable);
    ++made.count;
  }

  static std::string_view unquote(const Note& note) {
    constexpr unsigned long QUOTES = 2;
    return {note.begin + 1, note.length > QUOTES ? note.length - QUOTES : 0};
  }

  void readNoted(ParserItem& made, const Note& note);
  void completeItemWithDetails(const ParserWord& word);
  void addWord(const ParserWord& word, ParserValue::Type valueType);

  ParserGroup* group;          ///< the innermost group
  ParserItem* item = nullptr;  ///< its current item, once it is made
  std::vector<Outer> outers;
  ParserItem::Place leftOut = {0, 0};  ///< the first group that was; lines count from 1
  const bool isPlainText;

  // The current item, as long as it is only noted.
  bool isNoted = false;
  bool isCall = false;
  ParserItem::Type type = ParserItem::ITEM_PLAIN;
  std::string_view name;
  const char* readable = nullptr;  ///< the end of the text that the name stands in
  ParserItem::Place place = {0, 0};
  bool takesNotes = false;  ///< its values are
  std::vector<Note> notes = std::vector<Note>(FEW_NOTES);
  Note* noted = notes.data();  ///< the end of those that are in use
  std::string unescaped;       ///< here so that its memory is used again
};

}  // namespace Quarry
