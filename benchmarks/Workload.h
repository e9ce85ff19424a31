/// The documents that are measured.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace QuarryBenchmarks {

/// One document, as text in memory and as a file.
struct Workload {
  std::string name;
  std::string path;      ///< a plain file
  std::string text;      ///< what preprocessing makes of it
  double version;        ///< the format version
  unsigned long values;  ///< in its tree, groups included
};

/// Makes documents that stand for a kind each, always the same ones:
///
/// - "numbers": rows of doubles with 15 digits
/// - "strings": records of strings, some with escapes
/// - "small_groups": many groups of a few short items
/// - "wide_group": one group of 100,000 integers, each with a name of its own
///
/// @param folder where their files are written
std::vector<Workload> makeWorkloads(const std::string& folder);

/// Returns the text of so many groups, each in the other.
std::string makeDeepText(std::int64_t depth);

/// Returns the text of so many items, all of one name.
std::string makeWideText(std::int64_t count);

/// Opens every `*.cfg` of a folder. Throws std::runtime_error when there is none or one cannot be
/// read.
std::vector<Workload> openWorkloads(const std::string& folder);

}  // namespace QuarryBenchmarks
