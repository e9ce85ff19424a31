// Runs a fuzz target over inputs that are there already, in any kind of build:
//
//   fuzz_TARGET FOLDER...             every file of each folder has to pass
//   fuzz_TARGET --bounded FOLDER...   and none may take too much time or memory

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "Fuzz.h"

namespace {

namespace fs = std::filesystem;

constexpr double MOST_SECONDS = 1.0;
constexpr double MOST_MEGABYTES = 512.0;

std::vector<std::string> listFiles(const std::string& folder) {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  if (files.empty()) throw std::runtime_error("no inputs in " + folder);
  std::sort(files.begin(), files.end());
  return files;
}

void run(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw std::runtime_error("cannot read " + path);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

/// What an input took.
struct Cost {
  double seconds = 0.0;  ///< of the processor
  double megabytes = 0.0;
};

/// Runs an input in a process of its own.
Cost measure(const std::string& path) {
  const pid_t child = fork();
  if (child == 0) {
    run(path);
    _exit(0);
  }
  int status = 0;
  rusage usage = {};
  if (wait4(child, &status, 0, &usage) != child || status != 0)
    throw std::runtime_error(path + " does not pass");
  const auto toSeconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return {toSeconds(usage.ru_utime) + toSeconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

/// Prints the highest costs; returns whether all are within the bounds.
bool measureAll(const std::vector<std::string>& files) {
  Cost highest;
  std::string slowest;
  std::string largest;
  for (const std::string& file : files) {
    const Cost cost = measure(file);
    if (cost.seconds >= highest.seconds) slowest = file;
    if (cost.megabytes >= highest.megabytes) largest = file;
    highest = {std::max(highest.seconds, cost.seconds),
               std::max(highest.megabytes, cost.megabytes)};
  }
  std::printf("%zu inputs\n  slowest %8.3f s   %s\n  largest %8.1f MB  %s\n", files.size(),
              highest.seconds, slowest.c_str(), highest.megabytes, largest.c_str());
  return highest.seconds <= MOST_SECONDS && highest.megabytes <= MOST_MEGABYTES;
}

bool replay(const std::vector<std::string>& arguments) {
  const bool isBounded = !arguments.empty() && arguments.front() == "--bounded";
  std::vector<std::string> files;
  for (std::size_t i = isBounded ? 1 : 0; i < arguments.size(); ++i) {
    const std::vector<std::string> found = listFiles(arguments[i]);
    files.insert(files.end(), found.begin(), found.end());
  }
  if (files.empty()) throw std::runtime_error("usage: [--bounded] FOLDER...");
  if (isBounded) return measureAll(files);
  for (const std::string& file : files)
    run(file);
  std::printf("%zu inputs\n", files.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return replay(std::vector<std::string>(argv + 1, argv + argc)) ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
