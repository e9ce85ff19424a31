// Saving while the system fails, at each of its calls.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "SystemCalls.h"

#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Saving::Fault;
using Saving::SystemCalls;
using testing::AnyOf;
using testing::Contains;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

const std::string OLD_TEXT = "#SerialVersion 1.1\n\ntitle \"old\"";
const std::string NEW_TEXT = "#SerialVersion 1.1\n\ntitle \"new\"";

constexpr uid_t STRANGER = 12345;

/// A document that is saved over an older one, which has another owner where that can be.
class SavingFaultTest : public testing::Test {
 protected:
  void SetUp() override {
    file.getRoot().setText("title \"new\"", 1.1);
    makeOldFile();
  }

  void makeOldFile() const {
    folder.write("x.cfg", OLD_TEXT);
    if (::geteuid() != 0) return;
    ASSERT_EQ(::chown(path.c_str(), STRANGER, STRANGER), 0);
  }

  /// Returns the names of all files but the document.
  std::set<std::string> findLeftovers() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.getPath())) {
      if (entry.path().filename() != "x.cfg") names.insert(entry.path().filename().string());
    }
    return names;
  }

  /// Saves in a process of its own, and returns how that exits: 0 when the document was saved.
  int saveInChild(int number) {
    const pid_t child = ::fork();
    if (child == 0) {
      const SystemCalls calls(Fault::ENDS_PROCESS, number);
      _exit(file.save(path) ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status);
  }

  const TemporaryFolder folder;
  const std::string path = folder.getPath("x.cfg");
  const RecordingConsole console;
  ParserFile file;
};

std::vector<std::string> findCalls(ParserFile& file, const std::string& path) {
  const SystemCalls calls;
  EXPECT_TRUE(file.save(path));
  return calls.getNames();
}

}  // namespace

/// The calls are what the faults are for: each kind must be among them.
TEST_F(SavingFaultTest, SavingChecksEachOfTheseCalls) {
  std::vector<std::string> expected = {"open",     "fstatat", "faccessat", "openat", "fstat",
                                       "fchown",   "fchmod",  "write",     "fsync",  "close",
                                       "renameat", "fsync",   "close"};
  if (::geteuid() != 0) expected.erase(expected.begin() + 5);
  EXPECT_EQ(findCalls(file, path), expected);
}

TEST_F(SavingFaultTest, WhateverFailsTheOldDocumentOrTheNewOneIsThere) {
  const int calls = static_cast<int>(findCalls(file, path).size());
  for (int number = 1; number < calls; ++number) {  // the last closes the folder
    makeOldFile();
    bool isSaved = true;
    {
      const SystemCalls failing(Fault::FAILS, number, EIO);
      isSaved = file.save(path);
    }
    EXPECT_FALSE(isSaved) << "call " << number;
    const bool isReplaced = number == calls - 1;  // only the folder could not be flushed
    EXPECT_EQ(folder.read("x.cfg"), isReplaced ? NEW_TEXT : OLD_TEXT) << "call " << number;
    EXPECT_THAT(findLeftovers(), IsEmpty()) << "call " << number;
  }
}

TEST_F(SavingFaultTest, EachFailureGivesOneErrorWithTheReason) {
  const int calls = static_cast<int>(findCalls(file, path).size());
  for (int number = 1; number < calls; ++number) {
    makeOldFile();
    const RecordingConsole own;
    {
      const SystemCalls failing(Fault::FAILS, number, ENOSPC);
      file.save(path);
    }
    ASSERT_EQ(own.getMessages().size(), 1) << "call " << number;
    EXPECT_THAT(own.getTexts(Plinth::Console::LEVEL_ERROR),
                Contains(StartsWith("ParserFile.save: Can't save '" + path + "': cannot ")))
        << "call " << number;
    EXPECT_THAT(own.getMessages().front().text, EndsWith(": No space left on device\n"));
  }
}

TEST_F(SavingFaultTest, ADocumentCanBeSavedAfterEachFailure) {
  const int calls = static_cast<int>(findCalls(file, path).size());
  for (int number = 1; number < calls; ++number) {
    makeOldFile();
    {
      const SystemCalls failing(Fault::FAILS, number, EIO);
      file.save(path);
    }
    EXPECT_TRUE(file.save(path)) << "call " << number;
    EXPECT_EQ(folder.read("x.cfg"), NEW_TEXT) << "call " << number;
  }
}

TEST_F(SavingFaultTest, WhereverTheProcessEndsTheOldDocumentOrTheNewOneIsThere) {
  const int calls = static_cast<int>(findCalls(file, path).size());
  for (int number = 1; number <= calls; ++number) {
    makeOldFile();
    EXPECT_EQ(saveInChild(number), Saving::ENDED_BY_FAULT) << "call " << number;
    EXPECT_THAT(folder.read("x.cfg"), AnyOf(OLD_TEXT, NEW_TEXT)) << "call " << number;
    EXPECT_TRUE(file.save(path)) << "call " << number;
    EXPECT_EQ(folder.read("x.cfg"), NEW_TEXT) << "call " << number;
  }
  EXPECT_EQ(saveInChild(calls + 1), 0);
}

TEST_F(SavingFaultTest, AnInterruptedFlushIsTriedAgain) {
  const std::vector<std::string> calls = findCalls(file, path);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i] != "fsync" && calls[i] != "write" && calls[i] != "close") continue;
    makeOldFile();
    const SystemCalls interrupting(Fault::FAILS, static_cast<int>(i + 1), EINTR);
    EXPECT_TRUE(file.save(path)) << calls[i];
    EXPECT_EQ(folder.read("x.cfg"), NEW_TEXT) << calls[i];
  }
}

TEST_F(SavingFaultTest, AFileSystemThatKnowsNoFlushingIsGoodEnough) {
  const std::vector<std::string> calls = findCalls(file, path);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i] != "fsync") continue;
    const SystemCalls failing(Fault::FAILS, static_cast<int>(i + 1), EINVAL);
    EXPECT_TRUE(file.save(path));
  }
}

TEST_F(SavingFaultTest, AFileOfTheSameNameAsTheNewOneIsLeftAlone) {
  const std::vector<std::string> calls = findCalls(file, path);
  const auto creation = std::find(calls.begin(), calls.end(), "openat") - calls.begin() + 1;
  const SystemCalls failing(Fault::FAILS, static_cast<int>(creation), EEXIST);
  EXPECT_TRUE(file.save(path));
  EXPECT_EQ(folder.read("x.cfg"), NEW_TEXT);
}

TEST_F(SavingFaultTest, ATextThatIsTakenInPiecesIsWrittenWhole) {
  SystemCalls calls;
  calls.setLargestWrite(3);
  EXPECT_TRUE(file.save(path));
  EXPECT_EQ(folder.read("x.cfg"), NEW_TEXT);
}

TEST_F(SavingFaultTest, ADeviceThatTakesNothingIsNotTriedForEver) {
  bool isSaved = true;
  {
    SystemCalls calls;
    calls.setLargestWrite(0);
    isSaved = file.save(path);
  }
  EXPECT_FALSE(isSaved);
  EXPECT_EQ(folder.read("x.cfg"), OLD_TEXT);
}

TEST_F(SavingFaultTest, AnotherGroupAloneIsKeptToo) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser gives files away";
  ASSERT_EQ(::chown(path.c_str(), ::geteuid(), STRANGER), 0);
  EXPECT_THAT(findCalls(file, path), Contains("fchown"));
  struct stat status = {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, STRANGER);
}
