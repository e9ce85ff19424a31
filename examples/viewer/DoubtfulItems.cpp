#include "DoubtfulItems.h"

using Quarry::SourceDiagnostic;
using Quarry::SourceTree;

unsigned long findDoubtfulItem(const SourceTree& tree, const SourceDiagnostic& diagnostic) {
  if (diagnostic.opening == SourceDiagnostic::NO_OPENING) return tree.NOWHERE;
  const unsigned long offset =
      tree.getDocument().getTextOffset({diagnostic.opening, diagnostic.offset});
  return offset == tree.NOWHERE ? offset : tree.getItemAt(offset);
}

std::set<unsigned long> findDoubtfulItems(const SourceTree& tree) {
  std::set<unsigned long> doubtful;
  for (const SourceDiagnostic& diagnostic : tree.getDocument().getDiagnostics()) {
    unsigned long item = findDoubtfulItem(tree, diagnostic);
    for (; item != tree.NOWHERE; item = tree.getItem(item).parent)
      doubtful.insert(item);
  }
  return doubtful;
}
