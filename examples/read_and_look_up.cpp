// Reads a document and looks up items: read_and_look_up FOLDER
#include <Quarry/ParserFile.h>

#include <iostream>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;

int main(int argc, char** argv) {
  if (argc != 2) return 2;

  ParserFile file;
  file.setSearchPaths({argv[1]});
  if (!file.read("show.cfg")) return 1;  // the console has said why
  const ParserGroup& root = file.getRoot();

  // An item by its name, a value by its type and index.
  std::cout << "title: " << root.getItem("title")->getString(0) << "\n";
  std::cout << "seats: " << root.getItem("seats")->getInt(0) << "\n";

  // Names that begin with "#" are keywords, which are looked up apart.
  std::cout << "revision: " << root.getKeyword("#revision")->getInt(0) << "\n";

  // A name may be missing: the lookup then answers null.
  if (root.getItem("intermission") == nullptr) std::cout << "no intermission\n";

  // Into a group, and all values of an item.
  const ParserItem* amber = root.getGroup("palette")->getItem("amber");
  std::cout << "amber:";
  for (unsigned long i = 0; i < amber->getValueCount(); ++i) {
    if (amber->isValueDouble(i)) std::cout << ' ' << amber->getDouble(i);
  }
  std::cout << "\n";

  // Names may repeat: every item called "lamp", in order.
  for (const ParserItem* lamp : root.getEntries("lamp")) {
    const ParserGroup& group = *lamp->getGroup(0);
    std::cout << "lamp " << group.getItem("channel")->getInt(0) << ": "
              << group.getItem("name")->getString(0) << "\n";
  }

  // By index, and what a call is given.
  const ParserGroup& cue = *root.getGroup("cue");
  for (unsigned long i = 0; i < cue.getItemCount(); ++i) {
    const ParserItem* item = cue.getItem(i);
    if (item->getType() != ParserItem::ITEM_CALL) continue;
    std::cout << item->getName() << " " << item->getString(0) << " to " << item->getDouble(1)
              << "\n";
  }
}
