// Measures `quarry check` against the library's own reading of the same documents:
//
//     QuarryCheckBenchmark TOOL [ROUNDS]
//
// The documents have 100 MB: one without warnings, and one with a comment on each line. Each round
// reads a document into a tree in a process of its own, and lets the tool check it in another;
// times are those of whole processes. Prints the medians as a table in Markdown. The exit status is
// 1 when a check takes more than twice as long as reading.

#include <Quarry/ParserFile.h>

#include "../DocumentTexts.h"
#include "../TemporaryFolder.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr unsigned long DOCUMENT_SIZE = 100UL << 20;
constexpr double LARGEST_RATIO = 2.0;
constexpr char READ_OPTION[] = "--read";

/// What a process took.
struct Cost {
  double seconds = 0.0;
  double megabytes = 0.0;  ///< of memory, at most at a time
};

Cost runProcess(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const auto begin = std::chrono::steady_clock::now();
  pid_t process = 0;
  if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
    throw std::runtime_error("cannot start " + words[0]);
  }
  int status = 0;
  struct rusage usage = {};
  if (wait4(process, &status, 0, &usage) != process || status != 0) {
    throw std::runtime_error(words[0] + " failed");
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  return {seconds.count(), static_cast<double>(usage.ru_maxrss) / 1024.0};
}

double getMedian(std::vector<double> numbers) {
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

// --- Documents -----------------------------------------------------------------------------------

struct Document {
  std::string name;
  std::string path;
  double megabytes;
};

Document write(const std::string& folder, const std::string& name, const std::string& text) {
  const std::string path = folder + "/" + name + ".cfg";
  std::ofstream file(path, std::ios::binary);
  file << "#SerialVersion 1.1\n" << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  return {name, path, static_cast<double>(text.size()) / (1 << 20)};
}

std::string addComments(const std::string& text) {
  std::string commented;
  for (const char byte : text) {
    if (byte == '\n') commented += "  // as agreed, see notes";
    commented += byte;
  }
  return commented;
}

std::vector<Document> makeDocuments(const std::string& folder) {
  using QuarryBenchmarks::makeProjectText;
  return {write(folder, "plain", makeProjectText(DOCUMENT_SIZE)),
          write(folder, "commented", addComments(makeProjectText(DOCUMENT_SIZE / 2)))};
}

// --- Measuring -----------------------------------------------------------------------------------

/// @return whether the check was quick enough
bool measure(const std::string& self, const std::string& tool, const Document& document,
             unsigned long rounds) {
  std::vector<double> readTimes;
  std::vector<double> checkTimes;
  std::vector<double> ratios;
  Cost read;
  Cost check;
  for (unsigned long round = 0; round < rounds; ++round) {
    read = runProcess({self, READ_OPTION, document.path});
    check = runProcess({tool, "check", document.path});
    readTimes.push_back(read.seconds);
    checkTimes.push_back(check.seconds);
    ratios.push_back(check.seconds / read.seconds);
  }
  const double ratio = getMedian(ratios);
  std::printf("| %s | %.0f | %.2f | %.2f | %.2f | %.0f | %.0f |\n", document.name.c_str(),
              document.megabytes, getMedian(readTimes), getMedian(checkTimes), ratio,
              read.megabytes, check.megabytes);
  return ratio <= LARGEST_RATIO;
}

int readDocument(const std::string& path) {
  Quarry::ParserFile file;
  return file.read(path) ? 0 : 1;
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.size() == 3 && arguments[1] == READ_OPTION) return readDocument(arguments[2]);
  if (arguments.size() < 2) throw std::runtime_error("the path of the tool is missing");
  const unsigned long rounds = arguments.size() > 2 ? std::stoul(arguments[2]) : 5;
  const QuarryBenchmarks::TemporaryFolder folder;
  std::printf(
      "| Document | MB | Read, s | Check, s | Ratio | Read, MB of memory | Check, MB of memory |\n"
      "|---|---|---|---|---|---|---|\n");
  bool isQuick = true;
  for (const Document& document : makeDocuments(folder.getPath()))
    isQuick = measure(arguments[0], arguments[1], document, rounds) && isQuick;
  return isQuick ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(std::vector<std::string>(argv, argv + argc));
  } catch (const std::exception& failure) {
    std::cerr << "QuarryCheckBenchmark: " << failure.what() << '\n';
    return 2;
  }
}
