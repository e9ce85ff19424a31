// Memory that runs out when something is used for the first time in the process: what is made once
// is made the next time.
//
// Each attempt is a process of its own. The process that starts them must use nothing of the
// library, which is why these tests are a program by themselves.

#include <Plinth/Console.h>
#include <Plinth/Expression.h>
#include <Plinth/Label.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserItems.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>

#include "Faults.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using TestSupport::Attempt;

namespace {

using Use = std::function<std::string()>;

enum Outcome { FAILED_CLEANLY = 0, WENT_WRONG = 1, UNTOUCHED = 2 };

/// What a child does: the first use, in which memory runs out, and the second one.
Outcome useTwice(const Use& use, const std::string& expected, Attempt& attempt) {
  std::string result(200, ' ');
  const bool isComplete = attempt.run([&] { result.assign(use()); });
  if (isComplete && result != expected) return WENT_WRONG;
  if (use() != expected) return WENT_WRONG;
  return attempt.hasFault() ? FAILED_CLEANLY : UNTOUCHED;
}

int runInChild(const std::function<Outcome()>& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : WENT_WRONG;
}

void checkFirstUse(const Use& use, const std::string& expected) {
  unsigned long faults = 0;
  for (const auto loss : {Attempt::Loss::ONE_ALLOCATION, Attempt::Loss::ALL_FROM_THERE_ON}) {
    int outcome = FAILED_CLEANLY;
    unsigned long allocation = 0;
    while (outcome == FAILED_CLEANLY) {
      ++allocation;
      outcome = runInChild([&] {
        Attempt attempt(allocation, loss, Attempt::Whose::OWN);
        return useTwice(use, expected, attempt);
      });
    }
    EXPECT_EQ(outcome, UNTOUCHED) << "allocation " << allocation;
    faults += allocation - 1;
  }
  TestSupport::recordFaults(faults);
}

const std::string LONG_STRING = "a string that is longer than a value";

}  // namespace

TEST(FirstUseFaultTest, ATextIsParsedAndWritten) {
  checkFirstUse(
      [] {
        ParserGroup root("root");
        root.setText("a 1 \"" + LONG_STRING + "\" g { #k 1 }", 1.1);
        std::string text;
        ParserGroup(root).getText(text, false, false, 1);
        return text;
      },
      " a 1 \"" + LONG_STRING + "\" g { #k 1 }");
}

TEST(FirstUseFaultTest, ALargeBlockIsTaken) {
  checkFirstUse(
      [] {
        const std::string bytes(200000, 's');
        return Quarry::ParserValue(bytes).getAsString() == bytes ? "same" : "other";
      },
      "same");
}

TEST(FirstUseFaultTest, WhatAnItemDoesNotHaveIsAskedFor) {
  checkFirstUse(
      [] {
        ParserItem item("a", ParserItem::ITEM_PLAIN, 0, 0);
        item.addGroup(nullptr);
        Plinth::Console::Handler previous = Plinth::console.setHandler(
            [](Plinth::Console::Level, const std::string&, const std::string&) {});
        const std::string string = item.getString(0);
        Plinth::console.setHandler(previous);
        return item.getTemplate() + item.getGroup(0)->getName() + string + "nothing";
      },
      "nothing");
}

TEST(FirstUseFaultTest, ItemsAreSelected) {
  checkFirstUse(
      [] {
        ParserGroup root("root");
        root.setText("lamp1 1 lamp2 2 #k 3 door 4", 1.1);
        const Quarry::ParserItems lamps = root.getItems("^lamp");
        const Plinth::Expression two("2");
        const unsigned long others = root.getItems("").getNotMatching(two).getCount();
        return lamps.getLabel() + ' ' + Plinth::getLabel(others);
      },
      "Collection (2) 2");
}

TEST(FirstUseFaultTest, ItemsAreWalkedAtRandom) {
  checkFirstUse(
      [] {
        ParserGroup root("root");
        root.setText("a 1 b 2 c 3", 1.1);
        const Quarry::ParserItems items = root.getItems("");
        int steps = 0;
        for (auto locator = items.getRandomLocator(); locator.isValid(); locator.progress())
          ++steps;
        return Plinth::getLabel(steps);
      },
      "3");
}

TEST(FirstUseFaultTest, ADocumentIsReadAndEncoded) {
  const TestSupport::TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "#SerialVersion 1.1\na 1.5 // b\n");
  checkFirstUse(
      [&] {
        ParserFile file;
        if (!file.read(path)) return std::string("not read");
        const std::vector<char> bytes = file.getBinary();
        return std::string(bytes.begin(), bytes.begin() + 4);
      },
      "QDBF");
}
