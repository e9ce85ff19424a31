#include "Workload.h"

#include <Quarry/ParserFile.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <stdexcept>

namespace QuarryBenchmarks {

namespace {

namespace fs = std::filesystem;

constexpr char VERSION_LINE[] = "#SerialVersion 1.1\n\n";

/// Draws numbers. Only the engine's own output is used: that is the same with every library.
class Source {
 public:
  unsigned long below(unsigned long limit) { return engine() % limit; }

  /// A number below 1000 with 12 digits behind the point.
  std::string number() {
    std::string digits = std::to_string(below(1000000000000UL));
    digits.insert(0, 12 - digits.size(), '0');
    return (below(2) == 0 ? "-" : "") + std::to_string(below(1000)) + "." + digits;
  }

  std::string word() {
    constexpr const char* WORDS[] = {"amber", "basalt", "caf\u00e9", "denim",  "ember",
                                     "flint", "glass",  "harvest",   "indigo", "juniper"};
    return WORDS[below(std::size(WORDS))];
  }

 private:
  std::mt19937_64 engine{20260620};
};

std::string makeNumbers() {
  Source source;
  std::string text = VERSION_LINE;
  for (int row = 0; row < 10000; ++row) {
    text += "row";
    for (int column = 0; column < 8; ++column)
      text += " " + source.number();
    text += "\n";
  }
  return text;
}

std::string makeStrings() {
  Source source;
  std::string text = VERSION_LINE;
  for (int record = 0; record < 5000; ++record) {
    text += "record {\n    title \"" + source.word() + " " + source.word() + "\"\n    note \"";
    for (unsigned long words = source.below(40); words > 0; --words) {
      text += source.word() + (source.below(8) == 0 ? "\\n" : " ");
    }
    text += "\"\n}\n";
  }
  return text;
}

std::string makeSmallGroups() {
  Source source;
  std::string text = VERSION_LINE;
  for (int point = 0; point < 20000; ++point) {
    text += "point {\n    id " + std::to_string(point) + "\n    x " +
            std::to_string(source.below(2000)) + "\n    y " + std::to_string(source.below(2000)) +
            "\n    visible " + (source.below(4) == 0 ? "no" : "yes") + "\n}\n";
  }
  return text;
}

std::string makeWideGroup() {
  Source source;
  std::string text = std::string(VERSION_LINE) + "table {\n";
  for (int entry = 0; entry < 100000; ++entry) {
    text += "    entry_" + std::to_string(entry) + " " + std::to_string(source.below(1000)) + "\n";
  }
  return text + "}\n";
}

unsigned long countValues(const Quarry::ParserGroup& root) {
  unsigned long count = 0;
  std::vector<const Quarry::ParserGroup*> waiting = {&root};
  while (!waiting.empty()) {
    const Quarry::ParserGroup& group = *waiting.back();
    waiting.pop_back();
    for (unsigned long i = 0; i < group.getItemCount(); ++i) {
      const Quarry::ParserItem& item = *group.getItem(i);
      count += item.getValueCount();
      for (unsigned long k = 0; k < item.getValueCount(); ++k) {
        if (item.isValueGroup(k)) waiting.push_back(item.getGroup(k));
      }
    }
  }
  return count;
}

Workload open(const fs::path& path) {
  Quarry::ParserFile file;
  file.setSearchPaths({path.parent_path().string(), ""});
  Workload workload = {path.stem().string(), path.string(), "", 0.0, 0};
  std::set<std::string> included;
  workload.version = file.preprocessFile(workload.text, workload.path, included);
  if (!(workload.version > 0.0)) throw std::runtime_error("cannot read " + workload.path);
  file.getRoot().setText(workload.text, workload.version);
  workload.values = countValues(file.getRoot());
  return workload;
}

Workload make(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
  return open(path);
}

}  // namespace

std::string makeDeepText(std::int64_t depth) {
  std::string text;
  for (std::int64_t i = 0; i < depth; ++i)
    text += "g { ";
  for (std::int64_t i = 0; i < depth; ++i)
    text += "} ";
  return text;
}

std::string makeWideText(std::int64_t count) {
  std::string text;
  for (std::int64_t i = 0; i < count; ++i)
    text += "item " + std::to_string(i) + "\n";
  return text;
}

std::vector<Workload> makeWorkloads(const std::string& folder) {
  const fs::path place(folder);
  return {make(place / "numbers.cfg", makeNumbers()), make(place / "strings.cfg", makeStrings()),
          make(place / "small_groups.cfg", makeSmallGroups()),
          make(place / "wide_group.cfg", makeWideGroup())};
}

std::vector<Workload> openWorkloads(const std::string& folder) {
  std::vector<Workload> workloads;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".cfg") workloads.push_back(open(entry.path()));
  }
  if (workloads.empty()) throw std::runtime_error("no documents in " + folder);
  std::sort(workloads.begin(), workloads.end(),
            [](const Workload& one, const Workload& other) { return one.name < other.name; });
  return workloads;
}

}  // namespace QuarryBenchmarks
