#include <Quarry/internal/FileAccess.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Quarry::InputFile;
using Quarry::locateFile;
using Quarry::openFile;
using Quarry::StoredFiles;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace {

using Paths = std::vector<std::string>;

/// One of the ways to find a file.
struct Way {
  const char* name;
  std::string (*locate)(const Paths& searchPaths, const std::string& name);
};

const Way WAYS[] = {
    {"Locate", locateFile},
    {"Open",
     [](const Paths& searchPaths, const std::string& name) {
       InputFile file;
       std::string path = openFile(searchPaths, name, file);
       EXPECT_EQ(file.isOpen(), !path.empty());
       return path;
     }},
};

class LocateFileTest : public testing::TestWithParam<Way> {
 protected:
  static std::string locate(const Paths& searchPaths, const std::string& name) {
    return GetParam().locate(searchPaths, name);
  }
};

std::string nameWay(const testing::TestParamInfo<Way>& info) { return info.param.name; }

}  // namespace

INSTANTIATE_TEST_SUITE_P(EachWay, LocateFileTest, testing::ValuesIn(WAYS), nameWay);

TEST_P(LocateFileTest, FindsAFileInASearchPath) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "");
  EXPECT_EQ(locate({folder.getPath()}, "x.cfg"), path);
}

TEST_P(LocateFileTest, TheFirstSearchPathWins) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a/x.cfg", "");
  folder.write("b/x.cfg", "");
  EXPECT_EQ(locate({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST_P(LocateFileTest, ALaterSearchPathIsTriedWhenTheFirstHasNoSuchFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("b/x.cfg", "");
  EXPECT_EQ(locate({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST_P(LocateFileTest, ASearchPathThatEndsInASlashGetsNoSecondOne) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "");
  EXPECT_EQ(locate({folder.getPath() + "/"}, "x.cfg"), path);
}

TEST_P(LocateFileTest, AnEmptySearchPathStandsForTheBareName) {
  const TemporaryFolder folder;
  folder.write("x.cfg", "");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(locate({""}, "x.cfg"), "x.cfg");
}

TEST_P(LocateFileTest, AnAbsoluteNameIsPrefixedBySearchPathsToo) {
  const TemporaryFolder folder;
  const std::string path = folder.write("etc/x.cfg", "");
  EXPECT_EQ(locate({folder.getPath()}, "/etc/x.cfg"), folder.getPath() + "//etc/x.cfg");
  EXPECT_EQ(locate({folder.getPath(), ""}, path), path);
}

TEST_P(LocateFileTest, WithoutSearchPathsNothingIsFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locate({}, folder.write("x.cfg", "")), "");
}

TEST_P(LocateFileTest, AMissingFileIsNotFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locate({folder.getPath(), ""}, "x.cfg"), "");
}

TEST_P(LocateFileTest, ADirectoryIsPassedOver) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.getPath("a/x.cfg"));
  const std::string path = folder.write("b/x.cfg", "");
  EXPECT_EQ(locate({folder.getPath("a"), folder.getPath("b")}, "x.cfg"), path);
}

TEST_P(LocateFileTest, TheEmptyNameIsTheDirectoryItselfAndNotFound) {
  const TemporaryFolder folder;
  EXPECT_EQ(locate({folder.getPath(), ""}, ""), "");
}

TEST_P(LocateFileTest, AFifoIsPassedOver) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.getPath("pipe").c_str(), 0600), 0);
  EXPECT_EQ(locate({folder.getPath()}, "pipe"), "");
}

TEST_P(LocateFileTest, ALinkToAFileIsFound) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.write("x.cfg", ""), folder.getPath("link.cfg"));
  EXPECT_EQ(locate({folder.getPath()}, "link.cfg"), folder.getPath("link.cfg"));
}

TEST_P(LocateFileTest, ALinkToNothingIsNotFound) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.getPath("gone"), folder.getPath("link.cfg"));
  EXPECT_EQ(locate({folder.getPath()}, "link.cfg"), "");
}

TEST_P(LocateFileTest, ANameWithAZeroByteIsNotFoundUnderItsFirstPart) {
  const TemporaryFolder folder;
  folder.write("x", "");
  EXPECT_EQ(locate({folder.getPath()}, std::string("x\0y", 3)), "");
}

TEST_P(LocateFileTest, AUtf8NameIsFound) {
  const TemporaryFolder folder;
  const std::string path = folder.write("m\xC3\xBCll.cfg", "");
  EXPECT_EQ(locate({folder.getPath()}, "m\xC3\xBCll.cfg"), path);
}

TEST_P(LocateFileTest, ANameThatIsNoUtf8IsFound) {
  const TemporaryFolder folder;
  const std::string path = folder.write("m\xFCll.cfg", "");
  EXPECT_EQ(locate({folder.getPath()}, "m\xFCll.cfg"), path);
}

// --- A file that is opened -----------------------------------------------------------------------

namespace {

std::string readAll(InputFile& file) {
  std::string bytes(100, '?');
  bytes.resize(file.read(bytes.data(), bytes.size()));
  return bytes;
}

/// Tells whether a file was opened since it was asked before.
class OpenWatch {
 public:
  explicit OpenWatch(const std::string& path) : events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    EXPECT_GE(::inotify_add_watch(events, path.c_str(), IN_OPEN), 0);
  }
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;
  ~OpenWatch() { ::close(events); }

  bool wasOpened() const {
    inotify_event event = {};
    bool has = false;
    while (::read(events, &event, sizeof event) > 0)
      has = true;
    return has;
  }

 private:
  int events;
};

/// Holds a file for itself alone until another program, or this one, opens it.
class Lease {
 public:
  explicit Lease(const std::string& path) : file(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
    leased = file;
    ::signal(SIGIO, [](int) { ::fcntl(leased, F_SETLEASE, F_UNLCK); });
    isHeld = ::fcntl(file, F_SETLEASE, F_WRLCK) == 0;
  }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;
  ~Lease() {
    ::close(file);
    ::signal(SIGIO, SIG_DFL);
  }

  bool isHeld = false;

 private:
  static inline volatile std::sig_atomic_t leased = -1;
  const int file;
};

}  // namespace

TEST(OpenFileTest, TheFileThatIsFoundIsOpen) {
  const TemporaryFolder folder;
  folder.write("a/y.cfg", "other");
  folder.write("b/x.cfg", "a 1\n");
  InputFile file;
  openFile({folder.getPath("a"), folder.getPath("b")}, "x.cfg", file);
  EXPECT_EQ(file.getSize(), 4U);
  EXPECT_EQ(readAll(file), "a 1\n");
}

TEST(OpenFileTest, AFileThatMayNotBeReadIsFoundButNotOpen) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a 1");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  const WithoutPrivileges ordinary;
  InputFile file;
  EXPECT_EQ(openFile({""}, path, file), path);
  EXPECT_FALSE(file.isOpen());
}

TEST(OpenFileTest, AFileThatAnotherProgramHasToLetGoOfIsFoundButNotOpen) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a 1");
  const Lease lease(path);
  if (!lease.isHeld) GTEST_SKIP() << "the file system has no leases";
  InputFile file;
  EXPECT_EQ(openFile({""}, path, file), path);
  EXPECT_FALSE(file.isOpen());
}

TEST(StoredFilesTest, AFileThatAnotherProgramHasToLetGoOfIsLoaded) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a 1");
  const Lease lease(path);
  if (!lease.isHeld) GTEST_SKIP() << "the file system has no leases";
  StoredFiles files;
  std::string text;
  unsigned long allowance = text.max_size();
  EXPECT_EQ(files.load(path, files.locate({""}, path), text, allowance),
            Quarry::LoadResult::LOADED);
  EXPECT_EQ(text, "a 1");
}

TEST(StoredFilesTest, OnlyTheFirstFileIsOpenedToFindOutWhatItIs) {
  const TemporaryFolder folder;
  const std::string pipe = folder.getPath("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const OpenWatch watch(pipe);
  StoredFiles files;
  EXPECT_EQ(files.locate({""}, pipe), "");
  EXPECT_TRUE(watch.wasOpened());
  EXPECT_EQ(files.locate({""}, pipe), "");
  EXPECT_FALSE(watch.wasOpened());
}
