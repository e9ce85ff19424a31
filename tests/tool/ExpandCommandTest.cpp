#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

TEST(ExpandCommandTest, CommentsAndVersionLinesAreDropped) {
  EXPECT_EQ(runTool({"expand", "-"}, "#SerialVersion 1.1\na 1 // one\nb 2\n"),
            (Result{0, "a 1 b 2\n", ""}));
}

TEST(ExpandCommandTest, AnIncludeIsFoundInTheSearchPath) {
  const TemporaryFolder folder;
  folder.write("shared/colors.cfg", "red 1\n");
  EXPECT_EQ(runTool({"expand", "-I", folder.getPath("shared"), "-"}, "#include \"colors.cfg\"\n"),
            (Result{0, "red 1\n\n", ""}));
}

TEST(ExpandCommandTest, TheFirstSearchPathThatHasTheFileWins) {
  const TemporaryFolder folder;
  folder.write("one/x.cfg", "one 1\n");
  folder.write("two/x.cfg", "two 2\n");
  EXPECT_EQ(
      runTool({"expand", "-I", folder.getPath("two"), "-I", folder.getPath("one"), "x.cfg"}).output,
      "two 2\n");
}

TEST(ExpandCommandTest, AFileIsFoundUnderItsOwnName) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"expand", folder.write("a.cfg", "a 1")}), (Result{0, "a 1", ""}));
}

TEST(ExpandCommandTest, ACompressedFileIsExpanded) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"expand", folder.writeCompressed("a.cfg", "a 1$\nb 2$\n")}),
            (Result{0, "a 1\nb 2\n", ""}));
}

TEST(ExpandCommandTest, ACompressedFileWithAShortLineCannotBeRead) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("a.cfg", "a 1$\n\n");
  EXPECT_EQ(runTool({"expand", name}),
            (Result{2, "",
                    "quarry: warning: A line of a compressed file has less than two bytes. "
                    "[bad-compressed-line]\n"
                    "quarry: error: Cannot read '" +
                        name + "'.\n"}));
}

TEST(ExpandCommandTest, BytesPassUnchangedWithoutATerminal) {
  EXPECT_EQ(runTool({"expand", "-"}, "a\r\n\033\x80\tb"), (Result{0, "a\r\n\033\x80\tb", ""}));
}

TEST(ExpandCommandTest, AFileThatIncludesItselfIsRefused) {
  const TemporaryFolder folder;
  const std::string name = folder.getPath("a.cfg");
  folder.write("a.cfg", "a 1\n#include \"" + name + "\"\n");
  EXPECT_EQ(runTool({"expand", name}),
            (Result{2, "",
                    "quarry: warning: " + name + ":2:1: File '" + name + "' includes itself: '" +
                        name + "' > '" + name + "'. [include-cycle]\nquarry: error: Cannot read '" +
                        name + "'.\n"}));
}

TEST(ExpandCommandTest, NothingIsWrittenWhenAnIncludeIsMissing) {
  EXPECT_EQ(runTool({"expand", "-"}, "a 1\n#include \"missing.cfg\"\n"),
            (Result{2, "",
                    "quarry: warning: standard input:2:1: File 'missing.cfg' not found. "
                    "[file-not-found]\n"
                    "quarry: error: Cannot read 'standard input'.\n"}));
}

}  // namespace ToolTest
