#include "CommandTable.h"

#include <CLI/CLI.hpp>

#include "Failure.h"
#include "Output.h"
#include "Texts.h"

#include <map>
#include <sstream>
#include <utility>

namespace Tool {

namespace {

constexpr char DESCRIPTION[] =
    "Shows, checks, edits and converts documents of named items with typed values.\n"
    "\n"
    "Exit status: 0 fine, 1 the document drew warnings or nothing was found, 2 it cannot be read,\n"
    "the result cannot be written, or the command line is wrong.";

/// Shows the examples first: they are what most people look for.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* command) const override {
    std::string description = Formatter::make_description(command);
    const auto found = examples.find(command);
    if (found == examples.end()) return description;
    return description + "\nExamples:\n" + found->second + "\n";
  }

  std::map<const CLI::App*, std::string> examples;
};

/// Writes what was asked for, help or the version, or throws what is wrong with the command line.
void answer(const CLI::App& app, const CLI::ParseError& reason) {
  std::ostringstream text;
  std::ostringstream complaint;
  if (app.exit(reason, text, complaint) != 0) throw Failure(Texts::badCommandLine(reason.what()));
  Output output(ColorChoice::NEVER);
  output.write(text.str());
  output.flush();
}

}  // namespace

class CommandTable::Program {
 public:
  Program() {
    app.formatter(formatter);
    app.set_version_flag("--version", "quarry " QUARRY_VERSION);
    app.require_subcommand(0, 1);  // a word that is no command is then named as such
    app.footer("quarry COMMAND --help tells more about a command.");
  }

  CLI::App app{DESCRIPTION, "quarry"};
  std::shared_ptr<HelpFormatter> formatter = std::make_shared<HelpFormatter>();
  std::map<const CLI::App*, Action> actions;
};

CommandTable::CommandTable() : program(std::make_unique<Program>()) {}

CommandTable::~CommandTable() = default;

Command CommandTable::add(const std::string& name, const CommandHelp& help, Action action) {
  CLI::App* command = program->app.add_subcommand(name, help.description);
  command->group(help.group);
  command->footer(help.notes);
  program->formatter->examples[command] = help.examples;
  program->actions[command] = std::move(action);
  return Command(command);
}

ExitStatus CommandTable::run(int argc, char** argv, MessageLog& log) {
  try {
    program->app.parse(argc, argv);
  } catch (const CLI::ParseError& reason) {
    answer(program->app, reason);
    return ExitStatus::FINE;
  }
  const std::vector<CLI::App*> chosen = program->app.get_subcommands();
  if (chosen.empty()) throw Failure(Texts::badCommandLine("A command is missing"));
  return program->actions.at(chosen.front())(log);
}

ExitStatus statusOf(const MessageLog& log) {
  return log.hasWarnings() ? ExitStatus::FINDINGS : ExitStatus::FINE;
}

}  // namespace Tool
