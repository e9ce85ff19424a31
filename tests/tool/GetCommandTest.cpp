#include <gtest/gtest.h>

#include "ToolProcess.h"

namespace ToolTest {

using namespace std::string_literals;

namespace {

constexpr char SHOW[] =
    "#SerialVersion 1.1\n"
    "title \"Harbor \\\"old\\\"\\n\"\n"
    "size 1920 1.50\n"
    "note <empty>\n"
    "camera { fov 39.6 }\n"
    "data 0x0102FF02010000\n";

void checkShown(Arguments arguments, const std::string& expected) {
  arguments.insert(arguments.begin(), "get");
  arguments.insert(arguments.begin() + 1, "-");
  EXPECT_EQ(runTool(arguments, SHOW), (Result{0, expected, ""}));
}

}  // namespace

TEST(GetCommandTest, ValuesStandOnALineAsTheyAreSpelled) {
  checkShown({"size"}, "1920 1.50\n");
  checkShown({"title"}, "\"Harbor \\\"old\\\"\\n\"\n");
}

TEST(GetCommandTest, OneValueIsNamedByItsNumber) { checkShown({"size#2"}, "1.50\n"); }

TEST(GetCommandTest, AnItemOfAGroupIsNamedByItsPath) { checkShown({"camera/fov"}, "39.6\n"); }

TEST(GetCommandTest, RawValuesHaveNoQuotesAndEscapes) {
  checkShown({"--raw", "title"}, "Harbor \"old\"\n\n");
  checkShown({"--raw", "size"}, "1920\n1.50\n");
}

TEST(GetCommandTest, RawBinaryDataAreItsBytes) { checkShown({"--raw", "data"}, "\1\2\xFF\n"); }

TEST(GetCommandTest, ValuesCanEndInAZeroByte) {
  checkShown({"--null", "size"}, "1920\0"s + "1.50\0"s);
}

TEST(GetCommandTest, ValuesAreAnArrayInJsonAndOneValueIsItself) {
  checkShown({"--json", "size"}, "[1920,1.5]\n");
  checkShown({"--json", "size#1"}, "1920\n");
  checkShown({"--json", "title#1"}, "\"Harbor \\\"old\\\"\\n\"\n");
  checkShown({"--json", "note"}, "[]\n");
}

TEST(GetCommandTest, AnEmptyItemShowsNothingAndIsThere) { checkShown({"note"}, ""); }

TEST(GetCommandTest, AMissingItemIsNoMatch) {
  EXPECT_EQ(runTool({"get", "-", "camera/near"}, SHOW),
            (Result{1, "", "quarry: warning: No such item: there is no 'near' in 'camera'.\n"}));
  EXPECT_EQ(runTool({"get", "-q", "-", "camera/near"}, SHOW), (Result{1, "", ""}));
}

TEST(GetCommandTest, AMissingValueIsNoMatch) {
  EXPECT_EQ(runTool({"get", "-q", "-", "size#3"}, SHOW).status, 1);
}

TEST(GetCommandTest, ADefaultStandsForAMissingItemAndNotForAnEmptyOne) {
  checkShown({"--default", "25", "rate"}, "25\n");
  checkShown({"--default", "25", "note"}, "");
  checkShown({"--default", "25", "size#1"}, "1920\n");
}

TEST(GetCommandTest, AGroupHasNoValues) {
  EXPECT_EQ(runTool({"get", "-", "camera"}, SHOW),
            (Result{2, "", "quarry: error: 'camera' is a group; quarry list shows its items.\n"}));
}

TEST(GetCommandTest, OneWayOfShowingIsChosen) {
  EXPECT_EQ(runTool({"get", "--raw", "--json", "-", "size"}, SHOW).status, 2);
}

TEST(GetCommandTest, AnUnreadableDocumentIsToldWithTheReason) {
  EXPECT_EQ(runTool({"get", "--stdin-filename", "show.cfg", "-", "a"}, "#include \"gone.cfg\""),
            (Result{2, "",
                    "quarry: error: show.cfg:1:1: File 'gone.cfg' not found. [file-not-found]\n"}));
}

}  // namespace ToolTest
