/// Builds the tree of a document from what the text parser recognises.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "ByteSearch.h"
#include "Diagnostic.h"
#include "TreeParts.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// The text parser's sink: adds what it is told to a group and gives warnings on the console.
///
/// An item is made when all its values are there, so that it gets one piece of memory of the right
/// size; until then they are collected here. Whoever could look at the tree, such as a console that
/// is told a warning, finds it complete.
class TreeBuilder {
 public:
  /// @param hasZeroBytes whether there are any in the text; words are then read with more care
  explicit TreeBuilder(ParserGroup& target, bool hasZeroBytes = true)
      : group(&target), isPlainText(!hasZeroBytes) {}

  /// The parser has classified the name, so that it need not be checked again.
  void beginItem(const ParserWord& word) {
    completeItem();
    isCollecting = true;
    isCall = false;
    name = {word.begin(), word.getLength()};
    nameReadable = word.textEnd;
    place = {word.getLine(), word.getColumn()};
    type = word.getType() == ParserWord::WORD_KEYWORD ? ParserItem::ITEM_KEYWORD
                                                      : ParserItem::ITEM_PLAIN;
    if (hasDetails(word)) completeItemWithDetails(word);
  }

  void value(const ParserWord& word, ParserValue::Type valueType) {
    const bool isText = isCollecting && isPlainText;
    if (isText && valueType != ParserValue::TYPE_STRING &&
        valueType != ParserValue::TYPE_BINARYDATA) {
      collectText(valueType, {word.begin(), word.getLength()}, word);
    } else if (isText && valueType == ParserValue::TYPE_STRING) {
      collectString(word);
    } else {
      addWord(word, valueType);
    }
  }

  void emptyTag(const ParserWord&) {}  // an item without values is an empty one

  void beginGroup(const ParserWord&) {
    ParserGroup* inner = (isCollecting ? values : *item).appendGroup(nullptr);
    completeItem();
    enterGroup(inner);
  }

  void beginBracedItem(const ParserWord& word);

  void endGroup(const ParserWord*) {
    completeItem();
    group = outers.back().group;
    item = outers.back().item;
    outers.pop_back();
  }

  void groupLeftOut(const ParserWord& word) {
    completeItem();
    if (leftOut.line == 0) leftOut = {word.getLine(), word.getColumn()};
  }

  void beginCall(const ParserWord&) {
    if (isCollecting) {
      isCall = true;
    } else {
      item->type = ParserItem::ITEM_CALL;
    }
  }

  void endCall(const ParserWord&) {}
  void endDocument(const ParserWord&) {}
  void warning(Diagnostic diagnostic, const ParserWord& word);

  /// Makes the item whose values are being collected. A call is looked up as the plain item that it
  /// is when its name is read.
  void completeItem() {
    if (!isCollecting) return;
    isCollecting = false;
    std::unique_ptr<ParserItem> made(
        ParserItem::make(name, nameReadable, type, place, values.count));
    if (values.count > 0) moveValuesTo(*made);
    group->append(made.get());
    item = made.release();
    if (isCall) item->type = ParserItem::ITEM_CALL;
  }

  /// Tells whether a group was left out, and where the first such group begins.
  bool leavesOut() const { return leftOut.line != 0; }
  const ParserItem::Place& getLeftOut() const { return leftOut; }

 private:
  /// A group that waits for a nested one to end, and its current item.
  struct Outer {
    ParserGroup* group;
    ParserItem* item;
  };

  static bool hasDetails(const ParserWord& word) {
    return word.getArraySize() != ParserWord::NO_ARRAY || word.getTemplateWord() != nullptr;
  }

  void enterGroup(ParserGroup* inner) {
    outers.push_back({group, item});
    group = inner;
    item = nullptr;
  }

  /// A string without escapes is kept as it stands, without its quotes.
  void collectString(const ParserWord& word) {
    constexpr unsigned long QUOTES = 2;
    const char* begin = word.begin() + 1;
    const char* end = word.getLength() > QUOTES ? word.end() - 1 : begin;
    if (word.resolvesEscapes && findAnyOf<'\\'>(begin, end) != end) {
      ParserItem::readQuoted(word, unescaped);
      values.appendText(ParserValue::TYPE_STRING, unescaped);
    } else {
      const auto length = static_cast<unsigned long>(end - begin);
      collectText(ParserValue::TYPE_STRING, {begin, length}, word);
    }
  }

  void collectText(ParserValue::Type valueType, std::string_view text, const ParserWord& word) {
    ::new (values.nextPlace()) ParserValue(ParserValue::Form::TEXT, valueType, text, word.textEnd);
    ++values.count;
  }

  /// A long list that is nearly full changes hands as it is.
  void moveValuesTo(ParserItem& made) {
    constexpr std::uint32_t LONG = 1000;
    if (values.count >= LONG && values.count > values.capacity / 4 * 3) {
      return made.takeList(values);
    }
    made.reserve(values.count);
    values.moveValuesTo(made.values);
    made.count = values.count;
    values.count = 0;
  }

  void completeItemWithDetails(const ParserWord& word);
  void addWord(const ParserWord& word, ParserValue::Type valueType);

  ParserGroup* group;          ///< the innermost group
  ParserItem* item = nullptr;  ///< its current item, once it is made
  std::vector<Outer> outers;
  ParserItem::Place leftOut = {0, 0};  ///< the first group that was; lines count from 1
  const bool isPlainText;

  // The current item, as long as its values are collected.
  bool isCollecting = false;
  std::string_view name;
  const char* nameReadable = nullptr;  ///< the end of the text that the name stands in
  ParserItem::Place place = {0, 0};
  ParserItem::Type type = ParserItem::ITEM_PLAIN;
  bool isCall = false;
  std::string unescaped;  ///< here so that its memory is used again
  ParserItem values{std::string(), ParserItem::ITEM_PLAIN, 0, 0};
};

}  // namespace Quarry
