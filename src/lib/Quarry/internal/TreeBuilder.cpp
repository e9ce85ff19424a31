#include "TreeBuilder.h"

#include <Plinth/Console.h>

#include "Messages.h"

namespace Quarry {

void TreeBuilder::beginBracedItem(const ParserWord& word) {
  completeItem();
  ParserItem* braced = group->addItem(word.getString(), 0, 0);
  applyDetails(*braced, word);
  enterGroup(braced->addGroup(nullptr));
}

void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  completeItem();
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::applyDetails(ParserItem& item, const ParserWord& word) {
  item.setArray(word.getArraySize() != ParserWord::NO_ARRAY, word.getArraySize());
  if (word.getTemplateWord() != nullptr) item.setTemplate(word.getTemplateWord()->getString());
}

void TreeBuilder::addNoted() {
  item->reserve(item->count + notes.size());
  for (const Note& note : notes) {
    ::new (item->end()) ParserValue(ParserValue::Form::TEXT, note.type, note.text, readable);
    ++item->count;
  }
  notes.clear();
}

/// Adds a value that is not kept as it stands.
void TreeBuilder::addWord(const ParserWord& word, ParserValue::Type valueType) {
  if (valueType != ParserValue::TYPE_STRING) return addCarefully(word, valueType);
  completeItem();
  ParserItem::readQuoted(word, unescaped);
  item->appendText(valueType, unescaped);
}

/// Adds a value by the general rules.
void TreeBuilder::addCarefully(const ParserWord& word, ParserValue::Type valueType) {
  completeItem();
  item->addWord(word, valueType);
}

}  // namespace Quarry
