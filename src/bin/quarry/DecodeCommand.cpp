#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>

#include "BinaryInput.h"
#include "CommandTable.h"
#include "Commands.h"
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

/// Not every tree has a text that reads back as the same tree: the format has its traps. What a
/// text would include is not opened to find out.
void checkText(const std::string& text, const std::string& path, const ParserFile& expected) {
  if (text.find(INCLUDE) != std::string::npos) return warn(Texts::textHoldsInclude());
  ParserFile file;
  if (!file.read(path) || file.getBinary() != expected.getBinary()) warn(Texts::textDiffers());
}

struct DecodeOptions : InputOptions {
  std::string file;
  std::string target = "-";
  bool quiet = false;
};

void decode(const DecodeOptions& options, Output& output) {
  ParserFile file;
  {
    ParserFile data;
    readBinary(data, options.readBytes(options.file), options, options.file);
    spellTree(data.getRoot(), file.getRoot());
  }
  const MemoryFile copy;
  if (!file.write(copy.getPath())) throw Failure(Texts::cannotWrite(options.target));
  const std::string text = copy.read();
  checkText(text, copy.getPath(), file);
  writeText(options.target, text, output);
}

ExitStatus run(const DecodeOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  decode(options, output);
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
  addTarget(command, options->target);
  addQuiet(command, options->quiet);
  options->addTo(command);
}

}  // namespace Tool
