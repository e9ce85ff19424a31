// The commands that edit: set, add, remove, rename.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

constexpr char SHOW[] =
    "#SerialVersion 1.1\n"
    "// a show\n"
    "title \"Harbor\" // its name\n"
    "size 1920,   1080\n"
    "camera {\n"
    "\tfov 39.60 // wide\n"
    "}\n";

/// Expects that the command makes `expected` of a document on standard input.
void checkEdit(Arguments arguments, const std::string& text, const std::string& expected) {
  arguments.insert(arguments.begin() + 1, "-");
  EXPECT_EQ(runTool(arguments, text), (Result{0, expected, ""}));
}

std::string replaced(std::string text, const std::string& wanted, const std::string& replacement) {
  return text.replace(text.find(wanted), wanted.size(), replacement);
}

void checkRefused(Arguments arguments, const std::string& text, const std::string& message) {
  arguments.insert(arguments.begin() + 1, "-");
  EXPECT_EQ(runTool(arguments, text), (Result{2, "", "quarry: error: " + message + "\n"}));
}

class EditCommandTest : public testing::Test {
 protected:
  std::string getPath() const { return folder.getPath("show.cfg"); }
  std::string read() const { return folder.read("show.cfg"); }

  TemporaryFolder folder;
};

}  // namespace

// --- set -----------------------------------------------------------------------------------------

TEST_F(EditCommandTest, SetChangesNothingButTheValue) {
  checkEdit({"set", "title", "Bay"}, SHOW, replaced(SHOW, "Harbor", "Bay"));
  checkEdit({"set", "camera/fov", "24.0"}, SHOW, replaced(SHOW, "39.60", "24.0"));
}

TEST_F(EditCommandTest, SetTakesTheNumberOfAValue) {
  checkEdit({"set", "size#2", "-5"}, SHOW, replaced(SHOW, "1080", "-5"));
}

TEST_F(EditCommandTest, SetTakesAllValues) {
  checkEdit({"set", "size", "640", "480"}, SHOW,
            replaced(replaced(SHOW, "1920", "640"), "1080", "480"));
}

TEST_F(EditCommandTest, SetWithoutValuesLeavesTheItemEmpty) {
  checkEdit({"set", "camera/fov"}, SHOW, replaced(SHOW, "39.60", "<empty>"));
}

TEST_F(EditCommandTest, SetTakesAWordThatIsNoValueForAString) {
  checkEdit({"set", "a", "x y"}, "a 1", "a \"x y\"");
}

TEST_F(EditCommandTest, SetTakesAWordForAStringWhereThatIsAskedFor) {
  checkEdit({"set", "--string", "a", "12"}, "a 1", "a \"12\"");
}

TEST_F(EditCommandTest, SetOfAMissingItemIsNoMatch) {
  EXPECT_EQ(runTool({"set", "-", "b", "1"}, "a 1"),
            (Result{1, "", "quarry: warning: No such item: there is no 'b'.\n"}));
}

TEST_F(EditCommandTest, SetOfOneValueTakesOneValue) {
  checkRefused({"set", "a#1", "1", "2"}, "a 1", "A path that ends in #n takes one VALUE.");
}

TEST_F(EditCommandTest, WhatWouldNotReadBackIsRefused) {
  checkRefused({"set", "a#1", "x\\"}, "#SerialVersion 1.1\na 1 2",
               "Nothing was changed: a string that ends in a backslash has to stand at the end of "
               "its line.");
  checkRefused({"set", "a", "#include "}, "#SerialVersion 1.1\na 1",
               "Nothing was changed: '#include \"' is a directive wherever it stands, also in a "
               "string.");
}

TEST_F(EditCommandTest, SetWritesTheFileInItsPlace) {
  folder.write("show.cfg", SHOW);
  EXPECT_EQ(runTool({"set", getPath(), "title", "Bay"}), (Result{0, "", ""}));
  EXPECT_EQ(read(), replaced(SHOW, "Harbor", "Bay"));
}

TEST_F(EditCommandTest, SetKeepsTheMode) {
  folder.write("show.cfg", SHOW);
  std::filesystem::permissions(
      getPath(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  runTool({"set", getPath(), "title", "Bay"});
  struct stat status = {};
  ASSERT_EQ(stat(getPath().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(EditCommandTest, SetWritesTheIncludedFileInWhichTheItemStands) {
  folder.write("show.cfg", "#include \"layers.cfg\"\na 1\n");
  folder.write("layers.cfg", "// layers\nb 1 // one\n");
  EXPECT_EQ(runTool({"set", "-I", folder.getPath(), getPath(), "b", "2"}), (Result{0, "", ""}));
  EXPECT_EQ(read(), "#include \"layers.cfg\"\na 1\n");
  EXPECT_EQ(folder.read("layers.cfg"), "// layers\nb 2 // one\n");
}

TEST_F(EditCommandTest, AnotherOutputLeavesTheFileAsItIs) {
  folder.write("show.cfg", SHOW);
  const std::string target = folder.getPath("new.cfg");
  EXPECT_EQ(runTool({"set", getPath(), "title", "Bay", "-o", target}), (Result{0, "", ""}));
  EXPECT_EQ(read(), SHOW);
  EXPECT_EQ(folder.read("new.cfg"), replaced(SHOW, "Harbor", "Bay"));
}

TEST_F(EditCommandTest, AChangeInAnIncludedFileCannotGoToAnotherOutput) {
  folder.write("layers.cfg", "b 1\n");
  const Result result =
      runTool({"set", "-I", folder.getPath(), "-", "b", "2"}, "#include \"layers.cfg\"\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(folder.read("layers.cfg"), "b 1\n");
}

TEST_F(EditCommandTest, AnUnreadableDocumentIsRefusedWithTheReason) {
  EXPECT_EQ(runTool({"set", "-", "a", "1"}, "a 1\n#include \"gone.cfg\"\n"),
            (Result{2, "",
                    "quarry: error: standard input:2:1: File 'gone.cfg' not found. "
                    "[file-not-found]\n"}));
}

TEST_F(EditCommandTest, LineEndsAndTheByteOrderMarkStay) {
  checkEdit({"set", "b", "2"}, "\xEF\xBB\xBF\r\n// bay\r\nb 1\r\n",
            "\xEF\xBB\xBF\r\n// bay\r\nb 2\r\n");
}

// --- add -----------------------------------------------------------------------------------------

TEST_F(EditCommandTest, AddPutsAnItemBehindTheLastOfItsGroup) {
  checkEdit({"add", "camera/near", "0.1"}, SHOW,
            replaced(SHOW, "// wide\n", "// wide\n\tnear 0.1\n"));
}

TEST_F(EditCommandTest, AddPutsAnItemOfTheRootAtTheEnd) {
  checkEdit({"add", "note"}, SHOW, std::string(SHOW) + "note <empty>\n");
}

TEST_F(EditCommandTest, AddPutsAnItemBesideAnother) {
  checkEdit({"add", "--before", "size", "#revision", "7"}, SHOW,
            replaced(SHOW, "size", "#revision 7\nsize"));
  checkEdit({"add", "--after", "size", "rate", "25"}, SHOW,
            replaced(SHOW, "1080\n", "1080\nrate 25\n"));
}

TEST_F(EditCommandTest, AddMakesCallsAndGroups) {
  checkEdit({"add", "--call", "blur", "4", "yes"}, "a 1\n", "a 1\nblur(4, yes)\n");
  EXPECT_EQ(runTool({"add", "--group", "-", "layer"}, "a 1\n").status, 0);
}

TEST_F(EditCommandTest, AGroupTakesNoValue) {
  checkRefused({"add", "--group", "layer", "1"}, "a 1", "A group takes no VALUE.");
}

TEST_F(EditCommandTest, AddToAMissingGroupIsNoMatch) {
  EXPECT_EQ(runTool({"add", "-", "g/a", "1"}, "a 1").status, 1);
}

// --- remove and rename ---------------------------------------------------------------------------

TEST_F(EditCommandTest, RemoveTakesAnItemWithItsLine) {
  checkEdit({"remove", "size"}, SHOW, replaced(SHOW, "size 1920,   1080\n", ""));
}

TEST_F(EditCommandTest, RemoveTakesAValue) { checkEdit({"remove", "a#2"}, "a 1 2 3", "a 1 3"); }

TEST_F(EditCommandTest, RemoveOfAMissingValueIsNoMatch) {
  EXPECT_EQ(runTool({"remove", "-", "a#4"}, "a 1 2 3").status, 1);
}

TEST_F(EditCommandTest, RenameChangesNothingButTheName) {
  checkEdit({"rename", "camera/fov", "angle"}, SHOW, replaced(SHOW, "fov", "angle"));
}

TEST_F(EditCommandTest, RenameToNoNameIsRefused) {
  EXPECT_EQ(runTool({"rename", "-", "a", "b c"}, "a 1").status, 2);
}

}  // namespace ToolTest
