#include <gtest/gtest.h>
#include <quarry/EditorConfig.h>
#include <quarry/Failure.h>

#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;
using Tool::EditorProperties;

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

TEST(EditorConfigTest, ALineThatSaysNothingIsNamed) {
  const TemporaryFolder folder;
  const std::string config = folder.write(".editorconfig", "root = true\n[*]\nword\n");
  try {
    Tool::readEditorProperties(folder.getPath("x.cfg"));
    FAIL() << "it was read";
  } catch (const Tool::Failure& failure) {
    EXPECT_EQ(failure.what(),
              "Cannot read '" + config + "': line 3 is neither a section nor a property.");
  }
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
