/// Documents of files in memory, with an editor.
#pragma once

#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceEditor.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

namespace TestSupport {

using FileTexts = std::map<std::string, std::string>;

/// Reads texts that stand in for files, so that nothing touches the disk.
class EditedDocument {
 public:
  EditedDocument(const std::string& name, const FileTexts& files) : texts(files) {
    for (const auto& [path, text] : texts)
      document.setText(path, text);
    document.read(name);
    editor = std::make_unique<Quarry::SourceEditor>(document);
  }

  Quarry::SourceEditor& edit() { return *editor; }
  const Quarry::SourceTree& getTree() const { return editor->getTree(); }
  const std::string& getProblem() const { return editor->getProblem(); }

  /// Returns the texts of all files, as they are now.
  FileTexts getTexts() const {
    FileTexts now = texts;
    for (const auto& [path, text] : editor->getChangedTexts())
      now[path] = text;
    return now;
  }

  Quarry::SourceDocument document;

 private:
  const FileTexts texts;
  std::unique_ptr<Quarry::SourceEditor> editor;
};

/// Expects that an edit of a document that begins with "a.cfg" is made and gives these files.
template <class Edit>
void checkEditOfFiles(const FileTexts& before, const Edit& edit, const FileTexts& after) {
  EditedDocument edited("a.cfg", before);
  EXPECT_TRUE(edit(edited.edit())) << edited.getProblem();
  EXPECT_EQ(edited.getProblem(), "");
  EXPECT_EQ(edited.getTexts(), after);
}

/// Expects that an edit is refused with that reason and that nothing changes.
template <class Edit>
void checkRefusedInFiles(const FileTexts& files, const Edit& edit, const std::string& reason) {
  EditedDocument edited("a.cfg", files);
  const std::string text = edited.document.getText();
  EXPECT_FALSE(edit(edited.edit()));
  EXPECT_EQ(edited.getProblem(), reason);
  EXPECT_EQ(edited.getTexts(), files);
  EXPECT_EQ(edited.document.getText(), text);
}

/// The same for a document of one file, in format 1.1; its version line is not part of the texts.
constexpr char VERSION_LINE[] = "#SerialVersion 1.1\n";

template <class Edit>
void checkEdit(const std::string& before, const Edit& edit, const std::string& after) {
  checkEditOfFiles({{"a.cfg", VERSION_LINE + before}}, edit, {{"a.cfg", VERSION_LINE + after}});
}

template <class Edit>
void checkRefused(const std::string& text, const Edit& edit, const std::string& reason) {
  checkRefusedInFiles({{"a.cfg", VERSION_LINE + text}}, edit, reason);
}

// The edits, to be handed to these functions.

inline auto setValue(const std::string& path, const Quarry::SourceLiteral& literal) {
  return [=](Quarry::SourceEditor& editor) { return editor.setValue(path, literal); };
}
inline auto setValues(const std::string& path, const std::vector<Quarry::SourceLiteral>& literals) {
  return [=](Quarry::SourceEditor& editor) { return editor.setValues(path, literals); };
}
inline auto addValue(const std::string& path, const Quarry::SourceLiteral& literal) {
  return [=](Quarry::SourceEditor& editor) { return editor.addValue(path, literal); };
}
inline auto removeValue(const std::string& path) {
  return [=](Quarry::SourceEditor& editor) { return editor.removeValue(path); };
}
inline auto addItem(const std::string& parent, const std::string& name,
                    const std::vector<Quarry::SourceLiteral>& literals,
                    const Quarry::SourcePlacement& placement = {}) {
  return [=](Quarry::SourceEditor& editor) {
    return editor.addItem(parent, name, literals, placement);
  };
}
inline auto addGroup(const std::string& parent, const std::string& name,
                     const Quarry::SourcePlacement& placement = {}) {
  return [=](Quarry::SourceEditor& editor) { return editor.addGroup(parent, name, placement); };
}
inline auto addCall(const std::string& parent, const std::string& name,
                    const std::vector<Quarry::SourceLiteral>& literals,
                    const Quarry::SourcePlacement& placement = {}) {
  return [=](Quarry::SourceEditor& editor) {
    return editor.addCall(parent, name, literals, placement);
  };
}
inline auto removeItem(const std::string& path) {
  return [=](Quarry::SourceEditor& editor) { return editor.removeItem(path); };
}
inline auto renameItem(const std::string& path, const std::string& name) {
  return [=](Quarry::SourceEditor& editor) { return editor.renameItem(path, name); };
}

/// The literals that most tests write.
inline Quarry::SourceLiteral number(int value) { return Quarry::SourceLiteral::makeInt(value); }
inline Quarry::SourceLiteral string(const std::string& value) {
  return Quarry::SourceLiteral::makeString(value);
}

}  // namespace TestSupport
