// Memory that runs out while documents are read from files.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "Consistency.h"
#include "Faults.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using TestSupport::Attempt;
using TestSupport::expectConsistent;
using TestSupport::forEveryFault;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::writeLines;

namespace {

const std::string LONG_STRING = "a string that is longer than a value";
const std::string LONG_FILE = "a_file_with_a_name_that_is_long.cfg";

const std::string TEXT =
    "#SerialVersion 1.1\n// a comment\na 1 \"" + LONG_STRING + "\" // another\ng { b 2 }\n";

std::string repeat(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result += text;
  return result;
}

/// Files that are read from.
class ReadFaultTest : public testing::Test {
 protected:
  /// Expects that reading the file fails cleanly wherever memory runs out, and works with the same
  /// document when there is memory again.
  void checkReading(const std::string& name) {
    const std::string expected = readAndWrite(name);
    forEveryFault([&](Attempt& attempt) {
      const RecordingConsole console;
      ParserFile file;
      prepare(file);
      bool result = false;
      const bool isComplete = attempt.run([&] { result = file.read(name); });
      EXPECT_EQ(result, isComplete);
      EXPECT_TRUE(console.isSilent());
      if (isComplete) {
        EXPECT_EQ(writeLines(file.getRoot()), expected);
      }
      checkReadingAgain(file, name, expected);
    });
  }

  void checkReadingAgain(ParserFile& file, const std::string& name, const std::string& expected) {
    expectConsistent(file.getRoot());
    file.clear();
    file.setSearchPaths(paths);
    EXPECT_TRUE(file.read(name));
    EXPECT_EQ(writeLines(file.getRoot()), expected);
    EXPECT_EQ(file.getSearchPaths(), paths);
  }

  /// Expects that reading fails with one warning, or because memory runs out.
  void expectOneWarning(const std::string& name) {
    forEveryFault([&](Attempt& attempt) {
      const RecordingConsole console;
      ParserFile file;
      prepare(file);
      bool result = false;
      const bool isComplete = attempt.run([&] { result = file.read(name); });
      EXPECT_FALSE(result);
      EXPECT_EQ(console.getWarnings().size(), isComplete ? 1U : 0U);
      EXPECT_EQ(writeLines(file.getRoot()), "");
    });
  }

  void prepare(ParserFile& file) {
    file.setSearchPaths(paths);
    file.setLimits(limits);
  }

  std::string readAndWrite(const std::string& name) {
    ParserFile file;
    prepare(file);
    EXPECT_TRUE(file.read(name));
    return writeLines(file.getRoot());
  }

  const TemporaryFolder folder;
  std::vector<std::string> paths = {folder.getPath("missing"), folder.getPath()};
  Quarry::ParserLimits limits;
};

}  // namespace

// --- Plain files ---------------------------------------------------------------------------------

TEST_F(ReadFaultTest, AFile) {
  folder.write(LONG_FILE, TEXT);
  checkReading(LONG_FILE);
}

TEST_F(ReadFaultTest, AFileOfSeveralBlocks) {
  folder.write(LONG_FILE, TEXT + "long \"" + std::string(100000, 's') + "\" // end");
  checkReading(LONG_FILE);
}

TEST_F(ReadFaultTest, AFileUnderItsOwnNameBehindManySearchPaths) {
  paths.assign(20, folder.getPath("a_folder_that_is_missing"));
  checkReading(folder.write(LONG_FILE, TEXT));
}

TEST_F(ReadFaultTest, AFileWithManyCommentsAndEscapedQuotes) {
  folder.write(LONG_FILE, repeat("a \"b // \\\"c\\\" d\" // e\n", 50));
  checkReading(LONG_FILE);
}

TEST_F(ReadFaultTest, AFileThatIncludesOthersWithinOthers) {
  folder.write("deep.cfg", "deep 1\n#SerialVersion 1.1\n");
  folder.write("sub/a_second_file_with_a_long_name.cfg", "x \"y\" #include \"deep.cfg\"\nz 1 ");
  folder.write(LONG_FILE, "#SerialVersion 1.1\n" +
                              repeat("g { #include \"sub/a_second_file_with_a_long_name.cfg\"\n}\n"
                                     "#include \"deep.cfg\"\n",
                                     3));
  checkReading(LONG_FILE);
}

TEST_F(ReadFaultTest, AnIncludedFileThatIsMissingIsToldOfOrMemoryRunsOut) {
  folder.write(LONG_FILE, "a 1 #include \"a_file_that_is_missing_and_has_a_long_name.cfg\"");
  expectOneWarning(LONG_FILE);
}

TEST_F(ReadFaultTest, TheTextThatIsPreprocessed) {
  folder.write("sub.cfg", "x 1 // y\n");
  folder.write(LONG_FILE, TEXT + "#include \"sub.cfg\" end 1");
  std::set<std::string> included;
  ParserFile file;
  file.setSearchPaths(paths);
  std::string expected = "before ";
  ASSERT_EQ(file.preprocessFile(expected, LONG_FILE, included), 1.1);
  forEveryFault([&](Attempt& attempt) {
    std::string text = "before ";
    double version = -1.0;
    const bool isComplete =
        attempt.run([&] { version = file.preprocessFile(text, LONG_FILE, included); });
    EXPECT_EQ(version, isComplete ? 1.1 : -1.0);
    EXPECT_EQ(text, isComplete ? expected : expected.substr(0, text.size()));
    EXPECT_EQ(file.getSearchPaths(), paths);
  });
}

// --- Limits --------------------------------------------------------------------------------------

TEST_F(ReadFaultTest, AFileWithinLimits) {
  folder.write("deep.cfg", "deep { a 1 } ");
  folder.write("sub.cfg", "x 1 #include \"deep.cfg\" z 1 ");
  folder.write(LONG_FILE, TEXT + "#include \"sub.cfg\"\n#include \"deep.cfg\"\n");
  limits.includeDepth = 2;
  limits.preprocessedBytes = 1000;
  limits.nestingDepth = 1;
  limits.includesBelowSearchPaths = true;
  checkReading(LONG_FILE);
}

TEST_F(ReadFaultTest, AFileThatIncludesItselfIsToldOfOrMemoryRunsOut) {
  folder.write(LONG_FILE, "a 1 #include \"a_second_file_with_a_long_name.cfg\"");
  folder.write("a_second_file_with_a_long_name.cfg", "b 2 #include \"" + LONG_FILE + '"');
  limits.includeDepth = 5;
  expectOneWarning(LONG_FILE);
}

TEST_F(ReadFaultTest, AFileThatExceedsALimitIsToldOfOrMemoryRunsOut) {
  folder.write(LONG_FILE, TEXT + std::string(1000, ' '));
  limits.preprocessedBytes = 1000;
  expectOneWarning(LONG_FILE);
}

TEST_F(ReadFaultTest, AGroupThatIsTooDeepIsToldOfOrMemoryRunsOut) {
  folder.write(LONG_FILE, repeat("g { h { i { a 1 } } }\n", 5));
  limits.nestingDepth = 1;
  forEveryFault([&](Attempt& attempt) {
    const RecordingConsole console;
    ParserFile file;
    prepare(file);
    bool result = true;
    const bool isComplete = attempt.run([&] { result = file.read(LONG_FILE); });
    EXPECT_EQ(result, !isComplete);
    EXPECT_EQ(console.getWarnings().size(), isComplete ? 1U : 0U);
    expectConsistent(file.getRoot());
  });
}

// --- Compressed files ----------------------------------------------------------------------------

TEST_F(ReadFaultTest, ACompressedFile) {
  checkReading(folder.writeCompressed(
      LONG_FILE, "#SerialVersion 1.1$\n" + repeat("a \"" + LONG_STRING + "\"$\n", 20)));
}

TEST_F(ReadFaultTest, ACompressedFileWithinAnother) {
  const std::string inner = folder.writeCompressed("inner.cfg", repeat("b 2$\n", 30));
  checkReading(folder.writeCompressed(LONG_FILE, "a 1 #include \"" + inner + "\"$\nc 3$\n"));
}

// --- Names and paths -----------------------------------------------------------------------------

TEST_F(ReadFaultTest, SearchPathsAreSetOrNot) {
  const std::vector<std::string> others(5, folder.getPath("another_folder_with_a_long_name"));
  forEveryFault([&](Attempt& attempt) {
    ParserFile file;
    attempt.run([&] { file.setSearchPaths(others); });
    for (const std::string& path : file.getSearchPaths())
      EXPECT_EQ(path, others.front());
    file.setSearchPaths(paths);
    EXPECT_EQ(file.getSearchPaths(), paths);
  });
}

TEST_F(ReadFaultTest, ADocumentIsMadeWithANameOrNot) {
  forEveryFault([&](Attempt& attempt) {
    attempt.run([&] {
      const ParserFile unnamed;
      const ParserFile named("a_folder_with_a_long_name/" + LONG_FILE);
    });
  });
}
