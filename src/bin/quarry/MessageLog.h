/// What the library and the tool have to say, on standard error.
#pragma once

#include <Plinth/Console.h>

#include <string>

namespace Tool {

/// Takes the library's messages while it lives: writes them to standard error, one line each, and
/// remembers how grave they were.
class MessageLog {
 public:
  MessageLog();
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;
  ~MessageLog();

  /// Makes warnings silent; they are counted all the same.
  void setQuiet(bool on) { quiet = on; }

  /// Reports why a command failed.
  void fail(const std::string& message);

  bool hasWarnings() const { return warnings > 0; }
  bool hasErrors() const { return errors > 0; }

 private:
  void take(Plinth::Console::Level level, const std::string& message);
  void writeLine(const std::string& prefix, const std::string& message) const;

  bool quiet = false;
  unsigned long warnings = 0;
  unsigned long errors = 0;
  Plinth::Console::Handler previous;
};

}  // namespace Tool
