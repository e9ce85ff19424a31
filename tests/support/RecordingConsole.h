/// Catches what goes to the console while a test runs.
#pragma once

#include <Plinth/Console.h>

#include <string>
#include <vector>

namespace TestSupport {

struct Message {
  Plinth::Console::Level level;
  std::string text;
  std::string second;

  bool operator==(const Message&) const = default;
};

/// Records every message from its construction to its destruction; nothing reaches standard error.
class RecordingConsole {
 public:
  RecordingConsole();
  RecordingConsole(const RecordingConsole&) = delete;
  RecordingConsole& operator=(const RecordingConsole&) = delete;
  ~RecordingConsole();

  const std::vector<Message>& getMessages() const { return messages; }

  /// Returns the texts of one level, in order.
  std::vector<std::string> getTexts(Plinth::Console::Level level) const;
  std::vector<std::string> getWarnings() const { return getTexts(Plinth::Console::LEVEL_WARNING); }

  bool isSilent() const { return messages.empty(); }
  void clear() { messages.clear(); }

 private:
  std::vector<Message> messages;
  Plinth::Console::Handler previous;
};

}  // namespace TestSupport
