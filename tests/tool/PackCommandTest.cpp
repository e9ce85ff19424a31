#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

/// Expects that a text is packed so that it is read, and unpacked, as it was.
void checkPacks(const std::string& text) {
  const TemporaryFolder folder;
  const std::string plain = folder.write("plain.cfg", text);
  const std::string packed = folder.getPath("packed.cfg");
  EXPECT_EQ(runTool({"pack", plain, "-o", packed}), (Result{0, "", ""}));
  EXPECT_TRUE(runTool({"unpack", packed}) == (Result{0, text, ""}));
  EXPECT_TRUE(runTool({"expand", packed}) == runTool({"expand", plain}));
}

}  // namespace

TEST(PackCommandTest, ADocumentIsReadAsItWas) { checkPacks("a 1\n\nb \"$\"\n"); }

TEST(PackCommandTest, ADocumentWithoutAFinalLineFeedIsReadAsItWas) { checkPacks("a 1\nb 2"); }

TEST(PackCommandTest, ADocumentOfWindowsIsReadAsItWas) { checkPacks("a 1\r\nb 2\r\n"); }

TEST(PackCommandTest, AnEmptyDocumentIsReadAsItWas) { checkPacks(""); }

TEST(PackCommandTest, LongLinesAreReadAsTheyWere) {
  for (const std::size_t length :
       {8183UL, 8184UL, 8185UL, 8186UL, 8187UL, 8188UL, 16376UL, 30000UL})
    checkPacks("a \"" + std::string(length, '$') + "\"\nb 1\n");
}

TEST(PackCommandTest, TheSameDocumentGivesTheSameBytes) {
  const Result first = runTool({"pack", "-"}, "a 1\n");
  EXPECT_EQ(first.output.substr(0, 10), std::string("\x1F\x8B\x08\0\0\0\0\0\x02\xFF", 10));
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"pack", folder.write("other.cfg", "a 1\n")}), first);
}

TEST(PackCommandTest, AZeroByteIsRefused) {
  EXPECT_EQ(runTool({"pack", "-"}, std::string("a 1\nb \0", 7)),
            (Result{2, "",
                    "quarry: error: Cannot pack 'standard input': line 2 has a zero byte, where a "
                    "document ends.\n"}));
}

TEST(PackCommandTest, ACompressedFileIsRefused) {
  const std::string packed = runTool({"pack", "-"}, "a 1\n").output;
  EXPECT_EQ(runTool({"pack", "-"}, packed),
            (Result{2, "", "quarry: error: 'standard input' is compressed already.\n"}));
}

TEST(PackCommandTest, ATerminalGetsNoBinaryData) {
  EXPECT_EQ(runOnTerminal({"pack", "-"}, "a 1\n"),
            (Result{2, "",
                    "quarry: error: Binary data is not written to a terminal; name a file with "
                    "-o.\n"}));
}

TEST(PackCommandTest, ATargetThatCannotBeMadeIsNamed) {
  const Result result = runTool({"pack", "-", "-o", "/nowhere/a.gz"}, "a 1\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.messages.substr(0, 43), "quarry: error: Cannot save '/nowhere/a.gz':");
}

TEST(UnpackCommandTest, AFileWithoutMarkersIsAFinding) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("a.gz", "a 1\nb 2\n");
  EXPECT_EQ(
      runTool({"unpack", name}),
      (Result{1, "a 1\nb 2\n",
              "quarry: warning: '" + name +
                  "' was compressed without line markers; it is read with bytes missing.\n"}));
}

TEST(UnpackCommandTest, AMarkerOfAnyKindJoinsLines) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("a.gz", "a x\n1$\n");
  EXPECT_EQ(runTool({"unpack", name}), (Result{0, "a 1\n", ""}));
}

TEST(UnpackCommandTest, AShortLineIsRefusedAsTheLibraryDoes) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("a.gz", "a 1$\n\n");
  EXPECT_EQ(runTool({"unpack", name}),
            (Result{2, "",
                    "quarry: error: Cannot read '" + name +
                        "': a line of the compressed file has less than two bytes.\n"}));
}

TEST(UnpackCommandTest, APlainFileIsRefused) {
  EXPECT_EQ(
      runTool({"unpack", "-"}, "a 1\n"),
      (Result{2, "",
              "quarry: error: Cannot read 'standard input': it is not compressed by gzip.\n"}));
}

TEST(UnpackCommandTest, ADamagedFileIsRefused) {
  const std::string packed = runTool({"pack", "-"}, "a 1\n").output;
  EXPECT_EQ(runTool({"unpack", "-"}, packed.substr(0, packed.size() - 3)),
            (Result{2, "",
                    "quarry: error: Cannot read 'standard input': the compressed data is "
                    "damaged.\n"}));
}

TEST(UnpackCommandTest, MembersAreJoined) {
  const std::string first = runTool({"pack", "-"}, "a 1\n").output;
  const std::string second = runTool({"pack", "-"}, "b 2\n").output;
  EXPECT_EQ(runTool({"unpack", "-"}, first + second), (Result{0, "a 1\nb 2\n", ""}));
}

TEST(UnpackCommandTest, AFileIsReplacedAndKeepsItsMode) {
  const TemporaryFolder folder;
  const std::string target = folder.write("a.cfg", "old");
  std::filesystem::permissions(target, std::filesystem::perms(0640));
  const std::string packed = runTool({"pack", "-"}, "a 1\n").output;
  EXPECT_EQ(runTool({"unpack", "-", "-o", target}, packed), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.cfg"), "a 1\n");
  EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms(0640));
}

}  // namespace ToolTest
