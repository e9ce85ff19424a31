/// Which bytes change when items come and go.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>
#include <string_view>
#include <vector>

#include "FileLayout.h"
#include "SourceEdit.h"

namespace Quarry {

/// The text of an item that is to be added.
struct NewItem {
  std::string head;      ///< the name with its values, or up to the brace that opens its group
  bool isGroup = false;  ///< whether a closing brace has to follow
};

/// Finds the places for items in the layout that is there. All results are ways to do it, the
/// neatest first: which of them reads as asked is not known here.
class ItemPlaces {
 public:
  static constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

  /// @param itsTree has to outlive this
  explicit ItemPlaces(const SourceTree& itsTree);

  /// @param parent NOWHERE for the root
  std::vector<FileChanges> insertAtEnd(unsigned long parent, const NewItem& added) const;
  std::vector<FileChanges> insertBefore(unsigned long item, const NewItem& added) const;
  std::vector<FileChanges> insertBehind(unsigned long item, const NewItem& added) const;

  /// Nothing when the item begins and ends in different openings.
  std::vector<FileChanges> remove(unsigned long item) const;

 private:
  FileLayout getLayout(unsigned long opening) const;
  SourcePosition getBegin(const SourceItem& item) const;
  SourcePosition getEnd(unsigned long textEnd) const;
  unsigned long getTextEnd(const SourceItem& item) const;
  unsigned long getLast(unsigned long parent) const;
  bool endsGroup(unsigned long parent, const SourcePosition& position) const;
  bool isOnOneLine(unsigned long parent) const;
  std::string getInnerIndentation(unsigned long parent, unsigned long opening) const;
  std::string getUnit() const;
  bool addUnit(const SourceItem& item, std::string& unit) const;
  std::vector<FileChanges> insertAtEndOfFile(const NewItem& added) const;
  std::vector<FileChanges> insertBeforeBrace(unsigned long parent, const NewItem& added) const;
  std::vector<FileChanges> insertOnLine(const SourcePosition& end, const NewItem& added,
                                        const std::string& indentation) const;

  const SourceTree& tree;
  const SourceDocument& document;
};

}  // namespace Quarry
