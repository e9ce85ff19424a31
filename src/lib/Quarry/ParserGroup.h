/// @file
/// A node of the document tree: a named, ordered container of items.
#pragma once

#include <Quarry/Export.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserItems.h>

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

class NameIndex;
class ParserWordStream;
class SlabRegion;

/// Holds items in the order in which they were added. Names need not be unique.
///
/// ```cpp
/// Quarry::ParserGroup root("root");
/// root.setText("camera { fov 39.6 }", 1.1);
/// double fov = root.getGroup("camera")->getItem("fov")->getDouble(0);
/// ```
///
/// Plain items and keywords (names beginning with `#`) are looked up apart: the operations on items
/// never find a keyword and getKeyword() finds nothing else. Both are written in list order. Names
/// compare byte for byte.
///
/// Ownership: the group owns its items and frees them, with everything below, when they are removed
/// or the group is destroyed. A pointer that a lookup returns is good until then. Trees may be of
/// any depth: copying, writing, parsing and freeing need memory, not stack.
///
/// Threads: one at a time.
class QUARRY_EXPORT ParserGroup {
 public:
  // --- Make ------------------------------------------------------------------------------------

  /// Makes an empty group. The name stays as it is given here.
  explicit ParserGroup(const std::string& name);

  /// Copies the name and, deeply, every item. All copied items can be looked up.
  ParserGroup(const ParserGroup& other);
  ParserGroup& operator=(const ParserGroup&) = delete;

  ~ParserGroup();

  /// Gets memory for `new`. Groups have memory of their own kind, which is cheaper to get and to
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

  // --- Look ------------------------------------------------------------------------------------

  /// Returns the name given at construction; nested groups of a document that was read have none.
  const std::string& getName() const;

  /// Returns the number of plain items, detached ones included; keywords are not counted.
  unsigned long getItemCount() const { return plainCount; }

  /// Returns plain item `index`, in order of addition from 0; null when it was detached. An index
  /// at or past getItemCount() is the caller's error (an assertion in a debug build).
  ParserItem* getItem(const unsigned long& index) const {
    assert(index < plainCount);
    return plainAt(index);
  }

  /// Returns the first plain item called `wanted`, or null when there is none.
  ParserItem* getItem(const std::string& wanted) const;

  /// Returns the group that is the first value of the first plain item called `wanted`; null when
  /// there is no such item or its value is no group. An item without values gets a new, empty
  /// group (see ParserItem::getGroup()).
  ParserGroup* getGroup(const std::string& wanted) const;

  /// Returns the first keyword called `wanted`, `#` included, or null when there is none.
  ParserItem* getKeyword(const std::string& wanted) const;

  /// Returns every plain item called `wanted`, in order; an empty vector when there is none.
  std::vector<ParserItem*> getEntries(const std::string& wanted) const;

  /// Returns the items that are no keywords, in list order: all of them for an empty pattern, else
  /// those in whose name the regular expression is found (RE2 syntax, see Plinth::Expression).
  ///
  /// The collection is a live view of the group, also of items that came from binary data, and must
  /// not outlive it. A pattern that does not compile gives a warning and an empty collection.
  ParserItems getItems(const std::string& pattern) const;

  // --- Change ----------------------------------------------------------------------------------

  /// Adopts `item` itself, unchecked: it must come from `new` and is deleted with the group. When
  /// memory runs out it stays the caller's.
  /// @return the item's address
  ParserItem* addItem(const ParserItem& item);

  /// Adds a new item without values: a plain one for an identifier (see
  /// ParserWord::isIdentifier()), a keyword for `#` and an identifier.
  /// @param line where the item stands in its document, from 1; 0 when added by code
  /// @param column the column of its name
  /// @return the item, which the group owns
  /// @throws Plinth::Fatal "ParserGroup::addItem: '...' is not a valid item name\n"; the group is
  ///         then unchanged
  ParserItem* addItem(const std::string& newName, const unsigned long& line,
                      const unsigned long& column);

  /// Adds an item that holds a new, empty group without a name of its own.
  /// @param folding whether the item is written between fold markers
  /// @return the new group
  /// @throws Plinth::Fatal as addItem()
  ParserGroup* addGroup(const std::string& newName, const bool& folding);

  /// Adds an item that is named after `group` and holds it.
  /// @param group adopted, not copied: not null, from `new`. After an exception it is still the
  ///              caller's.
  /// @return `group`
  /// @throws Plinth::Fatal as addItem()
  ParserGroup* addGroup(ParserGroup* group, const bool& folding);

  /// Hands plain item `index` back to the caller, who holds the pointer from getItem(index) and
  /// deletes it in the end. Its place stays, empty: getItemCount() does not change, getItem(index)
  /// is null, and everything else passes over it.
  void detachItem(const unsigned long& index);

  /// Deletes every item called `doomed`, plain or keyword. Without such an item nothing happens but
  /// that places left by detachItem() are closed.
  void removeItem(const std::string& doomed);

  /// Deletes all items; the name stays.
  void clear();

  // --- Text ------------------------------------------------------------------------------------

  /// Appends the group and everything below it as text.
  /// @param braces whether the group's name and a pair of braces are written around the items
  /// @param multiline one item a line, or everything on one line
  /// @param indent the depth, from 1 for the items of the root; 0 is taken as 1
  void getText(std::string& text, const bool& braces, const bool& multiline,
               const unsigned long& indent) const;

  /// Reads the text form of items and adds them to the group, after those it holds already.
  ///
  /// The parser is forgiving: a malformed construct gives a warning on Plinth::console, such as
  /// "ParserGroup::setText: (3:7) item ',' wrongly placed.\n" with line and column, the offending
  /// word is dropped and reading goes on. Nothing that was read is lost.
  ///
  /// @param text must stay unchanged during the call
  /// @param version the format version: below 1.1 quoted strings have no escapes
  /// @return false when the text is empty or its last word was `<empty>` or drew a warning, true
  ///         otherwise: no measure of success
  bool setText(const std::string& text, const double& version);

  /// Reads from a word stream until that is exhausted or a closing brace ends this group. For the
  /// library's own use.
  bool setText(ParserWordStream& stream);

  // --- Binary ----------------------------------------------------------------------------------

  /// Returns the group's frame in the binary form: its name, when `withName`, then the size of its
  /// items in bytes and the items, keywords among them.
  std::vector<char> getBinary(const bool& withName) const;

  /// Reads a group frame without a name and appends its items to those that the group holds.
  ///
  /// The binary form does not tell plain items from keywords. Items that come from it are written
  /// and copied like all others, but no lookup finds them and getItemCount() does not count them
  /// until removeItem() has been called; in a copy of the group they can be looked up.
  ///
  /// Warnings: "ParserGroup::setBinary: ParserGroup size larger than the given data\n" and
  /// "ParserGroup::setBinary: Failed to read item name\n".
  ///
  /// @param data the bytes
  /// @param pos where the frame begins, in bytes from 0; moved behind what was read
  /// @return false when the frame or one of its items is broken; the items before that stay. What
  ///         is broken in a nested group ends that group only
  bool setBinary(const std::vector<char>& data, unsigned long& pos);

 private:
  friend class BinaryReader;
  friend class ParserItem;
  friend class ParserValue;
  friend class RegionCheck;
  friend class TreeBuilder;
  friend class TreeCopier;
  friend class TreeRemover;
  template <class Output>
  friend class TextWriter;
  template <class Visitor>
  friend class TreeWalker;

  /// Positions in `items`, where the plain items are not simply the first of them.
  struct Positions {
    std::vector<unsigned long> plain;
    std::vector<unsigned long> keywords;
  };

  /// What few groups have. Nested groups have no name.
  struct Details {
    std::string name;
    std::unique_ptr<Positions> positions;  ///< null while `items` begins with the plain items and
                                           ///< no other item can be looked up
    std::unique_ptr<NameIndex> names;      ///< of a large group in which much is looked up
    std::unique_ptr<SlabRegion> region;    ///< all items and what they hold lie there, unless it is
                                           ///< broken up; only of a group that is no part
  };

  QUARRY_HIDDEN ParserGroup() noexcept;
  QUARRY_HIDDEN static ParserGroup* makeNested();
  QUARRY_HIDDEN static void destroy(ParserGroup* group) noexcept;
  QUARRY_HIDDEN void makePlace();
  QUARRY_HIDDEN void append(ParserItem* item);
  QUARRY_HIDDEN void appendToPlace(ParserItem* item);
  QUARRY_HIDDEN void adopt(ParserItem* item);
  QUARRY_HIDDEN ParserItem* append(std::unique_ptr<ParserItem> item);
  QUARRY_HIDDEN ParserGroup* addGroupItem(const std::string& newName, ParserGroup* group,
                                          bool folding);
  QUARRY_HIDDEN void removeLastItem();
  QUARRY_HIDDEN void enter(const ParserItem& item, unsigned long position);
  QUARRY_HIDDEN void leave(const ParserItem& item) noexcept;
  QUARRY_HIDDEN SlabRegion* makeRegionFor(unsigned long bytes);
  QUARRY_HIDDEN SlabRegion* makeRegionFor(const ParserGroup& copied);
  QUARRY_HIDDEN SlabRegion* makeRegion();
  QUARRY_HIDDEN void freeRegion() noexcept;
  QUARRY_HIDDEN void leaveRegion() const noexcept;
  QUARRY_HIDDEN void noteChange() const noexcept;
  QUARRY_HIDDEN static void freeDetails(void* group);
  QUARRY_HIDDEN Details& makeDetails() const;
  bool hasName() const { return details != nullptr && !details->name.empty(); }
  Positions* getPositions() const {
    return details != nullptr ? details->positions.get() : nullptr;
  }
  NameIndex* getNames() const { return details != nullptr ? details->names.get() : nullptr; }
  QUARRY_HIDDEN Positions& makePositions();
  QUARRY_HIDDEN static std::unique_ptr<Positions> findPositions(const detail::ItemList& list);
  ParserItem* plainAt(unsigned long index) const {
    const Positions* positions = getPositions();
    return items[positions != nullptr ? positions->plain[index] : index];
  }
  QUARRY_HIDDEN ParserItem* findByScan(const std::string& wanted, unsigned long index) const;
  QUARRY_HIDDEN unsigned long scanItems(std::string_view wanted, unsigned long index) const;
  QUARRY_HIDDEN unsigned long scanPositions(std::string_view wanted, unsigned long index) const;
  QUARRY_HIDDEN void makeNames() const noexcept;
  QUARRY_HIDDEN void forgetNames() const noexcept;

  mutable std::unique_ptr<Details> details;  ///< null for a group that has none
  detail::ItemList items;                    ///< owned; null where an item was detached
  union {
    unsigned long plainCount;   ///< plain items that can be looked up, detached ones included
    ParserGroup* nextToRemove;  ///< while its tree is freed, the next group to free
  };
  union {
    mutable std::uint32_t comparisons;  ///< of names, modulo 2^32, since `names` was made or
                                        ///< given up
    std::uint32_t removedItems;         ///< while its tree is freed
  };
  mutable bool isPart = false;  ///< of a tree, made by the library: its memory may be a region's
};

}  // namespace Quarry
