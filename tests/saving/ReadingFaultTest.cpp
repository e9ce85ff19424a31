// Reading while the system fails, at each of its calls.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <vector>

#include "SystemCalls.h"

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using Saving::Fault;
using Saving::SystemCalls;
using testing::ElementsAre;
using TestSupport::describe;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

/// A document that is read in two parts.
class ReadingFaultTest : public testing::Test {
 protected:
  const std::string string = std::string(300'000, 'x');
  const std::string tree = "a string:\"" + string + "\"";
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a \"" + string + "\"");
  const RecordingConsole console;
  ParserFile file;
};

}  // namespace

TEST_F(ReadingFaultTest, ReadingChecksEachOfTheseCalls) {
  const SystemCalls calls;
  EXPECT_TRUE(file.read(path));
  EXPECT_THAT(calls.getNames(), ElementsAre("open", "fstat", "read", "read", "close"));
}

TEST_F(ReadingFaultTest, AnErrorInTheMiddleOfTheFileRefusesIt) {
  for (const int call : {3, 4}) {
    const RecordingConsole own;
    bool isRead = true;
    {
      const SystemCalls failing(Fault::FAILS, call, EIO);
      isRead = file.read(path);
    }
    EXPECT_FALSE(isRead) << "call " << call;
    EXPECT_EQ(describe(file.getRoot()), "") << "call " << call;
    EXPECT_THAT(own.getWarnings(), ElementsAre("Failed to open file '" + path + "'.\n"));
  }
}

TEST_F(ReadingFaultTest, AnInterruptedCallIsMadeAgain) {
  for (const int call : {3, 4}) {
    ParserFile document;
    const SystemCalls interrupting(Fault::FAILS, call, EINTR);
    EXPECT_TRUE(document.read(path)) << "call " << call;
    EXPECT_EQ(describe(document.getRoot()), tree) << "call " << call;
  }
}

TEST_F(ReadingFaultTest, AFileThatIsNotOpenedAtOnceIsOpenedAgain) {
  const SystemCalls failing(Fault::FAILS, 1, EWOULDBLOCK);
  EXPECT_TRUE(file.read(path));
  EXPECT_EQ(describe(file.getRoot()), tree);
  EXPECT_THAT(failing.getNames(), ElementsAre("open", "open", "fstat", "read", "read", "close"));
}

TEST_F(ReadingFaultTest, AFileOfUnknownKindAndSizeIsReadAllTheSame) {
  const SystemCalls failing(Fault::FAILS, 2, EIO);
  EXPECT_TRUE(file.read(path));
  EXPECT_EQ(describe(file.getRoot()), tree);
}
