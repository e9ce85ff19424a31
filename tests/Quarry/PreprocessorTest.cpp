#include <Plinth/Label.h>
#include <Quarry/internal/Preprocessor.h>
#include <gmock/gmock.h>

#include <pthread.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/TemporaryFolder.h"

using Quarry::Preprocessor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Writes down what the preprocessor says, in order, and collects what stays.
class RecordingSink {
 public:
  void beginFile(const std::string& name, const std::string& path, std::string_view) {
    events.push_back("begin " + name);
    paths.push_back(path);
  }
  void run(std::size_t offset, std::string_view bytes) {
    add("run", offset, bytes);
    text += bytes;
  }
  void comment(std::size_t offset, std::string_view bytes) { add("comment", offset, bytes); }
  void versionLine(std::size_t offset, std::string_view bytes) { add("version", offset, bytes); }
  void include(std::size_t offset, std::string_view bytes, const std::string& name) {
    add("include", offset, bytes);
    includes.push_back(name);
  }
  void endFile(double version) { events.push_back("end " + Plinth::getLabel(version)); }
  void unclosedInclude(std::size_t offset) {
    events.push_back("unclosed " + std::to_string(offset));
  }
  void warning(Quarry::FileDiagnostic, const std::string& message) { warnings.push_back(message); }

  std::vector<std::string> events;
  std::vector<std::string> paths;
  std::vector<std::string> includes;
  std::vector<std::string> warnings;
  std::string text;

 private:
  void add(const std::string& event, std::size_t offset, std::string_view bytes) {
    events.push_back(event + " " + std::to_string(offset) + ":" + std::string(bytes));
  }
};

void* runFunction(void* function) {
  (*static_cast<std::function<void()>*>(function))();
  return nullptr;
}

/// Runs `function` in a thread that has 256 KiB of stack.
void runOnSmallStack(std::function<void()> function) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 262144), 0);
  pthread_t thread = {};
  ASSERT_EQ(pthread_create(&thread, &attributes, runFunction, &function), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

/// A folder with "main.cfg" and the files that it includes, the only search path.
class PreprocessorTest : public testing::Test {
 protected:
  double process(const std::string& text) {
    folder.write("main.cfg", text);
    return processFile("main.cfg");
  }

  double processFile(const std::string& name) {
    return Preprocessor(searchPaths, sink).process(name);
  }

  /// Returns what stays of `text`.
  std::string strip(const std::string& text) {
    process(text);
    return sink.text;
  }

  const TestSupport::TemporaryFolder folder;
  std::vector<std::string> searchPaths = {folder.getPath()};
  RecordingSink sink;
};

}  // namespace

// --- What stays ----------------------------------------------------------------------------------

TEST_F(PreprocessorTest, TextWithoutDirectivesIsOneRun) {
  process("a 1\nb \"x\" # / \\\n");
  EXPECT_THAT(sink.events, ElementsAre("begin main.cfg", "run 0:a 1\nb \"x\" # / \\\n", "end 1.0"));
}

TEST_F(PreprocessorTest, AnEmptyFileHasVersion10AndNoRun) {
  EXPECT_EQ(process(""), 1.0);
  EXPECT_THAT(sink.events, ElementsAre("begin main.cfg", "end 1.0"));
}

TEST_F(PreprocessorTest, TheTextEndsAtTheFirstZeroByte) {
  EXPECT_EQ(strip(std::string("a 1\n\0b 2\n", 9)), "a 1\n");
}

TEST_F(PreprocessorTest, CarriageReturnsStay) {
  EXPECT_EQ(strip("a 1\r\nb 2\r\n"), "a 1\r\nb 2\r\n");
}

TEST_F(PreprocessorTest, TheFileIsToldByItsNameAndItsPath) {
  process("a 1");
  EXPECT_THAT(sink.paths, ElementsAre(folder.getPath("main.cfg")));
}

// --- Rule 1: includes ----------------------------------------------------------------------------

TEST_F(PreprocessorTest, AnIncludeIsReplacedByTheFilesText) {
  folder.write("sub.cfg", "x 1\n");
  EXPECT_EQ(strip("a 1\n#include \"sub.cfg\"\nb 2\n"), "a 1\nx 1\n\nb 2\n");
}

TEST_F(PreprocessorTest, AnIncludeIsToldWithItsOffsets) {
  folder.write("sub.cfg", "x 1");
  process("a 1\n#include \"sub.cfg\"\nb 2");
  EXPECT_THAT(sink.events,
              ElementsAre("begin main.cfg", "run 0:a 1\n", "include 4:#include \"sub.cfg\"",
                          "begin sub.cfg", "run 0:x 1", "end 1.0", "run 22:\nb 2", "end 1.0"));
}

TEST_F(PreprocessorTest, AnIncludeIsToldWithItsName) {
  folder.write("dir/sub file.cfg", "");
  process("#include \"dir/sub file.cfg\"");
  EXPECT_THAT(sink.includes, ElementsAre("dir/sub file.cfg"));
}

TEST_F(PreprocessorTest, AnIncludeIsTakenInTheMiddleOfALine) {
  folder.write("sub.cfg", "7");
  EXPECT_EQ(strip("a #include \"sub.cfg\" b 2"), "a 7 b 2");
}

TEST_F(PreprocessorTest, AnIncludeIsTakenInsideAString) {
  folder.write("sub.cfg", "middle");
  EXPECT_EQ(strip("s \"x#include \"sub.cfg\"y\""), "s \"xmiddley\"");
}

TEST_F(PreprocessorTest, AnIncludeInACommentIsDroppedWithIt) {
  EXPECT_EQ(process("a 1 // #include \"missing.cfg\"\n"), 1.0);
  EXPECT_THAT(sink.includes, IsEmpty());
}

TEST_F(PreprocessorTest, AnIncludeAtTheVeryBeginningIsTaken) {
  folder.write("sub.cfg", "x 1");
  EXPECT_EQ(strip("#include \"sub.cfg\""), "x 1");
}

TEST_F(PreprocessorTest, TwoIncludesMayAdjoin) {
  folder.write("one.cfg", "x 1\n");
  folder.write("two.cfg", "y 2\n");
  EXPECT_EQ(strip("#include \"one.cfg\"#include \"two.cfg\""), "x 1\ny 2\n");
}

TEST_F(PreprocessorTest, AFileIncludedTwiceIsExpandedTwice) {
  folder.write("sub.cfg", "x 1\n");
  EXPECT_EQ(strip("#include \"sub.cfg\"#include \"sub.cfg\""), "x 1\nx 1\n");
}

TEST_F(PreprocessorTest, IncludesNest) {
  folder.write("one.cfg", "<#include \"two.cfg\">");
  folder.write("two.cfg", "[#include \"three.cfg\"]");
  folder.write("three.cfg", "x");
  EXPECT_EQ(strip("(#include \"one.cfg\")"), "(<[x]>)");
}

TEST_F(PreprocessorTest, AnIncludedFileIsLookedForInTheSearchPathsAndNotBesideItsIncluder) {
  folder.write("dir/one.cfg", "#include \"two.cfg\"");
  folder.write("dir/two.cfg", "beside");
  folder.write("two.cfg", "in the search path");
  EXPECT_EQ(strip("#include \"dir/one.cfg\""), "in the search path");
}

TEST_F(PreprocessorTest, AnIncludeWithoutClosingQuoteFailsWithoutAMessage) {
  EXPECT_EQ(process("a 1\n#include \"sub.cfg\nb 2\n"), 0.0);
  EXPECT_THAT(sink.warnings, IsEmpty());
}

TEST_F(PreprocessorTest, AFileWithAnUnclosedIncludeEndsWithVersion0) {
  process("#SerialVersion 2\na 1 #include \"sub.cfg");
  EXPECT_THAT(sink.events, ElementsAre("begin main.cfg", "version 0:#SerialVersion 2\n",
                                       "run 17:a 1 ", "unclosed 21", "end 0.0"));
}

TEST_F(PreprocessorTest, TextBeforeAFailedIncludeWasHandedOn) {
  EXPECT_EQ(strip("a 1\n#include \"sub.cfg\nb 2\n"), "a 1\n");
}

TEST_F(PreprocessorTest, AnIncludedNameMayHoldALineFeed) {
  folder.write("two\nlines.cfg", "x 1");
  EXPECT_EQ(strip("#include \"two\nlines.cfg\""), "x 1");
}

TEST_F(PreprocessorTest, TheWholeMarkerAtTheEndOfTheTextIsAnUnclosedInclude) {
  EXPECT_EQ(process("a 1\n#include \""), 0.0);
}

TEST_F(PreprocessorTest, AMarkerCutByTheEndOfTheTextStays) {
  EXPECT_EQ(strip("a 1\n#include "), "a 1\n#include ");
}

TEST_F(PreprocessorTest, AnIncludeWithTwoBlanksStays) {
  EXPECT_EQ(strip("#include  \"sub.cfg\""), "#include  \"sub.cfg\"");
}

TEST_F(PreprocessorTest, AnIncludeWithATabStays) {
  EXPECT_EQ(strip("#include\t\"sub.cfg\""), "#include\t\"sub.cfg\"");
}

TEST_F(PreprocessorTest, AnIncludeOfTheEmptyNameIsNotFound) {
  EXPECT_EQ(process("#include \"\""), 0.0);
  EXPECT_THAT(sink.warnings, ElementsAre("File '' not found.\n"));
}

TEST_F(PreprocessorTest, AMissingIncludeFailsUnderItsGivenName) {
  EXPECT_EQ(process("a 1\n#include \"dir/missing.cfg\"\nb 2"), 0.0);
  EXPECT_THAT(sink.warnings, ElementsAre("File 'dir/missing.cfg' not found.\n"));
}

TEST_F(PreprocessorTest, AFailureInsideAnIncludeEndsEverything) {
  folder.write("sub.cfg", "x 1 #include \"missing.cfg\"");
  EXPECT_EQ(process("a 1 #include \"sub.cfg\" b 2"), 0.0);
  EXPECT_EQ(sink.text, "a 1 x 1 ");
}

TEST_F(PreprocessorTest, AnIncludedFileOfVersion0FailsWithoutAMessage) {
  folder.write("sub.cfg", "#SerialVersion 0\nx 1\n");
  EXPECT_EQ(process("#include \"sub.cfg\"\nb 2"), 0.0);
  EXPECT_THAT(sink.warnings, IsEmpty());
  EXPECT_EQ(sink.text, "x 1\n");
}

TEST_F(PreprocessorTest, AChainOfTwoThousandIncludesNeedsNoStack) {
  constexpr int COUNT = 2000;
  for (int i = 0; i < COUNT; ++i) {
    folder.write(std::to_string(i), "#include \"" + std::to_string(i + 1) + "\"");
  }
  folder.write(std::to_string(COUNT), "x 1");
  double version = 0.0;
  runOnSmallStack([&] { version = processFile("0"); });
  EXPECT_EQ(version, 1.0);
  EXPECT_EQ(sink.text, "x 1");
}

// --- Rule 2: version lines -----------------------------------------------------------------------

TEST_F(PreprocessorTest, AVersionLineIsDroppedWithItsLineFeed) {
  EXPECT_EQ(process("#SerialVersion 2.5\na 1\n"), 2.5);
  EXPECT_THAT(sink.events, ElementsAre("begin main.cfg", "version 0:#SerialVersion 2.5\n",
                                       "run 19:a 1\n", "end 2.5"));
}

TEST_F(PreprocessorTest, TheLastVersionLineCounts) {
  EXPECT_EQ(process("#SerialVersion 1.1\na 1\n#SerialVersion 1.3\n"), 1.3);
}

TEST_F(PreprocessorTest, AVersionLineMayEndWithTheText) {
  EXPECT_EQ(process("a 1\n#SerialVersion 1.1"), 1.1);
  EXPECT_EQ(sink.text, "a 1\n");
}

TEST_F(PreprocessorTest, AVersionLineIsTakenInTheMiddleOfALine) {
  EXPECT_EQ(process("a 1 #SerialVersion 1.1\nb 2"), 1.1);
  EXPECT_EQ(sink.text, "a 1 b 2");
}

TEST_F(PreprocessorTest, AVersionLineIsTakenInsideAString) {
  EXPECT_EQ(process("s \"x#SerialVersion 1.1\"\ny\""), 1.1);
  EXPECT_EQ(sink.text, "s \"xy\"");
}

TEST_F(PreprocessorTest, AVersionLineInACommentIsDroppedWithIt) {
  EXPECT_EQ(process("// #SerialVersion 2\na 1"), 1.0);
}

TEST_F(PreprocessorTest, AnIncludeBehindAVersionIsPartOfItsLine) {
  EXPECT_EQ(process("#SerialVersion 1.1 #include \"missing.cfg\"\na 1"), 1.1);
  EXPECT_EQ(sink.text, "a 1");
}

TEST_F(PreprocessorTest, TextBehindTheNumberOfAVersionLineIsIgnored) {
  EXPECT_EQ(process("#SerialVersion 1.1 // note\r\na 1"), 1.1);
  EXPECT_EQ(sink.text, "a 1");
}

TEST_F(PreprocessorTest, BlanksBeforeTheNumberOfAVersionLineAreSkipped) {
  EXPECT_EQ(process("#SerialVersion   1.1\n"), 1.1);
}

TEST_F(PreprocessorTest, AVersionLineWithoutANumberDeclares0) {
  EXPECT_EQ(process("#SerialVersion none\na 1"), 0.0);
}

TEST_F(PreprocessorTest, AVersionMarkerAtTheEndOfTheTextDeclares0) {
  EXPECT_EQ(process("a 1\n#SerialVersion "), 0.0);
}

TEST_F(PreprocessorTest, ADeclaredVersion0FailsWithoutAMessage) {
  EXPECT_EQ(process("#SerialVersion 0\na 1"), 0.0);
  EXPECT_THAT(sink.warnings, IsEmpty());
}

TEST_F(PreprocessorTest, ADeclaredVersion0IsMendedByALaterLine) {
  EXPECT_EQ(process("#SerialVersion 0\n#SerialVersion 1.1\na 1"), 1.1);
}

TEST_F(PreprocessorTest, ANegativeVersionIsReturnedAsItIs) {
  EXPECT_EQ(process("#SerialVersion -2\n"), -2.0);
}

TEST_F(PreprocessorTest, AVersionMarkerWithoutItsBlankStays) {
  EXPECT_EQ(strip("#SerialVersion\t2\n#SerialVersion"), "#SerialVersion\t2\n#SerialVersion");
}

TEST_F(PreprocessorTest, AVersionMarkerInTheMiddleOfAWordIsTakenToo) {
  EXPECT_EQ(process("x#SerialVersion 3\ny"), 3.0);
  EXPECT_EQ(sink.text, "xy");
}

TEST_F(PreprocessorTest, TheVersionOfAnIncludedFileIsNotTheIncluders) {
  folder.write("sub.cfg", "#SerialVersion 2.5\nx 1\n");
  EXPECT_EQ(process("#SerialVersion 1.1\n#include \"sub.cfg\""), 1.1);
  EXPECT_EQ(sink.text, "x 1\n");
}

TEST_F(PreprocessorTest, AnIncludedFileBeginsWithVersion10) {
  folder.write("sub.cfg", "x 1");
  process("#SerialVersion 2\n#include \"sub.cfg\"");
  EXPECT_THAT(sink.events, testing::Contains("end 1.0"));
}

// --- Rule 3: comments ----------------------------------------------------------------------------

TEST_F(PreprocessorTest, ACommentIsDroppedWithItsLineFeedSoThatTheLinesJoin) {
  EXPECT_EQ(strip("a = 1; // note\nb = 2;"), "a = 1; b = 2;");
}

TEST_F(PreprocessorTest, ACommentIsToldWithItsOffsets) {
  process("a 1 // note\nb 2");
  EXPECT_THAT(sink.events, ElementsAre("begin main.cfg", "run 0:a 1 ", "comment 4:// note\n",
                                       "run 12:b 2", "end 1.0"));
}

TEST_F(PreprocessorTest, ACommentMayEndWithTheText) { EXPECT_EQ(strip("a 1 // note"), "a 1 "); }

TEST_F(PreprocessorTest, ACommentMayBeTwoSlashesAtTheEndOfTheText) {
  EXPECT_EQ(strip("a 1//"), "a 1");
}

TEST_F(PreprocessorTest, OneSlashAtTheEndOfTheTextStays) { EXPECT_EQ(strip("a 1/"), "a 1/"); }

TEST_F(PreprocessorTest, OneSlashStays) { EXPECT_EQ(strip("a/b / c"), "a/b / c"); }

TEST_F(PreprocessorTest, ThreeSlashesAreAComment) { EXPECT_EQ(strip("a///b\nc"), "ac"); }

TEST_F(PreprocessorTest, ACommentBeginsInTheMiddleOfAWord) {
  EXPECT_EQ(strip("ab//cd\nef"), "abef");
}

TEST_F(PreprocessorTest, ACommentGoesOnOverACarriageReturn) {
  EXPECT_EQ(strip("a // note\rb 2\nc 3"), "a c 3");
}

TEST_F(PreprocessorTest, CommentsOnSeveralLinesAreToldOneByOne) {
  process("// one\n// two\n");
  EXPECT_THAT(sink.events,
              ElementsAre("begin main.cfg", "comment 0:// one\n", "comment 7:// two\n", "end 1.0"));
}

TEST_F(PreprocessorTest, AQuoteInACommentBeginsNoString) {
  EXPECT_EQ(strip("a 1 // don\"t\nb // gone\n"), "a 1 b ");
}

TEST_F(PreprocessorTest, SlashesInsideAStringStay) {
  EXPECT_EQ(strip("s \"a//b\" // note\n"), "s \"a//b\" ");
}

TEST_F(PreprocessorTest, SlashAndStarAreNoComment) { EXPECT_EQ(strip("/* a */"), "/* a */"); }

TEST_F(PreprocessorTest, TheOpeningFoldMarkerIsAComment) {
  EXPECT_EQ(strip("//g/*{{{*/\ng 1\n/*}}}*/"), "g 1\n/*}}}*/");
}

// --- Rule 4: strings and backslashes -------------------------------------------------------------

TEST_F(PreprocessorTest, AnEscapedQuoteDoesNotEndAString) {
  EXPECT_EQ(strip(R"(s "a\"//b" //c)"), R"(s "a\"//b" )");
}

TEST_F(PreprocessorTest, TheCommentBehindAStringOfManySlashesIsDropped) {
  EXPECT_EQ(strip("s \"http://a/b//c/d#e//f\" //gone"), "s \"http://a/b//c/d#e//f\" ");
}

TEST_F(PreprocessorTest, AnEscapedQuoteBehindSlashesInAStringDoesNotEndIt) {
  EXPECT_EQ(strip(R"(s "a//b\"c//d" //gone)"), R"(s "a//b\"c//d" )");
}

TEST_F(PreprocessorTest, AQuoteBehindTwoBackslashesEndsAString) {
  EXPECT_EQ(strip(R"(s "a\\"//b)"), R"(s "a\\")");
}

TEST_F(PreprocessorTest, AQuoteBehindThreeBackslashesDoesNotEndAString) {
  EXPECT_EQ(strip(R"(s "a\\\"//b)"), R"(s "a\\\"//b)");
}

TEST_F(PreprocessorTest, AnEscapedQuoteOutsideAStringBeginsNone) {
  EXPECT_EQ(strip(R"(a \"//b)"), R"(a \")");
}

TEST_F(PreprocessorTest, ABackslashFurtherBackDoesNotEscape) {
  EXPECT_EQ(strip(R"(s "\a"//b)"), R"(s "\a")");
}

TEST_F(PreprocessorTest, ABackslashFurtherBackDoesNotCount) {
  EXPECT_EQ(strip(R"(s "\a\"//b")"), R"(s "\a\"//b")");
}

TEST_F(PreprocessorTest, AStringGoesOnOverALineFeed) {
  EXPECT_EQ(strip("s \"a\n//b\" //c"), "s \"a\n//b\" ");
}

TEST_F(PreprocessorTest, AQuoteAsTheFirstByteBeginsAString) {
  EXPECT_EQ(strip("\"//a\"//b"), "\"//a\"");
}

TEST_F(PreprocessorTest, AnIncludedFileBeginsOutsideAString) {
  folder.write("sub.cfg", "x //gone\ny");
  EXPECT_EQ(strip("s \"#include \"sub.cfg\"\""), "s \"x y\"");
}

TEST_F(PreprocessorTest, AnUnclosedStringOfAnIncludedFileEndsWithIt) {
  folder.write("sub.cfg", "\"open");
  EXPECT_EQ(strip("#include \"sub.cfg\" //gone"), "\"open ");
}

TEST_F(PreprocessorTest, TheStringAroundAnIncludeGoesOnBehindIt) {
  folder.write("sub.cfg", "x");
  EXPECT_EQ(strip("s \"#include \"sub.cfg\"//kept\""), "s \"x//kept\"");
}

// A directive or comment leaves the number of backslashes as it was, so that one backslash before
// it and one behind it add up to two, and the quote behind the second is not escaped.

TEST_F(PreprocessorTest, ABackslashBeforeAnIncludeCountsBehindIt) {
  folder.write("sub.cfg", "");
  EXPECT_EQ(strip(R"(\#include "sub.cfg"\"//kept)"), R"(\\"//kept)");
}

TEST_F(PreprocessorTest, ABackslashBeforeAVersionLineCountsBehindIt) {
  EXPECT_EQ(strip("\\#SerialVersion 1.1\n\\\"//kept"), "\\\\\"//kept");
}

TEST_F(PreprocessorTest, ABackslashBeforeACommentCountsBehindIt) {
  EXPECT_EQ(strip("\\//note\n\\\"//kept"), "\\\\\"//kept");
}

TEST_F(PreprocessorTest, ABackslashBeforeAnIncludeDoesNotEscapeAQuoteBehindIt) {
  folder.write("sub.cfg", "");
  EXPECT_EQ(strip(R"(\#include "sub.cfg""//kept)"), R"(\"//kept)");
}

TEST_F(PreprocessorTest, ABackslashBeforeACommentDoesNotEscapeAQuoteBehindIt) {
  EXPECT_EQ(strip("\\//note\n\"//kept"), "\\\"//kept");
}

TEST_F(PreprocessorTest, BackslashesOfAnIncludedFileDoNotCountInItsIncluder) {
  folder.write("sub.cfg", "\\");
  EXPECT_EQ(strip(R"(#include "sub.cfg"\"//gone)"), R"(\\")");
}

// --- Where files are found -----------------------------------------------------------------------

TEST_F(PreprocessorTest, AMissingFileGivesAWarningWithTheNameAsGiven) {
  EXPECT_EQ(processFile("missing.cfg"), 0.0);
  EXPECT_THAT(sink.warnings, ElementsAre("File 'missing.cfg' not found.\n"));
}

TEST_F(PreprocessorTest, AMissingFileIsNotBegun) {
  processFile("missing.cfg");
  EXPECT_THAT(sink.events, IsEmpty());
}

TEST_F(PreprocessorTest, WithoutSearchPathsNothingIsFound) {
  folder.write("main.cfg", "a 1");
  searchPaths.clear();
  EXPECT_EQ(processFile(folder.getPath("main.cfg")), 0.0);
}

TEST_F(PreprocessorTest, ACompressedFileIsPreprocessedToo) {
  searchPaths = {""};
  folder.writeCompressed("main.cfg", "#SerialVersion 1.1$\na 1 // note$\nb 2$\n");
  EXPECT_EQ(processFile(folder.getPath("main.cfg")), 1.1);
  EXPECT_EQ(sink.text, "a 1 b 2\n");
}
