/// Documents as TOML.
#pragma once

#include "Plain.h"

namespace QuarryBenchmarks {

/// Makes the TOML of a document: a header for each object that is a member, or that is in a member
/// array of objects alone; everything else within its line. TOML has no null: what is empty is an
/// empty array.
std::string makeToml(const Workload& workload);

}  // namespace QuarryBenchmarks
