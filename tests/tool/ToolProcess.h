/// Runs the built tool as a process.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace ToolTest {

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

/// What a finished run left behind.
struct Result {
  int status = -1;  ///< the exit status; -1 when a signal ended the tool
  std::string output;
  std::string messages;

  bool operator==(const Result&) const = default;
};

/// Makes a failing test readable.
void PrintTo(const Result& result, std::ostream* stream);

/// Runs the tool with its streams in files.
Result runTool(const Arguments& arguments, const std::string& input = std::string());

/// Runs the tool with standard output on a terminal, in an environment of UTF-8 that `environment`
/// adds to.
Result runOnTerminal(const Arguments& arguments, const std::string& input,
                     const Environment& environment = {});

/// Runs the tool with standard error on a terminal.
Result runWithMessagesOnTerminal(const Arguments& arguments, const std::string& input);

/// Runs the tool with standard error on a terminal and input that comes only after a while.
Result runWithSlowInput(const Arguments& arguments, const std::string& input, int milliseconds);

/// Runs the tool with standard output into a full device, into a pipe that nobody reads, or closed.
Result runIntoFullDevice(const Arguments& arguments, const std::string& input);
Result runIntoBrokenPipe(const Arguments& arguments, const std::string& input);
Result runIntoClosedOutput(const Arguments& arguments, const std::string& input);

/// Runs the tool with standard input closed.
Result runWithoutInput(const Arguments& arguments);

/// Runs the tool so that it can open no more than one file at a time beside its streams.
Result runWithOneFile(const Arguments& arguments, const std::string& input);

}  // namespace ToolTest
