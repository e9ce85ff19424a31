/// The commands of the tool, and the options that several of them share.
#pragma once

#include <CLI/CLI.hpp>

#include "MessageLog.h"
#include "Output.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tool {

enum class ExitStatus { FINE = 0, FINDINGS = 1, FAILED = 2 };

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

  explicit CommandTable(CLI::App& program);

  CLI::App* add(const std::string& name, const CommandHelp& help, Action action);

  /// Does what the command line asked for.
  ExitStatus run(MessageLog& log) const;

 private:
  class HelpFormatter;

  CLI::App& app;
  std::shared_ptr<HelpFormatter> formatter;
  std::map<const CLI::App*, Action> actions;
};

// --- Options that several commands share ---------------------------------------------------------

/// FILE, the document.
void addFile(CLI::App* command, std::string& file);

/// -I, --include.
void addSearchPaths(CLI::App* command, std::vector<std::string>& searchPaths);

/// -o, --output.
void addTarget(CLI::App* command, std::string& target);

/// --color.
void addColor(CLI::App* command, ColorChoice& color);

/// --depth.
void addDepth(CLI::App* command, const std::string& description, unsigned long& depth);

/// -q, --quiet.
void addQuiet(CLI::App* command, bool& quiet);

/// --no-limits.
void addUnlimited(CLI::App* command, bool& isUnlimited);

/// Returns FINDINGS when warnings were given.
ExitStatus statusOf(const MessageLog& log);

}  // namespace Tool
