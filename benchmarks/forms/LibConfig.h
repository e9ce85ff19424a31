/// Documents in the form of libconfig.
#pragma once

#include "Plain.h"

namespace QuarryBenchmarks {

/// Makes the text of a document: objects are groups; arrays are arrays where their elements are
/// scalars of one type, else lists, and so is what is empty. A byte that names may not have there
/// is a "*".
std::string makeLibConfig(const Workload& workload);

}  // namespace QuarryBenchmarks
