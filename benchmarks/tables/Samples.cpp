#include "Samples.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace QuarryBenchmarks {

namespace {

/// Cuts OPERATION/DOCUMENT/LIBRARY, behind which the way of measuring may follow.
std::vector<std::string> split(const std::string& name) {
  std::vector<std::string> parts;
  std::istringstream stream(name);
  for (std::string part; std::getline(stream, part, '/');)
    parts.push_back(part);
  if (parts.size() < 3) throw std::runtime_error("not OPERATION/DOCUMENT/LIBRARY: " + name);
  return parts;
}

void addRun(Operations& operations, const nlohmann::json& run, const std::string& label) {
  if (run.at("run_type") != "iteration" || !run.contains("per_value")) return;
  const std::vector<std::string> parts = split(run.at("run_name"));
  std::string library = label.empty() ? parts[2] : label;
  const int threads = run.value("threads", 1);
  if (threads > 1) library += ", " + std::to_string(threads) + " threads";
  operations[parts[0]][parts[1]][library].push_back(run.at("per_value"));
}

/// Returns the runs of a file in the order in which their benchmarks were registered: that in which
/// they ran is random.
std::vector<nlohmann::json> readRuns(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::vector<nlohmann::json> runs = nlohmann::json::parse(file).at("benchmarks");
  const auto getPlace = [](const nlohmann::json& run) {
    return std::make_pair(run.value("family_index", 0), run.value("per_family_instance_index", 0));
  };
  std::stable_sort(runs.begin(), runs.end(),
                   [&getPlace](const nlohmann::json& one, const nlohmann::json& other) {
                     return getPlace(one) < getPlace(other);
                   });
  return runs;
}

}  // namespace

void addSamples(Operations& operations, const std::string& path, const std::string& label) {
  for (const nlohmann::json& run : readRuns(path))
    addRun(operations, run, label);
}

}  // namespace QuarryBenchmarks
