#include <pugixml.hpp>

#include "../Measure.h"
#include "../forms/Xml.h"

#include <stdexcept>

namespace QuarryBenchmarks {

namespace {

using IsNumber = std::vector<bool>::const_iterator;

/// Adds up what is below an element, and moves `isNumber` behind its last leaf.
double addAll(const pugi::xml_node& element, IsNumber& isNumber) {
  double sum = 0.0;
  bool isLeaf = true;
  for (const pugi::xml_node& child : element.children()) {
    if (child.type() != pugi::node_element) continue;
    isLeaf = false;
    sum += addAll(child, isNumber);
  }
  return isLeaf && *isNumber++ ? element.text().as_double() : sum;
}

struct StringWriter : pugi::xml_writer {
  std::string text;

  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
};

/// XML into a document, from a constant text and with the default flags.
struct Pugixml {
  using Tree = pugi::xml_document;

  static Source convert(const Workload& workload) { return makeXml(workload); }

  static void read(Tree& tree, const Source& source) {
    if (!tree.load_buffer(source.text.data(), source.text.size()))
      throw std::runtime_error("broken XML");
  }

  static double addNumbers(const Tree& tree, const Source& source) {
    IsNumber isNumber = source.isNumber.begin();
    return addAll(tree.document_element(), isNumber);
  }

  static std::string write(const Tree& tree) {
    StringWriter writer;
    tree.save(writer);
    return std::move(writer.text);
  }

  static void copy(Tree& tree, const Tree& other) { tree.reset(other); }

  static bool find(const Tree& tree, const std::string& name) {
    return !tree.document_element().child(name.c_str()).empty();
  }
};

const PeerRegistration registration(Measure<Pugixml>::makePeer("pugixml"));

}  // namespace

}  // namespace QuarryBenchmarks
