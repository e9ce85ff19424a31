/// @file
/// One word of a document's text.
#pragma once

#include <Quarry/Export.h>
#include <Quarry/ParserValue.h>

#include <cstdint>
#include <string>

namespace Quarry {

/// A view onto one word of a text, with the place where it begins and a cached classification.
///
/// ```cpp
/// const std::string text = "0x10";
/// const Quarry::ParserWord word(text, true, 1.1);
/// Quarry::ParserValue::Type type;
/// word.isValue(type);  // true, type is TYPE_BINARYDATA
/// ```
///
/// A word owns none of its characters: the text must stay alive and unchanged as long as the word
/// is used, so never make one from a temporary string.
///
/// The classification tests are lazy. A test on a word that is not yet classified applies its rule
/// and, where that succeeds, fixes the word's type; from then on every test only compares that
/// type. The order of asking therefore matters.
///
/// The format version chooses how the word becomes a string: below 1.1 as it stands, from 1.1 on
/// with the backslash escapes of quoted words resolved. The quotes stay in both cases.
class QUARRY_EXPORT ParserWord {
 public:
  /// What a word is, in the order of the stored numbers.
  enum Type : std::int32_t {
    WORD_IDENTIFIER = 0,  ///< see isIdentifier()
    WORD_OPERATOR = 1,    ///< see isOperator()
    WORD_SEPARATOR = 2,   ///< see isSeparator()
    WORD_KEYWORD = 3,     ///< see isKeyword()
    WORD_BOOL = 4,        ///< see isBool()
    WORD_BINARYDATA = 5,  ///< see isBinaryData()
    WORD_BRACE = 6,       ///< given by no classification test
    WORD_INT = 7,         ///< see isInt()
    WORD_DOUBLE = 8,      ///< see isDouble()
    WORD_STRING = 9,      ///< see isString()
    WORD_EMPTYTAG = 10,   ///< see isEmptyTag()
    WORD_NONE = 11,       ///< never a word's type: the parser's mark for "no word yet"
    WORD_UNKNOWN = 12     ///< not classified yet
  };

  /// The array size of a word that names no array.
  static constexpr unsigned long NO_ARRAY = ~0UL;

  // --- Make ------------------------------------------------------------------------------------

  /// Makes an empty word, which views nothing.
  /// @param version the text's format version; NaN counts as 1.1
  explicit ParserWord(const double& version);

  /// Makes a word at the beginning of `text`.
  /// @param whole whether the word is the whole text; otherwise it is empty
  ParserWord(const std::string& text, const bool& whole, const double& version);

  /// Copies the view and the classification; a template word is copied deeply.
  ParserWord(const ParserWord& other);
  /// Does the same; when memory runs out the word stays as it was.
  ParserWord& operator=(const ParserWord& other);

  virtual ~ParserWord();

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the offset of the first byte in the text, from 0.
  const unsigned long& getStart() const { return start; }

  /// Returns the number of bytes; 0 for an empty word.
  const unsigned long& getLength() const { return length; }

  /// Returns the line on which the word begins, from 1. Carriage return and line feed each end a
  /// line, so CR LF counts twice. 0 for a word that came from no word stream.
  const unsigned long& getLine() const { return line; }

  /// Returns the column of the first byte, from 0; from 1 where a blank or a line break ended the
  /// word. Messages have always counted so.
  const unsigned long& getColumn() const { return column; }

  /// Returns the classification so far: WORD_UNKNOWN until a test has succeeded.
  const Type& getType() const { return type; }

  /// Returns the size of the array that the word names, or NO_ARRAY.
  const unsigned long& getArraySize() const { return arraySize; }

  /// Returns the word of the template that the word names, or null. The word keeps ownership.
  const ParserWord* getTemplateWord() const { return templateWord; }

  /// Tells whether the text from the word's first byte on begins with `prefix`, also beyond the
  /// word's end. An empty word equals only "", and "" equals every word.
  bool operator==(const char* prefix) const;

  // --- Classify --------------------------------------------------------------------------------

  /// A letter or `_`, then letters, digits and any of `[ ] _ - . % :`. Never `yes` or `no`.
  bool isIdentifier() const;

  /// The word `=`.
  bool isOperator() const;

  /// The word `,`.
  bool isSeparator() const;

  /// `#`, then the bytes of an identifier, the first of them no digit.
  bool isKeyword() const;

  /// `yes` or `no`.
  bool isBool() const;

  /// At least three bytes, beginning with `0x`.
  bool isBinaryData() const;

  /// Whether the word was typed WORD_BRACE; no test gives that type.
  bool isBrace() const { return type == WORD_BRACE; }

  /// Begins with an integer, as `scanf("%d")` reads it, and holds neither `e` nor `.`.
  bool isInt() const;

  /// Begins with a number, as `scanf("%lf")` reads it.
  bool isDouble() const;

  /// At least two bytes, the first and the last a double quote.
  bool isString() const;

  /// The word `<empty>`.
  bool isEmptyTag() const;

  /// Tells whether the word is a value, and of which type. Tried in this order: empty tag, binary
  /// data, bool, int, double, string.
  /// @param valueType receives the type; left alone when the result is false
  bool isValue(ParserValue::Type& valueType) const;

  /// Tells whether words of type `t` are values.
  static bool isValuetype(const Type& t);

  // --- Text ------------------------------------------------------------------------------------

  /// Returns the word as a string, by the rule of its format version.
  std::string getString() const;

  /// Format 1.0: `out` becomes the bytes as they stand, quotes included, up to the first zero byte.
  void getString_0100(std::string& out) const;

  /// Format 1.1: appends to `out` the bytes of a quoted word with its escapes resolved, quotes
  /// included; any other word is treated as in format 1.0.
  void getString_0110(std::string& out) const;

 private:
  friend class ParserItem;
  friend class ParserValue;
  friend class ParserWordStream;
  friend class TextWord;
  friend class TreeBuilder;
  friend class WordClassifier;
  friend class WordEditor;

  const char* begin() const { return text + start; }
  const char* end() const { return text + start + length; }
  QUARRY_HIDDEN bool classify(Type wanted, bool holds) const;
  template <unsigned long SIZE>
  bool spells(const char (&literal)[SIZE]) const;

  mutable Type type;
  const char* text;          ///< the whole document text, not owned
  const char* textEnd;       ///< where it ends
  unsigned long start;       ///< offset in `text`, in bytes
  unsigned long length;      ///< in bytes
  unsigned long line;        ///< from 1
  unsigned long column;      ///< from 0
  unsigned long arraySize;   ///< NO_ARRAY for none
  ParserWord* templateWord;  ///< owned, or null
  bool resolvesEscapes;      ///< the string rule: format 1.1 instead of 1.0
};

}  // namespace Quarry
