// Memory that documents had goes back to the system, but for what the library keeps to be quick.

#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/LargeBlocks.h>
#include <Quarry/internal/SlabSource.h>
#include <gtest/gtest.h>

#include <malloc.h>
#include <unistd.h>

#include <deque>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/Sanitized.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserValue;

namespace {

constexpr long MEBIBYTE = 1L << 20;

/// What the library may keep for the next document; more of large ones, when they come again.
constexpr long KEPT = static_cast<long>(Quarry::SlabSource::KEPT * Quarry::SlabSource::SLAB_SIZE +
                                        Quarry::LargeBlocks::MOST_KEPT_BYTES);

/// What it may keep of many small documents.
constexpr long KEPT_SMALL =
    static_cast<long>(Quarry::SlabSource::KEPT_SMALL * Quarry::SlabSource::SMALL_SIZE);

/// For what the C library and the test keep.
constexpr long MARGIN = 8 * MEBIBYTE;

/// Returns how many bytes of the process are in memory, without those that the C library holds back
/// for itself.
long getResidentBytes() {
  ::malloc_trim(0);
  std::ifstream file("/proc/self/statm");
  long size = 0;
  long resident = 0;
  file >> size >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

class MemoryTest : public testing::Test {
 protected:
  void SetUp() override {
#ifdef QUARRY_TEST_SANITIZED
    GTEST_SKIP() << "a sanitizer holds back memory that was freed";
#endif
  }
};

/// Returns a document of about so many bytes: groups of items with few values of every kind, and
/// now and then a long list.
std::string makeText(unsigned long size) {
  std::string list = "\n  samples";
  for (int i = 0; i < 20000; ++i)
    list += " 0.5";
  std::string text;
  text.reserve(size + list.size() + 300);
  for (unsigned long i = 0; text.size() < size; ++i) {
    const std::string number = std::to_string(i);
    text += "\nnode" + number + " {\n  id " + number + "\n  position 1.25 -3.5 " + number +
            ".75\n  visible yes\n  title \"The node of number " + number +
            "\"\n  label \"short\"\n  blur(4, no)\n  data 0x0102030405060708090A0B0C00000000";
    if (i % 500 == 0) text += list;
    text += "\n}";
  }
  return text;
}

/// Returns the text of a settings file of at least `size` bytes.
std::string makeSmallText(unsigned long size) {
  std::string text;
  for (unsigned long i = 0; text.size() < size; ++i)
    text += "section" + std::to_string(i) + " {\n  width 640\n  title \"a title\"\n}\n";
  return text;
}

void readAndDestroy(const std::string& text) {
  ParserGroup root("root");
  root.setText(text, 1.1);
  ASSERT_GT(root.getItemCount(), 100U);
}

}  // namespace

// --- Large documents -----------------------------------------------------------------------------

TEST_F(MemoryTest, OfALargeDocumentGoesBackWhenItIsDestroyed) {
  const long before = getResidentBytes();
  long during = 0;
  {
    const std::string text = makeText(100 * MEBIBYTE);
    ParserGroup root("root");
    root.setText(text, 1.1);
    during = getResidentBytes();
  }
  EXPECT_GT(during, before + 200 * MEBIBYTE);
  EXPECT_LT(getResidentBytes(), before + KEPT + MARGIN);
}

TEST_F(MemoryTest, OfALargeFileThatWasReadCopiedEncodedAndDecodedGoesBack) {
  const TestSupport::TemporaryFolder folder;
  const std::string path = folder.write("large.cfg", makeText(10 * MEBIBYTE));
  const long before = getResidentBytes();
  {
    ParserFile file;
    ASSERT_TRUE(file.read(path));
    const ParserGroup copy(file.getRoot());
    ParserFile decoded;
    ASSERT_TRUE(decoded.setBinary(file.getBinary()));
  }
  EXPECT_LT(getResidentBytes(), before + KEPT + MARGIN);
}

TEST_F(MemoryTest, OfADocumentThatWasClearedGoesBack) {
  const long before = getResidentBytes();
  ParserGroup root("root");
  root.setText(makeText(20 * MEBIBYTE), 1.1);
  root.clear();
  EXPECT_LT(getResidentBytes(), before + KEPT + MARGIN);
}

TEST_F(MemoryTest, OfALongListOfValuesGoesBack) {
  const long before = getResidentBytes();
  {
    ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
    for (int i = 0; i < 2500000; ++i)
      item.addBool(true);
    EXPECT_GT(getResidentBytes(), before + 60 * MEBIBYTE);
  }
  EXPECT_LT(getResidentBytes(), before + KEPT + MARGIN);
}

// --- Many documents ------------------------------------------------------------------------------

TEST_F(MemoryTest, OfManySmallDocumentsIsWhatTheyNeedAndGoesBack) {
  constexpr long COUNT = 4000;
  constexpr long MOST_OF_EACH = 24000;
  const std::string text = makeSmallText(2000);
  const long before = getResidentBytes();
  {
    std::vector<std::unique_ptr<ParserGroup>> documents;
    for (long i = 0; i < COUNT; ++i) {
      documents.push_back(std::make_unique<ParserGroup>("document"));
      ASSERT_TRUE(documents.back()->setText(text, 1.1));
    }
    EXPECT_LT(getResidentBytes(), before + COUNT * MOST_OF_EACH);
  }
  EXPECT_LT(getResidentBytes(), before + KEPT_SMALL + MARGIN);
}

// --- Again and again -----------------------------------------------------------------------------

TEST_F(MemoryTest, OfLargeDocumentsGoesBackButForALittleMoreWhenTheyCameAgain) {
  constexpr long EXTENTS =
      static_cast<long>(Quarry::SlabSource::MOST_KEPT_EXTENTS * Quarry::SlabSource::EXTENT_SIZE);
  const long before = getResidentBytes();
  for (int i = 0; i < 3; ++i)
    readAndDestroy(makeText(50 * MEBIBYTE));
  EXPECT_LT(getResidentBytes(), before + KEPT + EXTENTS + MARGIN);
}

TEST_F(MemoryTest, DoesNotGrowWhenADocumentIsReadAgainAndAgain) {
  const std::string text = makeText(5 * MEBIBYTE);
  for (int i = 0; i < 3; ++i)
    readAndDestroy(text);
  const long before = getResidentBytes();
  for (int i = 0; i < 20; ++i)
    readAndDestroy(text);
  EXPECT_LT(getResidentBytes(), before + 2 * MEBIBYTE);
}

TEST_F(MemoryTest, DoesNotGrowWhenTwoDocumentsReplaceOneAnotherAgainAndAgain) {
  const std::string text = makeText(3 * MEBIBYTE);
  std::unique_ptr<ParserGroup> current = TestSupport::readText(text);
  long before = 0;
  for (int round = 0; round < 25; ++round) {
    current = TestSupport::readText(text);  // the old one goes when the new one is there
    if (round == 5) before = getResidentBytes();
  }
  EXPECT_LT(getResidentBytes(), before + 2 * MEBIBYTE);
}

// --- Editing -------------------------------------------------------------------------------------

namespace {

/// Replaces the short-lived item of a group by one of another size.
void replaceItem(ParserGroup& group, int size) {
  group.removeItem("draft");
  ParserItem* item = group.addItem("draft", 0, 0);
  for (int i = 0; i < size; ++i)
    item->addInt(i);
  item->addString(std::string(static_cast<unsigned long>(30 * size), 's'));
  item->addGroup(nullptr)->addItem("inner", 0, 0)->addInt(size);
}

}  // namespace

TEST_F(MemoryTest, DoesNotGrowWhileItemsBetweenLongLivedOnesAreReplaced) {
  ParserGroup root("root");
  for (int i = 0; i < 3000; ++i)
    root.addGroup("node", false)->addItem("kept", 0, 0)->addInt(i);
  long before = 0;
  for (int round = 0; round < 60; ++round) {
    for (unsigned long i = 0; i < root.getItemCount(); ++i)
      replaceItem(*root.getItem(i)->getGroup(0), (round + static_cast<int>(i)) % 12);
    if (round == 15) before = getResidentBytes();
  }
  EXPECT_LT(getResidentBytes(), before + 4 * MEBIBYTE);
}

TEST_F(MemoryTest, DoesNotGrowWhenAFewItemsOfEachDocumentLiveOn) {
  std::string text;
  for (int i = 0; i < 20000; ++i)
    text += "item " + std::to_string(i) + " \"with a string of some length\"\n";
  std::deque<std::unique_ptr<ParserItem>> kept;
  long before = 0;
  for (int round = 0; round < 60; ++round) {
    const std::unique_ptr<ParserGroup> document = TestSupport::readText(text);
    for (unsigned long i = 0; i < document->getItemCount(); i += 200) {
      kept.emplace_back(document->getItem(i));
      document->detachItem(i);
    }
    while (kept.size() > 1000)
      kept.pop_front();
    if (round == 25) before = getResidentBytes();
  }
  EXPECT_LT(getResidentBytes(), before + 4 * MEBIBYTE);
}

TEST_F(MemoryTest, DoesNotGrowWhenAValueIsSetAgainAndAgain) {
  ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
  item.addInt(0);
  const auto change = [&item](unsigned long round) {
    item.setString(std::string(round % 3000, 's'), 0);
    item.getString(0);
    std::string bytes(round % 100, 'b');
    item.setBinaryData(bytes.data(), bytes.size(), 0);
  };
  for (unsigned long round = 0; round < 5000; ++round)
    change(round);
  const long before = getResidentBytes();
  for (unsigned long round = 0; round < 50000; ++round)
    change(round);
  EXPECT_LT(getResidentBytes(), before + 2 * MEBIBYTE);
}

TEST_F(MemoryTest, DoesNotGrowWhenItemsAreRenamedAndLookedUpAgainAndAgain) {
  ParserGroup root("root");
  for (int i = 0; i < 1000; ++i)
    root.addItem("item" + std::to_string(i), 0, 0);
  const auto change = [&root](int round) {
    root.getItem(static_cast<unsigned long>(round % 1000))->rename("r" + std::to_string(round));
    for (int i = 0; i < 8; ++i)
      root.getItem("absent");
  };
  for (int round = 0; round < 500; ++round)
    change(round);
  const long before = getResidentBytes();
  for (int round = 0; round < 3000; ++round)
    change(round);
  EXPECT_LT(getResidentBytes(), before + 2 * MEBIBYTE);
}
