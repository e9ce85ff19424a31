#include <CLI/CLI.hpp>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "MessageLog.h"
#include "Output.h"
#include "Texts.h"

#include <csignal>
#include <exception>
#include <sstream>

namespace {

using Tool::ExitStatus;

constexpr char DESCRIPTION[] =
    "Shows, checks, edits and converts documents of named items with typed values.\n"
    "\n"
    "Exit status: 0 fine, 1 the document drew warnings or nothing was found, 2 it cannot be read,\n"
    "the result cannot be written, or the command line is wrong.";

/// In the order of the help.
void addCommands(Tool::CommandTable& commands) {
  Tool::addTreeCommand(commands);
  Tool::addListCommand(commands);
  Tool::addFindCommand(commands);
  Tool::addGetCommand(commands);
  Tool::addDiffCommand(commands);
  Tool::addExplainCommand(commands);
  Tool::addWordsCommand(commands);
  Tool::addExpandCommand(commands);
  Tool::addCheckCommand(commands);
  Tool::addFormatCommand(commands);
  Tool::addSetCommand(commands);
  Tool::addAddCommand(commands);
  Tool::addRemoveCommand(commands);
  Tool::addRenameCommand(commands);
  Tool::addRewriteCommand(commands);
  Tool::addEncodeCommand(commands);
  Tool::addDecodeCommand(commands);
  Tool::addConvertCommand(commands);
  Tool::addPackCommand(commands);
  Tool::addUnpackCommand(commands);
}

/// Writes what was asked for, help or the version, or throws what is wrong with the command line.
void answer(const CLI::App& app, const CLI::ParseError& reason) {
  std::ostringstream text;
  std::ostringstream complaint;
  if (app.exit(reason, text, complaint) != 0) {
    throw Tool::Failure(Tool::Texts::badCommandLine(reason.what()));
  }
  Tool::Output output(Tool::ColorChoice::NEVER);
  output.write(text.str());
  output.flush();
}

ExitStatus run(int argc, char** argv, Tool::MessageLog& log) {
  CLI::App app(DESCRIPTION, "quarry");
  app.set_version_flag("--version", "quarry " QUARRY_VERSION);
  app.require_subcommand(0, 1);  // a word that is no command is then named as such
  app.footer("quarry COMMAND --help tells more about a command.");
  Tool::CommandTable commands(app);
  addCommands(commands);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& reason) {
    answer(app, reason);
    return ExitStatus::FINE;
  }
  return commands.run(log);
}

}  // namespace

int main(int argc, char** argv) {
  Tool::occupyClosedStreams();
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is noticed when it is written to
  Tool::MessageLog log;
  try {
    const ExitStatus status = run(argc, argv, log);
    return static_cast<int>(log.hasErrors() ? ExitStatus::FAILED : status);
  } catch (const Tool::ReaderGone&) {
    return static_cast<int>(ExitStatus::FAILED);
  } catch (const std::exception& failure) {
    log.fail(failure.what());
    return static_cast<int>(ExitStatus::FAILED);
  }
}
