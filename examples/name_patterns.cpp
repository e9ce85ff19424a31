// Selects items by their names: name_patterns FOLDER
#include <Plinth/Expression.h>
#include <Quarry/ParserFile.h>

#include <iostream>
#include <string>

using Plinth::Expression;
using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;

namespace {

void show(const std::string& what, const ParserItems& items) {
  std::cout << what << ":";
  for (const ParserItem* item : items)
    std::cout << ' ' << item->getName();
  std::cout << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  ParserFile file;
  file.setSearchPaths({argv[1]});
  if (!file.read("show.cfg")) return 1;
  ParserGroup& root = file.getRoot();

  // The pattern is searched for in the name; ^ and $ anchor it, and an empty one selects all.
  show("with an e before the end", root.getItems("e.$"));
  show("lamps and cues", root.getItems("^(lamp|cue)$"));

  // A selection is narrowed by further patterns, which are compiled once.
  const ParserItems all = root.getItems("");
  const Expression repeated("^(lamp|cue)$");
  show("the others", all.getNotMatching(repeated));
  std::cout << all.getCount() << " items, the third is " << all.getAt(2)->getName() << "\n";

  // It copies nothing: what is added or renamed later is found by the next walk.
  const ParserItems lamps = root.getItems("^lamp$");
  root.addGroup("lamp", false);
  root.getItem("seats")->rename("places");
  std::cout << lamps.getCount() << " lamps\n";
  show("with a p", all.getMatching(Expression("^p")));

  // Backwards. While a view is walked, its group must not gain or lose items.
  auto locator = all.getReverseLocator();
  std::cout << "from the end: " << locator.getCurrent()->getName();
  locator.progress();
  std::cout << " " << locator.getCurrent()->getName() << "\n";
}
