// How a word is made, how it is classified without numbers and strings, and how it remembers.
#include <Quarry/ParserWord.h>
#include <Quarry/internal/WordEditor.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

using namespace std::string_literals;

using Quarry::ParserWord;
using Quarry::WordEditor;

namespace {

/// A word that is a whole text, and the text.
class TextWord {
 public:
  explicit TextWord(std::string source, double version = 1.1)
      : text(std::move(source)), word(text, true, version) {}
  TextWord(const TextWord&) = delete;
  TextWord& operator=(const TextWord&) = delete;

  const ParserWord* operator->() const { return &word; }
  void setType(ParserWord::Type type) { WordEditor(word).setType(type); }

 private:
  std::string text;
  ParserWord word;
};

constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view DIGITS = "0123456789";
constexpr std::string_view NAME_MARKS = "[]_-.%:";

bool contains(std::string_view set, char byte) { return set.find(byte) != std::string_view::npos; }

/// Expects of every byte that `accepts` is true exactly when it is in one of the sets.
template <typename Accepts>
void checkBytes(const Accepts& accepts, const std::string& accepted) {
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    EXPECT_EQ(accepts(byte), contains(accepted, byte)) << "byte " << code;
  }
}

}  // namespace

// --- What programs rely on at compile time -------------------------------------------------------

TEST(ParserWordTest, TheTypesHaveTheirNumbers) {
  static_assert(ParserWord::WORD_IDENTIFIER == 0);
  static_assert(ParserWord::WORD_OPERATOR == 1);
  static_assert(ParserWord::WORD_SEPARATOR == 2);
  static_assert(ParserWord::WORD_KEYWORD == 3);
  static_assert(ParserWord::WORD_BOOL == 4);
  static_assert(ParserWord::WORD_BINARYDATA == 5);
  static_assert(ParserWord::WORD_BRACE == 6);
  static_assert(ParserWord::WORD_INT == 7);
  static_assert(ParserWord::WORD_DOUBLE == 8);
  static_assert(ParserWord::WORD_STRING == 9);
  static_assert(ParserWord::WORD_EMPTYTAG == 10);
  static_assert(ParserWord::WORD_NONE == 11);
  static_assert(ParserWord::WORD_UNKNOWN == 12);
}

TEST(ParserWordTest, ATypeHas32Bits) {
  static_assert(sizeof(std::underlying_type_t<ParserWord::Type>) == 4);
}

TEST(ParserWordTest, AWordMayBeDeletedThroughABase) {
  static_assert(std::has_virtual_destructor_v<ParserWord>);
}

TEST(ParserWordTest, WordsCanBeCopiedAndAssigned) {
  static_assert(std::is_copy_constructible_v<ParserWord>);
  static_assert(std::is_copy_assignable_v<ParserWord>);
}

TEST(ParserWordTest, AVersionAloneIsNotSilentlyAWord) {
  static_assert(!std::is_convertible_v<double, ParserWord>);
}

TEST(ParserWordTest, NoArrayIsAllOnes) {
  static_assert(ParserWord::NO_ARRAY == std::numeric_limits<unsigned long>::max());
}

// --- Make ----------------------------------------------------------------------------------------

TEST(ParserWordTest, AWordMadeOfAVersionViewsNothing) {
  const ParserWord word(1.1);
  EXPECT_EQ(word.getStart(), 0U);
  EXPECT_EQ(word.getLength(), 0U);
  EXPECT_EQ(word.getString(), "");
}

TEST(ParserWordTest, AWordOfAWholeTextHasItsLength) {
  const TextWord word("camera");
  EXPECT_EQ(word->getStart(), 0U);
  EXPECT_EQ(word->getLength(), 6U);
  EXPECT_EQ(word->getString(), "camera");
}

TEST(ParserWordTest, AWordThatIsNotTheWholeTextIsEmpty) {
  const std::string text = "camera";
  const ParserWord word(text, false, 1.1);
  EXPECT_EQ(word.getStart(), 0U);
  EXPECT_EQ(word.getLength(), 0U);
  EXPECT_EQ(word.getString(), "");
}

TEST(ParserWordTest, ZeroBytesCountInTheLength) { EXPECT_EQ(TextWord("a\0b"s)->getLength(), 3U); }

TEST(ParserWordTest, AWordThatCameFromNoStreamHasNoPlace) {
  const TextWord word("camera");
  EXPECT_EQ(word->getLine(), 0U);
  EXPECT_EQ(word->getColumn(), 0U);
}

TEST(ParserWordTest, AWordNamesNoArrayAndNoTemplate) {
  const TextWord word("camera[3]");
  EXPECT_EQ(word->getArraySize(), ParserWord::NO_ARRAY);
  EXPECT_EQ(word->getTemplateWord(), nullptr);
}

TEST(ParserWordTest, AWordIsNotClassifiedBeforeItIsAsked) {
  EXPECT_EQ(TextWord("camera")->getType(), ParserWord::WORD_UNKNOWN);
  EXPECT_EQ(ParserWord(1.1).getType(), ParserWord::WORD_UNKNOWN);
}

// --- Identifiers ---------------------------------------------------------------------------------

TEST(ParserWordTest, AnIdentifierBeginsWithALetterOrAnUnderscore) {
  const auto accepts = [](char byte) { return TextWord(std::string(1, byte))->isIdentifier(); };
  checkBytes(accepts, std::string(LETTERS) + "_");
}

TEST(ParserWordTest, AnIdentifierGoesOnWithLettersDigitsAndNameMarks) {
  const auto accepts = [](char byte) { return TextWord("a"s + byte)->isIdentifier(); };
  checkBytes(accepts, std::string(LETTERS).append(DIGITS).append(NAME_MARKS));
}

TEST(ParserWordTest, TheLastByteOfALongIdentifierIsExaminedToo) {
  const auto accepts = [](char byte) { return TextWord("camera_2"s + byte)->isIdentifier(); };
  checkBytes(accepts, std::string(LETTERS).append(DIGITS).append(NAME_MARKS));
}

TEST(ParserWordTest, NameMarksMakeOneIdentifier) {
  EXPECT_TRUE(TextWord("a.b-c[2]:x%")->isIdentifier());
}

TEST(ParserWordTest, ADigitBeginsNoIdentifier) {
  const TextWord word("2a");
  EXPECT_FALSE(word->isIdentifier());
  EXPECT_TRUE(word->isInt());
}

TEST(ParserWordTest, YesIsABoolAndNeverAnIdentifier) {
  const TextWord word("yes");
  EXPECT_FALSE(word->isIdentifier());
  EXPECT_EQ(word->getType(), ParserWord::WORD_BOOL);
}

TEST(ParserWordTest, NoIsABoolAndNeverAnIdentifier) {
  const TextWord word("no");
  EXPECT_FALSE(word->isIdentifier());
  EXPECT_EQ(word->getType(), ParserWord::WORD_BOOL);
}

TEST(ParserWordTest, CapitalYesIsAnIdentifier) { EXPECT_TRUE(TextWord("Yes")->isIdentifier()); }

TEST(ParserWordTest, WordsThatOnlyBeginWithABoolAreIdentifiers) {
  EXPECT_TRUE(TextWord("yesterday")->isIdentifier());
  EXPECT_TRUE(TextWord("node")->isIdentifier());
}

// --- Keywords ------------------------------------------------------------------------------------

TEST(ParserWordTest, AKeywordBeginsWithANumberSign) {
  const auto accepts = [](char byte) { return TextWord(byte + "if"s)->isKeyword(); };
  checkBytes(accepts, "#");
}

TEST(ParserWordTest, BehindTheNumberSignStandsALetterOrANameMarkButNoDigit) {
  const auto accepts = [](char byte) { return TextWord("#"s + byte)->isKeyword(); };
  checkBytes(accepts, std::string(LETTERS).append(NAME_MARKS));
}

TEST(ParserWordTest, AKeywordGoesOnLikeAnIdentifier) {
  const auto accepts = [](char byte) { return TextWord("#a"s + byte)->isKeyword(); };
  checkBytes(accepts, std::string(LETTERS).append(DIGITS).append(NAME_MARKS));
}

TEST(ParserWordTest, ANumberSignWithAWordIsAKeyword) { EXPECT_TRUE(TextWord("#if")->isKeyword()); }

TEST(ParserWordTest, ANumberSignWithAColonIsAKeyword) { EXPECT_TRUE(TextWord("#:x")->isKeyword()); }

TEST(ParserWordTest, ANumberSignWithADigitIsNoKeyword) {
  EXPECT_FALSE(TextWord("#1")->isKeyword());
}

TEST(ParserWordTest, ANumberSignAloneIsNoKeyword) { EXPECT_FALSE(TextWord("#")->isKeyword()); }

TEST(ParserWordTest, BoolsAreNoKeywordsAndBecomeBoolsWhenAsked) {
  const TextWord yes("yes");
  const TextWord no("no");
  EXPECT_FALSE(yes->isKeyword());
  EXPECT_FALSE(no->isKeyword());
  EXPECT_EQ(yes->getType(), ParserWord::WORD_BOOL);
  EXPECT_EQ(no->getType(), ParserWord::WORD_BOOL);
}

TEST(ParserWordTest, AKeywordIsNoIdentifier) { EXPECT_FALSE(TextWord("#if")->isIdentifier()); }

// --- Operators, separators, bools, empty tags ----------------------------------------------------

TEST(ParserWordTest, AnEqualsSignIsAnOperator) { EXPECT_TRUE(TextWord("=")->isOperator()); }

TEST(ParserWordTest, NothingButOneEqualsSignIsAnOperator) {
  EXPECT_FALSE(TextWord("==")->isOperator());
  EXPECT_FALSE(TextWord("+")->isOperator());
  EXPECT_FALSE(TextWord(",")->isOperator());
}

TEST(ParserWordTest, ACommaIsASeparator) { EXPECT_TRUE(TextWord(",")->isSeparator()); }

TEST(ParserWordTest, NothingButOneCommaIsASeparator) {
  EXPECT_FALSE(TextWord(",,")->isSeparator());
  EXPECT_FALSE(TextWord(";")->isSeparator());
  EXPECT_FALSE(TextWord("=")->isSeparator());
}

TEST(ParserWordTest, YesIsABool) { EXPECT_TRUE(TextWord("yes")->isBool()); }

TEST(ParserWordTest, NoIsABool) { EXPECT_TRUE(TextWord("no")->isBool()); }

TEST(ParserWordTest, OtherSpellingsAreNoBools) {
  for (const char* text : {"Yes", "YES", "No", "ye", "yess", "n", "noo", "true", "false", "1"}) {
    EXPECT_FALSE(TextWord(text)->isBool()) << text;
  }
}

TEST(ParserWordTest, TheEmptyTagIsSpelledOut) { EXPECT_TRUE(TextWord("<empty>")->isEmptyTag()); }

TEST(ParserWordTest, OtherSpellingsAreNoEmptyTags) {
  for (const char* text : {"<empty", "empty>", "empty", "<Empty>", "<empty>>", "<>", "< empty>"}) {
    EXPECT_FALSE(TextWord(text)->isEmptyTag()) << text;
  }
}

TEST(ParserWordTest, AZeroByteEndsTheSpellingOfAWord) {
  EXPECT_TRUE(TextWord("=\0x"s)->isOperator());
  EXPECT_TRUE(TextWord(",\0x"s)->isSeparator());
  EXPECT_TRUE(TextWord("yes\0x"s)->isBool());
  EXPECT_TRUE(TextWord("no\0x"s, 1.0)->isBool());
  EXPECT_TRUE(TextWord("<empty>\0x"s)->isEmptyTag());
}

TEST(ParserWordTest, AZeroByteInsideTheSpellingIsNotPassedOver) {
  EXPECT_FALSE(TextWord("ye\0s"s)->isBool());
  EXPECT_FALSE(TextWord("\0="s)->isOperator());
}

// --- Asking whether a word is quoted on the way --------------------------------------------------

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeAnOperatorBecomesAString) {
  const TextWord word("\"=\"");
  EXPECT_FALSE(word->isOperator());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeASeparatorBecomesAString) {
  const TextWord word("\",\"");
  EXPECT_FALSE(word->isSeparator());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeABoolBecomesAString) {
  const TextWord word("\"yes\"");
  EXPECT_FALSE(word->isBool());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeAnEmptyTagBecomesAString) {
  const TextWord word("\"<empty>\"");
  EXPECT_FALSE(word->isEmptyTag());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeAnIdentifierBecomesAString) {
  const TextWord word("\"camera\"");
  EXPECT_FALSE(word->isIdentifier());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, AQuotedWordThatIsAskedToBeAKeywordBecomesAString) {
  const TextWord word("\"#if\"");
  EXPECT_FALSE(word->isKeyword());
  EXPECT_EQ(word->getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordTest, NumberTestsLeaveAQuotedWordUnclassified) {
  const TextWord word("\"12\"");
  EXPECT_FALSE(word->isBinaryData());
  EXPECT_FALSE(word->isInt());
  EXPECT_FALSE(word->isDouble());
  EXPECT_EQ(word->getType(), ParserWord::WORD_UNKNOWN);
}

TEST(ParserWordTest, InFormat10NoTestButIsStringClassifiesAQuotedWord) {
  const TextWord word("\"yes\"", 1.0);
  EXPECT_FALSE(word->isIdentifier());
  EXPECT_FALSE(word->isKeyword());
  EXPECT_FALSE(word->isOperator());
  EXPECT_FALSE(word->isSeparator());
  EXPECT_FALSE(word->isBool());
  EXPECT_FALSE(word->isEmptyTag());
  EXPECT_EQ(word->getType(), ParserWord::WORD_UNKNOWN);
}

// --- The memory of a word ------------------------------------------------------------------------

namespace {

struct ClassificationTest {
  const char* name;
  bool (ParserWord::*test)() const;
  ParserWord::Type type;
  const char* example;  ///< a word that the test accepts
};

constexpr ClassificationTest CLASSIFICATION_TESTS[] = {
    {"isIdentifier", &ParserWord::isIdentifier, ParserWord::WORD_IDENTIFIER, "camera"},
    {"isOperator", &ParserWord::isOperator, ParserWord::WORD_OPERATOR, "="},
    {"isSeparator", &ParserWord::isSeparator, ParserWord::WORD_SEPARATOR, ","},
    {"isKeyword", &ParserWord::isKeyword, ParserWord::WORD_KEYWORD, "#if"},
    {"isBool", &ParserWord::isBool, ParserWord::WORD_BOOL, "yes"},
    {"isBinaryData", &ParserWord::isBinaryData, ParserWord::WORD_BINARYDATA, "0x10"},
    {"isInt", &ParserWord::isInt, ParserWord::WORD_INT, "12"},
    {"isDouble", &ParserWord::isDouble, ParserWord::WORD_DOUBLE, "1.5"},
    {"isString", &ParserWord::isString, ParserWord::WORD_STRING, "\"a\""},
    {"isEmptyTag", &ParserWord::isEmptyTag, ParserWord::WORD_EMPTYTAG, "<empty>"},
};

/// Accepts no word by its bytes, so there is no example.
constexpr ClassificationTest BRACE_TEST = {"isBrace", &ParserWord::isBrace, ParserWord::WORD_BRACE,
                                           ""};

class ParserWordMemoryTest : public testing::TestWithParam<ClassificationTest> {
 protected:
  static bool ask(const ParserWord* word) { return (word->*GetParam().test)(); }
};

class ParserWordSuccessTest : public ParserWordMemoryTest {};

std::string nameOf(const testing::TestParamInfo<ClassificationTest>& info) {
  return info.param.name;
}

/// A word of every kind, and one of none.
constexpr const char* WORDS_OF_EVERY_KIND[] = {"camera", "=",  ",",   "#if",   "yes",     "0x10",
                                               "{",      "12", "1.5", "\"a\"", "<empty>", "?"};

}  // namespace

TEST_P(ParserWordMemoryTest, ATypedWordAnswersByItsTypeAlone) {
  for (const char* text : WORDS_OF_EVERY_KIND) {
    for (int number = 0; number < ParserWord::WORD_UNKNOWN; ++number) {
      TextWord word(text);
      word.setType(static_cast<ParserWord::Type>(number));
      EXPECT_EQ(ask(word.operator->()), number == GetParam().type) << text << " as " << number;
      EXPECT_EQ(word->getType(), number) << text;
    }
  }
}

TEST_P(ParserWordMemoryTest, AFailureLeavesTheWordUnclassified) {
  const TextWord word("?");
  EXPECT_FALSE(ask(word.operator->()));
  EXPECT_EQ(word->getType(), ParserWord::WORD_UNKNOWN);
}

TEST_P(ParserWordMemoryTest, AnEmptyWordIsNothing) {
  for (const double version : {1.0, 1.1}) {
    const ParserWord word(version);
    EXPECT_FALSE(ask(&word));
    EXPECT_EQ(word.getType(), ParserWord::WORD_UNKNOWN);
  }
}

INSTANTIATE_TEST_SUITE_P(Tests, ParserWordMemoryTest, testing::ValuesIn(CLASSIFICATION_TESTS),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Brace, ParserWordMemoryTest, testing::Values(BRACE_TEST), nameOf);

TEST_P(ParserWordSuccessTest, ASuccessIsRemembered) {
  const TextWord word(GetParam().example);
  EXPECT_TRUE(ask(word.operator->()));
  EXPECT_EQ(word->getType(), GetParam().type);
  EXPECT_TRUE(ask(word.operator->()));
}

INSTANTIATE_TEST_SUITE_P(Tests, ParserWordSuccessTest, testing::ValuesIn(CLASSIFICATION_TESTS),
                         nameOf);

TEST(ParserWordTest, NoWordIsABraceByItsBytes) {
  for (const char* text : {"{", "}", "(", ")", "{}"}) {
    const TextWord word(text);
    EXPECT_FALSE(word->isBrace()) << text;
    EXPECT_EQ(word->getType(), ParserWord::WORD_UNKNOWN) << text;
  }
}

TEST(ParserWordTest, AWordTakenForADoubleIsNoIntAnyMore) {
  const TextWord word("12");
  EXPECT_TRUE(word->isDouble());
  EXPECT_FALSE(word->isInt());
}

TEST(ParserWordTest, AWordTakenForAnIntIsNoBinaryDataAnyMore) {
  const TextWord word("0x10");
  EXPECT_TRUE(word->isInt());
  EXPECT_FALSE(word->isBinaryData());
}

TEST(ParserWordTest, AWordTakenForAnIdentifierIsNoDoubleAnyMore) {
  const TextWord word("nan");
  EXPECT_TRUE(word->isIdentifier());
  EXPECT_FALSE(word->isDouble());
}

TEST(ParserWordTest, AWordTakenForADoubleIsNoIdentifierAnyMore) {
  const TextWord word("nan");
  EXPECT_TRUE(word->isDouble());
  EXPECT_FALSE(word->isIdentifier());
}
