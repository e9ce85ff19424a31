#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "MessageLog.h"
#include "Output.h"

#include <csignal>
#include <exception>

namespace {

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

}  // namespace

using Tool::ExitStatus;

int main(int argc, char** argv) {
  Tool::occupyClosedStreams();
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is noticed when it is written to
  Tool::MessageLog log;
  try {
    Tool::CommandTable commands;
    addCommands(commands);
    const ExitStatus status = commands.run(argc, argv, log);
    return static_cast<int>(log.hasErrors() ? ExitStatus::FAILED : status);
  } catch (const Tool::ReaderGone&) {
    return static_cast<int>(ExitStatus::FAILED);
  } catch (const std::exception& failure) {
    log.fail(failure.what());
    return static_cast<int>(ExitStatus::FAILED);
  }
}
