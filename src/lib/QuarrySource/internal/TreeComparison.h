/// Compares what the parser reads with the tree that was written.
#pragma once

#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/BinaryNumber.h>
#include <Quarry/internal/Diagnostic.h>

#include "RewriteText.h"

#include <string>
#include <string_view>

namespace Quarry {

/// The parser's sink: goes through the parts of the tree in step with what is read, up to the first
/// difference.
class TreeComparison {
 public:
  /// @param writtenTree what is expected
  /// @param textRead that the words stand in
  TreeComparison(const RewriteText& writtenTree, const std::string& textRead)
      : written(writtenTree), text(textRead) {}

  void beginItem(const ParserWord& word) {
    completeItem();
    const unsigned long part = position;
    accept([&](const RewritePart& expected) {
      return expected.isItem() && expected.depth == depth &&
             expected.item->getName() == getSpelling(word);
    });
    current = part;
    type = word.getType() == ParserWord::WORD_KEYWORD ? ParserItem::ITEM_KEYWORD
                                                      : ParserItem::ITEM_PLAIN;
  }

  void value(const ParserWord& word, ParserValue::Type valueType) {
    accept([&](const RewritePart& expected) {
      return expected.owner == current && expected.value != nullptr &&
             isEqual(expected, word, valueType);
    });
  }

  void emptyTag(const ParserWord&) {}

  void beginGroup(const ParserWord&) {
    accept([&](const RewritePart& expected) {
      return expected.owner == current && expected.group != nullptr &&
             expected.group->getName().empty();
    });
    completeItem();
    ++depth;
  }

  void endGroup(const ParserWord*) {
    completeItem();
    --depth;
  }

  void beginCall(const ParserWord&) { type = ParserItem::ITEM_CALL; }

  void endCall(const ParserWord&) {}
  void endDocument(const ParserWord&) {}
  void beginBracedItem(const ParserWord&) {}  // no text has such a word
  void groupLeftOut(const ParserWord&) {}     // there is no limit
  void warning(Diagnostic, const ParserWord&) {}

  /// Has to be called when everything is read.
  /// @return whether it is the tree that was written
  bool finish() {
    completeItem();
    return !differs && position == written.getParts().size();
  }

  /// Returns the part at which the comparison ended.
  unsigned long getPosition() const { return position; }

 private:
  static constexpr unsigned long NONE = RewritePart::NONE;

  std::string_view getSpelling(const ParserWord& word) const {
    return std::string_view(text).substr(word.getStart(), word.getLength());
  }

  template <class Fits>
  void accept(Fits fits) {
    if (differs) return;
    const bool isThere = position < written.getParts().size();
    if (isThere && fits(written.getParts()[position])) {
      ++position;
    } else {
      differs = true;
    }
  }

  /// What kind of item it is shows only behind its name.
  void completeItem() {
    if (current == NONE || differs) return;
    const ParserItem& item = *written.getParts()[current].item;
    if (item.getType() != type || item.isTemplate() || item.isArray()) {
      differs = true;
      position = current;
    }
    current = NONE;
  }

  /// Strings and blocks are equal when they are written alike.
  bool isEqual(const RewritePart& expected, const ParserWord& word, ParserValue::Type valueType) {
    if (expected.value->getType() != valueType) return false;
    readAgain.reset();
    readAgain.addWord(word, valueType);
    if (valueType == ParserValue::TYPE_STRING || valueType == ParserValue::TYPE_BINARYDATA) {
      std::string spelling;
      readAgain.getValueText(spelling, true, 1);
      return std::string_view(spelling).substr(1) == written.getSpelling(expected);
    }
    const ParserValue copy(*expected.value);  // whose text is converted, not the value's own
    return toBits(copy.getAsDouble()) == toBits(readAgain.getDouble(0));
  }

  const RewriteText& written;
  const std::string& text;
  unsigned long position = 0;                      ///< the part that is expected next
  unsigned long current = NONE;                    ///< the part of the item that is being read
  ParserItem::Type type = ParserItem::ITEM_PLAIN;  ///< of that item, as far as it was read
  unsigned long depth = 0;
  bool differs = false;
  ParserItem readAgain{std::string(), ParserItem::ITEM_PLAIN, 0, 0};
};

}  // namespace Quarry
