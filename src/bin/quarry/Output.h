/// Output: checked writing, and for standard output colours and escaping for terminals.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

enum class ColorChoice { AUTO, ALWAYS, NEVER };

/// What a piece of text is, as far as colours go.
enum class Style {
  NAME,
  KEYWORD,
  CALL,
  TYPE,
  NUMBER,
  STRING,
  BOOL,
  BINARY,
  MARK,
  ODD,
  ADDED,
  REMOVED
};

/// Writes to standard output and notices every failure to do so.
///
/// Bytes of a document are escaped where a terminal may come to see them: when the output is one,
/// and when it is coloured, since colours are for terminals at the end of a pipe. Otherwise they
/// are written as they are.
///
/// flush() has to be called in the end; what was not flushed is lost. Every operation throws a
/// Failure when writing fails, ReaderGone when that is because nobody reads.
class Output {
 public:
  /// With ColorChoice::AUTO there are colours on a terminal, unless NO_COLOR is set and not empty,
  /// or TERM is "dumb".
  explicit Output(ColorChoice color);

  /// Writes the tool's own text.
  void write(std::string_view bytes);

  /// Writes a text of the document, with its lines.
  void writeText(std::string_view bytes);

  /// Returns what writeText() writes.
  std::string getShown(std::string_view bytes) const;

  /// Writes a part of the document that stands within a line.
  void writeWord(Style style, std::string_view bytes);

  void flush();

 private:
  const bool colored;
  const bool escaped;
  const bool utf8;
  std::string buffer;
};

/// Keeps files that are opened later from taking the place of a standard stream that the caller
/// closed. Using such a stream fails as before.
void occupyClosedStreams();

/// Makes or overwrites a file. Throws a Failure when that cannot be done.
void writeFile(const std::string& name, std::string_view bytes);

/// Writes all bytes to a file descriptor. Returns false with `errno` set when that fails.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace Tool
