/// Preprocesses files, with the library and by the rules.
#pragma once

#include <Quarry/ParserFile.h>

#include <cmath>
#include <set>
#include <string>

#include "support/PlainPreprocessor.h"

namespace Fuzz {

/// What preprocessing made of a file.
struct Preprocessed {
  std::string text;
  double version = 0.0;  ///< 0 when a file could not be read

  /// A version that is not a number is the same as another one.
  bool operator==(const Preprocessed& other) const {
    const bool haveNoNumber = std::isnan(version) && std::isnan(other.version);
    return (version == other.version || haveNoNumber) && text == other.text;
  }
};

inline Preprocessed preprocess(Quarry::ParserFile& file, const std::string& name) {
  Preprocessed result;
  std::set<std::string> included;
  result.version = file.preprocessFile(result.text, name, included);
  return result;
}

inline Preprocessed preprocessByRules(const TestSupport::Files& files, const std::string& name) {
  Preprocessed result;
  result.version = TestSupport::PlainPreprocessor(files).process(name, result.text);
  return result;
}

}  // namespace Fuzz
