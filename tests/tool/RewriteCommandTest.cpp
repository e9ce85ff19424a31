#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

TEST(RewriteCommandTest, StandardOutputGetsWhatTheLibraryWrites) {
  EXPECT_EQ(runTool({"rewrite", "-"}, "a=1, 2 g{x 1.50}"),
            (Result{0, "#SerialVersion 1.1\n\na 1 2\ng {\n    x 1.50\n}", ""}));
}

TEST(RewriteCommandTest, ADashAsOutputIsStandardOutput) {
  EXPECT_EQ(runTool({"rewrite", "-o", "-", "-"}, "a 1"),
            (Result{0, "#SerialVersion 1.1\n\na 1", ""}));
}

TEST(RewriteCommandTest, AFileGetsTheSameText) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"rewrite", "-", "-o", folder.getPath("out.cfg")}, "a 1"), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("out.cfg"), "#SerialVersion 1.1\n\na 1");
}

TEST(RewriteCommandTest, ADocumentCanBeRewrittenInPlace) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "a    1 // one\n");
  EXPECT_EQ(runTool({"rewrite", name, "--output", name}).status, 0);
  EXPECT_EQ(folder.read("a.cfg"), "#SerialVersion 1.1\n\na 1");
}

TEST(RewriteCommandTest, ADocumentWithFindingsIsWrittenAllTheSame) {
  EXPECT_EQ(
      runTool({"rewrite", "-"}, "a 1,\n, b 2"),
      (Result{1, "#SerialVersion 1.1\n\na 1\nb 2",
              "quarry: warning: standard input:2:1: item ',' wrongly placed. [wrongly-placed]\n"}));
}

TEST(RewriteCommandTest, TheTargetIsLeftAloneWhenReadingFails) {
  const TemporaryFolder folder;
  const std::string target = folder.write("out.cfg", "old");
  EXPECT_EQ(runTool({"rewrite", folder.getPath("missing.cfg"), "-o", target}).status, 2);
  EXPECT_EQ(folder.read("out.cfg"), "old");
}

TEST(RewriteCommandTest, ATargetThatCannotBeOpenedIsNamed) {
  EXPECT_EQ(runTool({"rewrite", "-", "-o", "/nowhere/out.cfg"}, "a 1"),
            (Result{2, "",
                    "quarry: error: ParserFile.save: Can't save '/nowhere/out.cfg': cannot open "
                    "the folder of '/nowhere/out.cfg': No such file or directory\n"}));
}

TEST(RewriteCommandTest, AFolderAsTargetIsRefused) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"rewrite", "-", "-o", folder.getPath()}, "a 1"),
            (Result{2, "", "quarry: error: Cannot write '" + folder.getPath() + "'.\n"}));
}

TEST(RewriteCommandTest, ATargetOnAFullDiskIsNamed) {
  EXPECT_EQ(runTool({"rewrite", "-", "-o", "/dev/full"}, "a 1"),
            (Result{2, "", "quarry: error: ParserFile.write: Can't save project '/dev/full'.\n"}));
}

TEST(RewriteCommandTest, SearchPathsHoldForIncludes) {
  const TemporaryFolder folder;
  folder.write("part.cfg", "b 2");
  EXPECT_EQ(runTool({"rewrite", "-I", folder.getPath(), "-"}, "a 1\n#include \"part.cfg\"").output,
            "#SerialVersion 1.1\n\na 1\nb 2");
}

}  // namespace ToolTest
