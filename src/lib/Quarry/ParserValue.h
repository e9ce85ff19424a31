/// @file
/// One typed value of a document item, in text form, as typed data, or both.
#pragma once

#include <Quarry/Export.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

class OutputBuffer;
class ParserGroup;
class ParserWord;

/// A boolean, character, integer, double, string, block of bytes, nested group, or the empty tag.
///
/// A value keeps up to two forms of itself. A value read from a document holds its text exactly as
/// it stood there and is converted on first typed access; a value made by code holds typed data and
/// gets its text when it is first written. A document is therefore written back with the spelling
/// it was read with.
///
/// ```cpp
/// Quarry::ParserValue read(Quarry::ParserValue::TYPE_DOUBLE, "1.50");
/// double number = read.getAsDouble();  // 1.5
/// std::string text;
/// read.getText(text, true, 1);  // "1.50": the spelling is kept
/// ```
///
/// Ownership: a value owns its string, its bytes, its text and its group, and frees them when it is
/// destroyed. What the accessors hand out belongs to the value and is good until the next setter or
/// clear(), or until the value is destroyed.
///
/// Conversions: bools, characters, integers and doubles convert into one another; strings, groups,
/// blocks and empty tags do not. Where there is no conversion, one warning is given on
/// Plinth::console, "ParserValue::getAsInt: type mismatch, value type is 'TYPE_STRING' \n", and a
/// default is returned. The text of a value that came from a document is converted leniently,
/// without a message: a bool is true only for `yes`, a number is read as far as it goes and is 0
/// where it does not begin.
///
/// Binary: the encoders, such as intToBin(), append to `buffer`, little-endian on every machine,
/// and return the number of bytes that they appended. The decoders, such as binToInt(), read at
/// `pos`, in bytes from 0, and move it behind what they have read; where fewer bytes are left than
/// a number needs, they return 0 (false, 0.0) and leave `pos` at the end of the data.
///
/// Failures: nothing is thrown but `std::bad_alloc`.
///
/// Threads: the `const` operations fill caches, so even reading one value from two threads at once
/// needs a lock outside.
class QUARRY_EXPORT ParserValue {
 public:
  /// What a value is. The numbers are stored in binary documents.
  enum Type : std::int32_t {
    TYPE_GROUP = 0,       ///< a nested group
    TYPE_BOOL = 1,        ///< `yes` or `no`
    TYPE_CHAR = 2,        ///< a signed 8-bit character
    TYPE_INT = 3,         ///< a signed 32-bit integer
    TYPE_DOUBLE = 4,      ///< a 64-bit IEEE 754 number
    TYPE_STRING = 5,      ///< a string of bytes
    TYPE_BINARYDATA = 6,  ///< a block of bytes
    TYPE_EMPTY = 7        ///< the empty tag, the word `<empty>`
  };

  // --- Make ------------------------------------------------------------------------------------

  /// Makes a bool. As with all of these, the value holds typed data and no text yet.
  ParserValue(const bool& value);
  /// Makes a character.
  ParserValue(const char& value);
  /// Makes an integer.
  ParserValue(const int& value);
  /// Makes a double.
  ParserValue(const double& value);
  /// Makes a string, a copy.
  ParserValue(const std::string& value);

  /// Makes a string value from a C string, which must not be null.
  ParserValue(const char* value);

  /// Makes a block of bytes.
  /// @param bytes the first byte; copied, not adopted. May be null when `size` is 0.
  /// @param size the number of bytes
  ParserValue(void* bytes, const unsigned long& size);

  /// Makes a group value.
  /// @param group adopted: it must come from `new` and is deleted with the value. Null is replaced
  ///              by a new, empty group without a name.
  ParserValue(ParserGroup* group);
  /// Makes a group value with a new, empty group without a name.
  ParserValue(std::nullptr_t group);

  /// Refused: a pointer would otherwise silently become a bool.
  ParserValue(const void* pointer) = delete;

  /// Makes a value from its text, as the parser does; the typed data follows on first access.
  ///
  /// For a group, `text` names the new, empty group. For a block of bytes, `text` is converted at
  /// once (see wordToBinaryData()) and not kept. A type outside the enumeration gives a value
  /// without text and data.
  ParserValue(const Type& type, const std::string& text);

  /// Copies deeply: text, data, and the whole tree of a group, however deep.
  ParserValue(const ParserValue& other);
  ParserValue& operator=(const ParserValue&) = delete;

  virtual ~ParserValue();

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the type; it outlives clear().
  const Type& getType() const { return type; }

  /// Returns the enumerator's name, such as "TYPE_INT", for messages. Blocks of bytes, the empty
  /// tag and numbers outside the enumeration have no name of their own: "TYPE_UNKNOWN".
  static std::string getType_name(const Type& type);

  /// Returns the bool, or whether the number is not 0 (NaN is true); false after the warning.
  bool getAsBool() const;

  /// Returns the character; of an integer the low 8 bits, of a double the low 8 bits of
  /// getAsInt(); 0 after the warning.
  char getAsChar() const;

  /// Returns the integer; a double is cut towards zero, and one that is NaN or does not fit gives
  /// -2147483648; 0 after the warning.
  int getAsInt() const;

  /// Returns the number as a double; 0.0 after the warning.
  double getAsDouble() const;

  /// Returns the string of a string value; for every other type the warning is given and one
  /// shared, empty string returned. Numbers are not turned into strings here.
  const std::string& getAsString() const;

  /// Returns the first byte of a block and sets `size` to its number of bytes. An empty block may
  /// give null. For every other type the warning is given, null returned and `size` left alone.
  void* getAsBinaryData(unsigned long& size) const;

  /// Converts the text into typed data now, if that has not happened yet.
  void makeValue() const;

  // --- Change ----------------------------------------------------------------------------------

  /// Makes the value a bool. All setters turn the value into their type, whatever it was, with the
  /// given data and no text; a group is freed. Data of the value itself may be passed.
  void setBool(const bool& value);
  /// Makes the value a character.
  void setChar(const char& value);
  /// Makes the value an integer.
  void setInt(const int& value);
  /// Makes the value a double.
  void setDouble(const double& value);
  /// Makes the value a string, a copy.
  void setString(const std::string& value);

  /// Makes the value a block of bytes.
  /// @param bytes the first byte; copied. May be null when `size` is 0.
  /// @param size the number of bytes
  void setBinaryData(void* bytes, const unsigned long& size);

  /// Frees text, data and group; the type stays. The value then reads as the defaults of its type
  /// (with the warning for a group, string or block) and writes an empty text: a string as its two
  /// quotes, any other type as nothing.
  void clear();

  // --- Text ------------------------------------------------------------------------------------

  /// Appends the value's text form to `out`.
  ///
  /// A value that was read keeps its spelling. A string is quoted and escaped, a bool is `yes` or
  /// `no`, a block is "0x", its bytes and a checksum in upper-case hexadecimal digits. A character,
  /// integer or double that was set as data is written as one raw byte, its low 8 bits: that is
  /// what the format has always done. Numbers that shall be written in digits are added with
  /// ParserItem::addInt() and its like, or made from their text.
  ///
  /// @param multiline whether a group is written with one item a line
  /// @param indent the depth of a group, from 1; 0 is taken as 1
  void getText(std::string& out, const bool& multiline, const unsigned long& indent) const;

  /// Decodes a binary-data word: two characters of prefix, two upper-case hexadecimal digits for
  /// each byte, eight digits of checksum. The checksum is not verified. A pair with any other
  /// character counts as byte 0; a word of odd length or without bytes gives an empty block.
  /// @param data receives a new array, which the caller frees with `delete[]` as `char*`; null for
  ///             an empty block
  /// @param size receives the number of bytes
  static void wordToBinaryData(void*& data, unsigned long& size, const ParserWord& word);

  // --- Binary ----------------------------------------------------------------------------------

  /// Appends the value's binary form to `buffer`: its type as one byte, when `withTag`, and its
  /// typed data, converted from the text where there is only that. The empty tag and types outside
  /// the enumeration have no data. Nested groups may be of any depth.
  /// @param count is increased by the number of bytes appended
  void getBinary(std::vector<char>& buffer, unsigned long& count, const bool& withTag) const;

  /// Appends 1 for true, 0 for false. Returns 1.
  static unsigned long boolToBin(std::vector<char>& buffer, const bool& value);
  /// Reads one byte, of which any but 0 is true; false at the end of the data.
  static bool binToBool(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends the byte. Returns 1.
  static unsigned long charToBin(std::vector<char>& buffer, const char& value);
  /// Reads one byte; 0 at the end of the data.
  static char binToChar(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends four bytes, in two's complement. Returns 4.
  static unsigned long intToBin(std::vector<char>& buffer, const int& value);
  /// Reads four bytes; 0 where they are cut short.
  static int binToInt(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends the eight bytes of the IEEE 754 form. Returns 8.
  static unsigned long doubleToBin(std::vector<char>& buffer, const double& value);
  /// Reads eight bytes; 0.0 where they are cut short.
  static double binToDouble(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends an unsigned number of eight bytes. Returns 8.
  static unsigned long sizeToBin(std::vector<char>& buffer, const unsigned long& value);
  /// Reads eight bytes; 0 where they are cut short, and the largest `unsigned long` for a number
  /// beyond it.
  static unsigned long binTosize(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends the bytes of the string and a zero byte. Returns the length of both. A string that
  /// holds a zero byte is read back only up to that byte.
  static unsigned long stringToBin(std::vector<char>& buffer, const std::string& value);
  /// Reads a string and the zero byte behind it. Without that byte it is not read: the warning
  /// "ParserValue::binTostring: Failed to parse string\n" is given, an empty string returned, and
  /// `pos` is at the end.
  static std::string binToString(const std::vector<char>& buffer, unsigned long& pos);

  /// Appends the size and as many bytes. Returns the length of both, `size` + 8.
  static unsigned long binaryDataToBin(std::vector<char>& buffer, void* bytes,
                                       const unsigned long& size);
  /// Reads a block. Returns a new array, which the caller frees with `delete[]` as `char*`, and
  /// sets `size`. An empty block gives null. Where fewer bytes are left than the size promises, the
  /// warning "ParserValue::binToBinaryData: Failed to parse string\n" is given, null returned with
  /// size 0, and `pos` is at the end.
  static void* binToBinaryData(const std::vector<char>& buffer, unsigned long& pos,
                               unsigned long& size);

  /// Appends the frame of a group without its name. Returns the length of the frame.
  static unsigned long groupToBin(std::vector<char>& buffer, const ParserGroup& group);

  /// Reads a tag and what belongs to it. Decoded values hold typed data and no text.
  /// @return a new value, which the caller owns; null for the empty tag, an unknown tag, the end
  ///         of the data, and a number that is cut short. What is broken within a group gives the
  ///         group as far as it was read.
  static ParserValue* binTovalue(const std::vector<char>& buffer, unsigned long& pos);

 private:
  friend class BinaryReader;
  friend class BinaryWriter;
  friend class ParserItem;
  friend class RegionCheck;
  friend class TreeBuilder;
  friend class TreeCopier;
  friend class TreeRemover;
  template <class Output>
  friend class TextWriter;
  template <class Visitor>
  friend class TreeWalker;

  struct BinaryBlock {
    std::unique_ptr<char[]> data;
    unsigned long size;
  };

  // Nearly all texts are short. They lie in the value itself, so that an item's values, which lie
  // side by side, are read and freed without following a pointer.

  /// A longer text, and the group.
  union Slot {
    ParserGroup* group;  ///< owned, TYPE_GROUP
    struct {
      char* bytes;
      unsigned long length;
    } longText;  ///< owned, every other type; a string's text is unescaped
  };

  /// A group has no data; a string has its bytes in the text's place until it is asked for.
  union Data {
    bool boolean;
    char character;
    int integer;
    double number;
    std::string* string;  ///< owned, TYPE_STRING, when the text lies in it
    BinaryBlock* block;   ///< owned, TYPE_BINARYDATA
  };

  struct Content {
    Slot slot;
    Data data;
  };

  /// So many bytes before the slot would only align it: a text begins in them, and a double with
  /// all its digits then leaves the data its place.
  static constexpr unsigned long TEXT_LEAD = 3;

  /// The longest text that ends in the slot, and the longest that ends in the data: the data of
  /// such a number is not kept but made from the text each time.
  static constexpr unsigned long SLOT_TEXT = TEXT_LEAD + sizeof(Slot);
  static constexpr unsigned long CONTENT_TEXT = TEXT_LEAD + sizeof(Content);

  /// Where the text lies, when it is not in the value itself.
  enum TextPlace : std::uint8_t { LONG_TEXT = 30, STRING_TEXT = 31 };

  // The library's own ways to make a value.

  enum class Form : std::uint8_t { DATA, TEXT };
  /// As data or as text, still without either.
  /// @param length of the text that is going to lie in the value itself
  QUARRY_HIDDEN ParserValue(Form form, Type valueType, unsigned long length = 0);
  /// A string as data.
  QUARRY_HIDDEN ParserValue(Form form, std::string_view bytes);
  /// A text of a type that isKeptAsText(). Bytes up to `readable` may be read, though not used.
  QUARRY_HIDDEN ParserValue(Form form, Type valueType, std::string_view text, const char* readable);
  QUARRY_HIDDEN explicit ParserValue(std::unique_ptr<BinaryBlock> block);
  /// A group, which is adopted.
  QUARRY_HIDDEN ParserValue(Form form, ParserGroup* group) noexcept;
  QUARRY_HIDDEN static void relocate(const ParserValue& from, void* to) noexcept;

  QUARRY_HIDDEN static bool isKeptAsText(Type type);
  QUARRY_HIDDEN static std::unique_ptr<BinaryBlock> makeBlock(std::unique_ptr<char[]> bytes,
                                                              unsigned long size);
  QUARRY_HIDDEN static std::unique_ptr<BinaryBlock> readBlock(std::string_view word);

  bool isGroup() const { return type == TYPE_GROUP; }
  /// Returns the group, or null for any other type and after clear().
  ParserGroup* getGroup() const { return isGroup() && textValid ? content.slot.group : nullptr; }
  /// Tells whether there is a text; never for a group.
  bool hasText() const { return textValid && !isGroup(); }
  /// The text, or the bytes of a string; empty where there are none.
  QUARRY_HIDDEN std::string_view getBytes() const;
  char* inlineText() const { return reinterpret_cast<char*>(&content) - TEXT_LEAD; }

  QUARRY_HIDDEN bool isNumeric(const char* operation) const;
  QUARRY_HIDDEN bool isHeldString() const;
  /// Tells whether getAsString() makes no string: it is made, or there is none.
  bool isStringObject() const { return type != TYPE_STRING || textLength == STRING_TEXT; }
  /// As getAsString(), without making a string.
  QUARRY_HIDDEN std::string_view getAsBytes() const;
  QUARRY_HIDDEN double getNumber() const;
  QUARRY_HIDDEN double makeNumber() const;
  [[gnu::noinline]] QUARRY_HIDDEN double makeAnyNumber() const;  // would burden the short ones
  QUARRY_HIDDEN void warnOfMismatch(const char* operation) const;
  QUARRY_HIDDEN void become(Type newType);
  QUARRY_HIDDEN void release() noexcept;
  QUARRY_HIDDEN void takeOver(ParserValue& other) noexcept;
  QUARRY_HIDDEN void storeText(std::string_view text, unsigned long room) const;
  QUARRY_HIDDEN void freeLongText() const noexcept;
  QUARRY_HIDDEN void makeText() const;
  void appendText(std::string& out) const;
  QUARRY_HIDDEN void appendText(OutputBuffer& out) const;

  Type type;
  mutable std::uint8_t textLength : 5;  ///< of a text in the value itself, or its TextPlace
  mutable bool dataValid : 1;           ///< there is data (a string's may still lie as text)
  mutable bool textValid : 1;           ///< there is a text, or a group
  mutable bool ownsMemory : 1;          ///< something has to be freed
  mutable char textLead[TEXT_LEAD];     ///< where a text in the value itself begins
  mutable Content content;
};

}  // namespace Quarry
