#include "Workload.h"

#include <Quarry/ParserFile.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <utility>

namespace QuarryBenchmarks {

namespace {

namespace fs = std::filesystem;

/// Many libraries have a limit of a depth between 500 and 1024.
constexpr unsigned long DEEP = 500;

/// A value and where it stands.
struct Place {
  const Quarry::ParserItem& item;
  unsigned long index;
  Quarry::ParserValue::Type type;
  unsigned long depth;
};

/// Calls `visit(place)` for every value of a tree of any depth.
template <class Visit>
void forEachValue(const Quarry::ParserGroup& root, const Visit& visit) {
  std::vector<std::pair<const Quarry::ParserGroup*, unsigned long>> waiting = {{&root, 1}};
  while (!waiting.empty()) {
    const auto [group, depth] = waiting.back();
    waiting.pop_back();
    const unsigned long items = group->getItemCount();
    for (unsigned long i = 0; i < items; ++i) {
      const Quarry::ParserItem& item = *group->getItem(i);
      const unsigned long values = item.getValueCount();
      for (unsigned long k = 0; k < values; ++k) {
        const Place place = {item, k, item.getValueType(k), depth};
        if (place.type == Quarry::ParserValue::TYPE_GROUP)
          waiting.emplace_back(item.getGroup(k), depth + 1);
        visit(place);
      }
    }
  }
}

}  // namespace

Workload openWorkload(const std::string& path) {
  Quarry::ParserFile file;
  file.setSearchPaths({fs::path(path).parent_path().string(), ""});
  Workload workload;
  workload.name = fs::path(path).stem().string();
  workload.path = path;
  std::set<std::string> included;
  workload.version = file.preprocessFile(workload.text, path, included);
  if (!(workload.version > 0.0)) throw std::runtime_error("cannot read " + path);
  examine(workload);
  return workload;
}

std::vector<Workload> openWorkloads(const std::string& folder) {
  std::vector<Workload> workloads;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".cfg") workloads.push_back(openWorkload(entry.path()));
  }
  if (workloads.empty()) throw std::runtime_error("no documents in " + folder);
  std::sort(workloads.begin(), workloads.end(),
            [](const Workload& one, const Workload& other) { return one.name < other.name; });
  return workloads;
}

void examine(Workload& workload) {
  Quarry::ParserGroup root("root");
  root.setText(workload.text, workload.version);
  forEachValue(root, [&workload](const Place& place) {
    ++workload.values;
    if (place.depth > DEEP) workload.isDeep = true;
  });
  if (workload.isDeep) workload.isForPeers = false;
}

double addNumbers(const Quarry::ParserGroup& root) {
  using Quarry::ParserValue;
  double sum = 0.0;
  forEachValue(root, [&sum](const Place& place) {
    if (place.type == ParserValue::TYPE_INT || place.type == ParserValue::TYPE_DOUBLE)
      sum += place.item.getDouble(place.index);
  });
  return sum;
}

}  // namespace QuarryBenchmarks
