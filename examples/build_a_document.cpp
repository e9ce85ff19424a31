// Makes a document by code, with every kind of value and item.
#include <Quarry/ParserFile.h>

#include <iostream>
#include <string>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;

int main() {
  ParserFile file;
  ParserGroup& root = file.getRoot();

  // Line and column are those of a document that is read; code passes 0.
  ParserItem* values = root.addItem("values", 0, 0);
  values->addBool(true);
  values->addChar('-');  // written as its code
  values->addInt(-12);
  values->addDouble(0.1);
  values->addString("two\nlines");
  std::string bytes("\x01\x02\xFF", 3);
  values->addBinaryData(bytes.data(), bytes.size());

  // An item without values.
  root.addItem("nothing", 0, 0);

  // A keyword: the name makes it one.
  root.addItem("#format", 0, 0)->addInt(2);

  // A call: the item is made first, and the group adopts it.
  ParserItem* call = new ParserItem("blur", ParserItem::ITEM_CALL, 0, 0);
  call->addInt(4);
  call->addBool(false);
  root.addItem(*call);

  // A group, and a group in it.
  ParserGroup* camera = root.addGroup("camera", false);
  camera->addItem("field_of_view", 0, 0)->addDouble(39.6);
  camera->addGroup("target", false)->addItem("x", 0, 0)->addInt(0);

  // An array of unspecified size, and a template instance.
  ParserItem* keys = root.addItem("keys", 0, 0);
  keys->setArray(true, 0);
  keys->addInt(10);
  keys->addInt(20);
  ParserItem* layer = root.addItem("layer", 0, 0);
  layer->setTemplate("image");
  layer->addString("ridge.png");

  std::string text;
  file.getText(text);  // as write() writes it, but for the version line
  std::cout << text << "\n";
}
