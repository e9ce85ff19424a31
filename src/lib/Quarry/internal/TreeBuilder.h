/// Builds the tree of a document from what the text parser recognises.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "Diagnostic.h"

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

  void beginItem(const ParserWord& word);
  void value(const ParserWord& word, ParserValue::Type type);
  void emptyTag(const ParserWord&) {}  // an item without values is an empty one
  void beginGroup(const ParserWord& word);
  void beginBracedItem(const ParserWord& word);
  void endGroup(const ParserWord* word);
  void beginCall(const ParserWord&);
  void endCall(const ParserWord&) {}
  void endDocument(const ParserWord&) {}
  void warning(Diagnostic diagnostic, const ParserWord& word);

  /// Makes the item whose values are being collected.
  void completeItem();

 private:
  /// A group that waits for a nested one to end, and its current item.
  struct Outer {
    ParserGroup* group;
    ParserItem* item;
  };

  void enterGroup(ParserGroup* inner);
  void collectString(const ParserWord& word);
  void collectText(ParserValue::Type type, std::string_view text, const ParserWord& word);

  ParserGroup* group;          ///< the innermost group
  ParserItem* item = nullptr;  ///< its current item, once it is made
  std::vector<Outer> outers;
  const bool isPlainText;

  // The current item, as long as its values are collected.
  bool isCollecting = false;
  std::string_view name;
  const char* nameReadable = nullptr;  ///< the end of the text that the name stands in
  unsigned long line = 0;
  unsigned long column = 0;
  ParserItem::Type type = ParserItem::ITEM_PLAIN;
  bool isCall = false;
  ParserItem values{std::string(), ParserItem::ITEM_PLAIN, 0, 0};
};

}  // namespace Quarry
