// Many threads at once, each with its own documents, which it reads, edits, copies, writes,
// encodes, decodes and frees, or hands over to another thread that frees them.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <latch>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Documents.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::writeLines;

namespace {

constexpr int THREADS = 64;
constexpr int ROUNDS = 5;

/// Runs `work(number)` in all threads, which begin together.
template <class Work>
void runTogether(Work work) {
  std::latch begin(THREADS);
  std::vector<std::thread> threads;
  for (int number = 0; number < THREADS; ++number) {
    threads.emplace_back([&begin, &work, number] {
      begin.arrive_and_wait();
      work(number);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

std::string makeText(int number) {
  std::string text;
  for (int i = 0; i < 20; ++i) {
    const std::string index = std::to_string(i * number);
    text += "\nitem" + std::to_string(i) + " " + index + " yes 0.125 \"a string of some length\"";
    text += "\ngroup" + std::to_string(i) + " {\n    inner " + index + "\n    f(1, \"x\")\n}";
  }
  text += "\nblock 0x0102FF02010000\nlist";
  for (int i = 0; i < 1100; ++i)
    text += " " + std::to_string(i % (number + 1));
  return text;
}

/// Makes every kind of change, and undoes it.
void edit(ParserGroup& root, int number) {
  root.getItem("item3")->setInt(number, 0);
  root.getItem("item4")->rename("renamed");
  root.getItem("renamed")->rename("item4");
  root.addGroup("added", true)->addItem("deep", 0, 0)->addDouble(number);
  root.removeItem("added");
  root.getItem("list")->removeValue({0, 17, 1000});
  root.addItem("last", 0, 0)->addInt(root.getItem("item5")->getInt(0));
}

/// Does with a document what can be done with one, and returns all that it is written as.
std::string work(int number) {
  ParserFile file;
  file.getRoot().setText(makeText(number), 1.1);
  edit(file.getRoot(), number);
  const ParserGroup copy(file.getRoot());
  ParserFile decoded;
  decoded.setBinary(file.getBinary());
  const unsigned long selected = file.getRoot().getItems("^item.*[02468]$").getCount();
  return writeLines(copy) + writeLines(decoded.getRoot()) + std::to_string(selected);
}

/// Places where threads leave documents for one another.
class Exchange {
 public:
  /// Leaves a document in a place and takes the one that was there.
  std::unique_ptr<ParserGroup> swap(int place, std::unique_ptr<ParserGroup> document) {
    const std::lock_guard<std::mutex> lock(mutex);
    std::swap(documents[static_cast<unsigned long>(place)], document);
    return document;
  }

 private:
  std::mutex mutex;
  std::array<std::unique_ptr<ParserGroup>, THREADS> documents;
};

}  // namespace

TEST(ManyThreadsTest, EachGetsFromItsDocumentsWhatItGetsAlone) {
  std::vector<std::string> alone;
  for (int number = 0; number < THREADS; ++number)
    alone.push_back(work(number));
  std::atomic<int> different = 0;
  runTogether([&](int number) {
    for (int round = 0; round < ROUNDS; ++round)
      if (work(number) != alone[static_cast<unsigned long>(number)]) ++different;
  });
  EXPECT_EQ(different, 0);
}

TEST(ManyThreadsTest, EachFindsTheDocumentsOfOthersWholeAndFreesThem) {
  Exchange exchange;
  std::atomic<int> different = 0;
  const std::string expected = writeLines(*TestSupport::readText(makeText(1)));
  runTogether([&](int number) {
    for (int round = 0; round < ROUNDS; ++round) {
      const int place = (number + round) % THREADS;
      const auto taken = exchange.swap(place, TestSupport::readText(makeText(1)));
      if (taken != nullptr && writeLines(*taken) != expected) ++different;
    }
  });
  EXPECT_EQ(different, 0);
}

TEST(ManyThreadsTest, EachAddsToTheDocumentsThatItTakesFromOthers) {
  constexpr int ITEMS = 200;
  Exchange exchange;
  std::atomic<unsigned long> items = 0;
  const auto count = [&items](const std::unique_ptr<ParserGroup>& document) {
    if (document != nullptr) items += document->getItemCount();
  };
  runTogether([&](int number) {
    auto own = std::make_unique<ParserGroup>("root");
    for (int i = 0; i < ITEMS; ++i) {
      own->addItem("item", 0, 0)->addInt(number);
      own = exchange.swap((number + i) % THREADS, std::move(own));
      if (own == nullptr) own = std::make_unique<ParserGroup>("root");
    }
    count(own);
  });
  for (int place = 0; place < THREADS; ++place)
    count(exchange.swap(place, nullptr));
  EXPECT_EQ(items, static_cast<unsigned long>(THREADS * ITEMS));
}

TEST(ManyThreadsTest, EachReadsTheSameFile) {
  const TestSupport::TemporaryFolder folder;
  const std::string path = folder.write("shared.cfg", makeText(2));
  std::atomic<int> different = 0;
  runTogether([&](int) {
    ParserFile file;
    if (!file.read(path) || writeLines(file.getRoot()) != makeText(2)) ++different;
  });
  EXPECT_EQ(different, 0);
}

TEST(ManyThreadsTest, AllWarningsOfAllReachTheConsole) {
  std::atomic<int> messages = 0;
  const Plinth::Console::Handler previous = Plinth::console.setHandler(
      [&messages](Plinth::Console::Level, const std::string&, const std::string&) { ++messages; });
  runTogether([](int) {
    for (int round = 0; round < ROUNDS; ++round)
      TestSupport::readText("a 1 , , / b { ) } ( ");
  });
  Plinth::console.setHandler(previous);
  EXPECT_EQ(messages, THREADS * ROUNDS * 4);
}
