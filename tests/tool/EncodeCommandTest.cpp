#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/Bytes.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::Bytes;
using TestSupport::makeBytes;
using TestSupport::makeGroup;
using TestSupport::makeItem;
using TestSupport::makeText;
using TestSupport::operator+;
using TestSupport::TemporaryFolder;

namespace {

/// The binary document of `a 1 yes`.
std::string makeDocument() {
  const Bytes bytes = makeText("QDBF") + makeGroup(makeItem("a", makeBytes({3, 1, 0, 0, 0, 1, 1})));
  return {bytes.begin(), bytes.end()};
}

std::string makeNestedText(unsigned long depth) {
  std::string text;
  for (unsigned long i = 0; i < depth; ++i)
    text += "g {\n";
  return text + std::string(depth, '}');
}

}  // namespace

TEST(EncodeCommandTest, StandardOutputGetsTheBinaryForm) {
  EXPECT_EQ(runTool({"encode", "-"}, "a 1 yes"), (Result{0, makeDocument(), ""}));
}

TEST(EncodeCommandTest, ADashAsOutputIsStandardOutput) {
  EXPECT_EQ(runTool({"encode", "-", "-o", "-"}, "a 1 yes"), (Result{0, makeDocument(), ""}));
}

TEST(EncodeCommandTest, AFileGetsTheSameBytes) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"encode", "-", "--output", folder.getPath("a.qdb")}, "a 1 yes"),
            (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.qdb"), makeDocument());
}

TEST(EncodeCommandTest, AFileIsOverwritten) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a.qdb", std::string(1000, 'x'));
  EXPECT_EQ(runTool({"encode", "-", "-o", name}, "a 1 yes").status, 0);
  EXPECT_EQ(folder.read("a.qdb"), makeDocument());
}

TEST(EncodeCommandTest, ADocumentCanBeEncodedInPlace) {
  const TemporaryFolder folder;
  const std::string name = folder.write("a", "a 1 yes");
  EXPECT_EQ(runTool({"encode", name, "-o", name}).status, 0);
  EXPECT_EQ(folder.read("a"), makeDocument());
}

TEST(EncodeCommandTest, AnEmptyDocumentHasAnEmptyRoot) {
  EXPECT_EQ(runTool({"encode", "-"}).output, "QDBF" + std::string(8, '\0'));
}

TEST(EncodeCommandTest, ATerminalGetsNothing) {
  EXPECT_EQ(runOnTerminal({"encode", "-"}, "a 1"),
            (Result{2, "",
                    "quarry: error: Binary data is not written to a terminal; name a file "
                    "with -o.\n"}));
}

TEST(EncodeCommandTest, OnATerminalAFileIsWritten) {
  const TemporaryFolder folder;
  EXPECT_EQ(runOnTerminal({"encode", "-", "-o", folder.getPath("a.qdb")}, "a 1 yes"),
            (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.qdb"), makeDocument());
}

TEST(EncodeCommandTest, ADocumentWithFindingsIsWrittenAllTheSame) {
  EXPECT_EQ(
      runTool({"encode", "-"}, ", a 1 yes"),
      (Result{1, makeDocument(),
              "quarry: warning: standard input:1:1: item ',' wrongly placed. [wrongly-placed]\n"}));
}

TEST(EncodeCommandTest, SearchPathsHoldForIncludes) {
  const TemporaryFolder folder;
  folder.write("part.cfg", "a 1 yes");
  EXPECT_EQ(runTool({"encode", "-I", folder.getPath(), "-"}, "#include \"part.cfg\""),
            (Result{0, makeDocument(), ""}));
}

TEST(EncodeCommandTest, TheTargetIsLeftAloneWhenReadingFails) {
  const TemporaryFolder folder;
  const std::string target = folder.write("a.qdb", "old");
  EXPECT_EQ(runTool({"encode", folder.getPath("missing.cfg"), "-o", target}).status, 2);
  EXPECT_EQ(folder.read("a.qdb"), "old");
}

TEST(EncodeCommandTest, ATargetThatCannotBeOpenedIsNamed) {
  EXPECT_EQ(runTool({"encode", "-", "-o", "/nowhere/a.qdb"}, "a 1"),
            (Result{2, "",
                    "quarry: error: Cannot save '/nowhere/a.qdb': cannot open the folder of "
                    "'/nowhere/a.qdb': "
                    "No such file or directory.\n"}));
}

TEST(EncodeCommandTest, ATargetOnAFullDiskIsNamed) {
  EXPECT_EQ(runTool({"encode", "-", "-o", "/dev/full"}, "a 1"),
            (Result{2, "", "quarry: error: Cannot write '/dev/full': No space left on device.\n"}));
}

TEST(EncodeCommandTest, GroupsMayNestAsDeepAsMemoryLasts) {
  constexpr unsigned long DEPTH = 200000;
  constexpr unsigned long BYTES_PER_GROUP = 2 + 8 + 1 + 1 + 8;  // name, size, kind, tag, size
  EXPECT_EQ(runTool({"encode", "--no-limits", "-"}, makeNestedText(DEPTH)).output.size(),
            12 + DEPTH * BYTES_PER_GROUP);
}

TEST(EncodeCommandTest, GroupsOfMoreThan10000LevelsAreRefused) {
  EXPECT_EQ(runTool({"encode", "-"}, makeNestedText(10001)),
            (Result{2, "",
                    "quarry: warning: standard input:10001:3: File 'standard input' "
                    "exceeds the limit nestingDepth (10000). [limit-exceeded]\n"
                    "quarry: error: Cannot read 'standard input'.\n"}));
}

}  // namespace ToolTest
