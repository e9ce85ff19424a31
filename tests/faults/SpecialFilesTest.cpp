// Names that stand for no ordinary file: nothing blocks, nothing is read without end.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Quarry::ParserFile;
using testing::ElementsAre;
using TestSupport::describe;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace fs = std::filesystem;

namespace {

/// A document with a folder, which is the working directory.
class SpecialFilesTest : public testing::Test {
 protected:
  static std::string notFound(const std::string& name) {
    return "File '" + name + "' not found.\n";
  }

  /// Expects that the name is said to be not found, as a document and as an include.
  void expectNotFound(const std::string& name) {
    EXPECT_FALSE(file.read(name));
    folder.write("including.cfg", "a 1 #include \"" + name + "\" b 2");
    EXPECT_FALSE(file.read("including.cfg"));
    EXPECT_THAT(console.getWarnings(), ElementsAre(notFound(name), notFound(name)));
    EXPECT_EQ(file.getVersion(), 0.0);
    EXPECT_EQ(describe(file.getRoot()), "");
  }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserFile file;
};

}  // namespace

// --- Read ----------------------------------------------------------------------------------------

TEST_F(SpecialFilesTest, AFifoWithoutAWriterIsNotFound) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  expectNotFound("pipe");
}

TEST_F(SpecialFilesTest, ALinkToAFifoIsNotFound) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  fs::create_symlink("pipe", "link");
  expectNotFound("link");
}

TEST_F(SpecialFilesTest, ADeviceWithoutEndIsNotFound) { expectNotFound("/dev/zero"); }

TEST_F(SpecialFilesTest, TheEmptyDeviceIsNotFound) { expectNotFound("/dev/null"); }

TEST_F(SpecialFilesTest, ATerminalIsNotFound) { expectNotFound("/dev/tty"); }

TEST_F(SpecialFilesTest, ASocketIsNotFound) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::string("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  expectNotFound("socket");
  ::close(socket);
}

TEST_F(SpecialFilesTest, AFolderIsNotFound) {
  fs::create_directory("folder");
  expectNotFound("folder");
}

TEST_F(SpecialFilesTest, ALinkToNothingIsNotFound) {
  fs::create_symlink("missing", "link");
  expectNotFound("link");
}

TEST_F(SpecialFilesTest, LinksThatLeadInACircleAreNotFound) {
  fs::create_symlink("second", "first");
  fs::create_symlink("first", "second");
  expectNotFound("first");
}

TEST_F(SpecialFilesTest, AFileUsedAsAFolderIsNotFound) {
  folder.write("x.cfg", "a 1");
  expectNotFound("x.cfg/y.cfg");
}

TEST_F(SpecialFilesTest, AFileInAFolderThatMayNotBeEnteredIsNotFound) {
  folder.write("locked/x.cfg", "a 1");
  fs::permissions("locked", fs::perms::none);
  {
    const WithoutPrivileges ordinary;
    expectNotFound("locked/x.cfg");
  }
  fs::permissions("locked", fs::perms::owner_all);
}

TEST_F(SpecialFilesTest, ANameThatIsTooLongIsNotFound) { expectNotFound(std::string(300, 'x')); }

TEST_F(SpecialFilesTest, APathThatIsTooLongIsNotFound) {
  std::string path;
  while (path.size() < 5000)
    path += "folder/";
  expectNotFound(path + "x.cfg");
}

TEST_F(SpecialFilesTest, AnIncludedFileThatMayNotBeReadIsToldOf) {
  folder.write("locked.cfg", "a 1");
  fs::permissions("locked.cfg", fs::perms::none);
  folder.write("x.cfg", "#include \"locked.cfg\"");
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.read("x.cfg"));
  EXPECT_THAT(console.getWarnings(), ElementsAre("Failed to open file 'locked.cfg'.\n"));
}

TEST_F(SpecialFilesTest, SearchPathsThatAreNoFoldersArePassedOver) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  fs::create_symlink("circle", "circle");
  folder.write("x.cfg", "a 1");
  file.setSearchPaths({"pipe", "circle", "x.cfg", "/dev/zero", "missing", folder.getPath()});
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_TRUE(console.isSilent());
}

// --- The compression probe -----------------------------------------------------------------------

TEST_F(SpecialFilesTest, ADeviceUnderTheBareNameIsNotProbed) {
  folder.write("dev/zero", "a 1");
  file.setSearchPaths({folder.getPath()});
  EXPECT_TRUE(file.read("/dev/zero"));
  EXPECT_EQ(describe(file.getRoot()), "a int:1");
}

TEST_F(SpecialFilesTest, AFifoUnderTheBareNameIsNotProbed) {
  ASSERT_EQ(mkfifo("x.cfg", 0600), 0);
  folder.write("found/x.cfg", "a 1");
  file.setSearchPaths({"found"});
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(describe(file.getRoot()), "a int:1");
}

TEST_F(SpecialFilesTest, LinksInACircleUnderTheBareNameAreNotProbed) {
  fs::create_symlink("x.cfg", "x.cfg");
  folder.write("found/x.cfg", "a 1");
  file.setSearchPaths({"found"});
  EXPECT_TRUE(file.read("x.cfg"));
  EXPECT_EQ(describe(file.getRoot()), "a int:1");
}

// --- Write ---------------------------------------------------------------------------------------

TEST_F(SpecialFilesTest, WriteThroughALinkWritesTheFileBehindIt) {
  folder.write("target.cfg", "old");
  fs::create_symlink("target.cfg", "link");
  EXPECT_TRUE(file.write("link"));
  EXPECT_EQ(folder.read("target.cfg"), "#SerialVersion 1.1\n");
  EXPECT_TRUE(fs::is_symlink("link"));
}

TEST_F(SpecialFilesTest, WriteThroughALinkToNothingMakesTheFile) {
  fs::create_symlink("target.cfg", "link");
  EXPECT_TRUE(file.write("link"));
  EXPECT_EQ(folder.read("target.cfg"), "#SerialVersion 1.1\n");
}

TEST_F(SpecialFilesTest, WriteThroughLinksInACircleFailsSilently) {
  fs::create_symlink("link", "link");
  EXPECT_FALSE(file.write("link"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(SpecialFilesTest, WriteIntoAFolderThatMayNotBeChangedFailsSilently) {
  fs::create_directory("locked");
  fs::permissions("locked", fs::perms::owner_read | fs::perms::owner_exec);
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.write("locked/x.cfg"));
  EXPECT_TRUE(console.isSilent());
}

TEST_F(SpecialFilesTest, WriteToTheEmptyDeviceSucceeds) {
  EXPECT_TRUE(file.write("/dev/null"));
  EXPECT_THAT(console.getTexts(Plinth::Console::LEVEL_DEBUG),
              ElementsAre("Written 19bytes in '/dev/null'."));
}
