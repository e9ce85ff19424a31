// Limits of the system: the size of a file, and how many files may be open.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Plinth::Console;
using Quarry::ParserFile;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

constexpr int OFTEN = 5000;

/// As long as this lives, a limit of the process is lower than before.
class LowerLimit {
 public:
  LowerLimit(__rlimit_resource_t limited, rlim_t most) : resource(limited) {
    getrlimit(resource, &before);
    const rlimit lower = {most, before.rlim_max};
    setrlimit(resource, &lower);
  }
  LowerLimit(const LowerLimit&) = delete;
  LowerLimit& operator=(const LowerLimit&) = delete;
  ~LowerLimit() { setrlimit(resource, &before); }

 private:
  const __rlimit_resource_t resource;
  rlimit before = {};
};

/// As long as this lives, files can have no more than so many bytes. The signal that the system
/// sends is ignored, as a program has to that wants to live on.
class SmallFiles {
 public:
  explicit SmallFiles(rlim_t most)
      : previous(std::signal(SIGXFSZ, SIG_IGN)), limit(RLIMIT_FSIZE, most) {}
  SmallFiles(const SmallFiles&) = delete;
  SmallFiles& operator=(const SmallFiles&) = delete;
  ~SmallFiles() { std::signal(SIGXFSZ, previous); }

 private:
  void (*previous)(int);
  LowerLimit limit;
};

long countDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

/// A document with a folder, which is the working directory.
class FileLimitsTest : public testing::Test {
 protected:
  /// Reads a file again and again, with few descriptors.
  /// @return how often that succeeded
  int readOften(const std::string& name) {
    const LowerLimit few(RLIMIT_NOFILE, 64);
    const long before = countDescriptors();
    int count = 0;
    for (int i = 0; i < OFTEN; ++i)
      count += ParserFile().read(name) ? 1 : 0;
    EXPECT_EQ(countDescriptors(), before);
    return count;
  }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
};

}  // namespace

// --- The size of files ---------------------------------------------------------------------------

TEST_F(FileLimitsTest, ADocumentThatIsLargerThanFilesMayBeIsNotSaved) {
  ParserFile file;
  file.getRoot().setText("a \"" + std::string(5000, 's') + "\"", 1.1);
  bool result = false;
  {
    const SmallFiles small(4096);
    result = file.write("x.cfg");
  }
  EXPECT_TRUE(result);
  EXPECT_THAT(console.getTexts(Console::LEVEL_ERROR),
              ElementsAre("ParserFile.write: Can't save project 'x.cfg'.\n"));
  EXPECT_THAT(console.getTexts(Console::LEVEL_DEBUG), SizeIs(0));
}

TEST_F(FileLimitsTest, ADocumentThatIsJustAsLargeAsFilesMayBeIsSaved) {
  ParserFile file;
  file.getRoot().setText("a \"" + std::string(4096 - 24, 's') + "\"", 1.1);
  {
    const SmallFiles small(4096);
    file.write("x.cfg");
  }
  EXPECT_THAT(console.getTexts(Console::LEVEL_DEBUG), ElementsAre("Written 4096bytes in 'x.cfg'."));
}

TEST_F(FileLimitsTest, NothingCanBeWrittenWhereFilesMayHaveNoBytes) {
  {
    const SmallFiles none(0);
    ParserFile().write("x.cfg");
  }
  EXPECT_THAT(console.getTexts(Console::LEVEL_ERROR),
              ElementsAre("ParserFile.write: Can't save project 'x.cfg'.\n"));
}

// --- Descriptors ---------------------------------------------------------------------------------

TEST_F(FileLimitsTest, ADocumentIsReadAgainAndAgain) {
  folder.write("x.cfg", "a 1");
  EXPECT_EQ(readOften("x.cfg"), OFTEN);
}

TEST_F(FileLimitsTest, ACompressedDocumentIsReadAgainAndAgain) {
  folder.writeCompressed("x.cfg", "a 1$\nb 2$\n");
  EXPECT_EQ(readOften("x.cfg"), OFTEN);
}

TEST_F(FileLimitsTest, ADocumentThatIncludesCompressedOnesIsReadAgainAndAgain) {
  folder.writeCompressed("y.cfg", "a 1$\n");
  folder.write("x.cfg", "#include \"y.cfg\"\n#include \"y.cfg\"");
  EXPECT_EQ(readOften("x.cfg"), OFTEN);
}

TEST_F(FileLimitsTest, AMissingFileIsAskedForAgainAndAgain) {
  EXPECT_EQ(readOften("x.cfg"), 0);
  EXPECT_THAT(console.getWarnings(), SizeIs(OFTEN));
  EXPECT_THAT(console.getWarnings(), Each("File 'x.cfg' not found.\n"));
}

TEST_F(FileLimitsTest, AMissingIncludeWithinAnotherIsAskedForAgainAndAgain) {
  folder.write("x.cfg", "a 1 #include \"y.cfg\"");
  folder.write("y.cfg", "b 2 #include \"missing.cfg\"");
  EXPECT_EQ(readOften("x.cfg"), 0);
  EXPECT_THAT(console.getWarnings(), SizeIs(OFTEN));
}

TEST_F(FileLimitsTest, AnUnclosedIncludeIsReadAgainAndAgain) {
  folder.writeCompressed("x.cfg", "a 1 #include \"y.cfg $\n");
  EXPECT_EQ(readOften("x.cfg"), 0);
}

TEST_F(FileLimitsTest, ACompressedDocumentWithAnEmptyLineIsReadAgainAndAgain) {
  folder.writeCompressed("x.cfg", "a 1$\n\nb 2$\n");
  const LowerLimit few(RLIMIT_NOFILE, 64);
  const long before = countDescriptors();
  for (int i = 0; i < OFTEN; ++i)
    EXPECT_THROW(ParserFile().read("x.cfg"), std::out_of_range);
  EXPECT_EQ(countDescriptors(), before);
}

TEST_F(FileLimitsTest, ADocumentIsWrittenAgainAndAgain) {
  const LowerLimit few(RLIMIT_NOFILE, 64);
  const long before = countDescriptors();
  ParserFile file("x.cfg");
  for (int i = 0; i < OFTEN / 10; ++i)
    EXPECT_TRUE(file.write(i % 2 == 0 ? "x.cfg" : "/dev/full"));
  EXPECT_EQ(countDescriptors(), before);
}

TEST_F(FileLimitsTest, WithoutADescriptorADocumentIsToldToBeUnreadable) {
  folder.write("x.cfg", "a 1");
  folder.writeCompressed("y.cfg", "b 2$\n");
  {
    const LowerLimit none(RLIMIT_NOFILE, 0);
    EXPECT_FALSE(ParserFile().read("x.cfg"));
    EXPECT_FALSE(ParserFile().read("y.cfg"));
  }
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("Failed to open file 'x.cfg'.\n", "Failed to open file 'y.cfg'.\n"));
}

TEST_F(FileLimitsTest, WithoutADescriptorNothingIsWrittenAndNothingIsLost) {
  folder.write("x.cfg", "old");
  {
    const LowerLimit none(RLIMIT_NOFILE, 0);
    EXPECT_FALSE(ParserFile().write("x.cfg"));
  }
  EXPECT_TRUE(console.isSilent());
  EXPECT_EQ(folder.read("x.cfg"), "old");
}
