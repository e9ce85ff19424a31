#include "TreeEvents.h"

namespace Quarry {

namespace {

/// Long words are cut: the message is for people.
std::string shorten(const std::string& word) {
  constexpr std::size_t LONGEST = 60;
  return word.size() <= LONGEST ? word : word.substr(0, LONGEST) + "...";
}

}  // namespace

TreeEvent makeItemEvent(ParserItem::Type type, std::string_view name) {
  return {TreeEvent::ITEM, type, std::string(name)};
}

TreeEvent makeValueEvent(ParserValue::Type type, std::string_view spelling) {
  return {TreeEvent::VALUE, type, std::string(spelling)};
}

TreeEvent makeGroupBegin() { return {TreeEvent::GROUP_BEGIN, 0}; }

TreeEvent makeGroupEnd(bool isClosed) { return {TreeEvent::GROUP_END, isClosed ? 1 : 0}; }

std::string describe(const TreeEvent& event) {
  switch (event.kind) {
    case TreeEvent::VALUE: return "the value " + shorten(event.text);
    case TreeEvent::GROUP_BEGIN: return "the beginning of a group";
    case TreeEvent::GROUP_END: return "the end of a group";
    default: break;
  }
  const bool isCall = event.type == ParserItem::ITEM_CALL;
  return (isCall ? "the call '" : "the item '") + shorten(event.text) + "'";
}

TreeEvents::TreeEvents(const SourceTree& tree)
    : begins(tree.getItemCount()), ends(tree.getItemCount()) {
  for (unsigned long i = 0; i < tree.getItemCount(); ++i) {
    while (!openItems.empty() && tree.getItem(openItems.back()).next <= i)
      closeGroup(tree);
    addItem(tree, i);
  }
  while (!openItems.empty())
    closeGroup(tree);
}

void TreeEvents::addItem(const SourceTree& tree, unsigned long index) {
  const SourceItem& item = tree.getItem(index);
  begins[index] = events.size();
  events.push_back(makeItemEvent(item.type, tree.getName(item)));
  for (unsigned long i = 0; i < item.valueCount; ++i) {
    const SourceValue& value = tree.getValue(item, i);
    events.push_back(makeValueEvent(value.type, tree.getSpelling(value)));
  }
  ends[index] = events.size();
  if (!item.hasGroup()) return;
  events.push_back(makeGroupBegin());
  openItems.push_back(index);
}

void TreeEvents::closeGroup(const SourceTree& tree) {
  const SourceItem& item = tree.getItem(openItems.back());
  events.push_back(makeGroupEnd(item.groupEnd != SourceItem::NOWHERE));
  ends[openItems.back()] = events.size();
  openItems.pop_back();
}

}  // namespace Quarry
