#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "ToolProcess.h"
#include "support/Bytes.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using TestSupport::Bytes;
using TestSupport::makeBytes;
using TestSupport::makeGroup;
using TestSupport::makeItem;
using TestSupport::makeSize;
using TestSupport::makeString;
using TestSupport::makeText;
using TestSupport::operator+;
using TestSupport::TemporaryFolder;

namespace {

constexpr char HEAD[] = "#SerialVersion 1.1\n\n";

const std::string DIFFERS = "quarry: warning: The text does not read back as the same document.\n";

std::string toString(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

/// Returns a document with these item frames.
std::string makeDocument(const Bytes& items) {
  return toString(makeText("QDBF") + makeGroup(items));
}

Bytes makeTag(int type) { return makeBytes({type}); }

Bytes makeStringValue(const std::string& text) { return makeTag(5) + makeString(text); }

const Bytes ONE = makeBytes({3, 1, 0, 0, 0});

/// Expects that a document with one item "a" of these values is written as `text`.
void checkValues(const Bytes& values, const std::string& text) {
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(makeItem("a", values))),
            (Result{0, HEAD + text, ""}));
}

/// Expects that data is refused with these messages, and nothing written.
void checkRefused(const std::string& bytes, const std::string& messages) {
  EXPECT_EQ(runTool({"decode", "-"}, bytes),
            (Result{2, "",
                    messages + "quarry: error: Cannot read 'standard input': it is no whole binary "
                               "document.\n"}));
}

std::string brokenWithin(unsigned long given, unsigned long understood) {
  return "quarry: warning: The data is broken: it has " + std::to_string(given) +
         " bytes, what could be read of it takes " + std::to_string(understood) + ".\n";
}

}  // namespace

// --- Values --------------------------------------------------------------------------------------

TEST(DecodeCommandTest, BoolsAreWords) { checkValues(makeBytes({1, 1, 1, 0}), "a yes no"); }

TEST(DecodeCommandTest, IntegersAreWrittenInDigits) {
  checkValues(makeBytes("03 80070000 03 FFFFFFFF 03 00000080"), "a 1920 -1 -2147483648");
}

TEST(DecodeCommandTest, CharactersAreWrittenAsTheirCodes) {
  checkValues(makeBytes("02 41 02 FF"), "a 65 -1");
}

TEST(DecodeCommandTest, DoublesAreWrittenInDigits) {
  checkValues(makeBytes("04 000000000000F83F 04 0000000000000040 04 0000000000000080"),
              "a 1.5 2.0 -0.0");
}

TEST(DecodeCommandTest, VeryLargeAndSmallDoublesHaveExponents) {
  checkValues(makeBytes("04 9C7500883CE4377E 04 59F3F8C21F6EA501"), "a 1e+300 1e-300");
}

TEST(DecodeCommandTest, InfinitiesCarryASignAndAreNoNames) {
  checkValues(makeBytes("04 000000000000F07F 04 000000000000F0FF"), "a +inf -inf");
}

TEST(DecodeCommandTest, NotANumberCarriesASignAndIsNoName) {
  checkValues(makeBytes("04 000000000000F87F 04 000000000000F8FF"), "a +nan -nan");
}

TEST(DecodeCommandTest, StringsAreQuoted) {
  checkValues(makeStringValue("a \"b\"\n") + makeStringValue(""), "a \"a \\\"b\\\"\\n\" \"\"");
}

TEST(DecodeCommandTest, BlocksAreHexadecimal) {
  checkValues(makeTag(6) + makeSize(3) + makeBytes({1, 2, 255}) + makeTag(6) + makeSize(0),
              "a 0x0102FF02010000 0x00000000");
}

TEST(DecodeCommandTest, AnItemWithoutValuesIsEmpty) { checkValues({}, "a <empty>"); }

TEST(DecodeCommandTest, GroupsStandInBraces) {
  checkValues(makeTag(0) + makeGroup(makeItem("b", ONE)), "a {\n    b 1\n}");
}

TEST(DecodeCommandTest, AGroupMayFollowValues) {
  checkValues(ONE + makeTag(0) + makeGroup({}), "a 1 {\n}");
}

// --- Items ---------------------------------------------------------------------------------------

TEST(DecodeCommandTest, ItemsKeepTheirOrder) {
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(makeItem("b", ONE) + makeItem("a", ONE))).output,
            std::string(HEAD) + "b 1\na 1");
}

TEST(DecodeCommandTest, KeywordsKeepTheirPlace) {
  const Bytes items = makeItem("a", ONE) + makeItem("#k", ONE) + makeItem("b", ONE);
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(items)),
            (Result{0, std::string(HEAD) + "a 1\n#k 1\nb 1", ""}));
}

TEST(DecodeCommandTest, AVersionKeywordIsLeftOut) {
  const Bytes items = makeItem("#SerialVersion", makeBytes("04 9A9999999999F13F"));
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(items + makeItem("a", ONE))),
            (Result{0, std::string(HEAD) + "a 1", ""}));
}

TEST(DecodeCommandTest, AVersionKeywordWithinAGroupIsLeftOut) {
  checkValues(makeTag(0) + makeGroup(makeItem("#SerialVersion", ONE) + makeItem("b", ONE)),
              "a {\n    b 1\n}");
}

TEST(DecodeCommandTest, ANameThatNoTextCanHaveIsRefused) {
  EXPECT_EQ(
      runTool({"decode", "-"}, makeDocument(makeItem("a b", ONE))),
      (Result{2, "", "quarry: error: ParserGroup::addItem: 'a b' is not a valid item name\n"}));
}

TEST(DecodeCommandTest, AnEmptyDocumentIsItsVersionLine) {
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument({})), (Result{0, "#SerialVersion 1.1\n", ""}));
}

TEST(DecodeCommandTest, GroupsAreReadWithoutRecursion) {
  constexpr unsigned long DEPTH = 1000;
  std::string text = HEAD + std::string("g {");
  for (unsigned long i = 1; i < DEPTH; ++i)
    text += "\n" + std::string(4 * i, ' ') + "g {";
  for (unsigned long i = DEPTH; i > 0; --i)
    text += "\n" + std::string(4 * (i - 1), ' ') + "}";
  const std::string encoded = runTool({"encode", "-"}, text).output;
  EXPECT_TRUE(runTool({"decode", "-"}, encoded) == (Result{0, text, ""}));
}

// --- Texts that do not read back -----------------------------------------------------------------

TEST(DecodeCommandTest, GroupsOfMoreThan10000LevelsAreRefused) {
  std::string text;
  for (int i = 0; i < 10001; ++i)
    text += "g {\n";
  const std::string encoded =
      runTool({"encode", "--no-limits", "-"}, text + std::string(10001, '}')).output;
  checkRefused(encoded,
               "quarry: warning: File 'standard input' exceeds the limit nestingDepth (10000).\n");
}

TEST(DecodeCommandTest, AStringThatEndsInABackslashBeforeAnotherValueIsAFinding) {
  const Bytes values = makeStringValue("C:\\") + makeBytes({1, 1});
  const Result result = runTool({"decode", "-"}, makeDocument(makeItem("a", values)));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, std::string(HEAD) + "a \"C:\\\\\" yes");
  EXPECT_TRUE(result.messages.ends_with(DIFFERS)) << result.messages;
}

TEST(DecodeCommandTest, AStringWithAVersionLineInItIsAFinding) {
  const Bytes items = makeItem("a", makeStringValue("#SerialVersion 1.1"));
  const Result result = runTool({"decode", "-"}, makeDocument(items));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, std::string(HEAD) + "a \"#SerialVersion 1.1\"");
  EXPECT_TRUE(result.messages.ends_with(DIFFERS)) << result.messages;
}

TEST(DecodeCommandTest, AValueBehindAGroupIsAFinding) {
  const Bytes items = makeItem("a", makeTag(0) + makeGroup({}) + ONE);
  const Result result = runTool({"decode", "-"}, makeDocument(items));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, std::string(HEAD) + "a {\n} 1");
  EXPECT_TRUE(result.messages.ends_with(DIFFERS)) << result.messages;
}

TEST(DecodeCommandTest, AnIncludeIsAFindingAndIsNotOpened) {
  const Bytes items = makeItem("#include", makeStringValue("/nowhere.cfg"));
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(items)),
            (Result{1, std::string(HEAD) + "#include \"/nowhere.cfg\"",
                    "quarry: warning: The text holds '#include \"', which is obeyed wherever it "
                    "is read.\n"}));
}

// --- Broken data ---------------------------------------------------------------------------------

TEST(DecodeCommandTest, NoDataIsRefused) {
  checkRefused("",
               "quarry: warning: ParserFile.setBinary: data too short\n"
               "quarry: warning: ParserFile.setBinary: Unknown format\n");
}

TEST(DecodeCommandTest, ATextIsRefused) {
  checkRefused("a 1 // a text",
               "quarry: warning: ParserFile.setBinary: Unknown data tag\n"
               "quarry: warning: ParserFile.setBinary: Unknown format\n");
}

TEST(DecodeCommandTest, ADocumentThatIsCutShortIsRefused) {
  const std::string whole = makeDocument(makeItem("a", ONE));
  checkRefused(whole.substr(0, whole.size() - 1),
               "quarry: warning: ParserGroup::setBinary: ParserGroup size larger than the given "
               "data\n");
}

TEST(DecodeCommandTest, AnUnknownTypeOfValueIsRefused) {
  checkRefused(makeDocument(makeItem("a", makeTag(9))), "");
}

TEST(DecodeCommandTest, TheLibrarysPrintedMessageIsShown) {
  const Bytes item = makeString("a") + makeSize(99) + makeBytes({0});
  checkRefused(makeDocument(item),
               "quarry: warning: ParserItem::setBinary:  'a', chunk size (99) is larger than the "
               "given buffer (23)\n");
}

TEST(DecodeCommandTest, WhatIsBrokenWithinAGroupIsAFinding) {
  const Bytes inner = makeItem("b", ONE) + makeItem("c", makeTag(9));
  const std::string document = makeDocument(makeItem("a", makeTag(0) + makeGroup(inner)));
  EXPECT_EQ(runTool({"decode", "-"}, document),
            (Result{1, std::string(HEAD) + "a {\n    b 1\n}",
                    brokenWithin(document.size(), document.size() - 12)}));
}

TEST(DecodeCommandTest, DataBehindTheDocumentIsAFinding) {
  const std::string document = makeDocument(makeItem("a", ONE));
  EXPECT_EQ(
      runTool({"decode", "-"}, document + "more"),
      (Result{1, std::string(HEAD) + "a 1", brokenWithin(document.size() + 4, document.size())}));
}

TEST(DecodeCommandTest, TheKindOfAnItemIsNoFinding) {
  Bytes item = makeItem("a", ONE);
  item[2 + 8] = 1;  // behind the name and the size
  EXPECT_EQ(runTool({"decode", "-"}, makeDocument(item)),
            (Result{0, std::string(HEAD) + "a 1", ""}));
}

// --- Files ---------------------------------------------------------------------------------------

TEST(DecodeCommandTest, AFileIsReadAndWritten) {
  const TemporaryFolder folder;
  const std::string source = folder.write("a.qdb", makeDocument(makeItem("a", ONE)));
  EXPECT_EQ(runTool({"decode", source, "-o", folder.getPath("a.cfg")}), (Result{0, "", ""}));
  EXPECT_EQ(folder.read("a.cfg"), std::string(HEAD) + "a 1");
}

TEST(DecodeCommandTest, TheTargetIsLeftAloneWhenReadingFails) {
  const TemporaryFolder folder;
  const std::string target = folder.write("a.cfg", "old");
  EXPECT_EQ(runTool({"decode", "-", "-o", target}, "QDBF").status, 2);
  EXPECT_EQ(folder.read("a.cfg"), "old");
}

TEST(DecodeCommandTest, AMissingFileIsNamedWithTheReason) {
  EXPECT_EQ(
      runTool({"decode", "/nowhere.qdb"}),
      (Result{2, "", "quarry: error: Cannot read '/nowhere.qdb': No such file or directory.\n"}));
}

TEST(DecodeCommandTest, AFolderIsNoDocument) {
  const TemporaryFolder folder;
  EXPECT_EQ(
      runTool({"decode", folder.getPath()}),
      (Result{2, "", "quarry: error: Cannot read '" + folder.getPath() + "': Is a directory.\n"}));
}

TEST(DecodeCommandTest, ATargetThatCannotBeOpenedIsNamed) {
  EXPECT_EQ(runTool({"decode", "-", "-o", "/nowhere/a.cfg"}, makeDocument({})),
            (Result{2, "",
                    "quarry: error: Cannot save '/nowhere/a.cfg': cannot open the folder of "
                    "'/nowhere/a.cfg': "
                    "No such file or directory.\n"}));
}

TEST(DecodeCommandTest, ATerminalGetsAnEscapedText) {
  const std::string document = makeDocument(makeItem("a", makeStringValue("\033[2J")));
  EXPECT_EQ(runOnTerminal({"decode", "-"}, document).output, std::string(HEAD) + "a \"\\x1B[2J\"");
}

// --- There and back ------------------------------------------------------------------------------

namespace {

namespace fs = std::filesystem;

const fs::path GOLDEN = fs::path(TEST_DATA_DIR) / "golden";
const fs::path EXAMPLES = fs::path(TEST_DATA_DIR).parent_path().parent_path() / "examples/project";

/// Returns the golden documents and those of the examples, by names for the tests.
std::map<std::string, std::string> findDocuments() {
  std::map<std::string, std::string> documents;
  for (const fs::path& folder : {GOLDEN, EXAMPLES}) {
    const std::string prefix = folder == GOLDEN ? "golden_" : "example_";
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      if (entry.path().extension() == ".cfg") {
        documents[prefix + entry.path().stem().string()] = entry.path().string();
      }
    }
  }
  return documents;
}

using NamedDocument = std::pair<const std::string, std::string>;

class ThereAndBackTest : public testing::TestWithParam<NamedDocument> {
 protected:
  const std::string encoded =
      runTool({"encode", "-I", EXAMPLES.string(), GetParam().second}).output;
  const Result decoded = runTool({"decode", "-"}, encoded);
};

std::string nameOf(const testing::TestParamInfo<NamedDocument>& info) { return info.param.first; }

}  // namespace

TEST_P(ThereAndBackTest, DecodingSucceeds) {
  EXPECT_EQ(decoded.messages, "");
  EXPECT_EQ(decoded.status, 0);
}

TEST_P(ThereAndBackTest, TheTextEncodesToTheSameBytes) {
  EXPECT_EQ(runTool({"encode", "-"}, decoded.output), (Result{0, encoded, ""}));
}

TEST_P(ThereAndBackTest, TheTextIsAsTheLibraryWritesIt) {
  EXPECT_EQ(runTool({"rewrite", "-"}, decoded.output), (Result{0, decoded.output, ""}));
}

INSTANTIATE_TEST_SUITE_P(Documents, ThereAndBackTest, testing::ValuesIn(findDocuments()), nameOf);

TEST(ThereAndBackStoryTest, TheDocumentsAreFound) { EXPECT_GE(findDocuments().size(), 14U); }

TEST(ThereAndBackStoryTest, AGroupComesBackAsItWas) {
  const std::string text = std::string(HEAD) +
                           "camera \"main\" {\n"
                           "    position -1 2.5 yes\n"
                           "    #k <empty>\n"
                           "}\n"
                           "mask 0x0102FF02010000";
  const std::string encoded = runTool({"encode", "-"}, text).output;
  EXPECT_EQ(runTool({"decode", "-"}, encoded), (Result{0, text, ""}));
}

TEST(ThereAndBackStoryTest, ACallComesBackAsAPlainItem) {
  const std::string encoded = runTool({"encode", "-"}, "blur(4, yes)").output;
  EXPECT_EQ(runTool({"decode", "-"}, encoded).output, std::string(HEAD) + "blur 4 yes");
}

TEST(ThereAndBackStoryTest, TheSpellingOfNumbersIsLost) {
  const std::string encoded = runTool({"encode", "-"}, "a 1.50 1e3 +7 12px").output;
  EXPECT_EQ(runTool({"decode", "-"}, encoded).output, std::string(HEAD) + "a 1.5 1000.0 7 12");
}

}  // namespace ToolTest
