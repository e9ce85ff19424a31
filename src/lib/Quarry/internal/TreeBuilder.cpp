#include "TreeBuilder.h"

#include <Plinth/Console.h>

#include "Messages.h"
#include "StringText.h"

#include <cstring>
#include <memory>
#include <string>

namespace Quarry {

namespace {

bool hasDetails(const ParserWord& word) {
  return word.getArraySize() != ParserWord::NO_ARRAY || word.getTemplateWord() != nullptr;
}

void applyDetails(ParserItem& item, const ParserWord& word) {
  item.setArray(word.getArraySize() != ParserWord::NO_ARRAY, word.getArraySize());
  if (word.getTemplateWord() != nullptr) item.setTemplate(word.getTemplateWord()->getString());
}

}  // namespace

/// The parser has classified the name, so that it need not be checked again.
void TreeBuilder::beginItem(const ParserWord& word) {
  completeItem();
  isCollecting = true;
  isCall = false;
  name = {word.begin(), word.getLength()};
  nameReadable = word.textEnd;
  line = word.getLine();
  column = word.getColumn();
  type = word.getType() == ParserWord::WORD_KEYWORD ? ParserItem::ITEM_KEYWORD
                                                    : ParserItem::ITEM_PLAIN;
  if (!hasDetails(word)) return;
  completeItem();
  applyDetails(*item, word);
}

/// A call is looked up as the plain item that it is when its name is read.
void TreeBuilder::completeItem() {
  if (!isCollecting) return;
  isCollecting = false;
  std::unique_ptr<ParserItem> made(
      ParserItem::make(makeString(name, nameReadable), type, line, column, values.count));
  made->reserve(values.count);
  values.moveValuesTo(made->values);
  made->count = values.count;
  values.count = 0;
  item = group->append(std::move(made));
  if (isCall) item->type = ParserItem::ITEM_CALL;
}

void TreeBuilder::value(const ParserWord& word, ParserValue::Type valueType) {
  if (!isPlainText) completeItem();
  if (!isCollecting) return item->addWord(word, valueType);
  if (valueType == ParserValue::TYPE_STRING) return collectString(word);
  if (valueType == ParserValue::TYPE_BINARYDATA) return values.addWord(word, valueType);
  collectText(valueType, {word.begin(), word.getLength()}, word);
}

/// A string without escapes is kept as it stands, without its quotes.
void TreeBuilder::collectString(const ParserWord& word) {
  constexpr unsigned long QUOTES = 2;
  const std::string_view text = word.getLength() > QUOTES
                                    ? std::string_view(word.begin() + 1, word.getLength() - QUOTES)
                                    : std::string_view(word.begin(), 0);
  const bool hasEscapes =
      word.resolvesEscapes && std::memchr(text.data(), '\\', text.size()) != nullptr;
  if (hasEscapes) return values.addWord(word, ParserValue::TYPE_STRING);
  collectText(ParserValue::TYPE_STRING, text, word);
}

void TreeBuilder::collectText(ParserValue::Type valueType, std::string_view text,
                              const ParserWord& word) {
  ::new (values.nextPlace()) ParserValue(ParserValue::Form::TEXT, valueType, text, word.textEnd);
  ++values.count;
}

void TreeBuilder::beginGroup(const ParserWord&) {
  ParserGroup* inner = (isCollecting ? values : *item).addGroup(nullptr);
  completeItem();
  enterGroup(inner);
}

void TreeBuilder::beginBracedItem(const ParserWord& word) {
  completeItem();
  ParserItem* braced = group->addItem(word.getString(), 0, 0);
  applyDetails(*braced, word);
  enterGroup(braced->addGroup(nullptr));
}

void TreeBuilder::endGroup(const ParserWord*) {
  completeItem();
  group = outers.back().group;
  item = outers.back().item;
  outers.pop_back();
}

void TreeBuilder::beginCall(const ParserWord&) {
  if (isCollecting) {
    isCall = true;
  } else {
    item->type = ParserItem::ITEM_CALL;
  }
}

void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  completeItem();
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::enterGroup(ParserGroup* inner) {
  outers.push_back({group, item});
  group = inner;
  item = nullptr;
}

}  // namespace Quarry
