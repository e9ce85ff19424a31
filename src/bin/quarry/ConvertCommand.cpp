#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>

#include "BinaryInput.h"
#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "FileBytes.h"
#include "JsonObjectWriter.h"
#include "JsonReader.h"
#include "JsonWriter.h"
#include "MemoryFile.h"
#include "SharedOptions.h"
#include "SilentConsole.h"
#include "SourceOptions.h"
#include "Texts.h"
#include "TreeSpelling.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Tool {

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::SourceDocument;

namespace {

constexpr char INCLUDE[] = "#include \"";

enum class Form { UNKNOWN, TEXT, BINARY, JSON, OBJECT };

struct ConvertOptions : SourceOptions {
  std::string file;
  std::string target = "-";
  Form from = Form::UNKNOWN;
  Form to = Form::UNKNOWN;
  bool quiet = false;

  using InputOptions::getShownName;
  const std::string& getShownName() const { return getShownName(file); }
};

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

/// No text begins with a brace: it would open nothing.
Form guessForm(std::string_view bytes) {
  if (bytes.starts_with("QDBF")) return Form::BINARY;
  constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
  if (bytes.starts_with(BYTE_ORDER_MARK)) bytes.remove_prefix(BYTE_ORDER_MARK.size());
  const std::size_t begin = bytes.find_first_not_of(" \t\r\n");
  const bool isJson =
      begin != std::string_view::npos && (bytes[begin] == '[' || bytes[begin] == '{');
  return isJson ? Form::JSON : Form::TEXT;
}

/// Reads the document that is asked for into a tree.
class Input {
 public:
  Input(const ConvertOptions& given, ParserGroup& target)
      : options(given), root(target), from(given.from) {}

  void read() {
    if (options.file == "-" || from != Form::TEXT) readFile();
    if (from == Form::UNKNOWN) from = guessForm(bytes);
    switch (from) {
      case Form::BINARY: return readBinary();
      case Form::JSON: return readJsonTree();
      default: return readDocument();
    }
  }

  Form getForm() const { return from; }
  Form getTargetForm() const {
    if (options.to != Form::UNKNOWN) return options.to;
    return from == Form::TEXT ? Form::JSON : Form::TEXT;
  }

 private:
  /// A text may be found by a search path only.
  void readFile() {
    try {
      bytes = options.readBytes(options.file);
    } catch (const Failure&) {
      if (options.file == "-" || from != Form::UNKNOWN || options.searchPaths.empty()) throw;
      from = Form::TEXT;
    }
  }

  /// The source layer tells what is wrong, and where; the library makes the tree, of the same text.
  void readDocument() {
    SourceDocument document;
    if (options.file == "-") {
      options.readWholeInput(document, bytes);
    } else if (bytes.empty() || isRegularFile()) {
      options.readWhole(document, options.file);
    } else {
      SourceOptions named = static_cast<const SourceOptions&>(options);
      named.standInName = options.file;
      named.readWholeInput(document, bytes);
    }
    makeTree(document, root);
  }

  /// Nothing else can be read a second time.
  bool isRegularFile() const {
    std::error_code ignored;
    return std::filesystem::is_regular_file(options.file, ignored);
  }

  void readBinary() {
    ParserFile file;
    Tool::readBinary(file, bytes, options, options.file);
    if (getTargetForm() == Form::TEXT) {
      spellTree(file.getRoot(), root);
    } else {
      unsigned long position = std::string_view("QDBF").size();
      const SilentConsole silence;
      root.setBinary(file.getBinary(), position);
    }
  }

  void readJsonTree() {
    JsonSettings settings;
    settings.deepest = options.getLimits().nestingDepth;
    settings.use = getTargetForm() == Form::TEXT ? TreeUse::TEXT : TreeUse::ANY;
    try {
      if (readJson(bytes, root, settings).hasVersions) warn(Texts::versionsLeftOut());
    } catch (const JsonFault& fault) {
      throw Failure(Texts::cannotRead(options.getShownName(), fault.what()));
    }
  }

  const ConvertOptions& options;
  ParserGroup& root;
  Form from;
  std::string bytes;
};

// --- What is written -----------------------------------------------------------------------------

bool readsAs(const std::string& path, const ParserGroup& expected) {
  const SilentConsole silence;
  ParserFile file;
  return file.read(path) &&
         writeJson(file.getRoot(), TreeOrigin::TEXT) == writeJson(expected, TreeOrigin::TEXT);
}

/// Not every tree has a text that reads back as the same tree: the format has its traps. What a
/// text would include is not opened to find out.
void checkText(const std::string& text, const std::string& path, const ParserGroup& expected) {
  if (text.find(INCLUDE) != std::string::npos) return warn(Texts::textHoldsInclude());
  if (!readsAs(path, expected)) warn(Texts::textDiffers());
}

/// Only ParserFile::write() knows how a document begins.
std::string makeText(ParserFile& file, const std::string& target) {
  const MemoryFile copy;
  if (!file.write(copy.getPath())) throw Failure(Texts::cannotWrite(target));
  std::string text = copy.read();
  checkText(text, copy.getPath(), file.getRoot());
  return text;
}

bool readsBack(const std::vector<char>& data) {
  const SilentConsole silence;
  ParserFile file;
  return file.setBinary(data) && file.getBinary() == data;
}

/// The binary form ends a name or a string at its first zero byte.
std::vector<char> makeData(const ParserFile& file) {
  std::vector<char> data = file.getBinary();
  if (!readsBack(data)) warn(Texts::dataDiffers());
  return data;
}

void write(ParserFile& file, const ConvertOptions& options, const Input& input, Output& output) {
  const TreeOrigin origin = input.getForm() == Form::BINARY ? TreeOrigin::BINARY : TreeOrigin::TEXT;
  switch (input.getTargetForm()) {
    case Form::BINARY: {
      const std::vector<char> data = makeData(file);
      return writeData(options.target, {data.data(), data.size()}, output);
    }
    case Form::JSON: return writeText(options.target, writeJson(file.getRoot(), origin), output);
    case Form::OBJECT: return writeText(options.target, writeJsonObject(file.getRoot()), output);
    default: writeText(options.target, makeText(file, options.target), output);
  }
}

ExitStatus run(const ConvertOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  ParserFile file;
  Input input(options, file.getRoot());
  input.read();
  try {
    write(file, options, input, output);
  } catch (const JsonFault& fault) {
    throw Failure(Texts::cannotConvert(options.getShownName(), fault.what()));
  }
  output.flush();
  return statusOf(log);
}

}  // namespace

void addConvertCommand(CommandTable& commands) {
  const auto options = std::make_shared<ConvertOptions>();
  Command command = commands.add(
      "convert",
      {"Convert", "Turns a document into text, binary data or JSON",
       "  quarry convert project.cfg -o project.json\n"
       "  quarry convert project.json -o project.cfg\n"
       "  quarry convert --to object project.cfg | jq .title\n"
       "  quarry convert --to binary project.cfg -o project.qdb",
       "JSON keeps everything that a tree has: it is an array of items with name, kind and typed\n"
       "values. An object is plain JSON, for documents whose items have different names. Either "
       "is\n"
       "read as JSON.\n"
       "\n"
       "A text is written in the library's layout, without comments and includes. Where it would\n"
       "not read back as the same document, it is written with a warning.\n"
       "\n"
       "Exit status: 0 fine, 1 there were warnings, 2 the document cannot be read, or has\n"
       "something that the other form cannot hold."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  command.addChoice<Form>("--from", "FORM",
                          {{"text", Form::TEXT}, {"binary", Form::BINARY}, {"json", Form::JSON}},
                          options->from, "text, binary or json; without it, the file tells");
  command.addChoice<Form>("--to", "FORM",
                          {{"text", Form::TEXT},
                           {"binary", Form::BINARY},
                           {"json", Form::JSON},
                           {"object", Form::OBJECT}},
                          options->to,
                          "text, binary, json or object; without it, json for a text, else text");
  addTarget(command, options->target);
  addQuiet(command, options->quiet);
  options->addTo(command);
}

}  // namespace Tool
