#pragma once

#include <QuarrySource/SourceTree.h>

#include <DocumentModel.h>

#include <memory>
#include <string>

/// A document with its model, made from a text.
struct ViewedDocument {
  explicit ViewedDocument(const std::string& content)
      : document(read(content)), tree(*document), model(tree) {}

  std::string getText(int row, int column, const QModelIndex& parent = {}) const {
    return model.index(row, column, parent).data().toString().toStdString();
  }

  static std::unique_ptr<Quarry::SourceDocument> read(const std::string& content) {
    auto result = std::make_unique<Quarry::SourceDocument>();
    result->readText("show.cfg", content);
    return result;
  }

  const std::unique_ptr<Quarry::SourceDocument> document;
  const Quarry::SourceTree tree;
  DocumentModel model;
};
