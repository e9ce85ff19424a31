/// @file
/// One file of a document, as it stands.
#pragma once

#include <QuarrySource/Export.h>

#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// A place in a file as people and editors count it.
struct LineColumn {
  unsigned long line = 1;    ///< from 1; LF, CR LF and a lone CR each end a line
  unsigned long column = 1;  ///< in bytes, from 1; a byte order mark has no column
};

/// The text of a file, unpacked where the file is compressed, with its lines.
///
/// A plain file is read up to its first zero byte: what is behind that is no part of the document.
class QUARRYSOURCE_EXPORT SourceFile {
 public:
  /// Makes a file of a text; nothing is read.
  /// @param path where the file was found, as it is shown and opened
  SourceFile(std::string path, std::string text);

  /// Returns where the file was found: its search path and its name.
  const std::string& getPath() const { return path; }

  /// Returns the whole text.
  const std::string& getText() const { return text; }

  /// Returns the line and column of a byte. The place behind the last byte has one, too.
  /// @param offset from 0, at most the size of the text
  LineColumn getLineColumn(unsigned long offset) const;

  /// Returns the offset of a place, from 0: of the end of its line where the line is shorter, and
  /// of the end of the text where there are fewer lines.
  unsigned long getOffset(const LineColumn& place) const;

  /// Returns line `line`, from 1, without what ends it; empty behind the last line. Good as long as
  /// the file.
  std::string_view getLine(unsigned long line) const;

  /// Returns the number of lines: one more than there are line ends.
  unsigned long getLineCount() const;

 private:
  QUARRYSOURCE_HIDDEN const std::vector<unsigned long>& getLineBegins() const;
  QUARRYSOURCE_HIDDEN unsigned long getTextBegin(unsigned long line) const;
  QUARRYSOURCE_HIDDEN unsigned long getTextEnd(unsigned long line) const;

  std::string path;
  std::string text;
  mutable std::vector<unsigned long> lineBegins;  ///< empty until they are first asked for
};

}  // namespace Quarry
