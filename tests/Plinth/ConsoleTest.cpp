#include <Plinth/Console.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

using Plinth::Console;
using Plinth::console;

namespace {

using Texts = std::vector<std::string>;

/// Notes every report as "level message second" while it lives.
class Recorder {
 public:
  Recorder()
      : previous(console.setHandler(
            [this](Console::Level level, const std::string& message, const std::string& second) {
              texts.push_back(std::to_string(level) + ' ' + message + ' ' + second);
            })) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() { console.setHandler(previous); }

  Texts texts;

 private:
  Console::Handler previous;
};

void ignore(Console::Level /*level*/, const std::string& /*message*/,
            const std::string& /*second*/) {}

/// Puts the default handler in force for a test, and takes down what reaches standard error.
class DefaultHandler {
 public:
  DefaultHandler() : previous(console.setHandler({})) { testing::internal::CaptureStderr(); }
  DefaultHandler(const DefaultHandler&) = delete;
  DefaultHandler& operator=(const DefaultHandler&) = delete;
  ~DefaultHandler() { console.setHandler(previous); }

  static std::string take() { return testing::internal::GetCapturedStderr(); }

 private:
  Console::Handler previous;
};

/// Runs `work` in `count` threads at once, each told its number, and waits for them.
template <typename Work>
void runInThreads(int count, const Work& work) {
  std::vector<std::thread> threads;
  for (int number = 0; number < count; ++number)
    threads.emplace_back(work, number);
  for (std::thread& thread : threads)
    thread.join();
}

/// Returns how many lines of `text` consist of one letter, `length` times.
int countLinesOfOneLetter(const std::string& text, std::size_t length) {
  std::istringstream lines(text);
  int count = 0;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line == std::string(length, line[0])) ++count;
  }
  return count;
}

bool reportsAtTheEnd = false;

/// Is made before anyone uses the console, so it is destroyed after everything that the console
/// could have made with static lifetime.
struct LastReporter {
  LastReporter() = default;
  LastReporter(const LastReporter&) = delete;
  LastReporter& operator=(const LastReporter&) = delete;
  ~LastReporter() {
    if (reportsAtTheEnd) console.error("after main\n", "");
  }
};

const LastReporter lastReporter;

Texts reportBeforeMain() {
  const Recorder recorder;
  console.warning("before main", "");
  return recorder.texts;
}

/// Leaves the program as returning from main does; the last reporter then speaks up.
[[noreturn]] void endTheProgram() {
  reportsAtTheEnd = true;
  std::exit(0);
}

void handleAfterMain(const std::string& name) {
  console.setHandler([name](Console::Level, const std::string& message, const std::string&) {
    std::fputs((name + message).c_str(), stderr);
  });
}

const Texts reportedBeforeMain = reportBeforeMain();

}  // namespace

// --- Reports -------------------------------------------------------------------------------------

TEST(ConsoleTest, PrintReachesTheHandler) {
  const Recorder recorder;
  console.print("message", "second");
  EXPECT_EQ(recorder.texts, Texts{"0 message second"});
}

TEST(ConsoleTest, DebugReachesTheHandler) {
  const Recorder recorder;
  console.debug("message", "second");
  EXPECT_EQ(recorder.texts, Texts{"1 message second"});
}

TEST(ConsoleTest, WarningReachesTheHandler) {
  const Recorder recorder;
  console.warning("message", "second");
  EXPECT_EQ(recorder.texts, Texts{"2 message second"});
}

TEST(ConsoleTest, ErrorReachesTheHandler) {
  const Recorder recorder;
  console.error("message", "second");
  EXPECT_EQ(recorder.texts, Texts{"3 message second"});
}

TEST(ConsoleTest, EachReportReachesTheHandlerOnceAndInOrder) {
  const Recorder recorder;
  console.print("a", "");
  console.error("b", "");
  console.print("c", "");
  EXPECT_EQ(recorder.texts, (Texts{"0 a ", "3 b ", "0 c "}));
}

TEST(ConsoleTest, TextsArriveByteForByte) {
  const std::string bytes("\0\n%s\xff", 5);
  const Recorder recorder;
  console.print(bytes, bytes);
  EXPECT_EQ(recorder.texts, Texts{"0 " + bytes + ' ' + bytes});
}

TEST(ConsoleTest, LevelIsA32BitNumber) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<Console::Level>, std::int32_t>));
}

TEST(ConsoleTest, WhatAHandlerThrowsReachesTheCaller) {
  const Recorder restore;
  console.setHandler([](Console::Level, const std::string& message, const std::string&) {
    throw std::runtime_error(message);
  });
  EXPECT_THROW(console.warning("thrown", ""), std::runtime_error);
}

TEST(ConsoleTest, StaysUsableInEveryThreadAfterAHandlerHasThrown) {
  const Recorder restore;
  console.setHandler([](Console::Level, const std::string&, const std::string&) { throw 1; });
  EXPECT_THROW(console.warning("thrown", ""), int);
  const Recorder recorder;
  std::thread([] { console.print("next", ""); }).join();
  EXPECT_EQ(recorder.texts, Texts{"0 next "});
}

// --- Default handler -----------------------------------------------------------------------------

TEST(ConsoleDefaultHandlerTest, WritesPrintWarningAndErrorToStandardError) {
  const DefaultHandler captured;
  console.print("p\n", "");
  console.warning("w\n", "");
  console.error("e\n", "");
  EXPECT_EQ(DefaultHandler::take(), "p\nw\ne\n");
}

TEST(ConsoleDefaultHandlerTest, DropsDebug) {
  const DefaultHandler captured;
  console.debug("d\n", "second");
  EXPECT_EQ(DefaultHandler::take(), "");
}

TEST(ConsoleDefaultHandlerTest, WritesTheMessageThenTheSecondTextAndNothingElse) {
  const DefaultHandler captured;
  console.warning("first", "second");
  console.warning("third", "");
  EXPECT_EQ(DefaultHandler::take(), "firstsecondthird");
}

TEST(ConsoleDefaultHandlerTest, WritesTextsByteForByte) {
  const std::string bytes("%s\0\n\xff", 5);
  const DefaultHandler captured;
  console.error(bytes, "");
  EXPECT_EQ(DefaultHandler::take(), bytes);
}

TEST(ConsoleDefaultHandlerTest, DoesNotMixTheLinesOfSeveralThreads) {
  const DefaultHandler captured;
  runInThreads(4, [](int number) {
    const std::string half(100, static_cast<char>('a' + number));
    for (int i = 0; i < 500; ++i)
      console.print(half, half + '\n');
  });
  EXPECT_EQ(countLinesOfOneLetter(DefaultHandler::take(), 200), 4 * 500);
}

// --- Handler -------------------------------------------------------------------------------------

TEST(ConsoleSetHandlerTest, ReturnsAnEmptyHandlerForTheDefaultOne) {
  const Recorder restore;
  console.setHandler({});
  EXPECT_FALSE(console.setHandler(ignore));
}

TEST(ConsoleSetHandlerTest, ReturnsThePreviousHandler) {
  Recorder recorder;
  const Console::Handler previous = console.setHandler(ignore);
  ASSERT_TRUE(previous);
  previous(Console::LEVEL_PRINT, "called", "directly");
  EXPECT_EQ(recorder.texts, Texts{"0 called directly"});
}

TEST(ConsoleSetHandlerTest, PutsThePreviousHandlerBack) {
  const Recorder recorder;
  const Console::Handler previous = console.setHandler(ignore);
  console.print("ignored", "");
  console.setHandler(previous);
  console.print("noted", "");
  EXPECT_EQ(recorder.texts, Texts{"0 noted "});
}

TEST(ConsoleSetHandlerTest, AnEmptyHandlerRestoresTheDefaultOne) {
  const Recorder restore;
  const DefaultHandler captured;
  console.setHandler(ignore);
  console.setHandler({});
  console.print("to standard error", "");
  EXPECT_EQ(DefaultHandler::take(), "to standard error");
}

TEST(ConsoleSetHandlerTest, AReplacedHandlerIsDestroyed) {
  const Recorder restore;
  auto state = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = state;
  console.setHandler([state](Console::Level, const std::string&, const std::string&) {});
  state.reset();
  EXPECT_FALSE(watch.expired());
  console.setHandler(ignore);
  EXPECT_TRUE(watch.expired());
}

TEST(ConsoleSetHandlerTest, AHandlerMayUseTheConsole) {
  Texts texts;
  const Recorder restore;
  console.setHandler([&](Console::Level level, const std::string& message, const std::string&) {
    if (level == Console::LEVEL_WARNING) console.error("after " + message, "");
    texts.push_back(message);
  });
  console.warning("warning", "");
  EXPECT_EQ(texts, (Texts{"after warning", "warning"}));
}

TEST(ConsoleSetHandlerTest, AHandlerMayReplaceItself) {
  Recorder recorder;
  const Console::Handler record = console.setHandler(ignore);
  console.setHandler(
      [&](Console::Level, const std::string&, const std::string&) { console.setHandler(record); });
  console.print("to the first", "");
  console.print("to the second", "");
  EXPECT_EQ(recorder.texts, Texts{"0 to the second "});
}

TEST(ConsoleSetHandlerTest, AReportOfAHandlerThatReplacedItselfGoesToTheNewOne) {
  Recorder recorder;
  const Console::Handler record = console.setHandler(ignore);
  console.setHandler([&](Console::Level, const std::string&, const std::string&) {
    console.setHandler(record);
    console.print("nested", "");
  });
  console.print("outer", "");
  EXPECT_EQ(recorder.texts, Texts{"0 nested "});
}

TEST(ConsoleSetHandlerTest, AHandlerThatReplacesItselfLivesUntilItHasReturned) {
  const Recorder restore;
  auto state = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = state;
  bool lived = false;
  console.setHandler([state, &watch, &lived](auto&&...) {
    console.setHandler(ignore);
    lived = !watch.expired();
  });
  state.reset();
  console.print("", "");
  EXPECT_TRUE(lived);
  EXPECT_TRUE(watch.expired());
}

// --- Threads -------------------------------------------------------------------------------------

TEST(ConsoleThreadTest, EveryReportOfEveryThreadArrives) {
  const Recorder recorder;
  runInThreads(4, [](int number) {
    for (int i = 0; i < 1000; ++i)
      console.print(std::to_string(number), "");
  });
  EXPECT_EQ(recorder.texts.size(), 4000U);
}

TEST(ConsoleThreadTest, AHandlerNeverRunsInTwoThreadsAtOnce) {
  std::atomic<bool> running = false;
  std::atomic<bool> overlapped = false;
  const Recorder restore;
  console.setHandler([&](auto&&...) {
    if (running.exchange(true)) overlapped = true;
    std::this_thread::yield();
    running = false;
  });
  runInThreads(4, [](int) {
    for (int i = 0; i < 1000; ++i)
      console.print("", "");
  });
  EXPECT_FALSE(overlapped);
}

TEST(ConsoleThreadTest, TheOldHandlerNoLongerRunsWhenSetHandlerReturns) {
  std::atomic<bool> started = false;
  std::atomic<bool> finished = false;
  const Recorder restore;
  console.setHandler([&](auto&&...) {
    started = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    finished = true;
  });
  std::thread reporter([] { console.print("", ""); });
  while (!started)
    std::this_thread::yield();
  console.setHandler(ignore);
  EXPECT_TRUE(finished);
  reporter.join();
}

TEST(ConsoleThreadTest, HandlersMayBeSetWhileOtherThreadsReport) {
  std::atomic<int> reports = 0;
  const Recorder restore;
  const Console::Handler count = [&reports](auto&&...) { ++reports; };
  console.setHandler(count);
  runInThreads(4, [&count](int) {
    for (int i = 0; i < 500; ++i) {
      console.setHandler(count);
      console.print("", "");
    }
  });
  EXPECT_EQ(reports, 2000);
}

// --- Lifetime ------------------------------------------------------------------------------------

TEST(ConsoleLifetimeTest, WorksBeforeMain) {
  EXPECT_EQ(reportedBeforeMain, Texts{"2 before main "});
}

TEST(ConsoleDeathTest, WorksAfterMain) {
  EXPECT_EXIT(
      {
        console.setHandler({});
        endTheProgram();
      },
      testing::ExitedWithCode(0), "^after main\n$");
}

TEST(ConsoleDeathTest, KeepsTheHandlerAfterMain) {
  EXPECT_EXIT(
      {
        handleAfterMain("a handler with a state of its own: ");
        endTheProgram();
      },
      testing::ExitedWithCode(0), "^a handler with a state of its own: after main\n$");
}
