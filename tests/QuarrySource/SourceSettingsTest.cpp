#include <QuarrySource/SourceDocument.h>
#include <gtest/gtest.h>

using Quarry::ParserLimits;
using Quarry::SourceDocument;

TEST(SourceSettingsTest, ATextThatStandsInIsFoundByItsPath) {
  SourceDocument document;
  document.setText("a.cfg", "a 1");
  ASSERT_NE(document.findText("a.cfg"), nullptr);
  EXPECT_EQ(*document.findText("a.cfg"), "a 1");
  EXPECT_EQ(document.findText("b.cfg"), nullptr);
}

TEST(SourceSettingsTest, ADroppedTextStandsInNoLonger) {
  SourceDocument document;
  document.setText("a.cfg", "a 1");
  document.dropText("a.cfg");
  EXPECT_EQ(document.findText("a.cfg"), nullptr);
  EXPECT_FALSE(document.read("a.cfg"));
}

TEST(SourceSettingsTest, ADocumentIsReadAgainUnderItsName) {
  SourceDocument document;
  document.setText("a.cfg", "a 1");
  EXPECT_TRUE(document.read("a.cfg"));
  document.setText("a.cfg", "a 2");
  EXPECT_TRUE(document.readAgain());
  EXPECT_EQ(document.getText(), "a 2");
}

TEST(SourceSettingsTest, ATextIsReadAgainWithoutBeingLookedFor) {
  SourceDocument document;
  document.setSearchPaths({"elsewhere"});
  EXPECT_TRUE(document.readText("a.cfg", "a 1"));
  EXPECT_TRUE(document.readAgain());
  EXPECT_EQ(document.getText(), "a 1");
}

TEST(SourceSettingsTest, WithTheSettingsOfAnotherItsDocumentIsRead) {
  SourceDocument document;
  ParserLimits limits;
  limits.includeDepth = 1;
  document.setLimits(limits);
  document.setSearchPaths({"shared"});
  document.setText("shared/a.cfg", "a 1");
  document.read("a.cfg");
  SourceDocument other;
  other.copySettings(document);
  EXPECT_TRUE(other.readAgain());
  EXPECT_EQ(other.getText(), "a 1");
  EXPECT_EQ(other.getLimits().includeDepth, 1U);
}

TEST(SourceSettingsTest, DocumentsAreExchangedWithAllThatTheyHold) {
  SourceDocument one;
  one.setText("a.cfg", "a <>");
  one.read("a.cfg");
  EXPECT_EQ(one.getSpans(0).size(), 3U);
  SourceDocument other;
  other.setText("b.cfg", "b 1 // one\n 2");
  other.read("b.cfg");
  one.swap(other);
  EXPECT_EQ(one.getText(), "b 1  2");
  EXPECT_EQ(one.getSpans(0).size(), 7U);
  EXPECT_EQ(one.findText("a.cfg"), nullptr);
  EXPECT_EQ(other.getText(), "a <>");
  EXPECT_EQ(other.getTextOffset({0, 2}), 2U);
  EXPECT_EQ(other.describe(other.getDiagnostics().front()), "Unknown word type: '<>'");
  EXPECT_TRUE(other.readAgain());
}
