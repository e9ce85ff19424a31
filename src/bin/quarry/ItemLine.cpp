#include "ItemLine.h"

#include "TypeName.h"

namespace Tool {

using Quarry::ParserValue;

namespace {

Style getStyle(ParserValue::Type type) {
  switch (type) {
    case ParserValue::TYPE_BOOL: return Style::BOOL;
    case ParserValue::TYPE_STRING: return Style::STRING;
    case ParserValue::TYPE_BINARYDATA: return Style::BINARY;
    default: return Style::NUMBER;
  }
}

}  // namespace

void ItemLine::begin(Style style, std::string_view name) {
  isOpen = true;
  lastType = ParserValue::TYPE_EMPTY;
  output.writeWord(style, name);
}

void ItemLine::mark(Style style, std::string_view remark) { output.writeWord(style, remark); }

void ItemLine::addValue(ParserValue::Type type, std::string_view text) {
  if (type != lastType) writeType(type);
  output.write(" ");
  output.writeWord(getStyle(type), text);
}

void ItemLine::addGroup() { writeType(ParserValue::TYPE_GROUP); }

void ItemLine::end() {
  if (!isOpen) return;
  if (lastType == ParserValue::TYPE_EMPTY) {
    output.write(": ");
    output.writeWord(Style::TYPE, "empty");
  }
  output.write("\n");
  isOpen = false;
}

void ItemLine::writeType(ParserValue::Type type) {
  output.write(lastType == ParserValue::TYPE_EMPTY ? ": " : ", ");
  output.writeWord(Style::TYPE, getTypeName(type));
  lastType = type;
}

}  // namespace Tool
