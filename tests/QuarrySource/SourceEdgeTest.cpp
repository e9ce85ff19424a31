// Diagnostics, places and edits of the documents in which they are most easily wrong: with CR LF,
// with byte order marks, with very many warnings, and with files three includes deep.

#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceTree.h>
#include <gmock/gmock.h>

#include "EditedDocument.h"
#include "ShownDocument.h"
#include "support/LinearTime.h"

using Quarry::LineColumn;
using Quarry::SourceDocument;
using Quarry::SourcePosition;
using Quarry::SourceTree;
using testing::ElementsAre;
using TestSupport::EditedDocument;
using TestSupport::FileTexts;
using TestSupport::MemoryFiles;
using TestSupport::number;
using TestSupport::readDocument;
using TestSupport::showDiagnostics;
using TestSupport::showOrigin;

namespace {

constexpr unsigned long COUNT = 10000;

/// Returns the path of the item that stands at a place of an opened file.
std::string findPath(const SourceDocument& document, unsigned long opening,
                     const LineColumn& place) {
  const SourcePosition position = {opening, document.getFileOf(opening).getOffset(place)};
  const SourceTree tree(document);
  return tree.getPath(tree.getItemAt(document.getTextOffset(position)));
}

/// Returns where the item of a path stands.
std::string findPlace(const SourceDocument& document, const std::string& path) {
  const SourceTree tree(document);
  return showOrigin(document, tree.getItem(tree.find(path).item).nameBegin);
}

/// Lines with CR LF throughout; the group is opened three includes deep and closed at the top.
const MemoryFiles DEEP = {
    {"a.cfg", "x 1 // top\r\n#include \"b.cfg\"\r\n  y 2\r\n}\r\n"},
    {"b.cfg", "// b\r\n  #include \"c.cfg\"\r\n"},
    {"c.cfg", "\r\n\t#include \"d.cfg\""},
    {"d.cfg", "// d\r\ng { // open\r\n  z 3, 4 // inner\r\n  \xC3\xA4?! 5\r\n"},
};

/// The same with a mark at the beginning of each file. It is part of a word, and a comment takes
/// its line end along: behind it has to stand a blank.
MemoryFiles withMarks(MemoryFiles files) {
  for (auto& [name, text] : files)
    text.insert(0, "\xEF\xBB\xBF ");
  return files;
}

MemoryFiles makeWarnings() {
  std::string text;
  for (unsigned long i = 0; i < COUNT; ++i)
    text += "// note\r\nitem ?! 1\r\n";
  return {{"a.cfg", text}};
}

/// Sets a value and returns the names of the files that this changes, with their new texts.
FileTexts setTo7(const MemoryFiles& files, const std::string& path) {
  EditedDocument edited("a.cfg", FileTexts(files.begin(), files.end()));
  EXPECT_TRUE(edited.edit().setValue(path, number(7))) << edited.getProblem();
  return edited.edit().getChangedTexts();
}

std::string replaced(std::string text, const std::string& before, const std::string& after) {
  return text.replace(text.find(before), before.size(), after);
}

}  // namespace

// --- Three includes deep, with CR LF -------------------------------------------------------------

TEST(SourceEdgeTest, AWarningThreeIncludesDeepHasItsPlaceAndTheWholeChain) {
  EXPECT_THAT(showDiagnostics(*readDocument(DEEP)),
              ElementsAre("unknown-word d.cfg:4:3+4 < c.cfg:2:2 < b.cfg:2:3 < a.cfg:2:1"));
}

TEST(SourceEdgeTest, AnItemThreeIncludesDeepHasItsPlaceAndTheWholeChain) {
  EXPECT_EQ(findPlace(*readDocument(DEEP), "g/z"), "d.cfg:3:3 < c.cfg:2:2 < b.cfg:2:3 < a.cfg:2:1");
}

TEST(SourceEdgeTest, BehindFilesThreeIncludesDeepPlacesAreThoseOfTheTopFile) {
  EXPECT_EQ(findPlace(*readDocument(DEEP), "g/y"), "a.cfg:3:3");
}

TEST(SourceEdgeTest, APlaceThreeIncludesDeepLeadsToItsItem) {
  EXPECT_EQ(findPath(*readDocument(DEEP), 3, {3, 8}), "g/z");
  EXPECT_EQ(findPath(*readDocument(DEEP), 0, {3, 3}), "g/y");
}

TEST(SourceEdgeTest, AnItemThreeIncludesDeepIsEditedThere) {
  EXPECT_EQ(setTo7(DEEP, "g/z#2"), (FileTexts{{"d.cfg", replaced(DEEP[3].second, "4", "7")}}));
}

TEST(SourceEdgeTest, AGroupThatIsOpenedThreeIncludesDeepIsFilledAtTheTop) {
  EditedDocument edited("a.cfg", FileTexts(DEEP.begin(), DEEP.end()));
  EXPECT_TRUE(edited.edit().addItem("g", "w", {number(7)})) << edited.getProblem();
  EXPECT_EQ(edited.getTexts().at("a.cfg"),
            replaced(DEEP[0].second, "  y 2\r\n", "  y 2\r\n  w 7\r\n"));
}

// --- With byte order marks -----------------------------------------------------------------------

TEST(SourceEdgeTest, MarksMoveNoColumnAndAreUnknownWords) {
  EXPECT_THAT(showDiagnostics(*readDocument(withMarks(DEEP))),
              ElementsAre("unknown-word a.cfg:1:1+3", "unknown-word b.cfg:1:1+3 < a.cfg:2:1",
                          "unknown-word c.cfg:1:1+3 < b.cfg:2:3 < a.cfg:2:1",
                          "unknown-word d.cfg:1:1+3 < c.cfg:2:2 < b.cfg:2:3 < a.cfg:2:1",
                          "unknown-word d.cfg:4:3+4 < c.cfg:2:2 < b.cfg:2:3 < a.cfg:2:1"));
}

TEST(SourceEdgeTest, ItemsOfFilesWithMarksHaveTheirPlaces) {
  const auto document = readDocument(withMarks(DEEP));
  EXPECT_EQ(findPlace(*document, "x"), "a.cfg:1:2");
  EXPECT_EQ(findPlace(*document, "g/z"), "d.cfg:3:3 < c.cfg:2:2 < b.cfg:2:3 < a.cfg:2:1");
  EXPECT_EQ(findPath(*document, 0, {1, 2}), "x");
}

TEST(SourceEdgeTest, FilesWithMarksAreEditedAndKeepThem) {
  const MemoryFiles files = withMarks(DEEP);
  EXPECT_EQ(setTo7(files, "x"), (FileTexts{{"a.cfg", replaced(files[0].second, "1", "7")}}));
  EXPECT_EQ(setTo7(files, "g/z#1"), (FileTexts{{"d.cfg", replaced(files[3].second, "3", "7")}}));
}

// --- With very many warnings ---------------------------------------------------------------------

TEST(SourceEdgeTest, ItemsAmongTenThousandWarningsHaveTheirPlaces) {
  const auto document = readDocument(makeWarnings());
  ASSERT_EQ(document->getDiagnostics().size(), COUNT);
  EXPECT_EQ(findPlace(*document, "item[10000]"), "a.cfg:20000:1");
  EXPECT_EQ(findPath(*document, 0, {20000, 1}), "item[10000]");
}

TEST(SourceEdgeTest, AnEditAmongTenThousandWarningsIsMade) {
  const MemoryFiles files = makeWarnings();
  std::string edited = files[0].second;
  edited.replace(edited.rfind('1'), 1, "7");
  EXPECT_EQ(setTo7(files, "item[10000]"), (FileTexts{{"a.cfg", edited}}));
}

TEST(SourceEdgeTest, AnEditThatWouldDrawOneWarningMoreIsRefused) {
  const MemoryFiles files = makeWarnings();
  EditedDocument edited("a.cfg", FileTexts(files.begin(), files.end()));
  EXPECT_FALSE(edited.edit().setValue("item[5000]", Quarry::SourceLiteral::parse("1\"")));
  EXPECT_EQ(edited.getProblem(), "it would draw the message: Unknown word type: '//'");
  EXPECT_TRUE(edited.edit().getChangedTexts().empty());
}

TEST(SourceEdgeTest, EditingAmongWarningsTakesLinearTime) {
  const auto make = [](unsigned long count) {
    std::string text;
    for (unsigned long i = 0; i < count; ++i)
      text += "item ?! 1\n";
    return std::make_unique<EditedDocument>("a.cfg", FileTexts{{"a.cfg", text}});
  };
  TestSupport::checkTakesLinearTime(500, make, [](const std::unique_ptr<EditedDocument>& edited) {
    EXPECT_TRUE(edited->edit().setValue("item[500]", number(7)));
    EXPECT_FALSE(edited->edit().setValue("item[499]", Quarry::SourceLiteral::parse("7//")));
  });
}

// --- Names of files ------------------------------------------------------------------------------

TEST(SourceEdgeTest, AFileMayBeCalledLikeAPathOfItems) {
  const MemoryFiles files = {{"a.cfg", "#include \"d/b[2]#1 \xC3\xA4.cfg\"\n"},
                             {"d/b[2]#1 \xC3\xA4.cfg", "x 1\n?!\n"}};
  EXPECT_THAT(showDiagnostics(*readDocument(files)),
              ElementsAre("unknown-word d/b[2]#1 \xC3\xA4.cfg:2:1+2 < a.cfg:1:1"));
  EXPECT_EQ(setTo7(files, "x"), (FileTexts{{"d/b[2]#1 \xC3\xA4.cfg", "x 7\n?!\n"}}));
}
