#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include "../Measure.h"
#include "../forms/Json.h"

#include <stdexcept>

namespace QuarryBenchmarks {

namespace {

double addAll(const rapidjson::Value& value) {
  double sum = 0.0;
  if (value.IsNumber()) return value.GetDouble();
  if (value.IsObject()) {
    for (const auto& member : value.GetObject())
      sum += addAll(member.value);
  } else if (value.IsArray()) {
    for (const rapidjson::Value& element : value.GetArray())
      sum += addAll(element);
  }
  return sum;
}

/// JSON into a Document, from a constant text and with the default flags.
struct RapidJson {
  using Tree = rapidjson::Document;

  static Source convert(const Workload& workload) { return {makeJson(workload)}; }

  static void read(Tree& tree, const Source& source) {
    tree.Parse(source.text.data(), source.text.size());
    if (tree.HasParseError()) throw std::runtime_error("broken JSON");
  }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree); }

  static rapidjson::StringBuffer write(const Tree& tree) {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    tree.Accept(writer);
    return buffer;
  }

  static void copy(Tree& tree, const Tree& other) { tree.CopyFrom(other, tree.GetAllocator()); }

  static bool find(const Tree& tree, const std::string& name) {
    return tree.FindMember(name.c_str()) != tree.MemberEnd();
  }
};

const PeerRegistration registration(Measure<RapidJson>::makePeer("RapidJSON"));

}  // namespace

}  // namespace QuarryBenchmarks
