/// The texts of generated documents, without a version line.
#pragma once

#include <string>

namespace QuarryBenchmarks {

std::string makeSettingsText();
std::string makeNumbersText();
std::string makeStringsText();

/// Makes scenes until the text has so many bytes.
std::string makeProjectText(unsigned long bytes);

/// Makes so many items, each with a name of its own.
std::string makeWideText(unsigned long items);

/// Makes so many groups, each in the other.
std::string makeDeepText(unsigned long groups);

}  // namespace QuarryBenchmarks
