#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <set>
#include <stdexcept>
#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

// How ParserFile puts the text together: of one file in that file's own memory, of several by
// copying.

namespace {

/// A folder that is the only search path, for a document that is not read.
class PreprocessFileTest : public testing::Test {
 protected:
  PreprocessFileTest() { file.setSearchPaths({folder.getPath(), ""}); }

  /// Returns what becomes of `text`.
  std::string expand(const std::string& text) {
    folder.write("main.cfg", text);
    std::string out;
    version = file.preprocessFile(out, "main.cfg", included);
    return out;
  }

  const TestSupport::TemporaryFolder folder;
  const TestSupport::RecordingConsole console;
  Quarry::ParserFile file;
  std::set<std::string> included;
  double version = -1.0;
};

const std::string LONG_TEXT(100000, 'a');

}  // namespace

// --- One file ------------------------------------------------------------------------------------

TEST_F(PreprocessFileTest, AFileOfWhichAllStaysIsTheText) {
  EXPECT_EQ(expand("a 1\n"), "a 1\n");
  EXPECT_EQ(expand(LONG_TEXT), LONG_TEXT);
}

TEST_F(PreprocessFileTest, AnEmptyFileIsAnEmptyText) { EXPECT_EQ(expand(""), ""); }

TEST_F(PreprocessFileTest, AFileOfNothingButCommentsIsAnEmptyText) {
  EXPECT_EQ(expand("// one\n// two"), "");
}

TEST_F(PreprocessFileTest, WhatFollowsAVersionLineIsTheText) {
  EXPECT_EQ(expand("#SerialVersion 1.1\n" + LONG_TEXT), LONG_TEXT);
  EXPECT_EQ(version, 1.1);
}

TEST_F(PreprocessFileTest, WhatPrecedesAVersionLineIsTheText) {
  EXPECT_EQ(expand(LONG_TEXT + "#SerialVersion 1.1\n"), LONG_TEXT);
}

TEST_F(PreprocessFileTest, RunsBetweenCommentsMoveTogether) {
  EXPECT_EQ(expand("a 1 // x\nb 2 // y\nc 3"), "a 1 b 2 c 3");
}

TEST_F(PreprocessFileTest, ARunThatIsLongerThanWhatWasDroppedBeforeItStaysWhole) {
  EXPECT_EQ(expand("//\nabcdefghijklmnopqrstuvwxyz//\n0123456789"),
            "abcdefghijklmnopqrstuvwxyz0123456789");
}

TEST_F(PreprocessFileTest, ARunThatIsShorterThanWhatWasDroppedBeforeItStaysWhole) {
  EXPECT_EQ(expand("// a comment of some length\nab// another one\ncd"), "abcd");
}

TEST_F(PreprocessFileTest, AQuoteBehindMovedBytesSeesTheByteThatStoodBeforeIt) {
  EXPECT_EQ(expand("//\n\\\\a\"b//c\"//d"), "\\\\a\"b//c\"");
}

TEST_F(PreprocessFileTest, AThousandCommentsAreDropped) {
  std::string text;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    text += "item_" + std::to_string(i) + " \"a//b\" // note " + std::to_string(i) + "\n";
    expected += "item_" + std::to_string(i) + " \"a//b\" ";
  }
  EXPECT_EQ(expand(text), expected);
}

TEST_F(PreprocessFileTest, ACompressedFileIsTheTextToo) {
  const std::string path =
      folder.writeCompressed("x.cfg.gz", "#SerialVersion 1.1$\na 1 // x$\nb 2$\n");
  std::string out;
  EXPECT_EQ(file.preprocessFile(out, path, included), 1.1);
  EXPECT_EQ(out, "a 1 b 2\n");
}

// --- Behind what is there already ----------------------------------------------------------------

TEST_F(PreprocessFileTest, TheTextIsAppended) {
  folder.write("x.cfg", "a 1 // x\nb 2");
  std::string out = "before ";
  file.preprocessFile(out, "x.cfg", included);
  EXPECT_EQ(out, "before a 1 b 2");
}

TEST_F(PreprocessFileTest, TwoCallsGiveTwoTexts) {
  folder.write("x.cfg", "a 1\n");
  std::string out;
  file.preprocessFile(out, "x.cfg", included);
  file.preprocessFile(out, "x.cfg", included);
  EXPECT_EQ(out, "a 1\na 1\n");
}

TEST_F(PreprocessFileTest, AFileThatIsNotFoundLeavesWhatIsThere) {
  std::string out = "before";
  EXPECT_EQ(file.preprocessFile(out, "missing.cfg", included), 0.0);
  EXPECT_EQ(out, "before");
}

// --- Several files -------------------------------------------------------------------------------

TEST_F(PreprocessFileTest, WhatStandsAroundAnIncludeStaysAroundIt) {
  folder.write("sub.cfg", "// z\nx 1 // y\n");
  EXPECT_EQ(expand("// a\nb 2 // c\n#include \"sub.cfg\"// d\ne 3"), "b 2 x 1 e 3");
}

TEST_F(PreprocessFileTest, AnIncludeAloneIsTheText) {
  folder.write("sub.cfg", LONG_TEXT);
  EXPECT_EQ(expand("#SerialVersion 2\n#include \"sub.cfg\""), LONG_TEXT);
  EXPECT_EQ(version, 2.0);
}

TEST_F(PreprocessFileTest, TextsOfAllLengthsStayAroundAnInclude) {
  folder.write("sub.cfg", "<#include \"deep.cfg\">");
  folder.write("deep.cfg", "deep");
  for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 100000U}) {
    const std::string around(size, 'a');
    EXPECT_EQ(expand(around + "#include \"sub.cfg\"" + around), around + "<deep>" + around);
  }
}

TEST_F(PreprocessFileTest, AnIncludeIsAppendedToo) {
  folder.write("sub.cfg", "x 1");
  folder.write("main.cfg", "a #include \"sub.cfg\"");
  std::string out = "before ";
  file.preprocessFile(out, "main.cfg", included);
  EXPECT_EQ(out, "before a x 1");
}

// --- Failures ------------------------------------------------------------------------------------

TEST_F(PreprocessFileTest, WhatPrecedesAMissingIncludeStays) {
  EXPECT_EQ(expand("// a\nb 2 // c\nd 3 #include \"missing.cfg\" e 4"), "b 2 d 3 ");
  EXPECT_EQ(version, 0.0);
}

TEST_F(PreprocessFileTest, WhatPrecedesAnUnclosedIncludeStays) {
  EXPECT_EQ(expand("// a\nb 2 // c\nd 3 #include \"missing.cfg e 4"), "b 2 d 3 ");
  EXPECT_EQ(version, 0.0);
}

TEST_F(PreprocessFileTest, WhatPrecedesAnUnclosedIncludeOfAnIncludedFileStays) {
  folder.write("sub.cfg", "x 1 #include \"missing");
  EXPECT_EQ(expand("a 1 #include \"sub.cfg\" b 2"), "a 1 x 1 ");
  EXPECT_EQ(version, 0.0);
}

TEST_F(PreprocessFileTest, TheTextOfAFileOfVersion0Stays) {
  EXPECT_EQ(expand("a 1\n#SerialVersion 0\nb 2"), "a 1\nb 2");
  EXPECT_EQ(version, 0.0);
}

TEST_F(PreprocessFileTest, WhatPrecedesADamagedCompressedIncludeStays) {
  const std::string path = folder.writeCompressed("bad.gz", "a 1$\n\n");
  folder.write("main.cfg", "// a\nb 2 #include \"" + path + "\"");
  std::string out;
  EXPECT_THROW(file.preprocessFile(out, "main.cfg", included), std::out_of_range);
  EXPECT_EQ(out, "b 2 ");
}

// --- From the file to the tree -------------------------------------------------------------------

TEST_F(PreprocessFileTest, ReadGivesTheTreeOfTheText) {
  folder.write("sub.cfg", "x 1 // y\n");
  const std::string text = "#SerialVersion 1.1\na \"b//c\" // d\n#include \"sub.cfg\"";
  Quarry::ParserFile fromText;
  fromText.getRoot().setText(expand(text), version);
  ASSERT_TRUE(file.read("main.cfg"));
  EXPECT_EQ(TestSupport::describe(file.getRoot()), TestSupport::describe(fromText.getRoot()));
  EXPECT_EQ(file.getRoot().getItemCount(), 2U);
}
