// Collects the library's messages instead of leaving them to standard error.
#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>

#include <iostream>
#include <string>
#include <vector>

using Plinth::Console;

int main() {
  std::vector<std::string> log;
  const Console::Handler previous = Plinth::console.setHandler(
      [&log](Console::Level level, const std::string& message, const std::string& second) {
        const bool grave = level == Console::LEVEL_ERROR;
        log.push_back((grave ? "error: " : "note: ") + message + second);
      });

  // The parser drops what it cannot read, tells where it stood, and goes on.
  Quarry::ParserGroup root("root");
  root.setText(
      "size 1920,, 1080\n"
      "on yes\n",
      1.1);

  // A value is asked for a type that it does not have.
  root.getItem("on")->getString(0);

  Plinth::console.setHandler(previous);

  for (const std::string& line : log)
    std::cout << line;
  std::cout << log.size() << " messages, " << root.getItemCount() << " items\n";
}
