/// Turns a file and everything it includes into one text.
#pragma once

#include <Plinth/Label.h>
#include <Quarry/ParserLimits.h>

#include "ByteSearch.h"
#include "FileAccess.h"
#include "IncludeGuard.h"
#include "Messages.h"

#include <list>
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
/// Without limits, includes nest as deep as memory lasts and cycles are the caller's duty.
///
/// `Sink` is told, with offsets into the innermost file's text:
///
///     beginFile(name, path, text)     a file begins; `text` (std::string&) stays until endFile
///     run(offset, bytes)              these bytes stay
///     comment(offset, bytes)          dropped
///     versionLine(offset, bytes)      dropped, with its line feed
///     include(offset, bytes, name)    replaced by what follows until the matching endFile
///     unclosedInclude(offset)         an include without a closing quote: all ends with it
///     endFile(version)                the innermost file ends; 0.0 for an unclosed include
///     warning(diagnostic, message)    a file cannot be read, the top file or one just included
///
/// `Files` finds and loads the files, as StoredFiles does.
///
/// What has been told of a text is not looked at again: the sink may overwrite it, and may take the
/// whole string at endFile. So a document need not be copied.
template <class Sink, class Files = StoredFiles>
class Preprocessor {
 public:
  Preprocessor(const std::vector<std::string>& paths, Sink& listener,
               const ParserLimits& limits = ParserLimits(), Files source = Files())
      : searchPaths(paths), sink(listener), guard(limits, paths), storage(source) {}

  /// Preprocesses the file called `name`.
  /// @return the version that the file declares, 1.0 when it declares none; 0.0 when it or a file
  ///         that it includes cannot be read, declares version 0, has an unclosed include or
  ///         exceeds a limit
  double process(const std::string& name) {
    if (!open(name)) return FAILURE;
    for (;;) {
      if (scan() == Stop::INCLUDE) {
        if (!open(includedName)) return FAILURE;
        continue;
      }
      const double version = files.back().version;
      sink.endFile(version);
      files.pop_back();
      guard.close();
      if (version == FAILURE || files.empty()) return version;
    }
  }

 private:
  static constexpr double FAILURE = 0.0;
  static constexpr double UNDECLARED_VERSION = 1.0;
  static constexpr std::string_view INCLUDE_MARKER = "#include \"";
  static constexpr std::string_view VERSION_MARKER = "#SerialVersion ";
  static constexpr std::string_view QUOTE_BEHIND_BACKSLASH = "\\\"";
  static constexpr std::size_t NONE = std::string_view::npos;

  /// A file that is being scanned.
  struct File {
    std::string text;
    double version = UNDECLARED_VERSION;
    std::size_t position = 0;
    std::size_t runBegin = 0;  ///< what stays from here to `position` is still to be handed on
    std::size_t backslashesBeforeRun = 0;  ///< passed since the last other byte
    std::size_t quotesPassed = 0;          ///< the place, up to `position`, that `inString` is of
    bool inString = false;
  };

  /// Why a scan came to an end.
  enum class Stop { END_OF_FILE, INCLUDE };

  bool open(const std::string& name) {
    const std::string path = storage.locate(searchPaths, name);
    if (path.empty()) return refuse(FileDiagnostic::NOT_FOUND, Messages::fileNotFound(name));
    if (const auto objection = guard.object(name, path)) {
      return refuse(objection->diagnostic, objection->message);
    }
    File file;
    const LoadResult result = storage.load(name, path, file.text, guard.getAllowance());
    if (result == LoadResult::TOO_LARGE) {
      return refuse(FileDiagnostic::EXCEEDS_LIMIT, guard.objectToSize(name));
    }
    if (result == LoadResult::NOT_OPENED || result == LoadResult::COMPRESSED_NOT_OPENED) {
      sink.warning(FileDiagnostic::NOT_OPENED, Messages::fileNotOpened(name));
      if (result == LoadResult::NOT_OPENED) return false;
    }
    guard.open(name, path);
    files.push_back(std::move(file));
    sink.beginFile(name, path, files.back().text);
    return true;
  }

  bool refuse(FileDiagnostic diagnostic, const std::string& warning) {
    sink.warning(diagnostic, warning);
    return false;
  }

  /// Goes on with the innermost file, to its end or to the next include.
  Stop scan() {
    File& file = files.back();
    while (goToMarker(file)) {
      if (file.text[file.position] != '#') {
        takeSlashes(file);
      } else if (isAt(file, INCLUDE_MARKER)) {
        return takeInclude(file);
      } else if (isAt(file, VERSION_MARKER)) {
        takeVersionLine(file);
      } else {
        ++file.position;
      }
    }
    handOn(file);
    return Stop::END_OF_FILE;
  }

  /// Rule 1.
  Stop takeInclude(File& file) {
    endRun(file);
    const std::string_view text = file.text;
    const std::size_t begin = file.position;
    const std::size_t nameBegin = begin + INCLUDE_MARKER.size();
    const std::size_t nameEnd = text.find('"', nameBegin);
    if (nameEnd == NONE) {
      sink.unclosedInclude(begin);
      file.version = FAILURE;
      return Stop::END_OF_FILE;
    }
    includedName = text.substr(nameBegin, nameEnd - nameBegin);
    beginRun(file, nameEnd + 1);
    sink.include(begin, text.substr(begin, file.position - begin), includedName);
    return Stop::INCLUDE;
  }

  /// Rule 2.
  void takeVersionLine(File& file) {
    endRun(file);
    const std::size_t begin = file.position;
    const std::string_view line = takeLine(file);
    file.version = Plinth::getDouble(std::string(line.substr(VERSION_MARKER.size())));
    sink.versionLine(begin, line);
  }

  /// Rule 3.
  void takeSlashes(File& file) {
    if (isInString(file)) return skipString(file);
    endRun(file);
    const std::size_t begin = file.position;
    sink.comment(begin, takeLine(file));
  }

  /// Rule 4. Only a comment asks whether it stands in a string, and most documents have none: so
  /// the quotes before it are counted when it is met, all at once; escaped ones are taken back.
  static bool isInString(File& file) {
    const char* text = file.text.data();
    const QuoteCount quotes = countQuotes(text + file.quotesPassed, text + file.position);
    bool isOdd = quotes.isOdd;
    if (quotes.hasBehindBackslash && isEscapedCountOdd(file)) isOdd = !isOdd;
    if (isOdd) file.inString = !file.inString;
    file.quotesPassed = file.position;
    return file.inString;
  }

  /// Tells whether an odd number of the quotes not yet passed is escaped.
  static bool isEscapedCountOdd(const File& file) {
    const std::string_view text = std::string_view(file.text).substr(0, file.position);
    bool isOdd = false;
    std::size_t found = text.find(QUOTE_BEHIND_BACKSLASH, file.quotesPassed);
    while (found != NONE) {
      if (countBackslashes(file, found + 1) % 2 == 1) isOdd = !isOdd;
      found = text.find(QUOTE_BEHIND_BACKSLASH, found + QUOTE_BEHIND_BACKSLASH.size());
    }
    return isOdd;
  }

  /// Goes on within a string up to the next quote, before which there is no comment.
  static void skipString(File& file) {
    goTo(file, [](const char* begin, const char* end) { return findAnyOf<'"', '#'>(begin, end); });
  }

  /// Returns the number of backslashes passed since the last other byte.
  static std::size_t countBackslashes(const File& file, std::size_t end) {
    std::size_t begin = end;
    while (begin > file.runBegin && file.text[begin - 1] == '\\')
      --begin;
    return begin == file.runBegin ? file.backslashesBeforeRun + (end - begin) : end - begin;
  }

  /// Goes to what may begin a directive or begins a comment.
  static bool goToMarker(File& file) {
    return goTo(file, [](const char* begin, const char* end) {
      return findByteOrPair<'#', '/'>(begin, end);
    });
  }

  /// Goes to what `find` finds, or to the end of the text when there is nothing.
  /// @return whether there is something
  template <class Find>
  static bool goTo(File& file, Find find) {
    const char* text = file.text.data();
    const char* end = text + file.text.size();
    const char* found = find(text + file.position, end);
    file.position = static_cast<std::size_t>(found - text);
    return found != end;
  }

  static bool isAt(const File& file, std::string_view marker) {
    return std::string_view(file.text).substr(file.position).starts_with(marker);
  }

  /// Returns the rest of the line with its line feed, and goes on behind it.
  static std::string_view takeLine(File& file) {
    const std::string_view text = file.text;
    const std::size_t begin = file.position;
    const std::size_t lineFeed = text.find('\n', begin);
    beginRun(file, lineFeed == NONE ? text.size() : lineFeed + 1);
    return text.substr(begin, file.position - begin);
  }

  /// Goes on behind a directive or a comment.
  static void beginRun(File& file, std::size_t position) {
    file.position = position;
    file.runBegin = position;
    file.quotesPassed = position;
  }

  /// Ends the run before a directive or a comment, which leave strings and backslashes as they are.
  void endRun(File& file) {
    isInString(file);
    file.backslashesBeforeRun = countBackslashes(file, file.position);
    handOn(file);
  }

  void handOn(const File& file) {
    if (file.position == file.runBegin) return;
    const std::size_t size = file.position - file.runBegin;
    sink.run(file.runBegin, std::string_view(file.text).substr(file.runBegin, size));
  }

  const std::vector<std::string>& searchPaths;
  Sink& sink;
  IncludeGuard guard;
  Files storage;
  std::list<File> files;     ///< the top file first, each included by the one before it
  std::string includedName;  ///< by the directive at which a scan stopped
};

}  // namespace Quarry
