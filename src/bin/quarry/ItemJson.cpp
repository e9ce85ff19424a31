#include "ItemJson.h"

#include "ItemDisplay.h"
#include "JsonWriter.h"

namespace Tool {

void appendItemJson(std::string& out, const Quarry::SourceTree& tree, unsigned long index) {
  const std::unique_ptr<Quarry::ParserItem> item = copyValues(tree, index);
  if (tree.getItem(index).hasGroup()) item->addGroup(nullptr);
  out += "\"kind\":\"";
  out += getKindName(item->getType());
  out += "\",\"values\":[";
  for (unsigned long i = 0; i < item->getValueCount(); ++i) {
    if (i > 0) out += ',';
    appendJsonValue(out, *item, i);
  }
  out += ']';
}

}  // namespace Tool
