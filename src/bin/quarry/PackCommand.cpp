#include <Plinth/Console.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Compression.h"
#include "Failure.h"
#include "FileBytes.h"
#include "InputOptions.h"
#include "LineMarkers.h"
#include "SharedOptions.h"
#include "Texts.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace Tool {

namespace {

struct PackOptions : InputOptions {
  std::string file;
  std::string target = "-";

  using InputOptions::getShownName;
  const std::string& getShownName() const { return getShownName(file); }

  void addTo(Command& command) {
    addFile(command, file);
    addTarget(command, target);
    InputOptions::addTo(command);
  }
};

// --- Pack ----------------------------------------------------------------------------------------

std::string pack(const std::string& text, const std::string& name) {
  if (isCompressed(text)) throw Failure(Texts::alreadyPacked(name));
  const std::size_t zero = text.find('\0');
  if (zero != std::string::npos) {
    const auto lineFeeds =
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(zero), '\n');
    throw Failure(Texts::zeroByte(name, static_cast<unsigned long>(lineFeeds) + 1));
  }
  return compress(addLineMarkers(text));
}

ExitStatus runPack(const PackOptions& options, MessageLog& log) {
  Output output(ColorChoice::AUTO);
  const std::string text = options.readBytes(options.file);
  writeData(options.target, pack(text, options.getShownName()), output);
  output.flush();
  return statusOf(log);
}

// --- Unpack --------------------------------------------------------------------------------------

/// What the library does not read as it was meant is given back as it was meant.
std::string unpack(const std::string& packed, const PackOptions& options) {
  if (!isCompressed(packed)) throw Failure(Texts::notPacked(options.getShownName()));
  std::string bytes = options.unpackBytes(packed, options.file);
  if (hasLineMarkers(bytes)) return options.takeMarkers(bytes, options.file);
  Plinth::console.warning(Texts::noLineMarkers(options.getShownName()), std::string());
  return bytes;
}

ExitStatus runUnpack(const PackOptions& options, MessageLog& log) {
  Output output(ColorChoice::AUTO);
  const std::string packed = options.readBytes(options.file);
  writeText(options.target, unpack(packed, options), output);
  output.flush();
  return statusOf(log);
}

}  // namespace

void addPackCommand(CommandTable& commands) {
  const auto options = std::make_shared<PackOptions>();
  Command command = commands.add(
      "pack",
      {"Convert", "Compresses a document so that it can be read as it was",
       "  quarry pack project.cfg -o project.cfg.gz\n"
       "  quarry pack - <project.cfg >project.cfg.gz",
       "What gzip itself makes of a document is read with bytes missing: a compressed document\n"
       "has a marker before each line feed. unpack gives back the same bytes.\n"
       "\n"
       "A compressed document is only recognised under its own name, not in a search path (-I).\n"
       "\n"
       "The same document gives the same bytes each time. A text with a zero byte is refused: a\n"
       "document ends there."},
      [options](MessageLog& log) { return runPack(*options, log); });
  options->addTo(command);
}

void addUnpackCommand(CommandTable& commands) {
  const auto options = std::make_shared<PackOptions>();
  Command command = commands.add(
      "unpack",
      {"Convert", "Writes the text of a compressed document",
       "  quarry unpack project.cfg.gz -o project.cfg\n"
       "  quarry unpack project.cfg.gz | less",
       "A file that was compressed without line markers, by gzip itself, is written as it was\n"
       "before, with a warning: the library would read it with bytes missing. pack the text to\n"
       "mend that.\n"
       "\n"
       "Exit status: 0 fine, 1 there are no line markers, 2 the file cannot be read or written."},
      [options](MessageLog& log) { return runUnpack(*options, log); });
  options->addTo(command);
}

}  // namespace Tool
