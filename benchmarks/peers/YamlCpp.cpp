#include <yaml-cpp/yaml.h>

#include "../Measure.h"
#include "../forms/Yaml.h"

#include <string>
#include <vector>

namespace QuarryBenchmarks {

namespace {

using IsNumber = std::vector<bool>::const_iterator;

/// Adds up what is in a node, and moves `isNumber` behind its last scalar.
double addAll(const YAML::Node& node, IsNumber& isNumber) {
  double sum = 0.0;
  if (node.IsMap()) {
    for (const auto& member : node)
      sum += addAll(member.second, isNumber);
  } else if (node.IsSequence()) {
    for (const YAML::Node& element : node)
      sum += addAll(element, isNumber);
  } else if (*isNumber++) {
    sum = node.as<double>();
  }
  return sum;
}

/// YAML into a node.
struct YamlCpp {
  using Tree = YAML::Node;

  static Source convert(const Workload& workload) { return makeYaml(workload); }

  static void read(Tree& tree, const Source& source) { tree.reset(YAML::Load(source.text)); }

  static double addNumbers(const Tree& tree, const Source& source) {
    IsNumber isNumber = source.isNumber.begin();
    return addAll(tree, isNumber);
  }

  static std::string write(const Tree& tree) {
    YAML::Emitter emitter;
    emitter << tree;
    return emitter.c_str();
  }

  static void copy(Tree& tree, const Tree& other) { tree.reset(YAML::Clone(other)); }

  static bool find(const Tree& tree, const std::string& name) { return tree[name].IsDefined(); }
};

const PeerRegistration registration(Measure<YamlCpp>::makePeer("yaml-cpp"));

}  // namespace

}  // namespace QuarryBenchmarks
