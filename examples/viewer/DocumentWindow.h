#pragma once

#include "DocumentModel.h"

#include <QListWidget>
#include <QSplitter>
#include <QTreeView>

/// A document: its items, and below them what is wrong in it. A click on a finding leads to the
/// item that it is about.
class DocumentWindow : public QSplitter {
 public:
  /// The document and its tree have to outlive the window.
  explicit DocumentWindow(const Quarry::SourceTree& tree);

  void expandAll() { items.expandAll(); }

 private:
  void addFinding(const Quarry::SourceDocument& document,
                  const Quarry::SourceDiagnostic& diagnostic);

  DocumentModel model;
  QTreeView items;
  QListWidget findings;
};
