#include <Plinth/Console.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "ItemDisplay.h"
#include "JsonText.h"
#include "JsonWriter.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <memory>
#include <optional>
#include <string_view>

namespace Tool {

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceDocument;
using Quarry::SourceItem;
using Quarry::SourceTarget;
using Quarry::SourceTree;

namespace {

enum class Layout { SPELLED, RAW, NULL_ENDED, JSON };

struct GetOptions : SourceOptions {
  std::string file;
  std::string path;
  Layout layout = Layout::SPELLED;
  std::optional<std::string> defaultValue;
  bool quiet = false;
};

/// Returns the content of a value: of a string and of binary data the bytes, of any other value how
/// it is spelled.
std::string getContent(const ParserItem& item, unsigned long index) {
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_STRING: return item.getString(index);
    case ParserValue::TYPE_BINARYDATA:
      return std::string(static_cast<const char*>(item.getBinaryData(index)),
                         item.getBinaryDataSize(index));
    default: return getSpelling(item, index);
  }
}

/// Returns the values that were asked for as an item of their own: all of an item's, or one.
std::unique_ptr<ParserItem> copyTarget(const SourceTree& tree, const SourceTarget& target) {
  if (target.value == SourceTree::NOWHERE) return copyValues(tree, target.item);
  const SourceItem& item = tree.getItem(target.item);
  auto copy = std::make_unique<ParserItem>(std::string(tree.getName(item)), item.type, 0UL, 0UL);
  tree.appendTo(*copy, tree.getValue(item, target.value));
  return copy;
}

std::string getSpelled(const ParserItem& item) {
  std::string text;
  for (unsigned long i = 0; i < item.getValueCount(); ++i)
    text += (i > 0 ? " " : "") + getSpelling(item, i);
  return text.empty() ? text : text + "\n";
}

std::string getContents(const ParserItem& item, char end) {
  std::string text;
  for (unsigned long i = 0; i < item.getValueCount(); ++i)
    text += getContent(item, i) + end;
  return text;
}

std::string getJson(const ParserItem& item, bool isOne) {
  std::string text;
  for (unsigned long i = 0; i < item.getValueCount(); ++i) {
    if (i > 0) text += ',';
    appendJsonContent(text, item, i);
  }
  return (isOne ? text : "[" + text + "]") + "\n";
}

std::string show(const SourceTree& tree, const SourceTarget& target, Layout layout) {
  const std::unique_ptr<ParserItem> item = copyTarget(tree, target);
  switch (layout) {
    case Layout::RAW: return getContents(*item, '\n');
    case Layout::NULL_ENDED: return getContents(*item, '\0');
    case Layout::JSON: return getJson(*item, target.value != SourceTree::NOWHERE);
    default: return getSpelled(*item);
  }
}

bool isOnlyGroup(const SourceTree& tree, const SourceTarget& target) {
  if (target.item == SourceTree::NOWHERE) return true;
  const SourceItem& item = tree.getItem(target.item);
  return item.hasGroup() && item.valueCount == 0;
}

ExitStatus get(const SourceTree& tree, const GetOptions& options, Output& output) {
  const SourceTarget target = tree.find(options.path);
  if (target.isFound()) {
    if (isOnlyGroup(tree, target)) throw Failure(Texts::isGroup(options.path));
    output.writeText(show(tree, target, options.layout));
    return ExitStatus::FINE;
  }
  if (options.defaultValue) {
    output.writeText(*options.defaultValue + (options.layout == Layout::NULL_ENDED ? '\0' : '\n'));
    return ExitStatus::FINE;
  }
  Plinth::console.warning(Texts::noSuchItem(target.problem), std::string());
  return ExitStatus::FINDINGS;
}

ExitStatus run(const GetOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  SourceDocument document;
  if (!options.read(document, options.file)) {
    throw Failure(formatDiagnostic(document, document.getDiagnostics().back()));
  }
  const ExitStatus status = get(SourceTree(document), options, output);
  output.flush();
  return status;
}

}  // namespace

void addGetCommand(CommandTable& commands) {
  const auto options = std::make_shared<GetOptions>();
  Command command = commands.add(
      "get",
      {"Look", "Shows the values of an item",
       "  quarry get project.cfg camera/fov\n"
       "  title=$(quarry get --raw project.cfg title)\n"
       "  quarry get --default 25 project.cfg 'scene/layer[2]/rate'\n"
       "  quarry get --json project.cfg size#1",
       "The values stand on one line, as they are spelled. An item that is there and has no "
       "values\n"
       "shows nothing, with exit status 0. What else is wrong with the document is told by check.\n"
       "\n"
       "Exit status: 0 found, or a default was given; 1 there is no such item; 2 the item is a\n"
       "group, or the document cannot be read."},
      [options](MessageLog& log) { return run(*options, log); });
  addFile(command, options->file);
  command.addArgument("PATH", options->path, "The item, or one of its values: size#2").require();
  const auto choose = [options](Layout layout) {
    return [options, layout] { options->layout = layout; };
  };
  const CommandOption raw =
      command.addFlag("--raw", choose(Layout::RAW),
                      "Show each value on a line, strings without quotes and escapes");
  const CommandOption null = command.addFlag("--null", choose(Layout::NULL_ENDED),
                                             "The same, each value ended by a zero byte");
  command.addFlag("--json", choose(Layout::JSON), "Show an array, or one value, as JSON")
      .exclude(raw)
      .exclude(null);
  raw.exclude(null);
  command.addOption(
      "--default", "VALUE", [options](const std::string& value) { options->defaultValue = value; },
      "Show VALUE where there is no such item");
  addQuiet(command, options->quiet);
  options->addTo(command);
}

}  // namespace Tool
