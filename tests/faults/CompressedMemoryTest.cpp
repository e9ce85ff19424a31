// Memory that runs out within zlib.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <string>

#include "Faults.h"
#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using TestSupport::Attempt;
using TestSupport::forEveryFault;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;
using TestSupport::writeLines;

/// Nothing is needed any more once the item is there, so that a part of the text would show.
TEST(CompressedMemoryTest, ACompressedDocumentIsReadAsAWholeOrFails) {
  if (!TestSupport::reachesCLibrary()) GTEST_SKIP() << "the sanitizer allocates by itself";
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("x.cfg", "a$\n1$\n");
  forEveryFault(
      [&](Attempt& attempt) {
        const RecordingConsole console;
        ParserFile file;
        bool result = false;
        attempt.run([&] { result = file.read(path); });
        EXPECT_EQ(writeLines(file.getRoot()), result ? "\na 1" : "");
      },
      Attempt::Whose::OWN_AND_C_LIBRARYS);
}
