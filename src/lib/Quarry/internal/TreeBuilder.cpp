#include "TreeBuilder.h"

#include <Plinth/Console.h>

#include "Messages.h"

#include <memory>

namespace Quarry {

namespace {

void applyArray(ParserItem& item, const ParserWord& word) {
  item.setArray(word.getArraySize() != ParserWord::NO_ARRAY, word.getArraySize());
}

}  // namespace

/// The parser has classified the name, so that it need not be checked again.
void TreeBuilder::beginItem(const ParserWord& word) {
  const bool keyword = word.getType() == ParserWord::WORD_KEYWORD;
  item = group->append(std::make_unique<ParserItem>(
      word.getString(), keyword ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN, word.getLine(),
      word.getColumn()));
  applyArray(*item, word);
  if (word.getTemplateWord() != nullptr) item->setTemplate(word.getTemplateWord()->getString());
}

void TreeBuilder::beginGroup(const ParserWord&) { enterGroupOf(*item); }

void TreeBuilder::beginBracedItem(const ParserWord& word) {
  ParserItem* braced = group->addItem(word.getString(), 0, 0);
  applyArray(*braced, word);
  enterGroupOf(*braced);
}

void TreeBuilder::endGroup(const ParserWord*) {
  group = outers.back().group;
  item = outers.back().item;
  outers.pop_back();
}

void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::enterGroupOf(ParserItem& owner) {
  outers.push_back({group, item});
  group = owner.addGroup(nullptr);
  item = nullptr;
}

}  // namespace Quarry
