// Edits of documents that are put together by chance, broken words and all: each is made as a whole
// and leaves what it is not about alone, or is refused and leaves everything alone.
// QUARRY_EDIT_DOCUMENTS sets how many documents are tried.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <random>

#include "EditedDocument.h"
#include "RandomDocuments.h"
#include "support/Environment.h"

using Quarry::SourceDocument;
using Quarry::SourceEditor;
using Quarry::SourcePlacement;
using Quarry::SourceRule;
using Quarry::SourceSpan;
using Quarry::SourceTree;
using TestSupport::number;
using TestSupport::RandomDocument;
using TestSupport::string;

namespace {

using Edit = std::function<bool(SourceEditor&)>;

unsigned long getCount() { return TestSupport::getCount("QUARRY_EDIT_DOCUMENTS", 1000); }

void read(SourceDocument& document, const RandomDocument& random,
          const std::map<std::string, std::string>& changed = {}) {
  for (const auto& [path, text] : random.getTexts())
    document.setText(path, text);
  for (const auto& [path, text] : changed)
    document.setText(path, text);
  document.setLimits(random.getLimits());
  document.read("0");
}

/// Returns the comments, includes and version lines of each opening. A comment at the end of a file
/// may get a line end.
std::vector<std::string> getAsides(const SourceDocument& document) {
  std::vector<std::string> asides;
  for (unsigned long opening = 0; opening < document.getOpeningCount(); ++opening) {
    for (const SourceSpan& span : document.getSpans(opening)) {
      if (span.kind == SourceSpan::SPAN_WORD || span.kind == SourceSpan::SPAN_BLANK) continue;
      const std::string& text = document.getFileOf(opening).getText();
      const std::string bytes = text.substr(span.offset, span.length);
      asides.push_back(bytes.substr(0, bytes.find_last_not_of("\r\n") + 1));
    }
  }
  return asides;
}

/// Tells whether all of a document is read: what is behind its end, or too deep, may turn into
/// something else.
bool isReadThroughout(const SourceDocument& document) {
  for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics()) {
    if (diagnostic.rule == SourceRule::CLOSES_NO_GROUP) return false;
    if (diagnostic.rule == SourceRule::LIMIT_EXCEEDED) return false;
  }
  return document.getVersion() > 0.0;
}

/// One edit of each kind, about some item, but for its removal.
std::vector<Edit> makeEdits(const SourceTree& tree, unsigned long item) {
  const std::string path = tree.getPath(item);
  const std::string parent = tree.getPath(tree.getItem(item).parent);
  const std::string last = path + "#" + std::to_string(tree.getItem(item).valueCount);
  return {
      [=](SourceEditor& editor) { return editor.setValue(last, number(4711)); },
      [=](SourceEditor& editor) {
        return editor.setValues(path, {number(4711), string("a // {b}")});
      },
      [=](SourceEditor& editor) { return editor.setValues(path, {}); },
      [=](SourceEditor& editor) { return editor.addValue(path, number(4711)); },
      [=](SourceEditor& editor) { return editor.removeValue(last); },
      [=](SourceEditor& editor) { return editor.renameItem(path, "new_name"); },
      [=](SourceEditor& editor) { return editor.addGroup(path, "new_name"); },
      [=](SourceEditor& editor) {
        return editor.addItem(parent, "new_name", {}, SourcePlacement::before(path));
      },
      [=](SourceEditor& editor) {
        return editor.addCall(parent, "new_name", {number(1)}, SourcePlacement::behind(path));
      },
      [=](SourceEditor& editor) { return editor.addItem(parent, "new_name", {number(1)}); },
  };
}

/// Tells whether some strings are there in that order, perhaps with others between them.
bool areAmong(const std::vector<std::string>& wanted, const std::vector<std::string>& all) {
  auto next = wanted.begin();
  for (const std::string& string : all) {
    if (next != wanted.end() && *next == string) ++next;
  }
  return next == wanted.end();
}

/// @param isRemoval the edit may take comments and includes along
/// @return whether the edit was made
bool checkEdit(const RandomDocument& random, const Edit& edit, bool isRemoval) {
  SourceDocument document;
  read(document, random);
  const std::string text = document.getText();
  const std::vector<std::string> asides = getAsides(document);
  const std::size_t warnings = document.getDiagnostics().size();
  SourceEditor editor(document);
  if (!edit(editor)) {
    EXPECT_NE(editor.getProblem(), "");
    EXPECT_TRUE(editor.getChangedTexts().empty());
    EXPECT_EQ(document.getText(), text);
    return false;
  }
  SourceDocument again;
  read(again, random, editor.getChangedTexts());
  EXPECT_EQ(again.getText(), document.getText());
  EXPECT_EQ(again.getVersion(), document.getVersion());
  // A quote that was not closed may go, and what draws no warning any longer be a comment.
  if (again.getDiagnostics().size() < warnings) return true;
  EXPECT_TRUE(areAmong(getAsides(again), asides));
  EXPECT_TRUE(isRemoval || getAsides(again).size() == asides.size());
  return true;
}

/// Makes edits of some item of each document.
void checkEdits(const std::function<std::vector<Edit>(const SourceTree&, unsigned long)>& make,
                bool areRemovals) {
  unsigned long made = 0;
  unsigned long refused = 0;
  for (unsigned long seed = 1; seed <= getCount() && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const RandomDocument random(seed);
    SourceDocument document;
    read(document, random);
    const SourceTree tree(document);
    if (tree.getItemCount() == 0 || !isReadThroughout(document)) continue;
    std::mt19937_64 choice(seed);
    for (const Edit& edit : make(tree, static_cast<unsigned long>(choice() % tree.getItemCount())))
      ++(checkEdit(random, edit, areRemovals) ? made : refused);
  }
  EXPECT_GT(made, getCount() / 20);
  EXPECT_GT(refused, getCount() / 100);
}

}  // namespace

TEST(EditRandomTest, AnEditLeavesCommentsAndIncludesAloneOrIsRefused) {
  checkEdits(makeEdits, false);
}

TEST(EditRandomTest, RemovingAnItemMakesNoNewCommentsAndIncludesOrIsRefused) {
  const auto makeRemoval = [](const SourceTree& tree, unsigned long item) -> std::vector<Edit> {
    const std::string path = tree.getPath(item);
    return {[=](SourceEditor& editor) { return editor.removeItem(path); }};
  };
  checkEdits(makeRemoval, true);
}
