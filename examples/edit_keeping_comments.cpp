// Changes some values of a document that people edit: edit_keeping_comments FOLDER OUTPUT
//
// What write() and save() write is made from the tree, which knows no comments, includes and
// layout. An editor changes the files instead, and of them only the bytes of the change.
#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceEditor.h>
#include <QuarrySource/SourceLiteral.h>

#include <filesystem>
#include <iostream>
#include <string>

using Quarry::SourceDocument;
using Quarry::SourceEditor;
using Quarry::SourceLiteral;

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::filesystem::path original = std::filesystem::path(argv[1]) / "lamps.cfg";
  const std::filesystem::path copy = argv[2];
  std::filesystem::copy_file(original, copy, std::filesystem::copy_options::overwrite_existing);

  SourceDocument document;
  document.setSearchPaths({argv[1]});
  if (!document.read(copy.string())) return 1;
  SourceEditor editor(document);

  // Paths lead to items: [2] is the second of a name, #1 the first value.
  const bool isDone =
      editor.setValue("lamp[2]/position#1", SourceLiteral::makeDouble(5.5)) &&
      editor.addItem("lamp[2]", "note", {SourceLiteral::makeString("moved for the choir")}) &&
      editor.renameItem("lamp[3]/dimmable", "has_dimmer") &&
      editor.removeItem("lamp[3]/mounting/clamp/checked");

  // What would not read back as asked is refused, with the reason, and changes nothing.
  if (!editor.setValue("lamp[7]/channel", SourceLiteral::makeInt(7))) {
    std::cout << editor.getProblem() << "\n";
  }

  if (!isDone || !editor.save()) {
    std::cout << editor.getProblem() << "\n";
    return 1;
  }
  std::cout << "saved\n";
}
