/// Keeps what the parser tells of a document's items.
#pragma once

#include <Quarry/internal/Diagnostic.h>
#include <QuarrySource/SourceTree.h>

#include <algorithm>
#include <vector>

namespace Quarry {

/// The parser's sink: fills the items and values of a tree.
class TreeCollector {
 public:
  explicit TreeCollector(SourceTree& filled) : tree(filled) {}

  void beginItem(const ParserWord& word) {
    endItem();
    SourceItem item;
    const bool isKeyword = word.getType() == ParserWord::WORD_KEYWORD;
    item.type = isKeyword ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN;
    item.nameBegin = word.getStart();
    item.nameLength = word.getLength();
    item.end = endOf(word);
    item.parent = openItems.empty() ? NOWHERE : openItems.back();
    item.firstValue = tree.values.size();
    current = tree.items.size();
    tree.items.push_back(item);
  }

  void value(const ParserWord& word, ParserValue::Type type) {
    tree.values.push_back({type, word.getStart(), word.getLength()});
    ++item().valueCount;
    item().end = endOf(word);
  }

  void emptyTag(const ParserWord& word) { value(word, ParserValue::TYPE_EMPTY); }

  void beginCall(const ParserWord& word) {
    item().type = ParserItem::ITEM_CALL;
    item().argumentsBegin = word.getStart();
    item().end = endOf(word);
  }

  void endCall(const ParserWord& word) {
    item().argumentsEnd = word.getStart();
    item().end = endOf(word);
    endItem();
  }

  void beginGroup(const ParserWord& word) {
    item().groupBegin = word.getStart();
    item().end = endOf(word);
    openItems.push_back(current);
    current = NOWHERE;
  }

  void beginBracedItem(const ParserWord& word) {
    beginItem(word);
    beginGroup(word);
  }

  /// @param word null where the group ends with the document
  void endGroup(const ParserWord* word) {
    endItem();
    current = openItems.back();
    openItems.pop_back();
    if (word == nullptr) {
      item().end = std::max(item().end, lastEnd);
    } else {
      item().groupEnd = word->getStart();
      item().end = endOf(*word);
    }
    endItem();
  }

  void groupLeftOut(const ParserWord&) { endItem(); }
  void endDocument(const ParserWord&) {}
  void warning(Diagnostic, const ParserWord&) {}

  /// Has to be called when everything is read.
  void finish() { endItem(); }

 private:
  static constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

  static unsigned long endOf(const ParserWord& word) { return word.getStart() + word.getLength(); }

  SourceItem& item() { return tree.items[current]; }

  void endItem() {
    if (current == NOWHERE) return;
    item().next = tree.items.size();
    lastEnd = item().end;
    current = NOWHERE;
  }

  SourceTree& tree;
  unsigned long current = NOWHERE;
  unsigned long lastEnd = 0;             ///< of the item that was completed last
  std::vector<unsigned long> openItems;  ///< those whose groups are being read
};

}  // namespace Quarry
