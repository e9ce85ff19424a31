// Documents that are read and written back without a byte changed: tests/data/golden/NAME.cfg.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

namespace fs = std::filesystem;

const fs::path GOLDEN_FOLDER = fs::path(TEST_DATA_DIR) / "golden";

/// Returns the names of the golden documents, without ".cfg".
std::set<std::string> findNames() {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(GOLDEN_FOLDER)) {
    if (entry.path().extension() == ".cfg") names.insert(entry.path().stem().string());
  }
  return names;
}

std::string pathOf(const std::string& name) { return (GOLDEN_FOLDER / (name + ".cfg")).string(); }

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class GoldenTest : public testing::TestWithParam<std::string> {
 protected:
  const RecordingConsole console;
  ParserFile file{pathOf(GetParam())};
};

std::string nameOf(const testing::TestParamInfo<std::string>& info) { return info.param; }

}  // namespace

TEST_P(GoldenTest, IsReadWithoutAMessage) {
  EXPECT_TRUE(file.read(""));
  EXPECT_TRUE(console.isSilent());
  EXPECT_EQ(file.getVersion(), 1.1);
}

TEST_P(GoldenTest, IsWrittenBackByteForByte) {
  const TemporaryFolder folder;
  ASSERT_TRUE(file.read(""));
  ASSERT_TRUE(file.write(folder.getPath("written.cfg")));
  EXPECT_EQ(folder.read("written.cfg"), bytesOf(pathOf(GetParam())));
}

TEST_P(GoldenTest, IsWrittenOnOneLineAndReadBackAsTheSameTree) {
  ASSERT_TRUE(file.read(""));
  const std::string line = TestSupport::writeOneLine(file.getRoot());
  const auto again = TestSupport::readText(line);
  EXPECT_EQ(TestSupport::writeLines(*again), TestSupport::writeLines(file.getRoot()));
}

TEST_P(GoldenTest, IsCopiedWithEveryValue) {
  ASSERT_TRUE(file.read(""));
  const Quarry::ParserGroup copy(file.getRoot());
  EXPECT_EQ(TestSupport::writeLines(copy), TestSupport::writeLines(file.getRoot()));
}

INSTANTIATE_TEST_SUITE_P(Documents, GoldenTest, testing::ValuesIn(findNames()), nameOf);

TEST(GoldenFolderTest, HoldsDocumentsOnly) {
  for (const fs::directory_entry& entry : fs::directory_iterator(GOLDEN_FOLDER)) {
    EXPECT_EQ(entry.path().extension(), ".cfg") << entry.path();
  }
}
