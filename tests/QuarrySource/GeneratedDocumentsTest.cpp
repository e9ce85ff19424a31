#include "support/GeneratedDocuments.h"

#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceTree.h>
#include <gtest/gtest.h>

#include <algorithm>

using Quarry::SourceDocument;
using TestSupport::Faults;
using TestSupport::GeneratedDocument;
using TestSupport::generateDocument;

namespace {

constexpr unsigned COUNT = 1000;

bool read(SourceDocument& document, const GeneratedDocument& generated) {
  for (const auto& [name, text] : generated.files)
    document.setText(name, text);
  return document.read(generated.name);
}

}  // namespace

TEST(GeneratedDocumentsTest, TheSameSeedGivesTheSameDocument) {
  EXPECT_EQ(generateDocument(7).files, generateDocument(7).files);
  EXPECT_NE(generateDocument(7).files, generateDocument(8).files);
}

TEST(GeneratedDocumentsTest, WithoutFaultsThereAreNoDiagnostics) {
  for (unsigned seed = 0; seed < COUNT; ++seed) {
    const GeneratedDocument generated = generateDocument(seed);
    SourceDocument document;
    ASSERT_TRUE(read(document, generated)) << seed;
    for (const Quarry::SourceDiagnostic& diagnostic : document.getDiagnostics())
      ADD_FAILURE() << seed << ": " << document.describe(diagnostic) << "\n" << document.getText();
  }
}

TEST(GeneratedDocumentsTest, SomeDocumentsHaveManyOpenings) {
  unsigned long most = 0;
  for (unsigned seed = 0; seed < COUNT; ++seed) {
    SourceDocument document;
    read(document, generateDocument(seed));
    most = std::max(most, document.getOpeningCount());
  }
  EXPECT_GE(most, 5U);
}

TEST(GeneratedDocumentsTest, FaultsInTextDrawDiagnosticsAndLeaveTheDocumentReadable) {
  unsigned long faulty = 0;
  for (unsigned seed = 0; seed < COUNT; ++seed) {
    SourceDocument document;
    EXPECT_TRUE(read(document, generateDocument(seed, Faults::IN_TEXT))) << seed;
    if (!document.getDiagnostics().empty()) ++faulty;
  }
  EXPECT_GT(faulty, COUNT / 2);
}

TEST(GeneratedDocumentsTest, FaultsAnywhereMakeSomeDocumentsUnreadable) {
  unsigned long unreadable = 0;
  for (unsigned seed = 0; seed < COUNT; ++seed) {
    SourceDocument document;
    if (!read(document, generateDocument(seed, Faults::ANYWHERE))) ++unreadable;
  }
  EXPECT_GT(unreadable, COUNT / 20);
  EXPECT_LT(unreadable, COUNT / 2);
}
