#include <Quarry/internal/FileReplacement.h>

#include "CommandTable.h"
#include "Commands.h"
#include "EditorConfig.h"
#include "Failure.h"
#include "FileBytes.h"
#include "Formatter.h"
#include "LayoutDiff.h"
#include "Progress.h"
#include "SameDocument.h"
#include "SharedOptions.h"
#include "SourceOptions.h"
#include "Texts.h"

#include <memory>

namespace Tool {

using Quarry::SourceDocument;

namespace {

struct FormatOptions {
  std::vector<std::string> files;
  SourceOptions source;
  ColorChoice color = ColorChoice::AUTO;
  bool check = false;
  bool diff = false;
  bool inPlace = false;

  bool onlyLooks() const { return check || diff; }
};

/// A file before and after.
struct Formatted {
  std::string name;  ///< as it is shown
  std::string before;
  std::string after;
};

/// Refuses files of which the document is not all bytes as they are.
void refuseUnplain(const Formatted& file) {
  if (isCompressed(file.before)) throw Failure(Texts::cannotFormatCompressed(file.name));
  const bool hasZeroByte = file.before.find('\0') != std::string::npos;
  if (hasZeroByte) throw Failure(Texts::cannotFormatZeroByte(file.name));
}

void readDocument(SourceDocument& document, const std::string& name, const std::string& text,
                  const SourceOptions& options) {
  options.prepare(document);
  if (document.readText(name, text)) return;
  warnOf(document);
  throw Failure(Texts::cannotRead(name));
}

/// Standard input lies nowhere unless it is told to.
FormatStyle findStyle(const std::string& name) {
  if (name == Texts::STANDARD_INPUT) return {};
  return makeFormatStyle(readEditorProperties(name));
}

Formatted format(const std::string& file, const SourceOptions& options) {
  Formatted result;
  result.name = options.getShownName(file);
  const Progress progress(Texts::formatting(result.name));
  result.before = options.readBytes(file);
  refuseUnplain(result);
  SourceDocument before;
  readDocument(before, result.name, result.before, options);
  result.after = formatFile(before, findStyle(result.name));
  if (result.after == result.before) return result;
  SourceDocument after;
  readDocument(after, result.name, result.after, options);
  if (!areSame(before, after)) throw Failure(Texts::cannotFormatAlike(result.name));
  return result;
}

void showDiff(const Formatted& file, Output& output) {
  for (const DiffLine& line : diffLayouts(file.name, file.before, file.after)) {
    switch (line.kind) {
      case DiffLine::FILE: output.writeWord(Style::NAME, line.text); break;
      case DiffLine::PLACE: output.writeWord(Style::NUMBER, line.text); break;
      case DiffLine::REMOVED: output.writeWord(Style::ODD, line.text); break;
      case DiffLine::ADDED: output.writeWord(Style::STRING, line.text); break;
      case DiffLine::COMMON: output.writeText(line.text); break;
      case DiffLine::NOTE: output.writeWord(Style::MARK, line.text); break;
    }
    output.write("\n");
  }
}

void replace(const Formatted& file) {
  Quarry::FileReplacement replacement(file.name);
  if (!replacement.write(file.after)) {
    throw Failure(Texts::cannotWrite(file.name, replacement.getProblem()));
  }
}

/// Shows or writes what was asked for.
/// @return whether the file has another layout
bool answer(const Formatted& file, const FormatOptions& options, Output& output) {
  const bool differs = file.before != file.after;
  if (!options.onlyLooks() && !options.inPlace) output.writeText(file.after);
  if (!differs) return false;
  if (options.inPlace) replace(file);
  if (options.diff) showDiff(file, output);
  if (options.check && !options.diff) {
    output.writeWord(Style::NAME, file.name);
    output.write("\n");
  }
  return true;
}

void checkOptions(const FormatOptions& options) {
  if (options.inPlace && options.onlyLooks()) {
    throw Failure(Texts::badCommandLine("--in-place excludes --check and --diff"));
  }
  if (!options.onlyLooks() && !options.inPlace && options.files.size() > 1) {
    throw Failure(Texts::badCommandLine("Several files need --in-place, --check or --diff"));
  }
  for (const std::string& file : options.files) {
    if (options.inPlace && file == "-") {
      throw Failure(Texts::badCommandLine("Standard input cannot be formatted in place"));
    }
  }
}

/// A file that cannot be formatted does not keep the others from it.
ExitStatus run(const FormatOptions& options, MessageLog& log) {
  checkOptions(options);
  Output output(options.color);
  bool differ = false;
  for (const std::string& file : options.files) {
    try {
      if (answer(format(file, options.source), options, output)) differ = true;
    } catch (const Failure& failure) {
      log.fail(failure.what());
    }
  }
  output.flush();
  return differ && options.onlyLooks() ? ExitStatus::FINDINGS : ExitStatus::FINE;
}

}  // namespace

void addFormatCommand(CommandTable& commands) {
  const auto options = std::make_shared<FormatOptions>();
  Command command = commands.add(
      "format",
      {"Check", "Lays out documents anew: one item a line, indented",
       "  quarry format project.cfg > project-new.cfg\n"
       "  quarry format --in-place *.cfg\n"
       "  quarry format --diff project.cfg\n"
       "  quarry format --check *.cfg || echo some are not formatted",
       "Comments, includes, version lines, line breaks between values, and single blank lines\n"
       "stay. Included files are read, but formatted only where they are given, too. A document\n"
       "that would not read as before is left as it is; so is what stands behind a brace that\n"
       "ends the document. An .editorconfig may set indent_style, indent_size, tab_width,\n"
       "end_of_line and insert_final_newline; otherwise a level is four blanks, and line ends\n"
       "stay as they are.\n"
       "\n"
       "Exit status: 0 fine, 1 --check or --diff found a file that is not formatted, 2 a file\n"
       "cannot be read, formatted or written."},
      [options](MessageLog& log) { return run(*options, log); });
  addFiles(command, options->files);
  command.addFlag("--in-place", options->inPlace, "Replace the files");
  command.addFlag("--check", options->check, "Write nothing; name the files that would change");
  command.addFlag("--diff", options->diff, "Write nothing; show what would change");
  options->source.addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
