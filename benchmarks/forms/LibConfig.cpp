#include "LibConfig.h"

#include "Json.h"

#include <algorithm>

namespace QuarryBenchmarks {

namespace {

bool isLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

bool isNameByte(char byte) {
  return isLetter(byte) || (byte >= '0' && byte <= '9') || byte == '_' || byte == '-';
}

/// name = ( letter | "*" ) , { letter | digit | "-" | "_" | "*" }
std::string makeName(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char byte) { return !isNameByte(byte); }, '*');
  return isLetter(name.front()) ? name : '*' + name;
}

bool isDouble(const Plain& number) { return number.text.find_first_of(".eE") != std::string::npos; }

/// A number with an exponent needs a point as well.
std::string makeNumber(const Plain& number) {
  std::string text = number.text;
  const std::size_t exponent = text.find_first_of("eE");
  const bool hasPoint = text.find('.') != std::string::npos;
  if (exponent != std::string::npos && !hasPoint) text.insert(exponent, ".0");
  return text;
}

/// Tells whether two scalars have one type.
bool isLike(const Plain& one, const Plain& other) {
  if (one.kind != other.kind) return false;
  return one.kind != Plain::NUMBER || isDouble(one) == isDouble(other);
}

bool isArray(const Plain& value) {
  const Plain& first = value.children.front();
  if (first.kind == Plain::EMPTY || first.kind >= Plain::ARRAY) return false;
  return std::all_of(value.children.begin(), value.children.end(),
                     [&first](const Plain& element) { return isLike(first, element); });
}

/// Tells whether a byte is a control character that the form has no escape for.
bool isControl(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code == 0x7F || (code < ' ' && byte != '\n' && byte != '\r' && byte != '\t');
}

void appendString(std::string& text, std::string bytes) {
  std::replace_if(bytes.begin(), bytes.end(), isControl, ' ');
  appendQuoted(text, bytes);
}

void appendValue(std::string& text, const Plain& value);

void appendMembers(std::string& text, const Plain& object) {
  for (std::size_t i = 0; i < object.children.size(); ++i) {
    text += makeName(object.names[i]) + " = ";
    appendValue(text, object.children[i]);
    text += ";\n";
  }
}

void appendElements(std::string& text, const Plain& array) {
  for (std::size_t i = 0; i < array.children.size(); ++i) {
    if (i > 0) text += ", ";
    appendValue(text, array.children[i]);
  }
}

void appendArray(std::string& text, const Plain& array) {
  const bool isList = array.children.empty() || !isArray(array);
  text += isList ? '(' : '[';
  appendElements(text, array);
  text += isList ? ')' : ']';
}

void appendValue(std::string& text, const Plain& value) {
  switch (value.kind) {
    case Plain::EMPTY: text += "()"; return;
    case Plain::BOOL: text += value.text; return;
    case Plain::NUMBER: text += makeNumber(value); return;
    case Plain::STRING: appendString(text, value.text); return;
    case Plain::BLOCK: appendString(text, makeBlockText(value)); return;
    case Plain::ARRAY: appendArray(text, value); return;
    case Plain::OBJECT: break;
  }
  text += "{\n";
  appendMembers(text, value);
  text += '}';
}

}  // namespace

std::string makeLibConfig(const Workload& workload) {
  std::string text;
  appendMembers(text, makePlain(workload));
  return text;
}

}  // namespace QuarryBenchmarks
