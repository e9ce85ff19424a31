#include "Progress.h"

#include "Output.h"
#include "TerminalText.h"
#include "Utf8.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace Tool {

namespace {

using Clock = std::chrono::steady_clock;

const Clock::time_point START = Clock::now();  ///< of the program
bool isOneShown = false;                       ///< only the first thread asks

constexpr std::chrono::seconds PATIENCE(1);       ///< before the first line
constexpr std::chrono::milliseconds PERIOD(200);  ///< between two lines
constexpr std::size_t LONGEST_TEXT = 60;          ///< so that the line fits into most terminals
constexpr char ERASE[] = "\r\033[K";

bool isWanted() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

/// The end of a path tells more than its beginning.
std::string shorten(const std::string& text) {
  if (text.size() <= LONGEST_TEXT) return text;
  std::size_t begin = text.size() - LONGEST_TEXT;
  while (begin < text.size() && isUtf8Follower(text[begin]))
    ++begin;
  return "..." + text.substr(begin);
}

}  // namespace

/// Without a thread there is no line: the work is done all the same.
Progress::Progress(const std::string& work) : text(work) {
  if (isOneShown || !isWanted()) return;
  try {
    thread = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    return;
  }
  isOneShown = true;
}

Progress::~Progress() {
  if (!thread.joinable()) return;
  {
    const std::lock_guard lock(mutex);
    hasEnded = true;
  }
  ended.notify_one();
  thread.join();
  isOneShown = false;
}

void Progress::run() {
  std::unique_lock lock(mutex);
  Clock::time_point next = START + PATIENCE;
  while (!ended.wait_until(lock, next, [this] { return hasEnded; })) {
    draw();
    next = Clock::now() + PERIOD;
  }
  if (isDrawn) (void)writeAll(STDERR_FILENO, ERASE);
}

/// Nothing can be done where the terminal takes no text.
void Progress::draw() {
  const std::string shown = escapeForTerminal(shorten(text), Layout::ESCAPED, isUtf8Environment());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - START);
  (void)writeAll(STDERR_FILENO, ERASE + shown + " (" + std::to_string(seconds.count()) + " s)");
  isDrawn = true;
}

}  // namespace Tool
