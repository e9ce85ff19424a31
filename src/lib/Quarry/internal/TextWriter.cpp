#include "TextWriter.h"

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "TreeWalker.h"

#include <algorithm>

namespace Quarry {

namespace {

constexpr unsigned long BLANKS_PER_LEVEL = 4;
constexpr unsigned long FIRST_DEPTH = 1;

/// The depth of the blanks before an item that is written at `indent`.
unsigned long depthAt(unsigned long indent) { return std::max(indent, FIRST_DEPTH) - 1; }

}  // namespace

// --- Entries -------------------------------------------------------------------------------------

void TextWriter::writeGroup(const ParserGroup& group, bool braces, unsigned long indent) {
  TreeWalker(*this).walkGroup(group, openGroup(group, braces, std::max(indent, FIRST_DEPTH)));
}

void TextWriter::writeItem(const ParserItem& item, unsigned long indent) {
  const unsigned long depth = depthAt(indent);
  TreeWalker(*this).walkItem(item, {false, depth}, openItem(item, depth));
}

void TextWriter::writeValues(const ParserItem& item, unsigned long indent) {
  TreeWalker(*this).walkItem(item, {false, depthAt(indent)}, ItemMark());
}

// --- What the walk tells -------------------------------------------------------------------------

TextWriter::ItemMark TextWriter::beginItem(const ParserItem& item, const GroupMark& group) {
  if (multiline) {
    startLine(group.depth);
  } else {
    out += ' ';
  }
  return openItem(item, group.depth);
}

void TextWriter::value(const ParserItem& item, unsigned long index, const ParserValue& value) {
  separateValues(item, index);
  value.appendText(out);
}

TextWriter::GroupMark TextWriter::beginGroup(const ParserItem& item, unsigned long index,
                                             const ParserGroup& group, const GroupMark& outer) {
  separateValues(item, index);
  return openGroup(group, true, outer.depth + 1);
}

void TextWriter::endGroup(const GroupMark& group) {
  if (!group.braces) return;
  if (multiline) {
    startLine(group.depth - 1);
    out += '}';
  } else {
    out += " }";
  }
}

void TextWriter::endItem(const ParserItem& item, const ItemMark& mark) {
  closeValues(item);
  if (mark.folded) out += "\n/*}}}*/";
}

// --- Strokes -------------------------------------------------------------------------------------

/// The items of a group in braces stand one level deeper than the item that holds it.
TextWriter::GroupMark TextWriter::openGroup(const ParserGroup& group, bool braces,
                                            unsigned long indent) {
  if (!braces) return {false, indent - 1};
  out += group.getName();
  out += group.getName().empty() ? "{" : " {";
  return {true, indent};
}

/// The opening fold marker is a comment; it takes the item's place on the line, and the item moves
/// to the next one.
TextWriter::ItemMark TextWriter::openItem(const ParserItem& item, unsigned long depth) {
  const bool folded = item.folding && item.isGroup();
  if (folded) {
    out += "//";
    out += item.name.get();
    out += "/*{{{*/";
    startLine(depth);
  }
  out += item.name.get();
  if (item.isTemplate()) {
    out += '<';
    out += item.getTemplate();
    out += '>';
  }
  if (item.isArray()) writeArray(item.getArrayCount());
  return {folded};
}

/// The count is one raw byte, not digits: the format has written it so from the beginning.
void TextWriter::writeArray(unsigned long count) {
  out += '[';
  if (count != 0) out += static_cast<char>(count & 0xFF);
  out += ']';
}

/// Writes what stands before value `index`.
void TextWriter::separateValues(const ParserItem& item, unsigned long index) {
  const bool call = item.getType() == ParserItem::ITEM_CALL;
  if (call && index == 0) {
    out += '(';
  } else {
    out += call ? ", " : " ";
  }
}

void TextWriter::closeValues(const ParserItem& item) {
  const bool call = item.getType() == ParserItem::ITEM_CALL;
  if (item.getValueCount() == 0) {
    out += call ? "()" : " <empty>";
  } else if (call) {
    out += ')';
  }
}

void TextWriter::startLine(unsigned long depth) {
  out += '\n';
  out.append(depth * BLANKS_PER_LEVEL, ' ');
}

}  // namespace Quarry
