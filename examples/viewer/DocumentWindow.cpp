#include "DocumentWindow.h"

#include "ItemText.h"

#include <QHeaderView>
#include <QStyle>

#include <string>

using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;

DocumentWindow::DocumentWindow(const Quarry::SourceTree& tree)
    : QSplitter(Qt::Vertical), model(tree), items(this), findings(this) {
  items.setModel(&model);
  items.setAlternatingRowColors(true);
  items.setUniformRowHeights(true);
  items.header()->resizeSection(DocumentModel::NAME, 240);
  items.header()->resizeSection(DocumentModel::TYPE, 140);

  const SourceDocument& document = tree.getDocument();
  for (const SourceDiagnostic& diagnostic : document.getDiagnostics())
    addFinding(document, diagnostic);
  findings.setIconSize({16, 16});
  findings.setVisible(findings.count() > 0);
  setStretchFactor(indexOf(&items), 1);
  setSizes({400, 120});
  resize(800, 520);

  QObject::connect(&findings, &QListWidget::currentRowChanged, &items, [this, &document](int row) {
    if (row < 0) return;
    const auto chosen = static_cast<unsigned long>(row);
    items.setCurrentIndex(model.findIndex(document.getDiagnostics()[chosen]));
  });
}

void DocumentWindow::addFinding(const SourceDocument& document,
                                const SourceDiagnostic& diagnostic) {
  const QString place = getText(document.getPlace(diagnostic));
  const QString sentence = QString::fromStdString(document.describe(diagnostic));
  new QListWidgetItem(style()->standardIcon(QStyle::SP_MessageBoxWarning),
                      place.isEmpty() ? sentence : place + ": " + sentence, &findings);
}
