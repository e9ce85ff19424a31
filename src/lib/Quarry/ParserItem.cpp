#include <Quarry/ParserItem.h>

#include <Plinth/Expression.h>
#include <Plinth/Label.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryReader.h"
#include "internal/BinaryWriter.h"
#include "internal/NameIndex.h"
#include "internal/OutputBuffer.h"
#include "internal/StringText.h"
#include "internal/TextWriter.h"
#include "internal/TreeParts.h"

#include <cassert>
#include <cstring>
#include <memory>
#include <utility>

namespace Quarry {

// --- Make ----------------------------------------------------------------------------------------

ParserItem::ParserItem(const std::string& itemName, const Type& itemType,
                       const unsigned long& itemLine, const unsigned long& itemColumn)
    : ParserItem(itemName, itemName.data() + itemName.size(), itemType, {itemLine, itemColumn}) {}

/// Delegates, so that the values copied so far are freed when one cannot be copied.
ParserItem::ParserItem(const ParserItem& other)
    : ParserItem(other.name.get(), other.name.readable(), other.type, {other.line, other.column}) {
  copyDetails(other);
  reserve(other.count);
  for (const ParserValue& value : other) {
    ::new (nextPlace()) ParserValue(value);
    addMade();
  }
}

void ParserItem::freeValues() noexcept {
  destroyValues();
  freePlaces();
}

void ParserItem::freeParts() noexcept {
  freeValues();
  name.free();
}

/// All memory of items comes from one place, so that an item can be made with more room than this
/// class knows of.
void* ParserItem::operator new(std::size_t size) { return SlabHeap::allocate(size); }

void* ParserItem::operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return SlabHeap::allocateOrNull(size);
}

void ParserItem::operator delete(void* memory, std::size_t size) noexcept {
  SlabHeap::free(memory, size);
}

void ParserItem::operator delete(void* memory, const std::nothrow_t&) noexcept {
  SlabHeap::free(memory, sizeof(ParserItem));
}

// --- The region ----------------------------------------------------------------------------------

/// Has the tree around this item be freed part by part.
void ParserItem::leaveRegion() const noexcept {
  isPart = false;
  if (SlabRegion* region = SlabRegion::of(this)) region->breakUp();
}

/// Notes that the item has, or will have, memory that is not its region's.
void ParserItem::noteHolding() const {
  SlabRegion* region = isPart ? SlabRegion::of(this) : nullptr;
  if (region != nullptr) region->holdsMore(const_cast<ParserItem*>(this), freeHeld);
}

/// Frees what the item has, with its values, but not its groups.
void ParserItem::freeHeld(void* held) {
  auto& item = *static_cast<ParserItem*>(held);
  for (ParserValue& value : item) {
    if (value.ownsMemory && !value.isGroup()) value.clear();
  }
  item.name.free();
  item.name.setForm(0);
  item.details.reset();
}

/// The copy is complete before anything of this item is given up: `other` may be part of it.
void ParserItem::copyFrom(const ParserItem& other) {
  noteChange();
  ParserItem copy(other);
  copy.reserve(2);  // in a list of its own, which can be handed over
  if (name.isString()) copy.getName();
  noteNewName();
  name.exchange(copy.name);
  std::swap(details, copy.details);
  line = copy.line;
  column = copy.column;
  type = copy.type;
  takeList(copy);
}

void ParserItem::copyDetails(const ParserItem& other) {
  if (other.details != nullptr) makeDetails() = *other.details;
}

// --- The name ------------------------------------------------------------------------------------

/// One that is too long for a block's length is made a string at once.
void ParserItem::Name::hold(std::string_view text) {
  describeLonger(text);
  if (text.size() > UINT32_MAX) return holdHuge(text);  // LCOV_EXCL_LINE: of 4 GiB
  place.block.bytes = static_cast<char*>(SlabHeap::allocate(text.size()));
  std::memcpy(place.block.bytes, text.data(), text.size());
}

// LCOV_EXCL_START
/// The string's bytes lie in no region.
void ParserItem::Name::holdHuge(std::string_view text) {
  if (SlabRegion* region = SlabRegion::getUsed()) region->breakUp();
  holdString(std::string(text));
}
// LCOV_EXCL_STOP

void ParserItem::Name::holdString(std::string text) {
  place.block.string = ::new (SlabHeap::allocate(sizeof(std::string))) std::string(std::move(text));
  setForm(form() | STRING);
}

/// Makes the second half.
void ParserItem::Name::describeLonger(std::string_view text) {
  place.block.length = static_cast<std::uint32_t>(text.size());
  std::memcpy(place.block.tail, text.data() + text.size() - TAIL, TAIL);
  setForm(LONGER);
}

ParserItem::Name ParserItem::Name::makeKey(std::string_view text) {
  if (text.size() <= LONGEST_SHORT) return {text, text.data() + text.size()};
  Name key;
  key.describeLonger(text);
  return key;
}

void ParserItem::Name::free() noexcept {
  if (form() == LONGER) SlabHeap::free(place.block.bytes, place.block.length);
  if (!isString()) return;
  std::destroy_at(place.block.string);
  SlabHeap::free(place.block.string, sizeof(std::string));
}

const std::string& ParserItem::Name::getString() {
  if (isString()) return *place.block.string;
  Name before = *this;
  holdString(std::string(get()));
  before.free();
  return *place.block.string;
}

/// A string stays the object that it is: callers may hold on to it.
void ParserItem::Name::exchange(Name& other) noexcept {
  std::swap(place, other.place);
  if (!isString()) return;
  std::swap(place.block.string, other.place.block.string);
  place.block.string->swap(*other.place.block.string);
}

// --- Look ----------------------------------------------------------------------------------------

const std::string& ParserItem::getName() const {
  if (!name.isString()) noteHolding();
  return name.getString();
}

const unsigned long& ParserItem::getArrayCount() const {
  static const unsigned long none = NO_ARRAY;
  const Details* held = details.get();
  return held != nullptr ? held->arrayCount : none;
}

const std::string& ParserItem::getTemplate() const {
  static const std::string& none = *new std::string;  // outlives every document
  const Details* held = details.get();
  return held != nullptr ? held->templateName : none;
}

bool ParserItem::isMatching(const Plinth::Expression& pattern) const {
  if (!pattern.isValid()) return false;
  return name.isString() ? pattern.match(name.getString()) : pattern.match(std::string(name.get()));
}

// --- Look at values ------------------------------------------------------------------------------

bool ParserItem::getBool(const unsigned long& index) const { return valueAt(index).getAsBool(); }

char ParserItem::getChar(const unsigned long& index) const { return valueAt(index).getAsChar(); }

int ParserItem::getInt(const unsigned long& index) const { return valueAt(index).getAsInt(); }

double ParserItem::getDouble(const unsigned long& index) const {
  return valueAt(index).getAsDouble();
}

const std::string& ParserItem::getString(const unsigned long& index) const {
  const ParserValue& value = valueAt(index);
  if (!value.isStringObject()) noteHolding();
  valuesOwnMemory = true;
  return value.getAsString();
}

void* ParserItem::getBinaryData(const unsigned long& index) const {
  unsigned long size = 0;
  return valueAt(index).getAsBinaryData(size);
}

unsigned long ParserItem::getBinaryDataSize(const unsigned long& index) const {
  unsigned long size = 0;
  valueAt(index).getAsBinaryData(size);
  return size;
}

std::string ParserItem::getWord(const unsigned long& index) const {
  const ParserValue& value = valueAt(index);
  return value.hasText() ? std::string(value.getBytes()) : std::string();
}

ParserGroup* ParserItem::getGroup(const unsigned long& index) const {
  if (count > 0) return valueAt(index).getGroup();
  noteChange();
  return appendNewGroup();
}

// --- Change --------------------------------------------------------------------------------------

void ParserItem::rename(const std::string& newName) {
  noteChange();
  ParserItem renamed(newName, type, line, column);
  if (name.isString()) renamed.getName();
  noteNewName();
  name.exchange(renamed.name);
}

/// Groups that look names up in an index have to look again.
void ParserItem::noteNewName() const {
  if (isIndexed) NameIndex::forgetAll();
}

void ParserItem::setArray(const bool& array, const unsigned long& size) {
  const unsigned long arrayCount = array ? size : NO_ARRAY;
  if (details != nullptr || array) makeDetails().arrayCount = arrayCount;
}

void ParserItem::setTemplate(const std::string& newTemplate) {
  if (details != nullptr || !newTemplate.empty()) makeDetails().templateName = newTemplate;
}

ParserItem::Details& ParserItem::makeDetails() {
  if (details != nullptr) return *details;
  noteHolding();
  details = std::make_unique<Details>();
  return *details;
}

void ParserItem::setFolding(const bool& on) { folding = on; }

void ParserItem::setBool(const bool& value, const unsigned long& index) {
  noteChange();
  valueAt(index).setBool(value);
}

void ParserItem::setInt(const int& value, const unsigned long& index) {
  noteChange();
  valueAt(index).setInt(value);
}

void ParserItem::setDouble(const double& value, const unsigned long& index) {
  noteChange();
  valueAt(index).setDouble(value);
}

void ParserItem::setString(const std::string& value, const unsigned long& index) {
  noteChange();
  valuesOwnMemory = true;
  valueAt(index).setString(value);
}

void ParserItem::setBinaryData(void* bytes, const unsigned long& size, const unsigned long& index) {
  noteChange();
  valuesOwnMemory = true;
  valueAt(index).setBinaryData(bytes, size);
}

// --- The list of values --------------------------------------------------------------------------

/// Gives the values a list with room for so many.
void ParserItem::grow(unsigned long places) const {
  const unsigned long room = SlabHeap::roundUp(places * sizeof(ParserValue)) / sizeof(ParserValue);
  if (room > UINT32_MAX) throw std::bad_alloc();  // LCOV_EXCL_BR_LINE: 160 GiB of values
  auto* grown = static_cast<ParserValue*>(SlabHeap::allocate(room * sizeof(ParserValue)));
  moveValuesTo(grown);
  freePlaces();
  list = grown;
  hasList = true;
  capacity = static_cast<std::uint32_t>(room);
}

/// Takes the values of another item, which has them in a list apart.
void ParserItem::takeList(ParserItem& from) noexcept {
  assert(from.hasList);
  freeValues();
  list = from.list;
  hasList = std::exchange(from.hasList, false);
  count = std::exchange(from.count, 0);
  capacity = std::exchange(from.capacity, 1);
  valuesOwnMemory = std::exchange(from.valuesOwnMemory, false);
}

/// Frees the list, without its values, unless it is a part of the item.
void ParserItem::freePlaces() const noexcept {
  if (hasList) SlabHeap::free(list, capacity * sizeof(ParserValue));
}

// --- Add and remove values -----------------------------------------------------------------------

void ParserItem::appendText(ParserValue::Type valueType, std::string_view text) {
  nextPlace();
  addText(valueType, text, text.data() + text.size());
}

void ParserItem::addBool(const bool& value) {
  noteChange();
  appendText(ParserValue::TYPE_BOOL, value ? "yes" : "no");
}

void ParserItem::addChar(const char& value) {
  noteChange();
  appendText(ParserValue::TYPE_CHAR, Plinth::getLabel(value));
}

void ParserItem::addInt(const int& value) {
  noteChange();
  appendText(ParserValue::TYPE_INT, Plinth::getLabel(value));
}

void ParserItem::addDouble(const double& value) {
  noteChange();
  appendText(ParserValue::TYPE_DOUBLE, Plinth::getLabel(value));
}

void ParserItem::addString(const std::string& value) {
  noteChange();
  appendText(ParserValue::TYPE_STRING, value);
}

void ParserItem::addBinaryData(void* bytes, const unsigned long& size) {
  noteChange();
  ::new (nextPlace()) ParserValue(bytes, size);
  addMade();
}

/// The place in the list is made first: the group is adopted only when nothing can fail any more.
ParserGroup* ParserItem::addGroup(ParserGroup* group) {
  noteChange();
  if (group == nullptr) return appendNewGroup();
  ::new (nextPlace()) ParserValue(ParserValue::Form::TEXT, group);
  addMade();
  return group;
}

void ParserItem::addWord(const ParserWord& word, const ParserValue::Type& valueType) {
  noteChange();
  appendWord(word, valueType);
}

void ParserItem::appendWord(const ParserWord& word, ParserValue::Type valueType) {
  if (valueType == ParserValue::TYPE_BINARYDATA) {
    noteHolding();
    ::new (nextPlace()) ParserValue(ParserValue::readBlock({word.begin(), word.length}));
    addMade();
  } else if (valueType == ParserValue::TYPE_STRING) {
    std::string text;
    readQuoted(word, text);
    appendText(valueType, text);
  } else {
    const std::string text = word.getString();
    ::new (nextPlace()) ParserValue(valueType, text);
    addMade();
  }
}

/// Makes `text` the string of a string word, without its quotes.
void ParserItem::readQuoted(const ParserWord& word, std::string& text) {
  text.clear();
  if (word.length <= 2) return;
  if (word.resolvesEscapes && word.isString()) {
    appendUnescaped(text, {word.begin() + 1, word.length - 1});
    text.pop_back();
    return;
  }
  text = word.getString();
  text = text.substr(1, text.size() - 2);
}

void ParserItem::removeValue(const std::vector<unsigned long>& indices) {
  noteChange();
  std::vector<bool> doomed(count, false);
  for (const unsigned long index : indices) {
    if (index < count) doomed[index] = true;
  }
  std::uint32_t kept = 0;
  ParserValue* const values = begin();
  for (std::uint32_t i = 0; i < count; ++i) {
    if (doomed[i]) {
      values[i].~ParserValue();
    } else {
      if (kept != i) ParserValue::relocate(values[i], &values[kept]);
      ++kept;
    }
  }
  count = kept;
}

void ParserItem::removeValue(const unsigned long& index) {
  removeValue(std::vector<unsigned long>(1, index));
}

void ParserItem::reset() {
  noteChange();
  destroyValues();
}

void ParserItem::destroyValues() noexcept {
  if (valuesOwnMemory) std::destroy_n(begin(), count);
  valuesOwnMemory = false;
  count = 0;
}

// --- Text ----------------------------------------------------------------------------------------

void ParserItem::getText(std::string& out, const bool& multiline,
                         const unsigned long& indent) const {
  OutputBuffer text;
  TextWriter(text, multiline).writeItem(*this, indent);
  text.appendTo(out);
}

void ParserItem::getValueText(std::string& out, const bool& multiline,
                              const unsigned long& indent) const {
  OutputBuffer text;
  TextWriter(text, multiline).writeValues(*this, indent);
  text.appendTo(out);
}

// --- Binary --------------------------------------------------------------------------------------

std::vector<char> ParserItem::getBinary() const {
  std::vector<char> buffer;
  BinaryWriter writer;
  writer.writeItem(*this);
  writer.appendTo(buffer);
  return buffer;
}

bool ParserItem::setBinary(const std::vector<char>& data, unsigned long& pos) {
  noteChange();
  return BinaryReader(data, pos).readItem(*this);
}

}  // namespace Quarry
