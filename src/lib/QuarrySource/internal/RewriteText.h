/// The text of a tree as it is written to a file, and what stands where in it.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <Quarry/internal/TextWriter.h>
#include <Quarry/internal/TreeWalker.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// An item, a value or a group of a tree, and its place in the text.
struct RewritePart {
  static constexpr unsigned long NONE = static_cast<unsigned long>(-1);

  const ParserItem* item = nullptr;    ///< of a value or a group, the item that holds it
  const ParserValue* value = nullptr;  ///< null for an item and for a group
  const ParserGroup* group = nullptr;  ///< null for an item and for a value
  unsigned long index = NONE;          ///< of the value or group; NONE for an item
  unsigned long owner = NONE;  ///< the part of the item around it; NONE for the root's items
  unsigned long depth = 0;     ///< how many groups there are around it
  unsigned long begin = 0;     ///< in the text
  unsigned long end = 0;       ///< of an item, behind its groups
  bool isFolded = false;       ///< the item stands between fold markers

  bool isItem() const { return index == NONE; }
};

/// Writes a tree with the library's own writer, into memory, and notes each part of it.
///
/// Nothing of the tree changes: a value that has no text yet would be given one by writing, and so
/// copies are written.
///
/// Blanks at the beginning of a line make no difference, but for the first of them, which may keep
/// apart what a comment would join. So the text is indented to the second level only: it is as long
/// as the tree is large, and not as its depth is.
class RewriteText {
  using Writer = TextWriter<std::string>;

 public:
  explicit RewriteText(const ParserGroup& root) : text(VERSION_LINE), writer(text, true) {
    TreeWalker(*this).walkGroup(root, GroupMark());
  }
  RewriteText(const RewriteText&) = delete;
  RewriteText& operator=(const RewriteText&) = delete;

  const std::string& getText() const { return text; }

  /// Returns the parts in the order of the text: behind an item stand its values and groups, behind
  /// a group its items.
  const std::vector<RewritePart>& getParts() const { return parts; }

  std::string_view getSpelling(const RewritePart& part) const {
    return std::string_view(text).substr(part.begin, part.end - part.begin);
  }

  /// Tells whether nothing stands behind a part on its line.
  bool endsLine(const RewritePart& part) const {
    return part.end == text.size() || text[part.end] == '\n';
  }

  // --- What the walk tells -----------------------------------------------------------------------

  using GroupMark = Writer::GroupMark;
  struct ItemMark {
    Writer::ItemMark written;
    unsigned long part = 0;
  };

  ItemMark beginItem(const ParserItem& item, const GroupMark& group) {
    RewritePart part;
    part.item = &item;
    part.owner = openItems.empty() ? RewritePart::NONE : openItems.back();
    part.depth = openItems.size();
    part.begin = text.size();
    const Writer::ItemMark written = writer.beginItem(item, group);
    part.isFolded = written.folded;
    openItems.push_back(parts.size());
    parts.push_back(part);
    return {written, parts.size() - 1};
  }

  void value(const ParserItem& item, unsigned long index, const ParserValue& value) {
    const ParserValue copy(value);
    std::string spelling;
    copy.getText(spelling, true, 1);
    writer.value(item, index, copy);
    RewritePart& part = addHeld(item, index, text.size() - spelling.size());
    part.value = &value;
  }

  GroupMark beginGroup(const ParserItem& item, unsigned long index, const ParserGroup& group,
                       const GroupMark& outer) {
    constexpr unsigned long DEEPEST_INDENT = 2;
    const unsigned long begin = text.size();
    GroupMark mark = writer.beginGroup(item, index, group, outer);
    mark.depth = std::min(mark.depth, DEEPEST_INDENT);
    addHeld(item, index, begin).group = &group;
    return mark;
  }

  void endGroup(const GroupMark& group) { writer.endGroup(group); }

  void endItem(const ParserItem& item, const ItemMark& mark) {
    writer.endItem(item, mark.written);
    parts[mark.part].end = text.size();
    openItems.pop_back();
  }

 private:
  static constexpr char VERSION_LINE[] = "#SerialVersion 1.1\n";

  RewritePart& addHeld(const ParserItem& item, unsigned long index, unsigned long begin) {
    RewritePart& part = parts.emplace_back();
    part.item = &item;
    part.index = index;
    part.owner = openItems.back();
    part.depth = openItems.size() - 1;
    part.begin = begin;
    part.end = text.size();
    return part;
  }

  std::string text;
  Writer writer;
  std::vector<RewritePart> parts;
  std::vector<unsigned long> openItems;  ///< the parts of the items that are being written
};

}  // namespace Quarry
