#include "DocumentModel.h"

#include "DoubtfulItems.h"
#include "ItemText.h"

#include <QApplication>
#include <QIcon>
#include <QStringList>
#include <QStyle>

DocumentModel::DocumentModel(const Quarry::SourceTree& shown, QObject* parent)
    : QAbstractItemModel(parent), tree(shown), rows(tree), doubtful(findDoubtfulItems(tree)) {}

QModelIndex DocumentModel::findIndex(const Quarry::SourceDiagnostic& diagnostic) const {
  return makeIndex(findDoubtfulItem(tree, diagnostic));
}

QModelIndex DocumentModel::makeIndex(unsigned long item) const {
  return item == tree.NOWHERE ? QModelIndex()
                              : createIndex(rows.getRow(item), NAME, quintptr(item));
}

QModelIndex DocumentModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  const unsigned long group = parent.isValid() ? parent.internalId() : tree.NOWHERE;
  return createIndex(row, column, quintptr(rows.getItems(group)[static_cast<unsigned>(row)]));
}

QModelIndex DocumentModel::parent(const QModelIndex& index) const {
  return index.isValid() ? makeIndex(tree.getItem(index.internalId()).parent) : QModelIndex();
}

int DocumentModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(rows.getItems(tree.NOWHERE).size());
  return parent.column() == NAME ? static_cast<int>(rows.getItems(parent.internalId()).size()) : 0;
}

int DocumentModel::columnCount(const QModelIndex&) const { return COLUMN_COUNT; }

QVariant DocumentModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Quarry::SourceItem& item = tree.getItem(index.internalId());
  if (role == Qt::ToolTipRole) return getPlaceText(tree, item);
  const bool isMarked = index.column() == NAME && doubtful.count(index.internalId()) > 0;
  if (role == Qt::DecorationRole && isMarked)
    return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
    case NAME: return getNameText(tree, item);
    case TYPE: return getTypeText(tree, item);
    default: return getValueText(tree, item);
  }
}

QVariant DocumentModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return QStringList{"Name", "Type", "Value"}.value(section);
}
