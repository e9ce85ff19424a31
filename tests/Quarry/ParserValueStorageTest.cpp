// Values of every type with texts of every length: whatever place a text has, it is the same text.

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ValueTexts.h"
#include "support/Documents.h"

using Quarry::ParserItem;
using Quarry::ParserValue;
using TestSupport::readText;
using namespace ValueTexts;

namespace {

using Type = ParserValue::Type;

/// A value that was made of a text, and what is expected of it.
struct Sample {
  Type type;
  unsigned long length;
  std::string text = makeText();
  ParserValue value{type, text};

  std::string makeText() const {
    switch (type) {
      case ParserValue::TYPE_BOOL: return ("yes" + makeLetters(length)).substr(0, length);
      case ParserValue::TYPE_CHAR:
      case ParserValue::TYPE_INT: return makeDigits("42", length);
      case ParserValue::TYPE_DOUBLE: return makeDigits("1.5", length);
      default: return makeLetters(length);
    }
  }

  std::string getWritten() const {
    return type == ParserValue::TYPE_STRING ? '"' + text + '"' : text;
  }

  double getNumber() const {
    if (type == ParserValue::TYPE_BOOL) return text == "yes" ? 1.0 : 0.0;
    if (length == 0) return 0.0;
    if (type == ParserValue::TYPE_DOUBLE) return length == 1 ? 5.0 : length == 2 ? 0.5 : 1.5;
    return length == 1 ? 2.0 : 42.0;
  }

  bool isNumeric() const {
    return type >= ParserValue::TYPE_BOOL && type <= ParserValue::TYPE_DOUBLE;
  }

  /// Expects the text and, where there are any, the number or string that it stands for.
  void check(const ParserValue& checked) const {
    EXPECT_EQ(checked.getType(), type);
    EXPECT_TRUE(write(checked) == getWritten());
    checkData(checked);
    EXPECT_TRUE(write(checked) == getWritten());
  }

  void checkData(const ParserValue& checked) const {
    if (isNumeric()) {
      EXPECT_EQ(checked.getAsDouble(), getNumber());
    }
    if (type == ParserValue::TYPE_STRING) {
      EXPECT_TRUE(checked.getAsString() == text);
    }
  }
};

/// The length of a text.
class ParserValueStorageTest : public testing::TestWithParam<unsigned long> {
 protected:
  /// Calls `check` with a sample of each type that has a text.
  template <class Check>
  static void forEachType(Check check) {
    for (const Type type :
         {ParserValue::TYPE_BOOL, ParserValue::TYPE_CHAR, ParserValue::TYPE_INT,
          ParserValue::TYPE_DOUBLE, ParserValue::TYPE_STRING, ParserValue::TYPE_EMPTY}) {
      SCOPED_TRACE(ParserValue::getType_name(type));
      Sample sample{type, GetParam()};
      check(sample);
    }
  }
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(OfBytes, ParserValueStorageTest, testing::ValuesIn(LENGTHS),
                         testing::PrintToStringParamName());

// --- Text and data -------------------------------------------------------------------------------

TEST_P(ParserValueStorageTest, TextAndDataAreThoseThatWereGivenHoweverOftenTheyAreRead) {
  forEachType([](const Sample& sample) {
    for (int i = 0; i < 3; ++i)
      sample.check(sample.value);
  });
}

TEST_P(ParserValueStorageTest, TheTextStaysWhenTheDataIsMade) {
  forEachType([](const Sample& sample) {
    sample.value.makeValue();
    EXPECT_TRUE(write(sample.value) == sample.getWritten());
    sample.value.makeValue();
    sample.check(sample.value);
  });
}

TEST_P(ParserValueStorageTest, ACopyHasTheSameTextAndData) {
  forEachType([](const Sample& sample) { sample.check(ParserValue(sample.value)); });
}

TEST_P(ParserValueStorageTest, ACopyMadeAfterTheDataHasTheSameTextAndData) {
  forEachType([](const Sample& sample) {
    sample.value.makeValue();
    sample.check(ParserValue(sample.value));
  });
}

TEST_P(ParserValueStorageTest, ACopyOfACopyOfAValueThatWasReadHasTheSameTextAndData) {
  forEachType([](const Sample& sample) {
    sample.check(sample.value);
    const ParserValue copy(sample.value);
    sample.check(ParserValue(copy));
  });
}

TEST_P(ParserValueStorageTest, ACopyOutlivesTheOriginal) {
  forEachType([](Sample& sample) {
    const ParserValue copy(sample.value);
    sample.value.clear();
    sample.check(copy);
  });
}

TEST_P(ParserValueStorageTest, AClearedValueHasNoTextAndKeepsItsType) {
  forEachType([](Sample& sample) {
    sample.value.makeValue();
    sample.value.clear();
    const bool isString = sample.type == ParserValue::TYPE_STRING;
    EXPECT_EQ(write(sample.value), isString ? "\"\"" : "");
    EXPECT_EQ(sample.value.getType(), sample.type);
    EXPECT_TRUE(!sample.isNumeric() || sample.value.getAsDouble() == 0.0);
  });
}

TEST_P(ParserValueStorageTest, ASetterReplacesTextAndData) {
  forEachType([](Sample& sample) {
    sample.value.makeValue();
    sample.value.setDouble(2.25);
    EXPECT_EQ(sample.value.getAsDouble(), 2.25);
    EXPECT_EQ(write(sample.value), "\x02");
  });
}

TEST_P(ParserValueStorageTest, AnyValueCanBecomeAStringOfThatLength) {
  forEachType([](Sample& sample) {
    sample.value.setString("short");
    EXPECT_EQ(sample.value.getAsString(), "short");
    sample.value.setString(sample.text);
    EXPECT_TRUE(sample.value.getAsString() == sample.text);
    EXPECT_TRUE(write(sample.value) == '"' + sample.text + '"');
  });
}

TEST_P(ParserValueStorageTest, TheBinaryFormReadsBackAsTheSameData) {
  forEachType([](const Sample& sample) {
    if (sample.type == ParserValue::TYPE_EMPTY) return;  // has none
    const std::vector<char> bytes = encode(sample.value);
    unsigned long pos = 0;
    const std::unique_ptr<ParserValue> read(ParserValue::binTovalue(bytes, pos));
    EXPECT_EQ(pos, bytes.size());
    EXPECT_TRUE(encode(*read) == bytes);
    sample.checkData(*read);
  });
}

// --- In documents --------------------------------------------------------------------------------

namespace {

/// A text of digits or letters as it can stand in a document, and its length.
class ParsedValueTest : public testing::TestWithParam<unsigned long> {
 protected:
  unsigned long length = GetParam();

  /// Reads `word` at the very end of a text without a byte to spare, in the middle of one, and
  /// behind a zero byte's text, where words are read with more care.
  static void check(const std::string& word, const std::string& expected) {
    const std::string atEnd = std::string("a ").append(word);
    EXPECT_TRUE(readText(std::string(atEnd))->getItem("a")->getWord(0) == expected);
    const std::string inside = atEnd + " 123456789012345678901234567890 b 1";
    EXPECT_TRUE(readText(inside)->getItem("a")->getWord(0) == expected);
    const std::string careful = inside + " c \"" + std::string(1, '\0') + "\"";
    EXPECT_TRUE(readText(careful)->getItem("a")->getWord(0) == expected);
  }
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(OfBytes, ParsedValueTest, testing::ValuesIn(LENGTHS),
                         testing::PrintToStringParamName());

TEST_P(ParsedValueTest, AnIntegerKeepsItsSpelling) {
  const std::string word = makeDigits("42", length + 1);
  check(word, word);
}

TEST_P(ParsedValueTest, ADoubleKeepsItsSpelling) {
  const std::string word = makeDigits("1.5", length + 2);
  check(word, word);
}

TEST_P(ParsedValueTest, AStringIsKeptWithoutItsQuotes) {
  const std::string letters = makeLetters(length);
  check('"' + letters + '"', letters);
}

TEST_P(ParsedValueTest, AStringWithAnEscapeIsKeptUnescaped) {
  const std::string letters = makeLetters(length);
  check('"' + letters + "\\n\"", letters + "\n");
  check("\"\\\\" + letters + "x\"", "\\" + letters + "x");
}

TEST_P(ParsedValueTest, ANameKeepsItsSpelling) {
  const std::string name = "a" + makeLetters(length);
  EXPECT_EQ(readText(name + " 1")->getItem(0UL)->getName(), name);
  EXPECT_EQ(readText(name + "(1)b 1")->getItem(0UL)->getName(), name);
}

// --- Numbers whose text takes the place of their data --------------------------------------------

TEST(ParserValueStorageNumberTest, ANumberOfTwentyToTwentySevenBytesIsReadTheSameEachTime) {
  for (unsigned long length = 20; length <= 27; ++length) {
    const ParserValue value(ParserValue::TYPE_INT, makeDigits("1234567", length));
    value.makeValue();
    EXPECT_EQ(value.getAsInt(), 1234567);
    EXPECT_EQ(value.getAsInt(), 1234567);
    EXPECT_EQ(ParserValue(value).getAsInt(), 1234567);
  }
}

TEST(ParserValueStorageNumberTest, SixteenDigitsBehindAMinusStayAfterTheyAreRead) {
  const std::string text = "-0000000000000042";
  const ParserValue value(ParserValue::TYPE_INT, text);
  EXPECT_EQ(value.getAsInt(), -42);
  EXPECT_EQ(value.getAsInt(), -42);
  EXPECT_EQ(write(value), text);
}

TEST(ParserValueStorageNumberTest, ADoubleOfNineteenBytesStaysAfterItIsRead) {
  const std::string text = "-65.613616999999977";
  const ParserValue value(ParserValue::TYPE_DOUBLE, text);
  EXPECT_EQ(value.getAsDouble(), -65.613616999999977);
  EXPECT_EQ(value.getAsDouble(), -65.613616999999977);
  EXPECT_EQ(write(value), text);
  EXPECT_EQ(write(ParserValue(value)), text);
}

TEST(ParserValueStorageNumberTest, AllDigitsOfALongDoubleAreRead) {
  const ParserValue value(ParserValue::TYPE_DOUBLE, "0.12345678901234567");
  EXPECT_EQ(value.getAsDouble(), 0.12345678901234567);
  EXPECT_EQ(ParserValue(value).getAsDouble(), 0.12345678901234567);
}

TEST(ParserValueStorageNumberTest, ALongNumberStaysAfterItsListHasGrown) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addDouble(-1.2345678901234567e-100);
  EXPECT_EQ(item.getDouble(0), -1.2345678901234567e-100);
  for (int i = 0; i < 100; ++i)
    item.addInt(i);
  EXPECT_EQ(item.getDouble(0), -1.2345678901234567e-100);
}
