/// Counts what goes to the console while a test runs.
#pragma once

#include <Plinth/Console.h>

#include <string>

namespace TestSupport {

/// Counts every message from its construction to its destruction and keeps only the last one, where
/// there may be millions of them. Nothing reaches standard error.
class CountingConsole {
 public:
  CountingConsole()
      : previous(Plinth::console.setHandler(
            [this](Plinth::Console::Level, const std::string& message, const std::string&) {
              ++count;
              last = message;
            })) {}
  CountingConsole(const CountingConsole&) = delete;
  CountingConsole& operator=(const CountingConsole&) = delete;
  ~CountingConsole() { Plinth::console.setHandler(previous); }

  unsigned long getCount() const { return count; }
  const std::string& getLast() const { return last; }

 private:
  unsigned long count = 0;
  std::string last;
  Plinth::Console::Handler previous;
};

}  // namespace TestSupport
