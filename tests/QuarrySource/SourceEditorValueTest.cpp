#include <gtest/gtest.h>

#include "EditedDocument.h"
#include "support/LinearTime.h"

using Quarry::SourceLiteral;
using TestSupport::addValue;
using TestSupport::checkEdit;
using TestSupport::checkEditOfFiles;
using TestSupport::checkRefused;
using TestSupport::checkRefusedInFiles;
using TestSupport::EditedDocument;
using TestSupport::number;
using TestSupport::removeValue;
using TestSupport::setValue;
using TestSupport::setValues;
using TestSupport::string;

// --- Set one value -------------------------------------------------------------------------------

TEST(SourceEditorValueTest, TheOnlyValueIsSetByTheItemsPath) {
  checkEdit("title \"old\"  // note\n", setValue("title", string("new")),
            "title \"new\"  // note\n");
}

TEST(SourceEditorValueTest, OneOfSeveralValuesIsSetByItsNumber) {
  checkEdit("size = 1920, 1080\n", setValue("size#2", number(720)), "size = 1920, 720\n");
}

TEST(SourceEditorValueTest, AValueInAGroupIsSet) {
  checkEdit("g{ a 1 a 2 }", setValue("g/a[2]", number(3)), "g{ a 1 a 3 }");
}

TEST(SourceEditorValueTest, AnArgumentIsSet) {
  checkEdit("blur(4, yes)\n", setValue("blur#2", SourceLiteral::makeBool(false)), "blur(4, no)\n");
}

TEST(SourceEditorValueTest, AValueOfAKeywordIsSet) {
  checkEdit("#format=2\n", setValue("#format", number(3)), "#format=3\n");
}

TEST(SourceEditorValueTest, ATypedWordKeepsItsSpelling) {
  checkEdit("fov 39.6\n", setValue("fov", SourceLiteral::parse("39.60")), "fov 39.60\n");
}

TEST(SourceEditorValueTest, AValueThatIsTheSameKeepsItsSpelling) {
  checkEdit("fov 39.60\n", setValue("fov", SourceLiteral::makeDouble(39.6)), "fov 39.60\n");
}

TEST(SourceEditorValueTest, TheOwnSpellingIsNoChange) {
  EditedDocument edited("a.cfg", {{"a.cfg", "a 1.50\n"}});
  EXPECT_TRUE(edited.edit().setValue("a", SourceLiteral::parse("1.50")));
  EXPECT_TRUE(edited.edit().getChangedTexts().empty());
}

TEST(SourceEditorValueTest, TheTypeMayChange) {
  checkEdit("a 1\n", setValue("a", SourceLiteral::makeBinary("\x01\x02\xFF")),
            "a 0x0102FF02010000\n");
}

TEST(SourceEditorValueTest, TheEmptyTagIsReplacedByAValue) {
  checkEdit("note <empty>\n", setValue("note", string("x")), "note \"x\"\n");
}

TEST(SourceEditorValueTest, AValueIsReplacedByTheEmptyTag) {
  checkEdit("note \"x\"\n", setValue("note", SourceLiteral::makeEmpty()), "note <empty>\n");
}

TEST(SourceEditorValueTest, AStringInFormat11IsEscaped) {
  checkEdit("a 1 b 2\n", setValue("a", string("x\n\t\"y\" // {z}")),
            "a \"x\\n\\t\\\"y\\\" // {z}\" b 2\n");
}

TEST(SourceEditorValueTest, AStringInFormat10StandsAsItIs) {
  checkEditOfFiles({{"a.cfg", "a 1 b 2\n"}}, setValue("a", string("C:\\new\tx")),
                   {{"a.cfg", "a \"C:\\new\tx\" b 2\n"}});
}

TEST(SourceEditorValueTest, AStringMayEndInABackslashAtTheEndOfItsLine) {
  checkEdit("a 1\nb 2\n", setValue("a", string("C:\\")), "a \"C:\\\\\"\nb 2\n");
}

TEST(SourceEditorValueTest, AStringMayEndInABackslashAtTheEndOfTheFile) {
  checkEdit("a 1", setValue("a", string("C:\\")), "a \"C:\\\\\"");
}

TEST(SourceEditorValueTest, CarriageReturnsStay) {
  checkEdit("a 1\r\nb 2\r\n", setValue("a", number(3)), "a 3\r\nb 2\r\n");
}

TEST(SourceEditorValueTest, AByteOrderMarkStays) {
  checkEditOfFiles({{"a.cfg", "\xEF\xBB\xBF\na 1\n"}}, setValue("a", number(2)),
                   {{"a.cfg", "\xEF\xBB\xBF\na 2\n"}});
}

TEST(SourceEditorValueTest, CommentsOnAllSidesStay) {
  checkEdit("// 1\na// 2\n = // 3\n 1 // 4\n, // 5\n 2// 6\n", setValue("a#1", number(3)),
            "// 1\na// 2\n = // 3\n 3 // 4\n, // 5\n 2// 6\n");
}

TEST(SourceEditorValueTest, EditsFollowEachOther) {
  EditedDocument edited("a.cfg", {{"a.cfg", "a 1 b 2\n"}});
  EXPECT_TRUE(edited.edit().setValue("a", number(10000)));
  EXPECT_TRUE(edited.edit().setValue("b", number(3)));
  EXPECT_TRUE(edited.edit().setValue("a", number(4)));
  EXPECT_EQ(edited.getTexts().at("a.cfg"), "a 4 b 3\n");
}

TEST(SourceEditorValueTest, AFileThatIsAsItWasIsNoChangedFile) {
  EditedDocument edited("a.cfg", {{"a.cfg", "a 1\n"}});
  EXPECT_TRUE(edited.edit().setValue("a", number(2)));
  EXPECT_TRUE(edited.edit().setValue("a", number(1)));
  EXPECT_TRUE(edited.edit().getChangedTexts().empty());
}

TEST(SourceEditorValueTest, TheDocumentAndTheTreeAreTheNewOnes) {
  EditedDocument edited("a.cfg", {{"a.cfg", "a 1\n"}});
  EXPECT_TRUE(edited.edit().setValue("a", number(23)));
  EXPECT_EQ(edited.document.getText(), "a 23\n");
  EXPECT_EQ(edited.getTree().getSpelling(edited.getTree().getValue(edited.getTree().getItem(0), 0)),
            "23");
}

TEST(SourceEditorValueTest, AValueInDeeplyNestedGroupsIsSet) {
  constexpr unsigned DEPTH = 50000;
  std::string text;
  std::string path;
  for (unsigned i = 0; i < DEPTH; ++i) {
    text += "g{";
    path += "g/";
  }
  EditedDocument edited("a.cfg", {{"a.cfg", text + "a 1"}});
  EXPECT_TRUE(edited.edit().setValue(path + "a", number(2))) << edited.getProblem();
  EXPECT_EQ(edited.getTexts().at("a.cfg"), text + "a 2");
}

// --- Add values ----------------------------------------------------------------------------------

TEST(SourceEditorValueTest, AnAddedValueStandsBehindABlank) {
  checkEdit("a 1 // note\n", addValue("a", number(2)), "a 1 2 // note\n");
}

TEST(SourceEditorValueTest, AnAddedValueIsSpacedLikeTheLastTwo) {
  checkEdit("a 1,2 ,  3\n", addValue("a", number(4)), "a 1,2 ,  3 ,  4\n");
}

TEST(SourceEditorValueTest, AValueOfAListWithALineEachGetsALine) {
  checkEdit("a\n  1\n  2\nb 3\n", addValue("a", number(4)), "a\n  1\n  2\n  4\nb 3\n");
}

TEST(SourceEditorValueTest, ACommentBetweenTheLastTwoIsNotRepeated) {
  checkEdit("a 1, // one\n  2\n", addValue("a", number(3)), "a 1, // one\n  2, 3\n");
}

TEST(SourceEditorValueTest, AnAddedArgumentStandsBehindAComma) {
  checkEdit("blur(4)\n", addValue("blur", number(5)), "blur(4, 5)\n");
}

TEST(SourceEditorValueTest, TheFirstArgumentStandsBehindTheParenthesis) {
  checkEdit("blur()\n", addValue("blur", number(5)), "blur(5)\n");
}

TEST(SourceEditorValueTest, AnAddedValueTakesThePlaceOfTheEmptyTag) {
  checkEdit("note <empty>\n", addValue("note", number(1)), "note 1\n");
}

TEST(SourceEditorValueTest, AGroupGetsItsFirstValueBehindItsName) {
  checkEdit("layer{ a 1 }\n", addValue("layer", number(2)), "layer 2{ a 1 }\n");
}

TEST(SourceEditorValueTest, AGroupGetsItsFirstValueBehindItsAssignment) {
  checkEdit("layer = { a 1 }\n", addValue("layer", number(2)), "layer = 2 { a 1 }\n");
}

TEST(SourceEditorValueTest, AValueIsAddedBeforeAFinalComma) {
  checkEdit("a 1, b 2\n", addValue("a", number(3)), "a 1 3, b 2\n");
}

TEST(SourceEditorValueTest, AnItemWithoutAnythingGetsAValue) {
  checkEdit("g { a }\n", addValue("g/a", number(1)), "g { a 1 }\n");
}

// --- Set all values ------------------------------------------------------------------------------

TEST(SourceEditorValueTest, AsManyValuesAreSetInTheirPlaces) {
  checkEdit("a = 1, // one\n  2 // two\n", setValues("a", {number(3), number(4)}),
            "a = 3, // one\n  4 // two\n");
}

TEST(SourceEditorValueTest, FurtherValuesAreAdded) {
  checkEdit("a 1, 2\n", setValues("a", {number(1), number(3), number(4)}), "a 1, 3, 4\n");
}

TEST(SourceEditorValueTest, ValuesTooManyAreRemovedAtTheEnd) {
  checkEdit("a 1, 2, 3 b 4\n", setValues("a", {number(5)}), "a 5 b 4\n");
}

TEST(SourceEditorValueTest, CommentsBetweenRemovedValuesStay) {
  checkEdit("a 1, // one\n  2, // two\n  3 // three\n", setValues("a", {number(1)}),
            "a 1 // one\n // two\n // three\n");
}

TEST(SourceEditorValueTest, NoValuesLeaveTheEmptyTag) {
  checkEdit("a = 1, 2 // note\n", setValues("a", {}), "a = <empty> // note\n");
}

TEST(SourceEditorValueTest, NoValuesLeaveAnEmptyArgumentList) {
  checkEdit("f(1, 2)\n", setValues("f", {}), "f()\n");
}

TEST(SourceEditorValueTest, NoValuesLeaveAGroupWithoutThem) {
  checkEdit("layer 1 \"x\" { a 1 }\n", setValues("layer", {}), "layer { a 1 }\n");
}

TEST(SourceEditorValueTest, ArgumentsAreSetFromNone) {
  checkEdit("f( )\n", setValues("f", {number(1), string("x")}), "f(1, \"x\" )\n");
}

TEST(SourceEditorValueTest, ValuesTakeThePlaceOfTheEmptyTag) {
  checkEdit("a <empty>\n", setValues("a", {number(1), number(2)}), "a 1 2\n");
}

TEST(SourceEditorValueTest, OneInvalidLiteralRefusesAll) {
  checkRefused("a 1 2\n", setValues("a", {number(3), SourceLiteral::parse("fast")}),
               "'fast' is a name and no value; a text stands in double quotes");
}

TEST(SourceEditorValueTest, RemovingValuesBetweenCommentsTakesLinearTime) {
  const auto make = [](unsigned long size) {
    std::string text = "a 0";
    for (unsigned long i = 0; i < size; ++i)
      text += ", // note\n 1";
    return std::make_unique<EditedDocument>("a.cfg", TestSupport::FileTexts{{"a.cfg", text}});
  };
  TestSupport::checkTakesLinearTime(2000, make, [](const std::unique_ptr<EditedDocument>& edited) {
    EXPECT_TRUE(edited->edit().setValues("a", {number(1)}));
  });
}

// --- Remove a value ------------------------------------------------------------------------------

TEST(SourceEditorValueTest, ARemovedValueTakesTheCommaBeforeItAlong) {
  checkEdit("a 1, 2 , 3\n", removeValue("a#2"), "a 1 , 3\n");
}

TEST(SourceEditorValueTest, TheFirstValueTakesTheCommaBehindItAlong) {
  checkEdit("a = 1, 2\n", removeValue("a#1"), "a = 2\n");
}

TEST(SourceEditorValueTest, TheFirstValueLeavesTheCommentBehindIt) {
  checkEdit("a 1, // one\n  2\n", removeValue("a#1"), "a  // one\n  2\n");
}

TEST(SourceEditorValueTest, TheOnlyValueLeavesTheEmptyTag) {
  checkEdit("a 1\n", removeValue("a"), "a <empty>\n");
}

TEST(SourceEditorValueTest, TheOnlyArgumentLeavesAnEmptyList) {
  checkEdit("f( 1 )\n", removeValue("f#1"), "f(  )\n");
}

TEST(SourceEditorValueTest, TheOnlyValueBeforeAGroupGoes) {
  checkEdit("layer 1 {}\n", removeValue("layer"), "layer {}\n");
}

TEST(SourceEditorValueTest, TheEmptyTagStaysWhenItIsRemoved) {
  checkEdit("a <empty>\n", removeValue("a"), "a <empty>\n");
}

TEST(SourceEditorValueTest, AWordThatWasDroppedStaysWhenAValueBehindItGoes) {
  checkEdit("a 1 <> 2\n", removeValue("a#2"), "a 1 <> \n");
}

// --- Paths ---------------------------------------------------------------------------------------

TEST(SourceEditorValueTest, APathThatLeadsNowhereIsRefused) {
  checkRefused("g { a 1 }\n", setValue("g/b", number(1)), "there is no 'b' in 'g'");
}

TEST(SourceEditorValueTest, AValueThatIsNotThereIsRefused) {
  checkRefused("a 1 2\n", setValue("a#3", number(1)), "'a' has no value 3");
}

TEST(SourceEditorValueTest, OneOfSeveralValuesHasToBeChosen) {
  checkRefused("a 1 2 3\n", setValue("a", number(1)), "'a' has several values, 'a#1' to 'a#3'");
}

TEST(SourceEditorValueTest, AnItemWithoutValuesHasNoneToSet) {
  checkRefused("f()\n", setValue("f", number(1)), "'f' has no values");
}

TEST(SourceEditorValueTest, TheRootHasNoValue) {
  checkRefused("a 1\n", setValue("", number(1)), "the path leads to no value");
}

TEST(SourceEditorValueTest, AValueHasNoValues) {
  checkRefused("a 1\n", setValues("a#1", {}), "'a#1' is a value and no item");
}

// --- What the format cannot hold -----------------------------------------------------------------

TEST(SourceEditorValueTest, AStringThatEndsInABackslashBeforeAWordIsRefused) {
  checkRefused("a 1 b 2\n", setValue("a", string("C:\\")),
               "a string that ends in a backslash has to stand at the end of its line");
}

TEST(SourceEditorValueTest, AStringThatEndsInABackslashBeforeACommentIsRefused) {
  checkRefused("a 1 // note\nb 2\n", setValue("a", string("C:\\")),
               "a string that ends in a backslash has to stand at the end of its line");
}

TEST(SourceEditorValueTest, AStringThatEndsInABackslashBeforeABlankIsRefused) {
  checkRefused("a 1 \nb 2\n", setValue("a", string("C:\\")),
               "a string that ends in a backslash has to stand at the end of its line");
}

TEST(SourceEditorValueTest, AValueBehindAStringThatEndsInABackslashIsRefused) {
  checkRefused("a \"C:\\\\\"\nb 2\n", addValue("a", number(1)),
               "a string that ends in a backslash has to stand at the end of its line");
}

TEST(SourceEditorValueTest, AStringThatLooksLikeAVersionLineIsRefused) {
  checkRefused("a 1\n", setValue("a", string("see #SerialVersion 2")),
               "'#SerialVersion ' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorValueTest, AStringThatLooksLikeAnIncludeIsRefusedInFormat10) {
  checkRefusedInFiles({{"a.cfg", "a 1\n"}}, setValue("a", string("#include \"a.cfg\"")),
                      "'#include \"' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorValueTest, AStringThatLooksLikeAnIncludeIsEscapedInFormat11) {
  checkEdit("a 1\n", setValue("a", string("#include \"a.cfg\".")),
            "a \"#include \\\"a.cfg\\\".\"\n");
}

TEST(SourceEditorValueTest, AStringWhoseClosingQuoteMakesAnIncludeIsRefused) {
  checkRefused("a 1\n", setValue("a", string("write #include ")),
               "'#include \"' is a directive wherever it stands, also in a string");
}

TEST(SourceEditorValueTest, ALineBreakIsRefusedInFormat10) {
  checkRefusedInFiles({{"a.cfg", "a 1\n"}}, setValue("a", string("x\ny")),
                      "a string cannot hold a line break in format 1.0");
}

TEST(SourceEditorValueTest, ACarriageReturnIsRefusedInFormat10) {
  checkRefusedInFiles({{"a.cfg", "a 1\n"}}, setValue("a", string("x\r")),
                      "a string cannot hold a line break in format 1.0");
}

TEST(SourceEditorValueTest, AQuoteIsRefusedInFormat10) {
  checkRefusedInFiles({{"a.cfg", "a 1 b 2\n"}}, setValue("a", string("x\"y")),
                      "a string cannot hold a double quote in format 1.0");
}

TEST(SourceEditorValueTest, AQuoteBehindABackslashStandsInFormat10) {
  checkEditOfFiles({{"a.cfg", "a 1 b 2\n"}}, setValue("a", string("x\\\"y\\\"z")),
                   {{"a.cfg", "a \"x\\\"y\\\"z\" b 2\n"}});
}

TEST(SourceEditorValueTest, AZeroByteIsRefused) {
  checkRefused("a 1\n", setValue("a", string(std::string("x\0y", 3))),
               "a document cannot hold a zero byte");
}

TEST(SourceEditorValueTest, ANumberWithACommentInItIsRefused) {
  checkRefused("a 1\n", setValue("a", SourceLiteral::parse("12//x")),
               "it would be read with the value 12 in place of the value 12//x");
}

TEST(SourceEditorValueTest, AQuoteThatWakesACommentedIncludeIsRefusedAndDoesNotReadForever) {
  checkRefusedInFiles({{"a.cfg", "a 1 // #include \"a.cfg\"\n"}}, setValue("a", string("x\"y")),
                      "a string cannot hold a double quote in format 1.0");
}

// --- What cannot be edited -----------------------------------------------------------------------

TEST(SourceEditorValueTest, ADocumentThatWasNotReadIsNotEdited) {
  Quarry::SourceDocument document;
  Quarry::SourceEditor editor(document);
  EXPECT_FALSE(editor.addItem("", "a", {number(1)}));
  EXPECT_EQ(editor.getProblem(), "the document could not be read");
}

TEST(SourceEditorValueTest, ADocumentThatCannotBeReadIsNotEdited) {
  const TestSupport::FileTexts files = {{"a.cfg", "a 1\n#SerialVersion 0\n"}};
  checkRefusedInFiles(files, setValue("a", number(2)), "the document could not be read");
  checkRefusedInFiles(files, TestSupport::addItem("", "b", {}), "the document could not be read");
}

TEST(SourceEditorValueTest, ADocumentWithAMissingIncludeIsNotEdited) {
  checkRefusedInFiles({{"a.cfg", "a 1\n#include \"missing.cfg\"\n"}}, setValue("a", number(2)),
                      "the document could not be read");
}
