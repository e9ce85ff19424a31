/// The commands of the tool by their names.
#pragma once

#include "Command.h"
#include "MessageLog.h"

#include <functional>
#include <memory>
#include <string>

namespace Tool {

enum class ExitStatus { FINE = 0, FINDINGS = 1, FAILED = 2 };

/// Returns FINDINGS when warnings were given.
ExitStatus statusOf(const MessageLog& log);

/// What the help tells of a command.
struct CommandHelp {
  const char* group;        ///< the heading under which the command is listed
  const char* description;  ///< a sentence without a full stop
  const char* examples;     ///< one a line, each indented by two blanks
  const char* notes = "";   ///< said below the options
};

/// Knows the commands by their names. Each source file of a command adds it, with its options and
/// what it does.
class CommandTable {
 public:
  /// What a command does; MessageLog tells the status where warnings were given.
  using Action = std::function<ExitStatus(MessageLog&)>;

  CommandTable();
  ~CommandTable();

  Command add(const std::string& name, const CommandHelp& help, Action action);

  /// Does what the command line asks for; help and the version go to standard output. A Failure is
  /// thrown when the command line is wrong.
  ExitStatus run(int argc, char** argv, MessageLog& log);

 private:
  class Program;

  const std::unique_ptr<Program> program;
};

}  // namespace Tool
