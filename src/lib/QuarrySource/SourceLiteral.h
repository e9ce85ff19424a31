/// @file
/// A value that is to be written into a document.
#pragma once

#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>
#include <QuarrySource/Export.h>

#include <string>

namespace Quarry {

/// A value for SourceEditor: one that code makes, whose spelling the format version decides, or a
/// word as a person types it, which keeps its spelling.
///
/// ```cpp
/// editor.setValue("title", Quarry::SourceLiteral::makeString("Harbor, second cut"));
/// editor.setValue("camera/fov", Quarry::SourceLiteral::parse("39.60"));
/// ```
class QUARRYSOURCE_EXPORT SourceLiteral {
 public:
  /// Makes a bool, `yes` or `no`.
  static SourceLiteral makeBool(bool value);
  /// Makes an integer, in decimal.
  static SourceLiteral makeInt(int value);

  /// Makes a double in the shortest spelling that reads as the same one. What is not finite gets a
  /// sign, `+inf` or `-nan`: without one it would be a name.
  static SourceLiteral makeDouble(double value);

  /// Makes a string of any bytes; which of them a document can hold is its format version's affair.
  static SourceLiteral makeString(const std::string& value);

  /// Makes a block of bytes, a copy.
  static SourceLiteral makeBinary(const std::string& bytes);

  /// Makes `<empty>`, which is no value but stands where one is expected.
  static SourceLiteral makeEmpty();

  /// Makes a literal from one word: `yes`, `12`, `1.50`, `"a b"`, `0x10`, `<empty>`. Anything else
  /// gives an invalid literal, with which no edit is made.
  static SourceLiteral parse(const std::string& word);

  /// Tells whether there is something to write; only parse() makes literals without.
  bool isValid() const { return problem.empty(); }

  /// Returns why the literal is invalid; empty where it is valid.
  const std::string& getProblem() const { return problem; }

  /// Returns the type; TYPE_EMPTY also for an invalid literal.
  ParserValue::Type getType() const { return type; }

  /// Tells whether the literal is a word as a person typed it.
  bool isTyped() const { return typed; }

  /// Returns how the literal is spelled in a document of that format version.
  std::string getSpelling(double version) const;

  /// Tells whether the first value of an item is of the literal's type and has its data; of a typed
  /// word only the type is looked at. `<empty>` is that of an item without values.
  bool isFirstValueOf(const ParserItem& item) const;

 private:
  QUARRYSOURCE_HIDDEN SourceLiteral(ParserValue::Type itsType, std::string itsSpelling);

  ParserValue::Type type;
  std::string spelling;  ///< empty for a string that code made
  std::string problem;
  bool typed = false;
  double number = 0.0;  ///< of a bool, int or double
  std::string bytes;    ///< of a string or a block
};

}  // namespace Quarry
