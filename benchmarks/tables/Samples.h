/// What was measured, round by round.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace QuarryBenchmarks {

/// What one library took for one operation on one document, in the order of the rounds.
using Samples = std::vector<double>;

/// Strings with a value each, in the order in which they were added.
template <class Value>
class Ordered {
 public:
  /// Returns the value of a name, a new one when there is none.
  Value& operator[](const std::string& name) {
    const auto [place, isNew] = values.try_emplace(name);
    if (isNew) names.push_back(name);
    return place->second;
  }

  /// Returns the value of a name, or null.
  const Value* find(const std::string& name) const {
    const auto place = values.find(name);
    return place == values.end() ? nullptr : &place->second;
  }

  const std::vector<std::string>& getNames() const { return names; }

 private:
  std::vector<std::string> names;
  std::map<std::string, Value> values;
};

/// Samples of each document, and of each library there.
using Documents = Ordered<Ordered<Samples>>;

/// Those of each operation.
using Operations = Ordered<Documents>;

/// Adds what a JSON file of Google Benchmark holds. Throws std::exception when it is none.
/// @param label takes the place of the library's name unless it is empty
void addSamples(Operations& operations, const std::string& path, const std::string& label);

}  // namespace QuarryBenchmarks
