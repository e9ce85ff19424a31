#include <Quarry/ParserFile.h>
#include <Quarry/ParserLimits.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserLimits;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::describe;
using TestSupport::makeDeepText;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

/// A document with a folder, which is the working directory.
class ParserLimitsTest : public testing::Test {
 protected:
  bool read(const std::string& name) {
    file.setLimits(limits);
    return file.read(name);
  }

  std::string getTree() const { return describe(file.getRoot()); }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserLimits limits;
  ParserFile file;
};

}  // namespace

// --- The limits themselves -----------------------------------------------------------------------

TEST_F(ParserLimitsTest, NoneIsSetAtFirst) { EXPECT_FALSE(file.getLimits().areSet()); }

TEST_F(ParserLimitsTest, AFileKeepsTheLimitsThatItIsGiven) {
  limits.includeDepth = 3;
  file.setLimits(limits);
  EXPECT_EQ(file.getLimits().includeDepth, 3);
  EXPECT_EQ(file.getLimits().nestingDepth, ParserLimits::UNLIMITED);
}

TEST_F(ParserLimitsTest, EachOneCountsAsSet) {
  ParserLimits depth, bytes, nesting, place;
  depth.includeDepth = 0;
  bytes.preprocessedBytes = 0;
  nesting.nestingDepth = 0;
  place.includesBelowSearchPaths = true;
  EXPECT_TRUE(depth.areSet() && bytes.areSet() && nesting.areSet() && place.areSet());
}

// --- includeDepth --------------------------------------------------------------------------------

TEST_F(ParserLimitsTest, AsManyIncludesAsAllowedMayBeNested) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("one.cfg", "#include \"two.cfg\"");
  folder.write("two.cfg", "a 1 ");
  limits.includeDepth = 2;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1");
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserLimitsTest, OneIncludeDeeperIsRefused) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("one.cfg", "#include \"two.cfg\"");
  folder.write("two.cfg", "a 1 ");
  limits.includeDepth = 1;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'two.cfg' exceeds the limit includeDepth (1).\n"));
}

TEST_F(ParserLimitsTest, IncludesSideBySideAreNotNested) {
  folder.write("top.cfg", "#include \"one.cfg\" #include \"one.cfg\" #include \"one.cfg\"");
  folder.write("one.cfg", "a 1 ");
  limits.includeDepth = 1;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1; a int:1; a int:1");
}

TEST_F(ParserLimitsTest, WithDepthZeroNothingIsIncluded) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("one.cfg", "a 1 ");
  limits.includeDepth = 0;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'one.cfg' exceeds the limit includeDepth (0).\n"));
}

TEST_F(ParserLimitsTest, AFileThatIsRefusedLeavesTheTreeAsItWas) {
  folder.write("top.cfg", "b 2 #include \"one.cfg\"");
  folder.write("one.cfg", "c 3");
  file.getRoot().setText("a 1", 1.1);
  limits.includeDepth = 0;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1");
  EXPECT_EQ(file.getVersion(), 0.0);
}

// --- preprocessedBytes ---------------------------------------------------------------------------

TEST_F(ParserLimitsTest, ADocumentMayHaveAsManyBytesAsAllowed) {
  folder.write("top.cfg", "abc 1234");
  limits.preprocessedBytes = 8;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "abc int:1234");
}

TEST_F(ParserLimitsTest, OneByteMoreIsTooMuch) {
  folder.write("top.cfg", "abc 1234");
  limits.preprocessedBytes = 7;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'top.cfg' exceeds the limit preprocessedBytes (7).\n"));
}

TEST_F(ParserLimitsTest, TheBytesOfAllFilesAreAddedUp) {
  folder.write("top.cfg", "#include \"a.cfg\"#include \"a.cfg\"");  // 32 bytes
  folder.write("a.cfg", "a 1 ");
  limits.preprocessedBytes = 32 + 4 + 4;
  EXPECT_TRUE(read("top.cfg"));
  limits.preprocessedBytes = 32 + 4 + 3;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'a.cfg' exceeds the limit preprocessedBytes (39).\n"));
}

TEST_F(ParserLimitsTest, FilesThatDoubleEachOtherEndAtTheLimit) {
  for (int i = 0; i < 60; ++i) {
    const std::string next = "#include \"" + std::to_string(i + 1) + ".cfg\"";
    folder.write(std::to_string(i) + ".cfg", next + next);
  }
  folder.write("60.cfg", "");
  limits.preprocessedBytes = 100'000;
  EXPECT_FALSE(read("0.cfg"));
  EXPECT_EQ(console.getWarnings().size(), 1);
}

TEST_F(ParserLimitsTest, EveryReadMayHaveAsMuchAgain) {
  folder.write("top.cfg", "a 1");
  limits.preprocessedBytes = 4;
  EXPECT_TRUE(read("top.cfg") && read("top.cfg") && read("top.cfg"));
}

TEST_F(ParserLimitsTest, WhatStandsBehindAZeroByteDoesNotCount) {
  folder.write("top.cfg", std::string("a 1\0", 4) + std::string(100'000, 'x'));
  limits.preprocessedBytes = 3;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1");
}

TEST_F(ParserLimitsTest, ACompressedFileCountsAsItIsUnpacked) {
  folder.writeCompressed("top.cfg", "a 1$\nb 2$\n");
  limits.preprocessedBytes = 10;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1; b int:2");
  limits.preprocessedBytes = 9;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'top.cfg' exceeds the limit preprocessedBytes (9).\n"));
}

TEST_F(ParserLimitsTest, CompressedLinesThatLeaveNothingBehindCountToo) {
  std::string lines;
  for (int i = 0; i < 10'000; ++i)
    lines += "x\n";
  folder.writeCompressed("top.cfg", lines);
  limits.preprocessedBytes = 1000;
  EXPECT_FALSE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, ACompressedFileMayBeLargerPackedThanUnpacked) {
  folder.writeCompressed("top.cfg", "a 1$\n");
  ASSERT_GT(std::filesystem::file_size("top.cfg"), 5);
  limits.preprocessedBytes = 5;
  EXPECT_TRUE(read("top.cfg"));
}

// --- includesBelowSearchPaths --------------------------------------------------------------------

TEST_F(ParserLimitsTest, AFileBelowASearchPathMayBeIncluded) {
  folder.write("top.cfg", "#include \"sub/one.cfg\"");
  folder.write("parts/sub/one.cfg", "a 1");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1");
}

TEST_F(ParserLimitsTest, AFileThatIsFoundUnderItsOwnNameMayNot) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("one.cfg", "a 1");
  limits.includesBelowSearchPaths = true;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(
      console.getWarnings(),
      ElementsAre("File 'one.cfg' lies outside of the search paths (includesBelowSearchPaths).\n"));
}

TEST_F(ParserLimitsTest, AFileThatIsFoundUnderItsOwnNameMayLieBelowASearchPath) {
  folder.write("top.cfg", "#include \"parts/one.cfg\"");
  folder.write("parts/one.cfg", "a 1");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_TRUE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, DotsDoNotLeadOutOfASearchPath) {
  folder.write("top.cfg", "#include \"../one.cfg\"");
  folder.write("parts/two.cfg", "");
  folder.write("one.cfg", "a 1");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_FALSE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, LinksDoNotLeadOutOfASearchPath) {
  folder.write("top.cfg", "#include \"link.cfg\"");
  folder.write("parts/two.cfg", "");
  folder.write("one.cfg", "a 1");
  std::filesystem::create_symlink("../one.cfg", "parts/link.cfg");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_FALSE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, AFolderWhoseNameOnlyBeginsLikeASearchPathLiesOutside) {
  folder.write("top.cfg", "#include \"parts-of-others/one.cfg\"");
  folder.write("parts/two.cfg", "");
  folder.write("parts-of-others/one.cfg", "a 1");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_FALSE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, ASearchPathMayBeALinkItself) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("parts/one.cfg", "a 1");
  std::filesystem::create_directory_symlink("parts", "link");
  file.setSearchPaths({"link/"});
  limits.includesBelowSearchPaths = true;
  EXPECT_TRUE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, EverythingLiesBelowTheRootOfAllFolders) {
  folder.write("top.cfg", "#include \"" + folder.getPath("one.cfg") + "\"");
  folder.write("one.cfg", "a 1");
  file.setSearchPaths({"/"});
  limits.includesBelowSearchPaths = true;
  EXPECT_TRUE(read("top.cfg"));
}

/// Such a file is read in place of the one that the search path finds.
TEST_F(ParserLimitsTest, ACompressedFileOfTheSameNameElsewhereLiesOutside) {
  folder.write("top.cfg", "#include \"one.cfg\"");
  folder.write("parts/one.cfg", "a 1");
  folder.writeCompressed("one.cfg", "b 2$\n");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_FALSE(read("top.cfg"));
}

TEST_F(ParserLimitsTest, TheFileThatIsReadItselfMayLieAnywhere) {
  folder.write("elsewhere/top.cfg", "a 1");
  folder.write("parts/two.cfg", "");
  file.setSearchPaths({"parts"});
  limits.includesBelowSearchPaths = true;
  EXPECT_TRUE(read("elsewhere/top.cfg"));
}

// --- Cycles --------------------------------------------------------------------------------------

TEST_F(ParserLimitsTest, ACycleIsShownFromTheFileThatItComesBackTo) {
  folder.write("top.cfg", "#include \"a.cfg\"");
  folder.write("a.cfg", "#include \"b.cfg\"");
  folder.write("b.cfg", "#include \"c.cfg\"");
  folder.write("c.cfg", "#include \"a.cfg\"");
  limits.includeDepth = 100;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(
      console.getWarnings(),
      ElementsAre("File 'a.cfg' includes itself: 'a.cfg' > 'b.cfg' > 'c.cfg' > 'a.cfg'.\n"));
}

TEST_F(ParserLimitsTest, AnyLimitIsEnoughToFindACycle) {
  folder.write("top.cfg", "#include \"top.cfg\"");
  limits.nestingDepth = 100;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'top.cfg' includes itself: 'top.cfg' > 'top.cfg'.\n"));
}

TEST_F(ParserLimitsTest, AFileUnderAnotherNameClosesACycleAllTheSame) {
  folder.write("top.cfg", "#include \"./top.cfg\"");
  limits.includeDepth = 100;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File './top.cfg' includes itself: './top.cfg' > './top.cfg'.\n"));
}

TEST_F(ParserLimitsTest, AFileMayBeIncludedAgainOnceItHasEnded) {
  folder.write("top.cfg", "#include \"a.cfg\" #include \"b.cfg\"");
  folder.write("a.cfg", "#include \"b.cfg\"");
  folder.write("b.cfg", "b 2 ");
  limits.includeDepth = 2;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "b int:2; b int:2");
}

// --- nestingDepth --------------------------------------------------------------------------------

TEST_F(ParserLimitsTest, AsManyGroupsAsAllowedMayBeNested) {
  folder.write("top.cfg", "a { b { c 1 } }");
  limits.nestingDepth = 2;
  EXPECT_TRUE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a {b {c int:1}}");
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserLimitsTest, AGroupThatIsDeeperIsLeftOutAndTheRestIsRead) {
  folder.write("top.cfg", "a {\n  b { c { d 1 } e 2 }\n  f 3\n}\ng 4");
  limits.nestingDepth = 1;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a {b; f int:3}; g int:4");
  EXPECT_THAT(
      console.getWarnings(),
      ElementsAre("ParserGroup::setText: (2:4) File 'top.cfg' exceeds the limit nestingDepth "
                  "(1).\n"));
}

TEST_F(ParserLimitsTest, ManyGroupsThatAreTooDeepGiveOneWarning) {
  folder.write("top.cfg", "a { b { } } c { d { } } e { f { } }");
  limits.nestingDepth = 1;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(console.getWarnings().size(), 1);
  EXPECT_EQ(getTree(), "a {b}; c {d}; e {f}");
}

TEST_F(ParserLimitsTest, BracesInStringsDoNotEndAGroupThatIsLeftOut) {
  folder.write("top.cfg", "a { b \"}\" } c 1");
  limits.nestingDepth = 0;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a; c int:1");
}

TEST_F(ParserLimitsTest, AGroupThatIsLeftOutMayEndWithTheText) {
  folder.write("top.cfg", "a 1 b { c {");
  limits.nestingDepth = 0;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1; b");
}

TEST_F(ParserLimitsTest, ValuesBeforeAGroupThatIsLeftOutStay) {
  folder.write("top.cfg", "a 1 2 { b 3 } c 4");
  limits.nestingDepth = 0;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(getTree(), "a int:1 int:2; c int:4");
}

TEST_F(ParserLimitsTest, AMillionGroupsEndAtTheLimit) {
  folder.write("top.cfg", makeDeepText(1'000'000) + " a 1");
  limits.nestingDepth = 1000;
  EXPECT_FALSE(read("top.cfg"));
  EXPECT_EQ(file.getRoot().getItem("a")->getInt(0), 1);
}

TEST_F(ParserLimitsTest, GroupsOfABinaryDocumentThatAreTooDeepAreLeftOut) {
  ParserFile source;
  source.getRoot().setText("a 1 { b 2 { c 3 } d 4 } e 5", 1.1);
  source.getRoot().getItem("a")->getGroup(1)->getItem("b")->addInt(6);
  limits.nestingDepth = 1;
  file.setFilename("top.qdb");
  file.setLimits(limits);
  EXPECT_FALSE(file.setBinary(source.getBinary()));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("File 'top.qdb' exceeds the limit nestingDepth (1).\n"));
  EXPECT_EQ(describe(ParserGroup(file.getRoot())), "a int:* {b int:* int:*; d int:*}; e int:*");
}

TEST_F(ParserLimitsTest, ABinaryDocumentWithinTheLimitIsReadAsAWhole) {
  ParserFile source;
  source.getRoot().setText("a { b { c 2 } }", 1.1);
  limits.nestingDepth = 2;
  file.setLimits(limits);
  EXPECT_TRUE(file.setBinary(source.getBinary()));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserLimitsTest, AGroupThatIsLeftOutMayBeBrokenItself) {
  ParserFile source;
  source.getRoot().setText("a { b 2 }", 1.1);
  std::vector<char> data = source.getBinary();
  data.pop_back();
  limits.nestingDepth = 0;
  file.setLimits(limits);
  EXPECT_FALSE(file.setBinary(data));
}

TEST_F(ParserLimitsTest, AGroupThatIsLeftOutMayTellAWrongSize) {
  constexpr std::size_t SIZE_OF_THE_GROUP = 4 + 8 + 2 + 8 + 1 + 1;
  ParserFile source;
  source.getRoot().setText("a { b 2 }", 1.1);
  std::vector<char> data = source.getBinary();
  data[SIZE_OF_THE_GROUP] = 0x7F;
  limits.nestingDepth = 0;
  file.setLimits(limits);
  EXPECT_FALSE(file.setBinary(data));
  EXPECT_THAT(
      console.getWarnings(),
      testing::Contains("ParserGroup::setBinary: ParserGroup size larger than the given data\n"));
}

// --- Preprocessing alone -------------------------------------------------------------------------

TEST_F(ParserLimitsTest, PreprocessingAloneKeepsWithinThem) {
  folder.write("top.cfg", "a 1 #include \"top.cfg\"");
  limits.includeDepth = 5;
  file.setSearchPaths({"."});
  file.setLimits(limits);
  std::string text;
  std::set<std::string> included;
  EXPECT_EQ(file.preprocessFile(text, "top.cfg", included), 0.0);
  EXPECT_EQ(text, "a 1 ");
  EXPECT_EQ(console.getWarnings().size(), 1);
}
