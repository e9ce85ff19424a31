/// @file
/// How much a document may ask for when it is read.
#pragma once

namespace Quarry {

/// Limits for documents from strangers, given to ParserFile::setLimits().
///
/// ```cpp
/// Quarry::ParserLimits limits;
/// limits.includeDepth = 8;
/// limits.preprocessedBytes = 64 << 20;
/// limits.nestingDepth = 200;
/// limits.includesBelowSearchPaths = true;
/// file.setLimits(limits);
/// ```
///
/// All are off by default: a document may then be as large and as deep as memory allows. Where one
/// is set, whichever it is, files that include each other in a circle are found out as well.
struct ParserLimits {
  /// Stands for a limit that is off.
  static constexpr unsigned long UNLIMITED = static_cast<unsigned long>(-1);

  /// How many includes may stand one within another: with 1, an included file includes none; with
  /// 0, no file does.
  unsigned long includeDepth = UNLIMITED;

  /// How many bytes the files of a document may have in all: a compressed one after it is
  /// unpacked, one that is included twice counted twice. What preprocessing makes of them is never
  /// longer. No more than this is read into memory.
  unsigned long preprocessedBytes = UNLIMITED;

  /// How many groups may stand one within another, the root not counted: with 1, the groups of the
  /// root hold none; with 0, the root holds none.
  unsigned long nestingDepth = UNLIMITED;

  /// Whether an included file must lie in or below one of the search paths, symbolic links and
  /// `..` resolved. An empty search path permits nothing. The file that is read itself may lie
  /// anywhere.
  bool includesBelowSearchPaths = false;

  /// Tells whether any limit is on.
  bool areSet() const {
    return includeDepth != UNLIMITED || preprocessedBytes != UNLIMITED ||
           nestingDepth != UNLIMITED || includesBelowSearchPaths;
  }
};

}  // namespace Quarry
