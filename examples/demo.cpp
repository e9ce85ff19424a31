// Looks up the first item of a document that has a value: demo FILE [FOLDER...]
//
// The folders are search paths. The way to the item is shown as the calls that lead to it.
#include <Quarry/ParserFile.h>

#include <iostream>
#include <string>
#include <vector>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

/// A group that is searched, and how one gets there from the root.
struct Place {
  const ParserGroup* group;
  std::string way;
};

void show(const Place& place, const ParserItem& item) {
  std::string values;
  item.getValueText(values, false, 1);
  std::cout << place.way << ".getItem(\"" << item.getName() << "\") ->" << values << "\n";
}

/// Shows the first item whose first value is no group, level by level from the outermost.
bool showFirst(const ParserGroup& root) {
  std::vector<Place> places = {{&root, "getRoot()"}};
  for (unsigned long next = 0; next < places.size(); ++next) {
    const Place place = places[next];
    for (unsigned long i = 0; i < place.group->getItemCount(); ++i) {
      const ParserItem& item = *place.group->getItem(i);
      if (item.getValueCount() == 0) continue;
      if (!item.isValueGroup(0)) return show(place, item), true;
      places.push_back({item.getGroup(0), place.way + ".getGroup(\"" + item.getName() + "\")"});
    }
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  ParserFile file;
  file.setSearchPaths(std::vector<std::string>(argv + 2, argv + argc));
  if (!file.read(argv[1])) return 1;
  if (!showFirst(file.getRoot())) std::cout << "no item has a value\n";
}
