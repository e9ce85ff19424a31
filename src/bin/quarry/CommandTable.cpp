#include "CommandTable.h"

#include "Failure.h"
#include "Texts.h"

#include <utility>

namespace Tool {

// --- The table -----------------------------------------------------------------------------------

/// Shows the examples first: they are what most people look for.
class CommandTable::HelpFormatter : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* command) const override {
    const std::string description = Formatter::make_description(command);
    const auto found = examples.find(command);
    if (found == examples.end()) return description;
    return description + "\nExamples:\n" + found->second + "\n";
  }

  std::map<const CLI::App*, std::string> examples;
};

CommandTable::CommandTable(CLI::App& program)
    : app(program), formatter(std::make_shared<HelpFormatter>()) {
  app.formatter(formatter);
}

CLI::App* CommandTable::add(const std::string& name, const CommandHelp& help, Action action) {
  CLI::App* command = app.add_subcommand(name, help.description);
  command->group(help.group);
  command->footer(help.notes);
  formatter->examples[command] = help.examples;
  actions[command] = std::move(action);
  return command;
}

ExitStatus CommandTable::run(MessageLog& log) const {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  if (chosen.empty()) throw Failure(Texts::badCommandLine("A command is missing"));
  return actions.at(chosen.front())(log);
}

// --- Options that several commands share ---------------------------------------------------------

void addFile(CLI::App* command, std::string& file) {
  command->add_option("FILE", file, "The document; - for standard input")
      ->required()
      ->option_text(" ");
}

void addSearchPaths(CLI::App* command, std::vector<std::string>& searchPaths) {
  command
      ->add_option("-I,--include", searchPaths,
                   "Look for documents in DIR first; may be given several times")
      ->allow_extra_args(false)
      ->option_text("DIR");
}

void addTarget(CLI::App* command, std::string& target) {
  command->add_option("-o,--output", target, "Write to OUT; - for standard output")
      ->option_text("OUT");
}

void addColor(CLI::App* command, ColorChoice& color) {
  const std::map<std::string, ColorChoice> choices = {
      {"auto", ColorChoice::AUTO}, {"always", ColorChoice::ALWAYS}, {"never", ColorChoice::NEVER}};
  const auto choose = [&color, choices](const std::string& word) { color = choices.at(word); };
  command
      ->add_option_function<std::string>("--color", choose,
                                         "Colours: auto (on a terminal), always, never")
      ->check(CLI::IsMember(std::vector<std::string>{"auto", "always", "never"}))
      ->option_text("WHEN");
}

void addDepth(CLI::App* command, const std::string& description, unsigned long& depth) {
  const auto findFault = [](const std::string& text) {
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::string() : "'" + text + "' is no whole number";
  };
  command->add_option("--depth", depth, description)->check(findFault)->option_text("N");
}

void addQuiet(CLI::App* command, bool& quiet) {
  command->add_flag("-q,--quiet", quiet, "Show no warnings; the exit status tells");
}

void addUnlimited(CLI::App* command, bool& isUnlimited) {
  command->add_flag("--no-limits", isUnlimited,
                    "Read documents of any size, nesting and depth of includes");
}

ExitStatus statusOf(const MessageLog& log) {
  return log.hasWarnings() ? ExitStatus::FINDINGS : ExitStatus::FINE;
}

}  // namespace Tool
