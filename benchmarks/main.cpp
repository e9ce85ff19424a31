// Measures the library, and others beside it:
//
//     QuarryBenchmarks [--documents=FOLDER [--generated]] [--big] [--memory]
//                      [options of Google Benchmark]
//     QuarryBenchmarks --scaling=MB [options of Google Benchmark]
//
// Each benchmark is called OPERATION/DOCUMENT/LIBRARY and tells the time that a value takes
// ("per_value"); Memory tells bytes there.

#include <benchmark/benchmark.h>

#include "Documents.h"
#include "Memory.h"
#include "Options.h"
#include "Peer.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <functional>
#include <iostream>
#include <iterator>
#include <thread>
#include <vector>

namespace {

using QuarryBenchmarks::Operation;
using QuarryBenchmarks::Options;
using QuarryBenchmarks::Peer;
using QuarryBenchmarks::TemporaryFolder;
using QuarryBenchmarks::Workload;

// --- What is measured ----------------------------------------------------------------------------

std::vector<Workload> makeWorkloads(const Options& options, const std::string& folder) {
  if (options.scalingMegabytes > 0)
    return QuarryBenchmarks::makeScalingDocuments(options.scalingMegabytes);
  std::vector<Workload> workloads;
  const auto add = [&workloads](std::vector<Workload> more) {
    std::move(more.begin(), more.end(), std::back_inserter(workloads));
  };
  const bool hasDocuments = !options.documents.empty();
  if (hasDocuments) add(QuarryBenchmarks::openWorkloads(options.documents));
  if (!hasDocuments || options.generated) add(QuarryBenchmarks::makeDocuments(folder));
  if (options.big) add({QuarryBenchmarks::makeBigDocument(folder)});
  add({QuarryBenchmarks::makeLookupDocument(folder)});
  return workloads;
}

/// Tells whether a library reads the same numbers as this one.
bool readsTheSame(const Peer& peer, const Workload& workload, double expected) {
  std::string reason;
  try {
    const double sum = peer.addNumbers(workload);
    if (std::abs(sum - expected) <= 1e-9 * (std::abs(expected) + 1.0)) return true;
    reason = "its numbers add up to " + std::to_string(sum) + ", not " + std::to_string(expected);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  std::cerr << peer.name << " is left out of " << workload.name << ": " << reason << '\n';
  return false;
}

// --- Registration --------------------------------------------------------------------------------

/// Returns how often a loop is run whose untimed parts may take far longer than the timed ones.
std::int64_t getRounds(const Workload& workload) {
  constexpr std::int64_t VALUES = 20000;
  const auto values = static_cast<std::int64_t>(workload.values);
  return std::clamp<std::int64_t>(VALUES / std::max<std::int64_t>(values, 1), 2, 200);
}

void registerOperation(const std::string& name, const Operation& operation,
                       const Workload& workload) {
  benchmark::internal::Benchmark* const added =
      benchmark::RegisterBenchmark(name.c_str(), operation.measure, std::cref(workload));
  added->Unit(benchmark::kMicrosecond);
  const auto cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  switch (operation.timing) {
    case Operation::OF_LOOP: break;
    case Operation::OF_PARTS: added->UseManualTime()->Iterations(getRounds(workload)); break;
    case Operation::OF_THREADS: added->UseRealTime()->ThreadRange(1, cores); break;
  }
}

void registerMemory(const Peer& peer, const Workload& workload, const std::string& folder) {
  const auto measure = [&peer, &workload, path = folder + "/source"](benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
      const double bytes = measureMemoryInNewProcess(peer, peer.getSource(workload), path);
      state.counters["per_value"] = bytes / static_cast<double>(workload.values);
    }
  };
  const std::string name = "Memory/" + workload.name + "/" + peer.name;
  benchmark::RegisterBenchmark(name.c_str(), measure)->Iterations(1)->Repetitions(1);
}

void registerPeer(const Peer& peer, const Workload& workload, const Options& options,
                  const std::string& folder) {
  for (const Operation& operation : peer.operations) {
    const std::string name = operation.name + "/" + workload.name + "/" + peer.name;
    if (operation.isFor(workload)) registerOperation(name, operation, workload);
  }
  if (options.memory && workload.names.empty()) registerMemory(peer, workload, folder);
}

void registerWorkload(const Workload& workload, const Options& options, const std::string& folder) {
  const std::vector<Peer>& peers = QuarryBenchmarks::getPeers();
  const double expected = peers.front().addNumbers(workload);
  registerPeer(peers.front(), workload, options, folder);
  if (!workload.isForPeers) return;
  for (auto peer = peers.begin() + 1; peer != peers.end(); ++peer) {
    if (readsTheSame(*peer, workload, expected)) registerPeer(*peer, workload, options, folder);
  }
}

int run(int argc, char** argv) {
  if (QuarryBenchmarks::runMemoryMeasurement(argc, argv)) return 0;
  const Options options = QuarryBenchmarks::takeOptions(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const TemporaryFolder folder;
  const std::vector<Workload> workloads = makeWorkloads(options, folder.getPath());
  for (const Workload& workload : workloads)
    registerWorkload(workload, options, folder.getPath());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "QuarryBenchmarks: " << failure.what() << '\n';
    return 2;
  }
}
