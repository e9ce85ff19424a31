#include <QuarrySource/SourceDocument.h>

#include <Quarry/internal/Messages.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/Preprocessor.h>
#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/WordEditor.h>

#include "internal/DiagnosticCollector.h"
#include "internal/ParserRules.h"
#include "internal/SourceCollector.h"
#include "internal/SpanCutter.h"
#include "internal/StandInFiles.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace Quarry {

namespace {

constexpr double UNREAD_VERSION = 1.1;
constexpr char NESTING_LIMIT[] = "nestingDepth";

std::string withoutLineFeed(std::string sentence) {
  while (!sentence.empty() && sentence.back() == '\n')
    sentence.pop_back();
  return sentence;
}

bool isBefore(const SourcePosition& a, const SourcePosition& b) {
  return a.opening != b.opening ? a.opening < b.opening : a.offset < b.offset;
}

/// Sorts by the positions of elements. In a document of one file all are in order already.
template <typename Elements, typename Projection>
void sortUnlessSorted(Elements& elements, Projection getPosition) {
  if (std::ranges::is_sorted(elements, isBefore, getPosition)) return;
  std::ranges::sort(elements, isBefore, getPosition);
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

SourceDocument::SourceDocument() : version(UNREAD_VERSION) {}

SourceDocument::~SourceDocument() = default;

void SourceDocument::setSearchPaths(const std::vector<std::string>& paths) { searchPaths = paths; }

void SourceDocument::setLimits(const ParserLimits& newLimits) { limits = newLimits; }

void SourceDocument::setText(const std::string& path, const std::string& standIn) {
  texts[path] = standIn;
}

void SourceDocument::dropText(const std::string& path) { texts.erase(path); }

const std::string* SourceDocument::findText(const std::string& path) const {
  const auto found = texts.find(path);
  return found != texts.end() ? &found->second : nullptr;
}

void SourceDocument::copySettings(const SourceDocument& other) {
  searchPaths = other.searchPaths;
  limits = other.limits;
  texts = other.texts;
  topName = other.topName;
  topPath = other.topPath;
}

void SourceDocument::swap(SourceDocument& other) noexcept {
  std::swap(searchPaths, other.searchPaths);
  std::swap(limits, other.limits);
  std::swap(texts, other.texts);
  std::swap(topName, other.topName);
  std::swap(topPath, other.topPath);
  std::swap(files, other.files);
  std::swap(openings, other.openings);
  std::swap(runs, other.runs);
  std::swap(runsInFiles, other.runsInFiles);
  std::swap(wordEnds, other.wordEnds);
  std::swap(marks, other.marks);
  std::swap(text, other.text);
  std::swap(version, other.version);
  std::swap(diagnostics, other.diagnostics);
  std::swap(messages, other.messages);
}

bool SourceDocument::read(const std::string& name) {
  topName = name;
  topPath.clear();
  return readAgain();
}

bool SourceDocument::readText(const std::string& path, const std::string& topText) {
  setText(path, topText);
  topName = path;
  topPath = path;
  return readAgain();
}

bool SourceDocument::readAgain() {
  clear();
  try {
    preprocess();
    orderByFile();
    return version > 0.0 && parse();
  } catch (...) {
    clear();
    throw;
  }
}

void SourceDocument::clear() {
  files.clear();
  openings.clear();
  runs.clear();
  runsInFiles.clear();
  wordEnds.clear();
  marks.clear();
  text.clear();
  version = UNREAD_VERSION;
  diagnostics.clear();
  messages.clear();
}

/// As ParserFile::read(), which finds a file under its own name when no search path has it.
void SourceDocument::preprocess() {
  std::vector<std::string> paths = searchPaths;
  paths.emplace_back();
  SourceCollector collector(*this);
  Preprocessor preprocessor(paths, collector, limits, StandInFiles(texts, topPath));
  try {
    version = preprocessor.process(topName);
  } catch (const std::out_of_range&) {
    collector.badCompressedLine();
    version = 0.0;
  }
}

/// What is known of a file stands apart where it includes others.
void SourceDocument::orderByFile() {
  runsInFiles.resize(runs.size());
  std::iota(runsInFiles.begin(), runsInFiles.end(), 0UL);
  const auto getPositionOfRun = [this](unsigned long run) { return runs[run].position; };
  sortUnlessSorted(runsInFiles, getPositionOfRun);
  sortUnlessSorted(marks, &Mark::position);
}

bool SourceDocument::parse() {
  ParserWordStream words(text, version);
  DiagnosticCollector collector(*this);
  TextParser(words, collector, limits.nestingDepth).parse();
  return !collector.reportLeftOut(
      Messages::limitExceeded(topName, NESTING_LIMIT, limits.nestingDepth));
}

// --- Files ---------------------------------------------------------------------------------------

const SourceFile& SourceDocument::getFileOf(unsigned long opening) const {
  return getFile(openings[opening].file);
}

std::vector<SourceSpan> SourceDocument::getSpans(unsigned long opening) const {
  const std::vector<unsigned long>& ends = getWordEnds();
  const SourcePosition begin = {opening, 0};
  const SourcePosition end = {opening + 1, 0};
  SpanCutter cutter(text, version);
  const auto lastRun = findInFiles(end);
  for (auto index = findInFiles(begin); index != lastRun; ++index) {
    const Run& run = runs[*index];
    cutter.cutRun(run.textOffset, run.length, ends[*index], run.position.offset);
  }
  const auto isMarkBefore = [](const Mark& mark, const SourcePosition& position) {
    return isBefore(mark.position, position);
  };
  const auto firstMark = std::lower_bound(marks.begin(), marks.end(), begin, isMarkBefore);
  const auto lastMark = std::lower_bound(firstMark, marks.end(), end, isMarkBefore);
  for (auto mark = firstMark; mark != lastMark; ++mark)
    cutter.addMark(mark->kind, mark->position.offset, mark->length);
  return cutter.finish(getFileOf(opening).getText().size());
}

/// A word may begin in one run and go on in others, of whichever file.
const std::vector<unsigned long>& SourceDocument::getWordEnds() const {
  if (wordEnds.size() == runs.size()) return wordEnds;
  std::vector<unsigned long> ends;
  ends.reserve(runs.size());
  ParserWordStream words(text, version);
  const ParserWord* word = words.next();
  unsigned long wordEnd = 0;
  for (const Run& run : runs) {
    for (; word != nullptr && word->getStart() < run.textOffset; word = words.next())
      wordEnd = word->getStart() + word->getLength();
    ends.push_back(wordEnd);
  }
  wordEnds = std::move(ends);
  return wordEnds;
}

// --- The preprocessed text -----------------------------------------------------------------------

ParserWord SourceDocument::getWord(unsigned long offset, unsigned long length) const {
  ParserWord word(text, false, version);
  WordEditor(word).setExtent(offset, length);
  return word;
}

/// Returns the run that holds a byte of the text; the last one behind the text; null without text.
const SourceDocument::Run* SourceDocument::findRun(unsigned long offset) const {
  const auto behind =
      std::upper_bound(runs.begin(), runs.end(), offset,
                       [](unsigned long at, const Run& run) { return at < run.textOffset; });
  return behind == runs.begin() ? nullptr : &*(behind - 1);
}

SourcePosition SourceDocument::getPosition(unsigned long offset) const {
  const Run* run = findRun(offset);
  if (run == nullptr) return {};
  return {run->position.opening, run->position.offset + (offset - run->textOffset)};
}

std::vector<SourcePiece> SourceDocument::getPieces(unsigned long offset,
                                                   unsigned long length) const {
  std::vector<SourcePiece> pieces;
  const Run* run = findRun(offset);
  const unsigned long end = offset + length;
  while (run != nullptr && run != runs.data() + runs.size() && offset < end) {
    const unsigned long within = offset - run->textOffset;
    const unsigned long count = std::min(run->length - within, end - offset);
    pieces.push_back({{run->position.opening, run->position.offset + within}, count});
    offset += count;
    ++run;
  }
  return pieces;
}

/// Returns the first of `runsInFiles` that does not begin before a position.
std::vector<unsigned long>::const_iterator SourceDocument::findInFiles(
    const SourcePosition& position) const {
  return std::lower_bound(runsInFiles.begin(), runsInFiles.end(), position,
                          [this](unsigned long index, const SourcePosition& wanted) {
                            return isBefore(runs[index].position, wanted);
                          });
}

unsigned long SourceDocument::getTextOffset(const SourcePosition& position) const {
  const auto behind = findInFiles({position.opening, position.offset + 1});
  if (behind == runsInFiles.begin()) return NOWHERE;
  const Run& run = runs[*(behind - 1)];
  if (run.position.opening != position.opening) return NOWHERE;
  const unsigned long within = position.offset - run.position.offset;
  return within < run.length ? run.textOffset + within : NOWHERE;
}

// --- Places --------------------------------------------------------------------------------------

SourcePlace SourceDocument::getPlace(const SourcePosition& position) const {
  SourcePlace place;
  SourcePlace* shown = &place;
  SourcePosition current = position;
  while (current.opening < openings.size()) {
    const SourceFile& file = getFileOf(current.opening);
    const LineColumn counted = file.getLineColumn(current.offset);
    shown->path = file.getPath();
    shown->line = counted.line;
    shown->column = counted.column;
    const Opening& opening = openings[current.opening];
    if (opening.includer == NOWHERE) break;
    current = {opening.includer, opening.includeOffset};
    shown = &place.includedFrom.emplace_back();
  }
  return place;
}

SourcePlace SourceDocument::getPlace(const SourceDiagnostic& diagnostic) const {
  return getPlace(SourcePosition{diagnostic.opening, diagnostic.offset});
}

// --- Diagnostics ---------------------------------------------------------------------------------

std::string SourceDocument::describe(const SourceDiagnostic& diagnostic) const {
  switch (diagnostic.rule) {
    case SourceRule::CLOSES_NO_GROUP:
      return "'}' closes no group; the rest of the document is not read.";
    case SourceRule::GROUP_NOT_CLOSED: return "The group is not closed.";
    default: break;
  }
  if (!ParserRules::has(diagnostic.rule)) return withoutLineFeed(messages[diagnostic.message]);
  const ParserWord word = getWord(diagnostic.wordBegin, diagnostic.wordLength);
  return withoutLineFeed(Messages::describe(ParserRules::toDiagnostic(diagnostic.rule), word));
}

std::string SourceDocument::getMessage(const SourceDiagnostic& diagnostic) const {
  if (!diagnostic.isWarning) return describe(diagnostic);
  std::string sentence = describe(diagnostic) + "\n";
  if (diagnostic.line == 0) return sentence;
  return Messages::atPlace(diagnostic.line, diagnostic.column) + sentence;
}

}  // namespace Quarry
