#include <Quarry/ParserItem.h>

#include <Plinth/Expression.h>
#include <Plinth/Label.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryReader.h"
#include "internal/BinaryWriter.h"
#include "internal/StringText.h"
#include "internal/TextWriter.h"

#include <cassert>
#include <utility>

namespace Quarry {

namespace {

std::unique_ptr<ParserValue> makeEmptyGroup() {
  return std::make_unique<ParserValue>(ParserValue::TYPE_GROUP, std::string());
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserItem::ParserItem(const std::string& itemName, const Type& itemType,
                       const unsigned long& itemLine, const unsigned long& itemColumn)
    : name(itemName),
      line(itemLine),
      column(itemColumn),
      arrayCount(NO_ARRAY),
      type(itemType),
      folding(false) {}

/// Delegates, so that the values copied so far are freed when one cannot be copied.
ParserItem::ParserItem(const ParserItem& other)
    : ParserItem(other.name, other.type, other.line, other.column) {
  copyAttributes(other);
  values.reserve(other.values.size());
  for (const ParserValue* value : other.values)
    append(std::make_unique<ParserValue>(*value));
}

ParserItem::~ParserItem() { reset(); }

/// The copy is complete before anything of this item is given up: `other` may be part of it.
void ParserItem::copyFrom(const ParserItem& other) {
  ParserItem copy(other);
  std::swap(values, copy.values);
  std::swap(name, copy.name);
  std::swap(templateName, copy.templateName);
  line = copy.line;
  column = copy.column;
  arrayCount = copy.arrayCount;
  type = copy.type;
}

void ParserItem::copyAttributes(const ParserItem& other) {
  arrayCount = other.arrayCount;
  templateName = other.templateName;
}

// --- Look ----------------------------------------------------------------------------------------

bool ParserItem::isGroup() const { return values.size() == 1 && values.front()->isGroup(); }

bool ParserItem::isMatching(const Plinth::Expression& pattern) const {
  return pattern.isValid() && pattern.match(name);
}

// --- Look at values ------------------------------------------------------------------------------

ParserValue& ParserItem::valueAt(const unsigned long& index) const {
  assert(index < values.size());
  return *values[index];
}

const ParserValue::Type& ParserItem::getValueType(const unsigned long& index) const {
  return valueAt(index).getType();
}

bool ParserItem::getBool(const unsigned long& index) const { return valueAt(index).getAsBool(); }

char ParserItem::getChar(const unsigned long& index) const { return valueAt(index).getAsChar(); }

int ParserItem::getInt(const unsigned long& index) const { return valueAt(index).getAsInt(); }

double ParserItem::getDouble(const unsigned long& index) const {
  return valueAt(index).getAsDouble();
}

const std::string& ParserItem::getString(const unsigned long& index) const {
  return valueAt(index).getAsString();
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
  const std::string* text = valueAt(index).getStoredText();
  return text != nullptr ? *text : std::string();
}

ParserGroup* ParserItem::getGroup(const unsigned long& index) const {
  if (values.empty()) return append(makeEmptyGroup())->getGroup();
  return valueAt(index).getGroup();
}

bool ParserItem::isValueBool(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_BOOL;
}

bool ParserItem::isValueChar(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_CHAR;
}

bool ParserItem::isValueInt(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_INT;
}

bool ParserItem::isValueDouble(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_DOUBLE || isValueInt(index);
}

bool ParserItem::isValueString(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_STRING;
}

bool ParserItem::isValueGroup(const unsigned long& index) const {
  return getValueType(index) == ParserValue::TYPE_GROUP;
}

// --- Change --------------------------------------------------------------------------------------

void ParserItem::rename(const std::string& newName) { name = newName; }

void ParserItem::setArray(const bool& array, const unsigned long& count) {
  arrayCount = array ? count : NO_ARRAY;
}

void ParserItem::setTemplate(const std::string& newTemplate) { templateName = newTemplate; }

void ParserItem::setFolding(const bool& on) { folding = on; }

void ParserItem::setBool(const bool& value, const unsigned long& index) {
  valueAt(index).setBool(value);
}

void ParserItem::setInt(const int& value, const unsigned long& index) {
  valueAt(index).setInt(value);
}

void ParserItem::setDouble(const double& value, const unsigned long& index) {
  valueAt(index).setDouble(value);
}

void ParserItem::setString(const std::string& value, const unsigned long& index) {
  valueAt(index).setString(value);
}

void ParserItem::setBinaryData(void* bytes, const unsigned long& size, const unsigned long& index) {
  valueAt(index).setBinaryData(bytes, size);
}

// --- Add and remove values -----------------------------------------------------------------------

ParserValue* ParserItem::append(std::unique_ptr<ParserValue> value) const {
  values.push_back(value.get());
  return value.release();
}

void ParserItem::appendText(ParserValue::Type valueType, std::string&& text) {
  append(std::unique_ptr<ParserValue>(
      new ParserValue(valueType, std::make_unique<std::string>(std::move(text)))));
}

void ParserItem::addBool(const bool& value) {
  appendText(ParserValue::TYPE_BOOL, value ? "yes" : "no");
}

void ParserItem::addChar(const char& value) {
  appendText(ParserValue::TYPE_CHAR, Plinth::getLabel(value));
}

void ParserItem::addInt(const int& value) {
  appendText(ParserValue::TYPE_INT, Plinth::getLabel(value));
}

void ParserItem::addDouble(const double& value) {
  appendText(ParserValue::TYPE_DOUBLE, Plinth::getLabel(value));
}

void ParserItem::addString(const std::string& value) {
  appendText(ParserValue::TYPE_STRING, std::string(value));
}

void ParserItem::addBinaryData(void* bytes, const unsigned long& size) {
  append(std::make_unique<ParserValue>(bytes, size));
}

/// The place in the list is made first: the group is adopted only when nothing can fail any more.
ParserGroup* ParserItem::addGroup(ParserGroup* group) {
  if (group == nullptr) return append(makeEmptyGroup())->getGroup();
  values.push_back(nullptr);
  try {
    values.back() = new ParserValue(group);
  } catch (...) {
    values.pop_back();
    throw;
  }
  return group;
}

void ParserItem::addWord(const ParserWord& word, const ParserValue::Type& valueType) {
  if (valueType == ParserValue::TYPE_BINARYDATA) {
    append(std::unique_ptr<ParserValue>(
        new ParserValue(ParserValue::readBlock({word.begin(), word.length}))));
  } else if (valueType == ParserValue::TYPE_STRING) {
    appendText(valueType, readQuoted(word));
  } else if (ParserValue::isKeptAsText(valueType)) {
    appendText(valueType, word.getString());
  } else {
    append(std::make_unique<ParserValue>(valueType, word.getString()));
  }
}

/// Returns the string of a string word without its quotes.
std::string ParserItem::readQuoted(const ParserWord& word) {
  std::string text;
  if (word.length <= 2) return text;
  if (word.resolvesEscapes && word.isString()) {
    appendUnescaped(text, {word.begin() + 1, word.length - 1});
    text.pop_back();
    return text;
  }
  text = word.getString();
  return text.substr(1, text.size() - 2);
}

void ParserItem::removeValue(const std::vector<unsigned long>& indices) {
  std::vector<bool> doomed(values.size(), false);
  for (const unsigned long index : indices) {
    if (index < doomed.size()) doomed[index] = true;
  }
  unsigned long kept = 0;
  for (unsigned long i = 0; i < values.size(); ++i) {
    if (doomed[i]) {
      delete values[i];
    } else {
      values[kept++] = values[i];
    }
  }
  values.resize(kept);
}

void ParserItem::removeValue(const unsigned long& index) {
  removeValue(std::vector<unsigned long>(1, index));
}

void ParserItem::reset() {
  for (ParserValue* value : values)
    delete value;
  values.clear();
}

// --- Text ----------------------------------------------------------------------------------------

void ParserItem::getText(std::string& out, const bool& multiline,
                         const unsigned long& indent) const {
  TextWriter(out, multiline).writeItem(*this, indent);
}

void ParserItem::getValueText(std::string& out, const bool& multiline,
                              const unsigned long& indent) const {
  TextWriter(out, multiline).writeValues(*this, indent);
}

// --- Binary --------------------------------------------------------------------------------------

std::vector<char> ParserItem::getBinary() const {
  std::vector<char> buffer;
  BinaryWriter(buffer).writeItem(*this);
  return buffer;
}

bool ParserItem::setBinary(const std::vector<char>& data, unsigned long& pos) {
  return BinaryReader(data, pos).readItem(*this);
}

}  // namespace Quarry
