// Memory that runs out in the base library.

#include <Plinth/Console.h>
#include <Plinth/Exception.h>
#include <Plinth/Expression.h>
#include <Plinth/Label.h>
#include <Plinth/VectorCollection.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Faults.h"
#include "support/RecordingConsole.h"

using Plinth::Console;
using Plinth::Expression;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::RecordingConsole;

namespace {

const std::string LONG_TEXT = "a text that is longer than a string within itself";

}  // namespace

// --- Console -------------------------------------------------------------------------------------

TEST(PlinthFaultTest, AMessageReachesItsHandlerOrMemoryRunsOut) {
  forEveryFault([](Attempt& attempt) {
    const RecordingConsole console;
    const bool isComplete = attempt.run([] { Plinth::console.warning(LONG_TEXT, ""); });
    EXPECT_EQ(console.getWarnings().size(), isComplete ? 1U : 0U);
    Plinth::console.warning(LONG_TEXT, "");
    EXPECT_EQ(console.getWarnings().back(), LONG_TEXT);
  });
}

TEST(PlinthFaultTest, AHandlerThatCannotBeSetLeavesTheOneBefore) {
  forEveryFault([](Attempt& attempt) {
    const RecordingConsole console;
    Console::Handler previous;
    const Console::Handler other = [mark = LONG_TEXT](Console::Level, const std::string&,
                                                      const std::string&) {};
    const bool isComplete =
        attempt.run([&] { previous = Plinth::console.setHandler(Console::Handler(other)); });
    Plinth::console.print("who is there?", "");
    EXPECT_EQ(console.isSilent(), isComplete);
    EXPECT_EQ(static_cast<bool>(previous), isComplete);
  });
}

// --- Exceptions ----------------------------------------------------------------------------------

TEST(PlinthFaultTest, AnErrorIsThrownOrMemoryRunsOut) {
  forEveryFault([](Attempt& attempt) {
    std::string message(200, ' ');
    const bool isComplete = attempt.run([&] {
      try {
        throw Plinth::InternalError(LONG_TEXT);
      } catch (const Plinth::Error& error) {
        message.assign(error.what());
      }
    });
    EXPECT_EQ(message, isComplete ? LONG_TEXT : std::string(200, ' '));
  });
}

TEST(PlinthFaultTest, AnErrorIsLocatedOrStaysWhereItWas) {
  forEveryFault([](Attempt& attempt) {
    Plinth::Error error(LONG_TEXT);
    const bool isComplete = attempt.run([&] { error.locate(LONG_TEXT, "function", 7); });
    EXPECT_EQ(error.getFile(), isComplete ? LONG_TEXT : "");
    EXPECT_EQ(error.getLine(), isComplete ? 7U : 0U);
    EXPECT_EQ(error.getMessage(), LONG_TEXT);
  });
}

// --- Labels --------------------------------------------------------------------------------------

TEST(PlinthFaultTest, LongLabels) {
  forEveryFault([](Attempt& attempt) {
    std::string label;
    const bool isComplete =
        attempt.run([&] { label = Plinth::getLabel(-2.2250738585072014e-308); });
    EXPECT_EQ(label, isComplete ? "-2.2250738585072014e-308" : "");
  });
}

// --- Collections ---------------------------------------------------------------------------------

TEST(PlinthFaultTest, ACollectionIsMadeCopiedAndWalked) {
  std::vector<std::string> texts(20, LONG_TEXT);
  std::vector<std::string*> elements;
  for (std::string& text : texts)
    elements.push_back(&text);
  forEveryFault([&](Attempt& attempt) {
    unsigned long steps = 0;
    const bool isComplete = attempt.run([&] {
      using Texts = Plinth::VectorCollection<std::string*>;
      const Plinth::Collection<std::string*> all(new Texts::Driver(&elements));
      const Plinth::Collection<std::string*> copy(all);
      for (auto locator = copy.getRandomLocator(); locator.isValid(); locator.progress())
        ++steps;
      Plinth::Locator<std::string*> locator = copy.getReverseLocator();
      for (locator = Plinth::Locator<std::string*>(locator); locator.isValid(); locator.progress())
        ++steps;
    });
    EXPECT_TRUE(!isComplete || steps == 40U) << steps;
  });
}

// --- Expressions ---------------------------------------------------------------------------------

TEST(PlinthFaultTest, AnExpressionThatIsCompiledMatchesOrMemoryRunsOut) {
  forEveryFault([](Attempt& attempt) {
    bool matches = false;
    const bool isComplete = attempt.run([&] {
      const Expression expression("^layer[0-9]+(_old|_new)?$");
      matches = expression.isValid() && expression.match("layer12_old");
    });
    EXPECT_EQ(matches, isComplete);
  });
}

TEST(PlinthFaultTest, APatternThatDoesNotCompileIsWarnedOfOrMemoryRunsOut) {
  forEveryFault([](Attempt& attempt) {
    const RecordingConsole console;
    const bool isComplete = attempt.run([&] { const Expression expression("layer[0-9"); });
    EXPECT_EQ(console.getWarnings().size(), isComplete ? 1U : 0U);
  });
}
