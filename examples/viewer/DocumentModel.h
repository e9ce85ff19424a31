#pragma once

#include <QuarrySource/SourceTree.h>

#include "ItemRows.h"

#include <QAbstractItemModel>

#include <set>

/// Shows the items of a document to the views of Qt: a row for each, with its name, its type and
/// its values as they are spelled. A sign marks those that a diagnostic is about.
///
/// An index carries the number of its item in the tree, which has to outlive the model.
class DocumentModel : public QAbstractItemModel {
 public:
  enum Column { NAME, TYPE, VALUE, COLUMN_COUNT };

  explicit DocumentModel(const Quarry::SourceTree& shown, QObject* parent = nullptr);

  /// Returns the index of the innermost item that a diagnostic is about; an invalid one for none.
  QModelIndex findIndex(const Quarry::SourceDiagnostic& diagnostic) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

 private:
  QModelIndex makeIndex(unsigned long item) const;

  const Quarry::SourceTree& tree;
  const ItemRows rows;
  const std::set<unsigned long> doubtful;
};
