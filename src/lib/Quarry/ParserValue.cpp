#include <Quarry/ParserValue.h>

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryNumber.h"
#include "internal/BinaryReader.h"
#include "internal/BinaryText.h"
#include "internal/BinaryWriter.h"
#include "internal/Messages.h"
#include "internal/NumberText.h"
#include "internal/OutputBuffer.h"
#include "internal/ShortNumber.h"
#include "internal/StringText.h"
#include "internal/TreeParts.h"

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

ParserValue::ParserValue(const bool& value) : ParserValue(Form::DATA, TYPE_BOOL) {
  content.data.boolean = value;
}

ParserValue::ParserValue(const char& value) : ParserValue(Form::DATA, TYPE_CHAR) {
  content.data.character = value;
}

ParserValue::ParserValue(const int& value) : ParserValue(Form::DATA, TYPE_INT) {
  content.data.integer = value;
}

ParserValue::ParserValue(const double& value) : ParserValue(Form::DATA, TYPE_DOUBLE) {
  content.data.number = value;
}

ParserValue::ParserValue(const std::string& value)
    : ParserValue(Form::DATA, std::string_view(value)) {}

ParserValue::ParserValue(const char* value) : ParserValue(Form::DATA, std::string_view(value)) {}

ParserValue::ParserValue(Form form, std::string_view bytes) : ParserValue(form, TYPE_STRING) {
  storeText(bytes, CONTENT_TEXT);
}

ParserValue::ParserValue(void* bytes, const unsigned long& size)
    : ParserValue(makeBlock(size > 0 ? copyBytes(bytes, size) : nullptr, size)) {}

ParserValue::ParserValue(std::unique_ptr<BinaryBlock> block)
    : ParserValue(Form::DATA, TYPE_BINARYDATA) {
  content.data.block = block.release();
  ownsMemory = true;
}

ParserValue::ParserValue(ParserGroup* group)
    : ParserValue(Form::TEXT, group != nullptr ? group : ParserGroup::makeNested()) {}

ParserValue::ParserValue(std::nullptr_t) : ParserValue(static_cast<ParserGroup*>(nullptr)) {}

ParserValue::ParserValue(const Type& valueType, const std::string& text)
    : ParserValue(Form::TEXT, valueType) {
  if (type == TYPE_GROUP) {
    content.slot.group = new ParserGroup(text);
    ownsMemory = true;
  } else if (type == TYPE_BINARYDATA) {
    content.data.block = readBlock(text).release();
    ownsMemory = true;
    dataValid = true;
    textValid = false;
  } else if (isKeptAsText(type)) {
    storeText(text, CONTENT_TEXT);
  } else {
    textValid = false;
  }
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

/// Asked of all types but those of groups and blocks; other numbers are no types.
bool ParserValue::isKeptAsText(Type type) { return type > TYPE_GROUP && type <= TYPE_EMPTY; }

/// The text of a block is only a cache and is left behind.
ParserValue::ParserValue(const ParserValue& other) : ParserValue(Form::TEXT, other.type) {
  textValid = other.textValid && type != TYPE_BINARYDATA;
  dataValid = other.dataValid;
  if (const ParserGroup* group = other.getGroup()) {
    content.slot.group = new ParserGroup(*group);
    ownsMemory = true;
  } else if (type == TYPE_BINARYDATA && dataValid) {
    const BinaryBlock& block = *other.content.data.block;
    content.data.block = makeBlock(copyBytes(block.data.get(), block.size), block.size).release();
    ownsMemory = true;
  } else if (type == TYPE_STRING) {
    storeText(other.getBytes(), CONTENT_TEXT);
  } else {
    storeText(other.getBytes(), dataValid ? SLOT_TEXT : CONTENT_TEXT);
    if (dataValid) content.data = other.content.data;
  }
}

ParserValue::~ParserValue() {
  if (ownsMemory) release();
}

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

/// Tells whether there is a string, and warns where there is none.
bool ParserValue::isHeldString() const {
  makeValue();
  if (type == TYPE_STRING && dataValid) return true;
  warnOfMismatch("getAsString");
  return false;
}

std::string_view ParserValue::getAsBytes() const {
  return isHeldString() ? getBytes() : std::string_view();
}

/// The bytes of a string lie like a text until they are asked for. Then they move into an object of
/// the standard library, and stay there.
const std::string& ParserValue::getAsString() const {
  static const std::string* const empty = new std::string;  // outlives every document
  if (!isHeldString()) return *empty;
  if (textLength != STRING_TEXT) {
    auto* string = new std::string(getBytes());
    if (textLength == LONG_TEXT) freeLongText();
    content.data.string = string;
    textLength = STRING_TEXT;
    ownsMemory = true;
  }
  return *content.data.string;
}

void* ParserValue::getAsBinaryData(unsigned long& size) const {
  makeValue();
  if (type == TYPE_BINARYDATA && dataValid) {
    size = content.data.block->size;
    return content.data.block->data.get();
  }
  warnOfMismatch("getAsBinaryData");
  return nullptr;
}

void ParserValue::makeValue() const {
  if (!hasText() || type == TYPE_EMPTY) return;
  if (type == TYPE_STRING) {
    dataValid = true;
  } else if (!dataValid) {
    makeNumber();
  }
}

/// Makes the data of a number or bool from its text, keeps it, and returns it as a number.
double ParserValue::makeNumber() const {
  static_assert(CONTENT_TEXT >= SHORT_NUMBER_ROOM && CONTENT_TEXT < LONG_TEXT);
  static_assert(sizeof(ParserValue) == sizeof(void*) + sizeof(Type) + 1 + CONTENT_TEXT,
                "a text lies in bytes that follow one another");
  if (textLength == 0 || textLength > SLOT_TEXT) return makeAnyNumber();
  if (type == TYPE_INT) {
    int integer = 0;
    if (!readShortInteger(inlineText(), textLength, integer)) return makeAnyNumber();
    content.data.integer = integer;
    dataValid = true;
    return integer;
  }
  double number = 0.0;
  if (type != TYPE_DOUBLE || !readShortDouble(inlineText(), textLength, number)) {
    return makeAnyNumber();
  }
  content.data.number = number;
  dataValid = true;
  return number;
}

/// The same for all texts. One that reaches into the place of the data stays there: the data is
/// then made anew each time.
double ParserValue::makeAnyNumber() const {
  const bool isInline = textLength <= CONTENT_TEXT;
  const std::string_view text = isInline ? std::string_view(inlineText(), textLength) : getBytes();
  const char* readable = isInline ? inlineText() + CONTENT_TEXT : text.data() + text.size();
  Data data;
  double number = 0.0;
  switch (type) {
    case TYPE_BOOL: number = data.boolean = text == "yes"; break;
    case TYPE_CHAR:
      data.character = lowByte(readInteger(text));
      number = toInt(data.character);
      break;
    case TYPE_INT: number = data.integer = static_cast<int>(readInteger(text)); break;
    default: number = data.number = readDouble(text, readable); break;
  }
  if (isInline && textLength > SLOT_TEXT) return number;
  content.data = data;
  dataValid = true;
  return number;
}

/// Tells whether the type converts to numbers, and warns where it does not.
bool ParserValue::isNumeric(const char* operation) const {
  if (type >= TYPE_BOOL && type <= TYPE_DOUBLE) return true;
  warnOfMismatch(operation);
  return false;
}

/// Every bool, character and integer is a double without loss.
double ParserValue::getNumber() const {
  if (!dataValid) return textValid ? makeNumber() : 0.0;
  switch (type) {
    case TYPE_BOOL: return content.data.boolean ? 1.0 : 0.0;
    case TYPE_CHAR: return toInt(content.data.character);
    case TYPE_INT: return content.data.integer;
    default: return content.data.number;
  }
}

void ParserValue::warnOfMismatch(const char* operation) const {
  Plinth::console.warning(Messages::typeMismatch(operation, type), std::string());
}

// --- Change --------------------------------------------------------------------------------------

void ParserValue::setBool(const bool& value) {
  become(TYPE_BOOL);
  content.data.boolean = value;
}

void ParserValue::setChar(const char& value) {
  become(TYPE_CHAR);
  content.data.character = value;
}

void ParserValue::setInt(const int& value) {
  become(TYPE_INT);
  content.data.integer = value;
}

void ParserValue::setDouble(const double& value) {
  become(TYPE_DOUBLE);
  content.data.number = value;
}

/// The new string is complete before the old one is given up: it may be a part of it.
void ParserValue::setString(const std::string& value) {
  ParserValue held(value);
  become(TYPE_STRING);
  takeOver(held);
}

void ParserValue::setBinaryData(void* bytes, const unsigned long& size) {
  ParserValue held(makeBlock(copyBytes(bytes, size), size));
  become(TYPE_BINARYDATA);
  takeOver(held);
}

void ParserValue::clear() {
  if (ownsMemory) release();
  ownsMemory = false;
  textLength = 0;
  dataValid = false;
  textValid = false;
}

/// Frees what the value owns.
void ParserValue::release() noexcept {
  if (isGroup()) return delete content.slot.group;
  if (type == TYPE_BINARYDATA) delete content.data.block;
  if (textLength == LONG_TEXT) freeLongText();
  if (textLength == STRING_TEXT) delete content.data.string;
}

void ParserValue::become(Type newType) {
  clear();
  type = newType;
  dataValid = true;
}

/// Takes what `other`, of the same type and form, owns.
void ParserValue::takeOver(ParserValue& other) noexcept {
  std::memcpy(inlineText(), other.inlineText(), CONTENT_TEXT);
  textLength = other.textLength;
  ownsMemory = other.ownsMemory;
  other.ownsMemory = false;
}

// --- Where the text lies -------------------------------------------------------------------------

std::string_view ParserValue::getBytes() const {
  if (textLength == LONG_TEXT) return {content.slot.longText.bytes, content.slot.longText.length};
  if (textLength == STRING_TEXT) return *content.data.string;
  return {inlineText(), textLength};
}

/// @param room how many bytes of the value itself may be used
void ParserValue::storeText(std::string_view text, unsigned long room) const {
  if (text.size() <= room) {
    if (!text.empty()) std::memcpy(inlineText(), text.data(), text.size());
    textLength = text.size() & STRING_TEXT;
    return;
  }
  char* bytes = static_cast<char*>(SlabHeap::allocate(text.size()));
  std::memcpy(bytes, text.data(), text.size());
  content.slot.longText = {bytes, text.size()};
  textLength = LONG_TEXT;
  ownsMemory = true;
}

void ParserValue::freeLongText() const noexcept {
  SlabHeap::free(content.slot.longText.bytes, content.slot.longText.length);
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
void ParserValue::appendText(OutputBuffer& out) const {
  if (!textValid && dataValid) makeText();
  if (type == TYPE_STRING) return appendQuoted(out, getBytes());
  if (textLength > CONTENT_TEXT) return out.append(getBytes());
  out.appendShort<CONTENT_TEXT>(inlineText(), textLength);
}

void ParserValue::appendText(std::string& out) const {
  OutputBuffer text;
  appendText(text);
  text.appendTo(out);
}

/// Characters, integers and doubles become one raw byte. The format has written them so from the
/// beginning; numbers that are added to an item bring their digits along and do not come here.
void ParserValue::makeText() const {
  switch (type) {
    case TYPE_BOOL: storeText(content.data.boolean ? "yes" : "no", SLOT_TEXT); break;
    case TYPE_STRING: break;  // its bytes are its text
    case TYPE_BINARYDATA: {
      std::string text;
      appendBinaryText(text, {content.data.block->data.get(), content.data.block->size});
      storeText(text, SLOT_TEXT);
    } break;
    default: {
      const char byte = lowByte(toInt(getNumber()));
      storeText({&byte, 1}, SLOT_TEXT);
    }
  }
  textValid = true;
}

void ParserValue::wordToBinaryData(void*& data, unsigned long& size, const ParserWord& word) {
  data = readBinaryText({word.begin(), word.length}, size).release();
}

// --- Binary --------------------------------------------------------------------------------------

void ParserValue::getBinary(std::vector<char>& buffer, unsigned long& count,
                            const bool& withTag) const {
  BinaryWriter writer;
  if (withTag) writer.writeTag(*this);
  writer.writePayload(*this);
  count += writer.appendTo(buffer);
}

unsigned long ParserValue::boolToBin(std::vector<char>& buffer, const bool& value) {
  return appendNumber<BOOL_BYTES>(buffer, value ? 1 : 0);
}

bool ParserValue::binToBool(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readNumber<BOOL_BYTES>() != 0;
}

unsigned long ParserValue::charToBin(std::vector<char>& buffer, const char& value) {
  return appendNumber<CHAR_BYTES>(buffer, static_cast<unsigned char>(value));
}

char ParserValue::binToChar(const std::vector<char>& buffer, unsigned long& pos) {
  return static_cast<char>(BinaryReader(buffer, pos).readNumber<CHAR_BYTES>());
}

unsigned long ParserValue::intToBin(std::vector<char>& buffer, const int& value) {
  return appendNumber<INT_BYTES>(buffer, static_cast<unsigned>(value));
}

int ParserValue::binToInt(const std::vector<char>& buffer, unsigned long& pos) {
  return static_cast<int>(BinaryReader(buffer, pos).readNumber<INT_BYTES>());
}

unsigned long ParserValue::doubleToBin(std::vector<char>& buffer, const double& value) {
  return appendNumber<DOUBLE_BYTES>(buffer, toBits(value));
}

double ParserValue::binToDouble(const std::vector<char>& buffer, unsigned long& pos) {
  return toDouble(BinaryReader(buffer, pos).readNumber<DOUBLE_BYTES>());
}

unsigned long ParserValue::sizeToBin(std::vector<char>& buffer, const unsigned long& value) {
  return appendNumber<SIZE_BYTES>(buffer, value);
}

unsigned long ParserValue::binTosize(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readSize();
}

unsigned long ParserValue::stringToBin(std::vector<char>& buffer, const std::string& value) {
  return appendString(buffer, value);
}

std::string ParserValue::binToString(const std::vector<char>& buffer, unsigned long& pos) {
  return std::string(BinaryReader(buffer, pos).readString());
}

unsigned long ParserValue::binaryDataToBin(std::vector<char>& buffer, void* bytes,
                                           const unsigned long& size) {
  const char* begin = static_cast<const char*>(bytes);
  const std::vector<char> block(begin, begin + size);  // the bytes may be the buffer's own
  const unsigned long frame = sizeToBin(buffer, size);
  buffer.insert(buffer.end(), block.begin(), block.end());
  return frame + size;
}

void* ParserValue::binToBinaryData(const std::vector<char>& buffer, unsigned long& pos,
                                   unsigned long& size) {
  return BinaryReader(buffer, pos).readBlock(size).release();
}

unsigned long ParserValue::groupToBin(std::vector<char>& buffer, const ParserGroup& group) {
  BinaryWriter writer;
  writer.writeGroup(group);
  return writer.appendTo(buffer);
}

ParserValue* ParserValue::binTovalue(const std::vector<char>& buffer, unsigned long& pos) {
  return BinaryReader(buffer, pos).readValue().release();
}

}  // namespace Quarry
