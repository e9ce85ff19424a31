#include "Yaml.h"

#include "Json.h"
#include "Plain.h"

namespace QuarryBenchmarks {

namespace {

/// Writes one document.
class YamlWriter {
 public:
  explicit YamlWriter(Source& result) : yaml(result) {}

  /// object = { line feed , indent , name , ":" , value }
  void writeObject(const Plain& object, unsigned long depth) {
    if (object.children.empty()) yaml.text += " {}";
    for (std::size_t i = 0; i < object.children.size(); ++i) {
      startLine(depth);
      appendQuoted(yaml.text, object.names[i]);
      yaml.text += ':';
      writeValue(object.children[i], depth + 1);
    }
  }

 private:
  void startLine(unsigned long depth) {
    yaml.text += '\n';
    yaml.text.append(2 * depth, ' ');
  }

  void writeValue(const Plain& value, unsigned long depth) {
    if (value.kind == Plain::OBJECT) return writeObject(value, depth);
    if (value.kind == Plain::ARRAY && holdsObject(value)) return writeBlockArray(value, depth);
    yaml.text += ' ';
    writeInline(value);
  }

  void writeBlockArray(const Plain& array, unsigned long depth) {
    for (const Plain& element : array.children) {
      startLine(depth);
      yaml.text += '-';
      writeValue(element, depth + 1);
    }
  }

  void writeInline(const Plain& value) {
    if (value.kind == Plain::ARRAY) return writeInlineArray(value);
    yaml.isNumber.push_back(value.kind == Plain::NUMBER);
    if (value.kind == Plain::EMPTY) yaml.text += "null";
    if (value.kind == Plain::BOOL || value.kind == Plain::NUMBER) yaml.text += value.text;
    if (value.kind == Plain::STRING) appendQuoted(yaml.text, value.text);
    if (value.kind == Plain::BLOCK) appendQuoted(yaml.text, makeBlockText(value));
  }

  void writeInlineArray(const Plain& array) {
    yaml.text += '[';
    for (std::size_t i = 0; i < array.children.size(); ++i) {
      if (i > 0) yaml.text += ", ";
      writeInline(array.children[i]);
    }
    yaml.text += ']';
  }

  Source& yaml;
};

}  // namespace

Source makeYaml(const Workload& workload) {
  Source yaml;
  YamlWriter(yaml).writeObject(makePlain(workload), 0);
  yaml.text += '\n';
  return yaml;
}

}  // namespace QuarryBenchmarks
