// Which files a document opens, and which text and version it makes of them.

#include <QuarrySource/SourceDocument.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "ShownDocument.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserLimits;
using Quarry::SourceDocument;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::getMessages;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

/// Shows the openings, such as "top.cfg" and "mid.cfg in 0 at 4+18".
std::vector<std::string> showOpenings(const SourceDocument& document) {
  std::vector<std::string> shown;
  for (unsigned long i = 0; i < document.getOpeningCount(); ++i) {
    const SourceDocument::Opening& opening = document.getOpening(i);
    std::string line = document.getFileOf(i).getPath();
    if (opening.includer != SourceDocument::NOWHERE) {
      line += " in " + std::to_string(opening.includer) + " at " +
              std::to_string(opening.includeOffset) + "+" + std::to_string(opening.includeLength);
    }
    shown.push_back(line);
  }
  return shown;
}

ParserLimits limitIncludes(unsigned long depth) {
  ParserLimits limits;
  limits.includeDepth = depth;
  return limits;
}

ParserLimits limitBytes(unsigned long count) {
  ParserLimits limits;
  limits.preprocessedBytes = count;
  return limits;
}

const MemoryFiles CIRCLE = {{"a.cfg", "a 1 #include \"b.cfg\""}, {"b.cfg", "#include \"a.cfg\""}};

}  // namespace

// --- Reading -------------------------------------------------------------------------------------

TEST(SourceDocumentTest, BeforeReadingThereIsNothing) {
  const SourceDocument document;
  EXPECT_EQ(document.getOpeningCount(), 0U);
  EXPECT_EQ(document.getFileCount(), 0U);
  EXPECT_EQ(document.getText(), "");
  EXPECT_EQ(document.getVersion(), 1.1);
  EXPECT_THAT(document.getDiagnostics(), IsEmpty());
}

TEST(SourceDocumentTest, AFileIsReadFromTheDisk) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.cfg", "#SerialVersion 1.5\na 1");
  SourceDocument document;
  EXPECT_TRUE(document.read(path));
  EXPECT_EQ(document.getText(), "a 1");
  EXPECT_EQ(document.getVersion(), 1.5);
  EXPECT_EQ(document.getFile(0).getPath(), path);
  EXPECT_EQ(document.getFile(0).getText(), "#SerialVersion 1.5\na 1");
}

TEST(SourceDocumentTest, AFileWithoutAVersionLineHasVersion1) {
  EXPECT_EQ(readDocument("a 1")->getVersion(), 1.0);
}

TEST(SourceDocumentTest, TheLastVersionLineCounts) {
  EXPECT_EQ(readDocument("#SerialVersion 2\n#SerialVersion 3\n")->getVersion(), 3.0);
}

TEST(SourceDocumentTest, AnIncludedFileLeavesTheVersionAlone) {
  const MemoryFiles files = {{"a.cfg", "#include \"b.cfg\""}, {"b.cfg", "#SerialVersion 3\n"}};
  EXPECT_EQ(readDocument(files)->getVersion(), 1.0);
}

TEST(SourceDocumentTest, NothingIsSaidOnTheConsole) {
  const TestSupport::RecordingConsole console;
  readDocument("a ?! b } #include \"missing.cfg\"");
  EXPECT_TRUE(console.isSilent());
}

TEST(SourceDocumentTest, WarningsDoNotKeepADocumentFromBeingRead) {
  SourceDocument document;
  document.setText("a.cfg", "1 2 3");
  EXPECT_TRUE(document.read("a.cfg"));
}

TEST(SourceDocumentTest, AnEmptyNameIsNotFound) {
  SourceDocument document;
  EXPECT_FALSE(document.read(""));
  EXPECT_THAT(getMessages(document), ElementsAre("File '' not found.\n"));
}

TEST(SourceDocumentTest, ADocumentIsReadAnew) {
  SourceDocument document;
  document.setText("a.cfg", "#SerialVersion 2\n1 #include \"b.cfg\"");
  document.setText("b.cfg", "2");
  document.setText("c.cfg", "c 3");
  document.read("a.cfg");
  EXPECT_TRUE(document.read("c.cfg"));
  EXPECT_THAT(showOpenings(document), ElementsAre("c.cfg"));
  EXPECT_EQ(document.getFileCount(), 1U);
  EXPECT_EQ(document.getText(), "c 3");
  EXPECT_EQ(document.getVersion(), 1.0);
  EXPECT_THAT(document.getDiagnostics(), IsEmpty());
  EXPECT_EQ(TestSupport::showSpans(document), "word[c] blank[ ] word[3]");
}

TEST(SourceDocumentTest, AFailedReadLeavesNothingOfTheOneBefore) {
  SourceDocument document;
  document.setText("a.cfg", "a 1");
  document.read("a.cfg");
  EXPECT_FALSE(document.read("missing.cfg"));
  EXPECT_EQ(document.getOpeningCount(), 0U);
  EXPECT_EQ(document.getText(), "");
  EXPECT_EQ(document.getVersion(), 0.0);
}

TEST(SourceDocumentTest, ReadingTwiceGivesTheSame) {
  SourceDocument document;
  document.setText("a.cfg", "a 1 #include \"b.cfg\" 3");
  document.setText("b.cfg", "2 //\n ?!");
  document.read("a.cfg");
  const std::vector<std::string> diagnostics = TestSupport::showDiagnostics(document);
  const std::string text = document.getText();
  document.read("a.cfg");
  EXPECT_EQ(TestSupport::showDiagnostics(document), diagnostics);
  EXPECT_EQ(document.getText(), text);
  EXPECT_EQ(document.getOpeningCount(), 2U);
}

// --- Openings ------------------------------------------------------------------------------------

TEST(SourceDocumentTest, TheTopFileIsTheFirstOpening) {
  const auto document = readDocument("a 1");
  EXPECT_THAT(showOpenings(*document), ElementsAre("a.cfg"));
  EXPECT_EQ(document->getOpening(0).includeOffset, 0U);
  EXPECT_EQ(document->getOpening(0).includeLength, 0U);
}

TEST(SourceDocumentTest, IncludesMayBeNestedThreeDeep) {
  const auto document = readDocument(MemoryFiles{{"0", "a 1 #include \"1\""},
                                                 {"1", "#include \"2\"b 2"},
                                                 {"2", "// two\n#include \"3\""},
                                                 {"3", "c 3 "}});
  EXPECT_THAT(showOpenings(*document),
              ElementsAre("0", "1 in 0 at 4+12", "2 in 1 at 0+12", "3 in 2 at 7+12"));
  EXPECT_EQ(document->getText(), "a 1 c 3 b 2");
}

TEST(SourceDocumentTest, ThePieceBehindAnIncludeBelongsToTheIncluder) {
  const auto document =
      readDocument(MemoryFiles{{"0", "#include \"1\"#include \"2\""}, {"1", "a 1 "}, {"2", "b 2"}});
  EXPECT_THAT(showOpenings(*document), ElementsAre("0", "1 in 0 at 0+12", "2 in 0 at 12+12"));
}

TEST(SourceDocumentTest, AFileThatIsIncludedTwiceIsOpenedTwice) {
  const auto document =
      readDocument(MemoryFiles{{"0", "#include \"1\"#include \"1\""}, {"1", "a 1 "}});
  EXPECT_EQ(document->getOpeningCount(), 3U);
  EXPECT_EQ(document->getFileCount(), 2U);
  EXPECT_EQ(document->getOpening(1).file, document->getOpening(2).file);
  EXPECT_EQ(document->getText(), "a 1 a 1 ");
}

TEST(SourceDocumentTest, AFileWithinATwiceIncludedOneIsOpenedTwiceAsWell) {
  const auto document = readDocument(
      MemoryFiles{{"0", "#include \"1\"#include \"1\""}, {"1", "#include \"2\""}, {"2", "a 1 "}});
  EXPECT_EQ(document->getOpeningCount(), 5U);
  EXPECT_EQ(document->getFileCount(), 3U);
  EXPECT_EQ(document->getOpening(4).includer, 3U);
}

TEST(SourceDocumentTest, AnEmptyIncludedFileIsOpened) {
  const auto document = readDocument(MemoryFiles{{"0", "#include \"1\"a 1"}, {"1", ""}});
  EXPECT_EQ(document->getOpeningCount(), 2U);
  EXPECT_EQ(document->getText(), "a 1");
}

TEST(SourceDocumentTest, AnIncludeWithinAStringIsOne) {
  const auto document = readDocument(MemoryFiles{{"0", "a \"x#include \"1\"\""}, {"1", "y"}});
  EXPECT_EQ(document->getText(), "a \"xy\"");
}

TEST(SourceDocumentTest, AnIncludeWithinACommentIsNone) {
  EXPECT_EQ(readDocument("// #include \"1\"\na 1")->getOpeningCount(), 1U);
}

TEST(SourceDocumentTest, FilesAreLookedForInTheSearchPaths) {
  const TemporaryFolder folder;
  folder.write("one/a.cfg", "#include \"b.cfg\"");
  folder.write("two/b.cfg", "b 2");
  SourceDocument document;
  document.setSearchPaths({folder.getPath("one"), folder.getPath("two")});
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_THAT(showOpenings(document), ElementsAre(folder.getPath("one/a.cfg"),
                                                  folder.getPath("two/b.cfg") + " in 0 at 0+16"));
}

TEST(SourceDocumentTest, TheFirstSearchPathThatHasAFileWins) {
  const TemporaryFolder folder;
  folder.write("one/a.cfg", "a 1");
  folder.write("two/a.cfg", "a 2");
  SourceDocument document;
  document.setSearchPaths({folder.getPath("two"), folder.getPath("one")});
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "a 2");
}

// --- Files that cannot be read -------------------------------------------------------------------

TEST(SourceDocumentTest, AMissingTopFileIsNotOpened) {
  SourceDocument document;
  EXPECT_FALSE(document.read("missing.cfg"));
  EXPECT_EQ(document.getOpeningCount(), 0U);
  EXPECT_EQ(document.getVersion(), 0.0);
}

TEST(SourceDocumentTest, AMissingIncludedFileIsNotOpened) {
  const auto document = readDocument("a 1 #include \"missing.cfg\" b 2");
  EXPECT_EQ(document->getOpeningCount(), 1U);
  EXPECT_EQ(document->getText(), "a 1 ");
  EXPECT_EQ(document->getVersion(), 0.0);
  EXPECT_EQ(document->getFile(0).getText(), "a 1 #include \"missing.cfg\" b 2");
}

TEST(SourceDocumentTest, AllOpenFilesKeepTheirTextsWhenOneIsMissing) {
  const MemoryFiles files = {
      {"0", "#include \"1\""}, {"1", "#include \"2\""}, {"2", "#include \"3\""}};
  const auto document = readDocument(files);
  ASSERT_EQ(document->getOpeningCount(), 3U);
  for (unsigned long i = 0; i < 3; ++i)
    EXPECT_EQ(document->getFileOf(i).getText(), files[i].second);
}

TEST(SourceDocumentTest, AnUnclosedIncludeFails) {
  SourceDocument document;
  document.setText("a.cfg", "a 1 #include \"b.cfg\n");
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "a 1 ");
  EXPECT_EQ(document.getVersion(), 0.0);
}

TEST(SourceDocumentTest, AnUnclosedIncludeInAnIncludedFileFails) {
  const auto document =
      readDocument(MemoryFiles{{"0", "a 1 #include \"1\" b 2"}, {"1", "c 3 #include \""}});
  EXPECT_EQ(document->getText(), "a 1 c 3 ");
  EXPECT_EQ(document->getFileOf(0).getText(), "a 1 #include \"1\" b 2");
  EXPECT_EQ(document->getFileOf(1).getText(), "c 3 #include \"");
}

TEST(SourceDocumentTest, ATopFileOfVersion0Fails) {
  SourceDocument document;
  document.setText("a.cfg", "#SerialVersion 0\na 1");
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "a 1");
}

TEST(SourceDocumentTest, ATopFileOfANegativeVersionFails) {
  SourceDocument document;
  document.setText("a.cfg", "#SerialVersion -1\na 1");
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_EQ(document.getVersion(), -1.0);
}

TEST(SourceDocumentTest, AnIncludedFileOfANegativeVersionIsRead) {
  SourceDocument document;
  document.setText("a.cfg", "#include \"b.cfg\"");
  document.setText("b.cfg", "#SerialVersion -1\nb 2");
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "b 2");
  EXPECT_THAT(document.getDiagnostics(), IsEmpty());
}

TEST(SourceDocumentTest, AnIncludedFileOfVersion0Fails) {
  SourceDocument document;
  document.setText("a.cfg", "a 1 #include \"b.cfg\" c 3");
  document.setText("b.cfg", "#SerialVersion 0\nb 2");
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "a 1 b 2");
  EXPECT_EQ(document.getVersion(), 0.0);
}

// --- Limits --------------------------------------------------------------------------------------

TEST(SourceDocumentTest, ACircleIsFoundWhereALimitIsSet) {
  const auto document = readDocument(CIRCLE, limitIncludes(100));
  EXPECT_EQ(document->getOpeningCount(), 2U);
  EXPECT_EQ(document->getText(), "a 1 ");
  EXPECT_THAT(getMessages(*document),
              ElementsAre("File 'a.cfg' includes itself: 'a.cfg' > 'b.cfg' > 'a.cfg'.\n"));
}

TEST(SourceDocumentTest, IncludesAreNestedAsDeepAsTheLimitAllows) {
  const MemoryFiles files = {{"0", "#include \"1\""}, {"1", "#include \"2\""}, {"2", "a 1"}};
  EXPECT_EQ(readDocument(files, limitIncludes(2))->getText(), "a 1");
  EXPECT_THAT(getMessages(*readDocument(files, limitIncludes(1))),
              ElementsAre("File '2' exceeds the limit includeDepth (1).\n"));
}

TEST(SourceDocumentTest, AllFilesTogetherKeepWithinTheLimitOfBytes) {
  const MemoryFiles files = {{"0", "#include \"1\""}, {"1", "a 1"}};
  EXPECT_EQ(readDocument(files, limitBytes(15))->getText(), "a 1");
  EXPECT_THAT(getMessages(*readDocument(files, limitBytes(14))),
              ElementsAre("File '1' exceeds the limit preprocessedBytes (14).\n"));
}

TEST(SourceDocumentTest, AGroupBelowTheLimitOfNestingIsLeftOut) {
  SourceDocument document;
  document.setText("a.cfg", "a { b { c { d 1 } } }");
  ParserLimits limits;
  limits.nestingDepth = 2;
  document.setLimits(limits);
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_THAT(
      getMessages(document),
      ElementsAre(
          "ParserGroup::setText: (1:10) File 'a.cfg' exceeds the limit nestingDepth (2).\n"));
}

TEST(SourceDocumentTest, AFileOutsideOfTheSearchPathsIsRefused) {
  const TemporaryFolder folder;
  const std::string outside = folder.write("outside.cfg", "b 2");
  folder.write("in/a.cfg", "#include \"" + outside + "\"");
  ParserLimits limits;
  limits.includesBelowSearchPaths = true;
  SourceDocument document;
  document.setSearchPaths({folder.getPath("in")});
  document.setLimits(limits);
  EXPECT_FALSE(document.read("a.cfg"));
  EXPECT_THAT(getMessages(document),
              ElementsAre("File '" + outside +
                          "' lies outside of the search paths (includesBelowSearchPaths).\n"));
}

TEST(SourceDocumentTest, TheLimitsAreTheOnesThatWereSet) {
  SourceDocument document;
  document.setLimits(limitIncludes(7));
  EXPECT_EQ(document.getLimits().includeDepth, 7U);
}

// --- Compressed files ----------------------------------------------------------------------------

TEST(SourceDocumentTest, ACompressedFileIsUnpacked) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("a.cfg", "a 1$\nb \"$\n2\" $\n");
  SourceDocument document;
  EXPECT_TRUE(document.read(path));
  EXPECT_EQ(document.getFile(0).getText(), "a 1\nb \"\n2\" \n");
  EXPECT_EQ(TestSupport::showOrigin(document, 4), path + ":2:1");
}

TEST(SourceDocumentTest, ACompressedFileIsUnpackedOnlyUnderItsOwnName) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("a.cfg", "a 1$\n");
  SourceDocument document;
  document.setSearchPaths({folder.getPath()});
  document.read("a.cfg");
  EXPECT_EQ(document.getFile(0).getText().substr(0, 2), "\x1F\x8B");
}

TEST(SourceDocumentTest, ACompressedFileOfTheIncludedNameIsReadInsteadOfTheOneThatWasFound) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  folder.writeCompressed("b.cfg", "b 2$\n");
  folder.write("in/b.cfg", "b 3");
  SourceDocument document;
  document.setSearchPaths({"in"});
  document.setText("a.cfg", "#include \"b.cfg\"");
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "b 2\n");
  EXPECT_EQ(document.getFileOf(1).getPath(), "in/b.cfg");
}

TEST(SourceDocumentTest, ABadLineOfACompressedFileFails) {
  const TemporaryFolder folder;
  SourceDocument document;
  EXPECT_FALSE(document.read(folder.writeCompressed("a.cfg", "a 1$\n\nb 2$\n")));
  EXPECT_EQ(document.getVersion(), 0.0);
  EXPECT_EQ(document.getText(), "");
}

TEST(SourceDocumentTest, AfterABadCompressedLineTheIncludingFilesHaveTheirTexts) {
  const TemporaryFolder folder;
  const std::string bad = folder.writeCompressed("bad.cfg", "\n");
  const std::string text = "a 1 #include \"" + bad + "\" b 2";
  const auto document = readDocument(text);
  EXPECT_EQ(document->getOpeningCount(), 1U);
  EXPECT_EQ(document->getFile(0).getText(), text);
  EXPECT_EQ(document->getText(), "a 1 ");
}

TEST(SourceDocumentTest, ADocumentCanBeReadAfterABadCompressedLine) {
  const TemporaryFolder folder;
  SourceDocument document;
  document.setSearchPaths({folder.getPath()});
  document.read(folder.writeCompressed("bad.cfg", "\n"));
  folder.write("a.cfg", "a 1");
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_THAT(document.getDiagnostics(), IsEmpty());
}
