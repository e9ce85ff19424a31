#include "SharedOptions.h"

namespace Tool {

void addFile(Command& command, std::string& file) {
  command.addArgument("FILE", file, "The document; - for standard input").require();
}

void addFiles(Command& command, std::vector<std::string>& files) {
  command.addArguments("FILE", files, "The documents; - for standard input").require();
}

void addSearchPaths(Command& command, std::vector<std::string>& searchPaths) {
  command.addRepeatedOption("-I,--include", "DIR", searchPaths,
                            "Look for documents in DIR first; may be given several times");
}

void addTarget(Command& command, std::string& target) {
  command.addOption("-o,--output", "OUT", target, "Write to OUT; - for standard output");
}

void addColor(Command& command, ColorChoice& color) {
  command.addChoice<ColorChoice>(
      "--color", "WHEN",
      {{"auto", ColorChoice::AUTO}, {"always", ColorChoice::ALWAYS}, {"never", ColorChoice::NEVER}},
      color, "Colours: auto (on a terminal), always, never");
}

void addDepth(Command& command, const std::string& description, unsigned long& depth) {
  command.addNumber("--depth", depth, description);
}

void addQuiet(Command& command, bool& quiet) {
  command.addFlag("-q,--quiet", quiet, "Show no warnings; the exit status tells");
}

void addUnlimited(Command& command, bool& isUnlimited) {
  command.addFlag("--no-limits", isUnlimited,
                  "Read documents of any size, nesting and depth of includes");
}

}  // namespace Tool
