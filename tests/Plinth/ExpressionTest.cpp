#include <Plinth/Console.h>
#include <Plinth/Expression.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using Plinth::Console;
using Plinth::console;
using Plinth::Expression;

namespace {

struct Report {
  Console::Level level;
  std::string message;
  std::string second;
};

/// Compiles `pattern` and returns what the console was told meanwhile.
std::vector<Report> getReports(const std::string& pattern) {
  std::vector<Report> reports;
  const Console::Handler previous = console.setHandler(
      [&](Console::Level level, const std::string& message, const std::string& second) {
        reports.push_back({level, message, second});
      });
  const Expression expression(pattern);
  console.setHandler(previous);
  return reports;
}

/// Returns the expression of a pattern that does not compile, without the warning.
Expression makeInvalid(const std::string& pattern = "(") {
  const Console::Handler previous = console.setHandler([](auto&&...) {});
  Expression expression(pattern);
  console.setHandler(previous);
  return expression;
}

}  // namespace

// --- Matching ------------------------------------------------------------------------------------

TEST(ExpressionMatchTest, SearchesAnywhereInTheText) {
  const Expression expression("b+");
  EXPECT_TRUE(expression.match("bb"));
  EXPECT_TRUE(expression.match("abba"));
  EXPECT_FALSE(expression.match("aa"));
}

TEST(ExpressionMatchTest, CaretAnchorsAtTheStart) {
  const Expression expression("^ab");
  EXPECT_TRUE(expression.match("abc"));
  EXPECT_FALSE(expression.match("cab"));
}

TEST(ExpressionMatchTest, DollarAnchorsAtTheEnd) {
  const Expression expression("ab$");
  EXPECT_TRUE(expression.match("cab"));
  EXPECT_FALSE(expression.match("abc"));
}

TEST(ExpressionMatchTest, AnchorsStandForTheTextAndNotForALine) {
  EXPECT_FALSE(Expression("^b").match("a\nb"));
  EXPECT_FALSE(Expression("a$").match("a\nb"));
  EXPECT_FALSE(Expression("a$").match("a\n"));
}

TEST(ExpressionMatchTest, AnchorsStandForALineInMultiLineMode) {
  EXPECT_TRUE(Expression("(?m)^b$").match("a\nb\nc"));
}

TEST(ExpressionMatchTest, DotIsNoLineFeedUnlessAskedFor) {
  EXPECT_FALSE(Expression("a.b").match("a\nb"));
  EXPECT_TRUE(Expression("(?s)a.b").match("a\nb"));
}

TEST(ExpressionMatchTest, KnowsUpperAndLowerCaseApart) {
  EXPECT_FALSE(Expression("layer").match("Layer"));
  EXPECT_TRUE(Expression("(?i)layer").match("Layer"));
}

TEST(ExpressionMatchTest, KnowsAlternativesClassesAndRepetition) {
  const Expression expression("^(Layer|Level)[0-9]{1,2}\\.?$");
  EXPECT_TRUE(expression.match("Layer1"));
  EXPECT_TRUE(expression.match("Level42."));
  EXPECT_FALSE(expression.match("Layer123"));
}

TEST(ExpressionMatchTest, TheEmptyPatternOccursInEveryText) {
  EXPECT_TRUE(Expression("").match(""));
  EXPECT_TRUE(Expression("").match("text"));
}

TEST(ExpressionMatchTest, TheEmptyTextMatchesOnlyWhatMayBeEmpty) {
  EXPECT_TRUE(Expression("^a*$").match(""));
  EXPECT_FALSE(Expression("a").match(""));
}

TEST(ExpressionMatchTest, AZeroByteInATextIsAByteLikeAnyOther) {
  const std::string text("a\0b", 3);
  EXPECT_TRUE(Expression("b").match(text));
  EXPECT_TRUE(Expression("^a.b$").match(text));
  EXPECT_FALSE(Expression("^a$").match(text));
}

TEST(ExpressionMatchTest, AZeroByteInAPatternIsAByteLikeAnyOther) {
  const Expression expression(std::string("a\0b", 3));
  EXPECT_TRUE(expression.match(std::string("xa\0bx", 5)));
  EXPECT_FALSE(expression.match("a"));
}

TEST(ExpressionMatchTest, AByteFrom128UpIsOneCharacter) {
  const Expression expression("^.$");
  EXPECT_TRUE(expression.match("\xe9"));
  EXPECT_FALSE(expression.match("\xc3\xa9"));
}

TEST(ExpressionMatchTest, AByteFrom128UpInAPatternStandsForItself) {
  EXPECT_TRUE(Expression("caf\xe9$").match("un caf\xe9"));
  EXPECT_FALSE(Expression("\xe9").match("\xc3\xa9"));
  EXPECT_TRUE(Expression("[\x80-\xff]{2}").match("\xc3\xa9"));
}

TEST(ExpressionMatchTest, FindsEveryByteByItsOwnCode) {
  for (int code = 0; code < 256; ++code) {
    const std::string hexadecimal = {"0123456789abcdef"[code / 16], "0123456789abcdef"[code % 16]};
    const Expression expression("^\\x" + hexadecimal + "$");
    EXPECT_TRUE(expression.match(std::string(1, static_cast<char>(code)))) << code;
    EXPECT_FALSE(expression.match(std::string(1, static_cast<char>(code ^ 1)))) << code;
  }
}

TEST(ExpressionMatchTest, APatternThatDefeatsBacktrackingIsDoneAtOnce) {
  EXPECT_FALSE(Expression("^(a+)+$").match(std::string(100000, 'a') + 'b'));
  EXPECT_FALSE(Expression("(a*)*(b|c)(a*)*d").match(std::string(100000, 'a')));
}

TEST(ExpressionMatchTest, OneExpressionMatchesInSeveralThreadsAtOnce) {
  const Expression expression("^(a|b)*c$");
  std::vector<int> found(4);
  std::vector<std::thread> threads;
  threads.reserve(found.size());
  for (int& count : found) {
    threads.emplace_back([&expression, &count] {
      for (int i = 0; i < 500; ++i)
        count += expression.match(std::string(static_cast<std::size_t>(i), 'a') + 'c') ? 1 : 0;
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(found, std::vector<int>(4, 500));
}

// --- Without a pattern ---------------------------------------------------------------------------

TEST(ExpressionValidTest, ADefaultOneHoldsNoPatternAndMatchesNothing) {
  const Expression expression;
  EXPECT_FALSE(expression.isValid());
  EXPECT_FALSE(expression.match(""));
  EXPECT_FALSE(expression.match("text"));
}

TEST(ExpressionValidTest, ACompiledPatternIsValid) {
  EXPECT_TRUE(Expression("a").isValid());
  EXPECT_TRUE(Expression("").isValid());
}

TEST(ExpressionValidTest, APatternThatDoesNotCompileIsNotHeldAndMatchesNothing) {
  const Expression expression = makeInvalid();
  EXPECT_FALSE(expression.isValid());
  EXPECT_FALSE(expression.match("("));
  EXPECT_FALSE(expression.match(""));
}

TEST(ExpressionValidTest, IsMadeFromAPatternOnlyExplicitly) {
  EXPECT_FALSE((std::is_convertible_v<std::string, Expression>));
  EXPECT_TRUE((std::is_constructible_v<Expression, std::string>));
}

TEST(ExpressionValidTest, ADeeplyNestedPatternDoesNotExhaustTheStack) {
  constexpr int DEPTH = Expression::MOST_BYTES / 4 - 1;
  std::string pattern;
  for (int i = 0; i < DEPTH; ++i)
    pattern += "(?:";
  const Expression expression(pattern + 'a' + std::string(DEPTH, ')'));
  EXPECT_TRUE(expression.match("a"));
}

// --- Warning -------------------------------------------------------------------------------------

TEST(ExpressionWarningTest, APatternThatCompilesIsSilent) {
  EXPECT_TRUE(getReports("^a.*z$").empty());
}

TEST(ExpressionWarningTest, APatternThatDoesNotCompileGivesOneWarning) {
  const std::vector<Report> reports = getReports("(ab");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].level, Console::LEVEL_WARNING);
  EXPECT_EQ(reports[0].second, "");
}

TEST(ExpressionWarningTest, NamesThePatternAndTheReason) {
  const std::vector<Report> reports = getReports("(ab");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].message, "Expression::Expression: invalid pattern '(ab': missing ): (ab\n");
}

TEST(ExpressionWarningTest, KeepsThePatternByteForByte) {
  const std::string pattern("\xe9\0(", 3);
  const std::vector<Report> reports = getReports(pattern);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_NE(reports[0].message.find('\'' + pattern + '\''), std::string::npos);
}

TEST(ExpressionWarningTest, IsGivenForWhatWouldNeedBacktracking) {
  EXPECT_EQ(getReports("(a)\\1").size(), 1U);
  EXPECT_EQ(getReports("a(?=b)").size(), 1U);
}

TEST(ExpressionWarningTest, IsGivenForAPatternThatRepeatsTooOften) {
  EXPECT_EQ(getReports("((a{100}){100}){100}").size(), 1U);
}

TEST(ExpressionWarningTest, IsGivenForMoreSteps) {
  const std::string pattern = "a{900}b{900}c{900}";
  const std::vector<Report> reports = getReports(pattern);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].message,
            "Expression::Expression: invalid pattern '" + pattern + "': more than 2500 steps\n");
}

TEST(ExpressionWarningTest, IsNotGivenForAThousandBytes) {
  EXPECT_TRUE(getReports(std::string(1000, 'a')).empty());
  EXPECT_TRUE(getReports("a{1000}").empty());
}

TEST(ExpressionWarningTest, IsGivenForMoreBytes) {
  std::string longest;
  while (longest.size() < Expression::MOST_BYTES)
    longest += ".*";
  EXPECT_TRUE(getReports(longest).empty());
  const std::vector<Report> reports = getReports(longest + '$');
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].message, "Expression::Expression: invalid pattern '" + longest +
                                    "$': longer than 16384 bytes\n");
}

TEST(ExpressionWarningTest, LeavesNoPatternWhereOneIsTooLarge) {
  EXPECT_FALSE(makeInvalid("a{900}b{900}c{900}").isValid());
  EXPECT_FALSE(makeInvalid(std::string(Expression::MOST_BYTES + 1, '^')).isValid());
}

TEST(ExpressionWarningTest, NothingPassesTheConsoleBy) {
  testing::internal::CaptureStderr();
  getReports("(ab");
  getReports("((a{100}){100}){100}");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ExpressionWarningTest, IsNotRepeatedByCopyingOrMatching) {
  const Expression expression = makeInvalid();
  testing::internal::CaptureStderr();
  const Console::Handler previous = console.setHandler({});
  const Expression copy(expression);
  EXPECT_FALSE(copy.match("text"));
  console.setHandler(previous);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// --- Copies --------------------------------------------------------------------------------------

TEST(ExpressionCopyTest, MatchesAsTheOriginal) {
  const Expression expression("^a$");
  const Expression copy(expression);
  EXPECT_TRUE(copy.isValid());
  EXPECT_TRUE(copy.match("a"));
  EXPECT_FALSE(copy.match("b"));
}

TEST(ExpressionCopyTest, OutlivesTheOriginal) {
  auto original = std::make_unique<Expression>("^a$");
  const Expression copy(*original);
  original.reset();
  EXPECT_TRUE(copy.match("a"));
}

TEST(ExpressionCopyTest, AssigningReplacesThePattern) {
  Expression expression("^a$");
  expression = Expression("^b$");
  EXPECT_TRUE(expression.match("b"));
  EXPECT_FALSE(expression.match("a"));
}

TEST(ExpressionCopyTest, AssigningAnEmptyOneLeavesNoPattern) {
  Expression expression("^a$");
  expression = Expression();
  EXPECT_FALSE(expression.isValid());
}

TEST(ExpressionCopyTest, AMovedFromExpressionHoldsNone) {
  Expression expression("^a$");
  const Expression moved(std::move(expression));
  EXPECT_TRUE(moved.match("a"));
  EXPECT_FALSE(expression.isValid());
}
