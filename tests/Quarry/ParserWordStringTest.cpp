// How a word becomes a string in both formats, how it is copied, and how it is compared.
#include <Quarry/ParserWord.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/StringText.h>
#include <Quarry/internal/WordEditor.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <string_view>

using namespace std::string_literals;

using Quarry::ParserWord;
using Quarry::ParserWordStream;
using Quarry::WordEditor;

namespace {

std::string stringOf(const std::string& text, double version) {
  return ParserWord(text, true, version).getString();
}

std::string stringOf10(const std::string& text) { return stringOf(text, 1.0); }
std::string stringOf11(const std::string& text) { return stringOf(text, 1.1); }

std::string unescape(const std::string& text) {
  std::string out;
  Quarry::appendUnescaped(out, text);
  return out;
}

/// Resolves escapes one byte at a time.
std::string unescapeByByte(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      out += text[i];
    } else if (++i < text.size()) {
      const char byte = text[i];
      out += byte == 'n' ? '\n' : byte == 'r' ? '\r' : byte == 't' ? '\t' : byte;
    }
  }
  return out;
}

}  // namespace

// --- The format version chooses the rule ---------------------------------------------------------

TEST(ParserWordStringTest, Version10KeepsEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", 1.0), "\"a\\nb\"");
}

TEST(ParserWordStringTest, Version11ResolvesEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", 1.1), "\"a\nb\"");
}

TEST(ParserWordStringTest, AVersionJustBelow11KeepsEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", std::nextafter(1.1, 0.0)), "\"a\\nb\"");
}

TEST(ParserWordStringTest, LaterVersionsResolveEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", 2.0), "\"a\nb\"");
}

TEST(ParserWordStringTest, NegativeVersionsKeepEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", -1.1), "\"a\\nb\"");
}

TEST(ParserWordStringTest, AVersionThatIsNoNumberResolvesEscapes) {
  EXPECT_EQ(stringOf("\"a\\nb\"", std::numeric_limits<double>::quiet_NaN()), "\"a\nb\"");
}

// --- Format 1.0 ----------------------------------------------------------------------------------

TEST(ParserWordStringTest, InFormat10TheBytesStandAsTheyAre) {
  EXPECT_EQ(stringOf10("\"C:\\temp \\\"x\\\" \xFC\""), "\"C:\\temp \\\"x\\\" \xFC\"");
}

TEST(ParserWordStringTest, InFormat10TheQuotesStay) { EXPECT_EQ(stringOf10("\"a\""), "\"a\""); }

TEST(ParserWordStringTest, InFormat10AZeroByteCutsTheWordShort) {
  EXPECT_EQ(stringOf10("\"a\0b\""s), "\"a");
  EXPECT_EQ(stringOf10("\0b"s), "");
}

TEST(ParserWordStringTest, InFormat10AnEmptyWordIsAnEmptyString) {
  EXPECT_EQ(ParserWord(1.0).getString(), "");
}

TEST(ParserWordStringTest, TheRuleOfFormat10ReplacesTheString) {
  const std::string text = "b";
  std::string out = "a";
  ParserWord(text, true, 1.0).getString_0100(out);
  EXPECT_EQ(out, "b");
}

TEST(ParserWordStringTest, TheRuleOfFormat10EmptiesTheStringForAnEmptyWord) {
  std::string out = "a";
  ParserWord(1.0).getString_0100(out);
  EXPECT_EQ(out, "");
}

TEST(ParserWordStringTest, TheRuleOfFormat10DoesNotClassifyTheWord) {
  const std::string text = "\"a\"";
  const ParserWord word(text, true, 1.0);
  EXPECT_EQ(word.getString(), "\"a\"");
  EXPECT_EQ(word.getType(), ParserWord::WORD_UNKNOWN);
}

// --- Format 1.1 ----------------------------------------------------------------------------------

TEST(ParserWordStringTest, AnEscapedDoubleQuoteIsADoubleQuote) {
  EXPECT_EQ(stringOf11(R"("a\"b")"), R"("a"b")");
}

TEST(ParserWordStringTest, AnEscapedSingleQuoteIsASingleQuote) {
  EXPECT_EQ(stringOf11(R"("a\'b")"), R"("a'b")");
}

TEST(ParserWordStringTest, AnEscapedBackslashIsABackslash) {
  EXPECT_EQ(stringOf11(R"("a\\b")"), R"("a\b")");
}

TEST(ParserWordStringTest, AnEscapedNIsALineFeed) { EXPECT_EQ(stringOf11(R"("\n")"), "\"\x0A\""); }

TEST(ParserWordStringTest, AnEscapedRIsACarriageReturn) {
  EXPECT_EQ(stringOf11(R"("\r")"), "\"\x0D\"");
}

TEST(ParserWordStringTest, AnEscapedTIsATab) { EXPECT_EQ(stringOf11(R"("\t")"), "\"\x09\""); }

TEST(ParserWordStringTest, AnyOtherEscapedByteIsItself) {
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    if (byte == 'n' || byte == 'r' || byte == 't') continue;
    EXPECT_EQ(stringOf11("\"\\"s + byte + "\""), "\""s + byte + "\"") << "byte " << code;
  }
}

TEST(ParserWordStringTest, AnEscapedBackslashEscapesNothing) {
  EXPECT_EQ(stringOf11(R"("\\n")"), R"("\n")");
}

TEST(ParserWordStringTest, SeveralEscapesInARowAreAllResolved) {
  EXPECT_EQ(stringOf11(R"("\\\"\t\t\q")"), "\"\\\"\t\tq\"");
}

TEST(ParserWordStringTest, TheEnclosingQuotesStay) { EXPECT_EQ(stringOf11("\"a\""), "\"a\""); }

TEST(ParserWordStringTest, TheClosingQuoteMayItselfBeEscaped) {
  EXPECT_EQ(stringOf11(R"("a\")"), R"("a")");
}

TEST(ParserWordStringTest, ABackslashAtTheEndOfTheWordIsDropped) {
  const std::string text = R"("a\)";
  ParserWord word(text, true, 1.1);
  WordEditor(word).setType(ParserWord::WORD_STRING);
  EXPECT_EQ(word.getString(), "\"a");
}

TEST(ParserWordStringTest, ABackslashAtTheEndOfATextIsDropped) {
  EXPECT_EQ(unescape("a\\"), "a");
  EXPECT_EQ(unescape("\\"), "");
  EXPECT_EQ(unescape("a\\\\"), "a\\");
}

TEST(ParserWordStringTest, AQuotedWordKeepsItsZeroBytes) {
  EXPECT_EQ(stringOf11("\"a\0b\\n\""s), "\"a\0b\n\""s);
}

TEST(ParserWordStringTest, AZeroByteCutsAnUnquotedWordShort) {
  EXPECT_EQ(stringOf11("a\0b"s), "a");
}

TEST(ParserWordStringTest, UnquotedWordsKeepTheirBackslashes) {
  EXPECT_EQ(stringOf11(R"(a\nb)"), R"(a\nb)");
  EXPECT_EQ(stringOf11(R"("a\nb)"), R"("a\nb)");
}

TEST(ParserWordStringTest, AWordTakenForSomethingElseKeepsItsEscapes) {
  const std::string text = R"("a\nb")";
  ParserWord word(text, true, 1.1);
  WordEditor(word).setType(ParserWord::WORD_INT);
  EXPECT_EQ(word.getString(), text);
}

TEST(ParserWordStringTest, TheRuleOfFormat11AppendsAString) {
  const std::string text = "\"b\"";
  std::string out = "a";
  ParserWord(text, true, 1.1).getString_0110(out);
  EXPECT_EQ(out, "a\"b\"");
}

TEST(ParserWordStringTest, TheRuleOfFormat11ReplacesByAnyOtherWord) {
  const std::string text = "b";
  std::string out = "a";
  ParserWord(text, true, 1.1).getString_0110(out);
  EXPECT_EQ(out, "b");
}

TEST(ParserWordStringTest, TheRuleOfFormat11EmptiesTheStringForAnEmptyWord) {
  std::string out = "a";
  ParserWord(1.1).getString_0110(out);
  EXPECT_EQ(out, "");
}

TEST(ParserWordStringTest, TheRuleOfFormat11ClassifiesAQuotedWord) {
  const std::string text = "\"a\"";
  const ParserWord word(text, true, 1.1);
  EXPECT_EQ(word.getString(), "\"a\"");
  EXPECT_EQ(word.getType(), ParserWord::WORD_STRING);
}

TEST(ParserWordStringTest, BothRulesCanBeAskedOfOneWord) {
  const std::string text = R"("a\nb")";
  const ParserWord word(text, true, 1.0);
  std::string out;
  word.getString_0110(out);
  EXPECT_EQ(out, "\"a\nb\"");
  EXPECT_EQ(word.getString(), text);
}

TEST(ParserWordStringTest, UnescapingAgreesWithAReadingByteByByte) {
  constexpr std::string_view alphabet("\\\\\\nrt\"'ab\n\0\xFF", 13);
  std::mt19937 random(7);
  for (int i = 0; i < 200'000; ++i) {
    std::string text(random() % 12, ' ');
    for (char& byte : text)
      byte = alphabet[random() % alphabet.size()];
    ASSERT_EQ(unescape(text), unescapeByByte(text)) << testing::PrintToString(text);
  }
}

TEST(ParserWordStringTest, AWordInTheMiddleOfATextIsCutOut) {
  const std::string text = R"(name "a\tb" "c")";
  ParserWordStream words(text, 1.1);
  words.next();
  EXPECT_EQ(words.next()->getString(), "\"a\tb\"");
}

// --- Copies --------------------------------------------------------------------------------------

namespace {

/// A word of a text with everything that a copy has to carry.
ParserWord makeRichWord(const std::string& text, const std::string& templateText) {
  ParserWordStream words(text, 1.0);
  words.next();
  ParserWord word(*words.next());
  WordEditor editor(word);
  editor.setType(ParserWord::WORD_STRING);
  editor.setArraySize(7);
  editor.setTemplateWord(ParserWord(templateText, true, 1.0));
  return word;
}

const std::string richText = "name\n  \"a\\nb\" end";
const std::string templateText = R"("t\nu")";

void checkIsRich(const ParserWord& word) {
  EXPECT_EQ(word.getStart(), 7U);
  EXPECT_EQ(word.getLength(), 6U);
  EXPECT_EQ(word.getLine(), 2U);
  EXPECT_EQ(word.getColumn(), 3U);
  EXPECT_EQ(word.getType(), ParserWord::WORD_STRING);
  EXPECT_EQ(word.getArraySize(), 7U);
  EXPECT_EQ(word.getString(), R"("a\nb")");
}

}  // namespace

TEST(ParserWordCopyTest, ACopyCarriesEverything) {
  const ParserWord word = makeRichWord(richText, templateText);
  const ParserWord copy(word);
  checkIsRich(copy);
}

TEST(ParserWordCopyTest, AnAssignedWordCarriesEverything) {
  ParserWord copy(1.1);
  copy = makeRichWord(richText, templateText);
  checkIsRich(copy);
}

TEST(ParserWordCopyTest, AnAssignedWordTakesTheStringRule) {
  const std::string text = R"("a\nb")";
  ParserWord word(text, true, 1.0);
  word = ParserWord(text, true, 1.1);
  EXPECT_EQ(word.getString(), "\"a\nb\"");
}

TEST(ParserWordCopyTest, ACopyHasATemplateWordOfItsOwn) {
  auto word = std::make_unique<ParserWord>(makeRichWord(richText, templateText));
  const ParserWord copy(*word);
  ASSERT_NE(copy.getTemplateWord(), nullptr);
  EXPECT_NE(copy.getTemplateWord(), word->getTemplateWord());
  word.reset();
  EXPECT_EQ(copy.getTemplateWord()->getString(), templateText);
}

TEST(ParserWordCopyTest, AnAssignedWordHasATemplateWordOfItsOwn) {
  auto word = std::make_unique<ParserWord>(makeRichWord(richText, templateText));
  ParserWord copy(1.1);
  copy = *word;
  ASSERT_NE(copy.getTemplateWord(), nullptr);
  EXPECT_NE(copy.getTemplateWord(), word->getTemplateWord());
  word.reset();
  EXPECT_EQ(copy.getTemplateWord()->getString(), templateText);
}

TEST(ParserWordCopyTest, TheCopyOfATemplateWordKeepsItsStringRule) {
  ParserWord word(1.1);
  WordEditor(word).setTemplateWord(ParserWord(templateText, true, 1.0));
  EXPECT_EQ(ParserWord(word).getTemplateWord()->getString(), R"("t\nu")");
  WordEditor(word).setTemplateWord(ParserWord(templateText, true, 1.1));
  EXPECT_EQ(ParserWord(word).getTemplateWord()->getString(), "\"t\nu\"");
}

TEST(ParserWordCopyTest, ATemplateOfATemplateIsCopiedToo) {
  const std::string innermost = "innermost";
  ParserWord inner(1.1);
  WordEditor(inner).setTemplateWord(ParserWord(innermost, true, 1.1));
  ParserWord word(1.1);
  WordEditor(word).setTemplateWord(inner);
  const ParserWord copy(word);
  EXPECT_EQ(copy.getTemplateWord()->getTemplateWord()->getString(), "innermost");
}

TEST(ParserWordCopyTest, AssigningAWordWithoutATemplateRemovesTheTemplate) {
  ParserWord word = makeRichWord(richText, templateText);
  word = ParserWord(1.1);
  EXPECT_EQ(word.getTemplateWord(), nullptr);
  EXPECT_EQ(word.getArraySize(), ParserWord::NO_ARRAY);
}

TEST(ParserWordCopyTest, AWordMayBeAssignedToItself) {
  ParserWord word = makeRichWord(richText, templateText);
  const ParserWord& same = word;
  word = same;
  checkIsRich(word);
  EXPECT_EQ(word.getTemplateWord()->getString(), templateText);
}

TEST(ParserWordCopyTest, AWordMayBeAssignedItsOwnTemplate) {
  ParserWord word = makeRichWord(richText, templateText);
  word = *word.getTemplateWord();
  EXPECT_EQ(word.getString(), templateText);
  EXPECT_EQ(word.getTemplateWord(), nullptr);
}

TEST(ParserWordCopyTest, ACopyViewsTheSameCharacters) {
  std::string text = "abc";
  const ParserWord copy(ParserWord(text, true, 1.1));
  text[0] = 'X';
  EXPECT_EQ(copy.getString(), "Xbc");
}

TEST(ParserWordCopyTest, ClassifyingACopyLeavesTheSourceAlone) {
  const std::string text = "12";
  const ParserWord word(text, true, 1.1);
  const ParserWord copy(word);
  EXPECT_TRUE(copy.isInt());
  EXPECT_EQ(word.getType(), ParserWord::WORD_UNKNOWN);
}

// --- Comparison ----------------------------------------------------------------------------------

TEST(ParserWordCompareTest, AWordEqualsItsText) {
  const std::string text = "camera";
  EXPECT_TRUE(ParserWord(text, true, 1.1) == "camera");
}

TEST(ParserWordCompareTest, AWordEqualsEveryBeginningOfIt) {
  const std::string text = "{}";
  EXPECT_TRUE(ParserWord(text, true, 1.1) == "{");
}

TEST(ParserWordCompareTest, AWordEqualsTheEmptyText) {
  const std::string text = "camera";
  EXPECT_TRUE(ParserWord(text, true, 1.1) == "");
}

TEST(ParserWordCompareTest, ADifferentByteMakesTheDifference) {
  const std::string text = "camera";
  EXPECT_FALSE(ParserWord(text, true, 1.1) == "b");
  EXPECT_FALSE(ParserWord(text, true, 1.1) == "camerb");
  EXPECT_FALSE(ParserWord(text, true, 1.1) == "Camera");
}

TEST(ParserWordCompareTest, ATextThatIsLongerThanTheDocumentDiffers) {
  const std::string text = "camera";
  EXPECT_FALSE(ParserWord(text, true, 1.1) == "cameras");
}

TEST(ParserWordCompareTest, TheLengthOfTheWordDoesNotEndTheComparison) {
  const std::string text = "first second third";
  ParserWordStream words(text, 1.1);
  EXPECT_TRUE(*words.next() == "first second third");
  EXPECT_TRUE(*words.next() == "second th");
}

TEST(ParserWordCompareTest, AnEmptyWordEqualsOnlyTheEmptyText) {
  const std::string text = "camera";
  EXPECT_TRUE(ParserWord(1.1) == "");
  EXPECT_FALSE(ParserWord(1.1) == "c");
  EXPECT_FALSE(ParserWord(text, false, 1.1) == "c");
}

TEST(ParserWordCompareTest, AZeroByteInTheDocumentDiffers) {
  const std::string text = "a\0b"s;
  EXPECT_TRUE(ParserWord(text, true, 1.1) == "a");
  EXPECT_FALSE(ParserWord(text, true, 1.1) == "ab");
}

TEST(ParserWordCompareTest, ComparingDoesNotClassify) {
  const std::string text = "=";
  const ParserWord word(text, true, 1.1);
  EXPECT_TRUE(word == "=");
  EXPECT_EQ(word.getType(), ParserWord::WORD_UNKNOWN);
}
