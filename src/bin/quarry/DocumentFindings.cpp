#include "DocumentFindings.h"

#include "CompressedFile.h"
#include "FileBytes.h"
#include "Texts.h"

#include <set>
#include <string_view>

namespace Tool {

using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourcePlace;
using Quarry::SourcePosition;
using Quarry::SourceRule;

namespace {

constexpr Rule COMPRESSED_WITHOUT_MARKERS = {
    "compressed-without-markers",
    "A compressed file lacks the markers before its line feeds; reading takes two bytes of each "
    "line."};

constexpr Rule BYTE_ORDER_MARK = {
    "byte-order-mark", "A file begins with a byte order mark, which is taken for part of a word."};

constexpr std::string_view MARK_BYTES = "\xEF\xBB\xBF";

/// Tells whether a document that cannot be read may be so because of a diagnostic.
bool preventsReading(SourceRule rule) {
  switch (rule) {
    case SourceRule::FILE_NOT_FOUND:
    case SourceRule::FILE_NOT_OPENED:
    case SourceRule::LIMIT_EXCEEDED:
    case SourceRule::INCLUDE_OUTSIDE:
    case SourceRule::INCLUDE_CYCLE:
    case SourceRule::UNCLOSED_INCLUDE:
    case SourceRule::UNUSABLE_VERSION:
    case SourceRule::BAD_COMPRESSED_LINE: return true;
    default: return false;
  }
}

// --- Compressed files ----------------------------------------------------------------------------

/// An include and what it asks for.
struct Include {
  std::string_view name;
  SourcePosition position;
};

/// Returns what stands between the quotes of an include.
Include getInclude(const SourceDocument& document, const SourcePosition& position,
                   unsigned long length) {
  constexpr std::string_view BEFORE_NAME = "#include \"";
  const std::string_view text = document.getFileOf(position.opening).getText();
  const std::string_view include = text.substr(position.offset, length);
  return {include.substr(BEFORE_NAME.size(), include.size() - BEFORE_NAME.size() - 1), position};
}

/// Looks at each file that a document names, once.
class MarkerCheck {
 public:
  MarkerCheck(const CheckedDocument& checked, const FindingTaker& taker)
      : document(checked), take(taker) {}

  void checkTop() {
    if (!document.name.empty()) return check(document.name, {});
    if (isCompressed(document.input))
      report(findLostBytes(document.input, getMost()), document.path, {});
  }

  void check(const Include& include) {
    if (names.count(include.name) > 0) return;
    SourcePlace place = document.source.getPlace(include.position);
    std::vector<SourcePlace> includedFrom = std::move(place.includedFrom);
    place.includedFrom.clear();
    includedFrom.insert(includedFrom.begin(), place);
    check(include.name, std::move(includedFrom));
  }

 private:
  void check(std::string_view name, std::vector<SourcePlace> includedFrom) {
    if (!names.emplace(name).second) return;
    report(findLostBytesOfFile(std::string(name), getMost()), name, std::move(includedFrom));
  }

  unsigned long getMost() const { return document.source.getLimits().preprocessedBytes; }

  void report(const std::optional<LostBytes>& lost, std::string_view name,
              std::vector<SourcePlace> includedFrom) const {
    if (!lost) return;
    Finding finding;
    finding.rule = COMPRESSED_WITHOUT_MARKERS.name;
    finding.text = Texts::compressedWithoutMarkers();
    finding.place = {std::string(name), lost->line, lost->column, std::move(includedFrom)};
    finding.line = lost->text;
    finding.begin = lost->begin;
    finding.length = lost->length;
    take(finding);
  }

  const CheckedDocument& document;
  const FindingTaker& take;
  std::set<std::string, std::less<>> names;
};

}  // namespace

std::vector<Rule> getFindingRules() {
  std::vector<Rule> rules;
  for (const SourceRule rule : Quarry::getRules())
    rules.push_back({Quarry::getRuleName(rule), Quarry::getRuleDescription(rule)});
  rules.push_back(BYTE_ORDER_MARK);
  rules.push_back(COMPRESSED_WITHOUT_MARKERS);
  return rules;
}

void findDiagnostics(const CheckedDocument& document, const FindingTaker& take) {
  const SourceDocument& source = document.source;
  for (const SourceDiagnostic& diagnostic : source.getDiagnostics()) {
    Finding finding;
    finding.isError = !document.isRead && preventsReading(diagnostic.rule);
    finding.rule = Quarry::getRuleName(diagnostic.rule);
    finding.text = source.describe(diagnostic);
    finding.place = source.getPlace(diagnostic);
    if (finding.place.line > 0) {
      finding.line = source.getFileOf(diagnostic.opening).getLine(finding.place.line);
      finding.begin = finding.place.column - 1;
      finding.length = diagnostic.length;
    } else {
      finding.place.path = document.path;
    }
    take(finding);
  }
}

/// A file that is included several times is named at its first opening.
void findByteOrderMarks(const CheckedDocument& document, const FindingTaker& take) {
  const SourceDocument& source = document.source;
  std::vector<bool> areSeen(source.getFileCount());
  for (unsigned long i = 0; i < source.getOpeningCount(); ++i) {
    const unsigned long file = source.getOpening(i).file;
    if (areSeen[file]) continue;
    areSeen[file] = true;
    if (!source.getFile(file).getText().starts_with(MARK_BYTES)) continue;
    Finding finding;
    finding.rule = BYTE_ORDER_MARK.name;
    finding.text = Texts::byteOrderMark();
    finding.place = source.getPlace({i, 0});
    finding.line = source.getFile(file).getLine(1);
    finding.length = MARK_BYTES.size();
    take(finding);
  }
}

/// A file is compressed when one of its name is, wherever a search path leads. A file that could
/// not be read was never opened, and only its include tells of it.
void findUnmarkedFiles(const CheckedDocument& document, const FindingTaker& take) {
  const SourceDocument& source = document.source;
  MarkerCheck check(document, take);
  check.checkTop();
  for (unsigned long i = 1; i < source.getOpeningCount(); ++i) {
    const SourceDocument::Opening& opening = source.getOpening(i);
    check.check(
        getInclude(source, {opening.includer, opening.includeOffset}, opening.includeLength));
  }
  for (const SourceDiagnostic& diagnostic : source.getDiagnostics()) {
    const bool isInclude = diagnostic.rule == SourceRule::BAD_COMPRESSED_LINE &&
                           diagnostic.opening != SourceDiagnostic::NO_OPENING;
    if (isInclude) {
      check.check(getInclude(source, {diagnostic.opening, diagnostic.offset}, diagnostic.length));
    }
  }
}

}  // namespace Tool
