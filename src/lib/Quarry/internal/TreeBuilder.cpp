#include "TreeBuilder.h"

#include <Plinth/Console.h>

#include "Messages.h"

namespace Quarry {

namespace {

void applyDetails(ParserItem& item, const ParserWord& word) {
  item.setArray(word.getArraySize() != ParserWord::NO_ARRAY, word.getArraySize());
  if (word.getTemplateWord() != nullptr) item.setTemplate(word.getTemplateWord()->getString());
}

}  // namespace

void TreeBuilder::beginBracedItem(const ParserWord& word) {
  completeItem();
  ParserItem* braced = group->addItem(word.getString(), 0, 0);
  applyDetails(*braced, word);
  ParserGroup* inner = braced->addGroup(nullptr);
  outers.push_back({group, item});
  group = inner;
  item = nullptr;
}

void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  completeItem();
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::completeItemWithDetails(const ParserWord& word) {
  completeItem();
  applyDetails(*item, word);
}

/// Adds a value that is not kept as it stands.
void TreeBuilder::readNoted(ParserItem& made, const Note& note) {
  if (note.type == ParserValue::TYPE_BINARYDATA) {
    ::new (made.nextPlace()) ParserValue(ParserValue::readBlock({note.begin, note.length}));
    ++made.count;
  } else {
    unescaped.clear();
    appendUnescaped(unescaped, unquote(note));
    made.appendText(note.type, unescaped);
  }
}

/// Adds a value to an item that is made already, or one that is read with care.
void TreeBuilder::addWord(const ParserWord& word, ParserValue::Type valueType) {
  completeItem();
  item->addWord(word, valueType);
}

}  // namespace Quarry
