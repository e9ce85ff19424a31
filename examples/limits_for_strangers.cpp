// Reads documents that came from strangers, some of which mean harm.
#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserLimits.h>

#include <fstream>
#include <iostream>
#include <string>

using Plinth::Console;
using Quarry::ParserFile;
using Quarry::ParserLimits;

namespace {

/// Nothing that a document holds makes reading it crash or hang; limits bound what it may ask for.
ParserLimits getLimits() {
  ParserLimits limits;
  limits.includeDepth = 8;
  limits.preprocessedBytes = 1 << 20;      // of all files in all, also of compressed ones
  limits.nestingDepth = 200;               // groups within groups
  limits.includesBelowSearchPaths = true;  // no file from elsewhere, whatever the links say
  return limits;
}

void tryToRead(const std::string& text) {
  std::ofstream("upload.cfg", std::ios::binary) << text;
  ParserFile file;
  file.setSearchPaths({"."});
  file.setLimits(getLimits());
  const bool isRead = file.read("upload.cfg");
  std::cout << (isRead ? "all of it read: " : "not all of it read: ")
            << file.getRoot().getItemCount() << " items\n";
}

}  // namespace

int main() {
  Plinth::console.setHandler(
      [](Console::Level, const std::string& message, const std::string&) { std::cout << message; });

  tryToRead("title \"Harmless\" size 1920 1080");
  tryToRead("again {\n#include \"upload.cfg\"\n}");
  tryToRead("users {\n#include \"/etc/passwd\"\n}");
  tryToRead("large \"" + std::string(2 << 20, ' ') + "\"");

  // A group that is nested too deeply is left out, what is behind it is not.
  std::string deep;
  for (int depth = 0; depth < 100000; ++depth)
    deep += "a{";
  tryToRead(deep + std::string(100000, '}') + "\nbehind yes");
}
