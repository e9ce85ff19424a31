// Long lists: their values, the memory that they take, and what the values own.
//
// Memory is measured as what `malloc` has given out. Where a sanitizer stands in for it, nothing is
// measured and the sanitizer looks for leaks.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/LinearTime.h"

using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::readText;

namespace {

std::size_t measureHeap() { return mallinfo2().uordblks; }

/// Returns a statement: the name and `count` times the value, each behind a blank.
std::string makeList(const std::string& name, unsigned long count, const std::string& value) {
  std::string text = name;
  for (unsigned long i = 0; i < count; ++i)
    text += " " + value;
  return text + "\n";
}

/// Returns how many bytes of the heap the tree of a text takes for each of `count` values. Behind
/// an item that is there already, a text gets no memory of its own, which would not be seen.
double measureBytesPerValue(const std::string& text, unsigned long count) {
  readText("first 1")->setText(text, 1.1);  // afterwards memory that is kept is there
  const std::unique_ptr<ParserGroup> group = readText("first 1");
  const std::size_t before = measureHeap();
  group->setText(text, 1.1);
  return static_cast<double>(measureHeap() - before) / static_cast<double>(count);
}

}  // namespace

// --- Values --------------------------------------------------------------------------------------

TEST(LongListTest, ListsOfEveryLengthHoldTheirNumbers) {
  for (int count = 1; count < 600; ++count) {
    std::string text = "a";
    for (int i = 0; i < count; ++i)
      text += " " + std::to_string(i * i);
    const std::unique_ptr<ParserGroup> group = readText(text + "\nb 1");
    const ParserItem& item = *group->getItem("a");
    ASSERT_EQ(item.getValueCount(), static_cast<unsigned long>(count));
    for (int i = 0; i < count; ++i)
      ASSERT_EQ(item.getInt(static_cast<unsigned long>(i)), i * i) << count;
    ASSERT_EQ(group->getItem("b")->getInt(0), 1);
  }
}

TEST(LongListTest, NumbersThatGrowShorterAreAllThere) {
  const std::string text =
      "a" + makeList("", 70, "1234567890.123456").substr(0, 70 * 18) + makeList("", 5000, "7");
  const std::unique_ptr<ParserGroup> group = readText(text);
  const ParserItem& item = *group->getItem("a");
  ASSERT_EQ(item.getValueCount(), 5070U);
  EXPECT_EQ(item.getDouble(69), 1234567890.123456);
  EXPECT_EQ(item.getInt(70), 7);
  EXPECT_EQ(item.getInt(5069), 7);
}

TEST(LongListTest, WordsOfAllKindsBehindManyNumbersAreThere) {
  std::string text = makeList("a", 100, "1.5");
  text +=
      R"( "text" yes -3 "a longer text, of more than 27 bytes" <empty> 0x0102FF02010000 { b 1 })";
  const std::unique_ptr<ParserGroup> group = readText(text);
  const ParserItem& item = *group->getItem("a");
  EXPECT_EQ(item.getString(100), "text");
  EXPECT_TRUE(item.getBool(101));
  EXPECT_EQ(item.getInt(102), -3);
  EXPECT_EQ(item.getString(103), "a longer text, of more than 27 bytes");
  EXPECT_EQ(item.getBinaryDataSize(104), 3U);
  EXPECT_EQ(item.getGroup(105)->getItem("b")->getInt(0), 1);
}

TEST(LongListTest, NumbersAndStringsByTurnsAreReadInLinearTime) {
  const auto make = [](unsigned long size) { return makeList("a", size, R"(1 "text")"); };
  TestSupport::checkTakesLinearTime(10000, make, [](const std::string& text) { readText(text); });
}

TEST(LongListTest, ListsWhoseNamesLookLikeNumbersAreReadInLinearTime) {
  const auto make = [](unsigned long size) {
    std::string text;
    for (unsigned long i = 0; i < size; ++i)
      text += makeList("e", 70, "1");
    return text;
  };
  TestSupport::checkTakesLinearTime(1000, make, [](const std::string& text) { readText(text); });
}

// --- Memory --------------------------------------------------------------------------------------

TEST(LongListTest, ManyNumbersTakeLittleMoreThanTheirValues) {
  const double bytes = measureBytesPerValue(makeList("a", 2000, "12.5"), 2000);
  EXPECT_LT(bytes, 1.1 * sizeof(ParserValue));
}

TEST(LongListTest, ListsWhoseNamesLookLikeNumbersTakeAFewTimesTheirValues) {
  std::string text;
  for (int i = 0; i < 100; ++i)
    text += makeList("e", 70, "1");
  EXPECT_LT(measureBytesPerValue(text, 7000), 4.5 * sizeof(ParserValue));
}

// --- What the values own -------------------------------------------------------------------------

namespace {

/// Larger than what comes from slabs, so that it is seen when it is not freed.
constexpr unsigned long LARGE = 3000;

const std::string& largeText() {
  static const std::string text(LARGE, '7');
  return text;
}

/// Something that makes a value of an item with many values own memory.
struct Way {
  const char* name;
  void (*own)(ParserItem& item);
};

void PrintTo(const Way& way, std::ostream* out) { *out << way.name; }

class LongListOwnershipTest : public testing::TestWithParam<Way> {
 protected:
  static constexpr unsigned long COUNT = 100;

  /// Checks that nothing is left of an item that `make` adds to a group, once the group is gone.
  /// The C library may count a piece that it holds back, but not one for each round.
  static void check(const std::function<void(ParserGroup&)>& make) {
    constexpr std::size_t ROUNDS = 200;
    constexpr std::size_t SMALLEST_PIECE = 16;
    const auto makeOnce = [&make] {
      ParserGroup group("root");
      make(group);
    };
    makeOnce();
    makeOnce();
    const std::size_t before = measureHeap();
    for (std::size_t round = 0; round < ROUNDS; ++round)
      makeOnce();
    EXPECT_LT(measureHeap(), before + ROUNDS * SMALLEST_PIECE);
  }

  static ParserItem& read(ParserGroup& group) {
    group.setText(makeList("a", COUNT, "7"), 1.1);
    return *group.getItem("a");
  }
};

}  // namespace

TEST_P(LongListOwnershipTest, ItIsFreedWithTheGroup) {
  check([](ParserGroup& group) { GetParam().own(read(group)); });
}

TEST_P(LongListOwnershipTest, ItIsFreedWithTheItem) {
  check([](ParserGroup& group) {
    ParserItem& item = read(group);
    GetParam().own(item);
    group.removeItem("a");
  });
}

TEST_P(LongListOwnershipTest, ItIsFreedWhenTheItemIsReset) {
  check([](ParserGroup& group) {
    ParserItem& item = read(group);
    GetParam().own(item);
    item.reset();
    item.addInt(1);
  });
}

TEST_P(LongListOwnershipTest, ItIsFreedInACopy) {
  check([](ParserGroup& group) {
    ParserItem& item = read(group);
    GetParam().own(item);
    const ParserItem copy(item);
    EXPECT_EQ(copy.getValueCount(), item.getValueCount());
    const ParserGroup copies(group);
    EXPECT_EQ(copies.getItem("a")->getValueCount(), item.getValueCount());
  });
}

TEST_P(LongListOwnershipTest, ItIsFreedInAnItemThatBecomesACopy) {
  check([](ParserGroup& group) {
    ParserItem& item = read(group);
    GetParam().own(item);
    ParserItem& other = *group.addItem("b", 0, 0);
    other.copyFrom(item);
    other.copyFrom(*group.addItem("c", 0, 0));
  });
}

TEST_P(LongListOwnershipTest, ItIsFreedAfterDecoding) {
  check([](ParserGroup& group) {
    GetParam().own(read(group));
    ParserGroup decoded("root");
    unsigned long position = 0;
    EXPECT_TRUE(decoded.setBinary(group.getBinary(false), position));
    decoded.addItem("b", 0, 0);  // has the others be freed one by one
  });
}

INSTANTIATE_TEST_SUITE_P(
    All, LongListOwnershipTest,
    testing::Values(
        Way{"AStringThatIsAdded", [](ParserItem& item) { item.addString(largeText()); }},
        Way{"AStringThatIsSet", [](ParserItem& item) { item.setString(largeText(), 50); }},
        Way{"AStringThatIsAskedFor",
            [](ParserItem& item) {
              item.setString("short", 50);
              EXPECT_EQ(item.getString(50), "short");
            }},
        Way{"ABlockThatIsAdded",
            [](ParserItem& item) {
              std::string bytes = largeText();
              item.addBinaryData(bytes.data(), bytes.size());
            }},
        Way{"ABlockThatIsSet",
            [](ParserItem& item) {
              std::string bytes = largeText();
              item.setBinaryData(bytes.data(), bytes.size(), 50);
            }},
        Way{"AGroupThatIsAdded",
            [](ParserItem& item) {
              item.addGroup(nullptr)->addItem("b", 0, 0)->addString(largeText());
            }},
        Way{"AGroupThatIsAdopted",
            [](ParserItem& item) {
              item.addGroup(new ParserGroup(""))->addItem("b", 0, 0)->addString(largeText());
            }},
        Way{"AnItemOfWords",
            [](ParserItem& item) {
              item.reset();
              for (unsigned long i = 0; i < 100; ++i)
                item.addString("short");
              EXPECT_EQ(item.getString(99), "short");
            }}),
    [](const testing::TestParamInfo<Way>& way) { return way.param.name; });

TEST_F(LongListOwnershipTest, ALongNumberBehindManyIsFreed) {
  check([](ParserGroup& group) {
    group.setText(makeList("a", COUNT, "7") + makeList("", COUNT, largeText()), 1.1);
  });
}

TEST_F(LongListOwnershipTest, ALongNumberBeforeManyIsFreed) {
  check([](ParserGroup& group) {
    group.setText("a " + largeText() + makeList("", COUNT, "7"), 1.1);
  });
}

TEST_F(LongListOwnershipTest, ALongNumberAmongTheFirstIsFreed) {
  check(
      [](ParserGroup& group) { group.setText("a 1 2 " + largeText() + " 3 4 5 6 7 8 9 10", 1.1); });
}

TEST_F(LongListOwnershipTest, LongAndShortStringsInAListAreFreed) {
  check([](ParserGroup& group) {
    const std::string text = "\"" + largeText() + "\" \"short\" \"a\\nb\"";
    group.setText(makeList("a", COUNT, text), 1.1);
  });
}
