#include <toml++/toml.h>

#include "../Measure.h"
#include "../forms/Toml.h"

#include <sstream>
#include <string>

namespace QuarryBenchmarks {

namespace {

double addAll(const toml::node& node) {
  double sum = 0.0;
  if (const toml::table* table = node.as_table()) {
    for (const auto& [key, value] : *table)
      sum += addAll(value);
  } else if (const toml::array* array = node.as_array()) {
    for (const toml::node& element : *array)
      sum += addAll(element);
  } else if (node.is_number()) {
    sum = node.value_or(0.0);
  }
  return sum;
}

/// TOML into a table.
struct TomlPlusPlus {
  using Tree = toml::table;

  static Source convert(const Workload& workload) { return {makeToml(workload)}; }

  static void read(Tree& tree, const Source& source) { tree = toml::parse(source.text); }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree); }

  static std::string write(const Tree& tree) {
    std::ostringstream stream;
    stream << tree;
    return stream.str();
  }

  static void copy(Tree& tree, const Tree& other) { tree = other; }

  static bool find(const Tree& tree, const std::string& name) { return tree.contains(name); }
};

const PeerRegistration registration(Measure<TomlPlusPlus>::makePeer("toml++"));

}  // namespace

}  // namespace QuarryBenchmarks
