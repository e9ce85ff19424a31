#include <nlohmann/json.hpp>

#include "FindingWriter.h"

namespace Tool {

using Json = nlohmann::ordered_json;
using Quarry::SourcePlace;

namespace {

/// One object with all findings, each on a line of its own.
class JsonWriter : public FindingWriter {
 public:
  explicit JsonWriter(Output& target) : output(target) {}

  void begin() override { output.write("{\"findings\": ["); }

  void write(const Finding& finding) override {
    Json object = {{"level", finding.isError ? "error" : "warning"},
                   {"rule", finding.rule},
                   {"message", finding.text}};
    addPlace(object, finding.place);
    if (finding.place.line > 0) object["length"] = finding.length;
    Json includers = Json::array();
    for (const SourcePlace& includer : finding.place.includedFrom)
      addPlace(includers.emplace_back(Json::object()), includer);
    object["includedFrom"] = std::move(includers);
    output.write(hasFindings ? ",\n  " : "\n  ");
    output.writeText(object.dump(-1, ' ', false, Json::error_handler_t::replace));
    hasFindings = true;
  }

  void end(const FindingCounts& counts) override {
    output.write(hasFindings ? "\n]" : "]");
    output.write(", \"errors\": " + std::to_string(counts.errors) +
                 ", \"warnings\": " + std::to_string(counts.warnings) +
                 ", \"files\": " + std::to_string(counts.files) + "}\n");
  }

 private:
  static void addPlace(Json& object, const SourcePlace& place) {
    object["file"] = place.path;
    if (place.line == 0) return;
    object["line"] = place.line;
    object["column"] = place.column;
  }

  Output& output;
  bool hasFindings = false;
};

}  // namespace

std::unique_ptr<FindingWriter> makeJsonWriter(Output& output) {
  return std::make_unique<JsonWriter>(output);
}

}  // namespace Tool
