#include "ItemText.h"

#include <QStringList>

#include <string>
#include <string_view>

using Quarry::ParserItem;
using Quarry::SourceItem;
using Quarry::SourceTree;
using Quarry::SourceValue;

namespace {

QString makeString(std::string_view text) { return QString::fromStdString(std::string(text)); }

QString getTypeName(Quarry::ParserValue::Type type) {
  static const QStringList names = {"group",  "bool",   "char",   "int",
                                    "double", "string", "binary", "empty"};
  return names.value(type);
}

}  // namespace

QString getNameText(const SourceTree& tree, const SourceItem& item) {
  return makeString(tree.getName(item));
}

QString getTypeText(const SourceTree& tree, const SourceItem& item) {
  if (item.type == ParserItem::ITEM_CALL) return "call";
  QStringList types;
  for (unsigned long value = 0; value < item.valueCount; ++value)
    types << getTypeName(tree.getValue(item, value).type);
  if (item.hasGroup()) types << "group";
  types.removeDuplicates();
  return types.join(", ");
}

QString getValueText(const SourceTree& tree, const SourceItem& item) {
  const bool isCall = item.type == ParserItem::ITEM_CALL;
  QStringList values;
  for (unsigned long value = 0; value < item.valueCount; ++value)
    values << makeString(tree.getSpelling(tree.getValue(item, value)));
  return isCall ? "(" + values.join(", ") + ")" : values.join(" ");
}

QString getPlaceText(const SourceTree& tree, const SourceItem& item) {
  const Quarry::SourceDocument& document = tree.getDocument();
  return getText(document.getPlace(document.getPosition(item.nameBegin)));
}

QString getText(const Quarry::SourcePlace& place) {
  if (place.path.empty()) return {};
  return QString("%1:%2:%3").arg(makeString(place.path)).arg(place.line).arg(place.column);
}
