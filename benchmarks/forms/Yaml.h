/// Documents as YAML.
#pragma once

#include "../Peer.h"

namespace QuarryBenchmarks {

/// Makes the YAML of a document, in block style: an object has one member a line, an array that
/// holds objects one element a line; other arrays stand within their line. Strings are quoted.
///
/// A reader does not tell numbers from other texts, so the source does: for each scalar, in the
/// order of the text. Names do not count.
Source makeYaml(const Workload& workload);

}  // namespace QuarryBenchmarks
