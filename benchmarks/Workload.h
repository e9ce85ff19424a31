/// The documents that are measured.
#pragma once

#include <string>
#include <vector>

namespace Quarry {
class ParserGroup;
}

namespace QuarryBenchmarks {

/// One document, as text in memory and as a file.
struct Workload {
  std::string name;
  std::string path;                ///< a plain file; empty when there is none
  std::string text;                ///< what preprocessing makes of it
  double version = 1.1;            ///< the format version
  unsigned long values = 0;        ///< in its tree, groups included
  std::vector<std::string> names;  ///< of its root's items, to look up; often none
  bool isForPeers = true;          ///< whether other libraries read it too
  bool isDeep = false;             ///< too deep for indentation, which grows with the depth
};

/// Reads a document from a file. Throws std::runtime_error when that cannot be read.
Workload openWorkload(const std::string& path);

/// Reads every `*.cfg` of a folder, in the order of their names. Throws std::runtime_error when
/// there is none or one cannot be read.
std::vector<Workload> openWorkloads(const std::string& folder);

/// Parses the text of a document and fills in what follows from it: the number of values, and
/// whether the document is deep, which is nothing for other libraries.
void examine(Workload& workload);

/// Returns the sum of all numbers of a tree.
double addNumbers(const Quarry::ParserGroup& root);

}  // namespace QuarryBenchmarks
