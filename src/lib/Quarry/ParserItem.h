/// @file
/// One named entry of a group, with its values.
#pragma once

#include <Quarry/Export.h>
#include <Quarry/ParserValue.h>

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace Plinth {
class Expression;
}

namespace Quarry {

class OutputBuffer;
class ParserGroup;
class ParserWord;

/// A name with an ordered list of typed values: `size 1920 1080`, `#format 2` or `blur(4, yes)`.
///
/// ```cpp
/// Quarry::ParserGroup root("root");
/// Quarry::ParserItem* size = root.addItem("size", 0, 0);
/// size->addInt(1920);
/// size->addInt(1080);
/// int height = size->getInt(1);  // 1080
/// ```
///
/// Ownership: a group owns its items, an item owns its values, and through a group value its nested
/// group. What the accessors hand out stays the item's and is good until that value is changed or
/// removed.
///
/// Indices of values count from 0 and are not checked: an index at or past getValueCount() is the
/// caller's error (an assertion in a debug build).
///
/// Threads: one at a time; the `const` operations fill caches of the name and of the values.
class QUARRY_EXPORT ParserItem {
 public:
  /// The kinds of item.
  enum Type : std::int32_t {
    ITEM_PLAIN = 0,    ///< a name and its values
    ITEM_KEYWORD = 1,  ///< the name begins with `#`
    ITEM_CALL = 2      ///< the values are an argument list, written in parentheses
  };

  /// The array count of an item that is no array.
  static constexpr unsigned long NO_ARRAY = ~0UL;

  // --- Make ------------------------------------------------------------------------------------

  /// Makes an item without values. The name is not checked here; ParserGroup::addItem() does that.
  /// @param line where the item stands in its document, from 1; 0 when made by code
  /// @param column the column of its name, as ParserWord::getColumn() counts
  ParserItem(const std::string& name, const Type& type, const unsigned long& line,
             const unsigned long& column);

  /// Copies everything deeply but the folding flag: the copy starts unfolded.
  ParserItem(const ParserItem& other);
  ParserItem& operator=(const ParserItem&) = delete;

  ~ParserItem() {
    if (valuesOwnMemory || hasList || name.ownsMemory()) freeParts();
  }

  /// Gets memory for `new`. Items have memory of their own kind, which is cheaper to get and to
  /// free than the process's. Any thread may free it. Throws `std::bad_alloc`.
  static void* operator new(std::size_t size);
  /// Does the same, but returns null when memory runs out, and for a class that is derived from
  /// this one and larger than 1,024 bytes.
  static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
  /// Returns `place`, the caller's own memory.
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  /// Frees what `new` got.
  static void operator delete(void* memory, std::size_t size) noexcept;
  /// Frees what `new` got where the constructor has thrown.
  static void operator delete(void* memory, const std::nothrow_t& tag) noexcept;
  /// Leaves the caller's own memory alone.
  static void operator delete(void*, void*) noexcept {}

  /// Replaces everything but the folding flag by a deep copy of `other`, which may be this item or
  /// stand below it. When memory runs out the item stays as it was.
  void copyFrom(const ParserItem& other);

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the name, with the `#` of a keyword. The string is the item's; it is made when the
  /// name is asked for first and then kept, and follows rename() and copyFrom().
  const std::string& getName() const;

  /// Returns the kind of item.
  const Type& getType() const { return type; }

  /// Returns the number of values.
  unsigned long getValueCount() const { return count; }

  /// Returns the array size; 0 for an array of unspecified size, NO_ARRAY for no array.
  const unsigned long& getArrayCount() const;

  /// Returns the template name; empty when the item is no template instance.
  const std::string& getTemplate() const;

  /// Tells whether the item is an array, also one of unspecified size.
  bool isArray() const { return getArrayCount() != NO_ARRAY; }

  /// Tells whether the item has a template name.
  bool isTemplate() const { return !getTemplate().empty(); }

  /// Tells whether the item is a keyword.
  bool isKeyWord() const { return type == ITEM_KEYWORD; }

  /// Tells whether the item holds exactly one value and that is a group.
  bool isGroup() const { return count == 1 && begin()->isGroup(); }

  /// Tells whether the name matches `pattern`; false when the pattern holds none.
  bool isMatching(const Plinth::Expression& pattern) const;

  // --- Look at values --------------------------------------------------------------------------

  /// Returns the type of value `index`.
  const ParserValue::Type& getValueType(const unsigned long& index) const {
    return valueAt(index).getType();
  }

  /// Returns value `index` as ParserValue::getAsBool() does, with its warning and default.
  bool getBool(const unsigned long& index) const;
  /// Returns value `index` as ParserValue::getAsChar() does.
  char getChar(const unsigned long& index) const;
  /// Returns value `index` as ParserValue::getAsInt() does.
  int getInt(const unsigned long& index) const;
  /// Returns value `index` as ParserValue::getAsDouble() does.
  double getDouble(const unsigned long& index) const;
  /// Returns value `index` as ParserValue::getAsString() does: only of a string value.
  const std::string& getString(const unsigned long& index) const;

  /// Returns the bytes of a block; null, after a warning, for every other type.
  void* getBinaryData(const unsigned long& index) const;

  /// Returns the number of bytes of a block; 0, after a warning, for every other type.
  unsigned long getBinaryDataSize(const unsigned long& index) const;

  /// Returns the stored text of the value, as it stood in the document (a string without its quotes
  /// and escapes); empty for a group and for a value whose text was not made yet.
  std::string getWord(const unsigned long& index) const;

  /// Returns the group that is value `index`, or null when the value is no group. An item without
  /// any value gets a new, empty group, which is returned, whatever `index` is.
  ParserGroup* getGroup(const unsigned long& index) const;

  /// Tells whether value `index` is a bool.
  bool isValueBool(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_BOOL;
  }
  /// Tells whether value `index` is a character; no value read from a text is one.
  bool isValueChar(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_CHAR;
  }
  /// Tells whether value `index` is an integer.
  bool isValueInt(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_INT;
  }
  /// Tells whether value `index` is a double or an integer, which counts as a double too.
  bool isValueDouble(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_DOUBLE || isValueInt(index);
  }
  /// Tells whether value `index` is a string.
  bool isValueString(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_STRING;
  }
  /// Tells whether value `index` is a group, also one that was cleared.
  bool isValueGroup(const unsigned long& index) const {
    return getValueType(index) == ParserValue::TYPE_GROUP;
  }

  // --- Change ----------------------------------------------------------------------------------

  /// Changes the name, unchecked.
  void rename(const std::string& newName);

  /// Makes the item an array of `count` elements (0 for an unspecified number), or no array.
  void setArray(const bool& array, const unsigned long& count);

  /// Sets the template name; an empty one makes the item no template instance.
  void setTemplate(const std::string& newTemplate);

  /// Chooses whether a group item is written between fold markers for editors. A folded group does
  /// not read back as the same tree: its closing marker is no comment.
  void setFolding(const bool& on);

  /// Makes value `index` a bool. As with all of these, the value takes the new type, whatever it
  /// was, and loses its text; see the setters of ParserValue.
  void setBool(const bool& value, const unsigned long& index);
  /// Makes value `index` an integer, which the text form writes as one raw byte.
  void setInt(const int& value, const unsigned long& index);
  /// Makes value `index` a double, which the text form writes as one raw byte.
  void setDouble(const double& value, const unsigned long& index);
  /// Makes value `index` a string; it may be one of this item's own.
  void setString(const std::string& value, const unsigned long& index);
  /// Makes value `index` a block with a copy of `size` bytes.
  void setBinaryData(void* bytes, const unsigned long& size, const unsigned long& index);

  // --- Add and remove values -------------------------------------------------------------------

  /// Appends a bool with the text `yes` or `no`. All of these give their value its text at once, so
  /// that it is written readably.
  void addBool(const bool& value);
  /// Appends a character with the decimal digits of its code, -128 to 127.
  void addChar(const char& value);
  /// Appends an integer with its decimal digits.
  void addInt(const int& value);
  /// Appends a double with its shortest spelling.
  void addDouble(const double& value);
  /// Appends a string, unescaped.
  void addString(const std::string& value);

  /// Appends a copy of `size` bytes.
  void addBinaryData(void* bytes, const unsigned long& size);

  /// Appends a group.
  /// @param group adopted: it must come from `new`. Null makes a new group without a name.
  /// @return the group that was appended; the item owns it
  ParserGroup* addGroup(ParserGroup* group);

  /// Appends the value that a word stands for.
  /// @param word a word that ParserWord::isValue() classified
  /// @param valueType the type that isValue() gave
  /// @throws std::out_of_range ("basic_string::substr") for a string word that is longer than two
  ///         bytes and yields an empty string, which isValue() never calls a string
  void addWord(const ParserWord& word, const ParserValue::Type& valueType);

  /// Removes the values at the given indices; indices past the end and repeated ones are ignored.
  void removeValue(const std::vector<unsigned long>& indices);
  /// Removes the value at one index.
  void removeValue(const unsigned long& index);

  /// Removes all values and nothing else.
  void reset();

  // --- Text ------------------------------------------------------------------------------------

  /// Appends the item as it stands in a document: name, template, array size, values; a folded
  /// group between its markers. Neither leading blanks nor a final line feed.
  /// @param multiline whether nested groups are written with one item a line
  /// @param indent the depth, from 1 for the items of the root; 0 is taken as 1
  void getText(std::string& out, const bool& multiline, const unsigned long& indent) const;

  /// Appends the values only: each after a blank, or a parenthesised argument list, or " <empty>"
  /// for none.
  void getValueText(std::string& out, const bool& multiline, const unsigned long& indent) const;

  // --- Binary ----------------------------------------------------------------------------------

  /// Returns the item's frame in the binary form: name, size, and its values. The item's kind,
  /// place, array size, template and folding are not part of it.
  std::vector<char> getBinary() const;

  /// Appends the values of an item frame to those that the item holds already.
  /// @param data the bytes
  /// @param pos where the frame goes on behind the name, in bytes from 0; moved behind what was
  ///            read
  /// @return false for a size that exceeds the data, which is printed on the console as
  ///         "ParserItem::setBinary:  'name', chunk size (99) is larger than the given buffer
  ///         (12)", for a frame that is cut short, and for a value that cannot be read; the values
  ///         before it stay
  bool setBinary(const std::vector<char>& data, unsigned long& pos);

 private:
  friend class BinaryReader;
  friend class BinaryWriter;
  friend class NameIndex;
  friend class ParserGroup;
  friend class RegionCheck;
  friend class TreeBuilder;
  friend class TreeCopier;
  friend class TreeRemover;
  template <class Output>
  friend class TextWriter;
  template <class Visitor>
  friend class TreeWalker;

  /// What few items have.
  struct Details {
    unsigned long arrayCount = NO_ARRAY;
    std::string templateName;
  };

  /// Where an item stands in its document.
  struct Place {
    unsigned long line;
    unsigned long column;
  };

  /// For so many values an item is made with places of its own.
  struct ValueCount {
    unsigned long count;
  };

  /// A name. Nearly all are short and lie in the item, a longer one lies in a block of its own.
  /// When a string is asked for, the name moves into one and stays there. Wherever it lies, the
  /// second half tells its length and last bytes. Whoever makes a name frees it.
  struct Name {
    /// @param readable bytes up to here may be read, though not used
    QUARRY_HIDDEN Name(std::string_view text, const char* readable);
    QUARRY_HIDDEN void free() noexcept;

    /// Good until the name changes or is made a string.
    std::string_view get() const {
      if (!ownsMemory()) return {place.bytes, form()};
      return isString() ? std::string_view(*place.block.string)
                        : std::string_view(place.block.bytes, place.block.length);
    }

    /// Returns up to where the bytes may be read.
    const char* readable() const {
      return ownsMemory() ? get().data() + get().size() : place.bytes + SIZE;
    }

    /// Tells whether this is the name `text`.
    /// @param key made by makeKey() of it
    QUARRY_HIDDEN bool is(std::string_view text, const Name& key) const;

    /// Makes what a name is compared with. It has no memory and must not be freed.
    QUARRY_HIDDEN static Name makeKey(std::string_view text);

    /// Appends the name to what is written.
    QUARRY_HIDDEN void appendTo(OutputBuffer& out) const;
    void appendTo(std::string& out) const { out.append(get()); }

    bool isString() const { return (form() & STRING) != 0; }
    bool ownsMemory() const { return form() > LONGEST_SHORT; }

    /// Makes the name a string, where it is none yet.
    QUARRY_HIDDEN const std::string& getString();

    /// Exchanges two names that are both strings or both none.
    QUARRY_HIDDEN void exchange(Name& other) noexcept;

    // What the operations above are made of.

    static constexpr unsigned long SIZE = 16;
    static constexpr unsigned long HALF = SIZE / 2;
    static constexpr unsigned long TAIL = 3;

    /// The last byte tells the length of a short name, or that the name is a longer one, and then
    /// whether it is a string. Bytes of a short name that are not used are 0.
    static constexpr std::uint8_t LONGEST_SHORT = SIZE - 1;
    static constexpr std::uint8_t LONGER = 0x7F;
    static constexpr std::uint8_t STRING = 0x80;

    union Place {
      char bytes[SIZE];
      struct {
        union {
          char* bytes;
          std::string* string;
        };
        alignas(HALF) std::uint32_t length;
        char tail[TAIL];  ///< the last bytes
      } block;
    };

    Name() = default;

    std::uint8_t form() const { return static_cast<std::uint8_t>(place.bytes[SIZE - 1]); }
    void setForm(unsigned long form) { place.bytes[SIZE - 1] = static_cast<char>(form); }
    QUARRY_HIDDEN static void copyHalf(const char* from, const unsigned char* mask, char* to);
    QUARRY_HIDDEN void hold(std::string_view text);
    QUARRY_HIDDEN void describeLonger(std::string_view text);
    QUARRY_HIDDEN void holdHuge(std::string_view text);
    QUARRY_HIDDEN void holdString(std::string text);

    Place place;
  };

  QUARRY_HIDDEN ParserItem(std::string_view itemName, const char* readable, Type itemType,
                           const Place& place);
  QUARRY_HIDDEN static void* operator new(std::size_t size, ValueCount places);
  QUARRY_HIDDEN static void operator delete(void* memory, ValueCount places) noexcept;
  QUARRY_HIDDEN static ParserItem* make(std::string_view itemName, const char* readable,
                                        Type itemType, const Place& place, unsigned long wanted);
  QUARRY_HIDDEN static void destroy(ParserItem* item) noexcept;

  ParserValue* begin() const { return hasList ? list : ownPlaces(); }
  ParserValue* end() const { return begin() + count; }
  ParserValue& valueAt(unsigned long index) const {
    assert(index < count);
    return begin()[index];
  }
  ParserValue* ownPlaces() const { return reinterpret_cast<ParserValue*>(ownPlace); }
  QUARRY_HIDDEN void* nextPlace() const;
  QUARRY_HIDDEN void addMade() const;
  QUARRY_HIDDEN void reserve(unsigned long places) const;
  QUARRY_HIDDEN bool makePlace() const;
  QUARRY_HIDDEN bool extend() const;
  QUARRY_HIDDEN void grow(unsigned long places) const;
  QUARRY_HIDDEN void moveValuesTo(ParserValue* places) const noexcept;
  QUARRY_HIDDEN void takeList(ParserItem& from) noexcept;
  QUARRY_HIDDEN void freePlaces() const noexcept;
  QUARRY_HIDDEN void destroyValues() noexcept;
  QUARRY_HIDDEN void freeValues() noexcept;
  void freeParts() noexcept;
  QUARRY_HIDDEN void appendText(ParserValue::Type valueType, std::string_view text);
  QUARRY_HIDDEN void appendWord(const ParserWord& word, ParserValue::Type valueType);
  QUARRY_HIDDEN void addText(ParserValue::Type valueType, std::string_view text,
                             const char* readable) const;
  QUARRY_HIDDEN ParserGroup* appendNewGroup() const;
  QUARRY_HIDDEN void copyDetails(const ParserItem& other);
  QUARRY_HIDDEN Details& makeDetails();
  QUARRY_HIDDEN void noteNewName() const;
  void noteChange() const {
    if (isPart) leaveRegion();
  }
  QUARRY_HIDDEN void leaveRegion() const noexcept;
  QUARRY_HIDDEN void noteHolding() const;
  QUARRY_HIDDEN static void freeHeld(void* item);
  QUARRY_HIDDEN static void readQuoted(const ParserWord& word, std::string& text);

  mutable Name name;
  mutable std::uint32_t count;       ///< of the values; getGroup() may add the first one
  mutable std::uint32_t capacity;    ///< of the places at begin()
  std::unique_ptr<Details> details;  ///< of an array or a template instance, else null
  std::uint32_t line;                ///< places beyond 2^32 are not told apart
  std::uint32_t column;
  Type type;
  bool folding;
  mutable bool valuesOwnMemory = false;  ///< else none of them has to be looked at to free them
  mutable bool hasList = false;          ///< the values lie in a list apart
  mutable bool isIndexed : 1;            ///< a group's NameIndex knows the item under its name
  mutable bool isPart : 1;               ///< made by the library: its memory may be a region's

  /// Where the values lie, side by side: the address takes the first one's place when that is left.
  /// With pointers of 64 bits the item has 88 bytes so, and each further value 40.
  union {
    mutable ParserValue* list;  ///< owned; where there is one

    /// The place of the first value. An item that is made for more values has more places behind
    /// it.
    alignas(ParserValue) mutable unsigned char ownPlace[sizeof(ParserValue)];
  };
};

}  // namespace Quarry
