#include "Output.h"

#include "Failure.h"
#include "TerminalText.h"
#include "Texts.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace Tool {

namespace {

constexpr std::size_t BUFFER_SIZE = 1 << 16;
constexpr char PLAIN[] = "\033[0m";

const char* getColor(Style style) {
  switch (style) {
    case Style::NAME: return "\033[1m";
    case Style::KEYWORD: return "\033[1;35m";
    case Style::CALL: return "\033[1;34m";
    case Style::TYPE: return "\033[2m";
    case Style::NUMBER: return "\033[36m";
    case Style::STRING: return "\033[32m";
    case Style::BOOL: return "\033[33m";
    case Style::BINARY: return "\033[35m";
    case Style::MARK: return "\033[2m";
    case Style::ODD:
    case Style::REMOVED: return "\033[31m";
    case Style::ADDED: return "\033[32m";
  }
  return PLAIN;
}

std::string getEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

bool isColored(ColorChoice choice) {
  if (choice != ColorChoice::AUTO) return choice == ColorChoice::ALWAYS;
  return isatty(STDOUT_FILENO) == 1 && getEnvironment("NO_COLOR").empty() &&
         getEnvironment("TERM") != "dumb";
}

}  // namespace

Output::Output(ColorChoice color)
    : colored(isColored(color)),
      escaped(colored || isatty(STDOUT_FILENO) == 1),
      utf8(isUtf8Environment()) {}

void Output::write(std::string_view bytes) {
  buffer += bytes;
  if (buffer.size() >= BUFFER_SIZE) flush();
}

void Output::writeText(std::string_view bytes) {
  if (escaped) {
    write(getShown(bytes));
  } else {
    write(bytes);
  }
}

std::string Output::getShown(std::string_view bytes) const {
  return escaped ? escapeForTerminal(bytes, Layout::KEPT, utf8) : std::string(bytes);
}

void Output::writeWord(Style style, std::string_view bytes) {
  if (colored) write(getColor(style));
  if (escaped) {
    write(escapeForTerminal(bytes, Layout::ESCAPED, utf8));
  } else {
    write(bytes);
  }
  if (colored) write(PLAIN);
}

void Output::flush() {
  const std::string bytes = std::move(buffer);
  buffer.clear();
  if (writeAll(STDOUT_FILENO, bytes)) return;
  if (errno == EPIPE) throw ReaderGone();
  throw Failure(Texts::cannotWriteOutput(strerror(errno)));
}

/// Each is opened for what nobody does with it: input for writing, output for reading.
void occupyClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

void writeFile(const std::string& name, std::string_view bytes) {
  const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  bool isWritten = file >= 0 && writeAll(file, bytes);
  int reason = errno;
  if (file >= 0 && close(file) != 0 && isWritten) {
    isWritten = false;
    reason = errno;
  }
  if (!isWritten) throw Failure(Texts::cannotWrite(name, strerror(reason)));
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace Tool
