#include <QuarrySource/SourceTree.h>

#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>

#include "internal/NamesakeCounter.h"
#include "internal/PathStep.h"
#include "internal/TreeCollector.h"

#include <algorithm>
#include <utility>

namespace Quarry {

SourceTree::SourceTree(const SourceDocument& source) : document(source) {
  ParserWordStream words(document.getText(), document.getVersion());
  TreeCollector collector(*this);
  TextParser(words, collector, document.getLimits().nestingDepth).parse();
  collector.finish();
}

// --- Look ----------------------------------------------------------------------------------------

std::string_view SourceTree::getName(const SourceItem& item) const {
  return std::string_view(document.getText()).substr(item.nameBegin, item.nameLength);
}

std::string_view SourceTree::getSpelling(const SourceValue& value) const {
  return std::string_view(document.getText()).substr(value.begin, value.length);
}

void SourceTree::appendTo(ParserItem& item, const SourceValue& value) const {
  if (value.type == ParserValue::TYPE_EMPTY) return;
  item.addWord(document.getWord(value.begin, value.length), value.type);
}

unsigned long SourceTree::getFirst(unsigned long parent) const {
  if (parent == NOWHERE) return items.empty() ? NOWHERE : 0;
  return items[parent].next > parent + 1 ? parent + 1 : NOWHERE;
}

unsigned long SourceTree::getNext(unsigned long item) const {
  const unsigned long parent = items[item].parent;
  const unsigned long end = parent == NOWHERE ? items.size() : items[parent].next;
  return items[item].next < end ? items[item].next : NOWHERE;
}

// --- Paths ---------------------------------------------------------------------------------------

std::string SourceTree::getPath(unsigned long item) const {
  std::vector<unsigned long> steps;
  for (; item != NOWHERE; item = items[item].parent)
    steps.push_back(item);
  std::reverse(steps.begin(), steps.end());
  std::string path;
  for (const unsigned long step : steps) {
    if (!path.empty()) path += '/';
    path += getStep(step);
  }
  return path;
}

std::string SourceTree::getStep(unsigned long item) const {
  return makeStep(getName(items[item]), getOrdinals()[item]);
}

SourceTarget SourceTree::find(const std::string& path) const {
  SourceTarget target;
  std::string_view rest = path;
  unsigned long valueNumber = 0;
  while (!rest.empty()) {
    const std::size_t slash = rest.find('/');
    std::string_view step = rest.substr(0, slash);
    const bool isLast = slash == std::string_view::npos;
    if (isLast) {
      const NumberedText numbered = splitValueNumber(step);
      step = numbered.text;
      valueNumber = numbered.number;
    }
    const unsigned long found = findStep(target.item, step);
    if (found == NOWHERE) {
      target.problem = "there is no '" + std::string(step) + "'";
      if (target.item != NOWHERE) target.problem += " in '" + getPath(target.item) + "'";
      return target;
    }
    target.item = found;
    rest = isLast ? std::string_view() : rest.substr(slash + 1);
  }
  if (valueNumber > 0) {
    target.value = valueNumber - 1;
    if (target.value >= items[target.item].valueCount) {
      target.problem = "'" + getPath(target.item) + "' has no value " + std::to_string(valueNumber);
    }
  }
  return target;
}

/// Numbering all items at once keeps that linear.
const std::vector<unsigned long>& SourceTree::getOrdinals() const {
  if (ordinals.size() == items.size()) return ordinals;
  std::vector<unsigned long> all;
  all.reserve(items.size());
  NamesakeCounter counter;
  for (const SourceItem& item : items)
    all.push_back(counter.count(item.parent, getName(item)));
  ordinals = std::move(all);
  return ordinals;
}

unsigned long SourceTree::findNamed(unsigned long parent, std::string_view name,
                                    unsigned long ordinal) const {
  for (unsigned long i = getFirst(parent); i != NOWHERE; i = getNext(i)) {
    if (getName(items[i]) == name && --ordinal == 0) return i;
  }
  return NOWHERE;
}

/// A number in brackets counts items, and is part of the name only where that leads nowhere.
unsigned long SourceTree::findStep(unsigned long parent, std::string_view step) const {
  const NumberedText numbered = splitOrdinal(step);
  if (numbered.number > 0) {
    const unsigned long found = findNamed(parent, numbered.text, numbered.number);
    if (found != NOWHERE) return found;
  }
  return findNamed(parent, step, 1);
}

unsigned long SourceTree::getItemAt(unsigned long textOffset) const {
  const auto behind = std::upper_bound(
      items.begin(), items.end(), textOffset,
      [](unsigned long offset, const SourceItem& item) { return offset < item.nameBegin; });
  if (behind == items.begin()) return NOWHERE;
  auto found = static_cast<unsigned long>(behind - items.begin()) - 1;
  while (found != NOWHERE && items[found].end <= textOffset)
    found = items[found].parent;
  return found;
}

unsigned long SourceTree::getValueAt(unsigned long item, unsigned long textOffset) const {
  const auto first = values.begin() + static_cast<long>(items[item].firstValue);
  const auto behind = std::upper_bound(
      first, first + static_cast<long>(items[item].valueCount), textOffset,
      [](unsigned long offset, const SourceValue& value) { return offset < value.begin; });
  if (behind == first) return NOWHERE;
  const SourceValue& found = *(behind - 1);
  const bool isWithin = textOffset < found.begin + found.length;
  return isWithin ? static_cast<unsigned long>(behind - first) - 1 : NOWHERE;
}

}  // namespace Quarry
