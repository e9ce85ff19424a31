#include <Quarry/ParserFile.h>
#include <Quarry/internal/Preprocessor.h>
#include <gmock/gmock.h>

#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/Documents.h"
#include "support/PlainPreprocessor.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

// The preprocessor looks at many bytes at once and at quotes only when it has to. These tests hold
// it against the rules as they are written, one byte after the other, and move what it looks for
// over every place of its blocks. Reading a file, which removes no comments before it has to, is
// held against reading what the preprocessor makes of it.

using TestSupport::Files;
using TestSupport::PlainPreprocessor;

namespace {

/// Overwrites each run as soon as it was told, as a sink may.
class OverwritingSink {
 public:
  void beginFile(const std::string&, const std::string&, std::string& text) {
    texts.push_back(&text);
  }
  void run(std::size_t offset, std::string_view bytes) {
    out += bytes;
    texts.back()->replace(offset, bytes.size(), bytes.size(), '"');
  }
  void comment(std::size_t offset, std::string_view bytes) { overwrite(offset, bytes.size()); }
  void versionLine(std::size_t offset, std::string_view bytes) { overwrite(offset, bytes.size()); }
  void include(std::size_t offset, std::string_view bytes, const std::string&) {
    overwrite(offset, bytes.size() - 1);
  }
  void endFile(double) { texts.pop_back(); }
  void unclosedInclude(std::size_t) {}
  void warning(Quarry::FileDiagnostic, const std::string&) {}

  std::string out;

 private:
  void overwrite(std::size_t offset, std::size_t size) {
    texts.back()->replace(offset, size, size, '/');
  }

  std::vector<std::string*> texts;
};

/// A folder with "main.cfg" and what it includes, the only search path.
class PreprocessorScanTest : public testing::Test {
 protected:
  PreprocessorScanTest() {
    add("empty.cfg", "");
    add("backslash.cfg", "\\");
    add("quote.cfg", "\"");
    add("text.cfg", "x \"y\" // z\n");
    add("versions.cfg", "#SerialVersion 2\nx#SerialVersion 1.5\n");
    add("nested.cfg", "<#include \"quote.cfg\"//kept?\n#include \"text.cfg\">");
    add("zero.cfg", "x#SerialVersion 0\ny");
    add("unclosed.cfg", "x 1 #include \"text.cfg\n");
  }

  /// Holds what becomes of "main.cfg" with `text` against the plain rules.
  void check(const std::string& text) {
    add("main.cfg", text);
    std::string expected;
    const double version = PlainPreprocessor(files).process("main.cfg", expected);
    std::string out;
    ASSERT_EQ(file.preprocessFile(out, "main.cfg", included), version) << text;
    ASSERT_EQ(out, expected) << text;
    OverwritingSink sink;
    ASSERT_EQ(Quarry::Preprocessor(file.getSearchPaths(), sink).process("main.cfg"), version);
    ASSERT_EQ(sink.out, expected) << text;
    if (version > 0.0) checkReading(text, expected, version);
  }

  /// Checks `special` at every place of three blocks, between ordinary bytes and in a string.
  void checkEverywhere(const std::string& special) {
    for (std::size_t before = 0; before < 50; ++before) {
      for (const std::size_t behind : {0U, 1U, 14U, 15U, 16U, 17U, 40U}) {
        check(std::string(before, 'a') + special + std::string(behind, 'b'));
        check('"' + std::string(before, 'a') + special + std::string(behind, 'b') + "\"//c");
      }
    }
  }

  void checkGenerated(const std::vector<std::string>& pieces, unsigned seed, int count) {
    std::mt19937 random(seed);
    for (int i = 0; i < count && !HasFatalFailure(); ++i) {
      std::string text;
      for (auto left = random() % 24; left > 0; --left)
        text += pieces[random() % pieces.size()];
      check(text);
    }
  }

 private:
  void checkReading(const std::string& text, const std::string& preprocessed, double version) {
    console.clear();
    Quarry::ParserGroup group("root");
    group.setText(preprocessed, version);
    const std::vector<std::string> warnings = console.getWarnings();
    console.clear();
    file.clear();
    ASSERT_TRUE(file.read("main.cfg")) << text;
    ASSERT_EQ(console.getWarnings(), warnings) << text;
    ASSERT_EQ(TestSupport::describe(file.getRoot()), TestSupport::describe(group)) << text;
  }

  void add(const std::string& name, const std::string& text) {
    folder.write(name, text);
    files[name] = text;
  }

  const TestSupport::TemporaryFolder folder;
  TestSupport::RecordingConsole console;
  Files files;
  Quarry::ParserFile file;
  std::set<std::string> included;

  void SetUp() override { file.setSearchPaths({folder.getPath()}); }
};

}  // namespace

// --- Every place of a block ----------------------------------------------------------------------

TEST_F(PreprocessorScanTest, ACommentIsFoundAtEveryPlace) { checkEverywhere("//c\n"); }

TEST_F(PreprocessorScanTest, ACommentAtTheEndIsFoundAtEveryPlace) { checkEverywhere("//"); }

TEST_F(PreprocessorScanTest, ASlashStaysAtEveryPlace) { checkEverywhere("/"); }

TEST_F(PreprocessorScanTest, AnIncludeIsFoundAtEveryPlace) {
  checkEverywhere("#include \"text.cfg\"");
}

TEST_F(PreprocessorScanTest, AnUnclosedIncludeIsFoundAtEveryPlace) {
  checkEverywhere("#include \"text.cfg");
}

TEST_F(PreprocessorScanTest, AVersionLineIsFoundAtEveryPlace) {
  checkEverywhere("#SerialVersion 2\n");
}

TEST_F(PreprocessorScanTest, AMarkerCutShortStaysAtEveryPlace) {
  checkEverywhere("#include ");
  checkEverywhere("#SerialVersion");
}

TEST_F(PreprocessorScanTest, AStringKeepsItsSlashesAtEveryPlace) {
  checkEverywhere("\"a//b\"//c\n");
}

TEST_F(PreprocessorScanTest, AnEscapedQuoteIsSeenAtEveryPlace) { checkEverywhere("\\\"//c\n"); }

TEST_F(PreprocessorScanTest, AnEscapedBackslashIsSeenAtEveryPlace) {
  checkEverywhere("\\\\\"//c\n");
}

TEST_F(PreprocessorScanTest, BackslashesAroundACommentAreSeenAtEveryPlace) {
  checkEverywhere("\\//c\n\\\"//d\n");
}

TEST_F(PreprocessorScanTest, BackslashesAroundAnIncludeAreSeenAtEveryPlace) {
  checkEverywhere("\\#include \"empty.cfg\"\\\"//d\n");
}

// --- Any order -----------------------------------------------------------------------------------

TEST_F(PreprocessorScanTest, QuotesBackslashesAndSlashesFollowTheRulesInAnyOrder) {
  checkGenerated({"\"", "\\", "/", "//", "\n", "a", "#", "0123456789abcdef"}, 1, 6000);
}

TEST_F(PreprocessorScanTest, DirectivesFollowTheRulesInAnyOrder) {
  checkGenerated({"\"", "\\", "\\\"", "//c", "\n", "a", "#include \"", "#SerialVersion ",
                  "#SerialVersion 2\n", "#include \"empty.cfg\"", "1.5", "text.cfg\""},
                 2, 6000);
}

TEST_F(PreprocessorScanTest, NamedValuesAndCommentsFollowTheRulesInAnyOrder) {
  checkGenerated({"name ", "5", "\"s\"", "{", "}", " ", "\n", "// c\n", "//c", "/", "=", ",",
                  "#SerialVersion 1.5\n", "<empty>"},
                 5, 3000);
}

TEST_F(PreprocessorScanTest, IncludedFilesFollowTheRulesInAnyOrder) {
  checkGenerated({"\"", "\\", "\\\"", "//", "\n", "a//b", "text of some length",
                  "#include \"empty.cfg\"", "#include \"backslash.cfg\"", "#include \"quote.cfg\"",
                  "#include \"text.cfg\"", "#include \"versions.cfg\"", "#include \"nested.cfg\""},
                 3, 6000);
}

TEST_F(PreprocessorScanTest, FailuresFollowTheRulesInAnyOrder) {
  checkGenerated({"\"", "// c\n", "\n", "text of some length", "#SerialVersion 2\n",
                  "#SerialVersion 0\n", "#include \"text.cfg\"", "#include \"zero.cfg\"",
                  "#include \"unclosed.cfg\"", "#include \"missing.cfg\"", "#include \"text.cfg"},
                 4, 3000);
}
