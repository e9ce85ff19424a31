// Whole documents, from the disk to the tree and back.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::describe;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

/// A project of several files: the top file, a theme in a search path, shared brushes that are
/// included twice, and compressed notes beside the working directory.
class ProjectStoryTest : public testing::Test {
 protected:
  ProjectStoryTest() {
    folder.write("harbor.cfg",
                 "#SerialVersion 1.1\n"
                 "// Made by hand; the studio keeps no comments.\n"
                 "\n"
                 "title \"Harbor // first cut\"   // the title may change\n"
                 "size = 1920, 1080\n"
                 "#include \"theme.cfg\"\n"
                 "scene {\n"
                 "  #include \"brushes.cfg\"\n"
                 "  blur(4, no)\n"
                 "}\n"
                 "scene {\n"
                 "  #include \"brushes.cfg\"\n"
                 "}\n"
                 "#include \"notes.cfg\"\n"
                 "last yes\n");
    folder.write("themes/theme.cfg", "#SerialVersion 1.0\ntheme \"slate\"  // grey\n");
    folder.write("shared/brushes.cfg", "brush \"round\" 4.0\nbrush \"flat\" 12.5\n");
    folder.writeCompressed("notes.cfg", "note \"first\"$\nnote -\n\"second\"$\n");
    file.setSearchPaths({"themes", "shared/"});
  }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  const RecordingConsole console;
  ParserFile file;
};

const char* const HARBOR_TREE =
    "title string:\"Harbor // first cut\"; size int:1920 int:1080; theme string:\"slate\"; "
    "scene {brush string:\"round\" double:4.0; brush string:\"flat\" double:12.5; "
    "blur(int:4 bool:no)}; "
    "scene {brush string:\"round\" double:4.0; brush string:\"flat\" double:12.5}; "
    "note string:\"first\"; note string:\"second\"; last bool:yes";

const char* const HARBOR_TEXT =
    "#SerialVersion 1.1\n"
    "\n"
    "title \"Harbor // first cut\"\n"
    "size 1920 1080\n"
    "theme \"slate\"\n"
    "scene {\n"
    "    brush \"round\" 4.0\n"
    "    brush \"flat\" 12.5\n"
    "    blur(4, no)\n"
    "}\n"
    "scene {\n"
    "    brush \"round\" 4.0\n"
    "    brush \"flat\" 12.5\n"
    "}\n"
    "note \"first\"\n"
    "note \"second\"\n"
    "last yes";

}  // namespace

// --- A project of several files ------------------------------------------------------------------

TEST_F(ProjectStoryTest, IsReadIntoOneTree) {
  EXPECT_TRUE(file.read("harbor.cfg"));
  EXPECT_EQ(describe(file.getRoot()), HARBOR_TREE);
  EXPECT_TRUE(console.isSilent());
}

TEST_F(ProjectStoryTest, HasTheVersionOfItsTopFile) {
  file.read("harbor.cfg");
  EXPECT_EQ(file.getVersion(), 1.1);
}

TEST_F(ProjectStoryTest, IsWrittenAsOneFile) {
  file.read("harbor.cfg");
  file.write("whole.cfg");
  EXPECT_EQ(folder.read("whole.cfg"), HARBOR_TEXT);
}

TEST_F(ProjectStoryTest, IsTheSameTreeWhenWrittenAndReadAgain) {
  file.read("harbor.cfg");
  file.write("whole.cfg");
  ParserFile again;
  EXPECT_TRUE(again.read("whole.cfg"));
  EXPECT_EQ(describe(again.getRoot()), HARBOR_TREE);
}

TEST_F(ProjectStoryTest, IsLookedUpByName) {
  file.read("harbor.cfg");
  const ParserGroup& root = file.getRoot();
  EXPECT_EQ(root.getItem("size")->getInt(1), 1080);
  EXPECT_EQ(root.getEntries("scene").size(), 2U);
  EXPECT_EQ(root.getGroup("scene")->getEntries("brush")[1]->getDouble(1), 12.5);
  EXPECT_EQ(root.getGroup("scene")->getItem("blur")->getType(), ParserItem::ITEM_CALL);
}

TEST_F(ProjectStoryTest, IsEditedAndReadAgainWithTheEdits) {
  file.read("harbor.cfg");
  ParserGroup& root = file.getRoot();
  root.getItem("title")->setString("Harbor, \"second\" cut\n", 0);
  root.removeItem("note");
  root.getGroup("scene")->addItem("fps", 0, 0)->addDouble(25.0);
  root.addGroup("view", false)->addItem("grid", 0, 0)->addBool(true);
  file.write("edited.cfg");
  ParserFile again("edited.cfg");
  ASSERT_TRUE(again.read(""));
  EXPECT_EQ(again.getRoot().getItem("title")->getString(0), "Harbor, \"second\" cut\n");
  EXPECT_EQ(again.getRoot().getItem("note"), nullptr);
  EXPECT_EQ(again.getRoot().getGroup("scene")->getItem("fps")->getDouble(0), 25.0);
  EXPECT_TRUE(again.getRoot().getGroup("view")->getItem("grid")->getBool(0));
}

TEST_F(ProjectStoryTest, AnEditLeavesEveryOtherByte) {
  file.read("harbor.cfg");
  file.getRoot().getItem("theme")->setString("sand", 0);
  file.write("edited.cfg");
  std::string expected = HARBOR_TEXT;
  expected.replace(expected.find("slate"), 5, "sand");
  EXPECT_EQ(folder.read("edited.cfg"), expected);
}

TEST_F(ProjectStoryTest, IsWrittenTwiceTheSame) {
  file.read("harbor.cfg");
  file.write("once.cfg");
  file.write("twice.cfg");
  EXPECT_EQ(folder.read("once.cfg"), folder.read("twice.cfg"));
}

TEST_F(ProjectStoryTest, ReloadedWithoutClearIsThereTwice) {
  file.read("harbor.cfg");
  file.read("");
  EXPECT_EQ(describe(file.getRoot()), std::string(HARBOR_TREE) + "; " + HARBOR_TREE);
}

TEST_F(ProjectStoryTest, ReloadedWithClearIsThereOnceWithWhatHasChanged) {
  file.read("harbor.cfg");
  folder.write("themes/theme.cfg", "theme \"night\"\n");
  file.clear();
  EXPECT_TRUE(file.read(""));
  EXPECT_EQ(file.getRoot().getEntries("theme").size(), 1U);
  EXPECT_EQ(file.getRoot().getItem("theme")->getString(0), "night");
}

TEST_F(ProjectStoryTest, AFileInAnEarlierSearchPathHidesALaterOne) {
  folder.write("mine/theme.cfg", "theme \"mine\"\n");
  file.setSearchPaths({"mine", "themes", "shared"});
  file.read("harbor.cfg");
  EXPECT_EQ(file.getRoot().getItem("theme")->getString(0), "mine");
}

TEST_F(ProjectStoryTest, IsNotReadAtAllWhenOneFileIsMissing) {
  file.setSearchPaths({"themes"});
  EXPECT_FALSE(file.read("harbor.cfg"));
  EXPECT_EQ(describe(file.getRoot()), "");
  EXPECT_THAT(console.getWarnings(), testing::ElementsAre("File 'brushes.cfg' not found.\n"));
}

TEST_F(ProjectStoryTest, SurvivesAMissingFileAndIsReadWhenItIsThereAgain) {
  file.setSearchPaths({"themes"});
  file.read("harbor.cfg");
  file.setSearchPaths({"themes", "shared"});
  EXPECT_TRUE(file.read(""));
  EXPECT_EQ(describe(file.getRoot()), HARBOR_TREE);
}

// --- The two formats -----------------------------------------------------------------------------

namespace {

/// Reads the bytes of a document with its version line.
std::string readString(const std::string& bytes) {
  const TemporaryFolder folder;
  ParserFile file(folder.write("x.cfg", bytes));
  EXPECT_TRUE(file.read(""));
  return file.getRoot().getItem("path")->getString(0);
}

}  // namespace

TEST(FormatStoryTest, BackslashesOfADocumentOfFormat10StandAsTheyAre) {
  EXPECT_EQ(readString("#SerialVersion 1.0\npath \"C:\\new\\table\"\n"), "C:\\new\\table");
}

TEST(FormatStoryTest, BackslashesOfADocumentWithoutVersionStandAsTheyAre) {
  EXPECT_EQ(readString("path \"C:\\new\\table\"\n"), "C:\\new\\table");
}

TEST(FormatStoryTest, BackslashesOfADocumentOfFormat11AreEscapes) {
  EXPECT_EQ(readString("#SerialVersion 1.1\npath \"C:\\new\\table\"\n"), "C:\new\table");
}

TEST(FormatStoryTest, BackslashesOfALaterFormatAreEscapesToo) {
  EXPECT_EQ(readString("#SerialVersion 7\npath \"C:\\new\\table\"\n"), "C:\new\table");
}

TEST(FormatStoryTest, ADocumentOfFormat10IsWrittenAs11WithTheSameStrings) {
  const TemporaryFolder folder;
  ParserFile file(folder.write("x.cfg", "#SerialVersion 1.0\npath \"C:\\new\\table\"\n"));
  file.read("");
  file.write("");
  EXPECT_EQ(folder.read("x.cfg"), "#SerialVersion 1.1\n\npath \"C:\\\\new\\\\table\"");
  EXPECT_EQ(readString(folder.read("x.cfg")), "C:\\new\\table");
}

TEST(FormatStoryTest, TheVersionOfAnIncludeDoesNotChangeHowItsStringsAreRead) {
  const TemporaryFolder folder;
  folder.write("old.cfg", "#SerialVersion 1.0\npath \"a\\tb\"\n");
  ParserFile file;
  file.setSearchPaths({folder.getPath()});
  folder.write("new.cfg", "#SerialVersion 1.1\n#include \"old.cfg\"\n");
  EXPECT_TRUE(file.read("new.cfg"));
  EXPECT_EQ(file.getRoot().getItem("path")->getString(0), "a\tb");
}

// --- A document made by code ---------------------------------------------------------------------

namespace {

/// Adds one item of every kind of value.
void fill(ParserGroup& root) {
  root.addItem("bools", 0, 0)->addBool(true);
  root.getItem("bools")->addBool(false);
  root.addItem("character", 0, 0)->addChar('A');
  root.addItem("ints", 0, 0)->addInt(-2147483647 - 1);
  root.getItem("ints")->addInt(2147483647);
  root.addItem("doubles", 0, 0)->addDouble(0.1);
  root.getItem("doubles")->addDouble(-2.0);
  root.getItem("doubles")->addDouble(1e300);
  root.addItem("strings", 0, 0)->addString("");
  root.getItem("strings")->addString("tab\t \"quoted\" back\\slash\nline");
  char bytes[] = {0, 1, static_cast<char>(-1)};
  root.addItem("block", 0, 0)->addBinaryData(bytes, sizeof bytes);
  root.addItem("nothing", 0, 0);
  root.addGroup("group", false)->addItem("inner", 0, 0)->addInt(1);
  root.addItem("#keyword", 0, 0)->addString("value");
}

class MadeDocumentTest : public testing::Test {
 protected:
  MadeDocumentTest() {
    ParserFile made(folder.getPath("made.cfg"));
    fill(made.getRoot());
    made.write("");
    EXPECT_TRUE(file.read(folder.getPath("made.cfg")));
  }

  const ParserItem& item(const std::string& name) const { return *file.getRoot().getItem(name); }

  const TemporaryFolder folder;
  const RecordingConsole console;
  ParserFile file;
};

}  // namespace

TEST_F(MadeDocumentTest, IsWrittenInOrder) {
  EXPECT_EQ(folder.read("made.cfg"),
            "#SerialVersion 1.1\n"
            "\n"
            "bools yes no\n"
            "character 65\n"
            "ints -2147483648 2147483647\n"
            "doubles 0.1 -2.0 1e+300\n"
            "strings \"\" \"tab\\t \\\"quoted\\\" back\\\\slash\\nline\"\n"
            "block 0x0001FF00010000\n"
            "nothing <empty>\n"
            "group {\n"
            "    inner 1\n"
            "}\n"
            "#keyword \"value\"");
}

TEST_F(MadeDocumentTest, GivesItsBoolsBack) {
  EXPECT_TRUE(item("bools").getBool(0));
  EXPECT_FALSE(item("bools").getBool(1));
}

TEST_F(MadeDocumentTest, GivesItsCharacterBackAsAnIntWithItsCode) {
  EXPECT_TRUE(item("character").isValueInt(0));
  EXPECT_EQ(item("character").getChar(0), 'A');
}

TEST_F(MadeDocumentTest, GivesItsIntsBack) {
  EXPECT_EQ(item("ints").getInt(0), -2147483647 - 1);
  EXPECT_EQ(item("ints").getInt(1), 2147483647);
}

TEST_F(MadeDocumentTest, GivesItsDoublesBackToTheLastBit) {
  EXPECT_EQ(item("doubles").getDouble(0), 0.1);
  EXPECT_EQ(item("doubles").getDouble(1), -2.0);
  EXPECT_EQ(item("doubles").getDouble(2), 1e300);
}

TEST_F(MadeDocumentTest, GivesItsStringsBack) {
  EXPECT_EQ(item("strings").getString(0), "");
  EXPECT_EQ(item("strings").getString(1), "tab\t \"quoted\" back\\slash\nline");
}

TEST_F(MadeDocumentTest, GivesItsBlockBack) {
  ASSERT_EQ(item("block").getBinaryDataSize(0), 3U);
  EXPECT_EQ(std::string(static_cast<const char*>(item("block").getBinaryData(0)), 3),
            std::string("\0\x01\xFF", 3));
}

TEST_F(MadeDocumentTest, GivesItsItemWithoutValuesBack) {
  EXPECT_EQ(item("nothing").getValueCount(), 0U);
}

TEST_F(MadeDocumentTest, GivesItsGroupBack) {
  ASSERT_TRUE(item("group").isGroup());
  EXPECT_EQ(item("group").getGroup(0)->getItem("inner")->getInt(0), 1);
}

TEST_F(MadeDocumentTest, GivesItsKeywordBack) {
  ASSERT_NE(file.getRoot().getKeyword("#keyword"), nullptr);
  EXPECT_EQ(file.getRoot().getKeyword("#keyword")->getString(0), "value");
}

// --- What does not survive -----------------------------------------------------------------------

// Each of these is how the format has always been.

namespace {

/// Returns the tree that is read from what `root` is written as.
std::string rewrite(const ParserGroup& root) {
  const TemporaryFolder folder;
  ParserFile again;
  folder.write("x.cfg", "#SerialVersion 1.1\n" + TestSupport::writeLines(root));
  const RecordingConsole console;
  EXPECT_TRUE(again.read(folder.getPath("x.cfg")));
  return describe(again.getRoot());
}

}  // namespace

TEST(LossStoryTest, AnIntSetByCodeComesBackAsTheWordOfItsByte) {
  ParserGroup root("root");
  root.setText("a 1 b 2", 1.1);
  root.getItem("a")->setInt('7', 0);
  EXPECT_EQ(rewrite(root), "a int:7; b int:2");
}

TEST(LossStoryTest, AFoldedGroupEndsTheDocumentEarly) {
  ParserGroup root("root");
  root.addGroup("folded", true)->addItem("x", 0, 0)->addInt(1);
  root.addItem("after", 0, 0)->addInt(2);
  EXPECT_EQ(rewrite(root), "folded {x int:1}");
}

TEST(LossStoryTest, ATemplateIsNotReadBack) {
  ParserGroup root("root");
  root.addItem("curve", 0, 0)->addInt(1);
  root.getItem("curve")->setTemplate("bezier");
  EXPECT_EQ(rewrite(root), "");
}

TEST(LossStoryTest, AnArrayOfUnspecifiedSizeIsReadBackAsAName) {
  ParserGroup root("root");
  root.addItem("list", 0, 0)->addInt(1);
  root.getItem("list")->setArray(true, 0);
  EXPECT_EQ(rewrite(root), "list[] int:1");
}

TEST(LossStoryTest, AStringThatEndsInABackslashSurvivesAtTheEndOfItsLine) {
  ParserGroup root("root");
  root.addItem("folder", 0, 0)->addString("C:\\");
  root.addItem("after", 0, 0)->addInt(1);
  EXPECT_EQ(rewrite(root), "folder string:\"C:\\\"; after int:1");
}

TEST(LossStoryTest, AStringBehindOneThatEndsInABackslashIsJoinedToIt) {
  ParserGroup root("root");
  root.addItem("paths", 0, 0)->addString("C:\\");
  root.getItem("paths")->addString("D:");
  EXPECT_EQ(rewrite(root), "paths string:\"C:\\\" \"D:\"");
}

TEST(LossStoryTest, AVersionMarkerInAStringIsTakenOutOfIt) {
  ParserGroup root("root");
  root.addItem("a", 0, 0)->addInt(1);
  root.addItem("s", 0, 0)->addString("x #SerialVersion 1.1");
  EXPECT_EQ(rewrite(root), "a int:1; s");
}

TEST(LossStoryTest, CommentsAndIncludesAreNotWritten) {
  const TemporaryFolder folder;
  folder.write("sub.cfg", "b 2");
  folder.write("x.cfg", "a 1 // note\n#include \"sub.cfg\"\n");
  ParserFile file;
  file.setSearchPaths({folder.getPath()});
  file.read("x.cfg");
  std::string text;
  file.getText(text);
  EXPECT_EQ(text, "\na 1\nb 2");
}
