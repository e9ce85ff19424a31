#include "Documents.h"

#include <Quarry/ParserGroup.h>

#include "DocumentTexts.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>
#include <utility>

namespace QuarryBenchmarks {

namespace {

constexpr unsigned long MEGABYTE = 1UL << 20;

/// Writes a document and opens it.
Workload make(const std::string& folder, const std::string& name, const std::string& text) {
  const std::string path = folder + "/" + name + ".cfg";
  std::ofstream file(path, std::ios::binary);
  file << "#SerialVersion 1.1\n\n" << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  return openWorkload(path);
}

Workload makeForUsAlone(const std::string& folder, const std::string& name,
                        const std::string& text) {
  Workload workload = make(folder, name, text);
  workload.isForPeers = false;
  return workload;
}

Workload makeScaling(const std::string& kind, unsigned long megabytes, std::string text) {
  Workload workload;
  workload.name = kind + "_" + std::to_string(megabytes) + "MB";
  workload.text = std::move(text);
  workload.isForPeers = false;
  examine(workload);
  return workload;
}

}  // namespace

std::vector<Workload> makeDocuments(const std::string& folder) {
  return {make(folder, "settings", makeSettingsText()),
          make(folder, "project", makeProjectText(MEGABYTE)),
          make(folder, "numbers", makeNumbersText()),
          make(folder, "strings", makeStringsText()),
          make(folder, "wide_1000", makeWideText(1000)),
          makeForUsAlone(folder, "wide_100000", makeWideText(100000)),
          make(folder, "deep_100000", makeDeepText(100000))};
}

Workload makeBigDocument(const std::string& folder) {
  return makeForUsAlone(folder, "project_100MB", makeProjectText(100 * MEGABYTE));
}

Workload makeLookupDocument(const std::string& folder) {
  Workload workload = make(folder, "names_1000", makeWideText(1000));
  Quarry::ParserGroup root("root");
  root.setText(workload.text, workload.version);
  for (unsigned long i = 0; i < root.getItemCount(); ++i)
    workload.names.push_back(root.getItem(i)->getName());
  std::shuffle(workload.names.begin(), workload.names.end(), std::mt19937_64(20260620));
  return workload;
}

std::vector<Workload> makeScalingDocuments(unsigned long largestMegabytes) {
  constexpr unsigned long BYTES_OF_A_GROUP = 6;
  const unsigned long itemsOfAMegabyte = 100000 * MEGABYTE / makeWideText(100000).size();
  std::vector<Workload> workloads;
  for (unsigned long size = 1; size <= largestMegabytes; size *= 2)
    workloads.push_back(makeScaling("project", size, makeProjectText(size * MEGABYTE)));
  for (unsigned long size = 1; size <= largestMegabytes / 4; size *= 2)
    workloads.push_back(makeScaling("wide", size, makeWideText(size * itemsOfAMegabyte)));
  for (unsigned long size = 1; size <= largestMegabytes / 4; size *= 2)
    workloads.push_back(
        makeScaling("deep", size, makeDeepText(size * MEGABYTE / BYTES_OF_A_GROUP)));
  return workloads;
}

}  // namespace QuarryBenchmarks
