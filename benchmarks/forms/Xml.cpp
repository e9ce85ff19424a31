#include "Xml.h"

#include <Quarry/ParserGroup.h>

#include <algorithm>

namespace QuarryBenchmarks {

namespace {

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

/// Item names may have bytes that names in XML may not.
std::string makeName(const ParserItem& item) {
  std::string name = item.getName();
  std::replace_if(
      name.begin(), name.end(),
      [](char byte) { return byte == '[' || byte == ']' || byte == '%' || byte == ':'; }, '_');
  return name;
}

std::string escape(const std::string& text) {
  std::string escaped;
  for (const char byte : text) {
    switch (byte) {
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '&': escaped += "&amp;"; break;
      case '\r': escaped += "&#13;"; break;
      default: escaped += byte;
    }
  }
  return escaped;
}

/// Writes one document.
class XmlWriter {
 public:
  explicit XmlWriter(Source& result) : xml(result) {}

  void writeGroup(const ParserGroup& group) {
    if (group.getItemCount() == 0) xml.isNumber.push_back(false);
    for (unsigned long i = 0; i < group.getItemCount(); ++i)
      writeItem(*group.getItem(i));
  }

 private:
  void writeItem(const ParserItem& item) {
    const std::string name = makeName(item);
    const bool isCall = item.getType() == ParserItem::ITEM_CALL;
    const unsigned long count = item.getValueCount();
    xml.text += '<' + name + (isCall ? " call=\"yes\">" : ">");
    if (count == 0) xml.isNumber.push_back(false);
    for (unsigned long i = 0; i < count; ++i) {
      if (isCall || count > 1) xml.text += "<v>";
      writeValue(item, i);
      if (isCall || count > 1) xml.text += "</v>";
    }
    xml.text += "</" + name + '>';
  }

  void writeValue(const ParserItem& item, unsigned long index) {
    if (item.isValueGroup(index)) return writeGroup(*item.getGroup(index));
    xml.isNumber.push_back(item.isValueDouble(index));
    if (item.getValueType(index) == ParserValue::TYPE_BINARYDATA) {
      writeBlock(item, index);
    } else {
      xml.text += escape(item.getWord(index));
    }
  }

  void writeBlock(const ParserItem& item, unsigned long index) {
    constexpr char DIGITS[] = "0123456789ABCDEF";
    const auto* bytes = static_cast<const unsigned char*>(item.getBinaryData(index));
    for (unsigned long i = 0; i < item.getBinaryDataSize(index); ++i) {
      xml.text += DIGITS[bytes[i] >> 4];
      xml.text += DIGITS[bytes[i] & 15];
    }
  }

  Source& xml;
};

}  // namespace

Source makeXml(const Workload& workload) {
  ParserGroup root("root");
  root.setText(workload.text, workload.version);
  Source xml = {"<?xml version=\"1.0\"?><document>"};
  XmlWriter(xml).writeGroup(root);
  xml.text += "</document>";
  return xml;
}

}  // namespace QuarryBenchmarks
