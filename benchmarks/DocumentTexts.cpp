#include "DocumentTexts.h"

#include <iterator>
#include <random>

namespace QuarryBenchmarks {

namespace {

/// Draws numbers and words. Only the engine's own output is used: that is the same with every
/// standard library.
class Source {
 public:
  unsigned long below(unsigned long limit) { return engine() % limit; }

  std::string integer(unsigned long limit) { return std::to_string(below(limit)); }
  std::string boolean() { return below(2) == 0 ? "no" : "yes"; }

  /// A number below `limit` with so many digits behind the point.
  std::string number(unsigned long limit, unsigned long digits) {
    std::string text = (below(2) == 0 ? "-" : "") + integer(limit) + ".";
    for (; digits > 0; --digits)
      text += integer(10);
    return text;
  }

  std::string numbers(int count, unsigned long limit, unsigned long digits) {
    std::string text;
    for (; count > 0; --count)
      text += " " + number(limit, digits);
    return text;
  }

  std::string word() {
    constexpr const char* WORDS[] = {"amber", "basalt", "caf\u00e9", "denim",  "ember",
                                     "flint", "glass",  "harvest",   "indigo", "juniper"};
    return WORDS[below(std::size(WORDS))];
  }

  std::string words(unsigned long count) {
    std::string text = word();
    for (; count > 1; --count)
      text += " " + word();
    return text;
  }

  /// Binary data with its checksum, which nobody verifies.
  std::string block(unsigned long bytes) {
    constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (unsigned long digits = 2 * bytes; digits > 0; --digits)
      text += DIGITS[below(16)];
    return text + "00000000";
  }

 private:
  std::mt19937_64 engine{20260620};
};

std::string quoted(const std::string& text) { return '"' + text + '"'; }

/// Writes items, one a line and indented as the library does it.
class Writer {
 public:
  void item(const std::string& nameAndValues) {
    text.append(4 * depth, ' ');
    text += nameAndValues + "\n";
  }

  void open(const std::string& name) {
    item(name + " {");
    ++depth;
  }

  void close() {
    --depth;
    item("}");
  }

  std::string text;

 private:
  unsigned long depth = 0;
};

void writeParameter(Writer& writer, Source& source) {
  writer.open("parameter");
  writer.item("name " + quoted(source.word()));
  writer.item("range" + source.numbers(2, 100, 2));
  writer.item("keyed yes");
  for (unsigned long keys = 2 + source.below(8); keys > 0; --keys) {
    writer.open("key");
    writer.item("frame " + source.integer(2000));
    writer.item("value" + source.numbers(1, 100, 6));
    writer.item("tangent" + source.numbers(2, 10, 4));
    writer.close();
  }
  writer.close();
}

void writeLayer(Writer& writer, Source& source, unsigned long id) {
  writer.open("layer");
  writer.item("name " + quoted(source.words(3)));
  writer.item("id " + std::to_string(id));
  writer.item("visible " + source.boolean());
  writer.item("opacity 0." + source.integer(100));
  writer.item("color" + source.numbers(4, 1, 3));
  writer.item("source(" + quoted(source.word() + "/" + source.word() + ".png") + ", " +
              source.integer(500) + ")");
  for (unsigned long parameters = 1 + source.below(4); parameters > 0; --parameters)
    writeParameter(writer, source);
  if (source.below(4) == 0) writer.item("note " + quoted(source.words(20) + "\\n" + source.word()));
  if (source.below(8) == 0) writer.item("thumbnail " + source.block(48));
  if (source.below(8) == 0) writer.item("mask <empty>");
  writer.close();
}

void writeScene(Writer& writer, Source& source) {
  writer.open("scene");
  writer.item("name " + quoted(source.words(2)));
  writer.item("frames 0 " + source.integer(2000));
  writer.open("camera");
  writer.item("position" + source.numbers(3, 20, 4));
  writer.item("fov 39.6");
  writer.close();
  for (unsigned long layer = 1; layer <= 12; ++layer)
    writeLayer(writer, source, layer);
  writer.close();
}

}  // namespace

std::string makeSettingsText() {
  Source source;
  Writer writer;
  writer.item("language \"en_GB\"");
  for (const char* panel :
       {"window", "editor", "render", "network", "export", "preview", "audio", "tablet"}) {
    writer.open(panel);
    writer.item("title " + quoted(source.words(2)));
    writer.item("visible " + source.boolean());
    writer.item("geometry " + source.integer(99) + " " + source.integer(99) + " 1680 1020");
    writer.item("color" + source.numbers(4, 1, 3));
    writer.item("scale" + source.numbers(1, 4, 2));
    writer.item("font \"DejaVu Sans\" " + source.integer(20));
    writer.item("timeout " + source.integer(600));
    writer.item("plugin(" + quoted(source.word()) + ", " + source.boolean() + ")");
    writer.close();
  }
  for (int recent = 0; recent < 12; ++recent)
    writer.item("recent " + quoted("projects/" + source.word() + "/" + source.word() + ".cfg"));
  return writer.text;
}

std::string makeNumbersText() {
  Source source;
  Writer writer;
  for (int row = 0; row < 10000; ++row)
    writer.item("row" + source.numbers(8, 1000, 12));
  return writer.text;
}

std::string makeStringsText() {
  Source source;
  Writer writer;
  for (int record = 0; record < 5000; ++record) {
    std::string note;
    for (unsigned long words = source.below(40); words > 0; --words)
      note += source.word() + (source.below(8) == 0 ? "\\n" : " ");
    writer.open("record");
    writer.item("title " + quoted(source.words(2)));
    writer.item("note " + quoted(note + "."));
    writer.close();
  }
  return writer.text;
}

std::string makeProjectText(unsigned long bytes) {
  Source source;
  Writer writer;
  writer.item("title " + quoted(source.words(3)));
  writer.item("size 1920 1080");
  while (writer.text.size() < bytes)
    writeScene(writer, source);
  return writer.text;
}

std::string makeWideText(unsigned long items) {
  Source source;
  Writer writer;
  const char* const kinds[] = {"opacity", "blend_mode", "x", "visible_range"};
  for (unsigned long item = 0; item < items; ++item)
    writer.item(std::string(kinds[item % 4]) + "_" + std::to_string(item) +
                source.numbers(1, 1000, 3));
  return writer.text;
}

std::string makeDeepText(unsigned long groups) {
  std::string text;
  for (unsigned long group = 0; group < groups; ++group)
    text += "g { ";
  for (unsigned long group = 0; group < groups; ++group)
    text += "} ";
  return text;
}

}  // namespace QuarryBenchmarks
