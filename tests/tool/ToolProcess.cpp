#include "ToolProcess.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <system_error>
#include <thread>

namespace ToolTest {

namespace {

constexpr int NONE = -1;

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// An open file, closed with this object.
class Descriptor {
 public:
  explicit Descriptor(int opened) : number(opened) {
    if (number < 0) fail("cannot open");
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  int get() const { return number; }
  void close() {
    if (number >= 0) ::close(number);
    number = NONE;
  }

 private:
  int number;
};

/// Makes an unnamed file.
int makeFile() { return open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); }

void writeBytes(int file, const std::string& bytes) {
  const ssize_t written = write(file, bytes.data(), bytes.size());
  if (written != static_cast<ssize_t>(bytes.size()) || lseek(file, 0, SEEK_SET) != 0) fail("write");
}

/// Reads to the end; a terminal ends with an error when its last writer is gone.
std::string readBytes(int file) {
  std::string bytes;
  std::array<char, 4096> block;
  for (;;) {
    const ssize_t count = read(file, block.data(), block.size());
    if (count <= 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

std::string readFromBeginning(int file) {
  if (lseek(file, 0, SEEK_SET) != 0) fail("seek");
  return readBytes(file);
}

/// The standard streams of a process; NONE for a closed one.
struct Streams {
  int input;
  int output;
  int messages;
};

void redirect(int from, int to) {
  if (from == NONE) {
    close(to);
  } else {
    dup2(from, to);
  }
}

[[noreturn]] void becomeTool(const Arguments& arguments, const Streams& streams,
                             const Environment& environment) {
  redirect(streams.input, STDIN_FILENO);
  redirect(streams.output, STDOUT_FILENO);
  redirect(streams.messages, STDERR_FILENO);
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);  // also what others left open
  unsetenv("NO_COLOR");
  for (const auto& [name, value] : environment)
    setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> words = {const_cast<char*>("quarry")};
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.c_str()));
  }
  words.push_back(nullptr);
  execv(QUARRY_TOOL_PATH, words.data());
  _exit(127);
}

pid_t startTool(const Arguments& arguments, const Streams& streams,
                const Environment& environment = {}) {
  const pid_t process = fork();
  if (process < 0) fail("fork");
  if (process == 0) becomeTool(arguments, streams, environment);
  return process;
}

int waitFor(pid_t process) {
  int status = 0;
  if (waitpid(process, &status, 0) != process) fail("wait");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A terminal that passes bytes through as they are.
struct Terminal {
  Terminal() {
    struct termios modes = {};
    cfmakeraw(&modes);
    if (openpty(&outside, &inside, nullptr, &modes, nullptr) != 0) fail("openpty");
  }

  int outside = NONE;
  int inside = NONE;
};

const Environment TERMINAL_ENVIRONMENT = {{"LC_ALL", "C.UTF-8"}, {"TERM", "xterm"}};

/// Runs the tool with standard output at `output` and the others in files.
Result runInto(int output, const Arguments& arguments, const std::string& input) {
  const Descriptor inputFile(makeFile());
  const Descriptor messages(makeFile());
  writeBytes(inputFile.get(), input);
  Result result;
  result.status = waitFor(startTool(arguments, {inputFile.get(), output, messages.get()}));
  result.messages = readFromBeginning(messages.get());
  return result;
}

}  // namespace

void PrintTo(const Result& result, std::ostream* stream) {
  *stream << "status " << result.status << "\noutput: " << result.output
          << "\nmessages: " << result.messages;
}

Result runTool(const Arguments& arguments, const std::string& input) {
  const Descriptor output(makeFile());
  Result result = runInto(output.get(), arguments, input);
  result.output = readFromBeginning(output.get());
  return result;
}

Result runOnTerminal(const Arguments& arguments, const std::string& input,
                     const Environment& environment) {
  const Terminal terminal;
  Descriptor inside(terminal.inside);
  const Descriptor outside(terminal.outside);
  const Descriptor inputFile(makeFile());
  const Descriptor messages(makeFile());
  writeBytes(inputFile.get(), input);
  Environment whole = environment;
  whole.insert(TERMINAL_ENVIRONMENT.begin(), TERMINAL_ENVIRONMENT.end());
  const pid_t process =
      startTool(arguments, {inputFile.get(), inside.get(), messages.get()}, whole);
  inside.close();
  Result result;
  result.output = readBytes(outside.get());
  result.status = waitFor(process);
  result.messages = readFromBeginning(messages.get());
  return result;
}

Result runWithMessagesOnTerminal(const Arguments& arguments, const std::string& input) {
  const Terminal terminal;
  Descriptor inside(terminal.inside);
  const Descriptor outside(terminal.outside);
  const Descriptor inputFile(makeFile());
  const Descriptor output(makeFile());
  writeBytes(inputFile.get(), input);
  const pid_t process =
      startTool(arguments, {inputFile.get(), output.get(), inside.get()}, TERMINAL_ENVIRONMENT);
  inside.close();
  Result result;
  result.messages = readBytes(outside.get());
  result.status = waitFor(process);
  result.output = readFromBeginning(output.get());
  return result;
}

Result runWithSlowInput(const Arguments& arguments, const std::string& input, int milliseconds) {
  const Terminal terminal;
  Descriptor inside(terminal.inside);
  const Descriptor outside(terminal.outside);
  const Descriptor output(makeFile());
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("pipe");
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const pid_t process =
      startTool(arguments, {reading.get(), output.get(), inside.get()}, TERMINAL_ENVIRONMENT);
  inside.close();
  reading.close();
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  if (write(writing.get(), input.data(), input.size()) < 0) fail("write");
  writing.close();
  Result result;
  result.messages = readBytes(outside.get());
  result.status = waitFor(process);
  result.output = readFromBeginning(output.get());
  return result;
}

Result runIntoFullDevice(const Arguments& arguments, const std::string& input) {
  const Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  return runInto(full.get(), arguments, input);
}

Result runIntoBrokenPipe(const Arguments& arguments, const std::string& input) {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("pipe");
  const Descriptor writing(ends[1]);
  close(ends[0]);
  return runInto(writing.get(), arguments, input);
}

Result runIntoClosedOutput(const Arguments& arguments, const std::string& input) {
  return runInto(NONE, arguments, input);
}

Result runWithOneFile(const Arguments& arguments, const std::string& input) {
  struct rlimit before = {};
  if (getrlimit(RLIMIT_NOFILE, &before) != 0) fail("getrlimit");
  const Descriptor inputFile(makeFile());
  const Descriptor output(makeFile());
  const Descriptor messages(makeFile());
  writeBytes(inputFile.get(), input);
  const struct rlimit one = {STDERR_FILENO + 2, before.rlim_max};
  if (setrlimit(RLIMIT_NOFILE, &one) != 0) fail("setrlimit");
  const pid_t process = startTool(arguments, {inputFile.get(), output.get(), messages.get()});
  if (setrlimit(RLIMIT_NOFILE, &before) != 0) fail("setrlimit");
  Result result;
  result.status = waitFor(process);
  result.output = readFromBeginning(output.get());
  result.messages = readFromBeginning(messages.get());
  return result;
}

Result runWithoutInput(const Arguments& arguments) {
  const Descriptor output(makeFile());
  const Descriptor messages(makeFile());
  Result result;
  result.status = waitFor(startTool(arguments, {NONE, output.get(), messages.get()}));
  result.output = readFromBeginning(output.get());
  result.messages = readFromBeginning(messages.get());
  return result;
}

}  // namespace ToolTest
