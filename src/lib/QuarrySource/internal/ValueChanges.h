/// Which bytes change with the values of an item.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>
#include <vector>

#include "SourceEdit.h"

namespace Quarry {

/// Collects changes for one item. Comments between values stay; commas come and go with values.
class ValueChanges {
 public:
  /// @param itsTree has to outlive this
  ValueChanges(const SourceTree& itsTree, unsigned long item);

  void replace(unsigned long index, const std::string& spelling);

  void remove(unsigned long index);

  /// Removes the values from `first` on.
  void removeFrom(unsigned long first);

  /// Adds values behind all others.
  void append(const std::vector<std::string>& spellings);

  const FileChanges& get() const { return changes; }

  /// Returns why a value cannot be changed; empty where all can.
  const std::string& getProblem() const { return problem; }

 private:
  const SourceValue& getValue(unsigned long index) const { return tree.getValue(item, index); }
  unsigned long getValueEnd(unsigned long index) const;
  std::string getSeparator() const;
  std::string_view getGap(unsigned long index) const;
  unsigned long getHeadEnd() const;
  void removeFirst();
  void removeLater(unsigned long index);
  void removeAll();
  void removeText(unsigned long begin, unsigned long end);
  void insert(unsigned long textEnd, const std::string& text);

  const SourceTree& tree;
  const SourceDocument& document;
  const SourceItem& item;
  FileChanges changes;
  std::string problem;
};

/// Returns why the bytes of a word cannot be replaced: they have to stand side by side in one file.
/// Empty where they do.
std::string findPieceProblem(const SourceDocument& document, const std::string& what,
                             unsigned long begin, unsigned long length);

}  // namespace Quarry
