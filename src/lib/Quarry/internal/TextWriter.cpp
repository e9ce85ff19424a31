#include "TextWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <algorithm>

namespace Quarry {

namespace {

constexpr unsigned long BLANKS_PER_LEVEL = 4;
constexpr unsigned long FIRST_DEPTH = 1;

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void TextWriter::writeGroup(const ParserGroup& group, bool braces, unsigned long indent) {
  openGroup(group, braces, std::max(indent, FIRST_DEPTH));
  run();
}

void TextWriter::writeItem(const ParserItem& item, unsigned long indent) {
  levels.push_back({nullptr, false, std::max(indent, FIRST_DEPTH) - 1, 0, nullptr, false, 0});
  openItem(item);
  run();
}

void TextWriter::writeValues(const ParserItem& item, unsigned long indent) {
  levels.push_back({nullptr, false, std::max(indent, FIRST_DEPTH) - 1, 0, &item, false, 0});
  run();
}

// --- The walk ------------------------------------------------------------------------------------

void TextWriter::run() {
  while (!levels.empty())
    step();
}

/// Goes on with the innermost group: with the values of its current item, else with its next item.
void TextWriter::step() {
  if (levels.back().item == nullptr) {
    if (!writeNextItem()) closeGroup();
  } else if (const ParserGroup* nested = writeValuesUpToGroup()) {
    openGroup(*nested, true, levels.back().depth + 1);
  } else {
    closeItem();
  }
}

/// Begins the group's next item; false when there is none.
bool TextWriter::writeNextItem() {
  Level& level = levels.back();
  if (level.group == nullptr) return false;
  const std::vector<ParserItem*>& items = level.group->items;
  while (level.nextItem < items.size()) {
    const ParserItem* item = items[level.nextItem++];
    if (item == nullptr) continue;
    if (multiline) {
      startLine(level.depth);
    } else {
      out += ' ';
    }
    openItem(*item);
    return true;
  }
  return false;
}

/// Writes values of the current item; returns the first that is a group, which is left to the
/// caller, or null when all are written.
const ParserGroup* TextWriter::writeValuesUpToGroup() {
  Level& level = levels.back();
  const std::vector<ParserValue*>& values = level.item->values;
  while (level.nextValue < values.size()) {
    separateValues(*level.item, level.nextValue);
    const ParserValue& value = *values[level.nextValue++];
    if (const ParserGroup* group = value.getGroup()) return group;
    value.appendText(out);
  }
  return nullptr;
}

// --- Groups --------------------------------------------------------------------------------------

/// The items of a group in braces stand one level deeper than the item that holds it.
void TextWriter::openGroup(const ParserGroup& group, bool braces, unsigned long indent) {
  levels.push_back({&group, braces, braces ? indent : indent - 1, 0, nullptr, false, 0});
  if (!braces) return;
  out += group.name;
  out += group.name.empty() ? "{" : " {";
}

void TextWriter::closeGroup() {
  const Level level = levels.back();
  levels.pop_back();
  if (!level.braces) return;
  if (multiline) {
    startLine(level.depth - 1);
    out += '}';
  } else {
    out += " }";
  }
}

// --- Items ---------------------------------------------------------------------------------------

/// The opening fold marker is a comment; it takes the item's place on the line, and the item moves
/// to the next one.
void TextWriter::openItem(const ParserItem& item) {
  Level& level = levels.back();
  level.item = &item;
  level.nextValue = 0;
  level.folded = item.folding && item.isGroup();
  if (level.folded) {
    out += "//";
    out += item.name;
    out += "/*{{{*/";
    startLine(level.depth);
  }
  out += item.name;
  if (item.isTemplate()) {
    out += '<';
    out += item.templateName;
    out += '>';
  }
  if (item.isArray()) writeArray(item.arrayCount);
}

void TextWriter::closeItem() {
  Level& level = levels.back();
  closeValues(*level.item);
  if (level.folded) out += "\n/*}}}*/";
  level.item = nullptr;
}

/// The count is one raw byte, not digits: the format has written it so from the beginning.
void TextWriter::writeArray(unsigned long count) {
  out += '[';
  if (count != 0) out += static_cast<char>(count & 0xFF);
  out += ']';
}

// --- Values --------------------------------------------------------------------------------------

/// Writes what stands before value `index`.
void TextWriter::separateValues(const ParserItem& item, unsigned long index) {
  const bool call = item.type == ParserItem::ITEM_CALL;
  if (call && index == 0) {
    out += '(';
  } else {
    out += call ? ", " : " ";
  }
}

void TextWriter::closeValues(const ParserItem& item) {
  const bool call = item.type == ParserItem::ITEM_CALL;
  if (item.values.empty()) {
    out += call ? "()" : " <empty>";
  } else if (call) {
    out += ')';
  }
}

// --- Lines ---------------------------------------------------------------------------------------

void TextWriter::startLine(unsigned long depth) {
  out += '\n';
  writeIndentation(depth);
}

void TextWriter::writeIndentation(unsigned long depth) {
  out.append(depth * BLANKS_PER_LEVEL, ' ');
}

}  // namespace Quarry
