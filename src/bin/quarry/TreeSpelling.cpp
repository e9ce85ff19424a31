#include "TreeSpelling.h"

#include <Quarry/ParserWord.h>

#include "JsonNumber.h"

#include <string>
#include <vector>

namespace Tool {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr double WRITTEN_VERSION = 1.1;
constexpr char VERSION_KEYWORD[] = "#SerialVersion";

/// Copies a tree that came from binary data into one whose values bring their text along, so that
/// numbers are written in digits, and whose items are plain ones or keywords by their names.
///
/// Groups that are still empty wait in a list: the depth takes memory, not stack.
class Spelling {
 public:
  static void copy(const ParserGroup& source, ParserGroup& target) {
    Spelling spelling;
    spelling.waiting.push_back({&source, &target});
    while (!spelling.waiting.empty()) {
      const Pair pair = spelling.waiting.back();
      spelling.waiting.pop_back();
      spelling.copyItems(*pair.source, *pair.target);
    }
  }

 private:
  struct Pair {
    const ParserGroup* source;
    ParserGroup* target;
  };

  /// In a text, an item with the version's name declares the version, at any depth, and the library
  /// declares it by itself.
  void copyItems(const ParserGroup& source, ParserGroup& target) {
    for (const ParserItem* item : source.getItems(std::string())) {
      if (item->getName() != VERSION_KEYWORD) {
        copyValues(*item, *target.addItem(item->getName(), 0, 0));
      }
    }
  }

  void copyValues(const ParserItem& source, ParserItem& target) {
    for (unsigned long i = 0; i < source.getValueCount(); ++i)
      copyValue(source, i, target);
  }

  /// Characters become integers: texts have no characters.
  void copyValue(const ParserItem& source, unsigned long index, ParserItem& target) {
    switch (source.getValueType(index)) {
      case ParserValue::TYPE_GROUP:
        waiting.push_back({source.getGroup(index), target.addGroup(nullptr)});
        break;
      case ParserValue::TYPE_BOOL: target.addBool(source.getBool(index)); break;
      case ParserValue::TYPE_CHAR:
      case ParserValue::TYPE_INT: target.addInt(source.getInt(index)); break;
      case ParserValue::TYPE_DOUBLE: addDouble(source.getDouble(index), target); break;
      case ParserValue::TYPE_STRING: target.addString(source.getString(index)); break;
      case ParserValue::TYPE_BINARYDATA:
        target.addBinaryData(source.getBinaryData(index), source.getBinaryDataSize(index));
        break;
      case ParserValue::TYPE_EMPTY: break;  // no binary document has one
    }
  }

  static void addDouble(double number, ParserItem& target) {
    const std::string spelled = spellDouble(number);
    target.addWord(ParserWord(spelled, true, WRITTEN_VERSION), ParserValue::TYPE_DOUBLE);
  }

  std::vector<Pair> waiting;
};

}  // namespace

void spellTree(const ParserGroup& source, ParserGroup& target) { Spelling::copy(source, target); }

}  // namespace Tool
