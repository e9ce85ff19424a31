/// @file
/// The items of a document, and where they stand.
#pragma once

#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <QuarrySource/Export.h>
#include <QuarrySource/SourceDocument.h>

#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// A value of an item, as it is spelled. All offsets are those of the preprocessed text.
struct SourceValue {
  ParserValue::Type type = ParserValue::TYPE_EMPTY;  ///< TYPE_EMPTY for `<empty>`
  unsigned long begin = 0;                           ///< of its first byte
  unsigned long length = 0;                          ///< in bytes
};

/// An item, as it stands. All offsets are those of the preprocessed text; NOWHERE is none.
struct SourceItem {
  /// Stands for no place, and for no item.
  static constexpr unsigned long NOWHERE = SourceDocument::NOWHERE;

  ParserItem::Type type = ParserItem::ITEM_PLAIN;  ///< plain, keyword or call
  unsigned long nameBegin = 0;                     ///< of the first byte of its name
  unsigned long nameLength = 0;                    ///< in bytes
  unsigned long end = 0;                           ///< behind the last word that belongs to it
  unsigned long groupBegin = NOWHERE;              ///< of the brace that opens its group
  unsigned long groupEnd = NOWHERE;  ///< of the brace that closes it; none at the document's end
  unsigned long argumentsBegin = NOWHERE;  ///< of the parenthesis that opens its arguments
  unsigned long argumentsEnd = NOWHERE;    ///< of the one that closes them

  unsigned long parent = NOWHERE;  ///< the item in whose group it is; none for the root's items
  unsigned long next = 0;          ///< the item behind it and everything in its group
  unsigned long firstValue = 0;    ///< for SourceTree::getValue()
  unsigned long valueCount = 0;    ///< without its group, with every `<empty>`

  /// Tells whether the item holds a group.
  bool hasGroup() const { return groupBegin != NOWHERE; }
};

/// What a path leads to.
struct SourceTarget {
  unsigned long item = SourceDocument::NOWHERE;   ///< none for the root
  unsigned long value = SourceDocument::NOWHERE;  ///< of the item, from 0; none for all of it
  std::string problem;                            ///< why it leads nowhere; empty where it does not

  /// Tells whether the path leads to an item, a value or the root.
  bool isFound() const { return problem.empty(); }
};

/// All items of a document in the order of the text: behind an item stand those of its group, and
/// then its next sibling.
///
/// **Paths** lead to items: `scene/layer[2]/name` is the item `name` in the second `layer` of the
/// first `scene`. Names stand between slashes; `[n]`, from 1, is the n-th item of that name in its
/// group; `#n`, from 1, is the n-th value of the item. The empty path is the root. A name that
/// itself ends in a number in brackets is found as it stands where there is no such n-th item;
/// followed by `[1]` it is always found.
///
/// The document has to outlive the tree, and not to be read again meanwhile. Every operation throws
/// `std::bad_alloc` when memory runs out.
class QUARRYSOURCE_EXPORT SourceTree {
 public:
  /// Stands for no item, and for the root where a parent is meant.
  static constexpr unsigned long NOWHERE = SourceDocument::NOWHERE;

  /// Parses the text of the document once more.
  explicit SourceTree(const SourceDocument& source);

  /// Returns the document of which this is the tree.
  const SourceDocument& getDocument() const { return document; }

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the number of items, those of all groups counted.
  unsigned long getItemCount() const { return items.size(); }

  /// Returns item `index`, from 0, in the order of the text. The index is not checked.
  const SourceItem& getItem(unsigned long index) const { return items[index]; }

  /// Returns value `index` of an item, from 0, every `<empty>` counted. The index is not checked.
  const SourceValue& getValue(const SourceItem& item, unsigned long index) const {
    return values[item.firstValue + index];
  }

  /// Returns an item's name; good as long as the document.
  std::string_view getName(const SourceItem& item) const;

  /// Returns how a value is spelled; good as long as the document.
  std::string_view getSpelling(const SourceValue& value) const;

  /// Appends the value to an item, as the parser does when it reads the document; nothing for
  /// `<empty>`.
  void appendTo(ParserItem& item, const SourceValue& value) const;

  /// Returns the first item of the root, for NOWHERE, or of an item's group; NOWHERE for none.
  unsigned long getFirst(unsigned long parent) const;

  /// Returns the next item of the same group; NOWHERE for none.
  unsigned long getNext(unsigned long item) const;

  // --- Paths -------------------------------------------------------------------------------------

  /// Returns the shortest path of an item; the empty one for NOWHERE.
  std::string getPath(unsigned long item) const;

  /// Returns the last part of an item's path: `layer[2]`. Who walks through the tree and keeps the
  /// path of the group that it is in needs no more.
  std::string getStep(unsigned long item) const;

  /// Finds what a path leads to.
  SourceTarget find(const std::string& path) const;

  /// Returns the innermost item that has a byte of the text within it; NOWHERE for none.
  unsigned long getItemAt(unsigned long textOffset) const;

  /// Returns which value of an item, from 0, has that byte; NOWHERE for none.
  unsigned long getValueAt(unsigned long item, unsigned long textOffset) const;

 private:
  friend class TreeCollector;

  QUARRYSOURCE_HIDDEN const std::vector<unsigned long>& getOrdinals() const;
  QUARRYSOURCE_HIDDEN unsigned long findNamed(unsigned long parent, std::string_view name,
                                              unsigned long ordinal) const;
  QUARRYSOURCE_HIDDEN unsigned long findStep(unsigned long parent, std::string_view step) const;

  const SourceDocument& document;
  std::vector<SourceItem> items;
  std::vector<SourceValue> values;
  mutable std::vector<unsigned long> ordinals;  ///< of each item among its namesakes, from 1
};

}  // namespace Quarry
