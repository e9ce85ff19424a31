/// Which items of a document have something wrong in them.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <set>

/// Returns the number of the innermost item that a diagnostic is about; NOWHERE for none.
unsigned long findDoubtfulItem(const Quarry::SourceTree& tree,
                               const Quarry::SourceDiagnostic& diagnostic);

/// Returns the numbers of all items that a diagnostic is about, and of those around them.
std::set<unsigned long> findDoubtfulItems(const Quarry::SourceTree& tree);
