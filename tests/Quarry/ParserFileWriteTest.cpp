#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Plinth::Console;
using Quarry::ParserFile;
using testing::ElementsAre;
using TestSupport::Message;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace {

/// A document with a folder, which is the working directory.
class ParserFileWriteTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserFile file;
};

}  // namespace

// --- Write ---------------------------------------------------------------------------------------

TEST_F(ParserFileWriteTest, WritePutsTheVersionLineAndAnEmptyLineFirst) {
  file.getRoot().setText("a 1 g { b 2 }", 1.1);
  EXPECT_TRUE(file.write("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n\na 1\ng {\n    b 2\n}");
}

TEST_F(ParserFileWriteTest, WriteOfAnEmptyDocumentIsTheVersionLine) {
  EXPECT_TRUE(file.write("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(ParserFileWriteTest, WriteTellsTheNumberOfBytesToDebug) {
  file.getRoot().setText("a 1", 1.1);
  file.write("x.cfg");
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Console::LEVEL_DEBUG, "Written 23bytes in 'x.cfg'.", ""}}));
}

TEST_F(ParserFileWriteTest, WriteTellsTheNameThatItWasGivenThoughThatChangesMeanwhile) {
  file.setFilename("x.cfg/y.cfg");
  EXPECT_TRUE(file.write(file.getDirectory()));
  EXPECT_EQ(console.getMessages().front().text, "Written 19bytes in 'x.cfg'.");
}

TEST_F(ParserFileWriteTest, WriteStoresTheName) {
  std::filesystem::create_directory("dir");
  file.write("dir/x.cfg");
  EXPECT_EQ(file.getFilename(), "dir/x.cfg");
  EXPECT_EQ(file.getDirectory(), "dir");
}

TEST_F(ParserFileWriteTest, WriteWithAnEmptyNameWritesTheStoredOne) {
  file.setFilename("x.cfg");
  EXPECT_TRUE(file.write(""));
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(ParserFileWriteTest, WriteWithAnEmptyNameTellsAnEmptyName) {
  file.setFilename("x.cfg");
  file.write("");
  EXPECT_THAT(console.getTexts(Console::LEVEL_DEBUG), ElementsAre("Written 19bytes in ''."));
}

TEST_F(ParserFileWriteTest, WriteWithoutAnyNameFailsSilently) {
  EXPECT_FALSE(file.write(""));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileWriteTest, WriteReplacesALongerFile) {
  folder.write("x.cfg", std::string(1000, 'x'));
  file.write("x.cfg");
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(ParserFileWriteTest, WriteDoesNotUseTheSearchPaths) {
  folder.write("dir/x.cfg", "old");
  file.setSearchPaths({"dir"});
  file.write("x.cfg");
  EXPECT_EQ(folder.read("dir/x.cfg"), "old");
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(ParserFileWriteTest, WriteWithoutPermissionFailsSilently) {
  std::filesystem::permissions(folder.write("x.cfg", "old"), std::filesystem::perms::owner_read);
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.write("x.cfg"));
  EXPECT_TRUE(console.isSilent());
  EXPECT_EQ(folder.read("x.cfg"), "old");
}

TEST_F(ParserFileWriteTest, WriteToADirectoryFailsSilently) {
  std::filesystem::create_directory("dir");
  EXPECT_FALSE(file.write("dir"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileWriteTest, WriteIntoAMissingDirectoryFailsSilently) {
  EXPECT_FALSE(file.write("missing/x.cfg"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileWriteTest, WriteToANameWithAZeroByteFailsSilently) {
  EXPECT_FALSE(file.write(std::string("x\0y", 3)));
  EXPECT_TRUE(console.isSilent());
  EXPECT_FALSE(std::filesystem::exists("x"));
}

TEST_F(ParserFileWriteTest, AFailedWriteStoresTheNameToo) {
  file.write("missing/x.cfg");
  EXPECT_EQ(file.getFilename(), "missing/x.cfg");
}

TEST_F(ParserFileWriteTest, AFailedWriteLeavesTheKeywordAsItWas) {
  file.getRoot().setText("#SerialVersion 2", 1.1);
  file.write("missing/x.cfg");
  EXPECT_EQ(file.getRoot().getKeyword("#SerialVersion")->getInt(0), 2);
}

TEST_F(ParserFileWriteTest, WriteToAFullDiskReportsAnErrorAndReturnsTrue) {
  EXPECT_TRUE(file.write("/dev/full"));
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Console::LEVEL_ERROR,
                                   "ParserFile.write: Can't save project '/dev/full'.\n", ""}}));
}

TEST_F(ParserFileWriteTest, WriteToAFullDiskReportsTheNameAsGiven) {
  file.setFilename("/dev/full");
  EXPECT_TRUE(file.write(""));
  EXPECT_THAT(console.getTexts(Console::LEVEL_ERROR),
              ElementsAre("ParserFile.write: Can't save project ''.\n"));
}

TEST_F(ParserFileWriteTest, WriteToAFileWhoseNameIsNoUtf8Works) {
  EXPECT_TRUE(file.write("m\xFCll.cfg"));
  EXPECT_EQ(folder.read("m\xFCll.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(ParserFileWriteTest, WriteKeepsTheVersionThatWasRead) {
  folder.write("x.cfg", "#SerialVersion 2\na 1");
  file.read("x.cfg");
  file.write("x.cfg");
  EXPECT_EQ(file.getVersion(), 2.0);
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n\na 1");
}

// --- The version keyword -------------------------------------------------------------------------

TEST_F(ParserFileWriteTest, AVersionKeywordTakesThePlaceOfTheVersionLine) {
  file.getRoot().setText("a 1 #SerialVersion 2", 1.1);
  file.write("x.cfg");
  EXPECT_EQ(folder.read("x.cfg"), "\na 1\n#SerialVersion \x01");
}

TEST_F(ParserFileWriteTest, WriteSetsTheFirstValueOfTheVersionKeyword) {
  file.getRoot().setText("#SerialVersion 2 \"more\"", 1.1);
  file.write("x.cfg");
  const Quarry::ParserItem* keyword = file.getRoot().getKeyword("#SerialVersion");
  EXPECT_EQ(keyword->getDouble(0), 1.1);
  EXPECT_EQ(keyword->getString(1), "more");
}

// The keyword's value was set as data and is written as one raw byte, which declares version 0.
TEST_F(ParserFileWriteTest, ADocumentWrittenWithTheVersionKeywordIsRefused) {
  file.getRoot().setText("#SerialVersion 2 a 1", 1.1);
  file.write("x.cfg");
  EXPECT_FALSE(ParserFile().read("x.cfg"));
}

TEST_F(ParserFileWriteTest, AVersionKeywordWithoutAValueGetsOneInDigits) {
  file.getRoot().addItem("#SerialVersion", 0, 0);
  file.getRoot().addItem("a", 0, 0)->addInt(1);
  file.write("x.cfg");
  EXPECT_EQ(folder.read("x.cfg"), "\n#SerialVersion 1.1\na 1");
}

TEST_F(ParserFileWriteTest, ADocumentWrittenWithAnAddedVersionValueIsReadAsVersion11) {
  file.getRoot().addItem("#SerialVersion", 0, 0);
  file.write("x.cfg");
  ParserFile again;
  EXPECT_TRUE(again.read("x.cfg"));
  EXPECT_EQ(again.getVersion(), 1.1);
}

TEST_F(ParserFileWriteTest, AnotherKeywordLeavesTheVersionLine) {
  file.getRoot().setText("#Serial 2", 1.1);
  file.write("x.cfg");
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n\n#Serial 2");
}

TEST_F(ParserFileWriteTest, AVersionKeywordWithinAGroupLeavesTheVersionLine) {
  file.getRoot().setText("g { #SerialVersion 2 }", 1.1);
  file.write("x.cfg");
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n\ng {\n    #SerialVersion 2\n}");
}
