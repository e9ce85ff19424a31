// Files that are read.

#include <Quarry/internal/InputFile.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "support/TemporaryFolder.h"

using Quarry::InputFile;
using TestSupport::TemporaryFolder;

namespace {

std::string read(InputFile& file, std::size_t most) {
  std::string bytes(most, '?');
  bytes.resize(file.read(bytes.data(), most));
  return bytes;
}

}  // namespace

TEST(InputFileTest, IsNotOpenAtFirst) {
  const InputFile file;
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(file.getSize(), 0U);
}

TEST(InputFileTest, IsReadFromItsBeginningToItsEnd) {
  const TemporaryFolder folder;
  InputFile file;
  ASSERT_TRUE(file.openRegular(folder.write("x.cfg", "abcde")));
  EXPECT_EQ(file.getSize(), 5U);
  EXPECT_EQ(read(file, 3), "abc");
  EXPECT_EQ(read(file, 3), "de");
  EXPECT_EQ(read(file, 3), "");
  EXPECT_EQ(errno, 0);
}

TEST(InputFileTest, OpensAnotherFileInItsPlace) {
  const TemporaryFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.write("x.cfg", "abcde")));
  ASSERT_TRUE(file.open(folder.write("y.cfg", "fg")));
  EXPECT_EQ(file.getSize(), 2U);
  EXPECT_EQ(read(file, 9), "fg");
}

TEST(InputFileTest, IsClosedWhenAnotherOneCannotBeOpened) {
  const TemporaryFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.write("x.cfg", "abcde")));
  EXPECT_FALSE(file.open(folder.getPath("missing")));
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(file.getSize(), 0U);
}

TEST(InputFileTest, CanBeHandedOn) {
  const TemporaryFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.write("x.cfg", "abcde")));
  InputFile other(std::move(file));
  EXPECT_EQ(other.getSize(), 5U);
  EXPECT_EQ(read(other, 9), "abcde");
}

TEST(InputFileTest, IsNotOpenWhenItWasHandedOn) {
  const TemporaryFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.write("x.cfg", "abcde")));
  const InputFile other(std::move(file));
  EXPECT_FALSE(file.isOpen());  // NOLINT(bugprone-use-after-move): that is the question
}

TEST(InputFileTest, TellsWhyItIsNotOpen) {
  const TemporaryFolder folder;
  InputFile file;
  EXPECT_FALSE(file.openRegular(folder.getPath("missing")));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(file.openRegular(folder.write("x.cfg", "") + "/y.cfg"));
  EXPECT_EQ(errno, ENOTDIR);
}

TEST(InputFileTest, ANameWithAZeroByteIsNoFiles) {
  const TemporaryFolder folder;
  InputFile file;
  EXPECT_FALSE(file.openRegular(folder.write("x", "") + std::string("\0y", 2)));
  EXPECT_EQ(errno, ENOENT);
}

TEST(InputFileTest, AFifoIsNoRegularFileAndDoesNotWaitForAWriter) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.getPath("pipe").c_str(), 0600), 0);
  InputFile file;
  EXPECT_FALSE(file.openRegular(folder.getPath("pipe")));
  EXPECT_FALSE(file.isOpen());
}

TEST(InputFileTest, AFolderIsNoRegularFile) {
  const TemporaryFolder folder;
  InputFile file;
  EXPECT_FALSE(file.openRegular(folder.getPath()));
  EXPECT_FALSE(file.isOpen());
}

TEST(InputFileTest, ADeviceIsNoRegularFile) {
  InputFile file;
  EXPECT_FALSE(file.openRegular("/dev/zero"));
  EXPECT_FALSE(file.isOpen());
}

TEST(InputFileTest, ATerminalDoesNotBecomeThatOfTheProcess) {
  const int other = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (other < 0 || grantpt(other) != 0 || unlockpt(other) != 0) GTEST_SKIP() << "no terminals";
  const std::string terminal = ptsname(other);
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    InputFile().openRegular(terminal);
    _exit(::open("/dev/tty", O_RDWR | O_CLOEXEC) < 0 ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  close(other);
}
