#include "GlobPattern.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace Tool {

namespace {

constexpr std::size_t NONE = std::string_view::npos;

std::optional<long> toNumber(std::string_view text) {
  long number = 0;
  const bool hasPlus = text.starts_with('+');
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data() + (hasPlus ? 1 : 0), end, number);
  if (text.empty() || result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

// --- Compiling -----------------------------------------------------------------------------------

class GlobPattern::Compiler {
 public:
  explicit Compiler(std::string_view text) : pattern(text) {}

  std::vector<Step> compile() {
    while (position < pattern.size())
      take(pattern[position]);
    return std::move(steps);
  }

 private:
  /// Braces that are open.
  struct Braces {
    bool areLiteral;
    std::size_t fork = 0;
    std::vector<std::size_t> exits = {};  ///< forks that lead behind the braces
  };

  void take(char byte) {
    switch (byte) {
      case '*': return takeStars();
      case '/': return takeSlash();
      case '?': return add({.kind = Step::CHARACTER}, 1);
      case '[': return takeClass();
      case '{': return openBraces();
      case ',': return takeComma();
      case '}': return closeBraces();
      case '\\': position += position + 1 < pattern.size() ? 1 : 0; break;
      default: break;
    }
    addByte();
  }

  void add(Step step, std::size_t length) {
    steps.push_back(std::move(step));
    position += length;
  }

  void addByte() { add({.bytes = std::string(1, pattern[position])}, 1); }

  void takeStars() {
    if (pattern.substr(position).starts_with("**")) return add({.kind = Step::ANY_BYTES}, 2);
    add({.kind = Step::ANY_BYTES_BUT_SLASH}, 1);
  }

  /// `a/**/b` is also `a/b`.
  void takeSlash() {
    const bool isOptional = pattern.substr(position).starts_with("/**/");
    addByte();
    if (!isOptional) return;
    const std::size_t begin = steps.size();
    add({.kind = Step::FORK, .next = {begin + 1, begin + 3}}, 0);
    takeStars();
    addByte();
  }

  void takeClass() {
    const std::string_view rest = pattern.substr(position);
    const bool isNegated = rest.starts_with("[!");
    std::string bytes;
    std::size_t i = isNegated ? 2 : 1;
    for (; i < rest.size() && rest[i] != ']' && rest[i] != '/'; ++i) {
      if (rest[i] == '\\' && i + 1 < rest.size()) ++i;
      const bool isRange = i + 2 < rest.size() && rest[i + 1] == '-' && rest[i + 2] != ']';
      if (!isRange) {
        bytes += rest[i];
        continue;
      }
      for (int byte = static_cast<unsigned char>(rest[i]);
           byte <= static_cast<unsigned char>(rest[i + 2]); ++byte)
        bytes += static_cast<char>(byte);
      i += 2;
    }
    if (i >= rest.size() || rest[i] == '/') return addByte();
    add({.kind = Step::CLASS, .bytes = bytes, .isNegated = isNegated}, i + 1);
  }

  // --- Braces ------------------------------------------------------------------------------------

  void openBraces() {
    bool hasComma = false;
    const std::size_t end = findClosing(hasComma);
    if (end == NONE) return addByte();
    if (takeNumbers(pattern.substr(position + 1, end - position - 1))) return;
    open.push_back({!hasComma, steps.size()});
    if (!hasComma) return addByte();
    add({.kind = Step::FORK, .next = {steps.size() + 1}}, 1);
  }

  /// @param hasComma whether there is one that is not in further braces
  std::size_t findClosing(bool& hasComma) const {
    std::size_t depth = 0;
    for (std::size_t i = position; i < pattern.size(); ++i) {
      if (pattern[i] == '\\') {
        ++i;
      } else if (pattern[i] == '{') {
        ++depth;
      } else if (pattern[i] == ',' && depth == 1) {
        hasComma = true;
      } else if (pattern[i] == '}' && --depth == 0) {
        return i;
      }
    }
    return NONE;
  }

  bool takeNumbers(std::string_view inner) {
    const std::size_t dots = inner.find("..");
    if (dots == NONE) return false;
    const auto first = toNumber(inner.substr(0, dots));
    const auto last = toNumber(inner.substr(dots + 2));
    if (!first || !last) return false;
    add({.kind = Step::NUMBER, .least = std::min(*first, *last), .most = std::max(*first, *last)},
        inner.size() + 2);
    return true;
  }

  void takeComma() {
    if (open.empty() || open.back().areLiteral) return addByte();
    open.back().exits.push_back(steps.size());
    add({.kind = Step::FORK}, 1);
    steps[open.back().fork].next.push_back(steps.size());
  }

  void closeBraces() {
    if (open.empty()) return addByte();
    const Braces braces = std::move(open.back());
    open.pop_back();
    if (braces.areLiteral) return addByte();
    for (const std::size_t exit : braces.exits)
      steps[exit].next = {steps.size()};
    ++position;
  }

  const std::string_view pattern;
  std::size_t position = 0;
  std::vector<Step> steps;
  std::vector<Braces> open;
};

GlobPattern::GlobPattern(std::string_view pattern) : steps(Compiler(pattern).compile()) {}

// --- Matching ------------------------------------------------------------------------------------

/// Notes for each place of the path which steps may come next there.
class GlobPattern::Matcher {
 public:
  Matcher(const std::vector<Step>& pattern, std::string_view matched)
      : steps(pattern),
        path(matched),
        reached(path.size() + 1, std::vector<bool>(steps.size() + 1)) {}

  bool match() {
    reach(0, 0);
    for (std::size_t place = 0; place <= path.size(); ++place) {
      for (std::size_t i = 0; i <= steps.size(); ++i) {
        if (reached[place][i]) waiting.push_back(i);
      }
      while (!waiting.empty()) {
        const std::size_t index = waiting.back();
        waiting.pop_back();
        if (index < steps.size()) take(index, place);
      }
    }
    return reached[path.size()][steps.size()];
  }

 private:
  /// At the place that is being looked at, the step is to be taken, too.
  void reach(std::size_t index, std::size_t place, bool isHere = false) {
    if (reached[place][index]) return;
    reached[place][index] = true;
    if (isHere) waiting.push_back(index);
  }

  void take(std::size_t index, std::size_t place) {
    const Step& step = steps[index];
    const bool hasByte = place < path.size();
    const char byte = hasByte ? path[place] : '\0';
    switch (step.kind) {
      case Step::FORK:
        for (const std::size_t next : step.next)
          reach(next, place, true);
        break;
      case Step::ANY_BYTES:
      case Step::ANY_BYTES_BUT_SLASH:
        reach(index + 1, place, true);
        if (hasByte && (byte != '/' || step.kind == Step::ANY_BYTES)) reach(index, place + 1);
        break;
      case Step::BYTE:
        if (hasByte && byte == step.bytes.front()) reach(index + 1, place + 1);
        break;
      case Step::CHARACTER:
        if (hasByte && byte != '/') reach(index + 1, endOfCharacter(place));
        break;
      case Step::CLASS:
        if (hasByte && byte != '/' && (step.bytes.find(byte) != NONE) != step.isNegated) {
          reach(index + 1, step.isNegated ? endOfCharacter(place) : place + 1);
        }
        break;
      case Step::NUMBER: takeNumber(index, place); break;
    }
  }

  std::size_t endOfCharacter(std::size_t place) const {
    ++place;
    while (place < path.size() && isContinuation(path[place]))
      ++place;
    return place;
  }

  /// A number of the range may be the beginning of a longer one. Leading zeros make it none.
  void takeNumber(std::size_t index, std::size_t place) {
    const Step& step = steps[index];
    const std::size_t sign = path.substr(place).find_first_of("+-") == 0 ? 1 : 0;
    const bool isZero = place + sign < path.size() && path[place + sign] == '0';
    for (std::size_t end = place + sign + 1; end <= path.size(); ++end) {
      const auto number = toNumber(path.substr(place, end - place));
      if (!number) return;
      if (*number >= step.least && *number <= step.most) reach(index + 1, end);
      if (isZero) return;
    }
  }

  const std::vector<Step>& steps;
  const std::string_view path;
  std::vector<std::vector<bool>> reached;
  std::vector<std::size_t> waiting;  ///< steps to be taken at the place that is being looked at
};

bool GlobPattern::matches(std::string_view path) const { return Matcher(steps, path).match(); }

}  // namespace Tool
