/// Documents as JSON.
#pragma once

#include "Plain.h"

namespace QuarryBenchmarks {

/// Returns a document as JSON without blanks: the file of the same name beside it that ends in
/// `.json` where there is one, else what its plain form gives.
std::string makeJson(const Workload& workload);

/// Appends a string between quotes, with the escapes of JSON.
void appendQuoted(std::string& out, const std::string& text);

}  // namespace QuarryBenchmarks
