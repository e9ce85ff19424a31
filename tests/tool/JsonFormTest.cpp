#include <gtest/gtest.h>

#include <Quarry/ParserFile.h>
#include <quarry/JsonObjectWriter.h>
#include <quarry/JsonReader.h>
#include <quarry/JsonWriter.h>

#include "JsonTrees.h"
#include "support/Documents.h"
#include "support/Environment.h"
#include "support/RecordingConsole.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace ToolTest {

using Quarry::ParserFile;
using Quarry::ParserGroup;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeOneLine;
using Tool::JsonFault;
using Tool::readJson;
using Tool::TreeOrigin;
using Tool::TreeUse;
using Tool::writeJson;
using Tool::writeJsonObject;

namespace fs = std::filesystem;

namespace {

std::unique_ptr<ParserGroup> read(const std::string& json, TreeUse use = TreeUse::ANY) {
  auto root = std::make_unique<ParserGroup>("root");
  readJson(json, *root, {use, Quarry::ParserLimits::UNLIMITED});
  return root;
}

/// Returns the items of an array, without line breaks and blanks before them.
std::string writeCompact(const ParserGroup& root) {
  std::string compact;
  const std::string json = writeJson(root, TreeOrigin::TEXT);
  for (std::size_t i = 0; i < json.size(); ++i) {
    if (json[i] != '\n') {
      compact += json[i];
    } else {
      while (i + 1 < json.size() && json[i + 1] == ' ')
        ++i;
    }
  }
  return compact.substr(1, compact.size() - 2);
}

/// Returns what is wrong with a JSON text.
std::string getFault(const std::string& json) {
  try {
    read(json);
  } catch (const JsonFault& fault) {
    return fault.what();
  }
  return std::string();
}

/// Returns why a document has no plain form.
std::string getObjectFault(const ParserGroup& root) {
  try {
    writeJsonObject(root);
  } catch (const JsonFault& fault) {
    return fault.what();
  }
  return std::string();
}

const std::string KEEPS = "; --to json keeps everything";

/// Expects that the first value of `a`, read from a text, is this JSON.
void checkValue(const std::string& text, const std::string& value) {
  const std::string expected = R"({"name":"a","kind":"plain","values":[)" + value + "]}";
  EXPECT_EQ(writeCompact(*readText("a " + text)), expected);
  EXPECT_EQ(writeOneLine(*read("[" + expected + "]")), " a " + text);
}

/// Expects that an item "a" with this value is read from JSON and written as `text`.
void checkRead(const std::string& value, const std::string& text) {
  const std::string item = R"([{"name":"a","kind":"plain","values":[)" + value + "]}]";
  EXPECT_EQ(writeOneLine(*read(item)), " a " + text);
}

void checkObject(const std::string& json, const std::string& text) {
  EXPECT_EQ(writeOneLine(*read(json)), text);
}

std::string toString(const std::vector<char>& bytes) { return {bytes.begin(), bytes.end()}; }

std::unique_ptr<ParserGroup> decode(const ParserGroup& group) {
  auto root = std::make_unique<ParserGroup>("root");
  unsigned long position = 0;
  root->setBinary(group.getBinary(false), position);
  return root;
}

/// Writing a text gives numbers without one a text, so that the JSON has to be made before.
void checkTree(const ParserGroup& root) {
  const std::string json = writeJson(root, TreeOrigin::TEXT);
  const auto copy = read(json);
  ASSERT_EQ(writeJson(*copy, TreeOrigin::TEXT), json);
  ASSERT_EQ(toString(copy->getBinary(false)), toString(root.getBinary(false))) << json;
  ASSERT_EQ(TestSupport::writeLines(*copy), TestSupport::writeLines(root)) << json;
}

/// Expects that a tree which came from binary data keeps that.
void checkData(const ParserGroup& root) {
  const auto decoded = decode(root);
  const std::string json = writeJson(*decoded, TreeOrigin::BINARY);
  ASSERT_EQ(toString(read(json)->getBinary(false)), toString(decoded->getBinary(false))) << json;
}

/// Expects that the plain form of a tree keeps its data.
void checkObjectForm(const ParserGroup& root) {
  const std::string json = writeJsonObject(root);
  EXPECT_TRUE(read(json)->getBinary(false) == root.getBinary(false));
  EXPECT_TRUE(writeJsonObject(*read(json)) == json);
}

unsigned long getTreeCount() { return TestSupport::getCount("QUARRY_JSON_TREES", 2000); }

/// Returns the documents of the tests, and of a folder that the environment names.
std::set<fs::path> findFiles(const std::string& extension) {
  std::set<fs::path> files;
  std::vector<fs::path> folders = {TEST_DATA_DIR};
  if (const char* folder = std::getenv("QUARRY_DOCUMENTS")) folders.emplace_back(folder);
  for (const fs::path& folder : folders) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
      if (entry.path().extension() == extension) files.insert(entry.path());
    }
  }
  return files;
}

std::string readBytes(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

// --- Items ---------------------------------------------------------------------------------------

TEST(JsonFormTest, AnEmptyDocumentIsAnEmptyArray) {
  EXPECT_EQ(writeJson(ParserGroup("root"), TreeOrigin::TEXT), "[]\n");
  EXPECT_EQ(read("[]")->getItemCount(), 0U);
}

TEST(JsonFormTest, AnItemIsALine) {
  EXPECT_EQ(
      writeJson(*readText("a 1 b yes"), TreeOrigin::TEXT),
      "[\n"
      "  {\"name\":\"a\",\"kind\":\"plain\",\"values\":[{\"type\":\"int\",\"value\":1}]},\n"
      "  {\"name\":\"b\",\"kind\":\"plain\",\"values\":[{\"type\":\"bool\",\"value\":true}]}\n"
      "]\n");
}

TEST(JsonFormTest, TheItemsOfAGroupAreIndented) {
  EXPECT_EQ(writeJson(*readText("g { a <empty> }"), TreeOrigin::TEXT),
            "[\n"
            "  {\"name\":\"g\",\"kind\":\"plain\",\"values\":[{\"type\":\"group\",\"items\":[\n"
            "    {\"name\":\"a\",\"kind\":\"plain\",\"values\":[]}\n"
            "  ]}]}\n"
            "]\n");
}

TEST(JsonFormTest, EveryKindIsTold) {
  const std::string json =
      R"({"name":"a","kind":"plain","values":[]},{"name":"#b","kind":"keyword","values":[]},)"
      R"({"name":"c","kind":"call","values":[]})";
  EXPECT_EQ(writeCompact(*readText("a <empty> #b <empty> c()")), json);
  EXPECT_EQ(writeOneLine(*read("[" + json + "]")), " a <empty> #b <empty> c()");
}

TEST(JsonFormTest, MembersMayComeInAnyOrder) {
  EXPECT_EQ(writeOneLine(*read(R"([{"values":[{"items":[],"type":"group"},)"
                               R"({"value":1,"type":"int"}],"kind":"call","name":"a"}])")),
            " a({ }, 1)");
}

TEST(JsonFormTest, WithoutAKindTheNameTells) {
  EXPECT_EQ(
      writeCompact(*read(R"([{"name":"#a"},{"name":"a"}])")),
      R"({"name":"#a","kind":"keyword","values":[]},{"name":"a","kind":"plain","values":[]})");
}

TEST(JsonFormTest, ANameThatIsNoUtf8IsBase64) {
  ParserGroup root("root");
  root.addItem(*new Quarry::ParserItem("a\xFF", Quarry::ParserItem::ITEM_PLAIN, 0, 0));
  EXPECT_EQ(writeCompact(root), R"({"name":{"base64":"Yf8="},"kind":"plain","values":[]})");
  EXPECT_EQ(writeOneLine(*read("[" + writeCompact(root) + "]")), " a\xFF <empty>");
}

TEST(JsonFormTest, TemplateArrayAndFoldingAreKept) {
  ParserGroup root("root");
  root.addGroup("a", true);
  Quarry::ParserItem* item = root.getItem("a");
  item->setArray(true, 3);
  item->setTemplate("T");
  EXPECT_EQ(writeCompact(root),
            R"({"name":"a","kind":"plain","template":"T","array":3,"folded":true,)"
            R"("values":[{"type":"group","items":[]}]})");
  EXPECT_EQ(writeOneLine(*read("[" + writeCompact(root) + "]")), writeOneLine(root));
}

TEST(JsonFormTest, TheNameOfAGroupIsKept) {
  ParserGroup root("root");
  root.addItem("a", 0, 0)->addGroup(new ParserGroup("inner"));
  EXPECT_EQ(writeCompact(root),
            R"({"name":"a","kind":"plain","values":[{"type":"group","name":"inner","items":[]}]})");
  EXPECT_EQ(writeOneLine(*read("[" + writeCompact(root) + "]")), " a inner { }");
}

TEST(JsonFormTest, KeywordsFromBinaryDataAreToldByTheirNames) {
  EXPECT_EQ(writeJson(*decode(*readText("#k <empty>")), TreeOrigin::BINARY),
            "[\n  {\"name\":\"#k\",\"kind\":\"keyword\",\"values\":[]}\n]\n");
}

// --- Values --------------------------------------------------------------------------------------

TEST(JsonFormTest, ABoolIsABool) { checkValue("no", R"({"type":"bool","value":false})"); }

TEST(JsonFormTest, AnIntIsANumber) { checkValue("-12", R"({"type":"int","value":-12})"); }

TEST(JsonFormTest, ADoubleIsANumber) { checkValue("-0.0", R"({"type":"double","value":-0.0})"); }

TEST(JsonFormTest, TheSpellingOfADoubleIsKept) {
  checkValue("1.50", R"({"type":"double","value":1.5,"text":"1.50"})");
}

TEST(JsonFormTest, TheSpellingOfAnIntIsKept) {
  checkValue("12px", R"({"type":"int","value":12,"text":"12px"})");
}

TEST(JsonFormTest, InfinitiesAreStrings) {
  checkValue("+inf -inf", R"({"type":"double","value":"inf"},{"type":"double","value":"-inf"})");
}

TEST(JsonFormTest, NotANumberIsAString) {
  checkValue("+nan -nan", R"({"type":"double","value":"nan"},{"type":"double","value":"-nan"})");
}

TEST(JsonFormTest, OtherNotANumbersAreBits) {
  checkRead(R"({"type":"double","value":{"bits":"3FF8000000000000"}})", "1.5");
  const std::string json =
      R"({"name":"a","kind":"plain","values":[{"type":"double","value":{"bits":"7FF8000000000001"},)"
      R"("text":null}]})";
  EXPECT_EQ(writeCompact(*read("[" + json + "]")), json);
}

TEST(JsonFormTest, AStringIsAString) {
  checkValue(R"("a\"\\b\n\t\r")", R"({"type":"string","value":"a\"\\b\n\t\r"})");
}

TEST(JsonFormTest, ControlBytesInAStringAreEscaped) {
  checkValue("\"a\x01\x7F\"", R"({"type":"string","value":"a\u0001\u007f"})");
}

TEST(JsonFormTest, AStringOfUtf8StandsAsItIs) {
  checkValue("\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"",
             "{\"type\":\"string\",\"value\":\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"}");
}

TEST(JsonFormTest, AStringThatIsNoUtf8IsBase64) {
  checkValue("\"\xFF\xFE\"", R"({"type":"string","value":{"base64":"//4="}})");
}

TEST(JsonFormTest, ASurrogateIsNoUtf8) {
  checkValue("\"\xED\xA0\x80\"", R"({"type":"string","value":{"base64":"7aCA"}})");
}

TEST(JsonFormTest, AnOverlongCharacterIsNoUtf8) {
  checkValue("\"\xC0\x80\"", R"({"type":"string","value":{"base64":"wIA="}})");
}

TEST(JsonFormTest, BinaryDataIsBase64) {
  checkValue("0x0102FF02010000", R"({"type":"binary","value":{"base64":"AQL/"}})");
}

TEST(JsonFormTest, EmptyBinaryDataIsEmptyBase64) {
  checkValue("0x00000000", R"({"type":"binary","value":{"base64":""}})");
}

TEST(JsonFormTest, ACharacterIsItsCode) {
  ParserGroup root("root");
  root.addItem("a", 0, 0)->addChar('A');
  EXPECT_EQ(writeCompact(root),
            R"({"name":"a","kind":"plain","values":[{"type":"char","value":65}]})");
  EXPECT_TRUE(read("[" + writeCompact(root) + "]")->getItem("a")->isValueChar(0));
}

TEST(JsonFormTest, ANumberWithoutATextHasNull) {
  ParserGroup root("root");
  root.addItem("a", 0, 0)->addInt(1);
  root.getItem("a")->setInt(65, 0);
  const std::string json =
      R"({"name":"a","kind":"plain","values":[{"type":"int","value":65,"text":null}]})";
  EXPECT_EQ(writeCompact(root), json);
  EXPECT_EQ(writeOneLine(*read("[" + json + "]")), " a A");
}

TEST(JsonFormTest, ForATextEveryNumberGetsOne) {
  const std::string json = R"([{"name":"a","values":[{"type":"int","value":65,"text":null},)"
                           R"({"type":"double","value":{"bits":"7FF8000000000001"}}]}])";
  EXPECT_EQ(writeOneLine(*read(json, TreeUse::TEXT)), " a 65 +nan");
}

TEST(JsonFormTest, NumbersFromBinaryDataAreSpelled) {
  EXPECT_EQ(writeJson(*decode(*readText("a 1.50")), TreeOrigin::BINARY),
            "[\n  {\"name\":\"a\",\"kind\":\"plain\",\"values\":"
            "[{\"type\":\"double\",\"value\":1.5}]}\n]\n");
}

TEST(JsonFormTest, ATextThatIsNotOfTheValueIsDropped) {
  checkRead(R"({"type":"double","value":2.5,"text":"1.50"})", "2.5");
}

TEST(JsonFormTest, ATextMayStandAlone) { checkRead(R"({"type":"double","text":"1.50"})", "1.50"); }

TEST(JsonFormTest, AWholeNumberMayStandForADouble) {
  checkRead(R"({"type":"double","value":2})", "2.0");
}

TEST(JsonFormTest, AWholeDoubleMayStandForAnInt) {
  checkRead(R"({"type":"int","value":2.0})", "2");
}

// --- What is refused -----------------------------------------------------------------------------

TEST(JsonFormTest, BrokenJsonIsRefusedWithItsPlace) {
  EXPECT_EQ(getFault("[\n{\"name\" 1}]"),
            "it is no JSON: parse error at line 2, column 9: syntax error while parsing object "
            "separator - unexpected number literal; expected ':'");
}

TEST(JsonFormTest, AScalarIsRefused) {
  EXPECT_EQ(getFault("1"), "it is neither an array nor an object");
}

TEST(JsonFormTest, AnUnknownMemberIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","sort":1}])"),
            "at /0/sort: the form has no member of this name");
}

TEST(JsonFormTest, AMemberThatComesTwiceIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","name":"b"}])"),
            "at /0/name: there are two members of this name");
}

TEST(JsonFormTest, AnItemWithoutANameIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a"},{"values":[]}])"), "at /1: an item has no name");
}

TEST(JsonFormTest, AnUnknownKindIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","kind":"b"}])"), "at /0: there is no kind 'b'");
}

TEST(JsonFormTest, AnUnknownTypeIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","values":[{"type":"float","value":1}]}])"),
            "at /0: value 1: there is no type 'float'");
}

TEST(JsonFormTest, AnIntThatIsTooLargeIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","values":[{"type":"int","value":2147483648}]}])"),
            "at /0: value 1: the value is no whole number from -2147483648 to 2147483647");
}

TEST(JsonFormTest, AValueWithoutOneIsRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","values":[{"type":"int"}]}])"),
            "at /0: value 1: there is no value");
}

TEST(JsonFormTest, BrokenBase64IsRefused) {
  EXPECT_EQ(getFault(R"([{"name":{"base64":"Yf8"}}])"), "at /0/name/base64: this is no base64");
}

TEST(JsonFormTest, ItemsOfAValueThatIsNoGroupAreRefused) {
  EXPECT_EQ(getFault(R"([{"name":"a","values":[{"type":"int","value":1,"items":[]}]}])"),
            "at /0: value 1: only a group has items and a name");
}

TEST(JsonFormTest, GroupsBelowTheLimitAreRefused) {
  const std::string json =
      R"([{"name":"a","values":[{"type":"group","items":[{"name":"b","values":[{"type":"group",)"
      R"("items":[]}]}]}]}])";
  ParserGroup root("root");
  EXPECT_NO_THROW(readJson(json, root, {TreeUse::ANY, 2}));
  EXPECT_THROW(readJson(json, root, {TreeUse::ANY, 1}), JsonFault);
}

// --- Plain objects -------------------------------------------------------------------------------

TEST(JsonObjectTest, AnItemIsAMember) {
  EXPECT_EQ(writeJsonObject(*readText("title \"Harbor\" size 1920 1080 g { a <empty> } h {\n}")),
            "{\n"
            "  \"title\": \"Harbor\",\n"
            "  \"size\": [1920, 1080],\n"
            "  \"g\": {\n"
            "    \"a\": null\n"
            "  },\n"
            "  \"h\": {}\n"
            "}\n");
}

TEST(JsonObjectTest, AnEmptyDocumentIsAnEmptyObject) {
  EXPECT_EQ(writeJsonObject(ParserGroup("root")), "{}\n");
}

TEST(JsonObjectTest, TheSpellingOfADoubleStaysWhereJsonHasIt) {
  EXPECT_EQ(writeJsonObject(*readText("a 1.50 .5 1.5px 1e3 1. 01.5")),
            "{\n  \"a\": [1.50, 0.5, 1.5, 1e3, 1.0, 1.5]\n}\n");
}

TEST(JsonObjectTest, ACallHasParentheses) {
  EXPECT_EQ(writeJsonObject(*readText("f(1, yes) f 2")),
            "{\n  \"f()\": [1, true],\n  \"f\": 2\n}\n");
}

TEST(JsonObjectTest, AGroupMayFollowValues) {
  EXPECT_EQ(writeJsonObject(*readText("a \"x\" { b 1 }")),
            "{\n  \"a\": [\"x\", {\n    \"b\": 1\n  }]\n}\n");
}

TEST(JsonObjectTest, ARepeatedNameIsRefused) {
  EXPECT_EQ(getObjectFault(*readText("g { a 1 a 2 }")),
            "'g/a' has the name of another item of its group, which the plain form cannot tell "
            "apart" +
                KEEPS);
}

TEST(JsonObjectTest, BinaryDataIsRefused) {
  EXPECT_EQ(getObjectFault(*readText("a 0x0102FF02010000")),
            "'a' has a value of a type that the plain form does not have" + KEEPS);
}

TEST(JsonObjectTest, AnInfinityIsRefused) {
  EXPECT_EQ(getObjectFault(*readText("a -inf")),
            "'a' has a number that JSON does not have" + KEEPS);
}

TEST(JsonObjectTest, AStringThatIsNoUtf8IsRefused) {
  EXPECT_EQ(getObjectFault(*readText("a \"\xFF\"")), "'a' has a string that is no UTF-8" + KEEPS);
}

TEST(JsonObjectTest, AScalarIsAValue) {
  checkObject(R"({"a":1,"b":"x","c":true,"d":2.5})", " a 1 b \"x\" c yes d 2.5");
}

TEST(JsonObjectTest, AnObjectIsAGroup) {
  checkObject(R"({"a":{"b":1},"c":{}})", " a { b 1 } c { }");
}

TEST(JsonObjectTest, NullIsAnItemWithoutValues) { checkObject(R"({"a":null})", " a <empty>"); }

TEST(JsonObjectTest, AnEmptyArrayIsAnItemWithoutValues) {
  checkObject(R"({"a":[]})", " a <empty>");
}

TEST(JsonObjectTest, AnArrayOfScalarsIsTheValuesOfAnItem) {
  checkObject(R"({"a":[1,"x",false]})", " a 1 \"x\" no");
}

TEST(JsonObjectTest, AnArrayOfObjectsIsRepeatedItems) {
  checkObject(R"({"a":[{"b":1},{"b":2}]})", " a { b 1 } a { b 2 }");
}

TEST(JsonObjectTest, AnArrayOfArraysIsRepeatedItems) {
  checkObject(R"({"a":[[1,2],[],[3]]})", " a 1 2 a <empty> a 3");
}

TEST(JsonObjectTest, NullAmongObjectsIsAnItemWithoutValues) {
  checkObject(R"({"a":[null,{"b":1}]})", " a <empty> a { b 1 }");
}

TEST(JsonObjectTest, AnObjectBehindScalarsIsTheGroupOfTheirItem) {
  checkObject(R"({"a":["x",{"b":1}]})", " a \"x\" { b 1 }");
}

TEST(JsonObjectTest, MembersOfOneNameAreRepeatedItems) {
  checkObject(R"({"a":1,"a":2})", " a 1 a 2");
}

TEST(JsonObjectTest, ANameWithParenthesesIsACall) {
  checkObject(R"-({"f()":[1,2],"g()":null})-", " f(1, 2) g()");
}

TEST(JsonObjectTest, ANameWithASignIsAKeyword) { checkObject(R"({"#k":1})", " #k 1"); }

TEST(JsonObjectTest, TheSpellingOfADoubleIsKept) {
  checkObject(R"({"a":[1.50,1E5,-0.0,1e+3]})", " a 1.50 1e5 -0.0 1e+3");
}

TEST(JsonObjectTest, AWholeNumberBeyond32BitsIsADouble) {
  checkObject(R"({"a":[2147483647,2147483648,-9007199254740992]})",
              " a 2147483647 2147483648.0 -9007199254740992.0");
}

TEST(JsonObjectTest, AWholeNumberThatNoTypeHoldsIsRefused) {
  EXPECT_EQ(
      getFault(R"({"a":[9007199254740993]})"),
      "at /a/0: the number 9007199254740993 is kept exactly by no type; write it as a string");
}

TEST(JsonObjectTest, AWholeNumberBeyond64BitsIsRefused) {
  EXPECT_EQ(getFault(R"({"a":123456789012345678901})"),
            "at /a: the number 123456789012345678901 is kept exactly by no type; write it as a "
            "string");
}

TEST(JsonObjectTest, ANameThatIsNoneIsRefused) {
  EXPECT_EQ(getFault(R"({"g":{"my key":1}})"),
            "at /g/my key: 'my key' is no name: a letter or _, then letters, digits and any of "
            "[]_-.%:");
}

TEST(JsonObjectTest, NullAmongValuesIsRefused) {
  EXPECT_EQ(getFault(R"({"a":[1,null]})"), "at /a/1: null stands among values");
}

TEST(JsonObjectTest, AValueAmongItemsIsRefused) {
  EXPECT_EQ(getFault(R"({"a":[{},1]})"), "at /a/1: a value stands among items");
}

TEST(JsonObjectTest, AnArrayAmongValuesIsRefused) {
  EXPECT_EQ(getFault(R"({"a":[1,[2]]})"), "at /a/1: an array stands among values");
}

TEST(JsonObjectTest, ArraysNestedMoreDeeplyAreRefused) {
  EXPECT_EQ(getFault(R"({"a":[[[1]]]})"), "at /a/0/0: arrays are nested too deeply");
}

TEST(JsonObjectTest, AGroupInACallIsRefused) {
  EXPECT_EQ(getFault(R"-({"f()":{}})-"), "at /f(): a call takes no group");
}

// --- Depth ---------------------------------------------------------------------------------------

TEST(JsonDepthTest, GroupsMayNestAsDeepAsMemoryLasts) {
  const auto root = readText(TestSupport::makeDeepText(100000));
  const std::string json = writeJson(*root, TreeOrigin::TEXT);
  EXPECT_TRUE(writeJson(*read(json), TreeOrigin::TEXT) == json);
}

TEST(JsonDepthTest, ObjectsMayNestAsDeepAsMemoryLasts) {
  constexpr std::size_t DEPTH = 50000;
  std::string json;
  for (std::size_t i = 0; i < DEPTH; ++i)
    json += "{\"g\":";
  json += "1" + std::string(DEPTH, '}');
  const std::string written = writeJsonObject(*read(json));
  EXPECT_TRUE(writeJsonObject(*read(written)) == written);
}

// --- Round trips ---------------------------------------------------------------------------------

TEST(JsonRoundTripTest, EveryTreeComesBack) {
  const unsigned long count = getTreeCount();
  for (unsigned long seed = 0; seed < count && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE(seed);
    checkTree(*JsonTrees(seed).make());
  }
}

TEST(JsonRoundTripTest, BinaryDataOfEveryTreeComesBack) {
  const RecordingConsole console;  // names without bytes are broken data
  const unsigned long count = getTreeCount();
  for (unsigned long seed = 0; seed < count && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE(seed);
    checkData(*JsonTrees(seed).make());
  }
}

TEST(JsonRoundTripTest, EveryDocumentComesBack) {
  const RecordingConsole console;  // some are faulty
  unsigned long count = 0;
  for (const fs::path& path : findFiles(".cfg")) {
    SCOPED_TRACE(path);
    ParserFile file;
    file.setLimits({8, 1UL << 30, 10000, false});
    if (!file.read(path.string())) continue;
    checkTree(file.getRoot());
    checkData(file.getRoot());
    ++count;
  }
  EXPECT_GT(count, 20U);
}

TEST(JsonRoundTripTest, EveryDocumentThatHasAPlainFormComesBackFromIt) {
  const RecordingConsole console;
  unsigned long count = 0;
  for (const fs::path& path : findFiles(".cfg")) {
    SCOPED_TRACE(path);
    ParserFile file;
    file.setLimits({8, 1UL << 30, 10000, false});
    if (!file.read(path.string()) || !getObjectFault(file.getRoot()).empty()) continue;
    checkObjectForm(file.getRoot());
    ++count;
  }
  EXPECT_GT(count, 10U);
}

/// The tests have no plain JSON of their own.
TEST(JsonRoundTripTest, EveryPlainObjectIsRead) {
  for (const fs::path& path : findFiles(".json")) {
    SCOPED_TRACE(path);
    const auto root = read(readBytes(path));
    EXPECT_GT(root->getItemCount(), 0U);
    checkTree(*root);
    if (getObjectFault(*root).empty()) checkObjectForm(*root);
  }
}

}  // namespace ToolTest
