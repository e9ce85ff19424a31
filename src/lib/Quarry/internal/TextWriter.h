/// Writes trees of any depth as text.
#pragma once

#include <string>
#include <vector>

namespace Quarry {

class ParserGroup;
class ParserItem;

/// Appends groups, items and values to one text. Nested groups take memory, not stack.
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

 private:
  /// An item that is being written, and the group it stands in.
  struct Level {
    const ParserGroup* group;  ///< null when only an item is written
    bool braces;               ///< of the group
    unsigned long depth;       ///< of the blanks before each item
    unsigned long nextItem;    ///< of the group
    const ParserItem* item;    ///< null between two items
    bool folded;               ///< the item stands between fold markers
    unsigned long nextValue;   ///< of the item
  };

  void run();
  void step();
  bool writeNextItem();
  const ParserGroup* writeValuesUpToGroup();

  void openGroup(const ParserGroup& group, bool braces, unsigned long indent);
  void closeGroup();
  void openItem(const ParserItem& item);
  void closeItem();
  void separateValues(const ParserItem& item, unsigned long index);
  void closeValues(const ParserItem& item);
  void writeArray(unsigned long count);
  void startLine(unsigned long depth);
  void writeIndentation(unsigned long depth);

  std::string& out;
  const bool multiline;
  std::vector<Level> levels;
};

}  // namespace Quarry
