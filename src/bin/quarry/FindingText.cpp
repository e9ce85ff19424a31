#include "FindingWriter.h"
#include "SourceExcerpt.h"

namespace Tool {

using Quarry::SourcePlace;

namespace {

/// Names and sentences may hold line ends of the document, which would look like further findings.
std::string toOneLine(std::string_view text) {
  std::string line;
  for (const char byte : text) {
    if (byte == '\n') {
      line += "\\n";
    } else if (byte == '\r') {
      line += "\\r";
    } else {
      line += byte;
    }
  }
  return line;
}

/// For people, and for editors that know the form `path:line:column: warning: text`.
class TextWriter : public FindingWriter {
 public:
  explicit TextWriter(Output& target) : output(target) {}

  void write(const Finding& finding) override {
    writePlace(finding.place);
    if (finding.isError) {
      output.writeWord(Style::ODD, "error:");
    } else {
      output.writeWord(Style::KEYWORD, "warning:");
    }
    output.write(" ");
    output.writeText(toOneLine(finding.text));
    output.write(" ");
    output.writeWord(Style::MARK, "[" + std::string(finding.rule) + "]");
    output.write("\n");
    writeExcerpt(output, finding);
    for (const SourcePlace& includer : finding.place.includedFrom) {
      writePlace(includer);
      output.writeWord(Style::TYPE, "note:");
      output.write(" included from here\n");
    }
  }

 private:
  void writePlace(const SourcePlace& place) {
    std::string text = toOneLine(place.path) + ":";
    if (place.line > 0) {
      text += std::to_string(place.line) + ":" + std::to_string(place.column) + ":";
    }
    output.writeWord(Style::NAME, text);
    output.write(" ");
  }

  Output& output;
};

}  // namespace

std::unique_ptr<FindingWriter> makeTextWriter(Output& output) {
  return std::make_unique<TextWriter>(output);
}

}  // namespace Tool
