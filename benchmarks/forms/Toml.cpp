#include "Toml.h"

#include "Json.h"

#include <algorithm>

namespace QuarryBenchmarks {

namespace {

bool isObject(const Plain& value) { return value.kind == Plain::OBJECT; }

bool isArrayOfObjects(const Plain& value) {
  return value.kind == Plain::ARRAY && !value.children.empty() &&
         std::all_of(value.children.begin(), value.children.end(), isObject);
}

bool isBareByte(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || byte == '_' || byte == '-';
}

std::string makeKey(const std::string& name) {
  if (std::all_of(name.begin(), name.end(), isBareByte)) return name;
  std::string key;
  appendQuoted(key, name);
  return key;
}

/// Writes one document.
class TomlWriter {
 public:
  /// What has a header of its own comes last: a header ends what stands above it.
  void writeObject(const Plain& object, const std::string& path) {
    forEachMember(object, false, [this](const Plain& value, const std::string& key) {
      text += key + " = ";
      writeInline(value);
      text += '\n';
    });
    forEachMember(object, true, [this, &path](const Plain& value, const std::string& key) {
      writeWithHeader(value, path.empty() ? key : path + '.' + key);
    });
  }

  std::string text;

 private:
  template <class Visit>
  static void forEachMember(const Plain& object, bool hasHeader, const Visit& visit) {
    for (std::size_t i = 0; i < object.children.size(); ++i) {
      const Plain& value = object.children[i];
      if ((isObject(value) || isArrayOfObjects(value)) == hasHeader)
        visit(value, makeKey(object.names[i]));
    }
  }

  void writeWithHeader(const Plain& value, const std::string& path) {
    if (isObject(value)) {
      text += "\n[" + path + "]\n";
      return writeObject(value, path);
    }
    for (const Plain& element : value.children) {
      text += "\n[[" + path + "]]\n";
      writeObject(element, path);
    }
  }

  void writeInline(const Plain& value) {
    switch (value.kind) {
      case Plain::EMPTY: text += "[]"; return;
      case Plain::BOOL:
      case Plain::NUMBER: text += value.text; return;
      case Plain::STRING: appendQuoted(text, value.text); return;
      case Plain::BLOCK: appendQuoted(text, makeBlockText(value)); return;
      case Plain::ARRAY:
      case Plain::OBJECT: break;
    }
    text += isObject(value) ? '{' : '[';
    for (std::size_t i = 0; i < value.children.size(); ++i) {
      if (i > 0) text += ", ";
      if (isObject(value)) text += makeKey(value.names[i]) + " = ";
      writeInline(value.children[i]);
    }
    text += isObject(value) ? '}' : ']';
  }
};

}  // namespace

std::string makeToml(const Workload& workload) {
  TomlWriter writer;
  writer.writeObject(makePlain(workload), "");
  return writer.text;
}

}  // namespace QuarryBenchmarks
