/// Reading once more without being told of the same things again.
#pragma once

#include <Plinth/Console.h>

#include <string>
#include <utility>

namespace Tool {

/// Keeps the library silent for as long as this lives.
class SilentConsole {
 public:
  SilentConsole()
      : previous(Plinth::console.setHandler(
            [](Plinth::Console::Level, const std::string&, const std::string&) {})) {}
  SilentConsole(const SilentConsole&) = delete;
  SilentConsole& operator=(const SilentConsole&) = delete;
  ~SilentConsole() { Plinth::console.setHandler(std::move(previous)); }

 private:
  Plinth::Console::Handler previous;
};

}  // namespace Tool
