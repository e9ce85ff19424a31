#include "CommandTable.h"
#include "Commands.h"
#include "Output.h"
#include "SourceOptions.h"

#include <memory>

namespace Tool {

namespace {

ExitStatus run(const DocumentOptions& options, MessageLog& log) {
  log.setQuiet(options.quiet);
  Output output(ColorChoice::AUTO);
  Quarry::SourceDocument document;
  options.expand(document);
  output.writeText(document.getText());
  output.flush();
  return statusOf(log);
}

}  // namespace

void addExpandCommand(CommandTable& commands) {
  const auto options = std::make_shared<DocumentOptions>();
  Command command =
      commands.add("expand",
                   {"Look", "Writes the text with includes expanded and comments dropped",
                    "  quarry expand project.cfg\n"
                    "  quarry expand -I shared -I /usr/share/studio project.cfg"},
                   [options](MessageLog& log) { return run(*options, log); });
  options->addTo(command);
}

}  // namespace Tool
