#include <Plinth/Console.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Document.h"
#include "Failure.h"
#include "FileBytes.h"
#include "MemoryFile.h"
#include "SharedOptions.h"
#include "Texts.h"
#include "TreeSpelling.h"

#include <memory>

namespace Tool {

using Quarry::ParserFile;

namespace {

constexpr char INCLUDE[] = "#include \"";

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

void readSpelled(const Document& document, ParserFile& spelled) {
  ParserFile file;
  const std::size_t size = document.readBinary(file);
  const std::size_t understood = file.getBinary().size();
  if (understood != size) warn(Texts::brokenWithin(size, understood));
  spellTree(file.getRoot(), spelled.getRoot());
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
  writeText(target, text, output);
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
  Command command = commands.add(
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
