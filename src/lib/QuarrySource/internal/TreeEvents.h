/// A tree of items as a sequence, in which an edit is a stretch.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// One thing that the parser finds in a document.
struct TreeEvent {
  enum Kind : std::int32_t { ITEM, VALUE, GROUP_BEGIN, GROUP_END };

  Kind kind = ITEM;
  std::int32_t type = 0;  ///< of the item or value; of a group's end whether a brace closes it
  std::string text{};     ///< the name, or how the value is spelled

  bool operator==(const TreeEvent& other) const = default;
};

/// Makes an event of what is asked for.
TreeEvent makeItemEvent(ParserItem::Type type, std::string_view name);
TreeEvent makeValueEvent(ParserValue::Type type, std::string_view spelling);
TreeEvent makeGroupBegin();
TreeEvent makeGroupEnd(bool isClosed);

/// Tells an event to people: "the value 12".
std::string describe(const TreeEvent& event);

/// All events of a tree, and where those of each item are.
class TreeEvents {
 public:
  explicit TreeEvents(const SourceTree& tree);

  const std::vector<TreeEvent>& getAll() const { return events; }

  /// Returns the index of an item's own event.
  unsigned long getBegin(unsigned long item) const { return begins[item]; }

  /// Returns the index behind everything of an item, its group included.
  unsigned long getEnd(unsigned long item) const { return ends[item]; }

 private:
  void addItem(const SourceTree& tree, unsigned long index);
  void closeGroup(const SourceTree& tree);

  std::vector<TreeEvent> events;
  std::vector<unsigned long> begins;
  std::vector<unsigned long> ends;
  std::vector<unsigned long> openItems;  ///< whose groups are not complete
};

}  // namespace Quarry
