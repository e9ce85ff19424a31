// Every rule: its name, its place and length, and what is said of it.

#include <QuarrySource/SourceDocument.h>
#include <gmock/gmock.h>

#include <cctype>
#include <filesystem>
#include <set>

#include "ShownDocument.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserLimits;
using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourceRule;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using TestSupport::getMessages;
using TestSupport::MemoryFiles;
using TestSupport::readDocument;
using TestSupport::showDiagnostic;
using TestSupport::showDiagnostics;
using TestSupport::TemporaryFolder;

namespace {

/// Expects exactly one diagnostic: what it shows, how it is described, and its message.
void checkFinds(const SourceDocument& document, const std::string& shown,
                const std::string& description, const std::string& message) {
  ASSERT_THAT(document.getDiagnostics(), SizeIs(1));
  const SourceDiagnostic& diagnostic = document.getDiagnostics().front();
  EXPECT_EQ(showDiagnostic(document, diagnostic), shown);
  EXPECT_EQ(document.describe(diagnostic), description);
  EXPECT_EQ(document.getMessage(diagnostic), message);
}

/// Expects one warning of the parser, whose message has a place of its own.
void checkWarns(const std::string& text, const std::string& shown, const std::string& place,
                const std::string& description) {
  SCOPED_TRACE(text);
  const auto document = readDocument(text);
  checkFinds(*document, shown, description,
             "ParserGroup::setText: " + place + " " + description + "\n");
  EXPECT_TRUE(document->getDiagnostics().front().isWarning);
}

/// Expects one finding that ParserFile does not tell of.
void checkNotes(const SourceDocument& document, const std::string& shown,
                const std::string& description) {
  checkFinds(document, shown, description, description);
  EXPECT_FALSE(document.getDiagnostics().front().isWarning);
}

/// Expects one warning about a file, whose message has no place.
void checkWarnsOfFile(const SourceDocument& document, const std::string& shown,
                      const std::string& description) {
  checkFinds(document, shown, description, description + "\n");
  EXPECT_TRUE(document.getDiagnostics().front().isWarning);
}

}  // namespace

// --- The rules themselves ------------------------------------------------------------------------

TEST(SourceDiagnosticTest, TheNamesOfTheRulesAreStable) {
  std::vector<std::string> names;
  for (const SourceRule rule : Quarry::getRules())
    names.emplace_back(Quarry::getRuleName(rule));
  EXPECT_THAT(names,
              ElementsAre("file-not-found", "file-not-opened", "limit-exceeded", "include-outside",
                          "include-cycle", "template-inside-template", "has-no-value",
                          "wrongly-placed", "value-without-item", "group-without-item",
                          "arguments-without-item", "arguments-mixed-with-values",
                          "arguments-inside-arguments", "arguments-on-keyword",
                          "arguments-closed-without-item", "arguments-closed-without-call",
                          "unknown-word", "unclosed-include", "unusable-version", "closes-no-group",
                          "group-not-closed", "bad-compressed-line"));
}

TEST(SourceDiagnosticTest, TheRulesAreInTheOrderOfTheirNumbers) {
  std::int32_t number = 0;
  for (const SourceRule rule : Quarry::getRules())
    EXPECT_EQ(static_cast<std::int32_t>(rule), number++);
  EXPECT_EQ(number, static_cast<std::int32_t>(SourceRule::BAD_COMPRESSED_LINE) + 1);
}

TEST(SourceDiagnosticTest, EveryRuleHasADescriptionOfItsOwnThatIsASentence) {
  std::set<std::string> descriptions;
  for (const SourceRule rule : Quarry::getRules()) {
    const std::string description = Quarry::getRuleDescription(rule);
    EXPECT_EQ(description.back(), '.');
    EXPECT_TRUE(std::isupper(static_cast<unsigned char>(description.front())) != 0 ||
                description.front() == '\'');
    descriptions.insert(description);
  }
  EXPECT_THAT(descriptions, SizeIs(Quarry::getRules().size()));
}

TEST(SourceDiagnosticTest, AFaultlessDocumentHasNone) {
  EXPECT_THAT(showDiagnostics(*readDocument("a 1 b { c (2, 3) } #d yes")), IsEmpty());
}

// --- What the parser warns of --------------------------------------------------------------------

TEST(SourceDiagnosticTest, ANameBehindANameHasNoValue) {
  checkWarns("one two 1", "has-no-value a.cfg:1:5+3", "(1:5)", "item 'two' has no value.");
}

TEST(SourceDiagnosticTest, ANameAtTheEndHasNoValue) {
  checkWarns("a 1\none", "has-no-value a.cfg:2:1+3", "(2:0)", "item 'one' has no value.");
}

TEST(SourceDiagnosticTest, AnEqualsSignBehindAValueIsWronglyPlaced) {
  checkWarns("a 1 = ", "wrongly-placed a.cfg:1:5+1", "(1:4)", "item '=' wrongly placed.");
}

TEST(SourceDiagnosticTest, ACommaBehindANameIsWronglyPlaced) {
  checkWarns("a , b 1", "wrongly-placed a.cfg:1:3+1", "(1:2)", "item ',' wrongly placed.");
}

TEST(SourceDiagnosticTest, AValueAtTheBeginningHasNoItem) {
  checkWarns("\"one two\" a 1", "value-without-item a.cfg:1:1+9", "(1:1)",
             "Value without item: \"one two\"");
}

TEST(SourceDiagnosticTest, AnEmptyTagAtTheBeginningHasNoItem) {
  checkWarns("<empty> a 1", "value-without-item a.cfg:1:1+7", "(1:1)",
             "Value without item: <empty>");
}

TEST(SourceDiagnosticTest, ALineFeedInAStringIsPartOfTheMessage) {
  checkWarns("#SerialVersion 1.1\n\"b\\n\" a 1", "value-without-item a.cfg:2:1+5", "(1:1)",
             "Value without item: \"b\n\"");
}

TEST(SourceDiagnosticTest, AGroupAtTheBeginningHasNoItem) {
  checkWarns("{ a 1", "group-without-item a.cfg:1:1+1", "(1:0)", "Group without item");
}

TEST(SourceDiagnosticTest, ArgumentsAtTheBeginningHaveNoItem) {
  checkWarns("( a 1", "arguments-without-item a.cfg:1:1+1", "(1:0)", "Argument list without item");
}

TEST(SourceDiagnosticTest, ArgumentsDoNotMixWithValues) {
  checkWarns("a 1 ( b 2", "arguments-mixed-with-values a.cfg:1:5+1", "(1:4)",
             "Cannot mix argument list with item values");
}

TEST(SourceDiagnosticTest, ArgumentsDoNotStandInsideArguments) {
  checkWarns("a ((", "arguments-inside-arguments a.cfg:1:4+1", "(1:3)",
             "Argument list inside an argument list");
}

TEST(SourceDiagnosticTest, AKeywordHasNoArguments) {
  checkWarns("#a ( b 2", "arguments-on-keyword a.cfg:1:4+1", "(1:3)", "Function call on keyword");
}

TEST(SourceDiagnosticTest, AParenthesisAtTheBeginningClosesNoItem) {
  checkWarns(") a 1", "arguments-closed-without-item a.cfg:1:1+1", "(1:0)",
             "Closing an argument list without item");
}

TEST(SourceDiagnosticTest, AParenthesisBehindAValueClosesNoCall) {
  checkWarns("a 1 )", "arguments-closed-without-call a.cfg:1:5+1", "(1:4)",
             "Closing an argument list in a non function call");
}

TEST(SourceDiagnosticTest, AWordThatIsNothingIsUnknown) {
  checkWarns("a 1 ?!& b 2", "unknown-word a.cfg:1:5+3", "(1:5)", "Unknown word type: '?!&'");
}

TEST(SourceDiagnosticTest, AStringThatIsNotClosedIsUnknownUpToTheLineEnd) {
  checkWarns("a 1 \"one two\nb 2", "unknown-word a.cfg:1:5+8", "(1:5)",
             "Unknown word type: '\"one two'");
}

TEST(SourceDiagnosticTest, AByteOrderMarkIsPartOfAnUnknownWordThatBeginsAtColumn1) {
  checkWarns(
      "\xEF\xBB\xBF"
      "a b 1",
      "unknown-word a.cfg:1:1+4", "(1:1)",
      "Unknown word type: '\xEF\xBB\xBF"
      "a'");
}

TEST(SourceDiagnosticTest, TheMessageOfAShortWordTellsWhereTheWordIsInTheText) {
  const auto document = readDocument("// one\n//two\n?!");
  ASSERT_THAT(document->getDiagnostics(), SizeIs(1));
  const SourceDiagnostic& diagnostic = document->getDiagnostics().front();
  EXPECT_EQ(diagnostic.wordBegin, 0U);
  EXPECT_EQ(diagnostic.wordLength, 2U);
  EXPECT_EQ(diagnostic.line, 1U);
  EXPECT_EQ(diagnostic.column, 0U);
}

// --- Files ---------------------------------------------------------------------------------------

TEST(SourceDiagnosticTest, AMissingTopFileIsNowhere) {
  SourceDocument document;
  document.read("b.cfg");
  checkWarnsOfFile(document, "file-not-found nowhere+0", "File 'b.cfg' not found.");
  EXPECT_EQ(document.getDiagnostics().front().opening, SourceDiagnostic::NO_OPENING);
}

TEST(SourceDiagnosticTest, AMissingIncludedFileIsAtItsInclude) {
  checkWarnsOfFile(*readDocument("a 1\n #include \"b.cfg\"\n"), "file-not-found a.cfg:2:2+16",
                   "File 'b.cfg' not found.");
}

TEST(SourceDiagnosticTest, AMissingFileOfAnIncludedFileHasTheChain) {
  const MemoryFiles files = {
      {"0", "\n#include \"1\""}, {"1", " #include \"2\""}, {"2", "#include \"3\""}};
  checkWarnsOfFile(*readDocument(files), "file-not-found 2:1:1+12 < 1:1:2 < 0:2:1",
                   "File '3' not found.");
}

TEST(SourceDiagnosticTest, AFileThatCannotBeOpenedIsAtItsInclude) {
  const std::string name = "/proc/self/mem";  // a regular file whose beginning cannot be read
  if (!std::filesystem::is_regular_file(name)) GTEST_SKIP() << "there is no such file here";
  checkWarnsOfFile(*readDocument("#include \"" + name + "\""), "file-not-opened a.cfg:1:1+25",
                   "Failed to open file '/proc/self/mem'.");
}

TEST(SourceDiagnosticTest, AnIncludeThatIsTooDeepIsAtTheInclude) {
  ParserLimits limits;
  limits.includeDepth = 0;
  checkWarnsOfFile(*readDocument({{"a.cfg", " #include \"b.cfg\""}, {"b.cfg", ""}}, limits),
                   "limit-exceeded a.cfg:1:2+16",
                   "File 'b.cfg' exceeds the limit includeDepth (0).");
}

TEST(SourceDiagnosticTest, ATopFileThatIsTooLargeIsNowhere) {
  ParserLimits limits;
  limits.preprocessedBytes = 2;
  checkWarnsOfFile(*readDocument({{"a.cfg", "a 1"}}, limits), "limit-exceeded nowhere+0",
                   "File 'a.cfg' exceeds the limit preprocessedBytes (2).");
}

TEST(SourceDiagnosticTest, AGroupThatIsTooDeepIsAtItsBrace) {
  ParserLimits limits;
  limits.nestingDepth = 1;
  checkFinds(*readDocument({{"a.cfg", "//\na {\n b { c { } } } d { e { } }"}}, limits),
             "limit-exceeded a.cfg:3:4+1", "File 'a.cfg' exceeds the limit nestingDepth (1).",
             "ParserGroup::setText: (2:3) File 'a.cfg' exceeds the limit nestingDepth (1).\n");
}

TEST(SourceDiagnosticTest, AGroupThatIsTooDeepIsToldOfBehindAllOtherWarnings) {
  ParserLimits limits;
  limits.nestingDepth = 0;
  EXPECT_THAT(showDiagnostics(*readDocument({{"a.cfg", "a { } ?!"}}, limits)),
              ElementsAre("unknown-word a.cfg:1:7+2", "limit-exceeded a.cfg:1:3+1"));
}

TEST(SourceDiagnosticTest, AFileOutsideOfTheSearchPathsIsAtItsInclude) {
  const TemporaryFolder folder;
  const std::string name = folder.write("b.cfg", "b 2");
  ParserLimits limits;
  limits.includesBelowSearchPaths = true;
  const MemoryFiles files = {{"a.cfg", "//\n#include \"" + name + "\""}};
  checkWarnsOfFile(
      *readDocument(files, limits), "include-outside a.cfg:2:1+" + std::to_string(name.size() + 11),
      "File '" + name + "' lies outside of the search paths (includesBelowSearchPaths).");
}

TEST(SourceDiagnosticTest, ACircleIsAtTheIncludeThatClosesIt) {
  ParserLimits limits;
  limits.includeDepth = 9;
  const MemoryFiles files = {{"a.cfg", "\n#include \"b.cfg\""}, {"b.cfg", "  #include \"a.cfg\""}};
  checkWarnsOfFile(*readDocument(files, limits), "include-cycle b.cfg:1:3+16 < a.cfg:2:1",
                   "File 'a.cfg' includes itself: 'a.cfg' > 'b.cfg' > 'a.cfg'.");
}

// --- What ParserFile passes over in silence ------------------------------------------------------

TEST(SourceDiagnosticTest, AnUnclosedIncludeReachesToTheEndOfItsFile) {
  checkNotes(*readDocument("a 1\n #include \"b.cfg\nb 2"), "unclosed-include a.cfg:2:2+19",
             "An include has no closing quote.");
}

TEST(SourceDiagnosticTest, AnUnclosedIncludeOfAnIncludedFileHasTheChain) {
  checkNotes(*readDocument(MemoryFiles{{"0", "//\n#include \"1\" a"}, {"1", "#include \""}}),
             "unclosed-include 1:1:1+10 < 0:2:1", "An include has no closing quote.");
}

TEST(SourceDiagnosticTest, AVersionOf0IsAtItsLine) {
  checkNotes(*readDocument("a 1\n#SerialVersion 0\nb 2"), "unusable-version a.cfg:2:1+17",
             "The version that the file declares is not positive.");
}

TEST(SourceDiagnosticTest, AVersionThatIsNoNumberIsAtItsLine) {
  checkNotes(*readDocument("#SerialVersion one"), "unusable-version a.cfg:1:1+18",
             "The version that the file declares is not positive.");
}

TEST(SourceDiagnosticTest, OfSeveralVersionLinesTheLastOneIsAtFault) {
  checkNotes(*readDocument("#SerialVersion 1\n#SerialVersion 0\n"), "unusable-version a.cfg:2:1+17",
             "The version that the file declares is not positive.");
}

TEST(SourceDiagnosticTest, AVersionOf0InAnIncludedFileHasTheChain) {
  checkNotes(*readDocument(MemoryFiles{{"0", " #include \"1\""}, {"1", "\n#SerialVersion 0"}}),
             "unusable-version 1:2:1+16 < 0:1:2",
             "The version that the file declares is not positive.");
}

TEST(SourceDiagnosticTest, ABraceThatClosesNoGroupEndsTheDocument) {
  checkNotes(*readDocument("a 1\n} ?!"), "closes-no-group a.cfg:2:1+1",
             "'}' closes no group; the rest of the document is not read.");
}

TEST(SourceDiagnosticTest, AGroupThatIsNotClosedIsAtItsBrace) {
  checkNotes(*readDocument("a 1\nb { c 2"), "group-not-closed a.cfg:2:3+1",
             "The group is not closed.");
}

TEST(SourceDiagnosticTest, OfNestedUnclosedGroupsTheInnermostIsToldFirst) {
  EXPECT_THAT(showDiagnostics(*readDocument("a { b { c 2")),
              ElementsAre("group-not-closed a.cfg:1:7+1", "group-not-closed a.cfg:1:3+1"));
}

TEST(SourceDiagnosticTest, ABadCompressedLineOfTheTopFileIsNowhere) {
  const TemporaryFolder folder;
  SourceDocument document;
  document.read(folder.writeCompressed("a.cfg", "\n"));
  checkNotes(document, "bad-compressed-line nowhere+0",
             "A line of a compressed file has less than two bytes.");
}

TEST(SourceDiagnosticTest, ABadCompressedLineOfAnIncludedFileIsAtItsInclude) {
  const TemporaryFolder folder;
  const std::string name = folder.writeCompressed("b.cfg", "\n");
  checkNotes(*readDocument("a 1\n#include \"" + name + "\""),
             "bad-compressed-line a.cfg:2:1+" + std::to_string(name.size() + 11),
             "A line of a compressed file has less than two bytes.");
}

// --- Places --------------------------------------------------------------------------------------

TEST(SourceDiagnosticTest, AWordOfAnIncludedFileHasTheChain) {
  const MemoryFiles files = {{"0", "a 1 // one\n #include \"1\""},
                             {"1", "// two\r\n#include \"2\""},
                             {"2", "\r\n\r\n  ?!"}};
  EXPECT_THAT(showDiagnostics(*readDocument(files)),
              ElementsAre("unknown-word 2:3:3+2 < 1:2:1 < 0:2:2"));
}

TEST(SourceDiagnosticTest, AWordThatACommentCutsIsAtItsFirstPart) {
  const auto document = readDocument("a 1 ?//\n!&");
  EXPECT_THAT(showDiagnostics(*document), ElementsAre("unknown-word a.cfg:1:5+1"));
  EXPECT_EQ(document->getDiagnostics().front().wordLength, 3U);
}

TEST(SourceDiagnosticTest, AWordThatBeginsBeforeAnIncludeIsThere) {
  const MemoryFiles files = {{"0", "a 1 ?#include \"1\""}, {"1", "!&"}};
  EXPECT_THAT(showDiagnostics(*readDocument(files)), ElementsAre("unknown-word 0:1:5+1"));
}

TEST(SourceDiagnosticTest, AFileThatIsIncludedTwiceHasItsFaultsTwice) {
  const MemoryFiles files = {{"0", "#include \"1\"\n#include \"1\""}, {"1", "?!"}};
  EXPECT_THAT(showDiagnostics(*readDocument(files)),
              ElementsAre("unknown-word 1:1:1+2 < 0:1:1", "unknown-word 1:1:1+2 < 0:2:1"));
}

TEST(SourceDiagnosticTest, WarningsAndNotesAreInTheOrderOfFinding) {
  EXPECT_THAT(showDiagnostics(*readDocument("?! a { b , c { 1 }")),
              ElementsAre("unknown-word a.cfg:1:1+2", "wrongly-placed a.cfg:1:10+1",
                          "value-without-item a.cfg:1:16+1", "group-not-closed a.cfg:1:6+1"));
}

// --- Many ----------------------------------------------------------------------------------------

TEST(SourceDiagnosticTest, TenThousandWarningsHaveTheirPlaces) {
  constexpr unsigned long COUNT = 10000;
  std::string text;
  for (unsigned long i = 0; i < COUNT; ++i)
    text += "// note\n  ?!\n";
  const auto document = readDocument(text);
  ASSERT_THAT(document->getDiagnostics(), SizeIs(COUNT));
  for (unsigned long i = 0; i < COUNT; ++i) {
    const Quarry::SourcePlace place = document->getPlace(document->getDiagnostics()[i]);
    ASSERT_EQ(place.line, 2 * i + 2);
    ASSERT_EQ(place.column, 3U);
  }
}

TEST(SourceDiagnosticTest, AHundredThousandUnclosedGroupsAreToldOf) {
  constexpr unsigned long COUNT = 100000;
  std::string text;
  for (unsigned long i = 0; i < COUNT; ++i)
    text += "g {";
  const auto document = readDocument(text);
  ASSERT_THAT(document->getDiagnostics(), SizeIs(COUNT));
  EXPECT_EQ(showDiagnostic(*document, document->getDiagnostics().back()),
            "group-not-closed a.cfg:1:3+1");
}
