/// Builds the tree of a document from what the text parser recognises.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "Diagnostic.h"

#include <vector>

namespace Quarry {

/// The text parser's sink: adds what it is told to a group and gives warnings on the console.
class TreeBuilder {
 public:
  explicit TreeBuilder(ParserGroup& target) : group(&target) {}

  void beginItem(const ParserWord& word);
  void value(const ParserWord& word, ParserValue::Type type) { item->addWord(word, type); }
  void emptyTag(const ParserWord&) {}  // an item without values is an empty one
  void beginGroup(const ParserWord& word);
  void beginBracedItem(const ParserWord& word);
  void endGroup(const ParserWord* word);
  void beginCall(const ParserWord&) { item->type = ParserItem::ITEM_CALL; }
  void endCall(const ParserWord&) {}
  void endDocument(const ParserWord&) {}
  void warning(Diagnostic diagnostic, const ParserWord& word);

 private:
  /// A group that waits for a nested one to end, and its current item.
  struct Outer {
    ParserGroup* group;
    ParserItem* item;
  };

  void enterGroupOf(ParserItem& owner);

  ParserGroup* group;          ///< the innermost group
  ParserItem* item = nullptr;  ///< its current item
  std::vector<Outer> outers;
};

}  // namespace Quarry
