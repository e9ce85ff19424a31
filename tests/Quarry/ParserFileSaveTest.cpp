#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
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

namespace fs = std::filesystem;

/// A document with a folder, which is the working directory.
class ParserFileSaveTest : public testing::Test {
 protected:
  void SetUp() override { file.getRoot().setText("a 1", 1.1); }

  std::vector<std::string> getErrors() const { return console.getTexts(Console::LEVEL_ERROR); }

  static mode_t getMode(const std::string& path) { return getStatus(path).st_mode & 07777; }

  static struct stat getStatus(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
  }

  const std::string text = "#SerialVersion 1.1\n\na 1";
  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserFile file;
};

/// As long as this lives, no file of this process grows beyond so many bytes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &previous);
    const rlimit limit = {bytes, previous.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);
  }

 private:
  rlimit previous = {};
  void (*previousHandler)(int);
};

}  // namespace

// --- What is saved -------------------------------------------------------------------------------

TEST_F(ParserFileSaveTest, SaveWritesWhatWriteWrites) {
  EXPECT_TRUE(file.save("x.cfg"));
  file.write("y.cfg");
  EXPECT_EQ(folder.read("x.cfg"), text);
  EXPECT_EQ(folder.read("y.cfg"), text);
}

TEST_F(ParserFileSaveTest, SaveReplacesALongerDocument) {
  folder.write("x.cfg", std::string(1000, 'x'));
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), text);
}

TEST_F(ParserFileSaveTest, SaveTellsTheNumberOfBytesToDebug) {
  file.save("x.cfg");
  EXPECT_EQ(console.getMessages(),
            std::vector<Message>({{Console::LEVEL_DEBUG, "Written 23bytes in 'x.cfg'.", ""}}));
}

TEST_F(ParserFileSaveTest, SaveStoresTheName) {
  fs::create_directory("dir");
  file.save("dir/x.cfg");
  EXPECT_EQ(file.getFilename(), "dir/x.cfg");
  EXPECT_EQ(file.getDirectory(), "dir");
}

TEST_F(ParserFileSaveTest, SaveWithoutANameGoesToTheStoredOneAndTellsIt) {
  file.setFilename("x.cfg");
  EXPECT_TRUE(file.save(""));
  EXPECT_EQ(folder.read("x.cfg"), text);
  EXPECT_EQ(console.getMessages().front().text, "Written 23bytes in 'x.cfg'.");
}

TEST_F(ParserFileSaveTest, SaveLeavesNothingElseInTheFolder) {
  file.save("x.cfg");
  file.save("x.cfg");
  EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1);
}

TEST_F(ParserFileSaveTest, TheRootsVersionKeywordIsSetAsByWrite) {
  file.getRoot().addItem("#SerialVersion", 0, 0);
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), "\na 1\n#SerialVersion 1.1");
}

TEST_F(ParserFileSaveTest, ANameMayHaveAnyBytes) {
  EXPECT_TRUE(file.save("\xff\xfe \n.cfg"));
  EXPECT_EQ(folder.read("\xff\xfe \n.cfg"), text);
}

TEST_F(ParserFileSaveTest, ANameMayBeAsLongAsTheSystemAllows) {
  const std::string longest(255, 'x');
  EXPECT_TRUE(file.save(longest));
  EXPECT_EQ(folder.read(longest), text);
}

// --- What stays ----------------------------------------------------------------------------------

TEST_F(ParserFileSaveTest, TheModeStays) {
  folder.write("x.cfg", "");
  ::chmod("x.cfg", 0640);
  file.save("x.cfg");
  EXPECT_EQ(getMode("x.cfg"), 0640);
}

TEST_F(ParserFileSaveTest, ANewFileGetsTheModeThatTheProcessGives) {
  const mode_t previous = ::umask(027);
  file.save("x.cfg");
  ::umask(previous);
  EXPECT_EQ(getMode("x.cfg"), 0640);
}

TEST_F(ParserFileSaveTest, OwnerAndGroupStay) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser gives files away";
  folder.write("x.cfg", "");
  ASSERT_EQ(::chown("x.cfg", 12345, 23456), 0);
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(getStatus("x.cfg").st_uid, 12345);
  EXPECT_EQ(getStatus("x.cfg").st_gid, 23456);
}

TEST_F(ParserFileSaveTest, ModeBitsBeyondPermissionsStayWithAnotherOwner) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser gives files away";
  folder.write("x.cfg", "");
  ASSERT_EQ(::chown("x.cfg", 12345, 23456), 0);
  ::chmod("x.cfg", 04755);
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(getMode("x.cfg"), 04755);
}

TEST_F(ParserFileSaveTest, AFileOfAnotherOwnerIsRefusedWithoutThePrivilege) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser can make such a file";
  folder.write("x.cfg", "old");
  ASSERT_EQ(::chown("x.cfg", 12345, 23456), 0);
  ::chmod("x.cfg", 0666);
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), "old");
  EXPECT_THAT(getErrors(), ElementsAre("ParserFile.save: Can't save 'x.cfg': cannot keep the owner "
                                       "of 'x.cfg': Operation not permitted\n"));
}

TEST_F(ParserFileSaveTest, ALinkStaysAndItsFileIsReplaced) {
  folder.write("dir/x.cfg", "old");
  fs::create_symlink("dir/x.cfg", "link.cfg");
  EXPECT_TRUE(file.save("link.cfg"));
  EXPECT_TRUE(fs::is_symlink("link.cfg"));
  EXPECT_FALSE(fs::is_symlink("dir/x.cfg"));
  EXPECT_EQ(folder.read("dir/x.cfg"), text);
}

TEST_F(ParserFileSaveTest, LinksAreFollowedOneAfterTheOther) {
  folder.write("a/x.cfg", "old");
  fs::create_directory("b");
  fs::create_symlink("../a/x.cfg", "b/two.cfg");
  fs::create_symlink(folder.getPath("b/two.cfg"), "one.cfg");
  EXPECT_TRUE(file.save("one.cfg"));
  EXPECT_TRUE(fs::is_symlink("b/two.cfg"));
  EXPECT_EQ(folder.read("a/x.cfg"), text);
}

TEST_F(ParserFileSaveTest, ADanglingLinkGetsItsFile) {
  fs::create_symlink("x.cfg", "link.cfg");
  EXPECT_TRUE(file.save("link.cfg"));
  EXPECT_TRUE(fs::is_symlink("link.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), text);
}

TEST_F(ParserFileSaveTest, AnotherHardLinkKeepsTheOldDocument) {
  folder.write("x.cfg", "old");
  fs::create_hard_link("x.cfg", "y.cfg");
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("y.cfg"), "old");
}

// --- What is refused -----------------------------------------------------------------------------

TEST_F(ParserFileSaveTest, AFullDiskLeavesTheOldDocument) {
  folder.write("x.cfg", "old");
  bool isSaved = true;
  {
    const FileSizeLimit limit(10);
    isSaved = file.save("x.cfg");
  }
  EXPECT_FALSE(isSaved);
  EXPECT_EQ(folder.read("x.cfg"), "old");
  EXPECT_THAT(getErrors(), ElementsAre("ParserFile.save: Can't save 'x.cfg': cannot write 'x.cfg': "
                                       "File too large\n"));
}

TEST_F(ParserFileSaveTest, AMissingFolderIsRefused) {
  EXPECT_FALSE(file.save("missing/x.cfg"));
  EXPECT_THAT(getErrors(),
              ElementsAre("ParserFile.save: Can't save 'missing/x.cfg': cannot open the folder of "
                          "'missing/x.cfg': No such file or directory\n"));
}

TEST_F(ParserFileSaveTest, AFolderIsRefused) {
  fs::create_directory("dir");
  EXPECT_FALSE(file.save("dir"));
  EXPECT_THAT(getErrors(), ElementsAre("ParserFile.save: Can't save 'dir': cannot replace 'dir': "
                                       "Is a directory\n"));
}

TEST_F(ParserFileSaveTest, ADeviceIsRefused) {
  EXPECT_FALSE(file.save("/dev/full"));
  EXPECT_THAT(getErrors(),
              ElementsAre("ParserFile.save: Can't save '/dev/full': cannot replace what is no "
                          "regular file '/dev/full': Invalid argument\n"));
}

TEST_F(ParserFileSaveTest, AFifoIsRefusedAndDoesNotBlock) {
  ASSERT_EQ(::mkfifo("fifo", 0666), 0);
  EXPECT_FALSE(file.save("fifo"));
  EXPECT_TRUE(fs::is_fifo("fifo"));
}

TEST_F(ParserFileSaveTest, AnEmptyNameIsRefused) {
  EXPECT_FALSE(file.save(""));
  EXPECT_EQ(getErrors().size(), 1);
}

TEST_F(ParserFileSaveTest, ANameWithAZeroByteIsRefused) {
  EXPECT_FALSE(file.save(std::string("x\0.cfg", 6)));
  EXPECT_FALSE(fs::exists("x"));
}

TEST_F(ParserFileSaveTest, LinksThatLeadInACircleAreRefused) {
  fs::create_symlink("b.cfg", "a.cfg");
  fs::create_symlink("a.cfg", "b.cfg");
  EXPECT_FALSE(file.save("a.cfg"));
  EXPECT_TRUE(fs::is_symlink("a.cfg"));
}

TEST_F(ParserFileSaveTest, AFileThatMayNotBeWrittenIsRefused) {
  folder.write("x.cfg", "old");
  ::chmod("x.cfg", 0444);
  const WithoutPrivileges ordinary;
  EXPECT_FALSE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), "old");
  EXPECT_THAT(getErrors(), ElementsAre("ParserFile.save: Can't save 'x.cfg': cannot write 'x.cfg': "
                                       "Permission denied\n"));
}

TEST_F(ParserFileSaveTest, AFolderThatMayNotBeWrittenIsRefused) {
  folder.write("dir/x.cfg", "old");
  ::chmod("dir", 0555);
  {
    const WithoutPrivileges ordinary;
    EXPECT_FALSE(file.save("dir/x.cfg"));
  }
  EXPECT_EQ(folder.read("dir/x.cfg"), "old");
  EXPECT_THAT(getErrors(),
              ElementsAre("ParserFile.save: Can't save 'dir/x.cfg': cannot make a file beside "
                          "'dir/x.cfg': Permission denied\n"));
}

TEST_F(ParserFileSaveTest, AFolderThatMayNotBeEnteredIsRefused) {
  folder.write("dir/x.cfg", "old");
  ::chmod("dir", 0);
  {
    const WithoutPrivileges ordinary;
    EXPECT_FALSE(file.save("dir/x.cfg"));
  }
  ::chmod("dir", 0755);
  EXPECT_EQ(folder.read("dir/x.cfg"), "old");
}

TEST_F(ParserFileSaveTest, ARefusalLeavesTheTreeAsItIs) {
  EXPECT_FALSE(file.save("missing/x.cfg"));
  EXPECT_TRUE(file.save("x.cfg"));
  EXPECT_EQ(folder.read("x.cfg"), text);
}
