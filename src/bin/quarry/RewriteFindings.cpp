#include "RewriteFindings.h"

#include <Quarry/ParserGroup.h>
#include <QuarrySource/RewriteGuard.h>
#include <QuarrySource/SourceTree.h>

#include "Texts.h"

namespace Tool {

using Quarry::ParserValue;
using Quarry::RewriteHazard;
using Quarry::SourceItem;
using Quarry::SourcePiece;
using Quarry::SourceTarget;
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

/// The number of a value is that of the tree, not that of the source.
SourceTarget findItem(const SourceTree& tree, const RewriteHazard& hazard) {
  const bool isValue = hazard.value != RewriteHazard::NO_VALUE;
  return tree.find(isValue ? hazard.path.substr(0, hazard.path.rfind('#')) : hazard.path);
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
  root.setText(document.source.getText(), document.source.getVersion());
  const std::vector<RewriteHazard> hazards = Quarry::RewriteGuard::examine(root);
  if (hazards.empty()) return;
  const SourceTree tree(document.source);
  for (const RewriteHazard& hazard : hazards) {
    Finding finding;
    finding.rule = Quarry::getHazardName(hazard.kind);
    finding.text = Texts::rewriteChanges(hazard.path, hazard.reason);
    finding.place.path = document.path;
    const SourceTarget target = findItem(tree, hazard);
    if (target.isFound() && target.item != SourceTree::NOWHERE) {
      setPlace(finding, tree, getExtent(tree, tree.getItem(target.item), hazard.value));
    }
    take(finding);
  }
}

}  // namespace Tool
