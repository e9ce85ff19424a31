/// What the program is asked for.
#pragma once

#include <string>

namespace QuarryBenchmarks {

/// The program's own options; all others are Google Benchmark's.
struct Options {
  std::string documents;               ///< `--documents=FOLDER`: measure its `*.cfg`
  bool generated = false;              ///< `--generated`: and the generated documents too
  bool big = false;                    ///< `--big`: and a generated document of 100 MB
  bool memory = false;                 ///< `--memory`: and how much memory trees take
  unsigned long scalingMegabytes = 0;  ///< `--scaling=MB`: instead, documents of doubled sizes
};

/// Takes the program's own options out of the arguments. Throws std::invalid_argument for
/// `--scaling` without a number.
Options takeOptions(int& argc, char** argv);

}  // namespace QuarryBenchmarks
