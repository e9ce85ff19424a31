/// Where lines, indentations and comments are in the text of a file.
#pragma once

#include <string>
#include <string_view>

namespace Quarry {

/// What follows a word on its line.
struct LineRest {
  enum Kind { NOTHING, COMMENT, WORD };

  Kind kind = NOTHING;      ///< NOTHING for blanks
  unsigned long begin = 0;  ///< behind the blanks
  unsigned long end = 0;    ///< behind the line end; begin for a WORD
  bool hasLineEnd = false;  ///< otherwise the file ends there
};

/// Looks at the text of a file byte by byte, without knowing its words.
class FileLayout {
 public:
  /// @param itsText has to outlive this
  explicit FileLayout(const std::string& itsText) : text(itsText) {}

  const std::string& getText() const { return text; }

  /// Returns how lines end in this file: as the first line feed does, or else as the first carriage
  /// return, but for a file that may have a comment, which no carriage return ends.
  std::string_view getLineEnd() const;

  /// Returns where the line of a byte begins.
  unsigned long getLineBegin(unsigned long offset) const;

  /// Tells whether only blanks stand before a byte on its line.
  bool isFirstOnLine(unsigned long offset) const;

  /// Returns the blanks with which the line of a byte begins.
  std::string_view getIndentation(unsigned long offset) const;

  /// Tells whether no line ends between two bytes.
  bool areOnOneLine(unsigned long begin, unsigned long end) const;

  /// Returns what follows on the line. A comment is taken for one: whether the preprocessor does
  /// depends on the quotes before it.
  LineRest getRest(unsigned long offset) const;

  /// Returns where the blanks before a byte begin, on its line.
  unsigned long skipBlanksBack(unsigned long offset) const;

  /// Returns where the line end before a line begins; 0 for the first line.
  unsigned long skipLineEndBack(unsigned long lineBegin) const;

  bool endsWithLineEnd() const { return text.ends_with('\n') || text.ends_with(getLineEnd()); }

 private:
  const std::string& text;
};

}  // namespace Quarry
