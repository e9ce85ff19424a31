// Texts that are read in the place of files.

#include <QuarrySource/SourceDocument.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "ShownDocument.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserLimits;
using Quarry::SourceDocument;
using testing::ElementsAre;
using TestSupport::getMessages;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

ParserLimits limitBytes(unsigned long count) {
  ParserLimits limits;
  limits.preprocessedBytes = count;
  return limits;
}

}  // namespace

// --- Texts that stand in for files ---------------------------------------------------------------

TEST(SourceStandInTest, ATextStandsInForAFileThatExists) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.cfg", "a 1");
  SourceDocument document;
  document.setText(path, "a 2");
  EXPECT_TRUE(document.read(path));
  EXPECT_EQ(document.getText(), "a 2");
}

TEST(SourceStandInTest, ATextStandsInForAnIncludedFileOfASearchPath) {
  const TemporaryFolder folder;
  folder.write("a.cfg", "#include \"b.cfg\"");
  SourceDocument document;
  document.setSearchPaths({folder.getPath() + "/"});
  document.setText(folder.getPath("b.cfg"), "b 2");
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "b 2");
}

TEST(SourceStandInTest, ATextAfterAFileInTheSearchPathsIsNotTaken) {
  const TemporaryFolder folder;
  folder.write("one/a.cfg", "a 1");
  SourceDocument document;
  document.setSearchPaths({folder.getPath("one"), folder.getPath("two")});
  document.setText(folder.getPath("two/a.cfg"), "a 2");
  EXPECT_TRUE(document.read("a.cfg"));
  EXPECT_EQ(document.getText(), "a 1");
}

TEST(SourceStandInTest, ATextIsReplacedByALaterOne) {
  SourceDocument document;
  document.setText("a.cfg", "a 1");
  document.setText("a.cfg", "a 2");
  document.read("a.cfg");
  EXPECT_EQ(document.getText(), "a 2");
}

TEST(SourceStandInTest, ATextEndsAtItsFirstZeroByteAsAFileDoes) {
  const auto document = readDocument(std::string("a 1\0b 2", 7));
  EXPECT_EQ(document->getText(), "a 1");
  EXPECT_EQ(document->getFile(0).getText(), "a 1");
}

TEST(SourceStandInTest, ATextKeepsWithinTheLimitOfBytes) {
  EXPECT_EQ(readDocument({{"a.cfg", "a 1"}}, limitBytes(3))->getText(), "a 1");
  EXPECT_THAT(getMessages(*readDocument({{"a.cfg", "a 1"}}, limitBytes(2))),
              ElementsAre("File 'a.cfg' exceeds the limit preprocessedBytes (2).\n"));
}

TEST(SourceStandInTest, WhatIsBehindAZeroByteDoesNotCount) {
  const MemoryFiles files = {{"a.cfg", std::string("a 1\0b 2", 7)}};
  EXPECT_EQ(readDocument(files, limitBytes(3))->getText(), "a 1");
}

TEST(SourceStandInTest, TextsCountTogetherWithFiles) {
  const MemoryFiles files = {{"0", "#include \"1\"#include \"1\""}, {"1", "a 1 "}};
  EXPECT_EQ(readDocument(files, limitBytes(32))->getText(), "a 1 a 1 ");
  EXPECT_EQ(readDocument(files, limitBytes(31))->getText(), "a 1 ");
}

TEST(SourceStandInTest, AnEmptyTextStandsInForAFullFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.cfg", "a 1");
  SourceDocument document;
  document.setText(path, "");
  EXPECT_TRUE(document.read(path));
  EXPECT_EQ(document.getText(), "");
}

// --- Below the search paths ----------------------------------------------------------------------

namespace {

/// Includes a file of a search path, "in", that is not there but for a text.
class SourceStandInBelowTest : public testing::Test {
 protected:
  SourceStandInBelowTest() {
    folder.write("in/a.cfg", "a 1");
    ParserLimits limits;
    limits.includesBelowSearchPaths = true;
    document.setSearchPaths({"in"});
    document.setLimits(limits);
  }

  bool readIncluding(const std::string& name) {
    document.setText("in/" + name, "b 2");
    return document.readText("-", "#include \"" + name + "\"");
  }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  SourceDocument document;
};

}  // namespace

TEST_F(SourceStandInBelowTest, ATextLiesWhereItsFileWould) {
  EXPECT_TRUE(readIncluding("new.cfg"));
  EXPECT_EQ(document.getText(), "b 2");
}

TEST_F(SourceStandInBelowTest, TheFolderOfATextNeedNotExistEither) {
  EXPECT_TRUE(readIncluding("new/new.cfg"));
}

TEST_F(SourceStandInBelowTest, ATextOutsideIsRefused) {
  EXPECT_FALSE(readIncluding("../new.cfg"));
  EXPECT_FALSE(readIncluding("new/../../new.cfg"));
  EXPECT_EQ(document.getText(), "");
}

TEST_F(SourceStandInBelowTest, ATextBehindALinkThatLeadsOutsideIsRefused) {
  std::filesystem::create_directory("out");
  std::filesystem::create_directory_symlink("../out", "in/link");
  EXPECT_FALSE(readIncluding("link/new.cfg"));
}

TEST_F(SourceStandInBelowTest, ATextUnderItsOwnNameLiesInTheWorkingDirectory) {
  document.setSearchPaths({folder.getPath()});
  document.setText("new.cfg", "b 2");
  EXPECT_TRUE(document.readText("-", "#include \"new.cfg\""));
}

// --- A text at the top ---------------------------------------------------------------------------

TEST(SourceStandInTest, ATextIsReadUnderAName) {
  SourceDocument document;
  EXPECT_TRUE(document.readText("-", "a 1 ?!"));
  EXPECT_EQ(document.getOpeningCount(), 1U);
  EXPECT_EQ(document.getFile(0).getPath(), "-");
  EXPECT_THAT(TestSupport::showDiagnostics(document), ElementsAre("unknown-word -:1:5+2"));
}

TEST(SourceStandInTest, ATextAtTheTopIsNotLookedForInTheSearchPaths) {
  const TemporaryFolder folder;
  folder.write("a.cfg", "a 1");
  SourceDocument document;
  document.setSearchPaths({folder.getPath()});
  EXPECT_TRUE(document.readText("a.cfg", "a 2"));
  EXPECT_EQ(document.getText(), "a 2");
}

TEST(SourceStandInTest, FilesThatATextAtTheTopIncludesAreLookedFor) {
  const TemporaryFolder folder;
  folder.write("b.cfg", "b 2");
  SourceDocument document;
  document.setSearchPaths({folder.getPath()});
  EXPECT_TRUE(document.readText("-", "#include \"b.cfg\""));
  EXPECT_EQ(document.getText(), "b 2");
}

TEST(SourceStandInTest, ATextAtTheTopIsReadUpToItsFirstZeroByte) {
  SourceDocument document;
  EXPECT_TRUE(document.readText("-", std::string("a 1\0b 2", 7)));
  EXPECT_EQ(document.getText(), "a 1");
}
