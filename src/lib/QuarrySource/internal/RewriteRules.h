/// The known reasons for which parts of a tree are not read back as they were written.
#pragma once

#include <QuarrySource/RewriteGuard.h>

#include "RewriteText.h"

#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// Looks at each part of a tree that does not read back, and tells which ones are the cause. There
/// is one function for each reason.
class RewriteRules {
 public:
  /// @param writtenTree the tree
  /// @param keyword the root keyword to which writing gives the version; null for none
  RewriteRules(const RewriteText& writtenTree, const ParserItem* keyword);

  /// Calls `tell(kind, part)`, with the number of the part, for each cause, in the order of the
  /// text.
  template <class Tell>
  void apply(Tell tell) {
    for (unsigned long i = 0; i < parts.size(); ++i) {
      for (const Kind kind : lookAt(i))
        tell(kind, i);
    }
  }

 private:
  using Kind = RewriteHazard::Kind;
  using Kinds = std::vector<Kind>;

  /// The places of a directive in the text, one after the other.
  struct Marker {
    Kind kind;
    std::string_view bytes;
    std::size_t next = 0;  ///< the first place that was not yet told
  };

  Kinds lookAt(unsigned long index);
  void lookAtItem(const RewritePart& part, Kinds& found) const;
  void lookAtGroup(const RewritePart& part, Kinds& found) const;
  void lookAtValue(const RewritePart& part, Kinds& found) const;
  void lookAtString(const RewritePart& part, Kinds& found) const;
  void lookAtNumber(const RewritePart& part, Kinds& found) const;
  void lookForMarkers(unsigned long index, Kinds& found);

  bool isOneWord(const RewritePart& part) const;
  bool isQuoteLeftOpen(const RewritePart& part) const;

  const RewriteText& written;
  const std::vector<RewritePart>& parts;
  const ParserItem* const versionKeyword;
  Marker markers[2];
  unsigned long lastItemBegin = 0;
  std::size_t lastSlashes;  ///< the last `//` in the text
};

}  // namespace Quarry
