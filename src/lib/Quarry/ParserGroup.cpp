#include <Quarry/ParserGroup.h>

#include <Plinth/Exception.h>
#include <Plinth/Expression.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryReader.h"
#include "internal/BinaryWriter.h"
#include "internal/Messages.h"
#include "internal/ParserWordStream.h"
#include "internal/TextParser.h"
#include "internal/TextWriter.h"
#include "internal/TreeBuilder.h"
#include "internal/TreeCopier.h"
#include "internal/TreeRemover.h"

#include <cassert>

namespace Quarry {

namespace {

/// Names are checked as words of this format version.
constexpr double NAME_VERSION = 1.1;

/// Where programs have been told that a name was refused, since the first version.
constexpr char NAME_CHECK_FILE[] = "src/lib/Quarry/ParserGroup";
constexpr char NAME_CHECK_FUNCTION[] = "addItem";
constexpr unsigned long NAME_CHECK_LINE = 237;

ParserItem::Type typeForName(const std::string& name) {
  const ParserWord word(name, true, NAME_VERSION);
  if (word.isIdentifier()) return ParserItem::ITEM_PLAIN;
  if (word.isKeyword()) return ParserItem::ITEM_KEYWORD;
  Plinth::Fatal fatal(Messages::invalidItemName(name));
  fatal.locate(NAME_CHECK_FILE, NAME_CHECK_FUNCTION, NAME_CHECK_LINE);
  throw fatal;
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserGroup::ParserGroup(const std::string& groupName) : name(groupName) {}

/// Delegates, so that the items copied so far are freed when one cannot be copied.
ParserGroup::ParserGroup(const ParserGroup& other) : ParserGroup(other.name) {
  TreeCopier::copyItems(other, *this);
}

ParserGroup::~ParserGroup() { TreeRemover::removeItems(items); }

// --- Look ----------------------------------------------------------------------------------------

ParserItem* ParserGroup::getItem(const unsigned long& index) const {
  assert(index < plainIndex.size());
  return items[plainIndex[index]];
}

ParserItem* ParserGroup::find(const std::vector<unsigned long>& index,
                              const std::string& wanted) const {
  for (const unsigned long position : index) {
    ParserItem* item = items[position];
    if (item != nullptr && item->name == wanted) return item;
  }
  return nullptr;
}

ParserItem* ParserGroup::getItem(const std::string& wanted) const {
  return find(plainIndex, wanted);
}

ParserGroup* ParserGroup::getGroup(const std::string& wanted) const {
  const ParserItem* item = getItem(wanted);
  return item != nullptr ? item->getGroup(0) : nullptr;
}

ParserItem* ParserGroup::getKeyword(const std::string& wanted) const {
  return find(keywordIndex, wanted);
}

std::vector<ParserItem*> ParserGroup::getEntries(const std::string& wanted) const {
  std::vector<ParserItem*> entries;
  for (const unsigned long position : plainIndex) {
    ParserItem* item = items[position];
    if (item != nullptr && item->name == wanted) entries.push_back(item);
  }
  return entries;
}

ParserItems ParserGroup::getItems(const std::string& pattern) const {
  const ParserItems all = ParserItems::select(items);
  return pattern.empty() ? all : all.getMatching(Plinth::Expression(pattern));
}

// --- Change --------------------------------------------------------------------------------------

std::vector<unsigned long>& ParserGroup::indexFor(const ParserItem& item) {
  return item.type == ParserItem::ITEM_PLAIN ? plainIndex : keywordIndex;
}

/// When memory runs out the group is as before and the item is still the caller's.
void ParserGroup::append(ParserItem* item) {
  std::vector<unsigned long>& index = indexFor(*item);
  index.push_back(items.size());
  try {
    items.push_back(item);
  } catch (...) {
    index.pop_back();
    throw;
  }
}

ParserItem* ParserGroup::append(std::unique_ptr<ParserItem> item) {
  append(item.get());
  return item.release();
}

void ParserGroup::removeLastItem() {
  ParserItem* last = items.back();
  indexFor(*last).pop_back();
  items.pop_back();
  delete last;
}

ParserItem* ParserGroup::addItem(const ParserItem& item) {
  ParserItem* adopted = const_cast<ParserItem*>(&item);  // the caller gives it away, see the header
  append(adopted);
  return adopted;
}

ParserItem* ParserGroup::addItem(const std::string& newName, const unsigned long& line,
                                 const unsigned long& column) {
  return append(std::make_unique<ParserItem>(newName, typeForName(newName), line, column));
}

ParserGroup* ParserGroup::addGroup(const std::string& newName, const bool& folding) {
  return addGroupItem(newName, nullptr, folding);
}

ParserGroup* ParserGroup::addGroup(ParserGroup* group, const bool& folding) {
  assert(group != nullptr);
  return addGroupItem(group->name, group, folding);
}

ParserGroup* ParserGroup::addGroupItem(const std::string& newName, ParserGroup* group,
                                       bool folding) {
  ParserItem* item = addItem(newName, 0, 0);
  item->setFolding(folding);
  try {
    return item->addGroup(group);
  } catch (...) {
    removeLastItem();
    throw;
  }
}

void ParserGroup::detachItem(const unsigned long& index) {
  assert(index < plainIndex.size());
  items[plainIndex[index]] = nullptr;
}

/// The name may be the one of an item that is removed: it is not used any more when they go.
void ParserGroup::removeItem(const std::string& doomed) {
  std::vector<ParserItem*> kept;
  std::vector<ParserItem*> removed;
  for (ParserItem* item : items) {
    if (item != nullptr) (item->name == doomed ? removed : kept).push_back(item);
  }
  std::vector<unsigned long> plain;
  std::vector<unsigned long> keywords;
  for (unsigned long i = 0; i < kept.size(); ++i) {
    (kept[i]->type == ParserItem::ITEM_PLAIN ? plain : keywords).push_back(i);
  }
  items.swap(kept);
  plainIndex.swap(plain);
  keywordIndex.swap(keywords);
  TreeRemover::removeItems(removed);
}

void ParserGroup::clear() {
  plainIndex.clear();
  keywordIndex.clear();
  TreeRemover::removeItems(items);
}

// --- Text ----------------------------------------------------------------------------------------

void ParserGroup::getText(std::string& text, const bool& braces, const bool& multiline,
                          const unsigned long& indent) const {
  TextWriter(text, multiline).writeGroup(*this, braces, indent);
}

bool ParserGroup::setText(const std::string& text, const double& version) {
  ParserWordStream stream(text, version);
  return setText(stream);
}

bool ParserGroup::setText(ParserWordStream& stream) {
  TreeBuilder builder(*this);
  return TextParser(stream, builder).parse();
}

// --- Binary --------------------------------------------------------------------------------------

std::vector<char> ParserGroup::getBinary(const bool& withName) const {
  std::vector<char> buffer;
  if (withName) ParserValue::stringToBin(buffer, name);
  BinaryWriter(buffer).writeGroup(*this);
  return buffer;
}

bool ParserGroup::setBinary(const std::vector<char>& data, unsigned long& pos) {
  return BinaryReader(data, pos).readGroup(*this);
}

}  // namespace Quarry
