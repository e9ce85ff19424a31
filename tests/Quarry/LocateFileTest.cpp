#include <Quarry/internal/FileAccess.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/TemporaryFolder.h"

using Quarry::locateFile;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

TEST(LocateFileTest, FindsAFileInASearchPath) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath()}, "x.cfg"), path);
}

TEST(LocateFileTest, TheFirstSearchPathWins) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a/x.cfg", "");
  folder.write("b/x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST(LocateFileTest, ALaterSearchPathIsTriedWhenTheFirstHasNoSuchFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("b/x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST(LocateFileTest, ASearchPathThatEndsInASlashGetsNoSecondOne) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath() + "/"}, "x.cfg"), path);
}

TEST(LocateFileTest, AnEmptySearchPathStandsForTheBareName) {
  const TemporaryFolder folder;
  folder.write("x.cfg", "");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(locateFile({""}, "x.cfg"), "x.cfg");
}

TEST(LocateFileTest, AnAbsoluteNameIsPrefixedBySearchPathsToo) {
  const TemporaryFolder folder;
  const std::string path = folder.write("etc/x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath()}, "/etc/x.cfg"), folder.getPath() + "//etc/x.cfg");
  EXPECT_EQ(locateFile({folder.getPath(), ""}, path), path);
}

TEST(LocateFileTest, WithoutSearchPathsNothingIsFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locateFile({}, folder.write("x.cfg", "")), "");
}

TEST(LocateFileTest, AMissingFileIsNotFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locateFile({folder.getPath(), ""}, "x.cfg"), "");
}

TEST(LocateFileTest, ADirectoryIsPassedOver) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.getPath("a/x.cfg"));
  const std::string path = folder.write("b/x.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST(LocateFileTest, TheEmptyNameIsTheDirectoryItselfAndNotFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locateFile({folder.getPath(), ""}, ""), "");
}

TEST(LocateFileTest, AFifoIsPassedOver) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.getPath("pipe").c_str(), 0600), 0);
  EXPECT_EQ(locateFile({folder.getPath()}, "pipe"), "");
}

TEST(LocateFileTest, ALinkToAFileIsFound) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.write("x.cfg", ""), folder.getPath("link.cfg"));
  EXPECT_EQ(locateFile({folder.getPath()}, "link.cfg"), folder.getPath("link.cfg"));
}

TEST(LocateFileTest, ALinkToNothingIsNotFound) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.getPath("gone"), folder.getPath("link.cfg"));
  EXPECT_EQ(locateFile({folder.getPath()}, "link.cfg"), "");
}

TEST(LocateFileTest, ANameWithAZeroByteIsNotFoundUnderItsFirstPart) {
  const TemporaryFolder folder;
  folder.write("x", "");
  EXPECT_EQ(locateFile({folder.getPath()}, std::string("x\0y", 3)), "");
}

TEST(LocateFileTest, AUtf8NameIsFound) {
  const TemporaryFolder folder;
  const std::string path = folder.write("m\xC3\xBCll.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath()}, "m\xC3\xBCll.cfg"), path);
}

TEST(LocateFileTest, ANameThatIsNoUtf8IsFound) {
  const TemporaryFolder folder;
  const std::string path = folder.write("m\xFCll.cfg", "");
  EXPECT_EQ(locateFile({folder.getPath()}, "m\xFCll.cfg"), path);
}

TEST(LocateFileTest, TheSizeOfTheFileIsTold) {
  const TemporaryFolder folder;
  folder.write("a/y.cfg", "other");
  folder.write("b/x.cfg", "a 1\n");
  std::size_t size = 0;
  locateFile({folder.getPath("a"), folder.getPath("b")}, "x.cfg", &size);
  EXPECT_EQ(size, 4U);
}
