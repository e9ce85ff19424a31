// Measures the library on generated documents, and on those of a folder:
//
//     QuarryBenchmarks [--documents=FOLDER] [options of Google Benchmark]
//
// Each benchmark is called OPERATION/DOCUMENT and tells the bytes of text that it handles in a
// second and the time that a value takes ("per_value").

#include <Quarry/ParserFile.h>
#include <benchmark/benchmark.h>

#include "Workload.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using benchmark::Counter;
using benchmark::State;
using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using QuarryBenchmarks::Workload;

constexpr std::int64_t SMALLEST_SCALE = 1 << 17;
constexpr std::int64_t LARGEST_SCALE = 1 << 20;

std::unique_ptr<ParserGroup> parse(const Workload& workload) {
  auto root = std::make_unique<ParserGroup>("root");
  root->setText(workload.text, workload.version);
  return root;
}

double addNumbers(const ParserGroup& root) {
  double sum = 0.0;
  std::vector<const ParserGroup*> waiting = {&root};
  while (!waiting.empty()) {
    const ParserGroup& group = *waiting.back();
    waiting.pop_back();
    for (unsigned long i = 0; i < group.getItemCount(); ++i) {
      const ParserItem& item = *group.getItem(i);
      for (unsigned long k = 0; k < item.getValueCount(); ++k) {
        if (item.isValueDouble(k)) sum += item.getDouble(k);
        if (item.isValueGroup(k)) waiting.push_back(item.getGroup(k));
      }
    }
  }
  return sum;
}

// --- What is measured ----------------------------------------------------------------------------

/// From text to a tree, and the tree's end.
void read(State& state, const Workload& workload) {
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(parse(workload));
}

/// The same, with every number asked for once.
void readNumbers(State& state, const Workload& workload) {
  for ([[maybe_unused]] auto _ : state) {
    const std::unique_ptr<ParserGroup> root = parse(workload);
    benchmark::DoNotOptimize(addNumbers(*root));
  }
}

void write(State& state, const Workload& workload) {
  const std::unique_ptr<ParserGroup> root = parse(workload);
  for ([[maybe_unused]] auto _ : state) {
    std::string text;
    root->getText(text, false, true, 1);
    benchmark::DoNotOptimize(text.data());
  }
}

/// Without the blanks of indentation, which deep groups would need more of than of anything else.
void writeOneLine(State& state, const Workload& workload) {
  const std::unique_ptr<ParserGroup> root = parse(workload);
  for ([[maybe_unused]] auto _ : state) {
    std::string text;
    root->getText(text, false, false, 1);
    benchmark::DoNotOptimize(text.data());
  }
}

/// A deep copy, and its end.
void copy(State& state, const Workload& workload) {
  const std::unique_ptr<ParserGroup> root = parse(workload);
  for ([[maybe_unused]] auto _ : state) {
    const ParserGroup copied(*root);
    benchmark::DoNotOptimize(copied.getItemCount());
  }
}

/// From a file, which the system has in memory, to a tree, and the tree's end.
void readFile(State& state, const Workload& workload) {
  for ([[maybe_unused]] auto _ : state) {
    ParserFile file;
    file.setSearchPaths({std::filesystem::path(workload.path).parent_path()});
    if (!file.read(workload.path)) state.SkipWithError("cannot be read");
    benchmark::DoNotOptimize(file.getRoot().getItemCount());
  }
}

/// From a file to the text that the parser reads.
void preprocess(State& state, const Workload& workload) {
  for ([[maybe_unused]] auto _ : state) {
    ParserFile file;
    file.setSearchPaths({std::filesystem::path(workload.path).parent_path(), ""});
    std::string text;
    std::set<std::string> included;
    benchmark::DoNotOptimize(file.preprocessFile(text, workload.path, included));
  }
}

/// To the binary form. The values have their numbers from the first round on.
void encode(State& state, const Workload& workload) {
  const std::unique_ptr<ParserGroup> root = parse(workload);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(root->getBinary(false).data());
}

/// From the binary form to a tree, and the tree's end.
void decode(State& state, const Workload& workload) {
  const std::vector<char> data = parse(workload)->getBinary(false);
  for ([[maybe_unused]] auto _ : state) {
    ParserGroup root("root");
    unsigned long position = 0;
    benchmark::DoNotOptimize(root.setBinary(data, position));
  }
}

// --- Running -------------------------------------------------------------------------------------

using Operation = void (*)(State&, const Workload&);

void measure(State& state, const Workload& workload, Operation operation) {
  operation(state, workload);
  const auto rounds = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(workload.text.size()) * state.iterations());
  state.counters["per_value"] =
      Counter(static_cast<double>(workload.values) * rounds, Counter::kIsRate | Counter::kInvert);
}

void registerBenchmarks(const std::vector<Workload>& workloads) {
  const std::vector<std::pair<std::string, Operation>> operations = {
      {"Read", read},         {"ReadNumbers", readNumbers}, {"Write", write},   {"Copy", copy},
      {"ReadFile", readFile}, {"Preprocess", preprocess},   {"Encode", encode}, {"Decode", decode}};
  for (const auto& [name, operation] : operations) {
    for (const Workload& workload : workloads) {
      benchmark::RegisterBenchmark((name + "/" + workload.name).c_str(), measure, workload,
                                   operation)
          ->Unit(benchmark::kMillisecond);
    }
  }
}

/// Measures trees of doubled sizes: the time has to double with them.
void registerScaling() {
  using Make = std::string (*)(std::int64_t);
  const std::vector<std::pair<std::string, Make>> shapes = {
      {"deep", QuarryBenchmarks::makeDeepText}, {"wide", QuarryBenchmarks::makeWideText}};
  const std::vector<std::pair<std::string, Operation>> operations = {{"Read", read},
                                                                     {"Copy", copy},
                                                                     {"WriteOneLine", writeOneLine},
                                                                     {"Encode", encode},
                                                                     {"Decode", decode}};
  for (const auto& [name, operation] : operations) {
    for (const auto& [shape, make] : shapes) {
      const auto scale = [make = make, operation = operation](State& state) {
        const std::string text = make(state.range(0));
        const auto count = static_cast<unsigned long>(state.range(0));
        measure(state, Workload{"", "", text, 1.1, count}, operation);
        state.SetComplexityN(state.range(0));
      };
      benchmark::RegisterBenchmark(("Scaling" + name + "/" + shape).c_str(), scale)
          ->Unit(benchmark::kMillisecond)
          ->RangeMultiplier(2)
          ->Range(SMALLEST_SCALE, LARGEST_SCALE)
          ->Complexity(benchmark::oN);
    }
  }
}

/// A folder for the generated documents, removed in the end.
class TemporaryFolder {
 public:
  TemporaryFolder() : path(std::filesystem::temp_directory_path() / "quarry-benchmarks-XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("cannot make " + path);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  const std::string& getPath() const { return path; }

 private:
  std::string path;
};

/// Takes `--documents=FOLDER` out of the arguments; empty when it is not there.
std::string takeDocuments(int& argc, char** argv) {
  const std::string option = "--documents=";
  const auto isOption = [&option](const std::string& word) { return word.rfind(option, 0) == 0; };
  char** const found = std::find_if(argv + 1, argv + argc, isOption);
  if (found == argv + argc) return std::string();
  std::string folder = std::string(*found).substr(option.size());
  std::copy(found + 1, argv + argc + 1, found);  // with the null behind the last one
  --argc;
  return folder;
}

int run(int argc, char** argv) {
  const std::string documents = takeDocuments(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const TemporaryFolder folder;
  registerBenchmarks(QuarryBenchmarks::makeWorkloads(folder.getPath()));
  if (!documents.empty()) registerBenchmarks(QuarryBenchmarks::openWorkloads(documents));
  registerScaling();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "QuarryBenchmarks: " << failure.what() << "\n";
    return 2;
  }
}
