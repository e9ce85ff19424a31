// Compressed documents that are cut short or damaged, at every byte.
//
// A compressed document is read as far as its bytes deliver lines, and what is missing behind is
// not told of. So reading may succeed with the beginning of the document, but with nothing else; a
// line that is cut down to one byte raises the error of an empty line.

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <sys/mman.h>
#include <unistd.h>

#include <set>
#include <stdexcept>
#include <string>

#include "support/Documents.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

using Quarry::ParserFile;
using testing::StartsWith;
using TestSupport::RecordingConsole;
using TestSupport::TemporaryFolder;

namespace {

std::string makeLines() {
  std::string lines;
  for (int i = 0; i < 12; ++i) {
    const std::string number = std::to_string(i * i);
    lines += "name" + number + " " + number + ".5 \"text " + number + "\" g { a yes }$\n";
  }
  return lines;
}

/// A file that lies in memory: thousands of damaged ones take no time.
class FileInMemory {
 public:
  FileInMemory() : descriptor(memfd_create("damaged", MFD_CLOEXEC)) {}
  FileInMemory(const FileInMemory&) = delete;
  FileInMemory& operator=(const FileInMemory&) = delete;
  ~FileInMemory() { ::close(descriptor); }

  std::string getPath() const { return "/proc/self/fd/" + std::to_string(descriptor); }

  void write(const std::string& bytes) const {
    ASSERT_EQ(ftruncate(descriptor, 0), 0);
    ASSERT_EQ(pwrite(descriptor, bytes.data(), bytes.size(), 0),
              static_cast<ssize_t>(bytes.size()));
  }

 private:
  int descriptor;
};

/// A compressed document, and the text that becomes of it.
class CompressedDamageTest : public testing::Test {
 protected:
  CompressedDamageTest() {
    folder.writeCompressed("whole.cfg", makeLines());
    bytes = folder.read("whole.cfg");
    whole = expand(bytes);
  }

  /// Reads a file of these bytes, and writes, copies and encodes what was read.
  /// @return whether it was read; false with the standard library's error for an empty line, too
  bool read(const std::string& damaged) {
    file.write(damaged);
    ParserFile read;
    try {
      const bool result = read.read(file.getPath());
      tree = TestSupport::writeLines(Quarry::ParserGroup(read.getRoot()));
      EXPECT_EQ(tree, TestSupport::writeLines(read.getRoot()));
      EXPECT_GT(read.getBinary().size(), 11U);
      return result;
    } catch (const std::out_of_range& error) {
      EXPECT_THAT(error.what(), StartsWith("basic_string::erase"));
      return false;
    }
  }

  /// Returns the text that a file of these bytes gives, as far as it gives one.
  std::string expand(const std::string& damaged) {
    file.write(damaged);
    ParserFile expanded;
    expanded.setSearchPaths({""});
    std::set<std::string> included;
    std::string text;
    try {
      expanded.preprocessFile(text, file.getPath(), included);
    } catch (const std::out_of_range&) {
    }
    return text;
  }

  const TemporaryFolder folder;
  const RecordingConsole console;
  const FileInMemory file;
  std::string bytes;
  std::string whole;
  std::string tree;
};

}  // namespace

TEST_F(CompressedDamageTest, CutAtEveryByteADocumentGivesNothingButItsBeginning) {
  for (std::size_t size = 2; size < bytes.size(); ++size) {
    const std::string text = expand(bytes.substr(0, size));
    EXPECT_EQ(text, whole.substr(0, text.size())) << size;
  }
}

TEST_F(CompressedDamageTest, CutAtEveryByteADocumentIsReadOrRefused) {
  int count = 0;
  for (std::size_t size = 0; size <= bytes.size(); ++size)
    count += read(bytes.substr(0, size)) ? 1 : 0;
  EXPECT_GT(count, 0);
  EXPECT_TRUE(read(bytes));
  EXPECT_EQ(tree, TestSupport::writeLines(*TestSupport::readText(whole)));
}

TEST_F(CompressedDamageTest, DamagedAtEveryByteADocumentIsReadOrRefused) {
  int count = 0;
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    for (const int mask : {0x01, 0x80, 0xFF, 0x10}) {
      std::string damaged = bytes;
      damaged[place] = static_cast<char>(damaged[place] ^ mask);
      count += read(damaged) ? 1 : 0;
    }
  }
  EXPECT_GT(count, 0);
}

TEST_F(CompressedDamageTest, DamagedAtEveryByteAnIncludedDocumentIsReadOrRefused) {
  const std::string including =
      folder.write("including.cfg", "a 1 #include \"" + file.getPath() + "\" z 1");
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    std::string damaged = bytes;
    damaged[place] = static_cast<char>(~damaged[place]);
    file.write(damaged);
    ParserFile read;
    try {
      const bool result = read.read(including);
      EXPECT_EQ(read.getRoot().getItem("a") != nullptr, result) << place;
    } catch (const std::out_of_range&) {
      EXPECT_EQ(read.getRoot().getItemCount(), 0U) << place;
    }
  }
}
