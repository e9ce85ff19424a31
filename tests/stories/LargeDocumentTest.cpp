// Documents whose depth or breadth is a million, on the usual stack.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

constexpr unsigned long MILLION = 1000000;

/// Reads a file with this text, expecting no message.
void read(ParserFile& file, const std::string& text) {
  const TemporaryFolder folder;
  const RecordingConsole console;
  EXPECT_TRUE(file.read(folder.write("large.cfg", text)));
  EXPECT_TRUE(console.isSilent());
}

std::string makeWideText(unsigned long count) {
  std::string text;
  for (unsigned long i = 0; i < count; ++i)
    text += "\nitem" + std::to_string(i) + " " + std::to_string(i);
  return text;
}

/// Follows the first items down and returns how many groups there are.
unsigned long measureDepth(const ParserGroup& root) {
  unsigned long depth = 0;
  const ParserGroup* group = &root;
  while (group->getItemCount() > 0) {
    group = group->getItem(0UL)->getGroup(0);
    ++depth;
  }
  return depth;
}

}  // namespace

TEST(LargeDocumentTest, AMillionGroupsInOneAnotherAreReadCopiedWrittenAndFreed) {
  ParserFile file;
  read(file, TestSupport::makeDeepText(MILLION));
  const ParserGroup copy(file.getRoot());
  EXPECT_EQ(measureDepth(copy), MILLION);
  const std::string line = TestSupport::writeOneLine(copy);
  EXPECT_EQ(line.size(), MILLION * 6);
  EXPECT_EQ(line.substr(0, 10), " g { g { g");
  file.clear();
  EXPECT_EQ(file.getRoot().getItemCount(), 0U);
}

TEST(LargeDocumentTest, AMillionItemsInOneGroupAreReadCopiedWrittenAndFreed) {
  const std::string text = makeWideText(MILLION);
  ParserFile file;
  read(file, text);
  const ParserGroup copy(file.getRoot());
  EXPECT_EQ(copy.getItemCount(), MILLION);
  EXPECT_EQ(copy.getItem(MILLION - 1)->getInt(0), static_cast<int>(MILLION - 1));
  EXPECT_TRUE(TestSupport::writeLines(copy) == text);
  file.clear();
  EXPECT_EQ(file.getRoot().getItemCount(), 0U);
}

TEST(LargeDocumentTest, AMillionValuesInOneItemAreReadAndWritten) {
  std::string text = "\nvalues";
  for (unsigned long i = 0; i < MILLION; ++i)
    text += " 7";
  ParserFile file;
  read(file, text);
  EXPECT_EQ(file.getRoot().getItem("values")->getValueCount(), MILLION);
  EXPECT_TRUE(TestSupport::writeLines(file.getRoot()) == text);
}

TEST(LargeDocumentTest, AStringOfTenMillionBytesIsReadAndWritten) {
  const std::string text = "\ns \"" + std::string(10 * MILLION, 'x') + "\"";
  ParserFile file;
  read(file, text);
  EXPECT_EQ(file.getRoot().getItem("s")->getString(0).size(), 10 * MILLION);
  EXPECT_TRUE(TestSupport::writeLines(file.getRoot()) == text);
}

TEST(LargeDocumentTest, AMillionCommentsAreDropped) {
  std::string text;
  for (unsigned long i = 0; i < MILLION; ++i)
    text += "// note\n";
  ParserFile file;
  read(file, text + "a 1");
  EXPECT_EQ(TestSupport::describe(file.getRoot()), "a int:1");
}
