#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

namespace ToolTest {

using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

Json checkAs(const std::string& format, const std::string& text) {
  return Json::parse(runTool({"check", "--format=" + format, "-"}, text).output);
}

std::string checkForGithub(const std::string& name, const std::string& text) {
  return runTool({"check", "--format=github", "--stdin-filename", name, "-"}, text).output;
}

/// What a.cfg gives, which includes b.cfg on its second line, which has one warning.
std::string checkIncluding(const std::string& format) {
  const TemporaryFolder folder;
  const WorkingDirectory inside(folder.getPath());
  folder.write("a.cfg", "a 1\n #include \"b.cfg\"\n");
  folder.write("b.cfg", "b 1\n ,, c 2\n");
  return runTool({"check", "--format=" + format, "a.cfg"}).output;
}

Json getResult(const Json& log) { return log["runs"][0]["results"][0]; }

Json getRegionOf(const Json& result) {
  return result["locations"][0]["physicalLocation"]["region"];
}

Json getRegion(const std::string& text) { return getRegionOf(getResult(checkAs("sarif", text))); }

std::string getUri(const std::string& name) {
  const Result result = runTool({"check", "--format=sarif", "--stdin-filename", name, "-"}, ",");
  const Json location = getResult(Json::parse(result.output))["locations"][0];
  return location["physicalLocation"]["artifactLocation"]["uri"];
}

}  // namespace

// --- JSON ----------------------------------------------------------------------------------------

TEST(CheckJsonTest, FindingsStandInAnArray) {
  EXPECT_EQ(checkAs("json", "a 1\nb other 2\n"),
            Json::parse(R"({"findings": [{"level": "warning", "rule": "has-no-value",
                            "message": "item 'other' has no value.", "file": "standard input",
                            "line": 2, "column": 3, "length": 5, "includedFrom": []}],
                            "errors": 0, "warnings": 1, "files": 1})"));
}

TEST(CheckJsonTest, WithoutFindingsTheArrayIsEmpty) {
  EXPECT_EQ(runTool({"check", "--format=json", "-"}, "a 1"),
            (Result{0, "{\"findings\": [], \"errors\": 0, \"warnings\": 0, \"files\": 1}\n", ""}));
}

TEST(CheckJsonTest, AFileThatIsNotFoundHasNoPlace) {
  const Json all = Json::parse(runTool({"check", "--format=json", "nowhere.cfg"}).output);
  EXPECT_EQ(all, Json::parse(R"({"findings": [{"level": "error", "rule": "file-not-found",
                                 "message": "File 'nowhere.cfg' not found.",
                                 "file": "nowhere.cfg", "includedFrom": []}],
                                 "errors": 1, "warnings": 0, "files": 1})"));
}

TEST(CheckJsonTest, IncludesAreTold) {
  EXPECT_EQ(Json::parse(checkIncluding("json"))["findings"][0]["includedFrom"],
            Json::parse(R"([{"file": "a.cfg", "line": 2, "column": 2}])"));
}

TEST(CheckJsonTest, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(checkAs("json", "\x80!\n")["findings"][0]["message"],
            "Unknown word type: '\xEF\xBF\xBD!'");
}

TEST(CheckJsonTest, QuietWritesNothing) {
  EXPECT_EQ(runTool({"check", "--format=json", "-q", "-"}, ","), (Result{1, "", ""}));
}

// --- SARIF ---------------------------------------------------------------------------------------

TEST(CheckSarifTest, TheLogHasWhatItsSchemaRequires) {
  const Json log = checkAs("sarif", ",");
  EXPECT_EQ(log["version"], "2.1.0");
  EXPECT_THAT(std::string(log["$schema"]), testing::EndsWith("/sarif-schema-2.1.0.json"));
  EXPECT_EQ(log["runs"].size(), 1U);
  EXPECT_EQ(log["runs"][0]["tool"]["driver"]["name"], "quarry");
  EXPECT_EQ(log["runs"][0]["columnKind"], "utf16CodeUnits");
  EXPECT_EQ(log["runs"][0]["invocations"][0]["executionSuccessful"], true);
}

TEST(CheckSarifTest, EachRuleHasAnIdAndADescription) {
  const Json log = checkAs("sarif", "a 1");
  const Json& rules = log["runs"][0]["tool"]["driver"]["rules"];
  EXPECT_GT(rules.size(), 20U);
  for (const Json& rule : rules) {
    EXPECT_THAT(std::string(rule["id"]), testing::MatchesRegex("[a-z-]+"));
    EXPECT_THAT(std::string(rule["shortDescription"]["text"]), testing::EndsWith("."));
  }
}

TEST(CheckSarifTest, AResultHasItsRuleLevelMessageAndPlace) {
  EXPECT_EQ(getResult(checkAs("sarif", "a 1\nb other 2\n")), Json::parse(R"({
              "ruleId": "has-no-value", "ruleIndex": 6, "level": "warning",
              "message": {"text": "item 'other' has no value."},
              "locations": [{"physicalLocation": {
                "artifactLocation": {"uri": "standard%20input"},
                "region": {"startLine": 2, "startColumn": 3, "endLine": 2, "endColumn": 8}}}]})"));
}

TEST(CheckSarifTest, TheIndexOfARuleLeadsToIt) {
  const Json log = checkAs("sarif", "a }");
  const std::size_t index = getResult(log)["ruleIndex"];
  EXPECT_EQ(log["runs"][0]["tool"]["driver"]["rules"][index]["id"], "closes-no-group");
}

TEST(CheckSarifTest, WithoutFindingsTheResultsAreEmpty) {
  EXPECT_EQ(checkAs("sarif", "a 1")["runs"][0]["results"], Json::array());
}

TEST(CheckSarifTest, AnUnreadableDocumentIsAFailedInvocation) {
  const Json log = checkAs("sarif", "#include \"x");
  EXPECT_EQ(getResult(log)["level"], "error");
  EXPECT_EQ(log["runs"][0]["invocations"][0]["executionSuccessful"], false);
}

TEST(CheckSarifTest, IncludesAreRelatedLocations) {
  EXPECT_EQ(getResult(Json::parse(checkIncluding("sarif")))["relatedLocations"], Json::parse(R"([
              {"id": 0, "message": {"text": "included from here"},
               "physicalLocation": {"artifactLocation": {"uri": "a.cfg"},
                                    "region": {"startLine": 2}}}])"));
}

TEST(CheckSarifTest, ColumnsCountCodeUnitsOfUtf16) {
  EXPECT_EQ(getRegion("a \"\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80\" ,,\n")["startColumn"], 11);
}

TEST(CheckSarifTest, BytesThatAreNoUtf8CountAsOneEach) {
  EXPECT_EQ(getRegion("a \"\x80\xE6\x97\" ,,\n")["startColumn"], 10);
}

TEST(CheckSarifTest, ColumnsOfLongLinesAreCountedToo) {
  std::string text = "a";
  for (int i = 0; i < 2000; ++i)
    text += " \"\xC3\xBC\"";
  EXPECT_EQ(getRegion(text + " ,,\n")["startColumn"], 8004);
}

TEST(CheckSarifTest, ManyFindingsOnALineEachHaveTheirColumn) {
  std::string text = "a \"\xC3\xBC\" ";
  for (int i = 0; i < 20000; ++i)
    text += ", ";
  const Json results = checkAs("sarif", text)["runs"][0]["results"];
  EXPECT_EQ(results.size(), 19999U);
  EXPECT_EQ(getRegionOf(results.front())["startColumn"], 9);
  EXPECT_EQ(getRegionOf(results.back())["startColumn"], 40005);
}

TEST(CheckSarifTest, FindingsThatGoBackOnALineEachHaveTheirColumn) {
  const std::string groups = "g{ g{ g{";
  const std::string lead = "a \"" + std::string(2000, 'x') + "\xC3\xBC\" ";
  const Json results = checkAs("sarif", lead + groups)["runs"][0]["results"];
  EXPECT_EQ(getRegionOf(results[0])["startColumn"], 2014);
  EXPECT_EQ(getRegionOf(results[2])["startColumn"], 2008);
}

TEST(CheckSarifTest, PathsAreEscaped) {
  EXPECT_EQ(getUri("my files/100%#\xC3\xBC:1.cfg"), "my%20files/100%25%23%C3%BC%3A1.cfg");
}

TEST(CheckSarifTest, AnAbsolutePathIsAUriOfAFile) { EXPECT_EQ(getUri("/a b"), "file:///a%20b"); }

// --- GitHub --------------------------------------------------------------------------------------

TEST(CheckGithubTest, AWarningIsACommand) {
  EXPECT_EQ(checkForGithub("a.cfg", "b other 2\n"),
            "::warning file=a.cfg,line=1,col=3,title=has-no-value::item 'other' has no value.\n");
}

TEST(CheckGithubTest, AnErrorIsACommand) {
  EXPECT_EQ(runTool({"check", "--format=github", "nowhere.cfg"}).output,
            "::error file=nowhere.cfg,title=file-not-found::File 'nowhere.cfg' not found.\n");
}

TEST(CheckGithubTest, PropertiesAreEscaped) {
  EXPECT_THAT(checkForGithub("a:b,c%\n.cfg", ","),
              HasSubstr("::warning file=a%3Ab%2Cc%25%0A.cfg,line=1,"));
}

TEST(CheckGithubTest, TheMessageIsEscaped) {
  EXPECT_THAT(checkForGithub("a.cfg", "%:!,\n"), HasSubstr("::Unknown word type: '%25:!'\n"));
}

TEST(CheckGithubTest, IncludesAreLinesOfTheMessage) {
  EXPECT_EQ(checkIncluding("github"),
            "::warning file=b.cfg,line=2,col=3,title=wrongly-placed::item ',' wrongly placed."
            "%0Aincluded from a.cfg:2:2\n");
}

TEST(CheckFormatTest, AnUnknownFormatIsRefused) {
  EXPECT_EQ(runTool({"check", "--format=xml", "-"}),
            (Result{2, "",
                    "quarry: error: --format: xml not in {text,json,sarif,github}; quarry --help "
                    "tells more.\n"}));
}

}  // namespace ToolTest
