#include <QuarrySource/SourceFile.h>
#include <gtest/gtest.h>

using Quarry::LineColumn;
using Quarry::SourceFile;

namespace {

void checkPlace(const std::string& text, unsigned long offset, unsigned long line,
                unsigned long column) {
  const LineColumn place = SourceFile("a.cfg", text).getLineColumn(offset);
  EXPECT_EQ(place.line, line);
  EXPECT_EQ(place.column, column);
}

}  // namespace

// --- Places --------------------------------------------------------------------------------------

TEST(SourceFileTest, LinesAndColumnsCountFrom1) { checkPlace("ab", 1, 1, 2); }

TEST(SourceFileTest, ALineFeedEndsALine) { checkPlace("a\nb", 2, 2, 1); }

TEST(SourceFileTest, ALineFeedStandsOnTheLineThatItEnds) { checkPlace("a\nb", 1, 1, 2); }

TEST(SourceFileTest, CarriageReturnAndLineFeedAreOneLineEnd) { checkPlace("a\r\nb", 3, 2, 1); }

TEST(SourceFileTest, ALoneCarriageReturnEndsALine) { checkPlace("a\rb", 2, 2, 1); }

TEST(SourceFileTest, ThePlaceBehindTheTextHasALine) { checkPlace("a\n", 2, 2, 1); }

TEST(SourceFileTest, AByteOrderMarkHasNoColumn) {
  checkPlace("\xEF\xBB\xBFtitle", 3, 1, 1);
  checkPlace("\xEF\xBB\xBFtitle", 4, 1, 2);
  checkPlace("\xEF\xBB\xBFtitle", 0, 1, 1);
}

TEST(SourceFileTest, AnOffsetIsFoundByItsPlace) {
  const SourceFile file("a.cfg", "\xEF\xBB\xBFone\r\ntwo\n\nfour");
  for (const unsigned long offset : {3UL, 5UL, 8UL, 9UL, 12UL, 13UL, 17UL})
    EXPECT_EQ(file.getOffset(file.getLineColumn(offset)), offset);
}

TEST(SourceFileTest, AColumnBehindTheLineIsItsEnd) {
  EXPECT_EQ(SourceFile("a.cfg", "ab\r\nc").getOffset({1, 99}), 2U);
}

TEST(SourceFileTest, ALineBehindTheTextIsItsEnd) {
  EXPECT_EQ(SourceFile("a.cfg", "ab\n").getOffset({9, 1}), 3U);
}

// --- Lines ---------------------------------------------------------------------------------------

TEST(SourceFileTest, ALineComesWithoutItsEnd) {
  const SourceFile file("a.cfg", "one\r\ntwo\rthree\n");
  EXPECT_EQ(file.getLine(1), "one");
  EXPECT_EQ(file.getLine(2), "two");
  EXPECT_EQ(file.getLine(3), "three");
  EXPECT_EQ(file.getLine(4), "");
}

TEST(SourceFileTest, ThereIsOneLineMoreThanLineEnds) {
  EXPECT_EQ(SourceFile("a.cfg", "").getLineCount(), 1U);
  EXPECT_EQ(SourceFile("a.cfg", "a\nb\n").getLineCount(), 3U);
}

TEST(SourceFileTest, AnEmptyLineIsEmpty) {
  EXPECT_EQ(SourceFile("a.cfg", "a\n\nb").getLine(2), "");
}
