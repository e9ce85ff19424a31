// What a value hands out is good until that value is changed; and a value that was changed is what
// it was made last.

#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ValueTexts.h"

using Quarry::ParserItem;
using Quarry::ParserValue;
using namespace ValueTexts;

// --- References ----------------------------------------------------------------------------------

namespace {

class ParserValueReferenceTest : public testing::TestWithParam<unsigned long> {
 protected:
  std::string text = makeLetters(GetParam());
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(OfBytes, ParserValueReferenceTest, testing::ValuesIn(LENGTHS),
                         testing::PrintToStringParamName());

TEST_P(ParserValueReferenceTest, StaysGoodWhileTheItemsListGrows) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addString(text);
  const std::string& reference = item.getString(0);
  for (int i = 0; i < 1000; ++i)
    item.addString("other");
  EXPECT_TRUE(reference == text);
  EXPECT_EQ(&item.getString(0), &reference);
}

TEST_P(ParserValueReferenceTest, StaysGoodWhenTheValueIsReadInOtherWays) {
  const ParserValue value(ParserValue::TYPE_STRING, text);
  const std::string& reference = value.getAsString();
  value.makeValue();
  write(value);
  encode(value);
  const ParserValue copy(value);
  EXPECT_EQ(&value.getAsString(), &reference);
  EXPECT_TRUE(reference == text);
}

TEST_P(ParserValueReferenceTest, StaysGoodWhenValuesBeforeItAreRemoved) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  for (int i = 0; i < 30; ++i)
    item.addString("other");
  item.addString(text);
  const std::string& reference = item.getString(30);
  item.removeValue({0, 5, 7, 29});
  EXPECT_EQ(&item.getString(26), &reference);
  EXPECT_TRUE(reference == text);
}

TEST_P(ParserValueReferenceTest, OfTheValueItselfCanBeSet) {
  ParserValue value(ParserValue::TYPE_STRING, text);
  value.setString(value.getAsString());
  EXPECT_TRUE(value.getAsString() == text);
  value.setString(value.getAsString());
  EXPECT_TRUE(write(value) == '"' + text + '"');
}

TEST_P(ParserValueReferenceTest, OfAnotherValueOfTheItemCanBeSet) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addString(text);
  item.addInt(1);
  item.setString(item.getString(0), 1);
  item.addString(item.getString(0));
  EXPECT_TRUE(item.getString(1) == text);
  EXPECT_TRUE(item.getString(2) == text);
}

TEST_P(ParserValueReferenceTest, OfAValueThatHoldsDataIsItsString) {
  const ParserValue value(text);
  EXPECT_TRUE(value.getAsString() == text);
  EXPECT_TRUE(ParserValue(value).getAsString() == text);
  EXPECT_TRUE(write(value) == '"' + text + '"');
}

TEST(ParserValueBlockTest, TheBytesOfABlockStayWhileTheListGrows) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  std::string bytes = makeLetters(1000);
  item.addBinaryData(bytes.data(), bytes.size());
  const void* begin = item.getBinaryData(0);
  for (int i = 0; i < 1000; ++i)
    item.addInt(i);
  EXPECT_EQ(item.getBinaryData(0), begin);
  EXPECT_EQ(std::string(static_cast<const char*>(begin), item.getBinaryDataSize(0)), bytes);
}

TEST(ParserValueBlockTest, ABlockCanBeSetToItsOwnBytes) {
  std::string bytes = makeLetters(100);
  ParserValue value(bytes.data(), bytes.size());
  const std::string before = write(value);
  unsigned long size = 0;
  value.setBinaryData(value.getAsBinaryData(size), 100);
  EXPECT_EQ(write(value), before);
}

// --- Random changes ------------------------------------------------------------------------------

namespace {

/// Changes a value at random and compares it with the number or string that it should hold.
class RandomValue {
 public:
  explicit RandomValue(unsigned seed) : random(seed) {}

  void run(int steps) {
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
      change();
      check();
    }
  }

 private:
  int choose(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
  std::string chooseLetters() { return makeLetters(LENGTHS[random() % (LENGTHS.size() - 1)]); }

  void change() {
    switch (choose(9)) {
      case 0: return value->setInt(number = choose(100)), hold(ParserValue::TYPE_INT);
      case 1: return value->setDouble(number = choose(100)), hold(ParserValue::TYPE_DOUBLE);
      case 2: return value->setString(string = chooseLetters()), hold(ParserValue::TYPE_STRING);
      case 3: return setBlock();
      case 4: return readInt();
      case 5: return readString();
      case 6: return copy();
      case 7: return value->makeValue();
      default: return choose(3) == 0 ? clear() : static_cast<void>(write(*value));
    }
  }

  void hold(ParserValue::Type newType) {
    type = newType;
    isClear = false;
    isWrittenRaw = true;
  }

  void setBlock() {
    string = chooseLetters();
    value->setBinaryData(string.data(), string.size());
    hold(ParserValue::TYPE_BINARYDATA);
  }

  void readInt() {
    string = makeDigits(std::to_string(number = choose(100)), 2 + random() % 30);
    value = std::make_unique<ParserValue>(ParserValue::TYPE_INT, string);
    hold(ParserValue::TYPE_INT);
    isWrittenRaw = false;
  }

  void readString() {
    string = chooseLetters();
    value = std::make_unique<ParserValue>(ParserValue::TYPE_STRING, string);
    hold(ParserValue::TYPE_STRING);
  }

  void copy() { value = std::make_unique<ParserValue>(*value); }

  void clear() {
    value->clear();
    isClear = true;
    number = 0;
    string.clear();
  }

  void check() {
    ASSERT_EQ(value->getType(), type);
    if (type == ParserValue::TYPE_INT || type == ParserValue::TYPE_DOUBLE) return checkNumber();
    if (type == ParserValue::TYPE_STRING && !isClear) {
      EXPECT_EQ(value->getAsString(), string);
    }
    if (type == ParserValue::TYPE_STRING && choose(2) == 0) {
      EXPECT_EQ(write(*value), '"' + string + '"');
    }
    if (type == ParserValue::TYPE_BINARYDATA && !isClear) checkBlock();
  }

  void checkNumber() {
    EXPECT_EQ(value->getAsInt(), number);
    if (choose(2) == 0) return;  // writing makes a text
    const std::string raw(1, static_cast<char>(number));
    EXPECT_EQ(write(*value), isClear ? "" : isWrittenRaw ? raw : string);
  }

  void checkBlock() {
    unsigned long size = 0;
    const char* bytes = static_cast<const char*>(value->getAsBinaryData(size));
    EXPECT_EQ(std::string(bytes, size), string);
    if (choose(2) == 0) {
      EXPECT_EQ(write(*value).size(), 2 + 2 * string.size() + 8);
    }
  }

  std::mt19937 random;
  std::unique_ptr<ParserValue> value = std::make_unique<ParserValue>(0);
  ParserValue::Type type = ParserValue::TYPE_INT;
  int number = 0;
  std::string string;  ///< of a string or block, or the spelling of a number
  bool isClear = false;
  bool isWrittenRaw = true;
};

}  // namespace

TEST(ParserValueRandomTest, AValueHoldsWhatItWasMadeWhateverItWasBefore) {
  for (unsigned seed = 0; seed < 50; ++seed)
    RandomValue(seed).run(500);
}
