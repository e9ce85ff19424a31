/// Generated documents: the same ones in every run.
#pragma once

#include "Workload.h"

#include <string>
#include <vector>

namespace QuarryBenchmarks {

/// Makes documents that stand for a kind each:
///
/// - "settings": the settings of an application, 2 KB
/// - "project": a project of scenes, layers and curves, 1 MB
/// - "numbers": rows of doubles with 15 digits
/// - "strings": records of strings, some with escapes
/// - "wide_1000", "wide_100000": so many items in the root, each with a name of its own
/// - "deep_100000": so many groups, each in the other
///
/// @param folder where their files are written
std::vector<Workload> makeDocuments(const std::string& folder);

/// Makes a "project" of 100 MB.
Workload makeBigDocument(const std::string& folder);

/// Makes the document that names are looked up in: a root of 1,000 items.
Workload makeLookupDocument(const std::string& folder);

/// Makes documents of 1, 2, 4 ... megabytes: "project" ones, and deep and wide ones, of which the
/// trees are larger, up to a quarter of that. They have no files.
std::vector<Workload> makeScalingDocuments(unsigned long largestMegabytes);

}  // namespace QuarryBenchmarks
