#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "EditedDocument.h"
#include "support/LinearTime.h"
#include "support/TemporaryFolder.h"

using Quarry::SourceDocument;
using Quarry::SourceEditor;
using Quarry::SourceLiteral;
using Quarry::SourcePlacement;
using TestSupport::addItem;
using TestSupport::addValue;
using TestSupport::checkEditOfFiles;
using TestSupport::checkRefusedInFiles;
using TestSupport::EditedDocument;
using TestSupport::FileTexts;
using TestSupport::number;
using TestSupport::removeItem;
using TestSupport::removeValue;
using TestSupport::renameItem;
using TestSupport::setValue;
using TestSupport::setValues;
using TestSupport::string;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

// --- Includes ------------------------------------------------------------------------------------

TEST(SourceEditorFileTest, AnItemIsEditedInTheFileInWhichItStands) {
  checkEditOfFiles({{"a.cfg", "x 1\n#include \"b.cfg\"\ny 2\n"},
                    {"b.cfg", "g { // b\n  #include \"c.cfg\"\n}\n"},
                    {"c.cfg", "#include \"d.cfg\"\n"},
                    {"d.cfg", "z 3 // d"}},
                   setValue("g/z", number(4)),
                   {{"a.cfg", "x 1\n#include \"b.cfg\"\ny 2\n"},
                    {"b.cfg", "g { // b\n  #include \"c.cfg\"\n}\n"},
                    {"c.cfg", "#include \"d.cfg\"\n"},
                    {"d.cfg", "z 4 // d"}});
}

TEST(SourceEditorFileTest, ValuesInSeveralFilesAreSetTogether) {
  checkEditOfFiles({{"a.cfg", "x 1 #include \"b.cfg\"\n"}, {"b.cfg", "2 // two\n"}},
                   setValues("x", {number(3), number(4)}),
                   {{"a.cfg", "x 3 #include \"b.cfg\"\n"}, {"b.cfg", "4 // two\n"}});
}

TEST(SourceEditorFileTest, AnItemGoesIntoTheFileOfItsSibling) {
  checkEditOfFiles({{"a.cfg", "#include \"b.cfg\"\n"}, {"b.cfg", "x 1\r\n"}},
                   addItem("", "y", {number(2)}, SourcePlacement::behind("x")),
                   {{"a.cfg", "#include \"b.cfg\"\n"}, {"b.cfg", "x 1\r\ny 2\r\n"}});
}

TEST(SourceEditorFileTest, AnItemOfTheRootGoesIntoTheTopFile) {
  checkEditOfFiles({{"a.cfg", "x 1\n#include \"b.cfg\"\n"}, {"b.cfg", "y 2\n"}},
                   addItem("", "z", {number(3)}),
                   {{"a.cfg", "x 1\n#include \"b.cfg\"\nz 3\n"}, {"b.cfg", "y 2\n"}});
}

TEST(SourceEditorFileTest, AnItemGoesBehindTheIncludeThatEndsItsGroup) {
  checkEditOfFiles({{"a.cfg", "g {\n  #include \"b.cfg\"\n}\n"}, {"b.cfg", "y 2\n"}},
                   addItem("g", "z", {number(3)}),
                   {{"a.cfg", "g {\n  #include \"b.cfg\"\n    z 3\n}\n"}, {"b.cfg", "y 2\n"}});
}

TEST(SourceEditorFileTest, AGroupOnOneLineWithAnIncludeStaysOnIt) {
  checkEditOfFiles({{"a.cfg", "g {#include \"b.cfg\"}\n"}, {"b.cfg", "y 2\n"}},
                   addItem("g", "z", {number(3)}),
                   {{"a.cfg", "g {#include \"b.cfg\" z 3 }\n"}, {"b.cfg", "y 2\n"}});
}

TEST(SourceEditorFileTest, ARemovedGroupTakesItsIncludeAlongAndNotTheFile) {
  checkEditOfFiles({{"a.cfg", "x 1\ng {\n  #include \"b.cfg\"\n}\n"}, {"b.cfg", "y 2\n"}},
                   removeItem("g"), {{"a.cfg", "x 1\n"}, {"b.cfg", "y 2\n"}});
}

TEST(SourceEditorFileTest, AFileThatIsIncludedTwiceIsNotEdited) {
  checkRefusedInFiles({{"a.cfg", "#include \"b.cfg\"\n#include \"b.cfg\"\n"}, {"b.cfg", "y 2\n"}},
                      setValue("y[2]", number(3)),
                      "'b.cfg' is included 2 times, and the edit would change all of them");
}

TEST(SourceEditorFileTest, AFileThatIsIncludedOnceMoreBehindTheDocumentsEndIsEdited) {
  checkEditOfFiles({{"a.cfg", "#include \"b.cfg\"\n}\n#include \"b.cfg\"\n"}, {"b.cfg", "y 2\n"}},
                   setValue("y", number(3)),
                   {{"a.cfg", "#include \"b.cfg\"\n}\n#include \"b.cfg\"\n"}, {"b.cfg", "y 3\n"}});
}

TEST(SourceEditorFileTest, OneFileUnderTwoNamesIsNotEdited) {
  checkRefusedInFiles({{"a.cfg", "#include \"b.cfg\"\n#include \"./b.cfg\"\n"},
                       {"./b.cfg", "y 2\n"},
                       {"b.cfg", "y 2\n"}},
                      setValue("y[1]", number(3)), "'b.cfg' and './b.cfg' are the same file");
}

TEST(SourceEditorFileTest, ACommentBehindTheDocumentsEndDoesNotBecomeAnInclude) {
  checkRefusedInFiles({{"a.cfg", "x 1\n}\n// #include \"b.cfg\"\n"}, {"b.cfg", "y 2\n"}},
                      setValue("x", string("a\"b")),
                      "a string cannot hold a double quote in format 1.0");
  checkRefusedInFiles({{"a.cfg", "x 1\n}\n// #include \"b.cfg\"\n"}, {"b.cfg", "y 2\n"}},
                      setValue("x", SourceLiteral::parse("1\"")),
                      "it would make an include of a comment");
}

TEST(SourceEditorFileTest, ValuesInManyFilesAreSetInLinearTime) {
  const auto make = [](unsigned long count) {
    FileTexts files;
    for (unsigned long i = 0; i < count; ++i) {
      const std::string name = std::to_string(i) + ".cfg";
      files[name] = "1 ";
      files["a.cfg"] += (i == 0 ? "x " : "") + ("#include \"" + name + "\"\n");
    }
    return std::make_unique<EditedDocument>("a.cfg", files);
  };
  TestSupport::checkTakesLinearTime(60, make, [](const std::unique_ptr<EditedDocument>& edited) {
    const unsigned long count = edited->getTree().getItem(0).valueCount;
    EXPECT_TRUE(edited->edit().setValues("x", std::vector(count, number(2))));
    EXPECT_EQ(edited->edit().getChangedTexts().size(), count);
  });
}

TEST(SourceEditorFileTest, AValueInPiecesIsNotSet) {
  checkRefusedInFiles({{"a.cfg", "x 1\n\ny 1#include \"b.cfg\"\n"}, {"b.cfg", "23\n"}},
                      setValue("y", number(3)),
                      "value 1 is put together of several pieces: a.cfg:3:3 b.cfg:1:1");
}

TEST(SourceEditorFileTest, AnItemThatEndsInAnotherFileIsNotRemoved) {
  checkRefusedInFiles({{"a.cfg", "x #include \"b.cfg\"\n"}, {"b.cfg", "1\n"}}, removeItem("x"),
                      "the item begins in one file and ends in another");
}

TEST(SourceEditorFileTest, AGroupThatEndsInAnotherFileIsRenamedAndFilled) {
  checkEditOfFiles({{"a.cfg", "g {\n  x 1\n#include \"b.cfg\"\n"}, {"b.cfg", "}\ny 2\n"}},
                   renameItem("g", "h"),
                   {{"a.cfg", "h {\n  x 1\n#include \"b.cfg\"\n"}, {"b.cfg", "}\ny 2\n"}});
  checkEditOfFiles({{"a.cfg", "g {\n  x 1\n#include \"b.cfg\"\n"}, {"b.cfg", "}\ny 2\n"}},
                   addItem("g", "z", {number(3)}),
                   {{"a.cfg", "g {\n  x 1\n#include \"b.cfg\"\n"}, {"b.cfg", "  z 3\n}\ny 2\n"}});
}

TEST(SourceEditorFileTest, AnIncludedValueIsRemovedFromItsFile) {
  checkEditOfFiles({{"a.cfg", "x 1 #include \"b.cfg\"\n"}, {"b.cfg", "2 // two\n"}},
                   removeValue("x#2"),
                   {{"a.cfg", "x 1 #include \"b.cfg\"\n"}, {"b.cfg", " // two\n"}});
}

TEST(SourceEditorFileTest, TheVersionOfTheTopFileDecidesHowStringsAreSpelled) {
  checkEditOfFiles({{"a.cfg", "#SerialVersion 1.1\n#include \"b.cfg\"\n"},
                    {"b.cfg", "#SerialVersion 1.0\nx 1\n"}},
                   setValue("x", string("a\nb")),
                   {{"a.cfg", "#SerialVersion 1.1\n#include \"b.cfg\"\n"},
                    {"b.cfg", "#SerialVersion 1.0\nx \"a\\nb\"\n"}});
}

TEST(SourceEditorFileTest, AStandInWithAZeroByteIsNotEdited) {
  checkRefusedInFiles({{"a.cfg", std::string("x 1\n\0rest", 9)}}, setValue("x", number(2)),
                      "'a.cfg' holds a zero byte; what is behind it is not read");
}

TEST(SourceEditorFileTest, ATextThatIsNoFileIsEdited) {
  SourceDocument document;
  ASSERT_TRUE(document.readText("<text>", "x 1 // one\n"));
  SourceEditor editor(document);
  EXPECT_TRUE(editor.setValue("x", number(2))) << editor.getProblem();
  EXPECT_EQ(editor.getChangedTexts().at("<text>"), "x 2 // one\n");
}

// --- The disk ------------------------------------------------------------------------------------

namespace {

/// A document on the disk: a top file, and one that a search path finds.
class SourceEditorDiskTest : public testing::Test {
 protected:
  SourceEditorDiskTest() {
    folder.write("a.cfg", "x 1 // one\r\n#include \"b.cfg\"\r\n");
    folder.write("shared/b.cfg", "y 2 // two\n");
    document.setSearchPaths({"shared"});
  }

  SourceEditor& read() {
    EXPECT_TRUE(document.read("a.cfg"));
    editor = std::make_unique<SourceEditor>(document);
    return *editor;
  }

  void checkRefused(const std::string& path, const std::string& reason) {
    EXPECT_FALSE(editor->setValue(path, number(7)));
    EXPECT_EQ(editor->getProblem(), reason);
    EXPECT_TRUE(editor->getChangedTexts().empty());
  }

  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  SourceDocument document;
  std::unique_ptr<SourceEditor> editor;
};

}  // namespace

TEST_F(SourceEditorDiskTest, AnEditStaysInMemoryUntilItIsSaved) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_EQ(folder.read("a.cfg"), "x 1 // one\r\n#include \"b.cfg\"\r\n");
  EXPECT_TRUE(editor->save());
  EXPECT_EQ(folder.read("a.cfg"), "x 7 // one\r\n#include \"b.cfg\"\r\n");
}

TEST_F(SourceEditorDiskTest, TheChangedFilesAreToldByPath) {
  EXPECT_TRUE(read().setValue("y", number(7)));
  EXPECT_THAT(editor->getChangedTexts(),
              testing::ElementsAre(testing::Pair("shared/b.cfg", "y 7 // two\n")));
}

TEST_F(SourceEditorDiskTest, AllChangedFilesAreSaved) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_TRUE(editor->setValue("y", number(8)));
  EXPECT_TRUE(editor->save()) << editor->getProblem();
  EXPECT_EQ(folder.read("a.cfg"), "x 7 // one\r\n#include \"b.cfg\"\r\n");
  EXPECT_EQ(folder.read("shared/b.cfg"), "y 8 // two\n");
  EXPECT_TRUE(editor->getChangedTexts().empty());
}

TEST_F(SourceEditorDiskTest, EditingGoesOnBehindSaving) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_TRUE(editor->save());
  EXPECT_TRUE(editor->setValue("x", number(8)));
  EXPECT_TRUE(editor->save()) << editor->getProblem();
  EXPECT_EQ(folder.read("a.cfg"), "x 8 // one\r\n#include \"b.cfg\"\r\n");
}

TEST_F(SourceEditorDiskTest, ASavedFileSpeaksForItselfAgain) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_NE(document.findText("a.cfg"), nullptr);
  EXPECT_TRUE(editor->save());
  EXPECT_EQ(document.findText("a.cfg"), nullptr);
}

TEST_F(SourceEditorDiskTest, WithoutChangesNothingIsSaved) {
  read();
  std::filesystem::remove("a.cfg");
  EXPECT_TRUE(editor->save());
  EXPECT_FALSE(std::filesystem::exists("a.cfg"));
}

TEST_F(SourceEditorDiskTest, AFileThatChangedSinceItWasReadIsNotEdited) {
  read();
  folder.write("a.cfg", "x 2\n#include \"b.cfg\"\n");
  checkRefused("x", "'a.cfg' has changed since it was read");
}

TEST_F(SourceEditorDiskTest, NothingIsEditedWhenAnotherFileChanged) {
  read();
  folder.write("shared/b.cfg", "y 3\n");
  checkRefused("x", "'shared/b.cfg' has changed since it was read");
}

TEST_F(SourceEditorDiskTest, AFileThatChangedSinceItWasEditedIsNotOverwritten) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  folder.write("a.cfg", "x 2\n");
  EXPECT_FALSE(editor->save());
  EXPECT_EQ(editor->getProblem(), "'a.cfg' has changed since it was read");
  EXPECT_EQ(folder.read("a.cfg"), "x 2\n");
  EXPECT_EQ(editor->getChangedTexts().size(), 1U);
}

TEST_F(SourceEditorDiskTest, AFileThatCannotBeSavedStaysChanged) {
  document.setText("missing/a.cfg", "x 1\n");
  EXPECT_TRUE(document.read("missing/a.cfg"));
  SourceEditor other(document);
  EXPECT_TRUE(other.setValue("x", number(7)));
  EXPECT_FALSE(other.save());
  EXPECT_EQ(other.getProblem(),
            "cannot open the folder of 'missing/a.cfg': No such file or directory");
  EXPECT_EQ(other.getChangedTexts().size(), 1U);
}

TEST_F(SourceEditorDiskTest, ATextThatStoodInForAFileIsSavedWithItsEdits) {
  document.setText("a.cfg", "x 5 // not saved yet\n");
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_TRUE(editor->save()) << editor->getProblem();
  EXPECT_EQ(folder.read("a.cfg"), "x 7 // not saved yet\n");
}

TEST_F(SourceEditorDiskTest, AFileWithAZeroByteIsNotEdited) {
  folder.write("a.cfg", std::string("x 1\n\0rest", 9));
  read();
  checkRefused("x", "'a.cfg' holds a zero byte; what is behind it is not read");
}

TEST_F(SourceEditorDiskTest, ACompressedFileIsNotEdited) {
  folder.writeCompressed("a.cfg", "x 1$\n");
  read();
  checkRefused("x", "'a.cfg' is compressed");
}

TEST_F(SourceEditorDiskTest, APlainFileIsEditedBesideACompressedOne) {
  folder.writeCompressed("c.cfg", "z 1$\n");
  folder.write("a.cfg", "x 1\n#include \"c.cfg\"\n");
  read();
  checkRefused("z", "'c.cfg' is compressed");
  EXPECT_TRUE(editor->setValue("x", number(7))) << editor->getProblem();
}

TEST_F(SourceEditorDiskTest, AFileThatALinkNamesTooIsNotEdited) {
  std::filesystem::create_symlink("shared/b.cfg", "link.cfg");
  folder.write("a.cfg", "x 1\n#include \"b.cfg\"\n#include \"link.cfg\"\n");
  read();
  checkRefused("y[2]", "'link.cfg' and 'shared/b.cfg' are the same file");
}

TEST_F(SourceEditorDiskTest, ALinkStaysOneWhenItsFileIsSaved) {
  std::filesystem::create_symlink("a.cfg", "link.cfg");
  EXPECT_TRUE(document.read("link.cfg"));
  SourceEditor linked(document);
  EXPECT_TRUE(linked.setValue("x", number(7)));
  EXPECT_TRUE(linked.save()) << linked.getProblem();
  EXPECT_TRUE(std::filesystem::is_symlink("link.cfg"));
  EXPECT_EQ(folder.read("a.cfg"), "x 7 // one\r\n#include \"b.cfg\"\r\n");
}

// --- Limits --------------------------------------------------------------------------------------

TEST_F(SourceEditorDiskTest, TheLimitsOfTheDocumentStay) {
  Quarry::ParserLimits limits;
  limits.preprocessedBytes = 44;
  document.setLimits(limits);
  EXPECT_TRUE(read().setValue("x", number(7))) << editor->getProblem();
  EXPECT_EQ(document.getLimits().preprocessedBytes, 44U);
  EXPECT_EQ(document.getLimits().includeDepth, Quarry::ParserLimits::UNLIMITED);
}

TEST_F(SourceEditorDiskTest, AnEditBeyondALimitIsRefused) {
  Quarry::ParserLimits limits;
  limits.preprocessedBytes = 44;
  document.setLimits(limits);
  read();
  EXPECT_FALSE(editor->setValue("x", string("too long for the limit")));
  EXPECT_EQ(editor->getProblem(),
            "it would draw the message: File 'a.cfg' exceeds the limit preprocessedBytes (44).");
}

TEST_F(SourceEditorDiskTest, WithoutLimitsThereAreNoneBehindAnEditEither) {
  EXPECT_TRUE(read().setValue("x", number(7)));
  EXPECT_FALSE(document.getLimits().areSet());
}
