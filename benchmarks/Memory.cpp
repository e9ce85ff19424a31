#include "Memory.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace QuarryBenchmarks {

namespace {

constexpr char OPTION[] = "--memory-of";
constexpr double ENOUGH_BYTES = 64.0 * 1024.0 * 1024.0;
constexpr std::chrono::seconds ENOUGH_TIME(1);

/// Returns the anonymous memory of this process that is in use. "smaps_rollup" counts page by page,
/// "status" may be some hundred kilobytes behind.
double getAnonymousBytes() {
  malloc_trim(0);
  std::ifstream file("/proc/self/smaps_rollup");
  std::string word;
  while (file >> word) {
    if (word != "Anonymous:") continue;
    double kilobytes = 0.0;
    file >> kilobytes;
    return kilobytes * 1024.0;
  }
  throw std::runtime_error("/proc/self/smaps_rollup does not tell the anonymous memory");
}

void writeFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Runs a command and returns what it prints.
std::string run(const std::string& command) {
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  std::array<char, 256> buffer{};
  const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe);
  if (pclose(pipe) != 0) throw std::runtime_error("failed: " + command);
  return std::string(buffer.data(), size);
}

}  // namespace

double measureGrowth(const std::function<std::shared_ptr<void>()>& makeTree) {
  std::vector<std::shared_ptr<void>> trees;
  const auto begin = std::chrono::steady_clock::now();
  const double before = getAnonymousBytes();
  for (std::size_t count = 1;; count *= 2) {
    while (trees.size() < count)
      trees.push_back(makeTree());
    const double growth = getAnonymousBytes() - before;
    const bool isLate = std::chrono::steady_clock::now() - begin > ENOUGH_TIME;
    if (isLate || growth > ENOUGH_BYTES) return growth / static_cast<double>(count);
  }
}

double measureMemoryInNewProcess(const Peer& peer, const Source& source, const std::string& path) {
  writeFile(path, source.text);
  const std::string self = std::filesystem::read_symlink("/proc/self/exe");
  return std::stod(run("'" + self + "' " + OPTION + " '" + peer.name + "' '" + path + "' " +
                       std::to_string(source.version)));
}

bool runMemoryMeasurement(int argc, char** argv) {
  if (argc != 5 || std::string(argv[1]) != OPTION) return false;
  const Source source = {readFile(argv[3]), std::stod(argv[4])};
  for (const Peer& peer : getPeers()) {
    if (peer.name == argv[2]) std::cout << peer.measureMemory(source) << '\n';
  }
  return true;
}

}  // namespace QuarryBenchmarks
