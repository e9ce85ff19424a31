/// How much memory a tree takes.
#pragma once

#include "Peer.h"

#include <functional>
#include <memory>
#include <string>

namespace QuarryBenchmarks {

/// Makes trees, more and more, and returns how much anonymous memory the process has gained for
/// each: all that was written to, of the heap and of mappings, in whole pages. What is free, and
/// can be given back to the system, does not count.
double measureGrowth(const std::function<std::shared_ptr<void>()>& makeTree);

/// Does that with a library in a new process, which has no memory of its own to use again: starts
/// this program with the option that runMemoryMeasurement() takes.
/// @param path of a file that the source is written to
double measureMemoryInNewProcess(const Peer& peer, const Source& source, const std::string& path);

/// Does what a process started by measureMemoryInNewProcess() has to do.
/// @return whether the arguments tell that this is one
bool runMemoryMeasurement(int argc, char** argv);

}  // namespace QuarryBenchmarks
