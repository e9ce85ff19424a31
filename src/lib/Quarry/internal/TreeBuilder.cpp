#include "TreeBuilder.h"

#include <Plinth/Console.h>

#include "Messages.h"
#include "WordScan.h"

#include <algorithm>

namespace Quarry {

void TreeBuilder::beginBracedItem(const ParserWord& word) {
  completeItem();
  ParserItem* braced = group->addItem(word.getString(), 0, 0);
  applyDetails(*braced, word);
  ParserGroup* inner = braced->addGroup(nullptr);
  interrupted.push_back({inner, item});
  enterGroup(inner);
}

/// Where the group that ends is a braced word's, the item that was current before is so again.
void TreeBuilder::resume() {
  if (interrupted.back().braced != group) return;
  item = interrupted.back().item;
  interrupted.pop_back();
}

/// Whoever is told may make trees of its own, which are no part of this one.
void TreeBuilder::warning(Diagnostic diagnostic, const ParserWord& word) {
  completeItem();
  const SlabRegion::Use none(nullptr);
  Plinth::console.warning(Messages::parserWarning(diagnostic, word), std::string());
}

void TreeBuilder::applyDetails(ParserItem& item, const ParserWord& word) {
  item.setArray(word.getArraySize() != ParserWord::NO_ARRAY, word.getArraySize());
  if (word.getTemplateWord() != nullptr) item.setTemplate(word.getTemplateWord()->getString());
}

void TreeBuilder::addNoted() {
  item->reserve(item->count + notes.size());
  for (const Note& note : notes)
    item->addText(note.type, note.text, readable);
  notes.clear();
}

/// Gives the item places for the noted values and those that probably follow, unless the list it
/// has would be moved for few.
void TreeBuilder::beginLongList() {
  const ParserValue::Type type = notes.back().type;
  if (type != ParserValue::TYPE_INT && type != ParserValue::TYPE_DOUBLE) return;
  const std::size_t places = item->count + notes.size() + guessFollowing();
  if (places < 2 * std::size_t{item->count}) return;
  item->reserve(places);
  addNoted();
}

/// Returns how many numbers there probably are up to the next name, or a few more: a list that was
/// too short would have to be moved. The text is looked at once, however many lists it holds, and
/// one that misleads costs no more than a few times the memory.
std::size_t TreeBuilder::guessFollowing() {
  constexpr std::size_t MOST_TIMES = 3;
  constexpr std::size_t SPARE_PART = 16;
  const char* begin = notes.front().text.data();
  const char* end = notes.back().text.data() + notes.back().text.size();
  if (listEnd == nullptr || listEnd < end) listEnd = findNumberListEnd(end, readable);
  const auto noted = static_cast<std::size_t>(end - begin);
  const std::size_t guess = static_cast<std::size_t>(listEnd - end) * notes.size() / noted;
  return std::min(guess + guess / SPARE_PART, MOST_TIMES * (item->count + notes.size()));
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
  item->appendWord(word, valueType);
}

}  // namespace Quarry
