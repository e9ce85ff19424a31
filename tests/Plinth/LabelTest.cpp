#include <Plinth/Label.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>

using Plinth::getDouble;
using Plinth::getLabel;

namespace {

using Limits = std::numeric_limits<double>;

// --- A second opinion ----------------------------------------------------------------------------

double readWithStrtod(const std::string& text) {
  static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text.c_str(), nullptr, classic);
}

/// Returns whether the two are the same bit for bit: 0.0 and -0.0 differ, and so do two NaNs.
bool areSame(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// Returns the first of `count` texts of `generate` that getDouble reads otherwise than strtod.
template <typename Generate>
std::optional<std::string> findDifference(int count, Generate generate) {
  std::mt19937_64 random(20);  // a fixed seed, so that a failure comes again
  for (int i = 0; i < count; ++i) {
    const std::string text = generate(random);
    if (!areSame(getDouble(text), readWithStrtod(text))) return text;
  }
  return std::nullopt;
}

// --- Texts that look like numbers ----------------------------------------------------------------

std::size_t drawBelow(std::mt19937_64& random, std::size_t bound) {
  return static_cast<std::size_t>(random() % bound);
}

std::string makeWord(std::mt19937_64& random, std::string_view alphabet, std::size_t longest) {
  std::string word(drawBelow(random, longest + 1), ' ');
  for (char& character : word)
    character = alphabet[drawBelow(random, alphabet.size())];
  return word;
}

/// Anything that the letters of a number can be thrown together to.
std::string makeJumble(std::mt19937_64& random) {
  return makeWord(random, "0123456789.+-eExXpPinfaNIty \t", 24);
}

/// One of `choices`, of which the empty one comes most often.
std::string choose(std::mt19937_64& random, std::initializer_list<const char*> choices) {
  const std::size_t drawn = drawBelow(random, 2 * choices.size());
  return drawn < choices.size() ? *(choices.begin() + drawn) : "";
}

/// What a number is made of, in the order in which it is made, each piece there or missing.
std::string makeNumber(std::mt19937_64& random) {
  const std::string_view digits = drawBelow(random, 4) == 0 ? "0" : "0123456789";
  std::string text = choose(random, {" ", "\t\n", "\v\f\r", "\x1c", "_"});
  text += choose(random, {"-", "+", "--", "-+"});
  text += choose(random, {"0x", "0X", "inf", "INFINITY", "nan", "nan(12)", "infinit"});
  text += makeWord(random, digits, drawBelow(random, 50) == 0 ? 900 : 22);
  text += choose(random, {".", "..", ","});
  text += makeWord(random, digits, drawBelow(random, 50) == 0 ? 900 : 22);
  text += choose(random, {"e", "E", "e-", "E+", "p", "p-", "e--"});
  text += makeWord(random, "0123456789", 4);
  text += choose(random, {" ", "x", "e", ".", "f", "L", ",5"});
  if (drawBelow(random, 20) == 0) text.insert(drawBelow(random, text.size() + 1), 1, '\0');
  return text;
}

double makeDouble(std::mt19937_64& random) { return std::bit_cast<double>(random()); }

std::string print(double number, std::chars_format format, int precision) {
  std::array<char, 1200> buffer{};
  char* const last = buffer.data() + buffer.size();
  return {buffer.data(), std::to_chars(buffer.data(), last, number, format, precision).ptr};
}

/// A double of any size, printed in any of the usual ways.
std::string makePrintedDouble(std::mt19937_64& random) {
  const double number = makeDouble(random);
  const int precision = static_cast<int>(drawBelow(random, 40));
  switch (drawBelow(random, 4)) {
    case 0: return print(number, std::chars_format::scientific, precision);
    case 1: return print(number, std::chars_format::fixed, precision);
    case 2: return "0x" + print(std::fabs(number), std::chars_format::hex, precision);
    default: return getLabel(number);
  }
}

/// A number that lies exactly between two neighbouring doubles, or close by.
std::string makeTie(std::mt19937_64& random) {
  const std::uint64_t odd = (random() >> 10U) | 1U | (1ULL << 53U);  // needs 54 bits: a tie
  std::string text = std::to_string(odd);
  text += choose(random, {".", ".0", ".5", ".00000000000000000000000000000000000000001"});
  return text + choose(random, {"e0", "e1", "e-1", "e22", "e-22", "e300", "e-330"});
}

}  // namespace

// --- Labels of integers --------------------------------------------------------------------------

TEST(LabelIntTest, IsDecimal) {
  EXPECT_EQ(getLabel(0), "0");
  EXPECT_EQ(getLabel(12), "12");
  EXPECT_EQ(getLabel(-12), "-12");
}

TEST(LabelIntTest, ReachesToTheLimits) {
  EXPECT_EQ(getLabel(std::numeric_limits<int>::max()), "2147483647");
  EXPECT_EQ(getLabel(std::numeric_limits<int>::min()), "-2147483648");
}

TEST(LabelUnsignedLongTest, IsDecimal) {
  EXPECT_EQ(getLabel(0UL), "0");
  EXPECT_EQ(getLabel(1234567UL), "1234567");
}

TEST(LabelUnsignedLongTest, ReachesToTheLimit) {
  EXPECT_EQ(getLabel(std::numeric_limits<unsigned long>::max()),
            sizeof(unsigned long) == 8 ? "18446744073709551615" : "4294967295");
}

TEST(LabelCharTest, IsTheCodeAndNotTheCharacter) {
  EXPECT_EQ(getLabel('A'), "65");
  EXPECT_EQ(getLabel('0'), "48");
  EXPECT_EQ(getLabel('\0'), "0");
}

TEST(LabelCharTest, IsSignedWhateverThePlainCharIs) {
  EXPECT_EQ(getLabel('\x7f'), "127");
  EXPECT_EQ(getLabel('\x80'), "-128");
  EXPECT_EQ(getLabel('\xff'), "-1");
}

// --- Labels of doubles ---------------------------------------------------------------------------

TEST(LabelDoubleTest, IsTheShortestTextThatReadsBack) {
  EXPECT_EQ(getLabel(1.1), "1.1");
  EXPECT_EQ(getLabel(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(getLabel(1.0 / 3.0), "0.3333333333333333");
}

TEST(LabelDoubleTest, GetsADecimalWhereItWouldReadAsAnInteger) {
  EXPECT_EQ(getLabel(2.0), "2.0");
  EXPECT_EQ(getLabel(0.0), "0.0");
  EXPECT_EQ(getLabel(-17.0), "-17.0");
  EXPECT_EQ(getLabel(123456789.0), "123456789.0");
}

TEST(LabelDoubleTest, KeepsTheSignOfZero) { EXPECT_EQ(getLabel(-0.0), "-0.0"); }

TEST(LabelDoubleTest, HasAnExponentWhereThatIsShorter) {
  EXPECT_EQ(getLabel(1e300), "1e+300");
  EXPECT_EQ(getLabel(1e-7), "1e-07");
  EXPECT_EQ(getLabel(1e5), "1e+05");
}

TEST(LabelDoubleTest, ReachesToTheLimits) {
  EXPECT_EQ(getLabel(Limits::max()), "1.7976931348623157e+308");
  EXPECT_EQ(getLabel(-Limits::min()), "-2.2250738585072014e-308");
  EXPECT_EQ(getLabel(Limits::denorm_min()), "5e-324");
}

TEST(LabelDoubleTest, NamesWhatIsNoNumber) {
  EXPECT_EQ(getLabel(Limits::infinity()), "inf");
  EXPECT_EQ(getLabel(-Limits::infinity()), "-inf");
  EXPECT_EQ(getLabel(Limits::quiet_NaN()), "nan");
  EXPECT_EQ(getLabel(-Limits::quiet_NaN()), "-nan");
}

TEST(LabelDoubleTest, ReadsBackAsTheSameDouble) {
  std::mt19937_64 random(20);
  for (int i = 0; i < 100000; ++i) {
    const double number = makeDouble(random);
    if (std::isnan(number)) continue;  // the label does not tell one NaN from another
    ASSERT_TRUE(areSame(getDouble(getLabel(number)), number)) << getLabel(number);
  }
}

TEST(LabelDoubleTest, NeverReadsAsAnInteger) {
  std::mt19937_64 random(20);
  for (int i = 0; i < 100000; ++i) {
    const std::string label = getLabel(std::ldexp(static_cast<double>(random()), i % 100 - 70));
    ASSERT_NE(label.find_first_not_of("-0123456789"), std::string::npos) << label;
  }
}

// --- Text to double ------------------------------------------------------------------------------

TEST(GetDoubleTest, ReadsADecimalNumber) {
  EXPECT_EQ(getDouble("0"), 0.0);
  EXPECT_EQ(getDouble("12"), 12.0);
  EXPECT_EQ(getDouble("1.1"), 1.1);
  EXPECT_EQ(getDouble("-12.25"), -12.25);
}

TEST(GetDoubleTest, ReadsASignAndKeepsItAtZero) {
  EXPECT_EQ(getDouble("+1.5"), 1.5);
  EXPECT_EQ(getDouble("-1.5"), -1.5);
  EXPECT_TRUE(areSame(getDouble("-0"), -0.0));
  EXPECT_TRUE(areSame(getDouble("+0"), 0.0));
}

TEST(GetDoubleTest, ReadsAnExponent) {
  EXPECT_EQ(getDouble("1e3"), 1000.0);
  EXPECT_EQ(getDouble("1E+3"), 1000.0);
  EXPECT_EQ(getDouble("25e-1"), 2.5);
}

TEST(GetDoubleTest, LeavesAnExponentWithoutDigitsAside) {
  EXPECT_EQ(getDouble("2e"), 2.0);
  EXPECT_EQ(getDouble("2e+"), 2.0);
  EXPECT_EQ(getDouble("2e x"), 2.0);
}

TEST(GetDoubleTest, TakesAPointWithDigitsOnOneSide) {
  EXPECT_EQ(getDouble(".5"), 0.5);
  EXPECT_EQ(getDouble("-.5"), -0.5);
  EXPECT_EQ(getDouble("5."), 5.0);
  EXPECT_EQ(getDouble("5.e1"), 50.0);
}

TEST(GetDoubleTest, PassesOverWhiteSpaceBeforeTheNumber) {
  EXPECT_EQ(getDouble(" \t\n\v\f\r1.5"), 1.5);
}

TEST(GetDoubleTest, PassesOverNothingElseBeforeTheNumber) {
  EXPECT_EQ(getDouble("x1.5"), 0.0);
  EXPECT_EQ(getDouble("\xa0"
                      "1.5"),
            0.0);
  EXPECT_EQ(getDouble("- 1.5"), 0.0);
}

TEST(GetDoubleTest, PassesOverWhatFollowsTheNumber) {
  EXPECT_EQ(getDouble("1.5 and more"), 1.5);
  EXPECT_EQ(getDouble("1.5.6"), 1.5);
  EXPECT_EQ(getDouble("1.5-6"), 1.5);
  EXPECT_EQ(getDouble("10x5"), 10.0);
}

TEST(GetDoubleTest, ReadsAPointAndNoComma) { EXPECT_EQ(getDouble("1,5"), 1.0); }

TEST(GetDoubleTest, IsZeroWithoutANumber) {
  EXPECT_TRUE(areSame(getDouble(""), 0.0));
  EXPECT_TRUE(areSame(getDouble("-"), 0.0));
  EXPECT_TRUE(areSame(getDouble("."), 0.0));
  EXPECT_TRUE(areSame(getDouble("e5"), 0.0));
  EXPECT_TRUE(areSame(getDouble("text"), 0.0));
}

TEST(GetDoubleTest, ReadsAHexadecimalNumber) {
  EXPECT_EQ(getDouble("0x10"), 16.0);
  EXPECT_EQ(getDouble("-0X1.8p1"), -3.0);
  EXPECT_EQ(getDouble(" +0xap-1"), 5.0);
}

TEST(GetDoubleTest, ReadsTheZeroOfAHexadecimalPrefixWithoutDigits) {
  EXPECT_TRUE(areSame(getDouble("0x"), 0.0));
  EXPECT_TRUE(areSame(getDouble("-0xg"), -0.0));
}

TEST(GetDoubleTest, ReadsInfinitiesAndNanInAnyCase) {
  EXPECT_EQ(getDouble("inf"), Limits::infinity());
  EXPECT_EQ(getDouble("-Infinity"), -Limits::infinity());
  EXPECT_TRUE(std::isnan(getDouble("NaN")));
  EXPECT_TRUE(std::isnan(getDouble("nan(12)")));
}

TEST(GetDoubleTest, IsAnInfinityWhenTheNumberIsTooLarge) {
  EXPECT_EQ(getDouble("1e309"), Limits::infinity());
  EXPECT_EQ(getDouble("-1e99999999999999999999"), -Limits::infinity());
  EXPECT_EQ(getDouble(std::string(400, '9')), Limits::infinity());
}

TEST(GetDoubleTest, IsAZeroWhenTheNumberIsTooSmall) {
  EXPECT_TRUE(areSame(getDouble("1e-400"), 0.0));
  EXPECT_TRUE(areSame(getDouble("-1e-400"), -0.0));
}

TEST(GetDoubleTest, ReadsTheSmallestDoubles) {
  EXPECT_EQ(getDouble("5e-324"), Limits::denorm_min());
  EXPECT_EQ(getDouble("2.2250738585072014e-308"), Limits::min());
  EXPECT_EQ(getDouble("2.2250738585072011e-308"), Limits::min() - Limits::denorm_min());
}

TEST(GetDoubleTest, RoundsToTheNearestDoubleHoweverManyDigitsThereAre) {
  EXPECT_EQ(getDouble("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(getDouble("9007199254740993." + std::string(1000, '0')), 9007199254740992.0);
  EXPECT_EQ(getDouble("9007199254740993." + std::string(1000, '0') + '1'), 9007199254740994.0);
}

TEST(GetDoubleTest, RoundsTheProductOfDigitsAndPowerOnce) {
  EXPECT_EQ(getDouble("4.602463500300253e+25"), 0x1.3090c3b407bd5p+85);
}

TEST(GetDoubleTest, EndsAtAZeroByte) {
  EXPECT_EQ(getDouble(std::string("1\0002", 3)), 1.0);
  EXPECT_EQ(getDouble(std::string("\0001", 2)), 0.0);
  EXPECT_EQ(getDouble(std::string(" 1\0002", 4)), 1.0);
}

// --- Text to double, as strtod
// ---------------------------------------------------------------------

TEST(GetDoubleAsStrtodTest, InAnyJumbleOfTheLettersOfNumbers) {
  EXPECT_EQ(findDifference(1000000, makeJumble), std::nullopt);
}

TEST(GetDoubleAsStrtodTest, InNumbersWithPiecesMissingOrAdded) {
  EXPECT_EQ(findDifference(500000, makeNumber), std::nullopt);
}

TEST(GetDoubleAsStrtodTest, InPrintedDoubles) {
  EXPECT_EQ(findDifference(300000, makePrintedDouble), std::nullopt);
}

TEST(GetDoubleAsStrtodTest, InNumbersBetweenTwoDoubles) {
  EXPECT_EQ(findDifference(300000, makeTie), std::nullopt);
}

TEST(GetDoubleAsStrtodTest, AfterAnyFirstByte) {
  for (int code = 0; code < 256; ++code) {
    const std::string text = static_cast<char>(code) + std::string("7.5");
    EXPECT_TRUE(areSame(getDouble(text), readWithStrtod(text))) << code;
  }
}

// --- Locale --------------------------------------------------------------------------------------

namespace {

/// Sets a locale that writes a comma before the decimals, when the machine has one.
class LabelCommaLocaleTest : public testing::Test {
 protected:
  void SetUp() override {
    previous = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "nl_NL.UTF-8", "it_IT.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
    if (*std::localeconv()->decimal_point != ',') GTEST_SKIP() << "no locale with a decimal comma";
  }

  void TearDown() override { std::setlocale(LC_ALL, previous.c_str()); }

 private:
  std::string previous;
};

}  // namespace

TEST_F(LabelCommaLocaleTest, LabelsHaveAPoint) {
  EXPECT_EQ(getLabel(1234567.5), "1234567.5");
  EXPECT_EQ(getLabel(2.0), "2.0");
}

TEST_F(LabelCommaLocaleTest, LabelsOfIntegersHaveNoGroups) {
  EXPECT_EQ(getLabel(1234567), "1234567");
  EXPECT_EQ(getLabel(1234567UL), "1234567");
}

TEST_F(LabelCommaLocaleTest, NumbersAreReadWithAPoint) {
  EXPECT_EQ(getDouble("1.5"), 1.5);
  EXPECT_EQ(getDouble("1,5"), 1.0);
}

TEST_F(LabelCommaLocaleTest, NumbersThatOnlyStrtodReadsAreReadWithAPoint) {
  EXPECT_EQ(getDouble(" 1.5"), 1.5);
  EXPECT_EQ(getDouble("+1,5"), 1.0);
  EXPECT_EQ(getDouble("0x1.8"), 1.5);
}
