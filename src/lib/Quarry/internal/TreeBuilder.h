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

#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// The text parser's sink: adds what it is told to a group and gives warnings on the console.
///
/// An item is made with a place for one value. In a region it is the last piece, and as long as
/// that is so, it is made larger for each further value. Values that find no place are noted until
/// the item's last one is known, so that their list gets one piece of memory of the right size.
/// Only for many numbers the size is guessed from the text that follows, and the rest goes where it
/// belongs at once. Whoever could look at the tree, such as a console that is told a warning, finds
/// it complete.
class TreeBuilder {
 public:
  /// @param hasZeroBytes whether there may be any in ParserWords, which do not tell; they are then
  ///        read with more care
  /// @param textLength how many bytes of text follow, as far as that is known
  explicit TreeBuilder(ParserGroup& target, bool hasZeroBytes = true, unsigned long textLength = 0)
      : outers(makeOuters()),
        region(target.makeRegionFor(textLength)),
        group(&target),
        areWordsPlain(!hasZeroBytes) {}

  /// The parser has classified the name, so that it need not be checked again. Where this is
  /// inlined, its type is known before anything else is called, and so the column is asked for
  /// first.
  template <class Word>
  [[gnu::always_inline]] void beginItem(const Word& word) {
    const ParserItem::Type type = word.getType() == ParserWord::WORD_KEYWORD
                                      ? ParserItem::ITEM_KEYWORD
                                      : ParserItem::ITEM_PLAIN;
    const ParserItem::Place place = {word.getLine(), word.getColumn()};
    completeItem();
    group->makePlace();  // first, so that the item can be made larger
    ParserItem* made =
        ParserItem::make({word.begin(), word.getLength()}, word.textEnd, type, place, 1);
    group->adopt(made);
    item = made;
    if (hasDetails(word)) applyDetails(*item, word);
  }

  template <class Word>
  [[gnu::always_inline]] void value(const Word& word, ParserValue::Type valueType) {
    if (!isPlain(word)) return addCarefully(word, valueType);
    if (needsReading(word, valueType)) return addWord(word, valueType);
    const std::string_view text = textOf(word, valueType);
    if (!item->makePlace()) return note(text, valueType, word.textEnd);
    assert(notes.empty());  // they come before this value
    item->addText(valueType, text, word.textEnd);
  }

  template <class Word>
  void emptyTag(const Word&) {}  // an item without values is an empty one

  template <class Word>
  void beginGroup(const Word&) {
    completeItem();
    enterGroup(item->appendNewGroup());
  }

  void beginBracedItem(const ParserWord& word);

  template <class Word>
  void endGroup(const Word*) {
    completeItem();
    if (!interrupted.empty()) resume();
    group = outers.back();
    outers.pop_back();
  }

  template <class Word>
  void groupLeftOut(const Word& word) {
    completeItem();
    if (leftOut.line == 0) leftOut = {word.getLine(), word.getColumn()};
  }

  /// A call is looked up as the plain item that it is when its name is read.
  template <class Word>
  void beginCall(const Word&) {
    item->type = ParserItem::ITEM_CALL;
  }

  template <class Word>
  void endCall(const Word&) {}
  template <class Word>
  void endDocument(const Word&) {}
  void warning(Diagnostic diagnostic, const ParserWord& word);

  /// Adds the values that are noted.
  void completeItem() {
    if (!notes.empty()) addNoted();
  }

  /// Tells whether a group was left out, and where the first such group begins.
  bool leavesOut() const { return leftOut.line != 0; }
  const ParserItem::Place& getLeftOut() const { return leftOut; }

 private:
  static constexpr std::size_t USUAL_DEPTH = 16;

  /// So many notes stay in the processor's cache, and tell how long the values are.
  static constexpr std::size_t MANY = 64;

  /// A value of the current item that found no place.
  struct Note {
    std::string_view text;
    ParserValue::Type type;
  };

  /// The groups that wait for a nested one to end.
  using Outers = std::vector<ParserGroup*, SlabAllocator<ParserGroup*>>;

  /// Returns a list with room for what most documents need.
  static Outers makeOuters() {
    Outers outers;
    outers.reserve(USUAL_DEPTH);
    return outers;
  }

  /// The group of a braced word, and the item that was current before it.
  struct Interrupted {
    const ParserGroup* braced;
    ParserItem* item;
  };

  template <class Word>
  static bool hasDetails(const Word& word) {
    return word.getArraySize() != ParserWord::NO_ARRAY || word.getTemplateWord() != nullptr;
  }

  /// Tells whether the word has no zero byte.
  static bool isPlain(const TextWord& word) { return !word.hasSeenZeroByte(); }
  bool isPlain(const ParserWord&) const { return areWordsPlain; }

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

  /// The text that is kept: a string's stands between its quotes.
  template <class Word>
  static std::string_view textOf(const Word& word, ParserValue::Type valueType) {
    constexpr unsigned long QUOTES = 2;
    const unsigned long length = word.getLength();
    if (valueType != ParserValue::TYPE_STRING) return {word.begin(), length};
    return {word.begin() + 1, length > QUOTES ? length - QUOTES : 0};
  }

  void enterGroup(ParserGroup* inner) {
    outers.push_back(group);
    group = inner;
  }

  void note(std::string_view text, ParserValue::Type type, const char* textEnd) {
    notes.push_back({text, type});
    readable = textEnd;
    if (notes.size() == MANY) beginLongList();
  }

  void resume();
  void addNoted();
  void beginLongList();
  std::size_t guessFollowing();
  static void applyDetails(ParserItem& item, const ParserWord& word);
  void addWord(const ParserWord& word, ParserValue::Type valueType);
  void addCarefully(const ParserWord& word, ParserValue::Type valueType);

  Outers outers;  ///< before the region, whose memory it is not to take
  const SlabRegion::Use region;
  ParserGroup* group;          ///< the innermost group
  ParserItem* item = nullptr;  ///< its current item, where the parser has one
  std::vector<Interrupted> interrupted;
  ParserItem::Place leftOut = {0, 0};  ///< the first group that was; lines count from 1
  const bool areWordsPlain;
  std::vector<Note, SlabAllocator<Note>> notes;  ///< where memory of the last document is kept
  const char* readable = nullptr;                ///< the end of the text that the notes point to
  const char* listEnd = nullptr;                 ///< what guessFollowing() has found last
  std::string unescaped;                         ///< here so that its memory is used again
};

}  // namespace Quarry
