// Reads a document, changes it and writes it: edit_and_write FOLDER OUTPUT
#include <Quarry/ParserFile.h>

#include <iostream>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;

int main(int argc, char** argv) {
  if (argc != 3) return 2;

  ParserFile file;
  file.setSearchPaths({argv[1]});
  if (!file.read("show.cfg")) return 1;
  ParserGroup& root = file.getRoot();

  // A string is changed in place.
  root.getItem("title")->setString("Midsummer Night", 0);

  // A number that shall be written in digits is replaced by one that is added as such.
  ParserItem* seats = root.getItem("seats");
  seats->reset();
  seats->addInt(260);

  // New items and groups come last.
  ParserGroup* lamp = root.addGroup("lamp", false);
  lamp->addItem("name", 0, 0)->addString("lantern");
  lamp->addItem("channel", 0, 0)->addInt(13);

  // Only code makes templates and arrays; no document that is read has any.
  ParserItem* follow = lamp->addItem("follow", 0, 0);
  follow->setTemplate("spot");
  follow->addString("Tom");
  ParserItem* steps = lamp->addItem("steps", 0, 0);
  steps->setArray(true, 0);
  for (const double step : {0.0, 0.5, 1.0})
    steps->addDouble(step);

  // Every item of the name is removed.
  root.removeItem("sponsors");

  if (!file.save(argv[2])) return 1;
  std::cout << "written to " << file.getFilename() << "\n";
}
