// Memory that runs out within the C library while included files are looked at.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <string>

#include "Faults.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using TestSupport::Attempt;

TEST(IncludeMemoryTest, AFileIsNotSaidToLieOutsideForLackOfMemory) {
  if (!TestSupport::reachesCLibrary()) GTEST_SKIP() << "the sanitizer allocates by itself";
  const TestSupport::TemporaryFolder folder;
  folder.write("sub.cfg", "b 2");
  folder.write("x.cfg", "a 1 #include \"sub.cfg\"");
  Quarry::ParserLimits limits;
  limits.includesBelowSearchPaths = true;
  TestSupport::forEveryFault(
      [&](Attempt& attempt) {
        const TestSupport::RecordingConsole console;
        ParserFile file;
        file.setSearchPaths({folder.getPath()});
        file.setLimits(limits);
        bool result = false;
        const bool isComplete = attempt.run([&] { result = file.read("x.cfg"); });
        EXPECT_EQ(result, isComplete);
        EXPECT_TRUE(console.isSilent());
      },
      Attempt::Whose::OWN_AND_C_LIBRARYS);
}
