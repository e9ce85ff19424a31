#include "RecordingConsole.h"

#include <utility>

namespace TestSupport {

RecordingConsole::RecordingConsole()
    : previous(Plinth::console.setHandler(
          [this](Plinth::Console::Level level, const std::string& text, const std::string& second) {
            messages.push_back({level, text, second});
          })) {}

RecordingConsole::~RecordingConsole() { Plinth::console.setHandler(std::move(previous)); }

std::vector<std::string> RecordingConsole::getTexts(Plinth::Console::Level level) const {
  std::vector<std::string> texts;
  for (const Message& message : messages) {
    if (message.level == level) texts.push_back(message.text);
  }
  return texts;
}

}  // namespace TestSupport
