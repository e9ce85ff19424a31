/// How a library is measured: the same loops for all of them.
///
/// A library is described by a class of this shape. Only the first four are needed; what else it
/// leaves out is not measured.
///
/// ```cpp
/// struct SomeLibrary {
///   struct Tree;                                         // is made empty
///   static Source convert(const Workload& workload);     // to the library's own form
///   static void read(Tree& tree, const Source& source);  // throws when it cannot be read
///   static double addNumbers(const Tree& tree, const Source& source);
///
///   static constexpr bool IS_BINARY = true;              // where read() reads a binary form
///   static auto write(const Tree& tree);                 // to indented text
///   static auto encode(const Tree& tree);                // to the binary form
///   static void decode(Tree& tree, const auto& bytes);   // what encode() made, unless IS_BINARY
///   static void copy(Tree& tree, const Tree& other);
///   static bool find(const Tree& tree, const std::string& name);  // a member of the root
/// };
/// ```
#pragma once

#include "Memory.h"
#include "Peer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace QuarryBenchmarks {

/// Tells Google Benchmark how long each of the `count` values of a round took.
inline void setPerValue(benchmark::State& state, unsigned long count) {
  using benchmark::Counter;
  const double total = static_cast<double>(count) * static_cast<double>(state.iterations());
  state.counters["per_value"] = Counter(total, Counter::kIsRate | Counter::kInvert);
}

/// Runs a part of a round, the only one that counts.
template <class Part>
void timePart(benchmark::State& state, const Part& part) {
  const auto begin = std::chrono::steady_clock::now();
  part();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  state.SetIterationTime(seconds.count());
}

/// Makes the compiler believe that the result is used.
template <class Result>
void keep(const Result& result) {
  benchmark::DoNotOptimize(&result);
  benchmark::ClobberMemory();
}

template <class Library>
class Measure {
 public:
  using Tree = typename Library::Tree;
  using State = benchmark::State;

  static Peer makePeer(const std::string& name) {
    Peer peer = {name, {}, getSource, addNumbers, measureMemory};
    const auto add = [&peer](Operation operation) {
      peer.operations.push_back(std::move(operation));
    };
    const auto isShallow = [](const Workload& workload) {
      return workload.names.empty() && !workload.isDeep;
    };
    const auto hasNames = [](const Workload& workload) { return !workload.names.empty(); };
    if constexpr (!IS_BINARY) add({"Read", read});
    if constexpr (!IS_BINARY) add({"ReadNumbers", readNumbers});
    if constexpr (CAN_WRITE) add({"Write", write, Operation::OF_LOOP, isShallow});
    if constexpr (CAN_COPY) add({"Copy", copy});
    if constexpr (CAN_ENCODE) add({"Encode", encode});
    if constexpr (CAN_ENCODE) add({"EncodeCold", encodeCold, Operation::OF_PARTS});
    if constexpr (IS_BINARY) {
      add({"Decode", read});
    } else if constexpr (CAN_ENCODE) {
      add({"Decode", decode});
    }
    if constexpr (CAN_FIND) add({"FindOne", findOne, Operation::OF_PARTS, hasNames});
    if constexpr (CAN_FIND) add({"FindMany", findMany, Operation::OF_LOOP, hasNames});
    return peer;
  }

  // --- The measurements --------------------------------------------------------------------------

  /// From text, or from the binary form, to a tree, and the tree's end.
  static void read(State& state, const Workload& workload) {
    const Source& source = getSource(workload);
    for ([[maybe_unused]] auto _ : state) {
      Tree tree;
      Library::read(tree, source);
      keep(tree);
    }
    setPerValue(state, workload.values);
  }

  /// From text to a tree, every number of it as a double, and the tree's end.
  static void readNumbers(State& state, const Workload& workload) {
    const Source& source = getSource(workload);
    for ([[maybe_unused]] auto _ : state) {
      Tree tree;
      Library::read(tree, source);
      keep(Library::addNumbers(tree, source));
    }
    setPerValue(state, workload.values);
  }

  /// From a tree to indented text.
  static void write(State& state, const Workload& workload) {
    const Filled filled(workload);
    for ([[maybe_unused]] auto _ : state)
      keep(Library::write(filled.tree));
    setPerValue(state, workload.values);
  }

  /// A deep copy, and its end.
  static void copy(State& state, const Workload& workload) {
    const Filled filled(workload);
    for ([[maybe_unused]] auto _ : state) {
      Tree tree;
      Library::copy(tree, filled.tree);
      keep(tree);
    }
    setPerValue(state, workload.values);
  }

  /// From a tree to the binary form, not for the first time.
  static void encode(State& state, const Workload& workload) {
    const Filled filled(workload);
    keep(Library::encode(filled.tree));
    for ([[maybe_unused]] auto _ : state)
      keep(Library::encode(filled.tree));
    setPerValue(state, workload.values);
  }

  /// From a tree that was just read to the binary form.
  static void encodeCold(State& state, const Workload& workload) {
    for ([[maybe_unused]] auto _ : state) {
      const Filled filled(workload);
      timePart(state, [&filled] { keep(Library::encode(filled.tree)); });
    }
    setPerValue(state, workload.values);
  }

  /// From the binary form to a tree, and the tree's end.
  static void decode(State& state, const Workload& workload) {
    const auto bytes = Library::encode(Filled(workload).tree);
    for ([[maybe_unused]] auto _ : state) {
      Tree tree;
      Library::decode(tree, bytes);
      keep(tree);
    }
    setPerValue(state, workload.values);
  }

  /// One name in each of several trees in which nothing was looked up before.
  static void findOne(State& state, const Workload& workload) {
    constexpr std::size_t TREES = 4;
    auto name = workload.names.begin();
    for ([[maybe_unused]] auto _ : state) {
      std::array<Tree, TREES> trees;
      for (Tree& tree : trees)
        Library::read(tree, getSource(workload));
      std::size_t found = 0;
      timePart(state, [&trees, &found, &name] {
        for (const Tree& tree : trees)
          found += Library::find(tree, *name++) ? 1 : 0;
      });
      if (found != TREES) return state.SkipWithError("a name was not found");
      const auto left = static_cast<std::size_t>(workload.names.end() - name);
      if (left < TREES) name = workload.names.begin();
    }
    setPerValue(state, TREES);
  }

  /// Every name, in random order, again and again in the same tree.
  static void findMany(State& state, const Workload& workload) {
    const Filled filled(workload);
    for ([[maybe_unused]] auto _ : state) {
      std::size_t found = 0;
      for (const std::string& name : workload.names)
        found += Library::find(filled.tree, name) ? 1 : 0;
      if (found != workload.names.size()) return state.SkipWithError("a name was not found");
    }
    setPerValue(state, workload.names.size());
  }

  /// A document as the library reads it, converted once.
  static const Source& getSource(const Workload& workload) {
    static std::map<std::string, Source> sources;
    const auto found = sources.find(workload.name);
    if (found != sources.end()) return found->second;
    return sources.emplace(workload.name, Library::convert(workload)).first->second;
  }

 private:
  static constexpr bool IS_BINARY = requires { Library::IS_BINARY; };
  static constexpr bool CAN_WRITE = requires(const Tree& tree) { Library::write(tree); };
  static constexpr bool CAN_COPY = requires(Tree & tree) { Library::copy(tree, tree); };
  static constexpr bool CAN_ENCODE = requires(const Tree& tree) { Library::encode(tree); };
  static constexpr bool CAN_FIND = requires(const Tree& tree, const std::string& name) {
    Library::find(tree, name);
  };

  /// A tree that holds a document.
  struct Filled {
    explicit Filled(const Workload& workload) { Library::read(tree, getSource(workload)); }

    Tree tree;
  };

  static double addNumbers(const Workload& workload) {
    return Library::addNumbers(Filled(workload).tree, getSource(workload));
  }

  static double measureMemory(const Source& source) {
    return measureGrowth([&source] {
      auto tree = std::make_shared<Tree>();
      Library::read(*tree, source);
      return tree;
    });
  }
};

}  // namespace QuarryBenchmarks
