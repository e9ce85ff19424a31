#include "MessageLog.h"

#include "Output.h"
#include "TerminalText.h"
#include "Texts.h"

#include <unistd.h>

#include <utility>

namespace Tool {

MessageLog::MessageLog()
    : previous(Plinth::console.setHandler(
          [this](Plinth::Console::Level level, const std::string& message,
                 const std::string& second) { take(level, message + second); })) {}

MessageLog::~MessageLog() { Plinth::console.setHandler(std::move(previous)); }

void MessageLog::fail(const std::string& message) {
  ++errors;
  writeLine(Texts::ERROR, message);
}

/// The library prints some of what is wrong with a binary document: that counts as a warning.
void MessageLog::take(Plinth::Console::Level level, const std::string& message) {
  if (level == Plinth::Console::LEVEL_ERROR) return fail(message);
  if (level == Plinth::Console::LEVEL_DEBUG) return;
  ++warnings;
  if (!quiet) writeLine(Texts::WARNING, message);
}

/// There is nobody left to tell when standard error fails.
void MessageLog::writeLine(const std::string& prefix, const std::string& message) const {
  std::string line = message;
  while (!line.empty() && line.back() == '\n')
    line.pop_back();
  if (isatty(STDERR_FILENO) == 1) {
    line = escapeForTerminal(line, Layout::ESCAPED, isUtf8Environment());
  }
  (void)writeAll(STDERR_FILENO, prefix + line + "\n");
}

}  // namespace Tool
