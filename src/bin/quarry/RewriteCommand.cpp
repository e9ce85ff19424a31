#include <Quarry/ParserFile.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "MemoryFile.h"
#include "Output.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <filesystem>
#include <memory>
#include <system_error>

namespace Tool {

namespace {

/// A file is replaced as a whole; a device or a pipe takes the text as it comes.
void writeFile(Quarry::ParserFile& file, const std::string& name) {
  std::error_code ignored;
  const std::filesystem::file_type type = std::filesystem::status(name, ignored).type();
  const bool isFile =
      type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
  if (isFile) {
    file.save(name);  // its error tells why not, and makes the tool fail
  } else if (!file.write(name)) {
    throw Failure(Texts::cannotWrite(name));
  }
}

/// Only ParserFile::write() knows how a document begins, so standard output gets what that wrote.
void write(Quarry::ParserFile& file, const std::string& target, Output& output) {
  if (target != "-") return writeFile(file, target);
  const MemoryFile copy;
  if (!file.write(copy.getPath())) throw Failure(Texts::cannotWrite(target));
  output.writeText(copy.read());
}

struct RewriteOptions : DocumentOptions {
  std::string target = "-";
};

ExitStatus run(const RewriteOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  Quarry::ParserFile file;
  options.readTree(file.getRoot());
  write(file, options.target, output);
  output.flush();
  return statusOf(log);
}

}  // namespace

void addRewriteCommand(CommandTable& commands) {
  const auto options = std::make_shared<RewriteOptions>();
  Command command =
      commands.add("rewrite",
                   {"Convert", "Reads the document and writes it in the library's layout",
                    "  quarry rewrite project.cfg | diff -u project.cfg -\n"
                    "  quarry rewrite project.cfg -o project-new.cfg"},
                   [options](MessageLog& log) { return run(*options, log); });
  options->addTo(command);
  addTarget(command, options->target);
}

}  // namespace Tool
