#include "Json.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace QuarryBenchmarks {

namespace {

void appendValue(std::string& json, const Plain& value) {
  const bool isObject = value.kind == Plain::OBJECT;
  switch (value.kind) {
    case Plain::EMPTY: json += "null"; return;
    case Plain::BOOL:
    case Plain::NUMBER: json += value.text; return;
    case Plain::STRING: appendQuoted(json, value.text); return;
    case Plain::BLOCK: appendQuoted(json, makeBlockText(value)); return;
    case Plain::ARRAY:
    case Plain::OBJECT: break;
  }
  json += isObject ? '{' : '[';
  for (std::size_t i = 0; i < value.children.size(); ++i) {
    if (i > 0) json += ',';
    if (isObject) {
      appendQuoted(json, value.names[i]);
      json += ':';
    }
    appendValue(json, value.children[i]);
  }
  json += isObject ? '}' : ']';
}

void appendEscape(std::string& out, char byte) {
  constexpr char DIGITS[] = "0123456789abcdef";
  switch (byte) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default: break;
  }
  const auto code = static_cast<unsigned char>(byte);
  out += "\\u00";
  out += DIGITS[code >> 4];
  out += DIGITS[code & 15];
}

}  // namespace

void appendQuoted(std::string& out, const std::string& text) {
  out += '"';
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == '"' || byte == '\\' || code < ' ' || code == 0x7F) {
      appendEscape(out, byte);
    } else {
      out += byte;
    }
  }
  out += '"';
}

std::string makeJson(const Workload& workload) {
  std::ifstream file(std::filesystem::path(workload.path).replace_extension(".json"),
                     std::ios::binary);
  if (file) return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::string json;
  appendValue(json, makePlain(workload));
  return json;
}

}  // namespace QuarryBenchmarks
