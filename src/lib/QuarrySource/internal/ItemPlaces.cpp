#include "ItemPlaces.h"

namespace Quarry {

namespace {

constexpr char BLANKS_AND_LINE_BREAKS[] = " \t\r\n";
constexpr char USUAL_UNIT[] = "    ";

/// Makes changes at one place of a file, one way each.
class Ways {
 public:
  Ways(unsigned long itsOpening, const FileLayout& layout)
      : opening(itsOpening), lineEnd(layout.getLineEnd()) {}

  const std::string& getLineEnd() const { return lineEnd; }

  void replace(unsigned long begin, unsigned long end, const std::string& text) {
    ways.push_back({FileChange{opening, begin, end, text}});
  }
  void insert(unsigned long at, const std::string& text) { replace(at, at, text); }
  void remove(unsigned long begin, unsigned long end) { replace(begin, end, std::string()); }

  /// Returns an item as it stands on a line of its own, which begins with that indentation.
  std::string onLines(const NewItem& added, const std::string& indentation) const {
    return added.head + (added.isGroup ? lineEnd + indentation + "}" : "");
  }

  const std::vector<FileChanges>& get() const { return ways; }

 private:
  unsigned long opening;
  std::string lineEnd;
  std::vector<FileChanges> ways;
};

std::string onOneLine(const NewItem& added) { return added.head + (added.isGroup ? "}" : ""); }

void append(std::vector<FileChanges>& ways, const std::vector<FileChanges>& others) {
  ways.insert(ways.end(), others.begin(), others.end());
}

}  // namespace

ItemPlaces::ItemPlaces(const SourceTree& itsTree) : tree(itsTree), document(tree.getDocument()) {}

// --- Add -----------------------------------------------------------------------------------------

std::vector<FileChanges> ItemPlaces::insertAtEnd(unsigned long parent, const NewItem& added) const {
  const unsigned long last = getLast(parent);
  std::vector<FileChanges> ways;
  if (parent == NOWHERE) ways = insertAtEndOfFile(added);
  const unsigned long brace = parent == NOWHERE ? NOWHERE : tree.getItem(parent).groupEnd;
  const unsigned long home = brace == NOWHERE ? NOWHERE : document.getPosition(brace).opening;
  const bool isLastElsewhere =
      last != NOWHERE && home != NOWHERE && getEnd(getTextEnd(tree.getItem(last))).opening != home;
  if (last != NOWHERE && !isLastElsewhere) append(ways, insertBehind(last, added));
  if (brace != NOWHERE) append(ways, insertBeforeBrace(parent, added));
  if (parent != NOWHERE && ways.empty()) {
    const SourcePosition end = getEnd(tree.getItem(parent).groupBegin + 1);
    append(ways, insertOnLine(end, added, getInnerIndentation(parent, end.opening)));
  }
  return ways;
}

/// Behind everything, comments included. A comment takes its line end along, so that a blank has to
/// keep apart what stands before it and behind it.
std::vector<FileChanges> ItemPlaces::insertAtEndOfFile(const NewItem& added) const {
  constexpr unsigned long TOP_FILE = 0;
  const FileLayout layout = getLayout(TOP_FILE);
  Ways ways(TOP_FILE, layout);
  const unsigned long size = layout.getText().size();
  const std::string indentation = getInnerIndentation(NOWHERE, TOP_FILE);
  const std::string& lineEnd = ways.getLineEnd();
  const std::string item = indentation + ways.onLines(added, indentation);
  const bool isComplete = size == 0 || layout.endsWithLineEnd();
  const std::string before = isComplete ? "" : lineEnd;
  const std::string behind = isComplete ? lineEnd : "";
  ways.insert(size, before + item + behind);
  ways.insert(size, before + " " + item + behind);
  return ways.get();
}

std::vector<FileChanges> ItemPlaces::insertBehind(unsigned long item, const NewItem& added) const {
  const SourceItem& sibling = tree.getItem(item);
  const SourcePosition end = getEnd(getTextEnd(sibling));
  const FileLayout layout = getLayout(end.opening);
  const SourcePosition begin = getBegin(sibling);
  const bool isModel = begin.opening == end.opening && layout.isFirstOnLine(begin.offset);
  const std::string indentation = isModel ? std::string(layout.getIndentation(begin.offset))
                                          : getInnerIndentation(sibling.parent, end.opening);
  Ways ways(end.opening, layout);
  const LineRest rest = layout.getRest(end.offset);
  if (rest.kind == LineRest::WORD) {
    const bool isBraceNext = endsGroup(sibling.parent, {end.opening, rest.begin});
    if (!isBraceNext || isOnOneLine(sibling.parent))
      ways.insert(end.offset, " " + onOneLine(added));
  }
  std::vector<FileChanges> all = ways.get();
  append(all, insertOnLine(end, added, indentation));
  return all;
}

/// On a line of its own behind a word and the comment that follows it.
std::vector<FileChanges> ItemPlaces::insertOnLine(const SourcePosition& end, const NewItem& added,
                                                  const std::string& indentation) const {
  const FileLayout layout = getLayout(end.opening);
  Ways ways(end.opening, layout);
  const std::string& lineEnd = ways.getLineEnd();
  const std::string item = indentation + ways.onLines(added, indentation);
  const LineRest rest = layout.getRest(end.offset);
  if (rest.hasLineEnd) {
    ways.insert(rest.end, item + lineEnd);
    ways.insert(rest.end, " " + item + lineEnd);
  } else if (rest.kind != LineRest::WORD) {
    ways.insert(rest.end, lineEnd + item);
    ways.insert(rest.end, lineEnd + " " + item);
  }
  ways.insert(end.offset, lineEnd + item);
  return ways.get();
}

std::vector<FileChanges> ItemPlaces::insertBeforeBrace(unsigned long parent,
                                                       const NewItem& added) const {
  const SourcePosition brace = document.getPosition(tree.getItem(parent).groupEnd);
  const FileLayout layout = getLayout(brace.opening);
  Ways ways(brace.opening, layout);
  if (!isOnOneLine(parent) && layout.isFirstOnLine(brace.offset)) {
    const std::string indentation = getInnerIndentation(parent, brace.opening);
    const std::string item = indentation + ways.onLines(added, indentation) + ways.getLineEnd();
    ways.insert(layout.getLineBegin(brace.offset), item);
    ways.insert(layout.getLineBegin(brace.offset), " " + item);
  }
  const bool isBlankBefore = layout.skipBlanksBack(brace.offset) < brace.offset;
  ways.insert(brace.offset, (isBlankBefore ? "" : " ") + onOneLine(added) + " ");
  return ways.get();
}

std::vector<FileChanges> ItemPlaces::insertBefore(unsigned long item, const NewItem& added) const {
  const SourcePosition begin = getBegin(tree.getItem(item));
  const FileLayout layout = getLayout(begin.opening);
  Ways ways(begin.opening, layout);
  const std::string indentation(layout.getIndentation(begin.offset));
  const std::string lines = ways.onLines(added, indentation) + ways.getLineEnd() + indentation;
  if (!layout.isFirstOnLine(begin.offset)) ways.insert(begin.offset, onOneLine(added) + " ");
  ways.insert(begin.offset, lines);
  return ways.get();
}

// --- Remove --------------------------------------------------------------------------------------

std::vector<FileChanges> ItemPlaces::remove(unsigned long item) const {
  const SourcePosition begin = getBegin(tree.getItem(item));
  const SourcePosition end = getEnd(getTextEnd(tree.getItem(item)));
  if (begin.opening != end.opening) return {};
  const FileLayout layout = getLayout(begin.opening);
  Ways ways(begin.opening, layout);
  const LineRest rest = layout.getRest(end.offset);
  const bool isFirst = layout.isFirstOnLine(begin.offset);
  const unsigned long lineBegin = layout.getLineBegin(begin.offset);
  if (!isFirst) {
    ways.remove(layout.skipBlanksBack(begin.offset), end.offset);
  } else if (endsGroup(tree.getItem(item).parent, {end.opening, rest.begin})) {
    ways.remove(layout.skipLineEndBack(lineBegin), end.offset);
  } else if (rest.kind != LineRest::NOTHING) {
    ways.remove(begin.offset, rest.begin);
  } else {
    ways.remove(rest.hasLineEnd ? lineBegin : layout.skipLineEndBack(lineBegin), rest.end);
  }
  ways.remove(begin.offset, end.offset);
  ways.replace(begin.offset, end.offset, " ");
  return ways.get();
}

// --- Look ----------------------------------------------------------------------------------------

FileLayout ItemPlaces::getLayout(unsigned long opening) const {
  return FileLayout(document.getFileOf(opening).getText());
}

SourcePosition ItemPlaces::getBegin(const SourceItem& item) const {
  return document.getPosition(item.nameBegin);
}

/// Returns the place behind the last byte of a stretch.
SourcePosition ItemPlaces::getEnd(unsigned long textEnd) const {
  const SourcePosition last = document.getPosition(textEnd - 1);
  return {last.opening, last.offset + 1};
}

/// Returns where an item ends, with a comma behind its last value.
unsigned long ItemPlaces::getTextEnd(const SourceItem& item) const {
  const std::string& text = document.getText();
  const std::size_t next = text.find_first_not_of(BLANKS_AND_LINE_BREAKS, item.end);
  const bool hasComma = next != std::string::npos && text[next] == ',' && !item.hasGroup();
  if (!hasComma) return item.end;
  const bool isSameFile =
      document.getPosition(next).opening == document.getPosition(item.end - 1).opening;
  return isSameFile ? next + 1 : item.end;
}

unsigned long ItemPlaces::getLast(unsigned long parent) const {
  unsigned long last = NOWHERE;
  for (unsigned long i = tree.getFirst(parent); i != NOWHERE; i = tree.getNext(i))
    last = i;
  return last;
}

/// Tells whether a brace stands there that closes a group.
bool ItemPlaces::endsGroup(unsigned long parent, const SourcePosition& position) const {
  const unsigned long brace = parent == NOWHERE ? NOWHERE : tree.getItem(parent).groupEnd;
  return brace != NOWHERE && document.getPosition(brace) == position;
}

/// Tells whether a group begins and ends on one line.
bool ItemPlaces::isOnOneLine(unsigned long parent) const {
  const SourceItem& group = tree.getItem(parent);
  const SourcePosition begin = document.getPosition(group.groupBegin);
  const SourcePosition end = document.getPosition(group.groupEnd);
  return begin.opening == end.opening &&
         getLayout(begin.opening).areOnOneLine(begin.offset, end.offset);
}

// --- Indentation ---------------------------------------------------------------------------------

/// Returns the indentation of the last item of a group that is the first on its line in that file.
std::string ItemPlaces::getInnerIndentation(unsigned long parent, unsigned long opening) const {
  const FileLayout layout = getLayout(opening);
  unsigned long model = NOWHERE;
  for (unsigned long i = tree.getFirst(parent); i != NOWHERE; i = tree.getNext(i)) {
    const SourcePosition begin = getBegin(tree.getItem(i));
    if (begin.opening == opening && layout.isFirstOnLine(begin.offset)) model = begin.offset;
  }
  if (model != NOWHERE) return std::string(layout.getIndentation(model));
  if (parent == NOWHERE) return std::string();
  const SourcePosition outer = getBegin(tree.getItem(parent));
  return std::string(getLayout(outer.opening).getIndentation(outer.offset)) + getUnit();
}

/// Returns by how much the first item is indented that is more so than what it is in.
std::string ItemPlaces::getUnit() const {
  std::string unit;
  for (unsigned long i = 0; i < tree.getItemCount(); ++i) {
    if (addUnit(tree.getItem(i), unit)) return unit;
  }
  return USUAL_UNIT;
}

bool ItemPlaces::addUnit(const SourceItem& item, std::string& unit) const {
  if (item.parent == NOWHERE) return false;
  const SourcePosition inner = getBegin(item);
  const SourcePosition outer = getBegin(tree.getItem(item.parent));
  if (inner.opening != outer.opening) return false;
  const FileLayout layout = getLayout(inner.opening);
  const bool areFirst = layout.isFirstOnLine(inner.offset) && layout.isFirstOnLine(outer.offset);
  if (!areFirst) return false;
  const std::string_view more = layout.getIndentation(inner.offset);
  const std::string_view less = layout.getIndentation(outer.offset);
  if (more.size() <= less.size() || !more.starts_with(less)) return false;
  unit = more.substr(less.size());
  return true;
}

}  // namespace Quarry
