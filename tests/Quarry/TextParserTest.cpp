#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>
#include <gmock/gmock.h>

#include <string>
#include <vector>

using Quarry::Diagnostic;
using Quarry::ParserValue;
using Quarry::ParserWord;
using Quarry::ParserWordStream;
using Quarry::TextParser;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Events = std::vector<std::string>;

std::string nameOf(ParserValue::Type type) {
  static const char* const names[] = {"group",  "bool",   "char",   "int",
                                      "double", "string", "binary", "empty"};
  return names[type];
}

std::string nameOf(Diagnostic diagnostic) {
  switch (diagnostic) {
    case Diagnostic::TEMPLATE_INSIDE_TEMPLATE: return "template inside template";
    case Diagnostic::HAS_NO_VALUE: return "has no value";
    case Diagnostic::WRONGLY_PLACED: return "wrongly placed";
    case Diagnostic::VALUE_WITHOUT_ITEM: return "value without item";
    case Diagnostic::GROUP_WITHOUT_ITEM: return "group without item";
    case Diagnostic::ARGUMENTS_WITHOUT_ITEM: return "arguments without item";
    case Diagnostic::ARGUMENTS_MIXED_WITH_VALUES: return "arguments mixed with values";
    case Diagnostic::ARGUMENTS_INSIDE_ARGUMENTS: return "arguments inside arguments";
    case Diagnostic::ARGUMENTS_ON_KEYWORD: return "arguments on keyword";
    case Diagnostic::ARGUMENTS_CLOSED_WITHOUT_ITEM: return "arguments closed without item";
    case Diagnostic::ARGUMENTS_CLOSED_WITHOUT_CALL: return "arguments closed without call";
    case Diagnostic::UNKNOWN_WORD: return "unknown word";
  }
  return "?";
}

/// Writes down what the parser says, in order.
class RecordingSink {
 public:
  explicit RecordingSink(bool withPlaces = false) : places(withPlaces) {}

  void beginItem(const ParserWord& word) { add("item", word); }
  void value(const ParserWord& word, ParserValue::Type type) { add(nameOf(type), word); }
  void emptyTag(const ParserWord& word) { add("empty tag", word); }
  void beginGroup(const ParserWord& word) { add("begin group", word); }
  void beginBracedItem(const ParserWord& word) { add("braced item", word); }
  void groupLeftOut(const ParserWord& word) { add("left out", word); }
  void endGroup(const ParserWord* word) {
    if (word != nullptr) {
      add("end group", *word);
    } else {
      events.emplace_back("end group with the text");
    }
  }
  void beginCall(const ParserWord& word) { add("begin call", word); }
  void endCall(const ParserWord& word) { add("end call", word); }
  void endDocument(const ParserWord& word) { add("end document", word); }
  void warning(Diagnostic diagnostic, const ParserWord& word) {
    add("warning: " + nameOf(diagnostic) + ":", word);
  }

  const Events& getEvents() const { return events; }

 private:
  void add(const std::string& event, const ParserWord& word) {
    std::string line = event + " " + word.getString();
    if (places) {
      line += " @" + std::to_string(word.getLine()) + ":" + std::to_string(word.getColumn());
    }
    events.push_back(line);
  }

  bool places;
  Events events;
};

Events parse(const std::string& text, bool places = false) {
  ParserWordStream words(text, 1.1);
  RecordingSink sink(places);
  TextParser(words, sink).parse();
  return sink.getEvents();
}

Events parseWithin(unsigned long nestingDepth, const std::string& text) {
  ParserWordStream words(text, 1.1);
  RecordingSink sink(false);
  TextParser(words, sink, nestingDepth).parse();
  return sink.getEvents();
}

}  // namespace

// --- The grammar ---------------------------------------------------------------------------------

TEST(TextParserTest, EmptyTextTellsNothing) { EXPECT_THAT(parse(""), IsEmpty()); }

TEST(TextParserTest, AStatementIsANameAndItsValues) {
  EXPECT_THAT(parse("a 1 2"), ElementsAre("item a", "int 1", "int 2"));
}

TEST(TextParserTest, TheEqualsSignAndCommasAreNotTold) {
  EXPECT_THAT(parse("a = 1, 2"), ElementsAre("item a", "int 1", "int 2"));
}

TEST(TextParserTest, ANameBehindAValueBeginsTheNextStatement) {
  EXPECT_THAT(parse("a 1 b 2"), ElementsAre("item a", "int 1", "item b", "int 2"));
}

TEST(TextParserTest, AKeywordIsANameToo) {
  EXPECT_THAT(parse("#format 2"), ElementsAre("item #format", "int 2"));
}

TEST(TextParserTest, EachKindOfValueIsTold) {
  EXPECT_THAT(parse("a yes no 1 1.5 \"s\" 0x00 <empty>"),
              ElementsAre("item a", "bool yes", "bool no", "int 1", "double 1.5", "string \"s\"",
                          "binary 0x00", "empty tag <empty>"));
}

TEST(TextParserTest, AGroupIsToldFromBraceToBrace) {
  EXPECT_THAT(parse("g { x 1 }"),
              ElementsAre("item g", "begin group {", "item x", "int 1", "end group }"));
}

TEST(TextParserTest, GroupsNest) {
  EXPECT_THAT(parse("g { h { } }"), ElementsAre("item g", "begin group {", "item h",
                                                "begin group {", "end group }", "end group }"));
}

TEST(TextParserTest, ACallIsToldFromParenthesisToParenthesis) {
  EXPECT_THAT(parse("f(1, 2)"),
              ElementsAre("item f", "begin call (", "int 1", "int 2", "end call )"));
}

TEST(TextParserTest, ACallMayHaveNoArguments) {
  EXPECT_THAT(parse("f()"), ElementsAre("item f", "begin call (", "end call )"));
}

TEST(TextParserTest, AnEqualsSignMayPrecedeAnArgumentList) {
  EXPECT_THAT(parse("f = (1, 2)"),
              ElementsAre("item f", "begin call (", "int 1", "int 2", "end call )"));
}

TEST(TextParserTest, AnEqualsSignMayPrecedeAGroup) {
  EXPECT_THAT(parse("g = { }"), ElementsAre("item g", "begin group {", "end group }"));
}

TEST(TextParserTest, EventsCarryThePlacesOfTheirWords) {
  EXPECT_THAT(
      parse("g {\n  x 1,\n  f()\n}", true),
      ElementsAre("item g @1:1", "begin group { @1:2", "item x @2:3", "int 1 @2:4", "item f @3:2",
                  "begin call ( @3:3", "end call ) @3:4", "end group } @4:0"));
}

TEST(TextParserTest, AWarningCarriesThePlaceOfItsWord) {
  EXPECT_THAT(parse("a 1\nb 2\nc 1, 2,, 3", true),
              testing::Contains("warning: wrongly placed: , @3:7"));
}

// --- Names ---------------------------------------------------------------------------------------

TEST(TextParserTest, ANameBehindANameWithoutValueIsDropped) {
  EXPECT_THAT(parse("a b 1"), ElementsAre("item a", "warning: has no value: b", "int 1"));
}

TEST(TextParserTest, AKeywordBehindANameWithoutValueIsDropped) {
  EXPECT_THAT(parse("a #b 1"), ElementsAre("item a", "warning: has no value: #b", "int 1"));
}

TEST(TextParserTest, ABareNameIsNoValue) {
  EXPECT_THAT(parse("a = b\n"), ElementsAre("item a", "warning: has no value: b"));
}

TEST(TextParserTest, ANameThatEndsTheTextIsDropped) {
  EXPECT_THAT(parse("a 1 b"), ElementsAre("item a", "int 1", "warning: has no value: b"));
}

TEST(TextParserTest, ANameAndOneBlankAtTheEndAreDropped) {
  EXPECT_THAT(parse("b "), ElementsAre("warning: has no value: b"));
}

TEST(TextParserTest, ANameAndOneLineBreakAtTheEndAreDropped) {
  EXPECT_THAT(parse("b\n"), ElementsAre("warning: has no value: b"));
}

TEST(TextParserTest, ANameAndTwoLineBreaksAtTheEndMakeAnItem) {
  EXPECT_THAT(parse("b\n\n"), ElementsAre("item b"));
}

TEST(TextParserTest, ANameAndABlankAndALineBreakAtTheEndMakeAnItem) {
  EXPECT_THAT(parse("b \n"), ElementsAre("item b"));
}

TEST(TextParserTest, TheSecondNameOfTwoAtTheEndIsDropped) {
  EXPECT_THAT(parse("a b  "), ElementsAre("item a", "warning: has no value: b"));
}

TEST(TextParserTest, ANameBehindADroppedOneStillBelongsToTheFirstItem) {
  EXPECT_THAT(parse("a b c 1"), ElementsAre("item a", "warning: has no value: b",
                                            "warning: has no value: c", "int 1"));
}

TEST(TextParserTest, ANameBehindAGroupNeedsNoValueBefore) {
  EXPECT_THAT(parse("g { } b 1"),
              ElementsAre("item g", "begin group {", "end group }", "item b", "int 1"));
}

TEST(TextParserTest, ANameBehindACallNeedsNoValueBefore) {
  EXPECT_THAT(parse("f() b 1"),
              ElementsAre("item f", "begin call (", "end call )", "item b", "int 1"));
}

TEST(TextParserTest, ANameInAnEmptyArgumentListIsDropped) {
  EXPECT_THAT(parse("f(x)"),
              ElementsAre("item f", "begin call (", "warning: has no value: x", "end call )"));
}

TEST(TextParserTest, ANameBehindAnArgumentBeginsAnItem) {
  EXPECT_THAT(parse("f(1 x)"), ElementsAre("item f", "begin call (", "int 1", "item x",
                                           "warning: arguments closed without call: )"));
}

// --- The equals sign -----------------------------------------------------------------------------

TEST(TextParserTest, AnEqualsSignWithoutANameIsWronglyPlaced) {
  EXPECT_THAT(parse("= "), ElementsAre("warning: wrongly placed: ="));
}

TEST(TextParserTest, ASecondEqualsSignIsWronglyPlacedAndDropsTheItem) {
  EXPECT_THAT(
      parse("a = = 1"),
      ElementsAre("item a", "warning: wrongly placed: =", "warning: value without item: 1"));
}

TEST(TextParserTest, AnEqualsSignBehindAValueIsWronglyPlacedAndDropsTheItem) {
  EXPECT_THAT(parse("a 1 = 2"), ElementsAre("item a", "int 1", "warning: wrongly placed: =",
                                            "warning: value without item: 2"));
}

TEST(TextParserTest, AnEqualsSignBehindADroppedNameIsWronglyPlaced) {
  EXPECT_THAT(parse("a b = 1"),
              ElementsAre("item a", "warning: has no value: b",
                          "warning: wrongly placed: =", "warning: value without item: 1"));
}

TEST(TextParserTest, AnEqualsSignBehindAGroupStillFollowsItsNameAndIsAccepted) {
  EXPECT_THAT(parse("g { } ="), ElementsAre("item g", "begin group {", "end group }"));
}

TEST(TextParserTest, AnEqualsSignBehindAnOpeningParenthesisIsAccepted) {
  EXPECT_THAT(parse("f(= 1)"), ElementsAre("item f", "begin call (", "int 1", "end call )"));
}

// --- The comma -----------------------------------------------------------------------------------

TEST(TextParserTest, ACommaWithoutAValueIsWronglyPlaced) {
  EXPECT_THAT(parse(","), ElementsAre("warning: wrongly placed: ,"));
}

TEST(TextParserTest, ACommaBehindANameIsWronglyPlacedAndDropsTheItem) {
  EXPECT_THAT(parse("a , 1"), ElementsAre("item a", "warning: wrongly placed: ,",
                                          "warning: value without item: 1"));
}

TEST(TextParserTest, ASecondCommaIsWronglyPlacedAndDropsTheItem) {
  EXPECT_THAT(parse("a = 1,, 2"), ElementsAre("item a", "int 1", "warning: wrongly placed: ,",
                                              "warning: value without item: 2"));
}

TEST(TextParserTest, ACommaBehindTheEmptyTagIsAccepted) {
  EXPECT_THAT(parse("a <empty>, 1"), ElementsAre("item a", "empty tag <empty>", "int 1"));
}

TEST(TextParserTest, ACommaBehindTheLastValueIsAccepted) {
  EXPECT_THAT(parse("a 1, b 2"), ElementsAre("item a", "int 1", "item b", "int 2"));
}

TEST(TextParserTest, ACommaBehindTheLastArgumentOfACallFollowsAValue) {
  EXPECT_THAT(parse("f(1), 2"), ElementsAre("item f", "begin call (", "int 1", "end call )",
                                            "warning: value without item: 2"));
}

// --- Values --------------------------------------------------------------------------------------

TEST(TextParserTest, AValueWithoutAnItemIsDropped) {
  EXPECT_THAT(parse("1 a 2"), ElementsAre("warning: value without item: 1", "item a", "int 2"));
}

TEST(TextParserTest, AnEmptyTagWithoutAnItemIsDropped) {
  EXPECT_THAT(parse("<empty>"), ElementsAre("warning: value without item: <empty>"));
}

TEST(TextParserTest, AnEmptyTagCompletesTheItem) {
  EXPECT_THAT(parse("a <empty> b 1"),
              ElementsAre("item a", "empty tag <empty>", "item b", "int 1"));
}

TEST(TextParserTest, ValuesMayFollowAnEmptyTag) {
  EXPECT_THAT(parse("a <empty> 1"), ElementsAre("item a", "empty tag <empty>", "int 1"));
}

TEST(TextParserTest, AGroupMayFollowValues) {
  EXPECT_THAT(parse("a 1 { }"), ElementsAre("item a", "int 1", "begin group {", "end group }"));
}

TEST(TextParserTest, AValueBehindAGroupHasNoItem) {
  EXPECT_THAT(parse("g { } 1"), ElementsAre("item g", "begin group {", "end group }",
                                            "warning: value without item: 1"));
}

TEST(TextParserTest, ABoolIsNeverAName) {
  EXPECT_THAT(parse("yes 1"),
              ElementsAre("warning: value without item: yes", "warning: value without item: 1"));
}

// --- Groups --------------------------------------------------------------------------------------

TEST(TextParserTest, AnOpeningBraceWithoutAnItemOpensNothing) {
  EXPECT_THAT(parse("{ x 1 } y 2"),
              ElementsAre("warning: group without item: {", "item x", "int 1", "end document }"));
}

TEST(TextParserTest, ASecondGroupOfAnItemOpensNothing) {
  EXPECT_THAT(parse("g { } { x 1"),
              ElementsAre("item g", "begin group {", "end group }",
                          "warning: group without item: {", "item x", "int 1"));
}

TEST(TextParserTest, AClosingBraceWithoutAGroupEndsTheDocument) {
  EXPECT_THAT(parse("a 1 } b , ="), ElementsAre("item a", "int 1", "end document }"));
}

TEST(TextParserTest, TheTextEndsEveryOpenGroup) {
  EXPECT_THAT(parse("g { h { x 1"),
              ElementsAre("item g", "begin group {", "item h", "begin group {", "item x", "int 1",
                          "end group with the text", "end group with the text"));
}

TEST(TextParserTest, ANestedGroupBeginsWithoutAnItem) {
  EXPECT_THAT(parse("g { 1 }"), ElementsAre("item g", "begin group {",
                                            "warning: value without item: 1", "end group }"));
}

TEST(TextParserTest, ABraceInsideAnArgumentListIsAGroupAndEndsTheCallUnclosed) {
  EXPECT_THAT(parse("f({ })"), ElementsAre("item f", "begin call (", "begin group {", "end group }",
                                           "warning: arguments closed without item: )"));
}

// --- Calls ---------------------------------------------------------------------------------------

TEST(TextParserTest, AnArgumentListWithoutAnItemIsDropped) {
  EXPECT_THAT(parse("( a 1"), ElementsAre("warning: arguments without item: (", "item a", "int 1"));
}

TEST(TextParserTest, AnArgumentListBehindValuesDropsTheItem) {
  EXPECT_THAT(
      parse("f 1 (2)"),
      ElementsAre("item f", "int 1", "warning: arguments mixed with values: (",
                  "warning: value without item: 2", "warning: arguments closed without item: )"));
}

TEST(TextParserTest, AnArgumentListBehindArgumentsCountsAsBehindValues) {
  EXPECT_THAT(parse("f(1 ("), ElementsAre("item f", "begin call (", "int 1",
                                          "warning: arguments mixed with values: ("));
}

TEST(TextParserTest, AnArgumentListInsideAnEmptyArgumentListDropsTheItem) {
  EXPECT_THAT(parse("f(( 1"),
              ElementsAre("item f", "begin call (", "warning: arguments inside arguments: (",
                          "warning: value without item: 1"));
}

TEST(TextParserTest, AnArgumentListOnAKeywordDropsTheItem) {
  EXPECT_THAT(parse("#k(1"), ElementsAre("item #k", "warning: arguments on keyword: (",
                                         "warning: value without item: 1"));
}

TEST(TextParserTest, AnArgumentListBehindAnEmptyTagMakesACall) {
  EXPECT_THAT(parse("f <empty> (1)"),
              ElementsAre("item f", "empty tag <empty>", "begin call (", "int 1", "end call )"));
}

TEST(TextParserTest, AClosingParenthesisWithoutAnItemIsDropped) {
  EXPECT_THAT(parse(") a 1"),
              ElementsAre("warning: arguments closed without item: )", "item a", "int 1"));
}

TEST(TextParserTest, AClosingParenthesisBehindAPlainItemDropsTheItem) {
  EXPECT_THAT(parse("a 1 ) 2"),
              ElementsAre("item a", "int 1", "warning: arguments closed without call: )",
                          "warning: value without item: 2"));
}

TEST(TextParserTest, AnUnclosedCallTakesTheValuesToTheNextName) {
  EXPECT_THAT(parse("f(1 2\na 3"),
              ElementsAre("item f", "begin call (", "int 1", "int 2", "item a", "int 3"));
}

// --- Unknown words -------------------------------------------------------------------------------

TEST(TextParserTest, AnUnknownWordIsDroppedAndTheItemStays) {
  EXPECT_THAT(parse("a ; 1"), ElementsAre("item a", "warning: unknown word: ;", "int 1"));
}

TEST(TextParserTest, ALoneQuoteIsAnUnknownWord) {
  EXPECT_THAT(parse("a \"\n1"), ElementsAre("item a", "warning: unknown word: \"", "int 1"));
}

TEST(TextParserTest, ACommaBehindAnUnknownWordIsWronglyPlaced) {
  EXPECT_THAT(parse("a 1 ;, 2"),
              ElementsAre("item a", "int 1", "warning: unknown word: ;",
                          "warning: wrongly placed: ,", "warning: value without item: 2"));
}

// --- Groups that are too deep --------------------------------------------------------------------

TEST(TextParserTest, OfAGroupThatIsTooDeepOnlyItsBeginningIsTold) {
  EXPECT_THAT(parseWithin(0, "a { b { c 1 } } d 2"),
              ElementsAre("item a", "left out {", "item d", "int 2"));
}

TEST(TextParserTest, GroupsWithinTheDepthAreToldAroundOneThatIsTooDeep) {
  EXPECT_THAT(parseWithin(1, "a { b { c 1 } d 2 }"),
              ElementsAre("item a", "begin group {", "item b", "left out {", "item d", "int 2",
                          "end group }"));
}

TEST(TextParserTest, NoValueFollowsAGroupThatIsTooDeep) {
  EXPECT_THAT(parseWithin(0, "a { } 1"),
              ElementsAre("item a", "left out {", "warning: value without item: 1"));
}

TEST(TextParserTest, WordsOfAGroupThatIsTooDeepAreNotWarnedOf) {
  EXPECT_THAT(parseWithin(0, "a { , ) 1 = } b 1"),
              ElementsAre("item a", "left out {", "item b", "int 1"));
}

TEST(TextParserTest, BlanksBehindAGroupThatIsTooDeepAndUnclosedEndTheText) {
  EXPECT_THAT(parseWithin(0, "a { b 1 \n "), ElementsAre("item a", "left out {"));
}
