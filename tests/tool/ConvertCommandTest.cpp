#include <gtest/gtest.h>

#include <filesystem>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::TemporaryFolder;

namespace {

constexpr char HEAD[] = "#SerialVersion 1.1\n\n";
const std::string DIFFERS = "quarry: warning: The text does not read back as the same document.\n";
constexpr char ONE[] =
    "[\n  {\"name\":\"a\",\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":1}]}\n]\n";

std::string encode(const std::string& text) { return runTool({"encode", "-"}, text).output; }

/// Returns a JSON document with an item "a" of these values.
std::string makeJson(const std::string& values) {
  return R"([{"name":"a","values":[)" + values + "]}]";
}

std::string makeNestedText(unsigned long depth) {
  std::string text;
  for (unsigned long i = 0; i < depth; ++i)
    text += "g {\n";
  return text + std::string(depth, '}');
}

}  // namespace

// --- Which form is which -------------------------------------------------------------------------

TEST(ConvertCommandTest, ATextBecomesJson) {
  EXPECT_EQ(runTool({"convert", "-"}, "a 1 // one"), (Result{0, ONE, ""}));
}

TEST(ConvertCommandTest, JsonBecomesAText) {
  EXPECT_EQ(runTool({"convert", "-"}, ONE), (Result{0, HEAD + std::string("a 1"), ""}));
}

TEST(ConvertCommandTest, BinaryDataBecomesAText) {
  EXPECT_EQ(runTool({"convert", "-"}, encode("a 1")), (Result{0, HEAD + std::string("a 1"), ""}));
}

TEST(ConvertCommandTest, AnObjectBecomesAText) {
  EXPECT_EQ(runTool({"convert", "-"}, "\n {\"a\": [1, 2.50]}"),
            (Result{0, HEAD + std::string("a 1 2.50"), ""}));
}

TEST(ConvertCommandTest, AByteOrderMarkBeforeJsonIsPassedOver) {
  EXPECT_EQ(runTool({"convert", "-"}, "\xEF\xBB\xBF{\"a\": 1}"),
            (Result{0, HEAD + std::string("a 1"), ""}));
}

TEST(ConvertCommandTest, ATextCanBeAskedForInTheLibrarysLayout) {
  EXPECT_EQ(runTool({"convert", "--to", "text", "-"}, "g{a = 1.50}"),
            (Result{0, HEAD + std::string("g {\n    a 1.50\n}"), ""}));
}

TEST(ConvertCommandTest, BinaryDataIsWhatEncodeMakes) {
  EXPECT_EQ(runTool({"convert", "--to=binary", "-"}, "g { a 1.50 }"),
            (Result{0, encode("g { a 1.50 }"), ""}));
}

TEST(ConvertCommandTest, AnObjectIsPlainJson) {
  EXPECT_EQ(runTool({"convert", "--to=object", "-"}, "title \"Harbor\" size 1920 1080"),
            (Result{0, "{\n  \"title\": \"Harbor\",\n  \"size\": [1920, 1080]\n}\n", ""}));
}

TEST(ConvertCommandTest, TheFormCanBeTold) {
  EXPECT_EQ(runTool({"convert", "--from=text", "--to=text", "-"}, "[1]\na 1").messages,
            "quarry: warning: standard input:1:1: Unknown word type: '[1]' [unknown-word]\n");
}

TEST(ConvertCommandTest, ADocumentInASearchPathIsAText) {
  const TemporaryFolder folder;
  folder.write("convert-test.cfg", "a 1");
  EXPECT_EQ(runTool({"convert", "-I", folder.getPath(), "convert-test.cfg"}), (Result{0, ONE, ""}));
}

TEST(ConvertCommandTest, ACompressedTextIsUnpacked) {
  const TemporaryFolder folder;
  EXPECT_EQ(runTool({"convert", folder.writeCompressed("a.gz", "a 1$\n")}), (Result{0, ONE, ""}));
}

TEST(ConvertCommandTest, ACompressedTextOnStandardInputIsUnpacked) {
  EXPECT_EQ(runTool({"convert", "-"}, runTool({"pack", "-"}, "a 1\n").output),
            (Result{0, ONE, ""}));
}

// --- Texts that do not read back -----------------------------------------------------------------

TEST(ConvertCommandTest, AStringThatEndsInABackslashBeforeAnotherValueIsAFinding) {
  const std::string json = makeJson(R"({"type":"string","value":"x\\"},{"type":"int","value":1})");
  EXPECT_EQ(runTool({"convert", "-"}, json),
            (Result{1, HEAD + std::string("a \"x\\\\\" 1"), DIFFERS}));
}

TEST(ConvertCommandTest, AnIncludeIsAFindingAndIsNotOpened) {
  const std::string json =
      makeJson(R"({"type":"string","value":"#include "},{"type":"string","value":"x"})");
  EXPECT_EQ(runTool({"convert", "-"}, json),
            (Result{1, HEAD + std::string("a \"#include \" \"x\""),
                    "quarry: warning: The text holds '#include \"', which is obeyed wherever it is "
                    "read.\n"}));
}

TEST(ConvertCommandTest, AnEscapedQuoteMakesNoInclude) {
  EXPECT_EQ(runTool({"convert", "-"}, makeJson(R"({"type":"string","value":"#include \"x\""})")),
            (Result{0, HEAD + std::string("a \"#include \\\"x\\\"\""), ""}));
}

TEST(ConvertCommandTest, ACharacterIsAFindingInAText) {
  EXPECT_EQ(runTool({"convert", "-"}, makeJson(R"({"type":"char","value":65})")),
            (Result{1, HEAD + std::string("a 65"), DIFFERS}));
}

TEST(ConvertCommandTest, NumbersWithoutATextAreWrittenInDigits) {
  EXPECT_EQ(runTool({"convert", "-"}, makeJson(R"({"type":"int","value":65,"text":null})")),
            (Result{0, HEAD + std::string("a 65"), ""}));
}

TEST(ConvertCommandTest, InfinitiesReadBack) {
  EXPECT_EQ(runTool({"convert", "-"}, makeJson(R"({"type":"double","value":"inf"})")),
            (Result{0, HEAD + std::string("a +inf"), ""}));
}

TEST(ConvertCommandTest, AVersionKeywordIsLeftOutOfAText) {
  EXPECT_EQ(runTool({"convert", "-"}, R"({"#SerialVersion":2,"a":1})"),
            (Result{1, HEAD + std::string("a 1"),
                    "quarry: warning: Items '#SerialVersion' are left out: the text declares its "
                    "own version.\n"}));
}

TEST(ConvertCommandTest, AVersionKeywordStaysInBinaryData) {
  const std::string json = R"({"#SerialVersion":2,"a":1})";
  const std::string data = runTool({"convert", "--to=binary", "-"}, json).output;
  EXPECT_NE(data.find("#SerialVersion"), std::string::npos);
}

TEST(ConvertCommandTest, AZeroByteIsAFindingInBinaryData) {
  const Result result =
      runTool({"convert", "--to=binary", "-"}, makeJson(R"({"type":"string","value":"a\u0000b"})"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "quarry: warning: The data does not read back as the same document: a name or string "
            "has a zero byte.\n");
}

// --- What is refused -----------------------------------------------------------------------------

TEST(ConvertCommandTest, BrokenJsonIsRefused) {
  EXPECT_EQ(runTool({"convert", "-"}, "{\"a\":}"),
            (Result{2, "",
                    "quarry: error: Cannot read 'standard input': it is no JSON: parse error at "
                    "line 1, column 6: syntax error while parsing value - unexpected '}'; expected "
                    "'[', '{', or a literal.\n"}));
}

TEST(ConvertCommandTest, WhatHasNoCounterpartIsRefusedWithItsPlace) {
  EXPECT_EQ(runTool({"convert", "-"}, R"({"a":[1,null]})"),
            (Result{2, "",
                    "quarry: error: Cannot read 'standard input': at /a/1: null stands among "
                    "values.\n"}));
}

TEST(ConvertCommandTest, WhatThePlainFormCannotTellIsRefusedWithItsPath) {
  EXPECT_EQ(runTool({"convert", "--to=object", "-"}, "g { a 1 a 2 }"),
            (Result{2, "",
                    "quarry: error: Cannot convert 'standard input': 'g/a' has the name of another "
                    "item of its group, which the plain form cannot tell apart; --to json keeps "
                    "everything.\n"}));
}

TEST(ConvertCommandTest, BrokenBinaryDataIsRefused) {
  const Result result = runTool({"convert", "-q", "--from=binary", "-"}, "QDBF");
  EXPECT_EQ(result.status, 2);
}

TEST(ConvertCommandTest, AMissingFileCannotBeRead) {
  EXPECT_EQ(
      runTool({"convert", "/nowhere.cfg"}),
      (Result{2, "", "quarry: error: Cannot read '/nowhere.cfg': No such file or directory.\n"}));
}

TEST(ConvertCommandTest, ACharacterHasNoPlainForm) {
  const std::string json = makeJson(R"({"type":"char","value":65})");
  const std::string data = runTool({"convert", "--to=binary", "-"}, json).output;
  EXPECT_EQ(
      runTool({"convert", "--to=object", "-"}, data),
      (Result{2, "",
              "quarry: error: Cannot convert 'standard input': 'a' has a value of a type that "
              "the plain form does not have; --to json keeps everything.\n"}));
}

TEST(ConvertCommandTest, AKeywordFromBinaryDataHasAPlainForm) {
  EXPECT_EQ(runTool({"convert", "--to=object", "-"}, encode("#k 1")),
            (Result{0, "{\n  \"#k\": 1\n}\n", ""}));
}

TEST(ConvertCommandTest, AnUnknownFormIsRefused) {
  EXPECT_EQ(runTool({"convert", "--to=xml", "-"}).status, 2);
}

TEST(ConvertCommandTest, ATerminalGetsNoBinaryData) {
  EXPECT_EQ(runOnTerminal({"convert", "--to=binary", "-"}, "a 1"),
            (Result{2, "",
                    "quarry: error: Binary data is not written to a terminal; name a file with "
                    "-o.\n"}));
}

// --- Depth and files -----------------------------------------------------------------------------

TEST(ConvertCommandTest, GroupsOf10000LevelsComeBack) {
  const std::string text = makeNestedText(10000);
  const std::string json = runTool({"convert", "-"}, text).output;
  EXPECT_TRUE(runTool({"convert", "--to=json", "-"}, json) == (Result{0, json, ""}));
  EXPECT_TRUE(runTool({"convert", "--to=binary", "-"}, json) == (Result{0, encode(text), ""}));
}

TEST(ConvertCommandTest, JsonOfMoreThan10000LevelsIsRefused) {
  const std::string json = runTool({"convert", "--no-limits", "-"}, makeNestedText(10001)).output;
  const Result result = runTool({"convert", "--to=json", "-"}, json);
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(result.messages.ends_with("groups are nested too deeply.\n"));
}

TEST(ConvertCommandTest, JsonOfAnyDepthIsReadWithoutLimits) {
  const std::string json = runTool({"convert", "--no-limits", "-"}, makeNestedText(50000)).output;
  EXPECT_TRUE(runTool({"convert", "--no-limits", "--to=json", "-"}, json) == (Result{0, json, ""}));
}

TEST(ConvertCommandTest, AFileIsReplacedBehindALink) {
  const TemporaryFolder folder;
  folder.write("a.json", "old");
  std::filesystem::create_symlink("a.json", folder.getPath("link"));
  EXPECT_EQ(runTool({"convert", "-", "-o", folder.getPath("link")}, "a 1"), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.json"), ONE);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.getPath("link")));
}

TEST(ConvertCommandTest, TheTargetIsLeftAloneWhenReadingFails) {
  const TemporaryFolder folder;
  const std::string target = folder.write("a.cfg", "old");
  EXPECT_EQ(runTool({"convert", "-", "-o", target}, "{").status, 2);
  EXPECT_EQ(folder.read("a.cfg"), "old");
}

TEST(ConvertCommandTest, AFullDiskIsNoticed) {
  EXPECT_EQ(runTool({"convert", "-", "-o", "/dev/full"}, "a 1"),
            (Result{2, "", "quarry: error: Cannot write '/dev/full': No space left on device.\n"}));
}

}  // namespace ToolTest
