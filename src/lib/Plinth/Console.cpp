#include <Plinth/Console.h>

#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace Plinth {

namespace {

/// What the process's consoles share. A null handler stands for the default one.
struct State {
  std::recursive_mutex mutex;  // recursive, because a handler may use the console
  std::shared_ptr<const Console::Handler> handler;
};

/// Never destroyed: destructors of static objects report, too.
State& getState() {
  static State& state = *new State;
  return state;
}

void writeToStandardError(const std::string& text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

void handleByDefault(Console::Level level, const std::string& message, const std::string& second) {
  if (level == Console::LEVEL_DEBUG) return;
  writeToStandardError(second.empty() ? message : message + second);
}

void report(Console::Level level, const std::string& message, const std::string& second) {
  State& state = getState();
  // Declared before the lock, so that a handler replaced while it runs is destroyed unlocked.
  std::shared_ptr<const Console::Handler> handler;
  const std::lock_guard lock(state.mutex);
  handler = state.handler;
  if (handler) {
    (*handler)(level, message, second);
  } else {
    handleByDefault(level, message, second);
  }
}

}  // namespace

constinit Console console;

// --- Reports -------------------------------------------------------------------------------------

void Console::print(const std::string& message, const std::string& second) {
  report(LEVEL_PRINT, message, second);
}

void Console::debug(const std::string& message, const std::string& second) {
  report(LEVEL_DEBUG, message, second);
}

void Console::warning(const std::string& message, const std::string& second) {
  report(LEVEL_WARNING, message, second);
}

void Console::error(const std::string& message, const std::string& second) {
  report(LEVEL_ERROR, message, second);
}

// --- Handler -------------------------------------------------------------------------------------

Console::Handler Console::setHandler(Handler handler) {
  std::shared_ptr<const Handler> next;
  if (handler) next = std::make_shared<const Handler>(std::move(handler));
  State& state = getState();
  const std::lock_guard lock(state.mutex);
  Handler previous = state.handler ? *state.handler : Handler();
  state.handler.swap(next);
  return previous;
}

}  // namespace Plinth
