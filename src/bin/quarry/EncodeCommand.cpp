#include "CommandTable.h"
#include "Commands.h"
#include "Document.h"
#include "FileBytes.h"
#include "SharedOptions.h"

#include <memory>

namespace Tool {

namespace {

void encode(const Document& document, const std::string& target, Output& output) {
  Quarry::ParserFile file;
  document.read(file);
  const std::vector<char> data = file.getBinary();
  writeData(target, {data.data(), data.size()}, output);
}

struct EncodeOptions : DocumentOptions {
  std::string target = "-";
};

ExitStatus run(const EncodeOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  encode(Document(options, log), options.target, output);
  output.flush();
  return statusOf(log);
}

}  // namespace

void addEncodeCommand(CommandTable& commands) {
  const auto options = std::make_shared<EncodeOptions>();
  Command command = commands.add("encode",
                                 {"Convert", "Writes the document in the binary form",
                                  "  quarry encode project.cfg -o project.qdb\n"
                                  "  quarry encode project.cfg | xxd"},
                                 [options](MessageLog& log) { return run(*options, log); });
  options->addTo(command);
  addTarget(command, options->target);
}

}  // namespace Tool
