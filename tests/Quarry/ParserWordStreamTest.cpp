#include <Quarry/internal/ParserWordStream.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

using Quarry::ParserWord;
using Quarry::ParserWordStream;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Words = std::vector<std::string>;

std::string bytesOf(const ParserWord& word, const std::string& text) {
  return text.substr(word.getStart(), word.getLength());
}

/// Returns the bytes of every word.
Words cut(const std::string& text) {
  Words words;
  ParserWordStream stream(text, 1.1);
  while (const ParserWord* word = stream.next())
    words.push_back(bytesOf(*word, text));
  return words;
}

/// Returns every word as `bytes@line:column`.
Words place(const std::string& text) {
  Words words;
  ParserWordStream stream(text, 1.1);
  while (const ParserWord* word = stream.next()) {
    words.push_back(bytesOf(*word, text) + "@" + std::to_string(word->getLine()) + ":" +
                    std::to_string(word->getColumn()));
  }
  return words;
}

}  // namespace

// --- Delimiters ----------------------------------------------------------------------------------

TEST(ParserWordStreamTest, EachDelimiterIsAWordOfOneByte) {
  EXPECT_THAT(cut("{}(),="), ElementsAre("{", "}", "(", ")", ",", "="));
}

TEST(ParserWordStreamTest, EqualDelimitersInARowAreWordsOfTheirOwn) {
  EXPECT_THAT(cut("==,,"), ElementsAre("=", "=", ",", ","));
}

TEST(ParserWordStreamTest, OpeningBraceEndsAWord) { EXPECT_THAT(cut("g{"), ElementsAre("g", "{")); }

TEST(ParserWordStreamTest, ClosingBraceEndsAWord) { EXPECT_THAT(cut("1}"), ElementsAre("1", "}")); }

TEST(ParserWordStreamTest, ParenthesesAndCommaEndAWord) {
  EXPECT_THAT(cut("f(x,y)"), ElementsAre("f", "(", "x", ",", "y", ")"));
}

TEST(ParserWordStreamTest, EqualsSignEndsAWord) {
  EXPECT_THAT(cut("a=1"), ElementsAre("a", "=", "1"));
}

TEST(ParserWordStreamTest, BlanksAroundADelimiterMakeNoDifference) {
  EXPECT_THAT(cut("a = 1"), ElementsAre("a", "=", "1"));
}

TEST(ParserWordStreamTest, DelimitersInsideQuotesAreOrdinaryBytes) {
  EXPECT_THAT(cut("\"{}(),=\""), ElementsAre("\"{}(),=\""));
}

// --- Blanks and line breaks ----------------------------------------------------------------------

TEST(ParserWordStreamTest, ABlankEndsAWordAndBelongsToNone) {
  EXPECT_THAT(cut("a b"), ElementsAre("a", "b"));
}

TEST(ParserWordStreamTest, ATabEndsAWordAndBelongsToNone) {
  EXPECT_THAT(cut("a\tb"), ElementsAre("a", "b"));
}

TEST(ParserWordStreamTest, ALineFeedEndsAWordAndBelongsToNone) {
  EXPECT_THAT(cut("a\nb"), ElementsAre("a", "b"));
}

TEST(ParserWordStreamTest, ACarriageReturnEndsAWordAndBelongsToNone) {
  EXPECT_THAT(cut("a\rb"), ElementsAre("a", "b"));
}

TEST(ParserWordStreamTest, RunsOfBlanksAndLineBreaksAreSkipped) {
  EXPECT_THAT(cut(" \t\r\n a \n\n\t b \r\n"), ElementsAre("a", "b"));
}

TEST(ParserWordStreamTest, VerticalTabAndFormFeedAreOrdinaryBytes) {
  EXPECT_THAT(cut("a\vb\fc"), ElementsAre("a\vb\fc"));
}

TEST(ParserWordStreamTest, BlanksInsideQuotesBelongToTheWord) {
  EXPECT_THAT(cut("\"a \tb\""), ElementsAre("\"a \tb\""));
}

TEST(ParserWordStreamTest, ALineFeedClosesAQuoteByForce) {
  EXPECT_THAT(cut("\"a b\nc d"), ElementsAre("\"a b", "c", "d"));
}

TEST(ParserWordStreamTest, ACarriageReturnClosesAQuoteByForce) {
  EXPECT_THAT(cut("\"a b\rc d"), ElementsAre("\"a b", "c", "d"));
}

// --- Other bytes ---------------------------------------------------------------------------------

TEST(ParserWordStreamTest, EveryOtherByteIsPartOfAWord) {
  EXPECT_THAT(cut("#[];/*\\'<>"), ElementsAre("#[];/*\\'<>"));
}

TEST(ParserWordStreamTest, SlashesBeginNoComment) {
  EXPECT_THAT(cut("a 1 // b"), ElementsAre("a", "1", "//", "b"));
}

TEST(ParserWordStreamTest, BytesAbove127ArePartOfAWord) {
  EXPECT_THAT(cut("\xC3\xBC \xFF"), ElementsAre("\xC3\xBC", "\xFF"));
}

TEST(ParserWordStreamTest, AZeroByteIsPartOfAWord) {
  const std::string text("a\0b c", 5);
  EXPECT_THAT(cut(text), ElementsAre(std::string("a\0b", 3), "c"));
}

TEST(ParserWordStreamTest, TheClosingFoldMarkerIsCutAtItsBraces) {
  EXPECT_THAT(cut("/*}}}*/"), ElementsAre("/*", "}", "}", "}", "*/"));
}

// --- Quotes --------------------------------------------------------------------------------------

TEST(ParserWordStreamTest, AQuotedStringIsOneWordWithItsQuotes) {
  EXPECT_THAT(cut("s \"a, {b} c\" 1"), ElementsAre("s", "\"a, {b} c\"", "1"));
}

TEST(ParserWordStreamTest, AQuoteAsTheFirstByteOfTheTextOpens) {
  const std::string text = "\"a text that is too long to be held within the string object\"";
  EXPECT_THAT(cut(text), ElementsAre(text));
}

TEST(ParserWordStreamTest, AClosingQuoteDoesNotEndTheWord) {
  EXPECT_THAT(cut("\"a b\"c d"), ElementsAre("\"a b\"c", "d"));
}

TEST(ParserWordStreamTest, AQuoteInTheMiddleOfAWordOpensToo) {
  EXPECT_THAT(cut("a\"b c\" d"), ElementsAre("a\"b c\"", "d"));
}

TEST(ParserWordStreamTest, AdjoiningStringsAreOneWord) {
  EXPECT_THAT(cut("\"a\"\"b c\""), ElementsAre("\"a\"\"b c\""));
}

TEST(ParserWordStreamTest, ADelimiterBehindAClosingQuoteEndsTheWord) {
  EXPECT_THAT(cut("\"a\",\"b\""), ElementsAre("\"a\"", ",", "\"b\""));
}

TEST(ParserWordStreamTest, AQuoteBehindABackslashDoesNotClose) {
  EXPECT_THAT(cut("\"a\\\" b\" c"), ElementsAre("\"a\\\" b\"", "c"));
}

TEST(ParserWordStreamTest, AQuoteBehindABackslashDoesNotOpen) {
  EXPECT_THAT(cut("a\\\"b c"), ElementsAre("a\\\"b", "c"));
}

TEST(ParserWordStreamTest, AnEscapedBackslashBeforeTheClosingQuoteLeavesTheStringOpen) {
  EXPECT_THAT(cut("\"a\\\\\" b, c\nd"), ElementsAre("\"a\\\\\" b, c", "d"));
}

TEST(ParserWordStreamTest, AnUnclosedQuoteCostsOneLine) {
  EXPECT_THAT(cut("s \"a b\nt \"c d\""), ElementsAre("s", "\"a b", "t", "\"c d\""));
}

TEST(ParserWordStreamTest, AnUnclosedQuoteOnTheLastLineEndsWithTheText) {
  EXPECT_THAT(cut("s \"a b"), ElementsAre("s", "\"a b"));
}

TEST(ParserWordStreamTest, AnEmptyStringIsAWordOfTwoBytes) {
  EXPECT_THAT(cut("s \"\" 1"), ElementsAre("s", "\"\"", "1"));
}

// --- The end of the text -------------------------------------------------------------------------

TEST(ParserWordStreamTest, EmptyTextHasNoWord) { EXPECT_THAT(cut(""), IsEmpty()); }

TEST(ParserWordStreamTest, TextOfBlanksAndLineBreaksHasNoWord) {
  EXPECT_THAT(cut(" \t \r\n \n"), IsEmpty());
}

TEST(ParserWordStreamTest, TheLastWordNeedsNoLineBreak) {
  EXPECT_THAT(cut("a\nlast"), ElementsAre("a", "last"));
}

TEST(ParserWordStreamTest, EmptyTextIsExhaustedFromTheBeginning) {
  const std::string text;
  EXPECT_TRUE(ParserWordStream(text, 1.1).isExhausted());
}

TEST(ParserWordStreamTest, TextOfBlanksIsNotExhaustedBeforeItWasScanned) {
  const std::string text = "  ";
  ParserWordStream stream(text, 1.1);
  EXPECT_FALSE(stream.isExhausted());
  EXPECT_EQ(stream.next(), nullptr);
  EXPECT_TRUE(stream.isExhausted());
}

TEST(ParserWordStreamTest, AWordAtTheEndOfTheTextExhaustsIt) {
  const std::string text = "a";
  ParserWordStream stream(text, 1.1);
  stream.next();
  EXPECT_TRUE(stream.isExhausted());
}

TEST(ParserWordStreamTest, AWordAndOneBlankAtTheEndExhaustTheText) {
  const std::string text = "a ";
  ParserWordStream stream(text, 1.1);
  stream.next();
  EXPECT_TRUE(stream.isExhausted());
}

TEST(ParserWordStreamTest, AWordAndTwoBlanksAtTheEndDoNotExhaustTheText) {
  const std::string text = "a  ";
  ParserWordStream stream(text, 1.1);
  stream.next();
  EXPECT_FALSE(stream.isExhausted());
  EXPECT_EQ(stream.next(), nullptr);
}

TEST(ParserWordStreamTest, ADelimiterBehindAWordIsLeftForTheNextCall) {
  const std::string text = "a}";
  ParserWordStream stream(text, 1.1);
  stream.next();
  EXPECT_FALSE(stream.isExhausted());
}

// --- Lines ---------------------------------------------------------------------------------------

TEST(ParserWordStreamTest, LinesCountFromOne) { EXPECT_THAT(place("{"), ElementsAre("{@1:0")); }

TEST(ParserWordStreamTest, ALineFeedEndsALine) {
  EXPECT_THAT(place("{\n{\n\n{"), ElementsAre("{@1:0", "{@2:0", "{@4:0"));
}

TEST(ParserWordStreamTest, ACarriageReturnEndsALine) {
  EXPECT_THAT(place("{\r{"), ElementsAre("{@1:0", "{@2:0"));
}

TEST(ParserWordStreamTest, CarriageReturnAndLineFeedCountTwice) {
  EXPECT_THAT(place("{\r\n{"), ElementsAre("{@1:0", "{@3:0"));
}

TEST(ParserWordStreamTest, AWordEndedByALineBreakStandsOnTheLineThatItEnds) {
  EXPECT_THAT(place("a\nb\n"), ElementsAre("a@1:1", "b@2:1"));
}

TEST(ParserWordStreamTest, ALineBreakThatClosesAQuoteEndsALine) {
  EXPECT_THAT(place("\"a b\n{"), ElementsAre("\"a b@1:1", "{@2:0"));
}

// --- Columns -------------------------------------------------------------------------------------

TEST(ParserWordStreamTest, TheColumnOfADelimiterIsItsOffset) {
  EXPECT_THAT(place("{ { ("), ElementsAre("{@1:0", "{@1:2", "(@1:4"));
}

TEST(ParserWordStreamTest, TheColumnOfAWordEndedByADelimiterIsItsOffset) {
  EXPECT_THAT(place("  abc="), ElementsAre("abc@1:2", "=@1:5"));
}

TEST(ParserWordStreamTest, TheColumnOfAWordEndedByTheTextIsItsOffset) {
  EXPECT_THAT(place("  abc"), ElementsAre("abc@1:2"));
}

TEST(ParserWordStreamTest, TheColumnOfAWordEndedByABlankIsOneMoreThanItsOffset) {
  EXPECT_THAT(place("  abc {"), ElementsAre("abc@1:3", "{@1:6"));
}

TEST(ParserWordStreamTest, TheColumnOfAWordEndedByATabIsOneMoreThanItsOffset) {
  EXPECT_THAT(place("  abc\t{"), ElementsAre("abc@1:3", "{@1:6"));
}

TEST(ParserWordStreamTest, TheColumnOfAWordEndedByALineBreakIsOneMoreThanItsOffset) {
  EXPECT_THAT(place("  abc\n{"), ElementsAre("abc@1:3", "{@2:0"));
}

TEST(ParserWordStreamTest, ColumnsCountFromTheBeginningOfTheLine) {
  EXPECT_THAT(place("long line\r  x="), ElementsAre("long@1:1", "line@1:6", "x@2:2", "=@2:3"));
}

TEST(ParserWordStreamTest, ATabCountsAsOneColumn) {
  EXPECT_THAT(place("\t{"), ElementsAre("{@1:1"));
}

TEST(ParserWordStreamTest, ColumnsCountBytes) {
  EXPECT_THAT(place("\xC3\xBC={"), ElementsAre("\xC3\xBC@1:0", "=@1:2", "{@1:3"));
}

TEST(ParserWordStreamTest, TheColumnOfAStringIsThatOfItsOpeningQuote) {
  EXPECT_THAT(place(" \"a b\","), ElementsAre("\"a b\"@1:1", ",@1:6"));
}

// --- The word ------------------------------------------------------------------------------------

TEST(ParserWordStreamTest, EachWordIsNotYetClassified) {
  const std::string text = "a b";
  ParserWordStream stream(text, 1.1);
  ASSERT_TRUE(stream.next()->isIdentifier());
  EXPECT_EQ(stream.next()->getType(), ParserWord::WORD_UNKNOWN);
}

TEST(ParserWordStreamTest, EveryCallReturnsTheSameWordAimedAnew) {
  const std::string text = "a b";
  ParserWordStream stream(text, 1.1);
  const ParserWord* first = stream.next();
  EXPECT_EQ(stream.next(), first);
  EXPECT_EQ(first->getStart(), 2U);
}

TEST(ParserWordStreamTest, WordsOfFormat11ResolveEscapes) {
  const std::string text = R"("a\n")";
  EXPECT_EQ(ParserWordStream(text, 1.1).next()->getString(), "\"a\n\"");
}

TEST(ParserWordStreamTest, WordsOfFormat10StandAsTheyAre) {
  const std::string text = R"("a\n")";
  EXPECT_EQ(ParserWordStream(text, 1.0).next()->getString(), R"("a\n")");
}

TEST(ParserWordStreamTest, WordsNameNoArrayAndNoTemplate) {
  const std::string text = "a[3]<t>";
  ParserWordStream stream(text, 1.1);
  const ParserWord* word = stream.next();
  EXPECT_EQ(word->getArraySize(), ParserWord::NO_ARRAY);
  EXPECT_EQ(word->getTemplateWord(), nullptr);
}
