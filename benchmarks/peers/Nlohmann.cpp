#include <nlohmann/json.hpp>

#include "../Measure.h"
#include "../forms/Json.h"

#include <cstdint>
#include <string>
#include <vector>

namespace QuarryBenchmarks {

namespace {

using nlohmann::json;

double addAll(const json& value) {
  if (value.is_number()) return value.get<double>();
  double sum = 0.0;
  if (value.is_structured()) {
    for (const json& child : value)
      sum += addAll(child);
  }
  return sum;
}

/// JSON into a json, and that as MessagePack.
struct Nlohmann {
  using Tree = json;

  static Source convert(const Workload& workload) { return {makeJson(workload)}; }

  static void read(Tree& tree, const Source& source) { tree = json::parse(source.text); }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree); }

  static std::string write(const Tree& tree) { return tree.dump(4); }

  static std::vector<std::uint8_t> encode(const Tree& tree) { return json::to_msgpack(tree); }

  static void decode(Tree& tree, const std::vector<std::uint8_t>& bytes) {
    tree = json::from_msgpack(bytes);
  }

  static void copy(Tree& tree, const Tree& other) { tree = other; }

  static bool find(const Tree& tree, const std::string& name) { return tree.contains(name); }
};

const PeerRegistration registration(Measure<Nlohmann>::makePeer("nlohmann-json"));

}  // namespace

}  // namespace QuarryBenchmarks
