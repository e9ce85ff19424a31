/// Turns a file and everything it includes into one text.
#pragma once

#include <Plinth/Label.h>

#include "FileAccess.h"
#include "Messages.h"

#include <QByteArray>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quarry {

/// Applies the rules of preprocessing and hands the bytes that stay to a sink, in runs.
///
/// The rules, tried in this order at each byte:
///
/// 1. `#include "name"`, with one blank: the preprocessed text of that file stands here instead.
///    The file is looked for in the search paths. No closing quote: failure, without a message.
/// 2. `#SerialVersion ` with a blank: the rest of the line, as a number, is the version of this
///    file; the line and its line feed are dropped. The last such line counts.
/// 3. `//` outside a quoted string: dropped up to and with the next line feed, so that the lines
///    join.
/// 4. Any other byte stays. A double quote begins or ends a string, unless the byte before it is a
///    backslash and the number of backslashes passed since the last other byte is odd.
///
/// The first two are recognised anywhere, also within strings and in the middle of a line. What is
/// dropped does not count as "other byte" in rule 4. Each included file begins outside a string and
/// leaves the file around it untouched.
///
/// Includes nest as deep as memory lasts. Cycles are the caller's duty.
///
/// `Sink` is told, with offsets into the innermost file's text:
///
///     beginFile(name, path, text)     a file begins; `text` (string_view) is good until endFile
///     run(offset, bytes)              these bytes stay
///     comment(offset, bytes)          dropped
///     versionLine(offset, bytes)      dropped, with its line feed
///     include(offset, bytes, name)    replaced by what follows until the matching endFile
///     endFile(version)                the innermost file ends
///     warning(message)
template <class Sink>
class Preprocessor {
 public:
  Preprocessor(const std::vector<std::string>& paths, Sink& listener)
      : searchPaths(paths), sink(listener) {}

  /// Preprocesses the file called `name`.
  /// @return the version that the file declares, 1.0 when it declares none; 0.0 when it or a file
  ///         that it includes cannot be read, declares version 0 or has an unclosed include
  double process(const std::string& name) {
    constexpr double FAILURE = 0.0;
    if (!open(name)) return FAILURE;
    for (;;) {
      const Stop stop = scan();
      if (stop == Stop::UNCLOSED_INCLUDE) return FAILURE;
      if (stop == Stop::INCLUDE) {
        if (!open(includedName)) return FAILURE;
        continue;
      }
      const double version = files.back().version;
      files.pop_back();
      sink.endFile(version);
      if (version == FAILURE || files.empty()) return version;
    }
  }

 private:
  static constexpr double UNDECLARED_VERSION = 1.0;
  static constexpr std::string_view INCLUDE_MARKER = "#include \"";
  static constexpr std::string_view VERSION_MARKER = "#SerialVersion ";
  static constexpr std::string_view COMMENT_MARKER = "//";
  static constexpr std::size_t NONE = std::string_view::npos;

  /// A file that is being scanned.
  struct File {
    QByteArray bytes;
    std::size_t position = 0;
    double version = UNDECLARED_VERSION;
    bool inString = false;
    unsigned long backslashes = 0;

    std::string_view text() const {
      return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
    }
  };

  /// Why a scan came to an end.
  enum class Stop { END_OF_FILE, INCLUDE, UNCLOSED_INCLUDE };

  bool open(const std::string& name) {
    const std::string path = locateFile(searchPaths, name);
    if (path.empty()) {
      sink.warning(Messages::fileNotFound(name));
      return false;
    }
    File file;
    const LoadResult result = loadFile(name, path, file.bytes);
    if (result != LoadResult::LOADED) sink.warning(Messages::fileNotOpened(name));
    if (result == LoadResult::NOT_OPENED) return false;
    files.push_back(std::move(file));
    sink.beginFile(name, path, files.back().text());
    return true;
  }

  /// Goes on with the innermost file, to its end or to the next include.
  Stop scan() {
    File& file = files.back();
    const std::string_view text = file.text();
    std::size_t runBegin = file.position;
    while (file.position < text.size()) {
      skipOrdinaryBytes(file);
      if (file.position == text.size()) break;
      if (isAt(file, INCLUDE_MARKER)) {
        handOn(file, runBegin);
        return takeInclude(file);
      }
      if (isAt(file, VERSION_MARKER)) {
        handOn(file, runBegin);
        takeVersionLine(file);
        runBegin = file.position;
      } else if (!file.inString && isAt(file, COMMENT_MARKER)) {
        handOn(file, runBegin);
        takeComment(file);
        runBegin = file.position;
      } else {
        passSpecialByte(file);
      }
    }
    handOn(file, runBegin);
    return Stop::END_OF_FILE;
  }

  /// Rule 1.
  Stop takeInclude(File& file) {
    const std::string_view text = file.text();
    const std::size_t begin = file.position;
    const std::size_t nameBegin = begin + INCLUDE_MARKER.size();
    const std::size_t nameEnd = text.find('"', nameBegin);
    if (nameEnd == NONE) return Stop::UNCLOSED_INCLUDE;
    includedName = text.substr(nameBegin, nameEnd - nameBegin);
    file.position = nameEnd + 1;
    sink.include(begin, text.substr(begin, file.position - begin), includedName);
    return Stop::INCLUDE;
  }

  /// Rule 2.
  void takeVersionLine(File& file) {
    const std::size_t begin = file.position;
    const std::string_view line = takeLine(file);
    file.version = Plinth::getDouble(std::string(line.substr(VERSION_MARKER.size())));
    sink.versionLine(begin, line);
  }

  /// Rule 3.
  void takeComment(File& file) {
    const std::size_t begin = file.position;
    sink.comment(begin, takeLine(file));
  }

  /// Rule 4, for a byte that may begin a directive or a comment, a quote, or a backslash.
  void passSpecialByte(File& file) {
    const std::string_view text = file.text();
    const char byte = text[file.position];
    if (byte == '"') {
      const bool behindBackslash = file.position > 0 && text[file.position - 1] == '\\';
      const bool escaped = behindBackslash && file.backslashes % 2 == 1;
      if (!escaped) file.inString = !file.inString;
    }
    file.backslashes = byte == '\\' ? file.backslashes + 1 : 0;
    ++file.position;
  }

  /// Rule 4, for all others.
  static void skipOrdinaryBytes(File& file) {
    const std::string_view text = file.text();
    const std::size_t begin = file.position;
    while (file.position < text.size() && !isSpecial(text[file.position]))
      ++file.position;
    if (file.position > begin) file.backslashes = 0;
  }

  static bool isSpecial(char byte) {
    return byte == '#' || byte == '/' || byte == '"' || byte == '\\';
  }

  static bool isAt(const File& file, std::string_view marker) {
    return file.text().compare(file.position, marker.size(), marker) == 0;
  }

  /// Returns the rest of the line with its line feed, and goes on behind it.
  static std::string_view takeLine(File& file) {
    const std::string_view text = file.text();
    const std::size_t begin = file.position;
    const std::size_t lineFeed = text.find('\n', begin);
    file.position = lineFeed == NONE ? text.size() : lineFeed + 1;
    return text.substr(begin, file.position - begin);
  }

  void handOn(const File& file, std::size_t runBegin) {
    if (file.position == runBegin) return;
    sink.run(runBegin, file.text().substr(runBegin, file.position - runBegin));
  }

  const std::vector<std::string>& searchPaths;
  Sink& sink;
  std::vector<File> files;   ///< the top file first, each included by the one before it
  std::string includedName;  ///< by the directive at which a scan stopped
};

}  // namespace Quarry
