#include <Plinth/Console.h>
#include <Plinth/Label.h>
#include <Quarry/ParserWord.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "MemoryFile.h"
#include "Texts.h"

#include <cmath>
#include <memory>

namespace Tool {

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::ParserWord;

namespace {

constexpr double WRITTEN_VERSION = 1.1;
constexpr char VERSION_KEYWORD[] = "#SerialVersion";
constexpr char INCLUDE[] = "#include \"";

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

  /// Without its sign, infinity would be a name.
  static void addDouble(double number, ParserItem& target) {
    const std::string text = Plinth::getLabel(number);
    const bool needsSign = !std::isfinite(number) && text.front() != '-';
    const std::string spelled = needsSign ? "+" + text : text;
    target.addWord(ParserWord(spelled, true, WRITTEN_VERSION), ParserValue::TYPE_DOUBLE);
  }

  std::vector<Pair> waiting;
};

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

void readSpelled(const Document& document, ParserFile& spelled) {
  ParserFile file;
  const std::size_t size = document.readBinary(file);
  const std::size_t understood = file.getBinary().size();
  if (understood != size) warn(Texts::brokenWithin(size, understood));
  Spelling::copy(file.getRoot(), spelled.getRoot());
}

/// Not every tree has a text that reads back as the same tree: the format has its traps. What a
/// text would include is not opened to find out.
void checkText(const std::string& text, const std::string& path, const ParserFile& expected) {
  if (text.find(INCLUDE) != std::string::npos) return warn(Texts::textHoldsInclude());
  ParserFile file;
  if (!file.read(path) || file.getBinary() != expected.getBinary()) warn(Texts::textDiffers());
}

void decode(const Document& document, const std::string& target, Output& output) {
  ParserFile file;
  readSpelled(document, file);
  const MemoryFile copy;
  if (!file.write(copy.getPath())) throw Failure(Texts::cannotWrite(target));
  const std::string text = copy.read();
  checkText(text, copy.getPath(), file);
  if (target == "-") {
    output.writeText(text);
  } else {
    writeFile(target, text);
  }
}

struct DecodeOptions : DocumentOptions {
  std::string target = "-";
};

ExitStatus run(const DecodeOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  decode(Document(options, log), options.target, output);
  output.flush();
  return statusOf(log);
}

}  // namespace

void addDecodeCommand(CommandTable& commands) {
  const auto options = std::make_shared<DecodeOptions>();
  CLI::App* command = commands.add(
      "decode",
      {"Convert", "Writes the text of a document in the binary form",
       "  quarry decode project.qdb -o project.cfg\n"
       "  quarry encode project.cfg | quarry decode - | less",
       "Numbers are written in digits; how they were spelled in the text before, 1.50 or 1.5,\n"
       "the binary form does not keep. Neither does it tell calls from plain items. Items\n"
       "'#SerialVersion' are left out: the text declares its own version.\n"
       "\n"
       "When the data is broken within a group, or the text does not read back as the same\n"
       "document, the text is written with a warning. When the data is broken elsewhere, or has\n"
       "a name that no text can have, nothing is written."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  addQuiet(command, options->quiet);
  addUnlimited(command, options->isUnlimited);
  addTarget(command, options->target);
}

}  // namespace Tool
