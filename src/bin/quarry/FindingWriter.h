/// The forms in which findings are written.
#pragma once

#include "Finding.h"
#include "Output.h"

#include <memory>
#include <vector>

namespace Tool {

enum class FindingFormat { TEXT, JSON, SARIF, GITHUB };

/// Writes findings one by one, so that none is kept.
class FindingWriter {
 public:
  FindingWriter() = default;
  FindingWriter(const FindingWriter&) = delete;
  FindingWriter& operator=(const FindingWriter&) = delete;
  virtual ~FindingWriter() = default;

  /// Has to be called before the first finding.
  virtual void begin() {}

  /// Has to be called before the findings of each document.
  virtual void beginDocument() {}

  virtual void write(const Finding& finding) = 0;

  /// Has to be called behind the last finding.
  virtual void end(const FindingCounts&) {}
};

std::unique_ptr<FindingWriter> makeTextWriter(Output& output);
std::unique_ptr<FindingWriter> makeJsonWriter(Output& output);
std::unique_ptr<FindingWriter> makeGithubWriter(Output& output);

/// @param rules all that there are
std::unique_ptr<FindingWriter> makeSarifWriter(Output& output, std::vector<Rule> rules);

}  // namespace Tool
