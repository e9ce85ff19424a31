#include <Quarry/ParserValue.h>

#include <Plinth/Console.h>
#include <Plinth/Label.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryNumber.h"
#include "internal/BinaryReader.h"
#include "internal/BinaryText.h"
#include "internal/BinaryWriter.h"
#include "internal/Messages.h"
#include "internal/NumberText.h"
#include "internal/StringText.h"

#include <cstring>
#include <limits>

namespace Quarry {

namespace {

/// Characters are signed, also where the compiler's `char` is not.
int toInt(char character) { return static_cast<signed char>(character); }

/// Cuts towards zero; NaN and what does not fit give the lowest integer.
int toInt(double number) {
  constexpr double BELOW = std::numeric_limits<int>::min() - 1.0;
  constexpr double ABOVE = std::numeric_limits<int>::max() + 1.0;
  const bool fits = number > BELOW && number < ABOVE;
  return fits ? static_cast<int>(number) : std::numeric_limits<int>::min();
}

char lowByte(long long number) { return static_cast<char>(number & 0xFF); }

std::unique_ptr<char[]> copyBytes(const void* bytes, unsigned long size) {
  std::unique_ptr<char[]> copy(new char[size]);
  if (size > 0) std::memcpy(copy.get(), bytes, size);
  return copy;
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserValue::ParserValue(const bool& value)
    : type(TYPE_BOOL), dataValid(true), textValid(false), data(), slot() {
  data.boolean = value;
}

ParserValue::ParserValue(const char& value)
    : type(TYPE_CHAR), dataValid(true), textValid(false), data(), slot() {
  data.character = value;
}

ParserValue::ParserValue(const int& value)
    : type(TYPE_INT), dataValid(true), textValid(false), data(), slot() {
  data.integer = value;
}

ParserValue::ParserValue(const double& value)
    : type(TYPE_DOUBLE), dataValid(true), textValid(false), data(), slot() {
  data.number = value;
}

ParserValue::ParserValue(const std::string& value)
    : type(TYPE_STRING), dataValid(true), textValid(false), data(), slot() {
  data.string = new std::string(value);
}

ParserValue::ParserValue(const char* value) : ParserValue(std::string(value)) {}

ParserValue::ParserValue(void* bytes, const unsigned long& size)
    : ParserValue(makeBlock(size > 0 ? copyBytes(bytes, size) : nullptr, size)) {}

ParserValue::ParserValue(std::unique_ptr<BinaryBlock> block)
    : type(TYPE_BINARYDATA), dataValid(true), textValid(false), data(), slot() {
  data.block = block.release();
}

ParserValue::ParserValue(ParserGroup* group)
    : type(TYPE_GROUP), dataValid(false), textValid(true), data(), slot() {
  slot.group = group != nullptr ? group : new ParserGroup(std::string());
}

ParserValue::ParserValue(std::nullptr_t) : ParserValue(static_cast<ParserGroup*>(nullptr)) {}

ParserValue::ParserValue(const Type& valueType, const std::string& text)
    : type(valueType), dataValid(false), textValid(false), data(), slot() {
  if (type == TYPE_GROUP) {
    slot.group = new ParserGroup(text);
    textValid = true;
  } else if (type == TYPE_BINARYDATA) {
    data.block = readBlock(text).release();
    dataValid = true;
  } else if (isKeptAsText(type)) {
    slot.text = new std::string(text);
    textValid = true;
  }
}

ParserValue::ParserValue(Type valueType, std::unique_ptr<std::string> text)
    : type(valueType), dataValid(false), textValid(true), data(), slot() {
  slot.text = text.release();
}

std::unique_ptr<ParserValue::BinaryBlock> ParserValue::makeBlock(std::unique_ptr<char[]> bytes,
                                                                 unsigned long size) {
  return std::unique_ptr<BinaryBlock>(new BinaryBlock{std::move(bytes), size});
}

std::unique_ptr<ParserValue::BinaryBlock> ParserValue::readBlock(std::string_view word) {
  unsigned long size = 0;
  std::unique_ptr<char[]> bytes = readBinaryText(word, size);
  return makeBlock(std::move(bytes), size);
}

/// Groups and blocks have no text of their own to begin with, and other numbers are no types.
bool ParserValue::isKeptAsText(Type type) {
  return type != TYPE_BINARYDATA && type > TYPE_GROUP && type <= TYPE_EMPTY;
}

/// The text of a block is only a cache and is left behind.
ParserValue::ParserValue(const ParserValue& other)
    : type(other.type), dataValid(false), textValid(false), data(), slot() {
  std::unique_ptr<std::string> text;
  std::unique_ptr<ParserGroup> group;
  if (const ParserGroup* source = other.getGroup()) group = std::make_unique<ParserGroup>(*source);
  if (other.getStoredText() != nullptr && type != TYPE_BINARYDATA) {
    text = std::make_unique<std::string>(*other.getStoredText());
  }
  if (other.dataValid) copyData(other);
  textValid = group != nullptr || text != nullptr;
  if (group != nullptr) {
    slot.group = group.release();
  } else {
    slot.text = text.release();
  }
}

ParserValue::~ParserValue() { clear(); }

// --- Look ----------------------------------------------------------------------------------------

std::string ParserValue::getType_name(const Type& type) {
  switch (type) {
    case TYPE_GROUP: return "TYPE_GROUP";
    case TYPE_BOOL: return "TYPE_BOOL";
    case TYPE_CHAR: return "TYPE_CHAR";
    case TYPE_INT: return "TYPE_INT";
    case TYPE_DOUBLE: return "TYPE_DOUBLE";
    case TYPE_STRING: return "TYPE_STRING";
    default: return "TYPE_UNKNOWN";
  }
}

bool ParserValue::getAsBool() const { return isNumeric("getAsBool") && getNumber() != 0.0; }

char ParserValue::getAsChar() const {
  return isNumeric("getAsChar") ? lowByte(toInt(getNumber())) : char(0);
}

int ParserValue::getAsInt() const { return isNumeric("getAsInt") ? toInt(getNumber()) : 0; }

double ParserValue::getAsDouble() const { return isNumeric("getAsDouble") ? getNumber() : 0.0; }

const std::string& ParserValue::getAsString() const {
  static const std::string* const empty = new std::string;  // outlives every document
  makeValue();
  if (type == TYPE_STRING && dataValid) return *data.string;
  warnOfMismatch("getAsString");
  return *empty;
}

void* ParserValue::getAsBinaryData(unsigned long& size) const {
  makeValue();
  if (type == TYPE_BINARYDATA && dataValid) {
    size = data.block->size;
    return data.block->data.get();
  }
  warnOfMismatch("getAsBinaryData");
  return nullptr;
}

void ParserValue::makeValue() const {
  if (dataValid || !textValid) return;
  const std::string* text = getStoredText();
  switch (type) {
    case TYPE_BOOL: data.boolean = *text == "yes"; break;
    case TYPE_CHAR: data.character = lowByte(readInteger(*text)); break;
    case TYPE_INT: data.integer = static_cast<int>(readInteger(*text)); break;
    case TYPE_DOUBLE: data.number = Plinth::getDouble(*text); break;
    case TYPE_STRING: data.string = new std::string(*text); break;
    default: return;
  }
  dataValid = true;
}

/// Tells whether the type converts to numbers, and warns where it does not.
bool ParserValue::isNumeric(const char* operation) const {
  if (type >= TYPE_BOOL && type <= TYPE_DOUBLE) return true;
  warnOfMismatch(operation);
  return false;
}

/// Every bool, character and integer is a double without loss.
double ParserValue::getNumber() const {
  makeValue();
  if (!dataValid) return 0.0;
  switch (type) {
    case TYPE_BOOL: return data.boolean ? 1.0 : 0.0;
    case TYPE_CHAR: return toInt(data.character);
    case TYPE_INT: return data.integer;
    default: return data.number;
  }
}

void ParserValue::warnOfMismatch(const char* operation) const {
  Plinth::console.warning(Messages::typeMismatch(operation, type), std::string());
}

// --- Change --------------------------------------------------------------------------------------

void ParserValue::setBool(const bool& value) {
  become(TYPE_BOOL);
  data.boolean = value;
}

void ParserValue::setChar(const char& value) {
  become(TYPE_CHAR);
  data.character = value;
}

void ParserValue::setInt(const int& value) {
  become(TYPE_INT);
  data.integer = value;
}

void ParserValue::setDouble(const double& value) {
  become(TYPE_DOUBLE);
  data.number = value;
}

void ParserValue::setString(const std::string& value) {
  auto copy = std::make_unique<std::string>(value);
  become(TYPE_STRING);
  data.string = copy.release();
}

void ParserValue::setBinaryData(void* bytes, const unsigned long& size) {
  std::unique_ptr<BinaryBlock> block = makeBlock(copyBytes(bytes, size), size);
  become(TYPE_BINARYDATA);
  data.block = block.release();
}

void ParserValue::clear() {
  if (dataValid && type == TYPE_STRING) delete data.string;
  if (dataValid && type == TYPE_BINARYDATA) delete data.block;
  if (textValid && isGroup()) delete slot.group;
  if (textValid && !isGroup()) delete slot.text;
  dataValid = false;
  textValid = false;
}

void ParserValue::become(Type newType) {
  clear();
  type = newType;
  dataValid = true;
}

void ParserValue::copyData(const ParserValue& other) {
  if (type == TYPE_STRING) {
    data.string = new std::string(*other.data.string);
  } else if (type == TYPE_BINARYDATA) {
    const BinaryBlock& block = *other.data.block;
    data.block = makeBlock(copyBytes(block.data.get(), block.size), block.size).release();
  } else {
    data = other.data;
  }
  dataValid = true;
}

// --- Text ----------------------------------------------------------------------------------------

void ParserValue::getText(std::string& out, const bool& multiline,
                          const unsigned long& indent) const {
  if (const ParserGroup* group = getGroup()) {
    group->getText(out, true, multiline, indent);
  } else {
    appendText(out);
  }
}

/// The text of a value that was cleared is empty; a string keeps its quotes and so reads back.
void ParserValue::appendText(std::string& out) const {
  if (!textValid && dataValid) makeText();
  const std::string* stored = getStoredText();
  const std::string_view text = stored != nullptr ? *stored : std::string_view();
  if (type == TYPE_STRING) {
    appendQuoted(out, text);
  } else {
    out += text;
  }
}

/// Characters, integers and doubles become one raw byte. The format has written them so from the
/// beginning; numbers that are added to an item bring their digits along and do not come here.
void ParserValue::makeText() const {
  auto text = std::make_unique<std::string>();
  switch (type) {
    case TYPE_BOOL: *text = data.boolean ? "yes" : "no"; break;
    case TYPE_STRING: *text = *data.string; break;
    case TYPE_BINARYDATA:
      appendBinaryText(*text, {data.block->data.get(), data.block->size});
      break;
    default: *text = lowByte(toInt(getNumber())); break;
  }
  slot.text = text.release();
  textValid = true;
}

void ParserValue::wordToBinaryData(void*& data, unsigned long& size, const ParserWord& word) {
  data = readBinaryText({word.begin(), word.length}, size).release();
}

// --- Binary --------------------------------------------------------------------------------------

void ParserValue::getBinary(std::vector<char>& buffer, unsigned long& count,
                            const bool& withTag) const {
  const unsigned long before = buffer.size();
  if (withTag) appendTag(buffer);
  appendPayload(buffer);
  count += buffer.size() - before;
}

void ParserValue::appendTag(std::vector<char>& buffer) const { charToBin(buffer, lowByte(type)); }

void ParserValue::appendPayload(std::vector<char>& buffer) const {
  switch (type) {
    case TYPE_GROUP: appendGroup(buffer); break;
    case TYPE_BOOL: boolToBin(buffer, getAsBool()); break;
    case TYPE_CHAR: charToBin(buffer, getAsChar()); break;
    case TYPE_INT: intToBin(buffer, getAsInt()); break;
    case TYPE_DOUBLE: doubleToBin(buffer, getAsDouble()); break;
    case TYPE_STRING: stringToBin(buffer, getAsString()); break;
    case TYPE_BINARYDATA: {
      unsigned long size = 0;
      void* bytes = getAsBinaryData(size);
      binaryDataToBin(buffer, bytes, size);
      break;
    }
    case TYPE_EMPTY: break;
  }
}

/// A group that was cleared is written as one without items.
void ParserValue::appendGroup(std::vector<char>& buffer) const {
  if (const ParserGroup* group = getGroup()) {
    groupToBin(buffer, *group);
  } else {
    sizeToBin(buffer, 0);
  }
}

unsigned long ParserValue::boolToBin(std::vector<char>& buffer, const bool& value) {
  return appendNumber(buffer, value ? 1 : 0, BOOL_BYTES);
}

bool ParserValue::binToBool(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readNumber(BOOL_BYTES) != 0;
}

unsigned long ParserValue::charToBin(std::vector<char>& buffer, const char& value) {
  return appendNumber(buffer, static_cast<unsigned char>(value), CHAR_BYTES);
}

char ParserValue::binToChar(const std::vector<char>& buffer, unsigned long& pos) {
  return static_cast<char>(BinaryReader(buffer, pos).readNumber(CHAR_BYTES));
}

unsigned long ParserValue::intToBin(std::vector<char>& buffer, const int& value) {
  return appendNumber(buffer, static_cast<unsigned>(value), INT_BYTES);
}

int ParserValue::binToInt(const std::vector<char>& buffer, unsigned long& pos) {
  return static_cast<int>(BinaryReader(buffer, pos).readNumber(INT_BYTES));
}

unsigned long ParserValue::doubleToBin(std::vector<char>& buffer, const double& value) {
  return appendNumber(buffer, toBits(value), DOUBLE_BYTES);
}

double ParserValue::binToDouble(const std::vector<char>& buffer, unsigned long& pos) {
  return toDouble(BinaryReader(buffer, pos).readNumber(DOUBLE_BYTES));
}

unsigned long ParserValue::sizeToBin(std::vector<char>& buffer, const unsigned long& value) {
  return appendNumber(buffer, value, SIZE_BYTES);
}

unsigned long ParserValue::binTosize(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readNumber(SIZE_BYTES);
}

unsigned long ParserValue::stringToBin(std::vector<char>& buffer, const std::string& value) {
  const char* begin = value.c_str();
  const unsigned long count = value.size() + 1;  // with the zero byte
  buffer.insert(buffer.end(), begin, begin + count);
  return count;
}

std::string ParserValue::binToString(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readString();
}

unsigned long ParserValue::binaryDataToBin(std::vector<char>& buffer, void* bytes,
                                           const unsigned long& size) {
  const unsigned long frame = sizeToBin(buffer, size);
  const char* begin = static_cast<const char*>(bytes);
  if (size > 0) buffer.insert(buffer.end(), begin, begin + size);
  return frame + size;
}

void* ParserValue::binToBinaryData(const std::vector<char>& buffer, unsigned long& pos,
                                   unsigned long& size) {
  return BinaryReader(buffer, pos).readBlock(size).release();
}

unsigned long ParserValue::groupToBin(std::vector<char>& buffer, const ParserGroup& group) {
  const unsigned long before = buffer.size();
  BinaryWriter(buffer).writeGroup(group);
  return buffer.size() - before;
}

ParserValue* ParserValue::binTovalue(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readValue().release();
}

}  // namespace Quarry
