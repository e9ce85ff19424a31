#include "ItemDisplay.h"

namespace Tool {

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceItem;
using Quarry::SourceTree;

namespace {

constexpr std::size_t LONGEST_PATH = 1000;

}  // namespace

std::unique_ptr<ParserItem> copyValues(const SourceTree& tree, unsigned long index) {
  const SourceItem& item = tree.getItem(index);
  auto copy = std::make_unique<ParserItem>(std::string(tree.getName(item)), item.type, 0UL, 0UL);
  for (unsigned long i = 0; i < item.valueCount; ++i)
    tree.appendTo(*copy, tree.getValue(item, i));
  return copy;
}

std::string getSpelling(const ParserItem& item, unsigned long index) {
  std::string text;
  switch (item.getValueType(index)) {
    case ParserValue::TYPE_STRING:
      ParserValue(item.getString(index)).getText(text, false, 1);
      return text;
    case ParserValue::TYPE_BINARYDATA:
      ParserValue(item.getBinaryData(index), item.getBinaryDataSize(index)).getText(text, false, 1);
      return text;
    default: return item.getWord(index);
  }
}

std::string shortenPath(const std::string& path) {
  if (path.size() <= LONGEST_PATH) return path;
  std::size_t cut = path.find('/', path.size() - LONGEST_PATH);
  if (cut == std::string::npos) cut = path.rfind('/');
  return cut == std::string::npos ? path : "..." + path.substr(cut);
}

void writeItem(ItemLine& line, Style style, const std::string& path, const SourceTree& tree,
               unsigned long index) {
  const std::unique_ptr<ParserItem> item = copyValues(tree, index);
  line.begin(style, shortenPath(path));
  if (item->getType() == ParserItem::ITEM_CALL) line.mark(Style::CALL, " (call)");
  for (unsigned long i = 0; i < item->getValueCount(); ++i)
    line.addValue(item->getValueType(i), getSpelling(*item, i));
  if (tree.getItem(index).hasGroup()) line.addGroup();
  line.end();
}

}  // namespace Tool
