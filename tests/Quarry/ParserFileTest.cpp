#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Plinth::Console;
using Quarry::ParserFile;
using Quarry::ParserGroup;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::describe;
using TestSupport::Message;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace {

/// A document with a folder, which is the working directory.
class ParserFileTest : public testing::Test {
 protected:
  std::string tree() const { return describe(file.getRoot()); }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserFile file;
};

std::string textOf(const ParserFile& file) {
  std::string text;
  file.getText(text);
  return text;
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

TEST_F(ParserFileTest, ANewDocumentHasARootGroupCalledRoot) {
  EXPECT_EQ(file.getRoot().getName(), "root");
  EXPECT_EQ(file.getRoot().getItemCount(), 0U);
}

TEST_F(ParserFileTest, ANewDocumentHasNoNameAndNoDirectory) {
  EXPECT_EQ(file.getFilename(), "");
  EXPECT_EQ(file.getDirectory(), "");
}

TEST_F(ParserFileTest, ANewDocumentHasNoSearchPaths) {
  EXPECT_THAT(file.getSearchPaths(), IsEmpty());
}

TEST_F(ParserFileTest, ANewDocumentHasVersion11) { EXPECT_EQ(file.getVersion(), 1.1); }

TEST_F(ParserFileTest, ADocumentMadeWithANameDoesNotReadIt) {
  folder.write("x.cfg", "a 1");
  const ParserFile named("x.cfg");
  EXPECT_EQ(named.getFilename(), "x.cfg");
  EXPECT_EQ(named.getRoot().getItemCount(), 0U);
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileTest, ADocumentMadeWithANameHasItsDirectory) {
  EXPECT_EQ(ParserFile("dir/x.cfg").getDirectory(), "dir");
}

// That the group is deleted with the document, the leak check of the sanitizers sees.
TEST_F(ParserFileTest, ADocumentMadeAroundAGroupAdoptsIt) {
  auto* group = new ParserGroup("mine");
  group->addItem("a", 0, 0)->addInt(1);
  const ParserFile around(*group);
  EXPECT_EQ(&around.getRoot(), group);
  EXPECT_EQ(describe(around.getRoot()), "a int:1");
}

TEST_F(ParserFileTest, ADocumentMadeAroundAGroupHasNoNameAndVersion11) {
  const ParserFile around(*new ParserGroup("mine"));
  EXPECT_EQ(around.getFilename(), "");
  EXPECT_EQ(around.getVersion(), 1.1);
}

// --- Names and search paths ----------------------------------------------------------------------

TEST_F(ParserFileTest, SetFilenameTakesTheFilesOwnDirectory) {
  file.setFilename("a/b/doc.cfg");
  file.setFilename(file.getDirectory());
  EXPECT_EQ(file.getFilename(), "a/b");
  EXPECT_EQ(file.getDirectory(), "a");
}

TEST_F(ParserFileTest, SetFilenameStoresTheNameAndItsDirectory) {
  EXPECT_TRUE(file.setFilename("dir/sub/doc.cfg"));
  EXPECT_EQ(file.getFilename(), "dir/sub/doc.cfg");
  EXPECT_EQ(file.getDirectory(), "dir/sub");
}

TEST_F(ParserFileTest, ANameWithoutASlashHasAnEmptyDirectory) {
  file.setFilename("dir/doc.cfg");
  EXPECT_TRUE(file.setFilename("doc.cfg"));
  EXPECT_EQ(file.getDirectory(), "");
}

TEST_F(ParserFileTest, ANameWhoseOnlySlashComesFirstHasAnEmptyDirectory) {
  EXPECT_TRUE(file.setFilename("/doc.cfg"));
  EXPECT_EQ(file.getDirectory(), "");
}

TEST_F(ParserFileTest, ANameThatEndsInASlashIsItsOwnDirectory) {
  EXPECT_TRUE(file.setFilename("dir/"));
  EXPECT_EQ(file.getDirectory(), "dir");
}

TEST_F(ParserFileTest, AnEmptyNameIsRefusedAndEmptiesBoth) {
  file.setFilename("dir/doc.cfg");
  EXPECT_FALSE(file.setFilename(""));
  EXPECT_EQ(file.getFilename(), "");
  EXPECT_EQ(file.getDirectory(), "");
}

TEST_F(ParserFileTest, SetSearchPathsReplacesTheWholeList) {
  file.setSearchPaths({"a", "b"});
  file.setSearchPaths({"c"});
  EXPECT_THAT(file.getSearchPaths(), ElementsAre("c"));
}

// --- Clear and text ------------------------------------------------------------------------------

TEST_F(ParserFileTest, ClearEmptiesTheRootGroup) {
  file.getRoot().setText("a 1 #k 2", 1.1);
  file.clear();
  EXPECT_EQ(textOf(file), "");
}

TEST_F(ParserFileTest, ClearKeepsNameDirectorySearchPathsAndVersion) {
  folder.write("dir/x.cfg", "#SerialVersion 2\na 1");
  file.setSearchPaths({"a"});
  file.read("dir/x.cfg");
  file.clear();
  EXPECT_EQ(file.getFilename(), "dir/x.cfg");
  EXPECT_EQ(file.getDirectory(), "dir");
  EXPECT_THAT(file.getSearchPaths(), ElementsAre("a"));
  EXPECT_EQ(file.getVersion(), 2.0);
}

TEST_F(ParserFileTest, TheTextOfANewDocumentIsEmpty) {
  std::string text = "before";
  file.getText(text);
  EXPECT_EQ(text, "before");
}

TEST_F(ParserFileTest, TheTextIsAppendedWithoutAVersionLine) {
  file.getRoot().setText("a 1 g { b 2 }", 1.1);
  std::string text = "before";
  file.getText(text);
  EXPECT_EQ(text, "before\na 1\ng {\n    b 2\n}");
}

// --- Read ----------------------------------------------------------------------------------------

TEST_F(ParserFileTest, ReadGivesTheTreeAndTheDeclaredVersion) {
  folder.write("x.cfg", "#SerialVersion 1.1\n\na 1\ng { b \"s\" }\n");
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(tree(), "a int:1; g {b string:\"s\"}");
  EXPECT_EQ(file.getVersion(), 1.1);
}

TEST_F(ParserFileTest, ReadIsSilentAboutAWellFormedDocument) {
  folder.write("x.cfg", "a 1");
  file.read("x.cfg");
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileTest, ReadStoresTheName) {
  folder.write("dir/x.cfg", "a 1");
  file.read("dir/x.cfg");
  EXPECT_EQ(file.getFilename(), "dir/x.cfg");
  EXPECT_EQ(file.getDirectory(), "dir");
}

TEST_F(ParserFileTest, ReadWithAnEmptyNameReadsTheStoredOne) {
  folder.write("x.cfg", "a 1");
  file.setFilename("x.cfg");
  EXPECT_TRUE(file.read(""));
  EXPECT_EQ(tree(), "a int:1");
}

TEST_F(ParserFileTest, ReadWithoutAnyNameFails) {
  EXPECT_FALSE(file.read(""));
  EXPECT_THAT(console.getWarnings(), ElementsAre("File '' not found.\n"));
  EXPECT_EQ(file.getVersion(), 0.0);
}

TEST_F(ParserFileTest, ReadOfAMissingFileFailsAndStoresItsName) {
  EXPECT_FALSE(file.read("missing.cfg"));
  EXPECT_EQ(
      console.getMessages(),
      std::vector<Message>({{Console::LEVEL_WARNING, "File 'missing.cfg' not found.\n", ""}}));
  EXPECT_EQ(file.getFilename(), "missing.cfg");
}

TEST_F(ParserFileTest, ReadOfAFileThatCannotBeOpenedFails) {
  std::filesystem::permissions(folder.write("x.cfg", "a 1"), std::filesystem::perms::none);
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Console::LEVEL_WARNING, "Failed to open file 'x.cfg'.\n", ""}}));
}

TEST_F(ParserFileTest, AFailedReadLeavesTheTreeAndSetsVersion0) {
  file.getRoot().setText("a 1", 1.1);
  file.read("missing.cfg");
  EXPECT_EQ(tree(), "a int:1");
  EXPECT_EQ(file.getVersion(), 0.0);
}

TEST_F(ParserFileTest, AReadThatFailsInAnIncludeLeavesTheTree) {
  folder.write("x.cfg", "a 1\n#include \"missing.cfg\"\nb 2");
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_EQ(tree(), "");
  EXPECT_THAT(console.getWarnings(), ElementsAre("File 'missing.cfg' not found.\n"));
}

TEST_F(ParserFileTest, AnUnclosedIncludeFailsSilently) {
  folder.write("x.cfg", "#include \"sub.cfg\n");
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileTest, ADocumentOfVersion0FailsSilently) {
  folder.write("x.cfg", "#SerialVersion 0\na 1");
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ParserFileTest, ADocumentOfANegativeVersionFailsButKeepsItsVersion) {
  folder.write("x.cfg", "#SerialVersion -1\na 1");
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_EQ(tree(), "");
  EXPECT_EQ(file.getVersion(), -1.0);
}

TEST_F(ParserFileTest, ADirectoryIsNotFound) {
  std::filesystem::create_directory("dir");
  EXPECT_FALSE(file.read("dir"));
  EXPECT_THAT(console.getWarnings(), ElementsAre("File 'dir' not found.\n"));
}

TEST_F(ParserFileTest, AFifoIsNotFoundAndDoesNotBlock) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_FALSE(file.read("pipe"));
  EXPECT_THAT(console.getWarnings(), ElementsAre("File 'pipe' not found.\n"));
}

TEST_F(ParserFileTest, ANameWithAZeroByteIsNotFound) {
  folder.write("x", "a 1");
  EXPECT_FALSE(file.read(std::string("x\0y", 3)));
  EXPECT_THAT(console.getWarnings(), ElementsAre(std::string("File 'x\0y' not found.\n", 22)));
}

TEST_F(ParserFileTest, AnEmptyFileIsReadWithVersion10) {
  folder.write("x.cfg", "");
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(file.getVersion(), 1.0);
  EXPECT_EQ(tree(), "");
}

TEST_F(ParserFileTest, ADocumentWithoutAVersionHasVersion10) {
  folder.write("x.cfg", R"(s "a\nb")");
  file.read("x.cfg");
  EXPECT_EQ(file.getVersion(), 1.0);
  EXPECT_EQ(file.getRoot().getItem("s")->getString(0), R"(a\nb)");
}

TEST_F(ParserFileTest, ReadAddsToTheTree) {
  folder.write("x.cfg", "a 1");
  file.read("x.cfg");
  file.read("x.cfg");
  EXPECT_EQ(tree(), "a int:1; a int:1");
}

TEST_F(ParserFileTest, ReadReturnsTrueForTextThatDrawsWarnings) {
  folder.write("x.cfg", "a 1 ;");
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("ParserGroup::setText: (1:4) Unknown word type: ';'\n"));
}

TEST_F(ParserFileTest, ASearchPathIsTriedBeforeTheBareName) {
  folder.write("x.cfg", "bare 1");
  folder.write("a/x.cfg", "first 1");
  folder.write("b/x.cfg", "second 1");
  file.setSearchPaths({"a", "b/"});
  file.read("x.cfg");
  EXPECT_EQ(tree(), "first int:1");
}

TEST_F(ParserFileTest, TheBareNameIsTriedLast) {
  folder.write("x.cfg", "bare 1");
  file.setSearchPaths({"a", "b/"});
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(tree(), "bare int:1");
}

TEST_F(ParserFileTest, SearchPathsAreAfterwardsWhatTheyWere) {
  folder.write("x.cfg", "a 1");
  file.setSearchPaths({"a", "b/"});
  file.read("x.cfg");
  EXPECT_THAT(file.getSearchPaths(), ElementsAre("a", "b/"));
}

TEST_F(ParserFileTest, SearchPathsAreWhatTheyWereAfterAFailedReadToo) {
  file.setSearchPaths({"a"});
  file.read("missing.cfg");
  EXPECT_THAT(file.getSearchPaths(), ElementsAre("a"));
}

TEST_F(ParserFileTest, ACompressedDocumentIsReadUnderItsOwnName) {
  folder.writeCompressed("x.cfg", "#SerialVersion 1.1$\na 1$\ng {$\nb 2$\n}$\n");
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(tree(), "a int:1; g {b int:2}");
}

TEST_F(ParserFileTest, ACompressedDocumentOnlyASearchPathFindsIsReadAsItIs) {
  folder.writeCompressed("dir/x.cfg", "a 1$\n");
  file.setSearchPaths({"dir"});
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(file.getRoot().getItem("a"), nullptr);
}

TEST_F(ParserFileTest, AnEmptyCompressedLineRaisesTheStandardError) {
  folder.writeCompressed("x.cfg", "a 1$\n\n");
  EXPECT_THROW(file.read("x.cfg"), std::out_of_range);
}

TEST_F(ParserFileTest, AnExceptionLeavesTheEmptySearchPathInTheList) {
  folder.writeCompressed("x.cfg", "a 1$\n\n");
  file.setSearchPaths({"a"});
  EXPECT_THROW(file.read("x.cfg"), std::out_of_range);
  EXPECT_THAT(file.getSearchPaths(), ElementsAre("a", ""));
}

TEST_F(ParserFileTest, AFileWhoseNameIsNoUtf8IsRead) {
  folder.write("m\xFCll.cfg", "a 1");
  EXPECT_TRUE(file.read("m\xFCll.cfg"));
}

// --- preprocessFile ------------------------------------------------------------------------------

TEST_F(ParserFileTest, PreprocessFileAppendsTheTextAndReturnsTheVersion) {
  folder.write("x.cfg", "#SerialVersion 2.5\na 1 // note\nb 2");
  file.setSearchPaths({"."});
  std::set<std::string> included;
  std::string text = "before ";
  EXPECT_EQ(file.preprocessFile(text, "x.cfg", included), 2.5);
  EXPECT_EQ(text, "before a 1 b 2");
}

TEST_F(ParserFileTest, PreprocessFileLooksInTheSearchPathsOnly) {
  folder.write("x.cfg", "a 1");
  std::set<std::string> included;
  std::string text;
  EXPECT_EQ(file.preprocessFile(text, "x.cfg", included), 0.0);
}

TEST_F(ParserFileTest, PreprocessFileLeavesTheSetOfIncludedFilesAlone) {
  folder.write("x.cfg", "#include \"y.cfg\"");
  folder.write("y.cfg", "a 1");
  file.setSearchPaths({"."});
  std::set<std::string> included = {"y.cfg"};
  std::string text;
  EXPECT_EQ(file.preprocessFile(text, "x.cfg", included), 1.0);
  EXPECT_EQ(text, "a 1");
  EXPECT_THAT(included, ElementsAre("y.cfg"));
}

TEST_F(ParserFileTest, PreprocessFileKeepsWhatItAppendedBeforeAFailure) {
  folder.write("x.cfg", "a 1 #include \"missing.cfg\"");
  file.setSearchPaths({"."});
  std::set<std::string> included;
  std::string text;
  EXPECT_EQ(file.preprocessFile(text, "x.cfg", included), 0.0);
  EXPECT_EQ(text, "a 1 ");
}

TEST_F(ParserFileTest, PreprocessFileChangesNeitherTreeNorVersionNorName) {
  folder.write("x.cfg", "#SerialVersion 3\na 1");
  file.setSearchPaths({"."});
  std::set<std::string> included;
  std::string text;
  file.preprocessFile(text, "x.cfg", included);
  EXPECT_EQ(tree(), "");
  EXPECT_EQ(file.getVersion(), 1.1);
  EXPECT_EQ(file.getFilename(), "");
}
