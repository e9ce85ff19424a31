/// The grammar of the text form.
#pragma once

#include <Quarry/ParserLimits.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "Diagnostic.h"
#include "WordClassifier.h"

#include <type_traits>
#include <utility>
#include <vector>

namespace Quarry {

/// Recognises the text form and hands what it finds to a sink; it builds nothing itself.
///
///     document  = { statement } ;
///     statement = name , [ "=" ] , ( values | group | call ) ;
///     name      = identifier | keyword ;
///     values    = value , { [ "," ] , value } ;
///     group     = "{" , { statement } , "}" ;
///     call      = "(" , [ values ] , ")" ;
///
/// The parser is forgiving: a word that does not fit is reported and dropped, and the rules go on
/// with the next one. There is one function per rule, in the order in which a word is tried.
/// Nesting takes memory, not stack.
///
/// `Words` offers `bool isExhausted()` and `next()`, which returns a pointer to the next word or
/// null for none, as WordCutter and ParserWordStream do; `Word` is TextWord or ParserWord. It may
/// offer `getPlace()`, which tells where the last word ends, and `next(place)`, which is told.
/// `Sink` is told, in the order of the text:
///
///     beginItem(word)          an item is named; it is the current one until the next event but
///                              value, emptyTag, beginCall and warning
///     value(word, type)        a value of the current item
///     emptyTag(word)           `<empty>` stands where the current item has a value
///     beginGroup(word)         the current item's next value is a group; items now go there
///     beginBracedItem(word)    an item of that name is made, and a group in it; the current item
///                              is current again when the group ends
///     endGroup(word)           the group ends; `word` is null when it ends with the text
///     groupLeftOut(word)       a group that is nested too deeply is passed over as a whole; there
///                              is no current item behind it
///     beginCall(word)          the current item is a call; its arguments follow as values
///     endCall(word)            the argument list is complete
///     endDocument(word)        a closing brace without a group ends the parse
///     warning(diagnostic, word)
template <class Words, class Sink>
class TextParser {
 public:
  using Word = std::remove_cvref_t<decltype(*std::declval<Words&>().next())>;

  /// @param nestingDepth how many groups may stand one within another
  TextParser(Words& wordSource, Sink& listener,
             unsigned long nestingDepth = ParserLimits::UNLIMITED)
      : words(wordSource), sink(listener), deepest(nestingDepth) {
    outerLevels.reserve(USUAL_DEPTH);
  }

  /// Reads to the end of the text, or to a closing brace that closes no group.
  /// @return false when the text ends and the last word at its top level was `<empty>`, drew a
  ///         warning, or there was none; true otherwise
  bool parse() {
    const char* place = getPlace();
    while (const Word* word = next(place)) {
      if constexpr (HAS_PLACES) place = word->end();  // while the processor has it at hand
      const Then then = takeWord(*word);
      if (then == Then::END) return true;
      if (then == Then::RESUME) place = getPlace();
    }
    return endOfText();
  }

 private:
  /// What follows on a word: the one behind it, the one behind others that were passed over, or
  /// nothing, because it has ended the parse.
  enum class Then { NEXT, RESUME, END };

  static constexpr std::size_t USUAL_DEPTH = 16;

  /// What the current item has become so far.
  enum class Item : unsigned char { NONE, PLAIN, KEYWORD, CALL };

  /// What the last word was that was accepted.
  enum class Last : unsigned char { NONE, NAME, ASSIGNMENT, SEPARATOR, VALUE, EMPTY_TAG };

  /// The state of one group that is being read. In one byte: groups can be nested a million deep.
  struct Level {
    Item item : 2 = Item::NONE;
    bool isIncomplete : 1 = false;  ///< the item took neither a value nor an empty tag
    bool hasValue : 1 = false;      ///< the item took a value
    Last last : 4 = Last::NONE;
  };
  static_assert(sizeof(Level) == 1);

  /// Whether the word source is told where the last word ends. Each word has to wait for that, so
  /// that it is kept where the processor has it at hand.
  static constexpr bool HAS_PLACES = requires(Words & source) { source.next(source.getPlace()); };

  const char* getPlace() const {
    if constexpr (HAS_PLACES) return words.getPlace();
    return nullptr;
  }

  [[gnu::always_inline]] const Word* next(const char* place) {
    if constexpr (HAS_PLACES) {
      return words.next(place);
    } else {
      return words.next();
    }
  }

  // What most words need is inlined in the loop of parse(); what few need, or none, is kept out.

  /// The first test that holds chooses the rule. Each test fixes the word's type, so the order is
  /// part of the grammar: `yes` is a value because it is no identifier.
  [[gnu::always_inline]] Then takeWord(const Word& word) {
    switch (WordClassifier::classify(word)) {
      case ParserWord::WORD_IDENTIFIER: takeName(word, Item::PLAIN); break;
      case ParserWord::WORD_KEYWORD: takeKeyword(word); break;
      case ParserWord::WORD_OPERATOR: takeAssignment(word); break;
      case ParserWord::WORD_SEPARATOR: takeSeparator(word); break;
      case ParserWord::WORD_EMPTYTAG: takeValue(word, ParserValue::TYPE_EMPTY); break;
      case ParserWord::WORD_BINARYDATA: takeValue(word, ParserValue::TYPE_BINARYDATA); break;
      case ParserWord::WORD_BOOL: takeValue(word, ParserValue::TYPE_BOOL); break;
      case ParserWord::WORD_INT:
      case ParserWord::WORD_DOUBLE: takeNumber(word); break;
      case ParserWord::WORD_STRING: takeValue(word, ParserValue::TYPE_STRING); break;
      case ParserWord::WORD_BRACE: takeBracedItem(word); break;
      default: return takeBracket(word);
    }
    return Then::NEXT;
  }

  /// A word that is nothing else, but may begin with a bracket.
  Then takeBracket(const Word& word) {
    switch (WordClassifier::firstByte(word)) {
      case '{': return openGroup(word);
      case '}': return closeGroup(word);
      case '(': openArguments(word); break;
      case ')': closeArguments(word); break;
      default: warn(Diagnostic::UNKNOWN_WORD, word);
    }
    return Then::NEXT;
  }

  /// name = identifier | keyword ;
  ///
  /// A name needs something behind it, and the item before it a value. The last name of a text is
  /// refused only when it ends the text, up to one blank.
  [[gnu::always_inline]] void takeName(const Word& word, Item item) {
    const ParserWord* templateWord = word.getTemplateWord();
    if (templateWord != nullptr && templateWord->getTemplateWord() != nullptr) {
      return warn(Diagnostic::TEMPLATE_INSIDE_TEMPLATE, word);
    }
    if (words.isExhausted()) return warn(Diagnostic::HAS_NO_VALUE, word);
    if (level.isIncomplete) return warn(Diagnostic::HAS_NO_VALUE, word);
    sink.beginItem(word);
    level = Level{item, true, false, Last::NAME};
  }

  [[gnu::noinline]] void takeKeyword(const Word& word) { takeName(word, Item::KEYWORD); }

  /// "=" , directly behind a name
  void takeAssignment(const Word& word) {
    if (level.last != Last::NAME) {
      return warnAndDropItem(Diagnostic::WRONGLY_PLACED, word);
    }
    level.last = Last::ASSIGNMENT;
  }

  /// "," , directly behind a value
  void takeSeparator(const Word& word) {
    if (level.last != Last::VALUE && level.last != Last::EMPTY_TAG) {
      return warnAndDropItem(Diagnostic::WRONGLY_PLACED, word);
    }
    level.last = Last::SEPARATOR;
  }

  /// value = bool | int | double | string | binary data | "<empty>" ;
  [[gnu::always_inline]] void takeValue(const Word& word, ParserValue::Type type) {
    if (!hasItem()) return warn(Diagnostic::VALUE_WITHOUT_ITEM, word);
    if (type == ParserValue::TYPE_EMPTY) {
      sink.emptyTag(word);
      level.last = Last::EMPTY_TAG;
    } else {
      sink.value(word, type);
      level.hasValue = true;
      level.last = Last::VALUE;
    }
    level.isIncomplete = false;
  }

  /// An integer or a double.
  [[gnu::always_inline]] void takeNumber(const Word& word) {
    const int type = ParserValue::TYPE_INT + (word.getType() - ParserWord::WORD_INT);
    takeValue(word, static_cast<ParserValue::Type>(type));
  }

  /// A word that the word source typed as a brace: an item and its group in one word.
  void takeBracedItem(const Word& word) {
    sink.beginBracedItem(word);
    enterLevel();
  }

  /// group = "{" , { statement } , "}" ;
  ///
  /// A "{" without an item opens nothing, so the "}" that was meant for it closes the group around.
  Then openGroup(const Word& word) {
    if (!hasItem()) {
      warn(Diagnostic::GROUP_WITHOUT_ITEM, word);
      return Then::NEXT;
    }
    endItem();
    if (outerLevels.size() >= deepest) {
      leaveOutGroup(word);
      return Then::RESUME;
    }
    sink.beginGroup(word);
    enterLevel();
    return Then::NEXT;
  }

  /// Passes over the words of a group up to the brace that closes it. Only braces count. Not
  /// inlined: it is for few groups and would burden all.
  [[gnu::noinline]] void leaveOutGroup(const Word& word) {
    sink.groupLeftOut(word);
    unsigned long open = 1;
    while (open > 0 && !words.isExhausted()) {
      const Word* inner = words.next();
      const bool isOther =
          inner == nullptr || WordClassifier::classify(*inner) != ParserWord::WORD_UNKNOWN;
      const char bracket = isOther ? '\0' : WordClassifier::firstByte(*inner);
      if (bracket == '{') ++open;
      if (bracket == '}') --open;
    }
  }

  /// "}" ends the group, and at the top level the whole parse.
  Then closeGroup(const Word& word) {
    if (outerLevels.empty()) {
      sink.endDocument(word);
      return Then::END;
    }
    leaveLevel();
    sink.endGroup(&word);
    return Then::NEXT;
  }

  /// call = "(" , [ values ] , ")" ;
  void openArguments(const Word& word) {
    if (!hasItem()) return warn(Diagnostic::ARGUMENTS_WITHOUT_ITEM, word);
    if (level.hasValue) {
      return warnAndDropItem(Diagnostic::ARGUMENTS_MIXED_WITH_VALUES, word);
    }
    if (level.item == Item::CALL) {
      return warnAndDropItem(Diagnostic::ARGUMENTS_INSIDE_ARGUMENTS, word);
    }
    if (level.item == Item::KEYWORD) {
      return warnAndDropItem(Diagnostic::ARGUMENTS_ON_KEYWORD, word);
    }
    sink.beginCall(word);
    level.item = Item::CALL;
  }

  /// ")" completes the call.
  void closeArguments(const Word& word) {
    if (!hasItem()) return warn(Diagnostic::ARGUMENTS_CLOSED_WITHOUT_ITEM, word);
    if (level.item != Item::CALL) {
      return warnAndDropItem(Diagnostic::ARGUMENTS_CLOSED_WITHOUT_CALL, word);
    }
    sink.endCall(word);
    endItem();
  }

  /// The text ends every group that is still open.
  bool endOfText() {
    while (!outerLevels.empty()) {
      leaveLevel();
      sink.endGroup(static_cast<const Word*>(nullptr));
    }
    return level.last != Last::EMPTY_TAG && level.last != Last::NONE;
  }

  void enterLevel() {
    outerLevels.push_back(level);
    level = Level();
  }

  void leaveLevel() {
    level = outerLevels.back();
    outerLevels.pop_back();
  }

  bool hasItem() const { return level.item != Item::NONE; }

  /// From now on there is no current item.
  void endItem() {
    level.item = Item::NONE;
    level.isIncomplete = false;
  }

  [[gnu::noinline]] void warn(Diagnostic diagnostic, const Word& word) {
    sink.warning(diagnostic, word);
    level.last = Last::NONE;
  }

  [[gnu::noinline]] void warnAndDropItem(Diagnostic diagnostic, const Word& word) {
    warn(diagnostic, word);
    endItem();
  }

  Words& words;
  Sink& sink;
  const unsigned long deepest;
  Level level;  ///< of the innermost group
  std::vector<Level> outerLevels;
};

}  // namespace Quarry
