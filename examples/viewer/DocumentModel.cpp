#include "DocumentModel.h"

#include "ItemText.h"

#include <QApplication>
#include <QIcon>
#include <QStringList>
#include <QStyle>

using Quarry::SourceDiagnostic;
using Quarry::SourceItem;

DocumentModel::DocumentModel(const Quarry::SourceTree& shown, QObject* parent)
    : QAbstractItemModel(parent), tree(shown), children(tree.getItemCount() + 1) {
  for (unsigned long item = 0; item < tree.getItemCount(); ++item) {
    const unsigned long group = tree.getItem(item).parent;
    Items& siblings = group == tree.NOWHERE ? children.back() : children[group];
    rows.push_back(static_cast<int>(siblings.size()));
    siblings.push_back(item);
  }
  for (const SourceDiagnostic& diagnostic : tree.getDocument().getDiagnostics()) {
    for (QModelIndex at = findIndex(diagnostic); at.isValid(); at = at.parent())
      doubtful.insert(at);
  }
}

QModelIndex DocumentModel::findIndex(const SourceDiagnostic& diagnostic) const {
  if (diagnostic.opening == SourceDiagnostic::NO_OPENING) return {};
  const unsigned long offset =
      tree.getDocument().getTextOffset({diagnostic.opening, diagnostic.offset});
  return makeIndex(offset == tree.NOWHERE ? offset : tree.getItemAt(offset));
}

QModelIndex DocumentModel::makeIndex(unsigned long item) const {
  return item == tree.NOWHERE ? QModelIndex() : createIndex(rows[item], NAME, quintptr(item));
}

const DocumentModel::Items& DocumentModel::getChildren(const QModelIndex& parent) const {
  static const Items none;
  if (!parent.isValid()) return children.back();
  return parent.column() == NAME ? children[parent.internalId()] : none;
}

QModelIndex DocumentModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, quintptr(getChildren(parent)[static_cast<unsigned>(row)]));
}

QModelIndex DocumentModel::parent(const QModelIndex& index) const {
  return index.isValid() ? makeIndex(tree.getItem(index.internalId()).parent) : QModelIndex();
}

int DocumentModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(getChildren(parent).size());
}

int DocumentModel::columnCount(const QModelIndex&) const { return COLUMN_COUNT; }

QVariant DocumentModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const SourceItem& item = tree.getItem(index.internalId());
  if (role == Qt::ToolTipRole) return getPlaceText(tree, item);
  if (role == Qt::DecorationRole && doubtful.count(index) > 0) {
    return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
  }
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
