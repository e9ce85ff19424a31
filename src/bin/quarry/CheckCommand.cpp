#include "CommandTable.h"
#include "Commands.h"
#include "DocumentFindings.h"
#include "FindingWriter.h"
#include "Progress.h"
#include "RewriteFindings.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <unistd.h>

#include <limits>
#include <memory>

namespace Tool {

namespace {

constexpr unsigned long UNLIMITED = std::numeric_limits<unsigned long>::max();

struct CheckOptions {
  std::vector<std::string> files;
  SourceOptions source;
  FindingFormat format = FindingFormat::TEXT;
  ColorChoice color = ColorChoice::AUTO;
  unsigned long maxWarnings = 0;
  unsigned long limit = UNLIMITED;
  bool withRewrite = false;
  bool quiet = false;
};

std::vector<Rule> getAllRules() {
  std::vector<Rule> rules = getFindingRules();
  const std::vector<Rule> more = getRewriteRules();
  rules.insert(rules.end(), more.begin(), more.end());
  return rules;
}

std::unique_ptr<FindingWriter> makeWriter(FindingFormat format, Output& output) {
  switch (format) {
    case FindingFormat::JSON: return makeJsonWriter(output);
    case FindingFormat::SARIF: return makeSarifWriter(output, getAllRules());
    case FindingFormat::GITHUB: return makeGithubWriter(output);
    default: return makeTextWriter(output);
  }
}

/// Checks documents one after the other and keeps no finding.
class Check {
 public:
  Check(const CheckOptions& wanted, FindingWriter& target) : options(wanted), writer(target) {}

  const FindingCounts& run() {
    if (!options.quiet) writer.begin();
    for (const std::string& file : options.files)
      check(file);
    if (!options.quiet) writer.end(counts);
    return counts;
  }

 private:
  void check(const std::string& file) {
    ++counts.files;
    Quarry::SourceDocument source;
    CheckedDocument document = {source, file == "-" ? "" : file, "",
                                options.source.getShownName(file), false};
    read(source, document);
    if (!options.quiet) writer.beginDocument();
    const FindingTaker take = [this](const Finding& finding) { this->take(finding); };
    findUnmarkedFiles(document, take);
    findByteOrderMarks(document, take);
    findDiagnostics(document, take);
    if (options.withRewrite) findRewriteHazards(document, take);
  }

  void read(Quarry::SourceDocument& source, CheckedDocument& document) const {
    const Progress progress(Texts::checking(document.path, counts.files, options.files.size()));
    if (document.name.empty()) document.input = options.source.readBytes("-");
    document.isRead = document.name.empty() ? options.source.readInput(source, document.input)
                                            : options.source.read(source, document.name);
  }

  void take(const Finding& finding) {
    if (!options.quiet && counts.getAll() < options.limit) writer.write(finding);
    ++(finding.isError ? counts.errors : counts.warnings);
  }

  const CheckOptions& options;
  FindingWriter& writer;
  FindingCounts counts;
};

/// There is nobody left to tell when standard error fails.
void writeSummary(const FindingCounts& counts) {
  if (counts.getAll() == 0) return;
  (void)writeAll(STDERR_FILENO,
                 Texts::summary(counts.errors, counts.warnings, counts.files) + "\n");
}

ExitStatus run(const CheckOptions& options, MessageLog& log) {
  log.setQuiet(true);  // what the library warns of is among the findings
  Output output(options.color);
  const std::unique_ptr<FindingWriter> writer = makeWriter(options.format, output);
  const FindingCounts counts = Check(options, *writer).run();
  output.flush();
  if (!options.quiet) writeSummary(counts);
  if (counts.errors > 0) return ExitStatus::FAILED;
  return counts.warnings > options.maxWarnings ? ExitStatus::FINDINGS : ExitStatus::FINE;
}

}  // namespace

void addCheckCommand(CommandTable& commands) {
  const auto options = std::make_shared<CheckOptions>();
  Command command = commands.add(
      "check",
      {"Check", "Tells what is wrong in documents, each with its place",
       "  quarry check project.cfg scenes/*.cfg\n"
       "  quarry check --max-warnings 10 project.cfg\n"
       "  quarry check --format=sarif project.cfg >project.sarif\n"
       "  git show HEAD:project.cfg | quarry check --stdin-filename project.cfg -",
       "Each finding is 'path:line:column: warning: text [rule]', followed by the line with a "
       "mark\n"
       "below the place and by the includes that lead to the file. Lines and columns count from\n"
       "1, columns in bytes. What makes a document unreadable is an error.\n"
       "\n"
       "Exit status: 0 no more warnings than allowed, 1 more of them, 2 a document cannot be "
       "read."},
      [options](MessageLog& log) { return run(*options, log); });
  addFiles(command, options->files);
  command.addChoice<FindingFormat>("--format", "FORMAT",
                                   {{"text", FindingFormat::TEXT},
                                    {"json", FindingFormat::JSON},
                                    {"sarif", FindingFormat::SARIF},
                                    {"github", FindingFormat::GITHUB}},
                                   options->format,
                                   "How findings are written: text, json, sarif, github");
  command.addNumber("--max-warnings", options->maxWarnings,
                    "Exit with 0 for up to N warnings; 0 unless it is given");
  command.addFlag("--rewrite", options->withRewrite,
                  "Find what would not survive being written and read back, too");
  command.addNumber("--limit", options->limit,
                    "Write no more than N findings; the others are only counted");
  command.addFlag("-q,--quiet", options->quiet, "Write nothing; the exit status tells");
  options->source.addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
