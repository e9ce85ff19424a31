#include <nlohmann/json.hpp>

#include "FindingWriter.h"
#include "Utf16Columns.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace Tool {

using Json = nlohmann::ordered_json;
using Quarry::SourcePlace;

namespace {

constexpr char SCHEMA[] =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

/// Returns a path as a URI: relative, or of the scheme "file" for an absolute path.
std::string toUri(std::string_view path) {
  constexpr std::string_view PLAIN =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr char DIGITS[] = "0123456789ABCDEF";
  std::string uri = path.substr(0, 1) == "/" ? "file://" : "";
  for (const char byte : path) {
    if (PLAIN.find(byte) != std::string_view::npos) {
      uri += byte;
      continue;
    }
    const auto code = static_cast<unsigned char>(byte);
    uri += '%';
    uri += DIGITS[code >> 4];
    uri += DIGITS[code & 15];
  }
  return uri;
}

std::string toText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// SARIF 2.1.0, for the tools that gather the findings of others.
class SarifWriter : public FindingWriter {
 public:
  SarifWriter(Output& target, std::vector<Rule> allRules)
      : output(target), rules(std::move(allRules)) {
    for (std::size_t i = 0; i < rules.size(); ++i)
      ruleIndices.emplace(rules[i].name, i);
  }

  void begin() override {
    output.write("{\"$schema\": \"" + std::string(SCHEMA) +
                 "\",\n\"version\": \"2.1.0\",\n\"runs\": [{\"tool\": " + toText(describeTool()) +
                 ",\n\"columnKind\": \"utf16CodeUnits\",\n\"results\": [");
  }

  void beginDocument() override { columns.clear(); }

  void write(const Finding& finding) override {
    Json result = {{"ruleId", finding.rule},
                   {"ruleIndex", ruleIndices.at(finding.rule)},
                   {"level", finding.isError ? "error" : "warning"},
                   {"message", {{"text", finding.text}}},
                   {"locations", Json::array({Json{{"physicalLocation", locate(finding)}}})}};
    if (!finding.place.includedFrom.empty()) result["relatedLocations"] = relate(finding.place);
    output.write(hasResults ? ",\n" : "\n");
    output.writeText(toText(result));
    hasResults = true;
  }

  void end(const FindingCounts& counts) override {
    const bool isDone = counts.errors == 0;
    output.write(std::string(hasResults ? "\n]" : "]") +
                 ",\n\"invocations\": [{\"executionSuccessful\": " + (isDone ? "true" : "false") +
                 "}]}]}\n");
  }

 private:
  Json describeTool() const {
    Json descriptors = Json::array();
    for (const Rule& rule : rules) {
      descriptors.push_back(
          {{"id", rule.name}, {"shortDescription", {{"text", rule.description}}}});
    }
    return {{"driver",
             {{"name", "quarry"}, {"version", QUARRY_VERSION}, {"rules", std::move(descriptors)}}}};
  }

  Json locate(const Finding& finding) {
    Json location = {{"artifactLocation", {{"uri", toUri(finding.place.path)}}}};
    if (finding.place.line == 0) return location;
    const unsigned long end = finding.begin + finding.getShownLength();
    const unsigned long before = finding.place.column - 1 - finding.begin;  // the line's cut part
    location["region"] = {{"startLine", finding.place.line},
                          {"startColumn", before + columns.count(finding.line, finding.begin) + 1},
                          {"endLine", finding.place.line},
                          {"endColumn", before + columns.count(finding.line, end) + 1}};
    return location;
  }

  /// An include has its line only: nothing else stands there that could be meant.
  static Json relate(const SourcePlace& place) {
    Json related = Json::array();
    for (const SourcePlace& includer : place.includedFrom) {
      related.push_back({{"id", related.size()},
                         {"message", {{"text", "included from here"}}},
                         {"physicalLocation",
                          {{"artifactLocation", {{"uri", toUri(includer.path)}}},
                           {"region", {{"startLine", includer.line}}}}}});
    }
    return related;
  }

  Output& output;
  const std::vector<Rule> rules;
  std::unordered_map<std::string_view, std::size_t> ruleIndices;
  Utf16Columns columns;
  bool hasResults = false;
};

}  // namespace

std::unique_ptr<FindingWriter> makeSarifWriter(Output& output, std::vector<Rule> rules) {
  return std::make_unique<SarifWriter>(output, std::move(rules));
}

}  // namespace Tool
