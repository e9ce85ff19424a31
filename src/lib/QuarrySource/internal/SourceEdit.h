/// An edit, before it is made: which bytes change, and what has to be read then.
#pragma once

#include <QuarrySource/SourceLiteral.h>

#include <string>
#include <vector>

#include "TreeEvents.h"

namespace Quarry {

/// Bytes of an opened file that another text replaces.
struct FileChange {
  unsigned long opening = 0;
  unsigned long begin = 0;
  unsigned long end = 0;
  std::string text{};
};

using FileChanges = std::vector<FileChange>;

struct SourceEdit {
  /// What may be done, the neatest first; the first that reads as asked is done.
  std::vector<FileChanges> ways{};

  // The events that go, and those that come in their place.
  unsigned long firstEvent = 0;
  unsigned long eventCount = 0;
  std::vector<TreeEvent> asked{};

  /// A value that is new.
  struct NewValue {
    unsigned long item;   ///< in the new tree
    unsigned long index;  ///< of the item
    SourceLiteral literal;
  };
  std::vector<NewValue> newValues{};
};

}  // namespace Quarry
