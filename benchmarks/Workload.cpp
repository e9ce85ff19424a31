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

bool isNumber(Quarry::ParserValue::Type type) {
  return type == Quarry::ParserValue::TYPE_INT || type == Quarry::ParserValue::TYPE_DOUBLE;
}

double addDeepNumbers(const Quarry::ParserGroup& root) {
  double sum = 0.0;
  forEachValue(root, [&sum](const Place& place) {
    if (isNumber(place.type)) sum += place.item.getDouble(place.index);
  });
  return sum;
}

/// Calls itself for nested groups, as applications do and as all libraries are measured; only in
/// great depths it does not.
double addNumbersOf(const Quarry::ParserGroup& group, unsigned long depth) {
  if (depth > DEEP) return addDeepNumbers(group);
  double sum = 0.0;
  const unsigned long items = group.getItemCount();
  for (unsigned long i = 0; i < items; ++i) {
    const Quarry::ParserItem& item = *group.getItem(i);
    const unsigned long values = item.getValueCount();
    for (unsigned long k = 0; k < values; ++k) {
      const Quarry::ParserValue::Type type = item.getValueType(k);
      if (isNumber(type)) {
        sum += item.getDouble(k);
      } else if (type == Quarry::ParserValue::TYPE_GROUP) {
        sum += addNumbersOf(*item.getGroup(k), depth + 1);
      }
    }
  }
  return sum;
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

double addNumbers(const Quarry::ParserGroup& root) { return addNumbersOf(root, 1); }

}  // namespace QuarryBenchmarks
