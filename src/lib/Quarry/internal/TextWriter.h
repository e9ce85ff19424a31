/// Writes trees as text.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include "OutputBuffer.h"
#include "TreeWalker.h"

#include <algorithm>
#include <string_view>

namespace Quarry {

/// Appends groups, items and values to one text; TreeWalker leads it through the tree.
///
/// Depths count from 1 for the items of the root; 0 is taken as 1. One level of depth is four
/// blanks, written before each item of a group that stands on lines of its own.
///
/// `Output` is an OutputBuffer, or a string.
template <class Output>
class TextWriter {
 public:
  TextWriter(Output& text, bool itemALine) : out(text), multiline(itemALine) {}

  // --- Entries ---------------------------------------------------------------------------------

  /// name { items }, or the items alone
  void writeGroup(const ParserGroup& group, bool braces, unsigned long indent) {
    TreeWalker(*this).walkGroup(group, openGroup(group, braces, std::max(indent, FIRST_DEPTH)));
  }

  /// name<template>[count] values, between fold markers when the item is a folded group
  void writeItem(const ParserItem& item, unsigned long indent) {
    const unsigned long depth = depthAt(indent);
    TreeWalker(*this).walkItem(item, {false, depth}, openItem(item, depth));
  }

  /// values | (values) | <empty>
  void writeValues(const ParserItem& item, unsigned long indent) {
    TreeWalker(*this).walkItem(item, {false, depthAt(indent)}, ItemMark());
  }

  // --- What the walk tells ---------------------------------------------------------------------

  struct GroupMark {
    bool braces = false;
    unsigned long depth = 0;  ///< of the blanks before each item
  };
  struct ItemMark {
    bool folded = false;  ///< the item stands between fold markers
  };

  ItemMark beginItem(const ParserItem& item, const GroupMark& group) {
    if (multiline) {
      startLine(group.depth);
    } else {
      out.push_back(' ');
    }
    return openItem(item, group.depth);
  }

  void value(const ParserItem& item, unsigned long index, const ParserValue& value) {
    separateValues(item, index);
    value.appendText(out);
  }

  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       const GroupMark& outer) {
    separateValues(item, index);
    return openGroup(group, true, outer.depth + 1);
  }

  void endGroup(const GroupMark& group) {
    if (!group.braces) return;
    if (multiline) {
      startLine(group.depth - 1);
    } else {
      out.push_back(' ');
    }
    out.push_back('}');
  }

  void endItem(const ParserItem& item, const ItemMark& mark) {
    closeValues(item);
    if (mark.folded) append("\n/*}}}*/");
  }

 private:
  static constexpr unsigned long BLANKS_PER_LEVEL = 4;
  static constexpr unsigned long FIRST_DEPTH = 1;

  /// The depth of the blanks before an item that is written at `indent`.
  static unsigned long depthAt(unsigned long indent) { return std::max(indent, FIRST_DEPTH) - 1; }

  /// The items of a group in braces stand one level deeper than the item that holds it.
  GroupMark openGroup(const ParserGroup& group, bool braces, unsigned long indent) {
    if (!braces) return {false, indent - 1};
    if (group.hasName()) {
      append(group.getName());
      out.push_back(' ');
    }
    out.push_back('{');
    return {true, indent};
  }

  /// The opening fold marker is a comment; it takes the item's place on the line, and the item
  /// moves to the next one.
  ItemMark openItem(const ParserItem& item, unsigned long depth) {
    const bool folded = item.folding && item.isGroup();
    if (folded) writeFolding(item, depth);
    item.name.appendTo(out);
    if (item.details != nullptr) writeDetails(item);
    return {folded};
  }

  void writeFolding(const ParserItem& item, unsigned long depth) {
    append("//");
    item.name.appendTo(out);
    append("/*{{{*/");
    startLine(depth);
  }

  void writeDetails(const ParserItem& item) {
    if (item.isTemplate()) {
      out.push_back('<');
      append(item.getTemplate());
      out.push_back('>');
    }
    if (item.isArray()) writeArray(item.getArrayCount());
  }

  /// The count is one raw byte, not digits: the format has written it so from the beginning.
  void writeArray(unsigned long count) {
    out.push_back('[');
    if (count != 0) out.push_back(static_cast<char>(count & 0xFF));
    out.push_back(']');
  }

  /// Writes what stands before value `index`.
  void separateValues(const ParserItem& item, unsigned long index) {
    if (item.getType() == ParserItem::ITEM_CALL) return append(index == 0 ? "(" : ", ");
    out.push_back(' ');
  }

  void closeValues(const ParserItem& item) {
    const bool call = item.getType() == ParserItem::ITEM_CALL;
    if (item.getValueCount() == 0) {
      append(call ? "()" : " <empty>");
    } else if (call) {
      out.push_back(')');
    }
  }

  void startLine(unsigned long depth) {
    out.push_back('\n');
    out.append(depth * BLANKS_PER_LEVEL, ' ');
  }

  void append(std::string_view text) { out.append(text); }

  Output& out;
  const bool multiline;
};

}  // namespace Quarry
