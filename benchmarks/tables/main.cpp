// Turns JSON files of Google Benchmark into tables in Markdown:
//
//     QuarryBenchmarkTables [LABEL=]FILE...
//
// There is one table for each operation and one row for each document. The first column is that of
// the first library, in nanoseconds for each value, or bytes. The others are ratios to it, with the
// spread behind them. The last row is the geometric mean.
//
// With a label, that is the column's name in place of the library's: so one library can be compared
// with itself. Files of one label are rounds of one measurement.

#include "Samples.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

using QuarryBenchmarks::Documents;
using QuarryBenchmarks::Operations;
using QuarryBenchmarks::Ordered;
using QuarryBenchmarks::Samples;

// --- Statistics ----------------------------------------------------------------------------------

/// Returns the sample below which a share of all lies, interpolated between neighbours.
double getQuantile(Samples samples, double share) {
  std::sort(samples.begin(), samples.end());
  const double place = share * static_cast<double>(samples.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, samples.size() - 1);
  return samples[below] + (place - std::floor(place)) * (samples[above] - samples[below]);
}

double getMedian(const Samples& samples) { return getQuantile(samples, 0.5); }

double getGeometricMean(const std::vector<double>& numbers) {
  double sum = 0.0;
  for (const double number : numbers)
    sum += std::log(number);
  return std::exp(sum / static_cast<double>(numbers.size()));
}

/// A ratio of medians, and how far it is between the quartiles of both.
struct Ratio {
  Ratio(const Samples& samples, const Samples& base)
      : median(getMedian(samples) / getMedian(base)),
        low(getQuantile(samples, 0.25) / getQuantile(base, 0.75)),
        high(getQuantile(samples, 0.75) / getQuantile(base, 0.25)) {}

  double median;
  double low;
  double high;
};

// --- Text ----------------------------------------------------------------------------------------

/// Writes a number with three digits that count, but never more than two behind the point.
std::string format(double number) {
  const int digits = number < 9.995 ? 2 : number < 99.95 ? 1 : 0;
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", digits, number);
  return text;
}

std::string format(const Ratio& ratio) {
  if (ratio.low == ratio.high) return format(ratio.median);  // of one round each
  return format(ratio.median) + " (" + format(ratio.low) + "\u2013" + format(ratio.high) + ")";
}

void printRow(const std::vector<std::string>& cells) {
  for (const std::string& cell : cells)
    std::cout << "| " << cell << ' ';
  std::cout << "|\n";
}

// --- Tables --------------------------------------------------------------------------------------

/// Returns the names of all libraries of an operation, in the order in which they appear.
std::vector<std::string> getLibraries(const Documents& documents) {
  Ordered<bool> libraries;
  for (const std::string& document : documents.getNames()) {
    for (const std::string& library : documents.find(document)->getNames())
      libraries[library] = true;
  }
  return libraries.getNames();
}

/// Returns the numbers of a column, of the documents that the library and the base were measured
/// with: what the base took, or the ratios of the others to it.
std::vector<double> getColumn(const Documents& documents, const std::string& library,
                              const std::string& base, double scale) {
  std::vector<double> column;
  for (const std::string& document : documents.getNames()) {
    const Samples* const ours = documents.find(document)->find(base);
    const Samples* const samples = documents.find(document)->find(library);
    if (ours == nullptr || samples == nullptr) continue;
    const bool isBase = library == base;
    column.push_back(isBase ? scale * getMedian(*ours) : Ratio(*samples, *ours).median);
  }
  return column;
}

std::string makeCell(const Ordered<Samples>& document, const std::string& library,
                     const std::string& base, double scale) {
  const Samples* const ours = document.find(base);
  const Samples* const samples = document.find(library);
  if (ours == nullptr || samples == nullptr) return "";
  return library == base ? format(scale * getMedian(*ours)) : format(Ratio(*samples, *ours));
}

void printTable(const std::string& operation, const Documents& documents) {
  const bool isMemory = operation == "Memory";
  const double scale = isMemory ? 1.0 : 1e9;
  const std::vector<std::string> libraries = getLibraries(documents);
  const std::string& base = libraries.front();

  std::vector<std::string> header = {"", base + (isMemory ? ", bytes" : ", ns")};
  header.insert(header.end(), libraries.begin() + 1, libraries.end());
  std::cout << "\n### " << operation << "\n\n";
  printRow(header);
  printRow(std::vector<std::string>(header.size(), "---"));

  std::vector<std::string> means = {"**geometric mean**"};
  for (const std::string& library : libraries)
    means.push_back("**" + format(getGeometricMean(getColumn(documents, library, base, scale))) +
                    "**");
  for (const std::string& document : documents.getNames()) {
    std::vector<std::string> cells = {document};
    for (const std::string& library : libraries)
      cells.push_back(makeCell(*documents.find(document), library, base, scale));
    printRow(cells);
  }
  if (documents.getNames().size() > 1) printRow(means);
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) {
    std::cerr << "usage: QuarryBenchmarkTables [LABEL=]FILE...\n";
    return 2;
  }
  Operations operations;
  for (const std::string& argument : arguments) {
    const std::size_t equals = argument.find('=');
    const bool hasLabel = equals != std::string::npos;
    QuarryBenchmarks::addSamples(operations, hasLabel ? argument.substr(equals + 1) : argument,
                                 hasLabel ? argument.substr(0, equals) : "");
  }
  for (const std::string& operation : operations.getNames())
    printTable(operation, *operations.find(operation));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& failure) {
    std::cerr << "QuarryBenchmarkTables: " << failure.what() << '\n';
    return 2;
  }
}
