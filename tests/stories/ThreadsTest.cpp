// Several threads with documents of their own, and documents that go from thread to thread.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Plinth::Console;
using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::readText;
using TestSupport::RecordingConsole;
using TestSupport::writeLines;

namespace {

constexpr int THREADS = 8;

/// Runs `work(number)` in so many threads at once.
template <class Work>
void runInThreads(Work work, int count = THREADS) {
  std::vector<std::thread> threads;
  for (int number = 0; number < count; ++number)
    threads.emplace_back(work, number);
  for (std::thread& thread : threads)
    thread.join();
}

std::string makeText(int number) {
  std::string text;
  for (int i = 0; i < 300; ++i) {
    text += "\nitem" + std::to_string(i) + " " + std::to_string(i * number) +
            " \"a string that is longer than a value\" 0.125 yes";
    if (i % 10 == 0)
      text += "\ngroup" + std::to_string(i) + " { inner 1 { deep \"x\\n\" } f(2, 3) }";
  }
  text += "\nlist";
  for (int i = 0; i < 4000; ++i)
    text += " " + std::to_string(i % (number + 10));
  return text;
}

/// The text as it is written back, by one thread alone.
std::string makeWritten(int number) { return writeLines(*readText(makeText(number))); }

/// Changes a tree in many ways that depend on its number only.
void edit(ParserGroup& root, int number) {
  for (int i = 0; i < 300; i += 7)
    root.getItem("item" + std::to_string(i))->addInt(number);
  for (int i = 3; i < 300; i += 13)
    root.getItem("item" + std::to_string(i))->rename("renamed" + std::to_string(i));
  for (int i = 3; i < 300; i += 13)
    root.getItem("renamed" + std::to_string(i))->setString("changed", 1);
  for (int i = 0; i < 300; i += 20)
    root.removeItem("group" + std::to_string(i));
  root.getItem("list")->removeValue({0, 17, 1000});
  root.addItem(*new ParserItem(*root.getItem("group10")));
  root.addGroup("copied", false)->addItem(*new ParserItem(*root.getItem("item8")));
}

/// Reads, edits, copies, encodes and decodes a document and returns all that it is written as.
std::string work(int number) {
  const std::unique_ptr<ParserGroup> root = readText(makeText(number));
  edit(*root, number);
  const ParserGroup copy(*root);
  const std::vector<char> bytes = copy.getBinary(false);
  ParserGroup decoded("decoded");
  unsigned long pos = 0;
  decoded.setBinary(bytes, pos);
  return writeLines(*root) + writeLines(copy) + writeLines(decoded);
}

/// Hands documents from some threads to others.
class Queue {
 public:
  void put(std::unique_ptr<ParserGroup> document) {
    const std::lock_guard<std::mutex> lock(mutex);
    documents.push_back(std::move(document));
    changed.notify_one();
  }

  std::unique_ptr<ParserGroup> take() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return !documents.empty(); });
    std::unique_ptr<ParserGroup> document = std::move(documents.front());
    documents.pop_front();
    return document;
  }

 private:
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::unique_ptr<ParserGroup>> documents;
};

}  // namespace

// --- Documents of their own ----------------------------------------------------------------------

TEST(ThreadsTest, EachThreadGetsFromItsDocumentWhatItGetsAlone) {
  const RecordingConsole console;
  std::vector<std::string> alone;
  for (int number = 0; number < THREADS; ++number)
    alone.push_back(work(number));
  std::atomic<int> different = 0;
  runInThreads([&](int number) {
    for (int round = 0; round < 4; ++round)
      if (work(number) != alone[static_cast<unsigned long>(number)]) ++different;
  });
  EXPECT_EQ(different, 0);
  EXPECT_TRUE(console.isSilent());
}

TEST(ThreadsTest, EachThreadReadsAndWritesItsFile) {
  const TestSupport::TemporaryFolder folder;
  std::atomic<int> different = 0;
  const RecordingConsole console;
  runInThreads([&](int number) {
    const std::string path = folder.getPath("file" + std::to_string(number));
    ParserFile written;
    written.getRoot().setText(makeText(number), 1.1);
    written.write(path);
    ParserFile read;
    if (!read.read(path) || writeLines(read.getRoot()) != makeWritten(number)) ++different;
  });
  EXPECT_EQ(different, 0);
  EXPECT_EQ(console.getWarnings(), std::vector<std::string>());
}

TEST(ThreadsTest, RenamingInOneThreadLeavesTheLookUpsOfOthersRight) {
  std::atomic<int> wrong = 0;
  runInThreads([&](int number) {
    const std::unique_ptr<ParserGroup> root = readText(makeText(number));
    for (int round = 0; round < 2000; ++round) {
      const std::string name = "item" + std::to_string(round % 300);
      ParserItem* item = root->getItem(name);
      if (item == nullptr || item->getName() != name) ++wrong;
      if (round % 10 != number) continue;
      item->rename("fresh");
      if (root->getItem(name) != nullptr || root->getItem("fresh") != item) ++wrong;
      item->rename(name);
    }
  });
  EXPECT_EQ(wrong, 0);
}

// --- From thread to thread -----------------------------------------------------------------------

TEST(ThreadsTest, DocumentsThatOneThreadReadAreWholeForOthersThatDestroyThem) {
  Queue queue;
  const std::string expected = makeWritten(1);
  std::atomic<int> different = 0;
  runInThreads([&](int number) {
    for (int round = 0; round < 10; ++round) {
      if (number % 2 == 0) {
        queue.put(readText(makeText(1)));
      } else if (writeLines(*queue.take()) != expected) {
        ++different;
      }
    }
  });
  EXPECT_EQ(different, 0);
}

TEST(ThreadsTest, ADocumentIsEditedByOneThreadAfterTheOther) {
  std::unique_ptr<ParserGroup> document = readText(makeText(1));
  for (int number = 0; number < 20; ++number) {
    std::thread([&document] {
      auto copy = std::make_unique<ParserGroup>(*document);
      copy->addItem("added", 0, 0)->addInt(static_cast<int>(copy->getEntries("added").size()));
      document = std::move(copy);
    }).join();
  }
  const std::vector<ParserItem*> added = document->getEntries("added");
  ASSERT_EQ(added.size(), 20U);
  EXPECT_EQ(added[19]->getInt(0), 20);
  document->removeItem("added");
  EXPECT_TRUE(writeLines(*document) == makeWritten(1));
}

TEST(ThreadsTest, ItemsOfSeveralThreadsMakeOneDocument) {
  std::vector<ParserItem*> items(THREADS);
  runInThreads([&](int number) {
    auto* item = new ParserItem("item" + std::to_string(number), ParserItem::ITEM_PLAIN, 0, 0);
    for (int i = 0; i <= number * 10; ++i)
      item->addInt(i);
    items[static_cast<unsigned long>(number)] = item;
  });
  ParserGroup root("root");
  for (const ParserItem* item : items)
    root.addItem(*item);
  EXPECT_EQ(root.getItem("item7")->getInt(70), 70);
  std::thread([&root] { root.clear(); }).join();
  EXPECT_EQ(root.getItemCount(), 0U);
}

// --- Threads that end ----------------------------------------------------------------------------

namespace {

/// Keeps a document to the very end of a thread, and makes another one there.
struct LastDocument {
  std::unique_ptr<ParserGroup> document;
  std::string* written = nullptr;

  ~LastDocument() {
    if (written == nullptr) return;
    const std::unique_ptr<ParserGroup> another = readText(makeText(2));
    *written = writeLines(*document) + writeLines(*another);
  }
};

thread_local LastDocument lastDocument;

}  // namespace

TEST(ThreadsTest, ADocumentIsUsedAndDestroyedWhileItsThreadEnds) {
  std::vector<std::string> written(THREADS);
  runInThreads([&](int number) {
    lastDocument.written = &written[static_cast<unsigned long>(number)];
    lastDocument.document = readText(makeText(1));
  });
  for (const std::string& text : written)
    EXPECT_TRUE(text == makeWritten(1) + makeWritten(2));
}

TEST(ThreadsTest, ADocumentOutlivesTheThreadThatReadIt) {
  std::vector<std::unique_ptr<ParserGroup>> documents(THREADS);
  runInThreads([&](int number) {
    documents[static_cast<unsigned long>(number)] = readText(makeText(number));
  });
  for (int number = 0; number < THREADS; ++number)
    EXPECT_TRUE(writeLines(*documents[static_cast<unsigned long>(number)]) == makeWritten(number));
}

// --- The console ---------------------------------------------------------------------------------

TEST(ThreadsTest, WarningsOfSeveralThreadsComeOneAfterTheOther) {
  std::atomic<int> inside = 0;
  int overlapping = 0;
  int messages = 0;
  const Console::Handler previous = Plinth::console.setHandler(
      [&](Console::Level, const std::string& message, const std::string&) {
        if (++inside != 1 || message.find("Unknown word type: '/'") == std::string::npos)
          ++overlapping;
        ++messages;
        --inside;
      });
  runInThreads([](int) {
    for (int round = 0; round < 100; ++round)
      readText("a 1 / 2 / 3 / b 4");
  });
  Plinth::console.setHandler(previous);
  EXPECT_EQ(overlapping, 0);
  EXPECT_EQ(messages, THREADS * 100 * 3);
}

TEST(ThreadsTest, AWarningOfOneThreadFindsItsTreeCompleteWhileOthersRead) {
  std::atomic<int> wrong = 0;
  thread_local const ParserGroup* watched = nullptr;
  const Console::Handler previous =
      Plinth::console.setHandler([&](Console::Level, const std::string&, const std::string&) {
        if (TestSupport::describe(*watched) != "a int:1 int:2; b {c int:3}") ++wrong;
      });
  runInThreads([](int) {
    for (int round = 0; round < 100; ++round) {
      ParserGroup root("root");
      watched = &root;
      root.setText("a 1 2 b { c 3 / 4 } d 5", 1.1);
    }
  });
  Plinth::console.setHandler(previous);
  EXPECT_EQ(wrong, 0);
}
