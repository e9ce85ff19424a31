// Shows a document in a window: viewer [-I FOLDER]... FILE
#include "DocumentWindow.h"

#include <QApplication>
#include <QCommandLineParser>

#include <iostream>
#include <string>
#include <vector>

namespace {

/// Documents may come from anywhere; one that includes itself would otherwise be expanded for ever.
Quarry::ParserLimits getLimits() {
  Quarry::ParserLimits limits;
  limits.includeDepth = 64;
  limits.preprocessedBytes = 256 << 20;
  limits.nestingDepth = 1000;
  return limits;
}

std::vector<std::string> toPaths(const QStringList& folders) {
  std::vector<std::string> paths;
  for (const QString& folder : folders)
    paths.push_back(folder.toStdString());
  return paths;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCommandLineParser arguments;
  arguments.setApplicationDescription("Shows a document and what is wrong in it.");
  arguments.addHelpOption();
  arguments.addPositionalArgument("FILE", "The document.");
  arguments.addOption({{"I", "include"}, "Looks for files in FOLDER.", "FOLDER"});
  arguments.addOption({"expand", "Opens all groups."});
  arguments.addOption({"screenshot", "Draws the window into PICTURE and ends.", "PICTURE"});
  arguments.process(application);
  if (arguments.positionalArguments().size() != 1) arguments.showHelp(2);
  const QString name = arguments.positionalArguments().constFirst();

  Quarry::SourceDocument document;
  document.setSearchPaths(toPaths(arguments.values("include")));
  document.setLimits(getLimits());
  document.read(name.toStdString());  // what is missing stands among the findings
  const Quarry::SourceTree tree(document);

  DocumentWindow window(tree);
  window.setWindowTitle(name);
  if (arguments.isSet("expand")) window.expandAll();
  window.show();
  if (!arguments.isSet("screenshot")) return QApplication::exec();
  return window.grab().save(arguments.value("screenshot")) ? 0 : 1;
}
