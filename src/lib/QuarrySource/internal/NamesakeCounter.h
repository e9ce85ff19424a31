/// Numbers the items of a tree among their namesakes.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <unordered_map>

namespace Quarry {

/// Counts items of the same name in the same group. The names have to outlive it.
class NamesakeCounter {
 public:
  /// Returns the number of one more item of that name in that group, from 1.
  unsigned long count(unsigned long group, std::string_view name) {
    return ++counts[{group, name}];
  }

 private:
  struct Namesakes {
    unsigned long group;
    std::string_view name;

    bool operator==(const Namesakes&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Namesakes& namesakes) const {
      constexpr std::size_t SPREAD = 0x9E3779B1;
      return std::hash<std::string_view>()(namesakes.name) + namesakes.group * SPREAD;
    }
  };

  std::unordered_map<Namesakes, unsigned long, Hash> counts;
};

}  // namespace Quarry
