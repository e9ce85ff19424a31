// What holds for every edit, over many documents. QUARRY_EDIT_DOCUMENTS sets how many are
// generated.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include "EditedDocument.h"
#include "support/Environment.h"
#include "support/GeneratedDocuments.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceItem;
using Quarry::SourceLiteral;
using Quarry::SourcePiece;
using Quarry::SourceTree;
using Quarry::SourceValue;
using TestSupport::EditedDocument;
using TestSupport::Faults;
using TestSupport::FileTexts;
using TestSupport::GeneratedDocument;
using TestSupport::generateDocument;
using TestSupport::TemporaryFolder;
using TestSupport::WorkingDirectory;

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;

unsigned getCount() {
  return static_cast<unsigned>(TestSupport::getCount("QUARRY_EDIT_DOCUMENTS", 250));
}

std::string readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The documents that the tests have anyway, none of which includes others.
std::vector<GeneratedDocument> getKeptDocuments() {
  std::vector<GeneratedDocument> documents;
  for (const char* folder : {"documents", "golden"}) {
    const std::filesystem::path path = std::filesystem::path(TEST_DATA_DIR) / folder;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      if (entry.path().extension() == ".cfg") {
        documents.push_back({"a.cfg", {{"a.cfg", readBytes(entry.path())}}});
      }
    }
  }
  return documents;
}

using Check = std::function<void(const GeneratedDocument&)>;

void forAll(Faults faults, const Check& check) {
  for (const GeneratedDocument& document : getKeptDocuments())
    check(document);
  for (unsigned seed = 0; seed < getCount() && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    check(generateDocument(seed, faults));
  }
}

EditedDocument edit(const GeneratedDocument& generated) {
  return EditedDocument(generated.name, generated.files);
}

unsigned long countOpenings(const EditedDocument& edited, const std::string& path) {
  unsigned long count = 0;
  for (unsigned long i = 0; i < edited.document.getOpeningCount(); ++i) {
    if (edited.document.getFileOf(i).getPath() == path) ++count;
  }
  return count;
}

std::string getValuePath(const SourceTree& tree, unsigned long item, unsigned long value) {
  return tree.getPath(item) + "#" + std::to_string(value + 1);
}

/// One value of a document.
using ValueCheck = std::function<void(const EditedDocument&, unsigned long, unsigned long)>;

/// Calls for some values of a document, chosen by chance but always the same.
void forSomeValues(const GeneratedDocument& generated, const ValueCheck& check) {
  const EditedDocument edited = edit(generated);
  const SourceTree& tree = edited.getTree();
  std::mt19937 random(static_cast<unsigned>(edited.document.getText().size()));
  const auto share = static_cast<unsigned>(tree.getItemCount() / 6 + 1);
  for (unsigned long item = 0; item < tree.getItemCount(); ++item) {
    const unsigned long count = tree.getItem(item).valueCount;
    if (count > 0 && random() % share == 0) check(edited, item, random() % count);
  }
}

/// A literal that is never spelled like what is there.
SourceLiteral makeOther(unsigned long index) {
  switch (index % 6) {
    case 0: return SourceLiteral::makeInt(-4711);
    case 1: return SourceLiteral::makeDouble(0.1 + 0.2);
    case 2: return SourceLiteral::makeString("// other {text} = 1, 2");
    case 3: return SourceLiteral::makeBinary(std::string("\0\xFF{}", 4));
    case 4: return SourceLiteral::parse("\"typed #text\"");
    default: return SourceLiteral::parse("4711abc");
  }
}

/// Returns the texts of all files with one value replaced where it stands.
FileTexts replaceByHand(const EditedDocument& edited, const SourceValue& value,
                        const std::string& spelling) {
  const SourcePiece piece = edited.document.getPieces(value.begin, value.length).front();
  FileTexts texts = edited.getTexts();
  const std::string& path = edited.document.getFileOf(piece.position.opening).getPath();
  texts[path].replace(piece.position.offset, value.length, spelling);
  return texts;
}

bool isInOnePlace(const EditedDocument& edited, const SourceValue& value) {
  const std::vector<SourcePiece> pieces = edited.document.getPieces(value.begin, value.length);
  const std::string& path = edited.document.getFileOf(pieces.front().position.opening).getPath();
  return pieces.size() == 1 && countOpenings(edited, path) == 1;
}

/// Tells whether a new item is the first on its line.
bool isOnALineOfItsOwn(EditedDocument& edited) {
  const std::string& text = edited.edit().getChangedTexts().begin()->second;
  const std::size_t before = text.find_last_not_of(" \t", text.find("new_item") - 1);
  return before == std::string::npos || text[before] == '\n';
}

}  // namespace

// --- Bytes ---------------------------------------------------------------------------------------

TEST(EditPropertyTest, SettingAValueToItsOwnSpellingChangesNothing) {
  forAll(Faults::IN_TEXT, [](const GeneratedDocument& generated) {
    forSomeValues(
        generated, [&](const EditedDocument& before, unsigned long item, unsigned long value) {
          const SourceTree& tree = before.getTree();
          const std::string spelling(tree.getSpelling(tree.getValue(tree.getItem(item), value)));
          EditedDocument edited = edit(generated);
          EXPECT_TRUE(edited.edit().setValue(getValuePath(tree, item, value),
                                             SourceLiteral::parse(spelling)))
              << edited.getProblem();
          EXPECT_TRUE(edited.edit().getChangedTexts().empty());
        });
  });
}

TEST(EditPropertyTest, AValueThatStandsInOnePlaceIsReplacedAndNothingElse) {
  unsigned long made = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    forSomeValues(generated,
                  [&](const EditedDocument& before, unsigned long item, unsigned long index) {
                    const SourceTree& tree = before.getTree();
                    const SourceValue& value = tree.getValue(tree.getItem(item), index);
                    if (!isInOnePlace(before, value)) return;
                    EditedDocument edited = edit(generated);
                    const SourceLiteral literal = makeOther(item);
                    ASSERT_TRUE(edited.edit().setValue(getValuePath(tree, item, index), literal))
                        << edited.getProblem() << "\n"
                        << getValuePath(tree, item, index) << "\n"
                        << before.document.getText();
                    const std::string spelling = literal.getSpelling(before.document.getVersion());
                    EXPECT_EQ(edited.getTexts(), replaceByHand(before, value, spelling));
                    ++made;
                  });
  });
  EXPECT_GT(made, 3 * getCount());
}

TEST(EditPropertyTest, AValueThatStandsInSeveralPlacesIsRefusedAndNothingChanges) {
  unsigned long refused = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    forSomeValues(
        generated, [&](const EditedDocument& before, unsigned long item, unsigned long index) {
          const SourceTree& tree = before.getTree();
          if (isInOnePlace(before, tree.getValue(tree.getItem(item), index))) return;
          EditedDocument edited = edit(generated);
          EXPECT_FALSE(edited.edit().setValue(getValuePath(tree, item, index), makeOther(item)));
          EXPECT_NE(edited.getProblem(), "");
          EXPECT_TRUE(edited.edit().getChangedTexts().empty());
          EXPECT_EQ(edited.document.getText(), before.document.getText());
          ++refused;
        });
  });
  EXPECT_GT(refused, getCount() / 10);
}

TEST(EditPropertyTest, RenamingAnItemAndBackGivesTheOldBytes) {
  forAll(Faults::NONE, [](const GeneratedDocument& generated) {
    forSomeValues(generated, [&](const EditedDocument& before, unsigned long item, unsigned long) {
      const std::string path = before.getTree().getPath(item);
      const std::string name(before.getTree().getName(before.getTree().getItem(item)));
      EditedDocument edited = edit(generated);
      const bool isRenamed = edited.edit().renameItem(path, "new_name");
      if (!isRenamed) {
        EXPECT_NE(edited.getProblem().find("included"), std::string::npos);
        return;
      }
      EXPECT_NE(edited.getTexts(), before.getTexts());
      EXPECT_TRUE(edited.edit().renameItem(edited.getTree().getPath(item), name))
          << edited.getProblem();
      EXPECT_EQ(edited.getTexts(), before.getTexts());
    });
  });
}

TEST(EditPropertyTest, AnAddedValueIsRemovedWithoutATrace) {
  unsigned long made = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    forSomeValues(generated, [&](const EditedDocument& before, unsigned long item, unsigned long) {
      const std::string path = before.getTree().getPath(item);
      EditedDocument edited = edit(generated);
      if (!edited.edit().addValue(path, makeOther(item))) {
        EXPECT_NE(edited.getProblem(), "");
        return;
      }
      const unsigned long last = edited.getTree().getItem(item).valueCount - 1;
      EXPECT_TRUE(edited.edit().removeValue(getValuePath(edited.getTree(), item, last)))
          << edited.getProblem();
      EXPECT_EQ(edited.getTexts(), before.getTexts());
      ++made;
    });
  });
  EXPECT_GT(made, getCount());
}

TEST(EditPropertyTest, AnItemAddedOnALineOfItsOwnIsRemovedWithoutATrace) {
  unsigned long made = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    const EditedDocument before = edit(generated);
    const SourceTree& tree = before.getTree();
    std::vector<std::string> parents = {""};
    for (unsigned long i = 0; i < tree.getItemCount(); ++i) {
      if (tree.getItem(i).hasGroup()) parents.push_back(tree.getPath(i));
    }
    for (const std::string& parent : parents) {
      EditedDocument edited = edit(generated);
      if (!edited.edit().addItem(parent, "new_item", {makeOther(parents.size())})) {
        EXPECT_NE(edited.getProblem().find("included"), std::string::npos)
            << parent << ": " << edited.getProblem() << "\n"
            << before.document.getText();
        continue;
      }
      if (!isOnALineOfItsOwn(edited)) continue;
      const FileTexts with = edited.getTexts();
      const std::string path = parent + (parent.empty() ? "" : "/") + "new_item";
      ASSERT_TRUE(edited.edit().removeItem(path)) << edited.getProblem();
      if (edited.getTexts() != before.getTexts()) {
        ADD_FAILURE() << parent << "\nbefore " << testing::PrintToString(before.getTexts())
                      << "\nwith " << testing::PrintToString(with) << "\nwithout "
                      << testing::PrintToString(edited.getTexts());
      }
      ++made;
    }
  });
  EXPECT_GT(made, getCount());
}

// --- Trees ---------------------------------------------------------------------------------------

namespace {

/// Returns the item of a tree that ParserFile read; null for a keyword, or for one within one,
/// which cannot be looked up by place.
ParserItem* findItem(const SourceTree& tree, const ParserGroup& root, unsigned long wanted) {
  std::vector<unsigned long> steps;
  for (unsigned long i = wanted; i != NOWHERE; i = tree.getItem(i).parent)
    steps.push_back(i);
  const ParserGroup* group = &root;
  ParserItem* found = nullptr;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (tree.getItem(*step).type == ParserItem::ITEM_KEYWORD) return nullptr;
    if (found != nullptr) group = found->getGroup(found->getValueCount() - 1);
    unsigned long place = 0;
    for (unsigned long i = tree.getFirst(tree.getItem(*step).parent); i != *step;
         i = tree.getNext(i)) {
      if (tree.getItem(i).type != ParserItem::ITEM_KEYWORD) ++place;
    }
    found = group->getItem(place);
  }
  return found;
}

/// Returns which value of ParserItem's that is: `<empty>` is none there.
unsigned long countValuesBefore(const SourceTree& tree, const SourceItem& item,
                                unsigned long value) {
  unsigned long count = 0;
  for (unsigned long i = 0; i < value; ++i) {
    if (tree.getValue(item, i).type != ParserValue::TYPE_EMPTY) ++count;
  }
  return count;
}

using Reader = std::unique_ptr<ParserFile> (*)(const std::string&, const FileTexts&);

std::unique_ptr<ParserFile> readFromDisk(const std::string& name, const FileTexts& texts) {
  const TemporaryFolder folder;
  const WorkingDirectory directory{folder.getPath()};
  for (const auto& [path, text] : texts)
    folder.write(path, text);
  auto file = std::make_unique<ParserFile>();
  EXPECT_TRUE(file->read(name));
  return file;
}

/// As from the disk, but quicker.
std::unique_ptr<ParserFile> readFromMemory(const std::string& name, const FileTexts& texts) {
  const EditedDocument edited(name, texts);
  auto file = std::make_unique<ParserFile>();
  file->getRoot().setText(edited.document.getText(), edited.document.getVersion());
  return file;
}

/// Sets a value in the files and in the tree, and expects that the files are then read as the tree.
/// @return whether there is such a value in the tree, and the edit was made
bool checkAgainstTree(const GeneratedDocument& generated, unsigned long item, unsigned long value,
                      Reader read) {
  EditedDocument edited = edit(generated);
  const SourceTree& tree = edited.getTree();
  const SourceItem& shape = tree.getItem(item);
  if (tree.getValue(shape, value).type == ParserValue::TYPE_EMPTY) return false;
  const std::unique_ptr<ParserFile> expected = read(generated.name, generated.files);
  ParserItem* const set = findItem(tree, expected->getRoot(), item);
  if (set == nullptr) return false;
  set->setString("new // {text}", countValuesBefore(tree, shape, value));
  const SourceLiteral literal = SourceLiteral::makeString("new // {text}");
  if (!edited.edit().setValue(getValuePath(tree, item, value), literal)) return false;
  EXPECT_EQ(read(generated.name, edited.getTexts())->getRoot().getBinary(false),
            expected->getRoot().getBinary(false));
  return true;
}

unsigned long checkAllAgainstTree(unsigned share, Reader read) {
  unsigned long made = 0;
  unsigned long documents = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    if (++documents % share != 0) return;
    forSomeValues(generated, [&](const EditedDocument&, unsigned long item, unsigned long value) {
      if (checkAgainstTree(generated, item, value, read)) ++made;
    });
  });
  return made;
}

}  // namespace

TEST(EditPropertyTest, AnEditedFileIsReadAsTheTreeWithTheSameEdit) {
  EXPECT_GT(checkAllAgainstTree(1, readFromMemory), 2 * getCount());
}

TEST(EditPropertyTest, ParserFileReadsAnEditedFileAsTheTreeWithTheSameEdit) {
  constexpr unsigned SHARE = 20;
  EXPECT_GT(checkAllAgainstTree(SHARE, readFromDisk), getCount() / SHARE);
}

TEST(EditPropertyTest, AnItemThatIsRemovedIsMissingFromParserFilesTreeAndNothingElse) {
  unsigned long removed = 0;
  forAll(Faults::NONE, [&](const GeneratedDocument& generated) {
    EditedDocument edited = edit(generated);
    if (edited.getTree().getItemCount() == 0) return;
    const unsigned long last = edited.getTree().getItemCount() - 1;
    if (edited.getTree().getItem(last).parent != NOWHERE) return;
    const std::string name(edited.getTree().getName(edited.getTree().getItem(last)));
    const std::string path = edited.getTree().getPath(last);
    if (path != name || name.front() == '#') return;
    ParserGroup expected("root");
    expected.setText(edited.document.getText(), edited.document.getVersion());
    if (!edited.edit().removeItem(path)) return;
    expected.removeItem(name);
    ParserGroup read("root");
    read.setText(edited.document.getText(), edited.document.getVersion());
    EXPECT_EQ(read.getBinary(false), expected.getBinary(false));
    ++removed;
  });
  EXPECT_GT(removed, getCount() / 20);
}
