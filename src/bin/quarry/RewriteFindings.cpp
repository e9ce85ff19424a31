#include "RewriteFindings.h"

#include <Quarry/ParserGroup.h>
#include <QuarrySource/RewriteGuard.h>
#include <QuarrySource/SourceTree.h>

#include "ItemPaths.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <optional>
#include <string_view>
#include <utility>

namespace Tool {

using Quarry::ParserValue;
using Quarry::RewriteHazard;
using Quarry::SourceItem;
using Quarry::SourcePiece;
using Quarry::SourceTree;
using Quarry::SourceValue;

namespace {

/// A stretch of the preprocessed text.
struct Extent {
  unsigned long begin;
  unsigned long length;
};

/// Returns where a value of an item stands, counted as the library does, which drops `<empty>`; the
/// item's name where there is none.
Extent getExtent(const SourceTree& tree, const SourceItem& item, unsigned long index) {
  if (index == RewriteHazard::NO_VALUE) return {item.nameBegin, item.nameLength};
  for (unsigned long i = 0; i < item.valueCount; ++i) {
    const SourceValue& value = tree.getValue(item, i);
    if (value.type != ParserValue::TYPE_EMPTY && index-- == 0) return {value.begin, value.length};
  }
  return {item.nameBegin, item.nameLength};
}

/// Finds items by their paths. Hazards come in the order of the document, so that all of them take
/// one walk through it; in any other order they are found as well.
class ItemFinder {
 public:
  explicit ItemFinder(const SourceTree& searched) : tree(searched), paths(std::in_place, tree) {}

  /// @return an index for SourceTree::getItem(), NOWHERE where there is no such item
  unsigned long find(std::string_view path) {
    if (paths->getIndex() != SourceTree::NOWHERE && paths->getPath() == path)
      return paths->getIndex();
    if (walkTo(path)) return paths->getIndex();
    paths.emplace(tree);
    return walkTo(path) ? paths->getIndex() : SourceTree::NOWHERE;
  }

 private:
  bool walkTo(std::string_view path) {
    while (paths->next()) {
      if (paths->getPath() == path) return true;
    }
    return false;
  }

  const SourceTree& tree;
  std::optional<ItemPaths> paths;
};

/// The number of a value is that of the tree, not that of the source.
std::string_view getItemPath(const RewriteHazard& hazard) {
  const std::string_view path = hazard.path;
  return hazard.value == RewriteHazard::NO_VALUE ? path : path.substr(0, path.rfind('#'));
}

void setPlace(Finding& finding, const SourceTree& tree, const Extent& extent) {
  const Quarry::SourceDocument& source = tree.getDocument();
  const SourcePiece piece = source.getPieces(extent.begin, extent.length).front();
  finding.place = source.getPlace(piece.position);
  finding.line = source.getFileOf(piece.position.opening).getLine(finding.place.line);
  finding.begin = finding.place.column - 1;
  finding.length = piece.length;
}

}  // namespace

std::vector<Rule> getRewriteRules() {
  std::vector<Rule> rules;
  for (const RewriteHazard::Kind kind : Quarry::getHazardKinds())
    rules.push_back({Quarry::getHazardName(kind), Quarry::getHazardReason(kind)});
  return rules;
}

void findRewriteHazards(const CheckedDocument& document, const FindingTaker& take) {
  if (!document.isRead) return;
  Quarry::ParserGroup root("root");
  makeTree(document.source, root);
  const std::vector<RewriteHazard> hazards = Quarry::RewriteGuard::examine(root);
  if (hazards.empty()) return;
  const SourceTree tree(document.source);
  ItemFinder finder(tree);
  for (const RewriteHazard& hazard : hazards) {
    Finding finding;
    finding.rule = Quarry::getHazardName(hazard.kind);
    finding.text = Texts::rewriteChanges(hazard.path, hazard.reason);
    finding.place.path = document.path;
    const unsigned long item = finder.find(getItemPath(hazard));
    if (item != SourceTree::NOWHERE)
      setPlace(finding, tree, getExtent(tree, tree.getItem(item), hazard.value));
    take(finding);
  }
}

}  // namespace Tool
