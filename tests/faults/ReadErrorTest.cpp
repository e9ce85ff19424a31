// What the system refuses in the middle of the work.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <string>

#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using testing::ElementsAre;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

/// An ordinary file, as far as one can see, of which no byte can be read.
const std::string UNREADABLE = "/proc/self/mem";

}  // namespace

TEST(ReadErrorTest, AnErrorIsNotTakenForTheEndOfTheFile) {
  const RecordingConsole console;
  ParserFile file;
  EXPECT_FALSE(file.read(UNREADABLE));
  EXPECT_THAT(console.getWarnings(), ElementsAre("Failed to open file '" + UNREADABLE + "'.\n"));
}

TEST(ReadErrorTest, AnErrorInAnIncludedFileIsNotTakenForItsEnd) {
  const TemporaryFolder folder;
  const RecordingConsole console;
  ParserFile file;
  EXPECT_FALSE(file.read(folder.write("x.cfg", "a 1 #include \"" + UNREADABLE + "\" b 2")));
  EXPECT_THAT(console.getWarnings(), ElementsAre("Failed to open file '" + UNREADABLE + "'.\n"));
}
