// Memory that runs out while documents are saved: the old one stays, and nothing lies beside it.

#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "Faults.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

const std::string NAME = "a_file_with_a_name_that_is_long.cfg";
const std::string LONG_STRING = "a string that is longer than a value";
const std::string TEXT = "#SerialVersion 1.1\n\na 1 \"" + LONG_STRING + '"';

long countFiles(const TemporaryFolder& folder) {
  const std::filesystem::directory_iterator files(folder.getPath());
  return std::distance(begin(files), end(files));
}

void fill(ParserFile& file) { file.getRoot().setText("a 1 \"" + LONG_STRING + '"', 1.1); }

}  // namespace

TEST(SaveFaultTest, TheFileHoldsTheOldDocumentOrTheNewOne) {
  const TemporaryFolder folder;
  const std::string path = folder.write(NAME, "");
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    folder.write(NAME, "old 1");
    ParserFile file;
    fill(file);
    bool result = false;
    const bool isComplete = attempt.run([&] { result = file.save(path); });
    const std::string held = folder.read(NAME);
    EXPECT_EQ(result, isComplete);
    EXPECT_TRUE(held == TEXT || (held == "old 1" && !isComplete)) << held;
    EXPECT_EQ(countFiles(folder), 1);
    EXPECT_TRUE(file.save(path));
    EXPECT_EQ(folder.read(NAME), TEXT);
  });
}

TEST(SaveFaultTest, ThereIsNoFileOrTheNewOne) {
  const TemporaryFolder folder;
  const std::string path = folder.getPath(NAME);
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    std::filesystem::remove(path);
    ParserFile file;
    fill(file);
    const bool isComplete = attempt.run([&] { file.save(path); });
    const bool exists = std::filesystem::exists(path);
    EXPECT_EQ(countFiles(folder), exists ? 1 : 0);
    EXPECT_EQ(exists ? folder.read(NAME) : TEXT, TEXT);
    EXPECT_TRUE(exists || !isComplete);
  });
}

TEST(SaveFaultTest, ARefusalIsToldOfOrMemoryRunsOut) {
  const TemporaryFolder folder;
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    fill(file);
    bool result = true;
    const bool isComplete = attempt.run([&] { result = file.save(folder.getPath()); });
    EXPECT_EQ(result, !isComplete);
    EXPECT_EQ(console.getTexts(Plinth::Console::LEVEL_ERROR).size(), isComplete ? 1U : 0U);
    EXPECT_EQ(countFiles(folder), 0);
  });
}

TEST(SaveFaultTest, AVersionKeywordWithoutAValueGetsOneOrNone) {
  const TemporaryFolder folder;
  const std::string path = folder.getPath(NAME);
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    const Quarry::ParserItem& keyword = *file.getRoot().addItem("#SerialVersion", 0, 0);
    attempt.run([&] { file.save(path); });
    EXPECT_LE(keyword.getValueCount(), 1U);
    EXPECT_TRUE(file.save(path));
    EXPECT_EQ(keyword.getValueCount(), 1U);
    EXPECT_EQ(keyword.getDouble(0), 1.1);
  });
}
