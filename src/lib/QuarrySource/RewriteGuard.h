/// @file
/// What of a tree is lost when it is written to a file and read back.
#pragma once

#include <QuarrySource/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Quarry {

class ParserFile;
class ParserGroup;
class ParserItem;

/// An item, or a value of an item, that writing and reading back does not leave as it is.
struct RewriteHazard {
  /// The kinds of harm. The names that getHazardName() gives are stable.
  enum Kind : std::int32_t {
    // Of items.
    ODD_NAME,            ///< code gave a name that no text can hold
    WRONG_KIND,          ///< a keyword, a plain item or a call under a name of another kind
    TEMPLATE,            ///< templates are written, but not read
    ARRAY,               ///< an array's count is written as one raw byte, and not read
    FOLDED_GROUP,        ///< what closes a fold is read as three closing braces
    VERSION_KEYWORD,     ///< a root keyword `#SerialVersion`, to which write() gives a value
    GROUP_NAME,          ///< the name of a nested group itself is written, but not read
    VALUE_BEHIND_GROUP,  ///< nothing is taken for a value of the item behind a group
    // Of items and values.
    VERSION_MARKER,  ///< `#SerialVersion ` is a version line wherever it stands
    INCLUDE_MARKER,  ///< `#include "` is an include wherever it stands
    // Of values.
    OPEN_QUOTE,       ///< a string ends in a backslash and is not the last word of its line
    ZERO_BYTE,        ///< a file is read up to its first zero byte
    RAW_BYTE,         ///< a number that was set by code is written as one raw byte
    CHARACTER,        ///< characters are read back as integers
    NOT_FINITE,       ///< `inf` and `nan` are read as names
    EMPTY_TAG,        ///< the empty tag as a value is not read back as one
    NUMBER_QUOTE,     ///< a double quote in a number is not closed there
    NUMBER_COMMENT,   ///< `//` in a number begins a comment
    UNREADABLE_TEXT,  ///< the text of a value is not read as one value of its type
    // Of what none of these explains.
    UNEXPLAINED  ///< the first item or value of the tree that is not read back as it is
  };

  /// Stands for no value.
  static constexpr unsigned long NO_VALUE = static_cast<unsigned long>(-1);

  /// What does harm.
  Kind kind = UNEXPLAINED;

  /// Where, as SourceTree writes paths: "scene/layer[2]/name#3" is the third value of that item.
  std::string path;

  /// Why, in a sentence.
  std::string reason;

  /// The item; the tree's, and good until that loses it.
  const ParserItem* item = nullptr;

  /// The index of its value, from 0; NO_VALUE for the item itself.
  unsigned long value = NO_VALUE;
};

/// Returns the name of a kind, such as "open-quote"; it lives as long as the program.
QUARRYSOURCE_EXPORT const char* getHazardName(RewriteHazard::Kind kind);

/// Returns why items or values of that kind do not survive, in a sentence; it lives as long as the
/// program.
QUARRYSOURCE_EXPORT const char* getHazardReason(RewriteHazard::Kind kind);

/// Returns all kinds, in the order of their numbers.
QUARRYSOURCE_EXPORT const std::vector<RewriteHazard::Kind>& getHazardKinds();

/// Tells, before a tree is written, whether it survives that, and what does not.
///
/// ```cpp
/// for (const Quarry::RewriteHazard& hazard : Quarry::RewriteGuard::examine(file)) {
///   std::cout << hazard.path << ": " << hazard.reason << "\n";
/// }
/// ```
///
/// It is silent exactly when ParserFile::write() and ParserFile::read(), into an empty document
/// without limits, give an equal tree. Trees are equal when they have equal items in the same
/// order, and items when they are equal in name, kind, template, array count and values. Values are
/// equal in type and value: strings and blocks byte for byte, numbers bit for bit, so that -0.0 is
/// not 0.0, and a NaN is equal to one of the same sign and payload. Groups are equal in name, which
/// only code gives them, and items; the name of the root is not written and does not count. Neither
/// do the spelling of a number, the place of an item in its document, and whether a group is
/// folded.
///
/// An include marker is always a hazard: what is read then depends on what other files hold.
///
/// The tree is only looked at. Nothing is said on the console, and no file is touched. The time
/// grows with the size of the tree and the length of the paths that are told; depth takes memory,
/// not stack. Throws `std::bad_alloc` when memory runs out.
class QUARRYSOURCE_EXPORT RewriteGuard {
 public:
  /// Returns what of the tree does not survive, in the order of the text. Where one thing does
  /// harm, others that would do none by themselves may be told as well.
  /// @param root the root group of a document
  static std::vector<RewriteHazard> examine(const ParserGroup& root);

  /// Examines the tree of a document. The limits and the search paths of the file do not matter.
  static std::vector<RewriteHazard> examine(const ParserFile& file);
};

}  // namespace Quarry
