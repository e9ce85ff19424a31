// The gallery of messages: tests/data/messages/NAME.cfg draws exactly NAME.expected, and
// docs/messages.md shows both.

#include <Plinth/Console.h>
#include <Plinth/Exception.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserValue.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Plinth::Console;
using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserLimits;
using Quarry::ParserValue;
using testing::ElementsAre;
using testing::HasSubstr;
using TestSupport::Message;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace {

namespace fs = std::filesystem;

const fs::path MESSAGES_FOLDER = fs::path(TEST_DATA_DIR) / "messages";
const fs::path MANUAL = fs::path(TEST_DATA_DIR) / "../../docs/messages.md";

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Returns the names of the files with an extension, without it.
std::set<std::string> findNames(const std::string& extension) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(MESSAGES_FOLDER)) {
    if (entry.path().extension() == extension) names.insert(entry.path().stem().string());
  }
  return names;
}

std::string documentOf(const std::string& name) {
  return bytesOf(MESSAGES_FOLDER / (name + ".cfg"));
}

std::string expectedOf(const std::string& name) {
  return bytesOf(MESSAGES_FOLDER / (name + ".expected"));
}

/// The manual says which line feed ends a message; its lines end without it.
std::string withoutLineFeed(std::string message) {
  if (!message.empty() && message.back() == '\n') message.pop_back();
  return message;
}

void expectInManual(const std::string& text) {
  EXPECT_THAT(bytesOf(MANUAL), HasSubstr(withoutLineFeed(text)));
}

class GalleryTest : public testing::TestWithParam<std::string> {};

std::string nameOf(const testing::TestParamInfo<std::string>& info) { return info.param; }

}  // namespace

// --- The folder ----------------------------------------------------------------------------------

TEST_P(GalleryTest, DrawsExactlyTheExpectedWarnings) {
  const std::string expected = expectedOf(GetParam());
  const WorkingDirectory directory(MESSAGES_FOLDER.string());
  const RecordingConsole console;
  ParserFile().read(GetParam() + ".cfg");
  std::string drawn;
  for (const std::string& warning : console.getWarnings())
    drawn += warning;
  EXPECT_EQ(drawn, expected);
  EXPECT_EQ(console.getMessages().size(), console.getWarnings().size());
}

TEST_P(GalleryTest, StandsInTheManual) {
  EXPECT_THAT(bytesOf(MANUAL), HasSubstr("\n" + documentOf(GetParam()) + "```\n"));
  EXPECT_THAT(bytesOf(MANUAL), HasSubstr("\n" + expectedOf(GetParam()) + "```\n"));
}

TEST_P(GalleryTest, DrawsAMessage) { EXPECT_NE(expectedOf(GetParam()), ""); }

INSTANTIATE_TEST_SUITE_P(Messages, GalleryTest, testing::ValuesIn(findNames(".cfg")), nameOf);

TEST(GalleryFolderTest, EveryDocumentHasItsMessagesAndNoMessagesAreOrphans) {
  EXPECT_EQ(findNames(".cfg"), findNames(".expected"));
}

TEST(GalleryFolderTest, HoldsNothingElse) {
  for (const fs::directory_entry& entry : fs::directory_iterator(MESSAGES_FOLDER)) {
    EXPECT_THAT(entry.path().extension(), testing::AnyOf(".cfg", ".expected")) << entry.path();
  }
}

// --- Files ---------------------------------------------------------------------------------------

TEST(FileMessageTest, AMissingFile) {
  const RecordingConsole console;
  ParserFile().read("missing.cfg");
  EXPECT_THAT(console.getWarnings(), ElementsAre("File 'missing.cfg' not found.\n"));
  expectInManual("File 'missing.cfg' not found.\n");
}

TEST(FileMessageTest, AFileThatCannotBeOpened) {
  const TemporaryFolder folder;
  fs::permissions(folder.write("locked.cfg", "fps 25"), fs::perms::none);
  const WorkingDirectory directory(folder.getPath());
  const WithoutPrivileges ordinary;
  const RecordingConsole console;
  ParserFile().read("locked.cfg");
  EXPECT_THAT(console.getWarnings(), ElementsAre("Failed to open file 'locked.cfg'.\n"));
  expectInManual("Failed to open file 'locked.cfg'.\n");
}

TEST(FileMessageTest, ADocumentThatWasWritten) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  const RecordingConsole console;
  ParserFile().write("harbor.cfg");
  EXPECT_THAT(console.getTexts(Console::LEVEL_DEBUG),
              ElementsAre("Written 19bytes in 'harbor.cfg'."));
  expectInManual("Written 19bytes in 'harbor.cfg'.");
}

TEST(FileMessageTest, ADocumentThatCouldNotBeSaved) {
  const RecordingConsole console;
  ParserFile().write("/dev/full");
  EXPECT_THAT(console.getTexts(Console::LEVEL_ERROR),
              ElementsAre("ParserFile.write: Can't save project '/dev/full'.\n"));
  expectInManual("ParserFile.write: Can't save project '/dev/full'.\n");
}

TEST(FileMessageTest, ADocumentThatCouldNotBeReplaced) {
  const TemporaryFolder folder;
  fs::permissions(folder.write("locked.cfg", "fps 25"), fs::perms::owner_read);
  const WorkingDirectory directory(folder.getPath());
  const WithoutPrivileges ordinary;
  const RecordingConsole console;
  ParserFile().save("locked.cfg");
  const std::string message =
      "ParserFile.save: Can't save 'locked.cfg': cannot write 'locked.cfg': Permission denied\n";
  EXPECT_THAT(console.getTexts(Console::LEVEL_ERROR), ElementsAre(message));
  expectInManual(message);
}

// --- Limits --------------------------------------------------------------------------------------

namespace {

/// Reads a file within limits and expects exactly one warning, which stands in the manual.
void expectLimitMessage(const std::string& file, const ParserLimits& limits,
                        const std::string& message) {
  const RecordingConsole console;
  ParserFile document;
  document.setLimits(limits);
  EXPECT_FALSE(document.read(file));
  EXPECT_THAT(console.getWarnings(), ElementsAre(message));
  expectInManual(message);
}

}  // namespace

TEST(LimitMessageTest, AnIncludeTooDeep) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  folder.write("harbor.cfg", "#include \"layers.cfg\"");
  folder.write("layers.cfg", "");
  ParserLimits limits;
  limits.includeDepth = 0;
  expectLimitMessage("harbor.cfg", limits,
                     "File 'layers.cfg' exceeds the limit includeDepth (0).\n");
}

TEST(LimitMessageTest, AGroupTooDeep) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  folder.write("harbor.cfg", "camera { fov 39.6 }");
  ParserLimits limits;
  limits.nestingDepth = 0;
  expectLimitMessage(
      "harbor.cfg", limits,
      "ParserGroup::setText: (1:7) File 'harbor.cfg' exceeds the limit nestingDepth (0).\n");
}

TEST(LimitMessageTest, AnIncludeFromElsewhere) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  folder.write("harbor.cfg", "#include \"/etc/passwd\"");
  ParserLimits limits;
  limits.includesBelowSearchPaths = true;
  expectLimitMessage(
      "harbor.cfg", limits,
      "File '/etc/passwd' lies outside of the search paths (includesBelowSearchPaths).\n");
}

TEST(LimitMessageTest, AnIncludeThatComesBack) {
  const TemporaryFolder folder;
  const WorkingDirectory directory(folder.getPath());
  folder.write("a.cfg", "#include \"b.cfg\"");
  folder.write("b.cfg", "#include \"a.cfg\"");
  ParserLimits limits;
  limits.includeDepth = 8;
  expectLimitMessage("a.cfg", limits,
                     "File 'a.cfg' includes itself: 'a.cfg' > 'b.cfg' > 'a.cfg'.\n");
}

// --- Values and names ----------------------------------------------------------------------------

namespace {

struct Mismatch {
  std::string name;
  void (*convert)(const ParserValue& value);
  std::string message;
};

class MismatchMessageTest : public testing::TestWithParam<Mismatch> {};

const std::vector<Mismatch> MISMATCHES = {
    {"AsBool", [](const ParserValue& value) { value.getAsBool(); },
     "ParserValue::getAsBool: type mismatch, value type is 'TYPE_STRING' \n"},
    {"AsChar", [](const ParserValue& value) { value.getAsChar(); },
     "ParserValue::getAsChar: type mismatch, value type is 'TYPE_STRING' \n"},
    {"AsInt", [](const ParserValue& value) { value.getAsInt(); },
     "ParserValue::getAsInt: type mismatch, value type is 'TYPE_STRING' \n"},
    {"AsDouble", [](const ParserValue& value) { value.getAsDouble(); },
     "ParserValue::getAsDouble: type mismatch, value type is 'TYPE_STRING' \n"},
    {"AsBinaryData",
     [](const ParserValue& value) {
       unsigned long size = 0;
       value.getAsBinaryData(size);
     },
     "ParserValue::getAsBinaryData: type mismatch, value type is 'TYPE_STRING' \n"}};

std::string nameOfMismatch(const testing::TestParamInfo<Mismatch>& info) { return info.param.name; }

}  // namespace

TEST_P(MismatchMessageTest, OfAStringStandsInTheManual) {
  const RecordingConsole console;
  GetParam().convert(ParserValue(std::string("text")));
  EXPECT_THAT(console.getWarnings(), ElementsAre(GetParam().message));
  expectInManual(GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Conversions, MismatchMessageTest, testing::ValuesIn(MISMATCHES),
                         nameOfMismatch);

TEST(ValueMessageTest, ANumberThatIsReadAsAString) {
  const RecordingConsole console;
  ParserValue(12).getAsString();
  EXPECT_THAT(console.getWarnings(),
              ElementsAre("ParserValue::getAsString: type mismatch, value type is 'TYPE_INT' \n"));
  expectInManual("ParserValue::getAsString: type mismatch, value type is 'TYPE_INT' \n");
}

TEST(ValueMessageTest, AnItemNameThatIsRefused) {
  try {
    ParserGroup("root").addItem("2nd", 0, 0);
    ADD_FAILURE() << "no exception";
  } catch (const Plinth::Fatal& fatal) {
    EXPECT_EQ(fatal.getMessage(), "ParserGroup::addItem: '2nd' is not a valid item name\n");
  }
  expectInManual("ParserGroup::addItem: '2nd' is not a valid item name\n");
}

// --- The binary form -----------------------------------------------------------------------------

namespace {

struct BrokenData {
  std::string name;
  std::string data;
  std::vector<std::string> messages;
};

class BinaryMessageTest : public testing::TestWithParam<BrokenData> {};

/// Returns a size of one byte as eight.
std::string sizeOf(char bytes) { return bytes + std::string(7, '\0'); }

const std::string TAG = "QDBF";
const std::string KIND(1, '\0');
const std::string END(1, '\0');

const std::vector<BrokenData> BROKEN_DATA = {
    {"TooShort",
     "QDBF",
     {"ParserFile.setBinary: data too short\n", "ParserFile.setBinary: Unknown format\n"}},
    {"AnotherTag",
     "not a document",
     {"ParserFile.setBinary: Unknown data tag\n", "ParserFile.setBinary: Unknown format\n"}},
    {"LargeGroup",
     TAG + sizeOf(9),
     {"ParserGroup::setBinary: ParserGroup size larger than the given data\n"}},
    {"NoName", TAG + sizeOf(1) + END, {"ParserGroup::setBinary: Failed to read item name\n"}},
    {"LargeItem",
     TAG + sizeOf(28) + "title" + END + sizeOf(100) + KIND + std::string(13, '\0'),
     {"ParserItem::setBinary:  'title', chunk size (100) is larger than the given buffer (40)"}},
    {"EndlessString",
     TAG + sizeOf(14) + "a" + END + sizeOf(4) + KIND + '\5' + "xy",
     {"ParserValue::binTostring: Failed to parse string\n"}},
    {"LargeBlock",
     TAG + sizeOf(21) + "a" + END + sizeOf(11) + KIND + '\6' + sizeOf(9) + "x",
     {"ParserValue::binToBinaryData: Failed to parse string\n"}}};

std::string nameOfData(const testing::TestParamInfo<BrokenData>& info) { return info.param.name; }

}  // namespace

TEST_P(BinaryMessageTest, StandsInTheManual) {
  const RecordingConsole console;
  const std::string& data = GetParam().data;
  ParserFile().setBinary({data.begin(), data.end()});
  std::vector<std::string> texts;
  for (const Message& message : console.getMessages())
    texts.push_back(message.text);
  EXPECT_EQ(texts, GetParam().messages);
  for (const std::string& text : texts)
    expectInManual(text);
}

INSTANTIATE_TEST_SUITE_P(BrokenData, BinaryMessageTest, testing::ValuesIn(BROKEN_DATA), nameOfData);
