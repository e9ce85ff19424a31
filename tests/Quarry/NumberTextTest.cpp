// The numbers at the beginning of a text, compared with the C library's own reading.
#include <Quarry/internal/NumberText.h>
#include <Quarry/internal/ShortNumber.h>

#include <gtest/gtest.h>

#include <locale.h>
#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_literals;
using namespace std::string_view_literals;

using Quarry::beginsWithDouble;
using Quarry::beginsWithInt;
using Quarry::readDouble;
using Quarry::readInteger;
using Quarry::readShortDouble;
using Quarry::readShortInteger;

namespace {

// --- The C library -------------------------------------------------------------------------------

/// Puts the thread into the "C" locale for as long as it lives.
class ClassicLocale {
 public:
  ClassicLocale() : classic(newlocale(LC_ALL_MASK, "C", nullptr)), previous(uselocale(classic)) {}
  ClassicLocale(const ClassicLocale&) = delete;
  ClassicLocale& operator=(const ClassicLocale&) = delete;
  ~ClassicLocale() {
    uselocale(previous);
    freelocale(classic);
  }

 private:
  locale_t classic;
  locale_t previous;
};

bool scanInt(const std::string& text) {
  int number = 0;
  return std::sscanf(text.c_str(), "%d", &number) == 1;
}

bool scanDouble(const std::string& text) {
  double number = 0;
  return std::sscanf(text.c_str(), "%lf", &number) == 1;
}

long long readWithStrtoll(const std::string& text) {
  return std::strtoll(text.c_str(), nullptr, 10);
}

/// Tells whether both have the same bits, or are no numbers.
bool areSame(double first, double second) {
  if (std::isnan(first)) return std::isnan(second);
  return first == second && std::signbit(first) == std::signbit(second);
}

constexpr std::size_t ROOM = 24;           ///< for the bytes of a text in a value
constexpr std::size_t LONGEST_SHORT = 16;  ///< of the texts that may be read as short numbers

/// A text where a value has it, with other bytes behind it.
std::array<char, ROOM> place(const std::string& text, char behind) {
  std::array<char, ROOM> bytes{};
  bytes.fill(behind);
  text.copy(bytes.data(), bytes.size());
  return bytes;
}

/// Compares what is recognised as a short number with the C library.
testing::AssertionResult agreesIfShort(const std::string& text, char behind) {
  const std::array<char, ROOM> bytes = place(text, behind);
  int integer = 0;
  if (readShortInteger(bytes.data(), text.size(), integer) &&
      integer != static_cast<int>(readWithStrtoll(text))) {
    return testing::AssertionFailure() << "short, strtoll: " << testing::PrintToString(text);
  }
  double number = 0.0;
  if (readShortDouble(bytes.data(), text.size(), number) &&
      !areSame(number, std::strtod(text.c_str(), nullptr))) {
    return testing::AssertionFailure() << "short, strtod: " << testing::PrintToString(text);
  }
  return testing::AssertionSuccess();
}

bool isShortInteger(const std::string& text) {
  int integer = 0;
  return readShortInteger(place(text, '7').data(), text.size(), integer);
}

bool isShortDouble(const std::string& text) {
  double number = 0.0;
  return readShortDouble(place(text, '7').data(), text.size(), number);
}

/// Compares all four with the C library. Digits stand behind the text, which a reading beyond its
/// end would meet; the memory ends where no more may be read.
/// @param spare how many of them may be read; for none there are two
testing::AssertionResult agrees(const std::string& text, std::size_t spare) {
  std::vector<char> bytes(text.size() + (spare > 0 ? spare : 2), '7');
  std::copy(text.begin(), text.end(), bytes.begin());
  const std::string_view view(bytes.data(), text.size());
  const char* readable = view.data() + text.size() + spare;
  if (beginsWithInt(view) != scanInt(text)) {
    return testing::AssertionFailure() << "%d: " << testing::PrintToString(text);
  }
  if (beginsWithDouble(view) != scanDouble(text)) {
    return testing::AssertionFailure() << "%lf: " << testing::PrintToString(text);
  }
  if (readInteger(view) != readWithStrtoll(text)) {
    return testing::AssertionFailure() << "strtoll: " << testing::PrintToString(text);
  }
  if (!areSame(readDouble(view, readable), std::strtod(text.c_str(), nullptr))) {
    return testing::AssertionFailure() << "strtod: " << testing::PrintToString(text);
  }
  return testing::AssertionSuccess();
}

/// Compares with as much to read behind the text as there is in a value, and with nothing.
testing::AssertionResult agrees(const std::string& text) {
  if (!text.empty() && text.size() <= LONGEST_SHORT) {
    for (const char behind : {'7', '.'}) {
      const testing::AssertionResult result = agreesIfShort(text, behind);
      if (!result) return result;
    }
  }
  if (text.size() < ROOM) {
    const testing::AssertionResult result = agrees(text, ROOM - text.size());
    if (!result) return result;
  }
  return agrees(text, 0);
}

// --- Words ---------------------------------------------------------------------------------------

std::string drawWord(std::mt19937& random, std::string_view alphabet, std::size_t longest) {
  std::string word(random() % (longest + 1), ' ');
  for (char& byte : word)
    byte = alphabet[random() % alphabet.size()];
  return word;
}

/// Compares `count` words of random bytes of the alphabet.
void checkWords(std::string_view alphabet, std::size_t longest, int count) {
  const ClassicLocale classic;
  std::mt19937 random(20);  // a fixed seed, so that a failure comes again
  for (int i = 0; i < count; ++i)
    ASSERT_TRUE(agrees(drawWord(random, alphabet, longest)));
}

/// Compares all words of up to `longest` bytes of the alphabet.
void checkAllWords(std::string_view alphabet, std::size_t longest, const std::string& begin = "") {
  ASSERT_TRUE(agrees(begin));
  if (longest == 0) return;
  for (const char byte : alphabet) {
    checkAllWords(alphabet, longest - 1, begin + byte);
    if (testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace

// --- Compared with the C library -----------------------------------------------------------------

TEST(NumberTextTest, AllWordsOfUpToTwoBytesAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  std::string alphabet;
  for (int byte = 0; byte < 256; ++byte)
    alphabet += static_cast<char>(byte);
  checkAllWords(alphabet, 2);
}

TEST(NumberTextTest, AllShortWordsOfNumberBytesAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  checkAllWords(" \v\r+-.,09xXpPnNaAiIfeE\0"sv, 4);
}

TEST(NumberTextTest, AllShortHexadecimalWordsAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  checkAllWords("-0xXp.1afg"sv, 5);
}

TEST(NumberTextTest, AllWordsOfTheLettersOfInfinityAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  checkAllWords("infty"sv, 8);
}

TEST(NumberTextTest, EveryByteBehindEveryBeginningOfAWordIsReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  for (const std::string_view word : {"+infinity"sv, "-INFINITY"sv, "nan(1)"sv, "NaN"sv,
                                      "0x1.8p+3"sv, "-12.5e+10"sv, "+.5E-7"sv, " \t\n\v\f\r-0"sv}) {
    for (std::size_t length = 0; length <= word.size(); ++length) {
      for (int byte = 0; byte < 256; ++byte) {
        ASSERT_TRUE(agrees(std::string(word.substr(0, length)) + static_cast<char>(byte)));
      }
    }
  }
}

TEST(NumberTextTest, AMillionWordsOfNumberBytesAreReadLikeTheCLibraryDoes) {
  checkWords(" \t\n\v\f\r\0+-+-..,0123456789xXpPnNaAiIfFtTyYeE"sv, 12, 1'000'000);
}

TEST(NumberTextTest, AMillionWordsOfSignsAndDigitsAreReadLikeTheCLibraryDoes) {
  checkWords("-+ .0123456789012345678901234567890123456789"sv, 24, 1'000'000);
}

TEST(NumberTextTest, AMillionDecimalsAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  std::mt19937_64 random(21);
  for (int i = 0; i < 1'000'000; ++i) {
    std::string text = std::to_string(random() >> (random() % 64));
    text.insert(static_cast<std::size_t>(random() % (text.size() + 1)), ".");
    ASSERT_TRUE(agrees((i % 2 == 0 ? "-" : "") + text));
  }
}

TEST(NumberTextTest, NumbersHalfwayBetweenTwoDoublesAndBesideAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  std::mt19937_64 random(22);
  for (int i = 0; i < 100'000; ++i) {
    const std::uint64_t whole =
        (1ULL << 50) + random() % (3ULL << 50);  // 0.125 is half a step here
    const std::uint64_t eighths = 1 + 2 * (random() % 4);
    const std::uint64_t digits = whole * 1000 + eighths * 125;
    for (const std::uint64_t beside : {digits - 1, digits, digits + 1}) {
      std::string text = std::to_string(beside);
      ASSERT_TRUE(agrees(text));
      ASSERT_TRUE(agrees("-" + text.insert(text.size() - 3, ".")));
    }
  }
}

TEST(NumberTextTest, APointAtEveryPlaceOfUpToTwentyDigitsIsReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  const std::string digits = "12345678909876543210";
  for (std::size_t length = 1; length <= digits.size(); ++length) {
    for (std::size_t place = 0; place <= length; ++place) {
      for (const char* behind : {"", "e5", "x", "."})
        ASSERT_TRUE(agrees(digits.substr(0, length).insert(place, ".") + behind));
    }
  }
}

TEST(NumberTextTest, AMillionWordsOfCapitalAndSmallLettersAreReadLikeTheCLibraryDoes) {
  checkWords("+-00xXiInNfFtTyYaApP.1"sv, 9, 1'000'000);
}

TEST(NumberTextTest, WordsOfAnyBytesAreReadLikeTheCLibraryDoes) {
  std::string alphabet;
  for (int byte = 0; byte < 256; ++byte)
    alphabet += static_cast<char>(byte);
  checkWords(alphabet, 6, 200'000);
}

TEST(NumberTextTest, NumbersAroundTheLimitsAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  for (const char* sign : {"", "-", "+"}) {
    for (const char* head : {"922337203685477", "00000922337203685477", "1844674407370955"}) {
      for (int tail = 0; tail < 10'000; ++tail) {
        ASSERT_TRUE(agrees(sign + (head + std::to_string(tail))));
      }
    }
  }
}

TEST(NumberTextTest, LongRunsOfDigitsAreReadLikeTheCLibraryDoes) {
  const ClassicLocale classic;
  for (std::size_t length = 1; length < 400; ++length) {
    for (const char digit : {'0', '1', '9'}) {
      ASSERT_TRUE(agrees(std::string(length, digit)));
      ASSERT_TRUE(agrees("-" + std::string(length, digit)));
      ASSERT_TRUE(agrees(std::string(length, digit) + ".5e9"));
    }
  }
}

// --- Short numbers -------------------------------------------------------------------------------

TEST(NumberTextTest, UpToSixteenDigitsAreAShortInteger) {
  for (std::size_t length = 1; length <= 16; ++length)
    EXPECT_TRUE(isShortInteger(std::string(length, '9'))) << length;
  EXPECT_FALSE(isShortInteger(std::string(17, '9')));
}

TEST(NumberTextTest, UpToFifteenDigitsBehindAMinusAreAShortInteger) {
  for (std::size_t length = 1; length <= 15; ++length)
    EXPECT_TRUE(isShortInteger("-" + std::string(length, '9'))) << length;
}

TEST(NumberTextTest, AShortIntegerConsistsOfDigits) {
  for (const char* text : {"-", "+1", " 1", "1 ", "1x", "x", "1.0", "--1", "123456789x", "/", ":"})
    EXPECT_FALSE(isShortInteger(text)) << text;
}

TEST(NumberTextTest, AShortIntegerThatDoesNotFitKeepsItsLowerBits) {
  int integer = 0;
  ASSERT_TRUE(readShortInteger(place("-4294967297", '7').data(), 11, integer));
  EXPECT_EQ(integer, -1);
}

TEST(NumberTextTest, SevenDigitsWithAPointBeforeOneOfThemAreAShortDouble) {
  if (FLT_EVAL_METHOD != 0) GTEST_SKIP() << "quotients are rounded twice here";
  const std::string digits = "1200000";
  for (std::size_t length = 1; length <= digits.size(); ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      const std::string text = digits.substr(0, length).insert(place, ".");
      EXPECT_TRUE(isShortDouble(text)) << text;
      EXPECT_TRUE(isShortDouble("-" + text)) << text;
    }
  }
}

TEST(NumberTextTest, AShortDoubleConsistsOfDigitsAndAPoint) {
  for (const char* text : {"-", ".", "-.", "1.", "-1.", "1", "12345678", "1.2.3", "1,5", "1e5",
                           "+1.5", " 1.5", "1.5 ", "--1.5", "1.5x", "0x1.8", "1.2345678"}) {
    EXPECT_FALSE(isShortDouble(text)) << text;
  }
}

TEST(NumberTextTest, AShortZeroKeepsItsSign) {
  if (FLT_EVAL_METHOD != 0) GTEST_SKIP() << "quotients are rounded twice here";
  double number = 1.0;
  ASSERT_TRUE(readShortDouble(place("-0.0", '7').data(), 4, number));
  EXPECT_TRUE(areSame(number, -0.0));
}

// --- Facts worth a name --------------------------------------------------------------------------

TEST(NumberTextTest, AnEmptyTextBeginsWithNoNumber) {
  EXPECT_FALSE(beginsWithInt(""));
  EXPECT_FALSE(beginsWithDouble(""));
  EXPECT_FALSE(beginsWithInt(std::string_view()));
  EXPECT_FALSE(beginsWithDouble(std::string_view()));
}

TEST(NumberTextTest, OnlyTheGivenBytesAreRead) {
  EXPECT_FALSE(beginsWithInt("-1"sv.substr(0, 1)));
  EXPECT_FALSE(beginsWithDouble("0x1"sv.substr(0, 2)));
  EXPECT_FALSE(beginsWithDouble("nan"sv.substr(0, 2)));
  EXPECT_EQ(readInteger("123"sv.substr(0, 2)), 12);
}

TEST(NumberTextTest, TheWhiteSpaceOfTheCLocaleIsPassedOver) {
  EXPECT_TRUE(beginsWithInt(" \t\n\v\f\r1"));
  EXPECT_TRUE(beginsWithDouble(" \t\n\v\f\r.5"));
  EXPECT_EQ(readInteger(" \t\n\v\f\r1"), 1);
}

TEST(NumberTextTest, TheNonBreakingBlankIsNoWhiteSpace) {
  EXPECT_FALSE(
      beginsWithInt("\xA0"
                    "1"));
  EXPECT_FALSE(
      beginsWithDouble("\xA0"
                       "1"));
  EXPECT_EQ(readInteger("\xA0"
                        "1"),
            0);
}

TEST(NumberTextTest, ACommaIsNoDecimalPointInAnyLocale) {
  EXPECT_FALSE(beginsWithDouble(",5"));
  EXPECT_TRUE(beginsWithDouble(".5"));
}

TEST(NumberTextTest, InfinityIsANumberAndABeginningOfItIsNone) {
  EXPECT_TRUE(beginsWithDouble("inf"));
  EXPECT_TRUE(beginsWithDouble("infinity"));
  EXPECT_FALSE(beginsWithDouble("in"));
  EXPECT_FALSE(beginsWithDouble("infin"));
}

TEST(NumberTextTest, NumbersThatDoNotFitAreTheNearest) {
  EXPECT_EQ(readInteger("9223372036854775808"), std::numeric_limits<long long>::max());
  EXPECT_EQ(readInteger("-9223372036854775809"), std::numeric_limits<long long>::min());
}

TEST(NumberTextTest, TheLargestAndTheLowestNumberFit) {
  EXPECT_EQ(readInteger("9223372036854775807"), std::numeric_limits<long long>::max());
  EXPECT_EQ(readInteger("-9223372036854775808"), std::numeric_limits<long long>::min());
}

TEST(NumberTextTest, ATextWithoutDigitsReadsAsZero) {
  EXPECT_EQ(readInteger(""), 0);
  EXPECT_EQ(readInteger("x"), 0);
  EXPECT_EQ(readInteger("- 1"), 0);
}
