/// What the types of values are called.
#pragma once

#include <Quarry/ParserValue.h>

namespace Tool {

inline const char* getTypeName(Quarry::ParserValue::Type type) {
  using Quarry::ParserValue;
  switch (type) {
    case ParserValue::TYPE_GROUP: return "group";
    case ParserValue::TYPE_BOOL: return "bool";
    case ParserValue::TYPE_CHAR: return "char";
    case ParserValue::TYPE_INT: return "int";
    case ParserValue::TYPE_DOUBLE: return "double";
    case ParserValue::TYPE_STRING: return "string";
    case ParserValue::TYPE_BINARYDATA: return "binary";
    default: return "empty";
  }
}

}  // namespace Tool
