#include "TreeDifference.h"

#include "ItemDisplay.h"

#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Tool {

using Quarry::SourceItem;
using Quarry::SourceTree;

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

class Comparison {
 public:
  Comparison(const SourceTree& first, const SourceTree& second, DifferenceListener& told)
      : before(first), after(second), listener(told) {}

  bool run() {
    openGroups(NOWHERE, NOWHERE);
    while (!levels.empty())
      step();
    return isDifferent;
  }

 private:
  /// The items of one name in a group of the second document.
  struct Namesakes {
    std::vector<unsigned long> items;
    std::size_t matched = 0;  ///< the first so many have one in the first document
  };

  /// Two groups that stand for each other.
  struct Level {
    unsigned long next;  ///< of the first document's items
    unsigned long groupAfter;
    std::size_t pathLength;
    std::unordered_map<std::string_view, Namesakes> namesakes;
  };

  void openGroups(unsigned long groupBefore, unsigned long groupAfter) {
    Level level = {before.getFirst(groupBefore), groupAfter, path.size(), {}};
    for (unsigned long i = after.getFirst(groupAfter); i != NOWHERE; i = after.getNext(i))
      level.namesakes[after.getName(after.getItem(i))].items.push_back(i);
    levels.push_back(std::move(level));
  }

  void step() {
    Level& level = levels.back();
    path.resize(level.pathLength);
    if (level.next == NOWHERE) return closeGroups();
    const unsigned long item = level.next;
    level.next = before.getNext(item);
    enter(before, item);
    const unsigned long counterpart = match(level, before.getName(before.getItem(item)));
    if (counterpart == NOWHERE) return tell(item, NOWHERE);
    compare(item, counterpart);
  }

  static unsigned long match(Level& level, std::string_view name) {
    const auto found = level.namesakes.find(name);
    if (found == level.namesakes.end()) return NOWHERE;
    Namesakes& namesakes = found->second;
    return namesakes.matched < namesakes.items.size() ? namesakes.items[namesakes.matched++]
                                                      : NOWHERE;
  }

  void compare(unsigned long first, unsigned long second) {
    const SourceItem& itemBefore = before.getItem(first);
    const SourceItem& itemAfter = after.getItem(second);
    const bool isSame =
        itemBefore.type == itemAfter.type && itemBefore.hasGroup() == itemAfter.hasGroup() &&
        copyValues(before, first)->getBinary() == copyValues(after, second)->getBinary();
    if (!isSame) tell(first, second);
    if (itemBefore.hasGroup() && itemAfter.hasGroup()) openGroups(first, second);
  }

  /// What was added stands behind everything else of its group.
  void closeGroups() {
    const Level level = std::move(levels.back());
    levels.pop_back();
    for (unsigned long i = after.getFirst(level.groupAfter); i != NOWHERE; i = after.getNext(i)) {
      if (!isAdded(level, i)) continue;
      path.resize(level.pathLength);
      enter(after, i);
      tell(NOWHERE, i);
    }
  }

  /// Namesakes stand in the order of their numbers, and those that are matched come first.
  bool isAdded(const Level& level, unsigned long item) const {
    const Namesakes& namesakes = level.namesakes.at(after.getName(after.getItem(item)));
    const bool hasUnmatched = namesakes.matched < namesakes.items.size();
    return hasUnmatched && item >= namesakes.items[namesakes.matched];
  }

  void enter(const SourceTree& tree, unsigned long item) {
    if (!path.empty()) path += '/';
    path += tree.getStep(item);
  }

  void tell(unsigned long first, unsigned long second) {
    isDifferent = true;
    listener.add({path, first, second});
  }

  const SourceTree& before;
  const SourceTree& after;
  DifferenceListener& listener;
  std::vector<Level> levels;
  std::string path;
  bool isDifferent = false;
};

}  // namespace

bool compareTrees(const SourceTree& before, const SourceTree& after, DifferenceListener& listener) {
  return Comparison(before, after, listener).run();
}

}  // namespace Tool
