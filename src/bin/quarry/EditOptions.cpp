#include "EditOptions.h"

#include <Plinth/Console.h>

#include "Failure.h"
#include "FileBytes.h"
#include "Output.h"
#include "SharedOptions.h"
#include "Texts.h"

namespace Tool {

using Quarry::SourceDocument;
using Quarry::SourceEditor;
using Quarry::SourceLiteral;
using Quarry::SourceTarget;

namespace {

/// What is wrong with a document that can be read is not this command's matter.
void readDocument(const EditOptions& options, SourceDocument& document) {
  if (options.read(document, options.file)) return;
  throw Failure(formatDiagnostic(document, document.getDiagnostics().back()));
}

/// Writes the text of the top file, changed or not, to where it was asked for.
void writeElsewhere(const EditOptions& options, const SourceEditor& editor) {
  const std::string& top = editor.getDocument().getFileOf(0).getPath();
  for (const auto& [path, text] : editor.getChangedTexts()) {
    if (path != top) throw Failure(Texts::changeIsElsewhere(path));
  }
  Output output(ColorChoice::NEVER);
  writeText(options.target.empty() ? "-" : options.target,
            editor.getDocument().getFileOf(0).getText(), output);
  output.flush();
}

void writeChanges(const EditOptions& options, SourceEditor& editor) {
  const bool isInPlace = options.target.empty() && options.file != "-";
  if (!isInPlace) return writeElsewhere(options, editor);
  if (!editor.save()) throw Failure(editor.getProblem());
}

}  // namespace

void EditOptions::addTo(Command& command, const std::string& pathDescription) {
  addFile(command, file);
  command.addArgument("PATH", path, pathDescription).require();
  command.addOption("-o,--output", "OUT", target,
                    "Write the new text to OUT, - for standard output, and leave FILE as it is");
  SourceOptions::addTo(command);
}

void EditValues::addTo(Command& command) {
  command.addArguments("VALUE", words,
                       "The values, as a document spells them; any other text is a string");
  command.addFlag("--string", areStrings, "Take every VALUE for the content of a string");
}

std::vector<SourceLiteral> EditValues::getLiterals() const {
  std::vector<SourceLiteral> literals;
  for (const std::string& word : words) {
    const SourceLiteral literal = SourceLiteral::parse(word);
    const bool isWord = !areStrings && literal.isValid();
    literals.push_back(isWord ? literal : SourceLiteral::makeString(word));
  }
  return literals;
}

ExitStatus edit(const EditOptions& options, const std::string& existing,
                const std::function<bool(SourceEditor&)>& change) {
  SourceDocument document;
  readDocument(options, document);
  SourceEditor editor(document);
  const SourceTarget target = editor.getTree().find(existing);
  if (!target.isFound()) {
    Plinth::console.warning(Texts::noSuchItem(target.problem), std::string());
    return ExitStatus::FINDINGS;
  }
  if (!change(editor)) throw Failure(Texts::editRefused(editor.getProblem()));
  writeChanges(options, editor);
  return ExitStatus::FINE;
}

}  // namespace Tool
