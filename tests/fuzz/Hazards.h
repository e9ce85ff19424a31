/// What the text and binary forms cannot hold, so that a tree with it does not read back the same.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>
#include <Quarry/internal/TreeWalker.h>

#include <algorithm>
#include <string>

#include "Trees.h"

namespace Fuzz {

/// Finds out what of a tree does not come back. Each member stands for one known reason. A tree has
/// to be looked at before it is written: then numbers without a text get one.
class Hazards {
 public:
  /// @param itemALine how the text is written
  Hazards(const Quarry::ParserGroup& tree, bool itemALine) : root(tree), multiline(itemALine) {
    Quarry::TreeWalker(*this).walkGroup(root, {});
  }

  /// A string that ends in a backslash is written with `\\` before its closing quote, which the
  /// word stream takes for an escaped one: the word goes on to the end of the line. So does a
  /// number with a lone quote in it, as in `1"`. Both come back where they are the last of their
  /// line.
  bool hasOpenQuote = false;

  /// The binary form ends a string at its first zero byte.
  bool hasZeroByte = false;

  /// A number is kept up to the first zero byte of its word. What is behind that may have made it
  /// a double, as in `2` `\0` `e`, or a number at all: `inf` alone is a name.
  bool hasCutNumber = false;

  /// A number that was set by code, or came from binary data, is written as one raw byte.
  bool hasRawByte = false;

  /// A name that no text can hold, as code and binary data may give it.
  bool hasForeignName = false;

  /// The parser takes nothing for an item behind a group.
  bool hasValueBehindGroup = false;

  /// A number is taken as far as its word goes. In a file, the preprocessor finds comments in it,
  /// and sees a quote behind a backslash otherwise than the word stream does.
  bool hasQuoteOrCommentInNumber = false;

  unsigned long depth = 0;  ///< of the deepest group

  /// Then the text would become too long to be written at all.
  bool isTooDeep() const { return multiline && depth > DEEPEST_MULTILINE; }

  bool harmText() const {
    return isTooDeep() || hasOpenQuote || hasCutNumber || hasRawByte || hasForeignName ||
           hasValueBehindGroup;
  }

  /// In a file, what looks like a directive is one, wherever it stands. A file ends at a zero byte.
  bool harmFile() const {
    if (isTooDeep()) return true;
    const std::string text = writeText(root, multiline);
    return harmText() || hasQuoteOrCommentInNumber || text.find('\0') != std::string::npos ||
           text.find("#include \"") != std::string::npos ||
           text.find("#SerialVersion ") != std::string::npos;
  }

  // --- What the walk tells -----------------------------------------------------------------------

  struct GroupMark {
    unsigned long depth = 0;
  };
  struct ItemMark {};

  ItemMark beginItem(const Quarry::ParserItem& item, const GroupMark&) {
    const Quarry::ParserWord name(item.getName(), true, 1.1);
    if (!name.isIdentifier() && !name.isKeyword()) hasForeignName = true;
    return {};
  }
  void value(const Quarry::ParserItem& item, unsigned long index,
             const Quarry::ParserValue& value) {
    const bool isCall = item.getType() == Quarry::ParserItem::ITEM_CALL;
    const bool endsLine = multiline && !isCall && index + 1 == item.getValueCount();
    switch (value.getType()) {
      case Quarry::ParserValue::TYPE_STRING: lookAtString(item.getString(index), endsLine); break;
      case Quarry::ParserValue::TYPE_CHAR:
      case Quarry::ParserValue::TYPE_INT:
      case Quarry::ParserValue::TYPE_DOUBLE:
        lookAtNumber(value.getType(), item.getWord(index), endsLine);
        break;
      default: break;
    }
  }
  GroupMark beginGroup(const Quarry::ParserItem& item, unsigned long index,
                       const Quarry::ParserGroup&, const GroupMark& outer) {
    if (index + 1 < item.getValueCount()) hasValueBehindGroup = true;
    depth = std::max(depth, outer.depth + 1);
    return {outer.depth + 1};
  }
  void endGroup(const GroupMark&) {}
  void endItem(const Quarry::ParserItem&, const ItemMark&) {}

 private:
  void lookAtString(const std::string& text, bool endsLine) {
    if (!endsLine && text.ends_with('\\')) hasOpenQuote = true;
    if (text.find('\0') != std::string::npos) hasZeroByte = true;
  }

  void lookAtNumber(Quarry::ParserValue::Type type, const std::string& word, bool endsLine) {
    const Quarry::ParserWord readAgain(word, true, 1.1);
    Quarry::ParserValue::Type typeAgain = Quarry::ParserValue::TYPE_EMPTY;
    const bool isNumber = !readAgain.isIdentifier() && readAgain.isValue(typeAgain);
    if (word.empty()) {
      hasRawByte = true;
    } else if (!isNumber || typeAgain != type) {
      hasCutNumber = true;
    }
    if (!endsLine && leavesQuoteOpen(word)) hasOpenQuote = true;
    if (word.find('"') != std::string::npos || word.find("//") != std::string::npos)
      hasQuoteOrCommentInNumber = true;
  }

  static bool leavesQuoteOpen(const std::string& word) {
    bool isOpen = false;
    for (std::size_t i = 0; i < word.size(); ++i) {
      if (word[i] == '"' && (i == 0 || word[i - 1] != '\\')) isOpen = !isOpen;
    }
    return isOpen;
  }

  const Quarry::ParserGroup& root;
  const bool multiline;
};

}  // namespace Fuzz
