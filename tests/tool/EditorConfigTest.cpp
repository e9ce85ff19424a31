#include <gtest/gtest.h>
#include <quarry/EditorConfig.h>

#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;
using Tool::EditorProperties;

namespace {

EditorProperties getProperties(const std::string& text, const std::string& path) {
  EditorProperties properties;
  Tool::applyEditorConfig(text, path, properties);
  return properties;
}

bool appliesTo(const std::string& pattern, const std::string& path) {
  return getProperties("[" + pattern + "]\na = 1\n", path).count("a") > 0;
}

}  // namespace

// --- Lines ---------------------------------------------------------------------------------------

TEST(EditorConfigTest, PropertiesOfAMatchingSectionAreTaken) {
  EXPECT_EQ(getProperties("[*.cfg]\nindent_size=2\n[*.txt]\nindent_size=8\n", "a.cfg"),
            (EditorProperties{{"indent_size", "2"}}));
}

TEST(EditorConfigTest, LaterSectionsPrevail) {
  EXPECT_EQ(getProperties("[*]\na = 1\nb = 2\n[*.cfg]\na = 3\n", "x.cfg"),
            (EditorProperties{{"a", "3"}, {"b", "2"}}));
}

TEST(EditorConfigTest, NamesAndValuesAreInLowerCase) {
  EXPECT_EQ(getProperties("[*]\nIndent_Style = TAB\n", "x"),
            (EditorProperties{{"indent_style", "tab"}}));
}

TEST(EditorConfigTest, CommentsAndLinesThatSayNothingArePassedOver) {
  EXPECT_EQ(
      getProperties("\xEF\xBB\xBF[*]\r\n# a = 1\r\n; b = 2\r\nword\r\n = 3\r\n\tc\t=\t4\r\n", "x"),
      (EditorProperties{{"c", "4"}}));
}

TEST(EditorConfigTest, PropertiesBeforeTheFirstSectionAreAboutNoFile) {
  EXPECT_EQ(getProperties("a = 1\n[*]\n", "x"), EditorProperties());
}

TEST(EditorConfigTest, RootIsSaidBeforeTheFirstSection) {
  EXPECT_TRUE(Tool::isRootEditorConfig("; top\nroot = TRUE\n[*]\n"));
  EXPECT_FALSE(Tool::isRootEditorConfig("root = false\n"));
  EXPECT_FALSE(Tool::isRootEditorConfig("[*]\nroot = true\n"));
}

// --- Sections ------------------------------------------------------------------------------------

TEST(EditorConfigTest, ASectionWithoutASlashIsAboutNamesInAnyFolder) {
  EXPECT_TRUE(appliesTo("*.cfg", "b/c/a.cfg"));
}

TEST(EditorConfigTest, ASectionWithASlashIsAboutPaths) {
  EXPECT_TRUE(appliesTo("b/*.cfg", "b/a.cfg"));
  EXPECT_TRUE(appliesTo("/a.cfg", "a.cfg"));
  EXPECT_FALSE(appliesTo("/a.cfg", "b/a.cfg"));
  EXPECT_FALSE(appliesTo("b/*.cfg", "c/b/a.cfg"));
}

// --- Files ---------------------------------------------------------------------------------------

TEST(EditorConfigTest, InnerFoldersPrevailOverOuterOnes) {
  const TemporaryFolder folder;
  folder.write(".editorconfig", "root = true\n[*.cfg]\na = 1\nb = 2\n");
  folder.write("inner/.editorconfig", "[*]\na = 3\n");
  EXPECT_EQ(Tool::readEditorProperties(folder.getPath("inner/deep/x.cfg")),
            (EditorProperties{{"a", "3"}, {"b", "2"}}));
}

TEST(EditorConfigTest, NothingIsLookedForAroundARoot) {
  const TemporaryFolder folder;
  folder.write(".editorconfig", "[*]\na = 1\n");
  folder.write("inner/.editorconfig", "root = true\n[*]\nb = 2\n");
  EXPECT_EQ(Tool::readEditorProperties(folder.getPath("inner/x.cfg")),
            (EditorProperties{{"b", "2"}}));
}

TEST(EditorConfigTest, ARelativePathIsFollowedFromTheWorkingFolder) {
  const TemporaryFolder folder;
  folder.write(".editorconfig", "root = true\n[inner/x.cfg]\na = 1\n");
  const TestSupport::WorkingDirectory inside(folder.getPath());
  EXPECT_EQ(Tool::readEditorProperties("./inner/../inner/x.cfg"), (EditorProperties{{"a", "1"}}));
}

// --- Style ---------------------------------------------------------------------------------------

TEST(EditorConfigTest, FourBlanksAreALevelUnlessSaidOtherwise) {
  EXPECT_EQ(Tool::makeFormatStyle({}).indent, "    ");
}

TEST(EditorConfigTest, TheIndentMayBeBlanks) {
  EXPECT_EQ(Tool::makeFormatStyle({{"indent_style", "space"}, {"indent_size", "2"}}).indent, "  ");
}

TEST(EditorConfigTest, TheIndentMayBeATab) {
  EXPECT_EQ(Tool::makeFormatStyle({{"indent_style", "tab"}, {"indent_size", "2"}}).indent, "\t");
}

TEST(EditorConfigTest, TheTabsWidthStandsInForTheSizeOfTheIndent) {
  EXPECT_EQ(Tool::makeFormatStyle({{"indent_size", "tab"}, {"tab_width", "3"}}).indent, "   ");
}

TEST(EditorConfigTest, SizesThatMakeNoSenseAreNotGiven) {
  for (const std::string size : {"-1", "4x", "65", "", "unset"})
    EXPECT_EQ(Tool::makeFormatStyle({{"indent_size", size}}).indent, "    ") << size;
}

TEST(EditorConfigTest, LinesMayEndInLineFeedsWithAndWithoutReturns) {
  EXPECT_EQ(Tool::makeFormatStyle({{"end_of_line", "lf"}}).lineEnd.value_or(""), "\n");
  EXPECT_EQ(Tool::makeFormatStyle({{"end_of_line", "crlf"}}).lineEnd.value_or(""), "\r\n");
}

TEST(EditorConfigTest, LinesCannotEndInReturnsAlone) {
  EXPECT_FALSE(Tool::makeFormatStyle({{"end_of_line", "cr"}}).lineEnd.has_value());
}

TEST(EditorConfigTest, TheLastLineMayEndOrNot) {
  EXPECT_EQ(Tool::makeFormatStyle({{"insert_final_newline", "true"}}).endsInLineEnd, true);
  EXPECT_EQ(Tool::makeFormatStyle({{"insert_final_newline", "false"}}).endsInLineEnd, false);
  EXPECT_EQ(Tool::makeFormatStyle({{"insert_final_newline", "unset"}}).endsInLineEnd, std::nullopt);
}

}  // namespace ToolTest
