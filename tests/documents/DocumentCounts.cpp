#include "DocumentCounts.h"

#include <Quarry/ParserItem.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace DocumentCheck {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

namespace {

/// Adds doubles and carries along what rounding loses, so that the order of adding does not matter.
class Sum {
 public:
  void add(double number) {
    const double sum = total + number;
    const bool isLarger = std::fabs(total) >= std::fabs(number);
    lost += isLarger ? (total - sum) + number : (number - sum) + total;
    total = sum;
  }
  double get() const { return total + lost; }

 private:
  double total = 0.0;
  double lost = 0.0;
};

/// Walks a tree of any depth.
class Counter {
 public:
  Counts count(const ParserGroup& root) {
    waiting.push_back({&root, 1});
    while (!waiting.empty()) {
      const Place place = waiting.back();
      waiting.pop_back();
      counts["depth"] = std::max(counts["depth"], place.depth);
      for (unsigned long i = 0; i < place.group->getItemCount(); ++i) {
        countItem(*place.group->getItem(i), place.depth);
      }
    }
    counts["number_sum"] = numbers.get();
    counts["number_magnitude"] = magnitudes.get();
    return counts;
  }

 private:
  struct Place {
    const ParserGroup* group;
    double depth;
  };

  void countItem(const ParserItem& item, double depth) {
    ++counts["items"];
    if (item.getType() == ParserItem::ITEM_CALL) ++counts["calls"];
    if (item.getValueCount() == 0) ++counts["empty"];
    for (unsigned long i = 0; i < item.getValueCount(); ++i)
      countValue(item, i, depth);
  }

  void countValue(const ParserItem& item, unsigned long index, double depth) {
    ++counts["values"];
    switch (item.getValueType(index)) {
      case ParserValue::TYPE_GROUP:
        ++counts["groups"];
        waiting.push_back({item.getGroup(index), depth + 1});
        break;
      case ParserValue::TYPE_BOOL: ++counts["bools"]; break;
      case ParserValue::TYPE_BINARYDATA: ++counts["blocks"]; break;
      case ParserValue::TYPE_STRING:
        ++counts["strings"];
        counts["string_bytes"] += static_cast<double>(item.getString(index).size());
        break;
      case ParserValue::TYPE_INT:
        ++counts["ints"];
        addNumber(item.getInt(index));
        break;
      case ParserValue::TYPE_DOUBLE:
        ++counts["doubles"];
        addNumber(item.getDouble(index));
        break;
      default: break;
    }
  }

  void addNumber(double number) {
    numbers.add(number);
    magnitudes.add(std::fabs(number));
  }

  std::vector<Place> waiting;
  Sum numbers;
  Sum magnitudes;
  Counts counts = {{"items", 0},   {"calls", 0},  {"empty", 0},   {"values", 0},
                   {"groups", 0},  {"ints", 0},   {"doubles", 0}, {"bools", 0},
                   {"strings", 0}, {"blocks", 0}, {"depth", 0},   {"string_bytes", 0}};
};

}  // namespace

Counts count(const ParserGroup& root) { return Counter().count(root); }

}  // namespace DocumentCheck
