/// Turns a file and everything it includes into one text.
#pragma once

#include <Plinth/Label.h>
#include <Quarry/ParserLimits.h>

#include "Comments.h"
#include "FileAccess.h"
#include "IncludeGuard.h"
#include "MarkerScan.h"
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
///     takesComments()                 may be missing; asked in the top file where no directive
///                                     follows. When it returns true, all the rest is one run,
///                                     with the comments
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
      : searchPaths(paths), sink(listener), guard(limits, paths), storage(std::move(source)) {}

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

  /// A file that is being scanned.
  struct File {
    explicit File(std::string loaded) : text(std::move(loaded)), scan(text) {}

    std::string text;
    MarkerScan scan;
    double version = UNDECLARED_VERSION;
  };

  /// Why a scan came to an end.
  enum class Stop { END_OF_FILE, INCLUDE };

  bool open(const std::string& name) {
    const std::string path = storage.locate(searchPaths, name);
    if (path.empty()) return refuse(FileDiagnostic::NOT_FOUND, Messages::fileNotFound(name));
    if (const auto objection = guard.object(name, path)) {
      return refuse(objection->diagnostic, objection->message);
    }
    std::string text;
    const LoadResult result = storage.load(name, path, text, guard.getAllowance());
    if (result == LoadResult::TOO_LARGE) {
      return refuse(FileDiagnostic::EXCEEDS_LIMIT, guard.objectToSize(name));
    }
    if (result == LoadResult::NOT_OPENED || result == LoadResult::COMPRESSED_NOT_OPENED) {
      sink.warning(FileDiagnostic::NOT_OPENED, Messages::fileNotOpened(name));
      if (result == LoadResult::NOT_OPENED) return false;
    }
    guard.open(name, path);
    files.emplace_back(std::move(text));
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
    if (handOnRest(file)) return Stop::END_OF_FILE;
    while (file.scan.goToMarker()) {
      if (file.scan.isAt(COMMENT_MARKER)) {
        dropComment(file);
      } else if (file.scan.isAt(INCLUDE_MARKER)) {
        return takeInclude(file);
      } else if (file.scan.isAt(VERSION_MARKER)) {
        takeVersionLine(file);
        if (handOnRest(file)) return Stop::END_OF_FILE;
      } else {
        file.scan.skipByte();
      }
    }
    handOn(file, file.scan.getRun());
    return Stop::END_OF_FILE;
  }

  /// Hands on the rest of the file as it is, if the sink takes it so.
  bool handOnRest(File& file) {
    if constexpr (requires { sink.takesComments(); }) {
      if (files.size() > 1 || hasDirective(file) || !sink.takesComments()) return false;
      file.scan.goToEnd();
      handOn(file, file.scan.getRun());
      return true;
    }
    return false;
  }

  /// Tells whether a directive follows.
  static bool hasDirective(const File& file) {
    std::string_view rest = std::string_view(file.text).substr(file.scan.getPosition());
    while (!rest.starts_with(INCLUDE_MARKER) && !rest.starts_with(VERSION_MARKER)) {
      const std::size_t next = rest.find('#', 1);
      if (next == std::string_view::npos) return false;
      rest.remove_prefix(next);
    }
    return true;
  }

  /// Rule 1.
  Stop takeInclude(File& file) {
    handOn(file, file.scan.endRun());
    const std::size_t begin = file.scan.getPosition();
    const std::size_t nameBegin = begin + INCLUDE_MARKER.size();
    const std::size_t nameEnd = file.text.find('"', nameBegin);
    if (nameEnd == std::string::npos) {
      sink.unclosedInclude(begin);
      file.version = FAILURE;
      return Stop::END_OF_FILE;
    }
    includedName = file.text.substr(nameBegin, nameEnd - nameBegin);
    sink.include(begin, file.scan.dropTo(nameEnd + 1), includedName);
    return Stop::INCLUDE;
  }

  /// Rule 2.
  void takeVersionLine(File& file) {
    handOn(file, file.scan.endRun());
    const std::size_t begin = file.scan.getPosition();
    const std::string_view line = file.scan.dropLine();
    file.version = Plinth::getDouble(std::string(line.substr(VERSION_MARKER.size())));
    sink.versionLine(begin, line);
  }

  /// Rule 3.
  void dropComment(File& file) {
    handOn(file, file.scan.endRun());
    const std::size_t begin = file.scan.getPosition();
    sink.comment(begin, file.scan.dropLine());
  }

  void handOn(const File& file, std::string_view run) {
    if (!run.empty()) sink.run(file.scan.getPosition() - run.size(), run);
  }

  const std::vector<std::string>& searchPaths;
  Sink& sink;
  IncludeGuard guard;
  Files storage;
  std::list<File> files;     ///< the top file first, each included by the one before it
  std::string includedName;  ///< by the directive at which a scan stopped
};

}  // namespace Quarry
