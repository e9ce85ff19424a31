/// What formatting must not change, with many documents: generated ones, and those in the folder
/// that QUARRY_FORMAT_DOCUMENTS names.
#include <QuarrySource/SourceDocument.h>
#include <gtest/gtest.h>
#include <quarry/Formatter.h>
#include <quarry/SameDocument.h>

#include "support/Documents.h"
#include "support/Environment.h"
#include "support/GeneratedDocuments.h"
#include "support/RecordingConsole.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace ToolTest {

using Quarry::SourceDocument;
using Quarry::SourceSpan;
using TestSupport::Faults;
using TestSupport::GeneratedDocument;

namespace {

using Files = std::map<std::string, std::string>;

unsigned getCount() {
  return static_cast<unsigned>(TestSupport::getCount("QUARRY_FORMAT_COUNT", 300));
}

/// Returns false where the text cannot be read.
bool read(SourceDocument& document, const Files& files, const std::string& name,
          const std::string& text) {
  for (const auto& [other, content] : files)
    document.setText(other, content);
  return document.readText(name, text);
}

/// Returns the comments of the top file, one a line.
std::string getComments(const SourceDocument& document) {
  const std::string& text = document.getFileOf(0).getText();
  std::string comments;
  for (const SourceSpan& span : document.getSpans(0)) {
    if (span.kind != SourceSpan::SPAN_COMMENT) continue;
    const std::string comment = text.substr(span.offset, span.length);
    comments += comment.substr(0, comment.find_last_not_of("\r\n") + 1) + "\n";
  }
  return comments;
}

/// Returns the tree as the library reads and writes it, with its warnings.
std::string getTree(const SourceDocument& document) {
  TestSupport::RecordingConsole console;
  const auto root = TestSupport::readText(document.getText(), document.getVersion());
  std::string tree = TestSupport::describe(*root) + "\n" + TestSupport::writeLines(*root);
  for (const auto& diagnostic : document.getDiagnostics())
    tree += "\n" + document.describe(diagnostic);
  return tree;
}

/// Returns a text without its blanks.
std::string getBytes(const std::string& text) {
  std::string bytes;
  for (const char byte : text) {
    if (std::string_view(" \t\r\n").find(byte) == std::string_view::npos) bytes += byte;
  }
  return bytes;
}

/// Expects that formatting a file keeps words, comments and the tree, and changes nothing more when
/// it is done again.
void checkFile(const Files& files, const std::string& name, const std::string& text) {
  SourceDocument before;
  ASSERT_TRUE(read(before, files, name, text)) << text;
  const std::string formatted = Tool::formatFile(before, {});
  std::string included;
  for (const auto& [other, content] : files)
    included += "\n--- " + other + " ---\n" + content;
  SCOPED_TRACE("--- before ---\n" + text.substr(0, 4000) + "\n--- after ---\n" +
               formatted.substr(0, 4000) + included);
  EXPECT_EQ(getBytes(formatted), getBytes(text));
  SourceDocument after;
  ASSERT_TRUE(read(after, files, name, formatted));
  EXPECT_TRUE(Tool::areSame(before, after));
  EXPECT_EQ(getTree(after), getTree(before));
  EXPECT_EQ(getComments(after), getComments(before));
  EXPECT_EQ(Tool::formatFile(after, {}), formatted);
}

void checkGenerated(unsigned seed, Faults faults) {
  const GeneratedDocument document = TestSupport::generateDocument(seed, faults);
  checkFile(document.files, document.name, document.files.at(document.name));
}

}  // namespace

TEST(FormatPropertyTest, DocumentsStayTheSameAndAreFormattedOnce) {
  for (unsigned seed = 0; seed < getCount() && !HasFailure(); ++seed)
    checkGenerated(seed, Faults::NONE);
}

TEST(FormatPropertyTest, DocumentsWithFaultsStayTheSameAndAreFormattedOnce) {
  for (unsigned seed = 0; seed < getCount() && !HasFailure(); ++seed)
    checkGenerated(seed, Faults::IN_TEXT);
}

TEST(FormatPropertyTest, IncludedFilesThatAreFormattedAloneStayTheSame) {
  for (unsigned seed = 0; seed < getCount() && !HasFailure(); ++seed) {
    const GeneratedDocument document = TestSupport::generateDocument(seed);
    for (const auto& [name, text] : document.files)
      checkFile(document.files, name, text);
  }
}

TEST(FormatPropertyTest, DocumentsOfAFolderStayTheSameAndAreFormattedOnce) {
  const char* folder = std::getenv("QUARRY_FORMAT_DOCUMENTS");
  if (folder == nullptr) GTEST_SKIP() << "QUARRY_FORMAT_DOCUMENTS names no folder";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".cfg") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    checkFile({}, entry.path(), std::string(std::istreambuf_iterator<char>(file), {}));
  }
}

}  // namespace ToolTest
