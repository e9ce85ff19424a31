#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

constexpr char ROOT[] = "root = true\n";

mode_t getMode(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

}  // namespace

// --- Standard output -----------------------------------------------------------------------------

TEST(FormatCommandTest, StandardOutputGetsTheNewLayout) {
  EXPECT_EQ(runTool({"format", "-"}, "a=1,2 // x\ng{b 2}\n"),
            (Result{0, "a = 1, 2 // x\ng {\n    b 2\n}\n", ""}));
}

TEST(FormatCommandTest, AFileStaysAsItIsWithoutInPlace) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "a   1\n");
  EXPECT_EQ(runTool({"format", name}), (Result{0, "a 1\n", ""}));
  EXPECT_EQ(folder.read("a.cfg"), "a   1\n");
}

TEST(FormatCommandTest, ADocumentWithWarningsIsFormattedWithoutAMessage) {
  EXPECT_EQ(runTool({"format", "-"}, "a   1\n, b 2\n"), (Result{0, "a 1,\nb 2\n", ""}));
}

TEST(FormatCommandTest, AFormattedDocumentStaysAsItIs) {
  const std::string text = "\xEF\xBB\xBF#SerialVersion 1.1\r\n\r\na 1 // x\r\n";
  EXPECT_EQ(runTool({"format", "-"}, text), (Result{0, text, ""}));
}

TEST(FormatCommandTest, BytesOfTheDocumentAreEscapedOnATerminal) {
  EXPECT_EQ(runOnTerminal({"format", "-"}, "a   \"\033[1m\"\n"),
            (Result{0, "a \"\\x1B[1m\"\n", ""}));
}

TEST(FormatCommandTest, TenThousandWarningsAreNoHindrance) {
  std::string text = "a 1\n";
  std::string expected = text;
  for (int i = 0; i < 10000; ++i) {
    text += "*\n";
    expected += "*\n";
  }
  EXPECT_EQ(runTool({"format", "-"}, text), (Result{0, expected, ""}));
}

// --- Looking -------------------------------------------------------------------------------------

TEST(FormatCommandTest, CheckNamesTheFilesThatWouldChange) {
  const TemporaryFolder folder;
  const std::string done = folder.write("done.cfg", "a 1\n");
  const std::string open = folder.write("open.cfg", "a   1\n");
  EXPECT_EQ(runTool({"format", "--check", done, open}), (Result{1, open + "\n", ""}));
  EXPECT_EQ(folder.read("open.cfg"), "a   1\n");
}

TEST(FormatCommandTest, CheckSaysNothingWhereNothingWouldChange) {
  EXPECT_EQ(runTool({"format", "--check", "-"}, "a 1\n"), (Result{0, "", ""}));
}

TEST(FormatCommandTest, DiffShowsWhatWouldChange) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "a   1\nb 2\n");
  EXPECT_EQ(
      runTool({"format", "--diff", name}),
      (Result{1, "--- " + name + "\n+++ " + name + "\n@@ -1,2 +1,2 @@\n-a   1\n+a 1\n b 2\n", ""}));
  EXPECT_EQ(folder.read("a.cfg"), "a   1\nb 2\n");
}

TEST(FormatCommandTest, DiffIsEmptyWhereNothingWouldChange) {
  EXPECT_EQ(runTool({"format", "--diff", "-"}, "a 1\n"), (Result{0, "", ""}));
}

TEST(FormatCommandTest, DiffIsColouredWhereThatIsAskedFor) {
  EXPECT_EQ(runTool({"format", "--diff", "--color=always", "-"}, "a   1\n").output,
            "\033[1m--- standard input\033[0m\n\033[1m+++ standard input\033[0m\n"
            "\033[36m@@ -1 +1 @@\033[0m\n\033[31m-a   1\033[0m\n\033[32m+a 1\033[0m\n");
}

// --- In place ------------------------------------------------------------------------------------

TEST(FormatCommandTest, InPlaceReplacesTheFiles) {
  const TemporaryFolder folder;
  const std::string first = folder.write("a.cfg", "a   1\n");
  const std::string second = folder.write("b.cfg", "b   2\n");
  EXPECT_EQ(runTool({"format", "--in-place", first, second}), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.cfg") + folder.read("b.cfg"), "a 1\nb 2\n");
}

TEST(FormatCommandTest, InPlaceKeepsTheModeAndTheLink) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "a   1\n");
  chmod(name.c_str(), 0640);
  std::filesystem::create_symlink("a.cfg", folder.getPath("link.cfg"));
  EXPECT_EQ(runTool({"format", "--in-place", folder.getPath("link.cfg")}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.getPath("link.cfg")));
  EXPECT_EQ(getMode(name), 0640U);
  EXPECT_EQ(folder.read("a.cfg"), "a 1\n");
}

TEST(FormatCommandTest, AFormattedFileIsNotWritten) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "a 1\n");
  std::filesystem::create_hard_link(name, folder.getPath("same.cfg"));
  EXPECT_EQ(runTool({"format", "--in-place", name}).status, 0);
  EXPECT_EQ(std::filesystem::hard_link_count(name), 2U);
}

TEST(FormatCommandTest, AFileThatFailsDoesNotKeepOthersFromIt) {
  const TemporaryFolder folder;
  const std::string missing = folder.getPath("missing.cfg");
  const std::string name = folder.write("a.cfg", "a   1\n");
  EXPECT_EQ(runTool({"format", "--in-place", missing, name}),
            (Result{2, "",
                    "quarry: error: Cannot read '" + missing + "': No such file or directory.\n"}));
  EXPECT_EQ(folder.read("a.cfg"), "a 1\n");
}

// --- Includes ------------------------------------------------------------------------------------

TEST(FormatCommandTest, IncludedFilesAreReadButNotFormatted) {
  const TemporaryFolder folder;
  folder.write("one.cfg", "#include \"two.cfg\"");
  folder.write("two.cfg", "#include \"three.cfg\"");
  folder.write("three.cfg", "g   {");
  const std::string name = folder.write("a.cfg", "#include \"one.cfg\"\na   1\n}\n");
  EXPECT_EQ(runTool({"format", "--in-place", "-I", folder.getPath(), name}), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.cfg"), "#include \"one.cfg\"\n    a 1\n}\n");
  EXPECT_EQ(folder.read("three.cfg"), "g   {");
}

TEST(FormatCommandTest, TheFileThatIsGivenIsFormattedWhateverTheSearchPathsHold) {
  const TemporaryFolder folder;
  folder.write("paths/a.cfg", "other   1\n");
  folder.write("a.cfg", "a   1\n");
  const TestSupport::WorkingDirectory inside(folder.getPath());
  EXPECT_EQ(runTool({"format", "-I", "paths", "a.cfg"}), (Result{0, "a 1\n", ""}));
}

// --- .editorconfig -------------------------------------------------------------------------------

TEST(FormatCommandTest, AnEditorConfigTellsIndentLineEndAndFinalLineEnd) {
  const TemporaryFolder folder;
  folder.write(".editorconfig", std::string(ROOT) +
                                    "[*.cfg]\nindent_style = tab\nend_of_line = crlf\n"
                                    "insert_final_newline = true\n");
  const std::string name = folder.write("a.cfg", "g {\na 1\n}");
  EXPECT_EQ(runTool({"format", name}), (Result{0, "g {\r\n\ta 1\r\n}\r\n", ""}));
}

TEST(FormatCommandTest, StandardInputIsFormattedAsTheFileThatItStandsInFor) {
  const TemporaryFolder folder;
  folder.write(".editorconfig", std::string(ROOT) + "[*.cfg]\nindent_size = 1\n");
  EXPECT_EQ(runTool({"format", "--stdin-filename", folder.getPath("b.cfg"), "-"}, "g{a 1}"),
            (Result{0, "g {\n a 1\n}", ""}));
}

// --- Refusals ------------------------------------------------------------------------------------

TEST(FormatCommandTest, ADocumentThatWouldNotReadAsBeforeIsRefused) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.cfg", "\xEF\xBB\xBF//\n  a 1\n");
  EXPECT_EQ(
      runTool({"format", "--in-place", name}),
      (Result{2, "",
              "quarry: error: Cannot format '" + name + "': it would not read as before.\n"}));
  EXPECT_EQ(folder.read("a.cfg"), "\xEF\xBB\xBF//\n  a 1\n");
}

TEST(FormatCommandTest, AMissingIncludeIsToldWithItsPlace) {
  EXPECT_EQ(runTool({"format", "-"}, "a 1\n#include \"missing.cfg\"\n"),
            (Result{2, "",
                    "quarry: warning: standard input:2:1: File 'missing.cfg' not "
                    "found. [file-not-found]\n"
                    "quarry: error: Cannot read 'standard input'.\n"}));
}

TEST(FormatCommandTest, ACompressedFileIsRefused) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("a.cfg", "a   1$\n");
  EXPECT_EQ(runTool({"format", name}),
            (Result{2, "", "quarry: error: Cannot format '" + name + "': it is compressed.\n"}));
}

TEST(FormatCommandTest, AZeroByteIsRefused) {
  EXPECT_EQ(runTool({"format", "-"}, std::string("a   1\n\0b 2", 10)),
            (Result{2, "",
                    "quarry: error: Cannot format 'standard input': it has a zero byte, and what "
                    "stands behind that is not read.\n"}));
}

TEST(FormatCommandTest, NestingIsLimitedUnlessToldOtherwise) {
  std::string text;
  for (int i = 0; i < 10001; ++i)
    text += "g{";
  EXPECT_EQ(runTool({"format", "--check", "-"}, text).status, 2);
}

TEST(FormatCommandTest, SeveralFilesDoNotGoToStandardOutput) {
  EXPECT_EQ(
      runTool({"format", "a.cfg", "b.cfg"}),
      (Result{2, "",
              "quarry: error: Several files need --in-place, --check or --diff; quarry --help "
              "tells more.\n"}));
}

TEST(FormatCommandTest, InPlaceDoesNotGoWithLooking) {
  EXPECT_EQ(runTool({"format", "--in-place", "--check", "a.cfg"}),
            (Result{2, "",
                    "quarry: error: --in-place excludes --check and --diff; quarry --help tells "
                    "more.\n"}));
}

TEST(FormatCommandTest, StandardInputCannotBeFormattedInPlace) {
  EXPECT_EQ(runTool({"format", "--in-place", "-"}, "a 1"),
            (Result{2, "",
                    "quarry: error: Standard input cannot be formatted in place; quarry --help "
                    "tells more.\n"}));
}

TEST(FormatCommandTest, AFullDiskIsTold) {
  EXPECT_EQ(runIntoFullDevice({"format", "-"}, "a   1\n"),
            (Result{2, "",
                    "quarry: error: Cannot write to standard output: No space left on device.\n"}));
}

}  // namespace ToolTest
