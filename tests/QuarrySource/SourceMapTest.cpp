// Places in the preprocessed text and places in files lead to each other.

#include <QuarrySource/SourceDocument.h>
#include <gmock/gmock.h>

#include "ShownDocument.h"
#include "support/LinearTime.h"

using Quarry::SourceDocument;
using Quarry::SourcePiece;
using Quarry::SourcePosition;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;
using TestSupport::showOrigin;

namespace Quarry {

static void PrintTo(const SourcePosition& position, std::ostream* out) {
  *out << position.opening << ":" << position.offset;
}

}  // namespace Quarry

namespace {

/// Three files, one within another; in the text they are "a 1 b 2 c 3 d 4".
const MemoryFiles NESTED = {{"top.cfg", "a 1 #include \"mid.cfg\"d 4"},
                            {"mid.cfg", "b 2 //\n#include \"low.cfg\""},
                            {"low.cfg", "// low\nc 3 "}};

std::vector<std::string> showPieces(const std::vector<SourcePiece>& pieces) {
  std::vector<std::string> shown;
  for (const SourcePiece& piece : pieces) {
    shown.push_back(std::to_string(piece.position.opening) + ":" +
                    std::to_string(piece.position.offset) + "+" + std::to_string(piece.length));
  }
  return shown;
}

}  // namespace

// --- From the text to a file ---------------------------------------------------------------------

TEST(SourceMapTest, AByteOfAPlainFileIsWhereItIs) {
  EXPECT_EQ(readDocument("a 1")->getPosition(2), (SourcePosition{0, 2}));
}

TEST(SourceMapTest, AByteBehindACommentIsFurtherOn) {
  EXPECT_EQ(readDocument("a // b\n1")->getPosition(2), (SourcePosition{0, 7}));
}

TEST(SourceMapTest, AByteOfAnIncludedFileComesFromItsOpening) {
  const auto document = readDocument(NESTED);
  ASSERT_EQ(document->getText(), "a 1 b 2 c 3 d 4");
  EXPECT_EQ(document->getPosition(4), (SourcePosition{1, 0}));
  EXPECT_EQ(document->getPosition(8), (SourcePosition{2, 7}));
  EXPECT_EQ(document->getPosition(12), (SourcePosition{0, 22}));
}

TEST(SourceMapTest, ThePlaceBehindTheTextIsTheEndOfItsLastPiece) {
  EXPECT_EQ(readDocument("a 1 // b\n")->getPosition(4), (SourcePosition{0, 4}));
}

TEST(SourceMapTest, WithoutTextThePlaceIsTheBeginningOfTheTopFile) {
  EXPECT_EQ(readDocument("// b\n")->getPosition(0), (SourcePosition{0, 0}));
}

TEST(SourceMapTest, AWordThatACommentCutsComesFromTwoPieces) {
  EXPECT_THAT(showPieces(readDocument("ab//\ncd 1")->getPieces(0, 4)),
              ElementsAre("0:0+2", "0:5+2"));
}

TEST(SourceMapTest, PiecesBeginAndEndWithinRuns) {
  EXPECT_THAT(showPieces(readDocument(NESTED)->getPieces(2, 11)),
              ElementsAre("0:2+2", "1:0+4", "2:7+4", "0:22+1"));
}

TEST(SourceMapTest, NoBytesComeFromNoPiece) {
  EXPECT_THAT(readDocument("a 1")->getPieces(1, 0), IsEmpty());
}

TEST(SourceMapTest, PiecesEndWithTheText) {
  EXPECT_THAT(showPieces(readDocument("a 1")->getPieces(2, 99)), ElementsAre("0:2+1"));
}

TEST(SourceMapTest, ADocumentWithoutTextHasNoPieces) {
  EXPECT_THAT(readDocument("")->getPieces(0, 1), IsEmpty());
}

// --- From a file to the text ---------------------------------------------------------------------

TEST(SourceMapTest, AByteIsFoundInTheText) {
  const auto document = readDocument(NESTED);
  EXPECT_EQ(document->getTextOffset({0, 22}), 12U);
  EXPECT_EQ(document->getTextOffset({1, 2}), 6U);
  EXPECT_EQ(document->getTextOffset({2, 7}), 8U);
}

TEST(SourceMapTest, AByteOfACommentIsNowhere) {
  const auto document = readDocument("a //\n1");
  EXPECT_EQ(document->getTextOffset({0, 2}), SourceDocument::NOWHERE);
  EXPECT_EQ(document->getTextOffset({0, 4}), SourceDocument::NOWHERE);
  EXPECT_EQ(document->getTextOffset({0, 5}), 2U);
}

TEST(SourceMapTest, AByteOfAVersionLineIsNowhere) {
  EXPECT_EQ(readDocument("#SerialVersion 1\na 1")->getTextOffset({0, 16}), SourceDocument::NOWHERE);
}

TEST(SourceMapTest, AByteOfAnIncludeIsNowhere) {
  EXPECT_EQ(readDocument(NESTED)->getTextOffset({0, 4}), SourceDocument::NOWHERE);
}

TEST(SourceMapTest, WhatWasNotReadIsNowhere) {
  EXPECT_EQ(readDocument("a 1 #include \"b.cfg\" b 2")->getTextOffset({0, 21}),
            SourceDocument::NOWHERE);
}

TEST(SourceMapTest, ThePlaceBehindAFileIsNowhere) {
  EXPECT_EQ(readDocument("a 1")->getTextOffset({0, 3}), SourceDocument::NOWHERE);
}

TEST(SourceMapTest, AnOpeningThatThereIsNotIsNowhere) {
  EXPECT_EQ(readDocument("a 1")->getTextOffset({1, 0}), SourceDocument::NOWHERE);
}

TEST(SourceMapTest, AFileThatIsIncludedTwiceEndsUpAtTwoPlaces) {
  const auto document = readDocument(
      MemoryFiles{{"a.cfg", "#include \"b.cfg\"#include \"b.cfg\""}, {"b.cfg", "x 1 "}});
  EXPECT_EQ(document->getTextOffset({1, 2}), 2U);
  EXPECT_EQ(document->getTextOffset({2, 2}), 6U);
}

TEST(SourceMapTest, EveryByteOfTheTextIsFoundAgain) {
  const auto document = readDocument(NESTED);
  for (unsigned long offset = 0; offset < document->getText().size(); ++offset)
    EXPECT_EQ(document->getTextOffset(document->getPosition(offset)), offset);
}

TEST(SourceMapTest, LookingUpEveryByteTakesLinearTime) {
  const auto make = [](unsigned long lines) {
    std::string text;
    for (unsigned long i = 0; i < lines; ++i)
      text += "a 1 //\n";
    return readDocument(text);
  };
  TestSupport::checkTakesLinearTime(
      2000, make, [](const std::unique_ptr<SourceDocument>& document) {
        unsigned long found = 0;
        for (unsigned long offset = 0; offset < document->getFile(0).getText().size(); ++offset)
          if (document->getTextOffset({0, offset}) != SourceDocument::NOWHERE) ++found;
        EXPECT_EQ(found, document->getText().size());
      });
}

// --- Places --------------------------------------------------------------------------------------

TEST(SourceMapTest, APlaceInTheTopFileHasNoIncludes) {
  EXPECT_EQ(showOrigin(*readDocument("\n a 1"), 2), "a.cfg:2:2");
}

TEST(SourceMapTest, APlaceTellsTheIncludesFromTheInnermostOn) {
  EXPECT_EQ(showOrigin(*readDocument(NESTED), 10), "low.cfg:2:3 < mid.cfg:2:1 < top.cfg:1:5");
}

TEST(SourceMapTest, TheIncludesOfAPlaceHaveNoneOfTheirOwn) {
  const auto document = readDocument(NESTED);
  const Quarry::SourcePlace place = document->getPlace(document->getPosition(10));
  ASSERT_EQ(place.includedFrom.size(), 2U);
  EXPECT_THAT(place.includedFrom[0].includedFrom, IsEmpty());
  EXPECT_THAT(place.includedFrom[1].includedFrom, IsEmpty());
}

TEST(SourceMapTest, ThePlaceBehindTheIncludeIsInTheTopFileAgain) {
  EXPECT_EQ(showOrigin(*readDocument(NESTED), 12), "top.cfg:1:23");
}

TEST(SourceMapTest, CommentsCountAsLines) {
  EXPECT_EQ(showOrigin(*readDocument("// one\n// two\na 1"), 0), "a.cfg:3:1");
}

TEST(SourceMapTest, ALineThatACommentJoinsKeepsItsPlace) {
  EXPECT_EQ(showOrigin(*readDocument("a 1 // one\n  b 2"), 6), "a.cfg:2:3");
}

TEST(SourceMapTest, CarriageReturnAndLineFeedAreOneLineEnd) {
  EXPECT_EQ(showOrigin(*readDocument("a 1\r\n\r\nb 2\r\n"), 7), "a.cfg:3:1");
}

TEST(SourceMapTest, AByteOrderMarkHasNoColumn) {
  EXPECT_EQ(showOrigin(*readDocument("\xEF\xBB\xBF"
                                     "a 1"),
                       5),
            "a.cfg:1:3");
}

TEST(SourceMapTest, AByteOrderMarkOfAnIncludedFileHasNoColumnEither) {
  const MemoryFiles files = {{"a.cfg", "a #include \"b.cfg\""}, {"b.cfg", "\xEF\xBB\xBF 1"}};
  EXPECT_EQ(showOrigin(*readDocument(files), 6), "b.cfg:1:2 < a.cfg:1:3");
}

TEST(SourceMapTest, AMarkAmidAFileHasColumns) {
  EXPECT_EQ(showOrigin(*readDocument("a \xEF\xBB\xBF 1"), 6), "a.cfg:1:7");
}

TEST(SourceMapTest, APositionOfNoOpeningHasNoPlace) {
  const Quarry::SourcePlace place = readDocument("a 1")->getPlace(SourcePosition{7, 0});
  EXPECT_EQ(place.path, "");
  EXPECT_EQ(place.line, 0U);
  EXPECT_EQ(place.column, 0U);
}

// --- Words ---------------------------------------------------------------------------------------

TEST(SourceMapTest, AStretchOfTheTextIsAWord) {
  const Quarry::ParserWord word = readDocument("a \"b\"")->getWord(2, 3);
  EXPECT_EQ(word.getStart(), 2U);
  EXPECT_EQ(word.getLength(), 3U);
  EXPECT_EQ(word.getType(), Quarry::ParserWord::WORD_UNKNOWN);
}

TEST(SourceMapTest, AWordResolvesEscapesAsTheVersionHasIt) {
  const auto newer = readDocument("#SerialVersion 1.1\na \"b\\tc\"");
  const auto older = readDocument("#SerialVersion 1.0\na \"b\\tc\"");
  EXPECT_EQ(newer->getWord(2, 6).getString(), "\"b\tc\"");
  EXPECT_EQ(older->getWord(2, 6).getString(), "\"b\\tc\"");
}
