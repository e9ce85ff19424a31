// The source layer and the library agree about every document: its text, its warnings, its words
// and its items. QUARRY_SOURCE_DOCUMENTS sets how many random documents are tried, and
// QUARRY_SOURCE_SEED the seed of the first one; scripts/check-source tries many.

#include "support/Environment.h"
#include "support/SourceAgreement.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "RandomDocuments.h"
#include "support/TemporaryFolder.h"

using TestSupport::RandomDocument;
using TestSupport::SourceAgreement;
using TestSupport::TemporaryFolder;

namespace {

/// Files are removed first: to write over one can take until it is on the disk.
void writeFiles(RandomDocument& random, const TemporaryFolder& folder) {
  for (unsigned long number = 0; number < RandomDocument::MOST_FILES; ++number)
    std::filesystem::remove(folder.getPath(std::to_string(number)));
  for (const auto& [name, text] : random.getTexts()) {
    if (random.isCompressed()) {
      folder.writeCompressed(name, text);
    } else {
      folder.write(name, text);
    }
  }
}

/// What documents turned out to be, so that the test knows that it tries all kinds.
struct Tally {
  unsigned long readable = 0;
  unsigned long warned = 0;
  unsigned long withIncludes = 0;
  unsigned long withItems = 0;
};

void count(const Quarry::SourceDocument& document, Tally& tally) {
  if (document.getVersion() > 0.0) ++tally.readable;
  if (!document.getDiagnostics().empty()) ++tally.warned;
  if (document.getOpeningCount() > 2) ++tally.withIncludes;
  if (Quarry::SourceTree(document).getItemCount() > 5) ++tally.withItems;
}

}  // namespace

TEST(SourceAgreementTest, LayerAndLibraryAgreeAboutRandomDocuments) {
  const unsigned long documents = TestSupport::getCount("QUARRY_SOURCE_DOCUMENTS", 3000);
  const unsigned long firstSeed = TestSupport::getCount("QUARRY_SOURCE_SEED", 1, 0);
  const TemporaryFolder folder;
  const TestSupport::WorkingDirectory directory(folder.getPath());
  Tally tally;
  for (unsigned long seed = firstSeed; seed < firstSeed + documents; ++seed) {
    RandomDocument random(seed);
    writeFiles(random, folder);
    SourceAgreement agreement({""}, random.getLimits(), "0");
    ASSERT_EQ(agreement.findProblem(), "") << "QUARRY_SOURCE_SEED=" << seed;
    count(agreement.getDocument(), tally);
  }
  EXPECT_GT(tally.readable, documents / 3);
  EXPECT_GT(tally.warned, documents / 3);
  EXPECT_GT(tally.withIncludes, documents / 10);
  EXPECT_GT(tally.withItems, documents / 10);
}
