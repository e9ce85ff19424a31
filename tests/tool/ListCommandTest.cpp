#include <gtest/gtest.h>

#include <algorithm>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

constexpr char SCENE[] =
    "title \"Harbor\"\n"
    "#format 2\n"
    "scene {\n"
    "    layer { name \"water\" blur(4, no) }\n"
    "    layer { name \"sky\" }\n"
    "}\n"
    "note <empty>\n";

}  // namespace

TEST(ListCommandTest, EveryItemIsALineWithItsPath) {
  EXPECT_EQ(runTool({"list", "-"}, SCENE), (Result{0,
                                                   "title: string \"Harbor\"\n"
                                                   "#format: int 2\n"
                                                   "scene: group\n"
                                                   "scene/layer: group\n"
                                                   "scene/layer/name: string \"water\"\n"
                                                   "scene/layer/blur (call): int 4, bool no\n"
                                                   "scene/layer[2]: group\n"
                                                   "scene/layer[2]/name: string \"sky\"\n"
                                                   "note: empty\n",
                                                   ""}));
}

TEST(ListCommandTest, APathLeadsToAGroup) {
  EXPECT_EQ(runTool({"list", "-", "scene/layer[2]"}, SCENE),
            (Result{0, "scene/layer[2]/name: string \"sky\"\n", ""}));
}

TEST(ListCommandTest, AnItemWithoutAGroupIsShownItself) {
  EXPECT_EQ(runTool({"list", "-", "title"}, SCENE), (Result{0, "title: string \"Harbor\"\n", ""}));
}

TEST(ListCommandTest, AnEmptyGroupShowsNothing) {
  EXPECT_EQ(runTool({"list", "-", "g"}, "g {\n}\na 1"), (Result{0, "", ""}));
}

TEST(ListCommandTest, DepthCountsFromThePath) {
  EXPECT_EQ(runTool({"list", "--depth=0", "-", "scene"}, SCENE),
            (Result{0, "scene/layer: group\nscene/layer[2]: group\n", ""}));
}

TEST(ListCommandTest, AMissingItemIsAFinding) {
  EXPECT_EQ(runTool({"list", "-", "scene/camera"}, SCENE),
            (Result{1, "", "quarry: warning: No such item: there is no 'camera' in 'scene'.\n"}));
}

TEST(ListCommandTest, AValueIsRefused) {
  EXPECT_EQ(runTool({"list", "-", "title#1"}, SCENE),
            (Result{2, "", "quarry: error: 'title#1' is a value; name its item.\n"}));
}

TEST(ListCommandTest, NullEndsEachPathWithAZeroByte) {
  EXPECT_EQ(runTool({"list", "--null", "-", "scene"}, "scene { a 1 b 2 }").output,
            std::string("scene/a\0scene/b\0", 16));
}

TEST(ListCommandTest, JsonTellsPathKindAndValues) {
  EXPECT_EQ(
      runTool({"list", "--json", "-"}, "a 1 1.50 f(yes) g { #k <empty> }").output,
      "[\n"
      "  {\"path\":\"a\",\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":1},"
      "{\"type\":\"double\",\"value\":1.5,\"text\":\"1.50\"}]},\n"
      "  {\"path\":\"f\",\"kind\":\"call\",\"values\":[{\"type\":\"bool\",\"value\":true}]},\n"
      "  {\"path\":\"g\",\"kind\":\"plain\",\"values\":[{\"type\":\"group\"}]},\n"
      "  {\"path\":\"g/#k\",\"kind\":\"keyword\",\"values\":[]}\n"
      "]\n");
}

TEST(ListCommandTest, JsonOfNothingIsAnEmptyArray) {
  EXPECT_EQ(runTool({"list", "--json", "-"}, ""), (Result{0, "[]\n", ""}));
}

TEST(ListCommandTest, JsonAndNullExcludeEachOther) {
  EXPECT_EQ(runTool({"list", "--json", "--null", "-"}, "").status, 2);
}

TEST(ListCommandTest, WarningsTellTheirPlacesInIncludedFiles) {
  const TemporaryFolder folder;
  const std::string inner = folder.write("inner.cfg", "// note\r\n, x 1\r\n");
  const std::string middle = folder.write("middle.cfg", "#include \"" + inner + "\"\r\n");
  EXPECT_EQ(runTool({"list", "-"}, "g {\n#include \"" + middle + "\"\n}\n"),
            (Result{1, "g: group\ng/x: int 1\n",
                    "quarry: warning: " + inner +
                        ":2:1: item ',' wrongly placed. "
                        "[wrongly-placed]\n"}));
}

TEST(ListCommandTest, StandardInputHasTheNameThatIsGiven) {
  EXPECT_EQ(runTool({"list", "--stdin-filename", "x.cfg", "-"}, ", a 1").messages,
            "quarry: warning: x.cfg:1:1: item ',' wrongly placed. [wrongly-placed]\n");
}

TEST(ListCommandTest, GroupsMayNestAsDeepAsMemoryLasts) {
  std::string text;
  for (int i = 0; i < 100000; ++i)
    text += "g {\n";
  const std::string output =
      runTool({"list", "--no-limits", "-"}, text + std::string(100000, '}')).output;
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 100000);
}

TEST(ListCommandTest, AMissingFileCannotBeRead) {
  EXPECT_EQ(runTool({"list", "-q", "/nowhere.cfg"}),
            (Result{2, "", "quarry: error: Cannot read '/nowhere.cfg'.\n"}));
}

}  // namespace ToolTest
