/// Writes trees as text.
#pragma once

#include <string>

namespace Quarry {

class ParserGroup;
class ParserItem;
class ParserValue;

/// Appends groups, items and values to one text; TreeWalker leads it through the tree.
///
/// Depths count from 1 for the items of the root; 0 is taken as 1. One level of depth is four
/// blanks, written before each item of a group that stands on lines of its own.
class TextWriter {
 public:
  TextWriter(std::string& text, bool itemALine) : out(text), multiline(itemALine) {}

  /// name { items }, or the items alone
  void writeGroup(const ParserGroup& group, bool braces, unsigned long indent);

  /// name<template>[count] values, between fold markers when the item is a folded group
  void writeItem(const ParserItem& item, unsigned long indent);

  /// values | (values) | <empty>
  void writeValues(const ParserItem& item, unsigned long indent);

  // --- What the walk tells ---------------------------------------------------------------------

  struct GroupMark {
    bool braces = false;
    unsigned long depth = 0;  ///< of the blanks before each item
  };
  struct ItemMark {
    bool folded = false;  ///< the item stands between fold markers
  };

  ItemMark beginItem(const ParserItem& item, const GroupMark& group);
  void value(const ParserItem& item, unsigned long index, const ParserValue& value);
  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       const GroupMark& outer);
  void endGroup(const GroupMark& group);
  void endItem(const ParserItem& item, const ItemMark& mark);

 private:
  GroupMark openGroup(const ParserGroup& group, bool braces, unsigned long indent);
  ItemMark openItem(const ParserItem& item, unsigned long depth);
  void writeArray(unsigned long count);
  void separateValues(const ParserItem& item, unsigned long index);
  void closeValues(const ParserItem& item);
  void startLine(unsigned long depth);

  std::string& out;
  const bool multiline;
};

}  // namespace Quarry
