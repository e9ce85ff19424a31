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
  enterGroup(braced->addGroup(nullptr));
}

void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  completeItem();
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::completeItemWithDetails(const ParserWord& word) {
  completeItem();
  applyDetails(*item, word);
}

/// Adds a value that needs more than its text.
void TreeBuilder::addWord(const ParserWord& word, ParserValue::Type valueType) {
  if (!isPlainText) completeItem();
  (isCollecting ? values : *item).addWord(word, valueType);
}

}  // namespace Quarry
