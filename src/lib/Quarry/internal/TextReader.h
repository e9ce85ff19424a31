/// Reads a text into a tree: the words, the grammar and the tree put together.
#pragma once

#include <Quarry/ParserLimits.h>

namespace Quarry {

class ParserGroup;
class ParserWordStream;

/// How reading a text ended.
struct TextOutcome {
  bool endsWell = false;     ///< what ParserGroup::setText() tells
  bool leavesOut = false;    ///< whether a group was left out because of its depth
  unsigned long line = 0;    ///< of the first such group's brace, from 1
  unsigned long column = 0;  ///< of it, as the parser's warnings count
};

/// Adds the items of a text to `group`, up to a closing brace that closes none of its groups.
/// @param nestingDepth how many groups may stand one within another
TextOutcome readText(ParserWordStream& words, ParserGroup& group,
                     unsigned long nestingDepth = ParserLimits::UNLIMITED);

}  // namespace Quarry
