#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ToolProcess.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <sstream>
#include <string>

/// What holds for each command that reads a document, on the kinds of documents that tools often
/// stumble over.
namespace ToolTest {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

/// A command line, in which FILE stands for the document.
struct Command {
  const char* name;
  Arguments arguments;
};

void PrintTo(const Command& command, std::ostream* stream) { *stream << command.name; }

std::string nameOf(const testing::TestParamInfo<Command>& command) { return command.param.name; }

/// Each command so that it works on an item `last` with one value.
const Command COMMANDS[] = {
    {"tree", {"tree", "FILE"}},
    {"list", {"list", "FILE"}},
    {"find", {"find", "FILE", "last"}},
    {"get", {"get", "FILE", "last"}},
    {"words", {"words", "FILE"}},
    {"expand", {"expand", "FILE"}},
    {"check", {"check", "FILE"}},
    {"format", {"format", "FILE"}},
    {"set", {"set", "FILE", "last", "7", "-o", "-"}},
    {"add", {"add", "FILE", "new", "7", "-o", "-"}},
    {"remove", {"remove", "FILE", "last", "-o", "-"}},
    {"rename", {"rename", "FILE", "last", "new", "-o", "-"}},
    {"rewrite", {"rewrite", "FILE"}},
    {"encode", {"encode", "FILE"}},
    {"convert", {"convert", "FILE"}},
};

Arguments makeArguments(const Command& command, const std::string& file) {
  Arguments arguments = command.arguments;
  std::replace(arguments.begin(), arguments.end(), std::string("FILE"), file);
  return arguments;
}

std::string without(std::string text, char byte) {
  text.erase(std::remove(text.begin(), text.end(), byte), text.end());
  return text;
}

/// Takes the first column off what `words` shows: CR and LF each count as a line there.
std::string withoutPlaces(const std::string& output) {
  constexpr std::size_t WIDTH = 10;
  std::istringstream lines(output);
  std::string rest;
  for (std::string line; std::getline(lines, line);)
    rest += line.substr(WIDTH) + "\n";
  return rest;
}

std::string repeat(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i)
    all += text;
  return all;
}

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whether the command tells of what the parser finds wrong in the rest of the document.
bool tellsWarnings(const std::string& name) {
  return isOneOf(name, {"tree", "list", "find", "check", "rewrite", "encode", "convert"});
}

class EveryCommandTest : public testing::TestWithParam<Command> {
 protected:
  EveryCommandTest() : inside(folder.getPath()) {}

  Result run(const std::string& file, const std::string& input = std::string()) const {
    return runTool(makeArguments(GetParam(), file), input);
  }

  /// Returns what people are told: check's findings are its output.
  std::string getMessages(const Result& result) const {
    return std::string("check") == GetParam().name ? result.output : result.messages;
  }

  const TemporaryFolder folder;

 private:
  const WorkingDirectory inside;
};

}  // namespace

TEST_P(EveryCommandTest, LineEndsOfWindowsChangeNothingElse) {
  const std::string text = "title \"Harbor\"\n// two\nscene {\n  rate 25\n}\nlast 1\n";
  std::string windows;
  for (const char byte : text)
    windows += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
  Result expected = run("-", text);
  Result result = run("-", windows);
  result.output = without(result.output, '\r');
  if (std::string("words") == GetParam().name) {
    result.output = withoutPlaces(result.output);
    expected.output = withoutPlaces(expected.output);
  }
  EXPECT_EQ(result, expected);
  EXPECT_EQ(result.status, 0);
}

TEST_P(EveryCommandTest, AByteOrderMarkCostsTheFirstWordAndNoMore) {
  const Result result = run("-", "\xEF\xBB\xBF// one\nlast 1\n");
  EXPECT_NE(result.status, 2) << result.messages;
  if (!tellsWarnings(GetParam().name)) return;
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(getMessages(result), HasSubstr("standard input:1:1: "));
}

TEST_P(EveryCommandTest, TenThousandWarningsAreToldEachWithItsPlace) {
  const Result result = run("-", repeat(",\n", 10000) + "last 1\n");
  EXPECT_NE(result.status, 2) << result.messages.substr(0, 200);
  if (!tellsWarnings(GetParam().name)) return;
  const std::string messages = getMessages(result);
  EXPECT_THAT(messages, HasSubstr("standard input:1:1: "));
  EXPECT_THAT(messages, HasSubstr("standard input:10000:1: "));
  EXPECT_EQ(result.status, 1);
}

TEST_P(EveryCommandTest, WhatStandsThreeIncludesDeepBelongsToTheDocument) {
  folder.write("one.cfg", "a 1\n#include \"two.cfg\"\nlast 1\n");
  folder.write("two.cfg", "#include \"three.cfg\"\n");
  folder.write("three.cfg", "deepest 3\n#include \"four.cfg\"\n");
  folder.write("four.cfg", "? b 2\n");
  const Result result = run("one.cfg");
  EXPECT_NE(result.status, 2) << result.messages;
  if (tellsWarnings(GetParam().name)) {
    EXPECT_THAT(getMessages(result), HasSubstr("four.cfg:1:1: "));
  }
  if (isOneOf(GetParam().name,
              {"tree", "list", "words", "expand", "rewrite", "encode", "convert"})) {
    EXPECT_THAT(result.output, HasSubstr("deepest"));
  }
  EXPECT_EQ(folder.read("three.cfg"), "deepest 3\n#include \"four.cfg\"\n");
}

TEST_P(EveryCommandTest, AMissingIncludeIsNamedWithItsPlaceAndNothingIsShown) {
  folder.write("one.cfg", "last 1\n  #include \"missing.cfg\"\n");
  const Result result = run("one.cfg");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(getMessages(result), HasSubstr("one.cfg:2:3: "));
  EXPECT_THAT(getMessages(result), HasSubstr("File 'missing.cfg' not found."));
}

TEST_P(EveryCommandTest, StandardInputIsCalledAsItIsAskedFor) {
  Arguments arguments = makeArguments(GetParam(), "-");
  arguments.insert(arguments.begin() + 1, {"--stdin-filename", "parts/here.cfg"});
  const Result result = runTool(arguments, "last 1\n#include \"missing.cfg\"\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(getMessages(result), HasSubstr("parts/here.cfg:2:1: "));
}

TEST_P(EveryCommandTest, CompressedStandardInputIsUnpacked) {
  folder.writeCompressed("a.cfg.gz", "last 1$\n");
  const std::string packed = folder.read("a.cfg.gz");
  if (std::string("format") == GetParam().name) {
    EXPECT_THAT(run("-", packed).messages, HasSubstr("compressed"));
  } else {
    EXPECT_EQ(run("-", packed), run("-", "last 1\n"));
  }
}

TEST_P(EveryCommandTest, AFileIsOnlyRead) {
  const std::string text = "last   1 // kept\n";
  folder.write("a.cfg", text);
  EXPECT_EQ(run("a.cfg").status, 0);
  EXPECT_EQ(folder.read("a.cfg"), text);
}

TEST_P(EveryCommandTest, OptionsStandAnywhere) {
  Arguments arguments = makeArguments(GetParam(), "-");
  arguments.emplace_back("--no-limits");
  EXPECT_EQ(runTool(arguments, "last 1\n"), run("-", "last 1\n"));
}

INSTANTIATE_TEST_SUITE_P(Commands, EveryCommandTest, testing::ValuesIn(COMMANDS), nameOf);

// --- Commands that read no document --------------------------------------------------------------

TEST(DataCommandTest, DecodeCallsStandardInputAsItIsAskedFor) {
  EXPECT_EQ(runTool({"decode", "--stdin-filename", "here.qdb", "-"}, "a 1"),
            (Result{2, "",
                    "quarry: warning: ParserFile.setBinary: data too short\n"
                    "quarry: warning: ParserFile.setBinary: Unknown format\n"
                    "quarry: error: Cannot read 'here.qdb': it is no whole binary document.\n"}));
}

TEST(DataCommandTest, PackCallsStandardInputAsItIsAskedFor) {
  const Result result =
      runTool({"pack", "--stdin-filename", "here.cfg", "-"}, std::string("a\0b", 3));
  EXPECT_THAT(result.messages, HasSubstr("here.cfg"));
  EXPECT_EQ(result.status, 2);
}

TEST(DataCommandTest, UnpackCallsStandardInputAsItIsAskedFor) {
  const Result result = runTool({"unpack", "--stdin-filename", "here.gz", "-"}, "a 1");
  EXPECT_THAT(result.messages, HasSubstr("here.gz"));
  EXPECT_EQ(result.status, 2);
}

// --- A long wait ---------------------------------------------------------------------------------

TEST(ProgressTest, LongReadingIsToldOnATerminal) {
  const Result result = runWithSlowInput({"list", "-"}, "a 1", 1300);
  EXPECT_EQ(result.output, "a: int 1\n");
  EXPECT_THAT(result.messages, StartsWith("\r\033[KReading standard input (1 s)"));
  EXPECT_THAT(result.messages, EndsWith("\r\033[K"));
}

}  // namespace ToolTest
