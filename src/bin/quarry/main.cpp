#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Failure.h"
#include "MessageLog.h"
#include "Output.h"
#include "Texts.h"

#include <csignal>
#include <exception>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

enum ExitStatus { FINE = 0, FINDINGS = 1, FAILED = 2 };

constexpr char DESCRIPTION[] =
    "Shows and rewrites documents of named items with typed values.\n"
    "\n"
    "Exit status: 0 fine, 1 the document drew warnings, 2 it cannot be read, the result cannot be\n"
    "written, or the command line is wrong.";

/// What the command line asks for.
struct Arguments {
  std::string file;
  std::string target = "-";
  std::vector<std::string> searchPaths;
  std::string color = "auto";
  unsigned long depthLimit = std::numeric_limits<unsigned long>::max();
  bool quiet = false;
};

// --- The command line ----------------------------------------------------------------------------

/// Adds a command with what all commands take.
CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& examples, Arguments& arguments) {
  CLI::App* command = app.add_subcommand(name, description);
  command->add_option("FILE", arguments.file, "The document; - for standard input")
      ->required()
      ->option_text(" ");
  command
      ->add_option("-I,--include", arguments.searchPaths,
                   "Look for documents in DIR first; may be given several times")
      ->allow_extra_args(false)
      ->option_text("DIR");
  command->add_flag("-q,--quiet", arguments.quiet, "Show no warnings; the exit status tells");
  command->footer("Examples:\n" + examples);
  return command;
}

void addColor(CLI::App* command, Arguments& arguments) {
  command->add_option("--color", arguments.color, "Colours: auto (on a terminal), always, never")
      ->check(CLI::IsMember(std::vector<std::string>{"auto", "always", "never"}))
      ->option_text("WHEN");
}

std::string findFaultOfDepth(const std::string& text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  return digits ? std::string() : "'" + text + "' is no whole number";
}

void addCommands(CLI::App& app, Arguments& arguments) {
  CLI::App* tree = addCommand(app, "tree", "Shows the items as a tree, one a line",
                              "  quarry tree project.cfg\n"
                              "  quarry tree --depth 0 project.cfg\n"
                              "  quarry tree --color=always project.cfg | less -R",
                              arguments);
  addColor(tree, arguments);
  tree->add_option("--depth", arguments.depthLimit, "Show no more than N levels of nested groups")
      ->check(findFaultOfDepth)
      ->option_text("N");

  CLI::App* words =
      addCommand(app, "words", "Shows the words of the text: line:column, kind and spelling",
                 "  quarry words project.cfg\n"
                 "  echo 'size 1920 1080' | quarry words -",
                 arguments);
  addColor(words, arguments);

  addCommand(app, "expand", "Writes the text with includes expanded and comments dropped",
             "  quarry expand project.cfg\n"
             "  quarry expand -I shared -I /usr/share/studio project.cfg",
             arguments);

  CLI::App* rewrite =
      addCommand(app, "rewrite", "Reads the document and writes it in the library's layout",
                 "  quarry rewrite project.cfg | diff -u project.cfg -\n"
                 "  quarry rewrite project.cfg -o project-new.cfg",
                 arguments);
  rewrite->add_option("-o,--output", arguments.target, "Write to OUT; - for standard output")
      ->option_text("OUT");
}

// --- Running -------------------------------------------------------------------------------------

Tool::ColorChoice getColorChoice(const std::string& word) {
  if (word == "always") return Tool::ColorChoice::ALWAYS;
  if (word == "never") return Tool::ColorChoice::NEVER;
  return Tool::ColorChoice::AUTO;
}

void runCommand(const std::string& command, const Arguments& arguments, Tool::MessageLog& log) {
  log.setQuiet(arguments.quiet);
  Tool::Output output(getColorChoice(arguments.color));
  const Tool::Document document(arguments.file, arguments.searchPaths, log);
  if (command == "tree") Tool::showTree(document, arguments.depthLimit, output);
  if (command == "words") Tool::showWords(document, output);
  if (command == "expand") Tool::writeExpanded(document, output);
  if (command == "rewrite") Tool::rewrite(document, arguments.target, output);
  output.flush();
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

void run(int argc, char** argv, Tool::MessageLog& log) {
  CLI::App app(DESCRIPTION, "quarry");
  Arguments arguments;
  app.set_version_flag("--version", "quarry " QUARRY_VERSION);
  app.require_subcommand(0, 1);  // a word that is no command is then named as such
  app.footer("quarry COMMAND --help tells more about a command.");
  addCommands(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& reason) {
    return answer(app, reason);
  }
  const std::vector<CLI::App*> commands = app.get_subcommands();
  if (commands.empty()) throw Tool::Failure(Tool::Texts::badCommandLine("A command is missing"));
  runCommand(commands.front()->get_name(), arguments, log);
}

}  // namespace

int main(int argc, char** argv) {
  Tool::occupyClosedStreams();
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is noticed when it is written to
  Tool::MessageLog log;
  try {
    run(argc, argv, log);
  } catch (const std::exception& failure) {
    log.fail(failure.what());
  }
  if (log.hasErrors()) return FAILED;
  return log.hasWarnings() ? FINDINGS : FINE;
}
