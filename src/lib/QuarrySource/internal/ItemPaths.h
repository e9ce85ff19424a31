/// The paths of the parts of a tree.
#pragma once

#include "RewriteText.h"

#include <charconv>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <vector>

namespace Quarry {

/// Names items and values as SourceTree does.
class ItemPaths {
 public:
  explicit ItemPaths(const std::vector<RewritePart>& allParts)
      : parts(allParts), ordinals(parts.size()) {
    std::unordered_map<Namesakes, unsigned long, Hash> counts;
    for (unsigned long i = 0; i < parts.size(); ++i) {
      if (parts[i].isItem()) ordinals[i] = ++counts[{parts[i].owner, parts[i].item->getName()}];
    }
  }

  std::string getPath(unsigned long part) const {
    const RewritePart& named = parts[part];
    std::vector<unsigned long> steps;
    for (unsigned long i = named.isItem() ? part : named.owner; i != RewritePart::NONE;
         i = parts[i].owner)
      steps.push_back(i);
    std::string path;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
      if (step != steps.rbegin()) path += '/';
      appendStep(path, *step);
    }
    if (!named.isItem()) path += "#" + std::to_string(named.index + 1);
    return path;
  }

 private:
  /// The items of one name in one group.
  struct Namesakes {
    unsigned long owner;
    std::string_view name;

    bool operator==(const Namesakes&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Namesakes& namesakes) const {
      constexpr std::size_t SPREAD = 0x9E3779B1;
      return std::hash<std::string_view>()(namesakes.name) + namesakes.owner * SPREAD;
    }
  };

  void appendStep(std::string& path, unsigned long part) const {
    const std::string& name = parts[part].item->getName();
    const unsigned long ordinal = ordinals[part];
    path += name;
    if (ordinal > 1 || endsInOrdinal(name)) path += "[" + std::to_string(ordinal) + "]";
  }

  /// Such a name would be taken for one that is counted.
  static bool endsInOrdinal(std::string_view name) {
    const std::size_t bracket = name.rfind('[');
    if (!name.ends_with(']') || bracket == std::string_view::npos || bracket == 0) return false;
    const std::string_view digits = name.substr(bracket + 1, name.size() - bracket - 2);
    const char* end = digits.data() + digits.size();
    unsigned long number = 0;
    const std::from_chars_result result = std::from_chars(digits.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && number > 0;
  }

  const std::vector<RewritePart>& parts;
  std::vector<unsigned long> ordinals;  ///< of each item among its namesakes, from 1
};

}  // namespace Quarry
