/// Makes trees with everything that code can put into one.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserWord.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace ToolTest {

/// Makes a different tree for each seed, and always the same one for the same seed.
class JsonTrees {
 public:
  explicit JsonTrees(std::uint64_t seed) : random(seed) {}

  std::unique_ptr<Quarry::ParserGroup> make() {
    auto root = std::make_unique<Quarry::ParserGroup>("root");
    std::vector<Quarry::ParserGroup*> groups = {root.get()};
    const unsigned long count = pick(12);
    for (unsigned long i = 0; i < count; ++i)
      addItem(groups);
    return root;
  }

 private:
  using Item = Quarry::ParserItem;
  using Value = Quarry::ParserValue;

  unsigned long pick(unsigned long count) { return static_cast<unsigned long>(random() % count); }
  bool chance(unsigned long in) { return pick(in) == 0; }

  std::string makeBytes() {
    static const std::vector<std::string> PIECES = {"a",
                                                    "B",
                                                    "_",
                                                    "1",
                                                    " ",
                                                    "\"",
                                                    "\\",
                                                    "\n",
                                                    "\r",
                                                    "\t",
                                                    "{",
                                                    "}",
                                                    "//",
                                                    "\x80",
                                                    "\xC3\xA4",
                                                    "\xFF",
                                                    "\xED\xA0",
                                                    "\xF0\x9F\x98",
                                                    "#",
                                                    "=",
                                                    ",",
                                                    "$",
                                                    "'",
                                                    "/",
                                                    "\x7F",
                                                    "<empty>",
                                                    "0x",
                                                    "\xE2\x82\xAC",
                                                    std::string(1, '\0')};
    std::string bytes;
    const unsigned long count = pick(6);
    for (unsigned long i = 0; i < count; ++i)
      bytes += PIECES[pick(PIECES.size())];
    return bytes;
  }

  void addItem(std::vector<Quarry::ParserGroup*>& groups) {
    Quarry::ParserGroup* group = groups[pick(groups.size())];  // before the item's own are there
    const auto kind = static_cast<Item::Type>(pick(3));
    const std::string name = chance(4) ? makeBytes() : std::string(1, "abcd"[pick(4)]);
    auto item = std::make_unique<Item>(name, kind, 0UL, 0UL);
    if (chance(8))
      item->setArray(true, chance(3) ? static_cast<unsigned long>(random() / 2) : pick(300));
    if (chance(8)) item->setTemplate(makeBytes());
    if (chance(6)) item->setFolding(true);
    const unsigned long count = pick(4);
    for (unsigned long i = 0; i < count; ++i)
      addValue(*item, groups);
    group->addItem(*item);
    item.release();
  }

  void addValue(Item& item, std::vector<Quarry::ParserGroup*>& groups) {
    switch (pick(9)) {
      case 0: return item.addBool(chance(2));
      case 1: return item.addChar(static_cast<char>(random()));
      case 2: return item.addInt(static_cast<int>(random()));
      case 3: return item.addDouble(makeDouble());
      case 4: return item.addString(makeBytes());
      case 5: return addBlock(item);
      case 6: return addWord(item);
      case 7: return addData(item);
      default:
        groups.push_back(
            item.addGroup(new Quarry::ParserGroup(chance(4) ? makeBytes() : std::string())));
    }
  }

  double makeDouble() {
    if (chance(2)) return static_cast<double>(pick(100)) / 8;
    static const std::vector<std::uint64_t> EXPONENTS = {0, 0x7FF0000000000000, 0xFFF0000000000000,
                                                         0x8000000000000000};
    const std::uint64_t bits =
        EXPONENTS[pick(4)] | (chance(2) ? random() >> 12 : std::uint64_t{pick(2)} << 51);
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
  }

  void addBlock(Item& item) {
    std::string bytes = makeBytes();
    item.addBinaryData(bytes.data(), bytes.size());
  }

  /// A word of any spelling as a value of any type.
  void addWord(Item& item) {
    static const std::vector<std::string> WORDS = {"+7",   "1.50", "1e3",    "12px", "inf", "",
                                                   "yes",  "no",   "maybe",  "-0",   "07",  "nan",
                                                   "-nan", "+inf", "nan(5)", "1\xFF"};
    static const std::vector<Value::Type> TYPES = {
        Value::TYPE_BOOL, Value::TYPE_CHAR, Value::TYPE_INT, Value::TYPE_DOUBLE, Value::TYPE_EMPTY};
    const std::string& text = WORDS[pick(WORDS.size())];
    item.addWord(Quarry::ParserWord(text, true, 1.1), TYPES[pick(TYPES.size())]);
  }

  /// A value that holds data and no text, as setters and the binary form make it.
  void addData(Item& item) {
    std::vector<char> payload = {0};
    unsigned long ignored = 0;
    switch (pick(4)) {
      case 0: Value(chance(2)).getBinary(payload, ignored, true); break;
      case 1: Value(static_cast<char>(random())).getBinary(payload, ignored, true); break;
      case 2: Value(static_cast<int>(random())).getBinary(payload, ignored, true); break;
      default: Value(makeDouble()).getBinary(payload, ignored, true);
    }
    std::vector<char> frame;
    Value::sizeToBin(frame, payload.size());
    frame.insert(frame.end(), payload.begin(), payload.end());
    unsigned long position = 0;
    item.setBinary(frame, position);
  }

  std::mt19937_64 random;
};

}  // namespace ToolTest
