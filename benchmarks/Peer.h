/// What is measured of a library.
#pragma once

#include "Workload.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace QuarryBenchmarks {

/// What a library reads.
struct Source {
  std::string text;      ///< or bytes, of a binary form
  double version = 1.1;  ///< the format version, of Quarry's text

  /// Of a form that does not tell numbers from strings: for each of its texts, in their order,
  /// whether it is a number. A program that reads such a form knows where its numbers are.
  std::vector<bool> isNumber = {};
};

/// One of the things that a library can do.
struct Operation {
  enum Timing {
    OF_LOOP,    ///< all that the loop does, in time of the processor
    OF_PARTS,   ///< what the loop times itself
    OF_THREADS  ///< as it passes for several threads, each of which runs the loop
  };

  std::string name;
  std::function<void(benchmark::State&, const Workload&)> measure;
  Timing timing = OF_LOOP;
  std::function<bool(const Workload&)> isFor = isNotForNames;

  /// Tells whether a document is there for more than its names.
  static bool isNotForNames(const Workload& workload) { return workload.names.empty(); }
};

/// A library and what it can do. Quarry is one of them, so that all are measured alike.
struct Peer {
  std::string name;
  std::vector<Operation> operations;

  /// Returns a document as the library reads it.
  std::function<const Source&(const Workload&)> getSource;

  /// Reads a document once and returns the sum of its numbers.
  std::function<double(const Workload&)> addNumbers;

  /// Returns the bytes of memory that one tree needs, by what many of them need.
  std::function<double(const Source&)> measureMemory;
};

/// Returns every library of this program, in the order of their names but Quarry first.
std::vector<Peer>& getPeers();

/// Adds a library to getPeers() while the program starts.
struct PeerRegistration {
  explicit PeerRegistration(Peer peer);
};

}  // namespace QuarryBenchmarks
