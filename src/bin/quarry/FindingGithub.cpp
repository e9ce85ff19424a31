#include "FindingWriter.h"

namespace Tool {

using Quarry::SourcePlace;

namespace {

/// Escapes what would end a command.
std::string escapeData(std::string_view text, std::string_view special = "%\r\n") {
  constexpr char DIGITS[] = "0123456789ABCDEF";
  std::string escaped;
  for (const char byte : text) {
    if (special.find(byte) == std::string_view::npos) {
      escaped += byte;
      continue;
    }
    const auto code = static_cast<unsigned char>(byte);
    escaped += '%';
    escaped += DIGITS[code >> 4];
    escaped += DIGITS[code & 15];
  }
  return escaped;
}

/// Escapes what would end a property, too.
std::string escapeProperty(std::string_view text) { return escapeData(text, "%\r\n:,"); }

/// Commands that a workflow on GitHub shows at the lines of a change.
class GithubWriter : public FindingWriter {
 public:
  explicit GithubWriter(Output& target) : output(target) {}

  void write(const Finding& finding) override {
    const SourcePlace& place = finding.place;
    std::string command = finding.isError ? "::error file=" : "::warning file=";
    command += escapeProperty(place.path);
    if (place.line > 0) {
      command += ",line=" + std::to_string(place.line) + ",col=" + std::to_string(place.column);
    }
    command += ",title=" + escapeProperty(finding.rule) + "::" + escapeData(getMessage(finding));
    output.writeText(command);
    output.write("\n");
  }

 private:
  static std::string getMessage(const Finding& finding) {
    std::string message = finding.text;
    for (const SourcePlace& includer : finding.place.includedFrom) {
      message += "\nincluded from " + includer.path + ":" + std::to_string(includer.line) + ":" +
                 std::to_string(includer.column);
    }
    return message;
  }

  Output& output;
};

}  // namespace

std::unique_ptr<FindingWriter> makeGithubWriter(Output& output) {
  return std::make_unique<GithubWriter>(output);
}

}  // namespace Tool
