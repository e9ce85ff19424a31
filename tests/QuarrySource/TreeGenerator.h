/// Makes up trees of everything that may not be read back.
#pragma once

#include "TreeModel.h"

#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace TestSupport {

/// A tree for each number. Some have nothing odd in them, some little, and some much.
class TreeGenerator {
 public:
  explicit TreeGenerator(unsigned long number) : random(number) {
    constexpr std::array<unsigned, 5> RARITIES = {0, 60, 20, 6, 2};
    rarity = RARITIES[below(RARITIES.size())];
  }

  std::vector<ItemModel> makeItems(unsigned depth = 0) {
    constexpr unsigned DEEPEST = 5;
    std::vector<ItemModel> items(below(depth == 0 ? 7 : 4));
    for (ItemModel& item : items)
      fill(item, depth < DEEPEST ? depth : DEEPEST);
    return items;
  }

 private:
  unsigned long below(unsigned long limit) { return static_cast<unsigned long>(random() % limit); }
  bool oneIn(unsigned long many) { return below(many) == 0; }
  bool isOdd() { return rarity > 0 && oneIn(rarity); }

  template <class T, std::size_t SIZE>
  const T& choose(const std::array<T, SIZE>& all) {
    return all[below(SIZE)];
  }

  // --- Items -------------------------------------------------------------------------------------

  void fill(ItemModel& item, unsigned depth) {
    item.number = ++count;
    if (isOdd() && oneIn(2)) return fillOtherwise(item, depth);
    item.name = makeName();
    if (item.name.starts_with('#')) item.type = Quarry::ParserItem::ITEM_KEYWORD;
    if (item.type == Quarry::ParserItem::ITEM_PLAIN && oneIn(4))
      item.type = Quarry::ParserItem::ITEM_CALL;
    if (isOdd() && oneIn(3)) item.type = static_cast<Quarry::ParserItem::Type>(below(4));
    if (isOdd() && oneIn(3)) item.templateName = makeString();
    if (isOdd() && oneIn(3)) {
      item.isArray = true;
      item.arrayCount = below(600);
    }
    item.isFolded = isOdd();
    item.isDetached = oneIn(20);
    item.wasWritten = oneIn(8);
    item.wasAsked = oneIn(8);
    addValues(item, depth);
  }

  void fillOtherwise(ItemModel& item, unsigned depth) {
    item.form = oneIn(3) ? ItemModel::DECODED : ItemModel::READ;
    if (item.form == ItemModel::DECODED) {
      item.values.emplace_back().items = makeItems(depth + 1);
    } else {
      item.version = oneIn(2) ? 1.0 : 1.1;
      for (unsigned long i = below(12); i > 0; --i)
        item.text += oneIn(2) ? makeString() : choose(SYNTAX);
    }
  }

  std::string makeName() {
    if (isOdd()) return oneIn(4) ? makeString() : choose(ODD_NAMES);
    return choose(NAMES);
  }

  // --- Values ------------------------------------------------------------------------------------

  void addValues(ItemModel& item, unsigned depth) {
    for (unsigned long i = below(4); i > 0; --i)
      fill(item.values.emplace_back());
    if (!oneIn(depth + 2)) return;
    if (oneIn(2)) item.values.clear();
    ValueModel& group = item.values.emplace_back();
    group.form = ValueModel::GROUP;
    group.items = makeItems(depth + 1);
    if (isOdd()) group.text = makeName();
    if (isOdd()) fill(item.values.emplace_back());
  }

  void fill(ValueModel& value) {
    constexpr std::array PLAIN = {
        ValueModel::ADD_BOOL,  ValueModel::ADD_INT,  ValueModel::ADD_DOUBLE, ValueModel::ADD_STRING,
        ValueModel::ADD_BLOCK, ValueModel::SET_BOOL, ValueModel::SET_STRING, ValueModel::SET_BLOCK};
    constexpr std::array ODD = {ValueModel::ADD_CHAR,   ValueModel::ADD_DOUBLE, ValueModel::SET_INT,
                                ValueModel::SET_DOUBLE, ValueModel::WORD,       ValueModel::WORD,
                                ValueModel::WORD};
    const bool odd = isOdd();
    value.form = odd ? choose(ODD) : choose(PLAIN);
    value.number = odd ? choose(ODD_NUMBERS) : choose(NUMBERS);
    value.integer = odd ? choose(ODD_INTEGERS) : choose(INTEGERS);
    value.text = makeString();
    if (value.form == ValueModel::WORD) makeWord(value);
  }

  void makeWord(ValueModel& value) {
    constexpr unsigned long TYPES = 9;
    value.type = static_cast<Quarry::ParserValue::Type>(below(TYPES));
    if (oneIn(2)) value.type = Quarry::ParserValue::TYPE_INT;
    value.version = oneIn(2) ? 1.0 : 1.1;
    value.text = oneIn(3) ? choose(WORDS) + choose(WORDS) : choose(WORDS);
    if (value.type == Quarry::ParserValue::TYPE_STRING) value.text = '"' + makeString() + '"';
  }

  std::string makeString() {
    std::string text;
    for (unsigned long i = below(4); i > 0; --i)
      text += isOdd() ? choose(ODD_PIECES) : choose(PIECES);
    return text;
  }

  // --- Material ----------------------------------------------------------------------------------

  static constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
  static constexpr double ENDLESS = std::numeric_limits<double>::infinity();

  inline static const std::string ZERO = std::string(1, '\0');

  inline static const std::array<std::string, 12> NAMES = {
      "a", "b", "name", "_x", "x.y", "a[2]", "a[]", "True", "#k", "#format", "#:x", "infinity"};

  inline static const std::array<std::string, 24> ODD_NAMES = {
      "",        "yes",      "no",  "1",        "a b", "a\nb 1", "\"",     "//",
      "a//b",    "#",        "#1",  "{",        "a}",  "a<b>",   "0x10",   "#include",
      "<empty>", "a" + ZERO, "a=b", "#include", "(",   "a\\",    "nan(1)", "#SerialVersion"};

  /// Of strings, harmless but for what they end in.
  inline static const std::array<std::string, 22> PIECES = {
      "a", " ", "\"",       "'",  "//",   "\n",      "\t",  "\r",       "{",    "}",  "(",
      ")", ",", "http://x", "/*", "\x80", "<empty>", "1.5", "#include", "\\\"", "*/", "0x"};

  inline static const std::array<std::string, 10> ODD_PIECES = {"\\",
                                                                "\\",
                                                                "#include ",
                                                                "#include ",
                                                                "#include \"x\"",
                                                                "#SerialVersion ",
                                                                "#SerialVersion 1",
                                                                "#SerialVersion",
                                                                ZERO,
                                                                "\\\\"};

  /// Of numbers, and of what is none.
  inline static const std::array<std::string, 60> WORDS = {"1",
                                                           "-7",
                                                           "1.5",
                                                           "1E5",
                                                           "1e5",
                                                           "0x10",
                                                           "12abc",
                                                           "1\"",
                                                           "1\"x\"",
                                                           "1//x",
                                                           "1 2",
                                                           "1,",
                                                           "",
                                                           "yes",
                                                           "no",
                                                           "true",
                                                           "inf",
                                                           "nan",
                                                           "-inf",
                                                           "-nan",
                                                           "+1",
                                                           " 3",
                                                           "4 ",
                                                           "5\n",
                                                           "1\\",
                                                           "1\\\"",
                                                           "1\\\\\"",
                                                           "1#include",
                                                           "1#SerialVersion",
                                                           "\"s\"",
                                                           "<empty>",
                                                           "{",
                                                           "}",
                                                           "1{",
                                                           "a",
                                                           ".5",
                                                           "1'",
                                                           "1\"//\"",
                                                           "1\\\\\"//",
                                                           "1}",
                                                           "1=",
                                                           "1" + ZERO + "e",
                                                           "-infinity",
                                                           "1(",
                                                           "1#include \"x\"",
                                                           "1\"{",
                                                           "+inf",
                                                           "+nan",
                                                           "\n5",
                                                           "//",
                                                           " ",
                                                           "\"",
                                                           "1\r",
                                                           "1\t2",
                                                           "9999999999",
                                                           "1e999",
                                                           "#SerialVersion 2",
                                                           "1)",
                                                           "0x0102FF02010000",
                                                           "-0.0"};

  inline static const std::array<std::string, 26> SYNTAX = {
      " ",           "\n",        "a ",
      "b 1\n",       "c \"x\"\n", "{",
      "}",           "(",         ")",
      ",",           "=",         "\"",
      "//",          "#k ",       "1\"",
      "1//",         "1\\",       "<empty> ",
      "d 1\\\"\n",   "\\",        "e {f 1 2.0}\n",
      "g(1, yes)\n", "\"x\\\" ",  "0x0102FF02010000 ",
      "1\"a\"",      "h 1\"\n"};

  static constexpr std::array<int, 6> INTEGERS = {0, 1, -1, 65, 2147483647, -2147483647 - 1};

  static constexpr std::array<int, 8> ODD_INTEGERS = {0, 48, 49, 256, 13, 34, 92, -1};

  static constexpr std::array<double, 8> NUMBERS = {0.0, 1.0, -1.5, 0.1, -0.0, 1e300, 1e22, 65.0};

  static constexpr std::array<double, 8> ODD_NUMBERS = {
      0.0, 48.0, 256.0, 49.5, NOT_A_NUMBER, -NOT_A_NUMBER, ENDLESS, -ENDLESS};

  std::mt19937_64 random;
  unsigned rarity = 0;      ///< of what is odd; 0 for none
  unsigned long count = 0;  ///< of items
};

}  // namespace TestSupport
