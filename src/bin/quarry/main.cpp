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
    "Shows, searches and converts documents of named items with typed values.\n"
    "\n"
    "Exit status: 0 fine, 1 the document drew warnings or nothing was found, 2 it cannot be read,\n"
    "the result cannot be written, or the command line is wrong.";

/// What the command line asks for.
struct Arguments {
  std::string file;
  std::string target = "-";
  std::string pattern;
  bool inverted = false;
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
  command->add_flag("-q,--quiet", arguments.quiet, "Show no warnings; the exit status tells");
  command->footer("Examples:\n" + examples);
  return command;
}

void addSearchPaths(CLI::App* command, Arguments& arguments) {
  command
      ->add_option("-I,--include", arguments.searchPaths,
                   "Look for documents in DIR first; may be given several times")
      ->allow_extra_args(false)
      ->option_text("DIR");
}

void addTarget(CLI::App* command, Arguments& arguments) {
  command->add_option("-o,--output", arguments.target, "Write to OUT; - for standard output")
      ->option_text("OUT");
}

/// Says more about a command, before its examples.
void addNotes(CLI::App* command, const std::string& notes) {
  command->footer(notes + "\n" + command->get_footer());
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

void addDepth(CLI::App* command, const std::string& description, Arguments& arguments) {
  command->add_option("--depth", arguments.depthLimit, description)
      ->check(findFaultOfDepth)
      ->option_text("N");
}

// --- The commands --------------------------------------------------------------------------------

void addTree(CLI::App& app, Arguments& arguments) {
  CLI::App* command = addCommand(app, "tree", "Shows the items as a tree, one a line",
                                 "  quarry tree project.cfg\n"
                                 "  quarry tree --depth 0 project.cfg\n"
                                 "  quarry tree --color=always project.cfg | less -R",
                                 arguments);
  addSearchPaths(command, arguments);
  addColor(command, arguments);
  addDepth(command, "Show no more than N levels of nested groups", arguments);
}

void addFind(CLI::App& app, Arguments& arguments) {
  CLI::App* command = addCommand(app, "find", "Shows the items whose name matches, at any depth",
                                 "  quarry find project.cfg '^fov$'\n"
                                 "  quarry find --depth 0 project.cfg ''\n"
                                 "  quarry find -q project.cfg camera >/dev/null && echo found",
                                 arguments);
  command
      ->add_option("PATTERN", arguments.pattern, "A regular expression, found anywhere in a name")
      ->required()
      ->option_text(" ");
  command->add_flag("--not", arguments.inverted, "Show the items whose name does not match");
  addSearchPaths(command, arguments);
  addColor(command, arguments);
  addDepth(command, "Look into no more than N levels of nested groups", arguments);
  addNotes(command,
           "The names of the groups around an item stand before its own: scene/layer#2/name is in\n"
           "the second layer of the first scene. Paths of more than 1000 bytes begin with '...'.\n"
           "Keywords are passed over.\n"
           "\n"
           "Exit status: 0 found, 1 nothing found or the document drew warnings, 2 the document\n"
           "cannot be read or PATTERN is no regular expression.\n");
}

void addWords(CLI::App& app, Arguments& arguments) {
  CLI::App* command =
      addCommand(app, "words", "Shows the words of the text: line:column, kind and spelling",
                 "  quarry words project.cfg\n"
                 "  echo 'size 1920 1080' | quarry words -",
                 arguments);
  addSearchPaths(command, arguments);
  addColor(command, arguments);
}

void addExpand(CLI::App& app, Arguments& arguments) {
  CLI::App* command =
      addCommand(app, "expand", "Writes the text with includes expanded and comments dropped",
                 "  quarry expand project.cfg\n"
                 "  quarry expand -I shared -I /usr/share/studio project.cfg",
                 arguments);
  addSearchPaths(command, arguments);
}

void addRewrite(CLI::App& app, Arguments& arguments) {
  CLI::App* command =
      addCommand(app, "rewrite", "Reads the document and writes it in the library's layout",
                 "  quarry rewrite project.cfg | diff -u project.cfg -\n"
                 "  quarry rewrite project.cfg -o project-new.cfg",
                 arguments);
  addSearchPaths(command, arguments);
  addTarget(command, arguments);
}

void addEncode(CLI::App& app, Arguments& arguments) {
  CLI::App* command = addCommand(app, "encode", "Writes the document in the binary form",
                                 "  quarry encode project.cfg -o project.qdb\n"
                                 "  quarry encode project.cfg | xxd",
                                 arguments);
  addSearchPaths(command, arguments);
  addTarget(command, arguments);
}

void addDecode(CLI::App& app, Arguments& arguments) {
  CLI::App* command = addCommand(app, "decode", "Writes the text of a document in the binary form",
                                 "  quarry decode project.qdb -o project.cfg\n"
                                 "  quarry encode project.cfg | quarry decode - | less",
                                 arguments);
  addTarget(command, arguments);
  addNotes(
      command,
      "Numbers are written in digits; how they were spelled in the text before, 1.50 or 1.5,\n"
      "the binary form does not keep. Neither does it tell calls from plain items. Items\n"
      "'#SerialVersion' are left out: the text declares its own version.\n"
      "\n"
      "When the data is broken within a group, or the text does not read back as the same\n"
      "document, the text is written with a warning. When the data is broken elsewhere, or has\n"
      "a name that no text can have, nothing is written.\n");
}

void addCommands(CLI::App& app, Arguments& arguments) {
  addTree(app, arguments);
  addFind(app, arguments);
  addWords(app, arguments);
  addExpand(app, arguments);
  addRewrite(app, arguments);
  addEncode(app, arguments);
  addDecode(app, arguments);
}

// --- Running -------------------------------------------------------------------------------------

Tool::ColorChoice getColorChoice(const std::string& word) {
  if (word == "always") return Tool::ColorChoice::ALWAYS;
  if (word == "never") return Tool::ColorChoice::NEVER;
  return Tool::ColorChoice::AUTO;
}

/// Returns false when what was looked for is not there.
bool runCommand(const std::string& command, const Arguments& arguments, Tool::MessageLog& log) {
  log.setQuiet(arguments.quiet);
  Tool::Output output(getColorChoice(arguments.color));
  const Tool::Document document(arguments.file, arguments.searchPaths, log);
  bool found = true;
  if (command == "tree") Tool::showTree(document, arguments.depthLimit, output);
  if (command == "words") Tool::showWords(document, output);
  if (command == "expand") Tool::writeExpanded(document, output);
  if (command == "rewrite") Tool::rewrite(document, arguments.target, output);
  if (command == "encode") Tool::encode(document, arguments.target, output);
  if (command == "decode") Tool::decode(document, arguments.target, output);
  if (command == "find") {
    found =
        Tool::find(document, {arguments.pattern, arguments.inverted, arguments.depthLimit}, output);
  }
  output.flush();
  return found;
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
  Arguments arguments;
  app.set_version_flag("--version", "quarry " QUARRY_VERSION);
  app.require_subcommand(0, 1);  // a word that is no command is then named as such
  app.footer("quarry COMMAND --help tells more about a command.");
  addCommands(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& reason) {
    answer(app, reason);
    return FINE;
  }
  const std::vector<CLI::App*> commands = app.get_subcommands();
  if (commands.empty()) throw Tool::Failure(Tool::Texts::badCommandLine("A command is missing"));
  const bool found = runCommand(commands.front()->get_name(), arguments, log);
  return found && !log.hasWarnings() ? FINE : FINDINGS;
}

}  // namespace

int main(int argc, char** argv) {
  Tool::occupyClosedStreams();
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is noticed when it is written to
  Tool::MessageLog log;
  try {
    const ExitStatus status = run(argc, argv, log);
    return log.hasErrors() ? FAILED : status;
  } catch (const Tool::ReaderGone&) {
    return FAILED;
  } catch (const std::exception& failure) {
    log.fail(failure.what());
    return FAILED;
  }
}
