#include <Quarry/ParserFile.h>

#include "CommandTable.h"
#include "Commands.h"
#include "FileBytes.h"
#include "SharedOptions.h"
#include "SourceOptions.h"

#include <memory>
#include <vector>

namespace Tool {

namespace {

struct EncodeOptions : DocumentOptions {
  std::string target = "-";
};

ExitStatus run(const EncodeOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  Quarry::ParserFile file;
  options.readTree(file.getRoot());
  const std::vector<char> data = file.getBinary();
  writeData(options.target, {data.data(), data.size()}, output);
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
