// Files are cut into spans that leave nothing out.

#include <QuarrySource/SourceDocument.h>
#include <gtest/gtest.h>

#include "ShownDocument.h"
#include "support/LinearTime.h"

using Quarry::SourceDocument;
using Quarry::SourceSpan;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;
using TestSupport::showSpans;

namespace {

std::string show(const std::string& text) { return showSpans(*readDocument(text)); }

std::string show(const MemoryFiles& files, unsigned long opening) {
  return showSpans(*readDocument(files), opening);
}

}  // namespace

// --- Kinds ---------------------------------------------------------------------------------------

TEST(SourceSpanTest, AnEmptyFileHasNone) { EXPECT_EQ(show(""), ""); }

TEST(SourceSpanTest, WordsAndBlanksTakeTurns) {
  EXPECT_EQ(show("title \t\"a b\"\n"), "word[title] blank[ \t] word[\"a b\"] blank[\\n]");
}

TEST(SourceSpanTest, DelimitersAreWordsOfTheirOwn) {
  EXPECT_EQ(show("a={b,(1)}"),
            "word[a] word[=] word[{] word[b] word[,] word[(] word[1] word[)] word[}]");
}

TEST(SourceSpanTest, AWordThatFitsNowhereIsAWord) {
  EXPECT_EQ(show("a ?! 1"), "word[a] blank[ ] word[?!] blank[ ] word[1]");
}

TEST(SourceSpanTest, WordsBehindTheEndOfTheDocumentAreWords) {
  EXPECT_EQ(show("a 1 } b"), "word[a] blank[ ] word[1] blank[ ] word[}] blank[ ] word[b]");
}

TEST(SourceSpanTest, ACommentHasItsLineFeed) {
  EXPECT_EQ(show("a 1 // one\nb 2"),
            "word[a] blank[ ] word[1] blank[ ] comment[// one\\n] word[b] blank[ ] word[2]");
}

TEST(SourceSpanTest, ACommentHasItsCarriageReturn) {
  EXPECT_EQ(show("a 1//\r\nb 2"),
            "word[a] blank[ ] word[1] comment[//\\r\\n] word[b] blank[ ] word[2]");
}

TEST(SourceSpanTest, ACommentMayEndWithTheFile) {
  EXPECT_EQ(show("a 1 //"), "word[a] blank[ ] word[1] blank[ ] comment[//]");
}

TEST(SourceSpanTest, TwoSlashesInAStringAreNoComment) {
  EXPECT_EQ(show("a \"b//c\""), "word[a] blank[ ] word[\"b//c\"]");
}

TEST(SourceSpanTest, AVersionLineHasItsLineFeed) {
  EXPECT_EQ(show("#SerialVersion 1.1\na 1"),
            "version[#SerialVersion 1.1\\n] word[a] blank[ ] word[1]");
}

TEST(SourceSpanTest, EveryVersionLineIsOne) {
  EXPECT_EQ(show("#SerialVersion 1\n#SerialVersion 2"),
            "version[#SerialVersion 1\\n] version[#SerialVersion 2]");
}

TEST(SourceSpanTest, AnIncludeEndsWithItsQuote) {
  EXPECT_EQ(show({{"a.cfg", "a #include \"b.cfg\"\n"}, {"b.cfg", "1"}}, 0),
            "word[a] blank[ ] include[#include \"b.cfg\"] blank[\\n]");
}

TEST(SourceSpanTest, AnIncludedFileHasItsOwn) {
  EXPECT_EQ(show({{"a.cfg", "a #include \"b.cfg\""}, {"b.cfg", " 1 //\n"}}, 1),
            "blank[ ] word[1] blank[ ] comment[//\\n]");
}

TEST(SourceSpanTest, AByteOrderMarkIsPartOfAWord) {
  EXPECT_EQ(show("\xEF\xBB\xBF"
                 "a 1"),
            "word[\xEF\xBB\xBF"
            "a] blank[ ] word[1]");
}

// --- Words that are cut --------------------------------------------------------------------------

TEST(SourceSpanTest, AWordThatACommentCutsIsTwoSpans) {
  EXPECT_EQ(show("ti//\ntle 1"), "word[ti] comment[//\\n] word[tle] blank[ ] word[1]");
}

TEST(SourceSpanTest, BlanksThatACommentCutsAreTwoSpans) {
  EXPECT_EQ(show("a //\n 1"), "word[a] blank[ ] comment[//\\n] blank[ ] word[1]");
}

TEST(SourceSpanTest, ABlankWithinAStringBehindAnIncludeIsPartOfTheWord) {
  const MemoryFiles files = {{"a.cfg", "a \"x #include \"b.cfg\" z\""}, {"b.cfg", " y "}};
  EXPECT_EQ(show(files, 0), "word[a] blank[ ] word[\"x ] include[#include \"b.cfg\"] word[ z\"]");
  EXPECT_EQ(show(files, 1), "word[ y ]");
}

TEST(SourceSpanTest, AWordMayBeginInTheIncludedFile) {
  const MemoryFiles files = {{"a.cfg", "#include \"b.cfg\"le 1"}, {"b.cfg", "// name\ntit"}};
  EXPECT_EQ(show(files, 0), "include[#include \"b.cfg\"] word[le] blank[ ] word[1]");
  EXPECT_EQ(show(files, 1), "comment[// name\\n] word[tit]");
}

TEST(SourceSpanTest, AWordMayStandInThreeFiles) {
  const MemoryFiles files = {
      {"a.cfg", "x#include \"b.cfg\" 1"}, {"b.cfg", "y#include \"c.cfg\""}, {"c.cfg", "z"}};
  EXPECT_EQ(show(files, 0), "word[x] include[#include \"b.cfg\"] blank[ ] word[1]");
  EXPECT_EQ(show(files, 1), "word[y] include[#include \"c.cfg\"]");
  EXPECT_EQ(show(files, 2), "word[z]");
}

TEST(SourceSpanTest, AStringThatALineEndLeavesOpenEndsThere) {
  EXPECT_EQ(show("a \"b c\nd 1"),
            "word[a] blank[ ] word[\"b c] blank[\\n] word[d] blank[ ] word[1]");
}

TEST(SourceSpanTest, BothOpeningsOfAFileHaveSpansOfTheirOwn) {
  const MemoryFiles files = {{"a.cfg", "x#include \"b.cfg\" \"#include \"b.cfg\"\""},
                             {"b.cfg", " 1 "}};
  EXPECT_EQ(show(files, 1), "blank[ ] word[1] blank[ ]");
  EXPECT_EQ(show(files, 2), "word[ 1 ]");
}

// --- What was not read ---------------------------------------------------------------------------

TEST(SourceSpanTest, WhatFollowsAMissingIncludeIsUnread) {
  EXPECT_EQ(show("a 1 #include \"b.cfg\" b 2"),
            "word[a] blank[ ] word[1] blank[ ] include[#include \"b.cfg\"] unread[ b 2]");
}

TEST(SourceSpanTest, AnUnclosedIncludeIsUnread) {
  EXPECT_EQ(show("a 1 #include \"b.cfg\nb 2"),
            "word[a] blank[ ] word[1] blank[ ] unread[#include \"b.cfg\\nb 2]");
}

TEST(SourceSpanTest, FilesAroundAnUnclosedIncludeAreUnreadBehindTheirIncludes) {
  const MemoryFiles files = {{"a.cfg", "a #include \"b.cfg\" 1"}, {"b.cfg", "#include \"c"}};
  EXPECT_EQ(show(files, 0), "word[a] blank[ ] include[#include \"b.cfg\"] unread[ 1]");
  EXPECT_EQ(show(files, 1), "unread[#include \"c]");
}

TEST(SourceSpanTest, AFileOfVersion0IsReadToItsEndAndTheOneAroundItIsNot) {
  const MemoryFiles files = {{"a.cfg", "#include \"b.cfg\" a 1"},
                             {"b.cfg", "#SerialVersion 0\nb 2"}};
  EXPECT_EQ(show(files, 0), "include[#include \"b.cfg\"] unread[ a 1]");
  EXPECT_EQ(show(files, 1), "version[#SerialVersion 0\\n] word[b] blank[ ] word[2]");
}

// --- Many files ----------------------------------------------------------------------------------

TEST(SourceSpanTest, CuttingAllOpeningsTakesLinearTime) {
  const auto make = [](unsigned long includes) {
    std::string top;
    for (unsigned long i = 0; i < includes; ++i)
      top += "#include \"part.cfg\"\n";
    return readDocument(MemoryFiles{{"top.cfg", top}, {"part.cfg", "a 1 // one\n"}});
  };
  TestSupport::checkTakesLinearTime(500, make, [](const std::unique_ptr<SourceDocument>& document) {
    unsigned long spans = 0;
    for (unsigned long opening = 0; opening < document->getOpeningCount(); ++opening)
      spans += document->getSpans(opening).size();
    EXPECT_EQ(spans, 7 * (document->getOpeningCount() - 1));
  });
}

TEST(SourceSpanTest, CuttingAWordOfManyFilesTakesLinearTime) {
  const auto make = [](unsigned long includes) {
    std::string top;
    for (unsigned long i = 0; i < includes; ++i)
      top += "#include \"part.cfg\"";
    return readDocument(MemoryFiles{{"top.cfg", top}, {"part.cfg", "word"}});
  };
  TestSupport::checkTakesLinearTime(500, make, [](const std::unique_ptr<SourceDocument>& document) {
    for (unsigned long opening = 1; opening < document->getOpeningCount(); ++opening)
      EXPECT_EQ(document->getSpans(opening).size(), 1U);
  });
}
