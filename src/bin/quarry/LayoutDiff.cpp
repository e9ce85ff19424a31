#include "LayoutDiff.h"

#include <algorithm>

namespace Tool {

namespace {

constexpr std::size_t CONTEXT = 3;

/// A line, with its line feed if it has one.
struct Line {
  std::string_view bytes;
  unsigned long passed;  ///< bytes of the text before it that are no blanks

  bool operator==(const Line&) const = default;
};

bool isBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }

std::vector<Line> cutLines(std::string_view text) {
  std::vector<Line> lines;
  unsigned long passed = 0;
  while (!text.empty()) {
    const std::string_view bytes = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
    lines.push_back({bytes, passed});
    passed += bytes.size() - static_cast<unsigned long>(std::ranges::count_if(bytes, isBlank));
    text.remove_prefix(bytes.size());
  }
  return lines;
}

/// A line of either text, or of both.
struct Step {
  DiffLine::Kind kind;
  std::string_view bytes;
};

std::vector<Step> align(const std::vector<Line>& before, const std::vector<Line>& after) {
  std::vector<Step> steps;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < before.size() || j < after.size()) {
    const bool isRemoved =
        j == after.size() || (i < before.size() && before[i].passed <= after[j].passed);
    if (i < before.size() && j < after.size() && before[i] == after[j]) {
      steps.push_back({DiffLine::COMMON, before[i++].bytes});
      ++j;
    } else if (isRemoved) {
      steps.push_back({DiffLine::REMOVED, before[i++].bytes});
    } else {
      steps.push_back({DiffLine::ADDED, after[j++].bytes});
    }
  }
  return steps;
}

/// Within a change, what is removed stands before what is added.
void sortChanges(std::vector<Step>& steps) {
  const auto isCommon = [](const Step& step) { return step.kind == DiffLine::COMMON; };
  auto begin = steps.begin();
  while (begin != steps.end()) {
    const auto end = std::find_if(begin, steps.end(), isCommon);
    std::stable_partition(begin, end,
                          [](const Step& step) { return step.kind == DiffLine::REMOVED; });
    begin = std::find_if_not(end, steps.end(), isCommon);
  }
}

class HunkWriter {
 public:
  HunkWriter(const std::vector<Step>& all, std::vector<DiffLine>& lines) : steps(all), out(lines) {}

  void write() {
    std::size_t change = findChange(0);
    while (change < steps.size()) {
      std::size_t end = change + 1;  // behind the last change that is near enough
      std::size_t next = findChange(end);
      while (next < steps.size() && next - end <= 2 * CONTEXT) {
        end = next + 1;
        next = findChange(end);
      }
      const std::size_t begin = change - std::min(change, CONTEXT);
      pass(begin);
      writeHunk(begin, std::min(end + CONTEXT, steps.size()));
      change = next;
    }
  }

 private:
  std::size_t findChange(std::size_t from) const {
    while (from < steps.size() && steps[from].kind == DiffLine::COMMON)
      ++from;
    return from;
  }

  /// Counts the lines up to a step, all of which stand in both texts.
  void pass(std::size_t end) {
    beforeLine += end - position;
    afterLine += end - position;
    position = end;
  }

  void writeHunk(std::size_t begin, std::size_t end) {
    unsigned long beforeCount = 0;
    unsigned long afterCount = 0;
    for (std::size_t i = begin; i < end; ++i) {
      if (steps[i].kind != DiffLine::ADDED) ++beforeCount;
      if (steps[i].kind != DiffLine::REMOVED) ++afterCount;
    }
    out.push_back({DiffLine::PLACE, "@@ -" + formatRange(beforeLine, beforeCount) + " +" +
                                        formatRange(afterLine, afterCount) + " @@"});
    for (std::size_t i = begin; i < end; ++i)
      writeLine(steps[i]);
    beforeLine += beforeCount;
    afterLine += afterCount;
    position = end;
  }

  /// A range without lines is named by the line before it.
  static std::string formatRange(unsigned long passed, unsigned long count) {
    if (count == 1) return std::to_string(passed + 1);
    return std::to_string(count == 0 ? passed : passed + 1) + "," + std::to_string(count);
  }

  void writeLine(const Step& step) {
    const bool isWhole = step.bytes.ends_with('\n');
    const char mark = step.kind == DiffLine::COMMON    ? ' '
                      : step.kind == DiffLine::REMOVED ? '-'
                                                       : '+';
    const std::string_view text = step.bytes.substr(0, step.bytes.size() - (isWhole ? 1 : 0));
    out.push_back({step.kind, mark + std::string(text)});
    if (!isWhole) out.push_back({DiffLine::NOTE, "\\ No newline at end of file"});
  }

  const std::vector<Step>& steps;
  std::vector<DiffLine>& out;
  std::size_t position = 0;
  unsigned long beforeLine = 0;  ///< lines that were passed
  unsigned long afterLine = 0;
};

}  // namespace

std::vector<DiffLine> diffLayouts(const std::string& name, std::string_view before,
                                  std::string_view after) {
  if (before == after) return {};
  std::vector<Step> steps = align(cutLines(before), cutLines(after));
  sortChanges(steps);
  std::vector<DiffLine> lines = {{DiffLine::FILE, "--- " + name}, {DiffLine::FILE, "+++ " + name}};
  HunkWriter(steps, lines).write();
  return lines;
}

}  // namespace Tool
