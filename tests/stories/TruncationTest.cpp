// Documents that end anywhere: what is read does not depend on the bytes that stand behind the end.
// Each text and each binary form is read once from memory of just its size, where a sanitizer or a
// guarded heap sees every byte that is read beyond it, and once with the rest of the document
// behind.

#include <Quarry/ParserGroup.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/RecordingConsole.h"

using Quarry::ParserGroup;
using TestSupport::RecordingConsole;

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<char>;

/// All that reading tells.
struct Outcome {
  bool isComplete;
  unsigned long position;
  std::string tree;
  std::vector<TestSupport::Message> messages;

  bool operator==(const Outcome&) const = default;
};

Outcome readDocument(const std::string& text) {
  const RecordingConsole console;
  ParserGroup root("root");
  const bool isComplete = root.setText(text, 1.1);
  return {isComplete, 0, TestSupport::writeOneLine(root), console.getMessages()};
}

Outcome readDocument(const Bytes& bytes) {
  const RecordingConsole console;
  ParserGroup root("root");
  unsigned long position = 0;
  const bool isComplete = root.setBinary(bytes, position);
  return {isComplete, position, TestSupport::writeOneLine(root), console.getMessages()};
}

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Bytes encode(const std::string& text) {
  const RecordingConsole console;
  ParserGroup root("root");
  root.setText(text, 1.1);
  return root.getBinary(false);
}

/// Returns the lengths at which the beginning of `whole` is read otherwise than with the rest in
/// the memory behind it.
template <class Sequence>
std::vector<std::size_t> findDifferences(const Sequence& whole) {
  std::vector<std::size_t> lengths;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Sequence alone(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    Sequence followed = whole;
    followed.resize(length);
    if (readDocument(alone) != readDocument(followed)) lengths.push_back(length);
  }
  return lengths;
}

/// The documents of tests/data, whose names begin with their folder's.
std::vector<std::string> findDocuments() {
  std::vector<std::string> names;
  for (const char* folder : {"documents", "golden", "messages"}) {
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(TEST_DATA_DIR) / folder)) {
      if (entry.path().extension() != ".cfg") continue;
      names.push_back(folder + ("/" + entry.path().stem().string()));
    }
  }
  return names;
}

class TruncationTest : public testing::TestWithParam<std::string> {
 protected:
  const std::string text = readFile(fs::path(TEST_DATA_DIR) / (GetParam() + ".cfg"));
};

std::string nameOf(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  name[name.find('/')] = '_';
  return name;
}

}  // namespace

TEST_P(TruncationTest, ATextEndsWithItsLastByte) {
  EXPECT_EQ(findDifferences(text), std::vector<std::size_t>());
}

TEST_P(TruncationTest, ABinaryFormEndsWithItsLastByte) {
  EXPECT_EQ(findDifferences(encode(text)), std::vector<std::size_t>());
}

INSTANTIATE_TEST_SUITE_P(Documents, TruncationTest, testing::ValuesIn(findDocuments()), nameOf);
