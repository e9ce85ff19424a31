// Memory that runs out while documents are written to files.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Consistency.h"
#include "Faults.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Plinth::Console;
using Quarry::ParserFile;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";
const std::string NAME = "a_file_with_a_name_that_is_long.cfg";

}  // namespace

TEST(WriteFileFaultTest, AFileIsWrittenOrMemoryRunsOut) {
  const TemporaryFolder folder;
  const std::string path = folder.getPath(NAME);
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    file.getRoot().setText("a 1 \"" + LONG_STRING + "\"", 1.1);
    bool result = false;
    const bool isComplete = attempt.run([&] { result = file.write(path); });
    EXPECT_EQ(result, isComplete);
    EXPECT_EQ(console.getTexts(Console::LEVEL_ERROR), std::vector<std::string>());
    EXPECT_TRUE(file.write(path));
    EXPECT_EQ(folder.read(NAME), "#SerialVersion 1.1\n\na 1 \"" + LONG_STRING + '"');
  });
}

TEST(WriteFileFaultTest, AFileWithAVersionKeywordIsWrittenOrMemoryRunsOut) {
  const TemporaryFolder folder;
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file(folder.getPath(NAME));
    file.getRoot().addItem("#SerialVersion", 0, 0);
    attempt.run([&] { file.write(""); });
    EXPECT_TRUE(file.write(""));
    EXPECT_EQ(file.getRoot().getKeyword("#SerialVersion")->getDouble(0), 1.1);
    TestSupport::expectConsistent(file.getRoot());
  });
}
